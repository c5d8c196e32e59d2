// What the declaration reader finds in sources of both languages, whole and broken.
#include <gtest/gtest.h>

#include "project/TestSupport.h"
#include "project/UnitSource.h"

namespace wrenfold {
namespace {

const char* Mark(TVisibility visibility) {
  constexpr const char* marks[] = {"", "+", "#", "-"};
  return marks[static_cast<size_t>(visibility)];
}

std::string Shown(const std::vector<TParameter>& parameters) {
  std::string text;
  for (const TParameter& parameter : parameters) {
    text += text.empty() ? "(" : "; ";
    if (!parameter.Modifier.empty()) text += parameter.Modifier + " ";
    text += parameter.Name + ":" + parameter.Type;
  }
  return text.empty() ? "" : text + ")";
}

std::string Shown(const TMethodDeclaration& method, const std::string& source) {
  constexpr const char* kinds[] = {"p ", "f ", "c ", "d ", "o "};
  std::string text = Mark(method.Visibility);
  text += kinds[static_cast<size_t>(method.Kind)];
  if (method.IsOfClass) text += "class ";
  if (!method.Class.empty()) text += method.Class + ".";
  text += method.Name + Shown(method.Parameters);
  if (!method.Result.empty()) text += ":" + method.Result;
  if (method.IsAbstract) text += " abstract";
  if (!method.Body.Empty())
    text += " {" +
            std::string(method.Body.In(source).substr(method.Body.End - method.Body.Begin - 6)) +
            "}";
  return text;
}

// "TMain<TForm: Button:TButton; p Click(Sender:TObject)", one line for each class, then the
// routines.
std::string Shown(const TUnitSource& unit, const std::string& source) {
  std::string text;
  const auto add = [&](const std::string& item) {
    text += (text.ends_with(": ") ? "" : "; ") + item;
  };
  for (const auto* classes : {&unit.Classes, &unit.HiddenClasses})
    for (const TClassDeclaration& declared : *classes) {
      if (!text.empty()) text += "\n";
      if (classes == &unit.HiddenClasses) text += "hidden ";
      text += (declared.Outer.empty() ? "" : declared.Outer + ".") + declared.Name;
      if (!declared.Ancestor.empty()) text += "<" + declared.Ancestor;
      text += ": ";
      for (const TFieldDeclaration& field : declared.Fields)
        add(Mark(field.Visibility) + field.Name + ":" + field.Type +
            (field.IsOfClass ? " class" : ""));
      for (const TMethodDeclaration& method : declared.Methods) add(Shown(method, source));
      for (const TPropertyDeclaration& property : declared.Properties)
        add(std::string(Mark(property.Visibility)) + "[" + property.Name + ":" + property.Type +
            "]");
    }
  for (const TMethodDeclaration& routine : unit.Routines)
    text += (text.empty() ? "" : "\n") + Shown(routine, source);
  return text;
}

struct TDeclarationCase {
  const char* Name;
  const char* File;
  std::string Text;
  const char* Expected;
};
class Declarations : public testing::TestWithParam<TDeclarationCase> {};

TEST_P(Declarations, AreThoseOfTheSource) {
  const TUnitSource unit = ParseUnitSource(GetParam().Text, GetParam().File);
  EXPECT_EQ(Shown(unit, GetParam().Text), GetParam().Expected);
}

const TDeclarationCase DeclarationCases[] = {
    {"FieldsAndTheirVisibility", "a.pas",
     "unit A; interface type TMain = class(TForm) Ok, Cancel: TButton; private FX: array[0..3] of "
     "Integer; strict private FY: record a: Byte; case b: Byte of 0: (c: Byte); end; protected "
     "Public: Integer; public class var Count: Integer; published Late: Forms.TLabel; end;",
     "TMain<TForm: Ok:TButton; Cancel:TButton; -FX:array[0..3]of Integer; -FY:record; "
     "#Public:Integer; +Count:Integer class; Late:Forms.TLabel"},
    {"MethodsOfEveryKind", "a.pas",
     "unit A; interface type TMain = class(TForm) constructor Create(AOwner: TComponent); override;"
     "destructor Destroy; override; procedure Click(Sender: TObject); function F(const A, B: "
     "string;"
     " var C; out D: array of Byte; E: Integer = 1): string; virtual; abstract;"
     "class procedure K; static; class operator Add(A, B: TMain): TMain; procedure I.M = Other;"
     "procedure WM(var M: TMsg); message WM_X + 1; message: string; end;",
     "TMain<TForm: message:string; c Create(AOwner:TComponent); d Destroy; p "
     "Click(Sender:TObject); "
     "f F(const A:string; const B:string; var C:; out D:array of Byte; E:Integer):string abstract; "
     "p class K; o class Add(A:TMain; B:TMain):TMain; p WM(var M:TMsg)"},
    {"Properties", "a.pas",
     "type T = class property A: Integer read FA write FA default 1; property B; property C[I: "
     "Integer]: string read GetC; default; property D: array of Byte read FD; X: Byte; end;",
     "T<TObject: X:Byte; [A:Integer]; [B:]; [C:string]; [D:array of Byte]"},
    {"NestedGenericAndRecordTypes", "a.pas",
     "type TList<T: class, constructor> = class(TBase<T>) type TNode = record Next: ^TNode; end; "
     "TDeep = class(TNode) X: T; end; const C = 1; var Head: TNode; procedure Add(A: TList<T>); "
     "end;"
     " PRec = ^TRec; TRec = packed record A, B: Byte; end; IThing = interface ['{1}'] procedure P; "
     "end; TProc = procedure(A: Byte) of object; TRef = class of TRec; TEnum = (eA, eB); "
     "TLast = class end;",
     "TList<TBase: Head:TNode; p Add(A:TList<T>)\nTList.TNode: +Next:^TNode\n"
     "TList.TDeep<TNode: X:T\nTRec: +A:Byte; +B:Byte\nIThing: +p P\nTLast<TObject: "},
    {"HelpersAddNothing", "a.pas",
     "type TH = class helper for TMain private const C = 1; procedure P; end; TR = record helper "
     "for "
     "Byte procedure Q; end; TA = class(TB);",
     "TA<TB: "},
    {"BodiesFindTheirMethods", "a.pas",
     "unit A; interface type TMain = class(TForm) procedure A(X: Byte); overload; procedure A(X: "
     "string); overload; end; procedure Free; implementation type THid = class procedure P; end; "
     "procedure TMain.A(X: string); var P: procedure; type R = record X: Byte end; function In1: "
     "Byte;"
     " begin end; begin case 1 of 1: begin end; end; try asm end; except end; {2} end; "
     "procedure TMain.A(X: Byte); begin {1} end; procedure THid.P; begin {3} end; procedure Free; "
     "begin {4} end; procedure Fwd; forward; procedure Ext; external 'x.dll' name 'y'; "
     "procedure TOther.Q; begin {5} end; initialization begin end; end.",
     "TMain<TForm: p A(X:Byte) {} end;}; p A(X:string) {} end;}\nhidden THid<TObject: p P {} "
     "end;}\n"
     "p Free\np Free {} end;}\np Fwd\np Ext\np TOther.Q {} end;}"},
    {"AnonymousMethodsStayInside", "a.pas",
     "implementation procedure TMain.A; begin Run(procedure(X: Byte) begin end); Do(function: Byte "
     "begin case X of 1: ; end; end); end; procedure B; begin end;",
     "p TMain.A {; end;}\np B {n end;}"},
    {"EscapedWordsAreNames", "a.pas", "type T = class &End: Byte; &begin: Byte; X: &Type; end;",
     "T<TObject: End:Byte; begin:Byte; X:Type"},
    {"ClassWithoutEnd", "a.pas",
     "unit A; interface type TA = class(TB) X: Byte; procedure P; TC = class(TD) Y: Byte; end; "
     "implementation procedure TA.P; begin end; end.",
     "TA<TB: X:Byte; p P {n end;}\nTC<TD: Y:Byte"},
    {"ClassCutByTheImplementation", "a.pas",
     "unit A; interface type TA = class(TB) X: Byte; procedure P(A: implementation procedure TA.P; "
     "begin {1} end; end.",
     "TA<TB: X:Byte; p P(A:) {} end;}"},
    {"BodyWithoutEnd", "a.pas",
     "implementation procedure T.A; begin if X then begin Y; procedure T.B; begin {2} end; "
     "function T.C: Byte; var X: procedure T.D; begin {4} end;",
     "p T.A {gin Y;}\np T.B {} end;}\nf T.C:Byte {var X:}\np T.D {} end;}"},
    {"ConditionalsPickTheMembers", "a.pas",
     "type T = class {$IFDEF NO} A: Byte; {$ELSE} B: Byte; {$ENDIF} end;", "T<TObject: B:Byte"},
    {"CppClass", "a.h",
     "namespace Forms { class PACKAGE TMain : public TForm\n{\n__published:\tTButton *Ok, "
     "*Cancel;\n"
     "  void __fastcall OkClick(TObject *Sender);\nprivate: int FX, FY[3]; std::map<int, int> "
     "FMap;\n"
     "  static const int Count = 1; unsigned Bits : 3;\n  void __fastcall (__closure *FOn)(int);\n"
     "public: __fastcall TMain(TComponent* Owner); virtual __fastcall ~TMain();\n"
     "  virtual int Size(const AnsiString &s, bool = true) const = 0; bool operator==(const TMain& "
     "o);\n"
     "  class TInner { int X; }; enum TKind { a, b }; friend class TX;\n"
     "  __property TColor Color = {read=FColor, write=SetColor, default=1};\n"
     "  int Get() { return FX; }\n}; }\nextern PACKAGE TMain *Main;",
     "TMain<TForm: Ok:TButton*; Cancel:TButton*; -FX:int; -FY:int; -FMap:std::map<int,int>; "
     "-Count:const int class; -Bits:unsigned; p OkClick(Sender:TObject*); +c "
     "TMain(Owner:TComponent*);"
     " +d ~TMain; +f Size(s:const AnsiString&; :bool):int abstract; +o operator==(o:const "
     "TMain&):bool;"
     " +f Get:int { FX; }}; +[Color:TColor]\nTMain.TInner: -X:int"},
    {"CppBodies", "a.cpp",
     "#include \"a.h\"\nTMain *Main;\n__fastcall TMain::TMain(TComponent* Owner) : TForm(Owner), "
     "A{1} "
     "{ X(); }\nvoid __fastcall TMain::OkClick(TObject *Sender)\n{ if (a) { b(\"}\"); } }\n"
     "static int Free(void) { return 1; }\nint Table[] = { 1, 2 };\nstruct { int a; } Anon;\n",
     "+c TMain.TMain(Owner:TComponent*) {X(); }}\n+p TMain.OkClick(Sender:TObject*) {); } }}\n"
     "+f class Free:int {n 1; }}"},
    {"CppCutAnywhere", "a.h",
     "class TMain : public TForm { __published: TButton *Ok; void __fastcall C(",
     "TMain<TForm: Ok:TButton*"},
};
INSTANTIATE_TEST_SUITE_P(, Declarations, testing::ValuesIn(DeclarationCases), CaseName);

TEST(DeclarationPlaces, SpansHoldWhatTheySay) {
  const std::string text =
      "unit A;\r\ninterface\r\ntype\r\n  TMain = class(TForm)\r\n    A, B: TButton; // x\r\n"
      "    procedure P(X: Byte); virtual;\r\n  end;\r\nimplementation\r\nuses B;\r\n"
      "procedure TMain.P(X: Byte);\r\nbegin\r\nend;\r\ninitialization\r\nend.\r\n";
  const TUnitSource unit = ParseUnitSource(text, "a.pas");
  const TClassDeclaration& main = unit.Classes.at(0);
  EXPECT_EQ(main.Text.In(text).substr(0, 8), "TMain = ");
  EXPECT_TRUE(main.Text.In(text).ends_with("  end;"));
  EXPECT_TRUE(main.Members.In(text).starts_with("\r\n    A, B"));
  EXPECT_TRUE(main.Members.In(text).ends_with("virtual;\r\n  "));
  EXPECT_EQ(main.Fields.at(1).Text.In(text), "A, B: TButton;");
  EXPECT_EQ(main.Fields.at(1).NameText.In(text), "B");
  EXPECT_TRUE(main.Fields.at(1).IsShared);
  EXPECT_EQ(main.Methods.at(0).Text.In(text), "procedure P(X: Byte); virtual;");
  EXPECT_EQ(main.Methods.at(0).Body.In(text), "procedure TMain.P(X: Byte);\r\nbegin\r\nend;");
  EXPECT_EQ(main.Methods.at(0).Place.Line, 6);
  EXPECT_EQ(unit.Implementation.In(text).substr(0, 8), "\r\nuses B");
  EXPECT_TRUE(unit.Implementation.In(text).ends_with("end;\r\n"));
  EXPECT_EQ(unit.ImplementationUses.at(0).Name, "B");
}

TEST(DeclarationPlaces, IncludeFilesDeclareAndDefineButHaveNoSpans) {
  const TIncludeReader includes = [](std::string_view name) -> std::optional<std::string> {
    if (name == "defs.inc") return "{$DEFINE X}{$I gone.inc}";
    if (name == "part.inc") return "Ok: TButton; {$I part.inc}";
    return std::nullopt;
  };
  const std::string text =
      "{$I defs.inc}{$I+}unit A; interface type T = class {$IFDEF X}\n{$I 'part.inc'}{$ENDIF} B: "
      "Byte;"
      " end;";
  const TUnitSource unit = ParseUnitSource(text, "a.pas", DefaultSymbols(), includes);
  const TClassDeclaration& declared = unit.Classes.at(0);
  ASSERT_GE(declared.Fields.size(), 2u);
  EXPECT_EQ(declared.Fields[0].Name, "Ok");
  EXPECT_TRUE(declared.Fields[0].Text.Empty());
  EXPECT_EQ(declared.Fields[0].Place.Line, 2);
  EXPECT_EQ(declared.Fields.back().Text.In(text), "B: Byte;");
}

TEST(DeclarationPlaces, TruncatedAnywhereStaysInsideTheText) {
  for (const TDeclarationCase& row : DeclarationCases)
    for (size_t length = 0; length < row.Text.size(); ++length) {
      const std::vector<char> exact(row.Text.begin(), row.Text.begin() + static_cast<int>(length));
      const TUnitSource unit = ParseUnitSource({exact.data(), exact.size()}, row.File);
      for (const TClassDeclaration& declared : unit.Classes) {
        ASSERT_LE(declared.Text.Begin, declared.Text.End);
        ASSERT_LE(declared.Text.End, length);
        ASSERT_LE(declared.Members.Begin, declared.Members.End);
        ASSERT_LE(declared.Members.End, length);
      }
    }
}

}  // namespace
}  // namespace wrenfold
