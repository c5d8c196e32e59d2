// Tests the built package: loaded like any environment loads it, started, ended, loaded again.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <QTemporaryDir>
#include <QtTest/QTest>

#include "FakeEnvironment.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

class Package : public testing::Test {
 protected:
  Package() : FileName(Directory.path().toStdString() + "/Wrenfold4.so") {
    SafeWriteFile(FileName, ReadWholeFile(WRENFOLD_BIN_DIR "/Wrenfold4.so"));
    SetMessageDlgProc([this](const std::string& text, TMsgDlgType, TMsgDlgButtons) {
      Questions.push_back(text);
      return mbYes;
    });
  }
  ~Package() override { InstallMessageDialogs(); }
  void Load() {
    Handle = dlopen(FileName.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(Handle, nullptr) << dlerror();
    Register = reinterpret_cast<void (*)()>(dlsym(Handle, "Register"));
    ASSERT_NE(Register, nullptr);
    Register();
    Settle();
  }
  void Unload() {
    TFakeEnvironment::Wizard = nullptr;
    dlclose(Handle);
    Settle();
  }
  static void Settle() {
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  }

  QTemporaryDir Directory;
  std::string FileName;
  TFakeEnvironment Environment;
  std::vector<std::string> Questions;
  void* Handle = nullptr;
  void (*Register)() = nullptr;
};

TEST_F(Package, StartsShowsItsMenuAndLeavesNothingBehind) {
  for (int round = 0; round < 3; ++round) {
    Load();
    ASSERT_TRUE(TFakeEnvironment::Wizard);
    EXPECT_EQ(TFakeEnvironment::Wizard->GetIDString(), "Wrenfold&RK.ServiceDelphiWizards");
    EXPECT_EQ(TFakeEnvironment::Wizard->GetName(), "Tamsorel Wizard Pack");
    EXPECT_EQ(TFakeEnvironment::Wizard->GetState(), TWizardState{wsEnabled});
    ASSERT_NE(Environment.TopItem(), nullptr);
    for (const char* command : {"View Forms...", "View Units...", "Unit manager"}) {
      TMenuItem* item = Environment.TopItem()->Find(command);
      ASSERT_NE(item, nullptr) << command;
      EXPECT_FALSE(item->ShownAction()->icon().isNull()) << command;
    }
    Unload();
    EXPECT_EQ(Environment.TopItem(), nullptr);
    EXPECT_EQ(Environment.Actions->ActionCount(), 0);
    EXPECT_FALSE(Application().OnException);
    for (int i = 0; i < Environment.Images->Count(); ++i)
      EXPECT_TRUE(Environment.Images->Icon(i).isNull()) << "a picture of ours was left";
    EXPECT_TRUE(FileExists(Directory.path().toStdString() + "/ExpData.spc"));
    EXPECT_TRUE(Questions.empty());
  }
}

TEST_F(Package, ASecondRegistrationIsIgnored) {
  Load();
  Register();
  Settle();
  EXPECT_EQ(Environment.MainMenu->Items()->Count(), 4);
  Unload();
}

TEST_F(Package, IsUnloadedWithItsWindowOpen) {
  Environment.AddPage("Alpha");
  Load();
  QTest::keyClick(Environment.Editor, Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
  Settle();
  const int forms = Screen().FormCount();
  EXPECT_FALSE(Environment.MainForm->Enabled());
  Unload();
  EXPECT_EQ(Screen().FormCount(), forms - 1);
  EXPECT_TRUE(Environment.MainForm->Enabled());
}

TEST_F(Package, RunsAndTellsOnceWhereItCannotWrite) {
  Load();
  TFakeEnvironment::Wizard = nullptr;
  class TReadOnly : public TFileSystem {
    int CreateNew(const std::string&, unsigned, int&) override { return EROFS; }
  } readOnly;
  Register();
  Settle();
  EXPECT_NE(Environment.TopItem(), nullptr);
  SetFileSystem(&readOnly);
  Unload();
  SetFileSystem(nullptr);
  ASSERT_EQ(Questions.size(), 1u);
  EXPECT_THAT(Questions[0], testing::HasSubstr("Settings cannot be saved"));
}

}  // namespace
}  // namespace wrenfold
