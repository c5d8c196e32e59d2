#include "storage/rkDataProps.h"

#include "locale/rkLocale.h"

namespace wrenfold {

namespace {

[[noreturn]] void RaiseUnsupported() {
  throw EDataHandlingError(LocaleStr(sUnsupportedType));
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

// In the language in force; the reasons are in the order of their enumeration.
std::string MessageOf(const EPropertyValueError& error) {
  static constexpr int texts[] = {sUnsupportedType, sUnacceptableValue, sUnacceptableColor,
                                  sIncorrectSet};
  const int text = texts[error.Reason];
  return error.Reason == EPropertyValueError::NoSuchForm ? LocaleStr(text)
                                                         : LocaleFormat(text, error.Value);
}

template <class Call>
auto Localized(const Call& call) {
  try {
    return call();
  } catch (const EPropertyValueError& error) {
    throw EDataHandlingError(MessageOf(error));
  }
}

// Calls a function of the property's kind, which may lack it.
template <class Function, class... Arguments>
auto Called(Function function, Arguments&&... arguments) {
  if (function == nullptr) RaiseUnsupported();
  return Localized([&] { return function(std::forward<Arguments>(arguments)...); });
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
  return Called(RowOf(property).ToText, instance, property);
}

std::string GetPropAsText(const TPersistent& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo) {
  const TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  return GetPropAsText(*owner, property);
}

void SetPropByText(TPersistent& instance, const TPropInfo& property, std::string_view text) {
  Called(RowOf(property).FromText, instance, property, text);
}

void SetPropByText(TPersistent& instance, std::string_view path, std::string_view text,
                   const TGetTypeInfo& getTypeInfo) {
  TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  SetPropByText(*owner, property, text);
}

void GetPropAsPtr(const TPersistent& instance, const TPropInfo& property, TRawValue& value) {
  value = Called(RowOf(property).ToRaw, instance, property);
}

void GetPropAsPtr(const TPersistent& instance, std::string_view path, TRawValue& value,
                  const TGetTypeInfo& getTypeInfo) {
  const TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  GetPropAsPtr(*owner, property, value);
}

void SetPropByPtr(TPersistent& instance, const TPropInfo& property, const TRawValue& value) {
  Called(RowOf(property).FromRaw, instance, property, value);
}

void SetPropByPtr(TPersistent& instance, std::string_view path, const TRawValue& value,
                  const TGetTypeInfo& getTypeInfo) {
  TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  SetPropByPtr(*owner, property, value);
}

TVariant GetPropAsVariant(const TPersistent& instance, const TPropInfo& property) {
  return Called(RowOf(property).ToVariant, instance, property);
}

TVariant GetPropAsVariant(const TPersistent& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo) {
  const TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  return GetPropAsVariant(*owner, property);
}

void SetPropByVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  Called(RowOf(property).FromVariant, instance, property, value);
}

void SetPropByVariant(TPersistent& instance, std::string_view path, const TVariant& value,
                      const TGetTypeInfo& getTypeInfo) {
  TPersistent* owner = &instance;
  const TPropInfo& property = NeedPath(owner, path, getTypeInfo);
  SetPropByVariant(*owner, property, value);
}

std::string EnumToStr(const TTypeInfo& enumeration, std::int32_t value) {
  return Localized([&] { return EnumText(enumeration, value); });
}

std::int32_t StrToEnum(const TTypeInfo& enumeration, std::string_view text) {
  return Localized([&] { return EnumOfText(enumeration, text); });
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
  return Localized([&] { return SetText(set, value); });
}

std::uint32_t StrToSet(const TTypeInfo& set, std::string_view text) {
  return Localized([&] { return SetOfText(set, text); });
}

}  // namespace wrenfold
