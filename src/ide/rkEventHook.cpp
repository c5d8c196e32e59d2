#include "ide/rkEventHook.h"

#include <utility>
#include <vector>

namespace wrenfold {

class TEventHook::TRelay : public TObject {
 public:
  void Call(TObject* sender) {
    const std::function<void(TObject*)> handler = Handler;
    if (handler) handler(sender);
    else Before(sender);
  }
  std::function<void(TObject*)> Handler;
  TNotifyEvent Before;
};

void TEventHook::Hook(TComponent* owner, TNotifyEvent& event,
                      std::function<void(TObject* sender)> handler) {
  Unhook();
  FRelay = std::make_shared<TRelay>();
  FRelay->Handler = std::move(handler);
  FRelay->Before = event;
  FHandler = TNotifyEvent::Bind<&TRelay::Call>(FRelay.get());
  FEvent = &event;
  FOwner = owner;
  if (owner != nullptr) FreeNotification(owner);
  event = FHandler;
}

void TEventHook::Unhook() {
  const std::shared_ptr<TRelay> relay = std::move(FRelay);
  TNotifyEvent* event = std::exchange(FEvent, nullptr);
  FOwner = nullptr;
  if (relay == nullptr) return;
  relay->Handler = nullptr;
  if (event == nullptr) return;
  if (*event == FHandler) {
    *event = relay->Before;
    return;
  }
  // Somebody kept our handler: it must stay callable.
  static std::vector<std::shared_ptr<TRelay>> kept;
  kept.push_back(relay);
}

void TEventHook::CallBefore(TObject* sender) const {
  const std::shared_ptr<TRelay> relay = FRelay;
  if (relay != nullptr) relay->Before(sender);
}

void TEventHook::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FOwner) {
    FEvent = nullptr;
    FOwner = nullptr;
  }
}

}  // namespace wrenfold
