// Published properties by dotted path: as text, as raw value and as variant.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/core/model/Persistent.h"
#include "platform/core/model/StringList.h"
#include "platform/core/stream/PropKinds.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// Every failure of reading, writing or converting stored data.
class EDataHandlingError : public Exception {
 public:
  using Exception::Exception;
};

// The property list that an object is presented with. Null means that it has none. Without such a
// function the object's own class is asked.
using TGetTypeInfo = std::function<const TTypeInfo*(const TPersistent&)>;

// Finds a property by a dotted path: all segments but the last name object properties that hold an
// object. Answers the descriptor of the last segment and sets `instance` to the object that has the
// property; null, with `instance` as it was, when the path leads nowhere.
const TPropInfo* FindPropInfo(TPersistent*& instance, std::string_view path,
                              const TGetTypeInfo& getTypeInfo = {});
const TPropInfo* FindPropInfo(const TPersistent*& instance, std::string_view path,
                              const TGetTypeInfo& getTypeInfo = {});

// Everything below raises EDataHandlingError: for a path that leads nowhere, for a kind of property
// that has no such form, and for a value that is none of the property's type. The property then
// keeps its value. Texts of numbers, dates and times follow the user's locale and raise
// EConvertError when they do not parse.

// A colour without a name is the empty text, on purpose; only colour names can be written.
std::string GetPropAsText(const TPersistent& instance, const TPropInfo& property);
std::string GetPropAsText(const TPersistent& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo = {});
void SetPropByText(TPersistent& instance, const TPropInfo& property, std::string_view text);
void SetPropByText(TPersistent& instance, std::string_view path, std::string_view text,
                   const TGetTypeInfo& getTypeInfo = {});

// Integers, characters, enumerations and sets are the ordinal; then floats, the three string kinds
// and objects.
void GetPropAsPtr(const TPersistent& instance, const TPropInfo& property, TRawValue& value);
void GetPropAsPtr(const TPersistent& instance, std::string_view path, TRawValue& value,
                  const TGetTypeInfo& getTypeInfo = {});
void SetPropByPtr(TPersistent& instance, const TPropInfo& property, const TRawValue& value);
void SetPropByPtr(TPersistent& instance, std::string_view path, const TRawValue& value,
                  const TGetTypeInfo& getTypeInfo = {});

// Booleans, integers, 64-bit integers and floats are themselves; characters, strings, enumerations
// and sets are their text. Writing takes a text for every kind that has one.
TVariant GetPropAsVariant(const TPersistent& instance, const TPropInfo& property);
TVariant GetPropAsVariant(const TPersistent& instance, std::string_view path,
                          const TGetTypeInfo& getTypeInfo = {});
void SetPropByVariant(TPersistent& instance, const TPropInfo& property, const TVariant& value);
void SetPropByVariant(TPersistent& instance, std::string_view path, const TVariant& value,
                      const TGetTypeInfo& getTypeInfo = {});

// Value names, letter case ignored on reading.
std::string EnumToStr(const TTypeInfo& enumeration, std::int32_t value);
std::int32_t StrToEnum(const TTypeInfo& enumeration, std::string_view text);
// Clears the list and fills it with the names from the lowest to the highest value. Raises
// EDataHandlingError for a type that is no enumeration.
void FillEnumNames(const TTypeInfo& enumeration, TStrings& names);
bool ContainsIn(const TTypeInfo& enumeration, std::string_view name);

// "[fsBold,fsItalic]". Reading skips what stands before the first "[", takes blanks around the
// names, and takes every name that a "," or "]" ends: what follows a "]" counts as well, and a last
// name without an end is dropped when another element was there.
std::string SetToStr(const TTypeInfo& set, std::uint32_t value);
std::uint32_t StrToSet(const TTypeInfo& set, std::string_view text);

}  // namespace wrenfold
