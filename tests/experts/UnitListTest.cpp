// Tests the list of open units: order, moves, drops, filter, history, ambiguous names.
#include <gmock/gmock.h>

#include "experts/rkUnitList.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;

std::string Texts(const TUnitList& units) {
  std::string texts;
  for (const TUnitList::TItem& item : units.Items())
    texts += (texts.empty() ? "" : " ") + item.Text;
  return texts;
}

void Fill(TUnitList& units, const char* commaText) {
  TStringList tabs;
  tabs.SetCommaText(commaText);
  units.PopulateUnitList(tabs);
}

TEST(Move, IsBoundedAndKeepsTheOrder) {
  const struct {
    const char* Name;
    std::vector<int> Selected;
    int Delta;
    bool Moved;
    const char* Order;
  } rows[] = {
      {"first up", {0}, -1, false, "a b c d e"},
      {"last down", {4}, 1, false, "a b c d e"},
      {"refused whole when the first would leave", {0, 3}, -1, false, "a b c d e"},
      {"not shortened", {2}, 3, false, "a b c d e"},
      {"two apart down", {1, 3}, 1, true, "a c b e d"},
      {"two apart up", {1, 3}, -1, true, "b a d c e"},
      {"block down to the end", {0, 1}, 3, true, "c d e a b"},
      {"block up to the top", {3, 4}, -3, true, "d e a b c"},
      {"apart and far", {0, 2}, 2, true, "b d a e c"},
      {"nothing selected", {}, 1, false, "a b c d e"},
      {"no way", {1}, 0, false, "a b c d e"},
  };
  for (const auto& row : rows) {
    TUnitList units;
    Fill(units, "a,b,c,d,e");
    units.SetSelected(row.Selected);
    std::vector<int> expected = row.Selected;
    for (int& index : expected) index += row.Moved ? row.Delta : 0;
    EXPECT_EQ(units.Move(row.Delta), row.Moved) << row.Name;
    EXPECT_EQ(Texts(units), row.Order) << row.Name;
    EXPECT_EQ(units.GetSelectedUnits(), expected) << row.Name;
  }
}

// The rule for one item at a time: each selected item travels past its neighbours.
TEST(Move, ComesToTheSameAsOneExchangeAfterTheOther) {
  for (unsigned mask = 1; mask < 64; ++mask) {
    for (int delta = -5; delta <= 5; ++delta) {
      TUnitList units;
      Fill(units, "a,b,c,d,e,f");
      std::vector<int> selected;
      for (int i = 0; i < 6; ++i)
        if (mask >> i & 1) selected.push_back(i);
      units.SetSelected(selected);
      std::string order = "abcdef";
      if (units.Move(delta)) {
        if (delta > 0) std::reverse(selected.begin(), selected.end());
        for (const int index : selected)
          for (int at = index; at != index + delta; at += delta > 0 ? 1 : -1)
            std::swap(order[static_cast<std::size_t>(at)],
                      order[static_cast<std::size_t>(at + (delta > 0 ? 1 : -1))]);
      }
      std::string moved;
      for (const auto& item : units.Items()) moved += item.Text;
      EXPECT_EQ(moved, order) << "mask " << mask << " delta " << delta;
    }
  }
}

TEST(Drop, LandsABlockOnItsTargetAndIsRefusedInsideAndBelow) {
  const struct {
    const char* Name;
    std::vector<int> Selected;
    int Target;
    bool Accepted;
    const char* Order;
  } rows[] = {
      {"before", {2, 3}, 0, true, "c d a b e"},
      {"behind, last item on the target", {0, 1}, 3, true, "c d a b e"},
      {"inside", {1, 3}, 2, false, ""},
      {"on the selection", {1}, 1, false, ""},
      {"below the last item", {0, 1}, 5, true, "a b c d e"},
  };
  for (const auto& row : rows) {
    TUnitList units;
    Fill(units, "a,b,c,d,e");
    units.SetSelected(row.Selected);
    EXPECT_EQ(units.AcceptsDrop(row.Target), row.Accepted) << row.Name;
    if (!row.Accepted) continue;
    units.Move(units.DropDelta(units.GetFirstSelected(), row.Target));
    EXPECT_EQ(Texts(units), row.Order) << row.Name;
  }
}

TEST(Sort, AlternatesAndStartsAscendingAfterEveryFill) {
  TUnitList units;
  Fill(units, "Gamma,Alpha,beta");
  units.Sort();
  EXPECT_EQ(Texts(units), "Alpha beta Gamma");
  units.Sort();
  EXPECT_EQ(Texts(units), "Gamma beta Alpha");
  Fill(units, "Gamma,beta,Alpha");
  units.Sort();
  EXPECT_EQ(Texts(units), "Alpha beta Gamma");
}

TEST(Filter, KeepsWhatHasTheTextAnywhereAndStopsSortAndMove) {
  TUnitList units;
  Fill(units, "MainUnit,Unit2,DataMain");
  units.SetSelected({0, 1});
  units.SetCurrent(2);
  units.UpdateUnitList("mAin");
  units.Filtered = true;
  EXPECT_EQ(Texts(units), "MainUnit DataMain");
  EXPECT_THAT(units.GetSelectedUnits(), ElementsAre(0));
  EXPECT_EQ(units.GetSelectedUnit(), 1);
  EXPECT_EQ(units.Items()[1].TabPosition, 2) << "pages are addressed by their tab";
  EXPECT_FALSE(units.Move(1));
  EXPECT_FALSE(units.Sort());
  EXPECT_EQ(Texts(units), "MainUnit DataMain");
}

TEST(ArrangeTabs, TakesEveryPagesObjectAndTheActivePageAlong) {
  TObject data[3];
  TStringList tabs, arranged;
  tabs.AddObject("a", &data[0]);
  tabs.AddObject("b", &data[1]);
  tabs.AddObject("a", &data[2]);
  TUnitList units;
  units.PopulateUnitList(tabs);
  units.SetSelected({2});
  units.Move(-1);
  EXPECT_EQ(units.ArrangeTabs(tabs, 2, arranged), 1);
  EXPECT_EQ(arranged.CommaText(), "a,a,b");
  EXPECT_EQ(arranged.GetObject(1), &data[2]);
  EXPECT_EQ(arranged.GetObject(2), &data[1]);
  EXPECT_EQ(units.ArrangeTabs(arranged, -1, tabs), 3) << "no active page";
}

TEST(Tabs, AnItemIsFoundByItsPageAndNotByItsOldPlace) {
  TObject data[3];
  TStringList tabs;
  tabs.AddObject("a", &data[0]);
  tabs.AddObject("b", &data[1]);
  tabs.AddObject("b", &data[2]);
  TUnitList units;
  units.PopulateUnitList(tabs);
  const auto& items = units.Items();
  EXPECT_EQ(TUnitList::FindTab(items[2], tabs), 2);
  tabs.Delete(0);
  EXPECT_EQ(TUnitList::FindTab(items[0], tabs), -1) << "another page stands there now";
  EXPECT_EQ(TUnitList::FindTab(items[1], tabs), 0);
  EXPECT_EQ(TUnitList::FindTab(items[2], tabs), 1) << "not the view with the same caption";
  tabs.Put(1, "renamed");
  EXPECT_EQ(TUnitList::FindTab(items[2], tabs), -1);
}

TEST(History, KeepsAKnownTextInPlaceAndDropsOneAtTheEnd) {
  std::vector<std::string> history{"b", "a"};
  SaveHistory(history, "a", 2);
  EXPECT_THAT(history, ElementsAre("b", "a"));
  SaveHistory(history, "A", 2);
  EXPECT_THAT(history, ElementsAre("A", "b")) << "letter case counts";
  SaveHistory(history, "c", 1);
  EXPECT_THAT(history, ElementsAre("c", "A")) << "one entry a call";
  SaveHistory(history, "d", 0);
  EXPECT_THAT(history, ElementsAre("d", "c"));
}

TEST(EditorIndex, TellsNamesThatSayTooLittle) {
  TEditorIndex index;
  index.Assign(
      {{"C:\\Work\\Unit1.pas", 1}, {"/x/Unit2.pas", 2}, {"/y/Twin.pas", 1}, {"/z/TWIN.pas", 1}});
  EXPECT_EQ(index.FindSourceEditor("UNIT1"), 0);
  EXPECT_FALSE(index.HasDublicate("Unit1"));
  EXPECT_TRUE(index.HasDublicate("Unit2")) << "two views";
  EXPECT_TRUE(index.HasDublicate("Twin")) << "two files";
  EXPECT_EQ(index.FindSourceEditor("Twin"), 2);
  EXPECT_EQ(index.FindSourceEditor("Unit"), -1);
  EXPECT_FALSE(index.HasDublicate("Unit"));
}

}  // namespace
}  // namespace wrenfold
