// Pictures as forms store them, good and hostile.
#include <gmock/gmock.h>
#include <zlib.h>

#include "designer/model/ImageList.h"
#include "designer/model/StoredItems.h"
#include "designer/model/StoredPicture.h"

namespace wrenfold {
namespace {

std::string Number(std::uint32_t value, int bytes = 4) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
  return text;
}

std::string Bitmap(std::uint32_t width, std::uint32_t height, std::uint32_t bits,
                   const std::string& colors, const std::string& pixels,
                   std::uint32_t compression = 0) {
  const std::string header = Number(40) + Number(width) + Number(height) + Number(1, 2) +
                             Number(bits, 2) + Number(compression) + std::string(20, '\0');
  const auto start = static_cast<std::uint32_t>(14 + header.size() + colors.size());
  return "BM" + Number(0) + Number(0) + Number(start) + header + colors + pixels;
}

const std::string TwoColors = Number(0x0000FF, 4) + Number(0xFF0000, 4);  // blue, red

struct TBitmapRow {
  const char* Name;
  std::string File;
  std::uint32_t TopLeft;
  std::uint32_t BottomRight;
};

TEST(Bitmaps, AreDecodedInEveryDepth) {
  const std::string four = TwoColors + std::string(56, '\0');
  const std::string eight = TwoColors + std::string(1016, '\0');
  const TBitmapRow rows[] = {
      {"1 bit", Bitmap(2, 2, 1, TwoColors, Number(0x40) + Number(0x80)), 0xFFFF0000, 0xFFFF0000},
      {"4 bits", Bitmap(2, 2, 4, four, Number(0x01) + Number(0x10)), 0xFFFF0000, 0xFFFF0000},
      {"8 bits", Bitmap(2, 2, 8, eight, Number(0x0100) + Number(0x0001)), 0xFFFF0000, 0xFFFF0000},
      {"16 bits", Bitmap(2, 1, 16, "", Number(0x7C00 | 0x001Fu << 16)), 0xFFFF0000, 0xFF0000FF},
      {"24 bits", Bitmap(1, 2, 24, "", Number(0x112233) + Number(0x445566)), 0xFF445566,
       0xFF112233},
      {"32 bits opaque", Bitmap(1, 1, 32, "", Number(0x00112233)), 0xFF112233, 0xFF112233},
      {"32 bits", Bitmap(2, 1, 32, "", Number(0x80112233) + Number(0)), 0x80112233, 0},
      {"top down",
       Bitmap(1, static_cast<std::uint32_t>(-2), 24, "", Number(0x112233) + Number(0x445566)),
       0xFF112233, 0xFF445566},
      {"runs", Bitmap(2, 2, 8, eight, std::string("\2\1\0\0\2\0\0\1", 8), 1), 0xFF0000FF,
       0xFFFF0000},
  };
  for (const TBitmapRow& row : rows) {
    const TPixelImage image = DecodeBitmap(row.File);
    EXPECT_EQ(image.At(0, 0), row.TopLeft) << row.Name;
    EXPECT_EQ(image.At(image.Width - 1, image.Height - 1), row.BottomRight) << row.Name;
  }
}

struct THostileRow {
  const char* Name;
  std::string File;
};

TEST(Bitmaps, HostileSizesAreRefusedBeforeMemoryIsTaken) {
  const THostileRow rows[] = {
      {"empty", ""},
      {"no header", "BM"},
      {"billions of pixels", Bitmap(0x7FFFFFFF, 0x7FFFFFFF, 32, "", "")},
      {"least height", Bitmap(1, 0x80000000, 32, "", "")},
      {"no width", Bitmap(0, 5, 24, "", "xxxx")},
      {"pixels missing", Bitmap(4000, 4000, 1, TwoColors, "xx")},
      {"runs missing", Bitmap(4000, 4000, 8, std::string(1024, 'x'), "xx", 1)},
      {"unknown depth", Bitmap(1, 1, 7, "", "xxxx")},
      {"unknown compression", Bitmap(1, 1, 8, std::string(1024, 'x'), "xxxx", 4)},
  };
  for (const THostileRow& row : rows)
    EXPECT_THROW(DecodeBitmap(row.File), EPictureError) << row.Name;
}

TEST(Bitmaps, CornerColourBecomesTransparent) {
  TPixelImage image = DecodeBitmap(Bitmap(1, 2, 24, "", Number(0x112233) + Number(0x445566)));
  MakeCornerTransparent(image);
  EXPECT_EQ(image.At(0, 1), 0u);
  EXPECT_EQ(image.At(0, 0), 0xFF445566);
}

std::string Strip(std::uint32_t count, const std::string& bitmaps) {
  return "IL" + Number(0x101, 2) + Number(count, 2) + Number(4, 2) + Number(4, 2) + Number(1, 2) +
         Number(1, 2) + std::string(14, '\0') + bitmaps;
}

TEST(ImageLists, StripsAreCutAndMasked) {
  const std::string colors = Bitmap(2, 1, 32, "", Number(0x112233) + Number(0x445566));
  const std::string mask = Bitmap(2, 1, 1, Number(0) + Number(0xFFFFFF), Number(0x40));
  const auto pictures = DecodeImageList(Strip(2, colors + mask), 0, 0);
  ASSERT_EQ(pictures.size(), 2u);
  EXPECT_EQ(pictures[0].At(0, 0), 0xFF112233);
  EXPECT_EQ(pictures[1].At(0, 0), 0u);
}

TEST(ImageLists, AListThatLiesGivesWhatItHolds) {
  const std::string colors = Bitmap(2, 1, 24, "", Number(0x112233) + Number(0x445566));
  EXPECT_EQ(DecodeImageList(Strip(60000, colors), 0, 0).size(), 2u);
  const std::string plain = "Li" + Number(0x7FFFFFFF) + Number(1) + Number(1) + Number(0xFF112233);
  EXPECT_EQ(DecodeImageList(plain, 0, 0).size(), 1u);
}

TEST(ImageLists, PackedPixelsAreUnpackedToTheirSizeAndNoFurther) {
  const std::string pixels = Number(0xFF112233) + Number(0xFF445566) + std::string(1 << 20, '\0');
  std::string packed(pixels.size(), '\0');
  uLongf size = packed.size();
  compress(reinterpret_cast<Bytef*>(packed.data()), &size,
           reinterpret_cast<const Bytef*>(pixels.data()), pixels.size());
  packed.resize(size);
  const std::string list = "Lz" + Number(2) + Number(1) + Number(1) + std::string(8, '\0') + packed;
  const auto pictures = DecodeImageList(list, 0, 0);
  ASSERT_EQ(pictures.size(), 2u);
  EXPECT_EQ(pictures[1].At(0, 0), 0xFF445566);
}

TEST(ImageLists, HostileListsAreRefused) {
  const THostileRow rows[] = {
      {"nothing", ""},
      {"cut header", "IL\1\1"},
      {"huge pictures", "Li" + Number(1) + Number(70000) + Number(70000)},
      {"negative pictures", "Li" + Number(1) + Number(0xFFFFFFFF) + Number(1)},
      {"damaged packing", "Lz" + Number(2) + Number(1) + Number(1) + std::string(8, '\0') + "zzzz"},
  };
  for (const THostileRow& row : rows)
    EXPECT_THROW(DecodeImageList(row.File, 16, 16), EPictureError) << row.Name;
}

struct TPictureRow {
  const char* Name;
  std::string Stored;
  TPictureKind Kind;
};

TEST(StoredPictures, KindIsToldByTheFileBehindClassNameAndSize) {
  const TPictureRow rows[] = {
      {"nothing", "", TPictureKind::None},
      {"bitmap", "\7TBitmap" + Number(2) + "BM", TPictureKind::Bitmap},
      {"icon", std::string("\5TIcon\0\0\1\0", 10), TPictureKind::Icon},
      {"png without size", "\xCTPngImageXyz\x89PNG\r\n\x1A\n", TPictureKind::Png},
      {"jpeg", "\xATJPEGImage" + Number(3) + "\xFF\xD8\xFF", TPictureKind::Jpeg},
      {"other", "\7TBitmap" + Number(4) + "abcd", TPictureKind::Unknown},
      {"no class", Number(2) + "BM", TPictureKind::Bitmap},
  };
  for (const TPictureRow& row : rows)
    EXPECT_EQ(ReadStoredPicture(row.Stored).Kind, row.Kind) << row.Name;
}

TEST(StoredItems, TreesNestAndEndWhereTheirBytesEnd) {
  const auto node = [](const std::string& text, std::uint32_t children) {
    return Number(0) + Number(3) + std::string(16, '\0') + Number(children) +
           static_cast<char>(text.size()) + text;
  };
  const auto items =
      DecodeTreeItems(Number(2) + node("a", 1) + node("b", 0) + node("c", 99) + node("d", 0));
  ASSERT_EQ(items.size(), 4u);
  EXPECT_EQ(items[1].Depth, 1);
  EXPECT_EQ(items[2].Depth, 0);
  EXPECT_EQ(items[3].Texts[0], "d");
  EXPECT_EQ(items[0].Image, 3);
}

TEST(StoredItems, TreesOfTheFreeEnvironmentKeepWhatIsOpen) {
  const auto node = [](const std::string& text, int children, bool open) {
    return Number(5) + std::string(12, '\xFF') + Number(children) + Number(0) +
           static_cast<char>(open) + Number(static_cast<int>(text.size())) + text;
  };
  const std::string mark = Number(-7) + std::string("\2\0", 2);
  const auto items = DecodeTreeItems(mark + Number(2) + node("a", 1, true) + node("b", 0, false) +
                                     node("c", 0, false));
  ASSERT_EQ(items.size(), 3u);
  EXPECT_TRUE(items[0].Open);
  EXPECT_EQ(items[1].Depth, 1);
  EXPECT_EQ(items[2].Texts[0], "c");
  EXPECT_EQ(items[0].Image, 5);
  EXPECT_TRUE(DecodeTreeItems(mark).empty());
}

}  // namespace
}  // namespace wrenfold
