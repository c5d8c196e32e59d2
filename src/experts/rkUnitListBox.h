// The list box of the unit manager's window: shows a unit list, takes part in dragging.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <functional>

#include "experts/rkUnitList.h"

namespace wrenfold {

// Shows the captions of a unit list, which tells nobody of its changes: Reset shows them.
class TUnitListModel : public QAbstractListModel {
 public:
  TUnitListModel(const TUnitList& units, QObject* parent)
      : QAbstractListModel(parent), FUnits(units) {}

  void Reset() {
    beginResetModel();
    endResetModel();
  }
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : FUnits.Count();
  }
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }

 private:
  const TUnitList& FUnits;
};

// A multi-selection list whose selection can be dragged inside it.
class TUnitListBox : public QListView {
 public:
  explicit TUnitListBox(QWidget* parent);

  void SetDragAllowed(bool allowed);

  // Whether the selection may be dropped there, and what is done then; the target is the item under
  // the mouse, or the count of items below the last one.
  std::function<bool(int target)> OnDragOver;
  std::function<void(int target)> OnDrop;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void startDrag(Qt::DropActions supportedActions) override;

 private:
  int TargetAt(const QPoint& position) const;
};

}  // namespace wrenfold
