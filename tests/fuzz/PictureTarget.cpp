// Pictures, glyphs, image lists and items of lists as forms store them.
#include "designer/model/ImageList.h"
#include "designer/model/StoredItems.h"
#include "designer/model/StoredPicture.h"
#include "fuzz/Targets.h"

namespace wrenfold {

namespace {

void CheckImage(const TPixelImage& image) {
  Promise(image.Width > 0 && image.Height > 0, "a picture has a size");
  Promise(std::int64_t{image.Width} * image.Height <= MaxPicturePixels, "sizes have a limit");
  Promise(image.Pixels.size() ==
              static_cast<std::size_t>(image.Width) * static_cast<std::size_t>(image.Height),
          "each pixel has its place");
}

void DecodeFile(const TStoredPicture& picture) {
  if (picture.Kind == TPictureKind::Bitmap) {
    std::size_t consumed = 0;
    TPixelImage image = DecodeBitmap(picture.File, &consumed);
    CheckImage(image);
    Promise(consumed <= picture.File.size(), "no more is read than there is");
    MakeCornerTransparent(image);
  }
  if (picture.Kind == TPictureKind::Icon)
    CheckImage(DecodeIconBitmap(ChooseIconPicture(picture.File, 16)));
}

}  // namespace

void FuzzPictures(std::string_view bytes) {
  constexpr const char* told = "cannot be drawn";
  Succeeds([&] { DecodeFile(ReadStoredPicture(bytes)); }, {told});
  Succeeds([&] { DecodeFile(ReadStoredGraphic(bytes)); }, {told});
  Succeeds(
      [&] {
        for (const TPixelImage& image : DecodeImageList(bytes, 16, 16)) CheckImage(image);
      },
      {told});
  DecodeListItems(bytes, false);
  DecodeListItems(bytes, true);
  DecodeTreeItems(bytes);
}

}  // namespace wrenfold
