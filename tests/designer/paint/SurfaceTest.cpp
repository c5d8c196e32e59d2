// The drawn form under real mouse and keys.
#include <gmock/gmock.h>

#include <QScrollArea>
#include <QTest>

#include "designer/FormText.h"
#include "designer/paint/DesignSurface.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;

constexpr const char* Text =
    "object Form1: TForm1\n  Caption = 'x'\n  BorderStyle = bsNone\n  ClientWidth = 300\n"
    "  ClientHeight = 200\n"
    "  object Panel1: TPanel\n    Left = 8\n    Top = 8\n    Width = 120\n    Height = 80\n"
    "    object Button1: TButton\n      Left = 16\n      Top = 16\n      Width = 60\n"
    "      Height = 24\n    end\n  end\n"
    "  object Edit1: TEdit\n    Left = 160\n    Top = 16\n    Width = 96\n    Height = 24\n  end\n"
    "  object Pages: TPageControl\n    Left = 8\n    Top = 100\n    Width = 200\n    Height = 90\n"
    "    ActivePage = First\n    object First: TTabSheet\n      Caption = 'First'\n    end\n"
    "    object Second: TTabSheet\n      Caption = 'Second'\n      object Hidden1: TButton\n"
    "        Left = 4\n        Top = 4\n      end\n    end\n  end\nend\n";

constexpr int Margin = 16;

class SurfaceTest : public testing::Test {
 protected:
  void SetUp() override {
    Surface.ShowForm(File.Root.get(), &Forms);
    Surface.OnSelect = [this](const TComponentList&) { ++Told; };
    Surface.OnBounds = [this](const std::string& step, const std::vector<TBoundsChange>& changes,
                              bool) {
      Step = step;
      Changes = changes;
    };
    Surface.show();
    Surface.setFocus();
  }

  void Click(int x, int y, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(&Surface, Qt::LeftButton, modifiers, QPoint(x + Margin, y + Margin));
  }
  void Drag(QPoint from, QPoint to) {
    const QPoint margin(Margin, Margin);
    QTest::mousePress(&Surface, Qt::LeftButton, {}, from + margin);
    QTest::mouseMove(&Surface, (from + to) / 2 + margin);
    QTest::mouseMove(&Surface, to + margin);
    QTest::mouseRelease(&Surface, Qt::LeftButton, {}, to + margin);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const TDesignComponent* each : Surface.Selection()) names.push_back(each->Name());
    return names;
  }

  TFormFile File = ReadFormFile(Text, "test");
  TNoForms Forms;
  TDesignSurface Surface;
  int Told = 0;
  std::string Step;
  std::vector<TBoundsChange> Changes;
};

TEST_F(SurfaceTest, ClickChoosesWhatIsSeenAndEscapeGoesToTheParent) {
  Click(40, 34);
  EXPECT_THAT(Names(), ElementsAre("Button1"));
  QTest::keyClick(&Surface, Qt::Key_Escape);
  EXPECT_THAT(Names(), ElementsAre("Panel1"));
  QTest::keyClick(&Surface, Qt::Key_Escape);
  QTest::keyClick(&Surface, Qt::Key_Escape);
  EXPECT_THAT(Names(), ElementsAre("Form1"));
  EXPECT_EQ(Told, 3);
}

TEST_F(SurfaceTest, CtrlAddsAndTakesAway) {
  Click(40, 34);
  Click(200, 28, Qt::ControlModifier);
  EXPECT_THAT(Names(), ElementsAre("Button1", "Edit1"));
  Click(40, 34, Qt::ControlModifier);
  EXPECT_THAT(Names(), ElementsAre("Edit1"));
}

TEST_F(SurfaceTest, BandChoosesWhatItTouches) {
  Drag({140, 2}, {270, 60});
  EXPECT_THAT(Names(), ElementsAre("Edit1"));
  Drag({280, 60}, {100, 4});
  EXPECT_THAT(Names(), ElementsAre("Panel1", "Edit1"));
}

TEST_F(SurfaceTest, TabWalksThroughWhatIsShown) {
  std::vector<std::string> names;
  for (int i = 0; i < 7; ++i) {
    QTest::keyClick(&Surface, Qt::Key_Tab);
    names.push_back(Names().at(0));
  }
  EXPECT_THAT(names, ElementsAre("Form1", "Panel1", "Button1", "Edit1", "Pages", "First", "Form1"));
  QTest::keyClick(&Surface, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_THAT(Names(), ElementsAre("First"));
}

TEST_F(SurfaceTest, DraggingMovesInOneStepAndSnaps) {
  Drag({200, 28}, {200, 60});
  EXPECT_EQ(Step, "Move");
  ASSERT_EQ(Changes.size(), 1u);
  EXPECT_EQ(Changes[0].Node->Name(), "Edit1");
  EXPECT_EQ(Changes[0].Bounds, (TBounds{160, 48, 96, 24}));
}

TEST_F(SurfaceTest, HandlesSizeAndTheInsideFollows) {
  Click(100, 80);
  ASSERT_THAT(Names(), ElementsAre("Panel1"));
  Drag({128, 88}, {152, 96});
  EXPECT_EQ(Step, "Size");
  ASSERT_EQ(Changes.size(), 1u);
  EXPECT_EQ(Changes[0].Bounds, (TBounds{8, 8, 144, 88}));
}

TEST_F(SurfaceTest, KeysMoveAndSizeByOnePixel) {
  Click(200, 28);
  QTest::keyClick(&Surface, Qt::Key_Right, Qt::ControlModifier);
  ASSERT_EQ(Changes.size(), 1u);
  EXPECT_EQ(Changes[0].Bounds, (TBounds{161, 16, 96, 24}));
  QTest::keyClick(&Surface, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Changes[0].Bounds, (TBounds{160, 16, 96, 25}));
}

TEST_F(SurfaceTest, ClickOnATabTurnsThePage) {
  const TComposedForm& form = *Surface.Form();
  EXPECT_FALSE(form.Find("Hidden1")->Shown);
  for (int x = 12; x < 200 && !Surface.Form()->Find("Hidden1")->Shown; x += 12) Click(x, 110);
  EXPECT_TRUE(Surface.Form()->Find("Hidden1")->Shown);
  Surface.Refresh();
  EXPECT_TRUE(Surface.Form()->Find("Hidden1")->Shown) << "the page stays turned";
}

TEST_F(SurfaceTest, ASelectionFromOutsideTurnsUpItsPageAndTellsNobody) {
  Surface.ShowSelection({dynamic_cast<TDesignComponent*>(File.Root->FindComponent("Hidden1"))});
  EXPECT_TRUE(Surface.Form()->Find("Hidden1")->Shown);
  EXPECT_EQ(Told, 0);
}

TEST_F(SurfaceTest, CtrlAndWheelZoomAndPlacesFollow) {
  const QSize before = Surface.size();
  QWheelEvent wheel(QPointF(50, 50), QPointF(50, 50), {}, QPoint(0, 120), Qt::NoButton,
                    Qt::ControlModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&Surface, &wheel);
  EXPECT_GT(Surface.Zoom(), 1);
  EXPECT_GT(Surface.width(), before.width());
  const QRect place =
      Surface.PlaceOf(*dynamic_cast<TDesignComponent*>(File.Root->FindComponent("Edit1")));
  QTest::mouseClick(&Surface, Qt::LeftButton, {}, place.center());
  EXPECT_THAT(Names(), ElementsAre("Edit1"));
  Surface.FitInto(QSize(160, 160));
  EXPECT_LE(Surface.width(), 160);
}

}  // namespace
}  // namespace wrenfold
