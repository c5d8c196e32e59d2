// What the user does in the object inspector: writes edited rows into all chosen components.
#include <fmt/format.h>

#include <QKeyEvent>
#include <QToolTip>
#include <algorithm>

#include "designer/model/ItemValues.h"
#include "host/panels/PropertyDialogs.h"
#include "host/panels/PropertyEditors.h"
#include "host/panels/PropertyInspector.h"
#include "platform/core/stream/ValueTypes.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

bool IsCollection(const TInspectedRow& row) {
  return row.Item >= 0 || row.Kind == TPropertyKind::Collection;
}

// A line edit would lose the line ends of a text.
bool CanEditInRow(const TInspectedRow& row) {
  return HasInlineEditor(row) &&
         (row.Kind != TPropertyKind::Text || row.Text.find('\n') == std::string::npos);
}

// A group gives back the defaults of all its parts.
bool CanReset(const TInspectedRow& row) {
  const bool item = row.Item >= 0 && row.Inner.empty();
  return (row.Stored || row.Group) && row.Element.empty() && row.Path != NameOfComponent && !item;
}

}  // namespace

void TPropertyInspector::ComponentChosen(int index) {
  TFormDocument* document = FEditor != nullptr ? FEditor->Document() : nullptr;
  if (document == nullptr || index < 0) return;
  TComponent* chosen = &document->Root();
  if (index > 0) chosen = document->Root().Components()[static_cast<std::size_t>(index - 1)];
  FEditor->Designer().SelectComponent(chosen);
}

void TPropertyInspector::ValueEdited(QTreeWidgetItem* item, int column) {
  if (FFilling || column != 1) return;
  Put(item, FromQString(item->text(1)));
}

void TPropertyInspector::Change(
    const std::function<std::optional<std::string>(const TDesignComponent&)>& value,
    const std::string& path) {
  std::vector<TFormChange> changes;
  for (const TDesignComponent* component : Chosen())
    changes.push_back(TFormEdits::Change(*component, path, value(*component)));
  FEditor->Change(std::move(changes));
}

// Whose components stand in other files is not known here.
void TPropertyInspector::RequireComponent(const TInspectedRow& row, const std::string& name) const {
  const TDesignComponent& root = FEditor->Document()->Root();
  std::int32_t position = 0;
  const bool elsewhere =
      name.find('.') != std::string::npos || (root.FilerFlags(position) & ffInherited) != 0;
  if (name.empty() || elsewhere || EqualText(name, root.Name())) return;
  if (root.FindComponent(name) == nullptr)
    throw EConvertError(
        fmt::format("'{}' does not fit {}: expected a component of the form", name, row.Caption));
}

void TPropertyInspector::Put(QTreeWidgetItem* item, const std::string& text) {
  const TInspectedRow* shown = RowOf(item);
  if (shown == nullptr || FEditor == nullptr || FEditor->Document() == nullptr) return;
  const TInspectedRow row = *shown;
  FEditing = true;
  std::string trouble;
  try {
    const std::string typed = TypedText(row, text);
    if (row.Kind == TPropertyKind::Reference) RequireComponent(row, typed);
    Change(
        [&](const TDesignComponent& component) -> std::optional<std::string> {
          if (row.Path == NameOfComponent) return typed;
          return ValueWithText(component, row, typed);
        },
        row.Path);
  } catch (const Exception& e) {
    trouble = e.Message();
  }
  Refresh();
  FEditing = false;
  if (!trouble.empty()) Tell(item, trouble);
}

// What is wrong with the value stands at its row.
void TPropertyInspector::Tell(QTreeWidgetItem* item, const std::string& trouble) {
  FFilling = true;
  item->setToolTip(1, ToQString(trouble));
  FFilling = false;
  const QRect place = FGrid->visualItemRect(item);
  QToolTip::showText(FGrid->viewport()->mapToGlobal(place.bottomLeft()), ToQString(trouble), FGrid,
                     {}, 8000);
}

void TPropertyInspector::ItemDoubleClicked(QTreeWidgetItem* item) {
  const TInspectedRow* row = RowOf(item);
  if (row == nullptr) return;
  if (row->Kind == TPropertyKind::Event) return OpenEvent(item);
  if (row->Kind == TPropertyKind::Boolean || row->Kind == TPropertyKind::Enumeration)
    return Put(item, NextChoice(*row));
  if (row->Kind == TPropertyKind::Color) return EditValue();
  if (CanEditInRow(*row)) FGrid->editItem(item, 1);
  else if (HasDialog(*row)) EditValue();
  else item->setExpanded(!item->isExpanded());
}

void TPropertyInspector::EditValue() {
  QTreeWidgetItem* item = FGrid->currentItem();
  const TInspectedRow* row = RowOf(item);
  if (row == nullptr) return;
  if (row->Kind == TPropertyKind::Event) return OpenEvent(item);
  if (row->Kind == TPropertyKind::Font) return PutFont(*row);
  if (row->Kind == TPropertyKind::Picture) return PutPicture(*row);
  std::string text = row->Text;
  if (!HasDialog(*row)) FGrid->editItem(item, 1);
  else if (EditInDialog(this, *row, text)) Put(item, text);
}

void TPropertyInspector::PutPicture(const TInspectedRow& shown) {
  const TInspectedRow row = shown;
  const std::vector<TDesignComponent*> chosen = Chosen();
  if (chosen.empty() || FileDialogs == nullptr) return;
  std::string value(StoredPart(*chosen[0], row));
  if (!EditPicture(this, row, NotationOfForm(FEditor->FileName()), *FileDialogs, value)) return;
  Change([&](const TDesignComponent& component) { return ValueWithStored(component, row, value); },
         row.Path);
}

// The parts of a font are properties of their own and change in one stroke.
void TPropertyInspector::PutFont(const TInspectedRow& font) {
  constexpr const char* Parts[] = {".Name", ".Height", ".Style"};
  const std::string path = font.Path;
  std::string text;
  std::vector<TInspectedRow> parts;
  for (const char* part : Parts)
    for (const TInspectedRow& row : FRows)
      if (row.Path == path + part && row.Element.empty()) {
        text += (text.empty() ? "" : "|") + row.Text;
        parts.push_back(row);
      }
  if (parts.size() != std::size(Parts) || !EditInDialog(this, font, text)) return;
  const QStringList values = ToQString(text).split('|');
  std::vector<TFormChange> changes;
  for (const TDesignComponent* component : Chosen())
    for (std::size_t i = 0; i < parts.size(); ++i)
      changes.push_back(TFormEdits::Change(
          *component, parts[i].Path,
          ValueWithText(*component, parts[i], FromQString(values.value(static_cast<int>(i))))));
  FEditor->Change(std::move(changes));
}

void TPropertyInspector::OpenEvent(QTreeWidgetItem* item) {
  const TInspectedRow row = *RowOf(item);
  const std::vector<TDesignComponent*> chosen = Chosen();
  if (chosen.empty() || !OpenMethod) return;
  std::string method = row.Text;
  if (method.empty()) {
    const bool root = chosen[0] == &FEditor->Document()->Root();
    method = (root ? std::string("Form") : chosen[0]->Name()) +
             (row.Caption.starts_with("On") ? row.Caption.substr(2) : row.Caption);
  }
  TFormEditor& editor = *FEditor;
  if (!OpenMethod(editor, row, method) || !row.Text.empty() || FEditor != &editor) return;
  // Showing the source may have made the rows anew.
  for (std::size_t i = 0; i < FRows.size() && i < FItems.size(); ++i)
    if (FRows[i].SamePlace(row)) return Put(FItems[i], method);
}

void TPropertyInspector::ResetValue() {
  const TInspectedRow* shown = CurrentRow();
  if (shown == nullptr || FEditor == nullptr || !CanReset(*shown)) return;
  std::vector<TInspectedRow> rows;
  if (!shown->Group) rows.push_back(*shown);
  const auto index = static_cast<std::size_t>(shown - FRows.data());
  for (const TInspectedRow& row : FRows)
    if (shown->Group && row.Parent == index && CanReset(row)) rows.push_back(row);
  std::vector<TFormChange> changes;
  for (const TDesignComponent* component : Chosen())
    for (const TInspectedRow& row : rows)
      changes.push_back(TFormEdits::Change(*component, row.Path, ValueReset(*component, row)));
  FEditor->Change(std::move(changes));
}

void TPropertyInspector::CopyValue() {
  if (const TInspectedRow* row = CurrentRow()) SetClipboardText(ShownText(*row));
}

void TPropertyInspector::ShowDesigner() {
  if (FEditor != nullptr) FEditor->Show();
}

// --- items of collections

int TPropertyInspector::ItemCount(const TInspectedRow& row) const {
  const auto chosen = Chosen();
  return chosen.empty() ? 0 : static_cast<int>(ItemsOf(chosen[0]->FindValue(row.Path)).size());
}

void TPropertyInspector::ChangeItems(
    const std::function<std::string(std::string_view collection)>& change, int item) {
  const TInspectedRow row = *CurrentRow();
  for (const TInspectedRow& whole : FRows)
    if (whole.Path == row.Path && whole.Item < 0) FUnfolded.insert(whole.Caption);
  Change(
      [&](const TDesignComponent& component) -> std::optional<std::string> {
        return change(component.FindValue(row.Path));
      },
      row.Path);
  TInspectedRow place;
  place.Path = row.Path;
  place.Item = item;
  ChooseRow(place);
}

void TPropertyInspector::AddItem() {
  const TInspectedRow* row = CurrentRow();
  if (row == nullptr || !IsCollection(*row)) return;
  const int place = row->Item < 0 ? ItemCount(*row) : row->Item + 1;
  ChangeItems([=](std::string_view c) { return WithItem(c, static_cast<std::size_t>(place)); },
              place);
}

void TPropertyInspector::DeleteItem() {
  const TInspectedRow* row = CurrentRow();
  if (row == nullptr || row->Item < 0) return;
  const int item = row->Item, last = ItemCount(*row) - 1;
  ChangeItems([=](std::string_view c) { return WithoutItem(c, static_cast<std::size_t>(item)); },
              std::min(item, last - 1));
}

void TPropertyInspector::MoveItem(int distance) {
  const TInspectedRow* row = CurrentRow();
  if (row == nullptr || row->Item < 0) return;
  const int item = row->Item, place = item + distance;
  if (place < 0 || place >= ItemCount(*row)) return;
  ChangeItems(
      [=](std::string_view c) {
        return WithItemMoved(c, static_cast<std::size_t>(item), static_cast<std::size_t>(place));
      },
      place);
}

// --- the local menu

namespace {

// When a command is to be had; those of items are seen on collections alone.
bool CanEdit(const TInspectedRow& row) {
  return HasInlineEditor(row) || HasDialog(row);
}
bool CanCopy(const TInspectedRow& row) {
  return !row.Mixed;
}
bool IsItem(const TInspectedRow& row) {
  return row.Item >= 0;
}
bool Always(const TInspectedRow&) {
  return true;
}

struct TMenuRow {
  const char* Name;
  const char* Caption;
  QKeyCombination Keys;  // in the list of properties
  void (TPropertyInspector::*Run)();
  bool (*Enabled)(const TInspectedRow& row);
  bool OfItems = false;
};
using I = TPropertyInspector;
constexpr QKeyCombination NoKeys = Qt::Key_unknown;
constexpr TMenuRow MenuRows[] = {
    {"piEdit", "&Edit...", NoKeys, &I::EditValue, CanEdit},
    {"piReset", "&Reset to default", NoKeys, &I::ResetValue, CanReset},
    {"piCopyValue", "&Copy value", NoKeys, &I::CopyValue, CanCopy},
    {"piAddItem", "&Add item", Qt::Key_Insert, &I::AddItem, IsCollection, true},
    {"piDeleteItem", "&Delete item", Qt::Key_Delete, &I::DeleteItem, IsItem, true},
    {"piItemUp", "Move item &up", Qt::CTRL | Qt::Key_Up, &I::MoveItemUp, IsItem, true},
    {"piItemDown", "Move item do&wn", Qt::CTRL | Qt::Key_Down, &I::MoveItemDown, IsItem, true},
    {"piShowForm", "&View form", NoKeys, &I::ShowDesigner, Always},
};

// A tab stands in front of the keys.
std::string CaptionOf(const TMenuRow& row) {
  if (row.Keys == NoKeys) return row.Caption;
  return fmt::format("{}\t{}", row.Caption, FromQString(QKeySequence(row.Keys).toString()));
}

const TMenuRow* MenuRowOf(const TComponent& item) {
  const auto* found =
      std::ranges::find_if(MenuRows, [&](const TMenuRow& row) { return item.Name() == row.Name; });
  return found != std::end(MenuRows) ? found : nullptr;
}

}  // namespace

void TPropertyInspector::MakeMenu() {
  auto* menu = new TPopupMenu(this);
  menu->SetName("LocalMenu");
  Bind<&TPropertyInspector::MenuPopup>(menu->OnPopup, this);
  SetPopupMenu(menu);
  menu->AttachTo(FGrid);
  for (const TMenuRow& row : MenuRows) {
    auto* item = new TMenuItem(menu);
    item->SetName(row.Name);
    item->SetCaption(CaptionOf(row));
    Bind<&TPropertyInspector::MenuClick>(item->OnClick, this);
    menu->Items()->Add(item);
  }
}

void TPropertyInspector::MenuPopup(TObject*) {
  UpdateMenu();
}

void TPropertyInspector::MenuClick(TObject* sender) {
  if (const TMenuRow* row = MenuRowOf(*static_cast<TMenuItem*>(sender))) (this->*row->Run)();
}

void TPropertyInspector::UpdateMenu() {
  if (FFilling) return;
  const TInspectedRow* current = CurrentRow();
  const bool collection = current != nullptr && IsCollection(*current);
  for (TMenuItem* item : PopupMenu()->Items()->Items()) {
    const TMenuRow* row = MenuRowOf(*item);
    if (row == nullptr) continue;
    item->SetVisible(!row->OfItems || collection);
    item->SetEnabled(row->Run == &I::ShowDesigner ? FEditor != nullptr
                                                  : current != nullptr && row->Enabled(*current));
  }
}

bool TPropertyInspector::eventFilter(QObject* receiver, QEvent* event) {
  // An editor in the list gives on keys that it does not want.
  if (receiver != FGrid || event->type() != QEvent::KeyPress || !FGrid->hasFocus())
    return TForm::eventFilter(receiver, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  const TInspectedRow* current = CurrentRow();
  if (current == nullptr) return false;
  if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
    Guarded(this, [this] { EnterPressed(); });
    return true;
  }
  for (const TMenuRow& row : MenuRows) {
    if (row.Keys != key.keyCombination() || !row.Enabled(*current)) continue;
    Guarded(this, [&] { (this->*row.Run)(); });
    return true;
  }
  return false;
}

void TPropertyInspector::EnterPressed() {
  QTreeWidgetItem* item = FGrid->currentItem();
  if (CanEditInRow(*RowOf(item))) FGrid->editItem(item, 1);
  else if (HasDialog(*RowOf(item))) EditValue();
  else item->setExpanded(!item->isExpanded());
}

}  // namespace wrenfold
