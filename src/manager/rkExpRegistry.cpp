// The registry of expert classes.
#include "manager/rkExpRegistry.h"

#include "locale/rkLocale.h"

namespace wrenfold {

namespace {

TExpertRegistry& Slots() {
  static TExpertRegistry registered;
  return registered;
}

}  // namespace

const TExpertRegistry& ExpertRegistry() {
  return Slots();
}

void ClearExpertRegistry() {
  Slots() = {};
}

void RegisterExpClass(const TTypeInfo& expClass, int group, const std::string& name,
                      int descriptionId) {
  if (group < 1 || group > ExpertGroups)
    throw EExpMngError("List index out of bounds (" + std::to_string(group) + ")");
  TExpertClass& slot = Slots()[static_cast<std::size_t>(group - 1)];
  if (slot.Class != nullptr) throw EExpMngError(LocaleFormat(sExpertsGroupDefined, group));
  for (const TExpertClass& other : Slots()) {
    if (other.Class == &expClass)
      throw EExpMngError(LocaleFormat(sExpertsClassDefined, expClass.Name()));
    if (other.Name == name) throw EExpMngError(LocaleFormat(sExpertsNameDefined, name));
  }
  slot = {&expClass, name, descriptionId};
}

}  // namespace wrenfold
