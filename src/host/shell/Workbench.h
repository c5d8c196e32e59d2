// The workbench: the main window with its commands and panels.
#pragma once

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/documents/PackageFile.h"
#include "host/documents/Settings.h"
#include "host/documents/Workspace.h"
#include "host/forms/DesignerForm.h"
#include "host/panels/EditWindow.h"
#include "host/panels/FindBar.h"
#include "host/panels/MessagePanel.h"
#include "host/panels/ProjectPanel.h"
#include "host/panels/PropertyInspector.h"
#include "host/shell/ToolsServices.h"
#include "platform/widgets/Actions.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

// How the user is asked for file names; empty means that the user gave up.
struct TFileDialogs {
  std::function<std::vector<std::string>(const std::string& title, const std::string& folder,
                                         const std::string& filter)>
      Open;
  std::function<std::string(const std::string& title, const std::string& fileName,
                            const std::string& filter)>
      Save;
};

class TWorkbench : public TForm, public TModuleHost {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TWorkbench();
  ~TWorkbench() override;

  TWorkspace& Workspace() { return FWorkspace; }
  TEditWindow& EditWindow() { return *FEditWindow; }
  TProjectPanel& ProjectPanel() { return *FProjectPanel; }
  TPropertyInspector& Inspector() { return *FInspector; }
  TMessagePanel& Messages() { return *FMessages; }
  TToolsServices& Services() { return *FServices; }
  TMainMenu& MainMenu() { return *FMenu; }
  TActionList& Actions() { return *FActions; }
  TImageList& Images() { return *FImages; }
  QMainWindow& Window() { return *FWindow; }
  TFileDialogs FileDialogs;

  // Loads a package and lets it register. What goes wrong stands in the message area.
  bool LoadPackage(const std::string& fileName);
  // Ends the wizards and gives the packages back; before the application ends.
  void UnloadPackages();

  // A project or a unit, by what the file is. False, the user told, when it cannot be opened.
  bool OpenAny(const std::string& fileName);
  bool OpenProject(const std::string& fileName);
  bool OpenFile(const std::string& fileName);
  // Goes to a line, from 1.
  bool OpenFileAt(const std::string& fileName, int line);
  void NewUnit(TSourceLanguage language);
  bool ReloadFile(const std::string& fileName);
  // The module of the active designer or page, or null.
  TModule* CurrentModule();

  // Each answers false when the user kept something open or saving failed.
  bool ClosePage(TEditPage& page);
  bool CloseProject();
  bool CloseAll();
  bool SaveAll();
  // Looks whether files changed behind the editor, and asks what to do about it.
  void CheckDisk();

  bool CloseQuery() override;
  void SaveLayout();
  void LoadLayout();

  // The commands of the menus (WorkbenchCommands.cpp has their table).
  void FileNewUnit() { NewUnit(TSourceLanguage::Pascal); }
  void FileNewCppUnit() { NewUnit(TSourceLanguage::Cpp); }
  void FileOpen();
  void FileOpenProject();
  void FileSave();
  void FileSaveAs();
  void FileSaveAll() { SaveAll(); }
  void FileClose();
  void FileCloseAll() { CloseAll(); }
  void FileExit() { Close(); }
  void EditUndo();
  void EditRedo();
  void EditCut();
  void EditCopy();
  void EditPaste();
  void EditDelete();
  void EditSelectAll();
  void SearchFind();
  void SearchNext();
  void SearchPrevious();
  void SearchGoToLine();
  void ViewUnits() { ChooseModule(false); }
  void ViewForms() { ChooseModule(true); }
  void ViewToggleForm();
  void ViewNewEditWindow();
  void ViewProject() { ShowPanel(*FProjectPanel, FProjectPanel->Tree()); }
  void ViewInspector() { ShowPanel(*FInspector, FInspector->Grid()); }
  void ViewMessages() { ShowPanel(*FMessages, FMessages->List()); }
  void ViewEditor();
  void ViewNextPage() { StepPage(+1); }
  void ViewPreviousPage() { StepPage(-1); }
  void ProjectViewSource();
  void ProjectCloseCommand() { CloseProject(); }
  void ToolsLoadPackage();
  void HelpAbout();

  bool HasPage() const { return FEditWindow->ActivePage() != nullptr; }
  bool HasPages() const { return FEditWindow->Tabs().Tabs()->Count() > 1; }
  bool HasProject() const { return FWorkspace.Project() != nullptr; }
  bool HasModules() const { return !FWorkspace.Modules().empty(); }
  bool CanSave() const;
  bool CanSaveAll() const;
  bool CanUndo() const;
  bool CanRedo() const;
  bool HasForm() const;

  // TModuleHost
  TDocumentAccess& Documents() override { return FDocuments; }
  std::vector<std::string> ClassChain(const TModule& module, const std::string& name) override {
    return FWorkspace.ClassChain(module, name);
  }
  void ShowSource(TSourceEditor& editor) override;
  void ShowForm(TFormEditor& editor) override;
  std::vector<IOTAEditView*> ViewsOf(const TSourceEditor& editor) override;
  TForm* DesignerOf(const TFormEditor& editor) override;
  void SelectionChanged(TFormEditor& editor) override;
  void EditorChanged(TModule& module) override;
  TModule* OpenModule(const std::string& fileName) override;
  bool CloseModule(TModule& module, bool ask) override;
  bool SaveModule(TModule& module, bool changeName, bool ask) override;
  void ReportError(const std::string& message) override;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // WorkbenchCommands.cpp
  void MakeCommands();
  void MakeMenus();
  void MakeToolBars();
  void CommandExecute(TObject* sender);
  void CommandUpdate(TObject* sender);
  void FillReopenMenu(TObject* sender);
  void ReopenClick(TObject* sender);
  void BuildEditorMenu(TPopupMenu& menu);
  void ClosePageClick(TObject* sender);
  TAction* ActionNamed(const char* name) const;

  // Workbench.cpp
  void MakePanels();
  void MakeStatusBar();
  QDockWidget* Dock(TForm& panel, Qt::DockWidgetArea area);
  void ShowPanel(TForm& panel, QWidget& first);
  void UpdateTitle();
  void UpdateStatus();
  void PageChanged();
  void StepPage(int delta);

  // WorkbenchFiles.cpp
  enum class TAnswer { Yes, No, Cancel };
  TAnswer AskSave(const TModule& module);
  // Saves what the user wants saved. False when the user gave up or saving failed.
  bool SettleModule(TModule& module);
  bool SettleAll();
  void DropModule(TModule& module);
  bool Shown(const TModule& module, const TSourceEditor* except) const;
  std::string AskFileName(const TModule& module);
  bool WriteModule(TModule& module, const std::string& fileName, bool onlyModified);
  bool OfferUnicode(TModule& module, const std::string& trouble);
  bool MaySaveOver(TModule& module, bool ask, std::string& fileName);
  void ProjectSourceSaved();
  void ReportProject(const TProject& project);
  void OpenSession(TProjectHolder& project);
  void StoreSession();
  void CheckDocument(TSourceEditor& source);
  void CheckForm(TFormEditor& form);
  void ChooseModule(bool forms);
  TDesignerForm* FindDesigner(const TFormEditor& editor) const;
  void DesignerClosed(TObject* sender, TCloseAction& action);
  void CloseHiddenModules();

  TDocumentAccess FDocuments;
  TSettings FSettings;
  TWorkspace FWorkspace;
  QMainWindow* FWindow;
  TImageList* FImages;
  TActionList* FActions;
  TMainMenu* FMenu;
  TMenuItem* FReopenMenu = nullptr;
  TEditWindow* FEditWindow;
  TFindBar* FFindBar;
  TProjectPanel* FProjectPanel;
  TPropertyInspector* FInspector;
  TMessagePanel* FMessages;
  std::vector<TDesignerForm*> FDesigners;
  struct TStatusFields {
    QLabel* Caret;
    QLabel* Modified;
    QLabel* Insert;
    QLabel* Encoding;
    QLabel* LineEnds;
    QLabel* Project;
  } FStatus{};
  QTimer FDiskTimer;
  bool FCheckingDisk = false;
  std::vector<std::unique_ptr<TPackage>> FPackages;
  std::unique_ptr<TToolsServices> FServices;
};

}  // namespace wrenfold
