// A project open in the workbench: its source, its modules and what is known of them.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "project/FileLookup.h"
#include "project/FormFile.h"
#include "project/ProjectFile.h"
#include "project/ProjectSource.h"
#include "project/TextFile.h"
#include "project/UnitSource.h"

namespace wrenfold {

enum class TModuleState { Ok, Missing };

// A module of the project: a unit with its file, and its form where it has one.
struct TProjectModule {
  std::string UnitName;
  std::string FileName;     // absolute; of a missing file the name that the source means
  std::string FormName;     // empty for a unit without a form
  std::string DesignClass;  // "TDataModule", "TFrame"; empty for a form
  int Line = 0;             // in the project's source, from 1
  bool Described = false;   // the line is one of the project file
  TModuleState State = TModuleState::Ok;
  std::string Message;  // why the module is missing, in words
};

struct TProjectStatistics {
  size_t Units = 0;
  size_t Missing = 0;
  size_t Forms = 0;  // frames and data modules are counted apart
  size_t Frames = 0;
  size_t DataModules = 0;
};

// The model of an open project. Opening reads the project's source and looks for its files; units
// are read when something in them is asked for.
class TProject {
 public:
  // Opens a project source (.dpr, .dpk, .lpr, C++ with form macros), or a project file (.lpi, .lpk,
  // .dproj, .cbproj) with the source that it names. A source is opened together with the project
  // file beside it that names it. Raises EProjectError when it is no project, EFOpenError when it
  // cannot be read. Missing modules are listed as such.
  static std::unique_ptr<TProject> Open(const std::string& fileName,
                                        const TDefinedSymbols& symbols = DefaultSymbols());

  // The absolute name of the project's source, and its folder.
  const std::string& FileName() const { return FText.FileName(); }
  const std::string& Folder() const { return FFolder; }
  const std::string& Name() const { return FSource.Name; }
  // The project file, which may be the source as well; empty when there is none.
  std::string DescriptionName() const;
  // What it says; empty without one.
  const TProjectFile& Description() const { return FDescription; }
  // Folders of the project, absolute, where units and include files are looked for.
  const std::vector<std::string>& UnitFolders() const { return FUnitFolders; }
  TProjectKind Kind() const { return FSource.Kind; }
  TSourceLanguage Language() const { return FSource.Language; }

  // What conditional compilation has defined in units of this kind of project.
  const TDefinedSymbols& Symbols() const { return FSymbols; }

  // In the order of the source. Units that the source names without a file belong to the project
  // when they stand beside it.
  const std::vector<TProjectModule>& Modules() const { return FModules; }
  // Places of the source that could not be read.
  const std::vector<TSourceProblem>& Problems() const { return FSource.Problems; }
  const std::vector<std::string>& Requires() const { return FSource.Requires; }
  // The names in the calls of CreateForm, in the order of the source.
  const std::vector<std::string>& CreatedNames() const { return FSource.CreatedNames; }
  // Absolute names of the resource files, on disk or not.
  std::vector<std::string> ResourceFiles() const;
  TProjectStatistics Statistics() const;

  // The module of that file, or of that unit (the first one; letter case ignored), or null.
  const TProjectModule* FindModuleByFile(std::string_view fileName) const;
  const TProjectModule* FindModuleByUnit(std::string_view unitName) const;

  // The texts of the project's source and of its project file (null when there is none beside the
  // source). After an edit, Refresh reads the modules from them again.
  TTextFile& Source() { return FText; }
  TTextFile* DescriptionText() { return FDescriptionText ? &*FDescriptionText : nullptr; }
  // Raises EProjectError and keeps the modules as they are when the text is no project source.
  void Refresh();
  // Writes the project's source when it was edited.
  void Save();

  // What the source of a module says about classes: of its header in C++. Read at the first call;
  // null when it cannot be read. The pointer is valid until TakeUnitText, ForgetUnit or Refresh.
  const TUnitSource* UnitSource(const TProjectModule& module);
  // Lets the text of an editor stand for the file from now on, or the file again.
  void TakeUnitText(const TProjectModule& module, std::string_view text);
  void ForgetUnit(const TProjectModule& module);

  // The class and its ancestors, nearest first, as far as the project's units tell:
  // {"TChild", "TBase", "TForm"}. A class is looked for in the module, then in the units that it
  // uses, the last one first.
  std::vector<std::string> ClassChain(const TProjectModule& module, std::string_view className);

  // Reads the form of a module. Its root's class record tells what it is (IsDesignClass), as far as
  // the project's units do, else as the note in the project's source says; a form where that says
  // nothing. The record lives as long as the project. No root when the module has no form file.
  // Raises EFormFileError or EFOpenError.
  TFormFile LoadForm(const TProjectModule& module);

 private:
  explicit TProject(TTextFile text) : FText(std::move(text)) {}
  static std::optional<TTextFile> FindDescription(const std::filesystem::path& source);

  size_t IndexOf(const TProjectModule& module) const { return &module - FModules.data(); }
  TProjectSource ReadSource();
  void ReadDescription();
  void AddDescribed(TProjectSource& source) const;
  std::string FindUnit(const std::string& name, TFileLookup& lookup) const;
  std::optional<TProjectModule> MakeModule(const TProjectEntry& entry, TFileLookup& lookup) const;
  const TClassDeclaration* FindDeclaration(std::string_view className,
                                           const TProjectModule*& module);

  TTextFile FText;
  std::optional<TTextFile> FDescriptionText;
  TProjectFile FDescription;
  TDesignClasses FClasses;
  std::string FFolder;
  std::vector<std::string> FUnitFolders;
  TDefinedSymbols FGivenSymbols;
  TDefinedSymbols FSymbols;  // with those of the project
  TProjectSource FSource;
  std::vector<TProjectModule> FModules;
  std::vector<std::unique_ptr<TUnitSource>> FUnits;  // one for each module, null when not read
};

// Reads the include files that a source names, from its own folder, then from the others.
TIncludeReader IncludesBeside(const std::string& fileName, std::vector<std::string> folders = {});

// The header of a C++ unit: beside it, with the extension .h or .hpp. Empty when there is none.
std::string FindHeader(const std::string& unitFile);

}  // namespace wrenfold
