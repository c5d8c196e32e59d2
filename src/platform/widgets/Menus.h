// Menus: trees of items, shown by the toolkit's menu bars and menus.
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <memory>
#include <string>
#include <vector>

#include "platform/core/model/Event.h"
#include "platform/core/model/Persistent.h"
#include "platform/widgets/Actions.h"

namespace wrenfold {

class TMenu;

// One item with its sub-items. An item leaves its parent when it is destroyed and destroys its
// sub-items. Every change shows at once. With an action, the action's caption, hint, shortcut,
// picture and state are taken over, and a click runs the action.
class TMenuItem : public TComponent, public TActionClient {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TMenuItem(TComponent* owner = nullptr);
  ~TMenuItem() override;

  // With an ampersand before the accelerator; "-" is a separator.
  const std::string& Caption() const { return FCaption; }
  void SetCaption(const std::string& caption) { Change(FCaption, caption); }
  bool IsLine() const { return FCaption == "-"; }
  const std::string& Hint() const { return FHint; }
  void SetHint(const std::string& hint) { Change(FHint, hint); }
  TShortCut ShortCut() const { return FShortCut; }
  void SetShortCut(TShortCut shortCut) { Change(FShortCut, shortCut); }
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool enabled) { Change(FEnabled, enabled); }
  bool Visible() const { return FVisible; }
  void SetVisible(bool visible) { Change(FVisible, visible); }
  bool Checked() const { return FChecked; }
  // Checking a radio item unchecks the other radio items of its group in the same menu.
  void SetChecked(bool checked);
  bool RadioItem() const { return FRadioItem; }
  void SetRadioItem(bool radioItem) { Change(FRadioItem, radioItem); }
  std::int32_t GroupIndex() const { return FGroupIndex; }
  void SetGroupIndex(std::int32_t index) { Change(FGroupIndex, index); }
  // Index in the menu's image list, or in that of the action's list; -1: none.
  std::int32_t ImageIndex() const { return FImageIndex; }
  void SetImageIndex(std::int32_t index) { Change(FImageIndex, index); }

  // Called by a click, and before the sub-items are shown. The sender is the item.
  TNotifyEvent OnClick;
  // As if the user had clicked: OnClick, or else the action. A disabled item does nothing.
  virtual void Click();

  TMenuItem* Parent() const { return FParent; }
  // The menu that the tree belongs to, or null.
  TMenu* GetParentMenu() const;
  int Count() const { return static_cast<int>(FItems.size()); }
  // Raises EListError outside 0..Count-1.
  TMenuItem* Items(int index) const;
  TMenuItem* operator[](int index) const { return Items(index); }
  const std::vector<TMenuItem*>& Items() const { return FItems; }
  // The position in the parent, -1 without one.
  int MenuIndex() const;
  int IndexOf(const TMenuItem* item) const;
  // The sub-item with that caption, accelerator marks and letter case ignored, or null.
  TMenuItem* Find(std::string_view caption) const;
  void Add(TMenuItem* item) { Insert(Count(), item); }
  // Raises Exception when the item is in a menu already, EListError for a wrong index.
  void Insert(int index, TMenuItem* item);
  // Takes the item out; it is not destroyed.
  void Delete(int index);
  void Remove(TMenuItem* item);
  // Destroys all sub-items.
  void Clear();

  // What shows the item, and its sub-items (null while there are none).
  QAction* ShownAction() const { return FShown; }
  QWidget* ShownMenu() const { return FContainer; }

 protected:
  void ActionChanged() override;

 private:
  friend class TMenu;
  friend class TPopupMenu;
  template <class Value>
  void Change(Value& member, const Value& value) {
    if (member == value) return;
    member = value;
    UpdateShown();
  }
  void UpdateShown();
  void UpdateItems();
  void NeedContainer();
  void ShowItems(QWidget* container);
  void AboutToShow();
  TMenuItem* FindShortCut(TShortCut shortCut) const;
  QIcon Icon() const;

  QObject FLife;           // ends with the item, what shows it ends later
  TMenu* FMenu = nullptr;  // of a root item
  TMenuItem* FParent = nullptr;
  std::vector<TMenuItem*> FItems;
  QPointer<QAction> FShown;
  QPointer<QWidget> FContainer;
  std::string FCaption, FHint;
  TShortCut FShortCut;
  std::int32_t FGroupIndex = 0, FImageIndex = -1;
  bool FEnabled = true, FVisible = true, FChecked = false, FRadioItem = false;
};

// The caption without accelerator marks ("&&" stands for one ampersand).
std::string StripHotkey(std::string_view caption);

// What main menus and pop-up menus have in common.
class TMenu : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  ~TMenu() override;

  // The root: its sub-items are the menu's items. Owned by the menu.
  TMenuItem* Items() const { return FItems.get(); }
  // Not owned.
  TImageList* Images() const { return FImages; }
  void SetImages(TImageList* images);
  void Notification(TComponent* component, TOperation operation) override;

  // The enabled item with the shortcut, or null; items with an action leave it to the action.
  TMenuItem* FindShortCut(TShortCut shortCut) const;
  // All menus that exist.
  static const std::vector<TMenu*>& All();

 protected:
  explicit TMenu(TComponent* owner);
  void ShowIn(QWidget* container);

 private:
  std::unique_ptr<TMenuItem> FItems;
  TImageList* FImages = nullptr;
};

// The menu of a main window. Its bar is made once and belongs to the widget that it is put into.
class TMainMenu : public TMenu {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TMainMenu(TComponent* owner = nullptr);
  ~TMainMenu() override;
  QMenuBar* Bar() const { return FBar; }

 private:
  QPointer<QMenuBar> FBar;
};

// A local menu.
class TPopupMenu : public TMenu {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TPopupMenu(TComponent* owner = nullptr);
  ~TPopupMenu() override;

  // Called before the menu opens; here the items may be built.
  TNotifyEvent OnPopup;
  // The control that the menu was opened for last; null when it is no component.
  TComponent* PopupComponent() const { return FPopupComponent; }
  void SetPopupComponent(TComponent* component);
  void Notification(TComponent* component, TOperation operation) override;

  // Runs OnPopup and opens the menu at a point of the screen; returns at once.
  void Popup(int x, int y);
  void Close();
  // Opens the menu by a right click on a widget of the toolkit or by the menu key in it; for
  // controls see TControl::SetPopupMenu.
  void AttachTo(QWidget* widget);
  void DetachFrom(QWidget* widget);
  QMenu* Menu() const { return FShownMenu; }

 private:
  class TOpener;
  QPointer<QMenu> FShownMenu;
  std::unique_ptr<TOpener> FOpener;
  TComponent* FPopupComponent = nullptr;
};

}  // namespace wrenfold
