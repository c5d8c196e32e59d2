#include "platform/core/stream/FloatText.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

namespace wrenfold {
namespace {

constexpr int GeneralPrecision = 15;
constexpr int FixedPrecision = 16;
constexpr int FixedDecimals = 18;
constexpr int ExactPrecision = 21;
// 0.00001 is the smallest value without an exponent.
constexpr int SmallestPoint = -4;

char* Append(char* text, std::string_view part) {
  std::memcpy(text, part.data(), part.size());
  return text + part.size();
}

char* AppendZeros(char* text, int count) {
  if (count <= 0) return text;
  std::memset(text, '0', static_cast<std::size_t>(count));
  return text + count;
}

// Digits [from, to), zeros where there are no more.
char* AppendDigits(char* text, const TDecimalDigits& digits, int from, int to) {
  const int known = std::clamp(digits.Count, from, to);
  text = Append(text, {digits.Digits + from, static_cast<std::size_t>(known - from)});
  return AppendZeros(text, to - known);
}

char* AppendScientific(char* text, const TDecimalDigits& digits, int count, bool plus) {
  text = AppendDigits(text, digits, 0, 1);
  if (count > 1) {
    *text++ = '.';
    text = AppendDigits(text, digits, 1, count);
  }
  *text++ = 'E';
  if (plus && digits.Point > 0) *text++ = '+';
  return std::to_chars(text, text + 8, digits.Point - 1).ptr;
}

char* AppendPlain(char* text, const TDecimalDigits& digits, int decimals) {
  if (digits.Point > 0) text = AppendDigits(text, digits, 0, digits.Point);
  else *text++ = '0';
  if (decimals <= 0) return text;
  *text++ = '.';
  const int zeros = std::clamp(-digits.Point, 0, decimals);
  text = AppendZeros(text, zeros);
  const int from = std::max(digits.Point, 0);
  return AppendDigits(text, digits, std::min(from, digits.Count),
                      std::min(from, digits.Count) + decimals - zeros);
}

char* AppendGeneral(char* text, const TDecimalDigits& digits, int precision) {
  if (digits.Point > precision || digits.Point < SmallestPoint)
    return AppendScientific(text, digits, digits.Count, false);
  return AppendPlain(text, digits, digits.Count - digits.Point);
}

char* AppendFixed(char* text, TExtended value) {
  TDecimalDigits digits = ExtendedToDigits(value, FixedPrecision);
  const int precision = digits.Point + FixedDecimals;
  if (precision <= 0) digits = TDecimalDigits();
  else if (precision < FixedPrecision) digits = ExtendedToDigits(value, precision);
  // What rounds to zero has no sign.
  if (value.Negative() && digits.Count > 0) *text++ = '-';
  if (digits.Point > FixedPrecision) return AppendScientific(text, digits, FixedPrecision, true);
  return AppendPlain(text, digits, FixedDecimals);
}

bool SameValue(const TDecimalDigits& digits, TExtended value, TFloatWidth width) {
  char text[MaxFloatText];
  const char* end = AppendScientific(text, digits, digits.Count, false);
  TExtended back;
  if (!DecimalToExtended({text, end}, back)) return false;
  value.SignExponent &= 0x7FFF;
  switch (width) {
    case TFloatWidth::Single:
      return static_cast<float>(ExtendedToDouble(back)) ==
             static_cast<float>(ExtendedToDouble(value));
    case TFloatWidth::Double:
      return ExtendedToDouble(back) == ExtendedToDouble(value);
    case TFloatWidth::Extended:
      break;
  }
  return back == value.Normalized();
}

// The digits cut to fewer, rounded in decimal.
TDecimalDigits Shortened(TDecimalDigits digits, int precision) {
  if (digits.Count <= precision) return digits;
  const bool up = digits.Digits[precision] >= '5';
  digits.Count = precision;
  while (digits.Count > 0 && digits.Digits[digits.Count - 1] == (up ? '9' : '0')) --digits.Count;
  if (!up) return digits;
  if (digits.Count > 0) {
    ++digits.Digits[digits.Count - 1];
  } else {
    digits.Digits[digits.Count++] = '1';
    ++digits.Point;
  }
  return digits;
}

char* AppendExact(char* text, TExtended value, TFloatWidth width) {
  static constexpr int fewest[] = {6, 15, 15};
  const TDecimalDigits all = ExtendedToDigits(value, ExactPrecision);
  TDecimalDigits digits;
  for (int precision = fewest[static_cast<int>(width)]; precision <= ExactPrecision; ++precision) {
    digits = Shortened(all, precision);
    if (SameValue(digits, value, width)) break;
  }
  char* const start = text;
  text = AppendGeneral(text, digits, ExactPrecision);
  const std::string_view written(start, text);
  return written.find_first_of(".E") != std::string_view::npos ? text : Append(text, ".0");
}

}  // namespace

char* WriteFloatText(TExtended value, TFloatDigits style, TFloatWidth width, char* text) {
  if (style == TFloatDigits::Fixed18 && value.IsFinite()) return AppendFixed(text, value);
  const bool isNan = !value.IsFinite() && (value.Mantissa << 1) != 0;
  const bool signless = isNan || value.IsZero();
  if (value.Negative() && (!signless || style == TFloatDigits::Exact)) *text++ = '-';
  if (!value.IsFinite()) return Append(text, isNan ? "NAN" : "INF");
  if (style == TFloatDigits::Exact)
    return value.IsZero() ? Append(text, "0.0") : AppendExact(text, value, width);
  const TDecimalDigits digits = ExtendedToDigits(value, GeneralPrecision);
  if (digits.Count == 0) return Append(text, "0");
  return AppendGeneral(text, digits, GeneralPrecision);
}

}  // namespace wrenfold
