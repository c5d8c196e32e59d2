// Type information: kinds, published properties, and the tables that classes declare them with.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "platform/core/model/Event.h"
#include "platform/core/text/Unicode.h"
#include "platform/core/text/Values.h"

namespace wrenfold {

class TPersistent;
class TComponent;
class TCollection;
class TCollectionItem;
class TTypeInfo;

// The ordinal values are stored and shown as they are.
enum TTypeKind : std::uint8_t {
  tkUnknown,
  tkInteger,
  tkChar,
  tkEnumeration,
  tkFloat,
  tkString,
  tkSet,
  tkClass,
  tkMethod,
  tkWChar,
  tkLString,
  tkWString,
  tkVariant,
  tkArray,
  tkRecord,
  tkInterface,
  tkInt64,
  tkDynArray
};
using TTypeKinds = TSet<TTypeKind>;
inline constexpr TTypeKinds AllTypeKinds = TTypeKinds::FromBits((1u << 18) - 1);

using TVariant =
    std::variant<std::monostate, bool, std::int32_t, std::int64_t, double, std::string>;

// How the values of a type are stored, shown and converted: each is one row of PropKinds.cpp.
enum class TPropKind : std::uint8_t {
  Unknown,
  Integer,
  Color,
  Cursor,
  Charset,
  Char,
  WideChar,
  Enumeration,
  Boolean,
  Set,
  Float,
  DateTime,
  Time,
  Text,
  WideText,
  Int64,
  Object,
  Event,
  Variant
};
inline constexpr std::size_t PropKindCount = static_cast<std::size_t>(TPropKind::Variant) + 1;

// The lowest and the highest value of an ordinal. Where the highest needs 32 bits without a sign,
// an ordinal is its two's complement.
struct TValueRange {
  std::int64_t Low = 0;
  std::int64_t High = 0;

  constexpr bool Contains(std::int64_t value) const { return value >= Low && value <= High; }
  constexpr std::int64_t NumberOf(std::int32_t ordinal) const {
    return High > INT32_MAX ? std::int64_t{static_cast<std::uint32_t>(ordinal)} : ordinal;
  }
  friend constexpr bool operator==(const TValueRange&, const TValueRange&) = default;
};

// Reads and writes one property of an instance. An access that the property's kind does not offer
// raises EPropertyAccessError, so does a write to a property that is read only, or of a value
// outside the property's range; the property then keeps its value.
class TPropAccess {
 public:
  virtual ~TPropAccess() = default;
  // Narrows the range of the type.
  void SetRange(const TValueRange& range) { FRange = range; }
  const std::optional<TValueRange>& Range() const { return FRange; }
  // Integers, characters, enumerations (also Boolean) and sets.
  virtual std::int32_t GetOrd(const TPersistent& instance) const;
  virtual void SetOrd(TPersistent& instance, std::int32_t value) const;
  virtual std::int64_t GetInt64(const TPersistent& instance) const;
  virtual void SetInt64(TPersistent& instance, std::int64_t value) const;
  virtual double GetFloat(const TPersistent& instance) const;
  virtual void SetFloat(TPersistent& instance, double value) const;
  // Short, long and wide strings; a wide one as UTF-8.
  virtual std::string GetStr(const TPersistent& instance) const;
  virtual void SetStr(TPersistent& instance, std::string_view value) const;
  // The object is not handed over: a setter that wants it copies from it.
  virtual TPersistent* GetObject(const TPersistent& instance) const;
  virtual void SetObject(TPersistent& instance, TPersistent* value) const;
  virtual TMethod GetMethod(const TPersistent& instance) const;
  virtual void SetMethod(TPersistent& instance, TMethod value) const;
  virtual TVariant GetVariant(const TPersistent& instance) const;
  virtual void SetVariant(TPersistent& instance, const TVariant& value) const;
  virtual bool CanWrite() const { return true; }

 private:
  std::optional<TValueRange> FRange;
};

// A type record that is made when it is first asked for, so that a class can publish a property of
// its own type.
class TTypeRef {
 public:
  using TGet = const TTypeInfo& (*)();
  TTypeRef(TGet get) : FGet(get) {}                      // NOLINT
  operator const TTypeInfo*() const { return &FGet(); }  // NOLINT
  const TTypeInfo& operator*() const { return FGet(); }
  const TTypeInfo* operator->() const { return &FGet(); }

 private:
  TGet FGet;
};

// The descriptor of one published property.
struct TPropInfo {
  std::string Name;
  TTypeRef PropType;
  std::unique_ptr<TPropAccess> Access = nullptr;
  // An ordinal that the platform's writer leaves out; without one the value is always written.
  std::optional<std::int32_t> Default = std::nullopt;
  // Whether the storage writes the property at all.
  std::function<bool(const TPersistent&)> IsStored = nullptr;
  bool NeverStored = false;
  // The number of the text that names the property to the user; 0: none.
  int Label = 0;

  TTypeKind Kind() const;
  // Of an ordinal property: the range of its type, unless the property's is narrower.
  const TValueRange& Range() const;
  bool Stored(const TPersistent& instance) const {
    return !NeverStored && (!IsStored || IsStored(instance));
  }
};

// A name and the number of the text that names it to the user.
struct TLabel {
  std::string Name;
  int TextId = 0;
};

namespace detail {
struct TSimpleType;
}

// What is known of a type: its kind, its name and what the kind needs. Records of compiled types
// are made once and live as long as the process; a record of a class that exists only in a user's
// source is made at run time and lives as long as whoever made it. Records are compared by address.
class TTypeInfo {
 public:
  // A type that is no class. What the values mean follows from the name where it is that of a
  // simple type ("TColor", letter case ignored), else from the kind.
  TTypeInfo(std::string name, TTypeKind kind);
  TTypeInfo(const detail::TSimpleType& type, TTypeKind kind);
  TTypeInfo(const TTypeInfo&) = delete;
  TTypeInfo& operator=(const TTypeInfo&) = delete;

  static std::unique_ptr<TTypeInfo> MakeEnumeration(std::string name,
                                                    std::vector<std::string> names, int low = 0);
  static std::unique_ptr<TTypeInfo> MakeBoolean();
  static std::unique_ptr<TTypeInfo> MakeSet(std::string name, const TTypeInfo& element);
  // A class made at run time: no property of its own, instances are made as the parent makes them.
  static std::unique_ptr<TTypeInfo> MakeClass(std::string name, const TTypeInfo& parent);

  const std::string& Name() const { return FName; }
  TTypeKind Kind() const { return FKind; }
  TPropKind PropKind() const { return FPropKind; }
  // Ordinals: the range of values.
  const TValueRange& Range() const { return FRange; }

  // Enumerations: value names in ordinal order (the first has ordinal 0). A subrange type has the
  // names of the whole type and a narrower range.
  const std::vector<std::string>& EnumNames() const { return FEnumNames; }
  // The ordinal of a value name, letter case ignored, or none.
  std::optional<int> FindEnumValue(std::string_view name) const;

  // Sets: the element type.
  const TTypeInfo* ElementType() const { return FElementType; }

  // Classes: the parent (null for the root), and all published properties in declaration order,
  // base class first. A property that a descendant declares again stands once, in its first place.
  const TTypeInfo* Parent() const { return FParent; }
  const std::vector<const TPropInfo*>& Properties() const { return FProperties; }
  // The descriptor by name, letter case ignored, in constant time; null when there is none.
  const TPropInfo* FindProperty(std::string_view name) const;
  // All labels, of properties and of names without one, by ascending text number.
  std::vector<TLabel> Labels() const;
  bool InheritsFrom(const TTypeInfo& ancestor) const;
  // The same by class name: classes of a user's forms are known by name alone.
  bool InheritsFrom(std::string_view ancestorName) const;

  // Makes an instance; null for an abstract class. A class of components wants MakeComponent, a
  // class of collection items MakeItem.
  std::unique_ptr<TPersistent> Make() const;
  TComponent* MakeComponent(TComponent* owner) const;
  TCollectionItem* MakeItem(TCollection* collection) const;

 private:
  template <class Class>
  friend class TPublisher;
  struct TNameHash {
    std::size_t operator()(std::string_view name) const;
  };
  struct TNameEqual {
    bool operator()(std::string_view left, std::string_view right) const;
  };
  struct TMakers {
    std::function<TPersistent*()> Plain;
    std::function<TComponent*(TComponent*)> Component;
    std::function<TCollectionItem*(TCollection*)> Item;
  };

  TTypeInfo(std::string name, const TTypeInfo* parent, TMakers makers,
            std::vector<std::unique_ptr<TPropInfo>> properties, std::vector<TLabel> labels);

  std::string FName;
  TTypeKind FKind;
  TPropKind FPropKind = TPropKind::Unknown;
  TValueRange FRange;
  std::vector<std::string> FEnumNames;
  const TTypeInfo* FElementType = nullptr;
  const TTypeInfo* FParent = nullptr;
  std::vector<std::unique_ptr<TPropInfo>> FOwnProperties;
  std::vector<const TPropInfo*> FProperties;
  std::vector<TLabel> FLabels;  // without a property
  std::unordered_map<std::string_view, std::size_t, TNameHash, TNameEqual> FIndexByName;
  TMakers FMakers;
};

using TClass = const TTypeInfo*;

inline TTypeKind TPropInfo::Kind() const {
  return PropType->Kind();
}
inline const TValueRange& TPropInfo::Range() const {
  return Access->Range() ? *Access->Range() : PropType->Range();
}

// An enumeration declares its type name and value names once, by specialising this:
//   template <> struct TEnumDescription<TFontPitch> {
//     static constexpr const char* Name = "TFontPitch";
//     static constexpr std::array Values{"fpDefault", "fpVariable", "fpFixed"};
//   };
template <class Enumeration>
struct TEnumDescription;

// The type name of a set; the element's description serves where a set type has no name.
template <class Element>
struct TSetDescription {
  static constexpr const char* Name = "";
};

template <class Value>
const TTypeInfo& TypeInfoOf();

namespace detail {

template <class Value>
inline constexpr bool IsSet = false;
template <class Element>
inline constexpr bool IsSet<TSet<Element>> = true;
template <class Value>
inline constexpr bool IsEvent = false;
template <class Signature>
inline constexpr bool IsEvent<TEvent<Signature>> = true;
template <class Value>
inline constexpr bool IsDistinct = false;
template <class Tag, class Representation>
inline constexpr bool IsDistinct<TDistinct<Tag, Representation>> = true;

template <class Value>
struct TSetElement;
template <class Element>
struct TSetElement<TSet<Element>> {
  using Type = Element;
};

template <class Value>
constexpr TTypeKind KindOf() {
  if constexpr (std::is_same_v<Value, char>) return tkChar;
  else if constexpr (std::is_same_v<Value, char16_t>) return tkWChar;
  else if constexpr (std::is_same_v<Value, bool> || std::is_enum_v<Value>) return tkEnumeration;
  else if constexpr (std::is_floating_point_v<Value>) return tkFloat;
  else if constexpr (std::is_same_v<Value, std::int64_t>) return tkInt64;
  else if constexpr (std::is_integral_v<Value>) return tkInteger;
  else if constexpr (IsDistinct<Value>) return KindOf<decltype(Value::Value)>();
  else if constexpr (IsSet<Value>) return tkSet;
  else if constexpr (IsEvent<Value>) return tkMethod;
  else if constexpr (std::is_pointer_v<Value>) return tkClass;
  else if constexpr (std::is_same_v<Value, TShortString>) return tkString;
  else if constexpr (std::is_same_v<Value, TWideString>) return tkWString;
  else if constexpr (std::is_same_v<Value, TVariant>) return tkVariant;
  else if constexpr (std::is_base_of_v<std::string, Value>) return tkLString;
  else return tkUnknown;
}

// The rows of the simple types. A type of properties without a row does not compile.
struct TSimpleType {
  const char* Name;
  TPropKind Kind;
  TValueRange Range = {};
};

template <class Integer>
inline constexpr TValueRange RangeOf = {std::numeric_limits<Integer>::min(),
                                        std::numeric_limits<Integer>::max()};

template <class Value>
constexpr TSimpleType SimpleType() = delete;
template <>
constexpr TSimpleType SimpleType<char>() {
  return {"Char", TPropKind::Char, RangeOf<std::uint8_t>};
}
template <>
constexpr TSimpleType SimpleType<char16_t>() {
  return {"WideChar", TPropKind::WideChar, RangeOf<std::uint16_t>};
}
template <>
constexpr TSimpleType SimpleType<std::int8_t>() {
  return {"ShortInt", TPropKind::Integer, RangeOf<std::int8_t>};
}
template <>
constexpr TSimpleType SimpleType<std::uint8_t>() {
  return {"Byte", TPropKind::Integer, RangeOf<std::uint8_t>};
}
template <>
constexpr TSimpleType SimpleType<std::int16_t>() {
  return {"SmallInt", TPropKind::Integer, RangeOf<std::int16_t>};
}
template <>
constexpr TSimpleType SimpleType<std::uint16_t>() {
  return {"Word", TPropKind::Integer, RangeOf<std::uint16_t>};
}
template <>
constexpr TSimpleType SimpleType<std::int32_t>() {
  return {"Integer", TPropKind::Integer, RangeOf<std::int32_t>};
}
template <>
constexpr TSimpleType SimpleType<std::uint32_t>() {
  return {"Cardinal", TPropKind::Integer, RangeOf<std::uint32_t>};
}
template <>
constexpr TSimpleType SimpleType<TColor>() {
  return {"TColor", TPropKind::Color, RangeOf<std::int32_t>};
}
template <>
constexpr TSimpleType SimpleType<TCursor>() {
  return {"TCursor", TPropKind::Cursor, RangeOf<std::int32_t>};
}
template <>
constexpr TSimpleType SimpleType<TFontCharset>() {
  return {"TFontCharset", TPropKind::Charset, RangeOf<std::int32_t>};
}
template <>
constexpr TSimpleType SimpleType<TSpinInt>() {
  return {"TSpinInt", TPropKind::Integer, RangeOf<std::int32_t>};
}
template <>
constexpr TSimpleType SimpleType<TShortCut>() {
  return {"TShortCut", TPropKind::Integer, RangeOf<std::uint16_t>};
}
template <>
constexpr TSimpleType SimpleType<std::int64_t>() {
  return {"Int64", TPropKind::Int64};
}
template <>
constexpr TSimpleType SimpleType<float>() {
  return {"Single", TPropKind::Float};
}
template <>
constexpr TSimpleType SimpleType<double>() {
  return {"Double", TPropKind::Float};
}
template <>
constexpr TSimpleType SimpleType<TDateTime>() {
  return {"TDateTime", TPropKind::DateTime};
}
template <>
constexpr TSimpleType SimpleType<TDate>() {
  return {"TDate", TPropKind::DateTime};
}
template <>
constexpr TSimpleType SimpleType<TTime>() {
  return {"TTime", TPropKind::Time};
}
template <>
constexpr TSimpleType SimpleType<std::string>() {
  return {"String", TPropKind::Text};
}
template <>
constexpr TSimpleType SimpleType<TShortString>() {
  return {"ShortString", TPropKind::Text};
}
template <>
constexpr TSimpleType SimpleType<TShortCutString>() {
  return {"TShortCutString", TPropKind::Text};
}
template <>
constexpr TSimpleType SimpleType<TWideString>() {
  return {"WideString", TPropKind::WideText};
}
template <>
constexpr TSimpleType SimpleType<TVariant>() {
  return {"Variant", TPropKind::Variant};
}

template <class Enumeration>
std::unique_ptr<TTypeInfo> MakeEnumerationInfo() {
  using TDescription = TEnumDescription<Enumeration>;
  std::vector<std::string> names(std::begin(TDescription::Values), std::end(TDescription::Values));
  return TTypeInfo::MakeEnumeration(TDescription::Name, std::move(names));
}

template <class Set>
std::unique_ptr<TTypeInfo> MakeSetInfo() {
  using TElement = typename TSetElement<Set>::Type;
  const TTypeInfo& element = TypeInfoOf<TElement>();
  const char* name = TSetDescription<TElement>::Name;
  return TTypeInfo::MakeSet(*name ? name : "Set of " + element.Name(), element);
}

template <class Class, class Value>
class TTypedAccess;

}  // namespace detail

// The type record of a C++ type that a property can have.
template <class Value>
const TTypeInfo& TypeInfoOf() {
  if constexpr (std::is_pointer_v<Value>) {
    return std::remove_cv_t<std::remove_pointer_t<Value>>::ClassInfo();
  } else if constexpr (std::is_enum_v<Value>) {
    static const auto info = detail::MakeEnumerationInfo<Value>();
    return *info;
  } else if constexpr (std::is_same_v<Value, bool>) {
    static const auto info = TTypeInfo::MakeBoolean();
    return *info;
  } else if constexpr (detail::IsSet<Value>) {
    static const auto info = detail::MakeSetInfo<Value>();
    return *info;
  } else if constexpr (detail::IsEvent<Value>) {
    static const TTypeInfo info("TMethod", tkMethod);
    return info;
  } else {
    static const TTypeInfo info(detail::SimpleType<Value>(), detail::KindOf<Value>());
    return info;
  }
}

namespace detail {

[[noreturn]] void RaiseReadOnly();
[[noreturn]] void RaiseWrongClass(const TPersistent& object, const TTypeInfo& expected);
[[noreturn]] void RaiseTooLarge(double value, const TTypeInfo& type);
[[noreturn]] void RaiseOutOfRange(std::int64_t value, const TTypeInfo& type,
                                  const TValueRange& range);

// The one place that turns a typed value into what the accessors of its kind carry.
template <class Class, class Value>
class TTypedAccess : public TPropAccess {
 public:
  static constexpr TTypeKind Kind = KindOf<Value>();
  static constexpr bool Ordinal = Kind == tkInteger || Kind == tkChar || Kind == tkWChar ||
                                  Kind == tkEnumeration || Kind == tkSet;

  virtual Value Get(const Class& instance) const = 0;
  virtual void Set(Class& instance, Value value) const = 0;

  std::int32_t GetOrd(const TPersistent& instance) const override {
    if constexpr (Kind == tkSet) return static_cast<std::int32_t>(Get(Cast(instance)).Bits());
    else if constexpr (Kind == tkChar) return static_cast<unsigned char>(Get(Cast(instance)));
    else if constexpr (IsDistinct<Value> && Ordinal) return Get(Cast(instance)).Value;
    else if constexpr (Ordinal) return static_cast<std::int32_t>(Get(Cast(instance)));
    else return TPropAccess::GetOrd(instance);
  }
  void SetOrd(TPersistent& instance, std::int32_t value) const override {
    RequireInRange(value);
    if constexpr (Kind == tkSet) {
      Set(Cast(instance), Value::FromBits(static_cast<std::uint32_t>(value)));
    } else if constexpr (IsDistinct<Value> && Ordinal) {
      Set(Cast(instance), Value(static_cast<decltype(Value::Value)>(value)));
    } else if constexpr (Ordinal) {
      Set(Cast(instance), static_cast<Value>(value));
    } else {
      TPropAccess::SetOrd(instance, value);
    }
  }
  std::int64_t GetInt64(const TPersistent& instance) const override {
    if constexpr (Kind == tkInt64) return Get(Cast(instance));
    else return TPropAccess::GetInt64(instance);
  }
  void SetInt64(TPersistent& instance, std::int64_t value) const override {
    if constexpr (Kind == tkInt64) Set(Cast(instance), value);
    else TPropAccess::SetInt64(instance, value);
  }
  double GetFloat(const TPersistent& instance) const override {
    if constexpr (Kind == tkFloat) return static_cast<double>(Get(Cast(instance)));
    else return TPropAccess::GetFloat(instance);
  }
  void SetFloat(TPersistent& instance, double value) const override {
    if constexpr (IsDistinct<Value> && Kind == tkFloat) Set(Cast(instance), Value(value));
    else if constexpr (Kind == tkFloat) Set(Cast(instance), Narrowed(value));
    else TPropAccess::SetFloat(instance, value);
  }
  std::string GetStr(const TPersistent& instance) const override {
    if constexpr (Kind == tkLString || Kind == tkString) return Get(Cast(instance));
    else if constexpr (Kind == tkWString) return Utf8FromUtf16(Get(Cast(instance)));
    else return TPropAccess::GetStr(instance);
  }
  void SetStr(TPersistent& instance, std::string_view value) const override {
    if constexpr (Kind == tkString) Set(Cast(instance), Value(std::string(value.substr(0, 255))));
    else if constexpr (Kind == tkLString) Set(Cast(instance), Value(std::string(value)));
    else if constexpr (Kind == tkWString) Set(Cast(instance), Utf16FromUtf8(value));
    else TPropAccess::SetStr(instance, value);
  }
  TPersistent* GetObject(const TPersistent& instance) const override {
    if constexpr (Kind == tkClass) return Get(Cast(instance));
    else return TPropAccess::GetObject(instance);
  }
  void SetObject(TPersistent& instance, TPersistent* value) const override {
    if constexpr (Kind == tkClass) {
      const auto typed = dynamic_cast<Value>(value);
      if (typed == nullptr && value != nullptr) RaiseWrongClass(*value, TypeInfoOf<Value>());
      Set(Cast(instance), typed);
    } else {
      TPropAccess::SetObject(instance, value);
    }
  }
  TMethod GetMethod(const TPersistent& instance) const override {
    if constexpr (Kind == tkMethod) return Get(Cast(instance)).Method();
    else return TPropAccess::GetMethod(instance);
  }
  void SetMethod(TPersistent& instance, TMethod value) const override {
    if constexpr (Kind == tkMethod) Set(Cast(instance), Value::FromMethod(value));
    else TPropAccess::SetMethod(instance, value);
  }
  TVariant GetVariant(const TPersistent& instance) const override {
    if constexpr (Kind == tkVariant) return Get(Cast(instance));
    else return TPropAccess::GetVariant(instance);
  }
  void SetVariant(TPersistent& instance, const TVariant& value) const override {
    if constexpr (Kind == tkVariant) Set(Cast(instance), value);
    else TPropAccess::SetVariant(instance, value);
  }

 private:
  void RequireInRange([[maybe_unused]] std::int32_t value) const {
    if constexpr (Ordinal) {
      const TTypeInfo& type = TypeInfoOf<Value>();
      const TValueRange& range = this->Range() ? *this->Range() : type.Range();
      const std::int64_t number = range.NumberOf(value);
      if (!range.Contains(number)) RaiseOutOfRange(number, type, range);
    }
  }
  // A finite number does not become infinite.
  static Value Narrowed(double value) {
    if (std::isfinite(value) && std::fabs(value) > double{std::numeric_limits<Value>::max()})
      RaiseTooLarge(value, TypeInfoOf<Value>());
    return static_cast<Value>(value);
  }
  static const Class& Cast(const TPersistent& instance) {
    return static_cast<const Class&>(instance);
  }
  static Class& Cast(TPersistent& instance) { return static_cast<Class&>(instance); }
};

// A data member, plain or held by a unique_ptr (then the object is owned by the instance and
// setting the property assigns to it).
template <class Class, class Value, class Member, class Declaring>
class TMemberAccess : public TTypedAccess<Class, Value> {
 public:
  explicit TMemberAccess(Member Declaring::*member) : FMember(member) {}
  Value Get(const Class& instance) const override {
    if constexpr (std::is_same_v<Member, Value>) return instance.*FMember;
    else return (instance.*FMember).get();
  }
  void Set(Class& instance, Value value) const override {
    if constexpr (std::is_same_v<Member, Value>) instance.*FMember = std::move(value);
    else if (value != nullptr) (instance.*FMember)->Assign(value);
  }

 private:
  Member Declaring::*FMember;
};

// A getter and, unless the property is read only, a setter.
template <class Class, class Value, class Getter, class Setter>
class TMethodAccess : public TTypedAccess<Class, Value> {
 public:
  TMethodAccess(Getter getter, Setter setter) : FGetter(getter), FSetter(setter) {}
  Value Get(const Class& instance) const override { return (instance.*FGetter)(); }
  void Set(Class& instance, Value value) const override {
    if constexpr (std::is_same_v<Setter, std::nullptr_t>) RaiseReadOnly();
    else (instance.*FSetter)(std::move(value));
  }
  bool CanWrite() const override { return !std::is_same_v<Setter, std::nullptr_t>; }

 private:
  Getter FGetter;
  Setter FSetter;
};

template <class Member>
struct TMemberValue {
  using Type = Member;
};
template <class Object>
struct TMemberValue<std::unique_ptr<Object>> {
  using Type = Object*;
};

}  // namespace detail

// Builds the record of a class, one line a property:
//   static const TTypeInfo info = Publish<TExpertInfo>("TExpertInfo", TSpcItem::ClassInfo())
//                                     .Prop("ExpertName", &TExpertInfo::ExpertName);
template <class Class>
class TPublisher {
 public:
  TPublisher(std::string name, const TTypeInfo* parent) : FName(std::move(name)), FParent(parent) {}

  // A data member; a unique_ptr member publishes the object it owns.
  template <class Member, class Declaring>
  requires(!std::is_function_v<Member>) TPublisher &&
      Prop(const char* name, Member Declaring::*member) && {
    using TValue = typename detail::TMemberValue<Member>::Type;
    using TAccess = detail::TMemberAccess<Class, TValue, Member, Declaring>;
    return std::move(*this).template Add<TValue>(name, std::make_unique<TAccess>(member));
  }
  // A getter and a setter; nullptr for the setter makes the property read only.
  template <class Result, class Declaring, class Setter>
  TPublisher&& Prop(const char* name, Result (Declaring::*getter)() const, Setter setter) && {
    using TValue = std::remove_cvref_t<Result>;
    using TAccess = detail::TMethodAccess<Class, TValue, decltype(getter), Setter>;
    return std::move(*this).template Add<TValue>(name, std::make_unique<TAccess>(getter, setter));
  }
  // Of the property named last: the ordinal that the platform's writer leaves out.
  template <class Value>
  TPublisher&& Default(Value value) && {
    if constexpr (detail::IsSet<Value>) FLast->Default = static_cast<std::int32_t>(value.Bits());
    else FLast->Default = static_cast<std::int32_t>(value);
    return std::move(*this);
  }
  // Of the property named last: the values that it takes, where they are fewer than its type has.
  TPublisher&& Range(std::int64_t low, std::int64_t high) && {
    FLast->Access->SetRange({low, high});
    return std::move(*this);
  }
  // Of the property named last: the number of the text that names it to the user.
  TPublisher&& Label(int textId) && {
    FLast->Label = textId;
    return std::move(*this);
  }
  // The label of a name that is no property.
  TPublisher&& Label(std::string name, int textId) && {
    FLabels.push_back({std::move(name), textId});
    return std::move(*this);
  }
  // Of the property named last: never stored, or stored when the method says so.
  TPublisher&& NotStored() && {
    FLast->NeverStored = true;
    return std::move(*this);
  }
  TPublisher&& StoredWhen(bool (Class::*predicate)() const) && {
    FLast->IsStored = [predicate](const TPersistent& instance) {
      return (static_cast<const Class&>(instance).*predicate)();
    };
    return std::move(*this);
  }

  operator TTypeInfo() && {  // NOLINT: the last step of the declaration
    return TTypeInfo(std::move(FName), FParent, Makers(), std::move(FProperties),
                     std::move(FLabels));
  }

 private:
  template <class Value>
  TPublisher&& Add(const char* name, std::unique_ptr<TPropAccess> access) && {
    auto property = std::make_unique<TPropInfo>(
        TPropInfo{.Name = name, .PropType = &TypeInfoOf<Value>, .Access = std::move(access)});
    FLast = property.get();
    FProperties.push_back(std::move(property));
    return std::move(*this);
  }

  // What can be made follows from the constructors that the class offers.
  static TTypeInfo::TMakers Makers() {
    TTypeInfo::TMakers makers;
    if constexpr (std::is_base_of_v<TComponent, Class>) {
      if constexpr (std::is_constructible_v<Class, TComponent*>)
        makers.Component = [](TComponent* owner) -> TComponent* { return new Class(owner); };
    } else if constexpr (std::is_base_of_v<TCollectionItem, Class>) {
      if constexpr (std::is_constructible_v<Class, TCollection*>)
        makers.Item = [](TCollection* list) -> TCollectionItem* { return new Class(list); };
    } else if constexpr (std::is_default_constructible_v<Class>) {
      makers.Plain = []() -> TPersistent* { return new Class(); };
    }
    return makers;
  }

  std::string FName;
  const TTypeInfo* FParent;
  std::vector<std::unique_ptr<TPropInfo>> FProperties;
  std::vector<TLabel> FLabels;
  TPropInfo* FLast = nullptr;
};

template <class Class>
TPublisher<Class> Publish(std::string name) {
  return TPublisher<Class>(std::move(name), nullptr);
}
template <class Class>
TPublisher<Class> Publish(std::string name, const TTypeInfo& parent) {
  return TPublisher<Class>(std::move(name), &parent);
}

}  // namespace wrenfold
