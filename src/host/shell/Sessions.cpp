// Stores sessions by their project; pages without a project have a session of their own.
#include "host/shell/Sessions.h"

#include <algorithm>

#include "platform/core/system/Files.h"

namespace wrenfold {

namespace {

constexpr char NoProject[] = "";
constexpr char LastKey[] = "LastProject";

}  // namespace

TSessions::TSessions(TDocuments& documents, TEditWindow& window)
    : FDocuments(documents), FWindow(window) {
  FDocuments.OnProjectOpened = [this](TProjectHolder& project) { OpenPages(project); };
  FDocuments.OnProjectCloses = [this] { Store(); };
}

void TSessions::OpenPages(const TProjectHolder& project) {
  TSession session = FDocuments.Settings().Session(project.FileName());
  if (session.Files.empty()) {
    // The first time: the source and the main form's unit.
    session.Files.push_back(project.FileName());
    TProjectHolder* open = FDocuments.Workspace().Project();
    if (const TProjectModule* main = FindMainForm(open->Project()))
      session.Files.push_back(main->FileName);
    session.Active = 1;
  }
  OpenPages(session);
}

void TSessions::OpenPages(const TSession& session) {
  FWindow.BeginUpdate();
  for (const std::string& file : session.Files) {
    if (!FileExists(file)) continue;
    TModule* module = FDocuments.OpenModule(file);
    TSourceEditor* source = module != nullptr ? module->FindSource(file) : nullptr;
    if (source == nullptr) continue;
    try {
      FWindow.AddPage(*source);
    } catch (const Exception& e) {
      FDocuments.ReportError(e.Message());
    }
  }
  FWindow.EndUpdate();
  const std::vector<TEditPage*> pages = FWindow.Pages();
  const int active = std::min(session.Active, static_cast<int>(pages.size()) - 1);
  if (active >= 0) FWindow.Activate(*pages[static_cast<std::size_t>(active)]);
  FWindow.Show();
  if (FWindow.ActivePage() != nullptr) FWindow.Editor().setFocus();
}

void TSessions::Store() {
  const TProjectHolder* project = FDocuments.Workspace().Project();
  TSession session;
  for (const TEditPage* page : FWindow.Pages()) {
    const TUnitDocument* document = page->Source().LoadedDocument();
    if (document == nullptr || document->Untitled()) continue;
    if (page == FWindow.ActivePage()) session.Active = static_cast<int>(session.Files.size());
    session.Files.push_back(page->Source().FileName());
  }
  FDocuments.Settings().StoreSession(project != nullptr ? project->FileName() : NoProject, session);
}

void TSessions::KeepForNextStart() {
  Store();
  const TWorkspace& workspace = FDocuments.Workspace();
  const std::string& group = workspace.Group().FileName;
  const TProjectHolder* project = workspace.Project();
  const std::string last = project != nullptr && group.empty() ? project->FileName() : group;
  FDocuments.Settings().SetValue(LastKey, QByteArray::fromStdString(last));
}

void TSessions::OpenLast() {
  const std::string project = FDocuments.Settings().Value(LastKey).toStdString();
  if (project == NoProject) OpenPages(FDocuments.Settings().Session(NoProject));
  else if (FileExists(project)) FDocuments.OpenProject(project);
}

}  // namespace wrenfold
