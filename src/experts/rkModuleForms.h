// The form file of a project module: whether the environment can open it, and its conversion.
#pragma once

#include <string>

#include "experts/rkModuleList.h"
#include "ide/rkOTAUtils.h"

namespace wrenfold {

enum class TFormFileKind : std::uint8_t { Missing, Binary, Text };

struct TModuleFormFile {
  std::string FileName;
  TFormFileKind Kind = TFormFileKind::Missing;
};

// The form file beside a module's file: with the project's form extension, or, where the
// environment designs text forms, else with that of another kind of project.
TModuleFormFile FindFormFile(const std::string& moduleFile);

// What the environment designs beside forms in binary files.
TDesignedKinds DesignedKinds();

// Whether the module is to be opened as a form. Frames and text forms are refused where the
// environment cannot design them; the user may have a text form converted: the text stays beside it
// as "NAME_txt.EXT", the form file becomes binary, and its open module is closed. Errors of the
// conversion are raised.
bool PassesFormCheck(const TListedModule& module);

// Opens the modules one after the other, messages in between, forms as such when they pass the
// check (an error in it is logged, the module then counts as a form) and otherwise as units.
void ShowModules(const std::vector<TListedModule>& modules, TViewModuleMode mode, bool displacing);

}  // namespace wrenfold
