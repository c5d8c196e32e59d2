// The bytes that give the component stream its structure: signature, prefixes, value tags.
#pragma once

#include <cstdint>
#include <string_view>

namespace wrenfold {

// The four bytes that open a binary component stream.
inline constexpr std::string_view FilerSignature = "TPF0";

// The tag byte in front of each value. A zero byte also ends property lists, child lists, lists and
// collections. Writers emit tags up to vaInt64; vaUTF8String and vaDouble come from newer releases.
enum class TValueType : std::uint8_t {
  vaNull = 0,
  vaList,
  vaInt8,
  vaInt16,
  vaInt32,
  vaExtended,
  vaString,
  vaIdent,
  vaFalse,
  vaTrue,
  vaBinary,
  vaSet,
  vaLString,
  vaNil,
  vaCollection,
  vaSingle,
  vaCurrency,
  vaDate,
  vaWString,
  vaInt64,
  vaUTF8String,
  vaDouble,
};
inline constexpr std::uint8_t MaxValueType = static_cast<std::uint8_t>(TValueType::vaDouble);

// "vaInt8" and so on; "unknown value tag" for a byte that is no tag.
std::string_view ValueTypeName(TValueType type);

// A byte of $F0 and above in front of a class name carries these flags.
inline constexpr std::uint8_t FilerPrefixMark = 0xF0;
enum TFilerFlag : std::uint8_t {
  ffInherited = 1,
  ffChildPos = 2,  // an integer value with the child position follows the prefix byte
  ffInline = 4,
};

// The resource form: $FF, 16-bit ResourceTypeId, the name in upper case with a zero byte, 16-bit
// ResourceFlags, the 32-bit size of the stream, the stream.
inline constexpr std::uint8_t ResourceMark = 0xFF;
inline constexpr std::uint16_t ResourceTypeId = 10;
inline constexpr std::uint16_t ResourceFlags = 0x1030;

}  // namespace wrenfold
