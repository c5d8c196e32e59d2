// The registry of classes that readers can make by name.
#pragma once

#include <string_view>
#include <vector>

#include "platform/core/model/TypeInfo.h"

namespace wrenfold {

// Registering a record again, or another record under a name that is there, replaces it. Records
// made at run time must be taken out before they are destroyed.
void RegisterClass(const TTypeInfo& info);
void UnRegisterClass(const TTypeInfo& info);
// The class of that name (letter case ignored), or null.
TClass GetClass(std::string_view name);
// Like GetClass; raises EClassNotFound naming the class.
const TTypeInfo& FindClass(std::string_view name);

}  // namespace wrenfold
