// Each rule of the check of forms: what it finds, and what looks like it and is none.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "project/TestSupport.h"
#include "tools/Commands.h"
#include "tools/LintRules.h"

namespace wrenfold {
namespace {

struct TFile {
  const char* Name;
  const char* Text;
};

struct TLintCase {
  const char* Name;
  std::vector<TFile> Files;
  const char* Expected;  // "rule path" of each finding
  bool Strict = false;
  std::size_t NotChecked = 0;
};
class Lint : public testing::TestWithParam<TLintCase> {};

std::string FindingsIn(const std::string& folder, bool strict, TLintResult& result) {
  TLintSources sources(folder);
  for (const std::string& form : sources.Forms())
    LintForm(sources, sources.Form(form), strict, result);
  std::string shown;
  for (const TLintFinding& finding : result.Findings)
    shown += (shown.empty() ? "" : "; ") + finding.Rule + " " + finding.Path;
  return shown;
}

TEST_P(Lint, FindsWhatIsProvenAlone) {
  const TTemporaryFolder folder;
  for (const TFile& file : GetParam().Files) folder.Write(file.Name, file.Text);
  TLintResult result;
  EXPECT_EQ(FindingsIn(folder.Path(), GetParam().Strict, result), GetParam().Expected)
      << (result.Findings.empty() ? "" : result.Findings[0].Message);
  EXPECT_EQ(result.NotChecked, GetParam().NotChecked);
}

constexpr const char* Main =
    "unit Main; interface uses Forms, Classes; type TMain = class(TForm) Ok: TButton; "
    "procedure OkClick(Sender: TObject); procedure Key(Sender: TObject; var Key: Word; Shift: "
    "TShiftState); private procedure Hidden(Sender: TObject); end; implementation end.";
constexpr const char* Base =
    "unit Base; interface uses Forms; type TBase = class(TForm) Bar: TPanel; procedure Old(Sender: "
    "TObject); end; implementation end.";
constexpr const char* BaseForm = "object BaseForm: TBase\n  object Bar: TPanel\n  end\nend\n";
constexpr const char* Child =
    "unit Child; interface uses Base; type TChild = class(TBase) end; implementation end.";

const TLintCase LintCases[] = {
    {"MethodThatIsNotDeclared",
     {{"Main.pas", Main}, {"Main.dfm", "object M: TMain\n  OnCreate = Gone\nend\n"}},
     "event M.OnCreate"},
    {"MethodInAnyLetterCaseOrInTheBase",
     {{"Base.pas", Base},
      {"Child.pas", Child},
      {"Base.dfm", BaseForm},
      {"Child.dfm", "inherited C: TChild\n  OnCreate = OLD\nend\n"}},
     ""},
    {"MethodThatALeftOutBranchMayHave",
     {{"Main.pas",
       "unit Main; interface uses Forms; type TMain = class(TForm) {$IFDEF X} procedure Gone(S: "
       "TObject); {$ENDIF} end; implementation end."},
      {"Main.dfm", "object M: TMain\n  OnCreate = Gone\nend\n"}},
     "",
     false,
     1},
    {"MethodBehindAnUnknownAncestor",
     {{"Main.pas", "unit Main; interface uses Forms, Far; type TMain = class(TFar) end; end."},
      {"Main.dfm", "object M: TMain\n  OnCreate = Gone\nend\n"}},
     "",
     false,
     2},
    {"MethodInAnIncludeFileThatIsMissing",
     {{"Main.pas",
       "unit Main; interface uses Forms; type TMain = class(TForm) {$I gone.inc} end; end."},
      {"Main.dfm", "object M: TMain\n  OnCreate = Gone\nend\n"}},
     "",
     false,
     2},
    {"MethodThatIsNotPublished",
     {{"Main.pas", Main}, {"Main.dfm", "object M: TMain\n  OnCreate = Hidden\nend\n"}},
     "event M.OnCreate"},
    {"MethodWithOtherParameters",
     {{"Main.pas", Main},
      {"Main.dfm",
       "object M: TMain\n  object Ok: TButton\n    OnClick = Key\n    OnKeyDown = "
       "OkClick\n    OnKeyUp = Key\n  end\nend\n"}},
     "event M.Ok.OnClick; event M.Ok.OnKeyDown"},
    {"ParametersOfClassesThatAreNotKnown",
     {{"Main.pas", Main},
      {"Main.dfm",
       "object M: TMain\n  object Ok: TFancyButton\n    OnClick = Key\n    OnFancy = Gone\n"
       "  end\nend\n"}},
     "",
     false,
     3},
    {"TypesThatMayBeTheSame",
     {{"Main.pas",
       "unit Main; interface uses Forms; type TMain = class(TForm) procedure A(Sender: "
       "System.TObject); procedure B(Sender: TSender); end; implementation end."},
      {"Main.dfm", "object M: TMain\n  OnCreate = A\n  OnShow = B\nend\n"}},
     ""},
    {"FieldOfAnotherType",
     {{"Main.pas", Main}, {"Main.dfm", "object M: TMain\n  object Ok: TLabel\n  end\nend\n"}},
     "field M.Ok"},
    {"FieldOfAnAncestorsType",
     {{"Main.pas", Main}, {"Main.dfm", "object M: TMain\n  object Ok: TBitBtn\n  end\nend\n"}},
     ""},
    {"FieldOfAClassOfTheProject",
     {{"Main.pas", Main},
      {"Buttons2.pas", "unit Buttons2; interface type TMyButton = class(TButton) end; end."},
      {"Main.dfm", "object M: TMain\n  object Ok: TOther\n  end\nend\n"}},
     "",
     false,
     1},
    {"ReferenceToNothing",
     {{"Main.pas", Main},
      {"Main.dfm",
       "object M: TMain\n  ActiveControl = Gone\n  object Ok: TButton\n    PopupMenu = "
       "Nowhere\n    Action = nil\n  end\nend\n"}},
     "reference M.ActiveControl; reference M.Ok.PopupMenu"},
    {"ReferenceIntoTheBaseAndToOtherForms",
     {{"Base.pas", Base},
      {"Base.dfm", BaseForm},
      {"Child.pas", Child},
      {"Child.dfm",
       "inherited C: TChild\n  ActiveControl = bar\n  PopupMenu = BaseForm.Bar\n  Menu = "
       "BaseForm.Gone\n  Images = Far.List\nend\n"}},
     "reference C.Menu",
     false,
     1},
    {"SameNameTwice",
     {{"Main.pas", Main},
      {"Main.dfm",
       "object M: TMain\n  object Ok: TButton\n    object OK: TButton\n    end\n  end\nend\n"}},
     "name M.OK"},
    {"SameNameInsideAFrame",
     {{"Main.pas", Main},
      {"Main.dfm",
       "object M: TMain\n  object Bar: TPanel\n  end\n  inline F: TBox\n    inherited Bar: "
       "TPanel\n    end\n  end\nend\n"}},
     "",
     false,
     1},
    {"InheritedWhatTheBaseLacks",
     {{"Base.pas", Base},
      {"Base.dfm", BaseForm},
      {"Child.pas", Child},
      {"Child.dfm",
       "inherited C: TChild\n  inherited Bar: TPanel\n  end\n  inherited Gone: TPanel\n"
       "  end\nend\n"}},
     "inherited C.Gone"},
    {"InheritedFromAFormThatIsNotThere",
     {{"Base.pas", Base},
      {"Child.pas", Child},
      {"Child.dfm", "inherited C: TChild\n  inherited Gone: TPanel\n  end\nend\n"}},
     "",
     false,
     1},
    {"InheritedFromTheLibrary",
     {{"Main.pas", Main}, {"Main.dfm", "inherited M: TMain\nend\n"}},
     "inherited M"},
    {"InheritedWhatTheFrameLacks",
     {{"Main.pas", Main},
      {"Box.pas", "unit Box; interface uses Forms; type TBox = class(TFrame) end; end."},
      {"Box.dfm", "object Box: TBox\n  object Bar: TPanel\n  end\nend\n"},
      {"Main.dfm",
       "object M: TMain\n  inline F: TBox\n    inherited Bar: TPanel\n    end\n"
       "    inherited Gone: TPanel\n    end\n  end\nend\n"}},
     "inherited M.Gone"},
    {"ClassThatTheUnitDoesNotDeclare",
     {{"Main.pas", Main}, {"Main.dfm", "object M: TMain2\nend\n"}},
     "ancestor M"},
    {"AncestorThatNoUnitDeclares",
     {{"Main.pas", "unit Main; interface uses Forms, Base; type TMain = class(TGone) end; end."},
      {"Base.pas", Base},
      {"Main.dfm", "object M: TMain\nend\n"}},
     "ancestor M"},
    {"StrictKeysAndTabOrders",
     {{"Main.pas", Main},
      {"Main.dfm",
       "object M: TMain\n  object A: TButton\n    Caption = '&Yes'\n    TabOrder = 0\n  end\n"
       "  object B: TButton\n    Caption = 'Fa&y'\n    TabOrder = 0\n  end\n  object C: TButton\n"
       "    Caption = 'A && &B'\n    TabOrder = 1\n  end\n  object D: TLabel\n    Caption = "
       "'&yes'\n"
       "    Visible = False\n  end\n  object P: TPanel\n    object E: TButton\n      Caption = "
       "'&Yes'\n"
       "      TabOrder = 0\n    end\n  end\nend\n"}},
     "accelerator M.B.Caption; taborder M.B.TabOrder",
     true},
    {"CppUnit",
     {{"Main.h",
       "class TMain : public TForm\n{\n__published:\n  TButton *Ok;\n  void __fastcall "
       "OkClick(TObject *Sender);\n};\n"},
      {"Main.cpp", "#include \"Main.h\"\n"},
      {"Main.dfm",
       "object M: TMain\n  OnShow = Gone\n  object Ok: TLabel\n    OnClick = OkClick\n"
       "  end\nend\n"}},
     "event M.OnShow; field M.Ok",
     false,
     1},
};
INSTANTIATE_TEST_SUITE_P(, Lint, testing::ValuesIn(LintCases), CaseName);

class TLines : public TOutput {
 public:
  std::vector<std::string> Lines, Errors;

 private:
  void PutLine(const std::string& text) override { Lines.push_back(text); }
  void PutError(const std::string& text) override { Errors.push_back(text); }
  void PutProgress(std::size_t, std::size_t, const std::string&) override {}
};

TEST(LintCommand, TellsFindingsAsTextAndAsJson) {
  const TTemporaryFolder folder;
  folder.Write("Main.pas", Main);
  const std::string form = folder.Write("Main.dfm", "object M: TMain\n  OnCreate = Gone\nend\n");
  TLines text, json;
  EXPECT_EQ(RunLint({form}, {}, text), ecFindings);
  EXPECT_THAT(
      text.Lines,
      testing::ElementsAre(form + "(2): M.OnCreate: TMain does not declare the method Gone [event]",
                           "linted 1 forms: 1 findings, 0 not checked"));
  EXPECT_EQ(RunLint({form}, {.Json = true}, json), ecFindings);
  EXPECT_EQ(json.Lines[1],
            "{\"file\":\"" + form +
                "\",\"line\":2,\"path\":\"M.OnCreate\",\"rule\":\"event\",\"message\":"
                "\"TMain does not declare the method Gone\"}");
  const std::string bad = folder.Write("Bad.dfm", "object M: TMain\n");
  EXPECT_EQ(RunLint({folder.Path()}, {}, text), ecTrouble);
  EXPECT_THAT(text.Errors, testing::ElementsAre(testing::StartsWith(bad + ": Line 2")));
}

TEST(LintCommand, SamplesAreClean) {
  const std::string samples = WRENFOLD_SOURCE_DIR "/samples/";
  TLines lines;
  EXPECT_EQ(RunLint({samples + "ledgerline/Ledgerline.dpr", samples + "cpp/Timekeeper.cpp"},
                    {.Strict = true}, lines),
            ecFine)
      << lines.Lines[0];
}

}  // namespace
}  // namespace wrenfold
