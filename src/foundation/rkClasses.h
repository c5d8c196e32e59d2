// Lists of the suite: texts in sections, objects by identifier.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/StringList.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Interfaces.h"

namespace wrenfold {

// The keys of one section, in a string list; the value of a key hangs on its line as an object
// that the list owns.
class TIniKeyList : public TStringList {
 public:
  TIniKeyList() { Duplicates = dupAccept; }
  ~TIniKeyList() override;

  // Empty for a line that was added without a value.
  std::string KeyValue(int index) const;
  void SetKeyValue(int index, const std::string& value);
  void AddKey(const std::string& key, const std::string& value);
  // "key=value", or the key alone when its value is empty.
  std::string Line(int index) const;

  void PutObject(int index, TObject* object) override;
  void Delete(int index) override;
  void Clear() override;
};

// An ini file in memory. Lines of its text form:
//   [section]     starts a section; a second one of the same name stays a section of its own
//   key=value     split at the first "=" behind the first character; neither side is trimmed
//   anything      a key with an empty value
// Empty lines, lines that start with ";" and lines before the first section are dropped. Names are
// found without regard to letter case; of equal names the first counts.
class TIniStrings : public TObject {
 public:
  TIniStrings() : TIniStrings(std::string()) {}
  // Reads the file when there is one; an empty name keeps the object off the disk.
  explicit TIniStrings(const std::string& fileName);
  ~TIniStrings() override { Clear(); }

  const std::string& FileName() const { return FFileName; }
  // Reads the file again; empties the object when there is none. Raises EFOpenError.
  void LoadValues();
  // Replaces the file by the text form; nothing without a file name. Raises EFCreateError and
  // leaves the file as it was.
  void UpdateFile() const;

  // Replaces the contents by the text form in `list`.
  void SetStrings(const TStrings& list);
  // Adds the text form to `list`, an empty line behind every section.
  void GetStrings(TStrings& list) const;
  void Clear();

  std::string ReadString(std::string_view section, std::string_view key,
                         const std::string& defaultValue) const;
  // Makes section and key when they are missing.
  void WriteString(const std::string& section, const std::string& key, const std::string& value);
  // These three replace the contents of `list`: the keys, the sections, the lines of a section.
  void ReadSection(std::string_view section, TStrings& list) const;
  void ReadSections(TStrings& list) const;
  void ReadSectionValues(std::string_view section, TStrings& list) const;

  bool HasSection(std::string_view section) const { return GetSection(section) != nullptr; }
  bool HasKey(std::string_view section, std::string_view key) const;
  // The first section of the name, or null. It stays valid until the section is erased.
  TIniKeyList* GetSection(std::string_view section) const;
  // Always makes a new section.
  TIniKeyList* AddSection(const std::string& name);
  // Adds a line of the text form to the section, which is made when it is missing.
  void AddString(const std::string& section, const std::string& line);
  // Sets the value of a key that is there; nothing otherwise.
  void ReplaceString(std::string_view section, std::string_view key, const std::string& value);
  void EraseSection(std::string_view section);
  void DeleteKey(std::string_view section, std::string_view key);

  // Sort and UnSort switch both kinds of order on and off.
  void Sort();
  void UnSort();
  bool GetSectionSorted() const { return FSections.Sorted(); }
  void SetSectionSorted(bool sorted) { FSections.SetSorted(sorted); }
  bool GetKeySorted() const { return FKeySorted; }
  // Counts for all sections, those added later too.
  void SetKeySorted(bool sorted);

 protected:
  // For descendants: lines without a value are dropped when the text form is read.
  bool FDropKeysWithoutValue = false;

 private:
  void DoAddString(TIniKeyList& keys, const std::string& line) const;
  TIniKeyList& KeysAt(int index) const;

  std::string FFileName;
  TStringList FSections;  // the attached objects are owned TIniKeyLists
  bool FKeySorted = false;
};

// An object that gives its identifier.
class IIdentIntf : public IInterface {
 public:
  static constexpr TGuid IID{
      0x7C1E52A4, 0x9B3D, 0x4F60, {0xA2, 0x18, 0x5D, 0x0E, 0x93, 0x6B, 0xC4, 0x71}};
  virtual std::string GetIdent() = 0;

 protected:
  ~IIdentIntf() = default;
};

// An object without identifier, or an identifier that is malformed or taken.
class EIdentListError : public Exception {
 public:
  using Exception::Exception;
};

// Items by ascending identifier, letter case ignored. Every identifier is well-formed and there
// once. A failed Add leaves the list as it was.
template <class TItem>
class TIdentListBase : public TObject {
 public:
  // Puts the item in order and answers its index. Raises EIdentListError.
  int Add(const TItem& item);
  // Whether the identifier is there, and where it is or would be inserted.
  bool Find(std::string_view ident, int& index) const;
  int IndexOf(const TItem& item) const;
  // Nothing when the item is not there.
  void Remove(const TItem& item);
  // Raises EListError for an index outside the list.
  void Delete(int index);
  void Clear() { FItems.clear(); }
  int Count() const { return static_cast<int>(FItems.size()); }
  const TItem& Items(int index) const;

 private:
  std::vector<TItem> FItems;
};

// Objects that implement IIdentIntf; the list does not own them.
class TIdentList : public TIdentListBase<TObject*> {};
// Holds a reference to each interface.
class TIdentIntfList : public TIdentListBase<TIntf<IIdentIntf>> {};

extern template class TIdentListBase<TObject*>;
extern template class TIdentListBase<TIntf<IIdentIntf>>;

}  // namespace wrenfold
