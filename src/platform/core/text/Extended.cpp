#include "platform/core/text/Extended.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <vector>

namespace wrenfold {
namespace {

constexpr std::uint64_t TopBit = std::uint64_t{1} << 63;
constexpr TExtended Largest{~std::uint64_t{0}, TExtended::MaxExponent - 1};
// Sixteen digits of the largest value say slightly more than it is: twice its scale, up to this.
constexpr std::uint64_t LargestRoundedUp = TopBit + (1 << 12);
// The binary exponent of the lowest mantissa bit is the stored exponent plus this.
constexpr int LowBitExponent = -TExtended::ExponentBias - 63;
// The decimal point of the largest and of the smallest extended, with some room.
constexpr int LargestPoint = 4940;
constexpr int SmallestPoint = -4960;
// What their digits are scaled by at most.
constexpr int LargestPower = 5010;

constexpr int LimbBits = 64;
__extension__ using TDoubleLimb = unsigned __int128;

// Must fit 64 bits.
constexpr std::uint64_t Power(std::uint64_t base, int exponent) {
  std::uint64_t result = 1;
  for (; exponent > 0; --exponent) result *= base;
  return result;
}

// A non-negative integer of any size an extended and its decimal digits can need. Few limbs are in
// use for everyday numbers, so arithmetic is quick where it matters.
class TBigNumber {
 public:
  explicit TBigNumber(std::uint64_t value) {
    if (value != 0) FLimbs[FCount++] = value;
  }

  bool IsZero() const { return FCount == 0; }
  bool IsShort() const { return FCount <= 1; }
  std::uint64_t LowLimb() const { return FCount == 0 ? 0 : FLimbs[0]; }
  int BitCount() const {
    return FCount == 0 ? 0 : FCount * LimbBits - std::countl_zero(FLimbs[FCount - 1]);
  }

  void MultiplyAdd(std::uint64_t factor, std::uint64_t addend) {
    TDoubleLimb carry = addend;
    for (int i = 0; i < FCount; ++i) {
      carry += TDoubleLimb{FLimbs[i]} * factor;
      FLimbs[i] = static_cast<std::uint64_t>(carry);
      carry >>= LimbBits;
    }
    if (carry != 0) FLimbs[FCount++] = static_cast<std::uint64_t>(carry);
  }

  void Multiply(const TBigNumber& other) {
    TBigNumber product(0);
    product.FCount = FCount + other.FCount;
    std::fill_n(product.FLimbs.begin(), product.FCount, 0);
    for (int i = 0; i < FCount; ++i) {
      TDoubleLimb carry = 0;
      for (int j = 0; j < other.FCount; ++j) {
        carry += TDoubleLimb{FLimbs[i]} * other.FLimbs[j] + product.FLimbs[i + j];
        product.FLimbs[i + j] = static_cast<std::uint64_t>(carry);
        carry >>= LimbBits;
      }
      product.FLimbs[i + other.FCount] = static_cast<std::uint64_t>(carry);
    }
    product.Trim();
    *this = product;
  }

  // `power` as far as LargestPower.
  void MultiplyByPowerOfTen(int power) {
    // The fives first: a third fewer bits to carry along.
    int fives = power % LargeStep;
    for (; fives >= ShortFives; fives -= ShortFives) MultiplyAdd(Power(5, ShortFives), 0);
    if (fives > 0) MultiplyAdd(Power(5, fives), 0);
    if (power >= LargeStep) Multiply(LargePowersOfFive()[power / LargeStep]);
    ShiftLeft(power);
  }

  void ShiftLeft(int bits) {
    if (FCount == 0 || bits == 0) return;
    const int limbs = bits / LimbBits;
    const int rest = bits % LimbBits;
    FLimbs[FCount] = 0;
    for (int i = FCount; i >= 0; --i) {
      const std::uint64_t low = i > 0 && rest > 0 ? FLimbs[i - 1] >> (LimbBits - rest) : 0;
      FLimbs[i + limbs] = FLimbs[i] << rest | low;
    }
    std::fill_n(FLimbs.begin(), limbs, 0);
    FCount += limbs + 1;
    Trim();
  }

  int Compare(const TBigNumber& other) const {
    if (FCount != other.FCount) return FCount < other.FCount ? -1 : 1;
    for (int i = FCount - 1; i >= 0; --i)
      if (FLimbs[i] != other.FLimbs[i]) return FLimbs[i] < other.FLimbs[i] ? -1 : 1;
    return 0;
  }

  // So that the highest bit of the highest limb of `divisor` is set, as DivideBy needs it.
  static void Align(TBigNumber& dividend, TBigNumber& divisor) {
    const int shift = divisor.FCount * LimbBits - divisor.BitCount();
    dividend.ShiftLeft(shift);
    divisor.ShiftLeft(shift);
  }

  // Leaves the remainder and gives the quotient, which must fit; see Align. The long division of
  // Knuth, "The Art of Computer Programming" 4.3.1, for a single digit of 64 bits.
  std::uint64_t DivideBy(const TBigNumber& divisor) {
    const int count = divisor.FCount;
    if (FCount < count) return 0;
    if (FCount == count) FLimbs[FCount++] = 0;
    const TDoubleLimb top = TDoubleLimb{FLimbs[count]} << LimbBits | FLimbs[count - 1];
    // Too large by two at most.
    auto quotient = static_cast<std::uint64_t>(
        std::min<TDoubleLimb>(top / divisor.FLimbs[count - 1], ~std::uint64_t{0}));
    TDoubleLimb borrow = 0;
    for (int i = 0; i < count; ++i) {
      borrow += TDoubleLimb{divisor.FLimbs[i]} * quotient;
      const auto take = static_cast<std::uint64_t>(borrow);
      borrow = (borrow >> LimbBits) + (FLimbs[i] < take ? 1 : 0);
      FLimbs[i] -= take;
    }
    bool negative = FLimbs[count] < borrow;
    FLimbs[count] -= static_cast<std::uint64_t>(borrow);
    for (; negative; --quotient) {
      TDoubleLimb carry = 0;
      for (int i = 0; i < count; ++i) {
        carry += TDoubleLimb{FLimbs[i]} + divisor.FLimbs[i];
        FLimbs[i] = static_cast<std::uint64_t>(carry);
        carry >>= LimbBits;
      }
      FLimbs[count] += static_cast<std::uint64_t>(carry);
      negative = FLimbs[count] != 0;
    }
    Trim();
    return quotient;
  }

 private:
  void Trim() {
    while (FCount > 0 && FLimbs[FCount - 1] == 0) --FCount;
  }

  // The largest power of five in a limb, and as many of these as are multiplied one by one.
  static constexpr int ShortFives = 27;
  static constexpr int LargeStep = 8 * ShortFives;

  // In steps of LargeStep; 60 KB, made when the first such number is met.
  static const std::vector<TBigNumber>& LargePowersOfFive() {
    static const std::vector<TBigNumber> powers = [] {
      std::vector<TBigNumber> made(1, TBigNumber(1));
      while (static_cast<int>(made.size()) <= LargestPower / LargeStep) {
        made.push_back(made.back());
        for (int fives = 0; fives < LargeStep; fives += ShortFives)
          made.back().MultiplyAdd(Power(5, ShortFives), 0);
      }
      return made;
    }();
    return powers;
  }

  // 2^16384 scaled by 10^4960, both ways round, and 128 bits of digits, fit well.
  std::array<std::uint64_t, 320> FLimbs;
  int FCount = 0;
};

// The stored exponent can be so low that fewer than 64 bits fit; `remainder` says that something
// non-zero lies below `high`.
TExtended RoundToExtended(std::uint64_t high, bool half, bool remainder, int lowBitExponent) {
  int exponent = lowBitExponent - LowBitExponent;
  for (; exponent < 1 && (high != 0 || half); ++exponent) {
    remainder = remainder || half;
    half = (high & 1) != 0;
    high >>= 1;
  }
  if (half && (remainder || (high & 1) != 0)) {
    if (++high == 0) {
      high = TopBit;
      ++exponent;
    }
  }
  if (exponent > TExtended::MaxExponent) return {~std::uint64_t{0}, TExtended::MaxExponent};
  TExtended value;
  value.Mantissa = high;
  // A denormal's exponent field is 0 and means the same scale as 1.
  value.SignExponent = static_cast<std::uint16_t>((high & TopBit) != 0 ? exponent : 0);
  return value;
}

// numerator / denominator, rounded; neither may be zero.
TExtended Divide(TBigNumber& numerator, TBigNumber& denominator) {
  // So that the quotient has 64 bits.
  const int shift = denominator.BitCount() - numerator.BitCount();
  if (shift > 0) numerator.ShiftLeft(shift);
  else denominator.ShiftLeft(-shift);
  const int rest = numerator.Compare(denominator) < 0 ? LimbBits : LimbBits - 1;
  numerator.ShiftLeft(rest);
  TBigNumber::Align(numerator, denominator);
  const std::uint64_t quotient = numerator.DivideBy(denominator);
  const bool exact = numerator.IsZero();
  numerator.ShiftLeft(1);
  const int half = numerator.Compare(denominator);
  return RoundToExtended(quotient, half >= 0, half != 0 && !exact, -shift - rest);
}

// The largest power of ten of 64 bits.
constexpr int LargestShortPower = 19;

// The same where both fit 64 bits, as nearly all floats that people write; neither may be zero.
TExtended DivideShort(std::uint64_t numerator, std::uint64_t denominator) {
  const int up = std::countl_zero(numerator);
  const int down = std::countl_zero(denominator);
  numerator <<= up;
  denominator <<= down;
  // So that the quotient has 64 bits.
  const int shift = numerator < denominator ? 64 : 63;
  const TDoubleLimb scaled = TDoubleLimb{numerator} << shift;
  const auto quotient = static_cast<std::uint64_t>(scaled / denominator);
  const auto remainder = static_cast<std::uint64_t>(scaled - TDoubleLimb{quotient} * denominator);
  const std::uint64_t toNext = denominator - remainder;
  return RoundToExtended(quotient, remainder >= toNext, remainder != toNext && remainder != 0,
                         down - up - shift);
}

// The decimal text taken apart: Number * 10^Exponent.
struct TDecimal {
  static constexpr int MaxSignificant = 40;

  explicit TDecimal(std::string_view text) {
    std::size_t i = 0;
    Negative = !text.empty() && text[0] == '-';
    if (Negative || (!text.empty() && text[0] == '+')) ++i;
    const std::size_t digits = std::min(text.find_first_not_of("0123456789.", i), text.size());
    std::size_t end = digits;
    if (text.substr(i, digits - i).find('.') != text.npos)
      while (text[end - 1] == '0') --end;
    for (bool fraction = false; i < end; ++i) {
      if (text[i] == '.') fraction = true;
      else AddDigit(static_cast<std::uint32_t>(text[i] - '0'), fraction);
    }
    if (Rest) {
      Number.MultiplyAdd(10, 1);
      --Exponent;
      ++Significant;
    }
    if (digits < text.size()) AddExponent(text.substr(digits + 1));
  }

  // The value without its sign; it may be too large for an extended, but must not be zero.
  TExtended Rounded() {
    if (Number.IsShort() && Exponent <= 0 && Exponent >= -LargestShortPower)
      return DivideShort(Number.LowLimb(), Power(10, static_cast<int>(-Exponent)));
    TBigNumber denominator(1);
    if (Exponent >= 0) Number.MultiplyByPowerOfTen(static_cast<int>(Exponent));
    else denominator.MultiplyByPowerOfTen(static_cast<int>(-Exponent));
    return Divide(Number, denominator);
  }

  bool Negative = false;
  TBigNumber Number{0};
  std::int64_t Exponent = 0;
  int Significant = 0;
  bool Rest = false;  // non-zero digits were dropped

 private:
  void AddDigit(std::uint32_t digit, bool fraction) {
    const bool leadingZero = Significant == 0 && digit == 0;
    const bool keep = !leadingZero && Significant < MaxSignificant;
    if (keep) {
      Number.MultiplyAdd(10, digit);
      ++Significant;
    } else if (digit != 0) {
      Rest = true;
    }
    if (fraction && (keep || leadingZero)) --Exponent;
    if (!fraction && !keep && !leadingZero) ++Exponent;
  }

  void AddExponent(std::string_view text) {
    const bool negative = !text.empty() && text[0] == '-';
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
    std::int64_t value = 0;
    for (const char digit : text)
      value = std::min<std::int64_t>(value * 10 + (digit - '0'), 1'000'000'000);
    Exponent += negative ? -value : value;
  }
};

}  // namespace

TExtended TExtended::Normalized() const {
  if (!IsFinite()) return *this;
  const int exponent = std::max(Exponent(), 1);
  const int shift = std::min(std::countl_zero(Mantissa | 1), exponent - 1);
  TExtended result{Mantissa << shift, static_cast<std::uint16_t>(SignExponent & 0x8000)};
  if ((result.Mantissa & TopBit) != 0)
    result.SignExponent |= static_cast<std::uint16_t>(exponent - shift);
  return result;
}

double ExtendedToDouble(TExtended value) {
  const double sign = value.Negative() ? -1.0 : 1.0;
  if (!value.IsFinite()) {
    const bool infinite = (value.Mantissa & ~TopBit) == 0;
    return infinite ? sign * HUGE_VAL : std::copysign(std::nan(""), sign);
  }
  std::uint64_t mantissa = value.Mantissa;
  if (mantissa == 0) return sign * 0.0;
  const int leading = std::countl_zero(mantissa);
  mantissa <<= leading;
  const int lowBit = std::max(value.Exponent(), 1) + LowBitExponent - leading;
  // Double keeps 53 bits, fewer below its smallest normal number; round once, here.
  const int drop = std::clamp(std::max(11, -1074 - lowBit), 11, 65);
  if (drop >= 65) return sign * 0.0;
  const std::uint64_t kept = drop == 64 ? 0 : mantissa >> drop;
  const std::uint64_t rest = drop == 64 ? mantissa : mantissa << (64 - drop);
  const bool up = rest > TopBit || (rest == TopBit && (kept & 1) != 0);
  return sign * std::ldexp(static_cast<double>(kept + (up ? 1 : 0)), lowBit + drop);
}

TExtended DoubleToExtended(double value) {
  TExtended result;
  if (std::signbit(value)) result.SignExponent = 0x8000;
  if (value == 0) return result;
  if (!std::isfinite(value)) {
    result.SignExponent |= TExtended::MaxExponent;
    result.Mantissa = std::isnan(value) ? TopBit | TopBit >> 1 : TopBit;
    return result;
  }
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(value), &exponent);
  result.Mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 64));
  result.SignExponent |= static_cast<std::uint16_t>(exponent + TExtended::ExponentBias - 1);
  return result;
}

TExtended IntegerToExtended(std::int64_t value) {
  TExtended result;
  if (value == 0) return result;
  const auto bits = static_cast<std::uint64_t>(value);
  const std::uint64_t magnitude = value < 0 ? ~bits + 1 : bits;
  const int leading = std::countl_zero(magnitude);
  result.Mantissa = magnitude << leading;
  result.SignExponent = static_cast<std::uint16_t>((value < 0 ? 0x8000 : 0) |
                                                   (TExtended::ExponentBias + 63 - leading));
  return result;
}

bool DecimalToExtended(std::string_view text, TExtended& value) {
  TDecimal decimal(text);
  value = {TopBit, TExtended::MaxExponent};
  const std::int64_t point = decimal.Significant + decimal.Exponent;
  if (point > LargestPoint && !decimal.Number.IsZero()) return false;
  value = TExtended();
  bool fits = true;
  if (!decimal.Number.IsZero() && point >= SmallestPoint) {
    value = decimal.Rounded();
    fits = value.IsFinite();
    if (!fits && value.Mantissa < LargestRoundedUp) value = Largest;
  }
  if (decimal.Negative) value.SignExponent |= 0x8000;
  return fits;
}

TDecimalDigits ExtendedToDigits(TExtended value, int precision) {
  TDecimalDigits result;
  if (value.IsZero()) return result;
  const int lowBit = std::max(value.Exponent(), 1) + LowBitExponent;
  TBigNumber numerator(value.Mantissa);
  TBigNumber denominator(1);
  if (lowBit >= 0) numerator.ShiftLeft(lowBit);
  else denominator.ShiftLeft(-lowBit);
  // Scale by a power of ten into [0.1, 1); the estimate is one too low at most.
  const int bits = lowBit + static_cast<int>(std::bit_width(value.Mantissa));
  result.Point = static_cast<int>(std::floor((bits - 1) * 0.30102999566398120)) + 1;
  if (result.Point >= 0) denominator.MultiplyByPowerOfTen(result.Point);
  else numerator.MultiplyByPowerOfTen(-result.Point);
  if (numerator.Compare(denominator) >= 0) {
    denominator.MultiplyAdd(10, 0);
    ++result.Point;
  }
  TBigNumber::Align(numerator, denominator);
  while (result.Count < precision) {
    const int count = std::min(precision - result.Count, LargestShortPower);
    numerator.MultiplyAdd(Power(10, count), 0);
    std::uint64_t digits = numerator.DivideBy(denominator);
    for (int i = count - 1; i >= 0; --i, digits /= 10)
      result.Digits[result.Count + i] = static_cast<char>('0' + digits % 10);
    result.Count += count;
  }
  numerator.ShiftLeft(1);
  bool up = numerator.Compare(denominator) >= 0;
  while (up && result.Count > 0 && result.Digits[result.Count - 1] == '9') --result.Count;
  if (up && result.Count > 0) {
    ++result.Digits[result.Count - 1];
  } else if (up) {
    result.Digits[result.Count++] = '1';
    ++result.Point;
  }
  while (result.Count > 0 && result.Digits[result.Count - 1] == '0') --result.Count;
  return result;
}

}  // namespace wrenfold
