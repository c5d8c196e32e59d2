// Building, running and stopping a program from the workbench.
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <cstdlib>
#include <fstream>

#include "host/HostTest.h"
#include "host/debug/ExpressionAt.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"

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

TEST(ExpressionAt, TakesTheNameWithWhatItIsAPartOf) {
  struct TRow {
    const char* Line;  // the place is marked by "|"
    const char* Expression;
  };
  const TRow rows[] = {
      {"  x := Sh|ape.Points[1].X + 1;", "Shape"},
      {"  x := Shape.Po|ints[1].X + 1;", "Shape.Points"},
      {"  x := Shape.Points[i + 1].|X + 1;", "Shape.Points[i + 1].X"},
      {"  p^.Next^.Na|me", "p^.Next^.Name"},
      {"  (*p).n|ame", "name"},
      {"  this->list->co|unt", "this->list->count"},
      {"  a[1].b[2].|c", "a[1].b[2].c"},
      {"  1|2 + x", ""},
      {"  x |+ y", ""},
      {"].|c", "c"},
      {"  x|", ""},
  };
  for (const TRow& row : rows) {
    std::string line = row.Line;
    const std::size_t at = line.find('|');
    line.erase(at, 1);
    EXPECT_EQ(ExpressionAt(line, at), row.Expression) << row.Line;
  }
}

TEST(Breakpoints, ConditionsGoWithTheirLinesAndAreKeptAsText) {
  TBreakpoints list;
  list.Put({.Place = {"/a.pas", 3}, .Condition = "I = 2", .PassCount = 4});
  list.Put({.Place = {"/a.pas", 9}, .Condition = "a\tb"});
  list.Put({.Address = 0x401000});
  list.Move("/a.pas", {5, 11});
  EXPECT_EQ(list.LinesOf("/a.pas"), (std::set<int>{5, 11}));
  EXPECT_EQ(list.Find({.Place = {"/a.pas", 5}})->Condition, "I = 2");
  const TBreakpoints read = TBreakpoints::FromText(list.ToText() + "noise\n/b.pas\tx\t1\t\n\t\t\n");
  ASSERT_EQ(read.All().size(), 2u) << "addresses mean nothing in another run";
  EXPECT_EQ(read.Find({.Place = {"/a.pas", 5}})->PassCount, 4);
  EXPECT_EQ(read.Find({.Place = {"/a.pas", 11}})->Condition, "a\tb");
  list.Move("/a.pas", {5});
  EXPECT_EQ(list.LinesOf("/a.pas"), std::set<int>{5});
  EXPECT_EQ(list.Find({.Place = {"/a.pas", 5}})->Condition, "I = 2");
}

TEST(JumpLanes, CrossingJumpsDoNotShareALaneAndShortOnesAreNearest) {
  std::vector<TJump> jumps{
      {.From = 0, .To = 20}, {.From = 5, .To = 8}, {.From = 30, .To = 25}, {.From = 7, .To = 12}};
  AssignLanes(jumps, 3);
  const auto lane = [&](int from) {
    return std::find_if(jumps.begin(), jumps.end(),
                        [from](const TJump& j) { return j.From == from; })
        ->Lane;
  };
  EXPECT_EQ(lane(5), 0);
  EXPECT_EQ(lane(30), 0);
  EXPECT_EQ(lane(7), 1);
  EXPECT_EQ(lane(0), 2);
  for (int i = 0; i < 50; ++i) jumps.push_back({.From = i, .To = i + 60});
  AssignLanes(jumps, 3);
  for (const TJump& jump : jumps) EXPECT_LT(jump.Lane, 3);
}

TEST(MemoryUnits, NumbersComeBackAsTheBytesTheyWereAndBadOnesAreRefused) {
  const std::string bytes("\x00\x01\x7F\x80\xFF\x20\x41\x40\x00\x00\x80\x3F\x01\x02\x03\x04", 16);
  for (const TMemoryUnit& unit : MemoryUnits())
    EXPECT_EQ(ParseUnits(unit, FormatUnits(unit, bytes), bytes.size()), bytes) << unit.Name;
  EXPECT_EQ(FormatUnits(MemoryUnits()[1], "\x34\x12\x78\x56"), "1234 5678");
  EXPECT_EQ(FormatUnits(MemoryUnits()[4], std::string_view("\0\0\x80\x3F", 4)), "1");
  for (const char* text : {"00 11", "00 1G", "00 100", "", "00 11 22 33"})
    EXPECT_FALSE(ParseUnits(MemoryUnits()[0], text, 3).has_value()) << text;
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
  static constexpr const char* NoTrace = "this machine does not let a program be traced";
  // Stops there, unless the machine forbids it.
  void RunToTheSum() {
    Workbench->Documents().OpenFileAt(Source, LineOf("the sum"));
    Run("RunBreakpointCommand");
    Workbench->Debugging().RunProgram(WRENFOLD_BIN_DIR "/wrenfold-test-steps");
    const bool stopped = UntilStopped();
    ASSERT_TRUE(stopped || std::getenv("WRENFOLD_REQUIRE_TRACE") == nullptr);
  }
  // The CPU window, with the code at the program's place.
  TForm& OpenCpu() {
    Run("ViewCPUCommand");
    const auto here = static_cast<std::int64_t>(Session().Now().Address());
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return Number(*Pane("DisassemblerView1"), "SelectedAddress") == here; }, 10000));
    return *Screen().FindForm("DisassemblyView");
  }
  static TAction* FindAction(const std::string& caption) {
    for (const TActionList* list : TActionList::All())
      for (TAction* action : list->Actions())
        if (action->Caption() == caption) return action;
    return nullptr;
  }
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
  ASSERT_NO_FATAL_FAILURE(RunToTheSum());
  if (!Session().Stopped()) GTEST_SKIP() << NoTrace;

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

TEST_F(Debugging, WatchesAndConditionsAreKeptWithTheProject) {
  const std::string project = WriteProject();
  Workbench->Documents().OpenProject(project);
  TDebugging& debugging = Workbench->Debugging();
  debugging.Session().PutBreakpoint({.Place = {FileOf("Main"), 4}, .Condition = "I = 3"});
  TWatchPanel& watches = Workbench->Panels().Get<TWatchPanel>();
  watches.Add("Count + 1");
  Restart();
  EXPECT_TRUE(Workbench->Debugging().Session().Breakpoints().All().empty());
  Workbench->Documents().OpenProject(project);
  const TBreakpoint* kept =
      Workbench->Debugging().Session().Breakpoints().Find({.Place = {FileOf("Main"), 4}});
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->Condition, "I = 3");
  EXPECT_EQ(Workbench->Panels().Get<TWatchPanel>().Expressions(),
            std::vector<std::string>{"Count + 1"});
}

TEST_F(Debugging, WatchShowsItsValueOrWhyItHasNone) {
  ASSERT_NO_FATAL_FAILURE(RunToTheSum());
  if (!Session().Stopped()) GTEST_SKIP() << NoTrace;
  TWatchPanel& watches = Workbench->Panels().Get<TWatchPanel>();
  watches.Add("point.X + 1");
  watches.Add("nobody");
  const auto& list = *watches.findChild<QTreeWidget*>("Watches");
  const auto text = [&](int row) { return FromQString(list.topLevelItem(row)->text(1)); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return text(0) == "4" && !text(1).empty(); }, 10000));
  EXPECT_NE(text(1).find("nobody"), std::string::npos);
  // The list of breakpoints is the one place for condition and count.
  auto& points =
      *Workbench->Panels().Get<TBreakpointPanel>().findChild<QTreeWidget*>("Breakpoints");
  points.topLevelItem(0)->setText(1, "point.X == 4");
  EXPECT_EQ(Session().Breakpoints().All()[0].Condition, "point.X == 4");
  Run("RunRunCommand");
  EXPECT_TRUE(QTest::qWaitFor([this] { return !Session().Active(); }, 10000)) << "it stopped";
}

TEST_F(Debugging, PanesOfTheCpuAreCopiedChangedAndGoWhereTheyAreToldTo) {
  ASSERT_NO_FATAL_FAILURE(RunToTheSum());
  if (!Session().Stopped()) GTEST_SKIP() << NoTrace;
  TForm& cpu = OpenCpu();
  auto& code = dynamic_cast<TDisassemblyPane&>(*Pane("DisassemblerView1"));
  const std::string here = IntToHex(Session().Now().Address(), 16);
  const std::string all = code.CopyText({});
  EXPECT_NE(all.find(here + "  "), std::string::npos);
  EXPECT_NE(all.find("Sum("), std::string::npos) << "labels are copied too";
  const std::string bare = code.CopyText({.Addresses = false, .Bytes = false});
  EXPECT_EQ(bare.find(here), std::string::npos);
  EXPECT_LT(bare.size(), all.size() / 2);

  auto& dump = dynamic_cast<TDumpPane&>(*Pane("DumpView"));
  const std::uint64_t stack = Session().Now().Register("rsp");
  dump.GoTo(stack);
  const auto cell = [&] { return FromQString(dump.topLevelItem(0)->text(1)); };
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        return dump.topLevelItemCount() > 0 &&
               FromQString(dump.topLevelItem(0)->text(0)) == IntToHex(stack, 16);
      },
      10000));
  dump.SetUnit(MemoryUnits()[2]);
  dump.topLevelItem(0)->setText(1, "00000001 00000002 00000003 DEADBEEF");
  dump.SetUnit(MemoryUnits()[0]);
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return cell() == "01 00 00 00 02 00 00 00 03 00 00 00 EF BE AD DE"; }, 10000))
      << cell();
  dump.topLevelItem(0)->setText(1, "01 zz");
  EXPECT_TRUE(HasMessage("01 zz"));
  EXPECT_EQ(cell(), "01 00 00 00 02 00 00 00 03 00 00 00 EF BE AD DE");

  auto& place = *cpu.findChild<QLineEdit*>("CpuPlace");
  code.setFocus();
  QTest::keyClick(&code, Qt::Key_G, Qt::ControlModifier);
  place.setText("main");
  QTest::keyClick(&place, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return code.SelectedLabel().starts_with("main"); }, 10000));
}

// As the suite's scan goes: by steps of one byte, however far the code reaches.
TEST_F(Debugging, StepsOfAPackageArriveBehindWhatIsShownAndMoveNothing) {
  ASSERT_NO_FATAL_FAILURE(RunToTheSum());
  if (!Session().Stopped()) GTEST_SKIP() << NoTrace;
  OpenCpu();
  TComponent& code = *Pane("DisassemblerView1");
  const TPropInfo& address = *code.GetClassInfo().FindProperty("SelectedAddress");
  auto& view = dynamic_cast<QTreeWidget&>(code);
  const int top = view.verticalScrollBar()->value();
  const std::int64_t start = Number(code, "SelectedAddress");
  for (int line = 0; line < 400; ++line) {
    const std::int64_t before = Number(code, "SelectedAddress");
    address.Access->SetInt64(code, before + 1);
    ASSERT_GT(Number(code, "SelectedAddress"), before) << "line " << line;
  }
  address.Access->SetInt64(code, start);
  EXPECT_EQ(Number(code, "SelectedAddress"), start);
  EXPECT_EQ(view.verticalScrollBar()->value(), top);
}

TEST_F(Debugging, ScanOfTheSuiteTakesTheWindowsText) {
  Folder.Write("Wrenfold4.so", Folder.Read(WRENFOLD_BIN_DIR "/Wrenfold4.so"));
  ASSERT_TRUE(Workbench->Packages().Load(Folder.Path() + "/Wrenfold4.so"));
  ASSERT_TRUE(QTest::qWaitFor([] { return FindAction("View CPU data") != nullptr; }, 5000));
  TAction& scan = *FindAction("View CPU data");
  scan.Update();
  EXPECT_FALSE(scan.Enabled());
  ASSERT_NO_FATAL_FAILURE(RunToTheSum());
  if (!Session().Stopped()) GTEST_SKIP() << NoTrace;
  OpenCpu();
  scan.Update();
  EXPECT_TRUE(scan.Enabled());
  scan.Execute();
  TForm& form = *Screen().FindForm("CPUForm");
  static_cast<TPopupMenu*>(form.FindComponent("TargetMenu"))->Items()->Find("All types")->Click();
  static_cast<TAction*>(form.FindComponent("acGetData"))->Execute();
  const auto& box = *form.findChild<QPlainTextEdit*>("Text");
  const QStringList lines = box.toPlainText().split('\n');
  const std::string here = IntToHex(Session().Now().Address(), 16);
  EXPECT_EQ(lines.filter(QRegularExpression("^[0-9A-F]{16} ")).size(), 10);
  EXPECT_FALSE(lines.filter(QRegularExpression("^" + ToQString(here) + " ")).isEmpty());
  EXPECT_FALSE(lines.filter(QRegularExpression("^RIP " + ToQString(here) + "$")).isEmpty());
  EXPECT_EQ(lines.filter(QRegularExpression(R"(^[A-Z]{2} \d \[.+\]$)")).size(), 14);
  EXPECT_EQ(Number(*Pane("DisassemblerView1"), "SelectedAddress"),
            static_cast<std::int64_t>(Session().Now().Address()));
}

}  // namespace
}  // namespace wrenfold
