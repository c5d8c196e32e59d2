// Makes and takes back changes of properties.
#include "host/documents/FormEdits.h"

#include "designer/model/NameReferences.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

TDesignComponent* TFormEdits::Find(const std::string& name) const {
  if (EqualText(FRoot.Name(), name)) return &FRoot;
  return dynamic_cast<TDesignComponent*>(FRoot.FindComponent(name));
}

TFormChange TFormEdits::Change(const TDesignComponent& component, std::string_view path,
                               std::optional<std::string> value) {
  TFormChange change{component.Name(), std::string(path), {}, std::move(value), 0};
  if (path == NameOfComponent) {
    change.Before = component.Name();
    return change;
  }
  for (const TDesignProperty& property : component.Properties()) {
    if (EqualText(property.Path, path)) {
      change.Before = property.Value;
      return change;
    }
    ++change.Place;
  }
  return change;
}

void TFormEdits::Apply(const TFormChange& change) {
  TDesignComponent* component = Find(change.Component);
  if (component == nullptr) return;
  if (change.Path == NameOfComponent) Rename(*component, change.After.value_or(""));
  else FHistory.SetValue(*component, change.Path, change.After.value_or(""));
}

// What refers to the component by its name in the form goes on doing so.
void TFormEdits::Rename(TDesignComponent& component, const std::string& name) {
  const std::string before = component.Name();
  FHistory.Rename(component, name);
  if (before.empty() || name.empty()) return;
  std::vector<TDesignComponent*> all{&FRoot};
  for (std::size_t i = 0; i < all.size(); ++i) {
    all.insert(all.end(), all[i]->Children().begin(), all[i]->Children().end());
    // A copy: setting a value may move the properties.
    const std::vector<TDesignProperty> properties = all[i]->Properties();
    for (const TDesignProperty& property : properties)
      if (auto value = ValueWithName(property.Value, before, name))
        FHistory.SetValue(*all[i], property.Path, *value);
  }
}

void TFormEdits::Do(const std::vector<TFormChange>& changes) {
  FHistory.Begin(changes.empty() ? "" : "Change of " + changes[0].Path);
  try {
    for (const TFormChange& change : changes) Apply(change);
  } catch (...) {
    FHistory.Cancel();
    throw;
  }
  FHistory.Commit();
}

// As the stroke made them first, whichever way they went now.
const std::vector<TFormChange>& TFormEdits::Renamed(bool forward) {
  FRenamed.clear();
  for (const auto& [component, before] : FHistory.Renamed()) {
    const std::string& first = forward ? before : component->Name();
    const std::string& second = forward ? component->Name() : before;
    FRenamed.push_back({first, NameOfComponent, first, second, 0});
  }
  return FRenamed;
}

const std::vector<TFormChange>& TFormEdits::Undo() {
  FRenamed.clear();
  if (!CanUndo()) return FRenamed;
  FHistory.Undo();
  return Renamed(false);
}

const std::vector<TFormChange>& TFormEdits::Redo() {
  FRenamed.clear();
  if (!CanRedo()) return FRenamed;
  FHistory.Redo();
  return Renamed(true);
}

}  // namespace wrenfold
