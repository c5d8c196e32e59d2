// Which classes an object's properties hold.
#pragma once

#include <string_view>
#include <vector>

#include "platform/core/model/ClassRegistry.h"
#include "platform/core/model/Persistent.h"

namespace wrenfold {

using TRegisterClasses = std::vector<TClass>;

// Registers the classes of the objects that the published properties hold, so that a reader can
// make them by name. Answers those that were not registered before, to be handed back.
TRegisterClasses RegisterFieldClasses(const TPersistent& object);
void UnRegisterFieldClasses(const TRegisterClasses& classes);
// The class of the object that the property holds, or that it is declared with when it holds none;
// null when there is no object property of that name.
TClass GetFieldClass(const TPersistent& object, std::string_view name);

}  // namespace wrenfold
