// What the tests on real programs share: a debugger that is waited for.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <string>

#include "debugger/Debugger.h"

namespace wrenfold {

// The number of the line of a source that ends in this comment; 0: none does.
inline int LineWith(const std::string& source, const std::string& comment) {
  std::ifstream file(source);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number)
    if (line.ends_with("// " + comment)) return number;
  return 0;
}

class DebuggedProgram : public testing::Test {
 protected:
  DebuggedProgram() {
    Debugger.OnOutput = [this](const std::string& text) { Output += text; };
    Debugger.OnError = [this](const std::string& message) { Errors += message + "\n"; };
  }

  // Until it is so, or ten seconds are over.
  template <class Condition>
  bool Until(const Condition& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (;;) {
      Debugger.Dispatch();
      if (condition()) return true;
      std::unique_lock lock(Mutex);
      if (std::chrono::steady_clock::now() > end) return false;
      Woken.wait_for(lock, std::chrono::milliseconds(50));
    }
  }
  bool UntilState(TRunState state) {
    return Until([this, state] { return Debugger.Snapshot()->State == state; });
  }
  // After a command that runs the program: until a newer stop than the one seen.
  bool UntilNextStop() {
    return Until([this] {
      const TSnapshot& now = *Debugger.Snapshot();
      if (now.State != TRunState::Stopped || now.Number == Seen) return false;
      Seen = now.Number;
      return true;
    });
  }

  // Starts it and waits until it stands at that line; with line 0 just until it runs.
  void Launch(const TLaunch& launch, const std::string& source, int line) {
    if (line > 0) Debugger.SetBreakpoints({{.Place = {source, line}}});
    Debugger.Launch(launch);
    const bool started =
        Until([this] { return !Errors.empty() || Debugger.Snapshot()->State != TRunState::None; });
    if (!Errors.empty() && std::getenv("WRENFOLD_REQUIRE_TRACE") == nullptr)
      GTEST_SKIP() << "this machine does not let a program be traced: " << Errors;
    ASSERT_TRUE(started && Errors.empty()) << Errors;
    ASSERT_TRUE(line == 0 || UntilNextStop()) << Errors;
  }
  // The value of an expression, or why it has none.
  std::string ValueOf(const std::string& expression) {
    std::optional<TVariable> value;
    Debugger.Evaluate(expression, [&](const TVariable& answer) { value = answer; });
    if (!Until([&] { return value.has_value(); })) return "no answer";
    return value->Value;
  }
  const TSnapshot& Now() const { return *Debugger.Snapshot(); }
  int Line() const { return Now().Frames.empty() ? 0 : Now().Frames[0].Place.Line; }

  std::mutex Mutex;
  std::condition_variable Woken;
  std::string Output, Errors;
  std::uint64_t Seen = 0;
  TDebugger Debugger{[this] { Woken.notify_one(); }};
};

#define LAUNCH(...)      \
  LaunchTo(__VA_ARGS__); \
  if (IsSkipped() || HasFatalFailure()) return

}  // namespace wrenfold
