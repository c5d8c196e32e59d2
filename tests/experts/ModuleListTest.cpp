// Tests which modules the viewer lists, in which order, and what a filter finds first.
#include <gmock/gmock.h>

#include "FakeEnvironment.h"
#include "experts/rkModuleList.h"

namespace wrenfold {
namespace {

struct TModuleRow {
  const char* Unit;
  const char* File;
  const char* Form;
};

TModuleInfos Infos(std::initializer_list<TModuleRow> rows) {
  TModuleInfos infos;
  for (const TModuleRow& row : rows) {
    auto* info = new TFakeModuleInfo;
    info->Unit = row.Unit;
    info->File = row.File;
    info->Form = row.Form;
    infos.emplace_back(info);
  }
  return infos;
}

std::string Names(const TModuleList& list) {
  std::string names;
  for (int i = 0; i < list.Count(); ++i) names += (i > 0 ? " " : "") + list[i].Name;
  return names;
}

TEST(ModuleList, ListsWhatHasANameAndIsNoPackage) {
  const TModuleInfos infos = Infos({{"beta", "/b.pas", "FormB"},
                                    {"Alpha", "/a.pas", ""},
                                    {"vcl50", "/vcl50.dcp", "x"},
                                    {"Demo", "/demo.res", ""},
                                    {"part", "/part.re", ""},
                                    {"NoFile", "", "FormN"},
                                    {"", "/nameless.pas", "FormA"}});
  TModuleList list;
  list.FillModuleList(infos, svmUnit, false);
  EXPECT_EQ(Names(list), "Alpha beta") << "sorted, letter case ignored";
  list.FillModuleList(infos, svmForm, true);
  EXPECT_EQ(Names(list), "FormA FormB");
  EXPECT_EQ(list.Separator(), -1) << "forms have no groups";
}

TEST(ModuleList, GroupsUnitsWithFormsFirstAndKeepsTheirOrder) {
  TModuleList list;
  list.FillModuleList(Infos({{"C", "/c.pas", "c"}, {"B", "/b.pas", ""}, {"A", "/a.pas", "a"}}),
                      svmUnit, true);
  EXPECT_EQ(Names(list), "A C B");
  EXPECT_EQ(list.Separator(), 2);
  list.SetFilter("b");
  EXPECT_EQ(list.Separator(), -1) << "ranking replaces the groups";
  list.SetFilter("");
  EXPECT_EQ(Names(list), "A C B");
}

TEST(ModuleFilter, FindsTheBestFirst) {
  const struct {
    const char* Name;
    const char* Text;
    const char* Found;
  } rows[] = {
      {"start of a word, then inside, shorter first", "main",
       "Main FrmMain MainForm FrmMainLong Domain"},
      {"contiguous before initials", "mf", "Comfort My_form MainForm"},
      {"initials count digits as words", "u2", "Unit2"},
      {"equal ranks keep the order of the list", "frm", "FrmA FrmB FrmMain FrmMainLong"},
      {"no letters in any order", "niam", ""},
  };
  TModuleList list;
  list.FillModuleList(Infos({{"FrmMainLong", "/1", ""},
                             {"Domain", "/2", ""},
                             {"MainForm", "/3", ""},
                             {"Main", "/4", ""},
                             {"FrmMain", "/5", ""},
                             {"Comfort", "/6", ""},
                             {"My_form", "/7", ""},
                             {"Unit2", "/8", ""},
                             {"FrmB", "/9", ""},
                             {"FrmA", "/10", ""}}),
                      svmUnit, true);
  for (const auto& row : rows) {
    list.SetFilter(row.Text);
    EXPECT_EQ(Names(list), row.Found) << row.Name;
  }
}

}  // namespace
}  // namespace wrenfold
