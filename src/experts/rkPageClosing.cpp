#include "experts/rkPageClosing.h"

#include <utility>

#include "platform/widgets/Application.h"
#include "platform/widgets/Guard.h"

namespace wrenfold {

namespace {

constexpr int CloseInterval = 100;  // milliseconds between two pages

}  // namespace

TPageClosing::TPageClosing(ISteps& steps) : FSteps(steps) {
  FTimer.SetEnabled(false);
  FTimer.SetInterval(CloseInterval);
  Bind<&TPageClosing::TimerTimer>(FTimer.OnTimer, this);
}

void TPageClosing::Stop() {
  FTimer.SetEnabled(false);
  FPending.clear();
}

// A page that cannot be closed is reported and does not keep the others.
bool TPageClosing::Run(const std::function<void()>& step) {
  const std::weak_ptr<int> alive = FAlive;
  FBusy = true;
  Guarded(nullptr, step);
  if (!alive.expired()) Guarded(nullptr, [] { Application().ProcessMessages(); });
  if (alive.expired()) return false;
  FBusy = false;
  return true;
}

void TPageClosing::CloseAtOnce(std::vector<TUnitList::TItem> pages) {
  FPending = std::move(pages);
  while (!FPending.empty()) {
    const TUnitList::TItem page = std::move(FPending.back());
    FPending.pop_back();
    if (!Run([&] { FSteps.CloseByModule(page); })) return;
  }
  FSteps.PagesClosed();
}

void TPageClosing::CloseOneByOne(std::vector<TUnitList::TItem> pages) {
  FPending = std::move(pages);
  FTimer.SetEnabled(!FPending.empty());
}

// A tick inside a tick waits: the question about one page is answered before the next is closed.
void TPageClosing::TimerTimer(TObject*) {
  if (FBusy || FSteps.ConfirmWindowOpen()) return;
  if (FPending.empty()) {
    FTimer.SetEnabled(false);
    FSteps.PagesClosed();
    return;
  }
  const TUnitList::TItem page = std::move(FPending.back());
  FPending.pop_back();
  Run([&] { FSteps.CloseByEditor(page); });
}

}  // namespace wrenfold
