// The unit manager's window: its controls, actions and settings menu.
#include "experts/rkUnitForm.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "controls/rkIcons.h"
#include "experts/rkUnitListBox.h"
#include "locale/rkLocale.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int ButtonSize = 22;

// Pictures of the window's list, by the image index of the actions.
constexpr int Pictures[] = {siExit, siOpen, siClose, siMoveUp, siMoveDown, siSort, siFilter};
enum TPicture : int { piExit, piShow, piClose, piMoveUp, piMoveDown, piSort, piFilter };

// The switches of the settings menu; a row's tag is its position, from 1.
struct TSwitch {
  const char* Name;
  int CaptionId;
  bool TUnitManager::*Setting;
};
constexpr TSwitch Switches[] = {
    {"miDragMode", sMenuDragMode, &TUnitManager::DragModeAllowed},
    {"miCloseForm", sMenuCloseFormOnShow, &TUnitManager::CloseFormOnShowUnit},
    {"miFilterPanel", sMenuFilterPanel, &TUnitManager::FilterPanelVisible},
    {"miJumpToUnits", sMenuJumpToUnits, &TUnitManager::JumpToUnitsOnApllyFilter},
};
enum TSwitchTag : int { stDragMode = 1, stCloseForm, stFilterPanel, stJumpToUnits };

// The window's own actions; those without a key setting have a fixed key.
struct TActionRow {
  const char* Name;
  int Picture;
  int HintId;
  TShortCutString TUnitManager::*ShortCut;
};
constexpr TActionRow ActionRows[] = {
    {"acShow", piShow, sHintOpenUnit, &TUnitManager::ShowUnitShortCut},
    {"acClose", piClose, sHintCloseUnits, &TUnitManager::CloseUnitShortCut},
    {"acMoveUp", piMoveUp, sHintMoveUnits, &TUnitManager::MoveUpUnitShortCut},
    {"acMoveDown", piMoveDown, sHintMoveUnits, &TUnitManager::MoveDownUnitShortCut},
    {"acSort", piSort, sHintSortUnits, &TUnitManager::SortUnitsShortCut},
    {"acFilter", piFilter, sHintApplyFilter, &TUnitManager::FilterUnitsShortCut},
};

}  // namespace

const TTypeInfo& TUnitForm::ClassInfo() {
  static const TTypeInfo info = Publish<TUnitForm>("TUnitForm", TSharedForm::ClassInfo());
  return info;
}

TUnitForm::TUnitForm(TComponent* owner, TUnitManager* manager)
    : TSharedForm(owner, manager), FManager(manager), FClosing(*this), FHeldForms(*this) {
  SetBorderStyle(bsSizeToolWin);
  SetFormStyle(fsStayOnTop);
  KeyPreview = true;
  CreateActions();
  CreateControls();
  setMinimumSize(199, 173);
  resize(199, 316);
}

TUnitForm::~TUnitForm() {
  BeforeDestruction();
  FManager->HistoryList->Clear();
  for (int i = 0; i < FFilterBox->count(); ++i)
    FManager->HistoryList->Add(FromQString(FFilterBox->itemText(i)));
}

void TUnitForm::CreateActions() {
  FImages = new TImageList(this);
  FImages->SetName("Images");
  for (const int picture : Pictures) FImages->Add(SuiteIcon(picture));
  FormActions()->SetImages(FImages);
  scExit()->SetImageIndex(piExit);
  for (const TActionRow& row : ActionRows)
    AddAction(row.Name, "UnitMng", {})->SetImageIndex(row.Picture);
  AddAction("acRefresh", "UnitMng", TextToShortCut("F5"));

  using THandler = TNotifyEvent;
  const auto wire = [this](const char* name, THandler execute, THandler update) {
    TAction* action = FormActions()->FindAction(name);
    action->OnExecute = execute;
    action->OnUpdate = update;
  };
  const auto needsUnits = THandler::Bind<&TUnitForm::UpdateNeedsUnits>(this);
  const auto needsAllUnits = THandler::Bind<&TUnitForm::UpdateNeedsAllUnits>(this);
  wire("acShow", THandler::Bind<&TUnitForm::ShowClick>(this), needsUnits);
  wire("acClose", THandler::Bind<&TUnitForm::CloseClick>(this), needsUnits);
  wire("acMoveUp", THandler::Bind<&TUnitForm::MoveUpClick>(this), needsAllUnits);
  wire("acMoveDown", THandler::Bind<&TUnitForm::MoveDownClick>(this), needsAllUnits);
  wire("acSort", THandler::Bind<&TUnitForm::SortClick>(this), needsAllUnits);
  wire("acFilter", THandler::Bind<&TUnitForm::FilterClick>(this),
       THandler::Bind<&TUnitForm::UpdateFilterAction>(this));
  wire("acRefresh", THandler::Bind<&TUnitForm::RefreshClick>(this), {});
}

void TUnitForm::CreateToolBar() {
  FToolBar = new TToolBar(this, this);
  FToolBar->SetName("ToolBar");
  FToolBar->SetImages(FImages);
  FToolBar->setIconSize(QSize(16, 16));
  FToolBar->setMovable(false);
  FToolBar->setContentsMargins(0, 0, 0, 0);
  FToolBar->layout()->setContentsMargins(0, 0, 0, 0);
  FToolBar->layout()->setSpacing(0);
  TToolButton* exit = FToolBar->AddButton(scExit());
  exit->SetName("tbExit");
  Bind<&TUnitForm::ExitMouseDown>(exit->OnMouseDown, this);
  exit->installEventFilter(this);
  constexpr const char* groups[][3] = {
      {"acShow", "acClose"}, {"acMoveUp", "acMoveDown"}, {"acSort", "acFilter"}};
  for (const auto& group : groups) {
    FToolBar->AddSeparator();
    for (const char* name : group)
      if (name != nullptr)
        FToolBar->AddButton(FormActions()->FindAction(name))
            ->SetName("tb" + std::string(name).substr(2));
  }
  // All of them fit into the narrowest window.
  for (int i = 0; i < FToolBar->ButtonCount(); ++i)
    if (FToolBar->Buttons(i)->Style() != tbsSeparator)
      FToolBar->Buttons(i)->setFixedSize(ButtonSize, ButtonSize);
}

void TUnitForm::CreateControls() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  CreateToolBar();
  layout->addWidget(FToolBar);

  FFilterPanel = new QWidget(this);
  FFilterPanel->setObjectName("FilterPanel");
  auto* panelLayout = new QVBoxLayout(FFilterPanel);
  panelLayout->setContentsMargins(2, 0, 2, 0);
  FFilterBox = new QComboBox(FFilterPanel);
  FFilterBox->setObjectName("FilterBox");
  FFilterBox->setEditable(true);
  FFilterBox->setInsertPolicy(QComboBox::NoInsert);
  FFilterBox->setCompleter(nullptr);
  FFilterBox->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  FFilterBox->lineEdit()->setObjectName("FilterEdit");
  FFilterBox->installEventFilter(this);
  FFilterBox->lineEdit()->installEventFilter(this);
  const auto narrow = [this](const QString& text) { Guarded(this, [&] { FilterTyped(text); }); };
  connect(FFilterBox->lineEdit(), &QLineEdit::textEdited, this, narrow);
  connect(FFilterBox, &QComboBox::textActivated, this, narrow);
  panelLayout->addWidget(FFilterBox);
  FFilterPanel->hide();
  layout->addWidget(FFilterPanel);

  FListModel = new TUnitListModel(
      FUnits, [this](int index) { return MarksOf(index); }, this);
  FListBox = new TUnitListBox(this);
  FListBox->setObjectName("UnitList");
  FListBox->setModel(FListModel);
  FListBox->installEventFilter(this);
  FListBox->viewport()->installEventFilter(this);
  FListBox->OnDragOver = [this](int target) { return DragOver(target); };
  FListBox->OnDrop = [this](int target) { DropUnits(target); };
  layout->addWidget(FListBox, 1);
}

void TUnitForm::CreateSettingsMenu() {
  FSettingsMenu = new TPopupMenu(this);
  FSettingsMenu->SetName("SettingsMenu");
  Bind<&TUnitForm::SettingsPopup>(FSettingsMenu->OnPopup, this);
  int tag = 0;
  for (const TSwitch& row : Switches) {
    auto* item = new TMenuItem(this);
    item->SetName(row.Name);
    item->SetCaption(LocaleStr(row.CaptionId));
    item->Tag = ++tag;
    Bind<&TUnitForm::SettingClick>(item->OnClick, this);
    FSettingsMenu->Items()->Add(item);
  }
  FSettingsMenu->AttachTo(FListBox);
}

QListView* TUnitForm::ListBox() const {
  return FListBox;
}

void TUnitForm::DoCreate() {
  FHeldForms.Hold();
  FillUnitList();
  CreateSettingsMenu();
  TSharedForm::DoCreate();
}

void TUnitForm::DoShow() {
  TSharedForm::DoShow();
  if (FilterPanelShown()) FFilterBox->setFocus();
  else FocusList();
}

void TUnitForm::DoClose(TCloseAction& action) {
  TSharedForm::DoClose(action);
  action = caFree;
  FClosing.Stop();
  FHeldForms.GiveBack();
  FocusEditor();
  if (FTabControl) FTabControl->Change();
}

void TUnitForm::SetProperties() {
  TSharedForm::SetProperties();
  SetDragMode(FManager->DragModeAllowed);
  FFilterBox->clear();
  for (int i = 0; i < FManager->HistoryList->Count(); ++i)
    FFilterBox->addItem(ToQString((*FManager->HistoryList)[i]));
  FFilterBox->clearEditText();

  UpdateCaption();
  FListBox->setAccessibleName(ToQString(LocaleStr(sUnitFormCaption)));
  FFilterBox->setAccessibleName(ToQString(LocaleStr(sHintApplyFilter)));
  FFilterBox->lineEdit()->setAccessibleName(FFilterBox->accessibleName());
  FFilterBox->setToolTip(ToQString(LocaleStr(sHintApplyFilter)) + " (Enter)");
  scExit()->SetHint(LocaleStr(sHintExit));
  for (const TActionRow& row : ActionRows) {
    TAction* action = FormActions()->FindAction(row.Name);
    action->SetHint(LocaleStr(row.HintId));
    action->SetShortCut(TextToShortCut(FManager->*row.ShortCut));
  }
}

void TUnitForm::GetFormData() {
  FManager->FilterPanelVisible = FilterPanelShown();
}

void TUnitForm::SetFormData() {
  UpdateFilterControl(FManager->FilterPanelVisible);
}

TUnitFormState TUnitForm::State() {
  TakeSelection();
  return {.Placement = PlacementToText(GetPlacement()),
          .Filter = FUnits.Filtered ? FFilter : std::string(),
          .Typed = FromQString(FFilterBox->currentText()),
          .FilterPanelShown = FilterPanelShown(),
          .Selected = FUnits.GetSelectedUnits(),
          .Current = FUnits.GetSelectedUnit()};
}

void TUnitForm::Restore(const TUnitFormState& state) {
  TWindowPlacement placement;
  if (TextToPlacement(state.Placement, placement)) SetPlacement(placement);
  UpdateFilterControl(state.FilterPanelShown);
  if (!state.Filter.empty()) NarrowUnits(state.Filter);
  FFilterBox->setEditText(ToQString(state.Typed));
  TSelUnits selected = state.Selected;
  std::erase_if(selected, [this](int index) { return index >= FUnits.Count(); });
  FUnits.SetSelected(std::move(selected));
  if (state.Current < FUnits.Count()) FUnits.SetCurrent(state.Current);
  ShowUnitsInList();
}

void TUnitForm::UpdateCaption() {
  const std::string caption = LocaleStr(sUnitFormCaption);
  SetCaption(FNarrowed ? LocaleFormat(sFilteredCaption, FFilter, caption) : caption);
}

// The filter in force stays in the box.
void TUnitForm::UpdateFilterControl(bool visible) {
  FManager->FilterPanelVisible = visible;
  FFilterPanel->setVisible(visible);
  if (!visible) return FocusList();
  if (FUnits.Filtered) FFilterBox->setEditText(ToQString(FFilter));
  else if (FFilterBox->count() > 0) FFilterBox->setEditText(FFilterBox->itemText(0));
  FFilterBox->setFocus();
  FFilterBox->lineEdit()->selectAll();
}

void TUnitForm::SetDragMode(bool automatic) {
  FListBox->SetDragAllowed(automatic);
}

// Opening and closing pages activates the environment's windows.
void TUnitForm::FocusList() {
  if (isVisible()) activateWindow();
  FListBox->setFocus();
}

bool TUnitForm::eventFilter(QObject* watched, QEvent* event) {
  bool taken = false;
  Guarded(this, [&] { taken = ControlEvent(watched, *event); });
  return taken || TSharedForm::eventFilter(watched, event);
}

bool TUnitForm::ControlEvent(QObject* watched, const QEvent& event) {
  const bool inList = watched == FListBox || watched == FListBox->viewport();
  const bool inBox = watched == FFilterBox || watched == FFilterBox->lineEdit();
  if (event.type() == QEvent::KeyPress && watched != FListBox->viewport()) {
    const int key = static_cast<const QKeyEvent&>(event).key();
    return inList ? ListKey(key) : inBox && FilterKey(key);
  }
  if (event.type() == QEvent::MouseButtonDblClick && watched != FListBox)
    return inList ? ListKey(Qt::Key_Return) : inBox && FilterKey(Qt::Key_Return);
  // Let go beside the button: it was no click.
  if (event.type() == QEvent::MouseButtonRelease && !inList && !inBox) {
    const QPoint place = static_cast<const QMouseEvent&>(event).position().toPoint();
    FMouseExit = FMouseExit && static_cast<QWidget*>(watched)->rect().contains(place);
  }
  return false;
}

bool TUnitForm::ListKey(int key) {
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  TAction* show = FormActions()->FindAction("acShow");
  show->Update();
  if (show->Enabled()) show->Execute();
  return true;
}

// An open drop-down list takes its keys itself.
bool TUnitForm::FilterKey(int key) {
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  FilterUnits();
  return true;
}

void TUnitForm::ExitExecute() {
  const bool byMouse = std::exchange(FMouseExit, false);
  if (FilterPanelShown() && !byMouse) UpdateFilterControl(false);
  else Close();
}

void TUnitForm::ExitMouseDown(TObject*, QMouseEvent&) {
  FMouseExit = true;
}

void TUnitForm::ShowClick(TObject*) {
  OpenUnit();
  if (FManager->CloseFormOnShowUnit) Close();
}

void TUnitForm::CloseClick(TObject*) {
  CloseUnits();
}

void TUnitForm::FilterClick(TObject*) {
  UpdateFilterControl(!FilterPanelShown());
}

void TUnitForm::RefreshClick(TObject*) {
  FillUnitList();
  FocusList();
}

void TUnitForm::UpdateNeedsUnits(TObject* sender) {
  static_cast<TAction*>(sender)->SetEnabled(FUnits.Count() > 0);
}

void TUnitForm::UpdateNeedsAllUnits(TObject* sender) {
  static_cast<TAction*>(sender)->SetEnabled(!FUnits.Filtered && FUnits.Count() > 0);
}

void TUnitForm::UpdateFilterAction(TObject* sender) {
  static_cast<TAction*>(sender)->SetEnabled(FUnits.Filtered || FUnits.Count() > 0);
}

void TUnitForm::SettingsPopup(TObject*) {
  for (TMenuItem* item : FSettingsMenu->Items()->Items())
    item->SetChecked(FManager->*Switches[item->Tag - 1].Setting);
}

void TUnitForm::SettingClick(TObject* sender) {
  const int tag = static_cast<TMenuItem*>(sender)->Tag;
  bool& setting = FManager->*Switches[tag - 1].Setting;
  setting = !setting;
  if (tag == stDragMode) SetDragMode(setting);
  if (tag == stFilterPanel) UpdateFilterControl(setting);
}

}  // namespace wrenfold
