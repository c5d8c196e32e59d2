// What is open: opens, saves and closes units and projects, and answers modules for their host.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/documents/DocumentViews.h"
#include "host/documents/FileNotifiers.h"
#include "host/documents/ProjectForms.h"
#include "host/documents/NewFiles.h"
#include "host/documents/Saving.h"
#include "host/documents/Settings.h"
#include "host/documents/Workspace.h"

namespace wrenfold {

class TDocuments final : public TModuleHost {
 public:
  // The views must outlive this object.
  explicit TDocuments(TDocumentViews& views)
      : FViews(views),
        FWorkspace(*this),
        FForms(FWorkspace),
        FSaving(FWorkspace, FSettings, views) {}

  TWorkspace& Workspace() { return FWorkspace; }
  const TWorkspace& Workspace() const { return FWorkspace; }
  TSettings& Settings() { return FSettings; }
  TSaving& Saving() { return FSaving; }
  TFileNotifiers& Notifiers() { return FNotifiers; }

  // A project, also by its folder, or a unit, by what the file is. False, the user told, when it
  // cannot be opened.
  bool OpenAny(const std::string& fileName);
  // The same for each; many are opened in one go.
  void OpenAll(const std::vector<std::string>& files);
  bool OpenProject(const std::string& fileName);
  bool OpenFile(const std::string& fileName);
  // Goes to a line, from 1.
  bool OpenFileAt(const std::string& fileName, int line);
  void NewUnit(TSourceLanguage language);
  // Writes the files of a new project where the user wants it, and opens it.
  void NewProject(TNewProject kind);
  // Writes a unit with an empty form where the user wants it, adds it to the open project and shows
  // the form.
  void NewForm();
  bool ReloadFile(const std::string& fileName);

  // The module of the designer or page that the user was in last, or null.
  TModule* CurrentModule() { return FViews.CurrentModule(); }

  // Each answers false when the user kept something open or saving failed.
  bool CloseProject();
  bool CloseAll();
  bool SaveAll() { return FSaving.SaveAll(); }
  // A page of the text is about to go. False when it has to stay.
  bool MayClosePage(TSourceEditor& source, bool last);
  // The page is gone: what it showed alone is given up.
  void PageClosed(TSourceEditor& source, bool last);
  // Units that no page and no window shows are closed.
  void CloseHidden();
  bool Modified() const;

  // The pages of a project that was opened are wanted, those of one that goes can be remembered.
  std::function<void(TProjectHolder&)> OnProjectOpened;
  std::function<void()> OnProjectCloses;

  // TModuleHost
  TDocumentAccess& Documents() override { return FAccess; }
  std::vector<std::string> ClassChain(const TModule& module, const std::string& name) override {
    return FWorkspace.ClassChain(module, name);
  }
  void ShowSource(TSourceEditor& editor) override;
  void ShowForm(TFormEditor& editor) override;
  std::vector<IOTAEditView*> ViewsOf(const TSourceEditor& editor) override {
    return FViews.ViewsOf(editor);
  }
  TForm* DesignerOf(const TFormEditor& editor) override { return FViews.DesignerOf(editor); }
  QWidget* RootWindowOf(TFormEditor& editor) override { return FViews.RootWindowOf(editor); }
  std::unique_ptr<TModuleForms> FormsFor(TFormEditor& editor) override {
    return std::make_unique<TModuleForms>(editor, FForms);
  }
  void SelectionChanged(TFormEditor& editor) override { FViews.SelectionChanged(editor); }
  void EditorChanged(TModule& module) override { FViews.EditorChanged(module); }
  TModule* OpenModule(const std::string& fileName) override;
  bool CloseModule(TModule& module, bool ask) override;
  bool SaveModule(TModule& module, bool changeName, bool ask) override {
    return FSaving.Save(module, changeName, ask);
  }
  void ReportError(const std::string& message) override { FViews.Tell({.Text = message}); }

 private:
  bool ShowModule(TModule& module, const std::string& fileName);
  void ShowFormText(TFormEditor& editor);
  std::string ProjectOf(const std::string& folder);
  void ReportProject(const TProject& project);
  void Remember(const std::string& fileName);
  void Remove(TModule& module);
  void EndProject();

  TDocumentViews& FViews;
  TDocumentAccess FAccess;
  TSettings FSettings;
  TFileNotifiers FNotifiers;
  TWorkspace FWorkspace;
  TProjectForms FForms;
  TSaving FSaving;
  std::vector<std::string>* FOpened = nullptr;  // what is to be remembered when all are open
};

// "12 units, 3 forms", with what else there is.
std::string Summary(const TProjectStatistics& counts);

}  // namespace wrenfold
