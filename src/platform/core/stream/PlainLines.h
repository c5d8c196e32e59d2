// Lines of form text as nearly all are: a component, or a property with a short value, within 64
// bytes. They are converted by whole blocks, with few branches that depend on what stands in them.
#pragma once

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/TextScan.h"

#ifdef __SSE2__

namespace wrenfold {

// Bytes that are read behind the line break in front of a line, and room that it takes as binary.
inline constexpr std::ptrdiff_t PlainLineReach = 10 * BlockSize;
inline constexpr std::size_t PlainLineRoom = 8 * BlockSize;

// Whether the next token behind a line, perhaps in the next one, is this character; also when it is
// too far away to tell.
inline bool GoesOnWith(char token, const char* end) {
  const char* const limit = end + 2 * BlockSize;
  const char* const next = SkipBlanks(end, limit);
  return next == limit || *next == token;
}

namespace detail {

inline char* PutName(char* out, const char* name, std::size_t size) {
  *out++ = static_cast<char>(size);
  CopyTwo(out, name);
  return out + size;
}

inline char* PutPlainNumber(const char* value, const char* end, char* out) {
  const bool negative = *value == '-';
  const char* next = value + negative;
  const std::int64_t sign = -static_cast<std::int64_t>(negative);
  const std::int64_t number = (ReadShortNumber(next, end + BlockSize) ^ sign) - sign;
  if (next != end || next == value + negative) return nullptr;
  return TByteWriter::PutIntegerValue(out, number);
}

// Of the short words, which may be other than identifiers, only the two that are frequent.
inline char* PutPlainIdent(const char* value, const char* end, char* out) {
  const std::size_t size = WordLengthOfTwo(value);
  if (value + size != end) return nullptr;
  if (size > 5) {
    *out = static_cast<char>(TValueType::vaIdent);
    return PutName(out + 1, value, size);
  }
  *out = static_cast<char>(TValueType::vaTrue);
  if (size == 4 && std::memcmp(value, "True", 4) == 0) return out + 1;
  *out = static_cast<char>(TValueType::vaFalse);
  return size == 5 && std::memcmp(value, "False", 5) == 0 ? out + 1 : nullptr;
}

// One run between quotes that holds nothing to look at.
inline char* PutPlainString(const char* value, const char* end, char* out) {
  const char* const text = value + 1;
  const std::uint64_t stops = MaskOfFour<StopMask>(text);
  const int size = std::countr_zero(stops);
  if (stops == 0 || text[size] != '\'' || text + size + 1 != end || GoesOnWith('+', end))
    return nullptr;
  out[0] = static_cast<char>(TValueType::vaString);
  out[1] = static_cast<char>(size);
  CopyTwo(out + 2, text);
  CopyTwo(out + 2 + 2 * BlockSize, text + 2 * BlockSize);
  return out + 2 + size;
}

}  // namespace detail

// Writes class and name of the component "name: class" that takes up [text, end) to `out`. Returns
// the end of what was written, or null when it is not plain.
inline char* PutPlainComponent(const char* text, const char* end, char* out) {
  const std::size_t nameSize = detail::WordLengthOfTwo(text);
  const char* const className = text + nameSize + 2;
  const std::size_t classSize = detail::WordLengthOfTwo(className);
  if (nameSize == 0 || classSize == 0 || std::memcmp(text + nameSize, ": ", 2) != 0 ||
      className + classSize != end || GoesOnWith('[', end))
    return nullptr;
  return detail::PutName(detail::PutName(out, className, classSize), text, nameSize);
}

// The same for name and value of the property "name = value".
inline char* PutPlainProperty(const char* text, const char* end, char* out) {
  const std::size_t size = detail::WordLengthOfTwo(text);
  if (size == 0 || std::memcmp(text + size, " = ", 3) != 0) return nullptr;
  const char* const value = text + size + 3;
  out = detail::PutName(out, text, size);
  if (*value == '\'') return detail::PutPlainString(value, end, out);
  if (*value == '-' || (*value >= '0' && *value <= '9'))
    return detail::PutPlainNumber(value, end, out);
  return detail::PutPlainIdent(value, end, out);
}

}  // namespace wrenfold

#endif
