#include "platform/widgets/Keyboard.h"

#include <utility>

namespace wrenfold {

namespace {

class TRecordingBackend : public TKeyboardLayoutBackend {
 public:
  TKeyboardLayout Current() override { return FLayout; }
  bool Activate(TKeyboardLayout layout) override {
    FLayout = layout;
    return true;
  }

 private:
  TKeyboardLayout FLayout = LayoutEnglishUS;
};

TKeyboardLayoutBackend* Replacement = nullptr;

TKeyboardLayoutBackend& Backend() {
  static TRecordingBackend recording;
  return Replacement != nullptr ? *Replacement : recording;
}

}  // namespace

TKeyboardLayout GetKeyboardLayout() {
  return Backend().Current();
}

TKeyboardLayout ActivateKeyboardLayout(TKeyboardLayout layout) {
  const TKeyboardLayout before = Backend().Current();
  return Backend().Activate(layout) ? before : 0;
}

TKeyboardLayoutBackend* SetKeyboardLayoutBackend(TKeyboardLayoutBackend* backend) {
  return std::exchange(Replacement, backend);
}

}  // namespace wrenfold
