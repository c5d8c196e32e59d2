// The registry of expert classes, one for each group.
#pragma once

#include <array>
#include <string>

#include "platform/core/model/TypeInfo.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// Every failure of the expert manager.
class EExpMngError : public Exception {
 public:
  using Exception::Exception;
};

struct TExpertClass {
  TClass Class = nullptr;  // a descendant of TCustomExpert; null: an empty slot
  std::string Name;
  int DescriptionId = -1;  // number of the text shown for the expert; -1: the name itself
};

inline constexpr int ExpertGroups = 100;
// Group 1 is slot 0.
using TExpertRegistry = std::array<TExpertClass, ExpertGroups>;

// Made on first use, all slots empty.
const TExpertRegistry& ExpertRegistry();
void ClearExpertRegistry();

// Groups count from 1 and are the order in which experts are made. Raises EExpMngError for a group
// outside 1..100 or one that is taken, and for a class or name that is registered already. An
// empty name is always taken: the empty slots have it.
void RegisterExpClass(const TTypeInfo& expClass, int group, const std::string& name,
                      int descriptionId);

}  // namespace wrenfold
