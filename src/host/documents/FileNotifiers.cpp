// Calls the notifiers in the order of their coming.
#include "host/documents/FileNotifiers.h"

#include <utility>

namespace wrenfold {

int TFileNotifiers::Add(IOTAIDENotifier* notifier) {
  FNotifiers.emplace_back(notifier);
  return static_cast<int>(FNotifiers.size()) - 1;
}

void TFileNotifiers::Remove(int index) {
  if (index >= 0 && index < static_cast<int>(FNotifiers.size())) FNotifiers[index] = nullptr;
}

bool TFileNotifiers::Notify(TOTAFileNotification code, const std::string& fileName) {
  bool cancel = false;
  for (std::size_t i = 0; i < FNotifiers.size(); ++i)
    if (const TIntf<IOTAIDENotifier> held = FNotifiers[i])
      held->FileNotification(code, fileName, cancel);
  return !cancel;
}

void TFileNotifiers::End() {
  for (std::size_t i = 0; i < FNotifiers.size(); ++i)
    if (const auto notifier = std::exchange(FNotifiers[i], nullptr)) notifier->Destroyed();
  FNotifiers.clear();
}

}  // namespace wrenfold
