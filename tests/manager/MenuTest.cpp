// Tests the experts menu: its place, its commands, its hot keys, its rebuilding, the languages.
#include <gmock/gmock.h>

#include <QTimer>
#include <QWindow>
#include <QtTest/QTest>
#include <cerrno>

#include "ManagerSupport.h"
#include "foundation/rkAppUtils.h"
#include "platform/widgets/Button.h"
#include "platform/widgets/Keyboard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

std::string Captions(const TMenuItem* parent) {
  std::string text;
  for (const TMenuItem* item : parent->Items()) {
    if (!text.empty()) text += ',';
    text += StripHotkey(item->Caption());
  }
  return text;
}

TMenuItem* Find(TMenuItem* parent, const char* caption) {
  TMenuItem* item = parent != nullptr ? parent->Find(caption) : nullptr;
  EXPECT_NE(item, nullptr) << caption;
  return item;
}

TEST(Place, FollowsTheSettings) {
  const struct {
    const char* Name;
    const char* Search;
    bool Before, LineBefore, LineAfter;
    const char* Top;
    const char* Sub;
  } rows[] = {
      {"before", "Tools", true, false, false, "File,Wrenfold,Tools,Help", "Options..."},
      {"after, by another case", "tOOLS", false, false, false, "File,Tools,Wrenfold,Help",
       "Options..."},
      {"with lines", "&Tools", true, true, true, "File,-,Wrenfold,-,Tools,Help", "Options..."},
      {"inside a submenu", "Options...", false, true, false, "File,Tools,Help",
       "Options...,-,Wrenfold"},
      {"nowhere: no lines", "Nowhere", false, true, true, "File,Tools,Wrenfold,Help", "Options..."},
  };
  for (const auto& row : rows) {
    TManagerFixture fixture;
    fixture.Start();
    TExpManagerData& data = fixture.Manager().ManagerData();
    data.MainMenuSearchItem = row.Search;
    data.InsertMenuBeforeItem = row.Before;
    data.MenuHaveLineBefore = row.LineBefore;
    data.MenuHaveLineAfter = row.LineAfter;
    fixture.Manager().ApplySettings();
    TMenuItem* top = fixture.Environment.MainMenu->Items();
    EXPECT_EQ(Captions(top), row.Top) << row.Name;
    EXPECT_EQ(Captions(top->Find("Tools")), row.Sub) << row.Name;
    fixture.Stop();
    EXPECT_EQ(Captions(top), "File,Tools,Help") << row.Name;
    EXPECT_EQ(Captions(top->Find("Tools")), "Options...") << row.Name;
    EXPECT_EQ(fixture.Environment.Actions->ActionCount(), 0) << row.Name;
  }
}

TEST(Menu, IsBuiltWhenTheMessageLoopRunsWithCommandsInOrder) {
  TManagerFixture fixture;
  RegisterExpManager();
  EXPECT_EQ(fixture.Environment.TopItem(), nullptr) << "built inside the registration";
  ActivateKeyboardLayout(1049);
  TManagerFixture::Settle();
  TMenuItem* top = fixture.Environment.TopItem();
  ASSERT_NE(top, nullptr);
  EXPECT_EQ(Captions(top), "Command A,Command B,-,Settings,About...");
  EXPECT_EQ(top->Items(1)->Name(), "rkWrenfoldMenuItem1");
  EXPECT_EQ(Captions(Find(top, "Settings")), "Edit...,Load default,-,Language");
  EXPECT_TRUE(Find(Find(top, "Settings"), "Edit...")->Enabled());
  EXPECT_EQ(GetKeyboardLayout(), 1049u) << "the user's layout is back";
}

TEST(Menu, RebuildingLeavesNoSecondActionsAndTheLayoutAsItWas) {
  TManagerFixture fixture;
  fixture.Start();
  ActivateKeyboardLayout(1031);
  const int actions = fixture.Environment.Actions->ActionCount();
  SettingsRoot()->MenuData->Demand("ItemA").HaveLineBefore = true;
  SettingsRoot()->MenuData->Demand("ItemB").ShortCutText = "no key";
  SettingsRoot()->MenuData->Demand("SettingItem").HaveLineBefore = false;
  fixture.Manager().DoApplySettings();
  fixture.Manager().DoApplySettings();
  TManagerFixture::Settle();
  TMenuItem* top = fixture.Environment.TopItem();
  EXPECT_EQ(Captions(top), "-,Command A,Command B,-,Settings,About...");
  EXPECT_EQ(fixture.Environment.Actions->ActionCount(), actions);
  EXPECT_EQ(top->Items(2)->ShortCut(), TShortCut());
  EXPECT_EQ(GetKeyboardLayout(), 1031u);
}

TEST(Menu, HotKeysRunTheirExpertFromEveryForm) {
  TManagerFixture fixture;
  fixture.Start();
  TakeExpertLog();
  fixture.Environment.EditWindow->activateWindow();
  fixture.Environment.Editor->setFocus();
  QTest::keyClick(fixture.Environment.Editor, Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(TakeExpertLog(), "B:executed");
  QTest::keyClick(fixture.Environment.MainForm, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(TakeExpertLog(), "A:executed");
}

TEST(Menu, CommandsOfFreedExpertsDoNothingUntilTheMenuIsRebuilt) {
  TManagerFixture fixture;
  fixture.Start();
  TMenuItem* item = fixture.Environment.TopItem()->Items(0);
  fixture.Manager().RecreateExperts();
  TakeExpertLog();
  item->Click();
  EXPECT_EQ(TakeExpertLog(), "");
  fixture.Manager().ApplySettings();
  fixture.Environment.TopItem()->Items(0)->Click();
  EXPECT_EQ(TakeExpertLog(), "A:executed");
}

TEST(Menu, SurvivesTheEndOfTheEnvironmentsMenu) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Environment.MainMenu->Items()->Clear();
  fixture.Stop();
}

TEST(Menu, LoadDefaultDoesNotReadAFileThatCannotBeDeleted) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "mine";
  fixture.Restart();
  class TKeeping : public TFileSystem {
    int Remove(const std::string&) override { return EROFS; }
  } keeping;
  SetFileSystem(&keeping);
  TakeExpertLog();
  fixture.Manager().LoadDefaultSettings();
  SetFileSystem(nullptr);
  EXPECT_EQ(TakeExpertLog(), "B:freed A:freed A:made B:made A:init B:init A:defaults B:defaults");
  EXPECT_EQ(fixture.Expert<'A'>().Note, "");
  EXPECT_EQ(fixture.Questions.back(), LocaleFormat(sSettingsNotWritable, SettingsFileName()));
}

TEST(Menu, LoadDefaultAsksThenDropsTheSettings) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "mine";
  fixture.Restart();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "mine");
  fixture.Answer = mbNo;
  Find(Find(fixture.Environment.TopItem(), "Settings"), "Load default")->Click();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "mine");
  fixture.Answer = mbYes;
  TakeExpertLog();
  Find(Find(fixture.Environment.TopItem(), "Settings"), "Load default")->Click();
  EXPECT_EQ(TakeExpertLog(), "B:freed A:freed A:made B:made A:init B:init A:defaults B:defaults");
  EXPECT_FALSE(FileExists(SettingsFileName()));
  EXPECT_EQ(fixture.Questions.back(), LocaleStr(sLoadDefaultQuestion));
}

// The language modules are copied beside the package; the last one is missing there.
class Languages : public testing::Test {
 protected:
  Languages() {
    for (const char* name : {"wren_ger.dll", "wren_rus.dll"})
      SafeWriteFile(Fixture.Directory() + name,
                    ReadWholeFile(std::string(WRENFOLD_BIN_DIR "/") + name));
    Fixture.Start();
  }
  TMenuItem* Menu() {
    TMenuItem* top = Fixture.Environment.TopItem();
    return top->Items(3)->Items(top->Items(3)->Count() - 1);
  }
  void Choose(const char* caption) {
    if (TMenuItem* item = Find(Menu(), caption)) item->Click();
    TManagerFixture::Settle();
  }
  TManagerFixture Fixture;
};

TEST_F(Languages, AreOfferedWhenTheirModuleIsThere) {
  EXPECT_EQ(Captions(Menu()), "Default (English),-,Russian,German,-,Modules...");
  EXPECT_TRUE(Menu()->Items(0)->Checked());
  Fixture.Stop();
  TStoredLanguage().setValue("ExpLocaleDir", ToQString(Fixture.Directory()).chopped(1));
  Fixture.Start();
  EXPECT_EQ(Captions(Menu()), "Default (English),-,-,Modules...") << "no separator at its end";
}

TEST_F(Languages, AreChosenForEveryTextAndKeptUntilTheNextStart) {
  Fixture.Expert<'A'>().Note = "unsaved";
  Choose("German");
  EXPECT_EQ(Fixture.Environment.TopItem()->Items(3)->Caption(), "Einstellungen");
  EXPECT_EQ(Fixture.Expert<'A'>().Note, "unsaved") << "making the experts anew lost a setting";
  TakeExpertLog();
  Choose("Deutsch");
  EXPECT_EQ(TakeExpertLog(), "") << "choosing the active language again made the experts anew";
  Fixture.Restart();
  EXPECT_EQ(Fixture.Environment.TopItem()->Items(3)->Caption(), "Einstellungen");
  EXPECT_TRUE(Find(Menu(), "Deutsch")->Checked());
  EXPECT_FALSE(Menu()->Items(0)->Checked());
  Menu()->Items(0)->Click();
  TManagerFixture::Settle();
  EXPECT_EQ(Fixture.Environment.TopItem()->Items(3)->Caption(), "Settings");
}

TEST_F(Languages, ALanguageWhoseModuleIsGoneIsDropped) {
  Choose("Russian");
  DeleteFile(Fixture.Directory() + "wren_rus.dll");
  Fixture.Restart();
  EXPECT_EQ(LocaleStr(sSettings), "Settings");
  Fixture.Stop();
  EXPECT_EQ(TStoredLanguage().value("ExpCurrentLocale").toString(), "");
}

// An editor writes the list without quotation marks, which makes the toolkit see several values.
TEST_F(Languages, AListThatSomebodyEditedIsReadAndKept) {
  Fixture.Stop();
  TStoredLanguage().setValue("ExpLocaleModules",
                             QStringList{"German=wren_ger.dll", "Other=wren_rus.dll"});
  Fixture.Start();
  EXPECT_EQ(Captions(Menu()), "Default (English),-,German,Other,-,Modules...");
  Fixture.Restart();
  EXPECT_EQ(Captions(Menu()), "Default (English),-,German,Other,-,Modules...");
}

TEST_F(Languages, AModuleThatCannotBeReadIsToldOnce) {
  SafeWriteFile(Fixture.Directory() + "wren_ger.dll", "no module");
  for (const bool restart : {false, true}) {
    Fixture.Questions.clear();
    restart ? Fixture.Restart() : Choose("German");
    ASSERT_EQ(Fixture.Questions.size(), 1u) << restart;
    EXPECT_THAT(Fixture.Questions[0], testing::HasSubstr("wren_ger.dll"));
    EXPECT_THAT(Fixture.Log(), testing::HasSubstr("wren_ger.dll"));
  }
}

// The question as the user sees it, over the window that is active.
TEST_F(Languages, QuestionsSpeakTheLanguageAndKeepTheNamesThatPackagesLookFor) {
  Choose("German");
  InstallMessageDialogs();
  Fixture.Environment.EditWindow->activateWindow();
  Application().ProcessMessages();
  const QWidget* active = QApplication::activeWindow();
  bool seen = false;
  QTimer::singleShot(0, [&] {
    TForm* form = Screen().FindForm("MessageForm");
    ASSERT_NE(form, nullptr);
    auto* no = dynamic_cast<TButton*>(form->FindComponent("No"));
    ASSERT_NE(no, nullptr);
    EXPECT_EQ(form->Caption(), "Confirm");
    EXPECT_EQ(form->windowTitle(), "Bestätigung");
    EXPECT_EQ(no->Caption(), "&No");
    EXPECT_EQ(no->text(), "&Nein");
    EXPECT_EQ(form->windowHandle()->transientParent(), active->windowHandle());
    seen = true;
    QTest::keyClick(form, Qt::Key_N);
  });
  EXPECT_EQ(MsgQuestion("?"), mbNo);
  EXPECT_TRUE(seen);
  RemoveMessageDialogs();
}

}  // namespace
}  // namespace wrenfold
