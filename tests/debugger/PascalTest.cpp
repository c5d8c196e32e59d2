// Expressions of Pascal, and free Pascal programs under the debugger.
#include <cmath>
#include <map>

#include "DebuggedProgram.h"
#include "debugger/Pascal.h"
#include "platform/core/text/SysUtils.h"
#include "project/TestSupport.h"

namespace wrenfold {
namespace {

class TNumbers final : public IPascalScope {
 public:
  std::optional<TPascalValue> Find(const std::string& name) override {
    if (EqualText(name, "count")) return TPascalValue{.Kind = TPascalValue::Integer, .Number = 7};
    if (EqualText(name, "name")) return TPascalValue{.Kind = TPascalValue::Text, .String = "abc"};
    return std::nullopt;
  }
};

TEST(PascalExpression, BindsAsTheLanguageDoesAndTellsWhatItCannotRead) {
  struct TRow {
    const char* Expression;
    const char* Shown;
  };
  const TRow rows[] = {
      {"1 + 2 * 3", "7"},
      {"(1 + 2) * 3", "9"},
      {"COUNT = 7", "True"},
      {"count<>7", "False"},
      {"(count > 3) and (count <= 7)", "True"},
      {"not (count > 3) or (Name = 'abc')", "True"},
      {"-count mod 3", "-1"},
      {"count div -1", "-7"},
      {"count / 2", "3.5"},
      {"$fF + 1", "256"},
      {"1.5 + count", "8.5"},
      {"Name[2]", "'b'"},
      {"Name + 'd'", "'abcd'"},
      {"'it''s'#10", "\"'it''s'#10\": the end is expected at character 8"},
      {"Name < 'abd'", "True"},
      {"nil = 0", "True"},
      {"6 and 3", "2"},
      {"9223372036854775807 + 1", "-9223372036854775808"},
      {"", "\"\": a name is expected at character 1"},
      {"count +", "\"count +\": a name is expected at character 8"},
      {"(count", "\"(count\": \")\" is expected at character 7"},
      {"count count", "\"count count\": the end is expected at character 7"},
      {"other", "There is no other here"},
      {"count.X", "\"count.X\": a variable in front is expected at character 7"},
      {"count div 0", "Division by zero"},
      {"Name = 3", "These two values cannot be compared"},
      {"Name[4]", "The text has no character 4"},
  };
  TNumbers scope;
  for (const TRow& row : rows) {
    std::string shown;
    try {
      shown = ShowPascal(EvaluatePascal(row.Expression, scope), "").Value;
    } catch (const EDebugError& error) {
      shown = error.what();
    }
    EXPECT_EQ(shown, row.Shown) << row.Expression;
  }
  EXPECT_THROW(EvaluatePascal(std::string(100'000, '('), scope), EDebugError);
  EXPECT_EQ(PascalQuoted("it's\n"), "'it''s'#10");
}

class PascalProgram : public DebuggedProgram {
 protected:
  static void SetUpTestSuite() {
    Folder = std::make_unique<TTemporaryFolder>();
    Program = Folder->Path() + "/shapes";
    const std::string command =
        "fpc -g -gw3 -FE" + Folder->Path() + " -o" + Program + " " + Source + " >/dev/null 2>&1";
    Built = std::system(command.c_str()) == 0;
  }
  static void TearDownTestSuite() { Folder.reset(); }
  void LaunchTo(const std::string& comment) {
    ASSERT_TRUE(Built) << "the free Pascal compiler (package fp-compiler) is missing or failed";
    Launch({Program, {}, {}}, Source, LineWith(Source, comment));
  }

  inline static const std::string Source =
      std::string(WRENFOLD_SOURCE_DIR) + "/tests/debugger/programs/shapes.pas";
  inline static std::unique_ptr<TTemporaryFolder> Folder;
  inline static std::string Program;
  inline static bool Built = false;
};

TEST_F(PascalProgram, ValuesShowAsWhatTheyAreUnderNamesInAnyCase) {
  LAUNCH("the telling");
  struct TRow {
    const char* Expression;
    const char* Value;
  };
  const TRow rows[] = {
      {"NAME", "'hello'"},
      {"name[1]", "'h'"},
      {"Ratio", "1.5"},
      {"ready", "True"},
      {"Sign", "'x'"},
      {"Empty", "0 elements"},
      {"Title", "'short'"},
      {"shape.fname", "'it''s round'"},
      {"Shape.FPoints", "5 elements"},
      {"Shape.FPoints[4].X", "16"},
      {"Shape.FPoints[5]", "The array has the elements 0 to 4"},
      {"Shape^.FPoints[2].x + 1", "5"},
      {"Place^.X = 9", "True"},
      {"Place.X", "9"},
      {"@Place^ = @Shape.FPoints[3]", "True"},
      {"Shape.FNext = nil", "True"},
      {"Shape.FNext.FName", "FNext is nil"},
      {"Shape.Missing", "There is no field Missing"},
  };
  for (const TRow& row : rows) EXPECT_EQ(ValueOf(row.Expression), row.Value) << row.Expression;
  std::map<std::string, std::string> locals;
  for (const TVariable& variable : Now().Locals) locals[variable.Name] = variable.Value;
  EXPECT_EQ(locals["Name"], "'hello'");
  EXPECT_EQ(locals["Empty"], "0 elements");
}

TEST_F(PascalProgram, ConditionsAreReadInPascalAndCounted) {
  LAUNCH("the telling");
  const int loop = LineWith(Source, "the loop");
  const auto stopsAt = [&](const std::string& condition, int passes) {
    Debugger.SetBreakpoints(
        {{.Place = {Source, loop}, .Condition = condition, .PassCount = passes}});
    Debugger.Launch({Program, {}, {}});
    EXPECT_TRUE(Until([&] { return Now().State == TRunState::Running; }));
    EXPECT_TRUE(UntilNextStop()) << condition;
    return Line() == loop ? ValueOf("I") : Now().Reason;
  };
  EXPECT_EQ(stopsAt("i = 3", 0), "3");
  EXPECT_EQ(stopsAt("i >= 1", 2), "3");
  EXPECT_EQ(stopsAt("FName = 'it''s round'", 0), "0") << "a field of Self";
  EXPECT_EQ(stopsAt("nobody = 3", 0), "0");
  EXPECT_NE(Now().Reason.find("There is no nobody here"), std::string::npos) << Now().Reason;
}

TEST_F(PascalProgram, RaisedExceptionStopsAtItsLineWithClassAndMessage) {
  LAUNCH("the telling");
  Debugger.SetBreakpoints({});
  Debugger.Continue();
  ASSERT_TRUE(UntilNextStop());
  EXPECT_EQ(Now().Reason, "EShape: too many corners");
  ASSERT_LT(Now().FrameIndex, Now().Frames.size());
  EXPECT_EQ(Now().Frames[Now().FrameIndex].Place.Line, LineWith(Source, "the raising"));
  Debugger.Continue();
  ASSERT_TRUE(UntilState(TRunState::Exited));
  EXPECT_NE(Output.find("too many corners"), std::string::npos) << Output;
}

}  // namespace
}  // namespace wrenfold
