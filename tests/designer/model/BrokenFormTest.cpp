// What is left of forms that break in the middle.
#include <gmock/gmock.h>

#include "designer/FormText.h"
#include "designer/model/BrokenForm.h"

namespace wrenfold {
namespace {

constexpr const char* Whole =
    "object A: TA\n  Caption = 'x'\n  object B: TButton\n    Left = 1\n  end\n"
    "  object P: TPanel\n    object C: TEdit\n      Left = 2\n    end\n  end\nend\n";

struct TBrokenRow {
  const char* Name;
  std::string Text;
  std::vector<const char*> Kept;
};

TEST(BrokenForm, TextKeepsWhatStandsBeforeTheBreak) {
  const std::string whole = Whole;
  const TBrokenRow rows[] = {
      {"cut off", whole.substr(0, whole.find("Left = 2")), {"B", "P"}},
      {"open string",
       std::string(whole).replace(whole.find("Left = 2"), 8, "Text = 'a"),
       {"B", "P"}},
      {"more behind", whole + "object Z: TZ\nend\n", {"B", "P", "C"}},
      {"broken first", std::string(whole).replace(whole.find("'x'"), 3, "= ="), {}},
  };
  for (const TBrokenRow& row : rows) {
    const auto root = SalvageForm(row.Text);
    EXPECT_EQ(root != nullptr, !row.Kept.empty()) << row.Name;
    for (const char* name : row.Kept) EXPECT_NE(root->FindComponent(name), nullptr) << row.Name;
  }
}

TEST(BrokenForm, AStreamCutAnywhereNeverGivesMoreThanItHeld) {
  const std::string stream = WriteDesignForm(*ReadFormFile(Whole, "test").Root);
  std::size_t most = 0;
  for (std::size_t size = 0; size < stream.size(); ++size) {
    const auto root = SalvageForm(stream.substr(0, size));
    const std::size_t count = root != nullptr ? root->Components().size() : 0;
    EXPECT_GE(count, most) << size;
    most = count;
  }
  EXPECT_EQ(most, 3u);
}

}  // namespace
}  // namespace wrenfold
