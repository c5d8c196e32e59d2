// Tables of the environment's library.
#include "tools/LintTables.h"

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {
namespace {

constexpr TLibraryClass Classes[] = {{"TAction", ""},
                                     {"TActionList", ""},
                                     {"TBevel", ""},
                                     {"TBitBtn", "TButton"},
                                     {"TButton", ""},
                                     {"TCheckBox", ""},
                                     {"TCheckListBox", ""},
                                     {"TColorDialog", ""},
                                     {"TComboBox", ""},
                                     {"TDBEdit", ""},
                                     {"TDBGrid", ""},
                                     {"TDBMemo", ""},
                                     {"TDBNavigator", ""},
                                     {"TDataSource", ""},
                                     {"TDateTimePicker", ""},
                                     {"TDrawGrid", ""},
                                     {"TEdit", ""},
                                     {"TFindDialog", ""},
                                     {"TFontDialog", ""},
                                     {"TGroupBox", ""},
                                     {"THeaderControl", ""},
                                     {"TImage", ""},
                                     {"TImageList", ""},
                                     {"TLabel", ""},
                                     {"TListBox", ""},
                                     {"TListView", ""},
                                     {"TMainMenu", ""},
                                     {"TMaskEdit", ""},
                                     {"TMemo", ""},
                                     {"TMenuItem", ""},
                                     {"TOpenDialog", ""},
                                     {"TOpenPictureDialog", "TOpenDialog"},
                                     {"TPageControl", ""},
                                     {"TPaintBox", ""},
                                     {"TPanel", ""},
                                     {"TPopupMenu", ""},
                                     {"TPrintDialog", ""},
                                     {"TProgressBar", ""},
                                     {"TRadioButton", ""},
                                     {"TRadioGroup", ""},
                                     {"TReplaceDialog", "TFindDialog"},
                                     {"TRichEdit", ""},
                                     {"TSaveDialog", "TOpenDialog"},
                                     {"TSavePictureDialog", "TOpenPictureDialog"},
                                     {"TScrollBar", ""},
                                     {"TScrollBox", ""},
                                     {"TShape", ""},
                                     {"TSpeedButton", ""},
                                     {"TSpinEdit", ""},
                                     {"TSplitter", ""},
                                     {"TStaticText", ""},
                                     {"TStatusBar", ""},
                                     {"TStringGrid", "TDrawGrid"},
                                     {"TTabControl", ""},
                                     {"TTabSheet", ""},
                                     {"TTimer", ""},
                                     {"TToolBar", ""},
                                     {"TToolButton", ""},
                                     {"TTrackBar", ""},
                                     {"TTreeView", ""},
                                     {"TUpDown", ""}};

// Forms, frames and data modules stand for the roots, whatever their own class.
constexpr std::string_view Sender = "TObject";
constexpr std::string_view Mouse = "TObject;TMouseButton;TShiftState;Integer;Integer";
constexpr TLibraryEvent Events[] = {
    {"OnActivate", Sender, "TForm"},
    {"OnChange", Sender,
     "TEdit TMemo TMaskEdit TSpinEdit TTrackBar TScrollBar TPageControl TRichEdit"},
    {"OnClick", Sender, ""},
    {"OnClose", "TObject;var TCloseAction", "TForm"},
    {"OnCloseQuery", "TObject;var Boolean", "TForm"},
    {"OnCreate", Sender, "TForm TDataModule"},
    {"OnDblClick", Sender, ""},
    {"OnDeactivate", Sender, "TForm"},
    {"OnDestroy", Sender, "TForm TDataModule"},
    {"OnEnter", Sender, ""},
    {"OnExecute", Sender, "TAction"},
    {"OnExit", Sender, ""},
    {"OnHide", Sender, "TForm TTabSheet"},
    {"OnKeyDown", "TObject;var Word;TShiftState", ""},
    {"OnKeyPress", "TObject;var Char", ""},
    {"OnKeyUp", "TObject;var Word;TShiftState", ""},
    {"OnMouseDown", Mouse, ""},
    {"OnMouseMove", "TObject;TShiftState;Integer;Integer", ""},
    {"OnMouseUp", Mouse, ""},
    {"OnPaint", Sender, "TForm TPaintBox"},
    {"OnPopup", Sender, "TPopupMenu"},
    {"OnResize", Sender, "TForm TPanel TScrollBox"},
    {"OnShow", Sender, "TForm TTabSheet"},
    {"OnTimer", Sender, "TTimer"},
    {"OnUpdate", Sender, "TAction"},
};

// Of classes whose events of these names take more.
constexpr std::string_view OtherEvents[] = {"TDBNavigator", "TUpDown", "THeaderControl",
                                            "TStatusBar", "TCheckListBox"};

constexpr std::string_view Types[] = {
    "TObject", "Word",  "TShiftState", "Integer", "TMouseButton", "TCloseAction", "Boolean",
    "Char",    "Byte",  "Cardinal",    "string",  "AnsiString",   "Double",       "Int64",
    "TPoint",  "TRect", "TComponent",  "Single",  "Pointer",      "WideString"};

constexpr std::string_view References[] = {
    "Action",      "ActiveControl",  "ActivePage",   "Associate",    "DataSet",
    "DataSource",  "DisabledImages", "DropDownMenu", "FocusControl", "HotImages",
    "Images",      "LargeImages",    "MasterSource", "Menu",         "PopupMenu",
    "SmallImages", "StateImages",    "SubMenuImages"};

constexpr std::string_view Ancestors[] = {
    "TForm",      "TFrame",   "TDataModule", "TCustomForm",    "TCustomFrame",
    "TComponent", "TObject",  "TPersistent", "TCustomControl", "TWinControl",
    "TControl",   "TPanel",   "TScrollBox",  "TCustomPanel",   "TScrollingWinControl",
    "TTabSheet",  "TGroupBox"};

constexpr std::string_view WithAccelerators[] = {
    "TButton", "TBitBtn", "TCheckBox", "TLabel", "TRadioButton", "TMenuItem", "TSpeedButton"};

bool IsOneOf(std::string_view word, const auto& words) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](std::string_view known) { return EqualText(known, word); });
}

bool ListHolds(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(' '), list.size());
    if (EqualText(list.substr(0, end), word)) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

}  // namespace

const TLibraryClass* FindLibraryClass(std::string_view name) {
  for (const TLibraryClass& known : Classes)
    if (EqualText(known.Name, name)) return &known;
  return nullptr;
}

const TLibraryEvent* FindLibraryEvent(std::string_view name, std::string_view className) {
  if (IsOneOf(className, OtherEvents)) return nullptr;
  for (const TLibraryEvent& event : Events)
    if (EqualText(event.Name, name))
      return event.Classes.empty() || ListHolds(event.Classes, className) ? &event : nullptr;
  return nullptr;
}

bool IsEventName(std::string_view name) {
  return std::any_of(std::begin(Events), std::end(Events),
                     [&](const TLibraryEvent& event) { return EqualText(event.Name, name); });
}

bool IsLibraryType(std::string_view name) {
  return IsOneOf(name, Types);
}
bool IsReference(std::string_view property) {
  return IsOneOf(property, References);
}
bool IsFormAncestor(std::string_view name) {
  return IsOneOf(name, Ancestors);
}
bool HasAccelerator(std::string_view className) {
  return IsOneOf(className, WithAccelerators);
}

}  // namespace wrenfold
