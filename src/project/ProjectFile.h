// The project files of today's environments: what stands in them beside the project's source.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "project/ProjectSource.h"

namespace wrenfold {

// What a project file says. Paths are as written; nothing is looked up on disk.
struct TProjectFile {
  TProjectKind Kind = TProjectKind::Program;
  std::string Name;
  std::string MainSource;               // empty: the file stands for the source, as of a package
  std::vector<TProjectEntry> Entries;   // units, in the order of the file
  std::vector<std::string> OtherFiles;  // include files, texts, resources
  std::vector<std::string> Requires;    // packages
  std::vector<std::string> UnitPaths;   // folders with further units
  std::vector<std::string> IncludePaths;
  TDefinedSymbols Symbols;  // defined for conditional compilation
  std::vector<std::string> Configurations;
  std::string Configuration;          // that paths and symbols are of
  std::vector<std::string> Projects;  // of a group of projects
  char PathSeparator = '\\';          // in its paths
};

// By the extension: .lpi, .lpk, .dproj, .cbproj; .groupproj holds projects.
bool IsProjectDescription(std::string_view fileName);
bool IsProjectGroup(std::string_view fileName);
// One of these, or a Pascal project's source: .dpr, .dpk, .lpr. Any C++ source may be a project's.
bool IsProjectName(std::string_view fileName);

// Reads the text of a project file, in UTF-8. Without a configuration the one that the file calls
// the default counts. Folders whose names hold unknown variables are left out. Raises EProjectError
// when the text is no XML or no project of the kind that its extension says.
TProjectFile ParseProjectFile(std::string_view text, const std::string& fileName,
                              std::string_view configuration = {});

// Changes of the file, in the order of their offsets; everything else keeps its bytes. The path is
// as it is to stand in the file. Nothing when there is no place for the unit, or no such unit.
// Raise EProjectError as ParseProjectFile does.
std::vector<TSourceEdit> AddToProjectFileEdits(std::string_view text, const std::string& fileName,
                                               const TProjectEntry& unit);
std::vector<TSourceEdit> RemoveFromProjectFileEdits(std::string_view text,
                                                    const std::string& fileName,
                                                    std::string_view path);
std::vector<TSourceEdit> RenameInProjectFileEdits(std::string_view text,
                                                  const std::string& fileName,
                                                  std::string_view oldPath,
                                                  const TProjectEntry& unit);

}  // namespace wrenfold
