// The distinct value types of published properties.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace wrenfold {

// A value that behaves as its representation but is a type of its own, so that a property of it
// carries its own type name (a colour is no plain integer).
template <class Tag, class Representation>
struct TDistinct {
  Representation Value{};

  constexpr TDistinct() = default;
  constexpr TDistinct(Representation value) : Value(value) {}  // NOLINT: converts both ways
  constexpr operator Representation() const { return Value; }  // NOLINT
};

// Low three bytes red, green, blue from the lowest up; top bit set: system colour by index.
using TColor = TDistinct<struct TColorTag, std::int32_t>;
using TCursor = TDistinct<struct TCursorTag, std::int32_t>;
using TFontCharset = TDistinct<struct TFontCharsetTag, std::int32_t>;
// An integer over the full 32-bit range that is edited with a spin control.
using TSpinInt = TDistinct<struct TSpinIntTag, std::int32_t>;
// Key code in the low byte, $2000 shift, $4000 control, $8000 alt.
using TShortCut = TDistinct<struct TShortCutTag, std::uint16_t>;

// Days since 30 December 1899; the fraction is the time of day.
using TDateTime = TDistinct<struct TDateTimeTag, double>;
using TDate = TDistinct<struct TDateTag, double>;
using TTime = TDistinct<struct TTimeTag, double>;

// A text of at most 255 bytes; a longer one is cut when it is stored in a property.
struct TShortString : std::string {
  using std::string::string;
  TShortString() = default;
  TShortString(std::string text) : std::string(std::move(text)) {}  // NOLINT
};

// A hot key as its text, such as "Ctrl+S"; empty is none.
struct TShortCutString : std::string {
  using std::string::string;
  TShortCutString() = default;
  TShortCutString(std::string text) : std::string(std::move(text)) {}  // NOLINT
};

using TWideString = std::u16string;

// A set of at most 32 elements of an enumeration: bit N stands for the element with ordinal N.
template <class Element>
class TSet {
 public:
  constexpr TSet() = default;
  template <class... Elements>
  constexpr TSet(Element first, Elements... rest)  // NOLINT: { fsBold, fsItalic }
      : FBits(BitOf(first) | (BitOf(rest) | ... | 0u)) {}

  static constexpr TSet FromBits(std::uint32_t bits) {
    TSet set;
    set.FBits = bits;
    return set;
  }
  constexpr std::uint32_t Bits() const { return FBits; }
  constexpr bool Contains(Element element) const { return (FBits & BitOf(element)) != 0; }
  constexpr bool Empty() const { return FBits == 0; }
  constexpr void Include(Element element) { FBits |= BitOf(element); }
  constexpr void Exclude(Element element) { FBits &= ~BitOf(element); }
  friend constexpr bool operator==(TSet, TSet) = default;

 private:
  static constexpr std::uint32_t BitOf(Element element) {
    return std::uint32_t{1} << static_cast<unsigned>(element);
  }
  std::uint32_t FBits = 0;
};

}  // namespace wrenfold
