// The forms and units that a check of forms knows: of a project, a folder, or beside one file.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/FormSpans.h"
#include "project/UnitSource.h"

namespace wrenfold {

// A unit's declarations and its text.
struct TLintUnit {
  std::string FileName;
  std::string Text;
  TUnitSource Source;
  bool IsComplete = true;  // all include files were there

  // Whether the word stands anywhere in the text: perhaps in a branch that was left out.
  bool Mentions(std::string_view word) const;
};

// A form that was read.
struct TLintForm {
  std::string FileName;
  std::unique_ptr<TDesignComponent> Root;
  std::unique_ptr<TFormSpans> Spans;  // of a text
  // The line of a component, or of its property; 0 where the form is no text.
  std::size_t LineOf(const TDesignComponent& component, std::string_view property = {}) const;
};

// A class as the units tell it: the declarations from the nearest one on.
struct TLintClass {
  struct TLevel {
    const TClassDeclaration* Class;
    const TLintUnit* Unit;
  };
  std::vector<TLevel> Levels;
  std::string Last;      // the ancestor that no unit declares
  bool IsKnown = false;  // that one is a class of forms of the library, and all units are complete
};

// Reads files when they are asked for, each once.
class TLintSources {
 public:
  // A folder with all that is below it, a project, or one form with what stands beside it. Raises
  // EProjectError and EFOpenError.
  explicit TLintSources(const std::string& name);

  // The forms that are to be checked.
  const std::vector<std::string>& Forms() const { return FForms; }
  // Raises EFormFileError, EFOpenError.
  const TLintForm& Form(const std::string& fileName);
  // The unit that stands beside a form, or null: of C++ the header.
  const TLintUnit* UnitOf(const std::string& formFile);
  // A class as it is seen from a unit.
  TLintClass ClassOf(const TLintUnit& unit, std::string_view className);
  // The form whose root is of that class, or has that name; null when there is none or several.
  const TLintForm* FormOfClass(std::string_view className);
  const TLintForm* FormNamed(std::string_view name);
  // Whether all units that this one uses are known here or belong to the environment.
  bool KnowsAllUsed(const TLintUnit& unit);

 private:
  void AddFolder(const std::string& folder, bool deep);
  void AddFile(const std::string& fileName);
  const TLintUnit* Unit(const std::string& fileName);
  const TLintUnit* UnitNamed(std::string_view name);
  const TClassDeclaration* FindClass(std::string_view name, const TLintUnit*& unit, bool here);
  const TLintForm* FindForm(std::string_view wanted, bool byClass);

  std::vector<std::string> FForms;
  std::vector<std::string> FKnownForms;
  std::map<std::string, std::string> FUnitFiles;  // by folded unit name
  std::map<std::string, std::unique_ptr<TLintUnit>> FUnits;
  std::map<std::string, std::unique_ptr<TLintForm>> FRead;
};

}  // namespace wrenfold
