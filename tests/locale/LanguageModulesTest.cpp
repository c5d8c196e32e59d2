// The language modules of the build against the package's own table.
#include <gmock/gmock.h>

#include "locale/ResourceLibrary.h"
#include "locale/StringIds.h"
#include "locale/Strings.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/Format.h"

namespace wrenfold {
namespace {

std::string ModulePath(const std::string& name) {
  return std::string(WRENFOLD_BIN_DIR) + "/" + name;
}

int CountOf(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + part.size()))
    ++count;
  return count;
}

// A text that is shown as it stands may hold a '%' that is no placeholder.
std::string Placeholders(std::string_view text) {
  try {
    return FormatSignature(text);
  } catch (const EFormatError&) {
    return "no pattern";
  }
}

class LanguageModuleTest : public testing::TestWithParam<const char*> {};

TEST_P(LanguageModuleTest, EveryTextIsThereAndKeepsItsPlaceholdersAndMarks) {
  const TResourceLibrary module(ModulePath(GetParam()));
  for (const TStringEntry& entry : PackageStrings()) {
    const std::string text = module.FindString(entry.Id);
    SCOPED_TRACE(testing::Message() << entry.Id << ": " << text);
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(Placeholders(text), Placeholders(entry.Text));
    for (const char* mark : {"##", "|", "=", "\r\n"})
      EXPECT_EQ(CountOf(text, mark), CountOf(entry.Text, mark)) << mark;
    EXPECT_EQ(text.find("\uFFFD"), std::string::npos);
  }
}

TEST_P(LanguageModuleTest, NothingIsThereThatThePackageDoesNotKnow) {
  const TResourceLibrary module(ModulePath(GetParam()));
  for (int id = 0; id < 65536; ++id)
    if (FindPackageString(id) == nullptr) {
      EXPECT_EQ(module.FindString(id), "") << id;
    }
}

// A language is found by its own name on the left; file extensions and marks are used in files.
TEST_P(LanguageModuleTest, KeysAreNotTranslated) {
  const TResourceLibrary module(ModulePath(GetParam()));
  for (const int id : {sOwnLanguage, sSpcBinExt, sSpcResBinExt, sSpcExBinExt, sSpcTextExt,
                       sEditorSection, sPseudoNewLine, sControlPostfix})
    EXPECT_EQ(module.FindString(id), FindPackageString(id)->Text) << id;
  const std::string names = module.FindString(sLanguageNames);
  EXPECT_THAT(names, testing::StartsWith("Russian="));
  EXPECT_THAT(names, testing::HasSubstr("\r\nEnglish="));
  EXPECT_THAT(names, testing::HasSubstr("\r\nGerman="));
}

INSTANTIATE_TEST_SUITE_P(Modules, LanguageModuleTest,
                         testing::Values("wren_eng.dll", "wren_ger.dll", "wren_rus.dll"),
                         [](const auto& row) { return std::string(row.param).substr(5, 3); });

TEST(EnglishModuleTest, SaysWhatThePackageSays) {
  const TResourceLibrary module(ModulePath("wren_eng.dll"));
  for (const TStringEntry& entry : PackageStrings())
    EXPECT_EQ(module.FindString(entry.Id), entry.Text);
}

TEST(TranslationTest, EncodingSurvivesTheResourceCompiler) {
  EXPECT_EQ(TResourceLibrary(ModulePath("wren_ger.dll")).FindString(sHintCloseUnits),
            "Units schließen");
  EXPECT_EQ(TResourceLibrary(ModulePath("wren_rus.dll")).FindString(sLanguageNames),
            "Russian=Русский\r\nEnglish=Английский\r\nGerman=Немецкий");
}

// A sentence left in English is a translation forgotten.
TEST(TranslationTest, SentencesAreTranslated) {
  for (const char* name : {"wren_ger.dll", "wren_rus.dll"}) {
    const TResourceLibrary module(ModulePath(name));
    for (const TStringEntry& entry : PackageStrings())
      if (CountOf(entry.Text, " ") >= 2) {
        EXPECT_NE(module.FindString(entry.Id), entry.Text) << name << " " << entry.Id;
      }
  }
}

}  // namespace
}  // namespace wrenfold
