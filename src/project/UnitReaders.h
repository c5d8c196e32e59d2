// The readers of either language behind ParseUnitSource.
#pragma once

#include "project/UnitSource.h"

namespace wrenfold {

TUnitSource ReadPascalUnit(std::string_view text, const TDefinedSymbols& symbols,
                           const TIncludeReader& includes);
TUnitSource ReadCppUnit(std::string_view text, const TDefinedSymbols& symbols);

// Appends a token to a type, with a blank where two words would run into each other.
void AppendToType(std::string& type, std::string_view token);
// Whether it is the name of what makes the forms of a program.
bool IsCreateForm(const TSourceToken& token);
// "'name'", or "the end of the file".
std::string DescribeToken(const TSourceToken& token);

}  // namespace wrenfold
