// Converts single values by way of a component that has just this one property.
#include "designer/model/ValueText.h"

#include <fmt/format.h>

#include "platform/core/stream/FormText.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::string_view ClassOfCarrier = "TValue", Property = "Value";
constexpr std::string_view TextBegin = "object TValue\r\n  Value = ", TextEnd = "\r\nend\r\n";

// What the tags of values have in common for somebody who types a value.
const char* KindOf(std::string_view value) {
  using enum TValueType;
  switch (static_cast<TValueType>(value.empty() ? 0 : value[0])) {
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      return "a whole number";
    case vaExtended:
    case vaSingle:
    case vaCurrency:
    case vaDate:
    case vaDouble:
      return "a number";
    case vaString:
    case vaLString:
    case vaWString:
    case vaUTF8String:
      return "a text in single quotes";
    case vaFalse:
    case vaTrue:
      return "True or False";
    case vaIdent:
    case vaNil:
    case vaNull:
      return "a name";
    case vaSet:
      return "names in square brackets";
    default:
      return "a list";
  }
}

// True and False are the only values of their kind; a number may have lost its fraction.
bool Fits(std::string_view value, std::string_view replaced) {
  const std::string_view kind = KindOf(value), wanted = KindOf(replaced);
  return kind == wanted || (wanted == "a number" && kind == "a whole number");
}

}  // namespace

std::string FormValueText(std::string_view value) {
  TByteWriter carrier;
  carrier.WriteSignature();
  carrier.WriteShortString(ClassOfCarrier);
  carrier.WriteShortString("");
  carrier.WriteShortString(Property);
  carrier.WriteBytes(value);
  carrier.WriteEndOfList();
  carrier.WriteEndOfList();
  TByteReader binary(carrier.View());
  TByteWriter text;
  ObjectBinaryToText(binary, text);
  std::string_view whole = text.View();
  const std::size_t start = whole.find(" = ");
  const std::size_t end = whole.rfind("end");
  if (start == std::string_view::npos || end == std::string_view::npos || end < start) return {};
  return std::string(Trim(whole.substr(start + 3, end - start - 3)));
}

std::string FormValueFromText(const std::string& text, std::string_view replaced) {
  const std::string whole = std::string(TextBegin) + text + std::string(TextEnd);
  TByteWriter carrier;
  std::size_t position = 0;
  try {
    ObjectTextToBinary(whole, position, carrier);
  } catch (const EParserError& e) {
    throw EConvertError(fmt::format("'{}' is no value of a property: {}", text, e.Message()));
  }
  TByteReader binary(carrier.View());
  binary.ReadSignature();
  binary.ReadFilerFlags();
  binary.ReadShortString("class name");
  binary.ReadShortString("name");
  const bool named = binary.ReadShortString("property") == Property;
  const std::size_t start = binary.Position();
  binary.SkipValue();
  const std::string value(binary.Since(start));
  // More than one property, or an object inside, would be taken for this form's own.
  if (!named || !binary.SkipEndOfList("end") || !binary.SkipEndOfList("end") ||
      !AtTextEnd(whole, position))
    throw EConvertError(fmt::format("'{}' is no single value of a property", text));
  if (!replaced.empty() && !Fits(value, replaced))
    throw EConvertError(fmt::format("'{}' does not fit the property: expected {}, as in {}", text,
                                    KindOf(replaced), FormValueText(replaced)));
  return value;
}

}  // namespace wrenfold
