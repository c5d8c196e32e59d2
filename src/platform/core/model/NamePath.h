// Where a dotted path of component names leads.
#pragma once

#include <string_view>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

// The component that the path leads to and what is left of the path behind it.
struct TAnalysisFindings {
  TComponent* Component = nullptr;
  std::string_view Rest;
};
// Goes from the root (null: nowhere) as far as names are known. The root answers to its own name
// and to "Owner" where none of its components has that name.
TAnalysisFindings AnalyseNamePath(TComponent* root, std::string_view path);

// The component at the end of the path; null when a name is unknown.
TComponent* FindComponentEx(TComponent* root, std::string_view path);

}  // namespace wrenfold
