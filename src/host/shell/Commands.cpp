// Makes what shows the commands out of their table.
#include "host/shell/Commands.h"

#include "host/documents/Icons.h"
#include "host/shell/Workbench.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr QSize BarIconSize(18, 18);

// A button that follows its action in all but the caption, and has a handler of its own that others
// may save, replace and give back.
class TCaptionedButton final : public TToolButton {
 public:
  TCaptionedButton(TComponent* owner, TToolBar* bar, std::string caption)
      : TToolButton(owner, bar), FOwnCaption(std::move(caption)) {}

 protected:
  void ActionChanged() override {
    TToolButton::ActionChanged();
    SetCaption(FOwnCaption);
  }

 private:
  std::string FOwnCaption;
};

// The word at the beginning of the name.
std::string CategoryOf(std::string_view name) {
  std::size_t end = 1;
  while (end < name.size() && (name[end] < 'A' || name[end] > 'Z')) ++end;
  return std::string(name.substr(0, end));
}

TMenuItem* AddItem(TWorkbench& owner, TMenuItem& menu, const std::string& name,
                   const std::string& caption) {
  auto* item = new TMenuItem(&owner);
  if (!name.empty()) item->SetName(name);
  item->SetCaption(caption);
  menu.Add(item);
  return item;
}

const TCommand& RowOf(const TObject* sender) {
  return CommandTable()[static_cast<std::size_t>(dynamic_cast<const TComponent&>(*sender).Tag)];
}

}  // namespace

TCommands::TCommands(TWorkbench& workbench, QMainWindow& window)
    : FWorkbench(workbench),
      FImages(new TImageList(&workbench)),
      FActions(new TActionList(&workbench)),
      FMenu(new TMainMenu(&workbench)) {
  FImages->SetName("ImageList");
  FActions->SetName("ActionList");
  FActions->SetImages(FImages);
  FMenu->SetName("MainMenu");
  FMenu->SetImages(FImages);
  int index = 0;
  for (const TCommand& command : CommandTable()) {
    if (command.Execute != nullptr) MakeAction(command, index);
    MakeMenuItem(command);
    if (command.Bar != nullptr) MakeButton(command, window);
    ++index;
  }
  window.setMenuBar(FMenu->Bar());
}

void TCommands::MakeAction(const TCommand& command, int index) {
  auto* action = new TAction(&FWorkbench);
  action->SetName(command.Name);
  action->Tag = index;
  action->SetCategory(CategoryOf(command.Name));
  action->SetCaption(command.Caption);
  action->SetHint(command.Hint);
  action->SetShortCut(TextToShortCut(command.ShortCut));
  if (*command.Icon != '\0') action->SetImageIndex(FImages->Add(WorkbenchIcon(command.Icon)));
  Bind<&TCommands::ActionExecute>(action->OnExecute, this);
  Bind<&TCommands::ActionUpdate>(action->OnUpdate, this);
  FActions->AddAction(action);
}

TMenuItem* TCommands::MenuOf(const TCommand& command) {
  const std::string plain = StripHotkey(command.Menu);
  if (TMenuItem* menu = FMenu->Items()->Find(plain)) return menu;
  return AddItem(FWorkbench, *FMenu->Items(), plain + "Menu", command.Menu);
}

void TCommands::MakeMenuItem(const TCommand& command) {
  TMenuItem* menu = MenuOf(command);
  // An item remembers its group, so that the next one knows whether a line is due.
  const auto& items = menu->Items();
  const bool line = !items.empty() && items.back()->Tag != command.Group;
  if (line) AddItem(FWorkbench, *menu, "", "-");
  TMenuItem* item = AddItem(FWorkbench, *menu, std::string(command.Name) + "Item", command.Caption);
  item->Tag = command.Group;
  if (command.Fill == nullptr) {
    item->SetAction(Find(command.Name));
    return;
  }
  Bind<&TCommands::MenuFill>(item->OnClick, this);
  // A menu without items would not open, and so never be filled.
  AddItem(FWorkbench, *item, "", "(nothing yet)")->SetEnabled(false);
}

TToolBar* TCommands::BarOf(const TCommand& command, QMainWindow& window) {
  const std::string name = std::string(command.Bar) + "ToolBar";
  if (auto* known = dynamic_cast<TToolBar*>(FWorkbench.FindComponent(name))) return known;
  auto* bar = new TToolBar(&FWorkbench, &window);
  bar->SetName(name);
  bar->SetCaption(command.Bar);
  bar->SetImages(FImages);
  bar->setAccessibleName(ToQString(command.Bar));
  bar->setIconSize(BarIconSize);
  window.addToolBar(bar);
  return bar;
}

void TCommands::MakeButton(const TCommand& command, QMainWindow& window) {
  TToolBar* bar = BarOf(command, window);
  const int count = bar->ButtonCount();
  if (count > 0 && RowOf(bar->Buttons(count - 1)).Group != command.Group) bar->AddSeparator();
  TToolButton* button = nullptr;
  if (command.ButtonCaption != nullptr) {
    button = new TCaptionedButton(&FWorkbench, bar, command.ButtonCaption);
    Bind<&TCommands::ButtonClick>(button->OnClick, this);
    button->SetAction(Find(command.Name));
  } else {
    button = bar->AddButton(Find(command.Name));
  }
  button->SetName(std::string(command.Name) + "Button");
  button->Tag = Find(command.Name)->Tag;
}

void TCommands::ActionExecute(TObject* sender) {
  RowOf(sender).Execute(FWorkbench);
}

void TCommands::ActionUpdate(TObject* sender) {
  const TCommand& command = RowOf(sender);
  dynamic_cast<TAction&>(*sender).SetEnabled(command.Enabled == nullptr ||
                                             command.Enabled(FWorkbench));
}

void TCommands::ButtonClick(TObject* sender) {
  dynamic_cast<TToolButton&>(*sender).Action()->Execute();
}

void TCommands::MenuFill(TObject* sender) {
  auto& menu = dynamic_cast<TMenuItem&>(*sender);
  for (const TCommand& command : CommandTable())
    if (command.Fill != nullptr && menu.Name() == std::string(command.Name) + "Item")
      command.Fill(FWorkbench, menu);
}

namespace {

// Null for the command is a line; a name that no command has is an item of the menu alone.
struct TEditorItem {
  const char* Name;
  const char* Command;
};
constexpr TEditorItem EditorItems[] = {
    {"ecNewEditWindow", "ViewNewEditWindowCommand"},
    {"ecToggleForm", "ViewToggleFormCommand"},
    {"", nullptr},
    {"ecCut", "EditCutCommand"},
    {"ecCopy", "EditCopyCommand"},
    {"ecPaste", "EditPasteCommand"},
    {"", nullptr},
    {"ecFind", "SearchFindCommand"},
    {"ecGoToLine", "SearchGoToCommand"},
};

}  // namespace

void BuildEditorMenu(TWorkbench& workbench, TPopupMenu& menu) {
  workbench.Commands().Actions().UpdateActions();
  TEditControl& editor = workbench.EditWindow().Editor();
  auto* close = new TMenuItem(&editor);
  close->SetName("ecClosePage");
  close->SetCaption("&Close page");
  close->SetEnabled(workbench.EditWindow().ActivePage() != nullptr);
  Bind<&TWorkbench::ClosePageClick>(close->OnClick, &workbench);
  menu.Items()->Add(close);
  for (const TEditorItem& row : EditorItems) {
    auto* item = new TMenuItem(&editor);
    if (row.Command == nullptr) item->SetCaption("-");
    else item->SetName(row.Name), item->SetAction(workbench.Commands().Find(row.Command));
    menu.Items()->Add(item);
  }
}

}  // namespace wrenfold
