// Conversions of the ten-byte float, against bit patterns worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "platform/core/text/Extended.h"

namespace wrenfold {
namespace {

struct TDecimalCase {
  const char* Name;
  const char* Text;
  std::uint64_t Mantissa;
  std::uint16_t SignExponent;
};

class DecimalToExtendedTest : public testing::TestWithParam<TDecimalCase> {};

TEST_P(DecimalToExtendedTest, RoundsToTheNearestValue) {
  TExtended value;
  ASSERT_TRUE(DecimalToExtended(GetParam().Text, value));
  EXPECT_EQ(value.Mantissa, GetParam().Mantissa);
  EXPECT_EQ(value.SignExponent, GetParam().SignExponent);
}

INSTANTIATE_TEST_SUITE_P(
    Values, DecimalToExtendedTest,
    testing::Values(
        TDecimalCase{"Zero", "0.000", 0, 0}, TDecimalCase{"NegativeZero", "-0", 0, 0x8000},
        TDecimalCase{"One", "1", 0x8000000000000000, 0x3FFF},
        TDecimalCase{"Half", "0.5", 0x8000000000000000, 0x3FFE},
        TDecimalCase{"Tenth", "0.1", 0xCCCCCCCCCCCCCCCD, 0x3FFB},
        TDecimalCase{"NegativeWithExponent", "-12.5E-1", 0xA000000000000000, 0xBFFF},
        TDecimalCase{"TiesToEven", "18446744073709551617", 0x8000000000000000, 0x403F},
        TDecimalCase{"TieBrokenByOneFarDigit",
                     "18446744073709551617.00000000000000000000000000000000000000000001",
                     0x8000000000000001, 0x403F},
        TDecimalCase{"CarryIntoTheExponent", "18446744073709551615.9", 0x8000000000000000, 0x403F},
        TDecimalCase{"Largest", "1.18973149535723176502E4932", 0xFFFFFFFFFFFFFFFF, 0x7FFE},
        TDecimalCase{"SmallestNormal", "3.3621031431120935063E-4932", 0x8000000000000000, 1},
        TDecimalCase{"SmallestDenormal", "3.6451995318824746025E-4951", 1, 0},
        TDecimalCase{"BelowHalfTheSmallest", "1.8E-4951", 0, 0},
        TDecimalCase{"FarTooSmall", "1E-999999999999999999999", 0, 0}),
    [](const auto& row) { return row.param.Name; });

TEST(DecimalToExtended, TooLargeIsRefused) {
  TExtended value;
  for (const char* text : {"1e999999", "1.2E4932", "-1E99999999999999999999"})
    EXPECT_FALSE(DecimalToExtended(text, value)) << text;
}

struct TDigitsCase {
  const char* Name;
  const char* Text;
  int Precision;
  const char* Digits;
  int Point;
};

class ExtendedToDigitsTest : public testing::TestWithParam<TDigitsCase> {};

TEST_P(ExtendedToDigitsTest, GivesTheRoundedDigits) {
  TExtended value;
  ASSERT_TRUE(DecimalToExtended(GetParam().Text, value));
  const TDecimalDigits digits = ExtendedToDigits(value, GetParam().Precision);
  EXPECT_EQ(std::string(digits.Digits, static_cast<std::size_t>(digits.Count)), GetParam().Digits);
  EXPECT_EQ(digits.Point, GetParam().Point);
}

INSTANTIATE_TEST_SUITE_P(
    Values, ExtendedToDigitsTest,
    testing::Values(TDigitsCase{"Zero", "0", 15, "", 0},
                    TDigitsCase{"PowerOfTen", "1000", 15, "1", 4},
                    TDigitsCase{"Fraction", "0.00123", 15, "123", -2},
                    TDigitsCase{"Date", "36854.4251693056", 15, "368544251693056", 5},
                    TDigitsCase{"RoundedUpThroughNines", "0.99999999999999999", 15, "1", 1},
                    TDigitsCase{"RoundedUpInTheMiddle", "12.9999999999999996", 16, "13", 2},
                    TDigitsCase{"Eighteen", "38114.95606434028", 18, "3811495606434028", 5},
                    TDigitsCase{"Largest", "1.18973149535723176502E4932", 18, "118973149535723177",
                                4933},
                    TDigitsCase{"SmallestDenormal", "3.6451995318824746025E-4951", 18,
                                "36451995318824746", -4950}),
    [](const auto& row) { return row.param.Name; });

TEST(Extended, EveryDoubleGoesThereAndBack) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 100000; ++i) {
    double value = 0;
    const std::uint64_t bits = random();
    std::memcpy(&value, &bits, sizeof value);
    if (std::isnan(value)) continue;
    ASSERT_EQ(ExtendedToDouble(DoubleToExtended(value)), value) << bits;
  }
  EXPECT_TRUE(std::isnan(ExtendedToDouble(DoubleToExtended(std::nan("")))));
}

TEST(Extended, NarrowingToDoubleRoundsOnce) {
  // 1 + 2^-53 is a tie, one bit more is not.
  EXPECT_EQ(ExtendedToDouble({0x8000000000000400, 0x3FFF}), 1.0);
  EXPECT_EQ(ExtendedToDouble({0x8000000000000401, 0x3FFF}), 1.0 + 0x1p-52);
  EXPECT_EQ(ExtendedToDouble({0x8000000000000000, 0x7FFE}),
            std::numeric_limits<double>::infinity());
  EXPECT_EQ(ExtendedToDouble({0x8000000000000000, 1}), 0.0);
  EXPECT_EQ(ExtendedToDouble({0xC000000000000000, 0x3FFF - 1075}), 0x1p-1074);
}

TEST(Extended, DigitsReadBackGiveTheSameValue) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 3000; ++i) {
    TExtended value;
    value.Mantissa = random() | (std::uint64_t{1} << 63);
    value.SignExponent = static_cast<std::uint16_t>(random() % 0x7FFE + 1);
    const TDecimalDigits digits = ExtendedToDigits(value, 21);
    const std::string text = "0." +
                             std::string(digits.Digits, static_cast<std::size_t>(digits.Count)) +
                             "E" + std::to_string(digits.Point);
    TExtended back;
    ASSERT_TRUE(DecimalToExtended(text, back)) << text;
    ASSERT_EQ(back, value) << text;
  }
}

TEST(Extended, IntegersAreExact) {
  EXPECT_EQ(IntegerToExtended(-1), DoubleToExtended(-1));
  EXPECT_EQ(IntegerToExtended(std::numeric_limits<std::int64_t>::min()), DoubleToExtended(-0x1p63));
  EXPECT_EQ(IntegerToExtended(0), TExtended());
}

}  // namespace
}  // namespace wrenfold
