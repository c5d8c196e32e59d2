// Form files in every form, broken ones, and the classes of designed roots.
#include <gtest/gtest.h>

#include "project/FormFile.h"
#include "project/Project.h"
#include "project/TestSupport.h"

namespace wrenfold {
namespace {

constexpr std::string_view FormText =
    "object Main: TMain\r\n  Caption = 'x'\r\n  Unknown.Thing = [a, b]\r\n"
    "  object Ok: TButton\r\n  end\r\nend\r\n";

std::string Converted(std::string_view text, bool resource) {
  std::size_t position = 0;
  TByteWriter bytes;
  if (resource) ObjectTextToResource(text, position, bytes);
  else ObjectTextToBinary(text, position, bytes);
  return bytes.ToString();
}

TEST(FormFile, AllThreeFormsGiveTheSameComponents) {
  const std::string binary = Converted(FormText, false);
  const std::string forms[] = {std::string(FormText), "\xEF\xBB\xBF" + std::string(FormText),
                               binary, Converted(FormText, true)};
  for (const std::string& bytes : forms) {
    const TFormFile form = ReadFormFile(bytes, "a.dfm");
    ASSERT_NE(form.Root, nullptr);
    EXPECT_EQ(form.Root->StoredClassName(), "TMain");
    EXPECT_EQ(form.Root->Children().size(), 1u);
    EXPECT_EQ(WriteDesignForm(*form.Root), binary);
  }
}

TEST(FormFile, BrokenAnywhereIsAnErrorThatNamesTheFile) {
  for (const std::string& bytes : {std::string(FormText.substr(0, FormText.size() - 2)),
                                   Converted(FormText, false), Converted(FormText, true)}) {
    for (size_t length = 0; length < bytes.size(); ++length) {
      try {
        ReadFormFile(bytes.substr(0, length), "a.dfm");
        // The line end behind the last "end" is not needed.
        EXPECT_EQ(bytes.substr(length), "") << length;
      } catch (const EFormFileError& error) {
        EXPECT_EQ(error.Message().rfind("a.dfm", 0), 0u) << error.Message();
      }
    }
  }
  EXPECT_THROW(ReadFormFile("TPF9 something", "a.dfm"), EFormFileError);
  EXPECT_THROW(ReadFormFile(std::string(FormText) + "rest", "a.dfm"), EFormFileError);
}

struct TRootCase {
  const char* Module;
  const char* Is;
  const char* IsNot;
};

TEST(Project, DesignedRootIsWhatItsUnitOrElseItsNoteSays) {
  const TTemporaryFolder folder;
  folder.Write("Base.pas", "unit Base; interface type TBase = class(TForm) end;");
  folder.Write("Base.dfm", "object Base1: TBase\r\nend\r\n");
  folder.Write("Child.pas", "unit Child; interface uses Base; type TChild = class(TBase) end;");
  folder.Write("Child.dfm", "inherited Child1: TChild\r\nend\r\n");
  folder.Write("Data.pas", "unit Data; interface type TData = class(TDataModule) end;");
  folder.Write("data.DFM", Converted("object Data1: TData\r\nend\r\n", true));
  folder.Write("Box.pas", "unit Box; broken");
  folder.Write("Box.lfm", "object Box1: TBox\nend\n");
  folder.Write("Far.pas", "unit Far; interface type TFar = class(TLibraryForm) end;");
  folder.Write("Far.xfm", "object Far1: TFar\nend\n");
  const auto project = TProject::Open(
      folder.Write("a.dpr",
                   "program a; uses Base in 'Base.pas' {Base1}, Child in 'Child.pas' {Child1},"
                   "Data in 'Data.pas' {Data1: TDataModule}, Box in 'Box.pas' {Box1: TFrame},"
                   "Far in 'Far.pas' {Far1}, Bare in 'a.dpr';"));
  const TRootCase cases[] = {{"Base", "TForm", "TDataModule"}, {"Child", "TForm", "TFrame"},
                             {"Child", "TBase", "TFrame"},     {"Data", "TDataModule", "TForm"},
                             {"Box", "TFrame", "TForm"},       {"Far", "TForm", "TFrame"},
                             {"Far", "TLibraryForm", "TFrame"}};
  for (const TRootCase& row : cases) {
    const TFormFile form = project->LoadForm(*project->FindModuleByUnit(row.Module));
    ASSERT_NE(form.Root, nullptr) << row.Module;
    EXPECT_TRUE(IsDesignClass(form.Root->GetClassInfo(), row.Is)) << row.Module;
    EXPECT_FALSE(IsDesignClass(form.Root->GetClassInfo(), row.IsNot)) << row.Module;
  }
  EXPECT_EQ(project->LoadForm(*project->FindModuleByUnit("Bare")).Root, nullptr);
}

TEST(Project, SampleProjectsOpenWhole) {
  const std::string samples = WRENFOLD_SOURCE_DIR "/samples/";
  for (const char* name : {"ledgerline/Ledgerline.dpr", "cpp/Timekeeper.cpp"}) {
    const auto project = TProject::Open(samples + name);
    EXPECT_TRUE(project->Problems().empty());
    EXPECT_EQ(project->Statistics().Missing, 0u);
    for (const TProjectModule& module : project->Modules()) {
      const TTextFile text = TTextFile::Load(module.FileName, 1252);
      EXPECT_EQ(LineEndsName(text.LineEnds()), "CR LF") << module.FileName;
      const TFormFile form = project->LoadForm(module);
      EXPECT_EQ(form.Root != nullptr, !module.FormName.empty()) << module.FileName;
      EXPECT_EQ(form.Root ? form.Root->Name() : "", module.FormName);
    }
  }
  const auto ledger = TProject::Open(samples + "ledgerline/Ledgerline.dpr");
  const TProjectStatistics statistics = ledger->Statistics();
  EXPECT_EQ(statistics.Forms, 6u);
  EXPECT_EQ(statistics.DataModules, 1u);
  EXPECT_EQ(statistics.Frames, 1u);
  const TProjectModule& entry = *ledger->FindModuleByUnit("EntryDialog");
  EXPECT_EQ(ledger->ClassChain(entry, "TEntryDialogForm"),
            (std::vector<std::string>{"TEntryDialogForm", "TBaseDialogForm", "TForm"}));
  EXPECT_EQ(ledger->LoadForm(*ledger->FindModuleByUnit("AboutBox")).Format, TFormFormat::Resource);
}

TEST(Project, SampleFormsAreWrittenAsTheEnvironmentWritesThem) {
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(WRENFOLD_SOURCE_DIR "/samples")) {
    if (entry.path().extension() != ".dfm") continue;
    const std::string bytes = TTemporaryFolder::Read(entry.path().string());
    const TFormFile form = ReadFormFile(bytes, entry.path().string());
    const std::string stream = WriteDesignForm(*form.Root);
    if (form.Format != TFormFormat::Text) continue;
    TByteReader reader(stream);
    TByteWriter text;
    ObjectBinaryToText(reader, text);
    EXPECT_EQ(text.View(), bytes) << entry.path();
  }
}

TEST(FormFileChoice, FollowsTheUnitsOwnDirectivesUnderTheSymbolsOfItsProject) {
  const TTemporaryFolder folder;
  for (const char* name : {"U.dfm", "U.lfm", "P.lfm", "M.fmx"}) folder.Write(name, "");
  const TDefinedSymbols fpc{"FPC", "LCL"};
  struct TRow {
    const char* Unit;
    const char* Source;
    const TDefinedSymbols& Symbols;
    const char* Expected;
  };
  const char* both = "unit U; {$IFDEF FPC}{$R *.lfm}{$ELSE}{$R *.dfm}{$ENDIF}";
  const TRow rows[] = {
      {"U.pas", both, DefaultSymbols(), "U.dfm"},
      {"U.pas", both, fpc, "U.lfm"},
      {"U.pas", "unit U; {$IFnDEF FPC} {$R *.dfm} {$ELSE} {$R *.LFM} {$ENDIF}", fpc, "U.lfm"},
      {"U.pas", "unit U; // {$R *.lfm}\r\n{$R 'U.dfm'} {$R *.res} {$R-}", fpc, "U.dfm"},
      {"U.pas", "unit U;", fpc, "U.dfm"},
      {"U.cpp", "#pragma package(smart_init)\n#pragma resource \"*.lfm\"", DefaultSymbols(),
       "U.lfm"},
      {"P.pas", "unit P; {$R *.dfm}", DefaultSymbols(), "P.lfm"},
      {"M.pas", "unit M; {$R *.fmx}", DefaultSymbols(), "M.fmx"},
  };
  for (const TRow& row : rows) {
    const std::string unit = folder.Write(row.Unit, row.Source);
    EXPECT_EQ(FindFormFile(unit, row.Symbols), folder.Path() + "/" + row.Expected) << row.Source;
  }
}

}  // namespace
}  // namespace wrenfold
