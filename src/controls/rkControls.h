// Combo boxes that draw their lines and open a chooser: for colours and for fonts.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStyleOption>
#include <memory>
#include <string>

#include "platform/core/model/StringList.h"
#include "platform/widgets/Control.h"

namespace wrenfold {

enum TComboEditStyle : std::uint8_t { esDropDown, esDropDownList };
template <>
struct TEnumDescription<TComboEditStyle> {
  static constexpr const char* Name = "TComboEditStyle";
  static constexpr std::array Values{"esDropDown", "esDropDownList"};
};
using TComboEditStyles = TSet<TComboEditStyle>;

// The base: lines with pictures, drawn by descendants, over an editable text (esDropDown) or
// without one (esDropDownList). A double click, Ctrl+Enter and, without an editable text and a menu
// of its own, the gesture for the local menu open the descendant's chooser.
class TOwnerComboEdit : public TControlOf<QComboBox> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TOwnerComboEdit(TComponent* owner = nullptr, QWidget* parent = nullptr);

  TComboEditStyle Style() const { return isEditable() ? esDropDown : esDropDownList; }
  // Fills the control anew.
  void SetStyle(TComboEditStyle style);
  // The editable text; without one, that of the selected line.
  std::string Text() const;
  bool CanUndo() const { return isEditable() && lineEdit()->isUndoAvailable(); }
  void Undo() { lineEdit()->undo(); }

  // Opens a dialog that picks a value beside the lines.
  virtual void CustomQuery() {}

  bool ClaimsKey(const QKeyEvent& key) const override;
  TNotifyEvent OnChange;
  // The user typed what leaves the value as it is, perhaps because it names none.
  TNotifyEvent OnTyped;
  // The user picked a value whole: a line of the list, or in the chooser. After OnChange.
  TNotifyEvent OnPick;

 protected:
  // Fills the lines and shows the value. Called when the control is made anew.
  virtual void CreateContents() {}
  // The user picked the line that is selected now.
  virtual void Click() {}
  // The user changed the editable text.
  virtual void Change() {}
  // The control got the focus.
  virtual void Enter() {}
  // The picture of a line; -1: of the value.
  virtual int PictureWidth() const { return 0; }
  virtual void DrawPicture(QPainter& painter, const QRect& place, int index) const;
  // The font and, beside the picture, the text of a line in the list.
  virtual QFont LineFont(int index) const;
  virtual bool TextShown() const { return true; }

  // Selects a line (-1: none) without touching the text that the user has typed.
  void SelectQuietly(int index);
  // Puts a text into the editable part.
  void PutText(const QString& text);
  void ShowPictureOfValue();

  bool event(QEvent* event) override;
  bool eventFilter(QObject* receiver, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void showPopup() override;

 private:
  class TLineDelegate;
  class TValuePicture;
  void MakeEditable(bool editable);
  QRect PicturePlace(const QRect& rect) const;
  void DrawLine(QPainter& painter, QStyleOptionViewItem option, int index) const;

  TValuePicture* FPicture = nullptr;
  bool FFocused = false, FWorking = false;
};

// Chooses a colour from a table, by name or as a number, or in the colour dialog.
class TColorEdit : public TOwnerComboEdit {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TColorEdit(TComponent* owner = nullptr, QWidget* parent = nullptr);
  ~TColorEdit() override;

  // Other names for the colours of the table, by position; an empty line keeps the table's name.
  TStrings* ColorNames() const { return FColorNames.get(); }
  void SetColorNames(TStrings* names);
  TColor ColorValue() const { return FColorValue; }
  void SetColorValue(TColor value);
  // Of the swatch, in logical pixels.
  std::int32_t ColorWidth() const { return FColorWidth; }
  void SetColorWidth(std::int32_t width);
  // Whether names stand beside the swatches.
  bool DisplayNames() const { return FDisplayNames; }
  void SetDisplayNames(bool display);

  void CustomQuery() override;

  // By the names that are shown; letter case does not matter.
  bool InternalIdentToColor(const std::string& name, TColor& color) const;
  bool InternalColorToIdent(TColor color, std::string& name) const;
  // A name, or a number, decimal or hexadecimal behind "$".
  TColor InternalStringToColor(const std::string& text, TColor defaultColor) const;
  // A name, else "$" and eight hexadecimal digits.
  std::string InternalColorToString(TColor color) const;

 protected:
  void CreateContents() override;
  void Click() override;
  void Change() override;
  void Enter() override;
  int PictureWidth() const override { return FColorWidth; }
  void DrawPicture(QPainter& painter, const QRect& place, int index) const override;
  bool TextShown() const override { return FDisplayNames; }

 private:
  void PopulateList();
  void NamesChanged(TObject*) { CreateContents(); }
  int LineOf(TColor color) const;
  TColor LineColor(int index) const;
  bool TakeColor(TColor color);

  std::unique_ptr<TStringList> FColorNames;
  TColor FColorValue = clBlack;
  std::int32_t FColorWidth = 22;
  bool FDisplayNames = true;
};

// The table's name of a colour, else "$" and eight hexadecimal digits.
std::string ColorAsShownText(TColor color);

enum TFontDevice : std::uint8_t { fdScreen, fdPrinter, fdBoth };
template <>
struct TEnumDescription<TFontDevice> {
  static constexpr const char* Name = "TFontDevice";
  static constexpr std::array Values{"fdScreen", "fdPrinter", "fdBoth"};
};

enum TFontListOption : std::uint8_t {
  foAnsiOnly,
  foTrueTypeOnly,
  foFixedPitchOnly,
  foNoOEMFonts,
  foOEMFontsOnly,
  foScalableOnly,
  foNoSymbolFonts
};
template <>
struct TEnumDescription<TFontListOption> {
  static constexpr const char* Name = "TFontListOption";
  static constexpr std::array Values{"foAnsiOnly",     "foTrueTypeOnly", "foFixedPitchOnly",
                                     "foNoOEMFonts",   "foOEMFontsOnly", "foScalableOnly",
                                     "foNoSymbolFonts"};
};
template <>
struct TSetDescription<TFontListOption> {
  static constexpr const char* Name = "TFontListOptions";
};
using TFontListOptions = TSet<TFontListOption>;

// A font that tells its owner of every change, beside the event that others may take.
class TNotifyingFont : public TFont {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TNotifyEvent OnNotify;

 protected:
  void Changed() override;
};

// Chooses a font: its name from the installed ones, each drawn in itself, all of it in the font
// dialog.
class TFontEdit : public TOwnerComboEdit {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TFontEdit(TComponent* owner = nullptr, QWidget* parent = nullptr);

  TFontDevice Device() const { return FDevice; }
  void SetDevice(TFontDevice device);
  // Which of the installed fonts are listed: those that every option keeps.
  TFontListOptions Options() const { return FOptions; }
  void SetOptions(TFontListOptions options);
  TFont* SelFont() const { return FSelFont.get(); }
  void SetSelFont(TFont* font);
  // Lists the installed fonts; the user can then enter the name of an installed font only.
  // Otherwise nothing is listed and every name is taken.
  bool UseFonts() const { return FUseFonts; }
  void SetUseFonts(bool use);
  // The text that is entered is the name of the font.
  bool TextIsTaken() const;

  void CustomQuery() override;

 protected:
  void CreateContents() override;
  void Click() override;
  void Change() override;
  void Enter() override;
  int PictureWidth() const override { return FUseFonts ? 16 : 0; }
  void DrawPicture(QPainter& painter, const QRect& place, int index) const override;
  QFont LineFont(int index) const override;

 private:
  void ShowSelFont();
  void SelFontChanged(TObject*);
  bool TakeName(const std::string& name);

  TFontDevice FDevice = fdScreen;
  TFontListOptions FOptions;
  std::unique_ptr<TNotifyingFont> FSelFont;
  bool FUseFonts = false, FShowing = false;
};

// The families that the options keep, sorted.
std::vector<std::string> InstalledFonts(TFontDevice device, TFontListOptions options);

enum TEllipsisStyle : std::uint8_t { esNone, esEndEllipsis, esPathEllipsis };
template <>
struct TEnumDescription<TEllipsisStyle> {
  static constexpr const char* Name = "TEllipsisStyle";
  static constexpr std::array Values{"esNone", "esEndEllipsis", "esPathEllipsis"};
};

// A label whose caption, where it does not fit, is shortened at its end or inside a path; the tool
// tip shows it whole then.
class TEllipsisLabel : public TControlOf<QLabel> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TEllipsisLabel(TComponent* owner = nullptr, QWidget* parent = nullptr);

  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;
  TEllipsisStyle Style() const { return FStyle; }
  void SetStyle(TEllipsisStyle style);
  // Some of the caption does not show.
  bool Shortened() const;
  // What shows of a text in that width.
  QString ShownText(int width) const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  TEllipsisStyle FStyle = esNone;
};

}  // namespace wrenfold
