// What the classes of components look like, and the defaults that form files leave out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

class TDesignNode;

// The ways in which components are drawn: each is one row of the table of painters.
enum class TLook : std::uint8_t {
  Form,
  Frame,
  DataModule,
  Label,
  Button,
  BitButton,
  SpeedButton,
  CheckBox,
  RadioButton,
  GroupBox,
  RadioGroup,
  Panel,
  Bevel,
  Shape,
  Image,
  PaintBox,
  Edit,
  LabeledEdit,
  EditButton,
  SpinEdit,
  Memo,
  ComboBox,
  ColorBox,
  DateEdit,
  Calendar,
  ListBox,
  CheckListBox,
  ListView,
  TreeView,
  Grid,
  DataGrid,
  Header,
  Navigator,
  PageControl,
  TabControl,
  TabSet,
  Notebook,
  Page,
  StatusBar,
  ToolBar,
  ToolButton,
  SpeedBar,
  ButtonPanel,
  UpDown,
  ScrollBar,
  TrackBar,
  ProgressBar,
  ScrollBox,
  Splitter,
  Band,    // a strip of a report
  Icon,    // has no place of its own when the program runs
  Hidden,  // a part of another component: menu items, actions, fields
  Box,
};
inline constexpr std::size_t LookCount = static_cast<std::size_t>(TLook::Box) + 1;
// "SpeedButton" and so on.
std::string_view LookName(TLook look);

// The colour that a component has where none is stored.
enum class TGround : std::uint8_t { Parent, Window, Face };

struct TClassRow {
  std::string_view Name;
  TLook Look;
  TGround Ground;
  std::int16_t Width;  // where none is stored; 0: what the component lies in says it
  std::int16_t Height;
  bool Graphic = false;  // has no window: drawn behind its neighbours that have one
};

// The row of that name (letter case ignored), or null.
const TClassRow* FindClassRow(std::string_view className);

enum class TResolution : std::uint8_t { ByClass, ByLikeness, AsBox };

struct TResolvedClass {
  const TClassRow* Row = nullptr;  // never null once resolved
  TResolution How = TResolution::AsBox;
  std::string_view Because;  // the ancestor, ending or property that decided; a view of constants
                             // or of the ancestors' names, empty for the class itself
};

// The way to draw a class: by its own name, else by the nearest ancestor that is known, else by the
// ending of its name (the longest that is known), else no row.
TResolvedClass ResolveClass(std::string_view className, const std::vector<std::string>& ancestors);

// What a component of an unknown class is like, by what it stores: lines, columns, a picture, a
// caption; a box when nothing tells. `visual` is false for one that has no place on the form.
TResolvedClass ResolveByContents(const TDesignNode& node, bool visual);

}  // namespace wrenfold
