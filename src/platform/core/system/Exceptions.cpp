#include "platform/core/system/Exceptions.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace wrenfold {

std::string Exception::WithoutZeros(std::string message) {
  for (auto zero = message.find('\0'); zero != message.npos; zero = message.find('\0', zero))
    message.replace(zero, 1, "\\0");
  return message;
}

std::string ClassNameOf(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  std::string name = status == 0 ? text.get() : type.name();
  constexpr std::string_view nesting = "std::_Nested_exception<";
  if (name.starts_with(nesting))
    name = name.substr(nesting.size(), name.size() - nesting.size() - 1);
  const auto colon = name.rfind("::");
  return colon == std::string::npos ? name : name.substr(colon + 2);
}

}  // namespace wrenfold
