// Tabs as a list of strings with objects, and who raises the change event.
#include <gmock/gmock.h>

#include "platform/widgets/Support.h"
#include "platform/widgets/TabControl.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Shown(const TTabControl& tabs) {
  std::vector<std::string> texts;
  for (int i = 0; i < tabs.count(); ++i) texts.push_back(tabs.tabText(i).toStdString());
  return texts;
}

class TabControls : public testing::Test {
 protected:
  void SetUp() override {
    Tabs->SetName("TabControl");
    Tabs->OnChange = Recorder.Event();
    Form.resize(600, 100);
    Tabs->resize(600, 40);
    for (int i = 0; i < 3; ++i)
      Tabs->Tabs()->AddObject("Unit" + std::to_string(i + 1), &Objects[i]);
    Activate(Form);
  }
  void ClickTab(int index) {
    QTest::mouseClick(Tabs, Qt::LeftButton, {}, Tabs->tabRect(index).center());
  }

  TForm Form;
  TTabControl* Tabs = new TTabControl(&Form, &Form);
  TObject Objects[3];
  TRecorder Recorder;
};

TEST_F(TabControls, ReassigningKeepsTextsObjectsAndThePositionAndRaisesNothing) {
  Tabs->SetTabIndex(1);
  TStringList other;
  other.AddObject("Unit3", &Objects[2]);
  other.AddObject("Unit1", &Objects[0]);
  other.AddObject("Unit2 & more", &Objects[1]);
  Tabs->SetTabs(&other);
  EXPECT_THAT(Shown(*Tabs), ElementsAre("Unit3", "Unit1", "Unit2 && more"));
  EXPECT_EQ(Tabs->Tabs()->GetObject(2), &Objects[1]);
  EXPECT_EQ(Tabs->TabIndex(), 1);
  EXPECT_EQ(Tabs->currentIndex(), 1);
  Tabs->SetTabIndex(2);
  EXPECT_THAT(Recorder.Calls, IsEmpty());
}

TEST_F(TabControls, AUsersClickRaisesTheChangeOnce) {
  ClickTab(2);
  ClickTab(2);
  EXPECT_EQ(Tabs->TabIndex(), 2);
  EXPECT_THAT(Recorder.Calls, ElementsAre("TabControl"));
  Tabs->Change();
  EXPECT_EQ(Recorder.Calls.size(), 2u);
}

TEST_F(TabControls, ARefusedChangeStaysWhereItWas) {
  struct TRefuser : TObject {
    void Changing(TObject*, bool& allow) { allow = false; }
  } refuser;
  Bind<&TRefuser::Changing>(Tabs->OnChanging, &refuser);
  ClickTab(1);
  EXPECT_EQ(Tabs->TabIndex(), 0);
  EXPECT_EQ(Tabs->currentIndex(), 0);
  EXPECT_THAT(Recorder.Calls, IsEmpty());
}

TEST_F(TabControls, ClosingTabsKeepsTheIndexInside) {
  Tabs->SetTabIndex(2);
  Tabs->Tabs()->Delete(0);
  EXPECT_EQ(Tabs->TabIndex(), -1) << "the position that it stood at is gone";
  Tabs->SetTabIndex(7);
  EXPECT_EQ(Tabs->TabIndex(), -1);
  Tabs->Tabs()->Clear();
  Tabs->Tabs()->Add("Only");
  EXPECT_EQ(Tabs->TabIndex(), 0);
  EXPECT_THAT(Shown(*Tabs), ElementsAre("Only"));
  EXPECT_THAT(Recorder.Calls, IsEmpty());
}

}  // namespace
}  // namespace wrenfold::test
