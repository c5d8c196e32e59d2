// Hidden windows that receive posted private messages, in the order of their posting.
#pragma once

#include <QObject>
#include <cstdint>
#include <memory>

#include "platform/core/model/Event.h"
#include "platform/core/model/Persistent.h"

namespace wrenfold {

struct TMessage {
  std::uint32_t Msg = 0;
  std::intptr_t WParam = 0;
  std::intptr_t LParam = 0;
  std::intptr_t Result = 0;
};

using TWndMethod = TEvent<void(TMessage&)>;

// Messages that are still waiting when the window is destroyed vanish. Main thread only.
class TMessageWindow : public TObject {
 public:
  explicit TMessageWindow(TWndMethod wndProc = {});
  ~TMessageWindow() override;

  // Receives every message; without one, the default handling does.
  TWndMethod WndProc;
  // What a handler passes on that it does not know: does nothing, the result is 0.
  static void DefaultHandler(TMessage& message) { message.Result = 0; }

  // Delivers the message later, when the application handles its events.
  void PostMessage(std::uint32_t message, std::intptr_t wParam = 0, std::intptr_t lParam = 0);
  // Delivers the message now and answers its result. Exceptions come out to the caller.
  std::intptr_t SendMessage(std::uint32_t message, std::intptr_t wParam = 0,
                            std::intptr_t lParam = 0);

 private:
  class TReceiver;
  std::unique_ptr<TReceiver> FReceiver;
};

}  // namespace wrenfold
