#include "tools/StoredWalk.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "platform/core/FloatText.h"
#include "platform/core/Unicode.h"

namespace wrenfold {
namespace {

enum class TNesting { Properties, Children, List, Collection, Item };

std::string FloatMeaning(TExtended value) {
  const double number = ExtendedToDouble(value);
  // A whole number may be stored as an integer as well.
  if (std::fabs(number) < 0x1p53 && number == std::floor(number) &&
      DoubleToExtended(number) == value)
    return std::to_string(static_cast<std::int64_t>(number));
  char text[MaxFloatText];
  return {text, WriteFloatText(value, TFloatDigits::Exact, TFloatWidth::Extended, text)};
}

std::string WideMeaning(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  std::memcpy(units.data(), bytes.data(), bytes.size());
  return fmt::format("'{}'", Utf8FromUtf16(units));
}

std::string SetMeaning(TByteReader& reader) {
  std::vector<std::string> names;
  for (;;) {
    const std::string_view name = reader.ReadShortString("an identifier of a set or its end");
    if (name.empty()) break;
    names.emplace_back(name);
  }
  std::sort(names.begin(), names.end());
  return fmt::format("[{}]", fmt::join(names, ", "));
}

std::string BinaryMeaning(std::string_view bytes) {
  return fmt::format(
      "{{{:02X}}}",
      fmt::join(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                reinterpret_cast<const std::uint8_t*>(bytes.data()) + bytes.size(), ""));
}

class TFlattener {
 public:
  TFlattener(TByteReader& reader, bool withValues) : FReader(reader), FWithValues(withValues) {}

  TFlatObject Flatten() {
    OpenComponent();
    Walk();
    return std::move(FResult);
  }

  TFlatObject FlattenLists() {
    while (!FReader.AtEnd()) {
      Push(TNesting::Item, "");
      Walk();
    }
    return std::move(FResult);
  }

 private:
  struct TLevel {
    TNesting Nesting;
    std::size_t PathSize;   // of the path in front of this level's own part
    std::size_t Index = 0;  // of the next element or nameless child
  };

  void Walk() {
    while (!FLevels.empty()) {
      TLevel& level = FLevels.back();
      switch (level.Nesting) {
        case TNesting::Properties:
          if (FReader.SkipEndOfList("a property or the end of the property list"))
            level.Nesting = TNesting::Children;
          else ReadProperty();
          break;
        case TNesting::Children:
          if (FReader.SkipEndOfList("a component or the end of the child list")) Pop();
          else OpenComponent();
          break;
        case TNesting::List:
          if (FReader.SkipEndOfList("a value or the end of a list")) Pop();
          else ReadElement(level.Index++);
          break;
        case TNesting::Collection:
          if (FReader.SkipEndOfList("an item or the end of a collection")) Pop();
          else OpenItem(level.Index++);
          break;
        case TNesting::Item:
          if (FReader.SkipEndOfList("a property or the end of an item")) Pop();
          else ReadProperty();
          break;
      }
    }
  }

  void Push(TNesting nesting, std::string_view part) {
    if (FLevels.size() == MaxFormNesting) FReader.Fail("less nesting");
    FLevels.push_back({nesting, FPath.size()});
    FPath += part;
  }

  void Pop() {
    FPath.resize(FLevels.back().PathSize);
    FLevels.pop_back();
  }

  void OpenComponent() {
    const std::uint8_t flags = FReader.ReadFilerFlags();
    std::string kind;
    if ((flags & ffChildPos) != 0) kind = fmt::format("[{}] ", FReader.ReadIntegerValue());
    if ((flags & ffInherited) != 0) kind += "inherited ";
    if ((flags & ffInline) != 0) kind += "inline ";
    const std::string_view className = FReader.ReadShortString("a class name");
    const std::string_view name = FReader.ReadShortString("a component name");
    const char* dot = FLevels.empty() ? "" : ".";
    std::string part;
    if (!name.empty() || FLevels.empty())
      part = fmt::format("{}{}", dot, name.empty() ? className : name);
    else part = fmt::format("{}{}#{}", dot, className, FLevels.back().Index++);
    Push(TNesting::Properties, part);
    FResult.Components.push_back({FPath, kind.append(className)});
  }

  void OpenItem(std::size_t index) {
    std::string part = fmt::format("[{}]", index);
    if (FReader.PeekValueType() != TValueType::vaList) {
      const std::int64_t order = FReader.ReadIntegerValue();
      Add(FPath + part + ".order", std::to_string(order));
    }
    if (FReader.ReadValueType() != TValueType::vaList) FReader.Fail("an item");
    Push(TNesting::Item, part);
  }

  void ReadProperty() {
    ++FResult.PropertyCount;
    const std::string_view name = FReader.ReadShortString("a property name");
    ReadValue(fmt::format("{}{}", FPath.empty() ? "" : ".", name));
  }

  void ReadElement(std::size_t index) { ReadValue(fmt::format("[{}]", index)); }

  void ReadValue(const std::string& part) {
    const TValueType type = FReader.PeekValueType();
    ++FResult.TagCounts[static_cast<std::size_t>(type)];
    if (type == TValueType::vaList || type == TValueType::vaCollection) {
      FReader.ReadValueType();
      // An empty container still is a value.
      if (FReader.PeekByte("an element or the end") == 0)
        Add(FPath + part, type == TValueType::vaList ? "()" : "<>");
      return Push(type == TValueType::vaList ? TNesting::List : TNesting::Collection, part);
    }
    if (!FWithValues) return FReader.SkipValue();
    Add(FPath + part, ReadMeaning());
  }

  void Add(std::string path, std::string value) {
    if (FWithValues) FResult.Values.push_back({std::move(path), std::move(value)});
  }

  std::string ReadMeaning() {
    switch (FReader.PeekValueType()) {
      case TValueType::vaInt8:
      case TValueType::vaInt16:
      case TValueType::vaInt32:
      case TValueType::vaInt64:
        return std::to_string(FReader.ReadIntegerValue());
      default:
        return ReadTagged(FReader.ReadValueType());
    }
  }

  std::string ReadTagged(TValueType type) {
    switch (type) {
      case TValueType::vaFalse:
        return "False";
      case TValueType::vaTrue:
        return "True";
      case TValueType::vaNil:
        return "nil";
      case TValueType::vaNull:
        return "Null";
      case TValueType::vaIdent:
        return std::string(FReader.ReadShortString("an identifier"));
      case TValueType::vaString:
        return fmt::format("'{}'", FReader.ReadShortString("a string"));
      case TValueType::vaLString:
      case TValueType::vaUTF8String:
        return fmt::format("'{}'", FReader.ReadLongString("a string"));
      case TValueType::vaWString: {
        const std::size_t units = FReader.ReadFixed<std::uint32_t>("a wide string");
        return WideMeaning(FReader.ReadView(units * 2, "a wide string"));
      }
      case TValueType::vaSet:
        return SetMeaning(FReader);
      case TValueType::vaBinary:
        return BinaryMeaning(FReader.ReadLongString("binary data"));
      case TValueType::vaExtended:
        return FloatMeaning(FReader.ReadExtended());
      case TValueType::vaSingle:
        return FloatMeaning(DoubleToExtended(FReader.ReadFixed<float>("a single float")));
      case TValueType::vaDate:
      case TValueType::vaDouble:
        return FloatMeaning(DoubleToExtended(FReader.ReadFixed<double>("a double float")));
      case TValueType::vaCurrency:
        return fmt::format("{}c", FReader.ReadFixed<std::int64_t>("a currency value"));
      default:
        FReader.Fail("a simple value");
    }
  }

  TByteReader& FReader;
  bool FWithValues;
  std::string FPath;
  std::vector<TLevel> FLevels;
  TFlatObject FResult;
};

}  // namespace

TFlatObject FlattenObject(std::string_view stream, bool withValues) {
  TByteReader reader(stream);
  reader.ReadSignature();
  return TFlattener(reader, withValues).Flatten();
}

TFlatObject CountProperties(std::string_view stream) {
  TByteReader reader(stream);
  reader.ReadSignature();
  return TFlattener(reader, false).FlattenLists();
}

}  // namespace wrenfold
