// The workbench: the main window, composed of its parts.
#pragma once

#include <QMainWindow>
#include <memory>
#include <string>

#include "host/documents/DiskWatch.h"
#include "host/documents/Documents.h"
#include "host/documents/EventHandlers.h"
#include "host/forms/Designers.h"
#include "host/panels/EditWindow.h"
#include "host/panels/FindBar.h"
#include "host/shell/Commands.h"
#include "host/shell/Debugging.h"
#include "host/shell/DocumentWindows.h"
#include "host/shell/FindFiles.h"
#include "host/shell/Packages.h"
#include "host/shell/Panels.h"
#include "host/shell/Sessions.h"
#include "host/shell/StatusFields.h"
#include "host/shell/ToolsServices.h"

namespace wrenfold {

class TWorkbench : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  // Name and version, as the command line and the about box tell them.
  static const char* VersionText();

  TWorkbench();
  ~TWorkbench() override;

  // What is open, and what is done with it.
  TDocuments& Documents() { return *FDocuments; }
  TWorkspace& Workspace() { return FDocuments->Workspace(); }
  TFileDialogs& FileDialogs() { return FDocuments->Saving().Dialogs; }
  TDiskWatch& DiskWatch() { return *FDiskWatch; }
  TSessions& Sessions() { return *FSessions; }

  // Where it is shown.
  TDocumentWindows& Views() { return *FViews; }
  TEditWindow& EditWindow() { return *FEditWindow; }
  TFindBar& FindBar() { return *FFindBar; }
  TFindFilesForm& FindFiles() { return *FFindFiles; }
  TDesigners& Designers() { return *FDesigners; }
  TPanels& Panels() { return *FPanels; }
  TProjectPanel& ProjectPanel() { return FPanels->Get<TProjectPanel>(); }
  TPropertyInspector& Inspector() { return FPanels->Get<TPropertyInspector>(); }
  TMessagePanel& Messages() { return FPanels->Get<TMessagePanel>(); }
  QMainWindow& Window() { return *FWindow; }

  TDebugging& Debugging() { return *FDebugging; }
  TCommands& Commands() { return *FCommands; }
  TPackages& Packages() { return *FPackages; }
  TToolsServices& Services() { return *FServices; }

  // Gives the code editor the focus.
  void ShowEditor();
  bool CloseQuery() override;
  void SaveLayout();
  void LoadLayout();

  // Handlers of menu items that are made when their menu opens.
  void ReopenClick(TObject* sender);
  void ClosePageClick(TObject* sender);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void UpdateTitle();

  QMainWindow* FWindow;
  TEditWindow* FEditWindow;
  TFindBar* FFindBar;
  // In the order of their making: each stands on those before it.
  std::unique_ptr<TPanels> FPanels;
  std::unique_ptr<TStatusFields> FStatus;
  std::unique_ptr<TDesigners> FDesigners;
  std::unique_ptr<TDocumentWindows> FViews;
  std::unique_ptr<TDocuments> FDocuments;
  std::unique_ptr<TEventHandlers> FEventHandlers;
  std::unique_ptr<TDiskWatch> FDiskWatch;
  std::unique_ptr<TSessions> FSessions;
  std::unique_ptr<TFindFilesForm> FFindFiles;
  std::unique_ptr<TDebugging> FDebugging;
  std::unique_ptr<TCommands> FCommands;
  std::unique_ptr<TToolsServices> FServices;
  std::unique_ptr<TPackages> FPackages;
};

}  // namespace wrenfold
