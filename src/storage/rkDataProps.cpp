#include "storage/rkDataProps.h"

#include "locale/rkLocale.h"
#include "platform/core/text/Identifiers.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

[[noreturn]] void RaiseUnsupported() {
  throw EDataHandlingError(LocaleStr(sUnsupportedType));
}

[[noreturn]] void RaiseUnacceptable(std::string_view value) {
  throw EDataHandlingError(LocaleFormat(sUnacceptableValue, value));
}

const TPropInfo* PropertyOf(const TPersistent& instance, std::string_view name,
                            const TGetTypeInfo& getTypeInfo) {
  const TTypeInfo* info = getTypeInfo ? getTypeInfo(instance) : &instance.GetClassInfo();
  return info != nullptr ? info->FindProperty(name) : nullptr;
}

template <class Instance>
const TPropInfo* ResolvePath(Instance*& instance, std::string_view path,
                             const TGetTypeInfo& getTypeInfo) {
  Instance* current = instance;
  for (auto dot = path.find('.'); dot != path.npos; dot = path.find('.')) {
    if (current == nullptr) return nullptr;
    const TPropInfo* step = PropertyOf(*current, path.substr(0, dot), getTypeInfo);
    if (step == nullptr || step->Kind() != tkClass) return nullptr;
    current = step->Access->GetObject(*current);
    path.remove_prefix(dot + 1);
  }
  if (current == nullptr) return nullptr;
  const TPropInfo* property = PropertyOf(*current, path, getTypeInfo);
  if (property != nullptr) instance = current;
  return property;
}

template <class Instance>
const TPropInfo& NeedPath(Instance*& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo) {
  const TPropInfo* property = ResolvePath(instance, path, getTypeInfo);
  if (property == nullptr) throw EDataHandlingError(LocaleFormat(sPropertyNotFound, path));
  return *property;
}

bool IsType(const TPropInfo& property, std::string_view typeName) {
  return EqualText(property.PropType->Name(), typeName);
}

bool IsDateType(const TPropInfo& property) {
  return IsType(property, "TDateTime") || IsType(property, "TDate");
}

std::string IntegerToText(const TPropInfo& property, std::int32_t value) {
  if (IsType(property, "Cardinal")) return IntToStr(static_cast<std::uint32_t>(value));
  if (!IsType(property, "TColor")) return IntToStr(value);
  std::string name;
  return ColorToIdent(value, name) ? name : std::string();
}

std::int32_t TextToInteger(const TPropInfo& property, std::string_view text) {
  if (!IsType(property, "TColor")) {
    const TValueRange& range = property.Range();
    const bool isSigned = range.High <= INT32_MAX;
    const std::int64_t value = isSigned ? StrToInt(text) : StrToInt64(text);
    if (!range.Contains(value)) RaiseUnacceptable(text);
    return static_cast<std::int32_t>(value);
  }
  TColor color;
  if (!IdentToColor(text, color)) throw EDataHandlingError(LocaleFormat(sUnacceptableColor, text));
  return color;
}

std::string FloatToText(const TPropInfo& property, double value) {
  if (IsDateType(property)) return DateTimeToStr(value);
  return IsType(property, "TTime") ? TimeToStr(value) : FloatToStr(value);
}

double TextToFloat(const TPropInfo& property, std::string_view text) {
  if (IsDateType(property)) return StrToDateTime(text);
  return IsType(property, "TTime") ? StrToTime(text).Value : StrToFloat(text);
}

const TTypeInfo& ElementOf(const TTypeInfo& set) {
  if (set.ElementType() == nullptr) RaiseUnsupported();
  return *set.ElementType();
}

bool IsBoolean(const TPropInfo& property) {
  return property.PropType == &TypeInfoOf<bool>();
}

template <class Wanted>
const Wanted& Alternative(const TRawValue& value) {
  const Wanted* wanted = std::get_if<Wanted>(&value);
  if (wanted == nullptr) RaiseUnsupported();
  return *wanted;
}

// A number in a variant, for properties that take one; false for a text and for nothing.
bool NumberOf(const TVariant& value, double& number) {
  if (const auto* flag = std::get_if<bool>(&value)) number = *flag ? 1 : 0;
  else if (const auto* small = std::get_if<std::int32_t>(&value)) number = *small;
  else if (const auto* real = std::get_if<double>(&value)) number = *real;
  else return false;
  return true;
}

// What an ordinal property accepts as a number.
std::int32_t CheckedOrdinal(const TPropInfo& property, double number) {
  const TValueRange& range = property.Range();
  if (!(number >= static_cast<double>(range.Low) && number <= static_cast<double>(range.High)))
    RaiseUnacceptable(FloatToStr(number));
  return static_cast<std::int32_t>(static_cast<std::int64_t>(number));
}

}  // namespace

const TPropInfo* FindPropInfo(TPersistent*& instance, std::string_view path,
                              const TGetTypeInfo& getTypeInfo) {
  return ResolvePath(instance, path, getTypeInfo);
}

const TPropInfo* FindPropInfo(const TPersistent*& instance, std::string_view path,
                              const TGetTypeInfo& getTypeInfo) {
  return ResolvePath(instance, path, getTypeInfo);
}

std::string GetPropAsText(const TPersistent& instance, const TPropInfo& property) {
  const TPropAccess& access = *property.Access;
  switch (property.Kind()) {
    case tkInteger:
      return IntegerToText(property, access.GetOrd(instance));
    case tkChar:
      return std::string(1, static_cast<char>(access.GetOrd(instance)));
    case tkEnumeration:
      return EnumToStr(*property.PropType, access.GetOrd(instance));
    case tkFloat:
      return FloatToText(property, access.GetFloat(instance));
    case tkString:
    case tkLString:
    case tkWString:
      return access.GetStr(instance);
    case tkSet:
      return SetToStr(*property.PropType, static_cast<std::uint32_t>(access.GetOrd(instance)));
    default:
      RaiseUnsupported();
  }
}

std::string GetPropAsText(const TPersistent& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo) {
  const TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  return GetPropAsText(*owner, property);
}

void SetPropByText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  const TPropAccess& access = *property.Access;
  switch (property.Kind()) {
    case tkInteger:
      return access.SetOrd(instance, TextToInteger(property, text));
    case tkChar:
      return access.SetOrd(instance, text.empty() ? 0 : static_cast<unsigned char>(text[0]));
    case tkEnumeration:
      return access.SetOrd(instance, StrToEnum(*property.PropType, text));
    case tkFloat:
      return access.SetFloat(instance, TextToFloat(property, text));
    case tkString:
    case tkLString:
    case tkWString:
      return access.SetStr(instance, text);
    case tkSet:
      return access.SetOrd(instance, static_cast<std::int32_t>(StrToSet(*property.PropType, text)));
    default:
      RaiseUnsupported();
  }
}

void SetPropByText(TPersistent& instance, std::string_view path, std::string_view text,
                   const TGetTypeInfo& getTypeInfo) {
  TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  SetPropByText(*owner, property, text);
}

void GetPropAsPtr(const TPersistent& instance, const TPropInfo& property, TRawValue& value) {
  const TPropAccess& access = *property.Access;
  switch (property.Kind()) {
    case tkInteger:
    case tkChar:
    case tkEnumeration:
    case tkSet:
      value = access.GetOrd(instance);
      return;
    case tkClass:
      value = access.GetObject(instance);
      return;
    case tkFloat:
      value = access.GetFloat(instance);
      return;
    case tkString:
    case tkLString:
    case tkWString:
      value = access.GetStr(instance);
      return;
    default:
      RaiseUnsupported();
  }
}

void GetPropAsPtr(const TPersistent& instance, std::string_view path, TRawValue& value,
                  const TGetTypeInfo& getTypeInfo) {
  const TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  GetPropAsPtr(*owner, property, value);
}

void SetPropByPtr(TPersistent& instance, const TPropInfo& property, const TRawValue& value) {
  const TPropAccess& access = *property.Access;
  switch (property.Kind()) {
    case tkInteger:
    case tkChar:
    case tkEnumeration:
    case tkSet:
      return access.SetOrd(instance, Alternative<std::int32_t>(value));
    case tkClass:
      return access.SetObject(instance, Alternative<TPersistent*>(value));
    case tkFloat:
      return access.SetFloat(instance, Alternative<double>(value));
    case tkString:
    case tkLString:
    case tkWString:
      return access.SetStr(instance, Alternative<std::string>(value));
    default:
      RaiseUnsupported();
  }
}

void SetPropByPtr(TPersistent& instance, std::string_view path, const TRawValue& value,
                  const TGetTypeInfo& getTypeInfo) {
  TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  SetPropByPtr(*owner, property, value);
}

TVariant GetPropAsVariant(const TPersistent& instance, const TPropInfo& property) {
  const TPropAccess& access = *property.Access;
  switch (property.Kind()) {
    case tkInteger:
      if (IsType(property, "Cardinal"))
        return std::int64_t{static_cast<std::uint32_t>(access.GetOrd(instance))};
      return access.GetOrd(instance);
    case tkFloat:
      return access.GetFloat(instance);
    case tkInt64:
      return access.GetInt64(instance);
    case tkVariant:
      return access.GetVariant(instance);
    case tkEnumeration:
      if (IsBoolean(property)) return access.GetOrd(instance) != 0;
      return GetPropAsText(instance, property);
    default:
      return GetPropAsText(instance, property);
  }
}

TVariant GetPropAsVariant(const TPersistent& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo) {
  const TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  return GetPropAsVariant(*owner, property);
}

void SetPropByVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  const TPropAccess& access = *property.Access;
  if (property.Kind() == tkVariant) return access.SetVariant(instance, value);
  if (const auto* text = std::get_if<std::string>(&value)) {
    if (property.Kind() == tkInt64) return access.SetInt64(instance, StrToInt64(*text));
    return SetPropByText(instance, property, *text);
  }
  const auto* large = std::get_if<std::int64_t>(&value);
  if (large != nullptr && property.Kind() == tkInt64) return access.SetInt64(instance, *large);
  double number = large != nullptr ? static_cast<double>(*large) : 0;
  if (large == nullptr && !NumberOf(value, number)) RaiseUnsupported();
  switch (property.Kind()) {
    case tkInteger:
    case tkEnumeration:
    case tkSet:
      return access.SetOrd(instance, CheckedOrdinal(property, number));
    case tkFloat:
      return access.SetFloat(instance, number);
    case tkInt64:
      if (!(number >= -0x1p63 && number < 0x1p63)) RaiseUnacceptable(FloatToStr(number));
      return access.SetInt64(instance, static_cast<std::int64_t>(number));
    case tkString:
    case tkLString:
    case tkWString:
      return access.SetStr(instance, FloatToStr(number));
    default:
      RaiseUnsupported();
  }
}

void SetPropByVariant(TPersistent& instance, std::string_view path, const TVariant& value,
                      const TGetTypeInfo& getTypeInfo) {
  TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  SetPropByVariant(*owner, property, value);
}

std::string EnumToStr(const TTypeInfo& enumeration, std::int32_t value) {
  const auto& names = enumeration.EnumNames();
  if (value < 0 || value >= static_cast<std::int32_t>(names.size()))
    RaiseUnacceptable(IntToStr(value));
  return names[static_cast<std::size_t>(value)];
}

std::int32_t StrToEnum(const TTypeInfo& enumeration, std::string_view text) {
  const auto value = enumeration.FindEnumValue(text);
  if (!value) RaiseUnacceptable(text);
  return *value;
}

void FillEnumNames(const TTypeInfo& enumeration, TStrings& names) {
  if (enumeration.Kind() != tkEnumeration) RaiseUnsupported();
  const TUpdate update(names);
  names.Clear();
  const TValueRange& range = enumeration.Range();
  for (std::int64_t value = range.Low; value <= range.High; ++value)
    names.Add(enumeration.EnumNames()[static_cast<std::size_t>(value)]);
}

bool ContainsIn(const TTypeInfo& enumeration, std::string_view name) {
  return enumeration.FindEnumValue(name).has_value();
}

std::string SetToStr(const TTypeInfo& set, std::uint32_t value) {
  const TTypeInfo& element = ElementOf(set);
  std::string text = "[";
  for (int ordinal = 0; ordinal < 32; ++ordinal) {
    if ((value >> ordinal & 1) == 0) continue;
    if (text.size() > 1) text += ',';
    text += EnumToStr(element, ordinal);
  }
  return text + ']';
}

std::uint32_t StrToSet(const TTypeInfo& set, std::string_view text) {
  const TTypeInfo& element = ElementOf(set);
  const auto bracket = text.find('[');
  if (bracket == text.npos) throw EDataHandlingError(LocaleFormat(sIncorrectSet, text));
  std::uint32_t bits = 0;
  for (std::size_t start = bracket + 1;;) {
    const auto stop = text.find_first_of(",]", start);
    if (stop == text.npos) {
      if (bits == 0 && text.back() != ']')
        throw EDataHandlingError(LocaleFormat(sIncorrectSet, text));
      return bits;
    }
    const std::string_view name = Trim(text.substr(start, stop - start));
    const std::int32_t value = name.empty() ? 32 : StrToEnum(element, name);
    if (value < 32) bits |= std::uint32_t{1} << value;
    start = stop + 1;
  }
}

}  // namespace wrenfold
