// Decodes the pictures of a stored image list.
#pragma once

#include <string_view>
#include <vector>

#include "designer/model/BitmapFile.h"

namespace wrenfold {

// Pictures of one size. Raises EPictureError when the bytes are no image list; a list that tells
// more pictures than it holds gives those that it holds. Bytes that were stored as a plain bitmap
// strip of square pictures are taken as well. `width` and `height` are what the list's own
// properties say, for forms of it that do not tell.
std::vector<TPixelImage> DecodeImageList(std::string_view bytes, int width, int height);

}  // namespace wrenfold
