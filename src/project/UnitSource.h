// Finds the class declarations of a unit or C++ header, and the units that it uses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "project/Conditionals.h"
#include "project/SourceText.h"

namespace wrenfold {

struct TClassDeclaration {
  std::string Name;
  // Without unit or namespace before it and without type parameters; "TObject" when none is named.
  std::string Ancestor;
  TSourcePlace Place;
};

// What a unit's source says about classes.
struct TUnitSource {
  std::string Name;                        // of a Pascal unit
  std::vector<std::string> Uses;           // units, or the bare names of quoted C++ includes
  std::vector<TClassDeclaration> Classes;  // forward declarations left out

  // The declaration of that name (letter case ignored), or null.
  const TClassDeclaration* FindClass(std::string_view name) const;
};

// Reads a Pascal unit up to its implementation, or a C++ header; the file name tells which. Never
// fails: what it does not understand is passed over.
TUnitSource ParseUnitSource(std::string_view text, std::string_view fileName,
                            const TDefinedSymbols& symbols = DefaultSymbols());

}  // namespace wrenfold
