// Conversions between the bytes of source files and UTF-8.
#include "project/TextEncoding.h"

#include <fmt/format.h>
#include <iconv.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <unordered_map>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view Utf16LittleMark = "\xFF\xFE";
constexpr std::string_view Utf16BigMark = "\xFE\xFF";

// Private characters that stand for bytes: U+EE00 to U+EEFF.
constexpr char32_t FirstByteCharacter = 0xEE00;
bool IsByteCharacter(char32_t code) {
  return code >> 8 == FirstByteCharacter >> 8;
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | code >> 12);
    tail(6), tail(0);
  } else {
    text += static_cast<char>(0xF0 | code >> 18);
    tail(12), tail(6), tail(0);
  }
}

void AppendByteCharacter(std::string& text, char byte) {
  AppendUtf8(text, FirstByteCharacter + static_cast<uint8_t>(byte));
}

struct TUtf8Character {
  char32_t Code = 0;
  size_t Length = 0;  // 0: no valid character starts here
};

// The character at the offset, which must lie in the text. Overlong forms, surrogates and codes
// beyond U+10FFFF are not valid.
TUtf8Character ReadUtf8(std::string_view text, size_t offset) {
  const auto byte = [&](size_t index) { return static_cast<uint8_t>(text[offset + index]); };
  const uint8_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - offset < length) return {};
  char32_t code = lead & (0x7F >> length);
  for (size_t index = 1; index < length; ++index) {
    if ((byte(index) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(index) & 0x3F);
  }
  static constexpr char32_t Lowest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < Lowest[length] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return {};
  return {code, length};
}

// Where the run of ASCII bytes that starts here ends; eight bytes at a time.
size_t EndOfAscii(std::string_view text, size_t offset) {
  for (; offset + 8 <= text.size(); offset += 8) {
    uint64_t word;
    std::memcpy(&word, text.data() + offset, 8);
    if (word & 0x8080808080808080u) break;
  }
  while (offset < text.size() && static_cast<uint8_t>(text[offset]) < 0x80) ++offset;
  return offset;
}

bool IsValidUtf8(std::string_view text) {
  for (size_t at = EndOfAscii(text, 0); at < text.size(); at = EndOfAscii(text, at)) {
    const TUtf8Character character = ReadUtf8(text, at);
    if (character.Length == 0) return false;
    at += character.Length;
  }
  return true;
}

// Valid characters stay, but for those that already mean bytes: these are taken byte by byte too,
// so that every such character of the result stands for one byte of the file.
std::string DecodeInvalidUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (size_t at = 0; at < bytes.size();) {
    const TUtf8Character character = ReadUtf8(bytes, at);
    if (character.Length == 0 || IsByteCharacter(character.Code)) {
      AppendByteCharacter(text, bytes[at++]);
    } else {
      text.append(bytes, at, character.Length);
      at += character.Length;
    }
  }
  return text;
}

char32_t ReadUnit(std::string_view bytes, size_t at, bool bigEndian) {
  const auto first = static_cast<uint8_t>(bytes[at]);
  const auto second = static_cast<uint8_t>(bytes[at + 1]);
  return bigEndian ? first << 8 | second : second << 8 | first;
}

bool IsHighSurrogate(char32_t unit) {
  return unit >> 10 == 0xD800 >> 10;
}
bool IsLowSurrogate(char32_t unit) {
  return unit >> 10 == 0xDC00 >> 10;
}

// With `escape`, halves of surrogate pairs, an odd last byte and characters that mean bytes become
// characters that mean bytes. Without it, the first of the former ends with false.
bool DecodeUtf16(std::string_view bytes, bool bigEndian, bool escape, std::string& text) {
  text.clear();
  text.reserve(bytes.size());
  size_t at = 0;
  while (at + 2 <= bytes.size()) {
    char32_t code = ReadUnit(bytes, at, bigEndian);
    size_t length = 2;
    bool valid = !IsLowSurrogate(code);
    if (IsHighSurrogate(code)) {
      const char32_t low = at + 4 <= bytes.size() ? ReadUnit(bytes, at + 2, bigEndian) : 0;
      valid = IsLowSurrogate(low);
      code = 0x10000 + ((code & 0x3FF) << 10 | (low & 0x3FF));
      length = valid ? 4 : 2;
    }
    if (!valid && !escape) return false;
    if (!valid || (escape && IsByteCharacter(code))) {
      AppendByteCharacter(text, bytes[at]);
      AppendByteCharacter(text, bytes[at + 1]);
    } else {
      AppendUtf8(text, code);
    }
    at += length;
  }
  if (at == bytes.size()) return true;
  if (escape) AppendByteCharacter(text, bytes[at]);
  return escape;
}

void AppendUnit(std::string& bytes, char32_t unit, bool bigEndian) {
  const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit);
  bytes += bigEndian ? high : low;
  bytes += bigEndian ? low : high;
}

void AppendUtf16(std::string& bytes, char32_t code, bool bigEndian) {
  if (code < 0x10000) return AppendUnit(bytes, code, bigEndian);
  AppendUnit(bytes, 0xD800 + ((code - 0x10000) >> 10), bigEndian);
  AppendUnit(bytes, 0xDC00 + (code & 0x3FF), bigEndian);
}

// The upper half of an 8-bit code page, both ways. Bytes that it does not define are the private
// characters of those bytes.
struct TCodePageTable {
  std::array<std::string, 128> Texts;
  std::unordered_map<char32_t, char> Bytes;
};

TCodePageTable MakeTable(int codePage) {
  TCodePageTable table;
  const std::string name = fmt::format("CP{}", codePage);
  const iconv_t converter = iconv_open("UTF-8", name.c_str());
  const bool known = converter != reinterpret_cast<iconv_t>(-1);
  for (int code = 0x80; code <= 0xFF; ++code) {
    char byte = static_cast<char>(code);
    std::array<char, 8> buffer{};
    char* input = &byte;
    char* output = buffer.data();
    size_t inputLeft = 1, outputLeft = buffer.size();
    std::string text;
    if (known && iconv(converter, &input, &inputLeft, &output, &outputLeft) == 0) {
      iconv(converter, nullptr, nullptr, &output, &outputLeft);
      text.assign(buffer.data(), output);
    } else if (known) {
      iconv(converter, nullptr, nullptr, nullptr, nullptr);
    }
    if (text.empty()) AppendByteCharacter(text, byte);
    table.Bytes.emplace(ReadUtf8(text, 0).Code, byte);
    table.Texts[code - 0x80] = std::move(text);
  }
  if (known) iconv_close(converter);
  return table;
}

const TCodePageTable& CodePageTable(int codePage) {
  static std::map<int, TCodePageTable> tables;
  const auto found = tables.find(codePage);
  return found != tables.end() ? found->second
                               : tables.emplace(codePage, MakeTable(codePage)).first->second;
}

std::string DecodeCodePage(std::string_view bytes, int codePage) {
  const TCodePageTable& table = CodePageTable(codePage);
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (size_t at = 0; at < bytes.size();) {
    const size_t end = EndOfAscii(bytes, at);
    text.append(bytes, at, end - at);
    for (at = end; at < bytes.size() && static_cast<uint8_t>(bytes[at]) >= 0x80; ++at)
      text += table.Texts[static_cast<uint8_t>(bytes[at]) - 0x80];
  }
  return text;
}

[[noreturn]] void RefuseCharacter(std::string_view text, size_t at, char32_t code,
                                  const TTextFormat& format, const std::string& fileName) {
  const TSourcePlace place = TPlaceFinder(text).At(at);
  const std::string_view character = text.substr(at, ReadUtf8(text, at).Length);
  throw ETextEncodingError(
      fmt::format("{}({},{}): the character '{}' (U+{:04X}) does not exist in {}; remove it or "
                  "save the file in UTF-8",
                  fileName, place.Line, place.Column, character, static_cast<uint32_t>(code),
                  EncodingName(format)),
      place);
}

[[noreturn]] void RefuseBytes(std::string_view text, size_t at, const std::string& fileName) {
  const TSourcePlace place = TPlaceFinder(text).At(at);
  throw ETextEncodingError(fmt::format("{}({},{}): expected UTF-8 in the edited text", fileName,
                                       place.Line, place.Column),
                           place);
}

std::string EncodeCodePage(std::string_view text, const TTextFormat& format,
                           const std::string& fileName) {
  const TCodePageTable& table = CodePageTable(format.CodePage);
  std::string bytes;
  bytes.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const size_t end = EndOfAscii(text, at);
    bytes.append(text, at, end - at);
    if ((at = end) == text.size()) break;
    const TUtf8Character character = ReadUtf8(text, at);
    if (character.Length == 0) RefuseBytes(text, at, fileName);
    const auto found = table.Bytes.find(character.Code);
    if (found == table.Bytes.end()) RefuseCharacter(text, at, character.Code, format, fileName);
    bytes += found->second;
    at += character.Length;
  }
  return bytes;
}

std::string EncodeUnicode(std::string_view text, const TTextFormat& format,
                          const std::string& fileName) {
  const bool utf16 = format.Encoding == TTextEncoding::Utf16LittleEndian ||
                     format.Encoding == TTextEncoding::Utf16BigEndian;
  const bool bigEndian = format.Encoding == TTextEncoding::Utf16BigEndian;
  std::string bytes;
  bytes.reserve(text.size() * (utf16 ? 2 : 1) + 3);
  if (format.Encoding == TTextEncoding::Utf8WithMark) bytes.append(Utf8Mark);
  if (utf16) bytes.append(bigEndian ? Utf16BigMark : Utf16LittleMark);
  if (!utf16 && !format.HasInvalidBytes && IsValidUtf8(text)) return bytes.append(text);
  for (size_t at = 0; at < text.size();) {
    const TUtf8Character character = ReadUtf8(text, at);
    if (character.Length == 0) RefuseBytes(text, at, fileName);
    if (format.HasInvalidBytes && IsByteCharacter(character.Code))
      bytes += static_cast<char>(character.Code & 0xFF);
    else if (utf16) AppendUtf16(bytes, character.Code, bigEndian);
    else bytes.append(text, at, character.Length);
    at += character.Length;
  }
  return bytes;
}

std::string DecodeMarked(std::string_view bytes, TTextFormat& format) {
  std::string text;
  if (format.Encoding == TTextEncoding::Utf8WithMark) {
    format.HasInvalidBytes = !IsValidUtf8(bytes);
    return format.HasInvalidBytes ? DecodeInvalidUtf8(bytes) : std::string(bytes);
  }
  const bool bigEndian = format.Encoding == TTextEncoding::Utf16BigEndian;
  format.HasInvalidBytes = !DecodeUtf16(bytes, bigEndian, false, text);
  if (format.HasInvalidBytes) DecodeUtf16(bytes, bigEndian, true, text);
  return text;
}

}  // namespace

std::string EncodingName(const TTextFormat& format) {
  switch (format.Encoding) {
    case TTextEncoding::Utf8:
      return "UTF-8";
    case TTextEncoding::Utf8WithMark:
      return "UTF-8 with byte order mark";
    case TTextEncoding::Utf16LittleEndian:
      return "UTF-16";
    case TTextEncoding::Utf16BigEndian:
      return "UTF-16, big-endian";
    case TTextEncoding::CodePage:
      break;
  }
  return fmt::format("Windows-{}", format.CodePage);
}

int SystemCodePage() {
  struct TLanguages {
    std::string_view Languages;
    int CodePage;
  };
  static constexpr TLanguages Table[] = {{"be bg mk ru sr uk", 1251},
                                         {"bs cs hr hu pl ro sk sl sq", 1250},
                                         {"el", 1253},
                                         {"az tr", 1254},
                                         {"he iw", 1255},
                                         {"ar fa ur", 1256},
                                         {"et lt lv", 1257},
                                         {"vi", 1258}};
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(name);
    if (!value || !*value) continue;
    const std::string_view locale = value;
    const std::string_view language = locale.substr(0, locale.find_first_of("_.@"));
    if (language.size() != 2) break;
    for (const TLanguages& row : Table)
      if (row.Languages.find(language) != std::string_view::npos) return row.CodePage;
    break;
  }
  return 1252;
}

std::string DecodeText(std::string_view bytes, int codePage, TTextFormat& format) {
  struct TMark {
    std::string_view Bytes;
    TTextEncoding Encoding;
  };
  static constexpr TMark Marks[] = {{Utf8Mark, TTextEncoding::Utf8WithMark},
                                    {Utf16LittleMark, TTextEncoding::Utf16LittleEndian},
                                    {Utf16BigMark, TTextEncoding::Utf16BigEndian}};
  for (const TMark& mark : Marks) {
    if (!bytes.starts_with(mark.Bytes)) continue;
    format = {mark.Encoding};
    return DecodeMarked(bytes.substr(mark.Bytes.size()), format);
  }
  if (IsValidUtf8(bytes)) {
    format = {TTextEncoding::Utf8};
    return std::string(bytes);
  }
  format = {TTextEncoding::CodePage, codePage};
  return DecodeCodePage(bytes, codePage);
}

std::string EncodeText(std::string_view text, const TTextFormat& format,
                       const std::string& fileName) {
  return format.Encoding == TTextEncoding::CodePage ? EncodeCodePage(text, format, fileName)
                                                    : EncodeUnicode(text, format, fileName);
}

TLineEnd TLineEnds::Majority() const {
  if (CrLf >= Lf && CrLf >= Cr) return TLineEnd::CrLf;
  return Lf >= Cr ? TLineEnd::Lf : TLineEnd::Cr;
}

TLineEnds CountLineEnds(std::string_view text) {
  TLineEnds ends;
  for (size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\n') {
      ++ends.Lf;
    } else if (text[at] == '\r') {
      const bool pair = at + 1 < text.size() && text[at + 1] == '\n';
      ++(pair ? ends.CrLf : ends.Cr);
      at += pair;
    }
  }
  return ends;
}

std::string LineEndsName(const TLineEnds& ends) {
  static constexpr std::string_view Names[] = {"CR LF", "LF", "CR"};
  const std::string_view name = Names[static_cast<int>(ends.Majority())];
  return ends.Mixed() ? fmt::format("mixed, mostly {}", name) : std::string(name);
}

}  // namespace wrenfold
