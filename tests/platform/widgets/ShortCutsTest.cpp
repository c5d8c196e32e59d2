// Key codes of shortcuts against their texts and the toolkit's keys.
#include <gmock/gmock.h>

#include "platform/widgets/ShortCuts.h"

namespace wrenfold {
namespace {

struct TTextRow {
  const char* Name;
  const char* Text;
  int Code;
  const char* Written;  // null: as Text
};

TEST(ShortCuts, TextsAreReadAndWrittenAsTheirCodes) {
  const TTextRow rows[] = {
      {"letter with ctrl", "Ctrl+S", 16467, nullptr},
      {"escape by its short name", "Esc", 27, nullptr},
      {"escape by its long name", "Escape", 27, "Esc"},
      {"modifiers in another order", "Shift+Ctrl+Q", 0x6000 | 'Q', "Ctrl+Shift+Q"},
      {"all modifiers", "alt+SHIFT+ctrl+z", 0xE000 | 'Z', "Ctrl+Shift+Alt+Z"},
      {"delete", "Del", 0x2E, nullptr},
      {"arrow", "Alt+Left", 0x8025, nullptr},
      {"first function key", "F1", 0x70, nullptr},
      {"function key", "Ctrl+F12", 0x407B, nullptr},
      {"letter that begins like a function key", "Alt+F", 0x8000 | 'F', nullptr},
      {"digit", "Ctrl+1", 0x4000 | '1', nullptr},
      {"numeric pad", "Ctrl+Num +", 0x406B, nullptr},
      {"plus sign itself", "Ctrl++", 0x40BB, "Ctrl+="},
      {"blanks around", "  F5 ", 0x74, "F5"},
      {"empty", "", 0, nullptr},
      {"modifier alone", "Ctrl+", 0, ""},
      {"unknown key", "Ctrl+Frob", 0, ""},
      {"function key that does not exist", "F25", 0, ""},
      {"function key zero", "F0", 0, ""},
      {"signed number behind F", "F-1", 0, ""},
  };
  for (const TTextRow& row : rows) {
    const TShortCut code = TextToShortCut(row.Text);
    EXPECT_EQ(code, row.Code) << row.Name;
    EXPECT_EQ(ShortCutToText(code), row.Written != nullptr ? row.Written : row.Text) << row.Name;
  }
}

struct TKeyRow {
  const char* Name;
  int Key;
  Qt::KeyboardModifiers Modifiers;
  const char* Text;
  unsigned Place = 0;
};

constexpr auto CtrlShift = Qt::ControlModifier | Qt::ShiftModifier;

TEST(ShortCuts, KeysOfTheToolkitGiveTheCodesOfTheirTexts) {
  const TKeyRow rows[] = {
      {"letter", Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier, "Ctrl+Shift+Q"},
      {"enter of the numeric pad", Qt::Key_Enter, Qt::KeypadModifier, "Enter"},
      {"digit of the numeric pad", Qt::Key_5, Qt::KeypadModifier, "Num 5"},
      {"digit of the row", Qt::Key_5, Qt::NoModifier, "5"},
      {"arrow of the numeric pad", Qt::Key_Left, Qt::AltModifier | Qt::KeypadModifier, "Alt+Left"},
      {"back tab", Qt::Key_Backtab, Qt::ShiftModifier, "Shift+Tab"},
      {"bare modifier", Qt::Key_Control, Qt::ControlModifier, ""},
      {"digit with shift", Qt::Key_Exclam, CtrlShift, "Ctrl+Shift+1", 10},
      {"digit with shift, German", Qt::Key_Slash, CtrlShift, "Ctrl+Shift+7", 16},
      {"digit with shift, place unknown", Qt::Key_ParenRight, CtrlShift, "Ctrl+Shift+0"},
      {"letter beside the digits", Qt::Key_Q, CtrlShift, "Ctrl+Shift+Q", 24},
      {"punctuation with shift", Qt::Key_Underscore, CtrlShift, "Ctrl+Shift+-", 20},
      {"colon of the semicolon key", Qt::Key_Colon, CtrlShift, "Ctrl+Shift+;", 47},
      {"colon of the German full stop", Qt::Key_Colon, CtrlShift, "Ctrl+Shift+.", 60},
      {"pad with shift", Qt::Key_Asterisk, CtrlShift | Qt::KeypadModifier, "Ctrl+Shift+Num *", 63},
  };
  for (const TKeyRow& row : rows)
    EXPECT_EQ(ShortCutOf(row.Key, row.Modifiers, row.Place), TextToShortCut(row.Text)) << row.Name;
  EXPECT_EQ(ShortCutToKeySequence(TextToShortCut("Ctrl+Shift+Q")), QKeySequence("Ctrl+Shift+Q"));
  EXPECT_TRUE(ShortCutToKeySequence(0).isEmpty());
}

}  // namespace
}  // namespace wrenfold
