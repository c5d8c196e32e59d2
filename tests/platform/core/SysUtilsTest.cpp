// Texts of numbers, dates and file names, the order of texts, and named integers.
#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/Identifiers.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {
namespace {

const TFormatSettings Plain;
const TFormatSettings Continental{',', '.', '.', ':', "d/m/yyyy", "hh:nn:ss", "", ""};
const TFormatSettings HalfDay{'.', ',', '/', ':', "mm/dd/yyyy", "h:nn:ss am/pm", "AM", "PM"};
// Separators behind the last part and the half of the day in front.
const TFormatSettings Trailing{',', ' ', '.', ':', "yyyy. mm. dd.", "am/pm hh:nn:ss", "de.", "du."};
const TFormatSettings Words{'.', ',', '/', ':', "yyyy年mm月dd日", "hh時nn分ss秒", "AM", "PM"};

TEST(FloatText, GeneralFormOfFifteenDigits) {
  struct TRow {
    double Value;
    const char* Expected;
  };
  const TRow rows[] = {{0, "0"},
                       {-0.0, "0"},
                       {0.00001, "0.00001"},
                       {-0.0000625, "-0.0000625"},
                       {9.5e-6, "9.5E-6"},
                       {0.1, "0.1"},
                       {1.0 / 3, "0.333333333333333"},
                       {100, "100"},
                       {-2.5, "-2.5"},
                       {123456789012345, "123456789012345"},
                       {1e16, "1E16"},
                       {1.5e-7, "1.5E-7"},
                       {1e100, "1E100"},
                       {0.1 + 0.2, "0.3"},
                       {-1e-300, "-1E-300"}};
  for (const TRow& row : rows) {
    EXPECT_EQ(FloatToStr(row.Value, Plain), row.Expected);
    for (const TFormatSettings& settings : {Plain, Continental})
      EXPECT_NEAR(StrToFloat(FloatToStr(row.Value, settings), settings), row.Value,
                  std::fabs(row.Value) * 1e-15);
  }
  EXPECT_EQ(FloatToStr(1.5e-7, Continental), "1,5E-7");
}

TEST(Conversion, RefusesWhatIsNotWhollyAValueAndNamesIt) {
  struct TRow {
    const char* Text;
    std::function<void(std::string_view)> Convert;
  };
  const auto integer = [](std::string_view text) { StrToInt(text); };
  const auto real = [](std::string_view text) { StrToFloat(text, Plain); };
  const auto continental = [](std::string_view text) { StrToFloat(text, Continental); };
  const auto date = [](std::string_view text) { StrToDateTime(text, Plain); };
  const auto time = [](std::string_view text) { StrToTime(text, HalfDay); };
  const TRow rows[] = {{"", integer},
                       {"1x", integer},
                       {"2147483648", integer},
                       {"-2147483649", integer},
                       {"$100000000", integer},
                       {"$FFFFFFFFFFFFFFFF", integer},
                       {"$", integer},
                       {"+-1", integer},
                       {"", real},
                       {"1,5", real},
                       {"1e999", real},
                       {"+-1", real},
                       {"nan", real},
                       {"1.5", continental},
                       {"2026-02-29", date},
                       {"2026-257-01", date},
                       {"2026-01-258", date},
                       {"2026-11", date},
                       {"2026-11-", date},
                       {"2026/11/22", date},
                       {"2026-11-22 24:00", date},
                       {"2026-11-22 12:00 x", date},
                       {"0-01-01-01", date},
                       {"13:00 PM", time},
                       {"0:30 AM", time},
                       {"12:", time},
                       {"12:60", time}};
  for (const TRow& row : rows) {
    try {
      row.Convert(row.Text);
      ADD_FAILURE() << "taken: " << row.Text;
    } catch (const EConvertError& error) {
      EXPECT_THAT(error.Message(), testing::HasSubstr('\'' + std::string(row.Text) + '\''));
    }
  }
}

TEST(Conversion, IntegersTakeBothNotations) {
  EXPECT_EQ(StrToInt("  -2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(StrToInt("$FFFFFFFF"), -1);
  EXPECT_EQ(StrToInt("0x1f"), 31);
  EXPECT_EQ(StrToInt("-$10"), -16);
  EXPECT_EQ(StrToInt64("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(IntToHex(0xABC, 8), "00000ABC");
}

TEST(DateText, ComesBackUnderEveryLocale) {
  const TSystemTime times[] = {{2026, 11, 22, 21, 5, 9, 0}, {1899, 12, 30, 0, 0, 0, 0},
                               {1899, 12, 29, 6, 0, 0, 0},  {2060, 2, 29, 0, 0, 1, 0},
                               {1, 1, 1, 12, 0, 0, 0},      {9999, 12, 31, 23, 59, 59, 0}};
  for (const TFormatSettings& settings :
       {Plain, Continental, HalfDay, Trailing, Words, SystemFormatSettings()})
    for (const TSystemTime& time : times) {
      const TDateTime value = EncodeDateTime(time);
      const std::string text = DateTimeToStr(value, settings);
      EXPECT_NEAR(StrToDateTime(text, settings), value, 1e-9) << text;
    }
}

TEST(DateText, FollowsThePatterns) {
  const TDateTime noon = EncodeDateTime({2026, 3, 4, 12, 5, 0, 0});
  EXPECT_EQ(DateTimeToStr(noon, Plain), "2026-03-04 12:05:00");
  EXPECT_EQ(DateTimeToStr(noon, Continental), "4.3.2026 12:05:00");
  EXPECT_EQ(DateTimeToStr(noon, HalfDay), "03/04/2026 12:05:00 PM");
  EXPECT_EQ(TimeToStr(0.0, HalfDay), "12:00:00 AM");
  EXPECT_EQ(DateTimeToStr(std::floor(noon), Plain), "2026-03-04") << "midnight has no time";
  // Rounding to the next millisecond must not give 24:00.
  EXPECT_EQ(DateTimeToStr(std::floor(noon) - 1e-12, Plain), "2026-03-04");
  EXPECT_EQ(StrToDateTime("3.4.49", Continental), EncodeDateTime({2049, 4, 3, 0, 0, 0, 0}));
  EXPECT_EQ(StrToDateTime(" 3.4.50 ", Continental), EncodeDateTime({1950, 4, 3, 0, 0, 0, 0}));
  EXPECT_EQ(StrToTime("6:30 pm", HalfDay), StrToTime("18:30", HalfDay));
}

TEST(DateText, DamagedValuesAreShownWithoutHarm) {
  for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300})
    EXPECT_THAT(DateToStr(value, Plain), testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}"));
}

TEST(TextOrder, IgnoresLetterCaseBeyondAscii) {
  EXPECT_EQ(AnsiCompareText("Unit", "uNIT"), 0);
  EXPECT_EQ(AnsiCompareText("ÄÖЖ", "äöж"), 0);
  EXPECT_LT(AnsiCompareText("a", "B"), 0);
  EXPECT_GT(AnsiCompareText("ab", "A"), 0);
  EXPECT_NE(AnsiCompareText("ä", "a"), 0);
  for (const auto& [left, right] :
       {std::pair("a", "B"), std::pair("Z", "ä"), std::pair("Ж", "я"), std::pair("", "a")})
    EXPECT_EQ(AnsiSortKey(left) < AnsiSortKey(right), AnsiCompareText(left, right) < 0);
  EXPECT_TRUE(AnsiSameText("Größe", "GRÖßE"));
  EXPECT_FALSE(AnsiSameText("ab", "abc"));
}

TEST(FileNames, SplitAtEitherSeparator) {
  struct TRow {
    const char *FileName, *Path, *Name, *Extension, *Bare;
  };
  const TRow rows[] = {{"/a.b/unit", "/a.b/", "unit", "", "unit"},
                       {"C:\\src\\Main.pas", "C:\\src\\", "Main.pas", ".pas", "Main"},
                       {"C:Main.pas", "C:", "Main.pas", ".pas", "Main"},
                       {"a/b\\c.tar.gz", "a/b\\", "c.tar.gz", ".gz", "c.tar"},
                       {"dir/", "dir/", "", "", ""}};
  for (const TRow& row : rows) {
    EXPECT_EQ(ExtractFilePath(row.FileName), row.Path);
    EXPECT_EQ(ExtractFileName(row.FileName), row.Name);
    EXPECT_EQ(ExtractFileExt(row.FileName), row.Extension);
    EXPECT_EQ(ExtractFileNameEx(row.FileName), row.Bare);
    EXPECT_EQ(ChangeFileExt(row.FileName, ".x"), std::string(row.Path) + row.Bare + ".x");
  }
}

TEST(NamedIntegers, EveryNameLeadsToAValueWhoseNameLeadsBack) {
  for (const TIdentMap* map : {&ColorMap(), &CursorMap(), &CharsetMap()}) {
    for (const TIdentMapEntry& entry : map->Entries()) {
      std::int32_t value = 0, back = 0;
      std::string name;
      ASSERT_TRUE(map->IdentToInt(UpperCase(entry.Name), value)) << entry.Name;
      EXPECT_EQ(value, entry.Value) << entry.Name << " stands for two values";
      ASSERT_TRUE(map->IntToIdent(value, name));
      EXPECT_TRUE(map->IdentToInt(name, back) && back == value) << name;
    }
  }
  std::string name;
  EXPECT_FALSE(ColorToIdent(0x123456, name));
  EXPECT_TRUE(ColorToIdent(clHighlightText, name));
  EXPECT_EQ(name, "clHighlightText");
}

}  // namespace
}  // namespace wrenfold
