// The life of the expert manager: start, settings, recreation, end.
#include "manager/rkExpMng.h"

#include <filesystem>

#include "controls/rkIcons.h"
#include "controls/rkInfoForm.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "manager/rkErrorLog.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "spec/rkSpcMng.h"
#include "storage/rkObjectSaver.h"

namespace wrenfold {

namespace {

// Private messages of the manager's hidden window.
constexpr std::uint32_t MsgApplySettings = 0xC001;
constexpr std::uint32_t MsgRestoreLayout = 0xC002;
constexpr std::uint32_t MsgCreateMenu = 0xC003;

constexpr const char* LibraryVersion = "1.0";
constexpr const char* SettingsObjectName = "ExpertData";

// What exists once for the loaded package.
struct TUnit {
  std::unique_ptr<TExpData> Root;
  std::string Directory;
  std::string SettingsFile;
  TExpManager* Manager = nullptr;
  TPrivateExecProc PrivateExec;
  TSaveSpcProc SaveBefore = nullptr;
  void (*ManagerGone)() = nullptr;
};

TUnit& Unit() {
  static TUnit unit;
  return unit;
}

void SaveSettingsObject(TSpcObject& root, const std::string& fileName,
                        TObjectStorageFormat format) {
  TObjectSaver saver;
  if (format == osfBin) saver.OriginalFormat = sofBinary;
  if (format == osfText) saver.OriginalFormat = sofText;
  TPersistent* const objects[] = {&root};
  saver.SaveObjects(objects, {SettingsObjectName}, fileName);
}

// Reads like its base, and remembers whether the user had something left out.
class TSettingsReader : public TFitReader {
 public:
  TSettingsReader(TStream& stream, int bufferSize, bool& leftOut)
      : TFitReader(stream, bufferSize), FLeftOut(leftOut) {}

 protected:
  bool Error(const std::string& message) override { return FLeftOut = TFitReader::Error(message); }

 private:
  bool& FLeftOut;
};

class TSettingsSaver : public TObjectSaver {
 public:
  bool LeftOut = false;

 protected:
  void DoBeforeCreateReader(TStream& stream, std::unique_ptr<TFitReader>& reader) override {
    TObjectSaver::DoBeforeCreateReader(stream, reader);
    if (!reader) reader = std::make_unique<TSettingsReader>(stream, BufferSize, LeftOut);
  }
};

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
  unit.SettingsFile = "ExpData.spc";
  if (!unit.Root) unit.Root = std::make_unique<TExpData>();
  ErrorLog().FileName = unit.Directory + "ExpError.log";
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
  return Unit().Directory + Unit().SettingsFile;
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
  root.CustomData->Add(data, name)->Caption = caption.empty() ? name : caption;
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

void TExpManager::Start() {
  TTrail& trail = ErrorLog().Constructor;
  trail = {"0", {}};
  ErrorLog().Destructor.Clear();
  ProcessLocalization();
  trail.Steps += " 1";
  CreateData();
  trail.Steps += " 3";
  FWindow = std::make_unique<TMessageWindow>(TWndMethod::Bind<&TExpManager::WndProc>(this));
  trail.Steps += " 4";
  Bind<&TExpManager::PrivateExpertExecProc>(FMenu.OnExecute, this);
  Bind<&TExpManager::MenuOpened>(FMenu.OnOpened, this);
  trail.Steps += " 5";
  // The settings editor is made here once there is one.
  trail.Steps += " 6";
  FillPresentList();
  trail.Steps += " 7";
  AddOwnData();
  trail.Steps += " 8 9";
  CreateExpObjects();
  trail.Steps += " 10 11";
  InitExperts();
  trail.Steps += " 12";
  // The editor takes its labels and its window settings in these two steps.
  trail.Steps += " 13";
  trail.Steps += " 14";
  LoadAtStart();
  trail.Steps += " 15";
  FWindow->PostMessage(MsgCreateMenu);
  trail.Steps += " 17";
  const TForm* mainForm = Application().MainForm();
  SetApplicationWindow({mainForm != nullptr ? mainForm->winId() : 0, Application().Title()});
  Unit().Manager = this;
  Bind<&TExpManager::PrivateExpertExecProc>(Unit().PrivateExec, this);
  trail.Steps += " 18";
}

TExpManager::~TExpManager() {
  _AddRef();
  TTrail& trail = ErrorLog().Destructor;
  trail = {"0", {}};
  trail.Steps += " 1";
  Unit().Manager = nullptr;
  Unit().PrivateExec = {};
  FWindow.reset();
  trail.Steps += " 3";
  if (FData && FData->AutoSaveSettings) SaveSettings();
  trail.Steps += " 4";
  FMenu.DeleteExpertMenu();
  trail.Steps += " 5";
  DeleteExpObjects();
  trail.Steps += " 6";
  FExperts.Clear();
  trail.Steps += " 8";
  FData.reset();
  trail.Steps += " 9";
  // The settings editor ends here once there is one.
  trail.Steps += " 10";
  FLanguages.Write();
  trail.Steps += " 11";
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
}

// An expert that fails on its way must not stay among the stored settings.
std::unique_ptr<TPersistent> TExpManager::MakeExpert(const TTypeInfo& expClass) {
  TCustomData& stored = *SettingsRoot()->CustomData;
  const int before = stored.Count();
  try {
    return expClass.Make();
  } catch (...) {
    while (stored.Count() > before) stored.Delete(stored.Count() - 1);
    throw;
  }
}

void TExpManager::CreateExpObjects() {
  ErrorLog().Constructor.Experts.clear();
  FExperts.Clear();
  for (const TExpertClass& slot : ExpertRegistry()) {
    if (slot.Class == nullptr) continue;
    const TExpertInfo* info = SettingsRoot()->ActiveExperts->Find(slot.Name);
    if (info == nullptr || !info->Active) continue;
    std::unique_ptr<TPersistent> object = MakeExpert(*slot.Class);
    auto* expert = dynamic_cast<TCustomExpert*>(object.get());
    if (expert == nullptr) throw EExpMngError(slot.Class->Name() + " is no class of experts");
    object.release();
    RegisterExpObject(expert, slot.Name);
    ErrorLog().Constructor.AddExpert(slot.Name);
  }
}

void TExpManager::RegisterExpObject(TCustomExpert* expert, const std::string& name) {
  if (FExperts.IndexOf(expert) < 0) FExperts.Add(expert, name);
}

void TExpManager::InitExperts() {
  TExpMenuData& records = *SettingsRoot()->MenuData;
  const TGetMenuItemData demand = [&records](const std::string& itemId) -> TExpMenuItemData& {
    return records.Demand(itemId);
  };
  for (int i = 0; i < FExperts.Count(); ++i)
    if (const auto expert = Supports<ICustomExpert>(FExperts.Get(i).Expert)) expert->Init(demand);
  Init(demand);
  for (int i = 0; i < records.Count(); ++i) records.Item(i)->TakeCaptionAsOwn();
}

void TExpManager::LoadNotify(bool loaded) {
  for (int i = 0; i < FExperts.Count(); ++i)
    if (const auto expert = Supports<ICustomExpert>(FExperts.Get(i).Expert)) expert->Load(loaded);
}

// A file that could not be read, or not all of it, is worth more than what is saved over it: it is
// marked here and kept when the settings are written.
bool TExpManager::LoadSettings(bool askOnErrors) {
  TSettingsSaver saver;
  saver.RecognitionOn = true;
  saver.IgnoreErrors = !askOnErrors;
  TPersistent* const objects[] = {SettingsRoot()};
  FUnreadSettings = true;
  const bool loaded = saver.SafeLoadObjects(objects, SettingsFileName());
  FUnreadSettings = saver.LeftOut;
  return loaded;
}

void TExpManager::LoadAtStart() {
  try {
    LoadNotify(LoadSettings(true));
    FData->ExpertVersion = LibraryVersion;
  } catch (...) {
    CheckAddErrorLog(this);
    Application().HandleException(this);
    LoadNotify(false);
  }
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
  FillPresentList();
  AddOwnData();
  try {
    LoadSettings(false);
  } catch (const std::exception&) {
    // Who wants to know reads the file again.
  }
  CreateExpObjects();
  InitExperts();
}

void TExpManager::DoRecreateExperts() {
  const TWaitCursor wait;
  RecreateExperts();
  LoadAtStart();
  DoApplySettings();
}

void TExpManager::LoadDefaultSettings() {
  if (MsgQuestion(LocaleStr(sLoadDefaultQuestion)) != mbYes) return;
  const TWaitCursor wait;
  if (FileExists(SettingsFileName()) && !DeleteFile(SettingsFileName()))
    MsgWarning(LocaleFormat(sSettingsNotWritable, SettingsFileName()), {mbOK});
  RecreateExperts();
  LoadNotify(false);
  DoApplySettings();
}

void TExpManager::SaveSettings() {
  try {
    WriteSettings();
  } catch (const std::exception& error) {
    ErrorLog().Add(this, std::current_exception());
    if (std::exchange(FSaveFailureTold, true)) return;
    MsgWarning(LocaleFormat(sSettingsNotWritable, std::string(error.what())), {mbOK});
  }
}

void TExpManager::WriteSettings() {
  const std::string kept = FUnreadSettings ? KeepUnreadSettings() : std::string();
  try {
    SaveSettingsObject(*SettingsRoot(), SettingsFileName(), osfBin);
  } catch (...) {
    if (!kept.empty()) DeleteFile(kept);
    throw;
  }
  FUnreadSettings = false;
}

// Gives the old contents a second name, "ExpData.spc.bad", or with a number when that is taken.
// Answers the name, empty when there is nothing to keep.
std::string TExpManager::KeepUnreadSettings() {
  if (!FileExists(SettingsFileName())) return {};
  std::string kept = SettingsFileName() + ".bad";
  for (int number = 2; FileExists(kept); ++number)
    kept = SettingsFileName() + ".bad" + std::to_string(number);
  std::error_code error;
  std::filesystem::create_hard_link(SettingsFileName(), kept, error);
  if (error) SafeWriteFile(kept, ReadWholeFile(SettingsFileName()));
  return kept;
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
      FWindow->PostMessage(MsgRestoreLayout);
      return;
    default:
      TMessageWindow::DefaultHandler(message);
  }
}

void TExpManager::ApplySettings() {
  SwitchToEnglish();
  FMenu.DeleteExpertMenu();
  Application().ProcessMessages();
  CreateExpertMenu();
  Application().ProcessMessages();
  FWindow->PostMessage(MsgRestoreLayout);
}

void TExpManager::DoApplySettings() {
  FWindow->PostMessage(MsgApplySettings);
}

void TExpManager::CreateExpertMenu() {
  FMenu.DeleteExpertMenu();
  FMenu.AddTopMMenuItem(*FData);
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
  TExpMenuItemData& settings = getMenuItemData("SettingItem");
  settings.Caption = LocaleStr(sSettings);
  settings.HaveLineBefore = true;
  TExpMenuItemData& about = getMenuItemData("AboutFormItem");
  about.Caption = LocaleStr(sAbout);
  about.ImageIndex = siAbout;
  Bind<&TExpManager::ShowAbout>(about.OnExecute, this);
}

void TExpManager::MenuNotification(TMenuItem* menuItem, TExpMenuItemData* menuItemData) {
  if (menuItemData->ItemID == "SettingItem") CreateSettingSubMenu(menuItem);
}

void TExpManager::CreateSettingSubMenu(TMenuItem* item) {
  TExpActionList& actions = FMenu.SettingActions();
  TActionList* actionList = EnvironmentActions();
  FMenu.ClearItems(item, actions);
  const auto add = [&](int captionId, TNotifyEvent handler) {
    return FMenu.CreateNewItem(LocaleStr(captionId), handler, item, actions, actionList);
  };
  add(sEditSettings, {})->Action()->SetEnabled(false);  // until there is a settings editor
  add(sLoadDefault, TNotifyEvent::Bind<&TExpManager::LoadDefaultClick>(this));
  FMenu.CreateLine(item);
  CreateLangSubMenu(FMenu, add(sLanguage, {}), FLanguages, PackageDirectory(),
                    {TNotifyEvent::Bind<&TExpManager::SelectDefaultLanguage>(this),
                     TNotifyEvent::Bind<&TExpManager::SelectLanguage>(this),
                     {}});
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

// The experts are made anew from the settings file: what the user changed since it was read must
// be in it.
void TExpManager::TakeLanguage(const std::string& fileName) {
  if (FData->AutoSaveSettings) SaveSettings();
  FLanguages.Current = fileName;
  LoadNewLanguage(fileName);
  FLanguages.Write();
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
  if (FSavedHandler) FSavedHandler(sender, error);
  else Application().ShowException(error);
}

void TExpManager::CheckAddErrorLog(TObject* sender) {
  if (HandlingOrdinaryException()) return;
  ReleaseCapture();
  ErrorLog().Add(sender, std::current_exception());
}

}  // namespace wrenfold
