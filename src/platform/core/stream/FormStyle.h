// The named styles of the text form: how releases of the environment rendered the same values.
#pragma once

#include <span>
#include <string_view>

namespace wrenfold {

// How characters above 127 of a byte string stand in the text. Those of a wide string always stand
// as #n, and #n above 127 in a text makes a wide string.
enum class THighCharacters {
  Raw,         // as the bytes they are, between quotes
  DoubleByte,  // raw, and a line break never parts a lead byte from its trail byte
};

// How float values stand in the text.
enum class TFloatDigits {
  General15,  // up to 15 significant digits, an exponent for large and small values
  Fixed18,    // 16 significant digits, always 18 decimals
  Exact,      // as many digits as tell the value from its neighbours, always with a decimal point
};

// Where brackets and quotes stand.
enum class TFormLayout {
  Packed,        // closing brackets right behind the last element, strings broken at 64 characters,
                 // quotes inside strings as codes, a blank in front of "[n]"
  Open,          // closing brackets of lists and binary data in a line of their own, strings whole,
                 // quotes inside strings doubled, "[n]" right behind the class
  OpenBlankEnd,  // open, and each line in front of an item ends in the indent of the property
};

// One complete set of choices. The binary side of a style says which tags text values get.
struct TFormTextStyle {
  std::string_view Name;
  std::string_view Meaning;
  THighCharacters HighCharacters = THighCharacters::Raw;
  TFloatDigits Floats = TFloatDigits::General15;
  TFormLayout Layout = TFormLayout::Packed;
  // Wide strings are stored as UTF-8 where that is shorter than 16-bit units, floats that fit as
  // doubles.
  bool NewerTags = false;
  // Blanks behind a class name and blank lines in front of a property, which renaming and editing
  // tools leave behind, are kept as part of the names, and words such as TRUE as identifiers: the
  // text comes back byte for byte, but an object reader would not know these names.
  bool KeepsBlanks = false;
};

// All styles; the first is the default.
std::span<const TFormTextStyle> FormTextStyles();
inline const TFormTextStyle& DefaultFormTextStyle() {
  return FormTextStyles().front();
}
// Null when there is none of that name.
const TFormTextStyle* FindFormTextStyle(std::string_view name);

}  // namespace wrenfold
