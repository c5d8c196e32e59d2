// The suite's own pictures, drawn in the colours of the desktop.
#pragma once

#include <QIcon>

namespace wrenfold {

// Numbers of pictures, as menus and tool bars of the suite refer to them.
enum TSuiteImage : int {
  siViewUnits = 20,
  siViewForms = 21,
  siAbout = 50,
  siUnitManager = 61,
  siExit = 100,
  siOpen,
  siClose,
  siMoveUp,
  siMoveDown,
  siSort,
  siFilter,
  siSave,
  siSaveAs,
  siAdd,
  siDelete,
  siExpand,
  siCollapse,
  siUndo,
  siJournal,
  siGetData,
  siLineCount,
};

// The picture of that number, sharp at every size, light on dark desktops and dark on light ones;
// null when there is none.
QIcon SuiteIcon(int number);

}  // namespace wrenfold
