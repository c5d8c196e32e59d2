// The open tools interface: what packages may ask of the environment, in plain abstract classes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/core/system/Interfaces.h"
#include "platform/core/text/Values.h"

class QIcon;
class QWidget;

namespace wrenfold {

class TActionList;
class TComponent;
class TForm;
class TImageList;
class TMainMenu;
class TToolBar;

// Interfaces that are returned are not counted for the caller: who keeps one holds it in a TIntf.
// A text that the environment does not know is empty; a missing object is null. Nothing here
// raises for a missing object; an index must be inside 0..count-1, else the answer is null.

class IOTAModule;
class IOTAProject;

// Told of what happens to one object. Held (counted) by the object from AddNotifier to
// RemoveNotifier or to the end of the object, which calls Destroyed first.
class IOTANotifier : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E01, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 1}};
  virtual void AfterSave() = 0;
  virtual void BeforeSave() = 0;
  // The object is going away: every pointer to it must be dropped in here.
  virtual void Destroyed() = 0;
  virtual void Modified() = 0;
};

enum TOTAFileNotification : std::uint8_t {
  ofnFileOpening,
  ofnFileOpened,
  ofnFileClosing,
  ofnDefaultDesktopLoad,
  ofnDefaultDesktopSave,
  ofnProjectDesktopLoad,
  ofnProjectDesktopSave,
  ofnPackageInstalled,
  ofnPackageUninstalled,
  ofnActiveProjectChanged,
};

// Told of what happens to files and projects of the whole environment.
class IOTAIDENotifier : public IOTANotifier {
 public:
  static constexpr TGuid IID{0x57524E02, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 2}};
  // Setting cancel in ofnFileOpening and ofnFileClosing stops the operation.
  virtual void FileNotification(TOTAFileNotification code, const std::string& fileName,
                                bool& cancel) = 0;
  virtual void BeforeCompile(IOTAProject* project, bool& cancel) = 0;
  virtual void AfterCompile(bool succeeded) = 0;
};

// Told of what happens to a designed form, when it is added to the notifiers of a form editor.
class IOTAFormNotifier : public IOTANotifier {
 public:
  static constexpr TGuid IID{0x57524E15, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 21}};
  // The form's designer became the active one, by the user or by code.
  virtual void FormActivated() = 0;
  virtual void ComponentRenamed(TComponent* component, const std::string& oldName,
                                const std::string& newName) = 0;
  virtual void SelectionChanged() = 0;
};

// The object inspector, a form named "PropertyInspector", has a component of this name: a widget
// above the properties for what packages put there. The environment lays its children out one below
// the other; without children it takes no room. The children belong to the packages.
inline constexpr char InspectorTopPlace[] = "TopPlace";

enum TWizardStateItem : std::uint8_t { wsEnabled, wsChecked };
using TWizardState = TSet<TWizardStateItem>;

// An add-in. The environment holds it from registration until the package is unloaded.
class IOTAWizard : public IOTANotifier {
 public:
  static constexpr TGuid IID{0x57524E03, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 3}};
  // Unique among all wizards: company and product.
  virtual std::string GetIDString() = 0;
  virtual std::string GetName() = 0;
  virtual TWizardState GetState() = 0;
  virtual void Execute() = 0;
};

// A wizard that the environment may show as one item of its help menu.
class IOTAMenuWizard : public IOTAWizard {
 public:
  static constexpr TGuid IID{0x57524E04, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 4}};
  virtual std::string GetMenuText() = 0;
};

class IOTAWizardServices : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E05, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 5}};
  // The index under which RemoveWizard knows it.
  virtual int AddWizard(IOTAWizard* wizard) = 0;
  virtual void RemoveWizard(int index) = 0;
};

// One file of a module as the environment shows it. To be asked for its special forms with
// Supports<IOTASourceEditor>, Supports<IOTAFormEditor>, Supports<INTAFormEditor>.
class IOTAEditor : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E06, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 6}};
  virtual std::string GetFileName() = 0;
  virtual bool GetModified() = 0;
  virtual IOTAModule* GetModule() = 0;
  virtual void MarkModified() = 0;
  // Brings the editor to the front, opening its window or page when there is none.
  virtual void Show() = 0;
  virtual int AddNotifier(IOTANotifier* notifier) = 0;
  virtual void RemoveNotifier(int index) = 0;
};

// One view of a source text: a page of a code editor window.
class IOTAEditView : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E07, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 7}};
  // Line and column of the cursor, both from 1.
  virtual void GetCursorPos(int& line, int& column) = 0;
  virtual void SetCursorPos(int line, int column) = 0;
  // The first visible line, from 1.
  virtual int GetTopLine() = 0;
  virtual void SetTopLine(int line) = 0;
  // The form of the code editor window that holds the view.
  virtual TForm* GetEditWindow() = 0;
};

class IOTASourceEditor : public IOTAEditor {
 public:
  static constexpr TGuid IID{0x57524E08, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 8}};
  virtual int GetEditViewCount() = 0;
  virtual IOTAEditView* GetEditView(int index) = 0;
  virtual int GetLinesInBuffer() = 0;
  // The bytes of the text as the editor holds it now (UTF-8), from an offset; fewer than count
  // when the text ends before.
  virtual std::string GetText(std::int64_t position, std::int64_t count) = 0;
};

class IOTAFormEditor : public IOTAEditor {
 public:
  static constexpr TGuid IID{0x57524E09, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 9}};
  // The designed root; null when the form could not be loaded.
  virtual TComponent* GetRootComponent() = 0;
  virtual TComponent* FindComponent(const std::string& name) = 0;
};

// The designer of one form.
class IDesigner : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E0A, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 10}};
  virtual TComponent* GetRoot() = 0;
  virtual std::vector<TComponent*> GetSelections() = 0;
  // Replaces the selection; components of another root are ignored.
  virtual void SetSelections(const std::vector<TComponent*>& components) = 0;
  void SelectComponent(TComponent* component) { SetSelections({component}); }
  // The window that shows the designed form, or null.
  virtual TForm* GetDesignerForm() = 0;
};
using IFormDesigner = IDesigner;

// The native side of a form editor.
class INTAFormEditor : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E0B, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 11}};
  virtual IDesigner* GetFormDesigner() = 0;
};

// What belongs together under one name: a unit with its form, a project source.
class IOTAModule : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E0C, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 12}};
  virtual std::string GetFileName() = 0;
  virtual void SetFileName(const std::string& fileName) = 0;
  virtual int GetModuleFileCount() = 0;
  virtual IOTAEditor* GetModuleFileEditor(int index) = 0;
  // The projects that contain the module.
  virtual int GetOwnerCount() = 0;
  virtual IOTAProject* GetOwner(int index) = 0;
  // Asks the user to save what changed; false when the user kept the module open.
  virtual bool Close() = 0;
  virtual bool CloseModule(bool forceClosed) = 0;
  // Asks for a name where changeName is wanted or none was given yet; forceSave asks nothing.
  virtual bool Save(bool changeName, bool forceSave) = 0;
  virtual int AddNotifier(IOTANotifier* notifier) = 0;
  virtual void RemoveNotifier(int index) = 0;
};

// A module that a project lists, open or not.
class IOTAModuleInfo : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E0D, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 13}};
  // The unit's name.
  virtual std::string GetName() = 0;
  virtual std::string GetFileName() = 0;
  virtual std::string GetFormName() = 0;
  // "TFrame", "TDataModule" and so on; empty for an ordinary form.
  virtual std::string GetDesignClass() = 0;
  // The open module; null when it cannot be opened.
  virtual IOTAModule* OpenModule() = 0;
};

class IOTAProject : public IOTAModule {
 public:
  static constexpr TGuid IID{0x57524E0E, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 14}};
  virtual int GetModuleCount() = 0;
  virtual IOTAModuleInfo* GetModule(int index) = 0;
};

// The resource module of a project.
class IOTAProjectResource : public IOTAModule {
 public:
  static constexpr TGuid IID{0x57524E0F, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 15}};
};

// The open projects; one of the open modules supports it whenever a project is open.
class IOTAProjectGroup : public IOTAModule {
 public:
  static constexpr TGuid IID{0x57524E10, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 16}};
  virtual int GetProjectCount() = 0;
  virtual IOTAProject* GetProject(int index) = 0;
  virtual IOTAProject* GetActiveProject() = 0;
};

class IOTAModuleServices : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E11, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 17}};
  // The module of the active editor page or designer, or null.
  virtual IOTAModule* CurrentModule() = 0;
  // The open modules, the project and the project group among them.
  virtual int GetModuleCount() = 0;
  virtual IOTAModule* GetModule(int index) = 0;
  // The open module of that file name, or null.
  virtual IOTAModule* FindModule(const std::string& fileName) = 0;
};

class IOTAActionServices : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E12, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 18}};
  // Each answers false, after telling the user why, when it could not be done.
  virtual bool OpenFile(const std::string& fileName) = 0;
  virtual bool CloseFile(const std::string& fileName) = 0;
  virtual bool ReloadFile(const std::string& fileName) = 0;
  virtual bool SaveFile(const std::string& fileName) = 0;
};

// The environment as a whole.
class IOTAServices : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E13, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 19}};
  virtual int AddNotifier(IOTAIDENotifier* notifier) = 0;
  virtual void RemoveNotifier(int index) = 0;
  // Where the environment's settings stand, without a trailing separator.
  virtual std::string GetRootDirectory() = 0;
  // The environment's main window.
  virtual TForm* GetParentForm() = 0;
};

// The environment's own menus, actions, tool bars and pictures. The objects belong to it.
class INTAServices : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E14, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 20}};
  virtual TMainMenu* GetMainMenu() = 0;
  virtual TActionList* GetActionList() = 0;
  virtual TImageList* GetImageList() = 0;
  // By component name, letter case ignored; null when there is none.
  virtual TToolBar* GetToolBar(const std::string& name) = 0;
  // Adds a picture to the environment's list and answers its index there.
  virtual int AddMasked(const QIcon& image) = 0;
};

enum TDesignedKind : std::uint8_t { dkTextForms, dkFrames };
using TDesignedKinds = TSet<TDesignedKind>;

// What the environment designs beside forms in binary files. Asked of BorlandIDEServices; an
// environment without it designs neither of the kinds.
class IOTADesignCapabilities : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E18, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 24}};
  virtual TDesignedKinds GetDesignedKinds() = 0;
};

// The window that a designed root is drawn in; asked of a designer whose root is no window itself.
class INTADesignWindow : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E19, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 25}};
  // In the size of the designed form, without a parent of its own, made hidden at the first call;
  // null for a root that has no window, as a data module. It belongs to the designer. Who shows it
  // elsewhere sets its parent, hides it afterwards and sets its parent to null: the designer then
  // has it back. While it has a foreign parent it is inert and no form of the screen, and when that
  // parent is destroyed it comes back as well.
  virtual QWidget* GetRootWindow() = 0;
};

// Changes the text of a source editor; asked of the editor. Without it the text can only be read.
class IOTATextWriter : public IInterface {
 public:
  static constexpr TGuid IID{0x57524E1A, 0x4F54, 0x4101, {0x90, 1, 0x57, 0x52, 0x45, 0x4E, 0, 26}};
  // Puts the text (UTF-8) in the place of count bytes from the position on, counted as GetText
  // does; one step of the editor's undo. A range outside the text is cut to it.
  virtual void Replace(std::int64_t position, std::int64_t count, const std::string& text) = 0;
};

// Every service of the environment, by Supports<INTAServices>(BorlandIDEServices) and so on. Set
// by the environment when it starts and null again before its services end: no reference is
// counted here.
extern IInterface* BorlandIDEServices;

// Hands a wizard to the environment, which holds and later releases it. Without an environment
// nobody takes it and the answer is false.
bool RegisterPackageWizard(IOTAWizard* wizard);

// How the environment takes wizards; null when it stops taking them. Answers the one before.
using TRegisterWizardProc = void (*)(IOTAWizard* wizard);
TRegisterWizardProc SetRegisterWizardProc(TRegisterWizardProc procedure);

}  // namespace wrenfold
