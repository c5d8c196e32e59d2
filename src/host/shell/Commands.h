// The workbench's commands as actions, menu items and tool buttons.
#pragma once

#include <QMainWindow>
#include <span>

#include "platform/widgets/Actions.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

class TWorkbench;

// A command: a row of the table in CommandTable.cpp and its function. Menus, and the bars of
// buttons, stand in the order in which the table first names them; lines stand between groups.
struct TCommand {
  const char* Menu;
  int Group;  // within the menu and within the bar
  const char* Name;
  const char* Caption;
  const char* ShortCut;
  const char* Icon;
  const char* Hint;
  void (*Execute)(TWorkbench& workbench);
  bool (*Enabled)(TWorkbench& workbench) = nullptr;  // null: always
  const char* Bar = nullptr;                         // null: no button
  // Packages know some buttons by their captions: these keep theirs, whatever the action's is.
  const char* ButtonCaption = nullptr;
  // Instead of Execute: the items of a menu of its own, filled when it opens.
  void (*Fill)(TWorkbench& workbench, TMenuItem& menu) = nullptr;
};
std::span<const TCommand> CommandTable();

class TCommands {
 public:
  // Makes everything; the parts belong to the workbench, the bars to the window.
  TCommands(TWorkbench& workbench, QMainWindow& window);

  TMainMenu& Menu() { return *FMenu; }
  TActionList& Actions() { return *FActions; }
  TImageList& Images() { return *FImages; }
  // Null when there is no such command.
  TAction* Find(std::string_view name) const { return FActions->FindAction(name); }

 private:
  void MakeAction(const TCommand& command, int index);
  void MakeMenuItem(const TCommand& command);
  void MakeButton(const TCommand& command, QMainWindow& window);
  TMenuItem* MenuOf(const TCommand& command);
  TToolBar* BarOf(const TCommand& command, QMainWindow& window);
  void ActionExecute(TObject* sender);
  void ActionUpdate(TObject* sender);
  void ButtonClick(TObject* sender);
  void MenuFill(TObject* sender);

  TWorkbench& FWorkbench;
  TImageList* FImages;
  TActionList* FActions;
  TMainMenu* FMenu;
};

// The local menu of the code editor, made anew each time it opens.
void BuildEditorMenu(TWorkbench& workbench, TPopupMenu& menu);

}  // namespace wrenfold
