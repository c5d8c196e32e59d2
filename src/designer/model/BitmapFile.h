// Decodes bitmap files (BMP) as forms hold them.
#pragma once

#include <cstddef>
#include <string_view>

#include "designer/model/PixelImage.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// Bytes that are no picture. The message tells what was expected.
class EPictureError : public Exception {
 public:
  using Exception::Exception;
};

// Decodes a bitmap of 1 to 32 bits a pixel, plain, with bit masks or run-length coded; `bytes`
// begins with "BM" and may be longer than the file. Rows that are cut off stay transparent, unless
// most are. The fourth byte of 32-bit pixels is taken for opacity when any is set. With `consumed`,
// tells how many bytes the file takes. Raises EPictureError, also for sizes beyond
// MaxPicturePixels.
TPixelImage DecodeBitmap(std::string_view bytes, std::size_t* consumed = nullptr);

// The bytes of the picture in an icon file (ICO, CUR) that suits best where `side` pixels are
// wanted: a PNG file, or what DecodeIconBitmap takes. Raises EPictureError.
std::string_view ChooseIconPicture(std::string_view icon, int side);

// The same as DecodeBitmap for the header and pixels of an icon, which hold a mask below the
// colours.
TPixelImage DecodeIconBitmap(std::string_view bytes);

// Makes the pixels transparent that have the colour of the one at the bottom left.
void MakeCornerTransparent(TPixelImage& image);

}  // namespace wrenfold
