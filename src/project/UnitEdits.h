// Changes of a unit that follow from changes of its form: fields and event methods, as text edits.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "project/UnitSource.h"

namespace wrenfold {

// All functions take a source as it was parsed, and that text; what they give changes this text and
// follows its line ends and indents. Names are compared without regard to letter case. None find
// anything in an include file.

// The field of a component, in the first published part of the class, behind the fields that are
// there. Nothing when there is no such class or the field is there already.
std::optional<TSourceEdit> AddField(const TUnitSource& unit, std::string_view text,
                                    std::string_view className, std::string_view name,
                                    std::string_view type);

// Takes the field out with its line; of several that share a declaration the name alone. Nothing
// when there is no such field.
std::optional<TSourceEdit> RemoveField(const TUnitSource& unit, std::string_view text,
                                       std::string_view className, std::string_view name);

// Gives a field another name. Nothing when there is no such field.
std::optional<TSourceEdit> RenameField(const TUnitSource& unit, std::string_view className,
                                       std::string_view name, std::string_view newName);

// An event method as it is written into a unit.
struct TEventMethod {
  std::string Class;
  std::string Name;
  // "Sender: TObject", or in C++ "TObject *Sender".
  std::string Parameters;
};

// Declares the method in the first published part of the class, behind the methods that are there.
// Nothing when there is no such class or the method is declared already.
std::optional<TSourceEdit> DeclareMethod(const TUnitSource& unit, std::string_view text,
                                         const TEventMethod& method);

// Writes an empty body behind the last body of the class, else at the end of the implementation (of
// a C++ source: of the text). Sets `caret`, when it is given, to the offset of the empty line in
// it, in the text after this edit alone. Nothing when there is a body, or no place for one.
std::optional<TSourceEdit> WriteBody(const TUnitSource& unit, std::string_view text,
                                     const TEventMethod& method, size_t* caret = nullptr);

// The text with edits that do not overlap made.
std::string ApplyEdits(std::string text, std::vector<TSourceEdit> edits);

}  // namespace wrenfold
