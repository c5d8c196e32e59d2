// Lists of strings, each with an attached object.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

class TStream;

// The abstract list. Index arguments outside the list raise EListError. Objects are not owned.
class TStrings : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  virtual int Count() const = 0;
  virtual const std::string& Get(int index) const = 0;
  virtual void Put(int index, const std::string& text) = 0;
  virtual TObject* GetObject(int index) const;
  virtual void PutObject(int index, TObject* object);
  virtual void Insert(int index, const std::string& text) = 0;
  virtual void Delete(int index) = 0;
  virtual void Clear() = 0;

  const std::string& operator[](int index) const { return Get(index); }
  virtual int Add(const std::string& text);
  virtual int AddObject(const std::string& text, TObject* object);
  void InsertObject(int index, const std::string& text, TObject* object);
  virtual void Exchange(int first, int second);
  virtual void Move(int from, int to);
  void AddStrings(const TStrings& source);
  // The first equal line, letter case ignored, or -1.
  virtual int IndexOf(std::string_view text) const;
  int IndexOfObject(const TObject* object) const;
  int IndexOfName(std::string_view name) const;

  // All lines, each followed by CR LF; reading takes CR LF, LF and CR as line ends.
  std::string Text() const;
  virtual void SetText(std::string_view text);
  // Lines joined by commas; a line with a blank, comma or quote stands in double quotes.
  std::string CommaText() const;
  void SetCommaText(std::string_view text);
  // Lines of the form name=value. Setting an empty value removes the line.
  std::string Value(std::string_view name) const;
  void SetValue(const std::string& name, const std::string& value);

  void Assign(const TPersistent* source) override;
  // Stored as the list "Strings".
  void DefineProperties(TFiler& filer) override;

  // Both raise EFOpenError / EFCreateError naming the file; saving replaces the file whole.
  void LoadFromFile(const std::string& fileName);
  void SaveToFile(const std::string& fileName) const;

  void BeginUpdate() override;
  void EndUpdate() override;

 protected:
  virtual void SetUpdateState(bool updating);
  int UpdateCount() const { return FUpdateCount; }

 private:
  int FUpdateCount = 0;
};

enum TDuplicates : std::uint8_t { dupIgnore, dupAccept, dupError };

// The list in memory. Sorted lists keep ascending order, letter case ignored, and find by binary
// search; inserting at a position raises EListError in them.
class TStringList : public TStrings {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  int Count() const override { return static_cast<int>(FItems.size()); }
  const std::string& Get(int index) const override;
  void Put(int index, const std::string& text) override;
  TObject* GetObject(int index) const override;
  void PutObject(int index, TObject* object) override;
  void Insert(int index, const std::string& text) override;
  void Delete(int index) override;
  void Clear() override;
  int Add(const std::string& text) override;
  void Exchange(int first, int second) override;
  void Move(int from, int to) override;
  int IndexOf(std::string_view text) const override;

  // Whether the line is there, and where it is or would be inserted. For sorted lists.
  bool Find(std::string_view text, int& index) const;
  bool Sorted() const { return FSorted; }
  void SetSorted(bool sorted);
  virtual void Sort();
  using TCompare = std::function<int(const std::string&, const std::string&)>;
  void CustomSort(const TCompare& compare);

  TDuplicates Duplicates = dupIgnore;
  TNotifyEvent OnChange;
  TNotifyEvent OnChanging;

 protected:
  virtual void Changed();
  virtual void Changing();
  void SetUpdateState(bool updating) override;

 private:
  struct TItem {
    std::string Text;
    TObject* Object = nullptr;
  };
  std::size_t Checked(int index) const;
  void InsertItem(int index, const std::string& text);

  std::vector<TItem> FItems;
  bool FSorted = false;
};

}  // namespace wrenfold
