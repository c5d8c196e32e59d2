// Answers packages out of the workbench.
#include "host/shell/ToolsServices.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include "host/documents/Documents.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"
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

TToolsServices::TToolsServices(const TEnvironment& environment) : F(environment) {
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
                    INTAServices, IOTADesignCapabilities>(this, iid, result);
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
  F.Documents.Notifiers().End();
  // What they released goes while its code is still there.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int TToolsServices::WizardCount() const {
  int count = 0;
  for (const TIntf<IOTAWizard>& wizard : FWizards) count += wizard ? 1 : 0;
  return count;
}

int TToolsServices::AddNotifier(IOTAIDENotifier* notifier) {
  return F.Documents.Notifiers().Add(notifier);
}

void TToolsServices::RemoveNotifier(int index) {
  F.Documents.Notifiers().Remove(index);
}

std::string TToolsServices::GetRootDirectory() {
  const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return FromQString(base + "/Wrenfold");
}

TForm* TToolsServices::GetParentForm() {
  return &F.MainForm;
}

IOTAModule* TToolsServices::CurrentModule() {
  TModule* module = F.Documents.CurrentModule();
  return module != nullptr ? module->Interface() : nullptr;
}

int TToolsServices::GetModuleCount() {
  return static_cast<int>(F.Documents.Workspace().Modules().size());
}

IOTAModule* TToolsServices::GetModule(int index) {
  const std::vector<TModule*> modules = F.Documents.Workspace().Modules();
  const bool valid = index >= 0 && index < static_cast<int>(modules.size());
  return valid ? modules[index]->Interface() : nullptr;
}

IOTAModule* TToolsServices::FindModule(const std::string& fileName) {
  TModule* module = F.Documents.Workspace().Find(fileName);
  return module != nullptr ? module->Interface() : nullptr;
}

bool TToolsServices::OpenFile(const std::string& fileName) {
  return F.Documents.OpenFile(fileName);
}

bool TToolsServices::CloseFile(const std::string& fileName) {
  TModule* module = F.Documents.Workspace().Find(fileName);
  return module != nullptr && F.Documents.CloseModule(*module, true);
}

bool TToolsServices::ReloadFile(const std::string& fileName) {
  return F.Documents.ReloadFile(fileName);
}

bool TToolsServices::SaveFile(const std::string& fileName) {
  TModule* module = F.Documents.Workspace().Find(fileName);
  return module != nullptr && F.Documents.SaveModule(*module, false, false);
}

TMainMenu* TToolsServices::GetMainMenu() {
  return &F.Menu;
}

TActionList* TToolsServices::GetActionList() {
  return &F.Actions;
}

TImageList* TToolsServices::GetImageList() {
  return &F.Images;
}

TToolBar* TToolsServices::GetToolBar(const std::string& name) {
  return dynamic_cast<TToolBar*>(F.MainForm.FindComponent(name));
}

int TToolsServices::AddMasked(const QIcon& image) {
  return F.Images.Add(image);
}

}  // namespace wrenfold
