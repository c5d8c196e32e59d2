// Lists the project's modules in a dialog and shows the chosen ones.
#include "host/shell/ModuleChooser.h"

#include "host/shell/Dialogs.h"
#include "host/shell/Workbench.h"

namespace wrenfold {

namespace {

std::vector<std::string> Choose(const TProject& project, bool forms) {
  std::vector<const TProjectModule*> modules;
  std::vector<TChoice> choices;
  for (const TProjectModule& module : project.Modules()) {
    if (module.State != TModuleState::Ok || (forms && module.FormName.empty())) continue;
    modules.push_back(&module);
    choices.push_back({forms ? module.FormName : module.UnitName, module.FileName});
  }
  const auto chosen = ChooseFromList(forms ? "ViewFormForm" : "ViewUnitForm",
                                     forms ? "View Form" : "View Unit", choices);
  std::vector<std::string> files;
  for (const int index : chosen)
    files.push_back(modules[static_cast<std::size_t>(index)]->FileName);
  return files;
}

void Show(TWorkbench& workbench, bool forms) {
  TProjectHolder* project = workbench.Workspace().Project();
  if (project == nullptr) return;
  TDocuments& documents = workbench.Documents();
  for (const std::string& file : Choose(project->Project(), forms)) {
    TModule* module = documents.OpenModule(file);
    if (module == nullptr) continue;
    if (forms && module->FormEditor() != nullptr) documents.ShowForm(*module->FormEditor());
    else documents.ShowSource(*module->Sources()[0]);
  }
}

}  // namespace

void ChooseUnits(TWorkbench& workbench) {
  Show(workbench, false);
}

void ChooseForms(TWorkbench& workbench) {
  Show(workbench, true);
}

}  // namespace wrenfold
