// Reads project sources: programs, libraries and packages in Pascal, C++ projects with form macros.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/core/system/Exceptions.h"
#include "project/Conditionals.h"
#include "project/SourceText.h"

namespace wrenfold {

// A project that cannot be opened at all. The message names file and place and what was expected.
class EProjectError : public Exception {
 public:
  EProjectError(const std::string& fileName, TSourcePlace place, const std::string& message);

  const std::string FileName;
  const TSourcePlace Place;
};

enum class TProjectKind { Program, Library, Package };

// A unit that the project source names.
struct TProjectEntry {
  std::string UnitName;
  std::string Path;         // as it stands in the source, quotes removed; empty when none is given
  std::string FormName;     // "MainForm" of the note {MainForm}
  std::string DesignClass;  // "TDataModule" of the note {Data: TDataModule}
  TSourcePlace Place;
  bool Described = false;  // named by the project file, not by the source
};

// What a project source says. Nothing is looked up on disk.
struct TProjectSource {
  TSourceLanguage Language = TSourceLanguage::Pascal;
  TProjectKind Kind = TProjectKind::Program;
  std::string Name;
  std::vector<TProjectEntry> Entries;     // in the order of the source
  std::vector<std::string> Resources;     // as written; "*" stands for the project's name
  std::vector<std::string> Requires;      // packages
  std::vector<std::string> Libraries;     // object and library files of a C++ project
  std::vector<std::string> CreatedNames;  // as TUnitSource has them
  std::vector<TSourceProblem> Problems;   // places that were skipped
};

// Reads a project source held in memory, in UTF-8 or an 8-bit encoding. The file name tells the
// language and the name of a project that does not name itself, and stands in messages. Mistakes in
// a clause are listed as problems and the rest is read; a source that is empty, binary or names no
// unit clause raises EProjectError.
TProjectSource ParseProjectSource(std::string_view text, const std::string& fileName,
                                  const TDefinedSymbols& symbols = DefaultSymbols());

}  // namespace wrenfold
