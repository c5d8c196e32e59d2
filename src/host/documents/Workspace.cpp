// Finds out which module a file belongs to and keeps the modules.
#include "host/documents/Workspace.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::string_view HeaderExtensions[] = {".h", ".hpp"};
constexpr const char* PascalUnits[] = {".pas", ".PAS", ".Pas"};
constexpr const char* CppUnits[] = {".cpp", ".CPP", ".cc", ".cxx"};

constexpr std::string_view NewPascalUnit =
    "unit {0};\r\n\r\ninterface\r\n\r\nimplementation\r\n\r\nend.\r\n";
constexpr std::string_view NewCppUnit =
    "//{1}\r\n\r\n#pragma hdrstop\r\n\r\n#pragma package(smart_init)\r\n";

template <class Table>
bool HasExtension(const std::string& fileName, const Table& extensions) {
  const std::string extension = LowerCase(ExtractFileExt(fileName));
  return std::find(std::begin(extensions), std::end(extensions), extension) != std::end(extensions);
}

template <class Table>
std::string FirstExisting(const std::string& fileName, const Table& extensions) {
  for (const char* extension : extensions)
    if (std::string name = ChangeFileExt(fileName, extension); FileExists(name)) return name;
  return {};
}

// The unit that a header or form file belongs to; the file itself where there is none.
std::string UnitOf(const std::string& fileName) {
  std::string unit;
  if (IsFormFileName(fileName)) unit = FirstExisting(fileName, PascalUnits);
  if (unit.empty() && (IsFormFileName(fileName) || HasExtension(fileName, HeaderExtensions)))
    unit = FirstExisting(fileName, CppUnits);
  return unit.empty() ? fileName : unit;
}

bool HoldsFormMacros(const std::string& fileName) {
  try {
    const TProjectSource source = ParseProjectSource(ReadWholeFile(fileName), fileName);
    return !source.Entries.empty();
  } catch (const Exception&) {
    return false;
  }
}

bool IsPlainForm(const TProjectModule& module) {
  return module.State == TModuleState::Ok && !module.FormName.empty() && module.DesignClass.empty();
}

}  // namespace

const TProjectModule* FindMainForm(TProject& project) {
  for (const std::string& name : project.CreatedNames())
    for (const TProjectModule& module : project.Modules())
      if (IsPlainForm(module) && EqualText(module.FormName, name)) return &module;
  const auto& modules = project.Modules();
  const auto first = std::find_if(modules.begin(), modules.end(), IsPlainForm);
  return first != modules.end() ? &*first : nullptr;
}

std::string AbsoluteFileName(const std::string& fileName) {
  std::error_code error;
  return std::filesystem::absolute(fileName, error).lexically_normal().string();
}

bool IsProjectFile(const std::string& fileName) {
  if (IsProjectName(fileName)) return true;
  return LowerCase(ExtractFileExt(fileName)) == ".cpp" && HoldsFormMacros(fileName);
}

std::vector<std::string> ProjectsIn(const std::string& folder) {
  std::vector<std::string> projects;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    if (std::string name = entry->path().string(); FileExists(name) && IsProjectFile(name))
      projects.push_back(std::move(name));
  std::sort(projects.begin(), projects.end());
  const std::vector<std::string> all = projects;
  std::erase_if(projects, [&](const std::string& name) {
    return !IsProjectDescription(name) &&
           std::any_of(all.begin(), all.end(), [&](const std::string& other) {
             return IsProjectDescription(other) &&
                    ExtractFileNameEx(other) == ExtractFileNameEx(name);
           });
  });
  return projects;
}

bool TProjectList::Holds(const std::string& project) const {
  return std::find(Projects.begin(), Projects.end(), project) != Projects.end();
}

TProjectList ReadProjectGroup(const std::string& fileName) {
  const TProjectFile file = ParseProjectFile(TTextFile::Load(fileName).Text(), fileName);
  TProjectList group{fileName, {}};
  TFileLookup lookup;
  const std::string folder = ExtractFilePath(fileName);
  for (const std::string& path : file.Projects) {
    std::string found = lookup.Find(folder, path);
    group.Projects.push_back(found.empty() ? ResolveFileName(folder, path) : std::move(found));
  }
  return group;
}

TWorkspace::~TWorkspace() {
  for (const TEntry& entry : FEntries) entry.Module->Detach();
}

template <class Module>
Module& TWorkspace::Take(Module* module) {
  FEntries.push_back({module, module});
  return *module;
}

std::vector<TModule*> TWorkspace::Modules() const {
  std::vector<TModule*> modules;
  for (const TEntry& entry : FEntries) modules.push_back(entry.Module);
  return modules;
}

TModule* TWorkspace::Find(const std::string& fileName) const {
  const std::string wanted = AbsoluteFileName(fileName);
  for (const TEntry& entry : FEntries) {
    if (entry.Module->FileName() == wanted) return entry.Module;
    for (const TModuleEditor* editor : entry.Module->Editors())
      if (editor->FileName() == wanted) return entry.Module;
  }
  return nullptr;
}

TModule& TWorkspace::Open(const std::string& fileName) {
  if (TModule* open = Find(fileName)) return *open;
  const std::string unit = UnitOf(AbsoluteFileName(fileName));
  if (!FileExists(unit)) throw EFOpenError(fmt::format("{}: there is no such file", unit));
  auto* module = new TUnitModule(FHost, unit);
  const TIntf<IOTAModule> held(module);
  if (IsFormFileName(unit)) {
    module->AddForm(unit);
  } else {
    module->AddSource(unit);
    AddUnitFiles(*module, FProject != nullptr ? FProject->Project().Symbols() : DefaultSymbols());
  }
  Take(module);
  UpdateOwner(*module);
  return *module;
}

TModule& TWorkspace::NewUnit(TSourceLanguage language) {
  const std::string folder = FProject != nullptr ? FProject->Project().Folder() : ".";
  const bool cpp = language == TSourceLanguage::Cpp;
  std::string name, fileName;
  for (int number = 1; name.empty() || FileExists(fileName) || Find(fileName) != nullptr;
       ++number) {
    name = fmt::format("Unit{}", number);
    fileName = AbsoluteFileName(fmt::format("{}/{}{}", folder, name, cpp ? ".cpp" : ".pas"));
  }
  auto* module = new TUnitModule(FHost, fileName);
  const std::string rule(74, '-');
  module->AddNewSource(fileName,
                       fmt::format(fmt::runtime(cpp ? NewCppUnit : NewPascalUnit), name, rule));
  return Take(module);
}

TProjectHolder& TWorkspace::OpenProject(const std::string& fileName) {
  auto project = TProject::Open(AbsoluteFileName(fileName));
  FProject = new TProjectHolder(FHost, std::move(project));
  const TIntf<IOTAModule> held(FProject);
  const std::string name = FProject->FileName();
  const std::string group =
      FProjects.FileName.empty() ? ChangeFileExt(name, ".bpg") : FProjects.FileName;
  FGroup = &Take(new TProjectGroup(FHost, group, FProject));
  Take(FProject);
  FResource = &Take(new TResourceModule(FHost, ChangeFileExt(name, ".res")));
  UpdateOwners();
  return *FProject;
}

void TWorkspace::CloseProject() {
  if (FProject == nullptr) return;
  FGroup->ProjectClosed();
  TProjectHolder* project = std::exchange(FProject, nullptr);
  UpdateOwners();
  Remove(*std::exchange(FResource, nullptr));
  Remove(*std::exchange(FGroup, nullptr));
  Remove(*project);
}

void TWorkspace::Remove(TModule& module) {
  const auto at = std::find_if(FEntries.begin(), FEntries.end(),
                               [&](const TEntry& entry) { return entry.Module == &module; });
  if (at == FEntries.end()) return;
  const TIntf<IOTAModule> held = at->Held;
  FEntries.erase(at);
  module.Detach();
}

void TWorkspace::UpdateOwners() {
  for (const TEntry& entry : FEntries) UpdateOwner(*entry.Module);
}

void TWorkspace::UpdateOwner(TModule& module) {
  module.Owners.clear();
  if (FProject == nullptr || &module == FProject || &module == FGroup) return;
  if (&module == FResource || FProject->Project().FindModuleByFile(module.FileName()) != nullptr)
    module.Owners.push_back(FProject);
}

std::vector<std::string> TWorkspace::ClassChain(const TModule& module,
                                                const std::string& className) {
  const TUnitDocument* text =
      module.Sources().empty() ? nullptr : module.Sources()[0]->LoadedDocument();
  if (FProject != nullptr) {
    TProject& project = FProject->Project();
    if (const TProjectModule* listed = project.FindModuleByFile(module.FileName())) {
      if (text != nullptr && text->Modified()) project.TakeUnitText(*listed, text->Text());
      return project.ClassChain(*listed, className);
    }
  }
  std::vector<std::string> chain{className};
  if (module.Sources().empty()) return chain;
  // Classes of a C++ unit are declared in its header.
  const std::string header = FindHeader(module.FileName());
  const std::string& fileName =
      LanguageOfFile(module.FileName()) == TSourceLanguage::Cpp && !header.empty()
          ? header
          : module.FileName();
  const std::string source = FileExists(fileName) ? ReadWholeFile(fileName) : std::string();
  const TUnitSource unit = ParseUnitSource(source, fileName);
  for (const TClassDeclaration* found = unit.FindClass(className); found != nullptr;
       found = unit.FindClass(chain.back())) {
    if (found->Ancestor.empty() ||
        std::find(chain.begin(), chain.end(), found->Ancestor) != chain.end())
      break;
    chain.push_back(found->Ancestor);
  }
  return chain;
}

}  // namespace wrenfold
