// The table of the suite's pictures.
#include "controls/rkIcons.h"

#include "platform/widgets/DrawnIcon.h"

namespace wrenfold {

namespace {

struct TSuiteDrawing {
  TSuiteImage Number;
  const char* Strokes;
};

constexpr TSuiteDrawing Drawings[] = {
    {siViewUnits,
     "s M 3 1.5 L 10 1.5 L 13 4.5 L 13 14.5 L 3 14.5 Z M 10 1.5 L 10 4.5 L 13 4.5 a M 5.5 7.5 L "
     "10.5 "
     "7.5 M 5.5 10 L 10.5 10 M 5.5 12.5 L 8.5 12.5"},
    {siViewForms,
     "s M 1.5 2.5 L 14.5 2.5 L 14.5 13.5 L 1.5 13.5 Z M 1.5 5.5 L 14.5 5.5 a M 4 8 L 7.5 8 M 9 8 L "
     "12 8 M 9 11 L 12 11"},
    {siAbout, "s C 8 8 6.5 a M 8 7 L 8 11.5 M 8 4.2 L 8 4.8"},
    {siUnitManager,
     "s M 2.5 1.5 L 13.5 1.5 L 13.5 14.5 L 2.5 14.5 Z a M 5 4.5 L 11 4.5 M 5 8 L 11 8 M 5 11.5 L 9 "
     "11.5"},
    {siExit,
     "s M 9.5 4.5 L 9.5 1.5 L 2.5 1.5 L 2.5 14.5 L 9.5 14.5 L 9.5 11.5 a M 6 8 L 14 8 M 11.5 5.5 L "
     "14 8 L 11.5 10.5"},
    {siOpen, "s M 1.5 13 L 1.5 3 L 6 3 L 7.5 5 L 13 5 L 13 7 M 1.5 13 L 4 7 L 15 7 L 12.5 13 Z"},
    {siClose,
     "s M 9 14.5 L 3.5 14.5 L 3.5 1.5 L 9 1.5 L 12.5 5 L 12.5 8 a M 10 10.5 L 14.5 15 M 14.5 10.5 "
     "L 10 15"},
    {siMoveUp, "a M 3.5 7 L 8 2.5 L 12.5 7 s M 8 3 L 8 13.5"},
    {siMoveDown, "a M 3.5 9 L 8 13.5 L 12.5 9 s M 8 2.5 L 8 13"},
    {siSort,
     "s M 7.5 3 L 14.5 3 M 7.5 8 L 12.5 8 M 7.5 13 L 10.5 13 a M 3.5 2.5 L 3.5 13.5 M 1.2 11.2 L "
     "3.5 13.5 L 5.8 11.2"},
    {siFilter,
     "s M 1.5 2.5 L 14.5 2.5 L 9.5 8.5 L 9.5 14 L 6.5 12 L 6.5 8.5 Z a M 4.5 4.8 L 11.5 4.8"},
    {siSave,
     "s M 2 2 L 12 2 L 14 4 L 14 14 L 2 14 Z M 5 2 L 5 5.5 L 10.5 5.5 L 10.5 2 a M 4.5 14 L 4.5 9 "
     "L "
     "11.5 9 L 11.5 14"},
    {siSaveAs,
     "s M 8 14 L 2 14 L 2 2 L 12 2 L 14 4 L 14 7 M 5 2 L 5 5.5 L 10.5 5.5 L 10.5 2 a M 9.5 14.5 L "
     "10 12.5 L 14 8.5 L 15.5 10 L 11.5 14 Z"},
    {siAdd,
     "s M 13.5 8 L 13.5 13.5 L 2.5 13.5 L 2.5 2.5 L 8 2.5 a M 12 1.5 L 12 6.5 M 9.5 4 L 14.5 4"},
    {siDelete,
     "s M 13.5 8 L 13.5 13.5 L 2.5 13.5 L 2.5 2.5 L 8 2.5 a M 10 2 L 14.5 6.5 M 14.5 2 L 10 6.5"},
    {siExpand, "s R 2.5 2.5 11 11 a M 5 8 L 11 8 M 8 5 L 8 11"},
    {siCollapse, "s R 2.5 2.5 11 11 a M 5 8 L 11 8"},
    {siUndo, "a M 6 2.5 L 2.5 6 L 6 9.5 s M 2.5 6 L 9.5 6 L 13 8 L 13 11.5 L 10.5 13.5 L 6.5 13.5"},
    {siJournal,
     "s M 2.5 1.5 L 13.5 1.5 L 13.5 14.5 L 2.5 14.5 Z M 7 5 L 11 5 M 7 8 L 11 8 M 7 11 L 11 11 a M "
     "4.7 5 L 5.2 5 M 4.7 8 L 5.2 8 M 4.7 11 L 5.2 11"},
    {siGetData,
     "s M 4.5 4.5 L 11.5 4.5 L 11.5 11.5 L 4.5 11.5 Z M 6 2 L 6 4.5 M 10 2 L 10 4.5 M 6 11.5 L 6 "
     "14 M "
     "10 11.5 L 10 14 M 2 6 L 4.5 6 M 2 10 L 4.5 10 M 11.5 6 L 14 6 M 11.5 10 L 14 10 a M 8 6 L 8 "
     "10 "
     "M 6.5 8.5 L 8 10 L 9.5 8.5"},
    {siLineCount,
     "s M 6.5 3 L 14.5 3 M 6.5 8 L 14.5 8 M 6.5 13 L 14.5 13 a M 3 2.5 L 3 13.5 M 1 4.5 L 3 2.5 L "
     "5 "
     "4.5 M 1 11.5 L 3 13.5 L 5 11.5"},
};

}  // namespace

QIcon SuiteIcon(int number) {
  for (const TSuiteDrawing& drawing : Drawings)
    if (drawing.Number == number) return DrawnIcon(drawing.Strokes);
  return {};
}

}  // namespace wrenfold
