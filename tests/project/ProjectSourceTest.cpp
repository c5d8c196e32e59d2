// Clauses, notes, directives and form macros of project sources, and what is wrong with them.
#include <gtest/gtest.h>

#include "project/PascalScanner.h"
#include "project/ProjectSource.h"
#include "project/TestSupport.h"

namespace wrenfold {
namespace {

std::string Shown(const TProjectSource& source) {
  std::string text;
  for (const TProjectEntry& entry : source.Entries) {
    if (!text.empty()) text += "; ";
    text += entry.UnitName;
    if (!entry.Path.empty()) text += "=" + entry.Path;
    if (!entry.FormName.empty()) text += " " + entry.FormName;
    if (!entry.DesignClass.empty()) text += ":" + entry.DesignClass;
  }
  return text;
}

struct TEntriesCase {
  const char* Name;
  const char* File;
  const char* Text;
  const char* Expected;
  size_t Problems = 0;
};

class ProjectEntries : public testing::TestWithParam<TEntriesCase> {};

TEST_P(ProjectEntries, AreThoseOfTheSource) {
  const TProjectSource source = ParseProjectSource(GetParam().Text, GetParam().File);
  EXPECT_EQ(Shown(source), GetParam().Expected);
  EXPECT_EQ(source.Problems.size(), GetParam().Problems)
      << (source.Problems.empty() ? "" : source.Problems[0].Message);
}

const TEntriesCase EntriesCases[] = {
    {"NotesGiveFormAndClass", "a.dpr",
     "program A; uses Forms, M in 'M.pas' {MainForm}, F in 'F.pas' {Box: TFrame},"
     " D in 'D.pas' {Data:TDataModule};",
     "Forms; M=M.pas MainForm; F=F.pas Box:TFrame; D=D.pas Data:TDataModule"},
    {"OrdinaryCommentIsNoNote", "a.dpr",
     "program A; uses M in 'M.pas' {the main form}, N in 'N.pas' {see: N, too}, O in 'O.pas';",
     "M=M.pas; N=N.pas; O=O.pas"},
    {"NoteAfterTheCommaBelongsToNobody", "a.dpr",
     "program A; uses M in 'M.pas', {Form1} N in 'N.pas';", "M=M.pas; N=N.pas"},
    {"CommentsInsideTheClause", "a.dpr",
     "program A; uses // first, second\r\n M {no, really; x} in (* here; *) 'M.pas' {Form1};",
     "M=M.pas Form1"},
    {"UsesInACommentOrTextBeforeTheClause", "a.dpr",
     "// uses Wrong;\n{ uses Bad; } program A; (* uses Worse; *) uses Right;", "Right"},
    {"QuotesDoubledInThePath", "a.dpr", "program A; uses M in 'it''s\\M.pas' {Form1};",
     "M=it's\\M.pas Form1"},
    {"ProgramParametersAndNoHeader", "a.dpr", "program A(Input, Output); uses B;", "B"},
    {"ClauseWithoutProgramHeader", "a.dpr", "uses B in 'B.pas'; begin end.", "B=B.pas"},
    {"DottedUnitsAndWordsInAnyCase", "a.dpr",
     "PROGRAM A; USES Ui.Forms, App.Main IN 'App.Main.pas' {Form1};",
     "Ui.Forms; App.Main=App.Main.pas Form1"},
    {"ActiveBranchesOnly", "a.dpr",
     "program A; uses {$IFDEF MSWINDOWS} Windows, {$ELSE} Libc, {$ENDIF}"
     "{$IFNDEF WIN32} Posix, {$ENDIF} B;",
     "Windows; B"},
    {"NestedBranchOfALeftOutOneStaysOut", "a.dpr",
     "program A; uses {$IFDEF NO}{$IFDEF MSWINDOWS} X, {$ELSE} Y, {$ENDIF} Z, {$ELSE} W, {$ENDIF} "
     "B;",
     "W; B"},
    {"OneOfManyElseIfs", "a.dpr",
     "program A; uses {$IF defined(NO)}X,{$ELSEIF defined(WIN32) and not defined(NO)}Y,"
     "{$ELSEIF true}Z,{$ELSE}V,{$IFEND} B;",
     "Y; B"},
    {"DefinedInTheSourceItself", "a.dpr",
     "{$DEFINE Extra}{$UNDEF WIN32}program A; uses {$IFDEF EXTRA}X,{$ENDIF}{$IFDEF WIN32}Y,{$ENDIF}"
     "B;",
     "X; B"},
    {"CommentEndInATextOfALeftOutBranch", "a.dpr",
     "program A; uses {$IFDEF NO} X in '}{$ENDIF}', {$ENDIF} B;", "B"},
    {"StarDirective", "a.dpr", "program A; uses (*$IFDEF NO*) X, (*$ENDIF*) B;", "B"},
    {"PackageContainsNotRequires", "a.dpk",
     "package A; {$R *.res} requires base, rtl; contains B in '..\\B.pas', C; end.",
     "B=..\\B.pas; C"},
    {"RestOfTheClauseAfterAMistake", "a.dpr", "program A; uses B C, D in M.pas, E in 'E.pas', , F;",
     "B; E=E.pas; F", 3},
    {"ClauseWithoutEnd", "a.dpr", "program A; uses B, C begin end.", "B; C", 1},
    {"TextWithoutEndEndsWithItsLine", "a.dpr", "program A; uses B in 'B.pas\n, C in 'C.pas';",
     "B=B.pas; C=C.pas"},
    {"CommentWithoutEnd", "a.dpr", "program A; uses B, C; { no end", "B; C", 1},
    {"ConditionWithoutEnd", "a.dpr", "program A; uses B; {$IFDEF WIN32} begin end.", "B", 1},
    {"Utf8MarkInFront", "a.dpr", "\xEF\xBB\xBFprogram A; uses B;", "B"},
    {"FormMacros", "a.cpp",
     "#include <Forms.hpp>\r\nUSERES(\"A.res\");\r\nUSEFORM(\"Main.cpp\", MainForm);\r\n"
     "USEUNIT(\"..\\Tools.cpp\");\r\n"
     "USEFORM(\"lib\\\\Data.cpp\", Data); /* TDataModule: File Type */\r\n"
     "USEFORMNS(\"Box.pas\", Box, BoxForm);\r\nUSELIB(\"x.lib\");\r\n",
     "Main=Main.cpp MainForm; Tools=..\\Tools.cpp; Data=lib\\Data.cpp Data:TDataModule; "
     "Box=Box.pas BoxForm"},
    {"ClassCommentOfTheNextMacroOnly", "a.cpp",
     "USEFORM(\"A.cpp\", A);\nUSEFORM(\"B.cpp\", B); /* TFrame: File Type */\n"
     "USEUNIT(\"C.cpp\"); /* TFrame: File Type */",
     "A=A.cpp A; B=B.cpp B:TFrame; C=C.cpp"},
    {"MacrosInCommentsTextsAndDefinitions", "a.cpp",
     "// USEUNIT(\"1.cpp\");\n/* USEUNIT(\"2.cpp\"); */\n#define USEALL \\\n USEUNIT(\"3.cpp\")\n"
     "#if 0\nUSEUNIT(\"4.cpp\");\n#else\nUSEUNIT(\"5.cpp\");\n#endif\n"
     "char* t = \"USEUNIT(\\\"6.cpp\\\")\";",
     "5=5.cpp"},
    {"BrokenMacroIsSkipped", "a.cpp", "USEFORM(Main.cpp, A);\nUSEUNIT(\"B.cpp\");", "B=B.cpp", 1},
};
INSTANTIATE_TEST_SUITE_P(, ProjectEntries, testing::ValuesIn(EntriesCases), CaseName);

struct TRefusalCase {
  const char* Name;
  const char* File;
  std::string Text;
  int Line;
  const char* Expected;
};
class RefusedProject : public testing::TestWithParam<TRefusalCase> {};

TEST_P(RefusedProject, NamesFilePlaceAndWhatWasExpected) {
  try {
    ParseProjectSource(GetParam().Text, GetParam().File);
    FAIL() << "opened";
  } catch (const EProjectError& error) {
    EXPECT_EQ(error.Place.Line, GetParam().Line) << error.Message();
    EXPECT_NE(error.Message().find(GetParam().File), std::string::npos) << error.Message();
    EXPECT_NE(error.Message().find(GetParam().Expected), std::string::npos) << error.Message();
  }
}
const TRefusalCase RefusalCases[] = {
    {"Empty", "a.dpr", "", 1, "empty"},
    {"BlankLinesOnly", "a.dpr", "\r\n\r\n", 1, "empty"},
    {"Binary", "a.dpr", std::string("program A;\r\nuses \0\1\2", 20), 2, "binary"},
    {"NoClause", "a.dpr", "program A;\r\n\r\nbegin\r\nend.", 3, "expected 'uses'"},
    {"PackageWithoutClause", "a.dpk", "package A;\nend.", 2, "'contains'"},
    {"Unit", "a.dpr", "unit A;\ninterface\nuses B;\nend.", 1, "expected 'uses'"},
    {"ClauseLeftOut", "a.dpr", "program A;\r{$IFDEF NO}uses B;{$ENDIF}\rbegin end.", 3, "'begin'"},
    {"CppWithoutMacros", "a.cpp", "#include <Forms.hpp>\nint main() {}\n", 3, "USEFORM"},
};
INSTANTIATE_TEST_SUITE_P(, RefusedProject, testing::ValuesIn(RefusalCases), CaseName);

TEST(ProjectSource, RangeCheckDirectivesAreNoResources) {
  const TProjectSource source = ParseProjectSource(
      "program A; {$R+} {$R *.res} uses B;\r\n{$R 'x y.res' 'x.rc'}\r\n{$R-,Q-}"
      "{$IFDEF NO}{$R no.res}{$ENDIF}\r\nbegin\r\nend.",
      "a.dpr");
  EXPECT_EQ(source.Resources, (std::vector<std::string>{"*.res", "x y.res"}));
}

TEST(ProjectSource, PlacesCountEveryKindOfLineEndOnce) {
  const TProjectSource source =
      ParseProjectSource("program A;\r\nuses\rB,\n  C,\r\n\r\nD;", "a.dpr");
  ASSERT_EQ(source.Entries.size(), 3u);
  EXPECT_EQ(source.Entries[0].Place.Line, 3);
  EXPECT_EQ(source.Entries[1].Place.Line, 4);
  EXPECT_EQ(source.Entries[1].Place.Column, 3);
  EXPECT_EQ(source.Entries[2].Place.Line, 6);
}

struct TConditionCase {
  const char* Condition;
  bool Expected;
};
TEST(Conditions, FollowTheOperatorsOfBothLanguages) {
  const TConditionCase cases[] = {
      {"defined(WIN32)", true},
      {"not Defined(win32)", false},
      {"defined(NO) or (CompilerVersion >= 12) and true", true},
      {"CompilerVersion >= 18.5", false},
      {"declared(TForm)", false},
      {"!defined(NO) && defined WIN32", true},
      {"0", false},
      {"(true", false},
      {"true true", false},
      {"", false},
  };
  for (const TConditionCase& row : cases)
    EXPECT_EQ(EvaluateCondition(row.Condition, DefaultSymbols()), row.Expected) << row.Condition;
  const std::string deep(1'000'000, '(');
  EXPECT_FALSE(EvaluateCondition(deep, DefaultSymbols()));
}

TEST(ProjectSource, TruncatedAnywhereNeverReadsBeyondTheText) {
  const std::string texts[] = {
      "program A; {$IF defined(X)} {$ELSE} uses (* a *) B in 'B''.pas' {F: TFrame}, C; {$R *.res}",
      "#define A \\\r\nUSEFORM(\"..\\\\A.cpp\", /* x */ A); /* TFrame: File Type */ // e"};
  for (const std::string& text : texts) {
    for (size_t length = 0; length <= text.size(); ++length) {
      const std::vector<char> exact(text.begin(), text.begin() + length);
      try {
        ParseProjectSource({exact.data(), exact.size()}, text[0] == '#' ? "a.cpp" : "a.dpr");
      } catch (const EProjectError&) {
      }
    }
  }
}

}  // namespace
}  // namespace wrenfold
