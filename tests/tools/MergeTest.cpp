// Forms merged by meaning: tables of base, both sides, result and conflicts.
#include <gmock/gmock.h>

#include "CommandsSupport.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct TMergeCase {
  const char* Name;
  // What stands in the root, lines joined by '|'; each line begins with its blanks.
  const char* Base;
  const char* Ours;
  const char* Theirs;
  const char* Merged;
  std::vector<std::string> Conflicts = {};
};

void PrintTo(const TMergeCase& row, std::ostream* stream) {
  *stream << row.Name;
}

std::string FormOf(const std::string& lines, const char* lineEnd = "\r\n") {
  std::string text = std::string("object F: TF") + lineEnd;
  for (const char c : lines) text += c == '|' ? std::string(lineEnd) : std::string(1, c);
  return text + (lines.empty() ? "" : lineEnd) + "end" + lineEnd;
}

class MergeTest : public CommandsTest, public testing::WithParamInterface<TMergeCase> {
 protected:
  int Merge(const std::string& base, const std::string& ours, const std::string& theirs) {
    return RunMerge({Write("base", base), Write("ours", ours), Write("theirs", theirs), Result},
                    Output);
  }
  std::string AsBinary(const std::string& text) {
    const std::string from = Write("text", text), to = (Folder / "binary").string();
    RunConvert(from, to, {TStoredForm::Binary}, Output);
    return ReadWholeFile(to);
  }
  void SetUp() override {
    CommandsTest::SetUp();
    Result = (Folder / "result").string();
  }
  std::string Result;
};

TEST_P(MergeTest, GivesBothSidesAndTellsConflicts) {
  const TMergeCase& row = GetParam();
  const int expected = row.Conflicts.empty() ? ecFine : ecFindings;
  EXPECT_EQ(Merge(FormOf(row.Base), FormOf(row.Ours), FormOf(row.Theirs)), expected);
  EXPECT_EQ(ReadWholeFile(Result), FormOf(row.Merged));
  EXPECT_THAT(Output.Lines, testing::ElementsAreArray(row.Conflicts));
  EXPECT_THAT(Output.Errors, ElementsAre());
  // The forms of the other files do not matter.
  EXPECT_EQ(Merge(AsBinary(FormOf(row.Base)), FormOf(row.Ours), AsBinary(FormOf(row.Theirs))),
            expected);
  EXPECT_EQ(ReadWholeFile(Result), FormOf(row.Merged));
}

const TMergeCase Cases[] = {
    {"DifferentPropertiesOfOneComponent", "  A = 1|  B = 2", "  A = 3|  B = 2", "  A = 1|  B = 4",
     "  A = 3|  B = 4"},
    {"NewPropertiesStandWhereTheyCameFrom", "  A = 1|  Z = 2", "  A = 1|  M = 5|  Z = 2",
     "  A = 1|  B = 3|  Z = 2|  ZZ = 4", "  A = 1|  B = 3|  M = 5|  Z = 2|  ZZ = 4"},
    {"RemovedProperty", "  A = 1|  B = 2", "  A = 1|  B = 3", "  B = 2", "  B = 3"},
    {"SameChange", "  A = 1", "  A = 2", "  A = 2", "  A = 2"},
    {"SameValueInAnotherNotation", "  A = 1.5", "  A = 15E-1", "  A = 2.5", "  A = 2.5"},
    {"OneProperty", "  A = 1", "  A = 2", "  A = 3", "  A = 2", {"F.A: 1 | 2 | 3"}},
    {"ChangedAndRemoved", "  A = 1", "  A = 2", "", "  A = 2", {"F.A: 1 | 2 | (none)"}},
    {"BoundsAreOneValue",
     "  Left = 1|  Top = 1",
     "  Left = 2|  Top = 1",
     "  Left = 1|  Top = 2",
     "  Left = 2|  Top = 1",
     {"F.Left/Top/Width/Height: 1, 1, (none), (none) | 2, 1, (none), (none) | 1, 2, (none), "
      "(none)"}},
    {"BoundsOfTheirs", "  Left = 1|  Top = 1|  C = 1", "  Left = 1|  Top = 1|  C = 2",
     "  Left = 5|  Width = 7|  C = 1", "  Left = 5|  Width = 7|  C = 2"},
    {"AddedOnBothSides", "  object A: T|  end", "  object A: T|  end|  object O: T|  end",
     "  object B: T|    P = 1|  end|  object A: T|  end|  object C: T|  end",
     "  object B: T|    P = 1|  end|  object A: T|  end|  object C: T|  end|  object O: T|  end"},
    {"AddedWithWhatIsInside", "", "  A = 1", "  object P: T|    object Q: T|    end|  end",
     "  A = 1|  object P: T|    object Q: T|    end|  end"},
    {"SameNameAddedTwice",
     "",
     "  object A: T|    P = 1|  end",
     "  object A: T|    P = 2|    Q = 3|  end",
     "  object A: T|    P = 1|    Q = 3|  end",
     {"F.A.P: (none) | 1 | 2"}},
    {"DeletedByTheirs", "  object A: T|  end|  object B: T|  end",
     "  C = 1|  object A: T|  end|  object B: T|  end", "  object B: T|  end",
     "  C = 1|  object B: T|  end"},
    {"DeletedByOurs", "  object A: T|  end|  object B: T|  end", "  object B: T|  end",
     "  object A: T|  end|  object B: T|    P = 1|  end", "  object B: T|    P = 1|  end"},
    {"DeletedAndChanged",
     "  object A: T|    object B: T|    end|  end",
     "  object A: T|    object B: T|      P = 1|    end|  end",
     "",
     "  object A: T|    object B: T|      P = 1|    end|  end",
     {"F.A: T | T (changed) | (deleted)"}},
    {"ChangedAndDeleted",
     "  object A: T|  end",
     "",
     "  object A: T|    P = 1|  end",
     "",
     {"F.A: T | (deleted) | T (changed)"}},
    {"AddedInsideADeletedOne",
     "  object A: T|  end",
     "",
     "  object A: T|    object B: T|    end|  end",
     "",
     {"F.A: T | (deleted) | T (changed)"}},
    {"RenamedByTheirs", "  object A: T|    P = 1|  end", "  object A: T|    P = 2|  end",
     "  object B: T|    P = 1|  end", "  object B: T|    P = 2|  end"},
    {"RenamedByOurs", "  object A: T|    P = 1|  end", "  object B: T|    P = 1|  end",
     "  object A: T|    P = 2|  end", "  object B: T|    P = 2|  end"},
    {"RenamedTwice",
     "  object A: T|    P = 1|  end",
     "  object B: T|    P = 1|  end",
     "  object C: T|    P = 1|  end",
     "  object B: T|    P = 1|  end",
     {"F.B.Name: A | B | C"}},
    {"OtherPropertiesUnderANewNameAreAnotherComponent", "  object A: T|    P = 1|  end",
     "  object A: T|    P = 1|  end", "  object B: T|    P = 9|  end",
     "  object B: T|    P = 9|  end"},
    {"MovedAndChanged", "  object A: T|    P = 1|  end|  object B: T|  end",
     "  object A: T|    P = 2|  end|  object B: T|  end",
     "  object B: T|    object A: T|      P = 1|    end|  end",
     "  object B: T|    object A: T|      P = 2|    end|  end"},
    {"MovedOutOfADeletedOne", "  object A: T|    object B: T|    end|  end",
     "  C = 1|  object A: T|    object B: T|    end|  end", "  object B: T|  end",
     "  C = 1|  object B: T|  end"},
    {"MovedToTwoPlaces",
     "  object A: T|  end|  object B: T|  end|  object C: T|  end",
     "  object A: T|    object C: T|    end|  end|  object B: T|  end",
     "  object A: T|  end|  object B: T|    object C: T|    end|  end",
     "  object A: T|    object C: T|    end|  end|  object B: T|  end",
     {"F.A.C (parent): F | F.A | F.B"}},
    {"MovedIntoEachOther",
     "  object A: T|  end|  object B: T|  end",
     "  object A: T|    object B: T|    end|  end",
     "  object B: T|    object A: T|    end|  end",
     "  object A: T|    object B: T|    end|  end",
     {"F.A (parent): F | F | F.B"}},
    {"NewOrder", "  object A: T|  end|  object B: T|  end|  object C: T|  end",
     "  object A: T|  end|  object X: T|  end|  object B: T|  end|  object C: T|  end",
     "  object C: T|  end|  object A: T|  end|  object B: T|  end",
     "  object C: T|  end|  object X: T|  end|  object A: T|  end|  object B: T|  end"},
    {"TwoNewOrders",
     "  object A: T|  end|  object B: T|  end|  object C: T|  end",
     "  object B: T|  end|  object A: T|  end|  object C: T|  end",
     "  object A: T|  end|  object C: T|  end|  object B: T|  end",
     "  object B: T|  end|  object A: T|  end|  object C: T|  end",
     {"F (order): A, B, C | B, A, C | A, C, B"}},
    {"OtherClass",
     "  object A: T|  end",
     "  object A: T1|  end",
     "  object A: T2|  end",
     "  object A: T1|  end",
     {"F.A: T | T1 | T2"}},
    {"ItemByItem",
     "  C = <|    item|      W = 1|    end|    item|      W = 2|    end>",
     "  C = <|    item|      W = 9|    end|    item|      W = 2|    end>",
     "  C = <|    item|      W = 8|    end|    item|      W = 3|    end>",
     "  C = <|    item|      W = 9|    end|    item|      W = 3|    end>",
     {"F.C[0].W: 1 | 9 | 8"}},
    {"CollectionsOfOtherLength",
     "  C = <|    item|    end>",
     "  C = <|    item|      W = 1|    end>",
     "  C = <>",
     "  C = <|    item|      W = 1|    end>",
     {"F.C: <...> | <...> | <>"}},
    {"NamelessComponentsByTheirNumber", "  object T|    P = 1|  end|  object T|    P = 2|  end",
     "  object T|    P = 3|  end|  object T|    P = 2|  end",
     "  object T|    P = 1|  end|  object T|    P = 4|  end",
     "  object T|    P = 3|  end|  object T|    P = 4|  end"},
    {"NamesInFramesAreTheirOwn",
     "  inline A: TFrame|    object B: T|    end|  end|  inline C: TFrame|    object B: T|    end|"
     "  end",
     "  inline A: TFrame|    object B: T|      P = 1|    end|  end|  inline C: TFrame|    object "
     "B: T"
     "|    end|  end",
     "  inline A: TFrame|    object B: T|    end|  end|  inline C: TFrame|    object B: T|      P "
     "= 2"
     "|    end|  end",
     "  inline A: TFrame|    object B: T|      P = 1|    end|  end|  inline C: TFrame|    object "
     "B: T"
     "|      P = 2|    end|  end"},
};

INSTANTIATE_TEST_SUITE_P(Forms, MergeTest, testing::ValuesIn(Cases),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST_F(MergeTest, OursKeepsTheBytesThatNothingWasMergedInto) {
  const std::string ours = "object F: TF\n\n   A=  1\n  F = 2.50\n  B = 2\nend\n";
  EXPECT_EQ(Merge(FormOf("  A = 1|  B = 2"), ours, FormOf("  A = 1|  B = 'x'")), ecFine);
  EXPECT_EQ(ReadWholeFile(Result), "object F: TF\n\n   A=  1\n  F = 2.50\n  B = 'x'\nend\n");
  const std::string binary = AsBinary(FormOf("  A = 1"));
  EXPECT_EQ(Merge(FormOf("  A = 1"), binary, FormOf("  A = 2")), ecFine);
  EXPECT_EQ(ReadWholeFile(Result), AsBinary(FormOf("  A = 2")));
  EXPECT_EQ(Merge("", FormOf("  A = 1"), FormOf("  A = 1|  B = 2")), ecFine) << "without a base";
  EXPECT_EQ(ReadWholeFile(Result), FormOf("  A = 1|  B = 2"));
}

TEST_F(MergeTest, WhatIsNoFormIsToldAndNothingIsWritten) {
  EXPECT_EQ(Merge(FormOf(""), FormOf(""), "object F: TF\r\n  A ="), ecTrouble);
  EXPECT_THAT(Output.Errors.at(0), HasSubstr("theirs: Line 2, column 6: expected a value"));
  EXPECT_EQ(Merge(FormOf(""), FormOf("") + FormOf(""), FormOf("")), ecTrouble);
  EXPECT_THAT(Output.Errors.at(1), HasSubstr("ours: expected one object, found 2"));
  EXPECT_FALSE(fs::exists(Result));
}

// Properties from the command line.

struct TSetCase {
  const char* Name;
  const char* Change;
  const char* Form;  // afterwards; null: the error below
  const char* Error = "";
  bool AsText = false;
};

class SetTest : public CommandsTest, public testing::WithParamInterface<TSetCase> {};

TEST_P(SetTest, ChangesOneValueOrTellsWhy) {
  const char* before =
      "  Caption = 'f'|  Font.Size=8|  object P: T|    object B: T|      Left = 1|    end|  end";
  const std::string file = Write("f.dfm", FormOf(before, "\n"));
  const TSetCase& row = GetParam();
  EXPECT_EQ(RunSet(file, {row.Change}, row.AsText, Output),
            row.Form != nullptr ? ecFine : ecTrouble);
  EXPECT_EQ(ReadWholeFile(file), FormOf(row.Form != nullptr ? row.Form : before, "\n"));
  EXPECT_EQ(Output.Errors.size(), row.Form != nullptr ? 0u : 1u);
  for (const std::string& error : Output.Errors) EXPECT_THAT(error, HasSubstr(row.Error));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, SetTest,
    testing::Values(
        TSetCase{
            "Root", "caption='g'",
            "  Caption = 'g'|  Font.Size=8|  object P: T|    object B: T|      Left = 1|    end"
            "|  end"},
        TSetCase{
            "PartOfTheRoot", "Font.Size=9",
            "  Caption = 'f'|  Font.Size=9|  object P: T|    object B: T|      Left = 1|    end"
            "|  end"},
        TSetCase{
            "Path", "P.B.Left=-2",
            "  Caption = 'f'|  Font.Size=8|  object P: T|    object B: T|      Left = -2|    end"
            "|  end"},
        TSetCase{"NewOfANestedOneByItsName", "B.Items.Strings=('a')",
                 "  Caption = 'f'|  Font.Size=8|  object P: T|    object B: T|      Left = 1|"
                 "      Items.Strings = (|        'a')|    end|  end"},
        TSetCase{"TextAsItStands", "F.Caption=it's = \xC3\xA4",
                 "  Caption = 'it'#39's = '#228|  Font.Size=8|  object P: T|    object B: T|"
                 "      Left = 1|    end|  end",
                 "", true},
        TSetCase{"NoComponent", "X.Caption='a'", nullptr, "the form has no component X"},
        TSetCase{"NoValue", "Caption=a b", nullptr, "Caption: a b is no value"},
        TSetCase{"TwoProperties", "Caption=1\r\n  Q = 2", nullptr, "expected one value"},
        TSetCase{"NoPath", "='a'", nullptr, "expected the path of a property"},
        TSetCase{"NoEqualsSign", "Caption", nullptr, "expected PATH=VALUE"}),
    [](const auto& row) { return std::string(row.param.Name); });

TEST_F(SetTest, GetPrintsTheValueAsWritten) {
  const std::string file = Write("f.dfm", FormOf("  S = (|    'a'|    'b')|  object B: T|  end"));
  EXPECT_EQ(RunGet(file, "S", Output), ecFine);
  EXPECT_THAT(Output.Lines, ElementsAre("(", "    'a'", "    'b')"));
  EXPECT_EQ(RunGet(file, "B.Left", Output), ecFindings);
  EXPECT_THAT(Output.Errors, ElementsAre(HasSubstr("B.Left is not stored")));
}

}  // namespace
}  // namespace wrenfold
