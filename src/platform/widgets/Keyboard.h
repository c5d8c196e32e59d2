// The keyboard layout that the process works with.
#pragma once

#include <cstdint>

namespace wrenfold {

// A layout by its language: 1033 is US English.
using TKeyboardLayout = std::uint32_t;
inline constexpr TKeyboardLayout LayoutEnglishUS = 1033;

// What asks the desktop for its layout and switches it.
class TKeyboardLayoutBackend {
 public:
  virtual ~TKeyboardLayoutBackend() = default;
  virtual TKeyboardLayout Current() = 0;
  // False when there is no such layout.
  virtual bool Activate(TKeyboardLayout layout) = 0;
};

// Desktops offer no common way to switch the layout, so the backend that is there at first only
// records what was activated: code that switches and restores layouts runs as it stands. Nothing
// depends on a real switch, since texts of shortcuts are read by the names of the keys.
TKeyboardLayout GetKeyboardLayout();
// Answers the layout before, 0 when the layout could not be activated.
TKeyboardLayout ActivateKeyboardLayout(TKeyboardLayout layout);
// Null brings the recording one back. Not owned. Answers the one before (null: the recording one).
TKeyboardLayoutBackend* SetKeyboardLayoutBackend(TKeyboardLayoutBackend* backend);

}  // namespace wrenfold
