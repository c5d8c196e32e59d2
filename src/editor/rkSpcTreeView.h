// The tree of the settings editor on the screen: nodes, marks, filter.
#pragma once

#include <QAbstractItemModel>
#include <QTreeView>
#include <functional>
#include <set>

#include "editor/rkSpcTree.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/ImageList.h"

namespace wrenfold {

// Shows the nodes below a top node that is not shown itself. Whoever changes the nodes brackets the
// change with BeginChange and EndChange.
class TSpcTreeModel : public QAbstractItemModel {
 public:
  using TLetsThrough = std::function<bool(const TTreeNode& node)>;

  // Null: no tree.
  void SetTop(TTreeNode* top);
  // Shows the nodes that the filter lets through and those above them; empty: all.
  void SetFilter(TLetsThrough filter);
  bool IsFiltered() const { return static_cast<bool>(FFilter); }
  void BeginChange() { beginResetModel(); }
  void EndChange();
  // Text or mark of the node changed.
  void NodeChanged(TTreeNode& node);

  static TTreeNode* NodeAt(const QModelIndex& index);
  // Looks by address alone: the node may have gone.
  bool Holds(const TTreeNode* node) const;
  // Invalid for a node that is not shown.
  QModelIndex IndexOf(const TTreeNode* node) const;

  // What the editor knows of a node.
  std::function<bool(const TTreeNode& node)> CanRename;
  std::function<bool(TTreeNode& node, const std::string& text)> Rename;
  std::string ChangedText;  // tells what the mark of a changed node means
  TImageList* Images = nullptr;

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex&) const override { return 1; }
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  bool Arrange(TTreeNode& node);
  QVariant Picture(const TTreeNode& node) const;

  TTreeNode* FTop = nullptr;
  TLetsThrough FFilter;
};

// The view. Folding and selection are given back when the filter is taken away.
class TTreeView : public TControlOf<QTreeView> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TTreeView(TComponent* owner = nullptr, QWidget* parent = nullptr);

  TSpcTreeModel& Model() { return FModel; }
  TTreeNode* Selected() const;
  // Null selects nothing. The node is scrolled into view.
  void Select(TTreeNode* node);
  void ShowNode(const TTreeNode* node);
  // While the filter is on, nodes above hits stand open.
  void SetFilter(TSpcTreeModel::TLetsThrough filter);
  // Runs a change of the nodes and keeps folding and selection of those that stay.
  void ChangeNodes(const std::function<void()>& change);
  // The node, with all descendants or alone.
  void Fold(TTreeNode& node, bool open, bool descendants);

  // Another node (or null) was selected. Not raised while nodes change.
  std::function<void(TTreeNode* node)> OnSelect;
  bool ExpandOnEnter = false;

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::set<const TTreeNode*> OpenNodes() const;
  void Open(const std::set<const TTreeNode*>& nodes);

  TSpcTreeModel FModel;
  bool FChanging = false;
  std::set<const TTreeNode*> FOpenUnfiltered;  // the folding to give back
  TTreeNode* FSelectedUnfiltered = nullptr;
};

}  // namespace wrenfold
