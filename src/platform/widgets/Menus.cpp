#include "platform/widgets/Menus.h"

#include <QAbstractScrollArea>
#include <QActionGroup>
#include <QContextMenuEvent>
#include <algorithm>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

std::vector<TMenu*>& Menus() {
  static std::vector<TMenu*> menus;
  return menus;
}

// A menu may be destroyed by what one of its items does; the toolkit's code that called the item
// still uses the object then.
template <class Object>
void DeleteShown(QPointer<Object>& object) {
  if (object == nullptr) return;
  object->disconnect();
  object->deleteLater();
  object = nullptr;
}

}  // namespace

std::string StripHotkey(std::string_view caption) {
  std::string text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    text += caption[i];
  }
  return text;
}

const TTypeInfo& TMenuItem::ClassInfo() {
  static const TTypeInfo info =
      Publish<TMenuItem>("TMenuItem", TComponent::ClassInfo())
          .Prop("Caption", &TMenuItem::Caption, &TMenuItem::SetCaption)
          .Prop("Checked", &TMenuItem::Checked, &TMenuItem::SetChecked)
          .Default(false)
          .Prop("Enabled", &TMenuItem::Enabled, &TMenuItem::SetEnabled)
          .Default(true)
          .Prop("GroupIndex", &TMenuItem::GroupIndex, &TMenuItem::SetGroupIndex)
          .Default(0)
          .Prop("Hint", &TMenuItem::Hint, &TMenuItem::SetHint)
          .Prop("ImageIndex", &TMenuItem::ImageIndex, &TMenuItem::SetImageIndex)
          .Default(-1)
          .Prop("RadioItem", &TMenuItem::RadioItem, &TMenuItem::SetRadioItem)
          .Default(false)
          .Prop("ShortCut", &TMenuItem::ShortCut, &TMenuItem::SetShortCut)
          .Default(0)
          .Prop("Visible", &TMenuItem::Visible, &TMenuItem::SetVisible)
          .Default(true)
          .Prop("OnClick", &TMenuItem::OnClick);
  return info;
}

TMenuItem::TMenuItem(TComponent* owner) : TComponent(owner), FShown(new QAction) {
  QObject::connect(FShown, &QAction::triggered, &FLife, [this] {
    const QPointer<QObject> alive(&FLife);
    GuardedWhile(&FLife, this, [this] { Click(); });
    // The toolkit checks and unchecks by itself; here the item's state is the one that counts.
    if (alive != nullptr) UpdateShown();
  });
}

TMenuItem::~TMenuItem() {
  Clear();
  if (FParent != nullptr) FParent->Remove(this);
  const bool ownsContainer = FMenu == nullptr;
  if (FShown != nullptr) FShown->setMenu(nullptr);
  DeleteShown(FShown);
  if (ownsContainer) DeleteShown(FContainer);
}

void TMenuItem::SetChecked(bool checked) {
  if (checked && FRadioItem && FParent != nullptr)
    for (TMenuItem* other : FParent->FItems)
      if (other != this && other->FRadioItem && other->FGroupIndex == FGroupIndex)
        other->Change(other->FChecked, false);
  Change(FChecked, checked);
}

void TMenuItem::Click() {
  if (!FEnabled) return;
  if (OnClick) OnClick(this);
  else if (Action() != nullptr) Action()->Execute();
}

void TMenuItem::ActionChanged() {
  const TAction* action = Action();
  if (action == nullptr) return;
  FCaption = action->Caption();
  FHint = action->Hint();
  FShortCut = action->ShortCut();
  FEnabled = action->Enabled();
  FVisible = action->Visible();
  FChecked = action->Checked();
  if (action->ImageIndex() >= 0) FImageIndex = action->ImageIndex();
  UpdateShown();
}

TMenu* TMenuItem::GetParentMenu() const {
  const TMenuItem* root = this;
  while (root->FParent != nullptr) root = root->FParent;
  return root->FMenu;
}

TMenuItem* TMenuItem::Items(int index) const {
  if (index < 0 || index >= Count())
    throw EListError("Menu index out of bounds (" + IntToStr(index) + ")");
  return FItems[static_cast<std::size_t>(index)];
}

int TMenuItem::MenuIndex() const {
  return FParent == nullptr ? -1 : FParent->IndexOf(this);
}

int TMenuItem::IndexOf(const TMenuItem* item) const {
  const auto found = std::find(FItems.begin(), FItems.end(), item);
  return found == FItems.end() ? -1 : static_cast<int>(found - FItems.begin());
}

TMenuItem* TMenuItem::Find(std::string_view caption) const {
  const std::string wanted = StripHotkey(caption);
  const auto found = std::find_if(FItems.begin(), FItems.end(), [&wanted](const auto* item) {
    return EqualText(StripHotkey(item->FCaption), wanted);
  });
  return found == FItems.end() ? nullptr : *found;
}

void TMenuItem::Insert(int index, TMenuItem* item) {
  if (item->FParent != nullptr)
    throw Exception("The menu item \"" + item->FCaption + "\" is in a menu already");
  if (index < 0 || index > Count())
    throw EListError("Menu index out of bounds (" + IntToStr(index) + ")");
  NeedContainer();
  QAction* before = index < Count() ? FItems[static_cast<std::size_t>(index)]->FShown : nullptr;
  FItems.insert(FItems.begin() + index, item);
  item->FParent = this;
  item->UpdateShown();
  if (FContainer != nullptr) FContainer->insertAction(before, item->FShown);
  UpdateShown();
}

void TMenuItem::Delete(int index) {
  TMenuItem* item = Items(index);
  FItems.erase(FItems.begin() + index);
  item->FParent = nullptr;
  if (FContainer != nullptr) FContainer->removeAction(item->FShown);
  UpdateShown();
}

void TMenuItem::Remove(TMenuItem* item) {
  const int index = IndexOf(item);
  if (index >= 0) Delete(index);
}

void TMenuItem::Clear() {
  while (!FItems.empty()) delete FItems.back();
}

// The menu stays when its last item goes: items may be renewed while it is about to open.
void TMenuItem::NeedContainer() {
  if (FMenu != nullptr || FContainer != nullptr) return;
  auto* menu = new QMenu;
  menu->setToolTipsVisible(true);
  QObject::connect(menu, &QMenu::aboutToShow, &FLife, [this] { AboutToShow(); });
  FContainer = menu;
}

void TMenuItem::ShowItems(QWidget* container) {
  FContainer = container;
  for (TMenuItem* item : FItems) container->addAction(item->FShown);
}

void TMenuItem::AboutToShow() {
  const QPointer<QObject> alive(&FLife);
  GuardedWhile(&FLife, this, [this, &alive] {
    for (TMenuItem* item : std::vector(FItems))
      if (alive != nullptr && IndexOf(item) >= 0 && item->Action() != nullptr)
        item->Action()->Update();
    if (alive != nullptr) Click();
  });
}

QIcon TMenuItem::Icon() const {
  if (Action() != nullptr) {
    const QIcon icon = Action()->Icon();
    if (!icon.isNull()) return icon;
  }
  const TMenu* menu = GetParentMenu();
  const TImageList* images = menu == nullptr ? nullptr : menu->Images();
  if (images == nullptr && Action() != nullptr && Action()->ActionList() != nullptr)
    images = Action()->ActionList()->Images();
  return images == nullptr ? QIcon() : images->Icon(FImageIndex);
}

void TMenuItem::UpdateShown() {
  if (FShown == nullptr) return;
  const bool isRow = FItems.empty() && (FParent == nullptr || FParent->FParent != nullptr ||
                                        qobject_cast<QMenu*>(FParent->FContainer) != nullptr);
  // The dispatcher runs the shortcut: the toolkit only shows its text, behind a tab.
  QString text = IsLine() ? QString() : ToQString(FCaption);
  const std::string key = isRow ? ShortCutToText(FShortCut) : std::string();
  if (!key.empty()) text += '\t' + ToQString(key);
  FShown->setSeparator(IsLine());
  FShown->setText(IsLine() ? QString() : text);
  FShown->setToolTip(ToQString(FHint.empty() ? StripHotkey(FCaption) : FHint) +
                     (key.empty() ? QString() : " (" + ToQString(key) + ')'));
  FShown->setStatusTip(ToQString(FHint));
  FShown->setEnabled(FEnabled);
  FShown->setVisible(FVisible);
  FShown->setIcon(Icon());
  if (FRadioItem && FShown->actionGroup() == nullptr) (new QActionGroup(FShown))->addAction(FShown);
  if (!FRadioItem) delete FShown->actionGroup();
  FShown->setCheckable(FChecked || FRadioItem);
  FShown->setChecked(FChecked);
  if (FMenu == nullptr)
    FShown->setMenu(FItems.empty() ? nullptr : qobject_cast<QMenu*>(FContainer));
}

void TMenuItem::UpdateItems() {
  UpdateShown();
  for (TMenuItem* item : FItems) item->UpdateItems();
}

TMenuItem* TMenuItem::FindShortCut(TShortCut shortCut) const {
  for (TMenuItem* item : FItems) {
    if (!item->FEnabled) continue;
    if (item->FShortCut == shortCut && item->Action() == nullptr && item->FItems.empty())
      return item;
    if (TMenuItem* found = item->FindShortCut(shortCut)) return found;
  }
  return nullptr;
}

const TTypeInfo& TMenu::ClassInfo() {
  static const TTypeInfo info = Publish<TMenu>("TMenu", TComponent::ClassInfo());
  return info;
}

TMenu::TMenu(TComponent* owner) : TComponent(owner), FItems(std::make_unique<TMenuItem>()) {
  FItems->FMenu = this;
  Menus().push_back(this);
}

TMenu::~TMenu() {
  std::erase(Menus(), this);
}

void TMenu::ShowIn(QWidget* container) {
  FItems->ShowItems(container);
}

void TMenu::SetImages(TImageList* images) {
  FImages = images;
  FreeNotification(images);
  FItems->UpdateItems();
}

void TMenu::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FImages) FImages = nullptr;
}

TMenuItem* TMenu::FindShortCut(TShortCut shortCut) const {
  return FItems->FindShortCut(shortCut);
}

const std::vector<TMenu*>& TMenu::All() {
  return Menus();
}

const TTypeInfo& TMainMenu::ClassInfo() {
  static const TTypeInfo info = Publish<TMainMenu>("TMainMenu", TMenu::ClassInfo());
  return info;
}

TMainMenu::TMainMenu(TComponent* owner) : TMenu(owner), FBar(new QMenuBar) {
  ShowIn(FBar);
}

TMainMenu::~TMainMenu() {
  DeleteShown(FBar);
}

// Opens the menu for the widgets that it is attached to.
class TPopupMenu::TOpener : public QObject {
 public:
  explicit TOpener(TPopupMenu& menu) : FMenu(menu) {}
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ContextMenu) return false;
    auto* widget = static_cast<QWidget*>(watched);
    TControl* control = ControlOf(widget);
    if (control == nullptr) control = ControlOf(widget->parentWidget());
    FMenu.SetPopupComponent(control);
    const QPoint point = static_cast<QContextMenuEvent*>(event)->globalPos();
    FMenu.Popup(point.x(), point.y());
    event->accept();
    return true;
  }

 private:
  TPopupMenu& FMenu;
};

const TTypeInfo& TPopupMenu::ClassInfo() {
  static const TTypeInfo info =
      Publish<TPopupMenu>("TPopupMenu", TMenu::ClassInfo()).Prop("OnPopup", &TPopupMenu::OnPopup);
  return info;
}

TPopupMenu::TPopupMenu(TComponent* owner)
    : TMenu(owner), FShownMenu(new QMenu), FOpener(std::make_unique<TOpener>(*this)) {
  FShownMenu->setToolTipsVisible(true);
  QObject::connect(FShownMenu, &QMenu::aboutToShow, FShownMenu, [this] {
    const QPointer<QObject> alive(FOpener.get());
    GuardedWhile(FOpener.get(), this, [this] { OnPopup(this); });
    if (alive != nullptr) Items()->AboutToShow();
  });
  ShowIn(FShownMenu);
}

TPopupMenu::~TPopupMenu() {
  DeleteShown(FShownMenu);
}

void TPopupMenu::SetPopupComponent(TComponent* component) {
  FPopupComponent = component;
  FreeNotification(component);
}

void TPopupMenu::Notification(TComponent* component, TOperation operation) {
  TMenu::Notification(component, operation);
  if (operation == opRemove && component == FPopupComponent) FPopupComponent = nullptr;
}

void TPopupMenu::Popup(int x, int y) {
  FShownMenu->popup(QPoint(x, y));
}

void TPopupMenu::Close() {
  FShownMenu->close();
}

// What scrolls gets its mouse events in its viewport.
void TPopupMenu::AttachTo(QWidget* widget) {
  widget->installEventFilter(FOpener.get());
  if (auto* area = qobject_cast<QAbstractScrollArea*>(widget))
    area->viewport()->installEventFilter(FOpener.get());
}

void TPopupMenu::DetachFrom(QWidget* widget) {
  widget->removeEventFilter(FOpener.get());
  if (auto* area = qobject_cast<QAbstractScrollArea*>(widget))
    area->viewport()->removeEventFilter(FOpener.get());
}

}  // namespace wrenfold
