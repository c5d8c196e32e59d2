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

namespace {

// The toolkit lays out all tabs again after each change of one while the bar shows; inside this
// scope it only notes that it has to.
class TLayoutHeld {
 public:
  explicit TLayoutHeld(QTabBar& bar)
      : FBar(bar), FWasVisible(bar.testAttribute(Qt::WA_WState_Visible)) {
    FBar.setAttribute(Qt::WA_WState_Visible, false);
  }
  ~TLayoutHeld() {
    FBar.setAttribute(Qt::WA_WState_Visible, FWasVisible);
    if (!FWasVisible) return;
    FBar.updateGeometry();
    FBar.sizeHint();  // makes the layout that was noted
    FBar.update();
  }
  TLayoutHeld(const TLayoutHeld&) = delete;
  TLayoutHeld& operator=(const TLayoutHeld&) = delete;

 private:
  QTabBar& FBar;
  bool FWasVisible;
};

}  // namespace

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
