// Where a text comes from: hook, language module, package.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "ModuleBuilder.h"
#include "locale/rkLocale.h"

namespace wrenfold {
namespace {

struct THook {
  std::string Text;
  void Answer(int id, std::string& text) {
    if (id == sCancel) text = Text;
  }
};

class LocaleTest : public testing::Test {
 protected:
  LocaleTest() { std::filesystem::create_directories(FDirectory); }
  ~LocaleTest() override {
    FreeLocale();
    std::filesystem::remove_all(FDirectory);
  }

  std::string WriteFile(const std::string& bytes) {
    std::ofstream(FFileName, std::ios::binary) << bytes;
    return FFileName;
  }
  // A module that has the given texts in the block of `id`, from that id on.
  std::string WriteModule(int id, const std::u16string& text) {
    const TModuleBlock block{static_cast<std::uint32_t>(id / 16 + 1), 0, {{id % 16, text}}};
    return WriteFile(TModuleBuilder({block}).Bytes());
  }

  std::string FDirectory = testing::TempDir() + "wrenfold_locale";
  std::string FFileName = FDirectory + "/module.dll";
};

TEST_F(LocaleTest, AsksHookThenModuleThenPackage) {
  LoadNewLanguage(WriteModule(sCancel, u"Abbruch"));
  EXPECT_EQ(LocaleStr(sCancel), "Abbruch");
  EXPECT_EQ(LocaleStr(sMore), "More") << "a text that the module lacks";
  EXPECT_EQ(LocaleStr(50499), "") << "a text that nobody has";
  EXPECT_EQ(DefaultLocaleStr(sCancel), "Cancel");
  EXPECT_EQ(DefaultLocaleStr(50499), "Not found");

  THook hook{"Halt"};
  Bind<&THook::Answer>(Locale().OnText, &hook);
  EXPECT_EQ(LocaleStr(sCancel), "Halt");
  EXPECT_EQ(LocaleStr(sMore), "More") << "a text that the hook lacks";
  hook.Text.clear();
  EXPECT_EQ(LocaleStr(sCancel), "Abbruch") << "an empty text is no answer";
}

TEST_F(LocaleTest, EmptyNameGoesBackToThePackage) {
  LoadNewLanguage(WriteModule(sCancel, u"Abbruch"));
  LoadNewLanguage("");
  EXPECT_FALSE(Locale().Loaded());
  EXPECT_EQ(LocaleStr(sCancel), "Cancel");
}

TEST_F(LocaleTest, UnreadableModuleCountsAsLoadedAndLeavesThePackagesTexts) {
  struct TRow {
    const char* Name;
    std::function<void()> Prepare;
  };
  const TRow rows[] = {
      {"deleted", [this] { std::filesystem::remove(FFileName); }},
      {"text", [this] { WriteFile("[Strings]\r\n51011=Abbruch\r\n"); }},
      {"empty", [this] { WriteFile(""); }},
      {"directory", [this] { std::filesystem::create_directory(FFileName); }},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Name);
    std::filesystem::remove(FFileName);
    LoadNewLanguage(WriteModule(sCancel, u"Abbruch"));
    std::filesystem::remove(FFileName);
    row.Prepare();
    LoadNewLanguage(FFileName);
    EXPECT_TRUE(Locale().Loaded());
    EXPECT_EQ(LocaleStr(sCancel), "Cancel") << "a text of the module before";
    EXPECT_THAT(Locale().LoadError(), testing::StartsWith(FFileName + ": "));
  }
}

TEST_F(LocaleTest, WrongPlaceholderInATranslationFallsBackToThePackagesText) {
  LoadNewLanguage(WriteModule(sExpertsGroupDefined, u"Gruppe %d ist definiert"));
  EXPECT_EQ(LocaleFormat(sExpertsGroupDefined, 5), "Gruppe 5 ist definiert");
  for (const char16_t* text : {u"Gruppe %s", u"Gruppe", u"Gruppe %d %d", u"Gruppe %d %"}) {
    LoadNewLanguage(WriteModule(sExpertsGroupDefined, text));
    EXPECT_EQ(LocaleFormat(sExpertsGroupDefined, 5), "Expert’s group 5 is already defined.");
  }
  EXPECT_THROW(LocaleFormat(sExpertsGroupDefined, "five"), EFormatError) << "the caller's fault";
}

TEST(LocaleHostTest, KnowsDelphiByItsFileNameAlone) {
  EXPECT_TRUE(TfrLocale("DELPHI32.EXE").HostIsDelphi());
  EXPECT_TRUE(TfrLocale("C:\\Delphi4\\Bin\\Delphi32.exe").HostIsDelphi());
  EXPECT_FALSE(TfrLocale("/opt/delphi32.exe/wrenfold").HostIsDelphi());
  EXPECT_FALSE(TfrLocale("").HostIsDelphi());
}

}  // namespace
}  // namespace wrenfold
