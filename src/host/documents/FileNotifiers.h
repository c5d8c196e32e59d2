// Those who are told of what happens to files and projects of the whole environment.
#pragma once

#include <string>
#include <vector>

#include "platform/toolsapi/ToolsAPI.h"

namespace wrenfold {

// Notifiers by index. An index stays valid when others are removed; a notifier may remove itself.
class TFileNotifiers {
 public:
  int Add(IOTAIDENotifier* notifier);
  void Remove(int index);
  // False when one of them wants to stop the operation.
  bool Notify(TOTAFileNotification code, const std::string& fileName);
  // Tells all of the end and forgets them.
  void End();

 private:
  std::vector<TIntf<IOTAIDENotifier>> FNotifiers;
};

}  // namespace wrenfold
