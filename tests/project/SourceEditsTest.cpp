// Renaming and adding units: what of a source changes, and what stays although it looks the same.
#include <gtest/gtest.h>

#include "project/SourceEdits.h"

namespace wrenfold {
namespace {

TEST(SourceEdits, UnitIsRenamedBehindItsWordAlone) {
  struct TRow {
    const char* Source;
    const char* Name;
    const char* Expected;  // null: no edit
  };
  const TRow rows[] = {
      {"{ unit Old; }\r\nunit Old;\r\n// Old", "New", "{ unit Old; }\r\nunit New;\r\n// Old"},
      {"unit A . Old;", "B.New", "unit B.New;"},
      {"{$IFDEF X}unit No;{$ELSE}unit Old;{$ENDIF}", "New",
       "{$IFDEF X}unit No;{$ELSE}unit New;{$ENDIF}"},
      {"unit New;", "New", nullptr},
      {"unit Old;", "no name", nullptr},
      {"program Old;", "New", nullptr},
      {"", "New", nullptr},
  };
  for (const TRow& row : rows) {
    const auto edit = RenameUnitEdit(row.Source, row.Name);
    ASSERT_EQ(edit.has_value(), row.Expected != nullptr) << row.Source;
    if (edit) {
      EXPECT_EQ(ApplyEdits(row.Source, {*edit}), row.Expected);
    }
  }
}

TEST(SourceEdits, ACppUnitIncludesItsRenamedHeaderAndOthersAsBefore) {
  const struct {
    const char* Source;
    const char* Expected;  // null: no edit
  } rows[] = {
      {"#include <Old.h>\r\n// \"Old.h\"\r\n  #  include  \"old.h\"  // own\r\n",
       "#include <Old.h>\r\n// \"Old.h\"\r\n  #  include  \"New.h\"  // own\r\n"},
      {"#include \"Old.hpp\"", "#include \"New.hpp\""},
      {"#include \"sub/Old.h\"\n#include \"Older.h\"\n", nullptr},
      {"#include \"Old", nullptr},
  };
  for (const auto& row : rows) {
    const auto edit = RenameOwnIncludeEdit(row.Source, "Old", "New");
    ASSERT_EQ(edit.has_value(), row.Expected != nullptr) << row.Source;
    if (!edit) continue;
    EXPECT_EQ(ApplyEdits(row.Source, {*edit}), row.Expected);
  }
}

TEST(SourceEdits, ProjectNamesTheRenamedAndTheNewUnit) {
  struct TRow {
    const char* FileName;
    const char* Source;
    const char* Renamed;
    const char* Added;
  };
  const TRow rows[] = {
      {"P.dpr", "program P;\r\nuses\r\n  Forms,\r\n  Old in 'x\\Old.pas' {OldForm};\r\nbegin end.",
       "program P;\r\nuses\r\n  Forms,\r\n  New in 'y\\New.pas' {OldForm};\r\nbegin end.",
       "program P;\r\nuses\r\n  Forms,\r\n  Old in 'x\\Old.pas' {OldForm},\r\n"
       "  New in 'y\\New.pas' {NewForm};\r\nbegin end."},
      {"P.dpk", "package P; requires Old; contains Older, Old; end.",
       "package P; requires Old; contains Older, New; end.",
       "package P; requires Old; contains Older, Old,\n  New in 'y\\New.pas' {NewForm}; end."},
      {"P.cpp", "USERES(\"P.res\");\nUSEFORM(\"x\\\\Old.cpp\", OldForm);\nint main() {}",
       "USERES(\"P.res\");\nUSEFORM(\"y\\\\New.pas\", OldForm);\nint main() {}",
       "USERES(\"P.res\");\nUSEFORM(\"x\\\\Old.cpp\", OldForm);\nUSEFORM(\"y\\\\New.pas\", "
       "NewForm);"
       "\nint main() {}"},
      {"P.dpr", "program P; begin Old; end.", "program P; begin Old; end.",
       "program P; begin Old; end."},
  };
  const TNamedUnit unit{"New", "y\\New.pas", "NewForm"};
  for (const TRow& row : rows) {
    EXPECT_EQ(ApplyEdits(row.Source, RenameInProjectEdits(row.Source, row.FileName, "old", unit)),
              row.Renamed);
    EXPECT_EQ(ApplyEdits(row.Source, AddToProjectEdits(row.Source, row.FileName, unit)), row.Added);
  }
  const TRow removed[] = {
      {"P.dpr",
       "program P;\nuses\n  Forms,\n  New in 'y' {NewForm},\n  Z;\nbegin\n"
       "  Application.CreateForm(TNewForm, NewForm);\n  Application.Run;\nend.",
       "program P;\nuses\n  Forms,\n  Z;\nbegin\n  Application.Run;\nend.", nullptr},
      {"P.dpr", "program P; uses Forms, New in 'y'; begin end.",
       "program P; uses Forms; begin end.", nullptr},
      {"P.dpr", "program P; uses A, {$IFDEF X} New {$ELSE} B {$ENDIF}; begin end.",
       "program P; uses A, {$IFDEF X} New {$ELSE} B {$ENDIF}; begin end.", nullptr},
      {"P.dpr", "program P; uses New; begin end.", "program P; uses New; begin end.", nullptr},
      {"P.cpp", "USEFORM(\"y\\\\New.cpp\", NewForm);\nUSEUNIT(\"Newer.cpp\");\n",
       "USEUNIT(\"Newer.cpp\");\n", nullptr},
  };
  for (const TRow& row : removed)
    EXPECT_EQ(ApplyEdits(row.Source, RemoveFromProjectEdits(row.Source, row.FileName, unit)),
              row.Renamed);
  const TNamedUnit form{"New", "New.pas", "NewForm", "TNewForm"};
  const std::string program =
      "program P;\nuses\n  Forms;\nbegin\n  Application.Initialize;\n  Application.Run;\nend.";
  EXPECT_EQ(ApplyEdits(program, AddToProjectEdits(program, "P.dpr", form)),
            "program P;\nuses\n  Forms,\n  New in 'New.pas' {NewForm};\nbegin\n"
            "  Application.Initialize;\n  Application.CreateForm(TNewForm, NewForm);\n"
            "  Application.Run;\nend.");
  EXPECT_EQ(ProjectPath("/a/b", "/a/c/New.pas"), "..\\c\\New.pas");
}

}  // namespace
}  // namespace wrenfold
