#include "platform/core/text/SysUtils.h"

#include <algorithm>
#include <charconv>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

namespace {

constexpr std::string_view PathSeparators = "/\\";

[[noreturn]] void RaiseNoInteger(std::string_view text) {
  throw EConvertError('\'' + std::string(text) + "' is not a valid integer value");
}

// The digits of an integer text as a number without a sign; false when there is none or too much.
bool ParseMagnitude(std::string_view digits, int base, std::uint64_t& value) {
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
  return !digits.empty() && error == std::errc() && stop == end;
}

bool ParseInteger(std::string_view text, std::int64_t& value, bool& hexadecimal) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t prefix = text.starts_with('$')                              ? 1
                             : text.starts_with("0x") || text.starts_with("0X") ? 2
                                                                                : 0;
  hexadecimal = prefix > 0;
  std::uint64_t magnitude = 0;
  if (!ParseMagnitude(text.substr(prefix), hexadecimal ? 16 : 10, magnitude)) return false;
  const std::uint64_t limit = hexadecimal ? UINT64_MAX : std::uint64_t{INT64_MAX} + negative;
  if (magnitude > limit) return false;
  value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
  return true;
}

bool Signed(std::string_view text) {
  return Trim(text).starts_with('-');
}

std::size_t NameStart(std::string_view fileName) {
  std::size_t start = fileName.find_last_of(PathSeparators) + 1;  // npos + 1 is 0
  const bool drive = fileName.size() >= 2 && fileName[1] == ':' && IsAsciiLetter(fileName[0]);
  return std::max<std::size_t>(start, drive ? 2 : 0);
}

}  // namespace

std::string LowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), FoldChar);
  return result;
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return result;
}

bool EqualText(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char a, char b) { return FoldChar(a) == FoldChar(b); });
}

int CompareText(std::string_view left, std::string_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = static_cast<unsigned char>(FoldChar(left[i])) -
                           static_cast<unsigned char>(FoldChar(right[i]));
    if (difference != 0) return difference;
  }
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

std::string_view Trim(std::string_view text) {
  const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string IntToStr(std::int64_t value) {
  return std::to_string(value);
}

std::string IntToHex(std::uint64_t value, int digits) {
  char buffer[16];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, 16).ptr;
  const std::string text = UpperCase({buffer, static_cast<std::size_t>(end - buffer)});
  const auto width = static_cast<std::size_t>(std::max(digits, 0));
  return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

bool TryStrToInt(std::string_view text, std::int32_t& value) {
  std::int64_t wide = 0;
  bool hexadecimal = false;
  if (!ParseInteger(text, wide, hexadecimal)) return false;
  // Hexadecimal texts of the full 64 bits come out negative here and are too large, too.
  const bool tooLarge = hexadecimal ? wide > std::int64_t{UINT32_MAX} || (wide < 0 && !Signed(text))
                                    : wide > INT32_MAX;
  if (wide < INT32_MIN || tooLarge) return false;
  value = static_cast<std::int32_t>(wide);
  return true;
}

std::int32_t StrToInt(std::string_view text) {
  std::int32_t value = 0;
  if (!TryStrToInt(text, value)) RaiseNoInteger(text);
  return value;
}

std::int64_t StrToInt64(std::string_view text) {
  std::int64_t value = 0;
  bool hexadecimal = false;
  if (!ParseInteger(text, value, hexadecimal)) RaiseNoInteger(text);
  return value;
}

std::string ExtractFileName(std::string_view fileName) {
  return std::string(fileName.substr(NameStart(fileName)));
}

std::string ExtractFilePath(std::string_view fileName) {
  return std::string(fileName.substr(0, NameStart(fileName)));
}

std::string ExtractFileExt(std::string_view fileName) {
  const std::string_view name = fileName.substr(NameStart(fileName));
  const auto dot = name.rfind('.');
  return dot == name.npos ? std::string() : std::string(name.substr(dot));
}

std::string ChangeFileExt(std::string_view fileName, std::string_view extension) {
  const std::size_t length = fileName.size() - ExtractFileExt(fileName).size();
  return std::string(fileName.substr(0, length)).append(extension);
}

std::string ExtractFileNameEx(std::string_view fileName) {
  return ChangeFileExt(fileName.substr(NameStart(fileName)), "");
}

}  // namespace wrenfold
