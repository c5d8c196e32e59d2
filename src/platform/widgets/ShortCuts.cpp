#include "platform/widgets/ShortCuts.h"

#include <QKeyEvent>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::uint16_t ShiftBit = 0x2000, CtrlBit = 0x4000, AltBit = 0x8000;

// Several names of one code: the first is the one that texts are made with.
struct TKeyName {
  std::uint8_t Code;
  int Key;
  std::string_view Name;
};
constexpr TKeyName KeyNames[] = {
    {0x08, Qt::Key_Backspace, "BkSp"}, {0x08, Qt::Key_Backspace, "Backspace"},
    {0x09, Qt::Key_Tab, "Tab"},        {0x0D, Qt::Key_Return, "Enter"},
    {0x0D, Qt::Key_Return, "Return"},  {0x1B, Qt::Key_Escape, "Esc"},
    {0x1B, Qt::Key_Escape, "Escape"},  {0x20, Qt::Key_Space, "Space"},
    {0x21, Qt::Key_PageUp, "PgUp"},    {0x21, Qt::Key_PageUp, "PageUp"},
    {0x22, Qt::Key_PageDown, "PgDn"},  {0x22, Qt::Key_PageDown, "PageDown"},
    {0x23, Qt::Key_End, "End"},        {0x24, Qt::Key_Home, "Home"},
    {0x25, Qt::Key_Left, "Left"},      {0x26, Qt::Key_Up, "Up"},
    {0x27, Qt::Key_Right, "Right"},    {0x28, Qt::Key_Down, "Down"},
    {0x2D, Qt::Key_Insert, "Ins"},     {0x2D, Qt::Key_Insert, "Insert"},
    {0x2E, Qt::Key_Delete, "Del"},     {0x2E, Qt::Key_Delete, "Delete"},
    {0x5D, Qt::Key_Menu, "Menu"},      {0x60, Qt::Key_0, "Num 0"},
    {0x61, Qt::Key_1, "Num 1"},        {0x62, Qt::Key_2, "Num 2"},
    {0x63, Qt::Key_3, "Num 3"},        {0x64, Qt::Key_4, "Num 4"},
    {0x65, Qt::Key_5, "Num 5"},        {0x66, Qt::Key_6, "Num 6"},
    {0x67, Qt::Key_7, "Num 7"},        {0x68, Qt::Key_8, "Num 8"},
    {0x69, Qt::Key_9, "Num 9"},        {0x6A, Qt::Key_Asterisk, "Num *"},
    {0x6B, Qt::Key_Plus, "Num +"},     {0x6D, Qt::Key_Minus, "Num -"},
    {0x6E, Qt::Key_Period, "Num Del"}, {0x6F, Qt::Key_Slash, "Num /"},
    {0xBA, Qt::Key_Semicolon, ";"},    {0xBB, Qt::Key_Equal, "="},
    {0xBB, Qt::Key_Plus, "+"},         {0xBC, Qt::Key_Comma, ","},
    {0xBD, Qt::Key_Minus, "-"},        {0xBE, Qt::Key_Period, "."},
    {0xBF, Qt::Key_Slash, "/"},        {0xC0, Qt::Key_QuoteLeft, "`"},
    {0xDB, Qt::Key_BracketLeft, "["},  {0xDC, Qt::Key_Backslash, "\\"},
    {0xDD, Qt::Key_BracketRight, "]"}, {0xDE, Qt::Key_Apostrophe, "'"},
};
// What the toolkit calls a key that is pressed with Shift: the sign that it writes. The codes are
// those of the keys of a US keyboard; the place of a key on the keyboard (0: any) tells keys apart
// that other layouts give another sign.
struct TShiftedKey {
  int Key;
  unsigned Place;
  std::uint8_t Code;
};
constexpr TShiftedKey ShiftedKeys[] = {
    {Qt::Key_Exclam, 0, '1'},    {Qt::Key_At, 0, '2'},          {Qt::Key_NumberSign, 0, '3'},
    {Qt::Key_Dollar, 0, '4'},    {Qt::Key_Percent, 0, '5'},     {Qt::Key_AsciiCircum, 0, '6'},
    {Qt::Key_Ampersand, 0, '7'}, {Qt::Key_Asterisk, 35, 0xBB},  {Qt::Key_Asterisk, 0, '8'},
    {Qt::Key_ParenLeft, 0, '9'}, {Qt::Key_ParenRight, 0, '0'},  {Qt::Key_Colon, 60, 0xBE},
    {Qt::Key_Colon, 0, 0xBA},    {Qt::Key_Semicolon, 59, 0xBC}, {Qt::Key_Plus, 0, 0xBB},
    {Qt::Key_Less, 0, 0xBC},     {Qt::Key_Underscore, 0, 0xBD}, {Qt::Key_Greater, 0, 0xBE},
    {Qt::Key_Question, 0, 0xBF}, {Qt::Key_AsciiTilde, 0, 0xC0}, {Qt::Key_BraceLeft, 0, 0xDB},
    {Qt::Key_Bar, 0, 0xDC},      {Qt::Key_BraceRight, 0, 0xDD}, {Qt::Key_QuoteDbl, 0, 0xDE},
};
// The row of digits, from 1 to 0, has the same places on every keyboard.
constexpr unsigned FirstDigitPlace = 10;
constexpr std::string_view DigitRow = "1234567890";

constexpr std::uint8_t FirstFunctionKey = 0x70;
constexpr int FunctionKeyCount = 24;
constexpr std::uint8_t FirstNumPad = 0x60, LastNumPad = 0x6F;

bool IsLetterOrDigit(int code) {
  return (code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9');
}

bool IsFunctionKey(int code) {
  return code >= FirstFunctionKey && code < FirstFunctionKey + FunctionKeyCount;
}

std::string KeyName(std::uint8_t code) {
  if (IsLetterOrDigit(code)) return std::string(1, static_cast<char>(code));
  if (IsFunctionKey(code)) return 'F' + IntToStr(code - FirstFunctionKey + 1);
  for (const TKeyName& key : KeyNames)
    if (key.Code == code) return std::string(key.Name);
  return {};
}

std::uint8_t KeyCode(std::string_view name) {
  if (name.size() == 1) {
    const char upper = UpperCase(name)[0];
    if (IsLetterOrDigit(upper)) return static_cast<std::uint8_t>(upper);
  }
  std::int32_t number = 0;
  if (name.size() > 1 && FoldChar(name[0]) == 'f' && name[1] != '-' && name[1] != '+' &&
      TryStrToInt(name.substr(1), number) && number >= 1 && number <= FunctionKeyCount)
    return static_cast<std::uint8_t>(FirstFunctionKey + number - 1);
  for (const TKeyName& key : KeyNames)
    if (EqualText(key.Name, name)) return key.Code;
  return 0;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
  if (text.size() < prefix.size() || !EqualText(text.substr(0, prefix.size()), prefix))
    return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::uint8_t CodeOfKey(int key, bool keypad) {
  if (IsLetterOrDigit(key) && !keypad) return static_cast<std::uint8_t>(key);
  if (key >= Qt::Key_F1 && key < Qt::Key_F1 + FunctionKeyCount)
    return static_cast<std::uint8_t>(FirstFunctionKey + key - Qt::Key_F1);
  if (key == Qt::Key_Enter) return 0x0D;
  if (key == Qt::Key_Backtab) return 0x09;
  for (const TKeyName& name : KeyNames) {
    const bool onPad = name.Code >= FirstNumPad && name.Code <= LastNumPad;
    if (name.Key == key && (keypad || !onPad)) return name.Code;
  }
  return 0;
}

// Zero when the sign alone tells the key.
std::uint8_t CodeOfShifted(int key, unsigned place) {
  if (place >= FirstDigitPlace && place < FirstDigitPlace + DigitRow.size())
    return static_cast<std::uint8_t>(DigitRow[place - FirstDigitPlace]);
  for (const TShiftedKey& shifted : ShiftedKeys)
    if (shifted.Key == key && (shifted.Place == 0 || shifted.Place == place)) return shifted.Code;
  return 0;
}

int KeyOfCode(std::uint8_t code) {
  if (IsLetterOrDigit(code)) return code;
  if (IsFunctionKey(code)) return Qt::Key_F1 + code - FirstFunctionKey;
  for (const TKeyName& name : KeyNames)
    if (name.Code == code) return name.Key;
  return 0;
}

}  // namespace

std::string ShortCutToText(TShortCut shortCut) {
  const std::string name = KeyName(static_cast<std::uint8_t>(shortCut & 0xFF));
  if (name.empty()) return {};
  std::string text;
  if (shortCut & CtrlBit) text += "Ctrl+";
  if (shortCut & ShiftBit) text += "Shift+";
  if (shortCut & AltBit) text += "Alt+";
  return text + name;
}

TShortCut TextToShortCut(std::string_view text) {
  text = Trim(text);
  unsigned modifiers = 0;
  for (;;) {
    if (TakePrefix(text, "Shift+")) modifiers |= ShiftBit;
    else if (TakePrefix(text, "Ctrl+") || TakePrefix(text, "^")) modifiers |= CtrlBit;
    else if (TakePrefix(text, "Alt+")) modifiers |= AltBit;
    else break;
  }
  const unsigned code = KeyCode(text);
  return static_cast<std::uint16_t>(code == 0 ? 0 : code | modifiers);
}

QKeySequence ShortCutToKeySequence(TShortCut shortCut) {
  const int key = KeyOfCode(static_cast<std::uint8_t>(shortCut & 0xFF));
  if (key == 0) return {};
  Qt::KeyboardModifiers modifiers;
  if (shortCut & ShiftBit) modifiers |= Qt::ShiftModifier;
  if (shortCut & CtrlBit) modifiers |= Qt::ControlModifier;
  if (shortCut & AltBit) modifiers |= Qt::AltModifier;
  return QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(key)));
}

TShortCut ShortCutOf(int key, Qt::KeyboardModifiers modifiers, unsigned place) {
  const bool keypad = modifiers.testFlag(Qt::KeypadModifier);
  unsigned code = 0;
  if (modifiers.testFlag(Qt::ShiftModifier) && !keypad) code = CodeOfShifted(key, place);
  if (code == 0) code = CodeOfKey(key, keypad);
  if (code == 0) return 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) code |= ShiftBit;
  if (modifiers.testFlag(Qt::ControlModifier)) code |= CtrlBit;
  if (modifiers.testFlag(Qt::AltModifier)) code |= AltBit;
  return static_cast<std::uint16_t>(code);
}

TShortCut ShortCutOf(const QKeyEvent& event) {
  return ShortCutOf(event.key(), event.modifiers(), event.nativeScanCode());
}

}  // namespace wrenfold
