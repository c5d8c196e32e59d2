// File extensions and fixed texts of specifications.
#pragma once

#include <string>

namespace wrenfold {

// Extensions with their dot, by storage format.
std::string SBinExt();
std::string SResBinExt();
std::string SExBinExt();
std::string STextExt();

std::string SObjectFormCaption();  // "object %s"
std::string SEditorSection();      // section of the window settings
std::string SLabelCaption();       // "%s :"
std::string SPseudoNewLine();      // stands for a line break in captions
std::string SControlPostfix();     // ends the identifiers of controls

// The filter of the open and save dialogs.
std::string SpcFileFilter();

}  // namespace wrenfold
