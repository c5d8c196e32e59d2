// The debugger on a real program: started, stopped, stepped, looked at, changed and ended.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "DebuggedProgram.h"

namespace wrenfold {
namespace {

const std::string Program = std::string(WRENFOLD_BIN_DIR) + "/wrenfold-test-steps";
const std::string Source = std::string(WRENFOLD_SOURCE_DIR) + "/tests/debugger/programs/steps.cpp";

const int SumLine = LineWith(Source, "the sum"), LoopLine = LineWith(Source, "the loop");

class DebuggerTest : public DebuggedProgram {
 protected:
  void LaunchTo(int line, std::vector<std::string> arguments = {}) {
    Launch({Program, std::move(arguments), {}}, Source, line);
  }
};

TEST_F(DebuggerTest, StopsStepsAndShowsWhereItIs) {
  LAUNCH(LoopLine);
  EXPECT_EQ(Line(), LoopLine);
  ASSERT_EQ(Now().Frames[0].Function.substr(0, 4), "main");
  Debugger.SetBreakpoints({});
  Debugger.Step(TStep::Into);
  ASSERT_TRUE(UntilNextStop());
  EXPECT_EQ(Line(), SumLine);
  EXPECT_EQ(Now().Frames[1].Place.Line, LoopLine);
  Debugger.Step(TStep::Over);
  ASSERT_TRUE(UntilNextStop());
  EXPECT_EQ(Line(), SumLine + 1);
  ASSERT_FALSE(Now().Locals.empty());
  EXPECT_EQ(Now().Locals.back().Name + Now().Locals.back().Value, "sum7");
  Debugger.Step(TStep::Out);
  ASSERT_TRUE(UntilNextStop());
  EXPECT_EQ(Line(), LoopLine);
  const std::uint64_t address = Now().Address();
  Debugger.Step(TStep::InstructionOver);
  ASSERT_TRUE(UntilNextStop());
  EXPECT_NE(Now().Address(), address);
  Debugger.Continue();
  ASSERT_TRUE(UntilState(TRunState::Exited));
  EXPECT_EQ(Now().ExitCode, 7);
  EXPECT_NE(Output.find("total 35"), std::string::npos) << Output;
}

TEST_F(DebuggerTest, RegistersMemoryAndValuesAreReadAndChanged) {
  LAUNCH(SumLine);
  std::string value;
  Debugger.Evaluate("point.X", [&](const TVariable& answer) { value = answer.Value; });
  ASSERT_TRUE(Until([&] { return !value.empty(); })) << Errors;
  EXPECT_EQ(value, "3");

  const std::uint64_t point = Now().Register("rdi");  // the first argument, not yet changed
  Debugger.WriteMemory(point, std::string("\x0A\0\0\0", 4));
  std::string bytes;
  Debugger.ReadMemory(point, 8, [&](const std::string& answer) { bytes = answer; });
  ASSERT_TRUE(Until([&] { return !bytes.empty(); })) << Errors;
  EXPECT_EQ(bytes, std::string("\x0A\0\0\0\x04\0\0\0", 8));

  Debugger.WriteRegister("rax", 0x1234);
  ASSERT_TRUE(Until([&] { return Now().Register("rax") == 0x1234; })) << Errors;
  EXPECT_EQ(Now().Processor->Name, std::string("x86-64"));
}

TEST_F(DebuggerTest, CodeAroundTheStopKeepsItsBoundaries) {
  LAUNCH(SumLine);
  std::vector<TCodeLine> lines;
  const std::uint64_t here = Now().Address();
  Debugger.ReadCode(here, 64, 32, [&](const std::vector<TCodeLine>& answer) { lines = answer; });
  ASSERT_TRUE(Until([&] { return !lines.empty(); })) << Errors;
  const auto at = std::find_if(lines.begin(), lines.end(), [here](const TCodeLine& line) {
    return line.Instruction.Address == here;
  });
  ASSERT_NE(at, lines.end());
  EXPECT_EQ(at->Place.Line, SumLine);
  EXPECT_GE(at - lines.begin(), 16);
  for (std::size_t i = 1; i < lines.size(); ++i)
    EXPECT_EQ(lines[i - 1].Instruction.End(), lines[i].Instruction.Address);
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                          [](const TCodeLine& line) { return line.Label.starts_with("Sum("); }));
}

TEST_F(DebuggerTest, ProgramThatNeverStopsIsPausedAndEnded) {
  LAUNCH(0, {"forever"});
  Debugger.Pause();
  ASSERT_TRUE(UntilNextStop()) << Errors;
  EXPECT_EQ(Now().Reason, "paused");
  const auto process = static_cast<pid_t>(Now().ProcessId);
  Debugger.Reset();
  ASSERT_TRUE(UntilState(TRunState::None));
  EXPECT_NE(kill(process, 0), 0);
}

TEST_F(DebuggerTest, CrashStopsInWordsAndOutputIsNotLost) {
  LAUNCH(0, {"crash"});
  ASSERT_TRUE(UntilNextStop()) << Errors;
  EXPECT_NE(Now().Reason.find("SIGSEGV"), std::string::npos) << Now().Reason;
  Output.clear();
  Debugger.Launch({Program, {"flood"}, {}});
  ASSERT_TRUE(UntilState(TRunState::Exited)) << Errors;
  EXPECT_TRUE(Until([this] { return Output.find("total 35") != std::string::npos; }));
  EXPECT_GT(Output.size(), 1'000'000u);
}

TEST_F(DebuggerTest, RaisedExceptionStopsAtItsLineWithClassAndMessage) {
  LAUNCH(0, {"raise"});
  ASSERT_TRUE(UntilNextStop()) << Errors;
  EXPECT_EQ(Now().Reason, "EStep: too far");
  ASSERT_LT(Now().FrameIndex, Now().Frames.size());
  EXPECT_EQ(Now().Frames[Now().FrameIndex].Place.Line, LineWith(Source, "the raising"));
  EXPECT_NE(Now().Register("cs"), 0u) << "a register that the call has not kept";
  Debugger.SetExceptionStops(false);
  Debugger.Launch({Program, {"raise"}, {}});
  ASSERT_TRUE(UntilState(TRunState::Exited)) << Errors;
}

TEST_F(DebuggerTest, ConditionAndCountDecideWhetherItStops) {
  LAUNCH(SumLine);
  Debugger.SetBreakpoints(
      {{.Place = {Source, SumLine}, .Condition = "point.X == 3", .PassCount = 3}});
  Debugger.Launch({Program, {}, {}});
  ASSERT_TRUE(Until([this] { return Now().State == TRunState::Running; }));
  ASSERT_TRUE(UntilNextStop()) << Errors;
  EXPECT_EQ(ValueOf("point.X + point.Y"), "7");
  Debugger.SelectFrame(1);
  EXPECT_EQ(ValueOf("i"), "3");
  EXPECT_NE(ValueOf("nobody").find("nobody"), std::string::npos);
}

TEST_F(DebuggerTest, AttachedProgramLivesOnWhenTheDebuggerGoes) {
  const pid_t child = fork();
  if (child == 0) {
    execl(Program.c_str(), Program.c_str(), "forever", nullptr);
    _exit(127);
  }
  {
    TDebugger debugger([] {});
    std::string errors;
    debugger.OnError = [&](const std::string& message) { errors += message; };
    debugger.Attach(static_cast<std::uint64_t>(child));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (debugger.Snapshot()->State != TRunState::Stopped && errors.empty() &&
           std::chrono::steady_clock::now() < end) {
      debugger.Dispatch();
      usleep(1000);
    }
    EXPECT_TRUE(errors.empty() || std::getenv("WRENFOLD_REQUIRE_TRACE") == nullptr) << errors;
  }
  EXPECT_EQ(waitpid(child, nullptr, WNOHANG), 0) << "it was ended";
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

TEST_F(DebuggerTest, WhatCannotBeDoneIsToldInWords) {
  Debugger.Launch({"/no/such/program", {}, {}});
  ASSERT_TRUE(Until([this] { return !Errors.empty(); }));
  EXPECT_NE(Errors.find("/no/such/program cannot be debugged"), std::string::npos) << Errors;
  Errors.clear();
  Debugger.Step(TStep::Over);
  ASSERT_TRUE(Until([this] { return !Errors.empty(); }));
  EXPECT_EQ(Errors, "No program runs\n");
  Debugger.Attach(0x7FFFFFFF);
  EXPECT_TRUE(Until([this] { return Errors.find("cannot be attached to") != std::string::npos; }));
}

}  // namespace
}  // namespace wrenfold
