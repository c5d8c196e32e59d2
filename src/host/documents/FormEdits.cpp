// Makes and takes back changes of properties.
#include "host/documents/FormEdits.h"

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

const std::vector<TFormChange> Nothing;

}  // namespace

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

void TFormEdits::Apply(const TFormChange& change, bool forward) {
  const std::optional<std::string>& value = forward ? change.After : change.Before;
  const bool renames = change.Path == NameOfComponent;
  TDesignComponent* component =
      Find(renames && !forward ? change.After.value_or("") : change.Component);
  if (component == nullptr) return;
  if (renames) {
    component->SetName(value.value_or(""));
  } else if (!value) {
    component->RemoveValue(change.Path);
  } else if (component->FindValue(change.Path).empty()) {
    component->InsertValue(change.Place, change.Path, *value);
  } else {
    component->SetValue(change.Path, *value);
  }
}

void TFormEdits::Do(std::vector<TFormChange> changes) {
  std::size_t made = 0;
  try {
    for (; made < changes.size(); ++made) Apply(changes[made], true);
  } catch (...) {
    while (made > 0) Apply(changes[--made], false);
    throw;
  }
  if (FSaved > FDone) FSaved = static_cast<std::size_t>(-1);
  FStrokes.resize(FDone);
  FStrokes.push_back(std::move(changes));
  ++FDone;
}

const std::vector<TFormChange>& TFormEdits::Undo() {
  if (!CanUndo()) return Nothing;
  const std::vector<TFormChange>& stroke = FStrokes[--FDone];
  for (auto change = stroke.rbegin(); change != stroke.rend(); ++change) Apply(*change, false);
  return stroke;
}

const std::vector<TFormChange>& TFormEdits::Redo() {
  if (!CanRedo()) return Nothing;
  const std::vector<TFormChange>& stroke = FStrokes[FDone++];
  for (const TFormChange& change : stroke) Apply(change, true);
  return stroke;
}

}  // namespace wrenfold
