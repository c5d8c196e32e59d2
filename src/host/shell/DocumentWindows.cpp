// Keeps pages, designers and panels in step with the documents.
#include "host/shell/DocumentWindows.h"

#include <algorithm>

#include "platform/widgets/Application.h"

namespace wrenfold {

namespace {

constexpr int StatusTime = 5000, ErrorTime = 15000;  // milliseconds

}  // namespace

TDocumentWindows::TDocumentWindows(const TPlaces& places) : F(places) {
  F.Editor.OnPageChange = [this] { PageChanged(); };
  F.Editor.OnStatusChange = [this] { F.Status.ShowPage(F.Editor); };
  F.Editor.OnCloseRequest = [this](TEditPage& page) { ClosePage(page); };
  F.Designers.OnClosed = [this](TFormEditor& editor) { DesignerClosed(editor); };
  FFollowing = QObject::connect(qApp, &QApplication::focusChanged, qApp,
                                [this] { Guarded(nullptr, [this] { ActiveFormChanged(); }); });
}

TDocumentWindows::~TDocumentWindows() {
  QObject::disconnect(FFollowing);
  Clear();
}

void TDocumentWindows::Serve(TDocuments& documents) {
  FDocuments = &documents;
  F.Project.OnOpen = [this](const std::string& fileName) {
    const bool project = FDocuments->Workspace().Group().Holds(fileName);
    project ? FDocuments->OpenProject(fileName) : FDocuments->OpenFile(fileName);
  };
  F.Messages.OnOpen = [this](const std::string& fileName, int line) {
    FDocuments->OpenFileAt(fileName, line);
  };
  F.Status.ShowPage(F.Editor);
}

void TDocumentWindows::Clear() {
  F.Editor.OnPageChange = nullptr;
  F.Editor.OnStatusChange = nullptr;
  F.Inspector.ShowForm(nullptr);
  F.Designers.Clear();
  while (!F.Editor.Pages().empty()) F.Editor.RemovePage(*F.Editor.Pages().back());
}

// --- what is shown

void TDocumentWindows::ShowSource(TSourceEditor& editor) {
  const std::vector<TEditPage*> pages = F.Editor.PagesOf(editor);
  // The view that the user is in stays.
  if (pages.empty()) F.Editor.AddPage(editor);
  else if (std::find(pages.begin(), pages.end(), F.Editor.ActivePage()) == pages.end())
    F.Editor.Activate(*pages[0]);
  FActiveDesigner = nullptr;
  if (F.Editor.Updating()) return;
  F.Editor.Show();
  F.Editor.Editor().setFocus();
}

void TDocumentWindows::GoTo(int line, int column) {
  if (TEditPage* page = F.Editor.ActivePage()) F.Editor.SetCursor(*page, line, column);
}

void TDocumentWindows::ShowForm(TFormEditor& editor) {
  F.Designers.Show(editor);
  if (TDesignerForm* designer = F.Designers.Find(editor)) Activate(*designer);
}

std::vector<IOTAEditView*> TDocumentWindows::ViewsOf(const TSourceEditor& editor) {
  std::vector<IOTAEditView*> views;
  for (const TEditPage* page : F.Editor.PagesOf(editor)) views.push_back(&page->View());
  return views;
}

bool TDocumentWindows::Shows(const TModule& module, const TSourceEditor* except) const {
  for (const TIntf<TSourceEditor>& source : module.Sources())
    if (source.get() != except && !F.Editor.PagesOf(*source).empty()) return true;
  const TFormEditor* form = module.FormEditor();
  return form != nullptr && F.Designers.Shows(*form);
}

// --- which one the user is in

TDesignerForm* TDocumentWindows::ActiveDesigner() const {
  if (auto* designer = dynamic_cast<TDesignerForm*>(Screen().ActiveForm())) return designer;
  if (Screen().ActiveForm() == &F.Editor || FActiveDesigner == nullptr) return nullptr;
  return FActiveDesigner->isVisible() ? FActiveDesigner.data() : nullptr;
}

TModule* TDocumentWindows::CurrentModule() {
  if (const TDesignerForm* designer = ActiveDesigner()) return designer->Editor().Module();
  const TEditPage* page = F.Editor.ActivePage();
  return page != nullptr ? page->Source().Module() : nullptr;
}

// Panels, questions and windows of packages do not count: the user comes back from them.
void TDocumentWindows::ActiveFormChanged() {
  TForm* form = Screen().ActiveForm();
  if (form == &F.Editor) {
    FActiveDesigner = nullptr;
    return;
  }
  auto* designer = dynamic_cast<TDesignerForm*>(form);
  if (designer != nullptr) Activate(*designer);
}

void TDocumentWindows::Activate(TDesignerForm& designer) {
  if (FActiveDesigner == &designer) return;
  FActiveDesigner = &designer;
  TFormEditor& editor = designer.Editor();
  if (F.Inspector.Editor() != &editor) F.Inspector.ShowForm(&editor);
  editor.Activated();
}

void TDocumentWindows::PageChanged() {
  const TEditPage* page = F.Editor.ActivePage();
  const TModule* module = page != nullptr ? page->Source().Module() : nullptr;
  TFormEditor* form = module != nullptr ? module->FormEditor() : nullptr;
  if (form != F.Inspector.Editor()) {
    F.Inspector.ShowForm(form);
    if (form != nullptr) form->Activated();
  }
  TitleChanged();
}

// --- what changed

void TDocumentWindows::SelectionChanged(TFormEditor& editor) {
  if (TDesignerForm* designer = F.Designers.Find(editor)) designer->ShowSelection();
  // Somebody selected in a form that the inspector did not show: that is the one to look at.
  if (!editor.Designer().GetSelections().empty() || F.Inspector.Editor() == &editor)
    F.Inspector.ShowForm(&editor);
}

void TDocumentWindows::EditorChanged(TModule& module) {
  for (const TIntf<TSourceEditor>& source : module.Sources()) F.Editor.UpdatePage(*source);
  if (TFormEditor* form = module.FormEditor()) {
    F.Designers.Update(*form);
    if (const TFormDocument* document = form->LoadedDocument())
      F.Designers.UpdateUsersOf(document->Root().StoredClassName());
    if (F.Inspector.Editor() == form) F.Inspector.Refresh();
  }
  F.Project.ShowModified(module.FileName(), module.Modified());
  TitleChanged();
}

void TDocumentWindows::FormGoes(TFormEditor& editor) {
  FReread = F.Inspector.Editor() == &editor ? &editor : nullptr;
  if (FReread != nullptr) F.Inspector.ShowForm(nullptr);
  if (TDesignerForm* designer = F.Designers.Find(editor)) designer->Forget();
}

void TDocumentWindows::FormRead(TFormEditor& editor) {
  if (FReread == &editor) F.Inspector.ShowForm(&editor);
  FReread = nullptr;
}

void TDocumentWindows::Drop(TModule& module) {
  if (TFormEditor* form = module.FormEditor()) {
    if (F.Inspector.Editor() == form) F.Inspector.ShowForm(nullptr);
    F.Designers.Drop(*form);
  }
  for (const TIntf<TSourceEditor>& source : module.Sources())
    for (TEditPage* page : F.Editor.PagesOf(*source)) F.Editor.RemovePage(*page);
  F.Project.ShowModified(module.FileName(), false);
  PageChanged();
}

void TDocumentWindows::ProjectChanged(TProjectHolder* project) {
  const TProjectList& group = FDocuments->Workspace().Group();
  F.Project.ShowProject(project != nullptr ? &project->Project() : nullptr, group.FileName,
                        group.Projects);
  F.Status.ShowProject(project != nullptr ? Summary(project->Project().Statistics())
                                          : std::string());
  if (project != nullptr)
    for (const TModule* module : FDocuments->Workspace().Modules())
      if (module->Modified()) F.Project.ShowModified(module->FileName(), true);
  TitleChanged();
}

void TDocumentWindows::Tell(const TNotice& message) {
  F.Messages.Add(message.Kind, message.Text, message.FileName, message.Line);
  if (message.Kind == TMessageKind::Error) F.Status.Say(message.Text, ErrorTime);
}

void TDocumentWindows::Status(const std::string& text) {
  F.Status.Say(text, StatusTime);
}

// --- closing

bool TDocumentWindows::ClosePage(TEditPage& page) {
  const TIntf<TSourceEditor> source(&page.Source());
  const bool last = F.Editor.PagesOf(*source).size() == 1;
  if (!FDocuments->MayClosePage(*source, last)) return false;
  // The question let other events in: the page may be gone.
  const auto pages = F.Editor.Pages();
  if (std::find(pages.begin(), pages.end(), &page) == pages.end()) return true;
  F.Editor.RemovePage(page);
  FDocuments->PageClosed(*source, last);
  return true;
}

// Other modules that no window shows belong to packages, which close them themselves.
void TDocumentWindows::DesignerClosed(TFormEditor& editor) {
  if (F.Inspector.Editor() == &editor) PageChanged();
  TModule* module = editor.Module();
  if (module != nullptr && module != FDocuments->Workspace().Project() && !Shows(*module, nullptr))
    FDocuments->CloseModule(*module, true);
}

}  // namespace wrenfold
