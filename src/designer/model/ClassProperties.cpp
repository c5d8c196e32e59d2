// Tables: what properties there are, which class has which, what differs in a class.
#include "designer/model/ClassProperties.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

using enum TPropertyKind;

// Groups of properties that many classes share. A class lists groups; a row of its own that comes
// later takes the place of one with the same name.
struct TGroup {
  std::string_view Name;
  std::vector<TKnownProperty> Rows;
};

const std::vector<TGroup>& Groups() {
  static const std::vector<TGroup> groups = {
      {"component", {{"Tag", Integer, {}, "0"}}},
      {"control",
       {{"Left", Integer},
        {"Top", Integer},
        {"Width", Integer},
        {"Height", Integer},
        {"Cursor", Cursor, {}, "crDefault"},
        {"Hint", Text, {}, "''"},
        {"ShowHint", Boolean, {}, "False"},
        {"ParentShowHint", Boolean, {}, "True"},
        {"Visible", Boolean, {}, "True"},
        {"Enabled", Boolean, {}, "True"},
        {"Align", Enumeration, "TAlign", "alNone"},
        {"Anchors", Set, "TAnchors", "[akLeft, akTop]"},
        {"PopupMenu", Reference, "TPopupMenu"},
        {"DragMode", Enumeration, "TDragMode", "dmManual"},
        {"DragCursor", Cursor, {}, "crDrag"},
        {"Constraints.MinWidth", Integer, {}, "0"},
        {"Constraints.MinHeight", Integer, {}, "0"},
        {"Constraints.MaxWidth", Integer, {}, "0"},
        {"Constraints.MaxHeight", Integer, {}, "0"},
        {"OnClick", Event, "TNotifyEvent"},
        {"OnMouseDown", Event, "TMouseEvent"},
        {"OnMouseMove", Event, "TMouseMoveEvent"},
        {"OnMouseUp", Event, "TMouseEvent"},
        {"OnDragDrop", Event, "TDragDropEvent"},
        {"OnDragOver", Event, "TDragOverEvent"}}},
      {"double", {{"OnDblClick", Event, "TNotifyEvent"}}},
      {"look",
       {{"Color", Color},
        {"ParentColor", Boolean, {}, "False"},
        {"Font", Font},
        {"Font.Charset", Integer},
        {"Font.Color", Color},
        {"Font.Height", Integer},
        {"Font.Name", Text},
        {"Font.Style", Set, "TFontStyles"},
        {"ParentFont", Boolean, {}, "True"}}},
      {"windowed",
       {{"TabOrder", Integer},
        {"TabStop", Boolean, {}, "True"},
        {"HelpContext", Integer, {}, "0"},
        {"Ctl3D", Boolean, {}, "True"},
        {"ParentCtl3D", Boolean, {}, "True"},
        {"OnEnter", Event, "TNotifyEvent"},
        {"OnExit", Event, "TNotifyEvent"}}},
      {"keys",
       {{"OnKeyDown", Event, "TKeyEvent"},
        {"OnKeyPress", Event, "TKeyPressEvent"},
        {"OnKeyUp", Event, "TKeyEvent"}}},
      {"caption", {{"Caption", Text, {}, "''"}}},
      {"action", {{"Action", Reference, "TAction"}}},
      {"border", {{"BorderStyle", Enumeration, "TBorderStyle", "bsSingle"}}},
      {"bevels",
       {{"BevelInner", Enumeration, "TPanelBevel", "bvNone"},
        {"BevelOuter", Enumeration, "TPanelBevel", "bvRaised"},
        {"BevelWidth", Integer, {}, "1"},
        {"BorderWidth", Integer, {}, "0"}}},
      {"edit",
       {{"AutoSelect", Boolean, {}, "True"},
        {"AutoSize", Boolean, {}, "True"},
        {"CharCase", Enumeration, "TEditCharCase", "ecNormal"},
        {"HideSelection", Boolean, {}, "True"},
        {"MaxLength", Integer, {}, "0"},
        {"ReadOnly", Boolean, {}, "False"},
        {"OnChange", Event, "TNotifyEvent"}}},
      {"glyph",
       {{"Glyph.Data", Picture},
        {"NumGlyphs", Integer, {}, "1"},
        {"Layout", Enumeration, "TButtonLayout", "blGlyphLeft"},
        {"Margin", Integer, {}, "-1"},
        {"Spacing", Integer, {}, "4"}}},
      {"check",
       {{"Alignment", Enumeration, "TLeftRight", "taRightJustify"},
        {"Checked", Boolean, {}, "False"}}},
      {"items",
       {{"Items.Strings", Strings},
        {"ItemHeight", Integer},
        {"Sorted", Boolean, {}, "False"},
        {"OnDrawItem", Event, "TDrawItemEvent"},
        {"OnMeasureItem", Event, "TMeasureItemEvent"}}},
      {"images", {{"Images", Reference, "TCustomImageList"}, {"ImageIndex", Integer, {}, "-1"}}},
      {"form",
       {{"BorderIcons", Set, "TBorderIcons", "[biSystemMenu, biMinimize, biMaximize]"},
        {"BorderStyle", Enumeration, "TFormBorderStyle", "bsSizeable"},
        {"ClientWidth", Integer},
        {"ClientHeight", Integer},
        {"FormStyle", Enumeration, "TFormStyle", "fsNormal"},
        {"Icon.Data", Picture},
        {"KeyPreview", Boolean, {}, "False"},
        {"Menu", Reference, "TMainMenu"},
        {"PixelsPerInch", Integer},
        {"Position", Enumeration, "TPosition", "poDesigned"},
        {"PrintScale", Enumeration, "TPrintScale", "poProportional"},
        {"Scaled", Boolean, {}, "True"},
        {"TextHeight", Integer},
        {"Visible", Boolean, {}, "False"},
        {"WindowState", Enumeration, "TWindowState", "wsNormal"},
        {"ActiveControl", Reference},
        {"OldCreateOrder", Boolean},
        {"OnActivate", Event, "TNotifyEvent"},
        {"OnClose", Event, "TCloseEvent"},
        {"OnCloseQuery", Event, "TCloseQueryEvent"},
        {"OnCreate", Event, "TNotifyEvent"},
        {"OnDeactivate", Event, "TNotifyEvent"},
        {"OnDestroy", Event, "TNotifyEvent"},
        {"OnHide", Event, "TNotifyEvent"},
        {"OnPaint", Event, "TNotifyEvent"},
        {"OnResize", Event, "TNotifyEvent"},
        {"OnShow", Event, "TNotifyEvent"}}},
      {"command",
       {{"Checked", Boolean, {}, "False"},
        {"Enabled", Boolean, {}, "True"},
        {"Visible", Boolean, {}, "True"},
        {"Hint", Text, {}, "''"},
        {"HelpContext", Integer, {}, "0"},
        {"ImageIndex", Integer, {}, "-1"},
        {"ShortCut", ShortCut, {}, "0"}}},
      {"dialog",
       {{"DefaultExt", Text, {}, "''"},
        {"FileName", Text, {}, "''"},
        {"Filter", Text, {}, "''"},
        {"FilterIndex", Integer, {}, "1"},
        {"InitialDir", Text, {}, "''"},
        {"Options", Set, "TOpenOptions"},
        {"Title", Text, {}, "''"}}},
  };
  return groups;
}

struct TClass {
  std::string_view Name;
  std::vector<std::string_view> Groups;
  std::vector<TKnownProperty> Own;
};

const std::vector<TClass>& Classes() {
  static const std::vector<TClass> classes = {
      {"TForm",
       {"component", "control", "double", "look", "windowed", "keys", "caption", "form"},
       {{"TabOrder", Other}, {"TabStop", Boolean, {}, "False"}}},
      {"TFrame", {"component", "control", "double", "look", "windowed"}, {}},
      {"TDataModule",
       {"component"},
       {{"Height", Integer},
        {"Width", Integer},
        {"HorizontalOffset", Integer},
        {"VerticalOffset", Integer},
        {"OnCreate", Event, "TNotifyEvent"},
        {"OnDestroy", Event, "TNotifyEvent"}}},
      {"TLabel",
       {"component", "control", "double", "look", "caption"},
       {{"Alignment", Enumeration, "TAlignment", "taLeftJustify"},
        {"AutoSize", Boolean, {}, "True"},
        {"FocusControl", Reference},
        {"Layout", Enumeration, "TTextLayout", "tlTop"},
        {"ParentColor", Boolean, {}, "True"},
        {"ShowAccelChar", Boolean, {}, "True"},
        {"Transparent", Boolean, {}, "False"},
        {"WordWrap", Boolean, {}, "False"}}},
      {"TStaticText",
       {"component", "control", "double", "look", "windowed", "caption"},
       {{"Alignment", Enumeration, "TAlignment", "taLeftJustify"},
        {"AutoSize", Boolean, {}, "True"},
        {"BorderStyle", Enumeration, "TStaticBorderStyle", "sbsNone"}}},
      {"TButton",
       {"component", "control", "look", "windowed", "keys", "caption", "action"},
       {{"Cancel", Boolean, {}, "False"},
        {"Default", Boolean, {}, "False"},
        {"ModalResult", Integer, {}, "0"}}},
      {"TBitBtn",
       {"component", "control", "look", "windowed", "keys", "caption", "action", "glyph"},
       {{"Cancel", Boolean, {}, "False"},
        {"Default", Boolean, {}, "False"},
        {"Kind", Enumeration, "TBitBtnKind", "bkCustom"},
        {"ModalResult", Integer, {}, "0"}}},
      {"TSpeedButton",
       {"component", "control", "double", "look", "caption", "action", "glyph"},
       {{"AllowAllUp", Boolean, {}, "False"},
        {"Down", Boolean, {}, "False"},
        {"Flat", Boolean, {}, "False"},
        {"GroupIndex", Integer, {}, "0"},
        {"Transparent", Boolean, {}, "True"}}},
      {"TCheckBox",
       {"component", "control", "look", "windowed", "keys", "caption", "action", "check"},
       {{"AllowGrayed", Boolean, {}, "False"},
        {"State", Enumeration, "TCheckBoxState", "cbUnchecked"}}},
      {"TRadioButton",
       {"component", "control", "double", "look", "windowed", "keys", "caption", "action", "check"},
       {}},
      {"TGroupBox", {"component", "control", "double", "look", "windowed", "caption"}, {}},
      {"TRadioGroup",
       {"component", "control", "look", "windowed", "caption"},
       {{"Columns", Integer, {}, "1"},
        {"ItemIndex", Integer, {}, "-1"},
        {"Items.Strings", Strings}}},
      {"TPanel",
       {"component", "control", "double", "look", "windowed", "caption", "bevels"},
       {{"Alignment", Enumeration, "TAlignment", "taCenter"},
        {"BorderStyle", Enumeration, "TBorderStyle", "bsNone"},
        {"FullRepaint", Boolean, {}, "True"},
        {"TabStop", Boolean, {}, "False"},
        {"OnResize", Event, "TNotifyEvent"}}},
      {"TBevel",
       {"component", "control"},
       {{"Shape", Enumeration, "TBevelShape", "bsBox"},
        {"Style", Enumeration, "TBevelStyle", "bsLowered"}}},
      {"TShape",
       {"component", "control"},
       {{"Brush.Color", Color, {}, "clWhite"},
        {"Brush.Style", Enumeration, "TBrushStyle", "bsSolid"},
        {"Pen.Color", Color, {}, "clBlack"},
        {"Pen.Style", Enumeration, "TPenStyle", "psSolid"},
        {"Pen.Width", Integer, {}, "1"},
        {"Shape", Enumeration, "TShapeType", "stRectangle"}}},
      {"TImage",
       {"component", "control", "double"},
       {{"AutoSize", Boolean, {}, "False"},
        {"Center", Boolean, {}, "False"},
        {"Picture.Data", Picture},
        {"Stretch", Boolean, {}, "False"},
        {"Transparent", Boolean, {}, "False"}}},
      {"TPaintBox",
       {"component", "control", "double", "look"},
       {{"OnPaint", Event, "TNotifyEvent"}}},
      {"TEdit",
       {"component", "control", "double", "look", "windowed", "keys", "border", "edit"},
       {{"PasswordChar", Text, {}, "#0"}, {"Text", Text, {}, "''"}}},
      {"TMaskEdit",
       {"component", "control", "double", "look", "windowed", "keys", "border", "edit"},
       {{"EditMask", Text, {}, "''"}, {"Text", Text, {}, "''"}}},
      {"TMemo",
       {"component", "control", "double", "look", "windowed", "keys", "border"},
       {{"Alignment", Enumeration, "TAlignment", "taLeftJustify"},
        {"HideSelection", Boolean, {}, "True"},
        {"Lines.Strings", Strings},
        {"MaxLength", Integer, {}, "0"},
        {"ReadOnly", Boolean, {}, "False"},
        {"ScrollBars", Enumeration, "TScrollStyle", "ssNone"},
        {"WantReturns", Boolean, {}, "True"},
        {"WantTabs", Boolean, {}, "False"},
        {"WordWrap", Boolean, {}, "True"},
        {"OnChange", Event, "TNotifyEvent"}}},
      {"TComboBox",
       {"component", "control", "double", "look", "windowed", "keys", "items"},
       {{"DropDownCount", Integer, {}, "8"},
        {"MaxLength", Integer, {}, "0"},
        {"Style", Enumeration, "TComboBoxStyle", "csDropDown"},
        {"Text", Text, {}, "''"},
        {"OnChange", Event, "TNotifyEvent"},
        {"OnDropDown", Event, "TNotifyEvent"}}},
      {"TListBox",
       {"component", "control", "double", "look", "windowed", "keys", "border", "items"},
       {{"Columns", Integer, {}, "0"},
        {"ExtendedSelect", Boolean, {}, "True"},
        {"IntegralHeight", Boolean, {}, "False"},
        {"MultiSelect", Boolean, {}, "False"},
        {"Style", Enumeration, "TListBoxStyle", "lbStandard"}}},
      {"TSpinEdit",
       {"component", "control", "look", "windowed", "keys", "edit"},
       {{"Increment", Integer, {}, "1"},
        {"MaxValue", Integer},
        {"MinValue", Integer},
        {"Value", Integer}}},
      {"TUpDown",
       {"component", "control", "windowed"},
       {{"Associate", Reference},
        {"Increment", Integer, {}, "1"},
        {"Max", Integer, {}, "100"},
        {"Min", Integer, {}, "0"},
        {"Position", Integer, {}, "0"}}},
      {"TScrollBox", {"component", "control", "double", "look", "windowed", "border"}, {}},
      {"TPageControl",
       {"component", "control", "look", "windowed", "images"},
       {{"ActivePage", Reference, "TTabSheet"},
        {"MultiLine", Boolean, {}, "False"},
        {"TabPosition", Enumeration, "TTabPosition", "tpTop"},
        {"OnChange", Event, "TNotifyEvent"}}},
      {"TTabSheet",
       {"component", "look", "caption"},
       {{"ImageIndex", Integer, {}, "0"},
        {"TabVisible", Boolean, {}, "True"},
        {"OnShow", Event, "TNotifyEvent"},
        {"OnHide", Event, "TNotifyEvent"}}},
      {"TTreeView",
       {"component", "control", "double", "look", "windowed", "keys", "border"},
       {{"HideSelection", Boolean, {}, "True"},
        {"Images", Reference, "TCustomImageList"},
        {"Indent", Integer},
        {"ReadOnly", Boolean, {}, "False"},
        {"OnChange", Event, "TTVChangedEvent"}}},
      {"TListView",
       {"component", "control", "double", "look", "windowed", "keys", "border"},
       {{"Columns", Collection},
        {"LargeImages", Reference, "TCustomImageList"},
        {"MultiSelect", Boolean, {}, "False"},
        {"ReadOnly", Boolean, {}, "False"},
        {"RowSelect", Boolean, {}, "False"},
        {"SmallImages", Reference, "TCustomImageList"},
        {"ViewStyle", Enumeration, "TViewStyle", "vsIcon"}}},
      {"THeaderControl",
       {"component", "control", "look", "windowed", "images"},
       {{"Sections", Collection}}},
      {"TDBGrid",
       {"component", "control", "double", "look", "windowed", "keys", "border"},
       {{"Columns", Collection},
        {"DataSource", Reference, "TDataSource"},
        {"ReadOnly", Boolean, {}, "False"}}},
      {"TCoolBar",
       {"component", "control", "double", "look", "windowed", "images"},
       {{"Bands", Collection}}},
      {"TStatusBar",
       {"component", "control", "double", "look"},
       {{"Panels", Collection},
        {"SimplePanel", Boolean, {}, "False"},
        {"SimpleText", Text, {}, "''"}}},
      {"TToolBar",
       {"component", "control", "double", "look", "windowed", "images"},
       {{"AutoSize", Boolean, {}, "False"},
        {"ButtonHeight", Integer, {}, "22"},
        {"ButtonWidth", Integer, {}, "23"},
        {"Flat", Boolean, {}, "False"},
        {"ShowCaptions", Boolean, {}, "False"}}},
      {"TToolButton",
       {"component", "control", "caption", "action"},
       {{"Down", Boolean, {}, "False"},
        {"Grouped", Boolean, {}, "False"},
        {"ImageIndex", Integer, {}, "-1"},
        {"Style", Enumeration, "TToolButtonStyle", "tbsButton"}}},
      {"TProgressBar",
       {"component", "control", "windowed"},
       {{"Max", Integer, {}, "100"},
        {"Min", Integer, {}, "0"},
        {"Position", Integer, {}, "0"},
        {"Step", Integer, {}, "10"}}},
      {"TTrackBar",
       {"component", "control", "windowed", "keys"},
       {{"Max", Integer, {}, "10"},
        {"Min", Integer, {}, "0"},
        {"Position", Integer, {}, "0"},
        {"OnChange", Event, "TNotifyEvent"}}},
      {"TSplitter",
       {"component", "control", "look"},
       {{"Align", Enumeration, "TAlign", "alLeft"},
        {"Beveled", Boolean, {}, "False"},
        {"MinSize", Integer, {}, "30"}}},
      {"TStringGrid",
       {"component", "control", "double", "look", "windowed", "keys", "border"},
       {{"ColCount", Integer, {}, "5"},
        {"DefaultColWidth", Integer, {}, "64"},
        {"DefaultRowHeight", Integer, {}, "24"},
        {"FixedCols", Integer, {}, "1"},
        {"FixedRows", Integer, {}, "1"},
        {"RowCount", Integer, {}, "5"}}},
      {"TTimer",
       {"component"},
       {{"Enabled", Boolean, {}, "True"},
        {"Interval", Integer, {}, "1000"},
        {"OnTimer", Event, "TNotifyEvent"}}},
      {"TMainMenu", {"component"}, {{"Images", Reference, "TCustomImageList"}}},
      {"TPopupMenu",
       {"component"},
       {{"AutoPopup", Boolean, {}, "True"},
        {"Images", Reference, "TCustomImageList"},
        {"OnPopup", Event, "TNotifyEvent"}}},
      {"TMenuItem",
       {"component", "caption", "action", "command"},
       {{"Default", Boolean, {}, "False"},
        {"GroupIndex", Integer, {}, "0"},
        {"RadioItem", Boolean, {}, "False"},
        {"OnClick", Event, "TNotifyEvent"}}},
      {"TAction",
       {"component", "caption", "command"},
       {{"Category", Text, {}, "''"},
        {"OnExecute", Event, "TNotifyEvent"},
        {"OnHint", Event, "THintEvent"},
        {"OnUpdate", Event, "TNotifyEvent"}}},
      {"TActionList", {"component"}, {{"Images", Reference, "TCustomImageList"}}},
      {"TImageList",
       {"component"},
       {{"Height", Integer, {}, "16"}, {"Width", Integer, {}, "16"}, {"Bitmap", Picture}}},
      {"TOpenDialog", {"component", "dialog"}, {}},
      {"TSaveDialog", {"component", "dialog"}, {}},
  };
  return classes;
}

// A collection of a class of the table above, and what its items have.
struct TItemClass {
  std::string_view Owner;
  std::string_view Collection;
  std::vector<TKnownProperty> Rows;
};

const std::vector<TItemClass>& ItemClasses() {
  static const std::vector<TItemClass> classes = {
      {"TListView",
       "Columns",
       {{"Alignment", Enumeration, "TAlignment", "taLeftJustify"},
        {"AutoSize", Boolean, {}, "False"},
        {"Caption", Text, {}, "''"},
        {"ImageIndex", Integer, {}, "-1"},
        {"MaxWidth", Integer, {}, "0"},
        {"MinWidth", Integer, {}, "0"},
        {"Tag", Integer, {}, "0"},
        {"Width", Integer, {}, "50"}}},
      {"TStatusBar",
       "Panels",
       {{"Alignment", Enumeration, "TAlignment", "taLeftJustify"},
        {"Bevel", Enumeration, "TStatusPanelBevel", "pbLowered"},
        {"Style", Enumeration, "TStatusPanelStyle", "psText"},
        {"Text", Text, {}, "''"},
        {"Width", Integer}}},
      {"THeaderControl",
       "Sections",
       {{"Alignment", Enumeration, "TAlignment", "taLeftJustify"},
        {"AllowClick", Boolean, {}, "True"},
        {"ImageIndex", Integer, {}, "-1"},
        {"MaxWidth", Integer, {}, "10000"},
        {"MinWidth", Integer, {}, "0"},
        {"Text", Text, {}, "''"},
        {"Width", Integer}}},
      {"TDBGrid",
       "Columns",
       {{"Alignment", Enumeration, "TAlignment"},
        {"Color", Color},
        {"Expanded", Boolean, {}, "False"},
        {"FieldName", Text, {}, "''"},
        {"ReadOnly", Boolean},
        {"Title.Caption", Text},
        {"Visible", Boolean, {}, "True"},
        {"Width", Integer}}},
      {"TCoolBar",
       "Bands",
       {{"Break", Boolean, {}, "True"},
        {"Control", Reference},
        {"FixedSize", Boolean, {}, "False"},
        {"ImageIndex", Integer, {}, "-1"},
        {"MinHeight", Integer, {}, "25"},
        {"MinWidth", Integer, {}, "0"},
        {"Text", Text, {}, "''"},
        {"Visible", Boolean, {}, "True"},
        {"Width", Integer}}},
  };
  return classes;
}

struct TTypeRow {
  std::string_view Name;
  std::string_view Values;  // separated by blanks
};
constexpr TTypeRow Types[] = {
    {"TAlign", "alNone alTop alBottom alLeft alRight alClient"},
    {"TAlignment", "taLeftJustify taRightJustify taCenter"},
    {"TAnchors", "akLeft akTop akRight akBottom"},
    {"TBevelShape", "bsBox bsFrame bsTopLine bsBottomLine bsLeftLine bsRightLine bsSpacer"},
    {"TBevelStyle", "bsLowered bsRaised"},
    {"TBitBtnKind",
     "bkCustom bkOK bkCancel bkHelp bkYes bkNo bkClose bkAbort bkRetry bkIgnore bkAll"},
    {"TBorderIcons", "biSystemMenu biMinimize biMaximize biHelp"},
    {"TBorderStyle", "bsNone bsSingle"},
    {"TBrushStyle",
     "bsSolid bsClear bsHorizontal bsVertical bsFDiagonal bsBDiagonal bsCross bsDiagCross"},
    {"TButtonLayout", "blGlyphLeft blGlyphRight blGlyphTop blGlyphBottom"},
    {"TCheckBoxState", "cbUnchecked cbChecked cbGrayed"},
    {"TComboBoxStyle", "csDropDown csSimple csDropDownList csOwnerDrawFixed csOwnerDrawVariable"},
    {"TDragMode", "dmManual dmAutomatic"},
    {"TEditCharCase", "ecNormal ecUpperCase ecLowerCase"},
    {"TFontStyles", "fsBold fsItalic fsUnderline fsStrikeOut"},
    {"TFormBorderStyle", "bsNone bsSingle bsSizeable bsDialog bsToolWindow bsSizeToolWin"},
    {"TFormStyle", "fsNormal fsMDIChild fsMDIForm fsStayOnTop"},
    {"TLeftRight", "taLeftJustify taRightJustify"},
    {"TListBoxStyle", "lbStandard lbOwnerDrawFixed lbOwnerDrawVariable"},
    {"TOpenOptions",
     "ofReadOnly ofOverwritePrompt ofHideReadOnly ofNoChangeDir ofShowHelp ofNoValidate "
     "ofAllowMultiSelect ofExtensionDifferent ofPathMustExist ofFileMustExist ofCreatePrompt "
     "ofShareAware ofNoReadOnlyReturn ofNoTestFileCreate ofNoNetworkButton ofNoLongNames "
     "ofOldStyleDialog ofNoDereferenceLinks ofEnableIncludeNotify ofEnableSizing"},
    {"TPanelBevel", "bvNone bvLowered bvRaised bvSpace"},
    {"TPenStyle", "psSolid psDash psDot psDashDot psDashDotDot psClear psInsideFrame"},
    {"TPosition",
     "poDesigned poDefault poDefaultPosOnly poDefaultSizeOnly poScreenCenter poDesktopCenter "
     "poMainFormCenter poOwnerFormCenter"},
    {"TPrintScale", "poNone poProportional poPrintToFit"},
    {"TScrollStyle", "ssNone ssHorizontal ssVertical ssBoth"},
    {"TShapeType", "stRectangle stSquare stRoundRect stRoundSquare stEllipse stCircle"},
    {"TStatusPanelBevel", "pbNone pbLowered pbRaised"},
    {"TStatusPanelStyle", "psText psOwnerDraw"},
    {"TStaticBorderStyle", "sbsNone sbsSingle sbsSunken"},
    {"TTabPosition", "tpTop tpBottom tpLeft tpRight"},
    {"TTextLayout", "tlTop tlCenter tlBottom"},
    {"TToolButtonStyle", "tbsButton tbsCheck tbsDropDown tbsSeparator tbsDivider"},
    {"TViewStyle", "vsIcon vsSmallIcon vsList vsReport"},
    {"TWindowState", "wsNormal wsMinimized wsMaximized"},
};

struct TEventRow {
  std::string_view Type;
  std::string_view Parameters;
};
constexpr TEventRow Events[] = {
    {"TNotifyEvent", "(Sender: TObject)"},
    {"TCloseEvent", "(Sender: TObject; var Action: TCloseAction)"},
    {"TCloseQueryEvent", "(Sender: TObject; var CanClose: Boolean)"},
    {"TKeyEvent", "(Sender: TObject; var Key: Word; Shift: TShiftState)"},
    {"TKeyPressEvent", "(Sender: TObject; var Key: Char)"},
    {"TMouseEvent", "(Sender: TObject; Button: TMouseButton; Shift: TShiftState; X, Y: Integer)"},
    {"TMouseMoveEvent", "(Sender: TObject; Shift: TShiftState; X, Y: Integer)"},
    {"TDragDropEvent", "(Sender, Source: TObject; X, Y: Integer)"},
    {"TDragOverEvent",
     "(Sender, Source: TObject; X, Y: Integer; State: TDragState; var Accept: Boolean)"},
    {"TDrawItemEvent",
     "(Control: TWinControl; Index: Integer; Rect: TRect; State: TOwnerDrawState)"},
    {"TMeasureItemEvent", "(Control: TWinControl; Index: Integer; var Height: Integer)"},
    {"THintEvent", "(var HintStr: String; var CanShow: Boolean)"},
    {"TTVChangedEvent", "(Sender: TObject; Node: TTreeNode)"},
};

// How C++ has the types of those parameters; the others have their own names.
struct TCppType {
  std::string_view Pascal;
  std::string_view Cpp;
  std::string_view Sign;  // in front of the parameter's name
};
constexpr TCppType CppTypes[] = {
    {"TObject", "TObject", "*"},
    {"TWinControl", "TWinControl", "*"},
    {"TTreeNode", "TTreeNode", "*"},
    {"TRect", "TRect", "&"},
    {"Integer", "int", ""},
    {"Boolean", "bool", ""},
    {"Char", "char", ""},
    {"String", "AnsiString", ""},
};

struct TColorRow {
  std::string_view Name;
  std::uint32_t Value;
};
constexpr TColorRow Colors[] = {
    {"clBlack", 0x000000},
    {"clMaroon", 0x000080},
    {"clGreen", 0x008000},
    {"clOlive", 0x008080},
    {"clNavy", 0x800000},
    {"clPurple", 0x800080},
    {"clTeal", 0x808000},
    {"clGray", 0x808080},
    {"clSilver", 0xC0C0C0},
    {"clRed", 0x0000FF},
    {"clLime", 0x00FF00},
    {"clYellow", 0x00FFFF},
    {"clBlue", 0xFF0000},
    {"clFuchsia", 0xFF00FF},
    {"clAqua", 0xFFFF00},
    {"clWhite", 0xFFFFFF},
    {"clScrollBar", 0x80000000},
    {"clBackground", 0x80000001},
    {"clActiveCaption", 0x80000002},
    {"clInactiveCaption", 0x80000003},
    {"clMenu", 0x80000004},
    {"clWindow", 0x80000005},
    {"clWindowFrame", 0x80000006},
    {"clMenuText", 0x80000007},
    {"clWindowText", 0x80000008},
    {"clCaptionText", 0x80000009},
    {"clActiveBorder", 0x8000000A},
    {"clInactiveBorder", 0x8000000B},
    {"clAppWorkSpace", 0x8000000C},
    {"clHighlight", 0x8000000D},
    {"clHighlightText", 0x8000000E},
    {"clBtnFace", 0x8000000F},
    {"clBtnShadow", 0x80000010},
    {"clGrayText", 0x80000011},
    {"clBtnText", 0x80000012},
    {"clInactiveCaptionText", 0x80000013},
    {"clBtnHighlight", 0x80000014},
    {"cl3DDkShadow", 0x80000015},
    {"cl3DLight", 0x80000016},
    {"clInfoText", 0x80000017},
    {"clInfoBk", 0x80000018},
    {"clNone", 0x1FFFFFFF},
    {"clDefault", 0x20000000},
};

constexpr std::string_view Cursors =
    "crDefault crNone crArrow crCross crIBeam crSize crSizeNESW crSizeNS crSizeNWSE crSizeWE "
    "crUpArrow crHourGlass crDrag crNoDrop crHSplit crVSplit crMultiDrag crSQLWait crNo crAppStart "
    "crHelp crHandPoint";

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const std::size_t blank = text.find(' ');
    words.push_back(text.substr(0, blank));
    text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
  }
  return words;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (bool more = true; more;) {
    const std::size_t end = text.find(separator);
    parts.push_back(Trim(text.substr(0, end)));
    more = end != std::string_view::npos;
    text.remove_prefix(more ? end + 1 : text.size());
  }
  return parts;
}

std::string CppParameter(std::string_view type, std::string_view name, bool byReference) {
  const auto* row = std::ranges::find(CppTypes, type, &TCppType::Pascal);
  const std::string_view cpp = row != std::end(CppTypes) ? row->Cpp : type;
  const std::string_view sign = row != std::end(CppTypes) ? row->Sign : "";
  return fmt::format("{} {}{}", cpp, byReference ? "&" : sign, name);
}

bool NameLess(const TKnownProperty& a, const TKnownProperty& b) {
  return UpperCase(a.Name) < UpperCase(b.Name);
}

std::vector<TKnownProperty> RowsOf(const TClass& known) {
  std::vector<TKnownProperty> rows;
  const auto take = [&rows](const TKnownProperty& row) {
    const auto same = std::find_if(rows.begin(), rows.end(),
                                   [&](const TKnownProperty& r) { return r.Name == row.Name; });
    if (same == rows.end()) rows.push_back(row);
    else *same = row;
  };
  for (const std::string_view name : known.Groups)
    for (const TGroup& group : Groups())
      if (group.Name == name) std::for_each(group.Rows.begin(), group.Rows.end(), take);
  std::for_each(known.Own.begin(), known.Own.end(), take);
  std::sort(rows.begin(), rows.end(), NameLess);
  return rows;
}

const TClass* FindClass(const std::vector<std::string>& chain) {
  for (const std::string& name : chain)
    for (const TClass& known : Classes())
      if (EqualText(known.Name, name)) return &known;
  // "TRxSpeedButton" is most likely a speed button; "T" alone is no ending.
  const TClass* best = nullptr;
  for (const TClass& known : Classes()) {
    const std::string_view ending = known.Name.substr(1);
    const bool fits =
        !chain.empty() && chain[0].size() > ending.size() &&
        EqualText(std::string_view(chain[0]).substr(chain[0].size() - ending.size()), ending);
    if (fits && (best == nullptr || known.Name.size() > best->Name.size())) best = &known;
  }
  return best;
}

}  // namespace

const std::vector<TKnownProperty>& PropertiesOf(const std::vector<std::string>& chain) {
  static const TClass unknown{"", {"component"}, {}};
  static std::map<const TClass*, std::vector<TKnownProperty>> rows;
  const TClass* known = FindClass(chain);
  if (known == nullptr) known = &unknown;
  auto found = rows.find(known);
  if (found == rows.end()) found = rows.emplace(known, RowsOf(*known)).first;
  return found->second;
}

const std::vector<TKnownProperty>& PropertiesOfItem(const std::vector<std::string>& chain,
                                                    std::string_view collection) {
  static const std::vector<TKnownProperty> none;
  const TClass* owner = FindClass(chain);
  for (const TItemClass& known : ItemClasses())
    if (owner != nullptr && known.Owner == owner->Name && EqualText(known.Collection, collection))
      return known.Rows;
  return none;
}

const TKnownProperty* FindPropertyAnywhere(std::string_view path) {
  static const auto all = [] {
    std::map<std::string, TKnownProperty> byName;
    for (const TGroup& group : Groups())
      for (const TKnownProperty& row : group.Rows) byName.emplace(UpperCase(row.Name), row);
    for (const TClass& known : Classes())
      for (const TKnownProperty& row : known.Own) byName.emplace(UpperCase(row.Name), row);
    return byName;
  }();
  const auto found = all.find(UpperCase(path));
  return found != all.end() ? &found->second : nullptr;
}

std::vector<std::string_view> ValuesOfType(std::string_view type) {
  for (const TTypeRow& row : Types)
    if (row.Name == type) return Words(row.Values);
  return {};
}

std::string_view ParametersOfEvent(std::string_view type) {
  for (const TEventRow& row : Events)
    if (row.Type == type) return row.Parameters;
  return {};
}

std::string CppParametersOfEvent(std::string_view type) {
  const std::string_view pascal = ParametersOfEvent(type);
  if (pascal.empty()) return {};
  std::string parameters;
  for (std::string_view group : Split(pascal.substr(1, pascal.size() - 2), ';')) {
    const bool byReference = group.starts_with("var ");
    if (byReference) group.remove_prefix(4);
    const std::size_t colon = group.find(':');
    for (const std::string_view name : Split(group.substr(0, colon), ','))
      parameters.append(parameters.empty() ? "" : ", ")
          .append(CppParameter(Trim(group.substr(colon + 1)), name, byReference));
  }
  return fmt::format("({})", parameters);
}

std::vector<std::string_view> ColorNames() {
  std::vector<std::string_view> names;
  for (const TColorRow& row : Colors) names.push_back(row.Name);
  return names;
}

std::vector<std::string_view> CursorNames() {
  return Words(Cursors);
}

bool FindColor(std::string_view name, std::uint32_t& value) {
  for (const TColorRow& row : Colors) {
    if (!EqualText(row.Name, name)) continue;
    value = row.Value;
    return true;
  }
  return false;
}

}  // namespace wrenfold
