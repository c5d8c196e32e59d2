// How the list of the module viewer is drawn.
#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>

#include "experts/rkFormView.h"
#include "experts/rkModuleList.h"

namespace wrenfold {

// Shows the names of a module list, which tells nobody of its changes: Reset shows them.
class TModuleListModel : public QAbstractListModel {
 public:
  TModuleListModel(const TModuleList& modules, QObject* parent)
      : QAbstractListModel(parent), FModules(modules) {}

  void Reset() {
    beginResetModel();
    endResetModel();
  }
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : FModules.Count();
  }
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  const TModuleList& FModules;
};

// Items of one fixed height. Extended drawing gives each group its font and a picture; the border
// between the groups is a line.
class TModuleDelegate : public QStyledItemDelegate {
 public:
  TModuleDelegate(const TModuleList& modules, const TViewFormMng& settings, QObject* parent)
      : QStyledItemDelegate(parent), FModules(modules), FSettings(settings) {}

  // The mode that the list is in.
  void SetMode(TViewModuleMode mode) { FMode = mode; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  const TFont& FontOf(const TListedModule& module) const;
  void DrawSeparator(QPainter& painter, const QRect& item) const;

  const TModuleList& FModules;
  const TViewFormMng& FSettings;
  TViewModuleMode FMode = svmForm;
};

}  // namespace wrenfold
