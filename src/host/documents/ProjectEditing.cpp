// Edits the clause of units in the project's document.
#include "host/documents/ProjectEditing.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/documents/DocumentViews.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

TNamedUnit TProjectEditing::Named(const TModule& module) const {
  TNamedUnit unit;
  unit.Name = ExtractFileNameEx(module.FileName());
  unit.Path = ProjectPath(FWorkspace.Project()->Project().Folder(), module.FileName());
  TFormEditor* form = module.FormEditor();
  if (form != nullptr && form->Document() != nullptr)
    unit.FormName = form->Document()->Root().Name();
  return unit;
}

// The unit as the project file names it.
TProjectEntry TProjectEditing::Described(const std::string& fileName, const TModule& module) const {
  const TProject& project = FWorkspace.Project()->Project();
  TProjectEntry entry;
  entry.UnitName = ExtractFileNameEx(fileName);
  entry.Path = ProjectPath(ExtractFilePath(project.DescriptionName()), fileName);
  std::replace(entry.Path.begin(), entry.Path.end(), '\\', project.Description().PathSeparator);
  entry.FormName = Named(module).FormName;
  return entry;
}

// Null when the project file is all there is of a source.
TUnitDocument* TProjectEditing::SourceDocument() const {
  TProjectHolder& project = *FWorkspace.Project();
  const bool described = project.Project().DescriptionName() == project.FileName();
  return described ? nullptr : &project.Sources()[0]->Document();
}

TUnitDocument* TProjectEditing::DescriptionDocument() const {
  TProjectHolder& project = *FWorkspace.Project();
  const std::string name = project.Project().DescriptionName();
  TSourceEditor* source = name.empty() ? nullptr : project.FindSource(name);
  return source != nullptr ? &source->Document() : nullptr;
}

// The edits of the project file, in its text and under its name; none when there is no file.
template <class Edits>
std::vector<TSourceEdit> TProjectEditing::InDescription(Edits edits) const {
  TUnitDocument* document = DescriptionDocument();
  if (document == nullptr) return {};
  try {
    return edits(document->Text(), document->FileName());
  } catch (const Exception& e) {
    FViews.Tell({.Text = e.Message()});
    return {};
  }
}

bool TProjectEditing::Apply(const std::vector<TSourceEdit>& source,
                            const std::vector<TSourceEdit>& description) {
  const auto make = [](TUnitDocument* document, const std::vector<TSourceEdit>& edits) {
    for (auto edit = edits.rbegin(); document != nullptr && edit != edits.rend(); ++edit)
      document->Replace(edit->Offset, edit->Length, edit->Text);
  };
  if (source.empty() && description.empty()) return false;
  make(SourceDocument(), source);
  make(DescriptionDocument(), description);
  Refresh();
  return true;
}

void TProjectEditing::Renamed(const TModule& module, const std::string& before) {
  TProjectHolder* project = FWorkspace.Project();
  const TProjectModule* listed =
      project != nullptr ? project->Project().FindModuleByFile(before) : nullptr;
  if (listed == nullptr) return;
  std::vector<TSourceEdit> edits;
  if (const TUnitDocument* source = SourceDocument())
    edits = RenameInProjectEdits(source->Text(), project->FileName(), listed->UnitName,
                                 Named(module), project->Project().Symbols());
  Apply(edits, InDescription([&](const std::string& text, const std::string& name) {
          return RenameInProjectFileEdits(text, name, Described(before, module).Path,
                                          Described(module.FileName(), module));
        }));
}

bool TProjectEditing::CanAdd(const TModule& module) const {
  TProjectHolder* project = FWorkspace.Project();
  return project != nullptr && &module != project && !module.Sources().empty() &&
         project->Project().FindModuleByFile(module.FileName()) == nullptr;
}

bool TProjectEditing::Add(TModule& module, const std::string& createdClass) {
  if (!CanAdd(module)) return false;
  TProjectHolder& project = *FWorkspace.Project();
  TNamedUnit unit = Named(module);
  unit.FormClass = createdClass;
  std::vector<TSourceEdit> edits;
  if (const TUnitDocument* source = SourceDocument())
    edits =
        AddToProjectEdits(source->Text(), project.FileName(), unit, project.Project().Symbols());
  if (!Apply(edits, InDescription([&](const std::string& text, const std::string& name) {
               return AddToProjectFileEdits(text, name, Described(module.FileName(), module));
             }))) {
    FViews.Tell({.Text = project.FileName() +
                         ": expected a list of units that ends in ';' to add the unit to"});
    return false;
  }
  FViews.Status(module.FileName() + " is part of the project");
  return true;
}

bool TProjectEditing::CanRemove(const TModule& module) const {
  TProjectHolder* project = FWorkspace.Project();
  return project != nullptr && &module != project &&
         project->Project().FindModuleByFile(module.FileName()) != nullptr;
}

bool TProjectEditing::Remove(const TModule& module) {
  if (!CanRemove(module)) return false;
  TProjectHolder& project = *FWorkspace.Project();
  const TProjectModule listed = *project.Project().FindModuleByFile(module.FileName());
  const TNamedUnit unit{listed.UnitName, {}, listed.FormName};
  std::vector<TSourceEdit> edits;
  if (const TUnitDocument* source = SourceDocument())
    edits = RemoveFromProjectEdits(source->Text(), project.FileName(), unit,
                                   project.Project().Symbols());
  if (!Apply(edits, InDescription([&](const std::string& text, const std::string& name) {
               return RemoveFromProjectFileEdits(text, name,
                                                 Described(module.FileName(), module).Path);
             }))) {
    FViews.Tell({.Text = fmt::format("{}: expected unit {} in a list of several units, without "
                                     "directives around it, to take it out",
                                     project.FileName(), listed.UnitName)});
    return false;
  }
  FViews.Status(module.FileName() + " is no longer part of the project");
  return true;
}

void TProjectEditing::Refresh() {
  TProjectHolder& project = *FWorkspace.Project();
  try {
    project.SourceChanged();
    FWorkspace.UpdateOwners();
    FViews.ProjectChanged(&project);
  } catch (const Exception& e) {
    FViews.Tell({.Text = e.Message()});
  }
}

}  // namespace wrenfold
