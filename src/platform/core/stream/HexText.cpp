#include "platform/core/stream/HexText.h"

#include <array>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace wrenfold {
namespace {

constexpr std::uint8_t NoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> MakeDigitValues() {
  std::array<std::uint8_t, 256> values{};
  values.fill(NoDigit);
  for (unsigned i = 0; i < 10; ++i) values['0' + i] = static_cast<std::uint8_t>(i);
  for (unsigned i = 0; i < 6; ++i)
    values['A' + i] = values['a' + i] = static_cast<std::uint8_t>(10 + i);
  return values;
}
constexpr std::array<std::uint8_t, 256> DigitValues = MakeDigitValues();
constexpr char Digits[] = "0123456789ABCDEF";

#ifdef __SSE2__

__m128i Bytes(int value) {
  return _mm_set1_epi8(static_cast<char>(value));
}

// Sixteen digits to their values; what is no digit gives 16 or more.
__m128i DigitsToValues(const char* text) {
  const __m128i digits = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  // '0' to '9' become $F6 to $FF, the highest of all; saturation parts them from the rest.
  const __m128i highest = _mm_add_epi8(digits, Bytes(0xFF - '9'));
  const __m128i upToNine = _mm_sub_epi8(_mm_subs_epu8(highest, Bytes(6)), Bytes(0xF0));
  const __m128i letters = _mm_sub_epi8(_mm_and_si128(digits, Bytes(0xDF)), Bytes('A'));
  return _mm_min_epu8(upToNine, _mm_adds_epu8(letters, Bytes(10)));
}

bool AllDigits(__m128i values) {
  return _mm_movemask_epi8(_mm_adds_epu8(values, Bytes(0x7F - 15))) == 0;
}

// Pairs of values (high digit first) to bytes in 16-bit lanes.
__m128i JoinPairs(__m128i values) {
  const __m128i joined = _mm_or_si128(_mm_slli_epi16(values, 4), _mm_srli_epi16(values, 8));
  return _mm_and_si128(joined, _mm_set1_epi16(0xFF));
}

// Values 0 to 15 to digits.
__m128i ValuesToDigits(__m128i values) {
  const __m128i letter = _mm_cmpgt_epi8(values, _mm_set1_epi8(9));
  const __m128i digits = _mm_add_epi8(values, _mm_set1_epi8('0'));
  return _mm_add_epi8(digits, _mm_and_si128(letter, _mm_set1_epi8('A' - '0' - 10)));
}

#endif

}  // namespace

std::size_t DecodeHex(const char* text, std::size_t size, char* bytes) {
  std::size_t count = 0;
#ifdef __SSE2__
  for (; size - count * 2 >= 32; count += 16) {
    const __m128i first = DigitsToValues(text + count * 2);
    const __m128i second = DigitsToValues(text + count * 2 + 16);
    if (!AllDigits(_mm_or_si128(first, second))) break;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + count),
                     _mm_packus_epi16(JoinPairs(first), JoinPairs(second)));
  }
  for (; size - count * 2 >= 16; count += 8) {
    const __m128i values = DigitsToValues(text + count * 2);
    if (!AllDigits(values)) break;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes + count),
                     _mm_packus_epi16(JoinPairs(values), _mm_setzero_si128()));
  }
#endif
  for (; size - count * 2 >= 2; ++count) {
    const std::uint8_t high = DigitValues[static_cast<std::uint8_t>(text[count * 2])];
    const std::uint8_t low = DigitValues[static_cast<std::uint8_t>(text[count * 2 + 1])];
    if ((high | low) > 15) break;
    bytes[count] = static_cast<char>(high << 4 | low);
  }
  return count;
}

void EncodeHex(const char* bytes, std::size_t size, char* text) {
  std::size_t i = 0;
#ifdef __SSE2__
  const __m128i low = _mm_set1_epi8(0x0F);
  for (; size - i >= 16; i += 16) {
    const __m128i data = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
    const __m128i highDigits = ValuesToDigits(_mm_and_si128(_mm_srli_epi16(data, 4), low));
    const __m128i lowDigits = ValuesToDigits(_mm_and_si128(data, low));
    auto* out = reinterpret_cast<__m128i*>(text + i * 2);
    _mm_storeu_si128(out, _mm_unpacklo_epi8(highDigits, lowDigits));
    _mm_storeu_si128(out + 1, _mm_unpackhi_epi8(highDigits, lowDigits));
  }
#endif
  for (; i < size; ++i) {
    const auto byte = static_cast<std::uint8_t>(bytes[i]);
    text[i * 2] = Digits[byte >> 4];
    text[i * 2 + 1] = Digits[byte & 15];
  }
}

}  // namespace wrenfold
