// Building, running and stopping a program from the workbench.
#include <QTest>
#include <cstdlib>
#include <fstream>

#include "host/HostTest.h"

namespace wrenfold {
namespace {

TEST(Compiler, LineAboutAPlaceLeadsThere) {
  struct TRow {
    const char* Line;
    const char* FileName;
    int Number;
    TMessageKind Kind;
  };
  const TRow rows[] = {
      {"Main.pas(12,5) Error: Identifier not found", "/work/Main.pas", 12, TMessageKind::Error},
      {"/a b/U.pas(3) Fatal: Syntax error", "/a b/U.pas", 3, TMessageKind::Error},
      {"Sieve.pas(21,19) Warning: not initialized", "/work/Sieve.pas", 21, TMessageKind::Warning},
      {"sub/x.cpp:7:3: error: expected ';'", "/work/sub/x.cpp", 7, TMessageKind::Error},
      {"x.h:1:10: fatal error: no.h", "/work/x.h", 1, TMessageKind::Error},
  };
  for (const TRow& row : rows) {
    const auto message = CompilerMessage(row.Line, "/work");
    ASSERT_TRUE(message.has_value()) << row.Line;
    EXPECT_EQ(message->FileName, row.FileName);
    EXPECT_EQ(message->Line, row.Number) << row.Line;
    EXPECT_EQ(message->Kind, row.Kind) << row.Line;
  }
  for (const char* line : {"Compiling Main.pas", "make: *** [all] Error 1", "12 lines compiled"})
    EXPECT_FALSE(CompilerMessage(line, "/work").has_value()) << line;
}

class Debugging : public HostTest {
 protected:
  const std::string Source = WRENFOLD_SOURCE_DIR "/tests/debugger/programs/steps.cpp";

  int LineOf(const std::string& comment) const {
    std::ifstream file(Source);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number)
      if (line.ends_with("// " + comment)) return number;
    return 0;
  }
  TDebugSession& Session() { return Workbench->Debugging().Session(); }
  bool UntilStopped() {
    return QTest::qWaitFor([this] { return Session().Stopped(); }, 20000);
  }
  TComponent* Pane(const char* name) {
    return Screen().FindForm("DisassemblyView")->FindComponent(name);
  }
  std::int64_t Number(const TPersistent& object, const char* name) {
    return object.GetClassInfo().FindProperty(name)->Access->GetInt64(object);
  }
  std::string Text(const TPersistent& object, const char* name) {
    return object.GetClassInfo().FindProperty(name)->Access->GetStr(object);
  }
};

TEST_F(Debugging, StopIsShownInTheEditorAndPublishedByTheCpuWindow) {
  Workbench->Documents().OpenFileAt(Source, LineOf("the sum"));
  Run("RunBreakpointCommand");
  Workbench->Debugging().RunProgram(WRENFOLD_BIN_DIR "/wrenfold-test-steps");
  const bool stopped = UntilStopped();
  if (!stopped && std::getenv("WRENFOLD_REQUIRE_TRACE") == nullptr)
    GTEST_SKIP() << "this machine does not let a program be traced";
  ASSERT_TRUE(stopped);

  TEditPage& page = *Workbench->EditWindow().ActivePage();
  int line = 0, column = 0;
  Workbench->EditWindow().CursorOf(page, line, column);
  EXPECT_EQ(line, LineOf("the sum"));

  Run("ViewCPUCommand");
  TComponent& code = *Pane("DisassemblerView1");
  const auto here = static_cast<std::int64_t>(Session().Now().Address());
  ASSERT_TRUE(QTest::qWaitFor([&] { return Number(code, "SelectedAddress") == here; }, 10000));
  EXPECT_NE(Text(code, "SelectedDisassembly").find(" mov "), std::string::npos)
      << Text(code, "SelectedDisassembly");
  EXPECT_NE(Text(code, "SelectedSource").find("steps.cpp:"), std::string::npos);
  // Inside an instruction the next one is selected.
  const TPropInfo& address = *code.GetClassInfo().FindProperty("SelectedAddress");
  address.Access->SetInt64(code, here + 1);
  EXPECT_GT(Number(code, "SelectedAddress"), here + 1);

  TComponent& registers = *Pane("RegisterView");
  const TPersistent* values =
      registers.GetClassInfo().FindProperty("CurrentRegs")->Access->GetObject(registers);
  EXPECT_EQ(Number(*values, "RIP"), here);
  EXPECT_EQ(values->GetClassInfo().FindProperty("EAX"), nullptr);
  TComponent& flags = *Pane("FlagsView");
  EXPECT_NE(flags.GetClassInfo().FindProperty("CurrentFlags")->Access->GetObject(flags), nullptr);

  Run("RunResetCommand");
  EXPECT_TRUE(QTest::qWaitFor([this] { return !Session().Active(); }, 10000));
}

}  // namespace
}  // namespace wrenfold
