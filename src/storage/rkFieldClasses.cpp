#include "storage/rkFieldClasses.h"

namespace wrenfold {

namespace {

const TTypeInfo& HeldClass(const TPersistent& object, const TPropInfo& property) {
  const TPersistent* held = property.Access->GetObject(object);
  return held != nullptr ? held->GetClassInfo() : *property.PropType;
}

}  // namespace

TRegisterClasses RegisterFieldClasses(const TPersistent& object) {
  TRegisterClasses registered;
  for (const TPropInfo* property : object.GetClassInfo().Properties()) {
    if (property->Kind() != tkClass) continue;
    const TTypeInfo& held = HeldClass(object, *property);
    if (GetClass(held.Name()) != nullptr) continue;
    RegisterClass(held);
    registered.push_back(&held);
  }
  return registered;
}

void UnRegisterFieldClasses(const TRegisterClasses& classes) {
  for (const TClass info : classes) UnRegisterClass(*info);
}

TClass GetFieldClass(const TPersistent& object, std::string_view name) {
  const TPropInfo* property = object.GetClassInfo().FindProperty(name);
  if (property == nullptr || property->Kind() != tkClass) return nullptr;
  return &HeldClass(object, *property);
}

}  // namespace wrenfold
