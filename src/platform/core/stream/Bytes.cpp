#include "platform/core/stream/Bytes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

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

}  // namespace

// Skips what follows the tag; a container is only pushed.
void TByteReader::SkipContent(TValueType type, std::string& nesting) {
  const TValueTypeRow& row = RowOf(type);
  if (row.Family <= TValueFamily::Float) {
    ReadView(row.Size, row.Content);
    return;
  }
  switch (row.Family) {
    case TValueFamily::Text:
    case TValueFamily::Identifier:
    case TValueFamily::Binary:
      if (row.Size == 1) ReadShortString(row.Content);
      else ReadLongString(row.Content);
      break;
    case TValueFamily::WideText: {
      const std::uint64_t units = ReadFixed<std::uint32_t>(row.Content);
      ReadView(units * 2, row.Content);
      break;
    }
    case TValueFamily::Set:
      while (!ReadShortString(row.Content).empty()) {
      }
      break;
    case TValueFamily::List:
      nesting.push_back(nsList);
      break;
    case TValueFamily::Collection:
      nesting.push_back(nsCollection);
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

TValueType WordValueOf(std::string_view name) {
  static constexpr TValueType words[] = {TValueType::vaFalse, TValueType::vaTrue, TValueType::vaNil,
                                         TValueType::vaNull};
  // Nearly no identifier is as short and begins like one of them.
  if (name.empty() || name.size() > 5) return TValueType::vaIdent;
  const int first = name[0] | 0x20;
  if (first != 'f' && first != 't' && first != 'n') return TValueType::vaIdent;
  for (const TValueType word : words)
    if (EqualText(name, RowOf(word).Content)) return word;
  return TValueType::vaIdent;
}

void TByteWriter::WriteIdentValue(std::string_view name) {
  const TValueType word = WordValueOf(name);
  WriteValueType(word);
  if (word == TValueType::vaIdent) WriteShortString(name);
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
