#include "platform/core/model/TypeInfo.h"

#include <algorithm>

#include "platform/core/model/Collection.h"
#include "platform/core/model/Persistent.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

[[noreturn]] void RaiseNoAccess(const char* access) {
  throw EPropertyAccessError(std::string("The property offers no ") + access + " access");
}

constexpr TValueRange AllBits = {0, UINT32_MAX};

// What the values of a type without a name of its own mean, in the order of TTypeKind.
struct TKindRow {
  TTypeKind Kind;
  TPropKind PropKind;
  TValueRange Range = {};
};
constexpr TKindRow KindRows[] = {
    {tkUnknown, TPropKind::Unknown},
    {tkInteger, TPropKind::Integer, detail::RangeOf<std::int32_t>},
    {tkChar, TPropKind::Char, detail::RangeOf<std::uint8_t>},
    {tkEnumeration, TPropKind::Enumeration},
    {tkFloat, TPropKind::Float},
    {tkString, TPropKind::Text},
    {tkSet, TPropKind::Set, AllBits},
    {tkClass, TPropKind::Object},
    {tkMethod, TPropKind::Event},
    {tkWChar, TPropKind::WideChar, detail::RangeOf<std::uint16_t>},
    {tkLString, TPropKind::Text},
    {tkWString, TPropKind::WideText},
    {tkVariant, TPropKind::Variant},
    {tkArray, TPropKind::Unknown},
    {tkRecord, TPropKind::Unknown},
    {tkInterface, TPropKind::Unknown},
    {tkInt64, TPropKind::Int64},
    {tkDynArray, TPropKind::Unknown},
};
static_assert(std::size(KindRows) == tkDynArray + 1);

constexpr detail::TSimpleType TypesOfMeaning[] = {
    detail::SimpleType<TColor>(),       detail::SimpleType<TCursor>(),
    detail::SimpleType<TFontCharset>(), detail::SimpleType<TDateTime>(),
    detail::SimpleType<TDate>(),        detail::SimpleType<TTime>(),
};

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

void RaiseOutOfRange(std::int64_t value, const TTypeInfo& type, const TValueRange& range) {
  throw EPropertyAccessError(std::to_string(value) + " is outside " + type.Name() + " (" +
                             std::to_string(range.Low) + " to " + std::to_string(range.High) + ')');
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

TTypeInfo::TTypeInfo(std::string name, TTypeKind kind)
    : FName(std::move(name)),
      FKind(kind),
      FPropKind(KindRows[kind].PropKind),
      FRange(KindRows[kind].Range) {
  for (const detail::TSimpleType& type : TypesOfMeaning) {
    const bool sameKind = type.Range == TValueRange() ? kind == tkFloat : kind == tkInteger;
    if (sameKind && EqualText(FName, type.Name)) FPropKind = type.Kind;
  }
}

TTypeInfo::TTypeInfo(const detail::TSimpleType& type, TTypeKind kind)
    : FName(type.Name), FKind(kind), FPropKind(type.Kind), FRange(type.Range) {}

TTypeInfo::TTypeInfo(std::string name, const TTypeInfo* parent, TMakers makers,
                     std::vector<std::unique_ptr<TPropInfo>> properties, std::vector<TLabel> labels)
    : FName(std::move(name)),
      FKind(tkClass),
      FPropKind(TPropKind::Object),
      FParent(parent),
      FOwnProperties(std::move(properties)),
      FLabels(std::move(labels)),
      FMakers(std::move(makers)) {
  if (parent != nullptr) {
    FProperties = parent->FProperties;
    FLabels.insert(FLabels.end(), parent->FLabels.begin(), parent->FLabels.end());
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
  info->FRange = {low, static_cast<std::int64_t>(info->FEnumNames.size()) - 1};
  for (std::size_t i = 0; i < info->FEnumNames.size(); ++i)
    info->FIndexByName.try_emplace(info->FEnumNames[i], i);
  return info;
}

std::unique_ptr<TTypeInfo> TTypeInfo::MakeBoolean() {
  auto info = MakeEnumeration("Boolean", {"False", "True"});
  info->FPropKind = TPropKind::Boolean;
  return info;
}

std::unique_ptr<TTypeInfo> TTypeInfo::MakeSet(std::string name, const TTypeInfo& element) {
  auto info = std::make_unique<TTypeInfo>(std::move(name), tkSet);
  info->FElementType = &element;
  return info;
}

std::unique_ptr<TTypeInfo> TTypeInfo::MakeClass(std::string name, const TTypeInfo& parent) {
  return std::unique_ptr<TTypeInfo>(
      new TTypeInfo(std::move(name), &parent, parent.FMakers, {}, {}));
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

std::vector<TLabel> TTypeInfo::Labels() const {
  std::vector<TLabel> labels = FLabels;
  for (const TPropInfo* property : FProperties)
    if (property->Label != 0) labels.push_back({property->Name, property->Label});
  std::stable_sort(labels.begin(), labels.end(),
                   [](const TLabel& a, const TLabel& b) { return a.TextId < b.TextId; });
  return labels;
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
