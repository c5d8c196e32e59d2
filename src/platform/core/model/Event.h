// Method events: a delegate of two words, an object and a function on it.
#pragma once

#include <type_traits>

namespace wrenfold {

// A delegate without its signature: what a published event property is read and written as.
struct TMethod {
  using TCode = void (*)();
  TCode Code = nullptr;
  void* Data = nullptr;

  explicit operator bool() const { return Code != nullptr; }
  friend bool operator==(const TMethod&, const TMethod&) = default;
};

template <class Signature>
class TEvent;

// Empty by default; calling an empty event does nothing. Two events are equal when they hold the
// same function of the same object, so that a handler can be saved, replaced, compared, restored.
// The object is not owned: whoever binds a handler takes it back before the object dies.
template <class... Arguments>
class TEvent<void(Arguments...)> {
 public:
  TEvent() = default;

  // TEvent<void(TObject*)>::Bind<&TOwner::Handler>(owner)
  template <auto Handler, class Owner>
  static TEvent Bind(Owner* owner) {
    TEvent event;
    event.FCode = [](void* data, Arguments... arguments) {
      (static_cast<Owner*>(data)->*Handler)(arguments...);
    };
    event.FData = const_cast<std::remove_const_t<Owner>*>(owner);
    return event;
  }
  // A plain function; it takes the arguments of the event alone.
  template <auto Function>
  static TEvent Of() {
    TEvent event;
    event.FCode = [](void*, Arguments... arguments) { Function(arguments...); };
    return event;
  }
  static TEvent FromMethod(TMethod method) {
    TEvent event;
    event.FCode = reinterpret_cast<TCode>(method.Code);
    event.FData = method.Data;
    return event;
  }
  TMethod Method() const { return {reinterpret_cast<TMethod::TCode>(FCode), FData}; }

  void operator()(Arguments... arguments) const {
    if (FCode != nullptr) FCode(FData, arguments...);
  }
  explicit operator bool() const { return FCode != nullptr; }
  friend bool operator==(const TEvent&, const TEvent&) = default;

 private:
  using TCode = void (*)(void*, Arguments...);
  TCode FCode = nullptr;
  void* FData = nullptr;
};

class TObject;
// The common event: the sender is the object that raises it.
using TNotifyEvent = TEvent<void(TObject*)>;

// Binds a handler to an event variable: Bind<&TForm1::Click>(button->OnClick, this).
template <auto Handler, class Event, class Owner>
void Bind(Event& event, Owner* owner) {
  event = Event::template Bind<Handler>(owner);
}

}  // namespace wrenfold
