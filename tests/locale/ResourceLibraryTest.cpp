// Whole, damaged and hostile resource libraries.
#include <gmock/gmock.h>

#include <functional>

#include "ModuleBuilder.h"
#include "locale/ResourceLibrary.h"

namespace wrenfold {
namespace {

const std::vector<TModuleBlock> cTwoBlocks = {{1, 7, {{0, u"first"}, {15, u"last"}}},
                                              {4096, 7, {{15, u"highest"}}}};

TEST(ResourceLibraryTest, FindsTextsAtTheEdgesOfBlocksInBothWidths) {
  for (const bool wide : {false, true}) {
    const TResourceLibrary library("m", TModuleBuilder(cTwoBlocks, wide).Bytes());
    EXPECT_EQ(library.FindString(0), "first");
    EXPECT_EQ(library.FindString(1), "");
    EXPECT_EQ(library.FindString(15), "last");
    EXPECT_EQ(library.FindString(16), "");
    EXPECT_EQ(library.FindString(65535), "highest");
    EXPECT_EQ(library.FindString(65536), "");
    EXPECT_EQ(library.FindString(-1), "");
  }
}

TEST(ResourceLibraryTest, PrefersTheNeutralLanguageElseTakesTheFirst) {
  const auto text = [](std::uint32_t one, std::uint32_t other) {
    const TModuleBuilder module({{1, one, {{0, u"one"}}}, {1, other, {{0, u"other"}}}});
    return TResourceLibrary("m", module.Bytes()).FindString(0);
  };
  EXPECT_EQ(text(0x407, 0), "other");
  EXPECT_EQ(text(0x407, 0x409), "one");
}

TEST(ResourceLibraryTest, FindsBlocksThatStandInTheWrongOrder) {
  const TModuleBuilder module({{9, 0, {{0, u"nine"}}}, {2, 0, {{0, u"two"}}}});
  const TResourceLibrary library("m", module.Bytes());
  EXPECT_EQ(library.FindString(16), "two");
  EXPECT_EQ(library.FindString(128), "nine");
}

TEST(ResourceLibraryTest, CutsAtTheBufferAndNeverLeavesHalfACharacter) {
  std::u16string pairs(1022, u'x');
  pairs += u"\U0001F600 tail";
  const TModuleBuilder module({{1, 0, {{0, std::u16string(2000, u'ж')}, {1, pairs}}}});
  const TResourceLibrary library("m", module.Bytes());
  EXPECT_EQ(library.FindString(0).size(), 2 * TResourceLibrary::MaxTextLength);
  EXPECT_EQ(library.FindString(1), std::string(1022, 'x'));
}

// Reads the bytes and asks for texts of every block; only the one error may come out.
void Exercise(const std::string& bytes) {
  try {
    const TResourceLibrary library("module.dll", bytes);
    for (int id = 0; id < 65536; id += 15) library.FindString(id);
  } catch (const EResourceLibraryError& error) {
    EXPECT_THAT(error.Message(), testing::StartsWith("module.dll: "));
  }
}

TEST(ResourceLibraryTest, CutAtAnyByteItIsRefused) {
  const std::string whole = TModuleBuilder(cTwoBlocks).Bytes();
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_THROW(TResourceLibrary("m", whole.substr(0, size)), EResourceLibraryError) << size;
}

TEST(ResourceLibraryTest, AnyByteMayBeWrong) {
  const std::string whole = TModuleBuilder(cTwoBlocks).Bytes();
  for (std::size_t at = 0; at < whole.size(); ++at)
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      std::string bytes = whole;
      bytes[at] = static_cast<char>(value);
      Exercise(bytes);
    }
}

TEST(ResourceLibraryTest, RefusesHostileFilesAndSaysWhatItExpected) {
  using TBuilder = TModuleBuilder;
  struct TRow {
    const char* Name;
    std::function<void(TBuilder&)> Damage;
    const char* Expected;
  };
  const TRow rows[] = {
      {"text file", [](TBuilder& m) { m.Put32(0, 0x74786574); }, "the mark \"MZ\""},
      {"header offset beyond the file", [](TBuilder& m) { m.Put32(0x3C, 0xFFFFFFF0); },
       "the mark \"PE\""},
      {"unknown width", [](TBuilder& m) { m.Put16(m.OptionalHeader(), 0x107); }, "32 or 64 bits"},
      {"no resource directory", [](TBuilder& m) { m.Put32(m.Directories(), 2); },
       "a directory of resources"},
      {"optional header too small for it",
       [](TBuilder& m) { m.Put16(TBuilder::cHeader + 20, 112); }, "a directory of resources"},
      {"65535 sections", [](TBuilder& m) { m.Put16(TBuilder::cHeader + 6, 0xFFFF); }, "a section"},
      {"resources outside all sections",
       [](TBuilder& m) { m.Put32(m.Directories() + 20, 0x7FFFFFFF); }, "inside a section"},
      {"section beyond the file", [](TBuilder& m) { m.Put32(m.SectionTable() + 20, 0xFFFFFFFF); },
       "a resource directory"},
      {"icons instead of texts", [](TBuilder& m) { m.Put32(TBuilder::cTypes + 16, 3); },
       "a string table in the resources"},
      {"type without a directory", [](TBuilder& m) { m.Put32(TBuilder::cTypes + 20, 24); },
       "a resource directory, not data"},
      {"directory that is its own parent",
       [](TBuilder& m) { m.Put32(TBuilder::cBlocks + 20, 0x80000000); },
       "a string table, not a directory"},
      {"languages nested once more",
       [](TBuilder& m) { m.Put32(m.FirstLanguages() + 20, 0x80000000); },
       "a string table, not a directory"},
      {"65535 blocks", [](TBuilder& m) { m.Put16(TBuilder::cBlocks + 14, 0xFFFF); },
       "at most 4096 resources"},
      {"4096 blocks in a short file", [](TBuilder& m) { m.Put16(TBuilder::cBlocks + 14, 4096); },
       "of a resource"},
      {"table of 4 GB", [](TBuilder& m) { m.Put32(m.FirstData() + 4, 0xFFFFFFFF); },
       "a string table inside a section"},
      {"table before its section", [](TBuilder& m) { m.Put32(m.FirstData(), 0); },
       "a string table inside a section"},
      {"text longer than its table", [](TBuilder& m) { m.Put16(m.FirstTexts(), 0xFFFF); },
       "a text that ends inside its string table"},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Name);
    TBuilder module(cTwoBlocks);
    row.Damage(module);
    try {
      TResourceLibrary("module.dll", module.Bytes());
      ADD_FAILURE() << "no error";
    } catch (const EResourceLibraryError& error) {
      EXPECT_THAT(error.Message(),
                  testing::AllOf(testing::StartsWith("module.dll: "), testing::HasSubstr("offset"),
                                 testing::HasSubstr(row.Expected)));
    }
  }
}

}  // namespace
}  // namespace wrenfold
