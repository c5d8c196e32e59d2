// The settings editor as a component: what it edits, its window, its lists.
#include "editor/rkSpcEditor.h"

#include <filesystem>

#include "editor/rkSpcForm.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ImageList.h"
#include "platform/widgets/ShortCuts.h"
#include "spec/rkSpcConst.h"
#include "spec/rkSpcMng.h"
#include "storage/rkPropTypes.h"

namespace wrenfold {

namespace {

// Whether this code is part of a loaded package and not of the program itself.
bool InsidePackage() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::string module = ModuleFileName(reinterpret_cast<const void*>(&InsidePackage));
  return !error && !std::filesystem::equivalent(program, module, error) && !error;
}

void InitByDefault() {
  TInitData initData;
  FillInitData(initData);
  TSpcEditor::Init(std::move(initData));
}

}  // namespace

const TTypeInfo& TSpcEditor::ClassInfo() {
  static const TTypeInfo info =
      Publish<TSpcEditor>("TSpcEditor", TComponent::ClassInfo())
          .Prop("ShowStatusBar", &TSpcEditor::ShowStatusBar)
          .Default(true)
          .Prop("SimpleMode", &TSpcEditor::SimpleMode)
          .Default(false)
          .Prop("ColCount", &TSpcEditor::ColCount)
          .Default(1)
          .Prop("ControlAreaInfo", &TSpcEditor::ControlAreaInfo)
          .Prop("ControlParams", &TSpcEditor::ControlParams)
          .Prop("DisabledProps", &TSpcEditor::DisabledProps)
          .Prop("FormCaption", &TSpcEditor::FormCaption)
          .Prop("FormOptions", &TSpcEditor::FormOptions)
          .Prop("HeaderFont", &TSpcEditor::HeaderFont, &TSpcEditor::SetHeaderFont)
          .StoredWhen(&TSpcEditor::HasHeaderFont)
          .Prop("IniFileName", &TSpcEditor::IniFileName)
          .Prop("IniSection", &TSpcEditor::IniSection)
          .Prop("InvisibleProps", &TSpcEditor::InvisibleProps)
          .Prop("LabelAreaInfo", &TSpcEditor::LabelAreaInfo)
          .Prop("Options", &TSpcEditor::Options)
          .Prop("RedefiedParams", &TSpcEditor::RedefiedParams)
          .Prop("TopInc", &TSpcEditor::TopInc)
          .Prop("TranslatingTable", &TSpcEditor::TranslatingTable)
          .Prop("TreeFont", &TSpcEditor::TreeFont, &TSpcEditor::SetTreeFont)
          .StoredWhen(&TSpcEditor::HasTreeFont)
          .Prop("VisibleButtons", &TSpcEditor::VisibleButtons)
          .Prop("AfterSaveSpc", &TSpcEditor::AfterSaveSpc)
          .Prop("BeforeSaveSpc", &TSpcEditor::BeforeSaveSpc)
          .Prop("OnCollectionChange", &TSpcEditor::OnCollectionChange)
          .Prop("OnCollectionChanging", &TSpcEditor::OnCollectionChanging)
          .Prop("OnCreateSpc", &TSpcEditor::OnCreateSpc)
          .Prop("OnLoadSpc", &TSpcEditor::OnLoadSpc)
          .Prop("OnPlaceNodeImage", &TSpcEditor::OnPlaceNodeImage)
          .Prop("OnReadFormSetting", &TSpcEditor::OnReadFormSetting)
          .Prop("OnSelectStartNode", &TSpcEditor::OnSelectStartNode)
          .Prop("OnWriteFormSetting", &TSpcEditor::OnWriteFormSetting)
          .Prop("BeforeCreateControl", &TSpcEditor::BeforeCreateControl)
          .Prop("AfterCreateControl", &TSpcEditor::AfterCreateControl)
          .Prop("OnCreateLabel", &TSpcEditor::OnCreateLabel)
          .Prop("OnControlChange", &TSpcEditor::OnControlChange)
          .Prop("OnDropControl", &TSpcEditor::OnDropControl)
          .Prop("OnResizeControl", &TSpcEditor::OnResizeControl)
          .Prop("BeforeSetControlData", &TSpcEditor::BeforeSetControlData)
          .Prop("AfterSetControlData", &TSpcEditor::AfterSetControlData)
          .Prop("BeforeGetControlData", &TSpcEditor::BeforeGetControlData)
          .Prop("AfterGetControlData", &TSpcEditor::AfterGetControlData);
  return info;
}

TSpcEditor::TSpcEditor(TComponent* owner)
    : TComponent(owner),
      IniSection(SEditorSection()),
      InvisibleProps(std::make_unique<TStringList>()),
      TranslatingTable(std::make_unique<TStringList>()),
      ControlAreaInfo(std::make_unique<TControlAreaInfo>()),
      ControlParams(std::make_unique<TStringList>()),
      DisabledProps(std::make_unique<TStringList>()),
      LabelAreaInfo(std::make_unique<TLabelAreaInfo>()),
      RedefiedParams(std::make_unique<TStringList>()),
      FSearch([this](const TTreeNode& node) { return TextsOf(node); }),
      FImages(new TImageList(this)),
      FTreeFont(std::make_unique<TFont>()),
      FHeaderFont(std::make_unique<TFont>()) {
  DisabledProps->SetSorted(true);
  for (TStringList* list : {TranslatingTable.get(), ControlParams.get(), RedefiedParams.get()})
    Bind<&TSpcEditor::ListChanged>(list->OnChange, this);
  UpdateControlParams();
}

TSpcEditor::~TSpcEditor() {
  FClosing = true;
  ClearRows();
  delete FForm;
}

TSpcForm* TSpcEditor::Form() const {
  return FForm;
}

void TSpcEditor::Init(TInitData initData) {
  SetInitData(std::move(initData));
}

void TSpcEditor::SetSpcRoot(std::unique_ptr<TSpcObject>& spc) {
  FRootVariable = &spc;
  FKeptRoot = nullptr;
  FFreeMode = false;
}

void TSpcEditor::SetSpcRoot(TSpcObject& spc) {
  FRootVariable = nullptr;
  FKeptRoot = &spc;
  FFreeMode = false;
}

TSpcObject* TSpcEditor::SpcRoot() const {
  return FRootVariable != nullptr ? FRootVariable->get() : FKeptRoot;
}

TPersistent* TSpcEditor::GetUpdatingSpc() const {
  if (FFreeMode) return FFreeInstance;
  return FClone != nullptr ? FClone.get() : SpcRoot();
}

void TSpcEditor::CheckInit() const {
  const bool given = FFreeMode ? FFreeInstance != nullptr : SpcRoot() != nullptr;
  if (!given) throw ESpcEditorError(LocaleStr(sSpcNotGiven));
  if (HasInitData()) return;
  if (InsidePackage()) throw ESpcEditorError(LocaleStr(sInitDataNeeded));
  InitByDefault();
}

void TSpcEditor::ShowTree(std::unique_ptr<TSpcObject>& spc) {
  SetSpcRoot(spc);
  ShowTree();
}

void TSpcEditor::ShowTree() {
  if (!FFreeMode) DoShowTree();
}

void TSpcEditor::ShowTreeEx(TPersistent* instance) {
  FFreeMode = true;
  FFreeInstance = instance;
  DoShowTree();
}

TSpcForm* TSpcEditor::MakeForm() {
  return NewForm<TSpcForm>(nullptr, *this);
}

std::unique_ptr<TPersistent> TSpcEditor::MakeClone(const TSpcObject& root) {
  auto clone = root.GetClassInfo().Make();
  if (clone != nullptr) CopyProps(root, *clone);
  if (auto* spc = dynamic_cast<TSpcObject*>(clone.get())) OnCreateSpc(this, spc);
  return clone;
}

// The clone knows nothing of what the editor does not show: that stays as it is.
void TSpcEditor::UpdateSpc() {
  if (FClone != nullptr) TObjectImage(*FClone, LeavesOut()).Restore(*SpcRoot());
}

void TSpcEditor::DoShowTree() {
  CheckInit();
  if (FForm != nullptr && FForm->isVisible() && !Release()) return FForm->Restore();
  FClosing = false;
  if (FForm == nullptr) FForm = MakeForm();
  FShown = FSaved = false;
  FJournal.Clear();
  FClone = FFreeMode ? nullptr : MakeClone(*SpcRoot());
  TreeChanged();
  SetCaption();
  if (FormOptions.Contains(foModalShowing)) {
    if (!FForm->isVisible()) FForm->ShowModal();
    return;
  }
  FForm->Restore();
  FForm->Show();
}

// The tree is another one: everything that was known of the old one goes.
void TSpcEditor::TreeChanged() {
  FBuilding = true;
  ClearRows();
  FForm->Tree().Model().SetTop(nullptr);
  try {
    BuildTree();
  } catch (...) {
    FBuilding = false;
    throw;
  }
  FBaseline.SetDefaults(RootDefaults());
  PrepareBaseline(FBaseline);
  SetBaseline();
  FSearch.SetTree(FTop.get());
  FForm->Tree().Model().SetTop(FTop.get());
  FBuilding = false;
  SelectStartNode();
}

void TSpcEditor::SetBaseline() {
  FInvisible.Assign(*InvisibleProps);
  FBaseline.Store(*GetUpdatingSpc(), LeavesOut());
  CountAllChanges();
}

bool TSpcEditor::Changed() const {
  const TObjectImage* stored = FBaseline.StoredRoot();
  return stored != nullptr && GetUpdatingSpc() != nullptr && !stored->Matches(*GetUpdatingSpc());
}

bool TSpcEditor::CanNodeDefaultSelect(TTreeView& treeView) {
  bool selectFirst = true;
  OnSelectStartNode(this, &treeView, selectFirst);
  return selectFirst;
}

void TSpcEditor::SelectStartNode() {
  TTreeNode* root = RootNode();
  if (!CanNodeDefaultSelect(FForm->Tree()) || root == nullptr) return;
  FForm->Tree().Fold(*root, true, false);
  SelectNode(root);
  ShowTopItem();
}

bool TSpcEditor::Release() {
  if (!SaveChanges()) return false;
  DoRelease();
  return true;
}

void TSpcEditor::DoRelease() {
  FBuilding = true;
  ClearRows();
  if (FForm != nullptr) FForm->Tree().Model().SetTop(nullptr);
  FSelected = nullptr;
  FNodes.clear();
  FSearch.SetTree(nullptr);
  FTop.reset();
  FClone.reset();
  FBaseline.Clear();
  FJournal.Clear();
  FBuilding = false;
}

void TSpcEditor::SetCaption() {
  if (FForm == nullptr) return;
  if (!FormCaption.empty()) return FForm->SetCaption(FormCaption);
  if (!FFreeMode) return FForm->SetCaption(LocaleFormat(sSpcCaption, FFileName));
  const TBaseClassIdent ident = GetInitData().GetInstanceID(FFreeInstance);
  const int prefix = ident == ciCollection  ? sCollectionCaption
                     : ident == ciComponent ? sComponentCaption
                                            : sObjectCaption;
  FForm->SetCaption(LocaleStr(prefix) + RootText());
}

// Labels and names of values stand in the plans of the classes and in the rows.
void TSpcEditor::Retranslate() {
  if (FForm == nullptr || FTop == nullptr) return;
  StoreRows();
  FPlans.clear();
  FForm->Tree().ChangeNodes([this] { RenewTexts(*RootNode()); });
  FSearch.SetTree(FTop.get());
  FForm->Retranslate();
  SetCaption();
  RebuildControls();
}

void TSpcEditor::ListChanged(TObject* sender) {
  if (ComponentState().Contains(csDesigning)) return;
  struct TMirror {
    const TStringList& List;
    TIniStrings& Ini;
  };
  const TMirror mirrors[] = {{*ControlParams, FControlIni},
                             {*RedefiedParams, FRedefiedIni},
                             {*TranslatingTable, FTranslations}};
  for (const TMirror& mirror : mirrors)
    if (&mirror.List == sender) PrepareParams(mirror.Ini, mirror.List);
}

void TSpcEditor::PrepareParams(TIniStrings& ini, const TStrings& lines) {
  ini.UnSort();
  ini.SetStrings(lines);
  ini.Sort();
}

void TSpcEditor::SetTreeFont(TFont* font) {
  if (font == nullptr) return;
  FTreeFont->Assign(font);
  FHasTreeFont = true;
}

void TSpcEditor::SetHeaderFont(TFont* font) {
  if (font == nullptr) return;
  FHeaderFont->Assign(font);
  FHasHeaderFont = true;
}

}  // namespace wrenfold
