#include "platform/core/Exceptions.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>

namespace wrenfold {

std::string Exception::ClassName() const {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(typeid(*this).name(), nullptr, nullptr, &status), &std::free);
  const std::string full = status == 0 ? text.get() : typeid(*this).name();
  const auto colon = full.rfind("::");
  return colon == std::string::npos ? full : full.substr(colon + 2);
}

}  // namespace wrenfold
