// What the experts ask of the environment's projects, modules and editors.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/StringList.h"
#include "platform/toolsapi/ToolsAPI.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

// Nothing here keeps state or raises for a missing object of the environment: the answer is then
// null, an empty list, or nothing is done.

enum TProjectFormType : std::uint8_t { pfkForm, pfkFrame, pfkDataModule, pfkQuickRep };
using TProjectFormTypes = TSet<TProjectFormType>;
enum TModuleType : std::uint8_t { mtForm, mtUnit };
// Which of the four names of a project module is meant.
enum TModuleNameKind : std::uint8_t { mnkFile, mnkUnit, mnkForm, mnkDesignClass };

// The four names in the order of TModuleNameKind; a name that the environment does not know is
// empty.
using TModuleName = std::array<std::string, 4>;
using TModuleNames = std::vector<TModuleName>;

using TSourceEditors = std::vector<TIntf<IOTASourceEditor>>;
using TEditors = std::vector<TIntf<IOTAEditor>>;
using TModuleInfos = std::vector<TIntf<IOTAModuleInfo>>;

// A notifier that does nothing; the experts derive theirs, of one of the kinds of notifiers, and
// override what they need.
template <class Notifier = IOTANotifier>
class TNotifierObject : public TInterfacedObject<Notifier> {
 public:
  void AfterSave() override {}
  void BeforeSave() override {}
  void Destroyed() override {}
  void Modified() override {}
};

// "dfm", and the same with a dot before it.
std::string GetProjectFormType();
std::string GetProjectFormExt();

TIntf<IOTAModule> GetActiveModule();
// The active project of the project group, else the first project among the open modules.
TIntf<IOTAProject> GetActiveProject();
// The resource module that the active project owns.
TIntf<IOTAProjectResource> GetProjectResource();
TIntf<IOTAFormEditor> GetActiveFormEditor();
TIntf<IOTASourceEditor> GetActiveSourceEditor();

// The first of the module's editors of that kind. The module may be null.
TIntf<IOTAFormEditor> GetFormEditorFromModule(IOTAModule* module);
TIntf<IOTASourceEditor> GetSourceEditorFromModule(IOTAModule* module);
TIntf<IDesigner> GetActiveFormDesigner(IOTAFormEditor* formEditor);

// The designed root of the editor; it belongs to the environment.
TComponent* GetFormFromEditor(IOTAEditor* editor);
// The same when it is of one of the types. Frames are never answered, even when pfkFrame is asked
// for.
TComponent* GetFormFromEditor(IOTAEditor* editor, TProjectFormTypes types);

// The window that shows the designed root: the root itself when it is one, else what its designer
// draws it in. Null for a root without a window. It belongs to the environment.
QWidget* GetDesignedWindow(IOTAFormEditor* editor);

// The designed roots of the active project's modules, in project order: those of open modules, and
// with openAll also of the others, which are opened for it.
void GetProjectForms(std::vector<TComponent*>& list, TProjectFormTypes types);
void GetProjectForms(std::vector<TComponent*>& list, TProjectFormTypes types, bool openAll);

// The editors of the open modules, in module order; with projectOnly, of the modules that the
// active project owns.
void GetOpenedFormEditors(TEditors& list, TProjectFormTypes types, bool projectOnly);
void GetOpenedEditors(TEditors& list, TModuleType moduleType, bool projectOnly);
void GetOpenedSourceEditors(TSourceEditors& list, bool projectOnly);

// The modules of the active project, in project order.
void GetProjectModules(TModuleInfos& list);
// Their names of one kind without the empty ones. Design classes are not listed.
void GetProjectModuleNames(TStrings& strings, TModuleNameKind kind);
TModuleNames GetProjectModuleNames();

// The first visible form whose component name contains "EditWindow".
TForm* FindEditorForm();
inline TForm* GetEditorForm() {
  return FindEditorForm();
}
inline TForm* GetEditorForm2() {
  return FindEditorForm();
}
// A component that the code editor window owns.
TComponent* GetEditorFormComponent(std::string_view name);

// Opens the module and brings its editors to the front. For a file or unit: those that are neither
// form, header nor resource. For a form: the form, and unless noSource is set the source, which is
// opened by its file name (a ".cpp" with showCpp by its editor). The last one shown is in front.
void ShowModule(IOTAModuleInfo* moduleInfo, TModuleNameKind kind, bool noSource, bool showCpp);
// The same for the first project module of that name, letter case ignored.
void ShowModuleByName(std::string_view name, TModuleNameKind kind, bool noSource, bool showCpp);

}  // namespace wrenfold
