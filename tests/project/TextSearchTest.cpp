// Finding and replacing: words, letter case beyond ASCII, groups, patterns made to harm.
#include <gtest/gtest.h>

#include "project/TextSearch.h"

namespace wrenfold {
namespace {

constexpr TSearchOptions Plain{}, Case{.CaseSensitive = true}, Words{.WholeWords = true},
    Regex{.RegularExpression = true};

std::string Found(std::string_view text, std::string_view pattern, const TSearchOptions& options) {
  std::string found;
  for (const TTextMatch& match : TTextSearch(pattern, options).FindAll(text))
    found += (found.empty() ? "" : "|") + std::to_string(match.Offset) + "+" +
             std::to_string(match.Length);
  return found;
}

TEST(TextSearch, FindsWhatTheOptionsMean) {
  const struct {
    const char *Text, *Pattern;
    TSearchOptions Options;
    const char* Found;
  } rows[] = {
      {"aXaxA", "x", Plain, "1+1|3+1"},
      {"aXaxA", "x", Case, "3+1"},
      {"\xC3\x84rger \xC3\xA4rger", "\xC3\x84RGER", Plain, "0+6|7+6"},
      {"a.b a*b", "a.b", Plain, "0+3"},
      {"a.b a*b", "a.b", Regex, "0+3|4+3"},
      {"Form Form1 (Form) \xC3\xA4"
       "Form",
       "form", Words, "0+4|12+4"},
      {"a:=b; :=", ":=", Words, "1+2|6+2"},
      {"one\r\ntwo\rthree", "^t\\w+$", Regex, "5+3|9+5"},
      {"ab", "x*", Regex, "0+0|1+0|2+0"},
      {"\xC3\xA4", "(?=.)", Regex, "0+0"},
      {"\xFF"
       "abc\xFF",
       "abc", Plain, "1+3"},
      {"aaa", "aa", Plain, "0+2"},
      {"abc", "(?<=a)\\Kb", Regex, "1+1"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Found(row.Text, row.Pattern, row.Options), row.Found)
        << row.Pattern << " in " << row.Text;
  EXPECT_EQ(Found(std::string(5000, 'a'), "(a+)+$b", Regex), "") << "given up in time";
}

TEST(TextSearch, ReplacesWithGroupsOnlyWhereThePatternHasThem) {
  const std::string text = "SetName(Value);";
  const TTextSearch search("(?<call>Set)(\\w+)\\((.*)\\)(?=;)", Regex);
  TTextMatch match;
  ASSERT_TRUE(search.Find(text, 0, match));
  EXPECT_EQ(search.Replacement(text, match, "$2 := $3 \\U${call}\\E$0"),
            "Name := Value SETSetName(Value)");
  EXPECT_EQ(search.Replacement(text, match, std::string(1000, 'x')), std::string(1000, 'x'));
  EXPECT_EQ(TTextSearch("Set", Plain).Replacement(text, {0, 3}, "$1"), "$1");
  EXPECT_THROW(search.Replacement(text, match, "${none"), ESearchError);
}

TEST(TextSearch, PatternsThatAreNoneTellTheirPlace) {
  for (const auto& [pattern, part] : {std::pair("a(b", "a(b: at 4: "), std::pair("[z", "[z: at 3"),
                                      std::pair("", "expected a text")})
    try {
      const TTextSearch search(pattern, Regex);
      ADD_FAILURE() << pattern;
    } catch (const ESearchError& error) {
      EXPECT_NE(error.Message().find(part), std::string::npos) << error.Message();
    }
}

}  // namespace
}  // namespace wrenfold
