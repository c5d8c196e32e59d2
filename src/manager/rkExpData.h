// The settings of the suite: the root that the settings file holds, and the manager's own.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/core/model/Event.h"
#include "storage/rkFitReader.h"
#include "storage/rkKeyedCollections.h"
#include "storage/rkPropTypes.h"

namespace wrenfold {

// One expert of the suite and whether it is created.
class TExpertInfo : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TExpertInfo(TCollection* collection = nullptr) : TSpcItem(collection) {}

  void Assign(const TPersistent* source) override;
  std::string GetNodeName() const override { return DisplayText; }
  bool NeedsTranslate() const override { return false; }
  bool NeedsIterate() const override { return false; }

  std::string ExpertName;  // the key
  bool Active = false;
  std::string DisplayText;  // in the user's language; not stored
};

class TActiveExperts : public TFixedCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TActiveExperts(TPersistent* owner) : TFixedCollection(owner, TExpertInfo::ClassInfo()) {}

  TExpertInfo* Add(const std::string& name) {
    return static_cast<TExpertInfo*>(TFixedCollection::Add(name));
  }
  TExpertInfo* Find(std::string_view name) const {
    return static_cast<TExpertInfo*>(TFixedCollection::Find(name));
  }
  std::string GetUpdateName() const override { return "ExpertName"; }
  bool ItemsAreHeld() const override { return true; }
  std::string GetNodeName() const override;
  bool NeedsTranslate() const override { return false; }
};

// One command of the experts menu.
class TExpMenuItemData : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TExpMenuItemData(TCollection* collection = nullptr) : TSpcItem(collection) {}

  // Takes over what names the command and nothing else.
  void Assign(const TPersistent* source) override;
  std::string GetNodeName() const override { return Caption; }
  bool NeedsTranslate() const override { return false; }
  bool NeedsIterate() const override { return false; }

  // From here on the caption is the expert's own, in the language in force: it is stored only
  // after the user gave the command another one, so that a caption never outlives its language.
  void TakeCaptionAsOwn() { FOwnCaption = Caption; }
  const std::string& OwnCaption() const { return FOwnCaption; }

  std::string ItemID;  // the key
  bool HaveLineBefore = false;
  TShortCutString ShortCutText;  // empty: no hot key
  std::string Caption;
  std::int32_t ImageIndex = -1;  // -1: no picture
  // Called when the command is chosen, with the action as the sender; not stored.
  TNotifyEvent OnExecute;
  // Called before the command is shown or run by its hot key, with the action as the sender: sets
  // whether it is enabled. Not stored.
  TNotifyEvent OnUpdate;
  std::string ExpertName;  // of the expert that asked for the record first; not stored

 private:
  bool CaptionIsUsers() const { return !Caption.empty() && Caption != FOwnCaption; }
  std::string FOwnCaption;
};

class TExpMenuData : public TFixedCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TExpMenuData(TPersistent* owner)
      : TFixedCollection(owner, TExpMenuItemData::ClassInfo()) {}

  // The record with that identifier, made when it is missing.
  TExpMenuItemData& Demand(const std::string& itemId);
  TExpMenuItemData* Item(int index) const {
    return static_cast<TExpMenuItemData*>(TFixedCollection::Item(index));
  }
  TExpMenuItemData* Find(std::string_view itemId) const {
    return static_cast<TExpMenuItemData*>(TFixedCollection::Find(itemId));
  }
  std::string GetUpdateName() const override { return "ItemID"; }
  bool ItemsAreHeld() const override { return true; }
  std::string GetNodeName() const override;
  bool NeedsTranslate() const override { return false; }
};

// Holds the settings object of one expert, which the expert owns.
class TCustomDataItem : public TWrapperItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TCustomDataItem(TCollection* collection = nullptr) : TWrapperItem(collection) {}

  std::string GetNodeName() const override { return Caption; }
  // The editor shows the expert's settings in the item's place.
  std::string GetNodePropName() const override { return "NestedObject"; }
  bool NeedsTranslate() const override { return false; }
  bool NeedsIterate() const override { return false; }

  std::string Caption;     // not stored
  std::string ExpertName;  // of the expert that the object came with; not stored
};

class TCustomData : public TFreeCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TCustomData(TPersistent* owner) : TFreeCollection(owner, TCustomDataItem::ClassInfo()) {}

  TCustomDataItem* Add(TNestedObject* object, const std::string& name) {
    return static_cast<TCustomDataItem*>(TFreeCollection::Add(object, name));
  }
  TCustomDataItem* Item(int index) const {
    return static_cast<TCustomDataItem*>(TFreeCollection::Item(index));
  }
  bool ItemsAreHeld() const override { return true; }
  std::string GetNodeName() const override;
  bool NeedsTranslate() const override { return false; }
};

// The root of all settings. Its collections are published for the settings editor; the settings
// file carries them as "ActiveExperts_", "MenuData_" and "CustomData_", which are read into the
// items that are there, so that nobody who holds an item loses it. What is stored for experts that
// are not there is carried over: it is written back as it was read.
class TExpData : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TExpData();

  void Assign(const TPersistent* source) override;
  void DefineProperties(TFiler& filer) override;
  std::string GetNodeName() const override;

  std::unique_ptr<TActiveExperts> ActiveExperts;
  std::unique_ptr<TExpMenuData> MenuData;
  std::unique_ptr<TCustomData> CustomData;
  // Labels of the properties of all settings objects, in the layout of ini files; not stored.
  std::string PropNames;

 private:
  std::vector<TCarriedItem> FCarriedExperts, FCarriedMenuData, FCarriedCustomData;
};

// The window settings of the settings editor.
class TEditorFormData : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TEditorFormData() : Setting(std::make_unique<TMemoStrings>()) {}

  std::string GetNodeName() const override;

  bool AutoSaveSetting = true;
  TShortCutString SaveSettingShortCut = TShortCutString("Ctrl+S");
  std::unique_ptr<TMemoStrings> Setting;
};

// What the manager does when its settings switch something on or off.
struct TExpManagerHooks {
  TEvent<void(bool allowed)> ErrorLogAllowed;
  TEvent<void(std::uint32_t kilobytes)> MaxLogSize;
};

// The manager's own settings. Making them switches the error log on, the end of them off.
class TExpManagerData : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TExpManagerData(const TExpManagerHooks& hooks);
  ~TExpManagerData() override;

  bool ErrorLogAllowed() const { return FErrorLogAllowed; }
  void SetErrorLogAllowed(bool allowed);
  // Kilobytes; 0: the log grows without limit.
  std::uint32_t MaxLogSize() const { return FMaxLogSize; }
  void SetMaxLogSize(std::uint32_t kilobytes);

  std::string ExpertVersion = "1.0";
  bool AutoSaveSettings = true;
  std::string MainMenuSearchItem = "Tools";
  bool InsertMenuBeforeItem = true;
  bool MenuHaveLineBefore = false;
  bool MenuHaveLineAfter = false;
  std::unique_ptr<TEditorFormData> EditorFormData;

 private:
  TExpManagerHooks FHooks;
  bool FErrorLogAllowed = false;
  std::uint32_t FMaxLogSize = 50;
};

// The labels of what a class of settings adds to its base, in the language in force, in the layout
// of ini files: "[ClassName]" and a line "name=label" for each, in the order of the text numbers,
// joined by CR LF.
std::string MakePropNames(const TTypeInfo& settings);

}  // namespace wrenfold
