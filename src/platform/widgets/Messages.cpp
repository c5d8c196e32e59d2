#include "platform/widgets/Messages.h"

#include <QCoreApplication>
#include <QPointer>

#include "platform/widgets/Guard.h"

namespace wrenfold {

namespace {

const QEvent::Type PostedMessage = static_cast<QEvent::Type>(QEvent::registerEventType());

struct TMessageEvent : QEvent {
  explicit TMessageEvent(const TMessage& message) : QEvent(PostedMessage), Message(message) {}
  TMessage Message;
};

}  // namespace

class TMessageWindow::TReceiver : public QObject {
 public:
  explicit TReceiver(TMessageWindow& window) : FWindow(window) {}

  static void Deliver(TMessageWindow& window, TMessage& message) {
    // A copy: the handler may put another one in its place, or destroy the window.
    const TWndMethod handler = window.WndProc;
    if (handler) handler(message);
    else DefaultHandler(message);
  }

 protected:
  void customEvent(QEvent* event) override {
    if (event->type() != PostedMessage) return;
    const QPointer<TReceiver> alive(this);
    try {
      Deliver(FWindow, static_cast<TMessageEvent*>(event)->Message);
    } catch (...) {
      ReportException(alive == nullptr ? nullptr : &FWindow);
    }
  }

 private:
  TMessageWindow& FWindow;
};

TMessageWindow::TMessageWindow(TWndMethod wndProc)
    : WndProc(wndProc), FReceiver(std::make_unique<TReceiver>(*this)) {}

TMessageWindow::~TMessageWindow() = default;

void TMessageWindow::PostMessage(std::uint32_t message, std::intptr_t wParam,
                                 std::intptr_t lParam) {
  QCoreApplication::postEvent(FReceiver.get(),
                              new TMessageEvent(TMessage{message, wParam, lParam, 0}));
}

std::intptr_t TMessageWindow::SendMessage(std::uint32_t message, std::intptr_t wParam,
                                          std::intptr_t lParam) {
  TMessage sent{message, wParam, lParam, 0};
  TReceiver::Deliver(*this, sent);
  return sent.Result;
}

}  // namespace wrenfold
