// Conversions between UTF-8 and UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// Nothing is lost: a surrogate without its other half becomes the three bytes that its number has
// in UTF-8, and comes back from them.
std::string Utf8FromUtf16(std::u16string_view text);
// Bytes that are no UTF-8 become U+FFFD each.
std::u16string Utf16FromUtf8(std::string_view text);

}  // namespace wrenfold
