// Tabs as a list of strings with objects, and who raises the change event.
#include <gmock/gmock.h>

#include <ctime>

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

// Times of this process alone, and of the same machine at the same moment.
TEST_F(TabControls, TabsAreAssignedWithoutLayingOutEachTime) {
  constexpr int count = 1000;
  const std::clock_t start = std::clock();
  QTabBar laidOutEachTime;
  laidOutEachTime.show();
  for (int i = 0; i < count; ++i) laidOutEachTime.addTab("Unit" + QString::number(i));
  const std::clock_t plain = std::clock() - start;
  TStringList many;
  for (int i = 0; i < count; ++i) many.Add("Unit" + std::to_string(i));
  Tabs->SetTabs(&many);
  many.Move(0, count - 1);
  Tabs->SetTabs(&many);
  EXPECT_LT(std::clock() - start - plain, plain / 3);
  EXPECT_EQ(Tabs->tabText(count - 1), "Unit0");
  EXPECT_GT(Tabs->tabRect(0).width(), 10) << "the layout was made at the end";
  EXPECT_GT(Tabs->tabRect(count - 1).left(), count * 10);
}

}  // namespace
}  // namespace wrenfold::test
