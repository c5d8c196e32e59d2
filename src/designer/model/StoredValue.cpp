#include "designer/model/StoredValue.h"

#include "platform/core/stream/Bytes.h"
#include "platform/core/text/SysUtils.h"
#include "platform/core/text/Unicode.h"
#include "project/TextEncoding.h"

namespace wrenfold {

namespace {

using enum TValueType;

TValueType TypeOf(std::string_view value) {
  return value.empty() || static_cast<std::uint8_t>(value[0]) > MaxValueType
             ? vaNull
             : static_cast<TValueType>(value[0]);
}

// A value cut short cannot come from a form that was read, but a caller may hand over any bytes.
template <class Answer, class Read>
Answer ReadOr(std::string_view value, Answer otherwise, Read read) {
  try {
    TByteReader reader(value);
    return read(reader, reader.ReadValueType());
  } catch (const EReadError&) {
    return otherwise;
  }
}

std::string TextOfBytes(std::string_view bytes, int codePage) {
  TTextFormat format;
  return DecodeText(bytes, codePage, format);
}

std::string TextOfWideBytes(std::string_view bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * 2);
  return Utf8FromUtf16(text);
}

double ReadNumber(TByteReader& reader, TValueType type, double otherwise) {
  switch (type) {
    case vaExtended:
      return ExtendedToDouble(reader.ReadExtended());
    case vaSingle:
      return reader.ReadFixed<float>("a number");
    case vaDouble:
    case vaDate:
      return reader.ReadFixed<double>("a number");
    case vaCurrency:
      return static_cast<double>(reader.ReadFixed<std::int64_t>("a number")) / 10000;
    default:
      return otherwise;
  }
}

}  // namespace

std::int64_t StoredInteger(std::string_view value, std::int64_t otherwise) {
  switch (TypeOf(value)) {
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      return ReadOr(value, otherwise, [&](TByteReader& reader, TValueType) {
        reader.Seek(0);
        return reader.ReadIntegerValue();
      });
    default:
      return otherwise;
  }
}

double StoredNumber(std::string_view value, double otherwise) {
  const TValueType type = TypeOf(value);
  if (type >= vaInt8 && type <= vaInt32)
    return static_cast<double>(StoredInteger(value, static_cast<std::int64_t>(otherwise)));
  return ReadOr(value, otherwise, [&](TByteReader& reader, TValueType tag) {
    return ReadNumber(reader, tag, otherwise);
  });
}

bool StoredBoolean(std::string_view value, bool otherwise) {
  const TValueType type = TypeOf(value);
  return type == vaTrue || (type != vaFalse && otherwise);
}

std::string_view StoredIdentifier(std::string_view value) {
  if (TypeOf(value) != vaIdent) return {};
  return ReadOr(value, std::string_view(),
                [](TByteReader& reader, TValueType) { return reader.ReadShortString("a name"); });
}

std::string StoredText(std::string_view value, int codePage) {
  return ReadOr(value, std::string(), [&](TByteReader& reader, TValueType type) -> std::string {
    switch (type) {
      case vaString:
        return TextOfBytes(reader.ReadShortString("a text"), codePage);
      case vaLString:
      case vaUTF8String:
        return TextOfBytes(reader.ReadLongString("a text"), codePage);
      case vaWString: {
        const std::size_t count = reader.ReadFixed<std::uint32_t>("a length");
        return TextOfWideBytes(reader.ReadView(count * 2, "a text"));
      }
      default:
        return {};
    }
  });
}

bool StoredSetHas(std::string_view value, std::string_view element, bool otherwise) {
  if (TypeOf(value) != vaSet) return otherwise;
  return ReadOr(value, otherwise, [&](TByteReader& reader, TValueType) {
    for (;;) {
      const std::string_view name = reader.ReadShortString("a name");
      if (name.empty()) return false;
      if (EqualText(name, element)) return true;
    }
  });
}

std::string_view StoredBinary(std::string_view value) {
  if (TypeOf(value) != vaBinary) return {};
  return ReadOr(value, std::string_view(),
                [](TByteReader& reader, TValueType) { return reader.ReadLongString("bytes"); });
}

std::vector<std::string_view> StoredList(std::string_view value) {
  std::vector<std::string_view> list;
  if (TypeOf(value) != vaList) return list;
  return ReadOr(value, list, [&](TByteReader& reader, TValueType) {
    while (list.size() < MaxStoredItems && !reader.SkipEndOfList("a value")) {
      const std::size_t start = reader.Position();
      reader.SkipValue();
      list.push_back(reader.Since(start));
    }
    return list;
  });
}

std::vector<std::string> StoredStrings(std::string_view value, int codePage) {
  std::vector<std::string> strings;
  for (const std::string_view item : StoredList(value))
    strings.push_back(StoredText(item, codePage));
  return strings;
}

std::string_view TCollectionEntry::Value(std::string_view path) const {
  for (const TDesignProperty& property : Properties)
    if (EqualText(property.Path, path)) return property.Value;
  return {};
}

std::vector<TCollectionEntry> StoredItems(std::string_view value) {
  std::vector<TCollectionEntry> items;
  if (TypeOf(value) != vaCollection) return items;
  return ReadOr(value, items, [&](TByteReader& reader, TValueType) {
    while (items.size() < MaxStoredItems && !reader.SkipEndOfList("an item")) {
      if (reader.PeekValueType() != vaList) reader.SkipValue();  // the stored order
      reader.ReadValueType();
      TCollectionEntry& item = items.emplace_back();
      while (!reader.SkipEndOfList("a property")) {
        const std::string_view path = reader.ReadShortString("a property name");
        const std::size_t start = reader.Position();
        reader.SkipValue();
        item.Properties.push_back({path, reader.Since(start)});
      }
    }
    return items;
  });
}

}  // namespace wrenfold
