// The choosers of the project's units and forms.
#pragma once

namespace wrenfold {

class TWorkbench;

// Let the user choose from the modules of the open project and show what was chosen.
void ChooseUnits(TWorkbench& workbench);
void ChooseForms(TWorkbench& workbench);

}  // namespace wrenfold
