// Formatting with the '%' patterns of the numbered texts.
#include <gmock/gmock.h>

#include <functional>
#include <limits>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/Format.h"

namespace wrenfold {
namespace {

struct TFormatCase {
  const char* Name;
  std::string Actual;
  const char* Expected;
};

class FormatTest : public testing::TestWithParam<TFormatCase> {};

TEST_P(FormatTest, Renders) {
  EXPECT_EQ(GetParam().Actual, GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FormatTest,
    testing::Values(
        TFormatCase{"FixedHasTwoDecimals", Format("%f %f", 1.01, 4.0), "1.01 4.00"},
        TFormatCase{"FixedKeepsItsPrecision", Format("%.0f|%.3f", 2.5, 1.0 / 3), "2|0.333"},
        TFormatCase{"TextIsPaddedOnTheRight", Format("%-4s|", "CS"), "CS  |"},
        TFormatCase{"TextIsCutByPrecision", Format("%.2s", std::string("abc")), "ab"},
        TFormatCase{"HexIsUpperCaseAndZeroFilled", Format("%s%.8x", "$", 0x00A0B0C0), "$00A0B0C0"},
        TFormatCase{"NegativeHexKeepsItsWidth", Format("%x", -1), "FFFFFFFF"},
        TFormatCase{"LargeUnsignedStaysPositive", Format("%d %u", 4294967295u, -1),
                    "4294967295 4294967295"},
        TFormatCase{"SmallestLongLong", Format("%d", std::numeric_limits<long long>::min()),
                    "-9223372036854775808"},
        TFormatCase{"PercentSignNeedsNoValue", Format("0-100%% of %d", 3), "0-100% of 3"},
        TFormatCase{"PercentInAValueIsText", Format("%s", "%d%s"), "%d%s"},
        TFormatCase{
            "ZeroByteInAValueStays",
            Format("%s.", std::string("a\0b", 3)) == std::string("a\0b.", 4) ? "same" : "cut",
            "same"},
        TFormatCase{"GeneralKeepsFifteenDigits", Format("%g", 0.1), "0.1"}),
    [](const auto& row) { return std::string(row.param.Name); });

TEST(FormatErrorTest, NamesPatternAndArgument) {
  struct TRow {
    const char* Name;
    std::function<std::string()> Call;
    const char* Expected;
  };
  const TRow rows[] = {
      {"wrong type", [] { return Format("%s at %d", "x", "y"); },
       "\"%s at %d\" and its argument 2"},
      {"integer for float", [] { return Format("%f", 1); }, "argument 1"},
      {"float for integer", [] { return Format("%d", 1.0); }, "argument 1"},
      {"missing value", [] { return Format("%s%s", "x"); }, "argument 2: no value"},
      {"left over value", [] { return Format("x", 1); }, "argument 1: the pattern has no"},
      {"pattern ends in the middle", [] { return Format("100%"); }, "expected one of the letters"},
      {"writing placeholder", [] { return Format("%n", 1); }, "expected one of the letters"},
      {"hostile width", [] { return Format("%99999999999s", "x"); }, "go up to"},
      {"hostile precision", [] { return Format("%.2000f", 1.0); }, "go up to"},
      {"width from a value", [] { return Format("%*d", 3, 1); }, "expected one of the letters"},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Name);
    try {
      row.Call();
      ADD_FAILURE() << "no error";
    } catch (const EFormatError& e) {
      EXPECT_THAT(e.Message(), testing::HasSubstr(row.Expected));
    }
  }
}

TEST(FormatSignatureTest, ListsPlaceholdersInOrder) {
  EXPECT_EQ(FormatSignature("File %s: %d of 100%%, %.8x"), "%s%d%.8x");
  EXPECT_THROW(FormatSignature("%y"), EFormatError);
}

}  // namespace
}  // namespace wrenfold
