#include "platform/core/model/ClassRegistry.h"

#include <map>
#include <string>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

struct TNameLess {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const {
    return CompareText(left, right) < 0;
  }
};

using TRegistry = std::map<std::string, TClass, TNameLess>;

TRegistry& Registry() {
  static TRegistry registry;
  return registry;
}

}  // namespace

void RegisterClass(const TTypeInfo& info) {
  Registry().insert_or_assign(info.Name(), &info);
}

void UnRegisterClass(const TTypeInfo& info) {
  const auto found = Registry().find(info.Name());
  if (found != Registry().end() && found->second == &info) Registry().erase(found);
}

TClass GetClass(std::string_view name) {
  const auto found = Registry().find(name);
  return found == Registry().end() ? nullptr : found->second;
}

const TTypeInfo& FindClass(std::string_view name) {
  const TClass found = GetClass(name);
  if (found == nullptr) throw EClassNotFound("Class " + std::string(name) + " not found");
  return *found;
}

}  // namespace wrenfold
