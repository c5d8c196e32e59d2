#include "platform/widgets/TabControl.h"

#include <QSignalBlocker>

#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

class TTabControl::TTabStrings : public TStringList {
 public:
  explicit TTabStrings(TTabControl& control) : FControl(control) { Duplicates = dupAccept; }

 protected:
  void Changed() override {
    TStringList::Changed();
    if (UpdateCount() == 0) FControl.ShowTabs();
  }

 private:
  TTabControl& FControl;
};

// The toolkit lays out all tabs again after each change of one while the bar shows, and after each
// new one even while it does not. Inside this scope it only notes the first, and measures no text
// for the second; the layout is made once, at the end.
class TTabControl::TLayoutHeld {
 public:
  explicit TLayoutHeld(TTabControl& bar)
      : FBar(bar), FWasVisible(bar.testAttribute(Qt::WA_WState_Visible)) {
    FBar.FLayoutHeld = true;
    FBar.setAttribute(Qt::WA_WState_Visible, false);
  }
  ~TLayoutHeld() {
    FBar.FLayoutHeld = false;
    FBar.setAttribute(Qt::WA_WState_Visible, FWasVisible);
    FBar.setElideMode(FBar.elideMode());  // lays out anew and scrolls to the active tab
  }
  TLayoutHeld(const TLayoutHeld&) = delete;
  TLayoutHeld& operator=(const TLayoutHeld&) = delete;

 private:
  TTabControl& FBar;
  bool FWasVisible;
};

const TTypeInfo& TTabControl::ClassInfo() {
  static const TTypeInfo info =
      Publish<TTabControl>("TTabControl", TControl::ClassInfo())
          .Prop("TabIndex", &TTabControl::TabIndex, &TTabControl::SetTabIndex)
          .Default(-1)
          .Prop("Tabs", &TTabControl::Tabs, &TTabControl::SetTabs)
          .Prop("OnChange", &TTabControl::OnChange);
  return info;
}

TTabControl::TTabControl(TComponent* owner, QWidget* parent)
    : TControlOf(owner, parent), FTabs(std::make_unique<TTabStrings>(*this)) {
  connect(this, &QTabBar::currentChanged, this,
          [this](int index) { Guarded(this, [this, index] { UserChanged(index); }); });
}

TTabControl::~TTabControl() {
  disconnect(this, &QTabBar::currentChanged, this, nullptr);
}

void TTabControl::SetTabs(TStrings* tabs) {
  if (tabs != nullptr) FTabs->Assign(tabs);
}

void TTabControl::SetTabIndex(std::int32_t index) {
  FTabIndex = index >= 0 && index < FTabs->Count() ? index : -1;
  ShowIndex();
}

void TTabControl::Change() {
  OnChange(this);
}

bool TTabControl::CanChange() {
  bool allowed = true;
  OnChanging(this, allowed);
  return allowed;
}

QSize TTabControl::tabSizeHint(int index) const {
  return FLayoutHeld ? QSize(1, 1) : QTabBar::tabSizeHint(index);
}

QSize TTabControl::minimumTabSizeHint(int index) const {
  return FLayoutHeld ? QSize(1, 1) : QTabBar::minimumTabSizeHint(index);
}

void TTabControl::ShowTabs() {
  const QSignalBlocker quiet(this);
  const TLayoutHeld held(*this);
  const int wanted = FTabs->Count();
  const int before = count();
  while (count() > wanted) removeTab(count() - 1);
  for (int i = 0; i < wanted; ++i) {
    // A single ampersand in a page's name is no accelerator.
    const QString text = ToQString(FTabs->Get(i)).replace('&', "&&");
    if (i >= count()) addTab(text);
    else if (tabText(i) != text) setTabText(i, text);
  }
  if (FTabIndex >= wanted) FTabIndex = -1;
  if (FTabIndex < 0 && before == 0 && wanted > 0) FTabIndex = 0;
  if (FTabIndex >= 0) setCurrentIndex(FTabIndex);
  TabsChanged();
}

void TTabControl::ShowIndex() {
  const QSignalBlocker quiet(this);
  setCurrentIndex(FTabIndex);
}

void TTabControl::UserChanged(int index) {
  if (index == FTabIndex) return;
  if (!CanChange()) {
    ShowIndex();
    return;
  }
  FTabIndex = index;
  Change();
}

}  // namespace wrenfold
