// What an inspector shows and writes: every kind of property both ways, several components at once.
#include <gtest/gtest.h>

#include "designer/model/PropertyRows.h"
#include "designer/model/ValueText.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {
namespace {

std::unique_ptr<TDesignComponent> Read(std::string_view text) {
  std::size_t position = 0;
  TByteWriter stream;
  ObjectTextToBinary(text, position, stream);
  return ReadDesignForm(stream.ToString());
}

const TInspectedRow& Row(const std::vector<TInspectedRow>& rows, const std::string& path,
                         const std::string& element = {}, int item = -1,
                         const std::string& inner = {}) {
  static const TInspectedRow none;
  for (const TInspectedRow& row : rows)
    if (row.Path == path && row.Element == element && row.Item == item && row.Inner == inner)
      return row;
  ADD_FAILURE() << "no row " << path << " " << element << " " << inner;
  return none;
}

constexpr std::string_view Form =
    "object F: TForm1\r\n  Left = 10\r\n  Caption = 'It'#39's'#13#10'two'\r\n  Color = clRed\r\n"
    "  Anchors = [akLeft, akRight]\r\n  Font.Style = [fsBold]\r\n  Own.Thing = 1.5\r\n"
    "  object List: TListView\r\n    Columns = <\r\n      item\r\n        Caption = 'A'\r\n"
    "        Width = 5\r\n      end\r\n      item\r\n        Width = 6\r\n      end>\r\n  end\r\n"
    "  object Lines: TMemo\r\n    Lines.Strings = (\r\n      'one'\r\n      't'#252)\r\n  end\r\n"
    "end\r\n";

TEST(PropertyRows, TextsTypedIntoRowsBecomeTheStoredValues) {
  const auto form = Read(Form);
  auto* list = dynamic_cast<TDesignComponent*>(form->FindComponent("List"));
  auto* lines = dynamic_cast<TDesignComponent*>(form->FindComponent("Lines"));
  struct TCase {
    TDesignComponent* Component;
    TInspectedRow Place;
    const char* Shown;
    const char* Typed;
    const char* Stored;  // as the form file writes it; null: nothing stored; "!": refused
  };
  const auto at = [](const char* path, const char* element = "", int item = -1,
                     const char* inner = "") {
    TInspectedRow row;
    row.Path = path, row.Element = element, row.Item = item, row.Inner = inner;
    return row;
  };
  const TCase cases[] = {
      {form.get(), at("Left"), "10", "$1F", "31"},
      {form.get(), at("Left"), "10", "x", "!"},
      {form.get(), at("Left"), "10", "10 Top = 5", "!"},
      {form.get(), at("Caption"), "It's\ntwo", "n\xC3\xBC'\n", "'n'#252#39#13#10"},
      {form.get(), at("Caption"), "It's\ntwo", "", nullptr},
      {form.get(), at("Color"), "clRed", "#010203", "197121"},
      {form.get(), at("Color"), "clRed", "CLBLUE", "clBlue"},
      {form.get(), at("Color"), "clRed", "clNonsense", "!"},
      {form.get(), at("KeyPreview"), "False", "true", "True"},
      {form.get(), at("Enabled"), "True", "maybe", "!"},
      {form.get(), at("Position"), "poDesigned", "poscreencenter", "poScreenCenter"},
      {form.get(), at("Position"), "poDesigned", "poDesigned", nullptr},
      {form.get(), at("Anchors"), "[akLeft, akRight]", "[akTop]", "[akTop]"},
      {form.get(), at("Anchors"), "[akLeft, akRight]", "[akNowhere]", "!"},
      {form.get(), at("Anchors", "akRight"), "True", "False", "[akLeft]"},
      {form.get(), at("Anchors", "akTop"), "False", "True", "[akLeft, akTop, akRight]"},
      {form.get(), at("Font.Style", "fsItalic"), "False", "True", "[fsBold, fsItalic]"},
      {form.get(), at("OnShow"), "", "FormShow", "FormShow"},
      {form.get(), at("OnShow"), "", "Form Show", "!"},
      {form.get(), at("Menu"), "", "MainMenu1", "MainMenu1"},
      {form.get(), at("Cursor"), "crDefault", "crhandpoint", "crHandPoint"},
      {form.get(), at("Cursor"), "crDefault", "-21", "-21"},
      {form.get(), at("Cursor"), "crDefault", "crNone Left", "!"},
      {lines, at("Lines.Strings"), "one\nt\xC3\xBC", "a\n\nb",
       "(\r\n    'a'\r\n    ''\r\n    'b')"},
      {list, at("Columns", "", 0, "Width"), "5", "7",
       "<\r\n    item\r\n      Caption = 'A'\r\n      Width = 7\r\n    end\r\n    item\r\n"
       "      Width = 6\r\n    end>"},
      {list, at("Columns", "", 0, "Caption"), "A", "Long name",
       "<\r\n    item\r\n      Caption = 'Long name'\r\n      Width = 5\r\n    end\r\n    item\r\n"
       "      Width = 6\r\n    end>"},
      {list, at("Columns", "", 1, "Alignment"), "taLeftJustify", "taCenter",
       "<\r\n    item\r\n      Caption = 'A'\r\n      Width = 5\r\n    end\r\n    item\r\n"
       "      Width = 6\r\n      Alignment = taCenter\r\n    end>"},
      {list, at("Columns", "", 1, "Width"), "6", "50",
       "<\r\n    item\r\n      Caption = 'A'\r\n      Width = 5\r\n    end\r\n    item\r\n"
       "    end>"},
  };
  for (const TCase& c : cases) {
    const auto rows = InspectRows({c.Component});
    const TInspectedRow& row =
        Row(rows, c.Place.Path, c.Place.Element, c.Place.Item, c.Place.Inner);
    EXPECT_EQ(row.Text, c.Shown) << c.Place.Path;
    try {
      const auto value = ValueWithText(*c.Component, row, c.Typed);
      EXPECT_EQ(value ? FormValueText(*value) : "(none)", c.Stored ? c.Stored : "(none)")
          << c.Place.Path << " " << c.Typed;
    } catch (const EConvertError& e) {
      EXPECT_STREQ("!", c.Stored) << e.Message();
      EXPECT_NE(e.Message().find("expected"), std::string::npos) << e.Message();
    }
  }
}

TEST(PropertyRows, UnknownPropertiesAreShownByTheirValuesAndDefaultsAreTold) {
  const auto form = Read(Form);
  const auto rows = InspectRows({form.get()});
  EXPECT_EQ(Row(rows, "Own.Thing").Kind, TPropertyKind::Float);
  EXPECT_TRUE(Row(rows, "Own").Group);
  EXPECT_FALSE(Row(rows, "Visible").Stored);
  EXPECT_TRUE(Row(rows, "Left").Stored);
  // A class that nobody knows is taken for what its name ends like.
  const auto other = Read("object F: TF\r\n  object B: TRxSpeedButton\r\n  end\r\nend\r\n");
  EXPECT_EQ(Row(InspectRows({other->Children()[0]}), "GroupIndex").Default, "0");
}

TEST(PropertyRows, OnlyWhatAllComponentsHaveIsShownAndDifferencesAreMixed) {
  const auto form = Read(
      "object F: TForm1\r\n  object A: TButton\r\n    Left = 1\r\n    Top = 5\r\n  end\r\n"
      "  object B: TEdit\r\n    Left = 2\r\n    Top = 5\r\n    MaxLength = 3\r\n  end\r\nend\r\n");
  std::vector<const TDesignComponent*> both;
  for (const TDesignComponent* child : form->Children()) both.push_back(child);
  const auto rows = InspectRows(both);
  EXPECT_TRUE(Row(rows, "Left").Mixed);
  EXPECT_EQ(Row(rows, "Left").Text, "");
  EXPECT_EQ(Row(rows, "Top").Text, "5");
  for (const TInspectedRow& row : rows) {
    EXPECT_NE(row.Path, "MaxLength");
    EXPECT_NE(row.Path, "Name") << "one name for several components";
    EXPECT_TRUE(row.Parent == TInspectedRow::npos || row.Parent < rows.size());
  }
}

TEST(PropertyRows, DifferencesAreFoundWhereverAComponentStoresThem) {
  struct TCase {
    const char* First;
    const char* Second;
    const char* Path;
    const char* Element;
    bool Mixed;
  };
  const TCase cases[] = {
      {"", "Enabled = False", "Enabled", "", true},
      {"Enabled = False", "", "Enabled", "", true},
      {"", "Enabled = True", "Enabled", "", false},
      {"Tag = 5", "Tag = 5", "Tag", "", false},
      {"", "Anchors = [akTop]", "Anchors", "akLeft", true},
      {"", "Anchors = [akTop]", "Anchors", "akTop", false},
      {"Anchors = [akTop]", "", "Anchors", "akLeft", true},
      {"Own.Thing = 1", "Own.Thing = 2", "Own.Thing", "", true},
      {"Glyph.Data = {01}", "Glyph.Data = {02}", "Glyph.Data", "", true},
  };
  for (const TCase& c : cases) {
    const auto form =
        Read(std::string("object F: TForm1\r\n  object A: TBitBtn\r\n") + c.First +
             "\r\n  end\r\n  object B: TBitBtn\r\n" + c.Second + "\r\n  end\r\nend\r\n");
    const auto rows = InspectRows({form->Children()[0], form->Children()[1]});
    EXPECT_EQ(Row(rows, c.Path, c.Element).Mixed, c.Mixed) << c.First << " | " << c.Second;
  }
  // What one of them does not have at all is no row of both, whoever is asked first.
  const auto form = Read(
      "object F: TForm1\r\n  object A: TButton\r\n    Own.Thing = 1\r\n  end\r\n"
      "  object B: TButton\r\n  end\r\nend\r\n");
  for (const bool turned : {false, true})
    for (const TInspectedRow& row :
         InspectRows({form->Children()[turned ? 1 : 0], form->Children()[turned ? 0 : 1]}))
      EXPECT_FALSE(row.Path.starts_with("Own")) << row.Path;
}

TEST(PropertyRows, InheritedComponentStoresTheDefaultInsteadOfTakingItAway) {
  const auto form = Read("inherited F: TForm1\r\n  Visible = True\r\nend\r\n");
  const auto rows = InspectRows({form.get()});
  const auto value = ValueWithText(*form, Row(rows, "Visible"), "False");
  ASSERT_TRUE(value) << "what the ancestor stores would come back";
  EXPECT_EQ(FormValueText(*value), "False");
  EXPECT_FALSE(ValueReset(*form, Row(rows, "Visible")));
}

}  // namespace
}  // namespace wrenfold
