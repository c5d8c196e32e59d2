#include "platform/core/model/Persistent.h"

#include <algorithm>

#include "platform/core/system/ByteCursor.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

bool IsIdentStart(char c) {
  return (FoldChar(c) >= 'a' && FoldChar(c) <= 'z') || c == '_';
}
bool IsIdentPart(char c) {
  return IsIdentStart(c) || (c >= '0' && c <= '9');
}

}  // namespace

bool IsValidIdent(std::string_view name) {
  return !name.empty() && IsIdentStart(name[0]) &&
         std::all_of(name.begin(), name.end(), IsIdentPart);
}

std::string TObject::ClassName() const {
  return ClassNameOf(typeid(*this));
}

const TTypeInfo& TPersistent::ClassInfo() {
  static const TTypeInfo info = Publish<TPersistent>("TPersistent");
  return info;
}

void TPersistent::Assign(const TPersistent* source) {
  if (source != nullptr) source->AssignTo(this);
  else throw EConvertError("Cannot assign nil to a " + ClassName());
}

void TPersistent::AssignTo(TPersistent* destination) const {
  throw EConvertError("Cannot assign a " + ClassName() + " to a " + destination->ClassName());
}

void TPersistent::DefineProperties(TFiler&) {}

std::string TPersistent::GetNamePath() const {
  const TPersistent* owner = GetOwner();
  if (owner == nullptr) return ClassName();
  const std::string path = owner->GetNamePath();
  return path.empty() ? ClassName() : path + '.' + ClassName();
}

bool TPersistent::TakeUnknownProperty(std::string_view, std::string_view) {
  return false;
}

const TTypeInfo& TComponent::ClassInfo() {
  static const TTypeInfo info = Publish<TComponent>("TComponent", TPersistent::ClassInfo())
                                    .Prop("Name", &TComponent::Name, &TComponent::SetName)
                                    .NotStored()
                                    .Prop("Tag", &TComponent::Tag)
                                    .Default(0);
  return info;
}

TComponent::TComponent(TComponent* owner) {
  if (owner != nullptr) owner->InsertComponent(this);
}

TComponent::~TComponent() {
  SetComponentState(csDestroying, true);
  // Who is told may take others of the list away.
  while (!FFreeNotifies.empty()) {
    TComponent* other = FFreeNotifies.back();
    other->ForgetNotification(this);
    other->Notification(this, opRemove);
  }
  DestroyComponents();
  if (FOwner != nullptr) FOwner->RemoveComponent(this);
}

void TComponent::SetName(const std::string& name) {
  if (name == FName) return;
  if (!name.empty() && !IsValidIdent(name))
    throw EComponentError('"' + name + "\" is not a valid component name");
  if (name.size() > MaxName)
    throw EComponentError("A component name of " + std::to_string(name.size()) +
                          " bytes, at most " + std::to_string(MaxName) +
                          " fit: " + name.substr(0, 40) + "...");
  if (FOwner != nullptr && !name.empty()) {
    const TComponent* other = FOwner->FindComponent(name);
    if (other != nullptr && other != this)
      throw EComponentError("A component named " + name + " already exists");
  }
  const bool isFirst = FName.empty();
  FName = name;
  if (FOwner == nullptr || FOwner->FNames == nullptr) return;
  if (isFirst) FOwner->FNames->try_emplace(UpperCase(FName), this);
  else FOwner->FNames.reset();
}

void TComponent::TakeName(std::string name) {
  FName = std::move(name);
  if (FOwner != nullptr) FOwner->FNames.reset();
}

TComponent* TComponent::FindComponent(std::string_view name) const {
  if (name.empty()) return nullptr;
  // Forms name their components one after the other: a walk for each would take the square of time.
  constexpr std::size_t many = 32;
  if (FComponents.size() > many) {
    if (FNames == nullptr) {
      FNames = std::make_unique<std::unordered_map<std::string, TComponent*>>();
      for (TComponent* component : FComponents)
        if (!component->FName.empty()) FNames->try_emplace(UpperCase(component->FName), component);
    }
    const auto found = FNames->find(UpperCase(name));
    return found == FNames->end() ? nullptr : found->second;
  }
  const auto found = std::find_if(FComponents.begin(), FComponents.end(),
                                  [name](const auto* c) { return EqualText(c->FName, name); });
  return found == FComponents.end() ? nullptr : *found;
}

void TComponent::InsertComponent(TComponent* component) {
  if (component->FOwner == this) return;
  if (FindComponent(component->FName) != nullptr)
    throw EComponentError("A component named " + component->FName + " already exists");
  if (component->FOwner != nullptr) component->FOwner->RemoveComponent(component);
  component->FOwner = this;
  FComponents.push_back(component);
  if (FNames != nullptr && !component->FName.empty())
    FNames->try_emplace(UpperCase(component->FName), component);
  Notification(component, opInsert);
}

void TComponent::RemoveComponent(TComponent* component) {
  if (component->FOwner != this) return;
  Notification(component, opRemove);
  component->FOwner = nullptr;
  if (!component->FName.empty()) FNames.reset();
  // Components mostly go in reverse order of their coming.
  const auto found = std::find(FComponents.rbegin(), FComponents.rend(), component);
  FComponents.erase(std::next(found).base());
}

int TComponent::ComponentIndex() const {
  if (FOwner == nullptr) return -1;
  const auto& all = FOwner->FComponents;
  return static_cast<int>(std::find(all.begin(), all.end(), this) - all.begin());
}

void TComponent::DestroyComponents() {
  while (!FComponents.empty()) delete FComponents.back();
}

void TComponent::Notification(TComponent* component, TOperation operation) {
  if (operation == opRemove) ForgetNotification(component);
}

// Both sides know of each other, so that whichever goes first takes itself out of the other.
void TComponent::FreeNotification(TComponent* component) {
  if (component == nullptr || component == this) return;
  if (std::find(FFreeNotifies.begin(), FFreeNotifies.end(), component) != FFreeNotifies.end())
    return;
  FFreeNotifies.push_back(component);
  component->FFreeNotifies.push_back(this);
}

void TComponent::ForgetNotification(TComponent* component) {
  std::erase(FFreeNotifies, component);
  std::erase(component->FFreeNotifies, this);
}

void TComponent::SetComponentState(TComponentState state, bool on) {
  if (on) FState.Include(state);
  else FState.Exclude(state);
}

void TComponent::GetChildren(const std::function<void(TComponent&)>&, TComponent*) {}

void TComponent::SetParentComponent(TComponent*) {}

std::uint8_t TComponent::FilerFlags(std::int32_t&) const {
  return 0;
}

}  // namespace wrenfold
