// Shows rows of properties, writes edited ones into all chosen components.
#include "host/panels/PropertyInspector.h"

#include <QApplication>
#include <QHeaderView>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "host/documents/Icons.h"
#include "host/panels/PanelPlace.h"
#include "host/panels/PropertyEditors.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

enum TPage { pgProperties, pgEvents };
constexpr int RowRole = Qt::UserRole;
constexpr int LongestTip = 2000;
constexpr float DefaultInk = 0.55F;  // of the colour of texts, for values that are not stored

// What a value of several lines shows in its row.
QString OneLine(const std::string& text) {
  const QString whole = ToQString(text);
  const qsizetype end = whole.indexOf('\n');
  return end < 0 ? whole : whole.left(end) + QChar(0x2026);
}

TMenuItem* AddItem(TPopupMenu& menu, const char* name, const char* caption) {
  auto* item = new TMenuItem(&menu);
  item->SetName(name);
  item->SetCaption(caption);
  menu.Items()->Add(item);
  return item;
}

}  // namespace

const TTypeInfo& TPropertyInspector::ClassInfo() {
  static const TTypeInfo info =
      Publish<TPropertyInspector>("TPropertyInspector", TForm::ClassInfo());
  return info;
}

TPropertyInspector::TPropertyInspector(TComponent* owner, QWidget* parent)
    : TForm(owner, parent),
      FComponents(new QComboBox(this)),
      FFilter(new QLineEdit(this)),
      FChangedOnly(new QToolButton(this)),
      FPages(new QTabBar(this)),
      FGrid(new QTreeWidget(this)) {
  SetName("PropertyInspector");
  SetCaption("Object Inspector");
  LayOut();
  MakeMenu();
  connect(FComponents, &QComboBox::activated, this,
          [this](int index) { Guarded(this, [&] { ComponentChosen(index); }); });
  connect(FFilter, &QLineEdit::textChanged, this, [this] { ApplyFilter(); });
  connect(FChangedOnly, &QToolButton::toggled, this, [this] { ApplyFilter(); });
  connect(FPages, &QTabBar::currentChanged, this, [this] { ApplyFilter(); });
  connect(FGrid, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int index) {
    Guarded(this, [&] { ValueEdited(item, index); });
  });
  connect(FGrid, &QTreeWidget::itemDoubleClicked, this,
          [this](QTreeWidgetItem* item) { Guarded(this, [&] { ItemDoubleClicked(item); }); });
  const auto unfolded = [this](QTreeWidgetItem* item, bool open) {
    const TInspectedRow* row = RowOf(item);
    if (FFilling || row == nullptr) return;
    if (open) FUnfolded.insert(row->Caption);
    else FUnfolded.erase(row->Caption);
  };
  connect(FGrid, &QTreeWidget::itemExpanded, this, [=](auto* item) { unfolded(item, true); });
  connect(FGrid, &QTreeWidget::itemCollapsed, this, [=](auto* item) { unfolded(item, false); });
  ShowForm(nullptr);
}

void TPropertyInspector::LayOut() {
  FComponents->setObjectName("ComponentList");
  FComponents->setAccessibleName(tr("Component"));
  FComponents->setToolTip(tr("The component whose properties are shown"));
  FComponents->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  FFilter->setObjectName("PropertyFilter");
  FFilter->setAccessibleName(tr("Filter properties"));
  FFilter->setPlaceholderText(tr("Filter"));
  FFilter->setToolTip(tr("Shows the properties whose name contains this text"));
  FFilter->setClearButtonEnabled(true);
  FChangedOnly->setObjectName("ChangedOnly");
  FChangedOnly->setText(tr("Changed"));
  FChangedOnly->setAccessibleName(tr("Changed only"));
  FChangedOnly->setToolTip(tr("Shows only what differs from the defaults of the class"));
  FChangedOnly->setCheckable(true);
  FPages->setObjectName("InspectorPages");
  FPages->setAccessibleName(tr("Properties or events"));
  FPages->setToolTip(tr("Properties or events"));
  FPages->addTab(tr("Properties"));
  FPages->addTab(tr("Events"));
  FPages->setDrawBase(false);
  FPages->setExpanding(false);
  FGrid->setObjectName("PropertyGrid");
  FGrid->setAccessibleName(tr("Properties"));
  FGrid->setToolTip(
      tr("F2 or typing edits a value; a double click turns to the next one, opens the "
         "dialog of the property or the method of the event"));
  FGrid->setColumnCount(2);
  FGrid->setHeaderLabels({tr("Property"), tr("Value")});
  FGrid->setUniformRowHeights(true);
  FGrid->setAlternatingRowColors(true);
  FGrid->setIndentation(14);
  FGrid->setFrameShape(QFrame::NoFrame);
  FGrid->setExpandsOnDoubleClick(false);
  FGrid->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed |
                         QAbstractItemView::AnyKeyPressed);
  FGrid->setItemDelegate(new TValueDelegate(
      FGrid, [this](const QModelIndex& index) { return RowOf(FGrid->itemFromIndex(index)); },
      [this](const TInspectedRow& row) { return ChoicesOf(row); }));
  FGrid->header()->resizeSection(0, 120);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 4, 0, 0);
  column->setSpacing(4);
  auto* place = new TPanelPlace(this, this);
  place->SetName(InspectorTopPlace);
  column->addWidget(place);
  auto* head = new QVBoxLayout;
  head->setContentsMargins(4, 0, 4, 0);
  head->addWidget(FComponents);
  auto* filterRow = new QHBoxLayout;
  filterRow->addWidget(FFilter, 1);
  filterRow->addWidget(FChangedOnly);
  head->addLayout(filterRow);
  column->addLayout(head);
  column->addWidget(FPages);
  column->addWidget(FGrid, 1);
  setFocusProxy(FGrid);
}

void TPropertyInspector::MakeMenu() {
  auto* menu = new TPopupMenu(this);
  menu->SetName("LocalMenu");
  Bind<&TPropertyInspector::MenuPopup>(menu->OnPopup, this);
  SetPopupMenu(menu);
  menu->AttachTo(FGrid);
  Bind<&TPropertyInspector::EditValue>(AddItem(*menu, "piEdit", "&Edit...")->OnClick, this);
  Bind<&TPropertyInspector::ResetValue>(AddItem(*menu, "piReset", "&Reset to default")->OnClick,
                                        this);
  Bind<&TPropertyInspector::CopyValue>(AddItem(*menu, "piCopyValue", "&Copy value")->OnClick, this);
  Bind<&TPropertyInspector::ShowDesigner>(AddItem(*menu, "piShowForm", "&View form")->OnClick,
                                          this);
}

// --- what is shown

void TPropertyInspector::ShowForm(TFormEditor* editor) {
  FEditor = editor;
  Refresh();
}

void TPropertyInspector::Refresh() {
  FillComponents();
  std::vector<const TDesignComponent*> chosen;
  for (const TDesignComponent* component : Chosen()) chosen.push_back(component);
  std::vector<TInspectedRow> rows = InspectRows(chosen);
  if (UpdateGrid(rows)) return;
  FRows = std::move(rows);
  if (!FEditing) return FillGrid();
  // The view is still busy with the item whose value was edited.
  QTimer::singleShot(0, this, [this] { Guarded(this, [this] { FillGrid(); }); });
}

void TPropertyInspector::FillComponents() {
  const TFormDocument* document = FEditor != nullptr ? FEditor->Document() : nullptr;
  QStringList captions;
  if (document != nullptr) {
    const auto add = [&](const TComponent& component) {
      captions << ToQString(component.Name() + ": " + component.ClassName());
    };
    add(document->Root());
    for (const TComponent* component : document->Root().Components()) add(*component);
  }
  bool same = captions.size() == FComponents->count();
  for (qsizetype i = 0; same && i < captions.size(); ++i)
    same = FComponents->itemText(static_cast<int>(i)) == captions[i];
  if (!same) {
    FComponents->clear();
    FComponents->addItems(captions);
  }
  FComponents->setEnabled(document != nullptr);
  if (document == nullptr) return;
  const auto selected = FEditor->Designer().GetSelections();
  const bool root = selected.empty() || selected[0] == &document->Root();
  FComponents->setCurrentIndex(root ? 0 : selected[0]->ComponentIndex() + 1);
}

std::vector<TDesignComponent*> TPropertyInspector::Chosen() const {
  TFormDocument* document = FEditor != nullptr ? FEditor->Document() : nullptr;
  if (document == nullptr) return {};
  std::vector<TDesignComponent*> chosen;
  for (TComponent* component : FEditor->Designer().GetSelections())
    if (auto* design = dynamic_cast<TDesignComponent*>(component)) chosen.push_back(design);
  if (chosen.empty()) chosen.push_back(&document->Root());
  return chosen;
}

const TInspectedRow* TPropertyInspector::RowOf(const QTreeWidgetItem* item) const {
  if (item == nullptr) return nullptr;
  const std::size_t index = item->data(0, RowRole).toULongLong();
  return index < FRows.size() ? &FRows[index] : nullptr;
}

// Where the rows are the same as before, only their texts change. False when they are others.
bool TPropertyInspector::UpdateGrid(const std::vector<TInspectedRow>& rows) {
  const bool same =
      rows.size() == FRows.size() && FItems.size() == rows.size() &&
      std::equal(rows.begin(), rows.end(), FRows.begin(), [](const auto& a, const auto& b) {
        return a.SamePlace(b) && a.Kind == b.Kind && a.Parent == b.Parent && a.Type == b.Type;
      });
  if (!same) return false;
  FRows = rows;
  FFilling = true;
  for (std::size_t i = 0; i < rows.size(); ++i) ShowRow(*FItems[i], rows[i]);
  FFilling = false;
  if (FChangedOnly->isChecked() && !FEditing) ApplyFilter();
  return true;
}

void TPropertyInspector::FillGrid() {
  const TInspectedRow* current = RowOf(FGrid->currentItem());
  const std::string kept = current != nullptr ? current->Caption : std::string();
  FFilling = true;
  FGrid->clear();
  FItems.clear();
  QTreeWidgetItem* again = nullptr;
  for (std::size_t i = 0; i < FRows.size(); ++i) {
    const TInspectedRow& row = FRows[i];
    auto* item = row.Parent == TInspectedRow::npos ? new QTreeWidgetItem(FGrid)
                                                   : new QTreeWidgetItem(FItems[row.Parent]);
    FItems.push_back(item);
    item->setData(0, RowRole, static_cast<qulonglong>(i));
    item->setText(0, ToQString(row.Caption));
    if (HasInlineEditor(row)) item->setFlags(item->flags() | Qt::ItemIsEditable);
    ShowRow(*item, row);
    if (again == nullptr && row.Caption == kept) again = item;
  }
  for (std::size_t i = 0; i < FRows.size(); ++i)
    if (FItems[i]->childCount() > 0) FItems[i]->setExpanded(FUnfolded.contains(FRows[i].Caption));
  FFilling = false;
  ApplyFilter();
  if (again != nullptr) FGrid->setCurrentItem(again);
}

// A default is dimmed, what is stored stands out in its full colour.
void TPropertyInspector::ShowRow(QTreeWidgetItem& item, const TInspectedRow& row) {
  QColor ink = QApplication::palette().color(QPalette::Text);
  if (!row.Stored && !row.Group) ink.setAlphaF(DefaultInk);
  item.setForeground(1, ink);
  item.setText(1, OneLine(row.Text));
  item.setToolTip(1, ToQString(row.Text).left(LongestTip));
  if (row.Mixed) item.setToolTip(1, tr("The components have different values"));
  if (row.Kind != TPropertyKind::Color) return;
  const QColor color = row.Mixed || row.Text.empty() ? QColor() : ColorOfText(row.Text);
  if (!color.isValid()) return item.setIcon(1, QIcon());
  QPixmap swatch(16, 12);
  swatch.fill(color);
  item.setIcon(1, swatch);
}

void TPropertyInspector::ApplyFilter() {
  const bool events = FPages->currentIndex() == pgEvents;
  FGrid->setUpdatesEnabled(false);
  // A parent stands before its children: from the end on, a shown child shows its parent.
  std::vector<bool> shown(FItems.size(), false);
  for (std::size_t i = FItems.size(); i-- > 0;) {
    const TInspectedRow& row = FRows[i];
    const std::size_t top = row.Parent == TInspectedRow::npos ? i : row.Parent;
    const bool onPage = (row.Kind == TPropertyKind::Event) == events;
    const bool changed = !FChangedOnly->isChecked() || row.Stored;
    const bool named = ToQString(row.Caption).contains(FFilter->text(), Qt::CaseInsensitive) ||
                       ToQString(FRows[top].Caption).contains(FFilter->text(), Qt::CaseInsensitive);
    const bool own = onPage && named && changed &&
                     !(row.Group && FItems[i]->childCount() > 0 && FChangedOnly->isChecked());
    shown[i] = shown[i] || own;
    FItems[i]->setHidden(!shown[i]);
    if (shown[i] && row.Parent != TInspectedRow::npos) shown[row.Parent] = true;
  }
  FGrid->setUpdatesEnabled(true);
}

std::vector<std::string> TPropertyInspector::ChoicesOf(const TInspectedRow& row) const {
  std::vector<std::string> choices;
  if (FEditor == nullptr) return choices;
  if (row.Kind == TPropertyKind::Event)
    return MethodsFor ? MethodsFor(*FEditor, row) : std::vector<std::string>();
  // The class of a reference is met by its own name and by those that end like it.
  const std::string_view ending =
      row.Type.empty() ? std::string_view() : std::string_view(row.Type).substr(1);
  const std::string_view plain = ending.starts_with("Custom") ? ending.substr(6) : ending;
  choices.emplace_back();
  for (const TComponent* component : FEditor->Document()->Root().Components()) {
    const std::string className = component->ClassName();
    if (plain.empty() || (className.size() >= plain.size() &&
                          EqualText(className.substr(className.size() - plain.size()), plain)))
      choices.push_back(component->Name());
  }
  std::sort(choices.begin(), choices.end());
  return choices;
}

// --- what the user does

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

void TPropertyInspector::Put(QTreeWidgetItem* item, const std::string& text) {
  const TInspectedRow* shown = RowOf(item);
  if (shown == nullptr || FEditor == nullptr || FEditor->Document() == nullptr) return;
  const TInspectedRow row = *shown;
  FEditing = true;
  std::string trouble;
  try {
    Change(
        [&](const TDesignComponent& component) -> std::optional<std::string> {
          if (row.Path == NameOfComponent) return text;
          return ValueWithText(component, row, text);
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
  const bool lines = row->Kind == TPropertyKind::Text && row->Text.find('\n') == std::string::npos;
  if (HasDialog(*row) && !lines) return EditValue(nullptr);
  if (item->childCount() > 0 && !HasInlineEditor(*row)) item->setExpanded(!item->isExpanded());
  else FGrid->editItem(item, 1);
}

void TPropertyInspector::EditValue(TObject*) {
  QTreeWidgetItem* item = FGrid->currentItem();
  const TInspectedRow* row = RowOf(item);
  if (row == nullptr) return;
  if (row->Kind == TPropertyKind::Event) return OpenEvent(item);
  if (row->Kind == TPropertyKind::Font) return PutFont(*row);
  std::string text = row->Text;
  if (!HasDialog(*row)) FGrid->editItem(item, 1);
  else if (EditInDialog(this, *row, text)) Put(item, text);
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
  Refresh();
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

void TPropertyInspector::MenuPopup(TObject*) {
  const TInspectedRow* row = RowOf(FGrid->currentItem());
  for (TMenuItem* item : PopupMenu()->Items()->Items()) {
    if (item->Name() == "piEdit")
      item->SetEnabled(row != nullptr && (HasInlineEditor(*row) || HasDialog(*row)));
    if (item->Name() == "piReset")
      item->SetEnabled(row != nullptr && row->Stored && row->Element.empty() && !row->Group &&
                       row->Path != NameOfComponent);
    if (item->Name() == "piCopyValue") item->SetEnabled(row != nullptr && !row->Mixed);
    if (item->Name() == "piShowForm") item->SetEnabled(FEditor != nullptr);
  }
}

void TPropertyInspector::ResetValue(TObject*) {
  const TInspectedRow* shown = RowOf(FGrid->currentItem());
  if (shown == nullptr || FEditor == nullptr) return;
  const TInspectedRow row = *shown;
  Change([&](const TDesignComponent& component) { return ValueReset(component, row); }, row.Path);
  Refresh();
}

void TPropertyInspector::CopyValue(TObject*) {
  if (const TInspectedRow* row = RowOf(FGrid->currentItem())) SetClipboardText(row->Text);
}

void TPropertyInspector::ShowDesigner(TObject*) {
  if (FEditor != nullptr) FEditor->Show();
}

}  // namespace wrenfold
