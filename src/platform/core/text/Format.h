// Text formatting with the '%' patterns of the suite's numbered texts.
#pragma once

#include <concepts>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace wrenfold {

// One value for a placeholder. Text is referred to, not copied.
class TFormatArg {
 public:
  using Value = std::variant<int, long long, unsigned long long, double, std::string_view>;

  template <std::integral T>
  TFormatArg(T value) : FValue(Widen(value)) {}
  template <std::floating_point T>
  TFormatArg(T value) : FValue(static_cast<double>(value)) {}
  template <std::convertible_to<std::string_view> T>
  TFormatArg(const T& text) : FValue(std::string_view(text)) {}

  const Value& Get() const { return FValue; }

 private:
  // Signed values keep their width, which decides how a negative one looks in hexadecimal.
  template <std::integral T>
  static Value Widen(T value) {
    if constexpr (std::is_unsigned_v<T>) return static_cast<unsigned long long>(value);
    else if constexpr (sizeof(T) <= sizeof(int)) return static_cast<int>(value);
    else return static_cast<long long>(value);
  }

  Value FValue;
};

// Replaces the placeholders of `pattern` by `args`, in order. A placeholder is
//   %[-][0][width][.precision]letter
// with the letters d (signed), u (unsigned), x (hexadecimal, upper-case digits), s (text; precision
// cuts it), f (fixed; two decimals unless told otherwise), e, g (15 significant digits unless told
// otherwise). "%%" is one '%'. The decimal separator is always '.'.
// Raises EFormatError, naming the pattern and the argument's number (from 1), when the pattern is
// malformed, a value is missing, has the wrong type, or is left over.
std::string FormatArgs(std::string_view pattern, std::span<const TFormatArg> args);

template <typename... Args>
std::string Format(std::string_view pattern, const Args&... args) {
  const std::initializer_list<TFormatArg> list{TFormatArg(args)...};
  return FormatArgs(pattern, {list.begin(), list.size()});
}

// The placeholders of `pattern` as written, in order ("%%" left out). Two texts with equal lists
// take the same values. Raises EFormatError when the pattern is malformed.
std::string FormatSignature(std::string_view pattern);

}  // namespace wrenfold
