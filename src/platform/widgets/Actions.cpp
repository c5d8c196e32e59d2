#include "platform/widgets/Actions.h"

#include <algorithm>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

std::vector<TActionList*>& Lists() {
  static std::vector<TActionList*> lists;
  return lists;
}

template <class Item>
bool Holds(const std::vector<Item>& items, Item item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

}  // namespace

TActionClient::~TActionClient() {
  if (FAction != nullptr) std::erase(FAction->FClients, this);
}

void TActionClient::SetAction(TAction* action) {
  if (action == FAction) return;
  if (FAction != nullptr) std::erase(FAction->FClients, this);
  FAction = action;
  if (FAction != nullptr) FAction->FClients.push_back(this);
  ActionChanged();
}

const TTypeInfo& TAction::ClassInfo() {
  static const TTypeInfo info =
      Publish<TAction>("TAction", TComponent::ClassInfo())
          .Prop("Category", &TAction::Category, &TAction::SetCategory)
          .Prop("Caption", &TAction::Caption, &TAction::SetCaption)
          .Prop("Checked", &TAction::Checked, &TAction::SetChecked)
          .Default(false)
          .Prop("Enabled", &TAction::Enabled, &TAction::SetEnabled)
          .Default(true)
          .Prop("Hint", &TAction::Hint, &TAction::SetHint)
          .Prop("ImageIndex", &TAction::ImageIndex, &TAction::SetImageIndex)
          .Default(-1)
          .Prop("ShortCut", &TAction::ShortCut, &TAction::SetShortCut)
          .Default(0)
          .Prop("Visible", &TAction::Visible, &TAction::SetVisible)
          .Default(true)
          .Prop("OnExecute", &TAction::OnExecute)
          .Prop("OnUpdate", &TAction::OnUpdate);
  return info;
}

TAction::~TAction() {
  SetActionList(nullptr);
  for (TActionClient* client : std::exchange(FClients, {})) {
    client->FAction = nullptr;
    client->ActionChanged();
  }
}

void TAction::SetActionList(TActionList* list) {
  if (list == FActionList) return;
  if (FActionList != nullptr) std::erase(FActionList->FActions, this);
  FActionList = list;
  if (list != nullptr) list->FActions.push_back(this);
}

void TAction::Changed() {
  for (TActionClient* client : std::vector(FClients))
    if (Holds(FClients, client)) client->ActionChanged();
}

bool TAction::Execute() {
  if (!OnExecute) return false;
  OnExecute(this);
  return true;
}

bool TAction::Update() {
  if (!OnUpdate) return false;
  OnUpdate(this);
  return true;
}

QIcon TAction::Icon() const {
  const TImageList* images = FActionList == nullptr ? nullptr : FActionList->Images();
  return images == nullptr ? QIcon() : images->Icon(FImageIndex);
}

const TTypeInfo& TActionList::ClassInfo() {
  static const TTypeInfo info = Publish<TActionList>("TActionList", TComponent::ClassInfo());
  return info;
}

TActionList::TActionList(TComponent* owner) : TComponent(owner) {
  Lists().push_back(this);
}

TActionList::~TActionList() {
  std::erase(Lists(), this);
  for (TAction* action : FActions) action->FActionList = nullptr;
}

const std::vector<TActionList*>& TActionList::All() {
  return Lists();
}

TAction* TActionList::Actions(int index) const {
  if (index < 0 || index >= ActionCount())
    throw EListError("Action index out of bounds (" + IntToStr(index) + ")");
  return FActions[static_cast<std::size_t>(index)];
}

TAction* TActionList::FindAction(std::string_view name) const {
  const auto found = std::find_if(FActions.begin(), FActions.end(), [name](const auto* action) {
    return EqualText(action->Name(), name);
  });
  return found == FActions.end() ? nullptr : *found;
}

void TActionList::RemoveAction(TAction* action) {
  if (action->ActionList() == this) action->SetActionList(nullptr);
}

void TActionList::SetImages(TImageList* images) {
  FImages = images;
  FreeNotification(images);
  for (TAction* action : FActions) action->Changed();
}

void TActionList::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FImages) FImages = nullptr;
}

TAction* TActionList::FindShortCut(TShortCut shortCut) const {
  for (TAction* action : std::vector(FActions)) {
    if (!Holds(FActions, action) || action->ShortCut() != shortCut) continue;
    action->Update();
    if (!Holds(Lists(), const_cast<TActionList*>(this))) return nullptr;
    if (Holds(FActions, action) && action->Enabled() && action->OnExecute) return action;
  }
  return nullptr;
}

void TActionList::UpdateActions() {
  for (TAction* action : std::vector(FActions)) {
    if (!Holds(Lists(), this)) return;
    if (Holds(FActions, action)) action->Update();
  }
}

}  // namespace wrenfold
