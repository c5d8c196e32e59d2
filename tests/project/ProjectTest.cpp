// Projects on disk: files found, missing ones listed, classes followed through the units.
#include <gtest/gtest.h>

#include "project/Project.h"
#include "project/TestSupport.h"

namespace wrenfold {
namespace {

struct TClassCase {
  const char* Name;
  const char* File;
  const char* Text;
  const char* Expected;  // "TMain<TForm TBox<TFrame"
};
class UnitClasses : public testing::TestWithParam<TClassCase> {};

TEST_P(UnitClasses, AreDeclaredInTheText) {
  std::string shown;
  for (const TClassDeclaration& found : ParseUnitSource(GetParam().Text, GetParam().File).Classes)
    shown += (shown.empty() ? "" : " ") + found.Name + "<" + found.Ancestor;
  EXPECT_EQ(shown, GetParam().Expected);
}
const TClassCase ClassCases[] = {
    {"CommentsAnywhere", "a.pas", "type TMain{x}= {TNo=}class (* ( *) ({y}TForm{,} ) end;",
     "TMain<TForm"},
    {"ForwardReferenceAndHelper", "a.pas",
     "TMain = class; TMainClass = class of TMain; TH = class helper for TMain end;"
     "TMain = class(TForm) end;",
     "TMain<TForm"},
    {"UnitBeforeTheAncestorAndInterfaces", "a.pas",
     "TMain = class(Base.Forms.TBase, IThing) end; TBare = class x: Integer; end;",
     "TMain<TBase TBare<TObject"},
    {"TypeParameters", "a.pas",
     "TList<T: class; K: record> = class(TBase<T>) end; TMain = class(TForm) end;",
     "TList<TBase TMain<TForm"},
    {"SealedAndAbstract", "a.pas", "TA = class abstract(TForm) end; TB = packed class(TFrame) end;",
     "TA<TForm TB<TFrame"},
    {"ComparisonIsNoTypeParameter", "a.pas", "const C = A < B; type TMain = class(TForm) end;",
     "TMain<TForm"},
    {"ImplementationIsNotRead", "a.pas", "implementation type TMain = class(TForm) end;", ""},
    {"LeftOutBranch", "a.pas",
     "{$IFDEF NO}TMain = class(TNo){$ELSE}TMain = class(TForm){$ENDIF} end;", "TMain<TForm"},
    {"TextsHoldNoClasses", "a.pas", "const S = 'TNo = class(TForm)'; {TNo = class(TForm)}", ""},
    {"CppDecorations", "a.h",
     "class TFwd;\nclass PACKAGE TMain : public TForm\n{ };\n"
     "class __declspec(delphiclass) TBox : public Forms::TFrame { };\n"
     "template <class T> class TList final : virtual public TBase<T>, IThing {};\n"
     "enum class TKind : int { };",
     "TMain<TForm TBox<TFrame TList<TBase"},
    {"CutInTheMiddle", "a.h", "class __declspec(( TMain", ""},
};
INSTANTIATE_TEST_SUITE_P(, UnitClasses, testing::ValuesIn(ClassCases), CaseName);

TEST(Project, FindsFilesWhateverTheirSlashAndLetterCaseAndListsMissingOnes) {
  const TTemporaryFolder folder;
  folder.Write("Units/MAIN.pas", "");
  folder.Write("other/main.pas", "");
  folder.Write("Beside.pas", "");
  const auto project = TProject::Open(
      folder.Write("App/App.dpr",
                   "program App; uses Forms, Main in '..\\units\\Main.pas' {MainForm},\n"
                   " Main in '../other/main.pas', Gone in 'Gone.pas' {GoneForm: TFrame},\n"
                   " Far in 'C:\\Work\\Far.pas', Folder in '..\\units';"));
  const auto& modules = project->Modules();
  ASSERT_EQ(modules.size(), 5u);
  EXPECT_EQ(modules[0].FileName, folder.Path() + "/Units/MAIN.pas");
  EXPECT_EQ(modules[1].FileName, folder.Path() + "/other/main.pas");
  EXPECT_EQ(modules[1].Line, 2);
  for (size_t missing : {2, 3, 4}) {
    EXPECT_EQ(modules[missing].State, TModuleState::Missing);
    EXPECT_NE(modules[missing].Message.find(modules[missing].FileName), std::string::npos);
  }
  EXPECT_EQ(modules[2].FileName, folder.Path() + "/App/Gone.pas");
  EXPECT_EQ(modules[3].FileName, "C:\\Work\\Far.pas");
  EXPECT_EQ(project->Statistics().Missing, 3u);
}

TEST(Project, UnitsWithoutAFileNameAreThoseBesideTheProject) {
  const TTemporaryFolder folder;
  folder.Write("unit1.pas", "");
  folder.Write("unit1.lfm", "object Form1: TForm1\n  Left = 1\nend\n");
  folder.Write("Unit2.pp", "");
  const auto program = TProject::Open(folder.Write(
      "a.lpr", "program a; uses {$IFDEF FPC}Interfaces, Unit1{$ENDIF}, Unit2, Unit3;"));
  ASSERT_EQ(program->Modules().size(), 2u);
  EXPECT_EQ(program->Modules()[0].FormName, "Form1");
  EXPECT_EQ(program->Modules()[1].FileName, folder.Path() + "/Unit2.pp");
  const auto package = TProject::Open(folder.Write("b.dpk", "package b; contains Unit1, Unit3;"));
  ASSERT_EQ(package->Modules().size(), 2u);
  EXPECT_EQ(package->Modules()[1].State, TModuleState::Missing);
}

struct TChainCase {
  const char* Module;
  const char* Class;
  std::vector<std::string> Expected;
};

TEST(Project, ClassChainFollowsInheritedFormsAsScopeRulesSay) {
  const TTemporaryFolder folder;
  folder.Write("Base.pas", "unit Base; interface type TBase = class(TForm) end;");
  folder.Write("Decoy.pas", "unit Decoy; interface type TBase = class(TFrame) end;");
  folder.Write("Child.pas",
               "unit Child; interface uses Forms, Decoy, Base; type TChild = class(TBase) end;");
  folder.Write("Own.pas",
               "unit Own; interface type TForm = class(Forms.TForm) end;"
               "TMain = class(TForm) end;");
  folder.Write("Round.pas", "unit Round; interface type TA = class(TB) end; TB = class(TA) end;");
  folder.Write("Box.cpp", "#include \"Box.h\"");
  folder.Write("Box.h", "#include \"Root.h\"\nclass TBox : public TRoot {};");
  folder.Write("Root.cpp", "");
  folder.Write("Root.h", "class TRoot : public TDataModule {};");
  const auto pascal = TProject::Open(
      folder.Write("a.dpr",
                   "program a; uses Base in 'Base.pas', Decoy in 'Decoy.pas', Child in 'Child.pas',"
                   "Own in 'Own.pas', Round in 'Round.pas', Gone in 'Gone.pas';"));
  const auto cpp = TProject::Open(
      folder.Write("b.cpp", "USEFORM(\"Box.cpp\", Box); USEFORM(\"Root.cpp\", Root);"));

  const TChainCase cases[] = {
      {"Child", "TChild", {"TChild", "TBase", "TForm"}},
      {"Own", "TMain", {"TMain", "TForm"}},
      {"Round", "TA", {"TA", "TB"}},
      {"Gone", "TGone", {"TGone"}},
      {"Base", "TUnknown", {"TUnknown"}},
      {"Box", "TBox", {"TBox", "TRoot", "TDataModule"}},
  };
  for (const TChainCase& row : cases) {
    TProject& project = pascal->FindModuleByUnit(row.Module) ? *pascal : *cpp;
    EXPECT_EQ(project.ClassChain(*project.FindModuleByUnit(row.Module), row.Class), row.Expected)
        << row.Class;
  }

  const TProjectModule& child = *pascal->FindModuleByUnit("Child");
  pascal->TakeUnitText(child, "unit Child; interface uses Decoy; type TChild = class(TBase) end;");
  EXPECT_EQ(pascal->ClassChain(child, "TChild").back(), "TFrame");
  pascal->ForgetUnit(child);
  EXPECT_EQ(pascal->ClassChain(child, "TChild").back(), "TForm");
}

TEST(Project, EditThatIsNoProjectKeepsTheModulesAndSaveWritesOnlyEdits) {
  const TTemporaryFolder folder;
  const std::string text = "program a;\r\nuses B in 'B.pas';\r\n";
  const std::string name = folder.Write("a.dpr", text);
  const auto project = TProject::Open(name);
  project->Save();
  EXPECT_EQ(TTemporaryFolder::Read(name), text);
  project->Source().SetText("program a;\r\n");
  EXPECT_THROW(project->Refresh(), EProjectError);
  EXPECT_EQ(project->Modules().size(), 1u);
  project->Source().SetText(text + "{ \u20AC }");
  project->Refresh();
  project->Save();
  EXPECT_EQ(TTemporaryFolder::Read(name), text + "{ \u20AC }");
}

}  // namespace
}  // namespace wrenfold
