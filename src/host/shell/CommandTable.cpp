// The table of commands: a command is one row and one function.
#include <fmt/format.h>

#include <QApplication>
#include <QLineEdit>

#include "host/shell/Commands.h"
#include "host/shell/Dialogs.h"
#include "host/shell/ModuleChooser.h"
#include "host/shell/Workbench.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"

namespace wrenfold {

namespace {

using W = TWorkbench;

constexpr char SourceFilter[] =
    "Sources (*.pas *.pp *.dpr *.dpk *.lpr *.inc *.cpp *.h *.hpp *.dfm *.lfm);;All files (*)";
constexpr char ProjectFilter[] =
    "Projects (*.lpi *.lpk *.dproj *.cbproj *.groupproj *.dpr *.dpk *.lpr *.cpp);;All files (*)";
constexpr char PackageFilter[] = "Packages (*.so);;All files (*)";

// --- files

void OpenFiles(W& w) {
  const TEditPage* page = w.EditWindow().ActivePage();
  const std::string folder = page != nullptr ? ExtractFilePath(page->Source().FileName()) : "";
  w.Documents().OpenAll(w.FileDialogs().Open("Open", folder, SourceFilter));
}

void OpenProject(W& w) {
  TProjectHolder* open = w.Workspace().Project();
  const std::string folder = open != nullptr ? open->Project().Folder() : "";
  const auto files = w.FileDialogs().Open("Open project", folder, ProjectFilter);
  if (!files.empty()) w.Documents().OpenProject(files[0]);
}

void FillReopenMenu(W& w, TMenuItem& menu) {
  menu.Clear();
  int number = 0;
  const auto add = [&](const std::string& caption) {
    auto* item = new TMenuItem(&menu);
    item->SetCaption(caption);
    menu.Add(item);
    return item;
  };
  for (const std::string& file : w.Documents().Settings().ReopenList()) {
    TMenuItem* item = add(fmt::format("&{} {}", ++number % 10, file));
    item->SetHint(file);
    Bind<&W::ReopenClick>(item->OnClick, &w);
  }
  if (number == 0) add("(nothing yet)")->SetEnabled(false);
}

void Save(W& w) {
  if (TModule* module = w.Views().CurrentModule()) w.Documents().SaveModule(*module, false, true);
}

void SaveAs(W& w) {
  if (TModule* module = w.Views().CurrentModule()) w.Documents().SaveModule(*module, true, true);
}

void CloseCurrent(W& w) {
  if (TDesignerForm* designer = w.Views().ActiveDesigner()) designer->Close();
  else if (TEditPage* page = w.EditWindow().ActivePage()) w.Views().ClosePage(*page);
}

// --- editing: the field that the user types into, else the code editor

QLineEdit* TypingField() {
  return qobject_cast<QLineEdit*>(QApplication::focusWidget());
}

// The form whose changes Undo takes back: that of the designer or inspector that the user is in.
TFormEditor* EditedForm(W& w) {
  const TForm* active = Screen().ActiveForm();
  if (active == &w.Inspector()) return w.Inspector().Editor();
  const auto* designer = dynamic_cast<const TDesignerForm*>(active);
  return designer != nullptr ? &designer->Editor() : nullptr;
}

void Undo(W& w) {
  TFormEditor* form = EditedForm(w);
  if (QLineEdit* field = TypingField()) field->undo();
  else if (form != nullptr) form->Undo();
  else w.EditWindow().Editor().undo();
}

void Redo(W& w) {
  TFormEditor* form = EditedForm(w);
  if (QLineEdit* field = TypingField()) field->redo();
  else if (form != nullptr) form->Redo();
  else w.EditWindow().Editor().redo();
}

template <auto InField, auto InEditor>
void Edit(W& w) {
  if (QLineEdit* field = TypingField()) (field->*InField)();
  else InEditor(w.EditWindow().Editor());
}

// --- searching

void GoToLine(W& w) {
  TEditPage* page = w.EditWindow().ActivePage();
  if (page == nullptr) return;
  int line = 1, column = 1;
  w.EditWindow().CursorOf(*page, line, column);
  if (!AskLine(line, page->Source().Document().LineCount())) return;
  w.EditWindow().SetCursor(*page, line, 1);
  w.EditWindow().Editor().setFocus();
}

// --- views

void ToggleForm(W& w) {
  const TModule* module = w.Views().CurrentModule();
  if (module == nullptr) return;
  if (w.Views().ActiveDesigner() == nullptr) {
    if (module->FormEditor() != nullptr) w.Documents().ShowForm(*module->FormEditor());
  } else if (!module->Sources().empty()) {
    w.Documents().ShowSource(*module->Sources()[0]);
  }
}

void NewEditWindow(W& w) {
  TEditPage* page = w.EditWindow().ActivePage();
  if (page == nullptr) return;
  w.EditWindow().AddPage(page->Source());
  w.EditWindow().Editor().setFocus();
}

template <int Delta>
void StepPage(W& w) {
  const std::vector<TEditPage*> pages = w.EditWindow().Pages();
  if (pages.empty()) return;
  const int count = static_cast<int>(pages.size());
  const int index = (w.EditWindow().Tabs().TabIndex() + Delta + count) % count;
  w.EditWindow().Activate(*pages[static_cast<std::size_t>(index)]);
}

template <class Panel>
void SwitchPanel(W& w) {
  if (!w.Panels().Switch(w.Panels().Get<Panel>())) w.ShowEditor();
}

void ViewProjectSource(W& w) {
  if (TProjectHolder* project = w.Workspace().Project())
    w.Documents().ShowSource(*project->Sources()[0]);
}

// A unit has its place before the project names it.
void AddUnit(W& w) {
  TModule* module = w.Views().CurrentModule();
  if (module == nullptr) return;
  const TIntf<IOTAModule> held(module->Interface());
  if (module->Untitled() && !w.Documents().SaveModule(*module, false, true)) return;
  w.Documents().Saving().ProjectEditing().Add(*module);
}

void RemoveUnit(W& w) {
  if (const TModule* module = w.Views().CurrentModule())
    w.Documents().Saving().ProjectEditing().Remove(*module);
}

template <TNewProject Kind>
void NewProject(W& w) {
  w.Documents().NewProject(Kind);
}

void LoadPackages(W& w) {
  for (const std::string& file : w.FileDialogs().Open("Load package", "", PackageFilter))
    w.Packages().Load(file);
}

void About(W&) {
  MessageDlg(std::string(TWorkbench::VersionText()) +
                 "\r\nA workbench for projects in Pascal and C++, with a suite of experts.\r\n\r\n"
                 "Free software under the GNU General Public License, version 3 or later. It comes "
                 "with no warranty.",
             mtInformation, {mbOK});
}

// --- the program

template <auto Method>
void Debug(W& w) {
  (w.Debugging().*Method)();
}

template <TStep Step>
void StepProgram(W& w) {
  w.Debugging().Step(Step);
}

// --- when commands are to be had

bool HasPage(W& w) {
  return w.EditWindow().ActivePage() != nullptr;
}

bool HasPages(W& w) {
  return w.EditWindow().Tabs().Tabs()->Count() > 1;
}

bool HasModule(W& w) {
  return w.Views().CurrentModule() != nullptr;
}

bool HasModules(W& w) {
  return !w.Workspace().Modules().empty();
}

bool HasProject(W& w) {
  return w.Workspace().Project() != nullptr;
}

bool CanSave(W& w) {
  const TModule* module = w.Views().CurrentModule();
  return module != nullptr && (module->Modified() || module->Untitled());
}

bool CanAddUnit(W& w) {
  const TModule* module = w.Views().CurrentModule();
  return module != nullptr && w.Documents().Saving().ProjectEditing().CanAdd(*module);
}

bool CanRemoveUnit(W& w) {
  const TModule* module = w.Views().CurrentModule();
  return module != nullptr && w.Documents().Saving().ProjectEditing().CanRemove(*module);
}

bool CanSaveAll(W& w) {
  return w.Documents().Modified();
}

bool CanToggleForm(W& w) {
  const TModule* module = w.Views().CurrentModule();
  if (module == nullptr) return false;
  return w.Views().ActiveDesigner() != nullptr || module->FormEditor() != nullptr;
}

bool CanRun(W& w) {
  return w.Debugging().CanRun();
}

bool CanBuild(W& w) {
  return HasProject(w) && !w.Debugging().Building();
}

bool ProgramRuns(W& w) {
  return w.Debugging().Session().Running();
}

bool ProgramStopped(W& w) {
  return w.Debugging().Session().Stopped();
}

bool ProgramActive(W& w) {
  return w.Debugging().Session().Active();
}

bool CanUndo(W& w) {
  if (TypingField() != nullptr) return true;
  if (const TFormEditor* form = EditedForm(w))
    return form->LoadedDocument() != nullptr && form->LoadedDocument()->Edits().CanUndo();
  return w.EditWindow().Editor().isUndoAvailable();
}

bool CanRedo(W& w) {
  if (TypingField() != nullptr) return true;
  if (const TFormEditor* form = EditedForm(w))
    return form->LoadedDocument() != nullptr && form->LoadedDocument()->Edits().CanRedo();
  return w.EditWindow().Editor().isRedoAvailable();
}

template <auto Method>
constexpr auto InEditor = [](TEditControl& editor) { (editor.*Method)(); };
constexpr auto SelectAll = [](TEditControl& editor) { editor.selectAll(); };

constexpr char FileMenu[] = "&File", EditMenu[] = "&Edit", SearchMenu[] = "&Search",
               ViewMenu[] = "&View", ProjectMenu[] = "&Project", RunMenu[] = "R&un",
               ToolsMenu[] = "&Tools", HelpMenu[] = "&Help";
constexpr char Standard[] = "Standard", View[] = "View";

// clang-format off
constexpr TCommand Table[] = {
    {FileMenu, 1, "FileNewUnitCommand", "&New unit", "Ctrl+N", "new", "A new Pascal unit",
     [](W& w) { w.Documents().NewUnit(TSourceLanguage::Pascal); }, nullptr, Standard},
    {FileMenu, 1, "FileNewCppUnitCommand", "New C&++ unit", "", "new", "A new C++ unit",
     [](W& w) { w.Documents().NewUnit(TSourceLanguage::Cpp); }},
    {FileMenu, 1, "FileNewFormCommand", "New &form...", "", "form",
     "A new unit with a form, in the project", [](W& w) { w.Documents().NewForm(); }},
    {FileMenu, 1, "FileNewProjectCommand", "New program with for&ms...", "", "project",
     "A new project with a main form", NewProject<TNewProject::Forms>},
    {FileMenu, 1, "FileNewConsoleCommand", "New cons&ole program...", "", "project",
     "A new project without forms", NewProject<TNewProject::Console>},
    {FileMenu, 1, "FileOpenCommand", "&Open...", "Ctrl+O", "open", "Open units",
     OpenFiles, nullptr, Standard},
    {FileMenu, 1, "FileOpenProjectCommand", "Open &project...", "Ctrl+F11", "project",
     "Open a project", OpenProject, nullptr, Standard},
    {FileMenu, 1, "FileReopen", "&Reopen", "", "", "", nullptr, nullptr, nullptr, nullptr,
     FillReopenMenu},
    {FileMenu, 2, "FileSaveCommand", "&Save", "Ctrl+S", "save", "Save the unit",
     Save, CanSave, Standard},
    {FileMenu, 2, "FileSaveAsCommand", "Save &as...", "", "", "Save the unit under another name",
     SaveAs, HasModule},
    {FileMenu, 2, "FileSaveAllCommand", "Save a&ll", "Ctrl+Shift+S", "saveall",
     "Save everything that changed", [](W& w) { w.Documents().SaveAll(); }, CanSaveAll, Standard},
    {FileMenu, 3, "FileCloseCommand", "&Close", "Ctrl+F4", "close", "Close the page",
     CloseCurrent, HasModule},
    {FileMenu, 3, "FileCloseAllCommand", "Close all", "", "", "Close the project and all units",
     [](W& w) { w.Documents().CloseAll(); }, HasModules},
    {FileMenu, 4, "FileExitCommand", "E&xit", "Alt+F4", "", "End the workbench",
     [](W& w) { w.Close(); }},

    {EditMenu, 5, "EditUndoCommand", "&Undo", "Ctrl+Z", "undo", "Take the last edit back",
     Undo, CanUndo, Standard},
    {EditMenu, 5, "EditRedoCommand", "&Redo", "Ctrl+Shift+Z", "redo",
     "Do again what was taken back",
     Redo, CanRedo, Standard},
    {EditMenu, 6, "EditCutCommand", "Cu&t", "Ctrl+X", "cut", "Cut to the clipboard",
     Edit<&QLineEdit::cut, InEditor<&TEditControl::cut>>},
    {EditMenu, 6, "EditCopyCommand", "&Copy", "Ctrl+C", "copy", "Copy to the clipboard",
     Edit<&QLineEdit::copy, InEditor<&TEditControl::copy>>},
    {EditMenu, 6, "EditPasteCommand", "&Paste", "Ctrl+V", "paste", "Paste from the clipboard",
     Edit<&QLineEdit::paste, InEditor<&TEditControl::paste>>},
    {EditMenu, 6, "EditDeleteCommand", "&Delete", "", "", "Delete the selection",
     Edit<&QLineEdit::del, InEditor<&TEditControl::removeSelectedText>>, HasPage},
    {EditMenu, 7, "EditSelectAllCommand", "Select &all", "", "", "Select the whole text",
     Edit<&QLineEdit::selectAll, SelectAll>, HasPage},

    {SearchMenu, 8, "SearchFindCommand", "&Find...", "Ctrl+F", "find", "Find text in the unit",
     [](W& w) { w.FindBar().Open(); }, HasPage, Standard},
    {SearchMenu, 8, "SearchNextCommand", "Find &next", "F3", "", "Find the text once more",
     [](W& w) { w.FindBar().Next(); }, HasPage},
    {SearchMenu, 8, "SearchPreviousCommand", "Find &previous", "Shift+F3", "",
     "Find the text further up", [](W& w) { w.FindBar().Previous(); }, HasPage},
    {SearchMenu, 8, "SearchReplaceCommand", "&Replace...", "Ctrl+H", "",
     "Replace text in the unit", [](W& w) { w.FindBar().Open(true); }, HasPage},
    {SearchMenu, 8, "SearchFilesCommand", "Find &in files...", "Ctrl+Shift+F", "find",
     "Find and replace in all files of the project",
     [](W& w) { w.FindFiles().Open(w.EditWindow().SelectedText()); }, HasModules},
    {SearchMenu, 9, "SearchGoToCommand", "&Go to line...", "Ctrl+G", "goto",
     "Go to a line by its number", GoToLine, HasPage},

    {ViewMenu, 10, "ViewUnitCommand", "&Units...", "Ctrl+F12", "unit",
     "Choose a unit of the project", ChooseUnits, HasProject, View, "View Unit"},
    {ViewMenu, 10, "ViewFormCommand", "&Forms...", "Shift+F12", "form",
     "Choose a form of the project", ChooseForms, HasProject, View, "View Form"},
    {ViewMenu, 10, "ViewToggleFormCommand", "&Toggle form/unit", "F12", "view",
     "Switch between a form and its unit", ToggleForm, CanToggleForm, View, "Toggle Form/Unit"},
    {ViewMenu, 11, "ViewNewEditWindowCommand", "&New edit window", "Ctrl+Shift+N", "newview",
     "Another view of the unit", NewEditWindow, HasPage, View, "New Edit Window"},
    {ViewMenu, 11, "ViewNextPageCommand", "Next pa&ge", "Ctrl+Tab", "", "The page to the right",
     StepPage<+1>, HasPages},
    {ViewMenu, 11, "ViewPreviousPageCommand", "Pre&vious page", "Ctrl+Shift+Tab", "",
     "The page to the left", StepPage<-1>, HasPages},
    {ViewMenu, 12, "ViewEditorCommand", "&Editor", "Ctrl+E", "", "Go to the code editor",
     [](W& w) { w.ShowEditor(); }},
    {ViewMenu, 12, "ViewProjectCommand", "&Project", "Ctrl+Alt+P", "project",
     "Go to the project tree", SwitchPanel<TProjectPanel>},
    {ViewMenu, 12, "ViewInspectorCommand", "&Object inspector", "F11", "component",
     "Go to the object inspector", SwitchPanel<TPropertyInspector>},
    {ViewMenu, 12, "ViewMessagesCommand", "&Messages", "Ctrl+Alt+M", "info", "Go to the messages",
     SwitchPanel<TMessagePanel>},

    {ProjectMenu, 13, "ProjectViewSourceCommand", "&View source", "", "unit",
     "Show the project's source", ViewProjectSource, HasProject},
    {ProjectMenu, 13, "ProjectAddUnitCommand", "&Add unit", "", "", "Add the unit to the project",
     AddUnit, CanAddUnit},
    {ProjectMenu, 13, "ProjectRemoveUnitCommand", "&Remove unit", "", "",
     "Take the unit out of the project; its files stay", RemoveUnit, CanRemoveUnit},
    {ProjectMenu, 14, "ProjectCloseCommand", "&Close project", "", "close",
     "Close the project and its units", [](W& w) { w.Documents().CloseProject(); }, HasProject},

    {ViewMenu, 12, "ViewProgramCommand", "P&rogram", "Ctrl+Alt+O", "info",
     "Go to what the program writes", SwitchPanel<TProgramPanel>},
    {ViewMenu, 12, "ViewCallStackCommand", "Call &stack", "Ctrl+Alt+S", "view",
     "Go to the call stack and the local variables", SwitchPanel<TStackPanel>},
    {ViewMenu, 12, "ViewBreakpointsCommand", "&Breakpoints", "Ctrl+Alt+B", "view",
     "Go to the list of breakpoints", SwitchPanel<TBreakpointPanel>},
    {ViewMenu, 12, "ViewWatchesCommand", "&Watches", "Ctrl+Alt+W", "view",
     "Go to the watched expressions", SwitchPanel<TWatchPanel>},
    {ViewMenu, 12, "ViewCPUCommand", "&CPU", "Ctrl+Alt+C", "view",
     "Go to code, registers and memory of the program", SwitchPanel<TCpuWindow>},

    {RunMenu, 15, "RunBuildCommand", "&Build", "Ctrl+F9", "", "Build the project's program",
     Debug<&TDebugging::Build>, CanBuild},
    {RunMenu, 15, "RunRunCommand", "&Run", "F9", "", "Run the program, or let it go on",
     Debug<&TDebugging::Run>, CanRun},
    {RunMenu, 15, "RunParametersCommand", "&Parameters...", "", "",
     "What the program is started with", Debug<&TDebugging::AskParameters>, HasProject},
    {RunMenu, 15, "RunBuildCommandCommand", "Build co&mmand...", "", "",
     "How the project's program is built", Debug<&TDebugging::AskBuildCommand>, HasProject},
    {RunMenu, 15, "RunLoadCommand", "&Load program...", "", "",
     "Run a program that was built elsewhere", Debug<&TDebugging::LoadProgram>},
    {RunMenu, 15, "RunAttachCommand", "&Attach to process...", "", "",
     "Debug a program that runs already", Debug<&TDebugging::AskAttach>},
    {RunMenu, 16, "RunStepOverCommand", "Step &over", "F8", "", "Run one line",
     StepProgram<TStep::Over>, ProgramStopped},
    {RunMenu, 16, "RunTraceIntoCommand", "Trace &into", "F7", "",
     "Run one line, into what it calls", StepProgram<TStep::Into>, ProgramStopped},
    {RunMenu, 16, "RunUntilReturnCommand", "Run until re&turn", "Shift+F8", "",
     "Run to the end of the function", StepProgram<TStep::Out>, ProgramStopped},
    {RunMenu, 16, "RunToCursorCommand", "Run to &cursor", "F4", "", "Run to the line of the cursor",
     Debug<&TDebugging::RunToCursor>, ProgramStopped},
    {RunMenu, 17, "RunPauseCommand", "Pa&use", "", "", "Stop the program where it is",
     Debug<&TDebugging::Pause>, ProgramRuns},
    {RunMenu, 17, "RunResetCommand", "R&eset", "Ctrl+F2", "", "End the program",
     Debug<&TDebugging::Reset>, ProgramActive},
    {RunMenu, 18, "RunBreakpointCommand", "Toggle brea&kpoint", "F5", "",
     "Stop at the line of the cursor, or no more", Debug<&TDebugging::ToggleBreakpoint>, HasPage},
    {RunMenu, 18, "RunBreakpointEditCommand", "Breakpoint con&dition...", "Ctrl+F5", "",
     "Condition and count of the breakpoint at the cursor", Debug<&TDebugging::EditBreakpoint>,
     HasPage},
    {RunMenu, 18, "RunAddWatchCommand", "Add &watch", "Ctrl+F7", "",
     "Watch what the cursor is at", Debug<&TDebugging::AddWatch>},

    {ToolsMenu, 19, "ToolsLoadPackageCommand", "Load &package...", "", "package",
     "Load a package of add-ins", LoadPackages},

    {HelpMenu, 20, "HelpAboutCommand", "&About Wrenfold...", "", "info",
     "Name, version and licence", About},
};
// clang-format on

}  // namespace

std::span<const TCommand> CommandTable() {
  return Table;
}

}  // namespace wrenfold
