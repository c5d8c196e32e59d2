// Lets assistive programs tell the combo boxes of a window apart.
#pragma once

namespace wrenfold {

// The toolkit gives out what a combo box shows as its name, and its own name not at all. From this
// call on a combo box with an accessible name has that name, and what it shows as its value. To be
// called once, by the application.
void InstallComboAccessibility();

}  // namespace wrenfold
