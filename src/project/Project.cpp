// Modules, units and class chains of an open project.
#include "project/Project.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// The classes of the environment's library that a designed root can descend from.
constexpr std::string_view RootClasses[] = {"TForm", "TFrame", "TDataModule", "TQuickRep"};

constexpr std::string_view PascalExtensions[] = {".pas", ".pp"};
constexpr std::string_view HeaderExtensions[] = {".h", ".hpp"};

std::string MissingMessage(const TProjectEntry& entry, const std::string& fileName) {
  if (IsForeignPath(entry.Path))
    return fmt::format("{}: this system does not have the drive of this file", fileName);
  return fmt::format("{}: the file of unit {} is missing", fileName, entry.UnitName);
}

bool IsRootClass(std::string_view className) {
  return std::any_of(std::begin(RootClasses), std::end(RootClasses),
                     [&](std::string_view known) { return EqualText(known, className); });
}

}  // namespace

// The project file of the same bare name that names the source.
std::optional<TTextFile> TProject::FindDescription(const std::filesystem::path& source) {
  constexpr std::string_view extensions[] = {".lpi", ".dproj", ".cbproj"};
  TFileLookup lookup;
  const std::string folder = source.parent_path().string();
  for (const std::string_view extension : extensions) {
    const std::string found = lookup.Find(folder, source.stem().string() + std::string(extension));
    if (found.empty()) continue;
    try {
      TTextFile text = TTextFile::Load(found);
      const TProjectFile project = ParseProjectFile(text.Text(), found);
      if (lookup.Find(folder, project.MainSource) == source.string()) return text;
    } catch (const Exception&) {
      // The source says enough of itself.
    }
  }
  return std::nullopt;
}

std::unique_ptr<TProject> TProject::Open(const std::string& fileName,
                                         const TDefinedSymbols& symbols) {
  const auto path = std::filesystem::absolute(fileName).lexically_normal();
  TTextFile text = TTextFile::Load(path.string());
  std::optional<TTextFile> description;
  if (!IsProjectDescription(path.string())) {
    description = FindDescription(path);
  } else if (const TProjectFile file = ParseProjectFile(text.Text(), path.string());
             !file.MainSource.empty()) {
    const std::string source = TFileLookup().Find(path.parent_path().string(), file.MainSource);
    if (source.empty())
      throw EProjectError(path.string(), {},
                          fmt::format("expected the project's source {}", file.MainSource));
    description = std::exchange(text, TTextFile::Load(source));
  }
  std::unique_ptr<TProject> project(new TProject(std::move(text)));
  project->FDescriptionText = std::move(description);
  project->FFolder = std::filesystem::path(project->FileName()).parent_path().string();
  project->FGivenSymbols = symbols;
  project->Refresh();
  return project;
}

std::string TProject::DescriptionName() const {
  if (FDescriptionText) return FDescriptionText->FileName();
  return IsProjectDescription(FileName()) ? FileName() : std::string();
}

// What the project file says, when there is one; raises what it raises.
void TProject::ReadDescription() {
  const std::string name = DescriptionName();
  TProjectFile description;
  if (!name.empty())
    description =
        ParseProjectFile(FDescriptionText ? FDescriptionText->Text() : FText.Text(), name);
  FDescription = std::move(description);
  FSymbols = FGivenSymbols;
  FSymbols.insert(FDescription.Symbols.begin(), FDescription.Symbols.end());
  // Projects that two compilers build tell compiler and library apart by these symbols.
  if (EqualText(ExtractFileExt(FileName()), ".lpr")) FSymbols.insert({"FPC", "LCL"});
  FUnitFolders.clear();
  const std::string folder = ExtractFilePath(name);
  for (const auto* paths : {&FDescription.UnitPaths, &FDescription.IncludePaths})
    for (const std::string& path : *paths)
      if (!IsForeignPath(path)) FUnitFolders.push_back(ResolveFileName(folder, path));
}

// A source without a list of units is one all the same when a project file has the list.
TProjectSource TProject::ReadSource() {
  TProjectSource source;
  source.Kind = FDescription.Kind;
  source.Name = FDescription.Name;
  if (DescriptionName() == FileName()) return source;
  try {
    return ParseProjectSource(FText.Text(), FText.FileName(), FSymbols);
  } catch (const EProjectError&) {
    if (!FDescriptionText) throw;
    source.Name = ExtractFileNameEx(FileName());
    source.Language = LanguageOfFile(FileName());
    return source;
  }
}

// Units of the project file that the source does not name.
void TProject::AddDescribed(TProjectSource& source) const {
  const std::string folder = ExtractFilePath(DescriptionName());
  std::set<std::string> known{UpperCase(FileName())};
  for (const TProjectEntry& entry : source.Entries)
    known.insert(
        UpperCase(entry.Path.empty() ? entry.UnitName : ResolveFileName(FFolder, entry.Path)));
  for (TProjectEntry entry : FDescription.Entries) {
    entry.Path = ResolveFileName(folder, entry.Path);
    if (known.contains(UpperCase(entry.UnitName))) {
      // The source names the unit alone; the project file says where it is.
      const auto named = std::find_if(
          source.Entries.begin(), source.Entries.end(),
          [&](const TProjectEntry& other) { return EqualText(other.UnitName, entry.UnitName); });
      entry.Place = named->Place;
      if (named->Path.empty()) *named = std::move(entry);
    } else if (known.insert(UpperCase(entry.Path)).second) {
      entry.Described = true;
      source.Entries.push_back(std::move(entry));
    }
  }
  for (const std::string& package : FDescription.Requires)
    if (std::none_of(source.Requires.begin(), source.Requires.end(),
                     [&](const std::string& other) { return EqualText(other, package); }))
      source.Requires.push_back(package);
}

void TProject::Refresh() {
  ReadDescription();
  TProjectSource source = ReadSource();
  AddDescribed(source);
  TFileLookup lookup;
  std::vector<TProjectModule> modules;
  modules.reserve(source.Entries.size());
  FSource = std::move(source);
  for (const TProjectEntry& entry : FSource.Entries)
    if (std::optional<TProjectModule> module = MakeModule(entry, lookup))
      modules.push_back(std::move(*module));
  FModules = std::move(modules);
  FUnits.clear();
  FUnits.resize(FModules.size());
}

// In the project's folder, then in those of its units.
std::string TProject::FindUnit(const std::string& name, TFileLookup& lookup) const {
  std::string found = lookup.Find(FFolder, name);
  for (const std::string& folder : FUnitFolders) {
    if (!found.empty()) break;
    found = lookup.Find(folder, name);
  }
  return found;
}

std::optional<TProjectModule> TProject::MakeModule(const TProjectEntry& entry,
                                                   TFileLookup& lookup) const {
  TProjectModule module;
  module.UnitName = entry.UnitName;
  module.FormName = entry.FormName;
  module.DesignClass = entry.DesignClass;
  module.Line = entry.Place.Line;
  module.Described = entry.Described;
  std::string path = entry.Path;
  if (!path.empty()) module.FileName = lookup.Find(FFolder, path);
  for (std::string_view extension : PascalExtensions) {
    if (!entry.Path.empty() || !module.FileName.empty()) break;
    path = entry.UnitName + std::string(extension);
    module.FileName = FindUnit(path, lookup);
  }
  // A program also names units of the compiler's search path; a package contains its own.
  if (module.FileName.empty() && entry.Path.empty()) {
    if (Kind() != TProjectKind::Package) return std::nullopt;
    path = entry.UnitName + std::string(PascalExtensions[0]);
  }
  if (module.FileName.empty()) {
    module.FileName = ResolveFileName(FFolder, path);
    module.State = TModuleState::Missing;
    module.Message = MissingMessage(entry, module.FileName);
  } else if (entry.Path.empty()) {
    // Sources that give no file names carry no notes either: the form file knows its name.
    const std::string formFile = FindFormFile(module.FileName, FSymbols);
    if (!formFile.empty()) module.FormName = ReadFormHeader(formFile).FormName;
  }
  return module;
}

std::vector<std::string> TProject::ResourceFiles() const {
  std::vector<std::string> files;
  for (std::string name : FSource.Resources) {
    if (name.starts_with('*')) name.replace(0, 1, ExtractFileNameEx(FileName()));
    files.push_back(ResolveFileName(FFolder, name));
  }
  return files;
}

TProjectStatistics TProject::Statistics() const {
  TProjectStatistics statistics;
  for (const TProjectModule& module : FModules) {
    ++statistics.Units;
    if (module.State == TModuleState::Missing) ++statistics.Missing;
    if (module.FormName.empty()) continue;
    if (EqualText(module.DesignClass, "TFrame")) ++statistics.Frames;
    else if (EqualText(module.DesignClass, "TDataModule")) ++statistics.DataModules;
    else ++statistics.Forms;
  }
  return statistics;
}

const TProjectModule* TProject::FindModuleByFile(std::string_view fileName) const {
  const auto found = std::find_if(FModules.begin(), FModules.end(),
                                  [&](const auto& module) { return module.FileName == fileName; });
  return found == FModules.end() ? nullptr : &*found;
}

const TProjectModule* TProject::FindModuleByUnit(std::string_view unitName) const {
  const auto found = std::find_if(FModules.begin(), FModules.end(), [&](const auto& module) {
    return EqualText(module.UnitName, unitName);
  });
  return found == FModules.end() ? nullptr : &*found;
}

void TProject::Save() {
  if (FText.Modified()) FText.Save();
  if (FDescriptionText && FDescriptionText->Modified()) FDescriptionText->Save();
}

const TUnitSource* TProject::UnitSource(const TProjectModule& module) {
  std::unique_ptr<TUnitSource>& unit = FUnits[IndexOf(module)];
  if (unit) return unit.get();
  const bool cpp = LanguageOfFile(module.FileName) == TSourceLanguage::Cpp;
  const std::string fileName = cpp ? FindHeader(module.FileName) : module.FileName;
  if (module.State == TModuleState::Missing || fileName.empty()) return nullptr;
  try {
    const TTextFile text = TTextFile::Load(fileName);
    unit = std::make_unique<TUnitSource>(
        ParseUnitSource(text.Text(), fileName, FSymbols, IncludesBeside(fileName, FUnitFolders)));
  } catch (const EFOpenError&) {
    return nullptr;
  }
  return unit.get();
}

void TProject::TakeUnitText(const TProjectModule& module, std::string_view text) {
  FUnits[IndexOf(module)] = std::make_unique<TUnitSource>(ParseUnitSource(
      text, module.FileName, FSymbols, IncludesBeside(module.FileName, FUnitFolders)));
}

void TProject::ForgetUnit(const TProjectModule& module) {
  FUnits[IndexOf(module)] = nullptr;
}

// Names see the units that stand last in the list of used units first. Sets the module to the one
// that declares the class.
const TClassDeclaration* TProject::FindDeclaration(std::string_view className,
                                                   const TProjectModule*& module) {
  const TUnitSource* unit = UnitSource(*module);
  if (!unit) return nullptr;
  if (const TClassDeclaration* declaration = unit->FindClass(className)) return declaration;
  for (auto used = unit->Uses.rbegin(); used != unit->Uses.rend(); ++used) {
    const TProjectModule* other = FindModuleByUnit(used->Name);
    const TUnitSource* otherUnit = other ? UnitSource(*other) : nullptr;
    const TClassDeclaration* declaration = otherUnit ? otherUnit->FindClass(className) : nullptr;
    if (!declaration) continue;
    module = other;
    return declaration;
  }
  return nullptr;
}

std::vector<std::string> TProject::ClassChain(const TProjectModule& module,
                                              std::string_view className) {
  std::vector<std::string> chain{std::string(className)};
  const TProjectModule* where = &module;
  while (const TClassDeclaration* declaration = FindDeclaration(chain.back(), where)) {
    const std::string& ancestor = declaration->Ancestor;
    // A class may derive from a library class of its own name; the chain leaves the project there.
    // A source that derives classes in a circle ends here too.
    if (ancestor.empty()) break;
    const bool seen = std::any_of(chain.begin(), chain.end(),
                                  [&](const auto& name) { return EqualText(name, ancestor); });
    if (seen) break;
    chain.push_back(ancestor);
  }
  return chain;
}

TFormFile TProject::LoadForm(const TProjectModule& module) {
  const std::string fileName = FindFormFile(module.FileName, FSymbols);
  if (fileName.empty()) return {};
  TFormFile form = LoadFormFile(fileName);
  std::vector<std::string> chain = ClassChain(module, form.Root->StoredClassName());
  if (!IsRootClass(chain.back()))
    chain.push_back(module.DesignClass.empty() ? std::string(RootClasses[0]) : module.DesignClass);
  form.Root->SetDesignClass(FClasses.Record(chain));
  return form;
}

TIncludeReader IncludesBeside(const std::string& fileName, std::vector<std::string> folders) {
  folders.insert(folders.begin(), std::filesystem::path(fileName).parent_path().string());
  return [folders = std::move(folders)](std::string_view name) -> std::optional<std::string> {
    TFileLookup lookup;
    std::string found;
    for (auto folder = folders.begin(); folder != folders.end() && found.empty(); ++folder)
      found = lookup.Find(*folder, name);
    if (found.empty()) return std::nullopt;
    try {
      return TTextFile::Load(found).Text();
    } catch (const Exception&) {
      return std::nullopt;
    }
  };
}

std::string FindHeader(const std::string& unitFile) {
  const std::filesystem::path path(unitFile);
  TFileLookup lookup;
  for (std::string_view extension : HeaderExtensions) {
    std::string found =
        lookup.Find(path.parent_path().string(), path.stem().string() + std::string(extension));
    if (!found.empty()) return found;
  }
  return {};
}

}  // namespace wrenfold
