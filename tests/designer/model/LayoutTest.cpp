// Where components lie, and which one is seen at a place.
#include <gmock/gmock.h>

#include "designer/FormText.h"
#include "designer/model/HitTest.h"

namespace wrenfold {

void PrintTo(const TBounds& bounds, std::ostream* out) {
  *out << bounds.Left << "," << bounds.Top << " " << bounds.Width << "x" << bounds.Height;
}

namespace {

struct TBoundsRow {
  const char* Name;
  const char* Root;
  const char* Component;
  TBounds Expected;
};

TEST(Layout, StoredBoundsStandAndDefaultsFillIn) {
  const char* sized = "ClientWidth = 200\n  ClientHeight = 100";
  const TBoundsRow rows[] = {
      {"stored",
       sized,
       "object C: TButton\n Left = 1\n Top = 2\n Width = 3\n Height = 4",
       {1, 2, 3, 4}},
      {"default size", sized, "object C: TButton\n Left = 1\n Top = 2", {1, 2, 75, 25}},
      {"aligned as stored",
       sized,
       "object C: TPanel\n Top = 9\n Width = 50\n Height = 7\n Align = alTop",
       {0, 9, 50, 7}},
      {"aligned without a size", sized, "object C: TPanel\n Align = alClient", {0, 0, 200, 100}},
      {"status bar", sized, "object C: TStatusBar", {0, 81, 200, 19}},
      {"monstrous",
       sized,
       "object C: TPanel\n Left = -2000000000\n Width = 2000000000\n Height = -5",
       {-MaxBound, 0, MaxBound, 0}},
      {"wrong type",
       sized,
       "object C: TPanel\n Left = 'a'\n Width = nil\n Height = 9.5",
       {0, 0, 185, 41}},
  };
  for (const TBoundsRow& row : rows) {
    const TTestForm form(std::string("object A: TA\n  Caption = 'x'\n  ") + row.Root + "\n  " +
                         row.Component + "\n  end\nend\n");
    EXPECT_EQ(form["C"].Bounds, row.Expected) << row.Name;
  }
}

TEST(Layout, OuterSizesLoseTheFrameThatTheyWereStoredWith) {
  EXPECT_EQ(TTestForm("object A: TA\n  Caption = 'x'\n  Width = 108\n  Height = 127\nend\n")
                ->Root()
                .Client,
            (TBounds{0, 0, 100, 100}));
  EXPECT_EQ(
      TTestForm(
          "object A: TA\n  Caption = 'x'\n  Width = 108\n  Height = 127\n  LCLVersion = '2'\nend\n")
          ->Root()
          .Client,
      (TBounds{0, 0, 108, 127}));
}

TEST(Layout, HugeWindowsAreCutWithAWord) {
  const TTestForm form("object A: TA\n  Caption = 'x'\n  ClientWidth = 2000000000\nend\n");
  EXPECT_EQ(form->Root().Client.Width, MaxWindowSide);
  EXPECT_THAT(form->Notes(), testing::Contains(testing::HasSubstr("2000000000 pixels wide")));
}

struct TAlignRow {
  const char* Name;
  TAligned Control;
  TBounds Expected;
};

TEST(Layout, ControlsFollowTheirParentsSize) {
  const TBounds start{10, 10, 20, 20};
  const TAlignRow rows[] = {
      {"left top", {start}, {10, 10, 20, 20}},
      {"right", {start, TAlign::None, false, true, true}, {60, 10, 20, 20}},
      {"both sides", {start, TAlign::None, true, true, true, true}, {10, 10, 70, 50}},
      {"no side", {start, TAlign::None, false, false}, {35, 25, 20, 20}},
      {"top", {start, TAlign::Top}, {0, 0, 150, 20}},
      {"bottom", {start, TAlign::Bottom}, {0, 110, 150, 20}},
      {"right edge", {start, TAlign::Right}, {130, 0, 20, 130}},
      {"client", {start, TAlign::Client}, {0, 0, 150, 130}},
  };
  for (const TAlignRow& row : rows) {
    TAligned control = row.Control;
    AlignControls(std::span(&control, 1), {100, 100}, {150, 130});
    EXPECT_EQ(control.Bounds, row.Expected) << row.Name;
  }
}

TEST(Layout, AlignedControlsShareTheRoomTopFirst) {
  TAligned controls[] = {{{0, 0, 10, 10}, TAlign::Client},
                         {{0, 0, 10, 10}, TAlign::Left},
                         {{0, 0, 10, 10}, TAlign::Top}};
  AlignControls(controls, {50, 50}, {100, 100});
  EXPECT_EQ(controls[2].Bounds, (TBounds{0, 0, 100, 10}));
  EXPECT_EQ(controls[1].Bounds, (TBounds{0, 10, 10, 90}));
  EXPECT_EQ(controls[0].Bounds, (TBounds{10, 10, 90, 90}));
}

TEST(Layout, FrameOfAnotherSizeMovesWhatIsAnchoredInIt) {
  auto forms = std::make_shared<TTestForms>();
  forms->Add(
      "object F: TF\n  Width = 100\n  Height = 20\n  TabOrder = 0\n"
      "  object B: TButton\n    Left = 70\n    Width = 20\n    Anchors = [akTop, akRight]\n  end\n"
      "  object C: TButton\n    Left = 70\n    Width = 20\n    Anchors = [akTop, akRight]\n  end\n"
      "end\n");
  const TTestForm form(
      "object A: TA\n  Caption = 'x'\n  inline F: TF\n    Width = 150\n    inherited C: TButton\n"
      "      Left = 90\n    end\n  end\nend\n",
      forms);
  EXPECT_EQ(form["F.B"].Bounds.Left, 120);
  EXPECT_EQ(form["F.C"].Bounds.Left, 90);
}

constexpr const char* Pages =
    "object A: TA\n  Caption = 'x'\n  ClientWidth = 300\n  ClientHeight = 200\n"
    "  object P: TPageControl\n    Width = 289\n    Height = 193\n    ActivePage = T2\n"
    "    object T1: TTabSheet\n      object B1: TButton\n      end\n    end\n"
    "    object T2: TTabSheet\n      object B2: TButton\n      end\n    end\n  end\nend\n";

TEST(Layout, OnlyTheActivePageIsShownUntilAnotherIsTurnedUp) {
  const TTestForm form(Pages);
  EXPECT_FALSE(form["B1"].Shown);
  EXPECT_TRUE(form["B2"].Shown);
  TurnTo(*form.Form, form["T1"]);
  LayoutForm(*form.Form);
  EXPECT_TRUE(form["B1"].Shown);
  EXPECT_FALSE(form["B2"].Shown);
}

TEST(Layout, HundredThousandPagesAndDeepNestingTakeNoAge) {
  std::string many = "object A: TA\n  Caption = 'x'\n  object P: TPageControl\n";
  for (int i = 0; i < 100'000; ++i)
    many += "    object T" + std::to_string(i) + ": TTabSheet\n    end\n";
  EXPECT_EQ(TTestForm(many + "  end\nend\n")->Nodes().size(), 100'002u);

  std::string deep = "object A: TA\n  Caption = 'x'\n", ends;
  for (int i = 0; i < 500; ++i) {
    deep += "object P" + std::to_string(i) + ": TPanel\n";
    ends += "end\n";
  }
  const TTestForm nested(deep + ends + "end\n");
  EXPECT_NE(nested->Find("P499"), nullptr);
}

TEST(HitTest, FindsTheFrontmostAndNotWhatIsCutOff) {
  const TTestForm form(
      "object A: TA\n  Caption = 'x'\n  ClientWidth = 200\n  ClientHeight = 100\n"
      "  object Back: TPanel\n    Width = 100\n    Height = 100\n"
      "    object Inner: TButton\n      Left = 90\n      Width = 50\n      Height = 20\n    end\n  "
      "end\n"
      "  object Front: TPanel\n    Left = 50\n    Top = 50\n    Width = 100\n    Height = 50\n  "
      "end\n"
      "  object Text: TLabel\n    Width = 60\n    Height = 60\n  end\nend\n");
  const auto at = [&](int x, int y) {
    const TDesignNode* node = NodeAt(*form.Form, {x, y});
    return node != nullptr ? node->Name() : "none";
  };
  EXPECT_EQ(at(95, 10), "Inner");
  EXPECT_EQ(at(120, 10), "A") << "the part outside of its parent";
  EXPECT_EQ(at(60, 60), "Front");
  EXPECT_EQ(at(10, 10), "Back") << "a label lies behind what has a window";
  EXPECT_EQ(at(500, 10), "none");
}

}  // namespace
}  // namespace wrenfold
