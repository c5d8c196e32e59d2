#include "storage/rkFieldClasses.h"

#include "platform/core/SysUtils.h"

namespace wrenfold {

namespace {

const TTypeInfo& HeldClass(const TPersistent& object, const TPropInfo& property) {
  const TPersistent* held = property.Access->GetObject(object);
  return held != nullptr ? held->GetClassInfo() : *property.PropType;
}

// The next component of a path; the root answers to its own name as well.
TComponent* Step(TComponent* root, TComponent* current, std::string_view name) {
  TComponent* owned = current->FindComponent(name);
  if (owned != nullptr || current != root) return owned;
  return EqualText(name, "Owner") || EqualText(name, root->Name()) ? root : nullptr;
}

}  // namespace

TRegisterClasses RegisterFieldClasses(const TPersistent& object) {
  TRegisterClasses registered;
  for (const TPropInfo* property : object.GetClassInfo().Properties()) {
    if (property->Kind() != tkClass) continue;
    const TTypeInfo& held = HeldClass(object, *property);
    if (GetClass(held.Name()) != nullptr) continue;
    RegisterClass(held);
    registered.push_back(&held);
  }
  return registered;
}

void UnRegisterFieldClasses(const TRegisterClasses& classes) {
  for (const TClass info : classes) UnRegisterClass(*info);
}

TClass GetFieldClass(const TPersistent& object, std::string_view name) {
  const TPropInfo* property = object.GetClassInfo().FindProperty(name);
  if (property == nullptr || property->Kind() != tkClass) return nullptr;
  return &HeldClass(object, *property);
}

TComponent* FindComponentEx(TComponent* root, std::string_view path) {
  const TAnalysisFindings findings = AnalyseNamePath(root, path);
  return findings.Rest.empty() && !path.empty() ? findings.Component : nullptr;
}

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

}  // namespace wrenfold
