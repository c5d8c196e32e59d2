// Encodings and line ends that survive a round trip, and what happens to the file on disk.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>

#include "platform/core/system/Files.h"
#include "project/TestSupport.h"
#include "project/TextFile.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

struct TBytesCase {
  const char* Name;
  std::string Bytes;
  const char* Encoding;
  std::string Text;
  int CodePage = 1252;
};
class StoredText : public testing::TestWithParam<TBytesCase> {};

TEST_P(StoredText, IsReadInItsEncodingAndKeepsEveryByte) {
  TTextFormat format;
  const std::string text = DecodeText(GetParam().Bytes, GetParam().CodePage, format);
  EXPECT_EQ(text, GetParam().Text);
  EXPECT_EQ(EncodingName(format), GetParam().Encoding);
  EXPECT_EQ(EncodeText(text, format, "a.pas"), GetParam().Bytes);
}

const TBytesCase BytesCases[] = {
    {"Empty", "", "UTF-8", ""},
    {"Ascii", "unit A;\r\n", "UTF-8", "unit A;\r\n"},
    {"Utf8", "\xD0\x96\xE2\x82\xAC\xF0\x9F\x98\x80", "UTF-8", "Ж€😀"},
    {"Utf8Mark", "\xEF\xBB\xBFunit", "UTF-8 with byte order mark", "unit"},
    {"MarkOnly", "\xEF\xBB\xBF", "UTF-8 with byte order mark", ""},
    {"MarkedUtf8WithBadBytes",
     "\xEF\xBB\xBF"s
     "a\xFF\xE2\x82z\xC0\x80",
     "UTF-8 with byte order mark", "a\uEEFF\uEEE2\uEE82z\uEEC0\uEE80"},
    {"MarkedUtf8WithBadBytesAndPrivateCharacter", "\xEF\xBB\xBF\xFF\uEE41",
     "UTF-8 with byte order mark", "\uEEFF\uEEEE\uEEB9\uEE81"},
    {"PrivateCharacterInValidUtf8", "\uEE41", "UTF-8", "\uEE41"},
    {"WesternPage", "f\xFCr \x80", "Windows-1252", "für €"},
    {"WesternPageUndefinedByte", "\x81\xFC", "Windows-1252", "\uEE81ü"},
    {"CyrillicPage", "\xC6\xF3\xEA", "Windows-1251", "Жук", 1251},
    {"HebrewPageUndefinedByte", "\xD9\xE0", "Windows-1255", "\uEED9א", 1255},
    {"LooksLikeUtf8CutShort", "a\xE2\x82", "Windows-1252", "aâ‚"},
    {"Utf16Little",
     "\xFF\xFE"s
     "a\0\x16\x04"s
     "\x3D\xD8\x00\xDE"s,
     "UTF-16", "aЖ😀"},
    {"Utf16Big", "\xFE\xFF\0a\x04\x16"s, "UTF-16, big-endian", "aЖ"},
    {"Utf16OddByteAtTheEnd",
     "\xFF\xFE"s
     "a\0b"s,
     "UTF-16", "a\uEE62"},
    {"Utf16HalfAPair",
     "\xFF\xFE\x3D\xD8"s
     "a\0"s,
     "UTF-16",
     "\uEE3D\uEED8"
     "a"},
    {"Utf16PairCutAtTheEnd", "\xFF\xFE\x3D\xD8\x00"s, "UTF-16", "\uEE3D\uEED8\uEE00"},
    {"Utf16LowHalfAlone", "\xFE\xFF\xDE\x00\0a"s, "UTF-16, big-endian",
     "\uEEDE\uEE00"
     "a"},
};
INSTANTIATE_TEST_SUITE_P(, StoredText, testing::ValuesIn(BytesCases), CaseName);

TEST(TextEncoding, NoiseOfEveryKindKeepsEveryByte) {
  std::mt19937 random(20);
  const std::string marks[] = {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};
  for (int round = 0; round < 2000; ++round) {
    std::string bytes = marks[round % 4];
    for (int count = random() % 40; count > 0; --count) bytes += static_cast<char>(random());
    TTextFormat format;
    const std::string text = DecodeText(bytes, 1250 + round % 9, format);
    ASSERT_EQ(EncodeText(text, format, "a.pas"), bytes) << "round " << round;
  }
}

TEST(TextEncoding, CharacterThatTheCodePageLacksIsNamedAndNothingWritten) {
  const TTemporaryFolder folder;
  const std::string name = folder.Write("a.pas", "f\xFCr\r\n");
  TTextFile file = TTextFile::Load(name, 1252);
  file.SetText("für\r\n  Жук\r\n");
  try {
    file.Save();
    FAIL() << "saved";
  } catch (const ETextEncodingError& error) {
    EXPECT_EQ(error.Place.Line, 2);
    EXPECT_EQ(error.Place.Column, 3);
    EXPECT_NE(error.Message().find("'Ж' (U+0416)"), std::string::npos) << error.Message();
  }
  EXPECT_EQ(TTemporaryFolder::Read(name), "f\xFCr\r\n");
  EXPECT_TRUE(file.Modified());
  file.SetFormat({TTextEncoding::Utf8WithMark});
  file.Save();
  EXPECT_EQ(TTemporaryFolder::Read(name),
            "\xEF\xBB\xBF"
            "für\r\n  Жук\r\n");
}

TEST(LineEnds, AreCountedByKindAndTheMajorityWins) {
  struct TCase {
    const char* Text;
    const char* Name;
  };
  const TCase cases[] = {
      {"", "CR LF"},    {"a\r\nb\r\n", "CR LF"},           {"a\rb\rc", "CR"},
      {"a\nb\n", "LF"}, {"a\r\r\n\r", "mixed, mostly CR"}, {"a\n\n\r\n", "mixed, mostly LF"}};
  for (const TCase& row : cases)
    EXPECT_EQ(LineEndsName(CountLineEnds(row.Text)), row.Name) << testing::PrintToString(row.Text);
}

TEST(TextFile, EditedOnlyTheEditedLineChanges) {
  const TTemporaryFolder folder;
  const std::string name = folder.Write("a.pas",
                                        "\xFF\xFE"s
                                        "a\0\r\0b\0\n\0c\0"s);
  TTextFile file = TTextFile::Load(name);
  ASSERT_EQ(file.Text(), "a\rb\nc");
  file.SetText("a\rB\nc");
  file.Save();
  EXPECT_EQ(TTemporaryFolder::Read(name),
            "\xFF\xFE"s
            "a\0\r\0B\0\n\0c\0"s);
  EXPECT_FALSE(file.Modified());
  EXPECT_EQ(file.DiskState(), TDiskState::Same);
}

TEST(TextFile, ChangeOnDiskIsSeenAndAMereTouchIsNot) {
  const TTemporaryFolder folder;
  const std::string name = folder.Write("a.pas", "one");
  const TTextFile file = TTextFile::Load(name);
  EXPECT_EQ(file.DiskState(), TDiskState::Same);
  std::filesystem::last_write_time(
      name, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(5));
  EXPECT_EQ(file.DiskState(), TDiskState::Same);
  folder.Write("a.pas", "two");
  std::filesystem::last_write_time(
      name, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(9));
  EXPECT_EQ(file.DiskState(), TDiskState::Changed);
  std::filesystem::remove(name);
  EXPECT_EQ(file.DiskState(), TDiskState::Missing);
}

TEST(TextFile, MissingFileFolderAndDeviceAreRefusedByName) {
  const TTemporaryFolder folder;
  for (const std::string& name : {folder.Path() + "/none.pas", folder.Path(), "/dev/zero"s}) {
    try {
      TTextFile::Load(name);
      FAIL() << name;
    } catch (const EFOpenError& error) {
      EXPECT_NE(error.Message().find(name), std::string::npos) << error.Message();
    }
  }
}

TEST(TextFile, ReadOnlyFileIsNotReplaced) {
  const TTemporaryFolder folder;
  const std::string name = folder.Write("a.pas", "one");
  TTextFile file = TTextFile::Load(name);
  EXPECT_FALSE(file.ReadOnly());
  chmod(name.c_str(), 0444);
  EXPECT_TRUE(file.ReadOnly());
  file.SetText("two");
  EXPECT_THROW(file.Save(), EFCreateError);
  EXPECT_EQ(TTemporaryFolder::Read(name), "one");
  EXPECT_TRUE(file.Modified());
}

}  // namespace
}  // namespace wrenfold
