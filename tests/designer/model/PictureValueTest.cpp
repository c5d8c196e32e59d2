// Picture files into properties and out again: each kind with what belongs in front of it.
#include <gtest/gtest.h>

#include "designer/model/PictureValue.h"
#include "designer/model/StoredValue.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {
namespace {

TEST(PictureValue, FileComesBackAndHasInFrontWhatItsPropertyWants) {
  using enum TPictureNotation;
  struct TRow {
    const char* Path;
    std::string File;
    TPictureNotation Notation;
    const char* Extension;
    std::string Front;  // in front of the file; "!": refused
    std::string OldFront = {};
  };
  const std::string png("\x89PNG\r\n\x1A\nrest"), jpg("\xFF\xD8\xFF\xE0rest");
  const std::string ico("\0\0\1\0rest", 8), bmp("BMrest");
  const auto sized = [](const char* name, const std::string& file) {
    return name + std::string(1, static_cast<char>(file.size())) + std::string(3, '\0');
  };
  const TRow rows[] = {
      {"Picture.Data", bmp, Classic, ".bmp", sized("\7TBitmap", bmp)},
      {"Picture.Data", ico, Classic, ".ico", "\5TIcon"},
      {"Picture.Data", ico, Free, ".ico", sized("\5TIcon", ico)},
      {"Picture.Data", png, Classic, ".png", "\x9TPngImage"},
      {"Picture.Data", png, Free, ".png", sized("\x17TPortableNetworkGraphic", png)},
      {"Picture.Data", png, Classic, ".png", "\xATPNGObject", "\xATPNGObject"},
      {"Picture.Data", jpg, Classic, ".jpg", sized("\xATJPEGImage", jpg)},
      {"Glyph.Data", bmp, Classic, ".bmp", sized("", bmp)},
      {"Icon.Data", ico, Classic, ".ico", ""},
      {"Icon.Data", ico, Classic, ".ico", sized("", ico), sized("", ico)},
      {"Glyph.Data", png, Classic, ".png", "!"},
      {"Icon.Data", bmp, Classic, ".bmp", "!"},
      {"Picture.Data", "text", Classic, "", "!"},
      {"Picture.Data", sized("", bmp) + bmp, Classic, ".bmp", "!"},
      {"Bitmap", bmp, Classic, ".bmp", "!"},
  };
  for (const TRow& row : rows) {
    TByteWriter old;
    if (!row.OldFront.empty()) old.WriteBinaryValue(row.OldFront + row.File);
    if (row.Front == "!") {
      EXPECT_THROW(PictureValueOf(row.Path, row.File, old.View(), row.Notation), EConvertError)
          << row.Path;
      continue;
    }
    const std::string value = PictureValueOf(row.Path, row.File, old.View(), row.Notation);
    EXPECT_EQ(StoredBinary(value), row.Front + row.File) << row.Path << row.Extension;
    const TStoredPicture picture = PictureIn(row.Path, value);
    EXPECT_EQ(picture.File, row.File) << row.Path << row.Extension;
    EXPECT_EQ(PictureExtension(picture.Kind), row.Extension);
  }
}

}  // namespace
}  // namespace wrenfold
