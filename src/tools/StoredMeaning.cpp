// What the parts of a stored object say, as texts that are equal for equal meaning.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

#include "platform/core/stream/FloatText.h"
#include "platform/core/text/Unicode.h"
#include "tools/StoredWalk.h"

namespace wrenfold {
namespace {

struct TFloat {
  TExtended Value;
  TFloatWidth Width = TFloatWidth::Extended;
};

std::optional<TFloat> ReadFloat(const TStoredPart& part) {
  TByteReader reader(part.Value);
  switch (part.Type) {
    case TValueType::vaExtended:
      reader.ReadValueType();
      return TFloat{reader.ReadExtended(), TFloatWidth::Extended};
    case TValueType::vaSingle:
      reader.ReadValueType();
      return TFloat{DoubleToExtended(reader.ReadFixed<float>("a single float")),
                    TFloatWidth::Single};
    case TValueType::vaDate:
    case TValueType::vaDouble:
      reader.ReadValueType();
      return TFloat{DoubleToExtended(reader.ReadFixed<double>("a double float")),
                    TFloatWidth::Double};
    default:
      return {};
  }
}

TExtended Rounded(TExtended value, TFloatWidth width) {
  if (width == TFloatWidth::Extended) return value;
  const double number = ExtendedToDouble(value);
  return DoubleToExtended(width == TFloatWidth::Single ? static_cast<float>(number) : number);
}

std::string FloatMeaning(TExtended exact, TFloatWidth width) {
  const TExtended value = Rounded(exact, width);
  const double number = ExtendedToDouble(value);
  // A whole number may be stored as an integer as well.
  if (std::fabs(number) < 0x1p53 && number == std::floor(number) &&
      DoubleToExtended(number) == value)
    return std::to_string(static_cast<std::int64_t>(number));
  char text[MaxFloatText];
  return {text, WriteFloatText(value, TFloatDigits::Exact, width, text)};
}

std::string WideMeaning(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  std::memcpy(units.data(), bytes.data(), bytes.size());
  return fmt::format("'{}'", Utf8FromUtf16(units));
}

std::string SetMeaning(TByteReader& reader) {
  std::vector<std::string_view> names;
  for (;;) {
    const std::string_view name = reader.ReadShortString("an identifier of a set or its end");
    if (name.empty()) break;
    names.push_back(name);
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

std::string ComponentMeaning(const TStoredPart& part) {
  std::string meaning;
  if (part.HasOrder) meaning = fmt::format("[{}] ", part.Order);
  if ((part.Flags & ffInherited) != 0) meaning += "inherited ";
  if ((part.Flags & ffInline) != 0) meaning += "inline ";
  return meaning.append(part.ClassName);
}

std::string ValueMeaning(const TStoredPart& part) {
  if (const auto number = ReadFloat(part)) return FloatMeaning(number->Value, number->Width);
  TByteReader reader(part.Value);
  switch (part.Type) {
    case TValueType::vaInt8:
    case TValueType::vaInt16:
    case TValueType::vaInt32:
    case TValueType::vaInt64:
      return std::to_string(reader.ReadIntegerValue());
    default:
      reader.ReadValueType();
  }
  switch (part.Type) {
    case TValueType::vaFalse:
      return "False";
    case TValueType::vaTrue:
      return "True";
    case TValueType::vaNil:
      return "nil";
    case TValueType::vaNull:
      return "Null";
    case TValueType::vaList:
      return part.IsEmpty ? "()" : "(...)";
    case TValueType::vaCollection:
      return part.IsEmpty ? "<>" : "<...>";
    case TValueType::vaIdent:
      return std::string(reader.ReadShortString("an identifier"));
    case TValueType::vaString:
      return fmt::format("'{}'", reader.ReadShortString("a string"));
    case TValueType::vaLString:
    case TValueType::vaUTF8String:
      return fmt::format("'{}'", reader.ReadLongString("a string"));
    case TValueType::vaWString: {
      const std::size_t units = reader.ReadFixed<std::uint32_t>("a wide string");
      return WideMeaning(reader.ReadView(units * 2, "a wide string"));
    }
    case TValueType::vaSet:
      return SetMeaning(reader);
    case TValueType::vaBinary:
      return BinaryMeaning(reader.ReadLongString("binary data"));
    case TValueType::vaCurrency:
      return fmt::format("{}c", reader.ReadFixed<std::int64_t>("a currency value"));
    default:
      reader.Fail("a simple value");
  }
}

}  // namespace

std::string MeaningOf(const TStoredPart& part) {
  switch (part.Kind) {
    case TPartKind::Component:
      return ComponentMeaning(part);
    case TPartKind::Item:
      return part.HasOrder ? fmt::format("item [{}]", part.Order) : "item";
    default:
      return ValueMeaning(part);
  }
}

bool SameMeaning(const TStoredPart& left, const TStoredPart& right) {
  if (left.Kind != right.Kind) return false;
  if (left.IsContainer() || right.IsContainer()) return left.Type == right.Type;
  if (!left.Value.empty() && left.Value == right.Value) return true;
  const auto leftFloat = ReadFloat(left);
  const auto rightFloat = ReadFloat(right);
  if (!leftFloat || !rightFloat) return MeaningOf(left) == MeaningOf(right);
  const TFloatWidth width = std::min(leftFloat->Width, rightFloat->Width);
  return FloatMeaning(leftFloat->Value, width) == FloatMeaning(rightFloat->Value, width);
}

}  // namespace wrenfold
