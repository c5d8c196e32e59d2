// The list box of the unit manager's window: shows a unit list, takes part in dragging.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <functional>
#include <utility>
#include <vector>

#include "experts/rkUnitList.h"

namespace wrenfold {

// What is drawn beside a page's caption.
struct TUnitMarks {
  bool Active = false;   // the page that the editor shows
  bool Unsaved = false;  // its unit holds what is not saved yet
};

// Shows the captions of a unit list, which tells nobody of its changes: Reset shows them. The marks
// are asked for when they are drawn.
class TUnitListModel : public QAbstractListModel {
 public:
  enum TRole : int { ActiveRole = Qt::UserRole, UnsavedRole, ViewRole };

  TUnitListModel(const TUnitList& units, std::function<TUnitMarks(int index)> marksOf,
                 QObject* parent)
      : QAbstractListModel(parent), FUnits(units), FMarksOf(std::move(marksOf)) {}

  void Reset();
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : FUnits.Count();
  }
  // ViewRole: which of the views with that caption it is, from 1; 0 for an only one.
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }

 private:
  QString DescriptionOf(int index) const;

  const TUnitList& FUnits;
  std::function<TUnitMarks(int index)> FMarksOf;
  std::vector<int> FViews;
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

  // The selected items as one picture, those at its end left out when they are many.
  QPixmap BlockPicture() const;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void startDrag(Qt::DropActions supportedActions) override;

 private:
  int TargetAt(const QPoint& position) const;
};

}  // namespace wrenfold
