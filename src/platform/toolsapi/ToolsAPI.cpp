#include "platform/toolsapi/ToolsAPI.h"

#include <utility>

namespace wrenfold {

IInterface* BorlandIDEServices = nullptr;

namespace {

TRegisterWizardProc RegisterWizardProc = nullptr;

}  // namespace

bool RegisterPackageWizard(IOTAWizard* wizard) {
  if (RegisterWizardProc == nullptr || wizard == nullptr) return false;
  RegisterWizardProc(wizard);
  return true;
}

TRegisterWizardProc SetRegisterWizardProc(TRegisterWizardProc procedure) {
  return std::exchange(RegisterWizardProc, procedure);
}

}  // namespace wrenfold
