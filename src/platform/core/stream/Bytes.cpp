#include "platform/core/stream/Bytes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

std::string_view ValueTypeName(TValueType type) {
  static constexpr std::array<std::string_view, MaxValueType + 1> names = {
      "vaNull",    "vaList",  "vaInt8",       "vaInt16",  "vaInt32",    "vaExtended",
      "vaString",  "vaIdent", "vaFalse",      "vaTrue",   "vaBinary",   "vaSet",
      "vaLString", "vaNil",   "vaCollection", "vaSingle", "vaCurrency", "vaDate",
      "vaWString", "vaInt64", "vaUTF8String", "vaDouble"};
  const auto index = static_cast<std::size_t>(type);
  return index < names.size() ? names[index] : "unknown value tag";
}

TExtended TByteReader::ReadExtended() {
  Need(TExtended::ByteSize, "an extended float");
  TExtended value;
  value.Mantissa = ReadFixed<std::uint64_t>("a mantissa");
  value.SignExponent = ReadFixed<std::uint16_t>("an exponent");
  return value;
}

void TByteReader::ReadSignature() {
  if (Left() < FilerSignature.size() ||
      std::string_view(FNext, FilerSignature.size()) != FilerSignature)
    Fail("the signature \"TPF0\"");
  FNext += FilerSignature.size();
}

std::int64_t TByteReader::ReadIntegerValue() {
  const std::size_t start = Position();
  switch (ReadValueType()) {
    case TValueType::vaInt8:
      return ReadFixed<std::int8_t>("an 8-bit integer");
    case TValueType::vaInt16:
      return ReadFixed<std::int16_t>("a 16-bit integer");
    case TValueType::vaInt32:
      return ReadFixed<std::int32_t>("a 32-bit integer");
    case TValueType::vaInt64:
      return ReadFixed<std::int64_t>("a 64-bit integer");
    default:
      FailAt(start, "an integer value");
  }
}

std::uint8_t TByteReader::ReadFilerFlags() {
  if (PeekByte("a component") < FilerPrefixMark) return 0;
  return ReadByte("a component");
}

namespace {

// What the bytes at the cursor belong to while nested values are skipped.
enum TNesting : char { nsList, nsCollection, nsItem };

// Values of a size of their own, in the order of TValueType; the others have no name here.
struct TFixedValue {
  const char* Name = nullptr;
  std::uint8_t Size = 0;
};
constexpr TFixedValue FixedValues[] = {{"null", 0},
                                       {},
                                       {"an 8-bit integer", 1},
                                       {"a 16-bit integer", 2},
                                       {"a 32-bit integer", 4},
                                       {"an extended float", 10},
                                       {},
                                       {},
                                       {"false", 0},
                                       {"true", 0},
                                       {},
                                       {},
                                       {},
                                       {"nil", 0},
                                       {},
                                       {"a single float", 4},
                                       {"a currency value", 8},
                                       {"a date", 8},
                                       {},
                                       {"a 64-bit integer", 8},
                                       {},
                                       {"a double float", 8}};
static_assert(std::size(FixedValues) == MaxValueType + 1);

}  // namespace

// Skips what follows the tag; a container is only pushed.
void TByteReader::SkipContent(TValueType type, std::string& nesting) {
  const TFixedValue& fixed = FixedValues[static_cast<std::size_t>(type)];
  if (fixed.Name != nullptr) {
    ReadView(fixed.Size, fixed.Name);
    return;
  }
  switch (type) {
    case TValueType::vaList:
      nesting.push_back(nsList);
      break;
    case TValueType::vaCollection:
      nesting.push_back(nsCollection);
      break;
    case TValueType::vaString:
      ReadShortString("a string");
      break;
    case TValueType::vaIdent:
      ReadShortString("an identifier");
      break;
    case TValueType::vaBinary:
      ReadLongString("binary data");
      break;
    case TValueType::vaLString:
    case TValueType::vaUTF8String:
      ReadLongString("a long string");
      break;
    case TValueType::vaWString: {
      const std::uint64_t units = ReadFixed<std::uint32_t>("a wide string");
      ReadView(units * 2, "a wide string");
      break;
    }
    case TValueType::vaSet:
      while (!ReadShortString("an identifier of a set").empty()) {
      }
      break;
    default:
      break;
  }
}

// Goes on until every container in `nesting` is closed.
void TByteReader::SkipNested(std::string& nesting) {
  while (!nesting.empty()) {
    switch (nesting.back()) {
      case nsList:
        if (SkipEndOfList("a value or the end of a list")) nesting.pop_back();
        else SkipContent(ReadValueType(), nesting);
        break;
      case nsItem:
        if (SkipEndOfList("a property or the end of an item")) {
          nesting.pop_back();
        } else {
          ReadShortString("a property name");
          SkipContent(ReadValueType(), nesting);
        }
        break;
      case nsCollection:
        if (SkipEndOfList("an item or the end of a collection")) {
          nesting.pop_back();
          break;
        }
        if (PeekValueType() != TValueType::vaList) ReadIntegerValue();
        if (ReadValueType() != TValueType::vaList)
          FailAt(Position() - 1, "an item or the end of a collection");
        nesting.push_back(nsItem);
        break;
    }
  }
}

void TByteReader::SkipValue() {
  std::string nesting;
  SkipContent(ReadValueType(), nesting);
  if (!nesting.empty()) SkipNested(nesting);
}

void TByteReader::SkipProperties() {
  std::string nesting(1, nsItem);
  SkipNested(nesting);
}

void TByteReader::SkipComponent() {
  std::size_t depth = 0;  // components whose child list is open
  do {
    const std::uint8_t flags = ReadFilerFlags();
    if (flags & ffChildPos) ReadIntegerValue();
    ReadShortString("a class name");
    ReadShortString("a component name");
    SkipProperties();
    ++depth;
    while (depth > 0 && SkipEndOfList("a component or the end of the child list")) --depth;
  } while (depth > 0);
}

void TByteReader::ReadResourceHeader(std::string_view& name, std::uint32_t& size) {
  if (ReadByte("a resource header") != ResourceMark) FailAt(Position() - 1, "a resource header");
  if (ReadFixed<std::uint16_t>("a resource type") != ResourceTypeId)
    FailAt(Position() - 2, "the resource type 10");
  const char* zero = static_cast<const char*>(std::memchr(FNext, 0, Left()));
  if (zero == nullptr) Fail("a resource name that ends with a zero byte");
  name = ReadView(static_cast<std::size_t>(zero - FNext), "a resource name");
  ++FNext;
  // The flags say how the resource is loaded, which is nobody's concern here.
  ReadFixed<std::uint16_t>("resource flags");
  size = ReadFixed<std::uint32_t>("a resource size");
}

void TByteWriter::WriteExtended(TExtended value) {
  WriteFixed(value.Mantissa);
  WriteFixed(value.SignExponent);
}

namespace {

std::uint32_t Length32(std::size_t size) {
  if (size > std::numeric_limits<std::uint32_t>::max())
    throw EWriteError("Stream write error: a value of more than four gigabytes");
  return static_cast<std::uint32_t>(size);
}

}  // namespace

void TByteWriter::WriteStringValue(std::string_view text) {
  if (text.size() <= MaxName) {
    WriteValueType(TValueType::vaString);
    WriteByte(static_cast<std::uint8_t>(text.size()));
  } else {
    WriteValueType(TValueType::vaLString);
    WriteFixed(Length32(text.size()));
  }
  WriteBytes(text);
}

void TByteWriter::WriteIdentValue(std::string_view name) {
  static constexpr std::pair<std::string_view, TValueType> words[] = {
      {"False", TValueType::vaFalse},
      {"True", TValueType::vaTrue},
      {"nil", TValueType::vaNil},
      {"Null", TValueType::vaNull}};
  if (name.size() <= 5)
    for (const auto& [word, type] : words)
      if (EqualText(name, word)) return WriteValueType(type);
  WriteValueType(TValueType::vaIdent);
  WriteShortString(name);
}

void TByteWriter::WriteExtendedValue(TExtended value) {
  WriteValueType(TValueType::vaExtended);
  WriteExtended(value);
}

void TByteWriter::WriteBinaryValue(std::string_view bytes) {
  WriteValueType(TValueType::vaBinary);
  WriteFixed(Length32(bytes.size()));
  WriteBytes(bytes);
}

std::size_t TByteWriter::WriteResourceHeader(std::string_view name) {
  WriteByte(ResourceMark);
  WriteFixed(ResourceTypeId);
  for (const char character : name) {
    const bool lower = character >= 'a' && character <= 'z';
    WriteByte(static_cast<std::uint8_t>(lower ? character - 'a' + 'A' : character));
  }
  WriteByte(0);
  WriteFixed(ResourceFlags);
  const std::size_t position = Size();
  WriteFixed(std::uint32_t{0});
  return position;
}

}  // namespace wrenfold
