#include "platform/core/model/NamePath.h"

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

TComponent* Step(TComponent* root, TComponent* current, std::string_view name) {
  TComponent* owned = current->FindComponent(name);
  if (owned != nullptr || current != root) return owned;
  return EqualText(name, "Owner") || EqualText(name, root->Name()) ? root : nullptr;
}

}  // namespace

TAnalysisFindings AnalyseNamePath(TComponent* root, std::string_view path) {
  TAnalysisFindings findings{root, path};
  while (findings.Component != nullptr && !findings.Rest.empty()) {
    const std::string_view name = findings.Rest.substr(0, findings.Rest.find('.'));
    TComponent* next = Step(root, findings.Component, name);
    if (next == nullptr) return findings;
    findings.Component = next;
    findings.Rest.remove_prefix(std::min(name.size() + 1, findings.Rest.size()));
  }
  return findings;
}

TComponent* FindComponentEx(TComponent* root, std::string_view path) {
  const TAnalysisFindings findings = AnalyseNamePath(root, path);
  return findings.Rest.empty() && !path.empty() ? findings.Component : nullptr;
}

}  // namespace wrenfold
