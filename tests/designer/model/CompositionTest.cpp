// Forms composed of their own file and those that they inherit.
#include <gmock/gmock.h>

#include "designer/FormText.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> Names(const std::vector<TDesignNode*>& nodes) {
  std::vector<std::string> names;
  for (const TDesignNode* node : nodes) names.push_back(node->Name());
  return names;
}

constexpr const char* BaseForm =
    "object Base: TBase\n  ClientWidth = 100\n  ClientHeight = 50\n"
    "  object Ok: TButton\n    Left = 10\n    Caption = 'OK'\n  end\n"
    "  object Note: TLabel\n    Left = 5\n  end\nend\n";

std::shared_ptr<TTestForms> BaseAndChild() {
  auto forms = std::make_shared<TTestForms>();
  forms->Add(BaseForm);
  forms->Derive("TChild", "TBase");
  forms->Derive("TBase", "TForm");
  return forms;
}

TEST(Composition, DescendantChangesWhatItStoresAndKeepsTheRest) {
  const TTestForm form(
      "inherited Child: TChild\n  inherited Ok: TButton\n    Left = 30\n  end\n"
      "  object Extra: TEdit\n  end\nend\n",
      BaseAndChild());
  EXPECT_THAT(Names(form->Root().Children), ElementsAre("Ok", "Note", "Extra"));
  EXPECT_EQ(form["Ok"].Bounds.Left, 30);
  EXPECT_EQ(form["Ok"].Text("Caption"), "OK");
  EXPECT_EQ(form["Note"].Own, nullptr);
  EXPECT_EQ(form->Root().Client.Width, 100);
  EXPECT_TRUE(form->Notes().empty());
}

TEST(Composition, StoredPositionPutsAnInheritedChildInFront) {
  const TTestForm form("inherited Child: TChild\n  inherited Ok: TButton [1]\n  end\nend\n",
                       BaseAndChild());
  EXPECT_THAT(Names(form->Root().Children), ElementsAre("Note", "Ok"));
}

TEST(Composition, ChildrenOfAFrameHaveNamesOfTheirOwn) {
  auto forms = std::make_shared<TTestForms>();
  forms->Add(
      "object Search: TSearch\n  Width = 80\n  Height = 20\n"
      "  object Field: TEdit\n    Width = 40\n  end\nend\n");
  const TTestForm form(
      "object Form1: TForm1\n  Caption = 'x'\n  object Field: TLabel\n  end\n"
      "  inline First: TSearch\n  end\n"
      "  inline Second: TSearch\n    inherited Field: TEdit\n      Width = 60\n    end\n  "
      "end\nend\n",
      forms);
  EXPECT_EQ(form["Field"].Look(), TLook::Label);
  EXPECT_EQ(form["First.Field"].Bounds.Width, 40);
  EXPECT_EQ(form["second.field"].Bounds.Width, 60);
  EXPECT_EQ(form["First"].Bounds.Width, 80);
}

TEST(Composition, RootNamedLikeAComponentIsAFormAllTheSame) {
  for (const char* name : {"TOpenDialog1", "TMyTimer", "TBigPanel"}) {
    const TTestForm form(std::string("object A: ") + name +
                         "\n  Caption = 'a'\n  object B: TButton\n    Left = 1\n  end\nend\n");
    EXPECT_EQ(form->Root().Look(), TLook::Form) << name;
    EXPECT_EQ(form["B"].Look(), TLook::Button) << name;
  }
}

struct TBrokenRow {
  const char* Name;
  const char* Text;
  const char* Base;
  const char* Note;
};

TEST(Composition, TellsWhatIsMissingAndComposesTheRest) {
  const TBrokenRow rows[] = {
      {"missing base", "inherited A: TA\n  object B: TButton\n  end\nend\n", "", "not known"},
      {"base inherits itself", "inherited A: TA\n  object B: TButton\n  end\nend\n",
       "inherited A: TA\nend\n", "inherits from itself"},
      {"missing frame", "object A: TA\n  inline F: TF\n  end\n  object B: TButton\n  end\nend\n",
       "", "not known"},
      {"frame in itself", "object A: TA\n  inline F: TF\n  end\n  object B: TButton\n  end\nend\n",
       "object F: TF\n  inline G: TF\n  end\nend\n", "holds itself"},
  };
  for (const TBrokenRow& row : rows) {
    auto forms = std::make_shared<TTestForms>();
    if (*row.Base != '\0') forms->Add(row.Base);
    forms->Derive("TA", "TA");
    const TTestForm form(row.Text, forms);
    ASSERT_FALSE(form->Notes().empty()) << row.Name;
    EXPECT_THAT(form->Notes()[0], HasSubstr(row.Note)) << row.Name;
    EXPECT_NE(form->Find("B"), nullptr) << row.Name;
  }
}

TEST(Composition, FramesThatMultiplyAreCut) {
  auto forms = std::make_shared<TTestForms>();
  std::string inner = "object F0: TF0\n  object L: TLabel\n  end\nend\n";
  forms->Add(inner);
  for (int level = 1; level <= 6; ++level) {
    std::string text = "object F" + std::to_string(level) + ": TF" + std::to_string(level) + "\n";
    for (int i = 0; i < 10; ++i)
      text += "  inline I" + std::to_string(i) + ": TF" + std::to_string(level - 1) + "\n  end\n";
    forms->Add(text + "end\n");
  }
  const TTestForm form("object A: TA\n  inline F: TF6\n  end\nend\n", forms);
  EXPECT_LE(form->Nodes().size(), MaxDrawnComponents);
  EXPECT_THAT(form->Notes(), testing::Contains(HasSubstr("left out")));
}

TEST(Composition, CaptionComesFromTheActionUnlessStored) {
  const TTestForm form(
      "object A: TA\n  Caption = 'x'\n  object List: TActionList\n    object Save: TAction\n"
      "      Caption = 'Save'\n    end\n  end\n  object B: TButton\n    Action = Save\n  end\n"
      "  object C: TButton\n    Action = Save\n    Caption = 'Own'\n  end\nend\n");
  EXPECT_EQ(StoredText(form["B"].OwnOrAction("Caption"), 1252), "Save");
  EXPECT_EQ(StoredText(form["C"].OwnOrAction("Caption"), 1252), "Own");
}

struct TResolveRow {
  const char* ClassName;
  const char* Ancestor;
  const char* Stored;
  TLook Look;
  TResolution How;
};

TEST(Classes, AreFoundByNameAncestorEndingAndContents) {
  using R = TResolution;
  const TResolveRow rows[] = {
      {"TButton", "", "", TLook::Button, R::ByClass},
      {"tbutton", "", "", TLook::Button, R::ByClass},
      {"TFancy", "TBitBtn", "", TLook::BitButton, R::ByClass},
      {"TAcmeSpeedButton", "", "Width = 9", TLook::SpeedButton, R::ByLikeness},
      {"TAcmeDateEdit", "", "Width = 9", TLook::EditButton, R::ByLikeness},
      {"TAcmeEdit", "", "Width = 9", TLook::Edit, R::ByLikeness},
      {"TAcmeCheckListBox", "", "Width = 9", TLook::CheckListBox, R::ByLikeness},
      {"TAcmeThing", "", "Width = 9\n    Caption = 'a'", TLook::Panel, R::ByLikeness},
      {"TAcmeThing", "", "Width = 9\n    Lines.Strings = ('a')", TLook::Memo, R::ByLikeness},
      {"TAcmeThing", "", "Width = 9", TLook::Box, R::AsBox},
      {"TAcmeThing", "", "Left = 9", TLook::Icon, R::ByLikeness},
      {"TAcmeOpenDialog", "", "Left = 9\n    Width = 0", TLook::Icon, R::ByLikeness},
      {"TAcmeField", "", "", TLook::Hidden, R::ByLikeness},
  };
  for (const TResolveRow& row : rows) {
    auto forms = std::make_shared<TTestForms>();
    if (*row.Ancestor != '\0') forms->Derive(row.ClassName, row.Ancestor);
    const TTestForm form(std::string("object A: TA\n  Caption = 'x'\n  object B: ") +
                             row.ClassName + "\n    " + row.Stored + "\n  end\nend\n",
                         forms);
    EXPECT_EQ(LookName(form["B"].Look()), LookName(row.Look)) << row.ClassName << row.Stored;
    EXPECT_EQ(form["B"].Class.How, row.How) << row.ClassName << row.Stored;
  }
}

}  // namespace
}  // namespace wrenfold
