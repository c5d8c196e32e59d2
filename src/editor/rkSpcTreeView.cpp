#include "editor/rkSpcTreeView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int ChangedRole = Qt::UserRole;

// Draws a node like any other item, with a dot behind the text of a node that holds changes.
class TNodeDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    if (!index.data(ChangedRole).toBool()) return;
    const int side = std::max(4, option.fontMetrics.height() / 3);
    const int textWidth = QStyledItemDelegate::sizeHint(option, index).width();
    const QPoint place(
        std::min(option.rect.left() + textWidth + side / 2, option.rect.right() - side),
        option.rect.center().y() - side / 2);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Link));
    painter->drawEllipse(QRect(place, QSize(side, side)));
    painter->restore();
  }
  QWidget* createEditor(QWidget* viewport, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override {
    QWidget* editor = QStyledItemDelegate::createEditor(viewport, option, index);
    editor->setObjectName("edNodeName");
    editor->setAccessibleName(viewport->parentWidget()->accessibleName());
    return editor;
  }
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width() + size.height(), size.height() + 2};
  }
};

}  // namespace

TTreeNode* TSpcTreeModel::NodeAt(const QModelIndex& index) {
  return static_cast<TTreeNode*>(index.internalPointer());
}

bool TSpcTreeModel::Holds(const TTreeNode* node) const {
  bool found = false;
  if (FTop != nullptr) ForEachNode(*FTop, [&](const TTreeNode& each) { found |= &each == node; });
  return found;
}

QModelIndex TSpcTreeModel::IndexOf(const TTreeNode* node) const {
  if (node == nullptr || node->Parent == nullptr) return {};
  const auto& shown = node->Parent->Shown;
  const auto row = static_cast<std::size_t>(node->ShownRow);
  if (row >= shown.size() || shown[row] != node) return {};
  return createIndex(node->ShownRow, 0, node);
}

void TSpcTreeModel::SetTop(TTreeNode* top) {
  beginResetModel();
  FTop = top;
  EndChange();
}

void TSpcTreeModel::SetFilter(TLetsThrough filter) {
  beginResetModel();
  FFilter = std::move(filter);
  EndChange();
}

void TSpcTreeModel::EndChange() {
  if (FTop != nullptr) Arrange(*FTop);
  endResetModel();
}

// Answers whether the node is shown: let through itself, or above one that is.
bool TSpcTreeModel::Arrange(TTreeNode& node) {
  node.Shown.clear();
  for (const auto& child : node.Children) {
    if (!Arrange(*child)) continue;
    child->ShownRow = static_cast<int>(node.Shown.size());
    node.Shown.push_back(child.get());
  }
  return !FFilter || !node.Shown.empty() || (node.Instance != nullptr && FFilter(node));
}

void TSpcTreeModel::NodeChanged(TTreeNode& node) {
  const QModelIndex index = IndexOf(&node);
  if (index.isValid()) emit dataChanged(index, index);
}

QModelIndex TSpcTreeModel::index(int row, int column, const QModelIndex& parent) const {
  const TTreeNode* node = parent.isValid() ? NodeAt(parent) : FTop;
  if (node == nullptr || column != 0 || row < 0 || row >= static_cast<int>(node->Shown.size()))
    return {};
  return createIndex(row, 0, node->Shown[static_cast<std::size_t>(row)]);
}

QModelIndex TSpcTreeModel::parent(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const TTreeNode* node = NodeAt(index)->Parent;
  return node == nullptr || node == FTop ? QModelIndex() : createIndex(node->ShownRow, 0, node);
}

int TSpcTreeModel::rowCount(const QModelIndex& parent) const {
  const TTreeNode* node = parent.isValid() ? NodeAt(parent) : FTop;
  return node != nullptr ? static_cast<int>(node->Shown.size()) : 0;
}

QVariant TSpcTreeModel::Picture(const TTreeNode& node) const {
  const int index = node.Images[niiImageIndex];
  if (Images == nullptr || index < 0) return {};
  QIcon icon = Images->Icon(index);
  const int selected = node.Images[niiSelectedIndex];
  if (selected >= 0 && selected != index)
    icon.addPixmap(Images->Icon(selected).pixmap(16), QIcon::Selected);
  return icon;
}

QVariant TSpcTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const TTreeNode& node = *NodeAt(index);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return ToQString(node.Text);
    case Qt::DecorationRole:
      return Picture(node);
    case ChangedRole:
      return node.Changes > 0;
    case Qt::AccessibleDescriptionRole:
      return node.Changes > 0 ? QVariant(ToQString(ChangedText)) : QVariant();
    case Qt::FontRole:
      if (FFilter && node.IsHit) {
        QFont font;
        font.setBold(true);
        return font;
      }
      return {};
    default:
      return {};
  }
}

bool TSpcTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid() || !Rename) return false;
  bool renamed = false;
  Guarded(nullptr, [&] { renamed = Rename(*NodeAt(index), FromQString(value.toString())); });
  return renamed;
}

Qt::ItemFlags TSpcTreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const bool editable = CanRename && CanRename(*NodeAt(index));
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable |
         (editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

const TTypeInfo& TTreeView::ClassInfo() {
  static const TTypeInfo info = Publish<TTreeView>("TTreeView", TControl::ClassInfo());
  return info;
}

TTreeView::TTreeView(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setItemDelegate(new TNodeDelegate(this));
  setTextElideMode(Qt::ElideRight);
  setModel(&FModel);
}

TTreeNode* TTreeView::Selected() const {
  const QModelIndex current = currentIndex();
  return current.isValid() ? TSpcTreeModel::NodeAt(current) : nullptr;
}

void TTreeView::Select(TTreeNode* node) {
  setCurrentIndex(FModel.IndexOf(node));
  ShowNode(node);
}

void TTreeView::ShowNode(const TTreeNode* node) {
  if (const QModelIndex index = FModel.IndexOf(node); index.isValid()) scrollTo(index);
}

void TTreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (FChanging || !OnSelect) return;
  TTreeNode* node = current.isValid() ? TSpcTreeModel::NodeAt(current) : nullptr;
  Guarded(this, [&] { OnSelect(node); });
}

std::set<const TTreeNode*> TTreeView::OpenNodes() const {
  std::set<const TTreeNode*> nodes;
  std::vector<QModelIndex> waiting{QModelIndex()};
  while (!waiting.empty()) {
    const QModelIndex parent = waiting.back();
    waiting.pop_back();
    for (int row = 0; row < FModel.rowCount(parent); ++row) {
      const QModelIndex index = FModel.index(row, 0, parent);
      if (!isExpanded(index)) continue;
      nodes.insert(TSpcTreeModel::NodeAt(index));
      waiting.push_back(index);
    }
  }
  return nodes;
}

void TTreeView::Open(const std::set<const TTreeNode*>& nodes) {
  std::vector<QModelIndex> waiting{QModelIndex()};
  while (!waiting.empty()) {
    const QModelIndex parent = waiting.back();
    waiting.pop_back();
    for (int row = 0; row < FModel.rowCount(parent); ++row) {
      const QModelIndex index = FModel.index(row, 0, parent);
      if (!nodes.contains(TSpcTreeModel::NodeAt(index))) continue;
      setExpanded(index, true);
      waiting.push_back(index);
    }
  }
}

void TTreeView::ChangeNodes(const std::function<void()>& change) {
  const TTreeNode* selected = Selected();
  const bool filtered = FModel.IsFiltered();
  const auto open = filtered ? std::set<const TTreeNode*>() : OpenNodes();
  FChanging = true;
  FModel.BeginChange();
  change();
  FModel.EndChange();
  if (filtered) expandAll();
  else Open(open);
  setCurrentIndex(FModel.Holds(selected) ? FModel.IndexOf(selected) : QModelIndex());
  FChanging = false;
}

void TTreeView::SetFilter(TSpcTreeModel::TLetsThrough filter) {
  TTreeNode* selected = Selected();
  if (!FModel.IsFiltered()) {
    if (!filter) return;
    FOpenUnfiltered = OpenNodes();
    FSelectedUnfiltered = selected;
  }
  const bool filtered = static_cast<bool>(filter);
  FChanging = true;
  FModel.SetFilter(std::move(filter));
  if (filtered) expandAll();
  else Open(FOpenUnfiltered);
  if (!filtered && FModel.Holds(FSelectedUnfiltered)) selected = FSelectedUnfiltered;
  setCurrentIndex(FModel.IndexOf(selected));
  FChanging = false;
  if (currentIndex().isValid()) scrollTo(currentIndex());
}

void TTreeView::Fold(TTreeNode& node, bool open, bool descendants) {
  const QModelIndex index = FModel.IndexOf(&node);
  setUpdatesEnabled(false);
  if (!descendants) setExpanded(index, open);
  else if (open) expandRecursively(index);
  else ForEachNode(node, [this](TTreeNode& below) { collapse(FModel.IndexOf(&below)); });
  setUpdatesEnabled(true);
  if (open) scrollTo(index);
}

void TTreeView::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter || !ExpandOnEnter || state() == EditingState || !currentIndex().isValid())
    return QTreeView::keyPressEvent(event);
  setExpanded(currentIndex(), !isExpanded(currentIndex()));
  event->accept();
}

}  // namespace wrenfold
