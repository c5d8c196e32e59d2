// The settings classes of the manager and how they are stored.
#include "manager/rkExpData.h"

#include "locale/rkLocale.h"
#include "storage/rkFitReader.h"
#include "storage/rkFitWriter.h"

namespace wrenfold {

const TTypeInfo& TExpertInfo::ClassInfo() {
  static const TTypeInfo info = Publish<TExpertInfo>("TExpertInfo", TSpcItem::ClassInfo())
                                    .Prop("ExpertName", &TExpertInfo::ExpertName)
                                    .Label(sLabelExpertName)
                                    .Prop("Active", &TExpertInfo::Active)
                                    .Label(sLabelActive);
  return info;
}

void TExpertInfo::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TExpertInfo*>(source);
  if (other == nullptr) return TSpcItem::Assign(source);
  ExpertName = other->ExpertName;
  DisplayText = other->DisplayText;
  Active = other->Active;
}

const TTypeInfo& TActiveExperts::ClassInfo() {
  static const TTypeInfo info =
      Publish<TActiveExperts>("TActiveExperts", TFixedCollection::ClassInfo());
  return info;
}

std::string TActiveExperts::GetNodeName() const {
  return LocaleStr(sInstalledExperts);
}

const TTypeInfo& TExpMenuItemData::ClassInfo() {
  static const TTypeInfo info = Publish<TExpMenuItemData>("TExpMenuItemData", TSpcItem::ClassInfo())
                                    .Prop("ItemID", &TExpMenuItemData::ItemID)
                                    .Label(sLabelItemID)
                                    .Prop("HaveLineBefore", &TExpMenuItemData::HaveLineBefore)
                                    .Label(sMenuItemSeparator)
                                    .Prop("ShortCutText", &TExpMenuItemData::ShortCutText)
                                    .Label(sMenuItemHotkeys)
                                    .Prop("Caption", &TExpMenuItemData::Caption)
                                    .Label(sMenuItemText)
                                    .StoredWhen(&TExpMenuItemData::CaptionIsUsers)
                                    .Prop("ImageIndex", &TExpMenuItemData::ImageIndex)
                                    .Label(sMenuItemPicture);
  return info;
}

void TExpMenuItemData::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TExpMenuItemData*>(source);
  if (other == nullptr) return TSpcItem::Assign(source);
  ItemID = other->ItemID;
  Caption = other->Caption;
}

const TTypeInfo& TExpMenuData::ClassInfo() {
  static const TTypeInfo info =
      Publish<TExpMenuData>("TExpMenuData", TFixedCollection::ClassInfo());
  return info;
}

std::string TExpMenuData::GetNodeName() const {
  return LocaleStr(sExpertsMenu);
}

TExpMenuItemData& TExpMenuData::Demand(const std::string& itemId) {
  if (TExpMenuItemData* item = Find(itemId)) return *item;
  return static_cast<TExpMenuItemData&>(*Add(itemId));
}

const TTypeInfo& TCustomDataItem::ClassInfo() {
  static const TTypeInfo info =
      Publish<TCustomDataItem>("TCustomDataItem", TWrapperItem::ClassInfo());
  return info;
}

const TTypeInfo& TCustomData::ClassInfo() {
  static const TTypeInfo info = Publish<TCustomData>("TCustomData", TFreeCollection::ClassInfo());
  return info;
}

std::string TCustomData::GetNodeName() const {
  return LocaleStr(sSpecialSettings);
}

const TTypeInfo& TExpData::ClassInfo() {
  static const TTypeInfo info = Publish<TExpData>("TExpData", TSpcObject::ClassInfo())
                                    .Prop("ActiveExperts", &TExpData::ActiveExperts)
                                    .NotStored()
                                    .Prop("MenuData", &TExpData::MenuData)
                                    .NotStored()
                                    .Prop("CustomData", &TExpData::CustomData)
                                    .NotStored();
  return info;
}

TExpData::TExpData()
    : ActiveExperts(std::make_unique<TActiveExperts>(this)),
      MenuData(std::make_unique<TExpMenuData>(this)),
      CustomData(std::make_unique<TCustomData>(this)) {}

void TExpData::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TExpData*>(source);
  if (other == nullptr) return TSpcObject::Assign(source);
  ActiveExperts->Assign(other->ActiveExperts.get());
  CustomData->Assign(other->CustomData.get());
  MenuData->Assign(other->MenuData.get());
}

namespace {

// One keyed collection as a stored value: read into the items that are there, written with what is
// carried over for those that are not.
template <class Base, class Collection>
void DefineKeyed(TFiler& filer, const char* name, Collection& collection,
                 const std::string& keyProperty, std::vector<TCarriedItem>& carried,
                 void (TFitReader::*read)(Base&, bool)) {
  const auto isThere = [&](const TCarriedItem& item) {
    return item.Key.empty() || collection.Find(item.Key) != nullptr;
  };
  // Only the suite's own reader and writer match items by key.
  const auto readData = [&](TReader&) {
    auto& reader = dynamic_cast<TFitReader&>(filer);
    carried = reader.PeekItems(keyProperty);
    std::erase_if(carried, isThere);
    (reader.*read)(collection, false);
  };
  const auto writeData = [&](TWriter&) {
    std::string further;
    for (const TCarriedItem& item : carried)
      if (!isThere(item)) further += item.Bytes;
    dynamic_cast<TFitWriter&>(filer).WriteCollectionEx(collection, further);
  };
  filer.DefineProperty(name, readData, writeData, true);
}

}  // namespace

void TExpData::DefineProperties(TFiler& filer) {
  TSpcObject::DefineProperties(filer);
  if (dynamic_cast<TFitReader*>(&filer) == nullptr && dynamic_cast<TFitWriter*>(&filer) == nullptr)
    return;
  DefineKeyed(filer, "ActiveExperts_", *ActiveExperts, ActiveExperts->GetUpdateName(),
              FCarriedExperts, &TFitReader::ReadFixedCollection);
  DefineKeyed(filer, "MenuData_", *MenuData, MenuData->GetUpdateName(), FCarriedMenuData,
              &TFitReader::ReadFixedCollection);
  DefineKeyed(filer, "CustomData_", *CustomData, "AObjectID", FCarriedCustomData,
              &TFitReader::ReadFreeCollection);
}

std::string TExpData::GetNodeName() const {
  return LocaleStr(sExpertsSettings);
}

const TTypeInfo& TEditorFormData::ClassInfo() {
  static const TTypeInfo info =
      Publish<TEditorFormData>("TEditorFormData", TSpcObject::ClassInfo())
          .Prop("AutoSaveSetting", &TEditorFormData::AutoSaveSetting)
          .Label(sLabelAutoSaveSetting)
          .Prop("SaveSettingShortCut", &TEditorFormData::SaveSettingShortCut)
          .Label(sLabelSaveSettingShortCut)
          .Prop("Setting", &TEditorFormData::Setting);
  return info;
}

std::string TEditorFormData::GetNodeName() const {
  return LocaleStr(sEditorFormSettings);
}

const TTypeInfo& TExpManagerData::ClassInfo() {
  static const TTypeInfo info =
      Publish<TExpManagerData>("TExpManagerData", TSpcObject::ClassInfo())
          .Prop("ExpertVersion", &TExpManagerData::ExpertVersion)
          .Label(sLabelExpertVersion)
          .Prop("AutoSaveSettings", &TExpManagerData::AutoSaveSettings)
          .Label(sLabelAutoSaveSettings)
          .Prop("MainMenuSearchItem", &TExpManagerData::MainMenuSearchItem)
          .Label(sLabelMainMenuSearchItem)
          .Prop("InsertMenuBeforeItem", &TExpManagerData::InsertMenuBeforeItem)
          .Label(sLabelInsertMenuBeforeItem)
          .Prop("MenuHaveLineBefore", &TExpManagerData::MenuHaveLineBefore)
          .Label(sLabelMenuHaveLineBefore)
          .Prop("MenuHaveLineAfter", &TExpManagerData::MenuHaveLineAfter)
          .Label(sLabelMenuHaveLineAfter)
          .Prop("ErrorLogAllowed", &TExpManagerData::ErrorLogAllowed,
                &TExpManagerData::SetErrorLogAllowed)
          .Label(sLabelErrorLogAllowed)
          .Prop("MaxLogSize", &TExpManagerData::MaxLogSize, &TExpManagerData::SetMaxLogSize)
          .Label(sLabelMaxLogSize)
          .Prop("EditorFormData", &TExpManagerData::EditorFormData);
  return info;
}

TExpManagerData::TExpManagerData(const TExpManagerHooks& hooks)
    : EditorFormData(std::make_unique<TEditorFormData>()), FHooks(hooks) {
  FHooks.MaxLogSize(FMaxLogSize);
  SetErrorLogAllowed(true);
}

TExpManagerData::~TExpManagerData() {
  SetErrorLogAllowed(false);
}

void TExpManagerData::SetErrorLogAllowed(bool allowed) {
  if (FErrorLogAllowed == allowed) return;
  FErrorLogAllowed = allowed;
  FHooks.ErrorLogAllowed(allowed);
}

void TExpManagerData::SetMaxLogSize(std::uint32_t kilobytes) {
  FMaxLogSize = kilobytes;
  FHooks.MaxLogSize(kilobytes);
}

std::string MakePropNames(const TTypeInfo& settings) {
  std::string text = "[" + settings.Name() + "]";
  for (const TLabel& label : settings.Labels())
    if (!settings.Parent()->FindProperty(label.Name))
      text += "\r\n" + label.Name + "=" + LocaleStr(label.TextId);
  return text;
}

}  // namespace wrenfold
