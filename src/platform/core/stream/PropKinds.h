// The kinds of properties: how each is stored, shown and converted.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <variant>

#include "platform/core/model/Persistent.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/Identifiers.h"

namespace wrenfold {

// A text or a number that is no value of a property's type, or a form that its kind does not have.
class EPropertyValueError : public Exception {
 public:
  enum TReason { NoSuchForm, NoValue, NoColor, NoSet };
  EPropertyValueError(TReason reason, std::string_view value);

  const TReason Reason;
  const std::string Value;  // that was refused
};

// An ordinal, a float, a text or an object, which is not owned.
using TRawValue = std::variant<std::int32_t, double, std::string, TPersistent*>;

// One kind. Where a function is null the kind has no such form. The functions raise
// EPropertyValueError for what is no value, EConvertError for texts of numbers, dates and times,
// and what the property's setter raises; the property then keeps its value.
struct TPropKindRow {
  TPropKind Kind;
  // The value at the reader's cursor into the property.
  void (*Read)(TReader& reader, TPersistent& instance, const TPropInfo& property);
  // The property, its name first, unless nobody could read it.
  void (*Write)(TWriter& writer, TPersistent& instance, const TPropInfo& property);
  // Whether the platform's writer leaves it out.
  bool (*IsDefault)(const TPersistent& instance, const TPropInfo& property);
  std::string (*ToText)(const TPersistent& instance, const TPropInfo& property) = nullptr;
  void (*FromText)(TPersistent& instance, const TPropInfo& property,
                   std::string_view text) = nullptr;
  TVariant (*ToVariant)(const TPersistent& instance, const TPropInfo& property) = nullptr;
  void (*FromVariant)(TPersistent& instance, const TPropInfo& property,
                      const TVariant& value) = nullptr;
  TRawValue (*ToRaw)(const TPersistent& instance, const TPropInfo& property) = nullptr;
  void (*FromRaw)(TPersistent& instance, const TPropInfo& property,
                  const TRawValue& value) = nullptr;
  // Names of numbers; whether these are signed tells the range of the type.
  const TIdentMap* (*Identifiers)() = nullptr;
};

extern const std::array<TPropKindRow, PropKindCount> PropKinds;

inline const TPropKindRow& RowOf(const TPropInfo& property) {
  return PropKinds[static_cast<std::size_t>(property.PropType->PropKind())];
}

// Value names, letter case ignored on reading.
std::string EnumText(const TTypeInfo& enumeration, std::int32_t value);
std::int32_t EnumOfText(const TTypeInfo& enumeration, std::string_view text);
// "[fsBold,fsItalic]". Reading skips what stands before the first "[", takes blanks around the
// names, and takes every name that a "," or "]" ends: what follows a "]" counts as well, and a last
// name without an end is dropped when another element was there.
std::string SetText(const TTypeInfo& set, std::uint32_t value);
std::uint32_t SetOfText(const TTypeInfo& set, std::string_view text);

}  // namespace wrenfold
