// Typed access to published properties, by descriptor and by name.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/core/model/Persistent.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// A property that does not exist, or does not have the type data that is asked for.
class EPropertyError : public Exception {
 public:
  using Exception::Exception;
};
// A text that is no value of the property's type.
class EPropertyConvertError : public Exception {
 public:
  using Exception::Exception;
};

// Equal without regard to the case of ASCII letters.
bool SameText(std::string_view left, std::string_view right);

// Clears the variable, then destroys the object, so that nobody finds the object half destroyed.
template <class Object>
void FreeAndNil(Object*& object) {
  delete std::exchange(object, nullptr);
}

// The descriptor of that name whose kind is among `kinds`, or null.
const TPropInfo* GetPropInfo(const TTypeInfo& typeInfo, std::string_view name,
                             TTypeKinds kinds = AllTypeKinds);
const TPropInfo* GetPropInfo(const TPersistent& instance, std::string_view name,
                             TTypeKinds kinds = AllTypeKinds);
bool IsPublishedProp(const TTypeInfo& typeInfo, std::string_view name);
bool IsPublishedProp(const TPersistent& instance, std::string_view name);

// Every accessor stands for both forms: with a descriptor of the instance's class, or with the
// property's name. The names raise EPropertyError when there is no such property; an access that
// the property's kind does not offer raises EPropertyAccessError.

// Integers, characters, enumerations and sets.
std::int32_t GetOrdProp(const TPersistent& instance, const TPropInfo& property);
std::int32_t GetOrdProp(const TPersistent& instance, std::string_view name);
void SetOrdProp(TPersistent& instance, const TPropInfo& property, std::int32_t value);
void SetOrdProp(TPersistent& instance, std::string_view name, std::int32_t value);

// An enumeration as its value name. An unknown name raises EPropertyConvertError.
std::string GetEnumProp(const TPersistent& instance, const TPropInfo& property);
std::string GetEnumProp(const TPersistent& instance, std::string_view name);
void SetEnumProp(TPersistent& instance, const TPropInfo& property, std::string_view value);
void SetEnumProp(TPersistent& instance, std::string_view name, std::string_view value);

// A set as its element names in ascending order, joined by commas. Writing takes the names with or
// without brackets, separated by blanks and commas; an unknown one raises EPropertyConvertError.
std::string GetSetProp(const TPersistent& instance, const TPropInfo& property,
                       bool brackets = false);
std::string GetSetProp(const TPersistent& instance, std::string_view name, bool brackets = false);
void SetSetProp(TPersistent& instance, const TPropInfo& property, std::string_view value);
void SetSetProp(TPersistent& instance, std::string_view name, std::string_view value);

std::string GetStrProp(const TPersistent& instance, const TPropInfo& property);
std::string GetStrProp(const TPersistent& instance, std::string_view name);
void SetStrProp(TPersistent& instance, const TPropInfo& property, std::string_view value);
void SetStrProp(TPersistent& instance, std::string_view name, std::string_view value);

TVariant GetVariantProp(const TPersistent& instance, const TPropInfo& property);
TVariant GetVariantProp(const TPersistent& instance, std::string_view name);
void SetVariantProp(TPersistent& instance, const TPropInfo& property, const TVariant& value);
void SetVariantProp(TPersistent& instance, std::string_view name, const TVariant& value);

TMethod GetMethodProp(const TPersistent& instance, const TPropInfo& property);
TMethod GetMethodProp(const TPersistent& instance, std::string_view name);
void SetMethodProp(TPersistent& instance, const TPropInfo& property, TMethod value);
void SetMethodProp(TPersistent& instance, std::string_view name, TMethod value);

std::int64_t GetInt64Prop(const TPersistent& instance, const TPropInfo& property);
std::int64_t GetInt64Prop(const TPersistent& instance, std::string_view name);
void SetInt64Prop(TPersistent& instance, const TPropInfo& property, std::int64_t value);
void SetInt64Prop(TPersistent& instance, std::string_view name, std::int64_t value);

// The held object when its class is minClass or a descendant of it, else null.
TPersistent* GetObjectProp(const TPersistent& instance, const TPropInfo& property,
                           TClass minClass = nullptr);
TPersistent* GetObjectProp(const TPersistent& instance, std::string_view name,
                           TClass minClass = nullptr);
void SetObjectProp(TPersistent& instance, const TPropInfo& property, TPersistent* value);
void SetObjectProp(TPersistent& instance, std::string_view name, TPersistent* value);
// The class that the property is declared with; EPropertyError for other kinds of property.
const TTypeInfo& GetObjectPropClass(const TPropInfo& property);
const TTypeInfo& GetObjectPropClass(const TPersistent& instance, std::string_view name);

}  // namespace wrenfold
