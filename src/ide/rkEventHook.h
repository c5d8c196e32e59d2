// Handlers put in the place of the environment's own.
#pragma once

#include <functional>
#include <memory>

#include "platform/core/model/Event.h"
#include "platform/core/model/Persistent.h"

namespace wrenfold {

// Replaces the handler of one event at a time, and gives the old one back. Somebody else may have
// replaced ours in the meantime and kept it: then it stays in the chain and only passes on.
class TEventHook : public TComponent {
 public:
  TEventHook() : TComponent(nullptr) {}
  ~TEventHook() override { Unhook(); }

  // The owner of the event, a component, may die first; null: the event lives as long as the
  // process. A hook that holds another event lets go of that first.
  void Hook(TComponent* owner, TNotifyEvent& event, std::function<void(TObject* sender)> handler);
  // Puts the old handler back.
  void Unhook();
  // Whether the event has this hook's handler.
  bool Holds(const TNotifyEvent& event) const { return FEvent == &event && event == FHandler; }
  // Whether there is an event that this hook took and can give back.
  bool IsHooked() const { return FEvent != nullptr; }
  // Calls the handler that was replaced.
  void CallBefore(TObject* sender) const;

  void Notification(TComponent* component, TOperation operation) override;

 private:
  class TRelay;
  TNotifyEvent* FEvent = nullptr;
  TComponent* FOwner = nullptr;
  TNotifyEvent FHandler;
  std::shared_ptr<TRelay> FRelay;
};

}  // namespace wrenfold
