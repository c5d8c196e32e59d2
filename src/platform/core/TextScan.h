// Scans over form text that look at sixteen bytes at a time where the processor can.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace wrenfold {

// Code that copies by whole blocks may write up to this many bytes behind what it needs.
inline constexpr std::size_t BlockSize = 16;

namespace detail {

constexpr bool IsWordCharacter(unsigned character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z') || character == '_' || character == '.' ||
         character >= 0x80;
}
constexpr std::array<bool, 256> MakeWordTable() {
  std::array<bool, 256> table{};
  for (unsigned i = 0; i < 256; ++i) table[i] = IsWordCharacter(i);
  return table;
}
inline constexpr std::array<bool, 256> WordTable = MakeWordTable();

#ifdef __SSE2__
inline __m128i LoadBlock(const char* text) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}
// One bit for each byte of the block.
inline unsigned WordMask(__m128i block) {
  const __m128i letter = _mm_sub_epi8(_mm_or_si128(block, _mm_set1_epi8(0x20)), _mm_set1_epi8('a'));
  const __m128i digit = _mm_sub_epi8(block, _mm_set1_epi8('0'));
  const __m128i isLetter = _mm_cmpeq_epi8(_mm_min_epu8(letter, _mm_set1_epi8(25)), letter);
  const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(digit, _mm_set1_epi8(9)), digit);
  const __m128i isOther = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('_')),
                                       _mm_cmpeq_epi8(block, _mm_set1_epi8('.')));
  // The sign bit of the block itself stands for the codes from $80 on.
  return static_cast<unsigned>(_mm_movemask_epi8(
      _mm_or_si128(_mm_or_si128(isLetter, isDigit), _mm_or_si128(isOther, block))));
}
#endif

}  // namespace detail

// Letters, digits, '_', '.' and all codes from $80 on make up names and paths.
inline bool IsWordCharacter(char character) {
  return detail::WordTable[static_cast<std::uint8_t>(character)];
}

// The first byte of [text, end) that is no word character.
inline const char* SkipWord(const char* text, const char* end) {
#ifdef __SSE2__
  for (; static_cast<std::size_t>(end - text) >= BlockSize; text += BlockSize) {
    const unsigned other = ~detail::WordMask(detail::LoadBlock(text)) & 0xFFFF;
    if (other != 0) return text + std::countr_zero(other);
  }
#endif
  while (text != end && IsWordCharacter(*text)) ++text;
  return text;
}

// The first byte of [text, end) that is no blank, tab or line break.
inline const char* SkipBlanks(const char* text, const char* end) {
  while (text != end) {
    const char character = *text;
    if (character == ' ') {
#ifdef __SSE2__
      if (static_cast<std::size_t>(end - text) >= BlockSize) {
        const __m128i blanks = _mm_cmpeq_epi8(detail::LoadBlock(text), _mm_set1_epi8(' '));
        const unsigned other = ~static_cast<unsigned>(_mm_movemask_epi8(blanks)) & 0xFFFF;
        text += other != 0 ? static_cast<std::size_t>(std::countr_zero(other)) : BlockSize;
        continue;
      }
#endif
      ++text;
    } else if (character == '\n' || character == '\r' || (character >= '\t' && character < '\n') ||
               character == '\v' || character == '\f') {
      ++text;
    } else {
      break;
    }
  }
  return text;
}

// Copies from [text, end) to `out` up to the first control code or quote and returns that place in
// `text`. `out` has room for the whole range and a block more.
inline const char* CopyPlain(const char* text, const char* end, char* out) {
#ifdef __SSE2__
  for (; static_cast<std::size_t>(end - text) >= BlockSize; text += BlockSize, out += BlockSize) {
    const __m128i block = detail::LoadBlock(text);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(block, _mm_set1_epi8(0x1F)), block);
    const __m128i quote = _mm_cmpeq_epi8(block, _mm_set1_epi8('\''));
    const auto stop = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(control, quote)));
    if (stop != 0) return text + std::countr_zero(stop);
  }
#endif
  for (; text != end; ++text, ++out) {
    if (static_cast<std::uint8_t>(*text) < ' ' || *text == '\'') break;
    *out = *text;
  }
  return text;
}

// Copies `size` bytes from `text`, of which bytes up to `end` may be read, and returns the end of
// the copy. `out` has room for a block more.
inline char* CopyShort(char* out, const char* text, std::size_t size, const char* end) {
#ifdef __SSE2__
  if (size <= BlockSize && static_cast<std::size_t>(end - text) >= BlockSize) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), detail::LoadBlock(text));
    return out + size;
  }
#endif
  std::memcpy(out, text, size);
  return out + size;
}

}  // namespace wrenfold
