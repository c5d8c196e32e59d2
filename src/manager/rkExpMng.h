// The expert manager: the one wizard of the suite, which makes, drives and ends the experts.
#pragma once

#include <memory>
#include <string>

#include "manager/rkCustomExpert.h"
#include "manager/rkExpMenu.h"
#include "manager/rkExpRegistry.h"
#include "manager/rkExpertEditor.h"
#include "manager/rkLanguages.h"
#include "manager/rkSettingsFile.h"
#include "platform/core/model/StringList.h"
#include "platform/toolsapi/ToolsAPI.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Keyboard.h"
#include "platform/widgets/Messages.h"

namespace wrenfold {

class TExpManager;

// Start and end of what exists once for the loaded package: the settings root, the directory that
// the package's files stand in, the registry of expert classes, the way settings are saved.
// An empty directory means that of the package's own module. DoneExpManager comes after the end of
// the manager.
void InitExpManager(std::string packageDirectory = {});
void DoneExpManager();
// Called once the environment has let go of the manager and it is gone; null: nobody.
void SetManagerGoneProc(void (*procedure)());

// With its trailing separator.
const std::string& PackageDirectory();
// "ExpData.spc" in the package directory, or in $XDG_DATA_HOME/wrenfold (as is the error log) where
// the package directory cannot be written.
std::string SettingsFileName();
// What reads and writes it; without a name before InitExpManager and after DoneExpManager.
TSettingsFile& SettingsFile();
// Null before InitExpManager and after DoneExpManager.
TExpData* SettingsRoot();
// The manager while there is one.
TExpManager* CurrentManager();

// How windows of the experts run their commands; empty while there is no manager.
using TPrivateExecProc = TEvent<void(TObject* sender, const TNotifyEvent& handler)>;
const TPrivateExecProc& PrivateExpertExec();

// Adds a settings object of an expert to the settings root, under its name. It is stored, and
// edited under the caption (empty: the name). PropNames are the labels of its properties (see
// MakePropNames). The object is not owned and stays there until the experts are destroyed. Raises
// EFreeCollectionError when the name is taken.
void AddStoredData(TPersistent* data, const std::string& name, const std::string& caption,
                   const std::string& propNames);

// Registers with the environment what the environment calls when it has loaded the package.
void RegisterExpManager();

// References to the wizard are counted: the environment holds it and ends it by letting go.
class TExpManager : public TCustomExpert, public IOTAWizard {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // Starts the suite. Errors on the way are shown and logged; the manager stays as far as it got.
  TExpManager();
  // Saves the settings (when they are to be saved) and ends the suite.
  ~TExpManager() override;

  HResult QueryInterface(const TGuid& iid, void** result) override;
  int _AddRef() override { return ++FReferences; }
  int _Release() override;

  // The wizard.
  std::string GetIDString() override { return "Wrenfold&RK.ServiceDelphiWizards"; }
  std::string GetName() override { return "Tamsorel Wizard Pack"; }
  TWizardState GetState() override { return {wsEnabled}; }
  void Execute() override {}
  std::string GetMenuText() const { return "Test ..."; }
  void AfterSave() override {}
  void BeforeSave() override {}
  void Destroyed() override {}
  void Modified() override {}

  // The manager as an expert: its own menu commands.
  void Init(const TGetMenuItemData& getMenuItemData) override;
  void MenuNotification(TMenuItem* menuItem, TExpMenuItemData* menuItemData) override;

  const TExpObjectList& Experts() const { return FExperts; }
  TExpManagerData& ManagerData() { return *FData; }
  const TExpertsMenu& Menu() const { return FMenu; }
  const TLanguageSettings& Languages() const { return FLanguages; }

  // Nothing when that very expert is in the list already.
  void RegisterExpObject(TCustomExpert* expert, const std::string& name);
  // Destroys all experts but the manager, the last one made first. What the settings root and the
  // menu know of them goes with them.
  void DeleteExpObjects();
  // Makes everything anew from the settings file, experts included; the menu is left as it is.
  void RecreateExperts();
  // The same, tells the experts and has the menu rebuilt; then the windows of the experts that were
  // open are open again. What the settings editor keeps of its own window stays as it is.
  void DoRecreateExperts();
  // While one lives, DoRecreateExperts waits; the end of the last one makes up for it.
  class TRecreationHold {
   public:
    explicit TRecreationHold(TExpManager& manager);
    ~TRecreationHold();
    TRecreationHold(const TRecreationHold&) = delete;
    TRecreationHold& operator=(const TRecreationHold&) = delete;

   private:
    TExpManager& FManager;
    std::weak_ptr<int> FLife;
  };
  // Shows the settings editor until the user closes it. What was saved in it is in force at once:
  // the experts are made anew.
  void EditSettings();
  // The settings editor; null before the start has come to it.
  TExpertEditor* Editor() const { return FEditor.get(); }
  // Asks the user, then drops the settings file and makes everything anew from the defaults.
  void LoadDefaultSettings();
  // Rebuilds the menu now, or when the environment's message loop runs next.
  void ApplySettings();
  void DoApplySettings();
  // Calls Load of every expert.
  void LoadNotify(bool loaded);
  // A failure leaves the settings file as it was and is shown to the user, the first one only.
  void SaveSettings();
  // Writes all settings as they are now to another file; see TSettingsFile::Export.
  void ExportSettings(const std::string& fileName, TObjectStorageFormat format = osfBin);
  // Asks the user, keeps the settings file under another name, puts the other one in its place and
  // makes everything anew from it. Answers false when the user does not want it; raises
  // EFitReaderError for what is no settings file.
  bool ImportSettings(const std::string& fileName);

  void SelectLanguage(TObject* sender);
  void SelectDefaultLanguage(TObject* sender);
  // Lets the user add and delete languages and choose their directory. Without the active language
  // the texts are the package's own again.
  void EditLangModules(TObject* sender);

  // Writes the exception to the log, then shows it as it would be shown without the log. The
  // application's exception handler while logging is on.
  void AppErrorLogData(TObject* sender, std::exception_ptr error);
  // For catch blocks: logs what the application's handler would not see, an exception of a foreign
  // class.
  void CheckAddErrorLog(TObject* sender);
  void PrivateExpertExecProc(TObject* sender, const TNotifyEvent& handler);

 private:
  // A step of the start or the end, and what the trail shows when it is done.
  struct TStep {
    void (TExpManager::*Run)();
    const char* Markers;
  };
  void Start();
  void ProcessLocalization();
  void NoteLanguageError();
  void CreateData();
  void CreateWindow();
  void ConnectMenu();
  void FillPresentList();
  void AddOwnData();
  void CreateExpObjects();
  void CreateExpert(const TExpertClass& slot);
  void InitExperts();
  bool InitExpert(TExpObjectList::TEntry entry, const TGetMenuItemData& demand);
  void GiveUpExpert(const std::string& name);
  void TakeBackRecords(const std::string& expertName);
  void CreateEditor();
  void LocalizeEditor();
  void PrepareEditor();
  void DeleteEditor();
  void LoadAtStart();
  void PostMenu();
  void Announce();
  void Withdraw();
  void AutoSave();
  void DeleteMenu();
  void DeleteData();
  void SaveLocalization();

  void LoadSettings(bool ask);
  void RecreateFromFile();
  void CloseExpertWindows();
  void ReopenExpertWindows();
  void TakeLanguage(const std::string& fileName);

  void WndProc(TMessage& message);
  void CreateExpertMenu();
  void MenuIsBuilt();
  void TellNotices();
  void SwitchToEnglish();
  void RestoreLayout();
  void MenuOpened(TObject* sender);
  void CreateSettingSubMenu(TMenuItem* item);

  void EditClick(TObject* sender);
  void LoadDefaultClick(TObject* sender);
  void ShowAbout(TObject* sender);
  void SwitchErrorLog(bool allowed);
  void SetMaxLogSize(std::uint32_t kilobytes);

  // Ends with the manager: who lets messages run asks afterwards whether it is still there.
  std::shared_ptr<int> FLife = std::make_shared<int>();
  int FReferences = 0;
  int FHolds = 0;
  bool FRecreationWaits = false;
  std::vector<std::string> FNotices;  // what the user is told when there is a menu
  // By the names of their experts, what is to be open again.
  std::vector<std::pair<std::string, std::unique_ptr<TObject>>> FWindowsToReopen;
  TLanguageSettings FLanguages;
  std::unique_ptr<TExpManagerData> FData;
  std::unique_ptr<TExpertEditor> FEditor;
  std::unique_ptr<TMessageWindow> FWindow;
  TExpObjectList FExperts;
  TExpertsMenu FMenu;
  TKeyboardLayout FSavedLayout = 0;
  TExceptionEvent FSavedHandler;
};

}  // namespace wrenfold
