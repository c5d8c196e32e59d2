#include "debugger/lldb/PascalValues.h"

#include <fmt/format.h>

#include <cstring>

#include "platform/core/text/SysUtils.h"
#include "platform/core/text/Unicode.h"

namespace wrenfold {

namespace {

using namespace lldb;

constexpr std::int64_t MostText = 4096, MostElements = 100;
constexpr std::int64_t MostReadable = 1 << 28;  // a length beyond is none
constexpr int ShownDepth = 2;

// The library does not know arrays that stand elsewhere than their variable: it takes the size of
// the rule that tells their end for the end itself. Those rules are always the same.
constexpr std::uint32_t LongTextEnd = 13, ShortTextEnd = 3, DynamicEnd = 15;

std::string Text(const char* text) {
  return text != nullptr ? text : "";
}

std::string Read(SBValue value, std::uint64_t address, std::size_t size) {
  std::string bytes(size, '\0');
  SBError error;
  bytes.resize(value.GetProcess().ReadMemory(address, bytes.data(), size, error));
  return bytes;
}

std::uint64_t ReadPointer(SBValue value, std::uint64_t address) {
  SBError error;
  return value.GetProcess().ReadPointerFromMemory(address, error);
}

// The number of pointer size in front of a text or of the elements of an array.
std::int64_t CountBefore(SBValue value, std::uint64_t data) {
  const std::size_t size = value.GetTarget().GetAddressByteSize();
  const std::uint64_t raw = ReadPointer(value, data - size);
  return size == 4 ? static_cast<std::int32_t>(raw) : static_cast<std::int64_t>(raw);
}

enum class TShape { Plain, LongText, WideText, ShortText, Dynamic, Fixed, Record, Pointer };

TShape ShapeOf(SBValue value) {
  SBType type = value.GetType().GetCanonicalType();
  if (type.IsPointerType()) return TShape::Pointer;
  if (type.GetTypeClass() == eTypeClassStruct || type.GetTypeClass() == eTypeClassClass)
    return TShape::Record;
  if (!type.IsArrayType()) return TShape::Plain;
  SBType element = type.GetArrayElementType();
  const std::uint32_t count = value.GetNumChildren();
  const std::string name = UpperCase(Text(element.GetName()));
  if (count == LongTextEnd && name.find("WIDECHAR") != std::string::npos) return TShape::WideText;
  const bool characters = name.find("CHAR") != std::string::npos && element.GetByteSize() == 1;
  if (count == LongTextEnd && characters) return TShape::LongText;
  if (count == ShortTextEnd && characters) return TShape::ShortText;
  return count == DynamicEnd ? TShape::Dynamic : TShape::Fixed;
}

std::string LongText(SBValue value) {
  const std::uint64_t data = ReadPointer(value, value.GetLoadAddress());
  if (data == 0) return {};
  const std::int64_t length = CountBefore(value, data);
  if (length < 0 || length > MostReadable) throw EDebugError("no text: it was not set yet");
  return Read(value, data, static_cast<std::size_t>(std::min(length, MostText)));
}

std::string WideText(SBValue value) {
  const std::uint64_t data = ReadPointer(value, value.GetLoadAddress());
  if (data == 0) return {};
  const std::int64_t length = CountBefore(value, data);
  if (length < 0 || length > MostReadable) throw EDebugError("no text: it was not set yet");
  const std::string bytes =
      Read(value, data, static_cast<std::size_t>(std::min(length, MostText)) * 2);
  std::u16string text(bytes.size() / 2, u'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * 2);
  return Utf8FromUtf16(text);
}

std::string ShortText(SBValue value) {
  const std::uint64_t address = value.GetLoadAddress();
  const std::string length = Read(value, address, 1);
  return length.empty() ? "" : Read(value, address + 1, static_cast<unsigned char>(length[0]));
}

// Where the elements of a dynamic array stand, and how many there are.
struct TElements {
  std::uint64_t Data = 0;
  std::int64_t Count = 0;
};
TElements Dynamic(SBValue value) {
  TElements elements{ReadPointer(value, value.GetLoadAddress())};
  if (elements.Data == 0) return elements;
  elements.Count = CountBefore(value, elements.Data) + 1;
  if (elements.Count < 0 || elements.Count > MostReadable)
    throw EDebugError("no elements: it was not set yet");
  return elements;
}

SBValue ElementAt(SBValue value, const TElements& elements, std::int64_t index) {
  SBType type = value.GetType().GetCanonicalType().GetArrayElementType();
  const std::uint64_t address =
      elements.Data + static_cast<std::uint64_t>(index) * type.GetByteSize();
  SBTarget target = value.GetTarget();
  return target.CreateValueFromAddress(fmt::format("[{}]", index).c_str(),
                                       SBAddress(address, target), type);
}

TVariable Shown(SBValue value, int depth);

void AddParts(SBValue value, TVariable& shown, int depth) {
  const auto count = std::min<std::int64_t>(value.GetNumChildren(), MostElements);
  for (std::uint32_t i = 0; i < count; ++i)
    shown.Parts.push_back(Shown(value.GetChildAtIndex(i), depth));
}

void ShowDynamic(SBValue value, TVariable& shown, int depth) {
  const TElements elements = Dynamic(value);
  shown.Type = fmt::format(
      "array of {}", Text(value.GetType().GetCanonicalType().GetArrayElementType().GetName()));
  shown.Value = elements.Count == 1 ? "1 element" : fmt::format("{} elements", elements.Count);
  for (std::int64_t i = 0; depth > 0 && i < std::min(elements.Count, MostElements); ++i)
    shown.Parts.push_back(Shown(ElementAt(value, elements, i), depth - 1));
}

void ShowPointer(SBValue value, TVariable& shown, int depth) {
  const std::uint64_t target = value.GetValueAsUnsigned();
  shown.Value = target == 0 ? "nil" : fmt::format("${:X}", target);
  if (target != 0 && depth > 0) AddParts(value, shown, depth - 1);
}

void ShowPlain(SBValue value, TVariable& shown) {
  shown.Value = Text(value.GetValue());
  const BasicType basic = value.GetType().GetCanonicalType().GetBasicType();
  if (basic == eBasicTypeBool) shown.Value = value.GetValueAsUnsigned() != 0 ? "True" : "False";
  if (UpperCase(shown.Type).find("CHAR") != std::string::npos)
    shown.Value = PascalQuoted(std::string(1, static_cast<char>(value.GetValueAsUnsigned())));
  else if (basic == eBasicTypeUnsignedChar)
    shown.Value = std::to_string(value.GetValueAsUnsigned());
}

void ShowShape(SBValue value, TVariable& shown, int depth) {
  switch (ShapeOf(value)) {
    case TShape::LongText:
      shown.Value = PascalQuoted(LongText(value));
      break;
    case TShape::WideText:
      shown.Value = PascalQuoted(WideText(value));
      break;
    case TShape::ShortText:
      shown.Type = "ShortString";
      shown.Value = PascalQuoted(ShortText(value));
      break;
    case TShape::Dynamic:
      ShowDynamic(value, shown, depth);
      break;
    case TShape::Pointer:
      ShowPointer(value, shown, depth);
      break;
    case TShape::Record:
    case TShape::Fixed:
      if (depth > 0) AddParts(value, shown, depth - 1);
      break;
    case TShape::Plain:
      ShowPlain(value, shown);
      break;
  }
}

SBValue Behind(SBValue value) {
  return value.GetType().IsReferenceType() ? value.Dereference() : value;
}

TVariable Shown(SBValue given, int depth) {
  SBValue value = Behind(given);
  TVariable shown;
  shown.Name = Text(given.GetName());
  shown.Type = Text(value.GetType().GetName());
  try {
    ShowShape(value, shown, depth);
  } catch (const EDebugError& error) {
    shown.Value = error.what();
  }
  return shown;
}

TPascalValue ValueOf(SBValue value);

class TLldbPascalObject final : public IPascalObject {
 public:
  explicit TLldbPascalObject(SBValue value) : FValue(value) {}

  TPascalValue Field(const std::string& name) override {
    if (ShapeOf(FValue) == TShape::Pointer && FValue.GetValueAsUnsigned() == 0)
      throw EDebugError(fmt::format("{} is nil", Text(FValue.GetName())));
    SBValue found = FindField(FValue, name);
    if (!found.IsValid()) throw EDebugError(fmt::format("There is no field {}", name));
    return ValueOf(found);
  }
  TPascalValue Target() override {
    SBValue target = FValue.Dereference();
    if (ShapeOf(FValue) != TShape::Pointer || FValue.GetValueAsUnsigned() == 0)
      throw EDebugError(fmt::format("{} points nowhere", Text(FValue.GetName())));
    return ValueOf(target);
  }
  TPascalValue Element(std::int64_t index) override {
    const TShape shape = ShapeOf(FValue);
    if (shape == TShape::Dynamic) {
      const TElements elements = Dynamic(FValue);
      if (index < 0 || index >= elements.Count)
        throw EDebugError(fmt::format("The array has the elements 0 to {}", elements.Count - 1));
      return ValueOf(ElementAt(FValue, elements, index));
    }
    if (shape == TShape::Pointer)
      return ValueOf(
          FValue.GetChildAtIndex(static_cast<std::uint32_t>(index), eNoDynamicValues, true));
    // The library does not tell where the indexes of an array begin.
    throw EDebugError(fmt::format("The first index of {} is not known; its elements stand below it",
                                  Text(FValue.GetName())));
  }
  std::uint64_t Address() override { return FValue.GetLoadAddress(); }
  TVariable Show() override { return Shown(FValue, ShownDepth); }

  static SBValue FindField(SBValue value, const std::string& name) {
    for (std::uint32_t i = 0; i < value.GetNumChildren(); ++i) {
      SBValue child = value.GetChildAtIndex(i);
      if (EqualText(Text(child.GetName()), name)) return child;
    }
    // The ancestor's part is the first child.
    SBValue first = value.GetChildAtIndex(0);
    SBType type = value.GetType().GetCanonicalType();
    if (type.IsPointerType()) type = type.GetPointeeType().GetCanonicalType();
    if (type.GetNumberOfDirectBaseClasses() > 0) return FindField(first, name);
    return {};
  }

 private:
  SBValue FValue;
};

TPascalValue ValueOf(SBValue given) {
  SBValue value = Behind(given);
  TPascalValue result;
  result.Object = std::make_shared<TLldbPascalObject>(value);
  const BasicType basic = value.GetType().GetCanonicalType().GetBasicType();
  const TShape shape = ShapeOf(value);
  if (shape == TShape::LongText || shape == TShape::WideText || shape == TShape::ShortText) {
    result.Kind = TPascalValue::Text;
    result.String = shape == TShape::LongText   ? LongText(value)
                    : shape == TShape::WideText ? WideText(value)
                                                : ShortText(value);
  } else if (shape == TShape::Pointer) {
    result.Kind = TPascalValue::Pointer;
    result.Number = static_cast<std::int64_t>(value.GetValueAsUnsigned());
  } else if (shape == TShape::Plain) {
    const bool real =
        basic == eBasicTypeFloat || basic == eBasicTypeDouble || basic == eBasicTypeLongDouble;
    result.Kind = real ? TPascalValue::Real : TPascalValue::Integer;
    if (real) result.Float = std::strtod(Text(value.GetValue()).c_str(), nullptr);
    else result.Number = value.GetValueAsSigned();
    if (basic == eBasicTypeBool) result.Kind = TPascalValue::Boolean;
    if (UpperCase(Text(value.GetType().GetName())).find("CHAR") != std::string::npos) {
      result.Kind = TPascalValue::Character;
      result.Number = static_cast<std::int64_t>(value.GetValueAsUnsigned());
    }
  }
  return result;
}

// A pattern that matches the name in any case.
std::string AnyCase(const std::string& name) {
  std::string pattern = "^";
  for (const char c : name)
    pattern += fmt::format("[{}{}]", LowerCase(std::string(1, c)), UpperCase(std::string(1, c)));
  return pattern + "$";
}

}  // namespace

bool IsPascal(SBFrame frame) {
  return frame.GetCompileUnit().IsValid() &&
         frame.GetCompileUnit().GetLanguage() == eLanguageTypePascal83;
}

std::optional<TPascalValue> TLldbPascalScope::Find(const std::string& name) {
  SBValueList values = FFrame.GetVariables(true, true, true, true);
  SBValue self;
  for (std::uint32_t i = 0; i < values.GetSize(); ++i) {
    SBValue value = values.GetValueAtIndex(i);
    if (EqualText(Text(value.GetName()), name)) return ValueOf(value);
    if (EqualText(Text(value.GetName()), "self")) self = Behind(value);
  }
  if (self.IsValid()) {
    SBValue field = TLldbPascalObject::FindField(self, name);
    if (field.IsValid()) return ValueOf(field);
  }
  SBTarget target = FFrame.GetThread().GetProcess().GetTarget();
  SBValueList found = target.FindGlobalVariables(AnyCase(name).c_str(), 1, eMatchTypeRegex);
  if (found.GetSize() == 0) return std::nullopt;
  return ValueOf(found.GetValueAtIndex(0));
}

TVariable ShowPascalVariable(SBValue value) {
  return Shown(value, ShownDepth);
}

}  // namespace wrenfold
