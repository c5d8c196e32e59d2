// The order of texts in the user's locale.
#include <langinfo.h>
#include <locale.h>
#include <wchar.h>
#include <wctype.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/core/text/SysUtils.h"
#include "platform/core/text/Unicode.h"

namespace wrenfold {

namespace {

// The locale of the environment, or null when it has no order of its own beyond the code points.
locale_t CollationLocale() {
  static const locale_t locale = []() -> locale_t {
    const locale_t made = newlocale(LC_ALL_MASK, "", nullptr);
    if (made == nullptr) return nullptr;
    const std::string name = nl_langinfo_l(_NL_LOCALE_NAME(LC_COLLATE), made);
    if (name != "C" && name != "POSIX" && name != "C.UTF-8" && name != "C.utf8") return made;
    freelocale(made);
    return nullptr;
  }();
  return locale;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

// Letter case is folded as Unicode has it, whatever the locale of the process.
std::wstring Folded(std::string_view text) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  std::wstring result;
  for (const char16_t unit : Utf16FromUtf8(text)) {
    const auto letter = static_cast<wint_t>(unit);
    result += static_cast<wchar_t>(unicode ? towlower_l(letter, unicode) : towlower(letter));
  }
  return result;
}

// Bytes that compare as the wide characters do.
std::string BytesOf(const std::wstring& text) {
  std::string bytes(text.size() * 4, '\0');
  char* next = bytes.data();
  for (const wchar_t c : text)
    for (int shift = 24; shift >= 0; shift -= 8)
      *next++ = static_cast<char>(static_cast<std::uint32_t>(c) >> shift);
  return bytes;
}

}  // namespace

std::string AnsiSortKey(const std::string& text) {
  const locale_t locale = CollationLocale();
  if (locale == nullptr && IsAscii(text)) return LowerCase(text);
  std::wstring folded = Folded(text);
  if (locale == nullptr) return Utf8FromUtf16(std::u16string(folded.begin(), folded.end()));
  std::wstring key(folded.size() * 6 + 16, L'\0');  // enough in most locales
  const std::size_t needed = wcsxfrm_l(key.data(), folded.c_str(), key.size(), locale);
  const bool fits = needed < key.size();
  key.resize(needed + 1);
  if (!fits) wcsxfrm_l(key.data(), folded.c_str(), key.size(), locale);
  key.resize(needed);
  return BytesOf(key);
}

bool AnsiSameText(std::string_view left, std::string_view right) {
  if (IsAscii(left) && IsAscii(right)) return EqualText(left, right);
  return Folded(left) == Folded(right);
}

int AnsiCompareText(const std::string& left, const std::string& right) {
  if (left == right) return 0;
  const locale_t locale = CollationLocale();
  if (locale == nullptr && IsAscii(left) && IsAscii(right)) return CompareText(left, right);
  if (locale == nullptr) return AnsiSortKey(left).compare(AnsiSortKey(right));
  return wcscoll_l(Folded(left).c_str(), Folded(right).c_str(), locale);
}

}  // namespace wrenfold
