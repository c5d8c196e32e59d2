#include "platform/core/stream/FormStyle.h"

namespace wrenfold {
namespace {

constexpr TFormTextStyle Styles[] = {
    {.Name = "plain",
     .Meaning = "floats with up to 15 digits; characters of byte strings as they are"},
    {.Name = "fixed",
     .Meaning = "as plain, floats with 18 decimals",
     .Floats = TFloatDigits::Fixed18},
    {.Name = "double-byte",
     .Meaning = "as plain, and lines never break within a double-byte character",
     .HighCharacters = THighCharacters::DoubleByte},
    {.Name = "exact",
     .Meaning = "as plain, floats with all digits and a decimal point: no value is rounded",
     .Floats = TFloatDigits::Exact},
    {.Name = "newer",
     .Meaning = "as exact; text gives UTF-8 strings and doubles, as newer releases store them",
     .Floats = TFloatDigits::Exact,
     .NewerTags = true},
    {.Name = "edited",
     .Meaning = "as plain, and blanks that editing tools left around names are kept in them",
     .KeepsBlanks = true},
    {.Name = "fixed-edited",
     .Meaning = "fixed and edited at once",
     .Floats = TFloatDigits::Fixed18,
     .KeepsBlanks = true},
    {.Name = "lfm",
     .Meaning = "as the free Pascal environment writes: strings whole, closing brackets of lists "
                "and data on their own",
     .Layout = TFormLayout::Open},
    {.Name = "lfm-older",
     .Meaning = "as lfm, with blanks in front of each item of a collection, as its older releases "
                "left them",
     .Layout = TFormLayout::OpenBlankEnd},
};

}  // namespace

std::span<const TFormTextStyle> FormTextStyles() {
  return Styles;
}

const TFormTextStyle* FindFormTextStyle(std::string_view name) {
  for (const TFormTextStyle& style : Styles)
    if (style.Name == name) return &style;
  return nullptr;
}

}  // namespace wrenfold
