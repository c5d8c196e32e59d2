// What the user does in a form that is disabled: nothing.
#pragma once

class QEvent;
class QObject;

namespace wrenfold {

// Whether the event is input of the user for something in a disabled form; it is refused then, and
// must not be handled further. Menus and popups belong to the form that they opened from. What code
// does with the form (a click by call, a new text) is no input.
bool DropsHeldInput(QObject* receiver, QEvent* event);

// Lets assistive programs hear of forms that are disabled although they are drawn as ever. To be
// called once, by the application.
void InstallFormAccessibility();

}  // namespace wrenfold
