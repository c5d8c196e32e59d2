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
inline unsigned BlankMask(__m128i block) {
  const __m128i control = _mm_sub_epi8(block, _mm_set1_epi8('\t'));
  const __m128i isControl =
      _mm_cmpeq_epi8(_mm_min_epu8(control, _mm_set1_epi8('\r' - '\t')), control);
  const __m128i isSpace = _mm_cmpeq_epi8(block, _mm_set1_epi8(' '));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isControl, isSpace)));
}
inline unsigned LineFeedMask(__m128i block) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))));
}
// Control codes and quotes.
inline unsigned StopMask(__m128i block) {
  const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(block, _mm_set1_epi8(0x1F)), block);
  const __m128i quote = _mm_cmpeq_epi8(block, _mm_set1_epi8('\''));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(control, quote)));
}
// The masks of four blocks that follow each other.
template <unsigned (*Mask)(__m128i)>
std::uint64_t MaskOfFour(const char* text) {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < 4 * BlockSize; i += BlockSize)
    mask |= std::uint64_t{Mask(LoadBlock(text + i))} << i;
  return mask;
}
// How many bytes at the front of the block are word characters.
inline std::size_t WordLength(__m128i block) {
  return static_cast<std::size_t>(std::countr_zero(~WordMask(block) | 0x10000));
}
// The same of two blocks.
inline std::size_t WordLengthOfTwo(const char* text) {
  const std::size_t length = WordLength(LoadBlock(text));
  return length < BlockSize ? length : length + WordLength(LoadBlock(text + BlockSize));
}
inline void CopyTwo(char* out, const char* text) {
  auto* blocks = reinterpret_cast<__m128i*>(out);
  _mm_storeu_si128(blocks, LoadBlock(text));
  _mm_storeu_si128(blocks + 1, LoadBlock(text + BlockSize));
}
#endif

}  // namespace detail

// Letters, digits, '_', '.' and all codes from $80 on make up names and paths.
inline bool IsWordCharacter(char character) {
  return detail::WordTable[static_cast<std::uint8_t>(character)];
}

inline bool IsFormBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

// Whether all of `word` are word characters; bytes up to `end` may be read.
inline bool IsWord(std::string_view word, [[maybe_unused]] const char* end) {
#ifdef __SSE2__
  if (word.size() <= BlockSize && static_cast<std::size_t>(end - word.data()) >= BlockSize)
    return detail::WordLength(detail::LoadBlock(word.data())) >= word.size();
#endif
  for (const char character : word)
    if (!IsWordCharacter(character)) return false;
  return true;
}

// The first byte of [text, end) that is no word character.
inline const char* SkipWord(const char* text, const char* end) {
#ifdef __SSE2__
  for (; static_cast<std::size_t>(end - text) >= BlockSize; text += BlockSize) {
    const std::size_t length = detail::WordLength(detail::LoadBlock(text));
    if (length != BlockSize) return text + length;
  }
#endif
  while (text != end && IsWordCharacter(*text)) ++text;
  return text;
}

// The first byte of [text, end) that is no blank, tab or line break.
inline const char* SkipBlanks(const char* text, const char* end) {
  if (text != end && static_cast<std::uint8_t>(*text) > ' ') return text;
#ifdef __SSE2__
  // Nearly always one line break and the indent of the next line.
  for (; static_cast<std::size_t>(end - text) >= BlockSize; text += BlockSize) {
    const unsigned others = detail::BlankMask(detail::LoadBlock(text)) ^ 0xFFFF;
    if (others != 0) return text + std::countr_zero(others);
  }
#endif
  while (text != end && IsFormBlank(*text)) ++text;
  return text;
}

// The value of the decimal digits at the front of [text, end), if they are at most eight; `text`
// moves behind them. A longer number leaves `text` on its first digit and gives 0.
inline std::uint32_t ReadShortNumber(const char*& text, const char* end) {
  if (end - text < 9) {
    std::uint32_t value = 0;
    const char* next = text;
    for (; next != end && *next >= '0' && *next <= '9'; ++next)
      value = value * 10 + static_cast<std::uint32_t>(*next - '0');
    text = next;
    return value;
  }
  std::uint64_t digits = 0;
  std::memcpy(&digits, text, sizeof digits);
  // Bytes that are no digits get their high bit set; the sums stay within a byte.
  digits ^= 0x3030303030303030;
  const std::uint64_t others = (digits | (digits + 0x7676767676767676)) & 0x8080808080808080;
  const int count = others != 0 ? std::countr_zero(others) / 8 : 8;
  if (count == 0 || (count == 8 && text[8] >= '0' && text[8] <= '9')) return 0;
  text += count;
  // Leading zeros in front, then pairs, fours and eights.
  digits <<= 8 * (8 - count);
  digits = digits * 10 + (digits >> 8);
  constexpr std::uint64_t pairs = 0x000000FF000000FF;
  constexpr std::uint64_t low = 100 + (std::uint64_t{1000000} << 32);
  constexpr std::uint64_t high = 1 + (std::uint64_t{10000} << 32);
  return static_cast<std::uint32_t>(((digits & pairs) * low + (digits >> 16 & pairs) * high) >> 32);
}

// Copies from [text, end) to `out` up to the first control code or quote and returns that place in
// `text`. `out` has room for the whole range and a block more.
inline const char* CopyPlain(const char* text, const char* end, char* out) {
#ifdef __SSE2__
  for (; static_cast<std::size_t>(end - text) >= BlockSize; text += BlockSize, out += BlockSize) {
    const __m128i block = detail::LoadBlock(text);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
    const unsigned stop = detail::StopMask(block);
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
// the copy. `out` has room for two blocks more.
inline char* CopyShort(char* out, const char* text, std::size_t size,
                       [[maybe_unused]] const char* end) {
#ifdef __SSE2__
  if (size <= 2 * BlockSize && static_cast<std::size_t>(end - text) >= 2 * BlockSize) {
    detail::CopyTwo(out, text);
    return out + size;
  }
#endif
  std::memcpy(out, text, size);
  return out + size;
}

}  // namespace wrenfold
