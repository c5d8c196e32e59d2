// Texts in sections: parsing, rendering, look-up, order, files.
#include <gmock/gmock.h>

#include "foundation/rkClasses.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

std::string Loaded(TIniStrings& ini, const std::string& text) {
  TStringList list;
  list.SetText(text);
  ini.SetStrings(list);
  TStringList back;
  ini.GetStrings(back);
  return back.Text();
}

TEST(IniStringsTest, TextFormIsReadAndWrittenBack) {
  struct TRow {
    const char* Name;
    const char* Text;
    const char* Expected;
  };
  const TRow rows[] = {
      {"empty", "", ""},
      {"byte order mark", "\xEF\xBB\xBF[a]\r\nk=v\r\n", "[a]\r\nk=v\r\n\r\n"},
      {"key and value", "[a]\r\nk=v\r\n", "[a]\r\nk=v\r\n\r\n"},
      {"the second equals sign is value", "[a]\r\nk=v=w\r\n", "[a]\r\nk=v=w\r\n\r\n"},
      {"leading equals sign is key", "[a]\r\n=v\r\n", "[a]\r\n=v\r\n\r\n"},
      {"leading equals sign before another", "[a]\r\n=k=v\r\n", "[a]\r\n=k=v\r\n\r\n"},
      {"empty value loses its sign", "[a]\r\nk=\r\n", "[a]\r\nk\r\n\r\n"},
      {"blanks are kept", "[a]\r\n k = v \r\n", "[a]\r\n k = v \r\n\r\n"},
      {"comments and early lines are lost", "x=1\r\n;c\r\n[a]\r\n;d=e\r\nk=v\r\n",
       "[a]\r\nk=v\r\n\r\n"},
      {"equal sections stay apart", "[a]\r\nk=1\r\n[A]\r\nk=2\r\n",
       "[a]\r\nk=1\r\n\r\n[A]\r\nk=2\r\n\r\n"},
      {"equal keys stay apart", "[a]\r\nk=1\r\nK=2\r\n", "[a]\r\nk=1\r\nK=2\r\n\r\n"},
      {"unfinished header is a key", "[a]\r\n[b\r\n", "[a]\r\n[b\r\n\r\n"},
      {"nameless section", "[]\r\nk=v\r\n", "[]\r\nk=v\r\n\r\n"},
      {"single bracket", "[a]\r\n[\r\n]\r\n", "[a]\r\n[\r\n]\r\n\r\n"},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Name);
    TIniStrings ini;
    EXPECT_EQ(Loaded(ini, row.Text), row.Expected);
  }
}

TEST(IniStringsTest, ReadsFindTheFirstOfEqualNames) {
  TIniStrings ini;
  Loaded(ini, "[a]\r\nk=1\r\nbare\r\n[A]\r\nk=2\r\nonly=3\r\n");
  EXPECT_EQ(ini.ReadString("A", "K", "none"), "1");
  EXPECT_EQ(ini.ReadString("a", "only", "none"), "none");
  EXPECT_EQ(ini.ReadString("b", "k", "none"), "none");
  EXPECT_EQ(ini.ReadString("a", "bare", "none"), "") << "a key without value is there";
}

TEST(IniStringsTest, WritingMakesReplacesAndRemoves) {
  TIniStrings ini;
  ini.WriteString("a", "k", "1");
  ini.WriteString("A", "K", "2");
  ini.WriteString("a", "x", "3");
  ini.AddString("b", "y=4=5");
  ini.ReplaceString("b", "missing", "6");
  ini.ReplaceString("b", "y", "7");
  TStringList list;
  ini.GetStrings(list);
  EXPECT_EQ(list.Text(), "[a]\r\nk=2\r\nx=3\r\n\r\n[b]\r\ny=7\r\n\r\n");

  ini.DeleteKey("a", "k");
  ini.DeleteKey("a", "missing");
  ini.EraseSection("b");
  ini.EraseSection("missing");
  list.Clear();
  ini.GetStrings(list);
  EXPECT_EQ(list.Text(), "[a]\r\nx=3\r\n\r\n");
}

TEST(IniStringsTest, ListsKeysSectionsAndLinesInPlaceOfWhatWasThere) {
  TIniStrings ini;
  Loaded(ini, "[a]\r\nk=v\r\nbare\r\n[b]\r\n");
  TStringList list;
  list.Add("rubbish");
  ini.ReadSection("a", list);
  EXPECT_EQ(list.Text(), "k\r\nbare\r\n");
  ini.ReadSectionValues("a", list);
  EXPECT_EQ(list.Text(), "k=v\r\nbare\r\n");
  ini.ReadSections(list);
  EXPECT_EQ(list.Text(), "a\r\nb\r\n");
  ini.ReadSectionValues("missing", list);
  EXPECT_EQ(list.Count(), 0);
}

TEST(IniStringsTest, OrderOutlivesAFillAndHoldsForLaterSections) {
  TIniStrings ini;
  ini.Sort();
  EXPECT_EQ(Loaded(ini, "[b]\r\nz=1\r\nY=2\r\n[A]\r\n"), "[A]\r\n\r\n[b]\r\nY=2\r\nz=1\r\n\r\n");
  EXPECT_TRUE(ini.GetSectionSorted());
  ini.WriteString("aa", "n", "1");
  ini.WriteString("aa", "M", "2");
  EXPECT_EQ(ini.ReadString("aa", "m", ""), "2");
  TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(list.Text(), "A\r\naa\r\nb\r\n");
  ini.ReadSection("aa", list);
  EXPECT_EQ(list.Text(), "M\r\nn\r\n");

  ini.SetKeySorted(false);
  ini.WriteString("aa", "a", "3");
  ini.ReadSection("aa", list);
  EXPECT_EQ(list.Text(), "M\r\nn\r\na\r\n");
}

// A name that is in a sorted list already must not replace the one that is there.
TEST(IniStringsTest, EqualNamesSurviveInSortedLists) {
  TIniStrings ini;
  ini.Sort();
  ini.AddSection("a");
  ini.AddSection("A");
  ini.AddString("a", "k=1");
  ini.AddString("a", "K=2");
  TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(list.Count(), 2);
  ini.ReadSection("a", list);
  EXPECT_EQ(list.Count(), 2);
}

TEST(IniStringsTest, KeyListTakesPlainLinesAndLinesOfAnother) {
  TIniStrings ini;
  TIniKeyList* keys = ini.AddSection("a");
  TIniKeyList* copy = ini.AddSection("b");
  TObject foreign;
  keys->AddObject("plain", &foreign);
  keys->AddKey("k", "v");
  copy->Assign(keys);
  keys->SetKeyValue(0, "now");
  TStringList list;
  ini.GetStrings(list);
  EXPECT_EQ(list.CommaText(), "[a],plain=now,k=v,,[b],plain,k=v,");
}

TEST(IniStringsTest, ReportsOneChangeForAWholeText) {
  struct TCounter {
    int Count = 0;
    void Changed(TObject*) { ++Count; }
  } counter;
  TIniStrings ini;
  Loaded(ini, "[a]\r\nk=v\r\n[b]\r\n");
  TStringList list;
  Bind<&TCounter::Changed>(list.OnChange, &counter);
  ini.GetStrings(list);
  EXPECT_EQ(counter.Count, 1);
}

class TDroppingIniStrings : public TIniStrings {
 public:
  TDroppingIniStrings() { FDropKeysWithoutValue = true; }
};

TEST(IniStringsTest, DescendantMayDropLinesWithoutValue) {
  TDroppingIniStrings ini;
  EXPECT_EQ(Loaded(ini, "[a]\r\nbare\r\n=x\r\nk=v\r\ne=\r\n"), "[a]\r\nk=v\r\ne\r\n\r\n");
}

TEST(IniStringsTest, FileIsReadAndReplaced) {
  const std::string name = testing::TempDir() + "wrenfold_ini.ini";
  SafeWriteFile(name, "; lost\r\n[a]\r\nk=v\r\n");
  {
    TIniStrings ini(name);
    EXPECT_EQ(ini.ReadString("a", "k", ""), "v");
    ini.WriteString("a", "k", "w");
    ini.UpdateFile();
  }
  EXPECT_EQ(ReadWholeFile(name), "[a]\r\nk=w\r\n\r\n");
  DeleteFile(name);
  EXPECT_FALSE(TIniStrings(name).HasSection("a"));
  TIniStrings().UpdateFile();  // without a name nothing is written
}

}  // namespace
}  // namespace wrenfold
