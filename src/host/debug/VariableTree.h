// Trees that show values of the program: local variables, watches.
#pragma once

#include <QTreeWidget>

#include "debugger/Snapshot.h"

namespace wrenfold {

QTreeWidget* MakeValueTree(QWidget* parent, const char* name, const QString& title,
                           const QString& tip, const QStringList& columns);

// Shows the variable with its parts in the item's first three columns: name, value, type. One that
// has no value is shown pale, with the reason.
void ShowVariable(QTreeWidgetItem& item, const TVariable& variable);

}  // namespace wrenfold
