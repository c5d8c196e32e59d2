// The open tools interface as the workbench offers it to packages, with the wizards they register.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/toolsapi/ToolsAPI.h"

namespace wrenfold {

class TDocuments;

// All services in one object, which lives as long as the workbench holds it: counting is off.
class TToolsServices final : public IOTAServices,
                             public IOTAModuleServices,
                             public IOTAActionServices,
                             public IOTAWizardServices,
                             public INTAServices,
                             public IOTADesignCapabilities {
 public:
  // What packages are served from; all must outlive this object.
  struct TEnvironment {
    TForm& MainForm;
    TDocuments& Documents;
    TMainMenu& Menu;
    TActionList& Actions;
    TImageList& Images;
  };
  // Makes itself BorlandIDEServices and takes wizards from here on.
  explicit TToolsServices(const TEnvironment& environment);
  // The wizards must have been ended.
  ~TToolsServices();

  // Destroys the wizards, the last one first, and forgets all notifiers.
  void EndWizards();
  int WizardCount() const;

  HResult QueryInterface(const TGuid& iid, void** result) override;
  int _AddRef() override { return -1; }
  int _Release() override { return -1; }

  int AddNotifier(IOTAIDENotifier* notifier) override;
  void RemoveNotifier(int index) override;
  std::string GetRootDirectory() override;
  TForm* GetParentForm() override;

  IOTAModule* CurrentModule() override;
  int GetModuleCount() override;
  IOTAModule* GetModule(int index) override;
  IOTAModule* FindModule(const std::string& fileName) override;

  bool OpenFile(const std::string& fileName) override;
  bool CloseFile(const std::string& fileName) override;
  bool ReloadFile(const std::string& fileName) override;
  bool SaveFile(const std::string& fileName) override;

  int AddWizard(IOTAWizard* wizard) override;
  void RemoveWizard(int index) override;

  TMainMenu* GetMainMenu() override;
  TActionList* GetActionList() override;
  TImageList* GetImageList() override;
  TToolBar* GetToolBar(const std::string& name) override;
  int AddMasked(const QIcon& image) override;

  // The designer draws every kind of form.
  TDesignedKinds GetDesignedKinds() override { return {dkTextForms, dkFrames}; }

 private:
  const TEnvironment F;
  std::vector<TIntf<IOTAWizard>> FWizards;
};

}  // namespace wrenfold
