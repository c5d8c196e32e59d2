// Pictures of settings as the toolkit's: decoded within limits, loaded, saved, copied and pasted.
#pragma once

#include <QImage>
#include <QSize>
#include <memory>
#include <string>
#include <string_view>

#include "platform/core/model/Graphics.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// A picture that is none, or larger than is good for anybody.
class EInvalidPicture : public Exception {
 public:
  using Exception::Exception;
};

inline constexpr int MaxPictureMegabytes = 64;  // of a file
inline constexpr int MaxPictureMegapixels = 40;

// What is known of a picture from its beginning. Size is not valid for a picture that is none.
struct TPictureInfo {
  QSize Size;
  std::string Format;  // "PNG"; empty for none
};
TPictureInfo ReadPictureInfo(std::string_view bytes);

// Decodes, shrunk to fit the size when one is given (never enlarged, never out of shape). Raises
// EInvalidPicture, naming what was read; nothing large is allocated for a picture that is too
// large.
QImage DecodePicture(std::string_view bytes, const std::string& what, QSize fitting = {});

// The bytes of a graphic or picture object; empty for none.
std::string PictureBytes(const TPersistent& picture);
// A graphic of the class that the bytes are of, or null for none.
std::unique_ptr<TGraphic> GraphicOf(const std::string& bytes);
// The bytes in another format ("BMP"), as they are where they have it or are empty.
std::string ConvertPicture(std::string_view bytes, const std::string& format,
                           const std::string& what);

// Both check the picture and raise EInvalidPicture or EFOpenError / EFCreateError, naming the file.
// Saving keeps the bytes where the extension names their format, else the picture is converted.
std::string LoadPictureFile(const std::string& fileName);
void SavePictureFile(const std::string& fileName, std::string_view bytes);

bool ClipboardHasPicture();
// Raises EInvalidPicture when there is none. The format of the bytes is that of the clipboard where
// it is a file's, else PNG.
std::string PictureFromClipboard();
void PictureToClipboard(std::string_view bytes);

}  // namespace wrenfold
