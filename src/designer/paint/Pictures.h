// Turns stored pictures into images that a painter draws.
#pragma once

#include <QImage>
#include <string>
#include <string_view>
#include <vector>

#include "designer/model/PixelImage.h"
#include "designer/model/StoredPicture.h"

namespace wrenfold {

QImage ImageOf(const TPixelImage& pixels);

// An image, or why there is none; both empty when nothing is stored.
struct TDecodedPicture {
  QImage Image;
  std::string Trouble;
};

// Decodes a picture of any kind that is drawn. Of an icon the picture of about `iconSide` pixels is
// taken.
TDecodedPicture DecodePicture(const TStoredPicture& picture, int iconSide = 32);

// A glyph of some states side by side, the first of which is returned; the colour at the bottom
// left is transparent.
TDecodedPicture DecodeGlyph(std::string_view stored, int states);

// The pictures of a stored image list; none with a trouble when the bytes are no list.
std::vector<QImage> DecodeImages(std::string_view stored, int width, int height,
                                 std::string& trouble);

}  // namespace wrenfold
