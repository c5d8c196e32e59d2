// The table of classes and the endings of names that tell what an unknown class is like.
#include "designer/model/ClassTable.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "designer/model/DesignNode.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

using enum TGround;
using L = TLook;

constexpr bool graphic = true;

constexpr TClassRow Rows[] = {
    {"TForm", L::Form, Face, 320, 240},
    {"TCustomForm", L::Form, Face, 320, 240},
    {"TFrame", L::Frame, Parent, 320, 240},
    {"TCustomFrame", L::Frame, Parent, 320, 240},
    {"TDataModule", L::DataModule, Window, 300, 200},
    // Texts and decoration.
    {"TLabel", L::Label, Parent, 65, 13, graphic},
    {"TStaticText", L::Label, Parent, 65, 17},
    {"TDBText", L::Label, Parent, 65, 17, graphic},
    {"TLinkLabel", L::Label, Parent, 65, 17},
    {"TBoundLabel", L::Label, Parent, 65, 13, graphic},
    {"TBevel", L::Bevel, Parent, 50, 50, graphic},
    {"TDividerBevel", L::Bevel, Parent, 170, 17, graphic},
    {"TShape", L::Shape, Parent, 65, 65, graphic},
    {"TImage", L::Image, Parent, 105, 105, graphic},
    {"TDBImage", L::Image, Window, 105, 105},
    {"TPaintBox", L::PaintBox, Parent, 105, 105, graphic},
    {"TAnimate", L::PaintBox, Parent, 100, 80},
    // Buttons.
    {"TButton", L::Button, Face, 75, 25},
    {"TBitBtn", L::BitButton, Face, 75, 25},
    {"TSpeedButton", L::SpeedButton, Parent, 23, 22, graphic},
    {"TColorButton", L::SpeedButton, Parent, 75, 25, graphic},
    {"TToggleBox", L::Button, Face, 75, 25},
    {"TCheckBox", L::CheckBox, Parent, 97, 17},
    {"TDBCheckBox", L::CheckBox, Parent, 97, 17},
    {"TRadioButton", L::RadioButton, Parent, 113, 17},
    // Boxes.
    {"TGroupBox", L::GroupBox, Parent, 185, 105},
    {"TRadioGroup", L::RadioGroup, Parent, 185, 105},
    {"TDBRadioGroup", L::RadioGroup, Parent, 185, 105},
    {"TCheckGroup", L::RadioGroup, Parent, 185, 105},
    {"TPanel", L::Panel, Face, 185, 41},
    {"TScrollBox", L::ScrollBox, Face, 185, 41},
    {"TControlBar", L::Panel, Face, 100, 50},
    {"TCoolBar", L::Panel, Face, 150, 75},
    {"TPageScroller", L::Panel, Face, 150, 45},
    {"TFlowPanel", L::Panel, Face, 185, 41},
    {"TGridPanel", L::Panel, Face, 185, 41},
    {"TPairSplitter", L::Panel, Face, 180, 180},
    {"TPairSplitterSide", L::Panel, Parent, 90, 180},
    {"TButtonPanel", L::ButtonPanel, Face, 300, 45},
    {"TSplitter", L::Splitter, Face, 3, 100},
    // Edits.
    {"TEdit", L::Edit, Window, 121, 21},
    {"TMaskEdit", L::Edit, Window, 121, 21},
    {"TDBEdit", L::Edit, Window, 121, 21},
    {"THotKey", L::Edit, Window, 121, 19},
    {"TLabeledEdit", L::LabeledEdit, Window, 121, 21},
    {"TEditButton", L::EditButton, Window, 121, 21},
    {"TFileNameEdit", L::EditButton, Window, 121, 21},
    {"TDirectoryEdit", L::EditButton, Window, 121, 21},
    {"TDateEdit", L::EditButton, Window, 121, 21},
    {"TCalcEdit", L::EditButton, Window, 121, 21},
    {"TSpinEdit", L::SpinEdit, Window, 121, 22},
    {"TFloatSpinEdit", L::SpinEdit, Window, 121, 22},
    {"TMemo", L::Memo, Window, 185, 89},
    {"TRichEdit", L::Memo, Window, 185, 89},
    {"TDBMemo", L::Memo, Window, 185, 89},
    {"TDBRichEdit", L::Memo, Window, 185, 89},
    {"TSynEdit", L::Memo, Window, 200, 150},
    {"TComboBox", L::ComboBox, Window, 145, 21},
    {"TComboBoxEx", L::ComboBox, Window, 145, 22},
    {"TDBComboBox", L::ComboBox, Window, 145, 21},
    {"TDBLookupComboBox", L::ComboBox, Window, 145, 21},
    {"TDriveComboBox", L::ComboBox, Window, 145, 19},
    {"TFilterComboBox", L::ComboBox, Window, 145, 21},
    {"TColorBox", L::ColorBox, Window, 145, 22},
    {"TDateTimePicker", L::DateEdit, Window, 186, 21},
    {"TMonthCalendar", L::Calendar, Window, 191, 154},
    {"TCalendar", L::Calendar, Window, 320, 120},
    // Lists.
    {"TListBox", L::ListBox, Window, 121, 97},
    {"TDBListBox", L::ListBox, Window, 121, 97},
    {"TDBLookupListBox", L::ListBox, Window, 121, 95},
    {"TFileListBox", L::ListBox, Window, 145, 97},
    {"TDirectoryListBox", L::ListBox, Window, 145, 97},
    {"TColorListBox", L::ListBox, Window, 121, 97},
    {"TCheckListBox", L::CheckListBox, Window, 121, 97},
    {"TValueListEditor", L::Grid, Window, 306, 300},
    {"TListView", L::ListView, Window, 250, 150},
    {"TShellListView", L::ListView, Window, 250, 150},
    {"TTreeView", L::TreeView, Window, 121, 97},
    {"TShellTreeView", L::TreeView, Window, 121, 97},
    {"TOutline", L::TreeView, Window, 121, 97},
    {"TStringGrid", L::Grid, Window, 320, 120},
    {"TDrawGrid", L::Grid, Window, 320, 120},
    {"TDBGrid", L::DataGrid, Window, 320, 120},
    {"TDBCtrlGrid", L::Panel, Parent, 320, 240},
    {"THeader", L::Header, Face, 250, 25},
    {"THeaderControl", L::Header, Face, 250, 17},
    {"TDBNavigator", L::Navigator, Face, 240, 25},
    // Pages.
    {"TPageControl", L::PageControl, Face, 289, 193},
    {"TTabControl", L::TabControl, Face, 289, 193},
    {"TTabSet", L::TabSet, Face, 185, 21},
    {"TNotebook", L::Notebook, Face, 150, 150},
    {"TTabbedNotebook", L::PageControl, Face, 300, 250},
    {"TTabSheet", L::Page, Parent, 0, 0},
    {"TPage", L::Page, Parent, 0, 0},
    {"TTabPage", L::Page, Parent, 0, 0},
    // Bars.
    {"TStatusBar", L::StatusBar, Face, 0, 19},
    {"TToolBar", L::ToolBar, Face, 150, 29},
    {"TToolButton", L::ToolButton, Parent, 0, 0, graphic},
    {"TSpeedBar", L::SpeedBar, Face, 150, 29},
    {"TSpeedItem", L::SpeedButton, Parent, 0, 0, graphic},
    {"TUpDown", L::UpDown, Face, 17, 25},
    {"TSpinButton", L::UpDown, Face, 20, 25},
    {"TScrollBar", L::ScrollBar, Face, 121, 16},
    {"TTrackBar", L::TrackBar, Face, 150, 45},
    {"TProgressBar", L::ProgressBar, Face, 150, 16},
    {"TGauge", L::ProgressBar, Parent, 100, 100, graphic},
    {"TDBProgress", L::ProgressBar, Face, 150, 16},
    // Reports.
    {"TQuickRep", L::Panel, Window, 794, 1123},
    {"TQRBand", L::Band, Window, 718, 40},
    // Without a place of their own.
    {"TMainMenu", L::Icon, Parent, 0, 0},
    {"TPopupMenu", L::Icon, Parent, 0, 0},
    {"TImageList", L::Icon, Parent, 0, 0},
    {"TActionList", L::Icon, Parent, 0, 0},
    {"TTimer", L::Icon, Parent, 0, 0},
    {"TIdleTimer", L::Icon, Parent, 0, 0},
    {"TTrayIcon", L::Icon, Parent, 0, 0},
    {"TOpenDialog", L::Icon, Parent, 0, 0},
    {"TSaveDialog", L::Icon, Parent, 0, 0},
    {"TOpenPictureDialog", L::Icon, Parent, 0, 0},
    {"TSavePictureDialog", L::Icon, Parent, 0, 0},
    {"TSelectDirectoryDialog", L::Icon, Parent, 0, 0},
    {"TFontDialog", L::Icon, Parent, 0, 0},
    {"TColorDialog", L::Icon, Parent, 0, 0},
    {"TPrintDialog", L::Icon, Parent, 0, 0},
    {"TPrinterSetupDialog", L::Icon, Parent, 0, 0},
    {"TFindDialog", L::Icon, Parent, 0, 0},
    {"TReplaceDialog", L::Icon, Parent, 0, 0},
    {"TDataSource", L::Icon, Parent, 0, 0},
    {"TDataSet", L::Icon, Parent, 0, 0},
    {"TTable", L::Icon, Parent, 0, 0},
    {"TQuery", L::Icon, Parent, 0, 0},
    {"TDatabase", L::Icon, Parent, 0, 0},
    {"TSession", L::Icon, Parent, 0, 0},
    {"TClientDataSet", L::Icon, Parent, 0, 0},
    {"TApplicationEvents", L::Icon, Parent, 0, 0},
    {"TApplicationProperties", L::Icon, Parent, 0, 0},
    // Parts of others.
    {"TMenuItem", L::Hidden, Parent, 0, 0},
    {"TAction", L::Hidden, Parent, 0, 0},
    {"TField", L::Hidden, Parent, 0, 0},
    {"TSynGutterPartList", L::Hidden, Parent, 0, 0},
    {"TSynRightGutterPartList", L::Hidden, Parent, 0, 0},
    {"TSynLeftGutterPartList", L::Hidden, Parent, 0, 0},
};

struct TEnding {
  std::string_view Ending;
  std::string_view ClassName;
};

// What endings of names mean, beside the names of the table themselves without their "T". The
// longest ending counts, so that a date edit is no edit.
constexpr TEnding Endings[] = {
    {"Btn", "TBitBtn"},
    {"ImgBtn", "TBitBtn"},
    {"ExpressButton", "TSpeedButton"},
    {"XPToolButton", "TSpeedButton"},
    {"FlatButton", "TSpeedButton"},
    {"CaptionButton", "TSpeedButton"},
    {"ColorBtn", "TColorButton"},
    {"Chk", "TCheckBox"},
    {"Check", "TCheckBox"},
    {"Switch", "TCheckBox"},
    {"Radio", "TRadioButton"},
    {"CheckedListBox", "TCheckListBox"},
    {"ComboEdit", "TEditButton"},
    {"ButtonEdit", "TEditButton"},
    {"CurrencyEdit", "TEditButton"},
    {"FileEdit", "TEditButton"},
    {"FilenameEdit", "TEditButton"},
    {"FileNameBox", "TEditButton"},
    {"DirectoryBox", "TEditButton"},
    {"CalculatorBox", "TEditButton"},
    {"ButtonBox", "TEditButton"},
    {"EditBox", "TEdit"},
    {"TimeEdit", "TDateTimePicker"},
    {"TimePicker", "TDateTimePicker"},
    {"DatePicker", "TDateTimePicker"},
    {"Calendar2", "TMonthCalendar"},
    {"HLEditor", "TSynEdit"},
    {"HexEdit", "TSynEdit"},
    {"Editor", "TSynEdit"},
    {"EditEx", "TEdit"},
    {"Combo", "TComboBox"},
    {"DBIndexCombo", "TComboBox"},
    {"ColorComboBox", "TColorBox"},
    {"ColorCombo", "TColorBox"},
    {"ListBoxEx", "TListBox"},
    {"ListEdit", "TListBox"},
    {"List", "TListBox"},
    {"VirtualStringTree", "TTreeView"},
    {"StringTree", "TTreeView"},
    {"DrawTree", "TTreeView"},
    {"Tree", "TTreeView"},
    {"TreeView2", "TTreeView"},
    {"GridEx", "TStringGrid"},
    {"Grid", "TStringGrid"},
    {"DBUltimGrid", "TDBGrid"},
    {"Label2", "TLabel"},
    {"Text", "TStaticText"},
    {"Link", "TLinkLabel"},
    {"Url", "TLinkLabel"},
    {"Clock", "TStaticText"},
    {"Expr", "TStaticText"},
    {"SysData", "TStaticText"},
    {"Divider", "TDividerBevel"},
    {"Line", "TBevel"},
    {"PanelSimple", "TPanel"},
    {"Bar", "TPanel"},
    {"Dock", "TPanel"},
    {"Container", "TPanel"},
    {"Splitter2", "TSplitter"},
    {"SplitPane", "TPanel"},
    {"Group", "TGroupBox"},
    {"Band", "TQRBand"},
    {"PageControl2", "TPageControl"},
    {"Pages", "TPageControl"},
    {"Tabs", "TTabControl"},
    {"TabBar", "TTabControl"},
    {"Page", "TPage"},
    {"Sheet", "TTabSheet"},
    {"Toolbar", "TToolBar"},
    {"SpeedBar", "TSpeedBar"},
    {"SpeedItem", "TSpeedItem"},
    {"Edit2", "TEdit"},
    {"IPAddress", "TEdit"},
    {"FontBox", "TComboBox"},
    {"Square", "TImage"},
    {"Thumbnail", "TImage"},
    {"Animator", "TImage"},
    {"ToolPanel", "TToolBar"},
    {"Statusbar", "TStatusBar"},
    {"Progress", "TProgressBar"},
    {"Slider", "TTrackBar"},
    {"ScrollMax", "TScrollBox"},
    {"ScrollingWindow", "TScrollBox"},
    {"Scroller", "TScrollBox"},
    {"Img", "TImage"},
    {"Picture", "TImage"},
    {"PreviewBox", "TPaintBox"},
    {"Preview", "TPaintBox"},
    {"Chart", "TPaintBox"},
    {"Item", "TMenuItem"},
    {"Separator", "TMenuItem"},
    {"Popup", "TPopupMenu"},
    {"Menu", "TPopupMenu"},
    {"Dialog", "TOpenDialog"},
    {"Dialog2000", "TOpenDialog"},
    {"Images", "TImageList"},
    {"Source", "TDataSource"},
    {"Storage", "TDataSource"},
    {"Form", "TForm"},
    {"Frm", "TForm"},
    {"DM", "TDataModule"},
};

using TEndingMap = std::unordered_map<std::string, const TClassRow*>;

const std::unordered_map<std::string, const TClassRow*>& RowsByName() {
  static const auto rows = [] {
    std::unordered_map<std::string, const TClassRow*> byName;
    for (const TClassRow& row : Rows) byName.emplace(LowerCase(row.Name), &row);
    return byName;
  }();
  return rows;
}

// Endings of four letters and more from the table itself: "Form" of "TForm" among them.
const TEndingMap& RowsByEnding() {
  static const auto rows = [] {
    TEndingMap byEnding;
    for (const TEnding& ending : Endings)
      byEnding.emplace(LowerCase(ending.Ending), FindClassRow(ending.ClassName));
    for (const TClassRow& row : Rows) byEnding.emplace(LowerCase(row.Name.substr(1)), &row);
    return byEnding;
  }();
  return rows;
}

constexpr std::size_t ShortestEnding = 2;

TResolvedClass ResolveByEnding(std::string_view className) {
  const std::string folded = LowerCase(className);
  for (std::size_t at = 0; at + ShortestEnding <= folded.size(); ++at) {
    const auto found = RowsByEnding().find(folded.substr(at));
    if (found != RowsByEnding().end())
      return {found->second, TResolution::ByLikeness, className.substr(at)};
  }
  return {};
}

// A property and the class that one who stores it is like; the first that is stored counts.
constexpr TEnding Contents[] = {
    {"Picture.Data", "TImage"},      {"Lines.Strings", "TMemo"},  {"Items.Strings", "TListBox"},
    {"Columns", "TListView"},        {"Items.Data", "TTreeView"}, {"Panels", "TStatusBar"},
    {"Tabs.Strings", "TTabControl"}, {"ColCount", "TStringGrid"}, {"Position", "TProgressBar"},
    {"Glyph.Data", "TSpeedButton"},  {"Checked", "TCheckBox"},    {"Text", "TEdit"},
    {"Caption", "TPanel"},
};

constexpr TClassRow BoxRow{"", TLook::Box, Parent, 100, 50};
constexpr TClassRow IconRow{"", TLook::Icon, Parent, 0, 0};
constexpr TClassRow HiddenRow{"", TLook::Hidden, Parent, 0, 0};

constexpr std::array<std::string_view, LookCount> LookNames = {
    "Form",        "Frame",    "DataModule",   "Label",       "Button",      "BitButton",
    "SpeedButton", "CheckBox", "RadioButton",  "GroupBox",    "RadioGroup",  "Panel",
    "Bevel",       "Shape",    "Image",        "PaintBox",    "Edit",        "LabeledEdit",
    "EditButton",  "SpinEdit", "Memo",         "ComboBox",    "ColorBox",    "DateEdit",
    "Calendar",    "ListBox",  "CheckListBox", "ListView",    "TreeView",    "Grid",
    "DataGrid",    "Header",   "Navigator",    "PageControl", "TabControl",  "TabSet",
    "Notebook",    "Page",     "StatusBar",    "ToolBar",     "ToolButton",  "SpeedBar",
    "ButtonPanel", "UpDown",   "ScrollBar",    "TrackBar",    "ProgressBar", "ScrollBox",
    "Splitter",    "Band",     "Icon",         "Hidden",      "Box",
};
static_assert(!LookNames.back().empty(), "a look without a name");

}  // namespace

std::string_view LookName(TLook look) {
  return LookNames[static_cast<std::size_t>(look)];
}

const TClassRow* FindClassRow(std::string_view className) {
  const auto found = RowsByName().find(LowerCase(className));
  return found != RowsByName().end() ? found->second : nullptr;
}

TResolvedClass ResolveClass(std::string_view className, const std::vector<std::string>& ancestors) {
  if (const TClassRow* row = FindClassRow(className)) return {row, TResolution::ByClass, {}};
  for (const std::string& ancestor : ancestors)
    if (const TClassRow* row = FindClassRow(ancestor))
      return {row, TResolution::ByClass, row->Name};
  for (const std::string& ancestor : ancestors)
    if (const TResolvedClass like = ResolveByEnding(ancestor); like.Row != nullptr)
      return {like.Row, like.How, like.Row->Name};
  return ResolveByEnding(className);
}

TResolvedClass ResolveByContents(const TDesignNode& node, bool visual) {
  if (!visual) {
    const bool placed = node.Has("Left") || node.Has("Top");
    return {placed ? &IconRow : &HiddenRow, TResolution::ByLikeness, "without a size"};
  }
  for (const TEnding& content : Contents)
    if (node.Has(content.Ending))
      return {FindClassRow(content.ClassName), TResolution::ByLikeness, content.Ending};
  return {&BoxRow, TResolution::AsBox, {}};
}

}  // namespace wrenfold
