#include "platform/widgets/Timer.h"

#include "platform/widgets/Guard.h"

namespace wrenfold {

const TTypeInfo& TTimer::ClassInfo() {
  static const TTypeInfo info = Publish<TTimer>("TTimer", TComponent::ClassInfo())
                                    .Prop("Enabled", &TTimer::Enabled, &TTimer::SetEnabled)
                                    .Default(true)
                                    .Prop("Interval", &TTimer::Interval, &TTimer::SetInterval)
                                    .Default(1000)
                                    .Prop("OnTimer", &TTimer::OnTimer);
  return info;
}

TTimer::TTimer(TComponent* owner) : TComponent(owner) {
  QObject::connect(&FTimer, &QTimer::timeout, &FTimer,
                   [this] { GuardedWhile(&FTimer, this, [this] { OnTimer(this); }); });
  UpdateTimer();
}

void TTimer::SetEnabled(bool enabled) {
  if (enabled == FEnabled) return;
  FEnabled = enabled;
  UpdateTimer();
}

void TTimer::SetInterval(std::int32_t interval) {
  if (interval == FInterval) return;
  FInterval = interval;
  UpdateTimer();
}

void TTimer::UpdateTimer() {
  if (FEnabled && FInterval > 0) FTimer.start(FInterval);
  else FTimer.stop();
}

}  // namespace wrenfold
