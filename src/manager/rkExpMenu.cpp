// Building, dispatching and removing of the experts menu.
#include "manager/rkExpMenu.h"

#include <algorithm>
#include <utility>

#include "controls/rkIcons.h"
#include "platform/core/text/SysUtils.h"
#include "platform/toolsapi/ToolsAPI.h"
#include "platform/widgets/ShortCuts.h"

namespace wrenfold {

namespace {

TMainMenu* EnvironmentMenu() {
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  return services ? services->GetMainMenu() : nullptr;
}

struct TPlace {
  TMenuItem* Parent = nullptr;
  int Index = -1;
};

bool HasCaption(const TMenuItem& item, const std::string& caption) {
  return EqualText(StripHotkey(item.Caption()), StripHotkey(caption));
}

// The item with that caption at the top level, else below it.
TPlace FindPlace(TMenuItem& root, const std::string& caption) {
  for (int i = 0; i < root.Count(); ++i)
    if (HasCaption(*root[i], caption)) return {&root, i};
  for (TMenuItem* top : root.Items())
    for (int i = 0; i < top->Count(); ++i)
      if (HasCaption(*top->Items(i), caption)) return {top, i};
  return {};
}

// Frees an item that may have gone with the environment's menu.
void FreeItem(TMenuItem*& item) {
  delete std::exchange(item, nullptr);
}

}  // namespace

TActionList* EnvironmentActions() {
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  return services ? services->GetActionList() : nullptr;
}

const TTypeInfo& TExpMenuItem::ClassInfo() {
  static const TTypeInfo info = Publish<TExpMenuItem>("TExpMenuItem", TMenuItem::ClassInfo());
  return info;
}

const TTypeInfo& TExpertsMenu::ClassInfo() {
  static const TTypeInfo info = Publish<TExpertsMenu>("TExpertsMenu", TComponent::ClassInfo());
  return info;
}

TExpertsMenu::~TExpertsMenu() {
  DeleteExpertMenu();
  WithdrawImages();
}

void TExpertsMenu::AddTopMMenuItem(const TExpManagerData& settings) {
  TMainMenu* menu = EnvironmentMenu();
  if (menu == nullptr || EnvironmentActions() == nullptr) return;
  TPlace place = FindPlace(*menu->Items(), settings.MainMenuSearchItem);
  const bool found = place.Parent != nullptr;
  if (!found) place = {menu->Items(), std::max(menu->Items()->Count() - 1, 0)};
  if (found && !settings.InsertMenuBeforeItem) ++place.Index;

  FTopItem = new TExpMenuItem;
  FTopItem->SetName("rkWrenfoldMenu");
  FTopItem->SetCaption("W&renfold");
  Bind<&TExpertsMenu::ExpMenuClick>(FTopItem->OnClick, this);
  FTopItem->FreeNotification(this);
  place.Parent->Insert(place.Index, FTopItem);

  const auto insertLine = [&](int index) {
    auto* line = new TExpMenuItem;
    line->SetCaption("-");
    line->FreeNotification(this);
    place.Parent->Insert(index, line);
    return line;
  };
  if (found && settings.MenuHaveLineBefore) FLineBefore = insertLine(FTopItem->MenuIndex());
  if (found && settings.MenuHaveLineAfter) FLineAfter = insertLine(FTopItem->MenuIndex() + 1);
}

void TExpertsMenu::AddMMenuItems(const TExpMenuData& records, const TMenuNotify& notify) {
  TActionList* actionList = EnvironmentActions();
  if (FTopItem == nullptr || actionList == nullptr) return;
  for (int i = 0; i < records.Count(); ++i) {
    TExpMenuItemData& record = *records.Item(i);
    if (record.HaveLineBefore) CreateLine(FTopItem);
    AddCommand(record, i, actionList);
    notify(FTopItem->Items(FTopItem->Count() - 1), &record);
  }
}

void TExpertsMenu::AddCommand(TExpMenuItemData& record, int number, TActionList* actionList) {
  TExpMenuItem* item = CreateNewItem(record.Caption, {}, FTopItem, FCommandActions, actionList);
  TAction* action = item->Action();
  if (IsValidIdent(record.ItemID)) action->SetName(record.ItemID);
  action->SetShortCut(TextToShortCut(record.ShortCutText));
  action->SetImageIndex(EnvironmentImage(record.ImageIndex));
  action->OnUpdate = record.OnUpdate;
  Bind<&TExpertsMenu::CommonExpertExecProc>(action->OnExecute, this);
  FCommands.push_back({action, record.OnExecute});
  item->SetName("rkWrenfoldMenuItem" + std::to_string(number));
}

void TExpertsMenu::DeleteExpertMenu() {
  FreeItem(FTopItem);
  FreeItem(FLineBefore);
  FreeItem(FLineAfter);
  FCommands.clear();
  FCommandActions.clear();
  FSettingActions.clear();
  FLanguageActions.clear();
}

TExpMenuItem* TExpertsMenu::CreateNewItem(const std::string& caption, TNotifyEvent handler,
                                          TMenuItem* parent, TExpActionList& list,
                                          TActionList* actionList) {
  auto action = std::make_unique<TAction>();
  action->SetCategory("Wrenfold");
  action->SetCaption(caption);
  action->OnExecute = handler;
  action->SetActionList(actionList);
  auto* item = new TExpMenuItem;
  item->SetAction(action.get());
  parent->Add(item);
  list.push_back(std::move(action));
  return item;
}

TExpMenuItem* TExpertsMenu::CreateLine(TMenuItem* parent) {
  auto* line = new TExpMenuItem;
  line->SetCaption("-");
  parent->Add(line);
  return line;
}

void TExpertsMenu::ClearItems(TMenuItem* item, TExpActionList& list) {
  item->Clear();
  list.clear();
}

TNotifyEvent TExpertsMenu::FindExecProc(const TObject* action) const {
  const auto found = std::ranges::find_if(FCommands, [action](const TCommand& command) {
    return static_cast<const TObject*>(command.Action) == action;
  });
  return found == FCommands.end() ? TNotifyEvent() : found->Handler;
}

void TExpertsMenu::ForgetHandlers() {
  for (TCommand& command : FCommands) {
    command.Handler = {};
    command.Action->OnUpdate = {};
  }
  if (FTopItem == nullptr) return;
  for (TMenuItem* item : FTopItem->Items())
    if (auto* own = dynamic_cast<TExpMenuItem*>(item)) own->OnUpdate = {};
}

void TExpertsMenu::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation != opRemove) return;
  for (TMenuItem** item : {&FTopItem, &FLineBefore, &FLineAfter})
    if (*item == component) *item = nullptr;
}

// A submenu that its own handler rebuilds changes the list: hence by index, from the last one.
void TExpertsMenu::ExpMenuClick(TObject* sender) {
  auto* top = dynamic_cast<TMenuItem*>(sender);
  for (int i = top != nullptr ? top->Count() - 1 : -1; i >= 0; --i) {
    TMenuItem* item = top->Items(i);
    if (item->Action() != nullptr) item->Action()->Update();
    auto* own = dynamic_cast<TExpMenuItem*>(item);
    if (own != nullptr) own->OnUpdate(own);
  }
  OnOpened(this);
}

void TExpertsMenu::CommonExpertExecProc(TObject* sender) {
  OnExecute(sender, FindExecProc(sender));
}

// The suite counts its pictures by itself; those that it has are put into the environment's list
// once. Every other index means a picture of the environment.
int TExpertsMenu::EnvironmentImage(int imageIndex) {
  const auto known = std::ranges::find(FImages, imageIndex, &std::pair<int, int>::first);
  if (known != FImages.end()) return known->second;
  const QIcon icon = SuiteIcon(imageIndex);
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  if (icon.isNull() || !services) return imageIndex;
  FImages.emplace_back(imageIndex, services->AddMasked(icon));
  return FImages.back().second;
}

// The environment's list cannot shrink: later indices would change. The entries stay empty.
void TExpertsMenu::WithdrawImages() {
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  TImageList* images = services ? services->GetImageList() : nullptr;
  if (images == nullptr) return;
  for (const auto& [number, index] : FImages) images->Replace(index, QIcon());
}

}  // namespace wrenfold
