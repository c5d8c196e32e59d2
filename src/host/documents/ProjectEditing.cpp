// Edits the clause of units in the project's document.
#include "host/documents/ProjectEditing.h"

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

void TProjectEditing::Apply(const std::vector<TSourceEdit>& edits) {
  TUnitDocument& document = FWorkspace.Project()->Sources()[0]->Document();
  for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
    document.Replace(edit->Offset, edit->Length, edit->Text);
  Refresh();
}

void TProjectEditing::Renamed(const TModule& module, const std::string& before) {
  TProjectHolder* project = FWorkspace.Project();
  const TProjectModule* listed =
      project != nullptr ? project->Project().FindModuleByFile(before) : nullptr;
  if (listed == nullptr) return;
  const std::string text = project->Sources()[0]->Document().Text();
  const auto edits = RenameInProjectEdits(text, project->FileName(), listed->UnitName,
                                          Named(module), project->Project().Symbols());
  if (!edits.empty()) Apply(edits);
}

bool TProjectEditing::CanAdd(const TModule& module) const {
  TProjectHolder* project = FWorkspace.Project();
  return project != nullptr && &module != project && !module.Sources().empty() &&
         project->Project().FindModuleByFile(module.FileName()) == nullptr;
}

bool TProjectEditing::Add(TModule& module) {
  if (!CanAdd(module)) return false;
  TProjectHolder& project = *FWorkspace.Project();
  const std::string text = project.Sources()[0]->Document().Text();
  const auto edits =
      AddToProjectEdits(text, project.FileName(), Named(module), project.Project().Symbols());
  if (edits.empty()) {
    FViews.Tell({.Text = project.FileName() +
                         ": expected a list of units that ends in ';' to add the unit to"});
    return false;
  }
  Apply(edits);
  FViews.Status(module.FileName() + " is part of the project");
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
