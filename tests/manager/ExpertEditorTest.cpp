// The settings editor over the settings root: what it shows, keeps, discards and puts in force.
#include <gmock/gmock.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QTimer>
#include <QtTest/QTest>
#include <filesystem>

#include "FileDialogDriver.h"
#include "ManagerSupport.h"
#include "editor/rkSpcForm.h"
#include "manager/rkExpertEditor.h"
#include "manager/rkSettingsFile.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ExpertEditor : public testing::Test {
 protected:
  void SetUp() override { Fixture.Start(); }

  TExpertEditor& Editor() { return *Fixture.Manager().Editor(); }
  // Opens the editor and runs the call in it; the call closes it, else it is closed behind it.
  void Edit(const std::function<void()>& call) {
    QTimer::singleShot(0, [&] {
      QApplication::setActiveWindow(Editor().Form());
      call();
      if (CurrentManager() != nullptr && Editor().Form() != nullptr) Editor().Form()->Close();
    });
    Fixture.Manager().EditSettings();
    TManagerFixture::Settle();
  }
  TTreeNode* Node(const TPersistent* instance) { return Editor().FindNode(instance); }
  TControlInfo& Row(const char* property) {
    for (const auto& row : Editor().Rows())
      if (row->EPropInfo->Name == property) return *row;
    throw Exception(std::string("no row ") + property);
  }
  void Type(const char* property, const char* text) {
    QWidget* field = Row(property).EControl->Widget();
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
  }
  // As the tool button does it.
  void Press(const char* action) {
    TSpcForm* form = Editor().Form();
    Guarded(form, [&] { form->FindAction(action)->Execute(); });
  }
  void SwitchOff(const char* expert) {
    Editor().SelectNode(Node(SettingsRoot()->ActiveExperts->Find(expert)));
    static_cast<QCheckBox*>(Row("Active").EControl->Widget())->click();
  }
  static std::string Bytes() {
    TObjectSaver saver;
    TPersistent* const objects[] = {SettingsRoot()};
    return saver.GetObjectProps(objects);
  }

  TManagerFixture Fixture;
};

TEST_F(ExpertEditor, ShowsExpertsCommandsAndSettingsUnderTheirNames) {
  std::string outline, labels;
  Edit([&] {
    ForEachNode(*Editor().RootNode(), [&](TTreeNode& node) { outline += node.Text + '\n'; });
    Editor().SelectNode(Node(SettingsRoot()->MenuData->Item(0)));
    for (const auto& row : Editor().Rows()) labels += row->Label->text().toStdString() + '\n';
  });
  EXPECT_EQ(outline,
            "Experts settings\nInstalled experts\nExpertA\nManager of the open units\n"
            "Experts menu\nCommand A\nCommand B\nSettings\nAbout...\n"
            "Special settings\nExperts manager\nEditor form settings\nDataA\nDataB\n");
  EXPECT_THAT(labels, HasSubstr("menu item’s text :"));
  EXPECT_THAT(labels, HasSubstr("Hotkeys \nfor menu item call :"));
  EXPECT_THAT(Fixture.Questions, IsEmpty());
}

TEST_F(ExpertEditor, KeptChangesAreInForceAtOnceAndAfterARestart) {
  Edit([&] {
    SwitchOff("ExpertB");
    Editor().SelectNode(Node(&Fixture.Expert<'A'>()));
    auto* note = static_cast<QLineEdit*>(Row("Note").EControl->Widget());
    note->setFocus();
    QTest::keyClicks(note, "kept");
    QTest::keyClick(note, Qt::Key_S, Qt::ControlModifier);
  });
  EXPECT_THAT(Fixture.Questions, IsEmpty());
  EXPECT_EQ(Fixture.Manager().Experts().IndexOf("ExpertB"), -1);
  EXPECT_EQ(Fixture.Expert<'A'>().Note, "kept");
  EXPECT_THAT(Fixture.Manager().ManagerData().EditorFormData->Setting->Text(),
              HasSubstr("WindowPlacement="));
  Fixture.Restart();
  EXPECT_EQ(Fixture.Manager().Experts().IndexOf("ExpertB"), -1);
  EXPECT_EQ(Fixture.Expert<'A'>().Note, "kept");
}

TEST_F(ExpertEditor, DiscardedChangesAreGoneFromMemoryAndFromTheFile) {
  Fixture.Manager().SaveSettings();
  const std::string file = ReadWholeFile(SettingsFileName());
  const std::string before = Bytes();
  const TPersistent* expert = &Fixture.Expert<'A'>();
  Fixture.Answer = mbNo;
  Edit([&] {
    SwitchOff("ExpertB");
    EXPECT_NE(Bytes(), before);
  });
  EXPECT_THAT(Fixture.Questions, ElementsAre("Save changes in specification?"));
  EXPECT_EQ(&Fixture.Expert<'A'>(), expert) << "nothing is made anew";
  EXPECT_EQ(ReadWholeFile(SettingsFileName()), file);
  EXPECT_GE(Fixture.Manager().Experts().IndexOf("ExpertB"), 0);
}

TEST_F(ExpertEditor, ASaveThatFailsKeepsItOpenAndMakesNothingAnew) {
  const TPersistent* expert = &Fixture.Expert<'A'>();
  Edit([&] {
    SwitchOff("ExpertB");
    std::filesystem::create_directories(SettingsFileName() + "/taken");
    Fixture.Answer = mbYes;
    EXPECT_FALSE(Editor().Form()->Close());
    EXPECT_TRUE(Editor().Form()->isVisible());
    EXPECT_FALSE(Editor().Saved());
    Fixture.Answer = mbNo;
  });
  EXPECT_EQ(&Fixture.Expert<'A'>(), expert);
}

TEST_F(ExpertEditor, AFileThatSomebodyElseWroteIsAskedAbout) {
  Fixture.Manager().SaveSettings();
  Fixture.Answer = mbNo;
  Edit([&] {
    SafeWriteFile(SettingsFileName(), ReadWholeFile(SettingsFileName()) + " ");
    EXPECT_FALSE(Editor().Save());
    Fixture.Answer = mbYes;
    EXPECT_TRUE(Editor().Save());
  });
  ASSERT_EQ(Fixture.Questions.size(), 2u);
  EXPECT_THAT(Fixture.Questions[0], HasSubstr("changed by somebody else"));
}

TEST_F(ExpertEditor, DefaultsAreWhatTheExpertsSetAndASwitchedOffExpertIsMarked) {
  SettingsRoot()->ActiveExperts->Find("ExpertB")->Active = false;
  Edit([&] {
    EXPECT_EQ(Node(SettingsRoot()->ActiveExperts->Find("ExpertB"))->OwnChanges, 1);
    EXPECT_EQ(Node(SettingsRoot()->MenuData.get())->Changes, 0);
    Editor().SelectNode(Node(SettingsRoot()->MenuData->Item(0)));
    TControlInfo& row = Row("ShortCutText");
    EXPECT_THAT(Editor().RowHint(row), HasSubstr("Default: Ctrl+Shift+A"));
    EXPECT_FALSE(Row("ItemID").EControl->Enabled());
  });
}

TEST_F(ExpertEditor, LoadingAddingAndDeletingAreNotOffered) {
  Edit([&] {
    Editor().SelectNode(Node(SettingsRoot()->MenuData.get()));
    Application().Idle();
    for (const char* name :
         {"ActLoadSpc", "ActSaveAsSpc", "ActAddNode", "ActDelNode", "ActMoveUp"}) {
      EXPECT_FALSE(Editor().Form()->FindAction(name)->Visible()) << name;
      EXPECT_FALSE(Editor().Form()->FindAction(name)->Enabled()) << name;
    }
  });
}

TEST_F(ExpertEditor, AHotKeyThatACommandHasIsToldByTheCommandsName) {
  Edit([&] {
    Editor().SelectNode(Node(SettingsRoot()->MenuData->Item(0)));
    TControlInfo& row = Row("ShortCutText");
    QWidget* widget = row.EControl->Widget();
    widget->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_B,
                    Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_NE(row.Message, nullptr);
    EXPECT_THAT(row.Message->text().toStdString(), HasSubstr("Command B"));
    Fixture.Answer = mbNo;
  });
}

TEST_F(ExpertEditor, EveryControlThatTakesTheFocusHasAName) {
  std::vector<TTreeNode*> nodes;
  Edit([&] {
    ForEachNode(*Editor().RootNode(), [&](TTreeNode& node) { nodes.push_back(&node); });
    for (TTreeNode* node : nodes) {
      Editor().SelectNode(node);
      for (const QWidget* widget : Editor().Form()->findChildren<QWidget*>()) {
        const bool takesFocus = widget->focusPolicy() != Qt::NoFocus && widget->isVisible();
        // A control's inner parts stand for the control.
        const QWidget* named = widget->focusProxy() != nullptr ? widget->focusProxy() : widget;
        if (!takesFocus || ControlOf(const_cast<QWidget*>(named)) == nullptr) continue;
        EXPECT_NE(named->accessibleName(), "")
            << node->Text << ": " << widget->metaObject()->className();
      }
    }
  });
}

TEST_F(ExpertEditor, ALanguageSwitchWaitsForItsEndButItsTextsFollow) {
  const TPersistent* expert = &Fixture.Expert<'A'>();
  Edit([&] {
    Fixture.Manager().DoRecreateExperts();
    EXPECT_EQ(&Fixture.Expert<'A'>(), expert);
    LoadNewLanguage(std::string(WRENFOLD_BIN_DIR) + "/wren_ger.dll");
    Fixture.Manager().Editor()->LocalizeEditor();
    Editor().Retranslate();
    EXPECT_EQ(Editor().Form()->SearchField().placeholderText().toStdString(),
              "Einstellungen suchen (Strg+F)");
    EXPECT_EQ(Editor().Form()->Caption(), LocaleStr(sExpertsSettings));
  });
  LoadNewLanguage({});
  EXPECT_THAT(TakeExpertLog(), HasSubstr("A:freed"));
}

TEST_F(ExpertEditor, ASettingThatItsExpertRefusesIsToldAndTheOthersGoBackAllTheSame) {
  using TExpert = TTestExpert<'A'>;
  Edit([&] {
    Editor().SelectNode(Node(&Fixture.Expert<'A'>()));
    Type("Guarded", "first");
    Type("Note", "changed");
    TExpert::RefusesSettings = true;
    Type("Guarded", "second");
    ASSERT_NE(Row("Guarded").Message, nullptr);
    EXPECT_EQ(Row("Guarded").Message->text(), "not now");
    EXPECT_FALSE(Editor().UndoEntry(0)) << "the entry stays";
    EXPECT_EQ(Editor().Journal().Count(), 2);
    Fixture.Answer = mbNo;
    EXPECT_TRUE(Editor().Form()->Close());
  });
  TExpert::RefusesSettings = false;
  EXPECT_EQ(Fixture.Expert<'A'>().Note, "");
  EXPECT_EQ(Fixture.Expert<'A'>().Guarded(), "first") << "it would not take anything else";
  EXPECT_THAT(Fixture.Questions, testing::Contains(HasSubstr("not now")));
}

TEST_F(ExpertEditor, EveryNodeIsLookedAtAndTheSavedFileIsTheSame) {
  Fixture.Manager().SaveSettings();
  const std::string file = ReadWholeFile(SettingsFileName());
  Edit([&] {
    std::vector<TTreeNode*> nodes;
    ForEachNode(*Editor().RootNode(), [&](TTreeNode& node) { nodes.push_back(&node); });
    for (TTreeNode* node : nodes) Editor().SelectNode(node);
    EXPECT_TRUE(Editor().Save());
    EXPECT_EQ(ReadWholeFile(SettingsFileName()), file);
  });
  EXPECT_THAT(Fixture.Questions, IsEmpty());
}

TEST_F(ExpertEditor, ExportedSettingsAreImportedInOneStepAndTheOldFileIsKept) {
  const std::string exported = Fixture.Directory() + "all.stx";
  Edit([&] {
    Editor().SelectNode(Node(&Fixture.Expert<'A'>()));
    Type("Note", "exported");
    test::AnswerFileDialog(Fixture.Directory() + "all", 2);
    Press("ActExport");
    ASSERT_TRUE(FileExists(exported));
    EXPECT_TRUE(ReadWholeFile(exported).starts_with("object"));
    Fixture.Answer = mbNo;
    test::AnswerFileDialog(exported, 2);
    Press("ActExport");
    EXPECT_THAT(Fixture.Questions, ElementsAre(HasSubstr("already exists")));
    Type("Note", "other");
    Fixture.Answer = mbYes;
    EXPECT_TRUE(Editor().Save());
    Fixture.Questions.clear();
    test::AnswerFileDialog(exported, 2);
    Press("ActImport");
    EXPECT_EQ(Editor().Form(), nullptr) << "what it shows goes";
  });
  EXPECT_THAT(Fixture.Questions, ElementsAre(HasSubstr(exported)));
  EXPECT_EQ(Fixture.Expert<'A'>().Note, "exported");
  EXPECT_THAT(ReadWholeFile(SettingsFileName() + ".bak"), HasSubstr("other"));
}

TEST_F(ExpertEditor, WhatIsNoSettingsFileIsNotImportedAndTheEditorStaysOpen) {
  const std::string name = Fixture.Directory() + "notes.sbn";
  SafeWriteFile(name, "no settings at all");
  Edit([&] {
    Editor().SelectNode(Node(&Fixture.Expert<'A'>()));
    Type("Note", "typed");
    test::AnswerFileDialog(name);
    Press("ActImport");
    EXPECT_THAT(Fixture.Questions, ElementsAre(HasSubstr(name)));
    ASSERT_NE(Editor().Form(), nullptr);
    EXPECT_TRUE(Editor().Changed());
    Fixture.Answer = mbNo;
  });
}

TEST_F(ExpertEditor, AFileThatGoesWhileItIsOpenIsAskedAboutAndWrittenAnew) {
  Fixture.Manager().SaveSettings();
  Edit([&] {
    std::filesystem::remove(SettingsFileName());
    Editor().SelectNode(Node(&Fixture.Expert<'A'>()));
    Type("Note", "again");
    EXPECT_TRUE(Editor().Save());
  });
  EXPECT_THAT(Fixture.Questions, ElementsAre(HasSubstr("changed by somebody else")));
  EXPECT_THAT(ReadWholeFile(SettingsFileName()), HasSubstr("again"));
}

TEST_F(ExpertEditor, TheEnvironmentMayEndTheSuiteWhileItIsOpen) {
  QTimer::singleShot(0, [&] { Fixture.Stop(); });
  Fixture.Manager().EditSettings();
  EXPECT_EQ(CurrentManager(), nullptr);
}

}  // namespace
}  // namespace wrenfold
