// Tests the start and the end of the manager: order, trails, handlers, the error log.
#include <gmock/gmock.h>

#include <QTimer>

#include "ManagerSupport.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* WholeStart = "0 1 3 4 5 6 7 8 9 10 11 12 13 14 15 17 18";

TEST(Registry, RefusesWhatIsTakenOrOutside) {
  ClearExpertRegistry();
  RegisterExpClass(TTestExpert<'A'>::ClassInfo(), 1, "First", -1);
  const struct {
    const char* Name;
    const TTypeInfo& Class;
    int Group;
    const char* ExpertName;
    const char* Message;
  } rows[] = {
      {"group 0", TTestExpert<'B'>::ClassInfo(), 0, "X", "List index out of bounds (0)"},
      {"group 101", TTestExpert<'B'>::ClassInfo(), 101, "X", "List index out of bounds (101)"},
      {"group taken", TTestExpert<'B'>::ClassInfo(), 1, "X", "group 1 is already defined"},
      {"class taken", TTestExpert<'A'>::ClassInfo(), 2, "X", "class TExpertA is already defined"},
      {"name taken", TTestExpert<'B'>::ClassInfo(), 2, "First", "name First is already defined"},
      {"no name", TTestExpert<'B'>::ClassInfo(), 2, "", "name  is already defined"},
  };
  for (const auto& row : rows) {
    try {
      RegisterExpClass(row.Class, row.Group, row.ExpertName, -1);
      ADD_FAILURE() << row.Name;
    } catch (const EExpMngError& error) {
      EXPECT_THAT(error.Message(), HasSubstr(row.Message)) << row.Name;
    }
  }
  RegisterExpClass(TTestExpert<'B'>::ClassInfo(), 100, "first", -1);
  ClearExpertRegistry();
}

TEST(Life, ExpertsAreMadeByGroupAndFreedInReverse) {
  TManagerFixture fixture;
  fixture.Start();
  EXPECT_EQ(TakeExpertLog(), "A:made B:made A:init B:init A:defaults B:defaults");
  EXPECT_EQ(ErrorLog().Constructor.Steps, WholeStart);
  EXPECT_EQ(ErrorLog().Constructor.Experts, "ExpertA\r\nExpertB");
  fixture.Manager().DoRecreateExperts();
  EXPECT_EQ(TakeExpertLog(), "B:freed A:freed A:made B:made A:init B:init A:defaults B:defaults");
  fixture.Stop();
  EXPECT_EQ(TakeExpertLog(), "B:freed A:freed");
  EXPECT_EQ(ErrorLog().Destructor.Steps, "0 1 3 4 5 6 8 9 10 11");
  EXPECT_EQ(ErrorLog().Destructor.Experts, "ExpertB\r\nExpertA");
  EXPECT_EQ(CurrentManager(), nullptr);
  EXPECT_FALSE(PrivateExpertExec());
}

TEST(Life, AnExpertSwitchedOffIsNotMadeAndGetsItsSettingsBackWhenSwitchedOn) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "mine";
  fixture.Expert<'A'>().Record->ShortCutText = "F7";
  SettingsRoot()->ActiveExperts->Find("ExpertA")->Active = false;
  for (int round = 0; round < 2; ++round) {
    fixture.Restart();
    EXPECT_FALSE(SettingsRoot()->ActiveExperts->Find("ExpertA")->Active);
  }
  TakeExpertLog();
  fixture.Manager().DoRecreateExperts();
  EXPECT_EQ(TakeExpertLog(), "B:freed B:made B:init B:loaded");
  SettingsRoot()->ActiveExperts->Find("ExpertA")->Active = true;
  fixture.Manager().SaveSettings();
  fixture.Manager().DoRecreateExperts();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "mine");
  EXPECT_EQ(fixture.Expert<'A'>().Record->ShortCutText, "F7");
  fixture.Restart();
  EXPECT_EQ(SettingsRoot()->CustomData->Count(), 3) << "a record was written twice";
  EXPECT_EQ(SettingsRoot()->ActiveExperts->Find("ExpertB")->DisplayText,
            "Manager of the open units");
}

TEST(Life, AnExpertThatFailsLeavesTheOthersTheirSettingsAndNothingOfItself) {
  const struct {
    const char* Name;
    TFailingStep Step;
    const char* Log;
  } rows[] = {
      {"constructor", TFailingStep::Constructor, "A:made B:made A:init A:loaded"},
      {"init", TFailingStep::Init, "A:made B:made A:init B:init B:freed A:loaded"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Name);
    TManagerFixture fixture;
    fixture.Start();
    fixture.Expert<'A'>().Note = "kept";
    fixture.Expert<'B'>().Note = "carried";
    fixture.Stop();
    TakeExpertLog();
    fixture.Questions.clear();
    TTestExpert<'B'>::Fails = row.Step;
    fixture.Start();
    TTestExpert<'B'>::Fails = TFailingStep::None;
    EXPECT_EQ(TakeExpertLog(), row.Log);
    EXPECT_EQ(fixture.Expert<'A'>().Note, "kept");
    EXPECT_EQ(ErrorLog().Constructor.Steps, WholeStart);
    EXPECT_EQ(SettingsRoot()->CustomData->Find("DataB"), nullptr);
    EXPECT_EQ(SettingsRoot()->MenuData->Find("ItemB"), nullptr);
    fixture.Environment.TopItem()->Items(0)->Click();
    EXPECT_EQ(TakeExpertLog(), "A:executed") << "a handler of the one that failed";
    ASSERT_EQ(fixture.Questions.size(), 1u);
    EXPECT_THAT(fixture.Questions[0], HasSubstr("ExpertB"));
    EXPECT_THAT(fixture.Log(), HasSubstr("no expert today"));
    EXPECT_THAT(fixture.Log(), HasSubstr("Source object: TExpManager"));
    fixture.Restart();
    EXPECT_EQ(fixture.Expert<'B'>().Note, "carried");
  }
}

TEST(Life, AStartThatFailsKeepsTheSettingsFileThatItDidNotRead) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "precious";
  fixture.Stop();
  const std::string before = ReadWholeFile(SettingsFileName());
  struct TThrower {
    void Throw(int id, std::string&) {
      if (id == sUnitManagerExpert) throw Exception("no start today");
    }
  } thrower;
  Bind<&TThrower::Throw>(Locale().OnText, &thrower);
  fixture.Start();
  Locale().OnText = {};
  EXPECT_TRUE(TFakeEnvironment::Wizard);
  EXPECT_THAT(fixture.Log(), HasSubstr("< Start constructor >\r\n0 1 3 4 5 6\r\n"));
  fixture.Stop();
  EXPECT_EQ(ReadWholeFile(SettingsFileName() + ".bad"), before);
}

// What the environment does when the user ends it while the menu is built.
TEST(Life, MayEndWhileTheMenuIsRebuilt) {
  TManagerFixture fixture;
  fixture.Start();
  QTimer::singleShot(0, [&] { fixture.Stop(); });
  fixture.Manager().ApplySettings();
  EXPECT_EQ(fixture.Environment.TopItem(), nullptr);
  EXPECT_EQ(CurrentManager(), nullptr);
}

int HandledBefore = 0;
void HandlerBefore(TObject*, std::exception_ptr) {
  ++HandledBefore;
}

TEST(ErrorLog, CarriesTheTrailOnceAndPassesOnToTheHandlerBefore) {
  Application().OnException = TExceptionEvent::Of<&HandlerBefore>();
  HandledBefore = 0;
  TManagerFixture fixture;
  fixture.Start();
  TTestExpert<'A'>::ThrowWhenExecuted = true;
  TMenuItem* item = fixture.Environment.TopItem()->Items(0);
  for (int i = 0; i < 2; ++i) {
    try {
      item->Click();
    } catch (...) {
      Application().HandleException(item);
    }
  }
  TTestExpert<'A'>::ThrowWhenExecuted = false;
  const std::string log = fixture.Log();
  EXPECT_EQ(HandledBefore, 2);
  EXPECT_THAT(log, HasSubstr(std::string("\r\n") + WholeStart + "\r\nExpertA\r\nExpertB\r\n"));
  EXPECT_EQ(log.find("< Start constructor >"), log.rfind("< Start constructor >"));
  EXPECT_NE(log.find("command failed"), log.rfind("command failed"));
  EXPECT_THAT(log, HasSubstr("Source object: TExpMenuItem: rkWrenfoldMenuItem0"));

  fixture.Manager().ManagerData().SetErrorLogAllowed(false);
  EXPECT_EQ(Application().OnException, TExceptionEvent::Of<&HandlerBefore>());
  fixture.Manager().ManagerData().SetErrorLogAllowed(true);
  EXPECT_FALSE(Application().OnException == TExceptionEvent::Of<&HandlerBefore>());
  fixture.Stop();
  EXPECT_EQ(Application().OnException, TExceptionEvent::Of<&HandlerBefore>());
  Application().OnException = {};
}

TEST(ErrorLog, AForeignExceptionIsLoggedByTheCatcherAndOnlyOnce) {
  TManagerFixture fixture;
  fixture.Start();
  try {
    throw 42;
  } catch (...) {
    fixture.Manager().CheckAddErrorLog(nullptr);
    Application().HandleException(nullptr);
  }
  const std::string log = fixture.Log();
  EXPECT_THAT(log, HasSubstr("Source object: Unknown"));
  EXPECT_EQ(log.find("Source object"), log.rfind("Source object"));
}

TEST(ErrorLog, HasTheTrailOnceAfterAFailedLoad) {
  TManagerFixture fixture;
  SafeWriteFile(SettingsFileName(), "no settings");
  fixture.Start();
  ErrorLog().Add(nullptr, std::make_exception_ptr(Exception("later")));
  const std::string log = fixture.Log();
  EXPECT_THAT(log, HasSubstr("later"));
  EXPECT_EQ(log.find("< Start constructor >"), log.rfind("< Start constructor >"));
}

TEST(ErrorLog, StartsAfreshAtItsLimit) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Manager().ManagerData().SetMaxLogSize(1);
  SafeWriteFile(fixture.Directory() + "ExpError.log", std::string(1024, 'x'));
  ErrorLog().Add(nullptr, std::make_exception_ptr(Exception("new")));
  EXPECT_THAT(fixture.Log(), Not(HasSubstr("xxx")));
}

}  // namespace
}  // namespace wrenfold
