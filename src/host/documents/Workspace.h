// The open project and the open modules, without windows.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/documents/Modules.h"

namespace wrenfold {

// The absolute name of a file, "." and ".." resolved.
std::string AbsoluteFileName(const std::string& fileName);
// By the extension: project sources and project files, groups of projects, and C++ sources that
// hold form macros.
bool IsProjectFile(const std::string& fileName);

// The projects that stand in the folder, by name; sources with a project file beside them left out.
std::vector<std::string> ProjectsIn(const std::string& folder);

// Several projects that are shown together; one of them is open.
struct TProjectList {
  std::string FileName;               // of the group; empty: the project stands alone
  std::vector<std::string> Projects;  // absolute

  bool Holds(const std::string& project) const;
};
// Raises EProjectError, EFOpenError.
TProjectList ReadProjectGroup(const std::string& fileName);

// The module of the form that the project's program creates first, data modules aside; else of the
// first form. Null when the project has none.
const TProjectModule* FindMainForm(TProject& project);

class TWorkspace {
 public:
  explicit TWorkspace(TModuleHost& host) : FHost(host) {}
  ~TWorkspace();

  // Null without an open project.
  TProjectHolder* Project() const { return FProject; }
  // In the order of opening; the project's group, source and resources among them.
  std::vector<TModule*> Modules() const;
  // The module that has a file of that name, or null.
  TModule* Find(const std::string& fileName) const;

  // Opens the module of a unit, header or form file; one that is open is answered as it is. Raises
  // EFOpenError when there is no such file.
  TModule& Open(const std::string& fileName);
  // A new unit under the first free name, UnitN.
  TModule& NewUnit(TSourceLanguage language);
  // Raises EProjectError, EFOpenError; an open project must have been closed before.
  TProjectHolder& OpenProject(const std::string& fileName);
  // The group that the open project belongs to.
  const TProjectList& Group() const { return FProjects; }
  void SetGroup(TProjectList group) { FProjects = std::move(group); }
  // Also takes the project's group and resources out.
  void CloseProject();
  // Ends the module. Its pages and windows must be gone.
  void Remove(TModule& module);
  // The modules of the project may be others than before.
  void UpdateOwners();

  std::vector<std::string> ClassChain(const TModule& module, const std::string& className);

 private:
  struct TEntry {
    TIntf<IOTAModule> Held;
    TModule* Module;
  };
  void UpdateOwner(TModule& module);
  template <class Module>
  Module& Take(Module* module);

  TModuleHost& FHost;
  std::vector<TEntry> FEntries;
  TProjectHolder* FProject = nullptr;
  TProjectGroup* FGroup = nullptr;
  TProjectList FProjects;
  TModule* FResource = nullptr;
};

}  // namespace wrenfold
