// Positions and character classes of sources.
#include "project/SourceText.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

enum : uint8_t { ccBlank = 1, ccStart = 2, ccDigit = 4 };

constexpr std::array<uint8_t, 256> MakeClasses() {
  std::array<uint8_t, 256> classes{};
  for (int code = 0; code <= ' '; ++code) classes[code] = ccBlank;
  for (int code = '0'; code <= '9'; ++code) classes[code] = ccDigit;
  for (int code = 'a'; code <= 'z'; ++code) classes[code] = classes[code - 32] = ccStart;
  for (int code = 0x80; code <= 0xFF; ++code) classes[code] = ccStart;
  classes['_'] = ccStart;
  return classes;
}
constexpr std::array<uint8_t, 256> CharacterClasses = MakeClasses();

uint8_t ClassOf(char character) {
  return CharacterClasses[static_cast<uint8_t>(character)];
}

constexpr std::string_view CppExtensions[] = {".c", ".cc", ".cpp", ".cxx", ".h", ".hh", ".hpp"};

}  // namespace

TSourcePlace TPlaceFinder::At(size_t offset) {
  offset = std::min(offset, FSource.size());
  if (offset < FOffset) *this = TPlaceFinder(FSource);
  for (; FOffset < offset; ++FOffset) {
    const char character = FSource[FOffset];
    const bool partOfCrLf =
        character == '\r' && FOffset + 1 < FSource.size() && FSource[FOffset + 1] == '\n';
    if ((character != '\n' && character != '\r') || partOfCrLf) continue;
    ++FLine;
    FLineStart = FOffset + 1;
  }
  return {FLine, static_cast<int>(offset - FLineStart) + 1};
}

TSourceLanguage LanguageOfFile(std::string_view fileName) {
  const std::string extension = ExtractFileExt(fileName);
  for (std::string_view known : CppExtensions)
    if (EqualText(extension, known)) return TSourceLanguage::Cpp;
  return TSourceLanguage::Pascal;
}

bool IsIdentifierStart(char character) {
  return ClassOf(character) == ccStart;
}
bool IsIdentifierPart(char character) {
  return (ClassOf(character) & (ccStart | ccDigit)) != 0;
}
bool IsBlank(char character) {
  return ClassOf(character) == ccBlank;
}

bool IsIdentifier(std::string_view text) {
  return !text.empty() && IsIdentifierStart(text[0]) &&
         std::all_of(text.begin(), text.end(), IsIdentifierPart);
}

size_t EndOfLine(std::string_view source, size_t start) {
  return std::min(source.find_first_of("\r\n", start), source.size());
}

}  // namespace wrenfold
