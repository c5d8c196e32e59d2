#include "storage/rkAdvReader.h"

#include "locale/rkLocale.h"
#include "platform/core/model/Dialogs.h"

namespace wrenfold {

TPersistent* NamingRoot(TPersistent& object) {
  const auto* component = dynamic_cast<const TComponent*>(&object);
  TComponent* owner = component != nullptr ? component->Owner() : nullptr;
  return owner != nullptr && !owner->Name().empty() ? owner : &object;
}

bool TAdvReader::Error(const std::string& message) {
  if (IgnoreErrors) return true;
  if (FRefused) return false;
  const std::string question = LocaleFormat(sContinueLoading, "\r\n", message, "\r\n");
  FRefused = LocaleMessageDlg(question, mtWarning, {mbYes, mbNo}) != mbYes;
  return !FRefused;
}

}  // namespace wrenfold
