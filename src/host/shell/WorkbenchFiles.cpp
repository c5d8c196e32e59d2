// Opening, saving and closing: what the workbench does with files, and what it asks before.
#include <fmt/format.h>

#include <QApplication>
#include <QFileInfo>
#include <QStatusBar>
#include <algorithm>

#include "host/shell/Dialogs.h"
#include "host/shell/Workbench.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// More places of one kind than these are counted, not listed.
constexpr std::size_t ListedProblems = 50;
constexpr char PascalFilter[] = "Pascal units (*.pas);;All files (*)";
constexpr char CppFilter[] = "C++ sources (*.cpp *.h);;All files (*)";

std::string Plural(std::size_t count, const char* one, const char* many) {
  return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string Summary(const TProjectStatistics& counts) {
  std::string text = Plural(counts.Units, "unit", "units");
  if (counts.Forms != 0) text += ", " + Plural(counts.Forms, "form", "forms");
  if (counts.Frames != 0) text += ", " + Plural(counts.Frames, "frame", "frames");
  if (counts.DataModules != 0)
    text += ", " + Plural(counts.DataModules, "data module", "data modules");
  if (counts.Missing != 0) text += fmt::format(", {} missing", counts.Missing);
  return text;
}

}  // namespace

// --- opening

bool TWorkbench::OpenAny(const std::string& fileName) {
  return IsProjectFile(fileName) ? OpenProject(fileName) : OpenFile(fileName);
}

bool TWorkbench::OpenProject(const std::string& fileName) {
  const std::string name = AbsoluteFileName(fileName);
  if (FWorkspace.Project() != nullptr && FWorkspace.Project()->FileName() == name) {
    ProjectViewSource();
    return true;
  }
  if (!FServices->NotifyFile(ofnFileOpening, name)) return false;
  const TWaitCursor wait;
  try {
    // A project that cannot be opened leaves the one that is open alone.
    TProject::Open(name);
    if (!CloseProject()) return false;
    TProjectHolder& project = FWorkspace.OpenProject(name);
    FProjectPanel->ShowProject(&project.Project());
    ReportProject(project.Project());
    FSettings.RememberFile(name);
    OpenSession(project);
  } catch (const Exception& e) {
    ReportError(e.Message());
    return false;
  }
  UpdateTitle();
  FServices->NotifyFile(ofnFileOpened, name);
  FServices->NotifyFile(ofnActiveProjectChanged, name);
  return true;
}

void TWorkbench::ReportProject(const TProject& project) {
  const TProjectStatistics counts = project.Statistics();
  FStatus.Project->setText(ToQString(Summary(counts)));
  FMessages->Add(TMessageKind::Information,
                 fmt::format("Project {} is open: {}.", project.Name(), Summary(counts)));
  std::size_t listed = 0;
  for (const TSourceProblem& problem : project.Problems())
    if (++listed <= ListedProblems)
      FMessages->Add(TMessageKind::Warning,
                     fmt::format("{}({},{}): {}", project.FileName(), problem.Place.Line,
                                 problem.Place.Column, problem.Message),
                     project.FileName(), problem.Place.Line);
  for (const TProjectModule& module : project.Modules())
    if (module.State == TModuleState::Missing && ++listed <= ListedProblems)
      FMessages->Add(TMessageKind::Warning,
                     fmt::format("{}({}): {}", project.FileName(), module.Line, module.Message),
                     project.FileName(), module.Line);
  if (listed > ListedProblems)
    FMessages->Add(
        TMessageKind::Warning,
        fmt::format("{} more places of the project are not listed", listed - ListedProblems));
}

void TWorkbench::OpenSession(TProjectHolder& project) {
  TSession session = FSettings.Session(project.FileName());
  if (session.Files.empty()) {
    // The first time: the source and the main form's unit.
    session.Files.push_back(project.FileName());
    if (const TProjectModule* main = FindMainForm(project.Project()))
      session.Files.push_back(main->FileName);
    session.Active = 1;
  }
  for (const std::string& file : session.Files) {
    if (!FileExists(file)) continue;
    if (TModule* module = OpenModule(file))
      if (TSourceEditor* source = module->FindSource(file)) try {
          FEditWindow->AddPage(*source);
        } catch (const Exception& e) {
          ReportError(e.Message());
        }
  }
  const std::vector<TEditPage*> pages = FEditWindow->Pages();
  const int active = std::min(session.Active, static_cast<int>(pages.size()) - 1);
  if (active >= 0) FEditWindow->Activate(*pages[static_cast<std::size_t>(active)]);
  ViewEditor();
}

void TWorkbench::StoreSession() {
  const TProjectHolder* project = FWorkspace.Project();
  if (project == nullptr) return;
  TSession session;
  for (const TEditPage* page : FEditWindow->Pages()) {
    if (page == FEditWindow->ActivePage()) session.Active = static_cast<int>(session.Files.size());
    if (!page->Source().Document().Untitled()) session.Files.push_back(page->Source().FileName());
  }
  FSettings.StoreSession(project->FileName(), session);
}

TModule* TWorkbench::OpenModule(const std::string& fileName) {
  if (TModule* open = FWorkspace.Find(fileName)) return open;
  try {
    return &FWorkspace.Open(fileName);
  } catch (const Exception& e) {
    ReportError(e.Message());
    return nullptr;
  }
}

bool TWorkbench::OpenFile(const std::string& fileName) {
  const std::string name = AbsoluteFileName(fileName);
  const bool known = FWorkspace.Find(name) != nullptr;
  if (!known && !FServices->NotifyFile(ofnFileOpening, name)) return false;
  TModule* module = OpenModule(name);
  if (module == nullptr) return false;
  if (TSourceEditor* source = module->FindSource(name)) {
    ShowSource(*source);
    if (FEditWindow->PagesOf(*source).empty()) return false;
    if (!source->Document().Untitled()) FSettings.RememberFile(name);
  } else if (module->FormEditor() != nullptr) {
    ShowForm(*module->FormEditor());
    if (FindDesigner(*module->FormEditor()) == nullptr) return false;
  } else {
    ReportError(name + ": the file is no source and no form");
    return false;
  }
  if (!known) FServices->NotifyFile(ofnFileOpened, name);
  return true;
}

bool TWorkbench::OpenFileAt(const std::string& fileName, int line) {
  if (!OpenFile(fileName)) return false;
  if (TEditPage* page = FEditWindow->ActivePage(); page != nullptr && line > 0)
    FEditWindow->SetCursor(*page, line, 1);
  return true;
}

void TWorkbench::NewUnit(TSourceLanguage language) {
  ShowSource(*FWorkspace.NewUnit(language).Sources()[0]);
}

bool TWorkbench::ReloadFile(const std::string& fileName) {
  TModule* module = FWorkspace.Find(fileName);
  if (module == nullptr) return false;
  try {
    if (TSourceEditor* source = module->FindSource(AbsoluteFileName(fileName))) {
      if (source->LoadedDocument() != nullptr) source->LoadedDocument()->Reload();
    } else if (TFormEditor* form = module->FormEditor()) {
      const bool inspected = FInspector->Editor() == form;
      if (inspected) FInspector->ShowForm(nullptr);
      form->Forget();
      EditorChanged(*module);
      if (inspected) FInspector->ShowForm(form);
    }
    PageChanged();
    return true;
  } catch (const Exception& e) {
    ReportError(e.Message());
    return false;
  }
}

void TWorkbench::ShowSource(TSourceEditor& editor) {
  const std::vector<TEditPage*> pages = FEditWindow->PagesOf(editor);
  try {
    // The view that the user is in stays.
    if (pages.empty()) FEditWindow->AddPage(editor);
    else if (std::find(pages.begin(), pages.end(), FEditWindow->ActivePage()) == pages.end())
      FEditWindow->Activate(*pages[0]);
  } catch (const Exception& e) {
    ReportError(e.Message());
    CloseHiddenModules();
    return;
  }
  FEditWindow->Show();
  FEditWindow->Editor().setFocus();
}

void TWorkbench::ShowForm(TFormEditor& editor) {
  if (editor.Document() == nullptr) {
    ReportError(editor.FileName() + ": the form cannot be shown");
    return;
  }
  TDesignerForm* designer = FindDesigner(editor);
  if (designer == nullptr) {
    designer = NewForm<TDesignerForm>(this, editor);
    Bind<&TWorkbench::DesignerClosed>(designer->OnClose, this);
    FDesigners.push_back(designer);
    designer->CenterOnScreen();
  }
  designer->Show();
  if (FInspector->Editor() != &editor) FInspector->ShowForm(&editor);
}

TDesignerForm* TWorkbench::FindDesigner(const TFormEditor& editor) const {
  for (TDesignerForm* designer : FDesigners)
    if (&designer->Editor() == &editor) return designer;
  return nullptr;
}

TForm* TWorkbench::DesignerOf(const TFormEditor& editor) {
  return FindDesigner(editor);
}

void TWorkbench::DesignerClosed(TObject*, TCloseAction& action) {
  action = caHide;
  // When the window is hidden, its module may have no window left.
  QTimer::singleShot(0, this, [this] { Guarded(this, [&] { CloseHiddenModules(); }); });
}

void TWorkbench::SelectionChanged(TFormEditor& editor) {
  if (TDesignerForm* designer = FindDesigner(editor)) designer->ShowSelection();
  if (FInspector->Editor() == &editor) FInspector->ShowForm(&editor);
}

void TWorkbench::EditorChanged(TModule& module) {
  for (const TIntf<TSourceEditor>& source : module.Sources()) FEditWindow->UpdatePage(*source);
  if (TFormEditor* form = module.FormEditor())
    if (TDesignerForm* designer = FindDesigner(*form)) designer->Update();
  UpdateTitle();
}

std::vector<IOTAEditView*> TWorkbench::ViewsOf(const TSourceEditor& editor) {
  std::vector<IOTAEditView*> views;
  for (const TEditPage* page : FEditWindow->PagesOf(editor)) views.push_back(&page->View());
  return views;
}

void TWorkbench::ChooseModule(bool forms) {
  TProjectHolder* project = FWorkspace.Project();
  if (project == nullptr) return;
  std::vector<const TProjectModule*> modules;
  std::vector<TChoice> choices;
  for (const TProjectModule& module : project->Project().Modules()) {
    if (module.State != TModuleState::Ok || (forms && module.FormName.empty())) continue;
    modules.push_back(&module);
    choices.push_back({forms ? module.FormName : module.UnitName, module.FileName});
  }
  const auto chosen = ChooseFromList(forms ? "ViewFormForm" : "ViewUnitForm",
                                     forms ? "View Form" : "View Unit", choices);
  std::vector<std::string> files;
  for (const int index : chosen)
    files.push_back(modules[static_cast<std::size_t>(index)]->FileName);
  for (const std::string& file : files) {
    TModule* module = OpenModule(file);
    if (module == nullptr) continue;
    if (forms && module->FormEditor() != nullptr) ShowForm(*module->FormEditor());
    else ShowSource(*module->Sources()[0]);
  }
}

// --- saving

bool TWorkbench::SaveModule(TModule& module, bool changeName, bool ask) {
  if (module.Sources().empty() && module.FormEditor() == nullptr) return true;
  std::string fileName = module.FileName();
  const bool rename = changeName || (module.Untitled() && ask);
  if (rename) fileName = AskFileName(module);
  if (fileName.empty()) return false;
  if (!rename && !MaySaveOver(module, ask, fileName)) return false;
  const bool renamed = fileName != module.FileName();
  return WriteModule(module, fileName, !renamed && !module.Untitled());
}

std::string TWorkbench::AskFileName(const TModule& module) {
  const bool cpp = LanguageOfFile(module.FileName()) == TSourceLanguage::Cpp;
  std::string name = FileDialogs.Save("Save " + ExtractFileName(module.FileName()) + " as",
                                      module.FileName(), cpp ? CppFilter : PascalFilter);
  if (name.empty()) return name;
  if (ExtractFileExt(name).empty()) name += ExtractFileExt(module.FileName());
  name = AbsoluteFileName(name);
  const TModule* other = FWorkspace.Find(name);
  if (other == nullptr || other == &module) return name;
  MessageDlg(name + " is open in the workbench. Choose another name.", mtError, {mbOK});
  return {};
}

namespace {

// A file that saving its module would write over.
struct TSavedFile {
  std::string FileName;
  bool ReadOnly = false;
  bool Changed = false;  // by another program
};

std::vector<TSavedFile> SavedFiles(const TModule& module) {
  std::vector<TSavedFile> files;
  for (const TIntf<TSourceEditor>& source : module.Sources()) {
    TUnitDocument* document = source->LoadedDocument();
    if (document == nullptr || !document->Modified()) continue;
    // Looking at the disk finds out what is read-only, too.
    const bool changed = document->DiskState() == TDiskState::Changed;
    files.push_back({document->FileName(), document->ReadOnly(), changed});
  }
  const TFormEditor* form = module.FormEditor();
  const TFormDocument* document = form != nullptr ? form->LoadedDocument() : nullptr;
  if (document != nullptr && document->Modified())
    files.push_back({document->FileName(), document->ReadOnly(), document->ChangedOnDisk()});
  return files;
}

}  // namespace

// A file that is read-only or was changed by another program is not written without a question.
bool TWorkbench::MaySaveOver(TModule& module, bool ask, std::string& fileName) {
  for (const TSavedFile& file : SavedFiles(module)) {
    if (file.ReadOnly) {
      const std::string question =
          file.FileName + " is a read-only file. Save the unit under another name?";
      if (!ask || MessageDlg(question, mtConfirmation, {mbYes, mbNo}) != mbYes) {
        ReportError(file.FileName + ": the file is read-only and was not saved");
        return false;
      }
      fileName = AskFileName(module);
      return !fileName.empty();
    }
    if (!file.Changed || !ask) continue;
    const std::string question =
        file.FileName +
        " was changed by another program since it was read. Write over that change?";
    if (MessageDlg(question, mtWarning, {mbYes, mbNo}) != mbYes) return false;
  }
  return true;
}

bool TWorkbench::WriteModule(TModule& module, const std::string& fileName, bool onlyModified) {
  const std::string before = module.FileName();
  try {
    module.SaveAs(fileName, onlyModified);
  } catch (const ETextEncodingError& e) {
    return OfferUnicode(module, e.Message()) && WriteModule(module, fileName, onlyModified);
  } catch (const Exception& e) {
    ReportError(e.Message());
    MessageDlg(e.Message(), mtError, {mbOK});
    return false;
  }
  if (before != fileName) {
    FSettings.RememberFile(fileName);
    FWorkspace.UpdateOwners();
  }
  if (&module == FWorkspace.Project()) ProjectSourceSaved();
  FWindow->statusBar()->showMessage(ToQString(fileName + " is saved"), 5000);
  return true;
}

// The text has characters that its file's encoding lacks.
bool TWorkbench::OfferUnicode(TModule& module, const std::string& trouble) {
  const std::string question = trouble + "\r\n\r\nSave the unit as UTF-8 instead?";
  if (MessageDlg(question, mtWarning, {mbYes, mbNo}) != mbYes) return false;
  for (const TIntf<TSourceEditor>& source : module.Sources()) {
    TUnitDocument* document = source->LoadedDocument();
    if (document == nullptr || !document->Modified()) continue;
    TTextFormat format = document->File().Format();
    format.Encoding = TTextEncoding::Utf8WithMark;
    format.CodePage = 0;
    document->SetFormat(format);
  }
  return true;
}

void TWorkbench::ProjectSourceSaved() {
  TProjectHolder& project = *FWorkspace.Project();
  try {
    project.SourceSaved();
    FWorkspace.UpdateOwners();
    FProjectPanel->ShowProject(&project.Project());
    FStatus.Project->setText(ToQString(Summary(project.Project().Statistics())));
  } catch (const Exception& e) {
    ReportError(e.Message());
  }
}

bool TWorkbench::SaveAll() {
  bool all = true;
  for (TModule* module : FWorkspace.Modules())
    if (module->Modified()) all = SaveModule(*module, false, true) && all;
  return all;
}

// --- closing

TWorkbench::TAnswer TWorkbench::AskSave(const TModule& module) {
  const TMsgDlgBtn button = MessageDlg("Save changes to " + module.FileName() + "?", mtConfirmation,
                                       {mbYes, mbNo, mbCancel});
  if (button == mbYes) return TAnswer::Yes;
  return button == mbNo ? TAnswer::No : TAnswer::Cancel;
}

bool TWorkbench::SettleModule(TModule& module) {
  if (!module.Modified()) return true;
  switch (AskSave(module)) {
    case TAnswer::Yes:
      return SaveModule(module, false, true);
    case TAnswer::No:
      return true;
    default:
      return false;
  }
}

bool TWorkbench::SettleAll() {
  const std::vector<TModule*> modules = FWorkspace.Modules();
  return std::all_of(modules.begin(), modules.end(),
                     [this](TModule* module) { return SettleModule(*module); });
}

// Whether a page (of another source than this one) or a window shows the module.
bool TWorkbench::Shown(const TModule& module, const TSourceEditor* except) const {
  for (const TIntf<TSourceEditor>& source : module.Sources())
    if (source.get() != except && !FEditWindow->PagesOf(*source).empty()) return true;
  const TFormEditor* form = module.FormEditor();
  const TDesignerForm* designer = form != nullptr ? FindDesigner(*form) : nullptr;
  return designer != nullptr && designer->isVisible();
}

bool TWorkbench::ClosePage(TEditPage& page) {
  const TIntf<TSourceEditor> source(&page.Source());
  TModule* module = source->Module();
  if (module == nullptr) return false;
  const TIntf<IOTAModule> held(module->Interface());
  const bool last = FEditWindow->PagesOf(*source).size() == 1;
  // The project stays open without its page.
  const bool closesModule = last && module != FWorkspace.Project() && !Shown(*module, source.get());
  const bool modified = closesModule ? module->Modified() : last && source->Modified();
  if (modified && !SettleModule(*module)) return false;
  // The question let other events in: the page may be gone.
  const auto pages = FEditWindow->Pages();
  if (std::find(pages.begin(), pages.end(), &page) == pages.end()) return true;
  FEditWindow->RemovePage(page);
  if (last) source->Forget();
  return !closesModule || CloseModule(*module, false);
}

// Units that no page and no window shows are closed.
void TWorkbench::CloseHiddenModules() {
  for (TModule* module : FWorkspace.Modules())
    if (dynamic_cast<TUnitModule*>(module) != nullptr && !Shown(*module, nullptr))
      CloseModule(*module, true);
}

void TWorkbench::DropModule(TModule& module) {
  if (TFormEditor* form = module.FormEditor()) {
    if (FInspector->Editor() == form) FInspector->ShowForm(nullptr);
    if (TDesignerForm* designer = FindDesigner(*form)) {
      std::erase(FDesigners, designer);
      designer->Hide();
      delete designer;
    }
  }
  for (const TIntf<TSourceEditor>& source : module.Sources())
    for (TEditPage* page : FEditWindow->PagesOf(*source)) FEditWindow->RemovePage(*page);
}

bool TWorkbench::CloseModule(TModule& module, bool ask) {
  if (&module == FWorkspace.Project()) return CloseProject();
  const TIntf<IOTAModule> held(module.Interface());
  const std::string name = module.FileName();
  if (!FServices->NotifyFile(ofnFileClosing, name)) return false;
  if (ask && !SettleModule(module)) return false;
  DropModule(module);
  FWorkspace.Remove(module);
  PageChanged();
  return true;
}

bool TWorkbench::CloseProject() {
  TProjectHolder* project = FWorkspace.Project();
  if (project == nullptr) return true;
  std::vector<TModule*> own;
  for (TModule* module : FWorkspace.Modules())
    if (module == project || !module->Owners.empty()) own.push_back(module);
  for (TModule* module : own)
    if (!SettleModule(*module)) return false;
  StoreSession();
  for (TModule* module : own) {
    if (dynamic_cast<TUnitModule*>(module) == nullptr) continue;
    DropModule(*module);
    FWorkspace.Remove(*module);
  }
  const std::string name = project->FileName();
  DropModule(*project);
  FWorkspace.CloseProject();
  FProjectPanel->ShowProject(nullptr);
  FStatus.Project->clear();
  PageChanged();
  FServices->NotifyFile(ofnActiveProjectChanged, "");
  return true;
}

bool TWorkbench::CloseAll() {
  if (!SettleAll()) return false;
  StoreSession();
  for (TModule* module : FWorkspace.Modules()) {
    if (dynamic_cast<TUnitModule*>(module) == nullptr) continue;
    FServices->NotifyFile(ofnFileClosing, module->FileName());
    DropModule(*module);
    FWorkspace.Remove(*module);
  }
  if (TProjectHolder* project = FWorkspace.Project()) {
    DropModule(*project);
    FWorkspace.CloseProject();
    FProjectPanel->ShowProject(nullptr);
    FStatus.Project->clear();
  }
  PageChanged();
  return true;
}

// --- changes behind the editor

void TWorkbench::CheckDisk() {
  // A question is open already, or another window waits for an answer.
  if (FCheckingDisk || QApplication::activeModalWidget() != nullptr || !Enabled()) return;
  FCheckingDisk = true;
  for (TModule* module : FWorkspace.Modules()) {
    const TIntf<IOTAModule> held(module->Interface());
    for (const TIntf<TSourceEditor>& source : module->Sources())
      if (source->LoadedDocument() != nullptr) CheckDocument(*source);
    TFormEditor* form = module->FormEditor();
    if (form != nullptr && form->LoadedDocument() != nullptr) CheckForm(*form);
  }
  FCheckingDisk = false;
}

void TWorkbench::CheckDocument(TSourceEditor& source) {
  TUnitDocument& document = *source.LoadedDocument();
  const TDiskState state = document.DiskState();
  if (state == TDiskState::Same) return;
  const std::string& name = document.FileName();
  document.AcceptDiskState();
  if (state == TDiskState::Missing) {
    document.SetModified(true);
    FMessages->Add(TMessageKind::Warning,
                   name + " is no longer on disk. Saving the unit writes it again.", name);
    return;
  }
  std::string question = name + " was changed by another program. Read it again?";
  if (document.Modified())
    question += "\r\n\r\nYour own changes would be replaced; Undo brings them back.";
  if (MessageDlg(question, mtConfirmation, {mbYes, mbNo}) != mbYes) {
    document.SetModified(true);
    return;
  }
  ReloadFile(name);
}

void TWorkbench::CheckForm(TFormEditor& form) {
  if (!form.LoadedDocument()->ChangedOnDisk()) return;
  form.LoadedDocument()->AcceptDiskState();
  const std::string name = form.FileName();
  // A form that was not edited loses nothing; broken halves of a write are read again later.
  if (!form.Modified() ||
      MessageDlg(name + " was changed by another program. Read it again? Your own changes to the "
                        "form would be lost.",
                 mtConfirmation, {mbYes, mbNo}) == mbYes)
    ReloadFile(name);
}

}  // namespace wrenfold
