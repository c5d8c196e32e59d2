// The ten-byte extended float of the component stream, in explicit code: long double is not 80 bits
// everywhere.
#pragma once

#include <cstdint>
#include <string_view>

namespace wrenfold {

// An x87 extended: value = Mantissa * 2^(exponent - 16383 - 63), the leading mantissa bit explicit.
// In the stream: 8 bytes mantissa, 2 bytes sign and exponent, little-endian.
struct TExtended {
  static constexpr std::size_t ByteSize = 10;
  static constexpr int ExponentBias = 16383;
  static constexpr int MaxExponent = 0x7FFF;  // infinity and NaN

  std::uint64_t Mantissa = 0;
  std::uint16_t SignExponent = 0;

  bool Negative() const { return (SignExponent & 0x8000) != 0; }
  int Exponent() const { return SignExponent & 0x7FFF; }
  bool IsFinite() const { return Exponent() != MaxExponent; }
  bool IsZero() const { return Mantissa == 0 && IsFinite(); }
  // The form that arithmetic gives: of the many with the same value, the one with the leading bit
  // set or, below the smallest such value, the exponent zero.
  TExtended Normalized() const;
  friend bool operator==(const TExtended&, const TExtended&) = default;
};

// Rounds to nearest, ties to even; values out of double's range become infinity or zero.
double ExtendedToDouble(TExtended value);
// Exact.
TExtended DoubleToExtended(double value);
// Exact.
TExtended IntegerToExtended(std::int64_t value);

// Decimal text [-]digits[.digits][E[+|-]digits], rounded to nearest. The text must be of that shape
// (the caller's scanner saw to it); false when the value is too large for an extended, which then
// is the largest if that rounds to the text in sixteen digits, and not finite otherwise. Digits
// after the 40th only count as "more than nothing". Too small a value becomes zero.
bool DecimalToExtended(std::string_view text, TExtended& value);

// The decimal digits of a finite value: 0.d1d2d3... * 10^Point, without trailing zeros; no digits
// for zero.
struct TDecimalDigits {
  static constexpr int MaxCount = 24;
  char Digits[MaxCount];
  int Count = 0;
  int Point = 0;
};
// Correctly rounded (ties away from zero) to `precision` significant digits, 1 to MaxCount.
TDecimalDigits ExtendedToDigits(TExtended value, int precision);

}  // namespace wrenfold
