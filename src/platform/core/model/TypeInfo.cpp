#include "platform/core/model/TypeInfo.h"

#include "platform/core/model/Collection.h"
#include "platform/core/model/Persistent.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

[[noreturn]] void RaiseNoAccess(const char* access) {
  throw EPropertyAccessError(std::string("The property offers no ") + access + " access");
}

}  // namespace

namespace detail {

void RaiseReadOnly() {
  throw EPropertyAccessError("The property is read only");
}

void RaiseWrongClass(const TPersistent& object, const TTypeInfo& expected) {
  throw EPropertyAccessError("The property holds a " + expected.Name() + ", not a " +
                             object.ClassName());
}

void RaiseTooLarge(double value, const TTypeInfo& type) {
  throw EPropertyAccessError(FloatToStr(value) + " does not fit " + type.Name());
}

template <>
const char* SimpleTypeName<char>() {
  return "Char";
}
template <>
const char* SimpleTypeName<char16_t>() {
  return "WideChar";
}
template <>
const char* SimpleTypeName<std::int8_t>() {
  return "ShortInt";
}
template <>
const char* SimpleTypeName<std::uint8_t>() {
  return "Byte";
}
template <>
const char* SimpleTypeName<std::int16_t>() {
  return "SmallInt";
}
template <>
const char* SimpleTypeName<std::uint16_t>() {
  return "Word";
}
template <>
const char* SimpleTypeName<std::int32_t>() {
  return "Integer";
}
template <>
const char* SimpleTypeName<std::uint32_t>() {
  return "Cardinal";
}
template <>
const char* SimpleTypeName<std::int64_t>() {
  return "Int64";
}
template <>
const char* SimpleTypeName<float>() {
  return "Single";
}
template <>
const char* SimpleTypeName<double>() {
  return "Double";
}
template <>
const char* SimpleTypeName<TColor>() {
  return "TColor";
}
template <>
const char* SimpleTypeName<TCursor>() {
  return "TCursor";
}
template <>
const char* SimpleTypeName<TFontCharset>() {
  return "TFontCharset";
}
template <>
const char* SimpleTypeName<TSpinInt>() {
  return "TSpinInt";
}
template <>
const char* SimpleTypeName<TShortCut>() {
  return "TShortCut";
}
template <>
const char* SimpleTypeName<TDateTime>() {
  return "TDateTime";
}
template <>
const char* SimpleTypeName<TDate>() {
  return "TDate";
}
template <>
const char* SimpleTypeName<TTime>() {
  return "TTime";
}
template <>
const char* SimpleTypeName<std::string>() {
  return "String";
}
template <>
const char* SimpleTypeName<TShortString>() {
  return "ShortString";
}
template <>
const char* SimpleTypeName<TShortCutString>() {
  return "TShortCutString";
}
template <>
const char* SimpleTypeName<TWideString>() {
  return "WideString";
}
template <>
const char* SimpleTypeName<TVariant>() {
  return "Variant";
}

}  // namespace detail

std::int32_t TPropAccess::GetOrd(const TPersistent&) const {
  RaiseNoAccess("ordinal");
}
void TPropAccess::SetOrd(TPersistent&, std::int32_t) const {
  RaiseNoAccess("ordinal");
}
std::int64_t TPropAccess::GetInt64(const TPersistent&) const {
  RaiseNoAccess("64-bit integer");
}
void TPropAccess::SetInt64(TPersistent&, std::int64_t) const {
  RaiseNoAccess("64-bit integer");
}
double TPropAccess::GetFloat(const TPersistent&) const {
  RaiseNoAccess("float");
}
void TPropAccess::SetFloat(TPersistent&, double) const {
  RaiseNoAccess("float");
}
std::string TPropAccess::GetStr(const TPersistent&) const {
  RaiseNoAccess("string");
}
void TPropAccess::SetStr(TPersistent&, std::string_view) const {
  RaiseNoAccess("string");
}
TPersistent* TPropAccess::GetObject(const TPersistent&) const {
  RaiseNoAccess("object");
}
void TPropAccess::SetObject(TPersistent&, TPersistent*) const {
  RaiseNoAccess("object");
}
TMethod TPropAccess::GetMethod(const TPersistent&) const {
  RaiseNoAccess("method");
}
void TPropAccess::SetMethod(TPersistent&, TMethod) const {
  RaiseNoAccess("method");
}
TVariant TPropAccess::GetVariant(const TPersistent&) const {
  RaiseNoAccess("variant");
}
void TPropAccess::SetVariant(TPersistent&, const TVariant&) const {
  RaiseNoAccess("variant");
}

std::size_t TTypeInfo::TNameHash::operator()(std::string_view name) const {
  std::size_t hash = 14695981039346656037u;  // FNV-1a over the folded bytes
  for (const char c : name)
    hash = (hash ^ static_cast<unsigned char>(FoldChar(c))) * 1099511628211u;
  return hash;
}

bool TTypeInfo::TNameEqual::operator()(std::string_view left, std::string_view right) const {
  return EqualText(left, right);
}

TTypeInfo::TTypeInfo(std::string name, const TTypeInfo* parent, TMakers makers,
                     std::vector<std::unique_ptr<TPropInfo>> properties)
    : FName(std::move(name)),
      FKind(tkClass),
      FParent(parent),
      FOwnProperties(std::move(properties)),
      FMakers(std::move(makers)) {
  if (parent != nullptr) {
    FProperties = parent->FProperties;
    FIndexByName = parent->FIndexByName;
  }
  for (const auto& property : FOwnProperties) {
    const auto [place, added] = FIndexByName.try_emplace(property->Name, FProperties.size());
    if (added) FProperties.push_back(property.get());
    else FProperties[place->second] = property.get();
  }
}

std::unique_ptr<TTypeInfo> TTypeInfo::MakeEnumeration(std::string name,
                                                      std::vector<std::string> names, int low) {
  auto info = std::make_unique<TTypeInfo>(std::move(name), tkEnumeration);
  info->FEnumNames = std::move(names);
  info->FMinValue = low;
  info->FMaxValue = static_cast<int>(info->FEnumNames.size()) - 1;
  for (std::size_t i = 0; i < info->FEnumNames.size(); ++i)
    info->FIndexByName.try_emplace(info->FEnumNames[i], i);
  return info;
}

std::unique_ptr<TTypeInfo> TTypeInfo::MakeSet(std::string name, const TTypeInfo& element) {
  auto info = std::make_unique<TTypeInfo>(std::move(name), tkSet);
  info->FElementType = &element;
  return info;
}

std::unique_ptr<TTypeInfo> TTypeInfo::MakeClass(std::string name, const TTypeInfo& parent) {
  return std::unique_ptr<TTypeInfo>(new TTypeInfo(std::move(name), &parent, parent.FMakers, {}));
}

std::optional<int> TTypeInfo::FindEnumValue(std::string_view name) const {
  if (FKind != tkEnumeration) return std::nullopt;
  const auto found = FIndexByName.find(name);
  if (found == FIndexByName.end()) return std::nullopt;
  return static_cast<int>(found->second);
}

const TPropInfo* TTypeInfo::FindProperty(std::string_view name) const {
  if (FKind != tkClass) return nullptr;
  const auto found = FIndexByName.find(name);
  return found == FIndexByName.end() ? nullptr : FProperties[found->second];
}

bool TTypeInfo::InheritsFrom(const TTypeInfo& ancestor) const {
  for (const TTypeInfo* info = this; info != nullptr; info = info->FParent)
    if (info == &ancestor) return true;
  return false;
}

bool TTypeInfo::InheritsFrom(std::string_view ancestorName) const {
  for (const TTypeInfo* info = this; info != nullptr; info = info->FParent)
    if (EqualText(info->FName, ancestorName)) return true;
  return false;
}

std::unique_ptr<TPersistent> TTypeInfo::Make() const {
  if (FMakers.Plain) return std::unique_ptr<TPersistent>(FMakers.Plain());
  if (FMakers.Component) return std::unique_ptr<TPersistent>(FMakers.Component(nullptr));
  if (FMakers.Item) return std::unique_ptr<TPersistent>(FMakers.Item(nullptr));
  return nullptr;
}

TComponent* TTypeInfo::MakeComponent(TComponent* owner) const {
  return FMakers.Component ? FMakers.Component(owner) : nullptr;
}

TCollectionItem* TTypeInfo::MakeItem(TCollection* collection) const {
  return FMakers.Item ? FMakers.Item(collection) : nullptr;
}

}  // namespace wrenfold
