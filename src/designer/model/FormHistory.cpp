#include "designer/model/FormHistory.h"

#include <algorithm>
#include <iterator>

#include "platform/core/stream/Bytes.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::size_t Nowhere = static_cast<std::size_t>(-1);

std::size_t PropertyIndex(const TDesignComponent& component, std::string_view path) {
  const auto& properties = component.Properties();
  const auto found = std::ranges::find_if(
      properties, [&](const TDesignProperty& each) { return EqualText(each.Path, path); });
  return found != properties.end() ? static_cast<std::size_t>(found - properties.begin()) : Nowhere;
}

// The component and all that is inside it, parents first.
std::vector<TDesignComponent*> WithContents(TDesignComponent& component) {
  std::vector<TDesignComponent*> all{&component};
  for (std::size_t i = 0; i < all.size(); ++i)
    all.insert(all.end(), all[i]->Children().begin(), all[i]->Children().end());
  return all;
}

TDesignComponent* ParentOf(const TDesignComponent& component) {
  return dynamic_cast<TDesignComponent*>(component.GetParentComponent());
}

}  // namespace

std::size_t ChildIndexOf(const TDesignComponent& component) {
  const TDesignComponent* parent = ParentOf(component);
  if (parent == nullptr) return 0;
  const auto found = std::ranges::find(parent->Children(), &component);
  return static_cast<std::size_t>(found - parent->Children().begin());
}

void TFormHistory::StartMove(TMove move) {
  FMove = move;
  FRenamed.clear();
  FAdded.clear();
  FRemoved.clear();
}

void TFormHistory::Begin(std::string name, bool continues) {
  FOpen = TStep{std::move(name), {}, continues};
  StartMove(TMove::Done);
}

void TFormHistory::Cancel() {
  const TStep step = std::move(*FOpen);
  FOpen.reset();
  for (auto change = step.Changes.rbegin(); change != step.Changes.rend(); ++change)
    Apply(*change, false);
  for (const TChange& change : step.Changes)
    if (change.Kind == TKind::Add) End(change);
  StartMove(TMove::Done);
}

bool TFormHistory::Joins(const TStep& step) const {
  return step.Continues && FDone > 0 && FDone == FSteps.size() && !AtSaved() &&
         FSteps.back().Name == step.Name;
}

void TFormHistory::Commit() {
  TStep step = std::move(*FOpen);
  FOpen.reset();
  if (step.Changes.empty()) return;
  if (Joins(step)) {
    std::ranges::move(step.Changes, std::back_inserter(FSteps.back().Changes));
    return Changed();
  }
  DropRedo();
  FSteps.push_back(std::move(step));
  FDone = FSteps.size();
  Changed();
}

void TFormHistory::DropRedo() {
  for (std::size_t i = FSteps.size(); i > FDone; --i)
    for (const TChange& change : FSteps[i - 1].Changes)
      if (change.Kind == TKind::Add) End(change);
  FSteps.resize(FDone);
  if (FSaved > FDone) FSaved = Nowhere;
}

void TFormHistory::End(const TChange& change) {
  delete change.Component;
}

void TFormHistory::Clear() {
  DropRedo();
  for (const TStep& step : FSteps)
    for (const TChange& change : step.Changes)
      if (change.Kind == TKind::Remove) End(change);
  FSteps.clear();
  FSaved = AtSaved() ? 0 : Nowhere;
  FDone = 0;
}

void TFormHistory::Record(TChange change) {
  Apply(change, true);
  FOpen->Changes.push_back(std::move(change));
}

void TFormHistory::SetValue(TDesignComponent& component, std::string_view path,
                            std::string_view value) {
  const std::string_view old = component.FindValue(path);
  if (old == value) return;
  TChange change{TKind::Value, &component, std::string(path), {}, {}};
  change.IndexBefore = PropertyIndex(component, path);
  if (change.IndexBefore == Nowhere) change.IndexBefore = component.Properties().size();
  if (!old.empty()) change.Before = old;
  if (!value.empty()) change.After = value;
  Record(std::move(change));
}

void TFormHistory::SetInteger(TDesignComponent& component, std::string_view path,
                              std::int64_t value) {
  TByteWriter bytes;
  bytes.WriteIntegerValue(value);
  SetValue(component, path, bytes.View());
}

TDesignComponent& TFormHistory::Add(std::string stream, TDesignComponent& parent) {
  TDesignComponent* added = AddDesignComponent(std::move(stream), FRoot, parent);
  TChange change{TKind::Add, added, {}, {}, {}};
  change.Parent = &parent;
  change.IndexAfter = ChildIndexOf(*added);
  FOpen->Changes.push_back(std::move(change));
  FAdded.push_back(added);
  return *added;
}

void TFormHistory::Rename(TDesignComponent& component, const std::string& name) {
  if (component.Name() == name) return;
  TChange change{TKind::Name, &component, {}, {}, {}};
  change.Before = component.Name();
  change.After = name;
  Record(std::move(change));
}

void TFormHistory::PutName(const TChange& change, const std::string& name) {
  const std::string before = change.Component->Name();
  change.Component->SetName(name);
  FRenamed.push_back({change.Component, before});
}

void TFormHistory::Remove(TDesignComponent& component) {
  TChange change{TKind::Remove, &component, {}, {}, {}};
  change.Parent = ParentOf(component);
  change.IndexBefore = ChildIndexOf(component);
  Record(std::move(change));
}

void TFormHistory::SetChildIndex(TDesignComponent& component, std::size_t index) {
  TChange change{TKind::Index, &component, {}, {}, {}};
  change.IndexBefore = ChildIndexOf(component);
  change.IndexAfter = index;
  if (change.IndexBefore != index) Record(std::move(change));
}

void TFormHistory::PutValue(const TChange& change, const std::optional<std::string>& value) {
  if (!value.has_value()) {
    change.Component->RemoveValue(change.Path);
  } else if (change.Component->FindValue(change.Path).empty()) {
    change.Component->InsertValue(change.IndexBefore, change.Path, *value);
  } else {
    change.Component->SetValue(change.Path, *value);
  }
}

void TFormHistory::Attach(TDesignComponent& component, TDesignComponent& parent,
                          std::size_t index) {
  for (TDesignComponent* each : WithContents(component)) FRoot.InsertComponent(each);
  component.SetParentComponent(&parent);
  component.SetChildIndex(index);
  FAdded.push_back(&component);
}

void TFormHistory::Detach(TDesignComponent& component) {
  FRemoved.push_back(&component);
  component.SetParentComponent(nullptr);
  for (TDesignComponent* each : WithContents(component)) FRoot.RemoveComponent(each);
}

void TFormHistory::Apply(const TChange& change, bool forward) {
  switch (change.Kind) {
    case TKind::Value:
      return PutValue(change, forward ? change.After : change.Before);
    case TKind::Name:
      return PutName(change, forward ? *change.After : *change.Before);
    case TKind::Add:
      return forward ? Attach(*change.Component, *change.Parent, change.IndexAfter)
                     : Detach(*change.Component);
    case TKind::Remove:
      return forward ? Detach(*change.Component)
                     : Attach(*change.Component, *change.Parent, change.IndexBefore);
    case TKind::Index:
      return change.Component->SetChildIndex(forward ? change.IndexAfter : change.IndexBefore);
  }
}

void TFormHistory::Undo() {
  if (!CanUndo()) return;
  StartMove(TMove::Undone);
  const TStep& step = FSteps[--FDone];
  for (auto change = step.Changes.rbegin(); change != step.Changes.rend(); ++change)
    Apply(*change, false);
  Changed();
}

void TFormHistory::Redo() {
  if (!CanRedo()) return;
  StartMove(TMove::Redone);
  for (const TChange& change : FSteps[FDone++].Changes) Apply(change, true);
  Changed();
}

}  // namespace wrenfold
