// The unit manager's window: what it does to the pages of the code editor.
#include <QLineEdit>
#include <algorithm>
#include <utility>

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

const TUnitList::TItem& TUnitForm::Item(int index) const {
  return FUnits.Items()[static_cast<std::size_t>(index)];
}

void TUnitForm::RefreshSourceEditors() {
  GetOpenedSourceEditors(FSourceEditors, false);
  std::vector<TEditorIndex::TEditor> editors;
  editors.reserve(FSourceEditors.size());
  for (const auto& editor : FSourceEditors)
    editors.push_back({editor->GetFileName(), editor->GetEditViewCount(), editor->GetModified()});
  FEditorIndex.Assign(editors);
}

TUnitMarks TUnitForm::MarksOf(int index) const {
  const bool isActive = FTabControl && FTabControl->TabIndex() == Item(index).TabPosition;
  return {isActive, FEditorIndex.IsModified(TextOf(index))};
}

int TUnitForm::FindTab(const TUnitList::TItem& item) const {
  return FTabControl ? TUnitList::FindTab(item, *FTabControl->Tabs()) : -1;
}

bool TUnitForm::IsStale(const TSelUnits& indices) const {
  return std::ranges::any_of(indices, [this](int index) { return FindTab(Item(index)) < 0; });
}

void TUnitForm::DoFillUnitList() {
  FNarrowed = false;
  RefreshSourceEditors();
  FUnits.PopulateUnitList(*FTabControl->Tabs());
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
  TSelUnits rows;
  for (const QItemSelectionRange& range : selection->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  FUnits.SetSelected(std::move(rows));
  FUnits.SetCurrent(selection->currentIndex().row());
}

void TUnitForm::ShowUnitsInList() {
  FListModel->Reset();
  QItemSelection selection;
  const TSelUnits& rows = FUnits.GetSelectedUnits();
  for (std::size_t from = 0, to = 0; from < rows.size(); from = to) {
    while (to < rows.size() && rows[to] - rows[from] == static_cast<int>(to - from)) ++to;
    selection.append(
        QItemSelectionRange(FListModel->index(rows[from]), FListModel->index(rows[to - 1])));
  }
  QItemSelectionModel* model = FListBox->selectionModel();
  model->select(selection, QItemSelectionModel::ClearAndSelect);
  if (FUnits.GetSelectedUnit() >= 0)
    model->setCurrentIndex(FListModel->index(FUnits.GetSelectedUnit()),
                           QItemSelectionModel::NoUpdate);
  UpdateCaption();
  FormActions()->UpdateActions();
}

void TUnitForm::OpenUnit() {
  TakeSelection();
  const int index = FUnits.GetSelectedUnit();
  if (index < 0) return;
  if (IsStale({index})) FillUnitList();
  else OpenSelectedUnit(index, !FEditorIndex.HasDublicate(TextOf(index)));
  FListBox->viewport()->update();
  FocusList();
}

// The code editor window takes part only while it switches pages.
void TUnitForm::OpenSelectedUnit(int index, bool byEditor) {
  const TFormTakesPart editWindow(FormOf(FEditor));
  if (!byEditor) return ActivateTab(FindTab(Item(index)));
  const int editor = FEditorIndex.FindSourceEditor(TextOf(index));
  if (editor >= 0) FSourceEditors[static_cast<std::size_t>(editor)]->Show();
}

// As a user's click on the tab does.
void TUnitForm::ActivateTab(int tab) {
  if (!FTabControl || tab < 0) return;
  FTabControl->SetTabIndex(tab);
  FTabControl->Change();
  if (FEditor) FEditor->setFocus();
}

bool TUnitForm::HasDublicate(const TSelUnits& pending) const {
  return std::ranges::any_of(
      pending, [this](int index) { return FEditorIndex.HasDublicate(TextOf(index)); });
}

bool TUnitForm::HasProjectModule(const TSelUnits& pending) const {
  const auto project = GetActiveProject();
  if (!project) return false;
  const std::string name = ExtractFileNameEx(project->GetFileName());
  return std::ranges::any_of(pending, [&](int index) { return EqualText(TextOf(index), name); });
}

void TUnitForm::CloseUnits() {
  if (FClosing.IsClosing()) return;
  TakeSelection();
  const TSelUnits pending = FUnits.GetSelectedUnits();
  if (IsStale(pending)) return PagesClosed();
  std::vector<TUnitList::TItem> pages;
  for (const int index : pending) pages.push_back(Item(index));
  if (HasDublicate(pending) || HasProjectModule(pending)) FClosing.CloseOneByOne(std::move(pages));
  else FClosing.CloseAtOnce(std::move(pages));
}

void TUnitForm::CloseByModule(const TUnitList::TItem& page) {
  const int editor = FEditorIndex.FindSourceEditor(page.Text);
  if (editor < 0) return;
  const TIntf<IOTASourceEditor> held =
      std::exchange(FSourceEditors[static_cast<std::size_t>(editor)], nullptr);
  FEditorIndex.Remove(page.Text);
  const TIntf<IOTAModule> module(held->GetModule());
  if (module) module->Close();
}

void TUnitForm::CloseByEditor(const TUnitList::TItem& page) {
  const int tab = FindTab(page);
  if (tab < 0) return;
  {
    const TFormTakesPart editWindow(FormOf(FEditor));
    ActivateTab(tab);
  }
  CloseOpenedUnit();
}

void TUnitForm::PagesClosed() {
  FillUnitList();
  FocusList();
}

// Also while the user is in another program the question stays open.
bool TUnitForm::ConfirmWindowOpen() const {
  const TForm* modal = FormOf(QApplication::activeModalWidget());
  return GetActiveForm("Confirm") != nullptr ||
         (modal != nullptr && EqualText(modal->Caption(), "Confirm"));
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
  const std::string text(Trim(FromQString(FFilterBox->currentText())));
  if (!text.empty()) SaveHistory(text);
  NarrowUnits(text);
  if (!FManager->JumpToUnitsOnApllyFilter || FUnits.Count() == 0) return;
  TSelUnits selected = FUnits.GetSelectedUnits();
  selected.push_back(FUnits.GetSelectedUnit());
  FUnits.SetSelected(std::move(selected));
  ShowUnitsInList();
  FocusList();
}

void TUnitForm::NarrowUnits(const std::string& filter) {
  TakeSelection();
  if (FUnits.Filtered && FindEditWindowControls()) FUnits.PopulateUnitList(*FTabControl->Tabs());
  if (filter.empty()) FillUnitList();
  else FUnits.UpdateUnitList(filter);
  FUnits.Filtered = FNarrowed = !filter.empty();
  FFilter = filter;
  if (FUnits.Count() > 0) {
    TSelUnits selected = FUnits.GetSelectedUnits();
    std::erase(selected, FUnits.GetSelectedUnit());
    FUnits.SetSelected(std::move(selected));
    FUnits.SetCurrent(0);
  }
  ShowUnitsInList();
}

void TUnitForm::FilterTyped(const QString& text) {
  NarrowUnits(std::string(Trim(FromQString(text))));
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
  if (FClosing.IsClosing() || !FindEditWindowControls() || !FUnits.Sort()) return;
  AssignItems();
  FUnits.SetSelected({FTabControl->TabIndex()});
  FUnits.SetCurrent(FTabControl->TabIndex());
  ShowUnitsInList();
}

void TUnitForm::MoveItems(int delta) {
  TakeSelection();
  if (FClosing.IsClosing() || !FindEditWindowControls() || !FUnits.Move(delta)) return;
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

// Below the last item there is none that could become the current one.
bool TUnitForm::DragOver(int target) {
  TakeSelection();
  if (!FUnits.AcceptsDrop(target)) return false;
  if (target < FUnits.Count())
    FListBox->selectionModel()->setCurrentIndex(FListModel->index(target),
                                                QItemSelectionModel::NoUpdate);
  return true;
}

void TUnitForm::DropUnits(int target) {
  TakeSelection();
  const int dragStart = FUnits.GetFirstSelected();
  if (FUnits.GetSelectedUnit() < 0 || dragStart < 0 || !FUnits.AcceptsDrop(target)) return;
  FListBox->selectionModel()->setCurrentIndex(FListModel->index(dragStart),
                                              QItemSelectionModel::NoUpdate);
  MoveItems(FUnits.DropDelta(dragStart, target));
}

void TUnitForm::FocusEditor() {
  QWidget* target = FEditor ? FEditor.data() : FHeldForms.ActiveBefore();
  if (target == nullptr) target = Application().MainForm();
  if (target == nullptr) return;
  target->window()->activateWindow();
  target->setFocus();
}

}  // namespace wrenfold
