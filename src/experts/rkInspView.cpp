// The form list as an expert: what it takes of the environment and gives back.
#include "experts/rkInspView.h"

#include <QBoxLayout>
#include <algorithm>

#include "experts/rkFormView.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr char InspectorName[] = "PropertyInspector";
constexpr char CloseAllName[] = "FileCloseAllCommand";

// The private messages; WParam says more where noted.
enum TInspectorMessage : std::uint32_t {
  imBuild = 0xC006,
  imShowPanel = 0xC007,  // shown when not zero
  imUpdateWanted = 0xC008,
  imRefresh = 0xC009,
  imActiveForm = 0xC00A,
  imFollowAgain = 0xC00B,
};

enum TMenuTag : int {
  mtLine,
  mtDisplayPanel,
  mtProjectOnly,
  mtReturnFocus,
  mtSelectForm,
  mtSelectParent,
  mtShowForm
};

// From the top of the inspector's menu.
struct TMenuRow {
  const char* Name;
  int CaptionId;
  TMenuTag Tag;
};
constexpr TMenuRow MenuRows[] = {
    {"miDisplayPanel", sDisplayPanel, mtDisplayPanel},
    {"miProjectFormsOnly", sProjectFormsOnly, mtProjectOnly},
    {"miReturnFocus", sReturnFocus, mtReturnFocus},
    {"miLineSettings", 0, mtLine},
    {"miSelectParent", sSelectParent, mtSelectParent},
    {"miSelectForm", sSelectForm, mtSelectForm},
    {"miLineSelect", 0, mtLine},
    {"miShowForm", sShowForm, mtShowForm},
    {"miLineShow", 0, mtLine},
};

struct TShownList : TObject {
  TIntf<IOTAEditor> Chosen;
  bool Focused = false;
};

TAction* FindCloseAllAction() {
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  TActionList* list = services ? services->GetActionList() : nullptr;
  if (list == nullptr) return nullptr;
  for (TAction* action : list->Actions())
    if (action->Name() == CloseAllName) return action;
  return nullptr;
}

}  // namespace

const TTypeInfo& TInspectorViewMng::ClassInfo() {
  static const TTypeInfo info =
      Publish<TInspectorViewMng>("TInspectorViewMng", TSharedManager::ClassInfo())
          .Prop("DisplayPanel", &TInspectorViewMng::DisplayPanel,
                &TInspectorViewMng::SetDisplayPanel)
          .Label(sLabelDisplayPanel)
          .Prop("ProjectFormsOnly", &TInspectorViewMng::ProjectFormsOnly,
                &TInspectorViewMng::SetProjectFormsOnly)
          .Label(sLabelProjectFormsOnly)
          .Prop("ReturnFocus", &TInspectorViewMng::ReturnFocus, &TInspectorViewMng::SetReturnFocus)
          .Label(sLabelReturnFocus)
          .Prop("AutoShowForm", &TInspectorViewMng::AutoShowForm)
          .Label(sLabelAutoShowForm);
  return info;
}

TInspectorViewMng::TInspectorViewMng()
    : FWindow(TWndMethod::Bind<&TInspectorViewMng::WndProc>(this)) {
  AddStoredData(this, "InspectorFormViewData", LocaleStr(sInspectorViewExpert),
                MakePropNames(ClassInfo()));
  for (TForm* form : Screen().Forms())
    if (form->Name() == InspectorName && FInspector.isNull()) FInspector = form;
  SetUpdated(true);
}

TInspectorViewMng::~TInspectorViewMng() {
  SetUpdated(false);
}

std::unique_ptr<TObject> TInspectorViewMng::CloseWindows() {
  if (FCombo.isNull()) return nullptr;
  auto list = std::make_unique<TShownList>();
  list->Chosen = TIntf<IOTAEditor>(ChosenEditor());
  list->Focused = FCombo->hasFocus();
  return list;
}

void TInspectorViewMng::ReopenWindows(const TObject& windows) {
  const auto& list = dynamic_cast<const TShownList&>(windows);
  BuildControls();
  if (FCombo.isNull()) return;
  ChooseEntry(list.Chosen.get());
  if (list.Focused) FCombo->setFocus();
}

void TInspectorViewMng::SetUpdated(bool updated) {
  const auto services = Supports<IOTAServices>(BorlandIDEServices);
  if (updated) {
    if (auto* inspector = static_cast<TForm*>(FInspector.data()))
      FInspectorDestroy.Hook(inspector, inspector->OnDestroy,
                             [this](TObject* sender) { InspectorFormDestroy(sender); });
    if (TAction* closeAll = FindCloseAllAction())
      FCloseAll.Hook(closeAll, closeAll->OnExecute,
                     [this](TObject* sender) { CloseAllActionExecute(sender); });
    FNotifier = TIntf<TIDENotifier>(new TIDENotifier(*this));
    if (services) FNotifierIndex = services->AddNotifier(FNotifier.get());
    if (FInspector) FWindow.PostMessage(imBuild);
    return;
  }
  FNotifier->Detach();
  if (services && FNotifierIndex >= 0) services->RemoveNotifier(FNotifierIndex);
  FActiveFormChange.Unhook();
  FCloseAll.Unhook();
  FInspectorDestroy.Unhook();
  RemoveControls();
}

void TInspectorViewMng::SetDisplayPanel(bool display) {
  if (display == FDisplayPanel) return;
  FDisplayPanel = display;
  FWindow.PostMessage(imShowPanel, display ? 1 : 0);
}

void TInspectorViewMng::SetProjectFormsOnly(bool projectOnly) {
  if (projectOnly == FProjectFormsOnly) return;
  FProjectFormsOnly = projectOnly;
  if (FCombo) FillFormCombo();
}

void TInspectorViewMng::WndProc(TMessage& message) {
  switch (message.Msg) {
    case imBuild:
      return BuildControls();
    case imShowPanel:
      if (FPanel) FPanel->setVisible(message.WParam != 0);
      return;
    case imUpdateWanted:
      FUpdateWanted = true;
      return RefreshWhenQuiet();
    case imRefresh:
      return FillFormCombo();
    case imActiveForm:
      FMayPost = true;
      FLastPosted = Screen().ActiveForm();
      RefreshWhenQuiet();
      if (std::exchange(FFollow, true)) SetActiveForm();
      return;
    case imFollowAgain:
      FFollow = true;
      return;
    default:
      TMessageWindow::DefaultHandler(message);
  }
}

void TInspectorViewMng::BuildControls() {
  if (FInspector.isNull() || FPanel) return;
  const QPointer<QWidget> active = Screen().ActiveControl();
  CreatePanel();
  AddMenuItems();
  FillFormCombo();
  SetActiveForm();
  if (active && active->isVisible()) active->setFocus();
  FActiveFormChange.Hook(nullptr, Screen().OnActiveFormChange, [this](TObject* sender) {
    FActiveFormChange.CallBefore(sender);
    DoSetActiveForm(Screen().ActiveForm());
  });
}

// Where the environment has a place for it, else on top of the inspector.
QWidget* TInspectorViewMng::CreatePanel() {
  auto* inspector = static_cast<TForm*>(FInspector.data());
  QWidget* place = WidgetOf(inspector->FindComponent(InspectorTopPlace));
  FPanel = new QWidget(place != nullptr ? place : inspector);
  FPanel->setObjectName("FormListPanel");
  auto* row = new QHBoxLayout(FPanel);
  row->setContentsMargins(4, 2, 4, 2);  // as wide as the list of components below
  FCombo = new QComboBox;
  FCombo->setObjectName("FormCombo");
  FCombo->setAccessibleName(ToQString(LocaleStr(sInspectorViewExpert)));
  FCombo->setToolTip(ToQString(LocaleStr(sInspectorViewExpert)));
  FCombo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  FCombo->setMinimumContentsLength(8);
  row->addWidget(FCombo);
  QObject::connect(FCombo, &QComboBox::activated, FCombo,
                   [this] { Guarded(nullptr, [this] { FormComboChange(); }); });
  if (place == nullptr)
    if (auto* column = qobject_cast<QBoxLayout*>(inspector->layout()))
      column->insertWidget(0, FPanel);
  FPanel->setVisible(FDisplayPanel);
  return FPanel;
}

void TInspectorViewMng::RemoveControls() {
  RemoveMenuItems();
  ReleaseEntries();
  delete FPanel.data();
}

void TInspectorViewMng::AddMenuItems() {
  FMenu = static_cast<TForm*>(FInspector.data())->PopupMenu();
  if (FMenu == nullptr) return;
  FPopup.Hook(FMenu, FMenu->OnPopup, [this](TObject* sender) { MenuPopup(sender); });
  int index = 0;
  for (const TMenuRow& row : MenuRows) {
    auto* item = new TMenuItem(nullptr);
    item->SetName(row.Name);
    item->Tag = row.Tag;
    item->SetCaption(row.Tag == mtLine ? "-" : LocaleStr(row.CaptionId));
    if (row.Tag != mtLine) Bind<&TInspectorViewMng::MenuClick>(item->OnClick, this);
    FMenu->Items()->Insert(index++, item);
    FMenuItems.push_back(item);
  }
}

// The menu destroys its items with itself.
void TInspectorViewMng::RemoveMenuItems() {
  const bool menuLives = FPopup.IsHooked();
  FPopup.Unhook();
  if (menuLives)
    for (TMenuItem* item : FMenuItems) delete item;
  FMenuItems.clear();
  FMenu = nullptr;
}

void TInspectorViewMng::MenuPopup(TObject* sender) {
  for (TMenuItem* item : FMenuItems) {
    if (item->Tag == mtDisplayPanel) item->SetChecked(FDisplayPanel);
    if (item->Tag == mtProjectOnly) item->SetChecked(FProjectFormsOnly);
    if (item->Tag == mtReturnFocus) item->SetChecked(FReturnFocus);
  }
  FPopup.CallBefore(sender);
}

void TInspectorViewMng::MenuClick(TObject* sender) {
  switch (static_cast<TMenuItem*>(sender)->Tag) {
    case mtDisplayPanel:
      return SetDisplayPanel(!FDisplayPanel);
    case mtProjectOnly:
      return SetProjectFormsOnly(!FProjectFormsOnly);
    case mtReturnFocus:
      return SetReturnFocus(!FReturnFocus);
    case mtSelectParent:
      return SelectParent();
    case mtSelectForm:
      ShowForm();
      return ShowIfForced();
    case mtShowForm:
      FormComboChange();
      return ShowForm();
    default:
      return;
  }
}

void TInspectorViewMng::InspectorFormDestroy(TObject* sender) {
  FActiveFormChange.Unhook();
  RemoveControls();
  FInspectorDestroy.CallBefore(sender);
}

void TInspectorViewMng::CloseAllActionExecute(TObject* sender) {
  FCloseAll.CallBefore(sender);
  FillFormCombo();
}

void TInspectorViewMng::FormListChanged() {
  FWindow.PostMessage(imUpdateWanted);
}

void TInspectorViewMng::FormActivated(TComponent* root) {
  DoSetActiveForm(root);
}

void RegisterInspectorView() {
  RegisterExpClass(TInspectorViewMng::ClassInfo(), 2, "InspectorFormView", sInspectorViewExpert);
}

}  // namespace wrenfold
