#include "host/debug/VariableTree.h"

#include <QHeaderView>

#include "platform/widgets/Text.h"

namespace wrenfold {

QTreeWidget* MakeValueTree(QWidget* parent, const char* name, const QString& title,
                           const QString& tip, const QStringList& columns) {
  auto* tree = new QTreeWidget(parent);
  tree->setObjectName(name);
  tree->setAccessibleName(title);
  tree->setToolTip(tip);
  tree->setHeaderLabels(columns);
  tree->setUniformRowHeights(true);
  tree->setFrameShape(QFrame::NoFrame);
  tree->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  return tree;
}

void ShowVariable(QTreeWidgetItem& item, const TVariable& variable) {
  item.setText(0, ToQString(variable.Name));
  // A value of several lines would be cut in its row.
  item.setText(1, ToQString(variable.Value).simplified());
  item.setToolTip(1, ToQString(variable.Value));
  item.setText(2, ToQString(variable.Type));
  const QPalette palette = item.treeWidget() != nullptr ? item.treeWidget()->palette() : QPalette();
  item.setForeground(1, variable.Failed ? palette.placeholderText() : palette.text());
  qDeleteAll(item.takeChildren());
  for (const TVariable& part : variable.Parts) {
    auto* child = new QTreeWidgetItem;
    item.addChild(child);
    ShowVariable(*child, part);
  }
}

}  // namespace wrenfold
