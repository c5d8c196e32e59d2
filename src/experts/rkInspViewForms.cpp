// The form list: which forms are in it, which one is chosen, what choosing does.
#include <QGuiApplication>
#include <algorithm>
#include <map>

#include "experts/rkFormView.h"
#include "experts/rkInspView.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr std::uint32_t ActiveFormMessage = 0xC00A, FollowAgainMessage = 0xC00B;

bool SameObject(IInterface* first, IInterface* second) {
  return Supports<IInterface>(first) == Supports<IInterface>(second);
}

}  // namespace

void TInspectorViewMng::DoSetActiveForm(TComponent* component) {
  if (!std::exchange(FMayPost, false)) return;
  if (component != nullptr && component == FLastPosted) {
    FMayPost = true;
    return;
  }
  if (component != nullptr) FLastPosted = component;
  FWindow.PostMessage(ActiveFormMessage, reinterpret_cast<std::intptr_t>(component));
}

void TInspectorViewMng::ReleaseEntries() {
  for (const TEntry& entry : std::exchange(FEntries, {})) {
    entry.Notifier->Detach();
    if (entry.NotifierIndex >= 0) entry.Editor->RemoveNotifier(entry.NotifierIndex);
  }
}

// The forms that are open, under the name of the designed form; equal names get that of the unit.
void TInspectorViewMng::FillFormCombo() {
  if (FCombo.isNull()) return;
  FUpdateWanted = false;
  const TIntf<IOTAEditor> chosen(ChosenEditor());
  ReleaseEntries();
  TEditors editors;
  GetOpenedEditors(editors, mtForm, FProjectFormsOnly);
  std::map<std::string, int> counts;
  for (const auto& editor : editors) {
    TComponent* root = GetFormFromEditor(editor.get());
    ++counts[root->Name()];
    TEntry entry{editor, root->Name(), TIntf<TFormNotifier>(new TFormNotifier(*this, root))};
    entry.NotifierIndex = editor->AddNotifier(entry.Notifier.get());
    FEntries.push_back(std::move(entry));
  }
  for (TEntry& entry : FEntries)
    if (counts[entry.Name] > 1)
      entry.Name += " (" + ExtractFileNameEx(entry.Editor->GetFileName()) + ")";
  std::vector<int> order;
  for (int i = 0; i < static_cast<int>(FEntries.size()); ++i) order.push_back(i);
  const auto nameOf = [this](int i) -> auto& {
    return FEntries[static_cast<std::size_t>(i)].Name;
  };
  std::ranges::stable_sort(order,
                           [&](int a, int b) { return AnsiCompareText(nameOf(a), nameOf(b)) < 0; });
  FCombo->clear();
  for (const int index : order) FCombo->addItem(ToQString(nameOf(index)), index);
  FCombo->setCurrentIndex(-1);
  ChooseEntry(chosen.get());
  SetActiveForm();
}

// A preview opens forms for a moment: the list waits until the viewer is closed.
void TInspectorViewMng::RefreshWhenQuiet() {
  if (FUpdateWanted && !FormViewerRunning()) FillFormCombo();
}

void TInspectorViewMng::SetActiveForm() {
  if (FCombo.isNull()) return;
  const auto active = GetActiveFormEditor();
  ChooseEntry(active.get());
}

void TInspectorViewMng::ChooseEntry(IOTAEditor* editor) {
  for (int item = 0; item < FCombo->count() && editor != nullptr; ++item) {
    const auto index = static_cast<std::size_t>(FCombo->itemData(item).toInt());
    if (SameObject(FEntries[index].Editor.get(), editor)) FCombo->setCurrentIndex(item);
  }
}

IOTAEditor* TInspectorViewMng::ChosenEditor() const {
  if (FCombo.isNull() || FCombo->currentIndex() < 0) return nullptr;
  const auto index = static_cast<std::size_t>(FCombo->currentData().toInt());
  return index < FEntries.size() ? FEntries[index].Editor.get() : nullptr;
}

bool TInspectorViewMng::IsOpen(IOTAEditor* editor) const {
  TEditors editors;
  GetOpenedEditors(editors, mtForm, FProjectFormsOnly);
  return std::ranges::any_of(editors,
                             [editor](const auto& open) { return SameObject(open.get(), editor); });
}

// Following starts again with the activation that Show brings, or, where it brings none, when the
// environment has nothing more to do.
void TInspectorViewMng::FormComboChange() {
  const TIntf<IOTAEditor> editor(ChosenEditor());
  if (!editor || !IsOpen(editor.get())) return;
  FFollow = false;
  FWindow.PostMessage(FollowAgainMessage);
  editor->Show();
  FocusComboIfWanted();
}

void TInspectorViewMng::FocusComboIfWanted() {
  const bool control = QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier;
  if (FCombo.isNull() || !FDisplayPanel || (!FReturnFocus && !control)) return;
  FCombo->window()->activateWindow();
  FCombo->setFocus();
}

void TInspectorViewMng::ShowForm() {
  const auto form = Supports<IOTAFormEditor>(ChosenEditor());
  const auto designer = GetActiveFormDesigner(form.get());
  TComponent* root = form ? form->GetRootComponent() : nullptr;
  if (designer && root != nullptr) designer->SelectComponent(root);
}

void TInspectorViewMng::SelectParent() {
  const auto form = Supports<IOTAFormEditor>(ChosenEditor());
  const auto designer = GetActiveFormDesigner(form.get());
  if (!designer) return;
  const std::vector<TComponent*> selected = designer->GetSelections();
  if (selected.empty() || selected[0] == designer->GetRoot()) return;
  TComponent* parent = selected[0]->GetParentComponent();
  designer->SelectComponent(parent != nullptr ? parent : designer->GetRoot());
  ShowIfForced();
}

void TInspectorViewMng::ShowIfForced() {
  if (AutoShowForm) FormComboChange();
}

}  // namespace wrenfold
