#include "designer/paint/Pictures.h"

#include <fmt/format.h>

#include <QBuffer>
#include <QImageReader>
#include <algorithm>

#include "designer/model/ImageList.h"

namespace wrenfold {

namespace {

const char* FormatOf(TPictureKind kind) {
  switch (kind) {
    case TPictureKind::Png:
      return "png";
    case TPictureKind::Jpeg:
      return "jpeg";
    case TPictureKind::Gif:
      return "gif";
    case TPictureKind::Pixmap:
      return "xpm";
    default:
      return nullptr;
  }
}

// Sizes are asked for before any pixel is decoded.
TDecodedPicture ReadByToolkit(std::string_view file, const char* format) {
  QByteArray bytes = QByteArray::fromRawData(file.data(), static_cast<qsizetype>(file.size()));
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, format);
  const QSize size = reader.size();
  if (!size.isValid()) return {{}, fmt::format("The {} picture is damaged", format)};
  if (std::int64_t{size.width()} * size.height() > MaxPicturePixels)
    return {
        {},
        fmt::format("The {} picture claims {} x {} pixels", format, size.width(), size.height())};
  TDecodedPicture decoded;
  if (!reader.read(&decoded.Image))
    decoded.Trouble = fmt::format("The {} picture is damaged", format);
  return decoded;
}

TDecodedPicture DecodeIcon(std::string_view file, int side) {
  const std::string_view picture = ChooseIconPicture(file, side);
  if (picture.starts_with("\x89PNG")) return ReadByToolkit(picture, "png");
  return {ImageOf(DecodeIconBitmap(picture)), {}};
}

TDecodedPicture DecodeKnown(const TStoredPicture& picture, int iconSide) {
  switch (picture.Kind) {
    case TPictureKind::None:
      return {};
    case TPictureKind::Bitmap:
      return {ImageOf(DecodeBitmap(picture.File)), {}};
    case TPictureKind::Icon:
      return DecodeIcon(picture.File, iconSide);
    case TPictureKind::Unknown:
    case TPictureKind::Metafile:
      return {{},
              fmt::format("A picture of the kind {} is not drawn",
                          picture.ClassName.empty() ? "found" : picture.ClassName)};
    default:
      return ReadByToolkit(picture.File, FormatOf(picture.Kind));
  }
}

}  // namespace

QImage ImageOf(const TPixelImage& pixels) {
  QImage image(pixels.Width, pixels.Height, QImage::Format_ARGB32);
  for (int y = 0; y < pixels.Height; ++y)
    std::copy_n(
        &pixels.Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(pixels.Width)],
        pixels.Width, reinterpret_cast<std::uint32_t*>(image.scanLine(y)));
  return image;
}

TDecodedPicture DecodePicture(const TStoredPicture& picture, int iconSide) {
  try {
    return DecodeKnown(picture, iconSide);
  } catch (const EPictureError& error) {
    return {{}, error.Message()};
  }
}

TDecodedPicture DecodeGlyph(std::string_view stored, int states) {
  const TStoredPicture picture = ReadStoredGraphic(stored);
  TDecodedPicture glyph;
  if (picture.Kind == TPictureKind::Bitmap) {
    try {
      TPixelImage pixels = DecodeBitmap(picture.File);
      MakeCornerTransparent(pixels);
      glyph.Image = ImageOf(pixels);
    } catch (const EPictureError& error) {
      glyph.Trouble = error.Message();
    }
  } else {
    glyph = DecodePicture(ReadStoredPicture(stored), 16);
  }
  const int width = glyph.Image.width();
  if (states > 1 && width >= states)
    glyph.Image = glyph.Image.copy(0, 0, width / states, glyph.Image.height());
  return glyph;
}

std::vector<QImage> DecodeImages(std::string_view stored, int width, int height,
                                 std::string& trouble) {
  std::vector<QImage> images;
  try {
    for (const TPixelImage& image : DecodeImageList(stored, width, height))
      images.push_back(ImageOf(image));
  } catch (const EPictureError& error) {
    trouble = error.Message();
  }
  return images;
}

}  // namespace wrenfold
