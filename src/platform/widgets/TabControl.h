// A row of tabs over a list of strings with attached objects.
#pragma once

#include <QTabBar>
#include <memory>

#include "platform/core/model/Event.h"
#include "platform/core/model/StringList.h"
#include "platform/widgets/Control.h"

namespace wrenfold {

using TTabChangingEvent = TEvent<void(TObject*, bool& allowChange)>;

// The tabs are the lines of Tabs(), which shows every change at once (between BeginUpdate and
// EndUpdate: at the end). Setting tabs or the index raises no event; the user does.
class TTabControl : public TControlOf<QTabBar> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TTabControl(TComponent* owner = nullptr, QWidget* parent = nullptr);
  ~TTabControl() override;

  // Owned by the control. The attached objects are not.
  TStrings* Tabs() const { return FTabs.get(); }
  // Takes over texts and attached objects. The active tab stays at its position.
  void SetTabs(TStrings* tabs);
  // -1 without an active tab.
  std::int32_t TabIndex() const { return FTabIndex; }
  // An index that is no tab's makes it -1.
  void SetTabIndex(std::int32_t index);

  // Calls OnChange, as a user's click on another tab does after it.
  virtual void Change();
  // Asked before the user leaves a tab.
  virtual bool CanChange();
  TNotifyEvent OnChange;
  TTabChangingEvent OnChanging;

 protected:
  // The tabs show other lines, or in another order, than before.
  virtual void TabsChanged() {}
  QSize tabSizeHint(int index) const override;
  QSize minimumTabSizeHint(int index) const override;

 private:
  class TTabStrings;
  class TLayoutHeld;
  void ShowTabs();
  void ShowIndex();
  void UserChanged(int index);

  std::unique_ptr<TStrings> FTabs;
  std::int32_t FTabIndex = -1;
  bool FLayoutHeld = false;
};

}  // namespace wrenfold
