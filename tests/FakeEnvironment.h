// A small environment for the suite's tests: real forms, menus and tabs behind the tools interface.
#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/toolsapi/ToolsAPI.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/MessageDialogs.h"
#include "platform/widgets/TabControl.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

class TFakeModule;

// Counts how often each editor was shown.
class TFakeSourceEditor : public TInterfacedObject<IOTASourceEditor, IOTATextWriter> {
 public:
  TFakeSourceEditor(TFakeModule* module, std::string fileName)
      : FileName(std::move(fileName)), FModule(module) {}
  std::string GetFileName() override { return FileName; }
  bool GetModified() override { return Modified; }
  IOTAModule* GetModule() override;
  void MarkModified() override {}
  void Show() override {
    ++Shown;
    if (OnShow) OnShow();
  }
  int AddNotifier(IOTANotifier*) override { return -1; }
  void RemoveNotifier(int) override {}
  int GetEditViewCount() override { return Views; }
  IOTAEditView* GetEditView(int) override { return nullptr; }
  int GetLinesInBuffer() override { return 0; }
  std::string GetText(std::int64_t position, std::int64_t count) override {
    return Text.substr(std::min(static_cast<std::size_t>(position), Text.size()),
                       static_cast<std::size_t>(count));
  }
  void Replace(std::int64_t position, std::int64_t count, const std::string& text) override {
    Text.replace(static_cast<std::size_t>(position), static_cast<std::size_t>(count), text);
  }

  std::string FileName, Text;
  int Views = 1;
  int Shown = 0;
  bool Modified = false;
  std::function<void()> OnShow;

 private:
  TFakeModule* FModule;
};

class TFakeDesigner : public TInterfacedObject<IDesigner> {
 public:
  explicit TFakeDesigner(TComponent* root) : Root(root) {}
  TComponent* GetRoot() override { return Root; }
  std::vector<TComponent*> GetSelections() override { return Selected; }
  void SetSelections(const std::vector<TComponent*>& components) override { Selected = components; }
  TForm* GetDesignerForm() override { return nullptr; }
  TComponent* Root;
  std::vector<TComponent*> Selected;
};

class TFakeFormEditor : public TInterfacedObject<IOTAFormEditor, INTAFormEditor> {
 public:
  TFakeFormEditor(std::string fileName, TComponent* root)
      : FileName(std::move(fileName)), Designer(new TFakeDesigner(root)) {}
  std::string GetFileName() override { return FileName; }
  bool GetModified() override { return false; }
  IOTAModule* GetModule() override { return nullptr; }
  void MarkModified() override {}
  void Show() override {
    ++Shown;
    if (OnShow) OnShow();
  }
  int AddNotifier(IOTANotifier* notifier) override {
    Notifier = TIntf<IOTANotifier>(notifier);
    return 0;
  }
  void RemoveNotifier(int) override { Notifier = nullptr; }
  TComponent* GetRootComponent() override { return Designer->Root; }
  TComponent* FindComponent(const std::string&) override { return nullptr; }
  IDesigner* GetFormDesigner() override { return Designer.get(); }

  std::string FileName;
  int Shown = 0;
  std::function<void()> OnShow;
  TIntf<IOTANotifier> Notifier;
  TIntf<TFakeDesigner> Designer;
};

template <class Interface>
class TFakeModuleOf : public TInterfacedObject<Interface> {
 public:
  explicit TFakeModuleOf(std::string fileName) : FileName(std::move(fileName)) {}
  std::string GetFileName() override { return FileName; }
  void SetFileName(const std::string& fileName) override { FileName = fileName; }
  int GetModuleFileCount() override { return static_cast<int>(Editors.size()); }
  IOTAEditor* GetModuleFileEditor(int index) override {
    return Editors[static_cast<std::size_t>(index)].get();
  }
  int GetOwnerCount() override { return Project != nullptr ? 1 : 0; }
  IOTAProject* GetOwner(int) override { return Project; }
  bool Close() override { return OnClose ? OnClose() : true; }
  bool CloseModule(bool) override { return Close(); }
  bool Save(bool, bool) override {
    ++Saved;
    return true;
  }
  int AddNotifier(IOTANotifier*) override { return -1; }
  void RemoveNotifier(int) override {}

  std::string FileName;
  std::vector<TIntf<IOTAEditor>> Editors;
  IOTAProject* Project = nullptr;
  std::function<bool()> OnClose;
  int Saved = 0;
};

class TFakeModule : public TFakeModuleOf<IOTAModule> {
 public:
  explicit TFakeModule(std::string fileName) : TFakeModuleOf(fileName) {
    Source = TIntf<TFakeSourceEditor>(new TFakeSourceEditor(this, fileName));
    Editors.emplace_back(static_cast<IOTASourceEditor*>(Source.get()));
  }
  TIntf<TFakeSourceEditor> Source;
};

inline IOTAModule* TFakeSourceEditor::GetModule() {
  return FModule;
}

class TFakeModuleInfo : public TInterfacedObject<IOTAModuleInfo> {
 public:
  std::string GetName() override { return Unit; }
  std::string GetFileName() override { return File; }
  std::string GetFormName() override { return Form; }
  std::string GetDesignClass() override { return DesignClass; }
  IOTAModule* OpenModule() override {
    if (OnOpen) OnOpen();
    return Module.get();
  }
  std::function<void()> OnOpen;
  std::string File, Unit, Form, DesignClass;
  TIntf<IOTAModule> Module;
};

class TFakeProject : public TFakeModuleOf<IOTAProject> {
 public:
  using TFakeModuleOf::TFakeModuleOf;
  int GetModuleCount() override { return static_cast<int>(Infos.size()); }
  IOTAModuleInfo* GetModule(int index) override {
    return Infos[static_cast<std::size_t>(index)].get();
  }
  std::vector<TIntf<IOTAModuleInfo>> Infos;
};

// No field of the toolkit, as source editors are none.
class TFakeEditor : public TControlOf<QAbstractScrollArea> {
 public:
  using TControlOf::TControlOf;
};

// One main form with a menu, and the code editor window docked nowhere. Modules and pages are added
// by the tests. The package finds it through BorlandIDEServices while it lives.
class TFakeEnvironment : public INTAServices,
                         public IOTAModuleServices,
                         public IOTAActionServices,
                         public IOTADesignCapabilities,
                         public TComponent {
 public:
  TFakeEnvironment() {
    MainForm = NewForm<TForm>();
    MainForm->SetName("AppBuilder");
    MainMenu = new TMainMenu(MainForm);
    Actions = new TActionList(MainForm);
    Images = new TImageList(MainForm);
    Actions->SetImages(Images);
    for (const char* caption : {"&File", "&Tools", "&Help"}) AddMenu(MainMenu->Items(), caption);
    AddMenu(MainMenu->Items()->Items(1), "&Options...");
    Application().SetMainForm(MainForm);
    MainForm->resize(300, 200);
    MainForm->Show();

    EditWindow = NewForm<TForm>();
    EditWindow->SetName("EditWindow_0");
    Tabs = new TTabControl(EditWindow, EditWindow);
    Tabs->SetName("TabControl");
    Editor = new TFakeEditor(EditWindow, EditWindow);
    Editor->SetName("Editor");
    LocalMenu = new TPopupMenu(EditWindow);
    Bind<&TFakeEnvironment::FillLocalMenu>(LocalMenu->OnPopup, this);
    Editor->SetPopupMenu(LocalMenu);
    Bind<&TFakeEnvironment::TabChanged>(Tabs->OnChange, this);
    EditWindow->Show();

    BorlandIDEServices = static_cast<INTAServices*>(this);
    SetRegisterWizardProc([](IOTAWizard* wizard) { Wizard = TIntf<IOTAWizard>(wizard); });
  }
  ~TFakeEnvironment() override {
    Wizard = nullptr;
    SetRegisterWizardProc(nullptr);
    BorlandIDEServices = nullptr;
    Application().ProcessMessages();
    Application().SetMainForm(nullptr);
    delete EditWindow;
    delete MainForm;
  }

  HResult QueryInterface(const TGuid& iid, void** result) override {
    if (iid == IOTADesignCapabilities::IID && Designed.Empty()) return E_NOINTERFACE;
    return QueryAmong<INTAServices, IOTAModuleServices, IOTAActionServices, IOTADesignCapabilities>(
        this, iid, result);
  }
  int _AddRef() override { return -1; }
  int _Release() override { return -1; }

  TMainMenu* GetMainMenu() override { return MainMenu; }
  TActionList* GetActionList() override { return Actions; }
  TImageList* GetImageList() override { return Images; }
  TToolBar* GetToolBar(const std::string& name) override {
    return ToolBar != nullptr && ToolBar->Name() == name ? ToolBar : nullptr;
  }
  TDesignedKinds GetDesignedKinds() override { return Designed; }
  int AddMasked(const QIcon& icon) override { return Images->Add(icon); }

  IOTAModule* CurrentModule() override {
    return Modules.empty() ? nullptr : Modules[static_cast<std::size_t>(ActiveModule)].get();
  }
  int GetModuleCount() override { return static_cast<int>(Modules.size()); }
  IOTAModule* GetModule(int index) override {
    return Modules[static_cast<std::size_t>(index)].get();
  }
  IOTAModule* FindModule(const std::string& fileName) override {
    for (const auto& module : Modules)
      if (module->GetFileName() == fileName) return module.get();
    return nullptr;
  }
  bool OpenFile(const std::string& fileName) override {
    OpenedFiles.push_back(fileName);
    return true;
  }
  bool CloseFile(const std::string&) override { return true; }
  bool ReloadFile(const std::string&) override { return true; }
  bool SaveFile(const std::string&) override { return true; }

  // A page of an open unit; its module closes all its pages, the page alone goes by the local menu.
  TFakeModule* AddPage(const std::string& unit) {
    auto* module = new TFakeModule("/work/" + unit + ".pas");
    Modules.emplace_back(module);
    module->OnClose = [this, unit] {
      Log.push_back("close module " + unit);
      RemoveTab(unit);
      return true;
    };
    module->Source->OnShow = [this, unit] { Log.push_back("show " + unit); };
    PageData.push_back(std::make_unique<TObject>());
    Tabs->Tabs()->AddObject(unit, PageData.back().get());
    return module;
  }
  void AddProject(const std::string& name) {
    Project = TIntf<TFakeProject>(new TFakeProject("/work/" + name + ".dpr"));
    Modules.emplace_back(static_cast<IOTAProject*>(Project.get()));
  }
  std::string TabTexts() const {
    std::string texts;
    for (int i = 0; i < Tabs->Tabs()->Count(); ++i)
      texts += (i > 0 ? " " : "") + (*Tabs->Tabs())[i];
    return texts;
  }
  std::string TakeLog() {
    std::string text;
    for (const std::string& line : std::exchange(Log, {}))
      text += (text.empty() ? "" : ", ") + line;
    return text;
  }
  TMenuItem* TopItem() const { return MainMenu->Items()->Find("Wrenfold"); }

  TForm* MainForm;
  TForm* EditWindow;
  TMainMenu* MainMenu;
  TActionList* Actions;
  TImageList* Images;
  TTabControl* Tabs;
  TFakeEditor* Editor;
  TPopupMenu* LocalMenu;
  TToolBar* ToolBar = nullptr;
  TDesignedKinds Designed;  // of no kind: the environment cannot even be asked
  std::vector<TIntf<IOTAModule>> Modules;
  int ActiveModule = 0;
  TIntf<TFakeProject> Project;
  std::vector<std::unique_ptr<TObject>> PageData;
  std::vector<std::string> OpenedFiles, Log;
  // Asked before a page goes by the local menu; false keeps it.
  std::function<bool(const std::string& unit)> OnClosePage;
  static inline TIntf<IOTAWizard> Wizard;

 private:
  static void AddMenu(TMenuItem* parent, const char* caption) {
    auto* item = new TMenuItem;
    item->SetCaption(caption);
    parent->Add(item);
  }
  void TabChanged(TObject*) {
    const int index = Tabs->TabIndex();
    Log.push_back("change to " + (index < 0 ? "none" : (*Tabs->Tabs())[index]));
  }
  void FillLocalMenu(TObject*) {
    auto* item = new TMenuItem(Editor);
    item->SetName("ecClosePage");
    item->SetCaption("&Close page");
    Bind<&TFakeEnvironment::ClosePage>(item->OnClick, this);
    LocalMenu->Items()->Add(item);
  }
  void ClosePage(TObject*) {
    const std::string unit = (*Tabs->Tabs())[Tabs->TabIndex()];
    Log.push_back("close page " + unit);
    if (OnClosePage && !OnClosePage(unit)) return;
    const int index = Tabs->TabIndex();
    Tabs->Tabs()->Delete(index);
    Tabs->SetTabIndex(std::min(index, Tabs->Tabs()->Count() - 1));
  }
  void RemoveTab(const std::string& unit) {
    const int index = Tabs->Tabs()->IndexOf(unit);
    if (index < 0) return;
    Tabs->Tabs()->Delete(index);
    Tabs->SetTabIndex(0);
    std::erase_if(Modules, [&](const auto& module) {
      return module->GetFileName() == "/work/" + unit + ".pas";
    });
  }
};

}  // namespace wrenfold
