// Programs as they come: of 32 bits, without debug information, deleted, forking, and a debug
// server that dies.
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "DebuggedProgram.h"
#include "project/TestSupport.h"

namespace wrenfold {
namespace {

const std::string Programs = std::string(WRENFOLD_SOURCE_DIR) + "/tests/debugger/programs/";
const std::string Steps = std::string(WRENFOLD_BIN_DIR) + "/wrenfold-test-steps";

class RealProgram : public DebuggedProgram {
 protected:
  static bool Runs(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
  }
  void LaunchTo(const TLaunch& launch, const std::string& source = {}, int line = 0) {
    Launch(launch, source, line);
  }
  TTemporaryFolder Folder;
};

TEST_F(RealProgram, Of32BitsHasItsOwnRegistersFlagsAndCode) {
  const std::string program = Folder.Path() + "/tiny";
  ASSERT_TRUE(Runs("as --32 -g -o " + program + ".o " + Programs + "tiny.s && ld -m elf_i386 -o " +
                   program + " " + program + ".o"));
  LAUNCH({program, {}, {}}, Programs + "tiny.s", 8);
  ASSERT_NE(Now().Processor, nullptr);
  EXPECT_EQ(Now().Processor->Name, std::string("i386"));
  EXPECT_EQ(Now().Register("eax"), 0x80000001u);
  EXPECT_EQ(Now().Register("ebx"), 2u);
  Debugger.Step(TStep::InstructionInto);
  ASSERT_TRUE(UntilNextStop());
  EXPECT_EQ(Now().Register("eax"), 0x80000003u);
  const auto& flags = Now().Processor->Flags;
  const auto sign = std::find_if(flags.begin(), flags.end(), [](const TFlagRow& row) {
    return std::strcmp(row.Short, "SF") == 0;
  });
  EXPECT_EQ(FlagValue(*sign, Now().FlagBits()), 1u);
  std::vector<TCodeLine> lines;
  Debugger.ReadCode(Now().Address(), 3, 4, [&](const std::vector<TCodeLine>& a) { lines = a; });
  ASSERT_TRUE(Until([&] { return !lines.empty(); })) << Errors;
  std::string text;
  for (const TCodeLine& line : lines) text += line.Label + "|" + line.Instruction.Text + "\n";
  EXPECT_NE(text.find("_start|mov eax, 0x80000001"), std::string::npos) << text;
  EXPECT_NE(text.find("add_them|add eax, ebx"), std::string::npos) << text;
  Debugger.Continue();
  ASSERT_TRUE(UntilState(TRunState::Exited));
  EXPECT_EQ(Now().ExitCode, 42);
}

TEST_F(RealProgram, WithoutDebugInformationIsSteppedByInstruction) {
  const std::string program = Folder.Path() + "/bare";
  ASSERT_TRUE(Runs("strip -o " + program + " " + Steps));
  LAUNCH({program, {"forever"}, {}});
  Debugger.Pause();
  ASSERT_TRUE(UntilNextStop()) << Errors;
  EXPECT_FALSE(Now().Frames.empty());
  const std::uint64_t before = Now().Address();
  Debugger.Step(TStep::Into);
  ASSERT_TRUE(UntilNextStop()) << Errors;
  EXPECT_NE(Now().Address(), before);
}

TEST_F(RealProgram, DeletedWhileItRunsIsStillPausedAndEnded) {
  const std::string program = Folder.Path() + "/gone";
  std::filesystem::copy_file(Steps, program);
  LAUNCH({program, {"forever"}, {}});
  std::filesystem::remove(program);
  Debugger.Pause();
  ASSERT_TRUE(UntilNextStop()) << Errors;
  Debugger.Reset();
  EXPECT_TRUE(UntilState(TRunState::None));
  Debugger.Launch({program, {}, {}});
  EXPECT_TRUE(Until([this] { return Errors.find("cannot be debugged") != std::string::npos; }));
}

TEST_F(RealProgram, ThatForksOrEndsAtOnceRunsToItsEnd) {
  LAUNCH({Steps, {"fork"}, {}});
  ASSERT_TRUE(UntilState(TRunState::Exited)) << Errors;
  EXPECT_EQ(Now().ExitCode, 7);
  Debugger.Launch({"/bin/true", {}, {}});
  ASSERT_TRUE(Until([this] { return Now().State == TRunState::Running; })) << Errors;
  ASSERT_TRUE(UntilState(TRunState::Exited)) << Errors;
  EXPECT_EQ(Now().ExitCode, 0);
  EXPECT_EQ(Errors, "");
}

TEST_F(RealProgram, BreakpointWithoutCodeIsToldAndTheRestStops) {
  Debugger.SetBreakpoints({{.Place = {"/nowhere.cpp", 3}}});
  Debugger.Launch({Steps, {}, {}});
  ASSERT_TRUE(Until([this] { return !Errors.empty(); }));
  EXPECT_NE(Errors.find("There is no code at /nowhere.cpp:3"), std::string::npos) << Errors;
  EXPECT_TRUE(UntilState(TRunState::Exited));
}

// The server of the debugger that is this test's child.
int FindServer() {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    const std::string status = TTemporaryFolder::Read(entry.path().string() + "/status");
    if (status.find("Name:\tlldb-server") != std::string::npos &&
        status.find("PPid:\t" + std::to_string(getpid()) + "\n") != std::string::npos &&
        status.find("State:\tZ") == std::string::npos)
      return std::stoi(name);
  }
  return 0;
}

TEST_F(RealProgram, WhoseDebugServerIsKilledIsTakenAsEndedAndTheNextOneRuns) {
  LAUNCH({Steps, {"forever"}, {}});
  const int server = FindServer();
  ASSERT_GT(server, 0);
  kill(server, SIGKILL);
  ASSERT_TRUE(UntilState(TRunState::Exited)) << Errors;
  Debugger.Launch({Steps, {}, {}});
  ASSERT_TRUE(Until([this] { return Now().State == TRunState::Running; })) << Errors;
  EXPECT_TRUE(UntilState(TRunState::Exited)) << Errors;
  EXPECT_EQ(Now().ExitCode, 7);
}

}  // namespace
}  // namespace wrenfold
