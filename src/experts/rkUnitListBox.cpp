// The list box of the unit manager's window.
#include "experts/rkUnitListBox.h"

#include <QDrag>
#include <QDragMoveEvent>
#include <QMimeData>

#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

QVariant TUnitListModel::data(const QModelIndex& index, int role) const {
  const bool isText = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
  if (!index.isValid() || index.row() >= FUnits.Count() || !isText) return {};
  return ToQString(FUnits.Items()[static_cast<std::size_t>(index.row())].Text);
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

// The base removes what was moved out; here the order changes in place.
void TUnitListBox::startDrag(Qt::DropActions) {
  auto* drag = new QDrag(this);
  drag->setMimeData(model()->mimeData({}));
  drag->exec(Qt::MoveAction);
}

int TUnitListBox::TargetAt(const QPoint& position) const {
  const QModelIndex index = indexAt(position);
  return index.isValid() ? index.row() : model()->rowCount();
}

}  // namespace wrenfold
