// The unit manager's window: what it does to the pages of the code editor.
#include <QLineEdit>

#include "experts/rkUnitForm.h"
#include "experts/rkUnitListBox.h"
#include "ide/rkCrtlUtils.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

TTabControl* FindEditorTabControl() {
  return dynamic_cast<TTabControl*>(GetEditorFormComponent("TabControl"));
}

bool TUnitForm::FindEditWindowControls() {
  FTabControl = FindEditorTabControl();
  TComponent* owner = FTabControl ? FTabControl->Owner() : nullptr;
  FEditor = owner != nullptr ? WidgetOf(owner->FindComponent("Editor")) : nullptr;
  return !FTabControl.isNull();
}

const std::string& TUnitForm::TextOf(int index) const {
  return FUnits.Items()[static_cast<std::size_t>(index)].Text;
}

void TUnitForm::RefreshSourceEditors() {
  GetOpenedSourceEditors(FSourceEditors, false);
  std::vector<TEditorIndex::TEditor> editors;
  editors.reserve(FSourceEditors.size());
  for (const auto& editor : FSourceEditors)
    editors.push_back({editor->GetFileName(), editor->GetEditViewCount()});
  FEditorIndex.Assign(editors);
}

void TUnitForm::DoFillUnitList() {
  RefreshSourceEditors();
  FUnits.Populate(*FTabControl->Tabs());
  FUnits.SetCurrent(FTabControl->TabIndex());
  FUnits.SetSelected({FTabControl->TabIndex()});
}

void TUnitForm::FillUnitList() {
  if (FindEditWindowControls()) DoFillUnitList();
  else FUnits.Clear();
  ShowUnitsInList();
}

// The list box keeps current item and selection while the user works in it.
void TUnitForm::TakeSelection() {
  const QItemSelectionModel* selection = FListBox->selectionModel();
  std::vector<int> rows;
  for (const QItemSelectionRange& range : selection->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  FUnits.SetSelected(std::move(rows));
  FUnits.SetCurrent(selection->currentIndex().row());
}

void TUnitForm::ShowUnitsInList() {
  FListModel->Reset();
  QItemSelection selection;
  const std::vector<int>& rows = FUnits.Selected();
  for (std::size_t from = 0, to = 0; from < rows.size(); from = to) {
    while (to < rows.size() && rows[to] - rows[from] == static_cast<int>(to - from)) ++to;
    selection.append(
        QItemSelectionRange(FListModel->index(rows[from]), FListModel->index(rows[to - 1])));
  }
  QItemSelectionModel* model = FListBox->selectionModel();
  model->select(selection, QItemSelectionModel::ClearAndSelect);
  if (FUnits.Current() >= 0)
    model->setCurrentIndex(FListModel->index(FUnits.Current()), QItemSelectionModel::NoUpdate);
  FormActions()->UpdateActions();
}

void TUnitForm::OpenUnit() {
  TakeSelection();
  const int index = FUnits.Current();
  if (index < 0) return;
  const int editor = FEditorIndex.Find(TextOf(index));
  const int tab = FUnits.Items()[static_cast<std::size_t>(index)].TabPosition;
  const bool byTab = FEditorIndex.IsAmbiguous(TextOf(index));
  ShowPage([&] {
    if (byTab) ActivateTab(tab);
    else if (editor >= 0) FSourceEditors[static_cast<std::size_t>(editor)]->Show();
  });
  FocusList();
}

// The code editor window takes part only while it switches pages.
void TUnitForm::ShowPage(const std::function<void()>& show) {
  const QPointer<QWidget> editWindow(FormOf(FEditor));
  const auto setEnabled = [&editWindow](bool enabled) {
    if (auto* form = dynamic_cast<TForm*>(editWindow.data())) form->SetEnabled(enabled);
  };
  setEnabled(true);
  show();
  setEnabled(false);
}

// As a user's click on the tab does.
void TUnitForm::ActivateTab(int index) {
  if (!FTabControl) return;
  FTabControl->SetTabIndex(index);
  FTabControl->Change();
  if (FEditor) FEditor->setFocus();
}

bool TUnitForm::HasDublicate(const std::vector<int>& pending) const {
  return std::ranges::any_of(pending,
                             [this](int index) { return FEditorIndex.IsAmbiguous(TextOf(index)); });
}

bool TUnitForm::HasProjectModule(const std::vector<int>& pending) const {
  const auto project = GetActiveProject();
  if (!project) return false;
  const std::string name = ExtractFileNameEx(project->GetFileName());
  return std::ranges::any_of(pending, [&](int index) { return EqualText(TextOf(index), name); });
}

void TUnitForm::CloseUnits() {
  if (IsClosing()) return;
  TakeSelection();
  const std::vector<int> pending = FUnits.Selected();
  if (!HasDublicate(pending) && !HasProjectModule(pending)) return CloseByModules(pending);
  FPending.clear();
  for (const int index : pending)
    FPending.push_back(FUnits.Items()[static_cast<std::size_t>(index)].TabPosition);
  FTimer->SetEnabled(!FPending.empty());
}

// Closing may ask the user, and answers what the user did meanwhile: the window may be closed then.
void TUnitForm::CloseByModules(const std::vector<int>& pending) {
  const QPointer<TUnitForm> self(this);
  FTicking = true;
  for (auto index = pending.rbegin(); index != pending.rend() && self; ++index) {
    const std::string name = TextOf(*index);
    const int editor = FEditorIndex.Find(name);
    if (editor < 0) continue;
    const TIntf<IOTASourceEditor> held =
        std::exchange(FSourceEditors[static_cast<std::size_t>(editor)], nullptr);
    FEditorIndex.Remove(name);
    const TIntf<IOTAModule> module(held->GetModule());
    if (module) module->Close();
    Application().ProcessMessages();
  }
  if (!self) return;
  FTicking = false;
  FillUnitList();
  FocusList();
}

bool TUnitForm::ConfirmWindowOpen() const {
  return GetActiveForm("Confirm") != nullptr;
}

// Closing a page may ask the user, which lets the timer tick on: a tick inside a tick waits, so
// that no second page is closed before the question about the first one is answered.
void TUnitForm::TimerTimer(TObject*) {
  if (FTicking || ConfirmWindowOpen()) return;
  if (FPending.empty()) {
    FTimer->SetEnabled(false);
    FillUnitList();
    return FocusList();
  }
  const QPointer<TUnitForm> self(this);
  FTicking = true;
  const int tab = FPending.back();
  FPending.pop_back();
  ShowPage([this, tab] { ActivateTab(tab); });
  CloseOpenedUnit();
  Application().ProcessMessages();
  if (self) FTicking = false;
}

// The environment fills the editor's menu when it opens for the first time.
void TUnitForm::CloseOpenedUnit() {
  TControl* editor = ControlOf(FEditor);
  if (editor == nullptr) return;
  TPopupMenu* menu = editor->PopupMenu();
  if (menu != nullptr && menu->Items()->Count() == 0) menu->OnPopup(menu);
  auto* item = dynamic_cast<TMenuItem*>(editor->FindComponent("ecClosePage"));
  if (item != nullptr) item->Click();
}

void TUnitForm::FilterUnits() {
  TakeSelection();
  if (FUnits.Filtered && FindEditWindowControls()) FUnits.Populate(*FTabControl->Tabs());
  const std::string text(Trim(FromQString(FFilterBox->currentText())));
  if (text.empty()) {
    FillUnitList();
  } else {
    SaveHistory(text);
    FUnits.DropOthers(text);
  }
  FUnits.Filtered = !text.empty();
  if (FUnits.Count() > 0) {
    std::vector<int> selected = FUnits.Selected();
    std::erase(selected, FUnits.Current());
    FUnits.SetSelected(std::move(selected));
    FUnits.SetCurrent(0);
  }
  const bool jump = FManager->JumpToUnitsOnApllyFilter && FUnits.Count() > 0;
  if (jump) {
    std::vector<int> selected = FUnits.Selected();
    selected.push_back(FUnits.Current());
    FUnits.SetSelected(std::move(selected));
  }
  ShowUnitsInList();
  if (jump) FocusList();
}

// The text in the box stays what the user typed.
void TUnitForm::SaveHistory(const std::string& text) {
  std::vector<std::string> history;
  for (int i = 0; i < FFilterBox->count(); ++i)
    history.push_back(FromQString(FFilterBox->itemText(i)));
  wrenfold::SaveHistory(history, text, FManager->HistoryStoredCount);
  const QString typed = FFilterBox->currentText();
  FFilterBox->clear();
  for (const std::string& line : history) FFilterBox->addItem(ToQString(line));
  FFilterBox->setEditText(typed);
}

void TUnitForm::SortUnits() {
  if (IsClosing() || !FindEditWindowControls() || !FUnits.Sort()) return;
  AssignItems();
  FUnits.SetSelected({FTabControl->TabIndex()});
  FUnits.SetCurrent(FTabControl->TabIndex());
  ShowUnitsInList();
}

void TUnitForm::MoveItems(int delta) {
  TakeSelection();
  if (IsClosing() || !FindEditWindowControls() || !FUnits.Move(delta)) return;
  AssignItems();
  ShowUnitsInList();
}

// A list that is no longer the mirror of the tabs must not be written over them.
void TUnitForm::AssignItems() {
  if (FTabControl->Tabs()->Count() != FUnits.Count()) return DoFillUnitList();
  TStringList arranged;
  const int active = FUnits.ArrangeTabs(*FTabControl->Tabs(), FTabControl->TabIndex(), arranged);
  FTabControl->SetTabs(&arranged);
  FTabControl->SetTabIndex(active);
}

void TUnitForm::DropUnits(int target) {
  TakeSelection();
  const int dragStart = FUnits.FirstSelected();
  if (FUnits.Current() < 0 || dragStart < 0 || !FUnits.AcceptsDrop(target)) return;
  FListBox->selectionModel()->setCurrentIndex(FListModel->index(dragStart),
                                              QItemSelectionModel::NoUpdate);
  MoveItems(FUnits.DropDelta(dragStart, target));
}

void TUnitForm::HoldForms() {
  FActiveBefore = Screen().ActiveControl();
  for (TForm* form : Screen().Forms()) {
    if (form == this) continue;
    FHeldForms.push_back({form, form->Enabled()});
    form->SetEnabled(false);
  }
}

void TUnitForm::GiveFormsBack() {
  for (const THeldForm& held : std::exchange(FHeldForms, {}))
    if (auto* form = dynamic_cast<TForm*>(held.Form.data())) form->SetEnabled(held.Enabled);
}

void TUnitForm::FocusEditor() {
  QWidget* target = FEditor ? FEditor.data() : FActiveBefore.data();
  if (target == nullptr) target = Application().MainForm();
  if (target == nullptr) return;
  target->window()->activateWindow();
  target->setFocus();
}

}  // namespace wrenfold
