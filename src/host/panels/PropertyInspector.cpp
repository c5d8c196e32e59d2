// Shows the rows of properties of the chosen components.
#include "host/panels/PropertyInspector.h"

#include <QApplication>
#include <QHeaderView>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "host/documents/Icons.h"
#include "host/panels/PanelPlace.h"
#include "host/panels/PropertyEditors.h"
#include "platform/core/text/SysUtils.h"
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
  connect(FGrid, &QTreeWidget::currentItemChanged, this, [this] { UpdateMenu(); });
  FGrid->installEventFilter(this);
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
  LayOutGrid();
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

void TPropertyInspector::LayOutGrid() {
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
  if (!FFillLater) {
    if (UpdateGrid(rows)) return UpdateMenu();
    if (const TInspectedRow* current = CurrentRow()) FKept = *current;
  }
  FRows = std::move(rows);
  if (!FEditing) return FillGrid();
  // The view is still busy with the item whose value was edited.
  if (std::exchange(FFillLater, true)) return;
  QTimer::singleShot(0, this, [this] {
    Guarded(this, [this] {
      if (FFillLater) FillGrid();
    });
  });
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
  FFilling = true;
  FFillLater = false;
  FGrid->setUpdatesEnabled(false);
  FGrid->clear();
  FItems.clear();
  QList<QTreeWidgetItem*> top;
  for (std::size_t i = 0; i < FRows.size(); ++i) {
    const TInspectedRow& row = FRows[i];
    const bool child = row.Parent != TInspectedRow::npos;
    auto* item = child ? new QTreeWidgetItem(FItems[row.Parent]) : new QTreeWidgetItem;
    if (!child) top.append(item);
    FItems.push_back(item);
    item->setData(0, RowRole, static_cast<qulonglong>(i));
    item->setText(0, ToQString(row.Caption));
    if (HasInlineEditor(row)) item->setFlags(item->flags() | Qt::ItemIsEditable);
    ShowRow(*item, row);
  }
  // At once: the view would look at each of them.
  FGrid->addTopLevelItems(top);
  for (std::size_t i = 0; i < FRows.size(); ++i)
    if (FItems[i]->childCount() > 0) FItems[i]->setExpanded(FUnfolded.contains(FRows[i].Caption));
  ApplyFilter();
  FFilling = false;
  if (const auto kept = std::exchange(FKept, std::nullopt)) ChooseRow(*kept);
  FGrid->setUpdatesEnabled(true);
  UpdateMenu();
}

void TPropertyInspector::ChooseRow(const TInspectedRow& place) {
  for (std::size_t i = 0; i < FRows.size(); ++i)
    if (FRows[i].SamePlace(place)) return FGrid->setCurrentItem(FItems[i]);
}

// A default is dimmed, what is stored stands out in its full colour.
void TPropertyInspector::ShowRow(QTreeWidgetItem& item, const TInspectedRow& row) {
  QColor ink = QApplication::palette().color(QPalette::Text);
  if (!row.Stored && !row.Group) ink.setAlphaF(DefaultInk);
  item.setForeground(1, ink);
  item.setText(1, OneLine(ShownText(row)));
  item.setToolTip(1, row.Mixed ? tr("The components have different values")
                               : ToQString(row.Text).left(LongestTip));
  if (row.Kind != TPropertyKind::Color) return;
  const QColor color = row.Mixed || row.Text.empty() ? QColor() : ColorOfText(row.Text);
  item.setIcon(1, color.isValid() ? QIcon(SwatchOf(color)) : QIcon());
}

void TPropertyInspector::changeEvent(QEvent* event) {
  TForm::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || FItems.size() != FRows.size()) return;
  FFilling = true;
  for (std::size_t i = 0; i < FItems.size(); ++i) ShowRow(*FItems[i], FRows[i]);
  FFilling = false;
}

void TPropertyInspector::ApplyFilter() {
  const bool events = FPages->currentIndex() == pgEvents;
  const bool changedOnly = FChangedOnly->isChecked();
  const QString wanted = FFilter->text();
  FGrid->setUpdatesEnabled(false);
  // Whether the row or one that it is unfolded from has the name that is looked for.
  std::vector<bool> named(FItems.size());
  for (std::size_t i = 0; i < FItems.size(); ++i) {
    const std::size_t parent = FRows[i].Parent;
    named[i] = (parent != TInspectedRow::npos && named[parent]) ||
               FItems[i]->text(0).contains(wanted, Qt::CaseInsensitive);
  }
  // A parent stands before its children: from the end on, a shown child shows its parent.
  std::vector<bool> shown(FItems.size(), false);
  for (std::size_t i = FItems.size(); i-- > 0;) {
    const TInspectedRow& row = FRows[i];
    const bool onPage = (row.Kind == TPropertyKind::Event) == events;
    const bool changed = !changedOnly || row.Stored;
    const bool forPartsAlone = changedOnly && row.Group && FItems[i]->childCount() > 0;
    if (onPage && named[i] && changed && !forPartsAlone) shown[i] = true;
    if (FItems[i]->isHidden() == shown[i]) FItems[i]->setHidden(!shown[i]);
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

}  // namespace wrenfold
