// The table of the workbench's icons.
#include "host/documents/Icons.h"

#include "platform/widgets/DrawnIcon.h"

namespace wrenfold {

namespace {

struct TIconDrawing {
  std::string_view Name;
  const char* Strokes;
};

constexpr TIconDrawing Drawings[] = {
    {"new",
     "s M 9 1.5 L 3.5 1.5 L 3.5 14.5 L 12.5 14.5 L 12.5 5 L 9 1.5 L 9 5 L 12.5 5 "
     "a M 8 7.5 L 8 12 M 5.8 9.7 L 10.2 9.7"},
    {"open", "s M 1.5 13 L 1.5 3 L 6 3 L 7.5 5 L 13 5 L 13 7 M 1.5 13 L 4 7 L 15 7 L 12.5 13 Z"},
    {"project",
     "s M 1.5 13.5 L 1.5 3 L 6 3 L 7.5 5 L 14.5 5 L 14.5 13.5 Z "
     "f M 5 8 L 11 8 L 11 11 L 5 11 Z"},
    {"save",
     "s M 2.5 2.5 L 11.5 2.5 L 13.5 4.5 L 13.5 13.5 L 2.5 13.5 Z a R 5 8.5 6 5 "
     "s R 5.5 2.5 5 3"},
    {"saveall",
     "s M 1.5 4.5 L 9.5 4.5 L 11.5 6.5 L 11.5 14.5 L 1.5 14.5 Z a R 4 10 5 4.5 "
     "s M 4.5 1.5 L 12.5 1.5 L 14.5 3.5 L 14.5 11.5"},
    {"close", "s M 4 4 L 12 12 M 12 4 L 4 12"},
    {"undo", "a M 6 3 L 2.5 6.5 L 6 10 s M 3 6.5 L 10 6.5 L 13 9 L 13 11 L 10.5 13.5 L 6 13.5"},
    {"redo", "a M 10 3 L 13.5 6.5 L 10 10 s M 13 6.5 L 6 6.5 L 3 9 L 3 11 L 5.5 13.5 L 10 13.5"},
    {"cut", "s C 4 12 2 C 12 12 2 M 5.2 10.4 L 11 2 M 10.8 10.4 L 5 2"},
    {"copy", "s R 2.5 2.5 8 9 a R 5.5 5 8 9"},
    {"paste",
     "s M 5 3 L 2.5 3 L 2.5 14 L 7 14 M 10 3 L 12.5 3 L 12.5 5 R 5 1.5 5 3 a R 7.5 7 6 7.5"},
    {"find", "s C 6.5 6.5 4.5 a M 10 10 L 14 14"},
    {"unit",
     "s M 9 1.5 L 3.5 1.5 L 3.5 14.5 L 12.5 14.5 L 12.5 5 L 9 1.5 L 9 5 L 12.5 5 "
     "a M 5.5 8 L 10.5 8 M 5.5 10 L 9 10 M 5.5 12 L 10.5 12"},
    {"form", "s R 1.5 2.5 13 11 M 1.5 5.5 L 14.5 5.5 f R 4 8 5 3"},
    {"frame", "s R 1.5 2.5 13 11 a R 4 5 8 6"},
    {"data", "s M 3 4 L 3 12 L 8 14 L 13 12 L 13 4 L 8 2 Z a M 3 4 L 8 6 L 13 4 M 8 6 L 8 14"},
    {"package", "s R 2.5 5.5 11 8.5 M 2.5 5.5 L 5 2.5 L 11 2.5 L 13.5 5.5 a M 8 2.5 L 8 8"},
    {"resource", "s R 2.5 2.5 11 11 a M 3 12 L 6.5 8 L 9 10.5 L 11 8.5 L 13 11 f C 10.5 5.5 1"},
    {"missing", "w M 8 2 L 15 14 L 1 14 Z M 8 6.5 L 8 10 M 8 11.5 L 8 12.3"},
    {"view", "s R 1.5 2.5 13 11 a M 8 2.5 L 8 13.5"},
    {"newview",
     "s R 1.5 4.5 9 9 M 4.5 4.5 L 4.5 1.5 L 14.5 1.5 L 14.5 10.5 L 10.5 10.5 "
     "a M 6 7 L 6 11 M 4 9 L 8 9"},
    {"modified", "f C 8 8 3"},
    {"readonly", "s R 3.5 7.5 9 6.5 a M 5.5 7.5 L 5.5 5 L 6.5 3 L 9.5 3 L 10.5 5 L 10.5 7.5"},
    {"info", "a C 8 8 6.5 M 8 7 L 8 11.5 M 8 4.3 L 8 5"},
    {"error", "w C 8 8 6.5 M 5.5 5.5 L 10.5 10.5 M 10.5 5.5 L 5.5 10.5"},
    {"goto", "s M 2 3 L 14 3 M 2 13 L 14 13 a M 2 8 L 11 8 M 8 5.5 L 11 8 L 8 10.5"},
    {"wrenfold",
     "a M 1.5 8 L 5 5.5 L 8.5 6.5 L 12.5 2 L 13 5 L 14.5 5.5 L 13 7 L 11.5 11 L 8 13 "
     "L 5 12 Z M 8.5 6.5 L 9.5 9 L 6 10 s M 8 13 L 8 15 M 9.5 12.3 L 10.5 14.8"},
    {"component", "s R 2.5 4.5 11 7 f C 5.5 8 1"},
};

}  // namespace

QIcon WorkbenchIcon(std::string_view name) {
  for (const TIconDrawing& drawing : Drawings)
    if (drawing.Name == name) return DrawnIcon(drawing.Strokes);
  return {};
}

}  // namespace wrenfold
