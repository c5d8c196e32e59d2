// A timer with a replaceable handler.
#pragma once

#include <QTimer>
#include <cstdint>

#include "platform/core/model/Event.h"
#include "platform/core/model/Persistent.h"

namespace wrenfold {

// Calls OnTimer every Interval milliseconds while enabled, an interval of 0 never.
class TTimer : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TTimer(TComponent* owner = nullptr);

  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool enabled);
  std::int32_t Interval() const { return FInterval; }
  void SetInterval(std::int32_t interval);

  TNotifyEvent OnTimer;

 private:
  void UpdateTimer();

  QTimer FTimer;
  std::int32_t FInterval = 1000;
  bool FEnabled = true;
};

}  // namespace wrenfold
