// Editing by real widgets and keys: what is stored when, told, marked, undone, saved and discarded.
#include <gmock/gmock.h>

#include <QTemporaryDir>

#include "EditorSupport.h"
#include "platform/core/system/Files.h"
#include "spec/rkSpcMng.h"
#include "storage/rkStorage.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Edit : public testing::Test {
 protected:
  void SetUp() override {
    Garden().AddPlace("Pond");
    Garden().AddPlace("Hedge");
    static_cast<TFixedCollection&>(*Garden().Keyed).Add("oak");
  }
  void Show() {
    Editor.ShowTree(Spc);
    QApplication::setActiveWindow(Editor.Form());
    Application().ProcessMessages();
  }
  TGarden& Garden() { return static_cast<TGarden&>(*Spc); }
  TGarden& Edited() { return static_cast<TGarden&>(*Editor.GetUpdatingSpc()); }
  std::string File(const char* name) const { return Folder.path().toStdString() + "/" + name; }
  static std::string Bytes(TPersistent& object) { return GetProps({&object}, osfBin); }

  QTemporaryDir Folder;
  std::unique_ptr<TSpcObject> Spc = std::make_unique<TGarden>();
  TTestEditor Editor;
};

TEST_F(Edit, AChangeIsStoredWhenTheRowIsLeftOrConfirmedAndIsInTheSpecificationAfterSaving) {
  TAnswers answers;
  Show();
  Editor.Type("Title", "Wisley", false);
  EXPECT_EQ(Edited().Title, "Kew") << "while typing";
  Editor.Widget("Count")->setFocus();
  EXPECT_EQ(Edited().Title, "Wisley") << "left";
  Editor.Type("Count", "8");
  EXPECT_EQ(Edited().Count(), 8) << "confirmed";
  EXPECT_EQ(Garden().Title, "Kew") << "the clone is edited";
  EXPECT_EQ(Editor.JournalText(), "TGarden / Title: Kew -> Wisley\nTGarden / Count: 5 -> 8\n");
  Editor.SetFile(File("garden.sbn"), osfBin);
  ASSERT_TRUE(Editor.Save());
  EXPECT_EQ(Garden().Title, "Wisley");
  EXPECT_EQ(Garden().Count(), 8);
  EXPECT_FALSE(Editor.Changed());
  EXPECT_TRUE(Editor.Saved());
  EXPECT_TRUE(Editor.Form()->Close());
  EXPECT_THAT(answers.Asked, IsEmpty());
}

TEST_F(Edit, AnEditInProgressIsStoredWhereverTheUserGoes) {
  const struct {
    const char* Name;
    void (*Go)(TTestEditor& editor);
  } rows[] = {
      {"selection", [](TTestEditor& editor) { editor.Select("Inner"); }},
      {"search", [](TTestEditor& editor) { editor.Search("remark"); }},
      {"changed only", [](TTestEditor& editor) { editor.SetChangedOnly(true); }},
      {"language", [](TTestEditor& editor) { editor.Retranslate(); }},
      {"item added", [](TTestEditor& editor) { editor.AddNode(*editor.NodeAt("Places")); }},
  };
  for (const auto& row : rows) {
    Show();
    Editor.Select("");
    Editor.Type("Title", "Wisley", false);
    row.Go(Editor);
    EXPECT_EQ(Edited().Title, "Wisley") << row.Name;
    EXPECT_GE(Editor.Journal().Count(), 1) << row.Name;
    const TAnswers answers({mbNo});
    EXPECT_TRUE(Editor.Form()->Close()) << row.Name;
    Application().ProcessMessages();
  }
}

TEST_F(Edit, AValueThatIsRefusedIsToldAtItsRowAndIsNoChange) {
  TAnswers answers({mbNo});
  Show();
  Editor.Type("Count", "13");
  EXPECT_EQ(Edited().Count(), 5);
  const TControlInfo& row = Editor.Row("Count");
  ASSERT_NE(row.Message, nullptr);
  EXPECT_EQ(row.Message->text(), "thirteen is never planted");
  EXPECT_TRUE(row.Message->isVisible());
  EXPECT_EQ(Editor.Journal().Count(), 0);
  Editor.Press(Qt::Key_Escape);
  EXPECT_EQ(Editor.Row("Count").Message, nullptr);
  Editor.Type("Count", "13");
  EXPECT_TRUE(Editor.Form()->Close());
  EXPECT_THAT(answers.Asked, IsEmpty());
}

TEST_F(Edit, ClosingAsksAndEachAnswerDoesWhatItSays) {
  const std::string before = Bytes(Garden());
  const struct {
    TMsgDlgBtn Answer;
    bool Closes, Saves;
  } rows[] = {{mbCancel, false, false}, {mbNo, true, false}, {mbYes, true, true}};
  for (const auto& row : rows) {
    TAnswers answers({row.Answer});
    Show();
    Editor.SetFile(File("garden.stx"), osfText);
    Editor.Type("Title", "Wisley");
    Editor.Select("Inner");
    Editor.Type("Depth", "9");
    EXPECT_EQ(Editor.Form()->Close(), row.Closes);
    EXPECT_THAT(answers.Asked, ElementsAre("Save changes in specification?"));
    EXPECT_EQ(Bytes(Garden()) == before, !row.Saves);
    EXPECT_EQ(FileExists(File("garden.stx")), row.Saves);
    if (!row.Closes) {
      EXPECT_EQ(Edited().Inner->Depth, 9) << "cancelled: nothing is lost";
      TAnswers no({mbNo});
      Editor.Form()->Close();
    }
    Application().ProcessMessages();
  }
}

// Edited in place: nothing makes a copy of it.
TEST_F(Edit, WhatCannotBeClonedIsGivenBackByteForByte) {
  const std::string before = Bytes(Garden());
  TPlace* pond = static_cast<TPlace*>(Garden().Places->Item(0));
  TAnswers answers({mbYes, mbNo});
  Editor.ShowTreeEx(Spc.get());
  Editor.Type("Title", "Wisley");
  EXPECT_EQ(Garden().Title, "Wisley");
  Editor.Select("Places\nHedge[2]");
  Editor.DeleteNode(*Editor.SelectedNode());
  Editor.AddNode(*Editor.NodeAt("Places"));
  Editor.MoveNode(*Editor.SelectedNode(), nmUp, true);
  EXPECT_NE(Bytes(Garden()), before);
  EXPECT_TRUE(Editor.Form()->Close());
  EXPECT_EQ(Bytes(Garden()), before);
  EXPECT_EQ(Garden().Places->Item(0), pond) << "the same object";
}

TEST_F(Edit, NodesThatAreOnlyLookedAtAreSavedAsTheyWere) {
  Show();
  const std::string before = Bytes(Garden());
  std::vector<TTreeNode*> nodes;
  ForEachNode(*Editor.RootNode(), [&](TTreeNode& node) { nodes.push_back(&node); });
  for (TTreeNode* node : nodes) Editor.SelectNode(node);
  ASSERT_TRUE(Editor.SaveToFile(File("garden.sbn"), osfBin));
  EXPECT_EQ(Bytes(Garden()), before);
}

TEST_F(Edit, MarksShowWhatIsNotDefaultUpToTheRootAndAResetRowStaysInView) {
  Garden().Inner->Depth = 4;
  Show();
  EXPECT_TRUE(Editor.RootNode()->Changes > 0);
  EXPECT_EQ(Editor.NodeAt("Inner")->OwnChanges, 1);
  EXPECT_EQ(Editor.RootNode()->OwnChanges, 0);
  Editor.Select("Inner");
  Editor.SetChangedOnly(true);
  EXPECT_FALSE(Editor.Widget("Remark")->isVisible());
  EXPECT_TRUE(Editor.Widget("Depth")->isVisible());
  TControlInfo& row = Editor.Row("Depth");
  EXPECT_EQ(Editor.RowHint(row), "Depth\nDefault: 1\nStored: 4\nCurrent: 4");
  Editor.ResetRow(row, false);
  EXPECT_EQ(Edited().Inner->Depth, 1);
  EXPECT_EQ(Editor.NodeAt("Inner")->OwnChanges, 0);
  EXPECT_TRUE(Editor.Widget("Depth")->isVisible());
  EXPECT_FALSE(Editor.CanReset(row, false));
  Editor.ResetRow(row, true);
  EXPECT_EQ(Edited().Inner->Depth, 4);
  EXPECT_EQ(Editor.NameAndValue(row), "Depth\t4");
}

TEST_F(Edit, EachChangeIsUndoneOnItsOwnAndALaterOneOfTheSameValueStays) {
  Show();
  Editor.Type("Title", "B");
  Editor.Type("Count", "7");
  Editor.Type("Title", "C");
  ASSERT_TRUE(Editor.UndoEntry(0));
  EXPECT_EQ(Edited().Title, "C");
  EXPECT_EQ(Editor.JournalText(), "TGarden / Count: 5 -> 7\nTGarden / Title: Kew -> C\n");
  Editor.Form()->Tree().setFocus();
  Editor.Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Edited().Title, "Kew");
  EXPECT_EQ(Editor.Row("Title").Row->Modified(), false);
  EXPECT_EQ(static_cast<QLineEdit*>(Editor.Widget("Title"))->text(), "Kew");
  EXPECT_EQ(Edited().Count(), 7);
}

TEST_F(Edit, AChangeInsideADeletedItemIsOfferedOnceTheDeletionIsUndone) {
  const TAnswers answers;
  Show();
  Editor.Select("Places\nPond[1]");
  Editor.Type("Number", "44");
  Editor.DeleteNode(*Editor.SelectedNode());
  EXPECT_FALSE(Editor.Journal().CanUndo(0));
  EXPECT_FALSE(Editor.UndoEntry(0));
  ASSERT_TRUE(Editor.UndoLast());
  EXPECT_TRUE(Editor.Journal().CanUndo(0));
  EXPECT_EQ(static_cast<TPlace*>(Edited().Places->Item(0))->Number, 44);
  ASSERT_TRUE(Editor.UndoEntry(0));
  EXPECT_EQ(static_cast<TPlace*>(Edited().Places->Item(0))->Number, 3);
  EXPECT_FALSE(Editor.Changed());
}

TEST_F(Edit, KeysOfKeyedItemsAndNamedPropertiesAreDisabled) {
  Editor.DisabledProps->Add("TGarden.Title");
  Show();
  EXPECT_FALSE(Editor.Widget("Title")->isEnabled());
  EXPECT_TRUE(Editor.Widget("Count")->isEnabled());
  Editor.Select("Keyed\noak");
  EXPECT_FALSE(Editor.Widget("Key")->isEnabled());
  EXPECT_TRUE(Editor.Widget("Value")->isEnabled());
}

TEST_F(Edit, ControlsAreNamedAfterTheirLabels) {
  Editor.TranslatingTable->SetText("[TGarden]\nTitle=Name of##the garden\n");
  Show();
  EXPECT_EQ(Editor.Widget("Title")->accessibleName(), "Name of the garden");
  EXPECT_EQ(Editor.Row("Title").Label->buddy(), Editor.Widget("Title"));
  EXPECT_EQ(Editor.Row("Title").Label->text(), "Name of\nthe garden :");
}

TEST_F(Edit, LayoutSectionsSetWidthsAndPropertiesAndThePropertysOwnWins) {
  Editor.ControlParams->SetText("[StringControl]\nWidth=50%\nHint=typed\n");
  Editor.RedefiedParams->SetText("[TGarden.Title]\nWidth=113\nHeight=47\nCentredLabel=true\n");
  Show();
  EXPECT_EQ(Editor.Widget("Title")->height(), 47);
  EXPECT_EQ(Editor.Widget("Title")->width(), 113);
  EXPECT_EQ(Editor.Widget("Title")->toolTip(), "typed");
  Editor.Select("Inner");
  EXPECT_GT(Editor.Widget("Remark")->width(), 113);
  Editor.SimpleMode = true;
  Editor.Select("");
  EXPECT_NE(Editor.Widget("Title")->width(), 113);
}

TEST(Width, IsAShareUpToAHundredOrPixels) {
  int width = 0;
  bool percent = false;
  ParseWidth("0%", width, percent);
  EXPECT_TRUE(width == 0 && percent);
  ParseWidth("13", width, percent);
  EXPECT_TRUE(width == 13 && !percent);
  EXPECT_THROW(ParseWidth("101%", width, percent), ESpcEditorError);
  EXPECT_THROW(ParseWidth("-1%", width, percent), ESpcEditorError);
  EXPECT_THROW(ParseWidth("wide", width, percent), EConvertError);
}

TEST_F(Edit, FilesComeBackInBothFormatsAndABadOneLeavesEverything) {
  for (const TObjectStorageFormat format : {osfBin, osfText}) {
    Show();
    Editor.Type("Title", format == osfBin ? "binary" : "text");
    ASSERT_TRUE(Editor.SaveToFile(File("garden"), format));
    Garden().Title = "other";
    ASSERT_TRUE(Editor.LoadFromFile(Spc, File("garden")));
    EXPECT_EQ(Garden().Title, format == osfBin ? "binary" : "text");
    EXPECT_EQ(Editor.FileFormat(), format);
    EXPECT_EQ(Garden().Places->Count(), 2);
    Editor.Form()->Close();
    Application().ProcessMessages();
  }
  SafeWriteFile(File("broken"), "TPF0 nonsense");
  TAnswers answers({mbOK});
  TSpcObject* before = Spc.get();
  EXPECT_FALSE(Editor.LoadFromFile(Spc, File("broken")));
  EXPECT_FALSE(Editor.LoadFromFile(Spc, File("missing")));
  EXPECT_EQ(Spc.get(), before);
  ASSERT_EQ(answers.Asked.size(), 2u);
  EXPECT_THAT(answers.Asked[0], HasSubstr("broken"));
  EXPECT_THAT(answers.Asked[1], HasSubstr("not found"));
}

TEST_F(Edit, ASaveThatFailsIsToldAndKeepsTheWindowAndTheChanges) {
  Show();
  Editor.SetFile(File("no/such/folder/garden.sbn"), osfBin);
  Editor.Type("Title", "Wisley");
  TAnswers answers({mbYes, mbOK});
  EXPECT_FALSE(Editor.Form()->Close());
  EXPECT_EQ(answers.Asked.size(), 2u);
  EXPECT_TRUE(Editor.Form()->isVisible());
  EXPECT_FALSE(Editor.Saved());
  EXPECT_TRUE(Editor.Changed());
  TAnswers no({mbNo});
  Editor.Form()->Close();
}

TEST_F(Edit, WindowSettingsComeBackAndNonsenseIsLeftAlone) {
  Show();
  Editor.Form()->Area().SectionResize(0, 177);
  Editor.Form()->Close();
  Application().ProcessMessages();
  EXPECT_THAT(Editor.Setting, HasSubstr("LabelSectionWidth=177"));
  EXPECT_THAT(Editor.Setting, HasSubstr("WindowPlacement="));
  Show();
  EXPECT_EQ(Editor.Form()->Area().AreaWidth(akLabel, 0), 177);
  Editor.Form()->Close();
  Application().ProcessMessages();
  Editor.Setting = "WindowPlacement=far away\nTreeWidth=-9\nLabelSectionWidth=99999999999\n";
  Show();
  EXPECT_EQ(Editor.Form()->Area().AreaWidth(akLabel, 0), Editor.LabelAreaInfo->DefAreaWidth);
  EXPECT_THROW(Editor.Form()->Area().SectionResize(2, 100), ESpcEditorError);
  EXPECT_THROW(Editor.BeginUpdate(akLabel, -1), ESpcEditorError);
}

TEST_F(Edit, WithoutAFileEveryChangeCanBeInTheObjectAtOnce) {
  Editor.Options = {eoSaveSpcOnChange};
  Editor.ShowTreeEx(Spc.get());
  Editor.Type("Title", "Wis", false);
  EXPECT_EQ(Garden().Title, "Wis");
  EXPECT_EQ(Editor.Journal().Count(), 0) << "not each key is a change";
  Editor.Type("Count", "6");
  Editor.Select("Inner");
  EXPECT_EQ(Editor.JournalText(), "TGarden / Title: Kew -> Wis\nTGarden / Count: 5 -> 6\n");
}

}  // namespace
}  // namespace wrenfold::test
