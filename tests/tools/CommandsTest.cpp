// The commands of wrenfold-spc over files in a folder of their own.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "CommandsSupport.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string Form =
    "object A: TForm1\r\n  Left = 8\r\n  object B: TButton\r\n  end\r\nend\r\n";
const std::string FormBinary =
    "TPF0\x06TForm1\x01"s + "A\x04Left\x02\x08\0\x07TButton\x01"s + "B\0\0\0"s;
const std::string FixedFloat = "object A: T\r\n  F = 0.333333333333333300\r\nend\r\n";
const std::string ResourceHeader = "\xFF\x0A\0TFORM1\0\x30\x10\x22\0\0\0"s;
const std::string Wrapped = "TPF0\x08TWrapper\x00\x03I.N\x02\x01\0\0"s;
const std::string WrappedText = "object TWrapper\r\n  I.N = 1\r\nend\r\n";
const std::string Label = "stored Instance --> TWrapper\r\n";

struct TConvertCase {
  const char* Name;
  std::string Bytes;
  TStoredForm Form;
  std::string Converted;
  const char* Style = "";  // none
};

class ConvertTest : public CommandsTest, public testing::WithParamInterface<TConvertCase> {};

TEST_P(ConvertTest, WritesTheOtherForm) {
  const std::string from = Write("from.dfm", GetParam().Bytes);
  const std::string to = (Folder / "to").string();
  const TConversion conversion = {GetParam().Form, FindFormTextStyle(GetParam().Style)};
  EXPECT_EQ(RunConvert(from, to, conversion, Output), ecFine);
  EXPECT_THAT(Output.Errors, ElementsAre());
  EXPECT_EQ(ReadWholeFile(to), GetParam().Converted);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ConvertTest,
    testing::Values(
        TConvertCase{"TextToBinary", Form, TStoredForm::Binary, FormBinary},
        TConvertCase{"BinaryToText", FormBinary, TStoredForm::Text, Form},
        TConvertCase{"LineFeedsOnly", "object A: T\nend\n", TStoredForm::Text,
                     "object A: T\r\nend\r\n"},
        TConvertCase{"ToResource", FormBinary, TStoredForm::Resource, ResourceHeader + FormBinary},
        TConvertCase{"TwoRoots", Form + Form, TStoredForm::Binary, FormBinary + FormBinary},
        TConvertCase{"ResourcesInARow", ResourceHeader + FormBinary + ResourceHeader + FormBinary,
                     TStoredForm::Text, Form + Form},
        TConvertCase{"HeaderToText", "sys_bin\0\x04"s + "1 2x" + Wrapped, TStoredForm::Text,
                     "sys_txt 1 2x\r\n------------\r\n" + Label + WrappedText},
        TConvertCase{"HeaderToBinary", "sys_txt\r\n-------\r\nany label\r\n" + WrappedText,
                     TStoredForm::Binary, "sys_bin\0\0"s + Wrapped},
        TConvertCase{"TextKeepsDigitsOfOtherStyles", FixedFloat, TStoredForm::Text, FixedFloat},
        TConvertCase{"BlankLineBetweenLineFeeds", "object A: T\n  \n  P = 1\nend\n",
                     TStoredForm::Text, "object A: T\r\n  \r\n  P = 1\r\nend\r\n", "edited"},
        TConvertCase{"MarkForAUtf8Name", "TPF0\x01T\x02\xC3\x84\0\0"s, TStoredForm::Text,
                     "\xEF\xBB\xBFobject \xC3\x84: T\r\nend\r\n"},
        TConvertCase{"MarkForAUtf8Identifier",
                     "TPF0\x01T\x01"
                     "A\x01P\x07\x02\xC3\x84\0\0"s,
                     TStoredForm::Text, "\xEF\xBB\xBFobject A: T\r\n  P = \xC3\x84\r\nend\r\n"},
        TConvertCase{"NoMarkForTheLocalCodePage", "TPF0\x01T\x01\xC4\0\0"s, TStoredForm::Text,
                     "object \xC4: T\r\nend\r\n"},
        TConvertCase{"LabelWithoutHeader", Label + WrappedText, TStoredForm::Binary, Wrapped}),
    [](const auto& row) { return row.param.Name; });

TEST_F(CommandsTest, ConvertInPlaceLeavesUnchangedFilesUntouched) {
  const std::string unixText = Write("a/unix.dfm", "object A: T\nend\n");
  const std::string text = Write("a/b/text.DFM", Form);
  const std::string binary = Write("a/binary.sbn", FormBinary);
  const std::string other = Write("a/notes.txt", "object");
  const auto old = fs::last_write_time(text) - std::chrono::hours(1);
  for (const std::string& name : {unixText, text, binary, other}) fs::last_write_time(name, old);
  EXPECT_EQ(RunConvertInPlace({Folder.string()}, {}, Output), ecFine);
  EXPECT_THAT(Output.Lines, ElementsAre("converted 3 files: 1 changed, 2 unchanged, 0 failed"));
  for (const std::string& name : {unixText, text, other})
    EXPECT_EQ(fs::last_write_time(name), old) << name;
  EXPECT_EQ(ReadWholeFile(binary), Form);
}

TEST_F(CommandsTest, ConvertInPlaceLeavesWhatIsInTheFormAlready) {
  const std::string name = Write("fixed.dfm", FixedFloat);
  EXPECT_EQ(RunConvertInPlace({name}, {}, Output), ecFine);
  EXPECT_EQ(ReadWholeFile(name), FixedFloat);
  EXPECT_EQ(RunConvertInPlace({name}, {.Style = FindFormTextStyle("plain")}, Output), ecFine);
  EXPECT_THAT(Output.Lines, ElementsAre(HasSubstr("1 unchanged"), HasSubstr("1 changed")));
}

TEST_F(CommandsTest, OutputGoesIntoPipesAndDescriptorsInsteadOfReplacingThem) {
  const std::string from = Write("from.dfm", FormBinary);
  const std::string pipe = (Folder / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDWR | O_NONBLOCK);
  EXPECT_EQ(RunConvert(from, pipe, {}, Output), ecFine);
  std::string read(Form.size() + 1, '\0');
  EXPECT_EQ(::read(reader, read.data(), read.size()), static_cast<ssize_t>(Form.size()));
  close(reader);
  const std::string log = Write("log", "before ");
  const int writer = open(log.c_str(), O_WRONLY | O_APPEND);
  EXPECT_EQ(RunConvert(from, "/dev/fd/" + std::to_string(writer), {}, Output), ecFine);
  close(writer);
  EXPECT_EQ(ReadWholeFile(log), "before " + Form);
  EXPECT_THAT(Output.Errors, ElementsAre());

  EXPECT_EQ(RunConvert(from, Folder.string(), {}, Output), ecTrouble);
  EXPECT_EQ(RunConvertInPlace({pipe, "-"}, {}, Output), ecTrouble);
  EXPECT_THAT(Output.Errors, ElementsAre(HasSubstr("Is a directory"), HasSubstr("no regular file"),
                                         HasSubstr("cannot be replaced")));
  EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(CommandsTest, FolderThatCannotBeReadIsOneFailureAmongTheOthers) {
  const std::string good = Write("a/good.lfm", Form);
  Write("b/hidden.dfm", Form);
  fs::permissions(Folder, fs::perms(0755));
  fs::permissions(Folder / "b", fs::perms::none);
  const bool root = geteuid() == 0;  // reads everything: become somebody else
  ASSERT_EQ(root ? seteuid(65534) : 0, 0);
  EXPECT_EQ(RunCheck({Folder.string()}, Output), ecTrouble);
  ASSERT_EQ(root ? seteuid(0) : 0, 0);
  fs::permissions(Folder / "b", fs::perms(0755));
  EXPECT_THAT(Output.Errors,
              ElementsAre("Cannot open file " + (Folder / "b").string() + ": Permission denied"));
  EXPECT_THAT(Output.Lines,
              ElementsAre(HasSubstr(good), HasSubstr("checked 2 files: 1 identical")));
}

TEST_F(CommandsTest, ResourceOfAnotherSizeThanItsStreamIsRefused) {
  for (const char* size : {"\0\0\0\0", "\x21\0\0\0", "\x23\0\0\0", "\xFF\xFF\xFF\xFF"}) {
    std::string header = ResourceHeader;
    header.replace(header.size() - 4, 4, size, 4);
    EXPECT_EQ(RunInfo({Write("size.dfm", header + FormBinary)}, Output), ecTrouble);
  }
  EXPECT_THAT(Output.Errors, Each(HasSubstr("size.dfm: Stream read error at offset 12")));
}

TEST_F(CommandsTest, ConvertOfABadFileNamesThePlaceAndLeavesEveryFileAsItWas) {
  const std::string bad = "object A: T\r\n  P = 'open\r\nend\r\n";
  const std::string name = Write("bad.dfm", bad);
  const std::string to = Write("to.dfm", "old");
  EXPECT_EQ(RunConvert(name, to, {.Form = TStoredForm::Binary}, Output), ecTrouble);
  EXPECT_EQ(RunConvertInPlace({name}, {.Form = TStoredForm::Binary}, Output), ecTrouble);
  EXPECT_THAT(Output.Errors, Each(HasSubstr(name + ": Line 2, column 7: expected a string")));
  EXPECT_EQ(Output.Errors.size(), 2u);
  EXPECT_EQ(ReadWholeFile(to), "old");
  EXPECT_EQ(ReadWholeFile(name), bad);
}

TEST_F(CommandsTest, CheckCountsAndShowsTheLineThatDiffers) {
  const std::string good = Write("1.dfm", Form);
  const std::string fixed = Write("2.dfm", "object A: T\n  F = 1.000000000000000000\nend\n");
  const std::string odd = Write("3.dfm", "object A: T\r\n  S = 'a' + 'b'\r\nend\r\n");
  const std::string none = Write("4.dfm", "unit A;");
  const std::string binary = Write("5.dfm", FormBinary);
  EXPECT_EQ(RunCheck({Folder.string()}, Output), ecTrouble);
  EXPECT_THAT(
      Output.Lines,
      ElementsAre(good + ": identical, text, style plain", fixed + ": identical, text, style fixed",
                  odd + ": different at line 2", "  file:       S = 'a' + 'b'",
                  "  rendered:   S = 'ab'", binary + ": identical, binary, style plain",
                  "checked 5 files: 3 identical, 1 different, 1 unreadable"));
  EXPECT_THAT(Output.Errors, ElementsAre(HasSubstr(none + ": ")));
  EXPECT_EQ(RunCheck({good, odd}, Output), ecFindings);
  EXPECT_EQ(RunCheck({good}, Output), ecFine);
}

TEST_F(CommandsTest, LineEndsOfOtherToolsAreNoDifference) {
  const std::string name = Write("a.lfm", "object A: T\n  object B: T[0]\n  end\nend");
  EXPECT_EQ(RunCheck({name}, Output), ecFine);
  EXPECT_EQ(Output.Lines[0], name + ": identical, text, style lfm, without its last line end");
}

struct TCheckCase {
  const char* Name;
  std::string Bytes;
  std::vector<std::string> Lines;  // behind the name of the file
};

class CheckTest : public CommandsTest, public testing::WithParamInterface<TCheckCase> {};

TEST_P(CheckTest, TellsWhatDiffers) {
  const std::string name = Write("file.dfm", GetParam().Bytes);
  EXPECT_EQ(RunCheck({name}, Output), ecFindings);
  Output.Lines.pop_back();
  ASSERT_FALSE(Output.Lines.empty());
  Output.Lines[0].erase(0, name.size() + 2);
  EXPECT_EQ(Output.Lines, GetParam().Lines);
}

const std::string Dots(30, 'x');
INSTANTIATE_TEST_SUITE_P(
    Cases, CheckTest,
    testing::Values(TCheckCase{"NoLineEnd",
                               "object A: T\r\nend",
                               {"different at line 2: the file ends without a line end"}},
                    TCheckCase{"BlankLinesBehindTheEnd",
                               "object A: T\nend\n\n",
                               {"different at line 3: blanks or blank lines behind the end"}},
                    TCheckCase{"BlankAtTheEndOfALine",
                               "object A: T\n  P = 1 \nend\n",
                               {"different at line 2: blanks at the end of the line"}},
                    TCheckCase{"MarkThatBinaryDoesNotBringBack",
                               "\xEF\xBB\xBFobject A: T\nend\n",
                               {"different at line 1: a byte order mark that no name needs"}},
                    TCheckCase{"DifferenceFarBehind",
                               "object A: T\n  P = [" + std::string(200, 'x') + ",y]\nend\n",
                               {"different at line 2", "  file:     ..." + Dots.substr(1) + ",y]",
                                "  rendered: ..." + Dots.substr(1) + ", y]"}},
                    TCheckCase{"ControlCode",
                               "object A: T\n  P\x0B= '\x7F'\nend\n",
                               {"different at line 2", "  file:       P#11= '#127'",
                                "  rendered:   P = '#127'"}},
                    TCheckCase{"ResourceHeader",
                               "\xFF\x0A\0tform1\0\x30\x10\x22\0\0\0"s + FormBinary,
                               {"different at offset 3: the resource header differs"}},
                    TCheckCase{"DataHeader",
                               "sys_bin\x01\0"s + Wrapped,
                               {"different at offset 7: the data header differs"}}),
    [](const auto& row) { return row.param.Name; });

TEST_F(CommandsTest, CheckOfBinaryFindsTheStyleThatLosesNothing) {
  const std::string exact = Write(
      "exact.dfm", "TPF0\x01T\x01"s + "A\x01P\x05\xAB\xAA\xAA\xAA\xAA\xAA\xAA\xAA\xFD\x3F\0\0"s);
  const std::string wide = Write("wide.dfm", "TPF0\x01T\x01"s + "A\x01P\x03\x01\0\0\0"s);
  EXPECT_EQ(RunCheck({exact, wide}, Output), ecFindings);
  EXPECT_THAT(Output.Lines, Contains(exact + ": identical, binary, style exact"));
  EXPECT_THAT(Output.Lines, Contains(HasSubstr("different at offset 10: another tag")));
}

TEST_F(CommandsTest, CheckGoesOnWhereOneStyleCannotHoldAValue) {
  const std::string large = Write("large.dfm", "object A: T\r\n  P = 1e4900\r\nend\r\n");
  EXPECT_EQ(RunCheck({large}, Output), ecFindings);
  EXPECT_THAT(Output.Lines, Contains(large + ": different at line 2"));
}

TEST_F(CommandsTest, InfoTellsFormCountsAndTags) {
  const std::string form = Write("form.dfm", Form);
  EXPECT_EQ(RunInfo({form}, Output), ecFine);
  EXPECT_THAT(Output.Lines,
              ElementsAre(form + ": form, text", "  A: TForm1, 2 components, 1 properties",
                          "  value tags: vaInt8 1"));
  const std::string spec = Write("spec.sbn", "sys_bin\0\x03"s + "1 2" + Wrapped);
  EXPECT_EQ(RunInfo({spec}, Output), ecFine);
  EXPECT_THAT(Output.Lines, Contains(spec + ": specification, binary"));
  EXPECT_THAT(Output.Lines, Contains("  data header, description \"1 2\""));
  const std::string extended = Write("spec.sbe", "TPF0\x04Left\x02\x08\0\x03Top\x09\0"s);
  EXPECT_EQ(RunInfo({extended}, Output), ecFine);
  EXPECT_THAT(Output.Lines, Contains(extended + ": specification, extended"));
  EXPECT_THAT(Output.Lines, Contains(HasSubstr("2 properties")));
}

struct TDiffCase {
  const char* Name;
  std::string Left;  // what stands in one object
  std::string Right;
  std::vector<std::string> Lines;
};

class DiffTest : public CommandsTest, public testing::WithParamInterface<TDiffCase> {};

TEST_P(DiffTest, ComparesByMeaning) {
  const std::string left = Write("left.dfm", "object A: T\r\n" + GetParam().Left + "\r\nend\r\n");
  const std::string text = Write("right.txt", "object A: T\r\n" + GetParam().Right + "\r\nend\r\n");
  const std::string right = (Folder / "right.bin").string();
  ASSERT_EQ(RunConvert(text, right, {.Form = TStoredForm::Resource}, Output), ecFine);
  EXPECT_EQ(RunDiff(left, right, Output), GetParam().Lines.empty() ? ecFine : ecFindings);
  EXPECT_EQ(Output.Lines, GetParam().Lines);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DiffTest,
    testing::Values(
        TDiffCase{"FormDoesNotMatter", "P = 1", "P = 1", {}},
        TDiffCase{"WholeFloatIsAnInteger", "P = 2", "P = 2.0", {}},
        TDiffCase{"SetsHaveNoOrder", "P = [a, b]", "P = [b, a]", {}},
        TDiffCase{"PropertiesHaveNoOrder", "P = 1 Q = 2", "Q = 2 P = 1", {}},
        TDiffCase{"StringIsNoIdentifier", "P = 'x'", "P = x", {"! property A.P: 'x' -> x"}},
        TDiffCase{"Missing", "P = 1", "", {"- property A.P: 1"}},
        TDiffCase{"EmptyListIsAValue", "", "P = ()", {"+ property A.P: ()"}},
        TDiffCase{"ListElement", "P = (1 2)", "P = (1 3)", {"! property A.P[1]: 2 -> 3"}},
        TDiffCase{"ItemProperty",
                  "P = <item Q = 1 end>",
                  "P = <item Q = 2 end>",
                  {"! property A.P[0].Q: 1 -> 2"}},
        TDiffCase{"EmptyItemMore",
                  "P = <item end item end>",
                  "P = <item end>",
                  {"- property A.P[1]: item"}},
        TDiffCase{"OrderOfAnItem",
                  "P = <item end>",
                  "P = <item [2] end>",
                  {"! property A.P[0]: item -> item [2]"}},
        TDiffCase{"ListOfAnotherKind",
                  "P = (1)",
                  "P = 1",
                  {"! property A.P: (...) -> 1", "- property A.P[0]: 1"}},
        TDiffCase{"SameNamesTwice",
                  "P = 1 P = 2 object B: U end object B: V end",
                  "P = 1 P = 2 object B: U end object B: V end",
                  {}},
        TDiffCase{"EqualChildMore",
                  "object B: U end object B: U end object U end",
                  "object B: U end object U end object U end",
                  {"- component A.B#1: U", "+ component A.U#1: U"}},
        TDiffCase{"WholeComponent",
                  "",
                  "object B: U P = 1 end",
                  {"+ component A.B: U", "+ property A.B.P: 1"}},
        TDiffCase{"ControlCode", "P = #27", "P = 'a'", {"! property A.P: '#27' -> 'a'"}},
        TDiffCase{"DifferenceFarBehind",
                  "P = '" + std::string(150, 'x') + "y'",
                  "P = '" + std::string(150, 'x') + "z'",
                  {"! property A.P: ..." + Dots + "y' (153 characters) -> ..." + Dots +
                   "z' (153 characters)"}},
        TDiffCase{"ComponentClass",
                  "object B: U end",
                  "inherited B: U end",
                  {"! component A.B: U -> inherited U"}},
        TDiffCase{"ComponentOrder",
                  "object B: U end object C: U end",
                  "object C: U end object B: U end",
                  {"! order of components: A.C stands where A.B was"}}),
    [](const auto& row) { return row.param.Name; });

TEST_F(CommandsTest, DiffComparesFloatsInTheirOwnWidth) {
  // 0.1 as single and as double.
  const std::string stored =
      "TPF0\x01T\x01"
      "A\x01S\x0F\xCD\xCC\xCC\x3D\x01"
      "D\x15\x9A\x99\x99\x99\x99\x99\xB9\x3F\0\0"s;
  const std::string binary = Write("a.dfm", stored);
  for (const char* text : {"S = 0.1s D = 0.1", "S = 0.1 D = 0.1"})
    EXPECT_EQ(RunDiff(binary, Write("b.dfm", "object A: T "s + text + " end"), Output), ecFine);
  const std::string other = Write("c.dfm", "object A: T S = 0.1s D = 0.1000000000000001 end");
  EXPECT_EQ(RunDiff(binary, other, Output), ecFindings);
  EXPECT_THAT(Output.Lines, ElementsAre("! property A.D: 0.1 -> 0.1000000000000001"));
}

TEST_F(CommandsTest, DiffOfAnUnreadableFileIsTrouble) {
  const std::string good = Write("good.dfm", Form);
  EXPECT_EQ(RunDiff(good, (Folder / "missing.dfm").string(), Output), ecTrouble);
  EXPECT_THAT(Output.Errors, ElementsAre("Cannot open file " + (Folder / "missing.dfm").string() +
                                         ": No such file or directory"));
}

// The program itself.

int ExitCodeOf(const std::string& arguments, const std::string& output = ">/dev/null") {
  const std::string command =
      WRENFOLD_BIN_DIR "/wrenfold-spc " + arguments + " " + output + " 2>/dev/null";
  return WEXITSTATUS(std::system(command.c_str()));
}

TEST(Program, ExitCodesTellUsageFromFindings) {
  const std::string samples = WRENFOLD_SOURCE_DIR "/tests/data/forms";
  const std::string two = samples + "/dates.dfm " + samples + "/fixed.dfm";
  const std::pair<std::string, int> rows[] = {{"--help", ecFine},
                                              {"--version", ecFine},
                                              {"", ecTrouble},
                                              {"frobnicate", ecTrouble},
                                              {"convert --to nonsense a b", ecTrouble},
                                              {"convert --to text " + samples, ecTrouble},
                                              {"check " + samples, ecFine},
                                              {"info /nowhere.dfm", ecTrouble},
                                              {"diff " + two, ecFindings},
                                              {"info - < " + samples + "/dates.dfm", ecFine}};
  for (const auto& [arguments, code] : rows) EXPECT_EQ(ExitCodeOf(arguments), code) << arguments;
  for (const char* command : {"--help", "check", "info"})
    for (const char* output : {">/dev/full", ">&-"})
      EXPECT_EQ(ExitCodeOf(command + (" " + samples), output), ecTrouble) << command << output;
}

TEST_F(CommandsTest, MemoryIsBoundedWhereLongNamesNestDeeply) {
  const std::string open = "object " + std::string(255, 'N') + ": B\n";
  std::string text;
  for (int level = 0; level < 500; ++level) text += open;
  for (int i = 0; i < 50'000; ++i) text += "X = 1\n";
  for (int level = 0; level < 500; ++level) text += "end\n";
  const std::string name = Write("deep.dfm", text);
  EXPECT_EQ(ExitCodeOf("info " + name), ecFine);
  EXPECT_EQ(ExitCodeOf("diff " + name + " " + name), ecFine);
  rusage usage{};
  ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
  EXPECT_LT(usage.ru_maxrss, 400 * 1024);  // kilobytes, sanitizers included
}

}  // namespace
}  // namespace wrenfold
