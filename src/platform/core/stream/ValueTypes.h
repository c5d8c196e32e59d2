// The bytes that give the component stream its structure: signature, prefixes, value tags.
#pragma once

#include <array>
#include <cstddef>
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

// What follows a tag. Words have nothing; integers and floats are bytes; texts, identifiers and
// binary data are counted, wide texts in units of two bytes; sets are short strings up to an empty
// one; lists and collections go on up to a zero byte.
enum class TValueFamily : std::uint8_t {
  Word,
  Integer,
  Float,
  Text,
  WideText,
  Identifier,
  Binary,
  Set,
  List,
  Collection
};

struct TValueTypeRow {
  TValueType Type;
  std::string_view Name;
  TValueFamily Family;
  std::uint8_t Size;    // of the bytes, or of the count in front of them
  const char* Content;  // as messages call it; of a word, the word
};
inline constexpr std::array<TValueTypeRow, MaxValueType + 1> ValueTypes = {{
    {TValueType::vaNull, "vaNull", TValueFamily::Word, 0, "Null"},
    {TValueType::vaList, "vaList", TValueFamily::List, 0, "a list"},
    {TValueType::vaInt8, "vaInt8", TValueFamily::Integer, 1, "an 8-bit integer"},
    {TValueType::vaInt16, "vaInt16", TValueFamily::Integer, 2, "a 16-bit integer"},
    {TValueType::vaInt32, "vaInt32", TValueFamily::Integer, 4, "a 32-bit integer"},
    {TValueType::vaExtended, "vaExtended", TValueFamily::Float, 10, "an extended float"},
    {TValueType::vaString, "vaString", TValueFamily::Text, 1, "a string"},
    {TValueType::vaIdent, "vaIdent", TValueFamily::Identifier, 1, "an identifier"},
    {TValueType::vaFalse, "vaFalse", TValueFamily::Word, 0, "False"},
    {TValueType::vaTrue, "vaTrue", TValueFamily::Word, 0, "True"},
    {TValueType::vaBinary, "vaBinary", TValueFamily::Binary, 4, "binary data"},
    {TValueType::vaSet, "vaSet", TValueFamily::Set, 1, "an identifier of a set"},
    {TValueType::vaLString, "vaLString", TValueFamily::Text, 4, "a long string"},
    {TValueType::vaNil, "vaNil", TValueFamily::Word, 0, "nil"},
    {TValueType::vaCollection, "vaCollection", TValueFamily::Collection, 0, "a collection"},
    {TValueType::vaSingle, "vaSingle", TValueFamily::Float, 4, "a single float"},
    {TValueType::vaCurrency, "vaCurrency", TValueFamily::Float, 8, "a currency value"},
    {TValueType::vaDate, "vaDate", TValueFamily::Float, 8, "a date"},
    {TValueType::vaWString, "vaWString", TValueFamily::WideText, 4, "a wide string"},
    {TValueType::vaInt64, "vaInt64", TValueFamily::Integer, 8, "a 64-bit integer"},
    {TValueType::vaUTF8String, "vaUTF8String", TValueFamily::Text, 4, "a long string"},
    {TValueType::vaDouble, "vaDouble", TValueFamily::Float, 8, "a double float"},
}};
static_assert([] {
  for (std::size_t i = 0; i < ValueTypes.size(); ++i)
    if (ValueTypes[i].Type != static_cast<TValueType>(i) || ValueTypes[i].Content == nullptr)
      return false;
  return true;
}());

// The type must be one of the tags.
constexpr const TValueTypeRow& RowOf(TValueType type) {
  return ValueTypes[static_cast<std::size_t>(type)];
}
constexpr bool IsIntegerValue(TValueType type) {
  return RowOf(type).Family == TValueFamily::Integer;
}
constexpr bool IsTextValue(TValueType type) {
  return RowOf(type).Family == TValueFamily::Text || RowOf(type).Family == TValueFamily::WideText;
}
// The tag of the word that a name is, in any letter case; vaIdent for other names.
TValueType WordValueOf(std::string_view name);
// "vaInt8" and so on; "unknown value tag" for a byte that is no tag.
constexpr std::string_view ValueTypeName(TValueType type) {
  return static_cast<std::size_t>(type) < ValueTypes.size() ? RowOf(type).Name
                                                            : "unknown value tag";
}

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
