#include "host/documents/ProjectForms.h"

#include <filesystem>

#include "host/documents/Workspace.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

std::shared_ptr<TFileForms> TProjectForms::FilesFor(const TFormEditor& editor) {
  const TModule* module = editor.Module();
  TProjectHolder* project = FWorkspace.Project();
  const bool listed = project != nullptr && module != nullptr && !module->Owners.empty();
  const std::string folder = std::filesystem::path(editor.FileName()).parent_path().string();
  std::vector<std::string> modules;
  if (listed)
    for (const TProjectModule& each : project->Project().Modules())
      modules.push_back(each.FileName);
  TKnown& known = FKnown[listed ? project->FileName() : folder];
  if (known.Files != nullptr && known.Modules == modules && !known.Files->Outdated())
    return known.Files;
  known = {listed ? TFileForms::OfProject(project->Project()) : TFileForms::OfFolder(folder),
           std::move(modules)};
  return known.Files;
}

std::shared_ptr<const TDesignComponent> TProjectForms::ChangedForm(
    std::string_view className) const {
  for (const TModule* module : FWorkspace.Modules()) {
    const TFormEditor* form = module->FormEditor();
    TFormDocument* document = form != nullptr ? form->LoadedDocument() : nullptr;
    if (document != nullptr && document->Modified() &&
        EqualText(document->Root().StoredClassName(), className))
      return document->Copy();
  }
  return nullptr;
}

TModuleForms::TModuleForms(TFormEditor& editor, TProjectForms& forms)
    : FEditor(editor), FForms(forms), FNow{forms.FilesFor(editor), {}} {}

void TModuleForms::Renew() {
  FBefore = std::move(FNow);
  FNow = {FForms.FilesFor(FEditor), {}};
  FAsked.clear();
}

bool TModuleForms::AskedFor(std::string_view className) const {
  return FAsked.contains(LowerCase(className));
}

// The workbench knows the texts of its editors, the files the rest.
std::vector<std::string> TModuleForms::Ancestors(std::string_view className) {
  const TModule* module = FEditor.Module();
  if (module == nullptr) return {};
  auto chain = FEditor.Host().ClassChain(*module, std::string(className));
  if (!chain.empty()) chain.erase(chain.begin());
  return chain.empty() ? FNow.Files->Ancestors(className) : chain;
}

const TDesignComponent* TModuleForms::FindForm(std::string_view className) {
  const std::string folded = LowerCase(className);
  if (FAsked.insert(folded).second)
    if (auto changed = FForms.ChangedForm(className)) FNow.Changed[folded] = std::move(changed);
  const auto found = FNow.Changed.find(folded);
  return found != FNow.Changed.end() ? found->second.get() : FNow.Files->FindForm(className);
}

}  // namespace wrenfold
