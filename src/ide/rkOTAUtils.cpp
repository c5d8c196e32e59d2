// Queries on the environment's projects, modules and editors.
#include "ide/rkOTAUtils.h"

#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"

namespace wrenfold {

namespace {

TIntf<IOTAModuleServices> ModuleServices() {
  return Supports<IOTAModuleServices>(BorlandIDEServices);
}

// Calls visit with every open module until it answers true.
template <class Visit>
void VisitModules(Visit visit) {
  const auto services = ModuleServices();
  if (!services) return;
  for (int i = 0; i < services->GetModuleCount(); ++i) {
    const TIntf<IOTAModule> module(services->GetModule(i));
    if (module && visit(module.get())) return;
  }
}

template <class Visit>
void VisitEditors(IOTAModule* module, Visit visit) {
  if (module == nullptr) return;
  for (int i = 0; i < module->GetModuleFileCount(); ++i) {
    const TIntf<IOTAEditor> editor(module->GetModuleFileEditor(i));
    if (editor) visit(editor.get());
  }
}

template <class Wanted>
TIntf<Wanted> FirstEditor(IOTAModule* module) {
  TIntf<Wanted> found;
  VisitEditors(module, [&found](IOTAEditor* editor) {
    if (!found) found = Supports<Wanted>(editor);
  });
  return found;
}

// Interfaces of one object are told by the address of its root interface.
bool SameObject(IInterface* first, IInterface* second) {
  return Supports<IInterface>(first) == Supports<IInterface>(second);
}

bool IsOwnedBy(IOTAModule* module, IOTAProject* project) {
  for (int i = 0; i < module->GetOwnerCount(); ++i)
    if (SameObject(module->GetOwner(i), project)) return true;
  return false;
}

// Calls visit with every editor of the open modules, those of the active project only if asked.
template <class Visit>
void VisitOpenedEditors(bool projectOnly, Visit visit) {
  const auto project = projectOnly ? GetActiveProject() : TIntf<IOTAProject>();
  if (projectOnly && !project) return;
  VisitModules([&](IOTAModule* module) {
    if (!projectOnly || IsOwnedBy(module, project.get())) VisitEditors(module, visit);
    return false;
  });
}

std::string NameOf(IOTAModuleInfo& info, TModuleNameKind kind) {
  switch (kind) {
    case mnkFile:
      return info.GetFileName();
    case mnkUnit:
      return info.GetName();
    case mnkForm:
      return info.GetFormName();
    case mnkDesignClass:
      return {};
  }
  return {};
}

// Extensions of form files, binary or text, and of what else a unit is not shown by. A file is
// looked up as a part of the list.
constexpr std::string_view FormExtensions = ".dfm.xfm.lfm.fmx";
constexpr std::string_view NoSourceExtensions = ".dfm.xfm.lfm.fmx.h.bpr.res";

// An empty extension occurs in no list.
bool OccursIn(std::string_view list, const std::string& extension) {
  return !extension.empty() && list.find(extension) != std::string_view::npos;
}

void ShowFormOrSource(IOTAEditor* editor, bool noSource, bool showCpp) {
  const std::string fileName = editor->GetFileName();
  const std::string extension = ExtractFileExt(fileName);
  if (OccursIn(FormExtensions, extension)) return editor->Show();
  if (noSource || !OccursIn(".pas.cpp", extension)) return;
  if (showCpp && EqualText(extension, ".cpp")) return editor->Show();
  const auto actions = Supports<IOTAActionServices>(BorlandIDEServices);
  if (actions) actions->OpenFile(fileName);
}

}  // namespace

std::string GetProjectFormType() {
  return "dfm";
}

std::string GetProjectFormExt() {
  return std::string(".").append(GetProjectFormType());
}

TIntf<IOTAModule> GetActiveModule() {
  const auto services = ModuleServices();
  return services ? TIntf<IOTAModule>(services->CurrentModule()) : nullptr;
}

TIntf<IOTAProject> GetActiveProject() {
  TIntf<IOTAProject> project;
  VisitModules([&project](IOTAModule* module) {
    const auto group = Supports<IOTAProjectGroup>(module);
    if (!group) return false;
    project = TIntf<IOTAProject>(group->GetActiveProject());
    return true;
  });
  if (project) return project;
  VisitModules([&project](IOTAModule* module) {
    project = Supports<IOTAProject>(module);
    return static_cast<bool>(project);
  });
  return project;
}

TIntf<IOTAProjectResource> GetProjectResource() {
  TIntf<IOTAProjectResource> resource;
  const auto project = GetActiveProject();
  if (!project) return resource;
  VisitModules([&](IOTAModule* module) {
    if (IsOwnedBy(module, project.get())) resource = Supports<IOTAProjectResource>(module);
    return static_cast<bool>(resource);
  });
  return resource;
}

TIntf<IOTAFormEditor> GetActiveFormEditor() {
  return GetFormEditorFromModule(GetActiveModule().get());
}

TIntf<IOTASourceEditor> GetActiveSourceEditor() {
  return GetSourceEditorFromModule(GetActiveModule().get());
}

TIntf<IOTAFormEditor> GetFormEditorFromModule(IOTAModule* module) {
  return FirstEditor<IOTAFormEditor>(module);
}

TIntf<IOTASourceEditor> GetSourceEditorFromModule(IOTAModule* module) {
  return FirstEditor<IOTASourceEditor>(module);
}

TIntf<IDesigner> GetActiveFormDesigner(IOTAFormEditor* formEditor) {
  const auto native = Supports<INTAFormEditor>(formEditor);
  return native ? TIntf<IDesigner>(native->GetFormDesigner()) : nullptr;
}

TComponent* GetFormFromEditor(IOTAEditor* editor) {
  const auto native = Supports<INTAFormEditor>(editor);
  if (!native) return nullptr;
  const TIntf<IDesigner> designer(native->GetFormDesigner());
  return designer ? designer->GetRoot() : nullptr;
}

TComponent* GetFormFromEditor(IOTAEditor* editor, TProjectFormTypes types) {
  TComponent* root = GetFormFromEditor(editor);
  if (root == nullptr) return nullptr;
  const TTypeInfo& info = root->GetClassInfo();
  if (types.Contains(pfkForm) && IsFormClass(info)) return root;
  if (types.Contains(pfkDataModule) && IsDataModuleClass(info)) return root;
  const bool isReport = info.Parent() != nullptr && info.Parent()->Name() == "TQuickRep";
  return types.Contains(pfkQuickRep) && isReport ? root : nullptr;
}

QWidget* GetDesignedWindow(IOTAFormEditor* editor) {
  if (QWidget* window = WidgetOf(GetFormFromEditor(editor))) return window;
  const auto designer = GetActiveFormDesigner(editor);
  const auto drawn = Supports<INTADesignWindow>(designer.get());
  return drawn ? drawn->GetRootWindow() : nullptr;
}

void GetProjectForms(std::vector<TComponent*>& list, TProjectFormTypes types) {
  GetProjectForms(list, types, false);
}

void GetProjectForms(std::vector<TComponent*>& list, TProjectFormTypes types, bool openAll) {
  list.clear();
  const auto services = ModuleServices();
  TModuleInfos modules;
  GetProjectModules(modules);
  for (const auto& info : modules) {
    const TIntf<IOTAModule> module(openAll ? info->OpenModule()
                                           : services->FindModule(info->GetFileName()));
    const auto editor = GetFormEditorFromModule(module.get());
    if (TComponent* root = GetFormFromEditor(editor.get(), types)) list.push_back(root);
  }
}

void GetOpenedFormEditors(TEditors& list, TProjectFormTypes types, bool projectOnly) {
  list.clear();
  VisitOpenedEditors(projectOnly, [&](IOTAEditor* editor) {
    if (GetFormFromEditor(editor, types) != nullptr) list.emplace_back(editor);
  });
}

void GetOpenedEditors(TEditors& list, TModuleType moduleType, bool projectOnly) {
  list.clear();
  VisitOpenedEditors(projectOnly, [&](IOTAEditor* editor) {
    if (moduleType == mtForm && GetFormFromEditor(editor) != nullptr) list.emplace_back(editor);
    if (moduleType != mtUnit) return;
    if (const auto source = Supports<IOTASourceEditor>(editor)) list.emplace_back(source.get());
  });
}

void GetOpenedSourceEditors(TSourceEditors& list, bool projectOnly) {
  list.clear();
  VisitOpenedEditors(projectOnly, [&](IOTAEditor* editor) {
    if (auto source = Supports<IOTASourceEditor>(editor)) list.push_back(std::move(source));
  });
}

void GetProjectModules(TModuleInfos& list) {
  list.clear();
  const auto project = GetActiveProject();
  if (!project) return;
  for (int i = 0; i < project->GetModuleCount(); ++i)
    if (TIntf<IOTAModuleInfo> info{project->GetModule(i)}) list.push_back(std::move(info));
}

void GetProjectModuleNames(TStrings& strings, TModuleNameKind kind) {
  const TUpdate update(strings);
  strings.Clear();
  TModuleInfos modules;
  GetProjectModules(modules);
  for (const auto& info : modules) {
    const std::string name = NameOf(*info, kind);
    if (!name.empty()) strings.Add(name);
  }
}

TModuleNames GetProjectModuleNames() {
  TModuleInfos modules;
  GetProjectModules(modules);
  TModuleNames names;
  names.reserve(modules.size());
  for (const auto& info : modules)
    names.push_back(
        {info->GetFileName(), info->GetName(), info->GetFormName(), info->GetDesignClass()});
  return names;
}

TForm* FindEditorForm() {
  for (TForm* form : Screen().Forms())
    if (form->isVisible() && form->Name().find("EditWindow") != std::string::npos) return form;
  return nullptr;
}

TComponent* GetEditorFormComponent(std::string_view name) {
  TForm* form = FindEditorForm();
  return form != nullptr ? form->FindComponent(name) : nullptr;
}

void ShowModule(IOTAModuleInfo* moduleInfo, TModuleNameKind kind, bool noSource, bool showCpp) {
  if (moduleInfo == nullptr || kind == mnkDesignClass) return;
  const TIntf<IOTAModule> module(moduleInfo->OpenModule());
  VisitEditors(module.get(), [&](IOTAEditor* editor) {
    if (kind == mnkForm) return ShowFormOrSource(editor, noSource, showCpp);
    if (!OccursIn(NoSourceExtensions, ExtractFileExt(editor->GetFileName()))) editor->Show();
  });
}

void ShowModuleByName(std::string_view name, TModuleNameKind kind, bool noSource, bool showCpp) {
  TModuleInfos modules;
  GetProjectModules(modules);
  for (const auto& info : modules) {
    if (kind == mnkDesignClass || !EqualText(NameOf(*info, kind), name)) continue;
    return ShowModule(info.get(), kind, noSource, showCpp);
  }
}

}  // namespace wrenfold
