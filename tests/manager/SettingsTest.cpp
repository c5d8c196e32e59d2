// Tests the settings file: values come back in place, and nothing that was good is ever lost.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <random>

#include "ManagerSupport.h"
#include "spec/rkSpcMng.h"
#include "storage/rkObjectSaver.h"

namespace wrenfold {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

TEST(Settings, ComeBackInPlaceIntoWhatTheExpertsHold) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "kept";
  fixture.Expert<'A'>().Lines->SetText("one\r\ntwo\r\n");
  fixture.Expert<'A'>().Record->ShortCutText = "";
  fixture.Expert<'B'>().Record->Caption = "My command";
  fixture.Manager().ManagerData().SetMaxLogSize(4000000000u);
  fixture.Manager().ManagerData().EditorFormData->Setting->SetText("[a]\r\nb=c\r\n");
  fixture.Manager().ManagerData().ExpertVersion = "9.9";
  TakeExpertLog();
  fixture.Restart();
  EXPECT_EQ(TakeExpertLog(), "B:freed A:freed A:made B:made A:init B:init A:loaded B:loaded");
  TTestExpert<'A'>& expert = fixture.Expert<'A'>();
  EXPECT_EQ(expert.Note, "kept");
  EXPECT_EQ(expert.Lines->Text(), "one\r\ntwo\r\n");
  EXPECT_EQ(expert.Record, &SettingsRoot()->MenuData->Demand("ItemA")) << "the record was replaced";
  EXPECT_EQ(expert.Record->ShortCutText, "") << "an emptied hot key came back";
  EXPECT_EQ(expert.Record->Caption, "Command A");
  EXPECT_EQ(fixture.Expert<'B'>().Record->Caption, "My command");
  EXPECT_EQ(fixture.Manager().ManagerData().MaxLogSize(), 4000000000u);
  EXPECT_EQ(fixture.Manager().ManagerData().EditorFormData->Setting->Text(), "[a]\r\nb=c\r\n");
  EXPECT_EQ(fixture.Manager().ManagerData().ExpertVersion, "1.0");
}

TEST(Settings, AreNotWrittenWithoutAutosave) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Manager().ManagerData().AutoSaveSettings = false;
  fixture.Stop();
  EXPECT_FALSE(FileExists(SettingsFileName()));
}

TEST(Settings, ADamagedFileMeansDefaultsAndIsKept) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "precious";
  fixture.Stop();
  const std::string good = ReadWholeFile(SettingsFileName());
  std::vector<std::pair<std::string, std::string>> rows = {
      {"noise", std::string("\xFE\x00\x01garbage", 10)}, {"text", "This is no settings file"}};
  for (std::size_t size = 1; size < good.size(); size += 61)
    rows.emplace_back("cut at " + std::to_string(size), good.substr(0, size));
  for (const auto& [name, bytes] : rows) {
    SafeWriteFile(SettingsFileName(), bytes);
    DeleteFile(SettingsFileName() + ".bad");
    fixture.Questions.clear();
    TakeExpertLog();
    fixture.Start();
    EXPECT_THAT(TakeExpertLog(), HasSubstr("A:defaults B:defaults")) << name;
    EXPECT_EQ(fixture.Expert<'A'>().Note, "") << name;
    ASSERT_THAT(fixture.Questions, SizeIs(1)) << name;
    EXPECT_THAT(fixture.Questions[0], HasSubstr("ExpData.spc.bad")) << name;
    EXPECT_NE(fixture.Environment.TopItem(), nullptr) << name;
    EXPECT_EQ(ReadWholeFile(SettingsFileName()), bytes) << name;
    fixture.Stop();
    EXPECT_EQ(ReadWholeFile(SettingsFileName() + ".bad"), bytes) << name;
    EXPECT_NE(ReadWholeFile(SettingsFileName()), bytes) << name;
  }
}

// Nobody can be asked before the main window is up.
TEST(Settings, OfANewerVersionAreReadAsFarAsKnownAndKept) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "newer";
  fixture.Stop();
  std::string bytes = ReadWholeFile(SettingsFileName());
  const auto at = bytes.find("AutoSaveSettings");
  ASSERT_NE(at, std::string::npos);
  bytes.replace(at, 4, "Tomo");
  SafeWriteFile(SettingsFileName(), bytes);
  fixture.Questions.clear();
  RegisterExpManager();
  EXPECT_THAT(fixture.Questions, SizeIs(0));
  fixture.Settle();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "newer");
  ASSERT_THAT(fixture.Questions, SizeIs(1));
  EXPECT_THAT(fixture.Questions[0], HasSubstr("TomoSaveSettings"));
  fixture.Stop();
  EXPECT_EQ(ReadWholeFile(SettingsFileName() + ".bad"), bytes);
}

// What a link leads to is replaced, not the link.
TEST(Settings, KeptOfALinkAreTheOldOnes) {
  TManagerFixture fixture;
  const std::string target = fixture.Directory() + "target.spc";
  SafeWriteFile(target, "no settings");
  std::filesystem::create_symlink(target, SettingsFileName());
  fixture.Start();
  fixture.Stop();
  EXPECT_EQ(ReadWholeFile(SettingsFileName() + ".bad"), "no settings");
  EXPECT_NE(ReadWholeFile(target), "no settings");
}

TEST(Settings, NeverReplaceTheRecordsThatExpertsHold) {
  TManagerFixture fixture;
  SafeWriteFile(SettingsFileName(),
                "object ExpertData: TExpData\r\n"
                "  ActiveExperts = <>\r\n"
                "  MenuData = <\r\n    item\r\n      ItemID = 'X'\r\n    end>\r\n"
                "  CustomData = <>\r\n"
                "end\r\n");
  fixture.Start();
  EXPECT_EQ(fixture.Expert<'A'>().Record, SettingsRoot()->MenuData->Find("ItemA"));
  EXPECT_EQ(SettingsRoot()->MenuData->Find("X"), nullptr);
  EXPECT_EQ(SettingsRoot()->CustomData->Count(), 3);
  EXPECT_EQ(SettingsRoot()->ActiveExperts->Count(), 2);
}

TEST(Settings, TravelToAnotherMachineWholeAndKeepTheOldOnes) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "travels";
  for (const char* name : {"all.sbn", "all.stx"}) {
    const std::string file = fixture.Directory() + name;
    fixture.Expert<'A'>().Note = "travels";
    fixture.Manager().ExportSettings(file);
    fixture.Expert<'A'>().Note = "here";
    fixture.Manager().SaveSettings();
    fixture.Answer = mbNo;
    EXPECT_FALSE(fixture.Manager().ImportSettings(file));
    EXPECT_EQ(fixture.Expert<'A'>().Note, "here");
    fixture.Answer = mbYes;
    EXPECT_TRUE(fixture.Manager().ImportSettings(file)) << name;
    EXPECT_EQ(fixture.Expert<'A'>().Note, "travels") << name;
  }
  EXPECT_THAT(ReadWholeFile(SettingsFileName() + ".bak"), HasSubstr("here"));
  fixture.Restart();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "travels");
}

TEST(Settings, RefuseToBeImportedFromWhatIsNone) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Restart();
  const std::string before = ReadWholeFile(SettingsFileName());
  const std::string file = fixture.Directory() + "other";
  for (const std::string& bytes :
       {std::string("noise"), std::string(), before.substr(0, before.size() / 2),
        std::string("object Form1: TForm1\r\nend\r\n")}) {
    SafeWriteFile(file, bytes);
    EXPECT_THROW(fixture.Manager().ImportSettings(file), EFitReaderError) << bytes;
  }
  EXPECT_EQ(ReadWholeFile(SettingsFileName()), before);
  EXPECT_FALSE(SettingsFile().ChangedOnDisk());
  SafeWriteFile(SettingsFileName(), before + " ");
  EXPECT_TRUE(SettingsFile().ChangedOnDisk());
}

TEST(Settings, WaitForTheEndOfTheEditorBeforeTheyAreReadAgain) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Manager().ManagerData().EditorFormData->Setting->SetText("[window]\r\n");
  TakeExpertLog();
  {
    const TExpManager::TRecreationHold outer(fixture.Manager());
    const TExpManager::TRecreationHold inner(fixture.Manager());
    fixture.Manager().DoRecreateExperts();
    EXPECT_EQ(TakeExpertLog(), "");
  }
  EXPECT_EQ(TakeExpertLog(), "B:freed A:freed A:made B:made A:init B:init A:defaults B:defaults");
  EXPECT_EQ(fixture.Manager().ManagerData().EditorFormData->Setting->Text(), "[window]\r\n");
}

// Makes one step of every write fail.
class TFailingFileSystem : public TFileSystem {
 public:
  explicit TFailingFileSystem(int step) : FStep(step) {}
  int CreateNew(const std::string& name, unsigned permissions, int& handle) override {
    return FStep == 0 ? EACCES : TFileSystem::CreateNew(name, permissions, handle);
  }
  int Write(int handle, std::string_view bytes, std::size_t& written) override {
    if (FStep != 1) return TFileSystem::Write(handle, bytes, written);
    TFileSystem::Write(handle, bytes.substr(0, bytes.size() / 2), written);
    return ENOSPC;
  }
  int Sync(int handle) override { return FStep == 2 ? EIO : TFileSystem::Sync(handle); }
  int Close(int handle) override {
    const int result = TFileSystem::Close(handle);
    return FStep == 3 ? EDQUOT : result;
  }
  int Rename(const std::string& from, const std::string& to) override {
    return FStep == 4 ? EXDEV : TFileSystem::Rename(from, to);
  }

 private:
  int FStep;
};

TEST(Settings, AFailedWriteIsToldOnceAndLeavesTheOldFile) {
  for (int step = 0; step < 5; ++step) {
    TManagerFixture fixture;
    fixture.Start();
    fixture.Restart();
    const std::string before = ReadWholeFile(SettingsFileName());
    fixture.Expert<'A'>().Note = "will not fit";
    TFailingFileSystem failing(step);
    SetFileSystem(&failing);
    fixture.Manager().SaveSettings();
    fixture.Stop();
    SetFileSystem(nullptr);
    EXPECT_THAT(fixture.Questions, SizeIs(1)) << step;
    EXPECT_THAT(fixture.Questions[0], HasSubstr("ExpData.spc")) << step;
    EXPECT_EQ(ReadWholeFile(SettingsFileName()), before) << step;
    EXPECT_FALSE(FileExists(SettingsFileName() + ".bad")) << step;
  }
}

// As an installed package does for a person who may not write beside it.
TEST(Settings, LiveWithTheUserWhereThePackageCannotBeWritten) {
  TManagerFixture fixture;
  fixture.Start();
  fixture.Expert<'A'>().Note = "shipped";
  fixture.Stop();
  const std::string shippedFile = SettingsFileName();
  const std::string shipped = ReadWholeFile(shippedFile);
  class TReadOnlyPackage : public TFileSystem {
   public:
    std::string Package;
    int CreateNew(const std::string& name, unsigned permissions, int& handle) override {
      return name.starts_with(Package) ? EROFS : TFileSystem::CreateNew(name, permissions, handle);
    }
  } readOnly;
  readOnly.Package = fixture.Directory();
  const QTemporaryDir user;
  qputenv("XDG_DATA_HOME", user.path().toUtf8());
  SetFileSystem(&readOnly);
  fixture.Restart();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "shipped");
  fixture.Expert<'A'>().Note = "mine";
  fixture.Restart();
  EXPECT_EQ(fixture.Expert<'A'>().Note, "mine");
  EXPECT_EQ(SettingsFileName(), user.path().toStdString() + "/wrenfold/ExpData.spc");
  fixture.Stop();
  SetFileSystem(nullptr);
  qunsetenv("XDG_DATA_HOME");
  EXPECT_EQ(ReadWholeFile(shippedFile), shipped);
  EXPECT_THAT(fixture.Questions, SizeIs(0));
}

TEST(Settings, SpecificationsAreSavedUnderTheNameOfTheRoot) {
  TManagerFixture fixture;
  fixture.Start();
  const std::string name = fixture.Directory() + "spec.stx";
  SaveSpc(*SettingsRoot(), name, osfText);
  EXPECT_THAT(ReadWholeFile(name), HasSubstr("object ExpertData: TExpData"));
}

// A child writes settings over and over and is killed somewhere in it.
TEST(Settings, SurviveAProcessThatIsKilledWhileItWritesThem) {
  TManagerFixture fixture;
  TExpData root;
  TEditorFormData data;
  root.CustomData->Add(&data, "Data");
  TPersistent* const objects[] = {&root};
  const std::string name = SettingsFileName();
  const auto save = [&](int round) {
    data.Setting->SetText(std::string(static_cast<std::size_t>(20000 + round % 7 * 1000),
                                      static_cast<char>('a' + round % 7)));
    TObjectSaver().SaveObjects(objects, {"ExpertData"}, name);
  };
  save(0);
  std::mt19937 random(1);
  for (int kill = 0; kill < 40; ++kill) {
    const pid_t child = fork();
    if (child == 0)
      for (int round = 0;; ++round) save(round);
    usleep(static_cast<useconds_t>(500 + random() % 9000));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    data.Setting->Clear();
    ASSERT_TRUE(TObjectSaver().SafeLoadObjects(objects, name)) << kill;
    const std::string text = data.Setting->Text();
    ASSERT_GE(text.size(), 20000u) << kill;
    EXPECT_EQ(text, std::string(text.size() - 2, text[0]) + "\r\n") << "a mixture of two writes";
  }
}

}  // namespace
}  // namespace wrenfold
