// String lists: order, searching, texts and change events.
#include <gmock/gmock.h>

#include "platform/core/model/StringList.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {
namespace {

std::string Joined(const TStrings& list) {
  std::string text;
  for (int i = 0; i < list.Count(); ++i) text.append(i > 0 ? "|" : "").append(list[i]);
  return text;
}

TEST(StringList, TextTakesEveryLineEnd) {
  struct TRow {
    const char *Text, *Lines;
    int Count;
  };
  const TRow rows[] = {{"", "", 0},
                       {"a", "a", 1},
                       {"a\r\n", "a", 1},
                       {"\r\n", "", 1},
                       {"a\nb\rc", "a|b|c", 3},
                       {"a\n\rb", "a||b", 3},
                       {"a\r\n\r\nb", "a||b", 3}};
  for (const TRow& row : rows) {
    TStringList list;
    list.SetText(row.Text);
    EXPECT_EQ(list.Count(), row.Count) << testing::PrintToString(row.Text);
    EXPECT_EQ(Joined(list), row.Lines);
  }
  TStringList list;
  list.SetText("a\n\nb");
  EXPECT_EQ(list.Text(), "a\r\n\r\nb\r\n");
}

TEST(StringList, CommaTextComesBack) {
  struct TRow {
    std::vector<std::string> Lines;
    const char* Text;
  };
  const TRow rows[] = {{{}, ""},
                       {{""}, "\"\""},
                       {{"", ""}, ","},
                       {{"a", "", "b"}, "a,,b"},
                       {{"two words", "a,b"}, "\"two words\",\"a,b\""},
                       {{"say \"x\"", "\""}, "\"say \"\"x\"\"\",\"\"\"\""}};
  for (const TRow& row : rows) {
    TStringList list, back;
    for (const std::string& line : row.Lines) list.Add(line);
    EXPECT_EQ(list.CommaText(), row.Text);
    back.SetCommaText(list.CommaText());
    EXPECT_EQ(back.Count(), list.Count()) << row.Text;
    EXPECT_EQ(Joined(back), Joined(list));
  }
  TStringList loose;
  loose.SetCommaText(" a b ,\tc \"open");
  EXPECT_EQ(Joined(loose), "a|b|c|open");
}

TEST(StringList, SortedListKeepsItsOrderAndFinds) {
  TStringList list;
  TObject mark;
  for (const char* line : {"gamma", "Beta", "alpha", "beta"}) list.Add(line);
  list.PutObject(0, &mark);
  list.SetSorted(true);
  EXPECT_EQ(Joined(list), "alpha|Beta|beta|gamma") << "equal lines stay in their order";
  EXPECT_EQ(list.GetObject(3), &mark) << "objects move with their lines";
  EXPECT_EQ(list.Add("Delta"), 3);
  EXPECT_EQ(list.Add("ALPHA"), 0);
  EXPECT_EQ(list.Count(), 5) << "a duplicate was taken";
  list.Duplicates = dupAccept;
  list.Add("ALPHA");
  EXPECT_EQ(list.Count(), 6);
  list.Duplicates = dupError;
  EXPECT_THROW(list.Add("delta"), EListError);
  EXPECT_THROW(list.Insert(0, "zeta"), EListError);
  EXPECT_THROW(list.Put(0, "zeta"), EListError);
  int index = -1;
  EXPECT_FALSE(list.Find("c", index));
  EXPECT_EQ(Joined(list).substr(0, 22), "ALPHA|alpha|Beta|beta|");
  EXPECT_EQ(index, 4);
  EXPECT_EQ(list.IndexOf("GAMMA"), 5);
  EXPECT_EQ(list.IndexOf("epsilon"), -1);
}

TEST(StringList, NamesAndValues) {
  TStringList list;
  list.SetText("Nameless\nName=a=b\n=x\n");
  EXPECT_EQ(list.Value("NAME"), "a=b");
  EXPECT_EQ(list.Value("Nameless"), "") << "a line without a sign has no value";
  EXPECT_EQ(list.Value(""), "x");
  list.SetValue("name", "c");
  list.SetValue("new", "d");
  list.SetValue("", "");
  EXPECT_EQ(Joined(list), "Nameless|name=c|new=d");
}

TEST(StringList, MovesWithinBoundsAlone) {
  TStringList list;
  list.SetCommaText("a,b,c,d");
  list.Move(0, 3);
  EXPECT_EQ(Joined(list), "b|c|d|a");
  list.Move(2, 0);
  EXPECT_EQ(Joined(list), "d|b|c|a");
  for (const int index : {-1, 4}) {
    EXPECT_THROW(list.Move(0, index), EListError);
    EXPECT_THROW(list.Move(index, 0), EListError);
    EXPECT_THROW(list.Exchange(0, index), EListError);
    EXPECT_THROW(list.Delete(index), EListError);
    EXPECT_THROW(list.Get(index), EListError);
    EXPECT_THROW(list.PutObject(index, nullptr), EListError);
  }
  EXPECT_THROW(list.Insert(5, ""), EListError);
  EXPECT_EQ(Joined(list), "d|b|c|a");
}

// A list that looks at its own changes, as descendants do.
class TWatchedList : public TStringList {
 public:
  std::string Log;

 protected:
  void Changed() override {
    if (UpdateCount() == 0) Log += 'c';
  }
  void Changing() override {
    if (UpdateCount() == 0) Log += 'b';
  }
};

TEST(StringList, UpdateBracketReportsOneChange) {
  TWatchedList list;
  list.Add("a");
  EXPECT_EQ(std::exchange(list.Log, ""), "bc");
  {
    const TUpdate outer(list);
    list.Clear();
    const TUpdate inner(list);
    list.SetText("x\ny");
  }
  EXPECT_EQ(list.Log, "bc");
}

}  // namespace
}  // namespace wrenfold
