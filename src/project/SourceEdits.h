// Changes that renaming and adding units makes in sources: where, and what to write there.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "project/Conditionals.h"
#include "project/UnitEdits.h"

namespace wrenfold {

// Puts the name of a Pascal unit in place of the one behind "unit". None when the source is no
// unit, has the name already, or the name is no unit's name.
std::optional<TSourceEdit> RenameUnitEdit(std::string_view source, std::string_view name);

// Puts the new bare name into the include of a C++ unit's own header ("old.h", beside it). None
// when the unit does not include it.
std::optional<TSourceEdit> RenameOwnIncludeEdit(std::string_view source, std::string_view oldName,
                                                std::string_view name);

// A unit as a project's source names it.
struct TNamedUnit {
  std::string Name;
  std::string Path;      // as it is to stand in the source
  std::string FormName;  // empty: none
  // Of a form that the program creates at its start; empty: it does not.
  std::string FormClass = {};
};

// All read the source of a project in the language of its file name; edits stand in the order of
// their offsets. Nothing when the source does not name the old unit, or has no place for a new one.
std::vector<TSourceEdit> RenameInProjectEdits(std::string_view source, std::string_view fileName,
                                              std::string_view oldName, const TNamedUnit& unit,
                                              const TDefinedSymbols& symbols = DefaultSymbols());
std::vector<TSourceEdit> AddToProjectEdits(std::string_view source, std::string_view fileName,
                                           const TNamedUnit& unit,
                                           const TDefinedSymbols& symbols = DefaultSymbols());

// Takes the unit out of the list and the creation of its form out of the program. Nothing when the
// source does not name the unit, when it is the only one, or when directives stand around it.
std::vector<TSourceEdit> RemoveFromProjectEdits(std::string_view source, std::string_view fileName,
                                                const TNamedUnit& unit,
                                                const TDefinedSymbols& symbols = DefaultSymbols());

// The file name as a project in that folder gives it, with the slashes of those projects.
std::string ProjectPath(const std::string& folder, const std::string& fileName);

}  // namespace wrenfold
