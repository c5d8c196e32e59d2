// What the experts ask of the environment's windows and controls.
#pragma once

#include <string_view>

#include "platform/widgets/Control.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

// The form of the foreground window, the innermost one where forms are docked; null while the user
// is in another program.
TForm* GetActiveForm();
// The same, if its caption is this one (letter case ignored).
TForm* GetActiveForm(std::string_view caption);

enum TRepaintFlag : std::uint8_t { rfAllChildren, rfUpdateNow };
using TRepaintFlags = TSet<TRepaintFlag>;
// Redraws the control; rfAllChildren also all inside it, rfUpdateNow at once. Null does nothing.
void RepaintControl(TControl* control, TRepaintFlags flags);
// Stop and start the painting of a control. Null does nothing.
void BeginUpdateControl(TControl* control);
void EndUpdateControl(TControl* control);

// The first form that is of exactly that class, not of a descendant.
TForm* FindFormByClass(const TTypeInfo& formClass);
// The same, shown and brought back to its normal state.
TForm* ShowFormByClass(const TTypeInfo& formClass);

}  // namespace wrenfold
