// The life of the expert manager: start, settings, recreation, end.
#include "manager/rkExpMng.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "controls/rkIcons.h"
#include "controls/rkInfoForm.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "manager/rkErrorLog.h"
#include "manager/rkLocaleSet.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "spec/rkSpcMng.h"

namespace wrenfold {

namespace {

// Private messages of the manager's hidden window.
constexpr std::uint32_t MsgApplySettings = 0xC001;
constexpr std::uint32_t MsgRestoreLayout = 0xC002;
constexpr std::uint32_t MsgCreateMenu = 0xC003;
constexpr std::uint32_t MsgTellNotices = 0xC004;

constexpr const char* LibraryVersion = "1.0";
constexpr const char* SettingItemID = "SettingItem";

// What exists once for the loaded package.
struct TUnit {
  std::unique_ptr<TExpData> Root;
  std::string Directory;
  TSettingsFile File;
  std::string Adding;  // the expert that is being made or initialised
  TExpManager* Manager = nullptr;
  TPrivateExecProc PrivateExec;
  TSaveSpcProc SaveBefore = nullptr;
  void (*ManagerGone)() = nullptr;
};

TUnit& Unit() {
  static TUnit unit;
  return unit;
}

bool CanWriteIn(const std::string& directory) {
  const std::string probe = directory + ".wrenfold-" + std::to_string(::getpid());
  int handle = -1;
  if (FileSystem().CreateNew(probe, 0600, handle) != 0) return false;
  FileSystem().Close(handle);
  FileSystem().Remove(probe);
  return true;
}

// Where settings and log stand: beside the package, or with the user where nobody may write there.
std::string DataDirectory(const std::string& packageDirectory) {
  if (CanWriteIn(packageDirectory)) return packageDirectory;
  const char* data = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  std::string directory = data != nullptr && *data == '/'
                              ? data
                              : std::string(home != nullptr ? home : "") + "/.local/share";
  directory += "/wrenfold/";
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  return error ? packageDirectory : directory;
}

// Names the expert that what is added meanwhile comes from.
class TAdding {
 public:
  explicit TAdding(const std::string& expertName) { Unit().Adding = expertName; }
  ~TAdding() { Unit().Adding.clear(); }
  TAdding(const TAdding&) = delete;
  TAdding& operator=(const TAdding&) = delete;
};

// The handlers of the menu records that are there, to be put back.
class TSavedHandlers {
 public:
  explicit TSavedHandlers(const TExpMenuData& records) {
    for (int i = 0; i < records.Count(); ++i) {
      TExpMenuItemData* record = records.Item(i);
      FSaved.push_back({record, record->OnExecute, record->OnUpdate});
    }
  }
  void Restore() const {
    for (const TSaved& saved : FSaved) {
      saved.Record->OnExecute = saved.OnExecute;
      saved.Record->OnUpdate = saved.OnUpdate;
    }
  }

 private:
  struct TSaved {
    TExpMenuItemData* Record;
    TNotifyEvent OnExecute, OnUpdate;
  };
  std::vector<TSaved> FSaved;
};

template <class Collection>
void DeleteItemsOf(Collection& items, const std::string& expertName) {
  for (int i = items.Count() - 1; i >= 0; --i)
    if (items.Item(i)->ExpertName == expertName) items.Delete(i);
}

// The exception that a catch block is handling, as one of the class of all ordinary ones.
bool HandlingOrdinaryException() {
  try {
    throw;
  } catch (const std::exception&) {
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace

void InitExpManager(std::string packageDirectory) {
  TUnit& unit = Unit();
  if (packageDirectory.empty())
    packageDirectory =
        ExtractFilePath(ModuleFileName(reinterpret_cast<const void*>(&InitExpManager)));
  unit.Directory = std::move(packageDirectory);
  const std::string data = DataDirectory(unit.Directory);
  unit.File = TSettingsFile(data + "ExpData.spc",
                            data == unit.Directory ? "" : unit.Directory + "ExpData.spc");
  if (!unit.Root) unit.Root = std::make_unique<TExpData>();
  ErrorLog().FileName = data + "ExpError.log";
  if (unit.SaveBefore == nullptr) unit.SaveBefore = std::exchange(SaveSpcProc, &SaveSettingsObject);
}

void DoneExpManager() {
  if (Unit().SaveBefore != nullptr) SaveSpcProc = Unit().SaveBefore;
  Unit() = {};
  ErrorLog() = {};
  ClearExpertRegistry();
}

void SetManagerGoneProc(void (*procedure)()) {
  Unit().ManagerGone = procedure;
}

const std::string& PackageDirectory() {
  return Unit().Directory;
}

std::string SettingsFileName() {
  return Unit().File.FileName();
}

TSettingsFile& SettingsFile() {
  return Unit().File;
}

TExpData* SettingsRoot() {
  return Unit().Root.get();
}

TExpManager* CurrentManager() {
  return Unit().Manager;
}

const TPrivateExecProc& PrivateExpertExec() {
  return Unit().PrivateExec;
}

void AddStoredData(TPersistent* data, const std::string& name, const std::string& caption,
                   const std::string& propNames) {
  TExpData& root = *SettingsRoot();
  TCustomDataItem* item = root.CustomData->Add(data, name);
  item->Caption = caption.empty() ? name : caption;
  item->ExpertName = Unit().Adding;
  if (propNames.empty()) return;
  if (!root.PropNames.empty()) root.PropNames += "\r\n";
  root.PropNames += propNames;
}

void RegisterExpManager() {
  const TIntf<IOTAWizard> wizard(new TExpManager);
  RegisterPackageWizard(wizard.get());
}

const TTypeInfo& TExpManager::ClassInfo() {
  static const TTypeInfo info = Publish<TExpManager>("TExpManager", TCustomExpert::ClassInfo());
  return info;
}

// While the constructor and the destructor run, passing references must not end the object: the
// constructor's own reference keeps it.
TExpManager::TExpManager() {
  const int held = _AddRef();
  try {
    Start();
  } catch (...) {
    CheckAddErrorLog(this);
    Application().HandleException(this);
  }
  FReferences -= held;
}

// Without a step, a marker alone: what it stood for is done elsewhere.
void TExpManager::Start() {
  static constexpr TStep steps[] = {
      {&TExpManager::ProcessLocalization, " 1"}, {&TExpManager::CreateData, " 3"},
      {&TExpManager::CreateWindow, " 4"},        {&TExpManager::ConnectMenu, " 5"},
      {&TExpManager::CreateEditor, " 6"},        {&TExpManager::FillPresentList, " 7"},
      {&TExpManager::AddOwnData, " 8 9"},        {&TExpManager::CreateExpObjects, " 10 11"},
      {&TExpManager::InitExperts, " 12"},        {&TExpManager::LocalizeEditor, " 13"},
      {&TExpManager::PrepareEditor, " 14"},      {&TExpManager::LoadAtStart, " 15"},
      {&TExpManager::PostMenu, " 17"},           {&TExpManager::Announce, " 18"},
  };
  TTrail& trail = ErrorLog().Constructor;
  trail = {.Steps = "0", .Experts = {}};
  ErrorLog().Destructor.Clear();
  SettingsFile().Forget();
  for (const TStep& step : steps) {
    if (step.Run != nullptr) (this->*step.Run)();
    trail.Steps += step.Markers;
  }
}

// A step that fails must not keep the suite in the environment.
TExpManager::~TExpManager() {
  static constexpr TStep steps[] = {
      {nullptr, " 1"},
      {&TExpManager::Withdraw, " 3"},
      {&TExpManager::AutoSave, " 4"},
      {&TExpManager::DeleteMenu, " 5"},
      {&TExpManager::DeleteExpObjects, " 6"},
      {nullptr, " 8"},
      {&TExpManager::DeleteData, " 9"},
      {&TExpManager::DeleteEditor, " 10"},
      {&TExpManager::SaveLocalization, " 11"},
  };
  _AddRef();
  TTrail& trail = ErrorLog().Destructor;
  trail = {.Steps = "0", .Experts = {}};
  for (const TStep& step : steps) {
    try {
      if (step.Run != nullptr) (this->*step.Run)();
    } catch (...) {
      ErrorLog().Add(this, std::current_exception());
    }
    trail.Steps += step.Markers;
  }
}

void TExpManager::CreateWindow() {
  FWindow = std::make_unique<TMessageWindow>(TWndMethod::Bind<&TExpManager::WndProc>(this));
}

void TExpManager::ConnectMenu() {
  Bind<&TExpManager::PrivateExpertExecProc>(FMenu.OnExecute, this);
  Bind<&TExpManager::MenuOpened>(FMenu.OnOpened, this);
}

void TExpManager::PostMenu() {
  NoteLanguageError();
  FWindow->PostMessage(MsgCreateMenu);
}

void TExpManager::Announce() {
  const TForm* mainForm = Application().MainForm();
  SetApplicationWindow({mainForm != nullptr ? mainForm->winId() : 0, Application().Title()});
  Unit().Manager = this;
  Bind<&TExpManager::PrivateExpertExecProc>(Unit().PrivateExec, this);
}

void TExpManager::Withdraw() {
  Unit().Manager = nullptr;
  Unit().PrivateExec = {};
  RestoreLayout();
  FWindow.reset();
}

void TExpManager::AutoSave() {
  if (FData && FData->AutoSaveSettings) SaveSettings();
}

void TExpManager::DeleteMenu() {
  FMenu.DeleteExpertMenu();
}

void TExpManager::DeleteData() {
  FData.reset();
}

void TExpManager::SaveLocalization() {
  FLanguages.Write();
}

HResult TExpManager::QueryInterface(const TGuid& iid, void** result) {
  return QueryAmong<IOTAWizard, IOTANotifier, ICustomExpert>(this, iid, result);
}

int TExpManager::_Release() {
  const int left = --FReferences;
  if (left > 0) return left;
  delete this;
  if (Unit().ManagerGone != nullptr) Unit().ManagerGone();
  return 0;
}

void TExpManager::ProcessLocalization() {
  FLanguages = {};
  FLanguages.Read();
  if (FLanguages.Current.empty()) return LoadNewLanguage({});
  if (FileExists(FLanguages.Current)) return LoadNewLanguage(FLanguages.Current);
  FLanguages.Current.clear();
  LoadNewLanguage({});
}

// A module that cannot be read counts as loaded: without a word its user would wonder.
void TExpManager::NoteLanguageError() {
  if (Locale().LoadError().empty()) return;
  const std::string text = LocaleFormat(sLanguageUnreadable, Locale().LoadError());
  ErrorLog().Add(this, std::make_exception_ptr(EExpMngError(text)));
  FNotices.push_back(text);
}

void TExpManager::CreateData() {
  FData.reset();
  TExpManagerHooks hooks;
  Bind<&TExpManager::SwitchErrorLog>(hooks.ErrorLogAllowed, this);
  Bind<&TExpManager::SetMaxLogSize>(hooks.MaxLogSize, this);
  FData = std::make_unique<TExpManagerData>(hooks);
}

void TExpManager::AddOwnData() {
  AddStoredData(FData.get(), "ExpManagerData", LocaleStr(sExpertsManager),
                MakePropNames(TExpManagerData::ClassInfo()));
}

void TExpManager::FillPresentList() {
  TActiveExperts& experts = *SettingsRoot()->ActiveExperts;
  experts.Clear();
  for (const TExpertClass& slot : ExpertRegistry()) {
    if (slot.Class == nullptr) continue;
    TExpertInfo* info = experts.Add(slot.Name);
    info->Active = true;
    info->DisplayText = slot.DescriptionId == -1 ? slot.Name : LocaleStr(slot.DescriptionId);
  }
  SettingsFile().ReadActive(experts);
}

void TExpManager::CreateExpObjects() {
  ErrorLog().Constructor.Experts.clear();
  FExperts.Clear();
  for (const TExpertClass& slot : ExpertRegistry()) {
    if (slot.Class == nullptr) continue;
    const TExpertInfo* info = SettingsRoot()->ActiveExperts->Find(slot.Name);
    if (info == nullptr || !info->Active) continue;
    try {
      CreateExpert(slot);
    } catch (...) {
      GiveUpExpert(slot.Name);
      TakeBackRecords(slot.Name);
    }
  }
}

void TExpManager::CreateExpert(const TExpertClass& slot) {
  const TAdding adding(slot.Name);
  std::unique_ptr<TPersistent> object = slot.Class->Make();
  auto* expert = dynamic_cast<TCustomExpert*>(object.get());
  if (expert == nullptr) throw EExpMngError(slot.Class->Name() + " is no class of experts");
  RegisterExpObject(expert, slot.Name);
  object.release();
  ErrorLog().Constructor.AddExpert(slot.Name);
}

// For catch blocks. The suite goes on without the expert: the log has the failure at once, the user
// is told when there is a menu.
void TExpManager::GiveUpExpert(const std::string& name) {
  const std::exception_ptr error = std::current_exception();
  ErrorLog().Add(this, error);
  FNotices.push_back(LocaleFormat(sExpertFailed, name, ExceptionMessage(error)));
}

void TExpManager::TakeBackRecords(const std::string& expertName) {
  DeleteItemsOf(*SettingsRoot()->CustomData, expertName);
  DeleteItemsOf(*SettingsRoot()->MenuData, expertName);
}

void TExpManager::RegisterExpObject(TCustomExpert* expert, const std::string& name) {
  if (FExperts.IndexOf(expert) < 0) FExperts.Add(expert, name);
}

void TExpManager::InitExperts() {
  TExpMenuData& records = *SettingsRoot()->MenuData;
  const TGetMenuItemData demand = [&records](const std::string& itemId) -> TExpMenuItemData& {
    const int before = records.Count();
    TExpMenuItemData& record = records.Demand(itemId);
    if (records.Count() > before) record.ExpertName = Unit().Adding;
    return record;
  };
  for (int i = 0; i < FExperts.Count();) i += InitExpert(FExperts.Get(i), demand) ? 1 : 0;
  Init(demand);
  for (int i = 0; i < records.Count(); ++i) records.Item(i)->TakeCaptionAsOwn();
}

// An expert that fails is destroyed and leaves the list: answers false.
bool TExpManager::InitExpert(TExpObjectList::TEntry entry, const TGetMenuItemData& demand) {
  const TAdding adding(entry.Name);
  const TSavedHandlers handlers(*SettingsRoot()->MenuData);
  try {
    if (const auto expert = Supports<ICustomExpert>(entry.Expert)) expert->Init(demand);
    return true;
  } catch (...) {
    GiveUpExpert(entry.Name);
  }
  handlers.Restore();
  FExperts.Delete(FExperts.IndexOf(entry.Expert));
  delete entry.Expert;
  TakeBackRecords(entry.Name);
  return false;
}

void TExpManager::LoadNotify(bool loaded) {
  for (int i = 0; i < FExperts.Count(); ++i) {
    const TExpObjectList::TEntry entry = FExperts.Get(i);
    try {
      if (const auto expert = Supports<ICustomExpert>(entry.Expert)) expert->Load(loaded);
    } catch (...) {
      GiveUpExpert(entry.Name);
    }
  }
}

// At the start nobody can be asked yet: what cannot be read is told when there is a menu.
void TExpManager::LoadAtStart() {
  LoadSettings(false);
}

void TExpManager::LoadSettings(bool ask) {
  bool loaded = false;
  try {
    loaded = SettingsFile().Load(*SettingsRoot(), ask);
  } catch (...) {
    ErrorLog().Add(this, std::current_exception());
  }
  LoadNotify(loaded);
  FData->ExpertVersion = LibraryVersion;
  std::string problem = SettingsFile().TakeProblem();
  if (!problem.empty()) FNotices.push_back(std::move(problem));
}

void TExpManager::DeleteExpObjects() {
  TTrail& trail = ErrorLog().Destructor;
  trail.Experts.clear();
  FMenu.ForgetHandlers();
  for (int i = FExperts.Count() - 1; i >= 0; --i) {
    const TExpObjectList::TEntry entry = FExperts.Get(i);
    if (entry.Expert == this) continue;
    delete entry.Expert;
    trail.AddExpert(entry.Name);
  }
  FExperts.Clear();
  if (TExpData* root = SettingsRoot()) {
    root->CustomData->Clear();
    root->MenuData->Clear();
  }
}

void TExpManager::RecreateExperts() {
  CreateData();
  DeleteExpObjects();
  Unit().Root = std::make_unique<TExpData>();
  SettingsFile().Forget();
  FillPresentList();
  AddOwnData();
  try {
    SettingsFile().Load(*SettingsRoot(), false);
  } catch (const std::exception&) {
    // Who wants to know reads the file again.
  }
  LocalizeEditor();
  CreateExpObjects();
  InitExperts();
  LocalizeEditor();
}

void TExpManager::DoRecreateExperts() {
  if (FHolds > 0) {
    FRecreationWaits = true;
    return;
  }
  const std::string editorSetting = FData->EditorFormData->Setting->Text();
  RecreateFromFile();
  FData->EditorFormData->Setting->SetText(editorSetting);
}

void TExpManager::RecreateFromFile() {
  const TWaitCursor wait;
  CloseExpertWindows();
  RecreateExperts();
  LoadSettings(true);
  DoApplySettings();
}

// Also before settings are saved: a window may keep its place in them when it closes.
void TExpManager::CloseExpertWindows() {
  for (int i = 0; i < FExperts.Count(); ++i) {
    const TExpObjectList::TEntry entry = FExperts.Get(i);
    if (std::unique_ptr<TObject> windows = entry.Expert->CloseWindows())
      FWindowsToReopen.emplace_back(entry.Name, std::move(windows));
  }
}

void TExpManager::ReopenExpertWindows() {
  const std::weak_ptr<int> life = FLife;
  for (const auto& [name, windows] : std::exchange(FWindowsToReopen, {})) {
    const int index = life.expired() ? -1 : FExperts.IndexOf(name);
    if (index >= 0) FExperts.Get(index).Expert->ReopenWindows(*windows);
  }
}

TExpManager::TRecreationHold::TRecreationHold(TExpManager& manager)
    : FManager(manager), FLife(manager.FLife) {
  ++FManager.FHolds;
}

TExpManager::TRecreationHold::~TRecreationHold() {
  if (FLife.expired() || --FManager.FHolds > 0) return;
  if (!std::exchange(FManager.FRecreationWaits, false)) return;
  Guarded(&FManager, [this] { FManager.DoRecreateExperts(); });
}

void TExpManager::LoadDefaultSettings() {
  const std::weak_ptr<int> life = FLife;
  if (MsgQuestion(LocaleStr(sLoadDefaultQuestion)) != mbYes || life.expired()) return;
  if (!SettingsFile().Drop())
    MsgWarning(LocaleFormat(sSettingsNotWritable, SettingsFileName()), {mbOK});
  if (life.expired()) return;
  const TWaitCursor wait;
  RecreateExperts();
  LoadNotify(false);
  DoApplySettings();
}

void TExpManager::ExportSettings(const std::string& fileName, TObjectStorageFormat format) {
  SettingsFile().Export(*SettingsRoot(), fileName, format);
}

bool TExpManager::ImportSettings(const std::string& fileName) {
  TSettingsFile::CheckImport(fileName);
  const std::weak_ptr<int> life = FLife;
  if (MsgQuestion(LocaleFormat(sImportQuestion, fileName)) != mbYes || life.expired()) return false;
  SettingsFile().Import(fileName);
  RecreateFromFile();
  return true;
}

void TExpManager::SaveSettings() {
  SettingsFile().SaveOrTell(*SettingsRoot());
}

void TExpManager::WndProc(TMessage& message) {
  switch (message.Msg) {
    case MsgApplySettings:
      return ApplySettings();
    case MsgRestoreLayout:
      return RestoreLayout();
    case MsgCreateMenu:
      SwitchToEnglish();
      CreateExpertMenu();
      return MenuIsBuilt();
    case MsgTellNotices:
      return TellNotices();
    default:
      TMessageWindow::DefaultHandler(message);
  }
}

// The environment may let go of the manager while its messages run.
void TExpManager::ApplySettings() {
  const std::weak_ptr<int> life = FLife;
  SwitchToEnglish();
  FMenu.DeleteExpertMenu();
  Application().ProcessMessages();
  if (life.expired()) return;
  CreateExpertMenu();
  Application().ProcessMessages();
  if (!life.expired()) MenuIsBuilt();
}

void TExpManager::MenuIsBuilt() {
  FWindow->PostMessage(MsgRestoreLayout);
  if (!FNotices.empty()) FWindow->PostMessage(MsgTellNotices);
  ReopenExpertWindows();
}

void TExpManager::TellNotices() {
  const std::vector<std::string> notices = std::exchange(FNotices, {});
  for (const std::string& notice : notices) MsgWarning(notice, {mbOK});
}

void TExpManager::DoApplySettings() {
  FWindow->PostMessage(MsgApplySettings);
}

void TExpManager::CreateExpertMenu() {
  FMenu.DeleteExpertMenu();
  FMenu.AddTopMMenuItem(*FData);
  // The file may say otherwise.
  if (TExpMenuItemData* settings = SettingsRoot()->MenuData->Find(SettingItemID))
    settings->HaveLineBefore = true;
  FMenu.AddMMenuItems(*SettingsRoot()->MenuData, [this](TMenuItem* item, TExpMenuItemData* record) {
    for (int i = 0; i < FExperts.Count(); ++i)
      if (const auto expert = Supports<ICustomExpert>(FExperts.Get(i).Expert))
        expert->MenuNotification(item, record);
    MenuNotification(item, record);
  });
}

// Texts of hot keys are parsed while a known layout is active. A second switch before the first one
// was undone must not take the known layout for the user's.
void TExpManager::SwitchToEnglish() {
  if (FSavedLayout == 0) FSavedLayout = GetKeyboardLayout();
  ActivateKeyboardLayout(LayoutEnglishUS);
}

void TExpManager::RestoreLayout() {
  if (FSavedLayout != 0) ActivateKeyboardLayout(std::exchange(FSavedLayout, 0));
}

void TExpManager::MenuOpened(TObject*) {
  if (FWindow) FWindow->PostMessage(MsgRestoreLayout);
}

void TExpManager::Init(const TGetMenuItemData& getMenuItemData) {
  TExpMenuItemData& settings = getMenuItemData(SettingItemID);
  settings.Caption = LocaleStr(sSettings);
  settings.HaveLineBefore = true;
  TExpMenuItemData& about = getMenuItemData("AboutFormItem");
  about.Caption = LocaleStr(sAbout);
  about.ImageIndex = siAbout;
  Bind<&TExpManager::ShowAbout>(about.OnExecute, this);
}

void TExpManager::MenuNotification(TMenuItem* menuItem, TExpMenuItemData* menuItemData) {
  if (menuItemData->ItemID == SettingItemID) CreateSettingSubMenu(menuItem);
}

void TExpManager::CreateSettingSubMenu(TMenuItem* item) {
  TExpActionList& actions = FMenu.SettingActions();
  TActionList* actionList = EnvironmentActions();
  FMenu.ClearItems(item, actions);
  const auto add = [&](int captionId, TNotifyEvent handler) {
    return FMenu.CreateNewItem(LocaleStr(captionId), handler, item, actions, actionList);
  };
  add(sEditSettings, TNotifyEvent::Bind<&TExpManager::EditClick>(this));
  add(sLoadDefault, TNotifyEvent::Bind<&TExpManager::LoadDefaultClick>(this));
  FMenu.CreateLine(item);
  CreateLangSubMenu(FMenu, add(sLanguage, {}), FLanguages, PackageDirectory(),
                    {TNotifyEvent::Bind<&TExpManager::SelectDefaultLanguage>(this),
                     TNotifyEvent::Bind<&TExpManager::SelectLanguage>(this),
                     TNotifyEvent::Bind<&TExpManager::EditLangModules>(this)});
}

void TExpManager::CreateEditor() {
  FEditor = std::make_unique<TExpertEditor>(*this);
}

void TExpManager::LocalizeEditor() {
  if (FEditor != nullptr) FEditor->LocalizeEditor();
}

// Here the settings are as the experts want them, before the user's are loaded.
void TExpManager::PrepareEditor() {
  FEditor->PrepareEditor();
  FEditor->TakeDefaults();
}

void TExpManager::DeleteEditor() {
  FEditor.reset();
}

// The environment may end the manager while the editor is open.
void TExpManager::EditSettings() {
  if (FEditor == nullptr) return;
  const std::weak_ptr<int> life = FLife;
  std::string importFile;
  {
    const TRecreationHold hold(*this);
    FEditor->Edit();
    if (life.expired()) return;
    const TForm* mainForm = Application().MainForm();
    SetApplicationWindow({mainForm != nullptr ? mainForm->winId() : 0, Application().Title()});
    importFile = FEditor->ImportFile();
    if (FEditor->Saved()) DoRecreateExperts();
  }
  if (!life.expired() && !importFile.empty()) ImportSettings(importFile);
}

void TExpManager::EditClick(TObject*) {
  EditSettings();
}

void TExpManager::LoadDefaultClick(TObject*) {
  LoadDefaultSettings();
}

void TExpManager::ShowAbout(TObject*) {
  TInfoForm::Execute(LibraryVersion);
}

void TExpManager::SelectLanguage(TObject* sender) {
  const auto* action = dynamic_cast<TAction*>(sender);
  if (action == nullptr || action->Checked()) return;
  const std::string module = ModuleOfCaption(FLanguages, action->Caption());
  const std::string fileName = FLanguages.FullName(module, PackageDirectory());
  if (!module.empty() && FileExists(fileName)) TakeLanguage(fileName);
}

void TExpManager::SelectDefaultLanguage(TObject* sender) {
  const auto* action = dynamic_cast<TAction*>(sender);
  if (action != nullptr && !action->Checked()) TakeLanguage({});
}

// The submenu is rebuilt with the whole menu, later: the command that runs here is one of it.
void TExpManager::EditLangModules(TObject*) {
  const std::weak_ptr<int> life = FLife;
  const std::unique_ptr<TLocaleForm> form(
      NewForm<TLocaleForm>(nullptr, FLanguages, PackageDirectory()));
  form->ShowModal();
  if (life.expired()) return;
  const bool wasListed = FLanguages.ListsCurrent();
  FLanguages = form->Settings();
  FLanguages.Write();
  if (wasListed && !FLanguages.ListsCurrent()) TakeLanguage({});
  else DoApplySettings();
}

// The experts are made anew from the settings file: what the user changed since it was read must
// be in it.
void TExpManager::TakeLanguage(const std::string& fileName) {
  const std::weak_ptr<int> life = FLife;
  if (FHolds == 0) CloseExpertWindows();
  if (FData->AutoSaveSettings) SaveSettings();
  if (life.expired()) return;
  FLanguages.Current = fileName;
  LoadNewLanguage(fileName);
  NoteLanguageError();
  FLanguages.Write();
  LocalizeEditor();
  if (FEditor != nullptr) FEditor->Retranslate();
  DoRecreateExperts();
}

void TExpManager::PrivateExpertExecProc(TObject* sender, const TNotifyEvent& handler) {
  handler(sender);
}

void TExpManager::SwitchErrorLog(bool allowed) {
  ErrorLog().Enabled = allowed;
  TExceptionEvent& handler = Application().OnException;
  if (allowed) {
    FSavedHandler = handler;
    Bind<&TExpManager::AppErrorLogData>(handler, this);
  } else {
    handler = std::exchange(FSavedHandler, {});
  }
}

void TExpManager::SetMaxLogSize(std::uint32_t kilobytes) {
  ErrorLog().MaxSize = kilobytes;
}

void TExpManager::AppErrorLogData(TObject* sender, std::exception_ptr error) {
  ErrorLog().Add(sender, error);
  if (FSavedHandler) return FSavedHandler(sender, error);
  LocaleMessageDlg(ExceptionMessage(error), mtError, {mbOK});
}

void TExpManager::CheckAddErrorLog(TObject* sender) {
  if (HandlingOrdinaryException()) return;
  ReleaseCapture();
  ErrorLog().Add(sender, std::current_exception());
}

}  // namespace wrenfold
