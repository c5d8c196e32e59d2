// Answers packages out of the workbench.
#include "host/shell/ToolsServices.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include "host/shell/Workbench.h"
#include "platform/widgets/Text.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

namespace {

// The environment takes wizards by a plain procedure; there is one environment in a process.
TToolsServices* Services = nullptr;

void TakeWizard(IOTAWizard* wizard) {
  Services->AddWizard(wizard);
}

}  // namespace

TToolsServices::TToolsServices(TWorkbench& workbench) : FWorkbench(workbench) {
  Services = this;
  BorlandIDEServices = static_cast<IOTAServices*>(this);
  SetRegisterWizardProc(TakeWizard);
}

TToolsServices::~TToolsServices() {
  SetRegisterWizardProc(nullptr);
  BorlandIDEServices = nullptr;
  Services = nullptr;
}

HResult TToolsServices::QueryInterface(const TGuid& iid, void** result) {
  return QueryAmong<IOTAServices, IOTAModuleServices, IOTAActionServices, IOTAWizardServices,
                    INTAServices>(this, iid, result);
}

int TToolsServices::AddWizard(IOTAWizard* wizard) {
  FWizards.emplace_back(wizard);
  return static_cast<int>(FWizards.size()) - 1;
}

void TToolsServices::RemoveWizard(int index) {
  if (index < 0 || index >= static_cast<int>(FWizards.size())) return;
  if (const TIntf<IOTAWizard> wizard = std::exchange(FWizards[index], nullptr)) wizard->Destroyed();
}

void TToolsServices::EndWizards() {
  while (!FWizards.empty()) {
    RemoveWizard(static_cast<int>(FWizards.size()) - 1);
    FWizards.pop_back();
  }
  for (std::size_t i = 0; i < FNotifiers.size(); ++i)
    if (const auto notifier = std::exchange(FNotifiers[i], nullptr)) notifier->Destroyed();
  FNotifiers.clear();
  // What they released goes while its code is still there.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int TToolsServices::WizardCount() const {
  int count = 0;
  for (const TIntf<IOTAWizard>& wizard : FWizards) count += wizard ? 1 : 0;
  return count;
}

bool TToolsServices::NotifyFile(TOTAFileNotification code, const std::string& fileName) {
  bool cancel = false;
  for (std::size_t i = 0; i < FNotifiers.size(); ++i)
    if (const TIntf<IOTAIDENotifier> held = FNotifiers[i])
      held->FileNotification(code, fileName, cancel);
  return !cancel;
}

int TToolsServices::AddNotifier(IOTAIDENotifier* notifier) {
  FNotifiers.emplace_back(notifier);
  return static_cast<int>(FNotifiers.size()) - 1;
}

void TToolsServices::RemoveNotifier(int index) {
  if (index >= 0 && index < static_cast<int>(FNotifiers.size())) FNotifiers[index] = nullptr;
}

std::string TToolsServices::GetRootDirectory() {
  const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return FromQString(base + "/Wrenfold");
}

TForm* TToolsServices::GetParentForm() {
  return &FWorkbench;
}

IOTAModule* TToolsServices::CurrentModule() {
  TModule* module = FWorkbench.CurrentModule();
  return module != nullptr ? module->Interface() : nullptr;
}

int TToolsServices::GetModuleCount() {
  return static_cast<int>(FWorkbench.Workspace().Modules().size());
}

IOTAModule* TToolsServices::GetModule(int index) {
  const std::vector<TModule*> modules = FWorkbench.Workspace().Modules();
  const bool valid = index >= 0 && index < static_cast<int>(modules.size());
  return valid ? modules[index]->Interface() : nullptr;
}

IOTAModule* TToolsServices::FindModule(const std::string& fileName) {
  TModule* module = FWorkbench.Workspace().Find(fileName);
  return module != nullptr ? module->Interface() : nullptr;
}

bool TToolsServices::OpenFile(const std::string& fileName) {
  return FWorkbench.OpenFile(fileName);
}

bool TToolsServices::CloseFile(const std::string& fileName) {
  TModule* module = FWorkbench.Workspace().Find(fileName);
  return module != nullptr && FWorkbench.CloseModule(*module, true);
}

bool TToolsServices::ReloadFile(const std::string& fileName) {
  return FWorkbench.ReloadFile(fileName);
}

bool TToolsServices::SaveFile(const std::string& fileName) {
  TModule* module = FWorkbench.Workspace().Find(fileName);
  return module != nullptr && FWorkbench.SaveModule(*module, false, false);
}

TMainMenu* TToolsServices::GetMainMenu() {
  return &FWorkbench.MainMenu();
}

TActionList* TToolsServices::GetActionList() {
  return &FWorkbench.Actions();
}

TImageList* TToolsServices::GetImageList() {
  return &FWorkbench.Images();
}

TToolBar* TToolsServices::GetToolBar(const std::string& name) {
  return dynamic_cast<TToolBar*>(FWorkbench.FindComponent(name));
}

int TToolsServices::AddMasked(const QIcon& image) {
  return FWorkbench.Images().Add(image);
}

}  // namespace wrenfold
