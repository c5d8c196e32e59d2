// The list box of the unit manager's window.
#include "experts/rkUnitListBox.h"

#include <QApplication>
#include <QDrag>
#include <QDragMoveEvent>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QStyledItemDelegate>
#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "locale/rkLocale.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int Gutter = 16;  // room for the mark before the captions
constexpr int MarkSize = 6;
constexpr int MostDragged = 12;  // items in the picture of a drag

// Draws the marks of a page beside its caption.
class TUnitDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    const QString text = std::exchange(item.text, {});
    const QStyle* style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const bool selected = item.state & QStyle::State_Selected;
    const auto group = item.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor ink =
        item.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor accent = selected ? ink : item.palette.color(group, QPalette::Highlight);
    QRect room = item.rect.adjusted(Gutter, 0, -MarkSize, 0);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(accent);
    if (index.data(TUnitListModel::ActiveRole).toBool()) DrawActive(*painter, item.rect);
    if (index.data(TUnitListModel::UnsavedRole).toBool()) room = DrawUnsaved(*painter, room);
    painter->setPen(ink);
    room = DrawView(*painter, room, index.data(TUnitListModel::ViewRole).toInt());
    painter->setFont(item.font);
    painter->drawText(room, Qt::AlignVCenter | Qt::TextSingleLine,
                      item.fontMetrics.elidedText(text, item.textElideMode, room.width()));
    painter->restore();
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(2 * Gutter, 2);
  }

 private:
  // An arrow head that points at the caption.
  static void DrawActive(QPainter& painter, const QRect& item) {
    const QPointF middle(item.left() + Gutter / 2.0 + 1, item.center().y() + 0.5);
    constexpr double half = MarkSize / 2.0 + 1;
    painter.drawPolygon(QPolygonF({middle + QPointF(-half + 1, -half), middle + QPointF(half, 0),
                                   middle + QPointF(-half + 1, half)}));
  }

  // A dot at the right end; answers the room that is left.
  static QRect DrawUnsaved(QPainter& painter, QRect room) {
    const QPointF middle(room.right() - MarkSize / 2.0, room.center().y() + 0.5);
    painter.drawEllipse(middle, MarkSize / 2.0, MarkSize / 2.0);
    return room.adjusted(0, 0, -MarkSize - 4, 0);
  }

  // The number of the view in small type, right-aligned.
  static QRect DrawView(QPainter& painter, QRect room, int view) {
    if (view == 0) return room;
    QFont font = painter.font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    painter.setFont(font);
    const QString text = ':' + QString::number(view);
    painter.setOpacity(0.75);
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignRight, text);
    painter.setOpacity(1);
    return room.adjusted(0, 0, -painter.fontMetrics().horizontalAdvance(text) - 4, 0);
  }
};

}  // namespace

void TUnitListModel::Reset() {
  beginResetModel();
  std::unordered_map<std::string_view, int> counts;
  for (const TUnitList::TItem& item : FUnits.Items()) ++counts[item.Text];
  std::unordered_map<std::string_view, int> seen;
  FViews.clear();
  for (const TUnitList::TItem& item : FUnits.Items())
    FViews.push_back(counts[item.Text] > 1 ? ++seen[item.Text] : 0);
  endResetModel();
}

QVariant TUnitListModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || index.row() >= FUnits.Count() || row >= FViews.size()) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return ToQString(FUnits.Items()[row].Text);
    case Qt::AccessibleDescriptionRole:
    case Qt::ToolTipRole:
      return DescriptionOf(index.row());
    case ActiveRole:
      return FMarksOf(index.row()).Active;
    case UnsavedRole:
      return FMarksOf(index.row()).Unsaved;
    case ViewRole:
      return FViews[row];
    default:
      return {};
  }
}

// The marks in words.
QString TUnitListModel::DescriptionOf(int index) const {
  const TUnitMarks marks = FMarksOf(index);
  const int view = FViews[static_cast<std::size_t>(index)];
  QStringList words;
  if (marks.Active) words += ToQString(LocaleStr(sActivePage));
  if (marks.Unsaved) words += ToQString(LocaleStr(sUnsavedPage));
  if (view > 0) words += ToQString(LocaleFormat(sViewOfUnit, view));
  return words.join(", ");
}

Qt::ItemFlags TUnitListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
         Qt::ItemNeverHasChildren;
}

// What is dragged is the selection of the list itself: there is nothing to carry.
QMimeData* TUnitListModel::mimeData(const QModelIndexList&) const {
  auto* data = new QMimeData;
  data->setData("application/x-wrenfold-units", {});
  return data;
}

TUnitListBox::TUnitListBox(QWidget* parent) : QListView(parent) {
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setUniformItemSizes(true);
  setLayoutMode(QListView::SinglePass);
  setDropIndicatorShown(false);
  setItemDelegate(new TUnitDelegate(this));
}

void TUnitListBox::SetDragAllowed(bool allowed) {
  setDragEnabled(allowed);
  setAcceptDrops(allowed);
}

void TUnitListBox::dragEnterEvent(QDragEnterEvent* event) {
  if (event->source() == this) event->accept();
  else event->ignore();
}

void TUnitListBox::dragMoveEvent(QDragMoveEvent* event) {
  const int target = TargetAt(event->position().toPoint());
  if (event->source() != this || !OnDragOver(target)) return event->ignore();
  event->setDropAction(Qt::MoveAction);
  event->accept();
}

void TUnitListBox::dropEvent(QDropEvent* event) {
  if (event->source() != this) return event->ignore();
  event->setDropAction(Qt::MoveAction);
  event->accept();
  const int target = TargetAt(event->position().toPoint());
  Guarded(nullptr, [this, target] { OnDrop(target); });
}

// The base removes what was moved out; here the order changes in place. A drag that was given up
// leaves the current item as it was.
void TUnitListBox::startDrag(Qt::DropActions) {
  const QPointer<TUnitListBox> alive(this);
  const QPersistentModelIndex current(currentIndex());
  auto* drag = new QDrag(this);
  drag->setMimeData(model()->mimeData({}));
  drag->setPixmap(BlockPicture());
  const bool dropped = drag->exec(Qt::MoveAction) != Qt::IgnoreAction;
  if (alive && !dropped && current.isValid())
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
}

QPixmap TUnitListBox::BlockPicture() const {
  QModelIndexList block = selectionModel()->selectedIndexes();
  std::ranges::sort(block, {}, &QModelIndex::row);
  if (block.isEmpty()) return {};
  block.resize(std::min<qsizetype>(block.size(), MostDragged));
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const QSize item(viewport()->width(), visualRect(block.front()).height());
  QPixmap picture(QSize(item.width(), item.height() * static_cast<int>(block.size())) *
                  devicePixelRatioF());
  picture.setDevicePixelRatio(devicePixelRatioF());
  picture.fill(palette().color(QPalette::Base));
  QPainter painter(&picture);
  for (qsizetype i = 0; i < block.size(); ++i) {
    option.rect = QRect(QPoint(0, item.height() * static_cast<int>(i)), item);
    itemDelegate()->paint(&painter, option, block[i]);
  }
  return picture;
}

int TUnitListBox::TargetAt(const QPoint& position) const {
  const QModelIndex index = indexAt(position);
  return index.isValid() ? index.row() : model()->rowCount();
}

}  // namespace wrenfold
