// Tests the experts' windows: placement as text, saving by key and on closing.
#include <gmock/gmock.h>

#include <QtTest/QTest>

#include "manager/rkExpShrForm.h"
#include "platform/widgets/Application.h"

namespace wrenfold {
namespace {

TEST(Placement, IsTenNumbersAndNothingElse) {
  TWindowPlacement placement;
  EXPECT_TRUE(TextToPlacement("0,1,-1,-1,-1,-1,10,20,300,400", placement));
  EXPECT_EQ(placement.Bottom, 400);
  EXPECT_EQ(PlacementToText(placement), "0,1,-1,-1,-1,-1,10,20,300,400");
  for (const char* text :
       {"", "1,2,3", "0,1,-1,-1,-1,-1,10,20,300,400,5", "0,1,-1,-1,-1,-1,10,20,300,x",
        "0,1,-1,-1,-1,-1,10,20,300,99999999999", "0 1 2 3 4 5 6 7 8 9"})
    EXPECT_FALSE(TextToPlacement(text, placement)) << text;
}

class SharedForm : public testing::Test {
 protected:
  TSharedForm* Open() {
    auto* form = NewForm<TSharedForm>(nullptr, &Manager);
    form->Show();
    form->activateWindow();
    Application().ProcessMessages();
    return form;
  }
  TSharedManager Manager;
};

TEST_F(SharedForm, WithoutAPlacementStandsInTheMiddle) {
  const std::unique_ptr<TSharedForm> form(Open());
  EXPECT_NEAR(form->geometry().center().x(), Screen().Width() / 2, 40);
  EXPECT_NEAR(form->geometry().center().y(), Screen().Height() / 2, 40);
}

TEST_F(SharedForm, TheKeySavesThePlacementAlsoWithoutAutosave) {
  Manager.FormSetting->AutoSavePlacement = false;
  std::unique_ptr<TSharedForm> form(Open());
  form->setGeometry(50, 60, 320, 240);
  QTest::keyClick(form.get(), Qt::Key_S, Qt::ControlModifier);
  form->setGeometry(90, 90, 400, 400);
  form->Close();
  form.reset(Open());
  EXPECT_EQ(form->geometry(), QRect(50, 60, 320, 240));
}

TEST_F(SharedForm, ClosedWhileMinimisedOpensAsAWindow) {
  std::unique_ptr<TSharedForm> form(Open());
  form->showMinimized();
  form->Close();
  form.reset(Open());
  EXPECT_FALSE(form->isMinimized());
  form->showMinimized();
  form->Hide();
  form->Show();
  EXPECT_FALSE(form->isMinimized()) << "the same window again";
}

TEST_F(SharedForm, AnotherKeyReplacesTheFirst) {
  Manager.FormSetting->SavePlacementShortCut = "Ctrl+F9";
  Manager.FormSetting->AutoSavePlacement = false;
  const std::unique_ptr<TSharedForm> form(Open());
  QTest::keyClick(form.get(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(Manager.FormSetting->FormPlacement, "");
  QTest::keyClick(form.get(), Qt::Key_F9, Qt::ControlModifier);
  EXPECT_NE(Manager.FormSetting->FormPlacement, "");
}

TEST_F(SharedForm, ClosingByEscapeSavesWhenTheSettingSaysSo) {
  for (const bool autoSave : {false, true}) {
    Manager.FormSetting->AutoSavePlacement = autoSave;
    const std::unique_ptr<TSharedForm> form(Open());
    QTest::keyClick(form.get(), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(Manager.FormSetting->FormPlacement.empty(), !autoSave);
  }
}

}  // namespace
}  // namespace wrenfold
