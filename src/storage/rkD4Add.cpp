#include "storage/rkD4Add.h"

#include "locale/rkLocale.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

[[noreturn]] void RaiseNoProperty(const std::string& className, std::string_view name) {
  throw EPropertyError("Property does not exist: " + className + '.' + std::string(name));
}

const TPropInfo& NeedProperty(const TPersistent& instance, std::string_view name) {
  const TPropInfo* property = instance.GetClassInfo().FindProperty(name);
  if (property == nullptr) RaiseNoProperty(instance.ClassName(), name);
  return *property;
}

// An enumeration's value, or one element of a set.
int ElementValue(const TTypeInfo& enumeration, std::string_view name) {
  const auto value = enumeration.FindEnumValue(name);
  if (!value) throw EPropertyConvertError(LocaleFormat(sInvalidPropertyElement, name));
  return *value;
}

const TTypeInfo& ElementType(const TPropInfo& property) {
  const TTypeInfo* element = property.PropType->ElementType();
  if (element == nullptr) RaiseNoProperty(property.PropType->Name(), property.Name);
  return *element;
}

std::string ValueName(const TTypeInfo& enumeration, std::int32_t value) {
  const auto& names = enumeration.EnumNames();
  if (value < 0 || value >= static_cast<std::int32_t>(names.size()))
    throw EPropertyConvertError(LocaleFormat(sInvalidPropertyElement, IntToStr(value)));
  return names[static_cast<std::size_t>(value)];
}

bool IsSeparator(char c) {
  return c == ' ' || c == ',';
}

std::uint32_t ParseElements(const TTypeInfo& element, std::string_view text) {
  if (text.starts_with('[')) text.remove_prefix(1);
  if (text.ends_with(']')) text.remove_suffix(1);
  std::uint32_t bits = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t start = position;
    while (position < text.size() && !IsSeparator(text[position])) ++position;
    if (position > start) {
      const int value = ElementValue(element, text.substr(start, position - start));
      if (value < 32) bits |= std::uint32_t{1} << value;
    }
    while (position < text.size() && IsSeparator(text[position])) ++position;
  }
  return bits;
}

}  // namespace

bool SameText(std::string_view left, std::string_view right) {
  return EqualText(left, right);
}

const TPropInfo* GetPropInfo(const TTypeInfo& typeInfo, std::string_view name, TTypeKinds kinds) {
  const TPropInfo* property = typeInfo.FindProperty(name);
  return property != nullptr && kinds.Contains(property->Kind()) ? property : nullptr;
}

const TPropInfo* GetPropInfo(const TPersistent& instance, std::string_view name, TTypeKinds kinds) {
  return GetPropInfo(instance.GetClassInfo(), name, kinds);
}

bool IsPublishedProp(const TTypeInfo& typeInfo, std::string_view name) {
  return typeInfo.FindProperty(name) != nullptr;
}

bool IsPublishedProp(const TPersistent& instance, std::string_view name) {
  return IsPublishedProp(instance.GetClassInfo(), name);
}

std::int32_t GetOrdProp(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetOrd(instance);
}

std::int32_t GetOrdProp(const TPersistent& instance, std::string_view name) {
  return GetOrdProp(instance, NeedProperty(instance, name));
}

void SetOrdProp(TPersistent& instance, const TPropInfo& property, std::int32_t value) {
  property.Access->SetOrd(instance, value);
}

void SetOrdProp(TPersistent& instance, std::string_view name, std::int32_t value) {
  SetOrdProp(instance, NeedProperty(instance, name), value);
}

std::string GetEnumProp(const TPersistent& instance, const TPropInfo& property) {
  return ValueName(*property.PropType, property.Access->GetOrd(instance));
}

std::string GetEnumProp(const TPersistent& instance, std::string_view name) {
  return GetEnumProp(instance, NeedProperty(instance, name));
}

void SetEnumProp(TPersistent& instance, const TPropInfo& property, std::string_view value) {
  property.Access->SetOrd(instance, ElementValue(*property.PropType, value));
}

void SetEnumProp(TPersistent& instance, std::string_view name, std::string_view value) {
  SetEnumProp(instance, NeedProperty(instance, name), value);
}

std::string GetSetProp(const TPersistent& instance, const TPropInfo& property, bool brackets) {
  const TTypeInfo& element = ElementType(property);
  const auto bits = static_cast<std::uint32_t>(property.Access->GetOrd(instance));
  std::string text;
  for (int value = 0; value < 32; ++value) {
    if ((bits >> value & 1) == 0) continue;
    if (!text.empty()) text += ',';
    text += ValueName(element, value);
  }
  return brackets ? '[' + text + ']' : text;
}

std::string GetSetProp(const TPersistent& instance, std::string_view name, bool brackets) {
  return GetSetProp(instance, NeedProperty(instance, name), brackets);
}

void SetSetProp(TPersistent& instance, const TPropInfo& property, std::string_view value) {
  const std::uint32_t bits = ParseElements(ElementType(property), value);
  property.Access->SetOrd(instance, static_cast<std::int32_t>(bits));
}

void SetSetProp(TPersistent& instance, std::string_view name, std::string_view value) {
  SetSetProp(instance, NeedProperty(instance, name), value);
}

std::string GetStrProp(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetStr(instance);
}

std::string GetStrProp(const TPersistent& instance, std::string_view name) {
  return GetStrProp(instance, NeedProperty(instance, name));
}

void SetStrProp(TPersistent& instance, const TPropInfo& property, std::string_view value) {
  property.Access->SetStr(instance, value);
}

void SetStrProp(TPersistent& instance, std::string_view name, std::string_view value) {
  SetStrProp(instance, NeedProperty(instance, name), value);
}

TVariant GetVariantProp(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetVariant(instance);
}

TVariant GetVariantProp(const TPersistent& instance, std::string_view name) {
  return GetVariantProp(instance, NeedProperty(instance, name));
}

void SetVariantProp(TPersistent& instance, const TPropInfo& property, const TVariant& value) {
  property.Access->SetVariant(instance, value);
}

void SetVariantProp(TPersistent& instance, std::string_view name, const TVariant& value) {
  SetVariantProp(instance, NeedProperty(instance, name), value);
}

TMethod GetMethodProp(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetMethod(instance);
}

TMethod GetMethodProp(const TPersistent& instance, std::string_view name) {
  return GetMethodProp(instance, NeedProperty(instance, name));
}

void SetMethodProp(TPersistent& instance, const TPropInfo& property, TMethod value) {
  property.Access->SetMethod(instance, value);
}

void SetMethodProp(TPersistent& instance, std::string_view name, TMethod value) {
  SetMethodProp(instance, NeedProperty(instance, name), value);
}

std::int64_t GetInt64Prop(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetInt64(instance);
}

std::int64_t GetInt64Prop(const TPersistent& instance, std::string_view name) {
  return GetInt64Prop(instance, NeedProperty(instance, name));
}

void SetInt64Prop(TPersistent& instance, const TPropInfo& property, std::int64_t value) {
  property.Access->SetInt64(instance, value);
}

void SetInt64Prop(TPersistent& instance, std::string_view name, std::int64_t value) {
  SetInt64Prop(instance, NeedProperty(instance, name), value);
}

TPersistent* GetObjectProp(const TPersistent& instance, const TPropInfo& property,
                           TClass minClass) {
  TPersistent* object = property.Access->GetObject(instance);
  if (object == nullptr || minClass == nullptr) return object;
  return object->GetClassInfo().InheritsFrom(*minClass) ? object : nullptr;
}

TPersistent* GetObjectProp(const TPersistent& instance, std::string_view name, TClass minClass) {
  return GetObjectProp(instance, NeedProperty(instance, name), minClass);
}

void SetObjectProp(TPersistent& instance, const TPropInfo& property, TPersistent* value) {
  property.Access->SetObject(instance, value);
}

void SetObjectProp(TPersistent& instance, std::string_view name, TPersistent* value) {
  SetObjectProp(instance, NeedProperty(instance, name), value);
}

const TTypeInfo& GetObjectPropClass(const TPropInfo& property) {
  if (property.Kind() != tkClass) RaiseNoProperty(property.PropType->Name(), property.Name);
  return *property.PropType;
}

const TTypeInfo& GetObjectPropClass(const TPersistent& instance, std::string_view name) {
  return GetObjectPropClass(NeedProperty(instance, name));
}

}  // namespace wrenfold
