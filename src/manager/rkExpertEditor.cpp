#include "manager/rkExpertEditor.h"

#include <QApplication>
#include <QFontMetrics>
#include <algorithm>
#include <set>

#include "controls/rkFileDialogs.h"
#include "controls/rkIcons.h"
#include "editor/rkSpcForm.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"
#include "manager/rkSettingsFile.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"
#include "spec/rkSpcConst.h"

namespace wrenfold {

namespace {

// What stands in the settings and is none of the user's.
constexpr const char* Invisible[] = {"TEditorFormData.Setting"};
constexpr const char* Disabled[] = {"TExpManagerData.ExpertVersion"};

// Loading, adding and deleting would replace what experts hold, an order is not stored.
constexpr TSpcEdVisibleButtons Buttons{vbExitEditor, vbSaveSpc, vbExpandNode, vbCollapseNode};

void AddLabels(const TTypeInfo& info, TStrings& table) {
  const std::vector<TLabel> labels = info.Labels();
  if (labels.empty()) return;
  table.Add('[' + info.Name() + ']');
  for (const TLabel& label : labels) table.Add(label.Name + '=' + LocaleStr(label.TextId));
}

// The column of the labels is as wide as the widest of them needs it, within reason; the user may
// drag it afterwards.
int WidthForLabels(const TStrings& table) {
  constexpr int Margins = 24, Least = 210, Most = 340;
  const QFontMetrics metrics(QApplication::font());
  int width = 0;
  for (int i = 0; i < table.Count(); ++i) {
    const QString line = ToQString(table[i]);
    const QStringList parts = line.mid(line.indexOf('=') + 1).split("##");
    for (const QString& part : parts)
      width = std::max(width, metrics.horizontalAdvance(part + " :"));
  }
  return std::clamp(width + Margins, Least, Most);
}

std::string PlainCaption(const std::string& caption) {
  return StripHotkey(caption);
}

// The command among those of the environment that has the key; empty: none.
std::string EnvironmentCommand(TShortCut shortCut, const TExpertsMenu& ownMenu) {
  for (const TActionList* list : TActionList::All()) {
    if (dynamic_cast<const TSpcForm*>(list->Owner()) != nullptr) continue;
    for (const TAction* action : list->Actions())
      if (action->ShortCut() == shortCut && !ownMenu.FindExecProc(action))
        return PlainCaption(action->Caption());
  }
  return {};
}

}  // namespace

const TTypeInfo& TExpertEditor::ClassInfo() {
  static const TTypeInfo info = Publish<TExpertEditor>("TExpertEditor", TSpcEditorPro::ClassInfo());
  return info;
}

TExpertEditor::TExpertEditor(TExpManager& manager) : FManager(manager) {}

void TExpertEditor::LocalizeEditor() {
  std::set<const TTypeInfo*> done;
  TStringList table;
  WalkObjects(*SettingsRoot(), [&](TPersistent& object) {
    for (const TTypeInfo* info = &object.GetClassInfo(); info != nullptr; info = info->Parent())
      if (done.insert(info).second) AddLabels(*info, table);
  });
  // What the experts tell beside the labels of their properties: the names of values.
  TStringList told;
  told.SetText(SettingsRoot()->PropNames);
  table.AddStrings(told);
  TranslatingTable->Assign(&table);
  LabelAreaInfo->DefAreaWidth = WidthForLabels(table);
  // With it the widest labels leave the window without a scroll bar.
  constexpr int NarrowControls = 210;
  ControlAreaInfo->DefAreaWidth = NarrowControls;
}

void TExpertEditor::PrepareEditor() {
  FormOptions = {foModalShowing, foAutoSaveParams, foEllipsisLabels, foMultiLineCaptions};
  VisibleButtons = Buttons;
  InvisibleProps->Clear();
  for (const char* name : Invisible) InvisibleProps->Add(name);
  DisabledProps->Clear();
  for (const char* name : Disabled) DisabledProps->Add(name);
  SetFile(SettingsFileName(), osfBin);
}

void TExpertEditor::SetCaption() {
  FormCaption = LocaleStr(sExpertsSettings);
  TSpcEditorPro::SetCaption();
}

void TExpertEditor::TakeDefaults() {
  FDefaults = std::make_shared<TObjectImage>(*SettingsRoot());
}

// An expert that is switched off is changed, whoever loaded that; captions follow the language.
void TExpertEditor::PrepareBaseline(TSpcBaseline& baseline) {
  const TPropInfo* active = TExpertInfo::ClassInfo().FindProperty("Active");
  for (TCollectionItem* item : SettingsRoot()->ActiveExperts->Items())
    baseline.SetDefault(*item, *active, TPropImage(std::int32_t{true}));
  const TPropInfo* caption = TExpMenuItemData::ClassInfo().FindProperty("Caption");
  for (TCollectionItem* item : SettingsRoot()->MenuData->Items())
    baseline.SetDefault(*item, *caption,
                        TPropImage(static_cast<TExpMenuItemData*>(item)->OwnCaption()));
}

void TExpertEditor::Edit() {
  FImportFile.clear();
  PrepareEditor();
  LocalizeEditor();
  SetSpcRoot(*SettingsRoot());
  ShowTree();
}

TSpcForm* TExpertEditor::MakeForm() {
  TSpcForm* form = TSpcEditorPro::MakeForm();
  const TShortCut save = TextToShortCut(FManager.ManagerData().EditorFormData->SaveSettingShortCut);
  form->FindAction("ActSaveSpc")->SetShortCut(save);
  form->FindAction("ActStore")->SetShortCut(save);
  form->AddCommand("ActExport", sExportSettings, siSaveAs,
                   TNotifyEvent::Bind<&TExpertEditor::ExportClick>(this));
  form->AddCommand("ActImport", sImportSettings, siOpen,
                   TNotifyEvent::Bind<&TExpertEditor::ImportClick>(this));
  form->Retranslate();
  return form;
}

bool TExpertEditor::AutoSaveParams() const {
  return FManager.ManagerData().EditorFormData->AutoSaveSetting;
}

void TExpertEditor::ReadFormSetting(const std::string&, const std::string&, TStrings& list) {
  list.SetText(FManager.ManagerData().EditorFormData->Setting->Text());
}

void TExpertEditor::WriteFormSetting(const std::string&, const std::string&, const TStrings& list) {
  FManager.ManagerData().EditorFormData->Setting->SetText(list.Text());
}

bool TExpertEditor::SaveToFile(const std::string& fileName, TObjectStorageFormat format) {
  const bool foreign = SettingsFile().ChangedOnDisk();
  if (foreign && MsgWarning(LocaleFormat(sSettingsChangedOnDisk, fileName)) != mbYes) return false;
  return TSpcEditorPro::SaveToFile(fileName, format);
}

void TExpertEditor::WriteSpc(const std::string&, TObjectStorageFormat) {
  SettingsFile().Save(*SettingsRoot());
}

std::string TExpertEditor::HotKeyConflict(TShortCut shortCut, const TPersistent& instance,
                                          const TPropInfo&) const {
  const auto* own = dynamic_cast<const TExpMenuItemData*>(&instance);
  if (own == nullptr || shortCut == 0) return {};
  const TExpMenuData& records = *SettingsRoot()->MenuData;
  for (int i = 0; i < records.Count(); ++i) {
    const TExpMenuItemData* record = records.Item(i);
    if (record != own && TextToShortCut(record->ShortCutText) == shortCut)
      return PlainCaption(record->Caption);
  }
  return EnvironmentCommand(shortCut, FManager.Menu());
}

void TExpertEditor::ExportClick(TObject*) {
  StoreRows();
  TSaveDialog dialog;
  dialog.Title = LocaleStr(sExportSettings);
  dialog.Filter = SpcFileFilter();
  dialog.OverwritePrompt = false;
  std::string fileName;
  TObjectStorageFormat format = osfBin;
  if (InternalSaveAs(dialog, fileName, format)) FManager.ExportSettings(fileName, format);
}

// The settings that are shown go when others are imported: the editor closes first.
void TExpertEditor::ImportClick(TObject*) {
  TOpenDialog dialog;
  dialog.Title = LocaleStr(sImportSettings);
  dialog.Filter = SpcFileFilter();
  if (!dialog.Execute(Form())) return;
  TSettingsFile::CheckImport(dialog.FileName);
  FImportFile = dialog.FileName;
  if (!Form()->Close()) FImportFile.clear();
}

}  // namespace wrenfold
