// Changing forms: steps that are undone, arranging, snapping, text for the clipboard.
#include <gmock/gmock.h>

#include "designer/FormText.h"
#include "designer/model/Arrange.h"
#include "designer/model/ComponentText.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* Text =
    "object Form1: TForm1\n  Caption = 'x'\n  ClientWidth = 200\n  ClientHeight = 100\n"
    "  object Panel1: TPanel\n    Left = 8\n    Width = 100\n    Height = 50\n    Color = clRed\n"
    "    object Button1: TButton\n      Left = 70\n      Width = 20\n"
    "      Anchors = [akTop, akRight]\n    end\n  end\n"
    "  object Edit1: TEdit\n    Left = 4\n  end\nend\n";

struct TEdited {
  TEdited() : File(ReadFormFile(Text, "test")), History(*File.Root), Before(Stream()) {}
  TDesignComponent& At(const char* name) {
    return *dynamic_cast<TDesignComponent*>(File.Root->FindComponent(name));
  }
  std::string Stream() const { return WriteDesignForm(*File.Root); }

  TFormFile File;
  TFormHistory History;
  const std::string Before;
};

struct TChangeRow {
  const char* Name;
  void (*Change)(TEdited& edited);
};

TEST(FormHistory, EveryKindOfChangeIsUndoneAndDoneAgainExactly) {
  const TChangeRow rows[] = {
      {"value", [](TEdited& e) { e.History.SetInteger(e.At("Edit1"), "Left", 40); }},
      {"new value", [](TEdited& e) { e.History.SetInteger(e.At("Edit1"), "Top", 40); }},
      {"value gone", [](TEdited& e) { e.History.SetValue(e.At("Panel1"), "Width", {}); }},
      {"removed", [](TEdited& e) { e.History.Remove(e.At("Panel1")); }},
      {"order", [](TEdited& e) { e.History.SetChildIndex(e.At("Edit1"), 0); }},
      {"added",
       [](TEdited& e) {
         for (const std::string& stream :
              StreamsForPasting("object A: TLabel\nend\n", *e.File.Root))
           e.History.Add(stream, e.At("Panel1"));
       }},
      {"several",
       [](TEdited& e) {
         e.History.SetInteger(e.At("Button1"), "Left", 1);
         e.History.Remove(e.At("Button1"));
         e.History.Remove(e.At("Panel1"));
       }},
  };
  for (const TChangeRow& row : rows) {
    TEdited edited;
    edited.History.Begin(row.Name);
    row.Change(edited);
    edited.History.Commit();
    const std::string after = edited.Stream();
    EXPECT_NE(after, edited.Before) << row.Name;
    for (int round = 0; round < 2; ++round) {
      edited.History.Undo();
      EXPECT_EQ(edited.Stream(), edited.Before) << row.Name;
      EXPECT_TRUE(edited.History.AtSaved()) << row.Name;
      edited.History.Redo();
      EXPECT_EQ(edited.Stream(), after) << row.Name;
    }
  }
}

TEST(FormHistory, AStepAfterUndoDropsWhatWasUndone) {
  TEdited edited;
  const auto set = [&](int left) {
    edited.History.Begin("Move");
    edited.History.SetInteger(edited.At("Edit1"), "Left", left);
    edited.History.Commit();
  };
  set(10);
  edited.History.MarkSaved();
  edited.History.Undo();
  set(20);
  EXPECT_FALSE(edited.History.CanRedo());
  edited.History.Undo();
  EXPECT_FALSE(edited.History.AtSaved()) << "the saved form can no longer be reached";
}

TEST(FormHistory, AStepThatChangesNothingIsNone) {
  TEdited edited;
  edited.History.Begin("Move");
  edited.History.SetInteger(edited.At("Edit1"), "Left", 4);
  edited.History.Commit();
  EXPECT_FALSE(edited.History.CanUndo());
}

struct TArrangeRow {
  TArrangement Arrangement;
  std::vector<TBounds> Expected;
};

TEST(Arrange, FollowsTheFirstAndSpacesBetweenTheOuterOnes) {
  const std::vector<TBounds> start = {{10, 10, 20, 10}, {100, 30, 10, 20}, {40, 70, 30, 30}};
  const TArrangeRow rows[] = {
      {TArrangement::Lefts, {{10, 10, 20, 10}, {10, 30, 10, 20}, {10, 70, 30, 30}}},
      {TArrangement::Rights, {{10, 10, 20, 10}, {20, 30, 10, 20}, {0, 70, 30, 30}}},
      {TArrangement::Middles, {{10, 10, 20, 10}, {100, 5, 10, 20}, {40, 0, 30, 30}}},
      {TArrangement::SameWidth, {{10, 10, 20, 10}, {100, 30, 20, 20}, {40, 70, 20, 30}}},
      {TArrangement::SpaceAcross, {{10, 10, 20, 10}, {100, 30, 10, 20}, {50, 70, 30, 30}}},
      {TArrangement::SpaceDown, {{10, 10, 20, 10}, {100, 35, 10, 20}, {40, 70, 30, 30}}},
  };
  for (const TArrangeRow& row : rows)
    EXPECT_EQ(Arrange(row.Arrangement, start), row.Expected) << static_cast<int>(row.Arrangement);
}

TEST(Arrange, NearEdgesOfNeighboursWinOverTheGrid) {
  const TBounds neighbours[] = {{50, 0, 10, 10}};
  const TSnapped near = SnapMove({47, 21, 30, 30}, neighbours, 8, 4);
  EXPECT_EQ(near.Bounds, (TBounds{50, 24, 30, 30}));
  EXPECT_EQ(near.GuideX, 50);
  EXPECT_EQ(near.GuideY, -1);
}

TEST(Arrange, WhatIsAnchoredInsideFollowsItsParentsNewSize) {
  const TTestForm form(Text);
  TFormFile file = ReadFormFile(Text, "test");
  const auto changes = WithFollowers({{&form["Panel1"], {8, 0, 140, 50}}});
  ASSERT_EQ(changes.size(), 2u);
  EXPECT_EQ(changes[1].Node->Name(), "Button1");
  EXPECT_EQ(changes[1].Bounds.Left, 110);
}

TEST(ComponentText, PastedComponentsGetFreeNamesAndKeepTheirReferences) {
  const TEdited edited;
  const auto streams = StreamsForPasting(
      "object Edit1: TEdit\nend\nobject Label9: TLabel\n  FocusControl = Edit1\nend\n",
      *edited.File.Root);
  ASSERT_EQ(streams.size(), 2u);
  EXPECT_EQ(ReadDesignForm(streams[0])->Name(), "Edit2");
  const auto label = ReadDesignForm(streams[1]);
  EXPECT_EQ(label->Name(), "Label9");
  EXPECT_EQ(StoredIdentifier(label->FindValue("FocusControl")), "Edit2");
}

TEST(ComponentText, OtherTextIsRefused) {
  const TEdited edited;
  EXPECT_THROW(StreamsForPasting("hello world", *edited.File.Root), EParserError);
  EXPECT_TRUE(StreamsForPasting(" \n", *edited.File.Root).empty());
}

}  // namespace
}  // namespace wrenfold
