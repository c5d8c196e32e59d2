#include "platform/core/text/Unicode.h"

#include <cstdint>

namespace wrenfold {

namespace {

constexpr bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto tail = [&text, code](int shift) {
    text += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | (code >> 6));
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | (code >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (code >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

// The code at the front of text and how many bytes it takes; length 0 when the bytes are no UTF-8.
struct TDecoded {
  char32_t Code;
  std::size_t Length;
};

TDecoded DecodeUtf8(std::string_view text) {
  const auto lead = static_cast<std::uint8_t>(text[0]);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || text.size() < length) return {0, 0};
  if (length == 1) return {lead, 1};
  char32_t code = lead & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<std::uint8_t>(text[i]);
    if ((byte & 0xC0) != 0x80) return {0, 0};
    code = code << 6 | (byte & 0x3F);
  }
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < smallest[length] || code > 0x10FFFF) return {0, 0};
  return {code, length};
}

}  // namespace

std::string Utf8FromUtf16(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHighSurrogate(code) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]))
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    AppendUtf8(result, code);
  }
  return result;
}

std::u16string Utf16FromUtf8(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto [code, length] = DecodeUtf8(text);
    if (length == 0) {
      result += u'\uFFFD';
    } else if (code < 0x10000) {
      result += static_cast<char16_t>(code);
    } else {
      result += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      result += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}

}  // namespace wrenfold
