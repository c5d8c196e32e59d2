// A package with a wizard that puts an item into the menu and tells in the title when it ends.
#include "platform/toolsapi/ToolsAPI.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"

namespace {

using namespace wrenfold;

class TWizard final : public TInterfacedObject<IOTAWizard> {
 public:
  TWizard() : FMenu(Supports<INTAServices>(BorlandIDEServices)->GetMainMenu()) {
    FItem = new TMenuItem(nullptr);
    FItem->SetCaption("Sample");
    FMenu->Items()->Add(FItem);
  }
  ~TWizard() override {
    const bool menuLives = FMenu->Items()->IndexOf(FItem) >= 0;
    delete FItem;
    Supports<IOTAServices>(BorlandIDEServices)
        ->GetParentForm()
        ->SetCaption(menuLives ? "ended in order" : "ended too late");
  }
  std::string GetIDString() override { return "Test.Wizard"; }
  std::string GetName() override { return "Test"; }
  TWizardState GetState() override { return {wsEnabled}; }
  void Execute() override {}
  void AfterSave() override {}
  void BeforeSave() override {}
  void Destroyed() override {}
  void Modified() override {}

 private:
  TMainMenu* FMenu;
  TMenuItem* FItem;
};

}  // namespace

extern "C" void Register() {
  RegisterPackageWizard(new TWizard);
}
