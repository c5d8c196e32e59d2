#include "platform/core/stream/PropKinds.h"

#include "platform/core/stream/Reader.h"
#include "platform/core/stream/Writer.h"
#include "platform/core/text/SysUtils.h"
#include "platform/core/text/Unicode.h"

namespace wrenfold {
namespace {

using TReason = EPropertyValueError::TReason;

std::string MessageOf(TReason reason, std::string_view value) {
  static constexpr const char* texts[] = {
      "The property has no such form", " is no value of the type", " is no colour", " is no set"};
  return std::string(value) + texts[reason];
}

[[noreturn]] void RaiseNoForm() {
  throw EPropertyValueError(TReason::NoSuchForm, "");
}
[[noreturn]] void RaiseNoValue(std::string_view value) {
  throw EPropertyValueError(TReason::NoValue, value);
}

// A simple property is its name and its value.
template <void (*WriteValue)(TWriter&, const TPersistent&, const TPropInfo&)>
void Write(TWriter& writer, TPersistent& instance, const TPropInfo& property) {
  writer.WritePropName(property.Name);
  WriteValue(writer, instance, property);
}

// Ordinals.

bool IsDefaultOrdinal(const TPersistent& instance, const TPropInfo& property) {
  return property.Default && property.Access->GetOrd(instance) == *property.Default;
}

TRawValue RawOrdinal(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetOrd(instance);
}

template <class Wanted>
const Wanted& Alternative(const TRawValue& value) {
  const Wanted* wanted = std::get_if<Wanted>(&value);
  if (wanted == nullptr) RaiseNoForm();
  return *wanted;
}

void OrdinalFromRaw(TPersistent& instance, const TPropInfo& property, const TRawValue& value) {
  property.Access->SetOrd(instance, Alternative<std::int32_t>(value));
}

TVariant TextVariant(const TPersistent& instance, const TPropInfo& property) {
  return RowOf(property).ToText(instance, property);
}

// A number in a variant; a text is read as such, nothing has no form.
double NumberOf(const TVariant& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
  if (const auto* small = std::get_if<std::int32_t>(&value)) return *small;
  if (const auto* large = std::get_if<std::int64_t>(&value)) return static_cast<double>(*large);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  RaiseNoForm();
}

void OrdinalFromVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  if (const auto* text = std::get_if<std::string>(&value))
    return RowOf(property).FromText(instance, property, *text);
  const double number = NumberOf(value);
  const TValueRange& range = property.Range();
  if (!(number >= static_cast<double>(range.Low) && number <= static_cast<double>(range.High)))
    RaiseNoValue(FloatToStr(number));
  property.Access->SetOrd(instance, static_cast<std::int32_t>(static_cast<std::int64_t>(number)));
}

// Integers, and those whose numbers have names.

const TIdentMap* NamesOf(const TPropInfo& property) {
  const auto identifiers = RowOf(property).Identifiers;
  return identifiers != nullptr ? identifiers() : nullptr;
}

void ReadNumber(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  const TTypeInfo& type = *property.PropType;
  const TIdentMap* names = NamesOf(property);
  if (reader.NextValue() != TValueType::vaIdent) {
    const std::int64_t number = reader.ReadInt64();
    // A colour may stand without its sign.
    const bool isUnsigned = names != nullptr && number >= 0 && number <= UINT32_MAX;
    if (!type.Range().Contains(number) && !isUnsigned)
      detail::RaiseOutOfRange(number, type, type.Range());
    return property.Access->SetOrd(instance, static_cast<std::int32_t>(number));
  }
  const std::string name = reader.ReadIdent();
  std::int32_t value = 0;
  if (names == nullptr || !names->IdentToInt(name, value))
    throw EReadError(name + " is no value of " + type.Name());
  property.Access->SetOrd(instance, value);
}

void WriteNumber(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  const std::int32_t value = property.Access->GetOrd(instance);
  const TIdentMap* names = NamesOf(property);
  std::string name;
  if (names != nullptr && names->IntToIdent(value, name)) writer.WriteIdent(name);
  else writer.WriteInteger(property.PropType->Range().NumberOf(value));
}

std::int64_t NumberIn(const TPersistent& instance, const TPropInfo& property) {
  return property.PropType->Range().NumberOf(property.Access->GetOrd(instance));
}

std::string NumberText(const TPersistent& instance, const TPropInfo& property) {
  return IntToStr(NumberIn(instance, property));
}

void NumberFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  const TValueRange& range = property.Range();
  // Hexadecimal texts of a signed type may set the highest bit.
  const std::int64_t number = range.High <= INT32_MAX ? StrToInt(text) : StrToInt64(text);
  if (!range.Contains(number)) RaiseNoValue(text);
  property.Access->SetOrd(instance, static_cast<std::int32_t>(number));
}

TVariant NumberVariant(const TPersistent& instance, const TPropInfo& property) {
  if (property.PropType->Range().High > INT32_MAX) return NumberIn(instance, property);
  return property.Access->GetOrd(instance);
}

std::string ColorText(const TPersistent& instance, const TPropInfo& property) {
  std::string name;
  return ColorToIdent(property.Access->GetOrd(instance), name) ? name : std::string();
}

void ColorFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  TColor color;
  if (!IdentToColor(text, color)) throw EPropertyValueError(TReason::NoColor, text);
  property.Access->SetOrd(instance, color);
}

const TIdentMap* ColorNames() {
  return &ColorMap();
}
const TIdentMap* CursorNames() {
  return &CursorMap();
}
const TIdentMap* CharsetNames() {
  return &CharsetMap();
}

// Characters.

void ReadCharacter(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  property.Access->SetOrd(instance, static_cast<unsigned char>(reader.ReadChar()));
}

void WriteCharacter(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteChar(static_cast<char>(property.Access->GetOrd(instance)));
}

std::string CharacterText(const TPersistent& instance, const TPropInfo& property) {
  return std::string(1, static_cast<char>(property.Access->GetOrd(instance)));
}

void CharacterFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  property.Access->SetOrd(instance, text.empty() ? 0 : static_cast<unsigned char>(text[0]));
}

void CharacterFromVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) RaiseNoForm();
  CharacterFromText(instance, property, *text);
}

void ReadWideCharacter(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  const std::u16string text = Utf16FromUtf8(reader.ReadString());
  property.Access->SetOrd(instance, text.empty() ? 0 : text[0]);
}

void WriteWideCharacter(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  const auto character = static_cast<char16_t>(property.Access->GetOrd(instance));
  writer.WriteWideString(Utf8FromUtf16(std::u16string(1, character)));
}

// Enumerations and sets.

void ReadEnumeration(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  const std::string name = reader.ReadIdent();
  const auto value = property.PropType->FindEnumValue(name);
  if (!value) throw EReadError(name + " is no value of " + property.PropType->Name());
  property.Access->SetOrd(instance, *value);
}

void WriteEnumeration(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  const std::int32_t value = property.Access->GetOrd(instance);
  const auto& names = property.PropType->EnumNames();
  if (value < 0 || value >= static_cast<int>(names.size()))
    throw EWriteError(std::to_string(value) + " is no value of " + property.PropType->Name());
  writer.WriteIdent(names[static_cast<std::size_t>(value)]);
}

std::string EnumerationText(const TPersistent& instance, const TPropInfo& property) {
  return EnumText(*property.PropType, property.Access->GetOrd(instance));
}

void EnumerationFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  property.Access->SetOrd(instance, EnumOfText(*property.PropType, text));
}

TVariant BooleanVariant(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetOrd(instance) != 0;
}

const TTypeInfo& ElementOf(const TTypeInfo& set) {
  if (set.ElementType() == nullptr) RaiseNoForm();
  return *set.ElementType();
}

void ReadSet(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  const std::uint32_t bits = reader.ReadSet(*property.PropType->ElementType());
  property.Access->SetOrd(instance, static_cast<std::int32_t>(bits));
}

void WriteSet(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteSet(static_cast<std::uint32_t>(property.Access->GetOrd(instance)),
                  *property.PropType->ElementType());
}

std::string SetOfProperty(const TPersistent& instance, const TPropInfo& property) {
  return SetText(*property.PropType, static_cast<std::uint32_t>(property.Access->GetOrd(instance)));
}

void SetFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  property.Access->SetOrd(instance, static_cast<std::int32_t>(SetOfText(*property.PropType, text)));
}

// Floats.

void ReadFloat(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  property.Access->SetFloat(instance, reader.ReadFloat());
}

void WriteFloat(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteFloat(property.Access->GetFloat(instance));
}

bool IsZeroFloat(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetFloat(instance) == 0;
}

template <std::string (*Convert)(double)>
std::string FloatText(const TPersistent& instance, const TPropInfo& property) {
  return Convert(property.Access->GetFloat(instance));
}

template <double (*Convert)(std::string_view)>
void FloatFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  property.Access->SetFloat(instance, Convert(text));
}

std::string PlainText(double value) {
  return FloatToStr(value);
}
double PlainFloat(std::string_view text) {
  return StrToFloat(text);
}
std::string DateTimeText(double value) {
  return DateTimeToStr(value);
}
double DateTimeOf(std::string_view text) {
  return StrToDateTime(text);
}
std::string TimeText(double value) {
  return TimeToStr(value);
}
double TimeOf(std::string_view text) {
  return StrToTime(text);
}

TVariant FloatVariant(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetFloat(instance);
}

void FloatFromVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  if (const auto* text = std::get_if<std::string>(&value))
    return RowOf(property).FromText(instance, property, *text);
  property.Access->SetFloat(instance, NumberOf(value));
}

TRawValue RawFloat(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetFloat(instance);
}

void FloatFromRaw(TPersistent& instance, const TPropInfo& property, const TRawValue& value) {
  property.Access->SetFloat(instance, Alternative<double>(value));
}

// Texts.

void ReadText(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  property.Access->SetStr(instance, reader.ReadString());
}

void WriteText(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteString(property.Access->GetStr(instance));
}

void WriteWideText(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteWideString(property.Access->GetStr(instance));
}

bool IsEmptyText(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetStr(instance).empty();
}

std::string TextOfProperty(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetStr(instance);
}

void TextFromText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  property.Access->SetStr(instance, text);
}

void TextFromVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  const auto* text = std::get_if<std::string>(&value);
  property.Access->SetStr(instance, text != nullptr ? *text : FloatToStr(NumberOf(value)));
}

TRawValue RawText(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetStr(instance);
}

void TextFromRaw(TPersistent& instance, const TPropInfo& property, const TRawValue& value) {
  property.Access->SetStr(instance, Alternative<std::string>(value));
}

// 64-bit integers; the environment gives them no text of their own.

void ReadInt64(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  property.Access->SetInt64(instance, reader.ReadInt64());
}

void WriteInt64(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteInteger(property.Access->GetInt64(instance));
}

bool IsZeroInt64(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetInt64(instance) == 0;
}

TVariant Int64Variant(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetInt64(instance);
}

void Int64FromVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  if (const auto* text = std::get_if<std::string>(&value))
    return property.Access->SetInt64(instance, StrToInt64(*text));
  if (const auto* large = std::get_if<std::int64_t>(&value))
    return property.Access->SetInt64(instance, *large);
  const double number = NumberOf(value);
  if (!(number >= -0x1p63 && number < 0x1p63)) RaiseNoValue(FloatToStr(number));
  property.Access->SetInt64(instance, static_cast<std::int64_t>(number));
}

// Objects, events, variants.

void ReadObject(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  reader.ReadObjectValue(instance, property);
}

void WriteObject(TWriter& writer, TPersistent& instance, const TPropInfo& property) {
  if (TPersistent* value = property.Access->GetObject(instance))
    return writer.WriteObjectValue(property, *value);
  writer.WritePropName(property.Name);
  writer.WriteValue(TValueType::vaNil);
}

bool IsNoObject(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetObject(instance) == nullptr;
}

TRawValue RawObject(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetObject(instance);
}

void ObjectFromRaw(TPersistent& instance, const TPropInfo& property, const TRawValue& value) {
  property.Access->SetObject(instance, Alternative<TPersistent*>(value));
}

void ReadEvent(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  property.Access->SetMethod(instance, reader.ReadMethod());
}

// An event whose handler has no name is left out.
void WriteEvent(TWriter& writer, TPersistent& instance, const TPropInfo& property) {
  const TMethod method = property.Access->GetMethod(instance);
  const std::string name =
      writer.OnMethodName && method ? writer.OnMethodName(writer, method) : std::string();
  if (name.empty()) return;
  writer.WritePropName(property.Name);
  writer.WriteIdent(name);
}

bool IsNoEvent(const TPersistent& instance, const TPropInfo& property) {
  return !property.Access->GetMethod(instance);
}

void ReadVariant(TReader& reader, TPersistent& instance, const TPropInfo& property) {
  property.Access->SetVariant(instance, reader.ReadVariant());
}

void WriteVariant(TWriter& writer, const TPersistent& instance, const TPropInfo& property) {
  writer.WriteVariant(property.Access->GetVariant(instance));
}

TVariant VariantOf(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetVariant(instance);
}

void VariantFromVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  property.Access->SetVariant(instance, value);
}

bool IsNeverDefault(const TPersistent&, const TPropInfo&) {
  return false;
}

void ReadNothing(TReader&, TPersistent&, const TPropInfo& property) {
  throw EReadError("A property of type " + property.PropType->Name() + " cannot be stored");
}

void WriteNothing(TWriter&, TPersistent&, const TPropInfo& property) {
  throw EWriteError("A property of type " + property.PropType->Name() + " cannot be stored");
}

constexpr std::array<TPropKindRow, PropKindCount> Rows = {{
    {TPropKind::Unknown, ReadNothing, WriteNothing, IsNeverDefault},
    {TPropKind::Integer, ReadNumber, Write<WriteNumber>, IsDefaultOrdinal, NumberText,
     NumberFromText, NumberVariant, OrdinalFromVariant, RawOrdinal, OrdinalFromRaw},
    {TPropKind::Color, ReadNumber, Write<WriteNumber>, IsDefaultOrdinal, ColorText, ColorFromText,
     NumberVariant, OrdinalFromVariant, RawOrdinal, OrdinalFromRaw, ColorNames},
    {TPropKind::Cursor, ReadNumber, Write<WriteNumber>, IsDefaultOrdinal, NumberText,
     NumberFromText, NumberVariant, OrdinalFromVariant, RawOrdinal, OrdinalFromRaw, CursorNames},
    {TPropKind::Charset, ReadNumber, Write<WriteNumber>, IsDefaultOrdinal, NumberText,
     NumberFromText, NumberVariant, OrdinalFromVariant, RawOrdinal, OrdinalFromRaw, CharsetNames},
    {TPropKind::Char, ReadCharacter, Write<WriteCharacter>, IsDefaultOrdinal, CharacterText,
     CharacterFromText, TextVariant, CharacterFromVariant, RawOrdinal, OrdinalFromRaw},
    {TPropKind::WideChar, ReadWideCharacter, Write<WriteWideCharacter>, IsDefaultOrdinal},
    {TPropKind::Enumeration, ReadEnumeration, Write<WriteEnumeration>, IsDefaultOrdinal,
     EnumerationText, EnumerationFromText, TextVariant, OrdinalFromVariant, RawOrdinal,
     OrdinalFromRaw},
    {TPropKind::Boolean, ReadEnumeration, Write<WriteEnumeration>, IsDefaultOrdinal,
     EnumerationText, EnumerationFromText, BooleanVariant, OrdinalFromVariant, RawOrdinal,
     OrdinalFromRaw},
    {TPropKind::Set, ReadSet, Write<WriteSet>, IsDefaultOrdinal, SetOfProperty, SetFromText,
     TextVariant, OrdinalFromVariant, RawOrdinal, OrdinalFromRaw},
    {TPropKind::Float, ReadFloat, Write<WriteFloat>, IsZeroFloat, FloatText<PlainText>,
     FloatFromText<PlainFloat>, FloatVariant, FloatFromVariant, RawFloat, FloatFromRaw},
    {TPropKind::DateTime, ReadFloat, Write<WriteFloat>, IsZeroFloat, FloatText<DateTimeText>,
     FloatFromText<DateTimeOf>, FloatVariant, FloatFromVariant, RawFloat, FloatFromRaw},
    {TPropKind::Time, ReadFloat, Write<WriteFloat>, IsZeroFloat, FloatText<TimeText>,
     FloatFromText<TimeOf>, FloatVariant, FloatFromVariant, RawFloat, FloatFromRaw},
    {TPropKind::Text, ReadText, Write<WriteText>, IsEmptyText, TextOfProperty, TextFromText,
     TextVariant, TextFromVariant, RawText, TextFromRaw},
    {TPropKind::WideText, ReadText, Write<WriteWideText>, IsEmptyText, TextOfProperty, TextFromText,
     TextVariant, TextFromVariant, RawText, TextFromRaw},
    {TPropKind::Int64, ReadInt64, Write<WriteInt64>, IsZeroInt64, nullptr, nullptr, Int64Variant,
     Int64FromVariant},
    {TPropKind::Object, ReadObject, WriteObject, IsNoObject, nullptr, nullptr, nullptr, nullptr,
     RawObject, ObjectFromRaw},
    {TPropKind::Event, ReadEvent, WriteEvent, IsNoEvent},
    {TPropKind::Variant, ReadVariant, Write<WriteVariant>, IsNeverDefault, nullptr, nullptr,
     VariantOf, VariantFromVariant},
}};

// Each kind has its row, in its place.
constexpr bool IsComplete() {
  for (std::size_t i = 0; i < Rows.size(); ++i)
    if (Rows[i].Kind != static_cast<TPropKind>(i) || Rows[i].Read == nullptr) return false;
  return true;
}
static_assert(IsComplete());

}  // namespace

const std::array<TPropKindRow, PropKindCount> PropKinds = Rows;

EPropertyValueError::EPropertyValueError(TReason reason, std::string_view value)
    : Exception(MessageOf(reason, value)), Reason(reason), Value(value) {}

std::string EnumText(const TTypeInfo& enumeration, std::int32_t value) {
  const auto& names = enumeration.EnumNames();
  if (value < 0 || value >= static_cast<std::int32_t>(names.size())) RaiseNoValue(IntToStr(value));
  return names[static_cast<std::size_t>(value)];
}

std::int32_t EnumOfText(const TTypeInfo& enumeration, std::string_view text) {
  const auto value = enumeration.FindEnumValue(text);
  if (!value) RaiseNoValue(text);
  return *value;
}

std::string SetText(const TTypeInfo& set, std::uint32_t value) {
  const TTypeInfo& element = ElementOf(set);
  std::string text = "[";
  for (int ordinal = 0; ordinal < 32; ++ordinal) {
    if ((value >> ordinal & 1) == 0) continue;
    if (text.size() > 1) text += ',';
    text += EnumText(element, ordinal);
  }
  return text + ']';
}

std::uint32_t SetOfText(const TTypeInfo& set, std::string_view text) {
  const TTypeInfo& element = ElementOf(set);
  const auto bracket = text.find('[');
  if (bracket == text.npos) throw EPropertyValueError(TReason::NoSet, text);
  std::uint32_t bits = 0;
  for (std::size_t start = bracket + 1;;) {
    const auto stop = text.find_first_of(",]", start);
    if (stop == text.npos) {
      if (bits == 0 && text.back() != ']') throw EPropertyValueError(TReason::NoSet, text);
      return bits;
    }
    const std::string_view name = Trim(text.substr(start, stop - start));
    const std::int32_t value = name.empty() ? 32 : EnumOfText(element, name);
    if (value < 32) bits |= std::uint32_t{1} << value;
    start = stop + 1;
  }
}

}  // namespace wrenfold
