// Fields and event methods that are written into units and taken out of them.
#include <gtest/gtest.h>

#include "project/TestSupport.h"
#include "project/UnitEdits.h"

namespace wrenfold {
namespace {

const TEventMethod Click{"TMain", "OkClick", "Sender: TObject"};
const TEventMethod CppClick{"TMain", "OkClick", "TObject *Sender"};

using TEdits = std::vector<std::optional<TSourceEdit>>;

TEdits Add(const TUnitSource& unit, std::string_view text) {
  return {AddField(unit, text, "TMain", "Ok", "TButton")};
}
TEdits Remove(const TUnitSource& unit, std::string_view text) {
  return {RemoveField(unit, text, "tmain", "OK")};
}
TEdits Rename(const TUnitSource& unit, std::string_view) {
  return {RenameField(unit, "TMain", "Ok", "Yes")};
}
TEdits Method(const TUnitSource& unit, std::string_view text) {
  return {DeclareMethod(unit, text, Click), WriteBody(unit, text, Click)};
}
TEdits CppDeclaration(const TUnitSource& unit, std::string_view text) {
  return {DeclareMethod(unit, text, CppClick)};
}
TEdits CppBody(const TUnitSource& unit, std::string_view text) {
  return {WriteBody(unit, text, CppClick)};
}

struct TEditCase {
  const char* Name;
  const char* File;
  TEdits (*Edit)(const TUnitSource& unit, std::string_view text);
  const char* Before;
  const char* After;  // the same when nothing may happen
};
class UnitEdits : public testing::TestWithParam<TEditCase> {};

TEST_P(UnitEdits, GiveThisText) {
  const std::string before = GetParam().Before;
  std::vector<TSourceEdit> edits;
  for (auto& edit : GetParam().Edit(ParseUnitSource(before, GetParam().File), before))
    if (edit) edits.push_back(*edit);
  EXPECT_EQ(ApplyEdits(before, edits), GetParam().After);
}

const TEditCase EditCases[] = {
    {"FieldBehindTheOthersAndTheirComments", "a.pas", Add,
     "type\n  TMain = class(TForm)\n      A: TLabel; // one\n    procedure P;\n  private\n    X: "
     "Byte;\n"
     "  end;\n",
     "type\n  TMain = class(TForm)\n      A: TLabel; // one\n      Ok: TButton;\n    procedure P;\n"
     "  private\n    X: Byte;\n  end;\n"},
    {"FirstFieldOfAClass", "a.pas", Add,
     "type\r\n  TMain = class(TForm) // main\r\n  private\r\n    X: Byte;\r\n  end;\r\n",
     "type\r\n  TMain = class(TForm) // main\r\n    Ok: TButton;\r\n  private\r\n    X: Byte;\r\n"
     "  end;\r\n"},
    {"FieldOfAClassWithoutEnd", "a.pas", Add, "type\n  TMain = class(TForm);\n",
     "type\n  TMain = class(TForm)\n    Ok: TButton;\n  end;\n"},
    {"FieldThatIsThere", "a.pas", Add, "type TMain = class(TForm) ok: TLabel; end;",
     "type TMain = class(TForm) ok: TLabel; end;"},
    {"FieldTakenOutWithItsLine", "a.pas", Remove,
     "type\n  TMain = class\n    A: B;\n    Ok: TButton; { main }\n    C: D;\n  end;\n",
     "type\n  TMain = class\n    A: B;\n    C: D;\n  end;\n"},
    {"FieldTakenOutOfASharedLine", "a.pas", Remove,
     "type\n  TMain = class\n    A: B; Ok: TButton; C: D;\n  end;\n",
     "type\n  TMain = class\n    A: B;  C: D;\n  end;\n"},
    {"FirstOfSharedNames", "a.pas", Remove, "type TMain = class Ok, A: B; end;",
     "type TMain = class A: B; end;"},
    {"LastOfSharedNames", "a.pas", Remove, "type TMain = class A, B , Ok: B; end;",
     "type TMain = class A, B : B; end;"},
    {"NoSuchField", "a.pas", Remove, "type TMain = class A: B; end;",
     "type TMain = class A: B; end;"},
    {"Renamed", "a.pas", Rename, "type TMain = class A, ok: B; end;",
     "type TMain = class A, Yes: B; end;"},
    {"MethodAndBodyBehindThoseOfTheClass", "a.pas", Method,
     "interface\ntype\n  TMain = class(TForm)\n    A: B;\n    procedure P;\n  private\n"
     "    procedure Q;\n  end;\nimplementation\nprocedure TMain.P;\nbegin\nend;\n\nprocedure "
     "Free;\n"
     "begin\nend;\n\nend.\n",
     "interface\ntype\n  TMain = class(TForm)\n    A: B;\n    procedure P;\n"
     "    procedure OkClick(Sender: TObject);\n  private\n    procedure Q;\n  "
     "end;\nimplementation\n"
     "procedure TMain.P;\nbegin\nend;\n\nprocedure TMain.OkClick(Sender: "
     "TObject);\nbegin\n\nend;\n\n"
     "procedure Free;\nbegin\nend;\n\nend.\n"},
    {"FirstMethodOfAUnit", "a.pas", Method,
     "unit A;\r\ninterface\r\ntype\r\n  TMain = class(TForm)\r\n    A: B;\r\n  "
     "end;\r\nimplementation\r\n"
     "\r\n{$R *.dfm}\r\n\r\nend.\r\n",
     "unit A;\r\ninterface\r\ntype\r\n  TMain = class(TForm)\r\n    A: B;\r\n"
     "    procedure OkClick(Sender: TObject);\r\n  end;\r\nimplementation\r\n\r\n{$R *.dfm}\r\n\r\n"
     "procedure TMain.OkClick(Sender: TObject);\r\nbegin\r\n\r\nend;\r\n\r\nend.\r\n"},
    {"CppField", "a.h", Add,
     "class TMain : public TForm\n{\n__published:\n  TLabel *A;\nprivate:\n  int X;\n};\n",
     "class TMain : public TForm\n{\n__published:\n  TLabel *A;\n  TButton *Ok;\nprivate:\n  int "
     "X;\n};\n"},
    {"CppFirstFieldBehindTheWord", "a.h", Add,
     "class TMain : public TForm\n{\n__published:\t// IDE\nprivate:\n};\n",
     "class TMain : public TForm\n{\n__published:\t// IDE\n  TButton *Ok;\nprivate:\n};\n"},
    {"CppSharedNames", "a.h", Remove, "class TMain : public T { __published: TButton *A, *Ok; };",
     "class TMain : public T { __published: TButton *A; };"},
    {"CppDeclaration", "a.h", CppDeclaration,
     "class TMain : public TForm\n{\n__published:\n  TLabel *A;\n  void __fastcall P();\n};\n",
     "class TMain : public TForm\n{\n__published:\n  TLabel *A;\n  void __fastcall P();\n"
     "  void __fastcall OkClick(TObject *Sender);\n};\n"},
    {"CppBody", "a.cpp", CppBody, "__fastcall TMain::TMain()\n{\n}\n// end\n",
     "__fastcall TMain::TMain()\n{\n}\n\nvoid __fastcall TMain::OkClick(TObject *Sender)\n{\n\n}\n"
     "// end\n"},
};
INSTANTIATE_TEST_SUITE_P(, UnitEdits, testing::ValuesIn(EditCases), CaseName);

TEST(UnitEditsCaret, StandsInTheEmptyLineOfTheBody) {
  const std::string text = "implementation\n\nend.\n";
  size_t caret = 0;
  const auto edit = WriteBody(ParseUnitSource(text, "a.pas"), text, Click, &caret);
  ASSERT_TRUE(edit);
  EXPECT_EQ(ApplyEdits(text, {*edit}).substr(caret - 6, 11), "begin\n\nend;");
}

}  // namespace
}  // namespace wrenfold
