// Opening and closing, with the notifications before and after.
#include "host/documents/Documents.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/core/model/Dialogs.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"

namespace wrenfold {

namespace {

// More places of one kind than these are counted, not listed.
constexpr std::size_t ListedProblems = 50;

std::string Plural(std::size_t count, const char* one, const char* many) {
  return fmt::format("{} {}", count, count == 1 ? one : many);
}

// The first project of the group that is there; else the first, which tells what is missing.
std::string FirstOnDisk(const TProjectList& group) {
  const auto found = std::find_if(group.Projects.begin(), group.Projects.end(),
                                  [](const std::string& name) { return FileExists(name); });
  return found != group.Projects.end() ? *found : group.Projects.front();
}

bool IsUnit(const TModule& module) {
  return dynamic_cast<const TUnitModule*>(&module) != nullptr;
}

}  // namespace

std::string Summary(const TProjectStatistics& counts) {
  std::string text = Plural(counts.Units, "unit", "units");
  if (counts.Forms != 0) text += ", " + Plural(counts.Forms, "form", "forms");
  if (counts.Frames != 0) text += ", " + Plural(counts.Frames, "frame", "frames");
  if (counts.DataModules != 0)
    text += ", " + Plural(counts.DataModules, "data module", "data modules");
  if (counts.Missing != 0) text += fmt::format(", {} missing", counts.Missing);
  return text;
}

// --- opening

bool TDocuments::OpenAny(const std::string& fileName) {
  if (DirectoryExists(fileName)) {
    const std::string project = ProjectOf(AbsoluteFileName(fileName));
    return !project.empty() && OpenProject(project);
  }
  return IsProjectFile(fileName) ? OpenProject(fileName) : OpenFile(fileName);
}

void TDocuments::OpenAll(const std::vector<std::string>& files) {
  const TWaitCursor wait;
  std::vector<std::string> opened;
  FOpened = &opened;
  FViews.BeginPages();
  for (const std::string& file : files) OpenAny(file);
  FOpened = nullptr;
  FSettings.RememberFiles(opened);
  FViews.EndPages();
}

void TDocuments::Remember(const std::string& fileName) {
  if (FOpened != nullptr) FOpened->push_back(fileName);
  else FSettings.RememberFiles({fileName});
}

// The one project of a folder, or the one that the user chooses; empty when there is none.
std::string TDocuments::ProjectOf(const std::string& folder) {
  const std::vector<std::string> projects = ProjectsIn(folder);
  if (projects.empty())
    ReportError(folder + ": expected a project (.dpr, .dproj, .lpi or another) in it");
  if (projects.size() <= 1) return projects.empty() ? std::string() : projects[0];
  return FSaving.Dialogs.Choose ? FSaving.Dialogs.Choose("Open project", projects) : projects[0];
}

bool TDocuments::OpenProject(const std::string& fileName) {
  std::string name = AbsoluteFileName(fileName);
  const std::string opened = name;
  TProjectHolder* open = FWorkspace.Project();
  if (open != nullptr && (open->FileName() == name || open->Project().DescriptionName() == name)) {
    ShowSource(*open->Sources()[0]);
    return true;
  }
  if (!FNotifiers.Notify(ofnFileOpening, name)) return false;
  const TWaitCursor wait;
  try {
    TProjectList group = FWorkspace.Group();
    if (IsProjectGroup(name)) {
      group = ReadProjectGroup(name);
      if (group.Projects.empty()) throw EProjectError(name, {}, "expected projects in the group");
      name = FirstOnDisk(group);
    } else if (!group.Holds(name)) {
      group = {};
    }
    // A project that cannot be opened leaves the one that is open alone.
    TProject::Open(name);
    if (!CloseProject()) return false;
    FWorkspace.SetGroup(std::move(group));
    TProjectHolder& project = FWorkspace.OpenProject(name);
    FViews.ProjectChanged(&project);
    ReportProject(project.Project());
    Remember(opened);
    FNotifiers.Notify(ofnFileOpened, project.FileName());
    FNotifiers.Notify(ofnActiveProjectChanged, project.FileName());
    if (OnProjectOpened) OnProjectOpened(project);
  } catch (const Exception& e) {
    ReportError(e.Message());
    return false;
  }
  return true;
}

void TDocuments::ReportProject(const TProject& project) {
  FViews.Tell({.Kind = TMessageKind::Information,
               .Text = fmt::format("Project {} is open: {}.", project.Name(),
                                   Summary(project.Statistics()))});
  std::size_t listed = 0;
  const auto warn = [&](const std::string& place, const std::string& message, int line,
                        const std::string& fileName) {
    if (++listed <= ListedProblems)
      FViews.Tell({TMessageKind::Warning, fmt::format("{}({}): {}", fileName, place, message),
                   fileName, line});
  };
  for (const TSourceProblem& problem : project.Problems())
    warn(fmt::format("{},{}", problem.Place.Line, problem.Place.Column), problem.Message,
         problem.Place.Line, project.FileName());
  for (const TProjectModule& module : project.Modules())
    if (module.State == TModuleState::Missing)
      warn(IntToStr(module.Line), module.Message, module.Line,
           module.Described ? project.DescriptionName() : project.FileName());
  if (listed > ListedProblems)
    FViews.Tell({.Kind = TMessageKind::Warning,
                 .Text = fmt::format("{} more places of the project are not listed",
                                     listed - ListedProblems)});
}

TModule* TDocuments::OpenModule(const std::string& fileName) {
  if (TModule* open = FWorkspace.Find(fileName)) return open;
  const std::string name = AbsoluteFileName(fileName);
  if (!FNotifiers.Notify(ofnFileOpening, name)) return nullptr;
  try {
    TModule& module = FWorkspace.Open(name);
    FNotifiers.Notify(ofnFileOpened, name);
    return &module;
  } catch (const Exception& e) {
    ReportError(e.Message());
    return nullptr;
  }
}

bool TDocuments::OpenFile(const std::string& fileName) {
  const std::string name = AbsoluteFileName(fileName);
  TModule* module = OpenModule(name);
  return module != nullptr && ShowModule(*module, name);
}

// The source or form of that file name.
bool TDocuments::ShowModule(TModule& module, const std::string& fileName) {
  // The text of a form stands for it as long as the form cannot be read.
  TFormEditor* form = module.FormEditor();
  const bool readable =
      form != nullptr && form->FileName() == fileName && form->Document() != nullptr;
  if (TSourceEditor* source = readable ? nullptr : module.FindSource(fileName)) {
    ShowSource(*source);
    if (FViews.ViewsOf(*source).empty()) return false;
    if (!source->Document().Untitled()) Remember(fileName);
    return true;
  }
  if (form != nullptr) {
    ShowForm(*form);
    const TSourceEditor* text = module.FindSource(fileName);
    return FViews.DesignerOf(*form) != nullptr ||
           (text != nullptr && !FViews.ViewsOf(*text).empty());
  }
  ReportError(fileName + ": the file is no source and no form");
  return false;
}

bool TDocuments::OpenFileAt(const std::string& fileName, int line) {
  if (!OpenFile(fileName)) return false;
  if (line > 0) FViews.GoTo(line, 1);
  return true;
}

void TDocuments::NewUnit(TSourceLanguage language) {
  TModule& module = FWorkspace.NewUnit(language);
  FNotifiers.Notify(ofnFileOpened, module.FileName());
  ShowSource(*module.Sources()[0]);
}

void TDocuments::NewProject(TNewProject kind) {
  TProjectHolder* open = FWorkspace.Project();
  const std::string folder = open != nullptr ? open->Project().Folder() + "/" : "";
  std::string name = FSaving.Dialogs.Save("New project", AbsoluteFileName(folder + "Project1.lpi"),
                                          "Free Pascal projects (*.lpi);;Projects (*.dpr)");
  if (name.empty()) return;
  if (ExtractFileExt(name).empty()) name += ".lpi";
  if (!IsIdentifier(ExtractFileNameEx(name)))
    return ReportError(name + ": expected a name of letters and digits, as a program has it");
  try {
    WriteNewFiles(NewProjectFiles(kind, AbsoluteFileName(name)));
    OpenProject(name);
  } catch (const Exception& e) {
    ReportError(e.Message());
  }
}

void TDocuments::NewForm() {
  TProjectHolder* project = FWorkspace.Project();
  const bool free = project != nullptr && project->Project().Symbols().contains("FPC");
  const std::string folder = project != nullptr ? project->Project().Folder() : ".";
  int number = 1;
  const auto unitFile = [&] { return fmt::format("{}/Unit{}.pas", folder, number); };
  while (FileExists(unitFile()) || FWorkspace.Find(unitFile()) != nullptr) ++number;
  std::string name =
      FSaving.Dialogs.Save("New form", AbsoluteFileName(unitFile()), "Pascal units (*.pas)");
  if (name.empty()) return;
  if (ExtractFileExt(name).empty()) name += ".pas";
  name = AbsoluteFileName(name);
  const std::string form = fmt::format("Form{}", number);
  try {
    WriteNewFiles(NewFormFiles(name, form, free ? ".lfm" : ".dfm"));
  } catch (const Exception& e) {
    return ReportError(e.Message());
  }
  TModule* module = OpenModule(name);
  if (module == nullptr) return;
  ShowSource(*module->Sources()[0]);
  if (project != nullptr) FSaving.ProjectEditing().Add(*module, "T" + form);
  if (module->FormEditor() != nullptr) ShowForm(*module->FormEditor());
}

bool TDocuments::ReloadFile(const std::string& fileName) {
  TModule* module = FWorkspace.Find(fileName);
  if (module == nullptr) return false;
  try {
    if (TSourceEditor* source = module->FindSource(AbsoluteFileName(fileName))) {
      if (source->LoadedDocument() != nullptr) source->LoadedDocument()->Reload();
    } else if (TFormEditor* form = module->FormEditor()) {
      FViews.FormGoes(*form);
      form->ReadAgain();
      EditorChanged(*module);
      FViews.FormRead(*form);
    }
    return true;
  } catch (const Exception& e) {
    ReportError(e.Message());
    return false;
  }
}

void TDocuments::ShowSource(TSourceEditor& editor) {
  try {
    FViews.ShowSource(editor);
  } catch (const Exception& e) {
    ReportError(e.Message());
    if (TModule* module = editor.Module(); module != nullptr && !FViews.Shows(*module, nullptr))
      if (IsUnit(*module)) CloseModule(*module, true);
  }
}

void TDocuments::ShowForm(TFormEditor& editor) {
  if (editor.Document() != nullptr) FViews.ShowForm(editor);
  else ShowFormText(editor);
}

// A form that cannot be read is shown as text, at the place of the trouble.
void TDocuments::ShowFormText(TFormEditor& editor) {
  TModule* module = editor.Module();
  const std::string& name = editor.FileName();
  const bool text = FileExists(name) && ReadWholeFile(name).find('\0') == std::string::npos;
  if (module == nullptr || !text)
    return ReportError(name + ": the form cannot be shown, and it is no text either");
  TSourceEditor* source = module->FindSource(name);
  if (source == nullptr) source = &module->AddSource(name);
  ShowSource(*source);
  if (!FViews.ViewsOf(*source).empty())
    FViews.GoTo(editor.TroublePlace().Line, editor.TroublePlace().Column);
}

// --- closing

bool TDocuments::Modified() const {
  const std::vector<TModule*> modules = FWorkspace.Modules();
  return std::any_of(modules.begin(), modules.end(), [](const auto* m) { return m->Modified(); });
}

bool TDocuments::MayClosePage(TSourceEditor& source, bool last) {
  TModule* module = source.Module();
  if (module == nullptr) return false;
  if (!last) return true;
  const bool goes = module != FWorkspace.Project() && !FViews.Shows(*module, &source);
  return !(goes ? module->Modified() : source.Modified()) || FSaving.Settle(*module);
}

void TDocuments::PageClosed(TSourceEditor& source, bool last) {
  if (!last) return;
  TModule* module = source.Module();
  source.Forget();
  // The project stays open without its page.
  if (module == nullptr || module == FWorkspace.Project()) return;
  if (!FViews.Shows(*module, nullptr)) CloseModule(*module, false);
}

void TDocuments::CloseHidden() {
  for (TModule* module : FWorkspace.Modules())
    if (IsUnit(*module) && !FViews.Shows(*module, nullptr)) CloseModule(*module, true);
}

void TDocuments::Remove(TModule& module) {
  TFormEditor* form = module.FormEditor();
  const TFormDocument* changed = form != nullptr && form->Modified() ? form->Document() : nullptr;
  const std::string lost(changed != nullptr ? changed->Root().StoredClassName() : "");
  FViews.Drop(module);
  FWorkspace.Remove(module);
  if (!lost.empty()) FViews.BaseFormChanged(lost);
}

bool TDocuments::CloseModule(TModule& module, bool ask) {
  if (&module == FWorkspace.Project()) return CloseProject();
  const TIntf<IOTAModule> held(module.Interface());
  if (!FNotifiers.Notify(ofnFileClosing, module.FileName())) return false;
  if (ask && !FSaving.Settle(module)) return false;
  Remove(module);
  return true;
}

bool TDocuments::CloseProject() {
  TProjectHolder* project = FWorkspace.Project();
  if (project == nullptr) return true;
  std::vector<TModule*> own;
  for (TModule* module : FWorkspace.Modules())
    if (module == project || !module->Owners.empty()) own.push_back(module);
  for (TModule* module : own)
    if (!FSaving.Settle(*module)) return false;
  for (TModule* module : own)
    if ((IsUnit(*module) || module == project) &&
        !FNotifiers.Notify(ofnFileClosing, module->FileName()))
      return false;
  if (OnProjectCloses) OnProjectCloses();
  for (TModule* module : own)
    if (IsUnit(*module)) Remove(*module);
  EndProject();
  return true;
}

void TDocuments::EndProject() {
  TProjectHolder* project = FWorkspace.Project();
  if (project == nullptr) return;
  FViews.Drop(*project);
  FWorkspace.CloseProject();
  FForms.Clear();
  FWorkspace.SetGroup({});
  FViews.ProjectChanged(nullptr);
  FNotifiers.Notify(ofnActiveProjectChanged, "");
}

bool TDocuments::CloseAll() {
  if (!FSaving.SettleAll()) return false;
  const std::vector<TModule*> modules = FWorkspace.Modules();
  for (TModule* module : modules)
    if ((IsUnit(*module) || module == FWorkspace.Project()) &&
        !FNotifiers.Notify(ofnFileClosing, module->FileName()))
      return false;
  if (OnProjectCloses) OnProjectCloses();
  for (TModule* module : modules)
    if (IsUnit(*module)) Remove(*module);
  EndProject();
  return true;
}

}  // namespace wrenfold
