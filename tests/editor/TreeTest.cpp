// The tree of the editor: which nodes there are, what they are called, what the user does with
// them.
#include <gmock/gmock.h>

#include "EditorSupport.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Texts of the nodes, two blanks for each level.
std::string Outline(const TTreeNode& node, int level = 0) {
  std::string text = std::string(static_cast<std::size_t>(2 * level), ' ') + node.Text + '\n';
  for (const auto& child : node.Children) text += Outline(*child, level + 1);
  return text;
}

std::vector<std::string> RowNames(const TTreeNode& node) {
  std::vector<std::string> names;
  for (const TInstRow& row : node.Dscr.Rows) names.push_back(row.Property->Name);
  return names;
}

class Tree : public testing::Test {
 protected:
  void SetUp() override {
    Garden.AddPlace("Pond");
    Garden.AddPlace("");
    Garden.AddPlace("Pond");
    static_cast<TFixedCollection&>(*Garden.Keyed).Add("oak");
    Editor.SetSpcRoot(Garden);
  }
  void Show() {
    Editor.ShowTree();
    Application().ProcessMessages();
  }
  TAction& Action(const char* name) {
    Application().Idle();
    return *Editor.Form()->FindAction(name);
  }
  TGarden& Edited() { return static_cast<TGarden&>(*Editor.GetUpdatingSpc()); }
  std::string Places() {
    std::string names;
    for (const TCollectionItem* item : Edited().Places->Items())
      names += static_cast<const TPlace*>(item)->Name + '/';
    return names;
  }

  TGarden Garden;
  TAnswers Answers;
  TTestEditor Editor;
};

TEST_F(Tree, ObjectsAndCollectionsAreNodesAndNamesComeFromThemOrTheirProperties) {
  Show();
  EXPECT_EQ(Outline(*Editor.RootNode()),
            "TGarden\n"
            "  Inner\n"
            "  Places\n"
            "    Pond[1]\n"
            "    Places[2]\n"
            "    Pond[3]\n"
            "  Keyed\n"
            "    oak\n");
  EXPECT_THAT(RowNames(*Editor.RootNode()), ElementsAre("Title", "Count", "Wet", "Lines"));
  EXPECT_THAT(RowNames(*Editor.NodeAt("Places\nPond[1]")),
              ElementsAre("NodeName", "Number", "Open"));
}

TEST_F(Tree, OptionsSortHideAndNameByProperties) {
  Editor.Options.Include(eoSortProps);
  Editor.SimpleMode = true;
  Editor.InvisibleProps->SetText("tgarden.inner\nTGarden.Wet");
  Editor.TranslatingTable->SetText("[TGarden]\nPlaces=Beds\n");
  Show();
  EXPECT_EQ(Outline(*Editor.RootNode()),
            "TGarden\n"
            "  Keyed\n"
            "    Keyed[1]\n"
            "  Places\n"
            "    Places[1]\n"
            "    Places[2]\n"
            "    Places[3]\n");
  EXPECT_THAT(RowNames(*Editor.RootNode()), ElementsAre("Count", "Lines", "Title"));
}

TEST_F(Tree, TranslationsNameNodesAndFallBackToAncestors) {
  Editor.TranslatingTable->SetText(
      "[TGarden]\nPlaces=Beds##and ponds\nInner=Deep\n[TSpcCollection]\nPond=Teich\n");
  Show();
  EXPECT_EQ(Outline(*Editor.RootNode()),
            "TGarden\n"
            "  Deep\n"
            "  Beds and ponds\n"
            "    Teich[1]\n"
            "    Beds and ponds[2]\n"
            "    Teich[3]\n"
            "  Keyed\n"
            "    oak\n");
}

struct TActionRow {
  const char* Node;
  bool Add, Delete, Up, Down, Rename;
};

TEST_F(Tree, ActionsAreEnabledWhereTheyMeanSomething) {
  Garden.Keyed->Clear();
  Show();
  const TActionRow rows[] = {
      {"", false, false, false, false, true},
      {"Places", true, true, false, false, false},
      {"Keyed", true, false, false, false, false},
      {"Places\nPond[1]", true, true, false, true, true},
      {"Places\nPlaces[2]", true, true, true, true, true},
      {"Places\nPond[3]", true, true, true, false, true},
  };
  for (const TActionRow& row : rows) {
    Editor.Select(row.Node);
    EXPECT_EQ(Action("ActAddNode").Enabled(), row.Add) << row.Node;
    EXPECT_EQ(Action("ActDelNode").Enabled(), row.Delete) << row.Node;
    EXPECT_EQ(Action("ActMoveUp").Enabled(), row.Up) << row.Node;
    EXPECT_EQ(Action("ActMoveDown").Enabled(), row.Down) << row.Node;
    EXPECT_EQ(Action("ActNodeEdit").Enabled(), row.Rename) << row.Node;
  }
}

TEST_F(Tree, ItemsAreAddedMovedDeletedAndEachStepIsUndoneOnItsOwn) {
  Show();
  Editor.Select("Places\nPond[1]");
  Action("ActMoveDown").Execute();
  EXPECT_EQ(Places(), "/Pond/Pond/");
  EXPECT_EQ(Editor.SelectedNode()->Text, "Pond[2]");
  Editor.Select("Keyed");
  Action("ActAddNode").Execute();
  EXPECT_EQ(Editor.SelectedNode()->Text, "Item2");
  Editor.Select("Places\nPond[3]");
  Action("ActDelNode").Execute();
  EXPECT_EQ(Places(), "/Pond/");
  EXPECT_EQ(Editor.SelectedNode()->Text, "Pond[2]");
  Editor.Select("Places");
  Action("ActDelNode").Execute();
  EXPECT_EQ(Places(), "");
  EXPECT_THAT(Answers.Asked,
              ElementsAre("Delete selected element?", "Delete all elements of the selected node?"));
  ASSERT_EQ(Editor.Journal().Count(), 4);
  EXPECT_TRUE(Editor.UndoEntry(1));  // the added key
  EXPECT_EQ(Edited().Keyed->Count(), 1);
  EXPECT_TRUE(Editor.UndoLast());
  EXPECT_TRUE(Editor.UndoLast());
  EXPECT_TRUE(Editor.UndoLast());
  EXPECT_EQ(Places(), "Pond//Pond/");
  EXPECT_FALSE(Editor.Changed());
  EXPECT_FALSE(Editor.UndoLast());
}

class TRefuser {
 public:
  void Changing(TObject*, TCollection*, TCollectionItem*, TCollNotification action, bool& allow) {
    Actions.push_back(action);
    allow = false;
  }
  std::vector<TCollNotification> Actions;
};

TEST_F(Tree, ACollectionThatRefusesStaysAsItIs) {
  TRefuser refuser;
  Bind<&TRefuser::Changing>(Editor.OnCollectionChanging, &refuser);
  Show();
  Editor.Select("Places");
  Action("ActAddNode").Execute();
  Action("ActDelNode").Execute();
  Editor.Select("Places\nPond[1]");
  Action("ActDelNode").Execute();
  EXPECT_EQ(Places(), "Pond//Pond/");
  EXPECT_THAT(refuser.Actions, ElementsAre(cnAdding, cnClearing, cnDeleting));
  EXPECT_EQ(Editor.Journal().Count(), 0);
}

TEST_F(Tree, TheNameOfANodeIsEditedInTheTreeAndUndone) {
  Show();
  Editor.Select("Places\nPond[1]");
  ASSERT_TRUE(Editor.RenameNode(*Editor.SelectedNode(), "Lake"));
  EXPECT_EQ(Editor.SelectedNode()->Text, "Lake[1]");
  EXPECT_EQ(Editor.JournalText(), "Places / Pond[1] / NodeName: Pond -> Lake\n");
  EXPECT_TRUE(Editor.UndoLast());
  EXPECT_EQ(Editor.SelectedNode()->Text, "Pond[1]");
  EXPECT_FALSE(Editor.RenameNode(*Editor.NodeAt("Inner"), "x"));
}

TEST_F(Tree, WhatTheSelectionIsStandsInTheStatusBar) {
  Show();
  Editor.Select("");
  EXPECT_EQ(Editor.Form()->Panel(0), " Properties: 4");
  EXPECT_EQ(Editor.Form()->Panel(1), " TGarden");
  Editor.Select("Places\nPond[1]");
  EXPECT_EQ(Editor.Form()->Panel(1), " Pond[1]: TPlace");
}

TEST_F(Tree, SearchShowsHitsWithThoseAboveAndGivesFoldingAndSelectionBack) {
  Show();
  Editor.Select("Inner");
  EXPECT_FALSE(Editor.Form()->Tree().isExpanded(
      Editor.Form()->Tree().Model().IndexOf(Editor.NodeAt("Places"))));
  QLineEdit& field = Editor.Form()->SearchField();
  Editor.Press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(field.hasFocus());
  QTest::keyClicks(&field, "PON");
  EXPECT_EQ(Editor.SelectedNode(), Editor.NodeAt("Places\nPond[1]"));
  EXPECT_EQ(Editor.Form()->findChild<QLabel*>("lbHits")->text(), "2 found");
  const TSpcTreeModel& model = Editor.Form()->Tree().Model();
  EXPECT_FALSE(model.IndexOf(Editor.NodeAt("Inner")).isValid());
  EXPECT_FALSE(model.IndexOf(Editor.NodeAt("Places\nPlaces[2]")).isValid());
  EXPECT_TRUE(model.IndexOf(Editor.NodeAt("Places")).isValid());
  field.clear();
  EXPECT_EQ(Editor.SelectedNode(), Editor.NodeAt("Inner"));
  EXPECT_FALSE(Editor.Form()->Tree().isExpanded(model.IndexOf(Editor.NodeAt("Places"))));
}

TEST_F(Tree, AHitInANameIsSelectedBeforeAnEarlierOneInAValue) {
  Garden.Title = "Number";
  Show();
  Editor.Search("number");
  EXPECT_EQ(Editor.SelectedNode(), Editor.NodeAt("Places\nPond[1]"));
}

TEST_F(Tree, NothingToEditIsToldAndShowsNoWindow) {
  TTestEditor empty;
  EXPECT_THROW(empty.ShowTree(), ESpcEditorError);
  EXPECT_THROW(empty.ShowTreeEx(nullptr), ESpcEditorError);
  EXPECT_EQ(empty.Form(), nullptr);
}

}  // namespace
}  // namespace wrenfold::test
