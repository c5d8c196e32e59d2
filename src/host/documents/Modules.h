// What is open: modules with their source and form editors, as the open tools interface sees them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/documents/FieldDeclarations.h"
#include "host/documents/FormDocument.h"
#include "host/documents/ProjectForms.h"
#include "host/documents/UnitDocument.h"
#include "platform/toolsapi/ToolsAPI.h"
#include "project/Project.h"

namespace wrenfold {

class TFormEditor;
class TModule;
class TSourceEditor;

// What modules ask of the workbench that shows them.
class TModuleHost {
 public:
  virtual TDocumentAccess& Documents() = 0;
  // The class of a form's root and its ancestors, nearest first.
  virtual std::vector<std::string> ClassChain(const TModule& module,
                                              const std::string& className) = 0;
  // Bring an editor to the front. Failures are told to the user.
  virtual void ShowSource(TSourceEditor& editor) = 0;
  virtual void ShowForm(TFormEditor& editor) = 0;
  // The pages that show the text, in the order of the tabs.
  virtual std::vector<IOTAEditView*> ViewsOf(const TSourceEditor& editor) = 0;
  // The window that shows the form, or null.
  virtual TForm* DesignerOf(const TFormEditor& editor) = 0;
  // The designed window for others to show, made at the first call; null for a data module.
  virtual QWidget* RootWindowOf(TFormEditor& editor) = 0;
  // What the form can be composed with.
  virtual std::unique_ptr<TModuleForms> FormsFor(TFormEditor& editor) = 0;
  virtual void SelectionChanged(TFormEditor& editor) = 0;
  // An editor was modified, saved or renamed.
  virtual void EditorChanged(TModule& module) = 0;
  // The open module of the file, opened where it is not; null, the user told, when it cannot be.
  virtual TModule* OpenModule(const std::string& fileName) = 0;
  // Answer false when the user kept the module open, or saving failed.
  virtual bool CloseModule(TModule& module, bool ask) = 0;
  virtual bool SaveModule(TModule& module, bool changeName, bool ask) = 0;
  virtual void ReportError(const std::string& message) = 0;

 protected:
  ~TModuleHost() = default;
};

// Notifiers by index. An index stays valid when others are removed; a notifier may remove itself.
class TNotifierList {
 public:
  int Add(IOTANotifier* notifier);
  void Remove(int index);
  void Call(void (IOTANotifier::*operation)());
  // Those among them that are notifiers of forms.
  void CallForm(const std::function<void(IOTAFormNotifier&)>& operation);
  // Tells all of the end and forgets them.
  void End();

 private:
  std::vector<TIntf<IOTANotifier>> FNotifiers;
};

// What source and form editors have in common. An editor that somebody holds may outlive its
// module; it then answers that there is nothing.
class TModuleEditor {
 public:
  virtual ~TModuleEditor() = default;

  const std::string& FileName() const { return FFileName; }
  TModule* Module() const { return FModule; }
  virtual IOTAEditor* Interface() = 0;
  virtual bool Modified() const = 0;
  // Raises when the file cannot be written; it then is as it was.
  virtual void SaveAs(const std::string& fileName) = 0;
  // The module is closed: text or form are given up.
  virtual void Detach();

  TNotifierList Notifiers;

 protected:
  TModuleEditor(TModule& module, TModuleHost& host, std::string fileName)
      : FModule(&module), FHost(host), FFileName(std::move(fileName)) {}
  void TakeFileName(const std::string& fileName) { FFileName = fileName; }
  void Changed(bool modified);

  TModule* FModule;
  TModuleHost& FHost;

 private:
  std::string FFileName;
};

// The operations of IOTAEditor, which both kinds of editors share.
template <class... Interfaces>
class TEditorOf : public TInterfacedObject<Interfaces...>, public TModuleEditor {
 public:
  std::string GetFileName() override { return FileName(); }
  bool GetModified() override { return Modified(); }
  IOTAModule* GetModule() override;
  int AddNotifier(IOTANotifier* notifier) override { return Notifiers.Add(notifier); }
  void RemoveNotifier(int index) override { Notifiers.Remove(index); }

 protected:
  using TModuleEditor::TModuleEditor;
};

// A source text. It is read when it is shown or asked for, not before.
class TSourceEditor final : public TEditorOf<IOTASourceEditor, IOTATextWriter> {
 public:
  TSourceEditor(TModule& module, TModuleHost& host, const std::string& fileName);
  // A new unit with this text.
  TSourceEditor(TModule& module, TModuleHost& host, const std::string& fileName,
                const std::string& text);

  // Reads the file the first time; raises EFOpenError. Not after Detach.
  TUnitDocument& Document();
  // Gives the text up, edits included; no page may show it. It is read again when it is asked for.
  void Forget() { FDocument.reset(); }
  // Null while the file was not read.
  TUnitDocument* LoadedDocument() const { return FDocument.get(); }

  IOTAEditor* Interface() override { return this; }
  bool Modified() const override { return FDocument != nullptr && FDocument->Modified(); }
  void SaveAs(const std::string& fileName) override;
  void Detach() override;

  HResult QueryInterface(const TGuid& iid, void** result) override;
  void MarkModified() override;
  void Show() override;
  int GetEditViewCount() override;
  IOTAEditView* GetEditView(int index) override;
  int GetLinesInBuffer() override;
  std::string GetText(std::int64_t position, std::int64_t count) override;
  void Replace(std::int64_t position, std::int64_t count, const std::string& text) override;

 private:
  void Watch();
  // Null when there is no text, after telling the user why.
  TUnitDocument* TryDocument();

  std::unique_ptr<TUnitDocument> FDocument;
};

// The designer of a form: its root and what is selected of it.
class TDesigner final : public TInterfacedObject<IDesigner, INTADesignWindow> {
 public:
  explicit TDesigner(TFormEditor& editor) : FEditor(&editor) {}
  void Detach();

  TComponent* GetRoot() override;
  std::vector<TComponent*> GetSelections() override { return FSelections; }
  void SetSelections(const std::vector<TComponent*>& components) override;
  TForm* GetDesignerForm() override;
  QWidget* GetRootWindow() override;

 private:
  TFormEditor* FEditor;
  std::vector<TComponent*> FSelections;
};

// A form file. It is read when its root is asked for.
class TFormEditor final : public TEditorOf<IOTAFormEditor, INTAFormEditor> {
 public:
  TFormEditor(TModule& module, TModuleHost& host, const std::string& fileName);
  ~TFormEditor() override;

  // Null when the file cannot be read; the user is told once, and the place of the trouble kept.
  TFormDocument* Document();
  TFormDocument* LoadedDocument() const { return FDocument.get(); }
  const TSourcePlace& TroublePlace() const { return FTroublePlace; }
  TDesigner& Designer() { return *FDesigner; }
  // The designer became the active one.
  void Activated();
  // One stroke of changes, which Undo takes back. Raises EComponentError for a name that cannot be.
  void Change(const std::vector<TFormChange>& changes);
  void Undo();
  void Redo();
  // Reads the file again at the next use; what was changed is gone.
  void Forget();
  // The same at once, and tells who listens when the form has another name now.
  void ReadAgain();
  TModuleHost& Host() { return FHost; }

  IOTAEditor* Interface() override { return this; }
  bool Modified() const override { return FDocument != nullptr && FDocument->Modified(); }
  void SaveAs(const std::string& fileName) override;
  void Detach() override;

  HResult QueryInterface(const TGuid& iid, void** result) override;
  void MarkModified() override;
  void Show() override;
  TComponent* GetRootComponent() override;
  TComponent* FindComponent(const std::string& name) override;
  IDesigner* GetFormDesigner() override;

 private:
  void TellRenamed(const std::vector<TFormChange>& changes, bool forward);

  TDesignClasses FClasses;
  std::unique_ptr<TFieldDeclarations> FFields;
  std::unique_ptr<TFormDocument> FDocument;
  TIntf<TDesigner> FDesigner;
  bool FFailed = false;
  TSourcePlace FTroublePlace;
};

// An open module, whatever interface it has.
class TModule {
 public:
  TModule(TModuleHost& host, std::string fileName) : FHost(host), FFileName(std::move(fileName)) {}
  virtual ~TModule() = default;
  TModule(const TModule&) = delete;
  TModule& operator=(const TModule&) = delete;

  virtual IOTAModule* Interface() = 0;
  const std::string& FileName() const { return FFileName; }
  TModuleHost& Host() const { return FHost; }

  const std::vector<TIntf<TSourceEditor>>& Sources() const { return FSources; }
  TFormEditor* FormEditor() const { return FForm.get(); }
  std::vector<TModuleEditor*> Editors() const;
  TSourceEditor* FindSource(const std::string& fileName) const;
  bool Modified() const;
  // A unit that was never saved.
  bool Untitled() const;

  TSourceEditor& AddSource(const std::string& fileName);
  TSourceEditor& AddNewSource(const std::string& fileName, const std::string& text);
  void AddForm(const std::string& fileName);

  // Writes the editors, files beside the unit's own under the new bare name. Raises when a file
  // cannot be written; what was written before it stays written.
  void SaveAs(const std::string& fileName, bool onlyModified);
  // The module is closed: ends its editors and tells the notifiers.
  void Detach();

  // The projects that contain the module; set by the workbench.
  std::vector<IOTAProject*> Owners;
  TNotifierList Notifiers;

 private:
  TModuleHost& FHost;
  std::string FFileName;
  std::vector<TIntf<TSourceEditor>> FSources;
  TIntf<TFormEditor> FForm;
};

// The operations of IOTAModule for all kinds of modules.
template <class Interface_>
class TModuleOf : public TInterfacedObject<Interface_>, public TModule {
 public:
  using TModule::TModule;
  IOTAModule* Interface() override { return this; }

  HResult QueryInterface(const TGuid& iid, void** result) override {
    return QueryAmong<Interface_, IOTAModule>(this, iid, result);
  }
  std::string GetFileName() override { return FileName(); }
  void SetFileName(const std::string& fileName) override;
  int GetModuleFileCount() override { return static_cast<int>(Editors().size()); }
  IOTAEditor* GetModuleFileEditor(int index) override;
  int GetOwnerCount() override { return static_cast<int>(Owners.size()); }
  IOTAProject* GetOwner(int index) override;
  bool Close() override { return CloseModule(false); }
  bool CloseModule(bool forceClosed) override {
    const TIntf<IOTAModule> held(this);
    return Host().CloseModule(*this, !forceClosed);
  }
  bool Save(bool changeName, bool forceSave) override {
    return Host().SaveModule(*this, changeName, !forceSave);
  }
  int AddNotifier(IOTANotifier* notifier) override { return Notifiers.Add(notifier); }
  void RemoveNotifier(int index) override { Notifiers.Remove(index); }
};

using TUnitModule = TModuleOf<IOTAModule>;
using TResourceModule = TModuleOf<IOTAProjectResource>;

// A module that a project lists.
class TModuleInfo final : public TInterfacedObject<IOTAModuleInfo> {
 public:
  TModuleInfo(TModuleHost& host, TProjectModule module)
      : FHost(&host), FModule(std::move(module)) {}
  // The project is closed.
  void Detach() { FHost = nullptr; }

  std::string GetName() override { return FModule.UnitName; }
  std::string GetFileName() override { return FModule.FileName; }
  std::string GetFormName() override { return FModule.FormName; }
  std::string GetDesignClass() override { return FModule.DesignClass; }
  IOTAModule* OpenModule() override;

 private:
  TModuleHost* FHost;
  const TProjectModule FModule;
};

// The open project: its source is a source editor, its modules are listed by their infos.
class TProjectHolder final : public TModuleOf<IOTAProject> {
 public:
  TProjectHolder(TModuleHost& host, std::unique_ptr<TProject> project);
  ~TProjectHolder() override;

  TProject& Project() { return *FProject; }
  // The text of the project's source is another one: reads the modules from it. Raises
  // EProjectError and keeps them.
  void SourceChanged();

  int GetModuleCount() override { return static_cast<int>(FInfos.size()); }
  IOTAModuleInfo* GetModule(int index) override;

 private:
  void ListModules();

  std::unique_ptr<TProject> FProject;
  std::vector<TIntf<TModuleInfo>> FInfos;
};

// The group of the one open project.
class TProjectGroup final : public TModuleOf<IOTAProjectGroup> {
 public:
  TProjectGroup(TModuleHost& host, const std::string& fileName, IOTAProject* project)
      : TModuleOf(host, fileName), FProject(project) {}

  int GetProjectCount() override { return FProject != nullptr ? 1 : 0; }
  IOTAProject* GetProject(int index) override { return index == 0 ? FProject : nullptr; }
  IOTAProject* GetActiveProject() override { return FProject; }
  void ProjectClosed() { FProject = nullptr; }

 private:
  IOTAProject* FProject;
};

// The header of a C++ unit, the form file of a unit: what belongs to the module of that file.
// The symbols are those that conditional compilation has defined in the unit.
void AddUnitFiles(TModule& module, const TDefinedSymbols& symbols);

}  // namespace wrenfold
