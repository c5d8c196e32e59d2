// What an expert is: the interface that the manager drives and the base class of all experts.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "manager/rkExpData.h"
#include "platform/core/system/Interfaces.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

// Answers the settings record of a menu command, made at the first call for that identifier.
using TGetMenuItemData = std::function<TExpMenuItemData&(const std::string& itemId)>;

class ICustomExpert : public IInterface {
 public:
  static constexpr TGuid IID{
      0xD4455D5C, 0x0638, 0x401F, {0x9A, 0x4D, 0x42, 0xDF, 0xB2, 0xF5, 0x25, 0x2A}};
  // Asks for one record for each menu command that the expert wants, and may keep them until it
  // is destroyed.
  virtual void Init(const TGetMenuItemData& getMenuItemData) = 0;
  // The settings were loaded: from the settings file, or (false) the defaults are in force.
  virtual void Load(bool loaded) = 0;
  // The menu item of a record was built. It does not outlive the next rebuilding of the menu.
  virtual void MenuNotification(TMenuItem* menuItem, TExpMenuItemData* menuItemData) = 0;
};

// An expert. The manager owns it, references are not counted. It is made without arguments, frees
// its windows when it is destroyed, and publishes what it wants stored.
class TCustomExpert : public TPersistent, public ICustomExpert {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  HResult QueryInterface(const TGuid& iid, void** result) override {
    return QueryAmong<ICustomExpert>(this, iid, result);
  }
  int _AddRef() override { return -1; }
  int _Release() override { return -1; }

  // The experts are about to be made anew. Closes the expert's windows and answers what the new
  // expert of that name needs to open them again as they are; null when none is open.
  virtual std::unique_ptr<TObject> CloseWindows() { return nullptr; }
  virtual void ReopenWindows(const TObject&) {}

  void Init(const TGetMenuItemData&) override {}
  void Load(bool) override {}
  void MenuNotification(TMenuItem*, TExpMenuItemData*) override {}
};

// The live experts in the order of their making; the list owns its records, not the experts.
class TExpObjectList {
 public:
  struct TEntry {
    TCustomExpert* Expert;
    std::string Name;
  };

  // Answers the index of the new record.
  int Add(TCustomExpert* expert, const std::string& name);
  // Raises EListError outside 0..Count-1; so does Delete.
  const TEntry& Get(int index) const;
  int Count() const { return static_cast<int>(FEntries.size()); }
  void Delete(int index);
  void Clear() { FEntries.clear(); }
  // The first record, or -1.
  int IndexOf(const std::string& name) const;
  int IndexOf(const TCustomExpert* expert) const;

 private:
  std::size_t Checked(int index) const;
  std::vector<TEntry> FEntries;
};

}  // namespace wrenfold
