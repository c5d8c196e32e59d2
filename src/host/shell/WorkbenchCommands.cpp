// The workbench's commands: one table makes actions, menus and tool bars.
#include <fmt/format.h>

#include <QApplication>
#include <QLineEdit>

#include "host/documents/Icons.h"
#include "host/shell/Dialogs.h"
#include "host/shell/Workbench.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

struct TCommand {
  const char* Name;
  const char* Caption;
  const char* ShortCut;
  const char* Icon;
  const char* Hint;
  void (TWorkbench::*Execute)();
  bool (TWorkbench::*Enabled)() const;  // null: always
};

using W = TWorkbench;
constexpr TCommand Commands[] = {
    {"FileNewUnitCommand", "&New unit", "Ctrl+N", "new", "A new Pascal unit", &W::FileNewUnit, {}},
    {"FileNewCppUnitCommand", "New C&++ unit", "", "new", "A new C++ unit", &W::FileNewCppUnit, {}},
    {"FileOpenCommand", "&Open...", "Ctrl+O", "open", "Open units", &W::FileOpen, {}},
    {"FileOpenProjectCommand",
     "Open &project...",
     "Ctrl+F11",
     "project",
     "Open a project",
     &W::FileOpenProject,
     {}},
    {"FileSaveCommand", "&Save", "Ctrl+S", "save", "Save the unit", &W::FileSave, &W::CanSave},
    {"FileSaveAsCommand", "Save &as...", "", "", "Save the unit under another name", &W::FileSaveAs,
     &W::HasPage},
    {"FileSaveAllCommand", "Save a&ll", "Ctrl+Shift+S", "saveall", "Save everything that changed",
     &W::FileSaveAll, &W::CanSaveAll},
    {"FileCloseCommand", "&Close", "Ctrl+F4", "close", "Close the page", &W::FileClose,
     &W::HasPage},
    {"FileCloseAllCommand", "Close all", "", "", "Close the project and all units",
     &W::FileCloseAll, &W::HasModules},
    {"FileExitCommand", "E&xit", "Alt+F4", "", "End the workbench", &W::FileExit, {}},
    {"EditUndoCommand", "&Undo", "Ctrl+Z", "undo", "Take the last edit back", &W::EditUndo,
     &W::CanUndo},
    {"EditRedoCommand", "&Redo", "Ctrl+Shift+Z", "redo", "Do again what was taken back",
     &W::EditRedo, &W::CanRedo},
    {"EditCutCommand", "Cu&t", "Ctrl+X", "cut", "Cut to the clipboard", &W::EditCut, {}},
    {"EditCopyCommand", "&Copy", "Ctrl+C", "copy", "Copy to the clipboard", &W::EditCopy, {}},
    {"EditPasteCommand",
     "&Paste",
     "Ctrl+V",
     "paste",
     "Paste from the clipboard",
     &W::EditPaste,
     {}},
    {"EditDeleteCommand", "&Delete", "", "", "Delete the selection", &W::EditDelete, &W::HasPage},
    {"EditSelectAllCommand", "Select &all", "", "", "Select the whole text", &W::EditSelectAll,
     &W::HasPage},
    {"SearchFindCommand", "&Find...", "Ctrl+F", "find", "Find text in the unit", &W::SearchFind,
     &W::HasPage},
    {"SearchNextCommand", "Find &next", "F3", "", "Find the text once more", &W::SearchNext,
     &W::HasPage},
    {"SearchPreviousCommand", "Find &previous", "Shift+F3", "", "Find the text further up",
     &W::SearchPrevious, &W::HasPage},
    {"SearchGoToCommand", "&Go to line...", "Ctrl+G", "goto", "Go to a line by its number",
     &W::SearchGoToLine, &W::HasPage},
    {"ViewUnitCommand", "&Units...", "Ctrl+F12", "unit", "Choose a unit of the project",
     &W::ViewUnits, &W::HasProject},
    {"ViewFormCommand", "&Forms...", "Shift+F12", "form", "Choose a form of the project",
     &W::ViewForms, &W::HasProject},
    {"ViewToggleFormCommand", "&Toggle form/unit", "F12", "view",
     "Switch between a form and its unit", &W::ViewToggleForm, &W::HasForm},
    {"ViewNewEditWindowCommand", "&New edit window", "Ctrl+Shift+N", "newview",
     "Another view of the unit", &W::ViewNewEditWindow, &W::HasPage},
    {"ViewNextPageCommand", "Next pa&ge", "Ctrl+Tab", "", "The page to the right", &W::ViewNextPage,
     &W::HasPages},
    {"ViewPreviousPageCommand", "Pre&vious page", "Ctrl+Shift+Tab", "", "The page to the left",
     &W::ViewPreviousPage, &W::HasPages},
    {"ViewEditorCommand", "&Editor", "Ctrl+E", "", "Go to the code editor", &W::ViewEditor, {}},
    {"ViewProjectCommand",
     "&Project",
     "Ctrl+Alt+P",
     "project",
     "Go to the project tree",
     &W::ViewProject,
     {}},
    {"ViewInspectorCommand",
     "&Object inspector",
     "F11",
     "component",
     "Go to the object inspector",
     &W::ViewInspector,
     {}},
    {"ViewMessagesCommand",
     "&Messages",
     "Ctrl+Alt+M",
     "info",
     "Go to the messages",
     &W::ViewMessages,
     {}},
    {"ProjectViewSourceCommand", "&View source", "", "unit", "Show the project's source",
     &W::ProjectViewSource, &W::HasProject},
    {"ProjectCloseCommand", "&Close project", "", "close", "Close the project and its units",
     &W::ProjectCloseCommand, &W::HasProject},
    {"ToolsLoadPackageCommand",
     "Load &package...",
     "",
     "package",
     "Load a package of add-ins",
     &W::ToolsLoadPackage,
     {}},
    {"HelpAboutCommand",
     "&About Wrenfold...",
     "",
     "info",
     "Name, version and licence",
     &W::HelpAbout,
     {}},
};

// Menus, in order: a caption that no command has opens a menu, "-" is a line.
struct TMenuRow {
  const char* Menu;
  std::vector<const char*> Items;
};
constexpr char ReopenItem[] = "reopen";
const TMenuRow Menus[] = {
    {"&File",
     {"FileNewUnitCommand", "FileNewCppUnitCommand", "FileOpenCommand", "FileOpenProjectCommand",
      ReopenItem, "-", "FileSaveCommand", "FileSaveAsCommand", "FileSaveAllCommand", "-",
      "FileCloseCommand", "FileCloseAllCommand", "-", "FileExitCommand"}},
    {"&Edit",
     {"EditUndoCommand", "EditRedoCommand", "-", "EditCutCommand", "EditCopyCommand",
      "EditPasteCommand", "EditDeleteCommand", "-", "EditSelectAllCommand"}},
    {"&Search",
     {"SearchFindCommand", "SearchNextCommand", "SearchPreviousCommand", "-", "SearchGoToCommand"}},
    {"&View",
     {"ViewUnitCommand", "ViewFormCommand", "ViewToggleFormCommand", "-",
      "ViewNewEditWindowCommand", "ViewNextPageCommand", "ViewPreviousPageCommand", "-",
      "ViewEditorCommand", "ViewProjectCommand", "ViewInspectorCommand", "ViewMessagesCommand"}},
    {"&Project", {"ProjectViewSourceCommand", "-", "ProjectCloseCommand"}},
    {"&Tools", {"ToolsLoadPackageCommand"}},
    {"&Help", {"HelpAboutCommand"}},
};

struct TToolBarRow {
  const char* Name;
  const char* Caption;
  std::vector<const char*> Items;
};
const TToolBarRow ToolBars[] = {
    {"StandardToolBar",
     "Standard",
     {"FileNewUnitCommand", "FileOpenProjectCommand", "FileOpenCommand", "-", "FileSaveCommand",
      "FileSaveAllCommand", "-", "EditUndoCommand", "EditRedoCommand", "-", "SearchFindCommand"}},
    {"ViewToolBar",
     "View",
     {"ViewUnitCommand", "ViewFormCommand", "ViewToggleFormCommand", "-",
      "ViewNewEditWindowCommand"}},
};
// Packages know these buttons by their captions.
constexpr std::pair<const char*, const char*> ButtonCaptions[] = {
    {"ViewUnitCommand", "View Unit"},
    {"ViewFormCommand", "View Form"},
    {"ViewToggleFormCommand", "Toggle Form/Unit"},
    {"ViewNewEditWindowCommand", "New Edit Window"},
};

std::string CategoryOf(std::string_view name) {
  std::size_t end = 1;
  while (end < name.size() && (name[end] < 'A' || name[end] > 'Z')) ++end;
  return std::string(name.substr(0, end));
}

// The text field that the user types into now, when that is not the code editor.
QLineEdit* TypingField() {
  return qobject_cast<QLineEdit*>(QApplication::focusWidget());
}

}  // namespace

void TWorkbench::MakeCommands() {
  for (int i = 0; i < static_cast<int>(std::size(Commands)); ++i) {
    const TCommand& command = Commands[i];
    auto* action = new TAction(this);
    action->SetName(command.Name);
    action->Tag = i;
    action->SetCategory(CategoryOf(command.Name));
    action->SetCaption(command.Caption);
    action->SetHint(command.Hint);
    action->SetShortCut(TextToShortCut(command.ShortCut));
    if (*command.Icon != '\0') action->SetImageIndex(FImages->Add(WorkbenchIcon(command.Icon)));
    Bind<&TWorkbench::CommandExecute>(action->OnExecute, this);
    Bind<&TWorkbench::CommandUpdate>(action->OnUpdate, this);
    FActions->AddAction(action);
  }
}

void TWorkbench::CommandExecute(TObject* sender) {
  (this->*Commands[dynamic_cast<TAction&>(*sender).Tag].Execute)();
}

void TWorkbench::CommandUpdate(TObject* sender) {
  auto& action = dynamic_cast<TAction&>(*sender);
  const auto enabled = Commands[action.Tag].Enabled;
  action.SetEnabled(enabled == nullptr || (this->*enabled)());
}

TAction* TWorkbench::ActionNamed(const char* name) const {
  return FActions->FindAction(name);
}

void TWorkbench::MakeMenus() {
  const auto add = [this](TMenuItem* parent, const std::string& name, const std::string& caption) {
    auto* item = new TMenuItem(this);
    if (!name.empty()) item->SetName(name);
    item->SetCaption(caption);
    parent->Add(item);
    return item;
  };
  for (const TMenuRow& row : Menus) {
    const std::string plain = StripHotkey(row.Menu);
    TMenuItem* menu = add(FMenu->Items(), plain + "Menu", row.Menu);
    for (const std::string_view name : row.Items) {
      if (name == "-") {
        add(menu, "", "-");
      } else if (name == ReopenItem) {
        FReopenMenu = add(menu, "FileReopenItem", "&Reopen");
        Bind<&TWorkbench::FillReopenMenu>(FReopenMenu->OnClick, this);
        add(FReopenMenu, "", "(nothing yet)")->SetEnabled(false);
      } else {
        const std::string item(name);
        add(menu, item + "Item", "")->SetAction(ActionNamed(item.c_str()));
      }
    }
  }
  FWindow->setMenuBar(FMenu->Bar());
}

void TWorkbench::MakeToolBars() {
  for (const TToolBarRow& row : ToolBars) {
    auto* bar = new TToolBar(this, FWindow);
    bar->SetName(row.Name);
    bar->SetCaption(row.Caption);
    bar->SetImages(FImages);
    bar->setAccessibleName(tr(row.Caption));
    bar->setIconSize(QSize(18, 18));
    for (const std::string_view name : row.Items) {
      if (name == "-") {
        bar->AddSeparator();
        continue;
      }
      TToolButton* button = bar->AddButton(ActionNamed(std::string(name).c_str()));
      button->SetName(std::string(name) + "Button");
      for (const auto& [command, caption] : ButtonCaptions)
        if (name == command) button->SetCaption(caption);
    }
    FWindow->addToolBar(bar);
  }
}

void TWorkbench::FillReopenMenu(TObject*) {
  FReopenMenu->Clear();
  int number = 0;
  for (const std::string& file : FSettings.ReopenList()) {
    auto* item = new TMenuItem(FReopenMenu);
    item->SetCaption(fmt::format("&{} {}", ++number % 10, file));
    item->SetHint(file);
    Bind<&TWorkbench::ReopenClick>(item->OnClick, this);
    FReopenMenu->Add(item);
  }
  if (number > 0) return;
  auto* none = new TMenuItem(FReopenMenu);
  none->SetCaption("(nothing yet)");
  none->SetEnabled(false);
  FReopenMenu->Add(none);
}

void TWorkbench::ReopenClick(TObject* sender) {
  OpenAny(dynamic_cast<TMenuItem&>(*sender).Hint());
}

void TWorkbench::BuildEditorMenu(TPopupMenu& menu) {
  const auto add = [&](const char* name, TAction* action) {
    auto* item = new TMenuItem(&FEditWindow->Editor());
    if (*name != '\0') item->SetName(name);
    if (action != nullptr) item->SetAction(action);
    else item->SetCaption("-");
    menu.Items()->Add(item);
    return item;
  };
  FActions->UpdateActions();
  auto* close = add("ecClosePage", nullptr);
  close->SetCaption("&Close page");
  close->SetEnabled(HasPage());
  Bind<&TWorkbench::ClosePageClick>(close->OnClick, this);
  add("ecNewEditWindow", ActionNamed("ViewNewEditWindowCommand"));
  add("ecToggleForm", ActionNamed("ViewToggleFormCommand"));
  add("", nullptr);
  add("ecCut", ActionNamed("EditCutCommand"));
  add("ecCopy", ActionNamed("EditCopyCommand"));
  add("ecPaste", ActionNamed("EditPasteCommand"));
  add("", nullptr);
  add("ecFind", ActionNamed("SearchFindCommand"));
  add("ecGoToLine", ActionNamed("SearchGoToCommand"));
}

void TWorkbench::ClosePageClick(TObject*) {
  if (TEditPage* page = FEditWindow->ActivePage()) ClosePage(*page);
}

// --- what the commands do

void TWorkbench::FileOpen() {
  const TEditPage* page = FEditWindow->ActivePage();
  const std::string folder = page != nullptr ? ExtractFilePath(page->Source().FileName()) : "";
  for (const std::string& file :
       FileDialogs.Open("Open", folder,
                        "Sources (*.pas *.dpr *.dpk *.lpr *.inc *.cpp *.h *.hpp *.dfm);;"
                        "All files (*)"))
    OpenAny(file);
}

void TWorkbench::FileOpenProject() {
  const std::string folder =
      FWorkspace.Project() != nullptr ? FWorkspace.Project()->Project().Folder() : "";
  const auto files =
      FileDialogs.Open("Open project", folder, "Projects (*.dpr *.dpk *.lpr *.cpp);;All files (*)");
  if (!files.empty()) OpenProject(files[0]);
}

void TWorkbench::FileSave() {
  if (TModule* module = CurrentModule()) SaveModule(*module, false, true);
}

void TWorkbench::FileSaveAs() {
  if (TModule* module = CurrentModule()) SaveModule(*module, true, true);
}

void TWorkbench::FileClose() {
  if (auto* designer = dynamic_cast<TDesignerForm*>(Screen().ActiveForm())) designer->Close();
  else if (TEditPage* page = FEditWindow->ActivePage()) ClosePage(*page);
}

void TWorkbench::EditUndo() {
  if (QLineEdit* field = TypingField()) field->undo();
  else FEditWindow->Editor().undo();
}

void TWorkbench::EditRedo() {
  if (QLineEdit* field = TypingField()) field->redo();
  else FEditWindow->Editor().redo();
}

void TWorkbench::EditCut() {
  if (QLineEdit* field = TypingField()) field->cut();
  else FEditWindow->Editor().cut();
}

void TWorkbench::EditCopy() {
  if (QLineEdit* field = TypingField()) field->copy();
  else FEditWindow->Editor().copy();
}

void TWorkbench::EditPaste() {
  if (QLineEdit* field = TypingField()) field->paste();
  else FEditWindow->Editor().paste();
}

void TWorkbench::EditDelete() {
  if (QLineEdit* field = TypingField()) field->del();
  else FEditWindow->Editor().removeSelectedText();
}

void TWorkbench::EditSelectAll() {
  if (QLineEdit* field = TypingField()) field->selectAll();
  else FEditWindow->Editor().selectAll();
}

bool TWorkbench::CanUndo() const {
  return TypingField() != nullptr || FEditWindow->Editor().isUndoAvailable();
}

bool TWorkbench::CanRedo() const {
  return TypingField() != nullptr || FEditWindow->Editor().isRedoAvailable();
}

void TWorkbench::SearchFind() {
  FFindBar->Open();
}

void TWorkbench::SearchNext() {
  FFindBar->Next();
}

void TWorkbench::SearchPrevious() {
  FFindBar->Previous();
}

void TWorkbench::SearchGoToLine() {
  TEditPage* page = FEditWindow->ActivePage();
  if (page == nullptr) return;
  int line = 1, column = 1;
  FEditWindow->CursorOf(*page, line, column);
  const int lines = page->Source().Document().LineCount();
  if (!AskLine(line, lines)) return;
  FEditWindow->SetCursor(*page, line, 1);
  FEditWindow->Editor().setFocus();
}

void TWorkbench::ViewNewEditWindow() {
  if (TEditPage* page = FEditWindow->ActivePage()) {
    FEditWindow->AddPage(page->Source());
    FEditWindow->Editor().setFocus();
  }
}

void TWorkbench::ViewToggleForm() {
  if (auto* designer = dynamic_cast<TDesignerForm*>(Screen().ActiveForm())) {
    const TModule* module = designer->Editor().Module();
    if (module != nullptr && !module->Sources().empty()) ShowSource(*module->Sources()[0]);
    return;
  }
  const TModule* module = CurrentModule();
  if (module != nullptr && module->FormEditor() != nullptr) ShowForm(*module->FormEditor());
}

bool TWorkbench::HasForm() const {
  if (dynamic_cast<TDesignerForm*>(Screen().ActiveForm()) != nullptr) return true;
  const TEditPage* page = FEditWindow->ActivePage();
  const TModule* module = page != nullptr ? page->Source().Module() : nullptr;
  return module != nullptr && module->FormEditor() != nullptr;
}

bool TWorkbench::CanSave() const {
  const TEditPage* page = FEditWindow->ActivePage();
  const TModule* module = page != nullptr ? page->Source().Module() : nullptr;
  if (const auto* designer = dynamic_cast<TDesignerForm*>(Screen().ActiveForm()))
    module = designer->Editor().Module();
  return module != nullptr && (module->Modified() || module->Untitled());
}

bool TWorkbench::CanSaveAll() const {
  for (const TModule* module : FWorkspace.Modules())
    if (module->Modified()) return true;
  return false;
}

void TWorkbench::ProjectViewSource() {
  if (TProjectHolder* project = FWorkspace.Project()) ShowSource(*project->Sources()[0]);
}

void TWorkbench::ToolsLoadPackage() {
  for (const std::string& file :
       FileDialogs.Open("Load package", "", "Packages (*.so);;All files (*)"))
    LoadPackage(file);
}

void TWorkbench::HelpAbout() {
  MessageDlg(
      "Wrenfold " WRENFOLD_VERSION
      "\r\nA workbench for projects in Pascal and C++, with a suite of experts.\r\n\r\n"
      "Free software under the GNU General Public License, version 3 or later. It comes with no "
      "warranty.",
      mtInformation, {mbOK});
}

}  // namespace wrenfold
