// The experts menu in the environment's main menu, and the dispatch of its commands.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "manager/rkExpData.h"
#include "platform/widgets/Actions.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

// An item that may look after its own state each time before its menu opens.
class TExpMenuItem : public TMenuItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TMenuItem::TMenuItem;

  TNotifyEvent OnUpdate;
};

// The actions of one menu, which end with the list.
using TExpActionList = std::vector<std::unique_ptr<TAction>>;

// Everything that the suite puts into the environment's main menu. The environment's menu, action
// list and image list may end first.
class TExpertsMenu : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TExpertsMenu() = default;
  ~TExpertsMenu() override;

  // Puts the top item into the environment's main menu, where the settings say; nothing without
  // a main menu or an action list.
  void AddTopMMenuItem(const TExpManagerData& settings);
  // Hangs one command for each record under the top item, and tells notify of each.
  using TMenuNotify = std::function<void(TMenuItem*, TExpMenuItemData*)>;
  void AddMMenuItems(const TExpMenuData& records, const TMenuNotify& notify);
  void DeleteExpertMenu();

  // A new item with an action, both at the end of what they are added to.
  TExpMenuItem* CreateNewItem(const std::string& caption, TNotifyEvent handler, TMenuItem* parent,
                              TExpActionList& list, TActionList* actionList);
  TExpMenuItem* CreateLine(TMenuItem* parent);
  // Ends the sub-items and their actions.
  void ClearItems(TMenuItem* item, TExpActionList& list);

  // The handler of the record that the action was made for, empty when it is no command.
  TNotifyEvent FindExecProc(const TObject* action) const;
  // The owners of the handlers are going away: the commands that are still shown do nothing from
  // here on.
  void ForgetHandlers();

  TMenuItem* TopItem() const { return FTopItem; }
  TExpActionList& SettingActions() { return FSettingActions; }
  TExpActionList& LanguageActions() { return FLanguageActions; }

  // Receives the sender of a command and the handler found for it.
  TEvent<void(TObject* sender, const TNotifyEvent& handler)> OnExecute;
  // The top item was opened and its items are up to date.
  TNotifyEvent OnOpened;

  void Notification(TComponent* component, TOperation operation) override;

 private:
  struct TCommand {
    TAction* Action;
    TNotifyEvent Handler;
  };
  void AddCommand(TExpMenuItemData& record, int number, TActionList* actionList);
  void ExpMenuClick(TObject* sender);
  void CommonExpertExecProc(TObject* sender);
  int EnvironmentImage(int imageIndex);
  void WithdrawImages();

  TMenuItem* FTopItem = nullptr;
  TMenuItem* FLineBefore = nullptr;
  TMenuItem* FLineAfter = nullptr;
  TExpActionList FCommandActions, FSettingActions, FLanguageActions;
  std::vector<TCommand> FCommands;
  std::vector<std::pair<int, int>> FImages;  // the suite's pictures and their environment indices
};

// The environment's list of actions, or null.
TActionList* EnvironmentActions();

}  // namespace wrenfold
