#include "designer/model/ImageList.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <string>

#include "platform/core/stream/Bytes.h"

namespace wrenfold {

namespace {

constexpr int MaxPictureSide = 1024;
constexpr std::size_t MaxPictures = 4096;

[[noreturn]] void Refuse(const std::string& why) {
  throw EPictureError("The image list cannot be drawn: " + why);
}

void CheckSide(std::int64_t width, std::int64_t height) {
  if (width <= 0 || height <= 0 || width > MaxPictureSide || height > MaxPictureSide)
    Refuse(fmt::format("pictures of {} x {} pixels", width, height));
}

TPixelImage CutOut(const TPixelImage& strip, int left, int top, int width, int height) {
  TPixelImage image{width, height, {}};
  image.Pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y)
    std::copy_n(
        &strip.Pixels[static_cast<std::size_t>(top + y) * static_cast<std::size_t>(strip.Width) +
                      static_cast<std::size_t>(left)],
        width, &image.At(0, y));
  return image;
}

// A mask is white where nothing is drawn.
void ApplyMask(TPixelImage& colors, const TPixelImage& mask) {
  const int width = std::min(colors.Width, mask.Width);
  const int height = std::min(colors.Height, mask.Height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if ((mask.At(x, y) & 0xFFFFFF) != 0) colors.At(x, y) = 0;
}

bool HasOpacity(const TPixelImage& image) {
  return std::ranges::any_of(
      image.Pixels, [](std::uint32_t pixel) { return (pixel & OpaquePixel) != OpaquePixel; });
}

std::vector<TPixelImage> CutStrip(const TPixelImage& strip, int width, int height,
                                  std::size_t count) {
  std::vector<TPixelImage> pictures;
  const int perRow = strip.Width / width;
  for (int top = 0; top + height <= strip.Height; top += height)
    for (int column = 0; column < perRow && pictures.size() < count; ++column)
      pictures.push_back(CutOut(strip, column * width, top, width, height));
  return pictures;
}

// "IL": a header of 28 bytes, the colours as a bitmap of four pictures a row, and a mask. The
// count of rows follows from the bitmap; the header's room for more is often wrong.
std::vector<TPixelImage> DecodeStrips(std::string_view bytes) {
  TByteReader reader(bytes);
  reader.ReadView(4, "the version");
  const std::size_t count = reader.ReadFixed<std::uint16_t>("the count of pictures");
  reader.ReadView(4, "the room");
  const int width = reader.ReadFixed<std::uint16_t>("a width");
  const int height = reader.ReadFixed<std::uint16_t>("a height");
  reader.ReadView(14, "colours and overlays");
  CheckSide(width, height);
  std::size_t size = 0;
  TPixelImage colors = DecodeBitmap(reader.Rest(), &size);
  reader.ReadView(size, "the colours");
  if (reader.Rest().starts_with("BM") && !HasOpacity(colors))
    ApplyMask(colors, DecodeBitmap(reader.Rest()));
  return CutStrip(colors, width, height, std::min(count, MaxPictures));
}

std::vector<TPixelImage> CutPixels(std::string_view pixels, std::size_t count, int width,
                                   int height) {
  const std::size_t bytesEach = std::size_t{4} * static_cast<std::size_t>(width * height);
  std::vector<TPixelImage> pictures;
  for (std::size_t i = 0; i < count && pixels.size() >= bytesEach; ++i) {
    TPixelImage& image = pictures.emplace_back(TPixelImage{width, height, {}});
    image.Pixels.resize(bytesEach / 4);
    std::memcpy(image.Pixels.data(), pixels.data(), bytesEach);
    pixels.remove_prefix(bytesEach);
  }
  return pictures;
}

// As much as there is; bytes that are no compressed data are an error.
std::string Inflate(std::string_view packed, std::size_t size) {
  std::string plain(size, '\0');
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) Refuse("no memory");
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  stream.next_out = reinterpret_cast<Bytef*>(plain.data());
  stream.avail_out = static_cast<uInt>(plain.size());
  const int result = inflate(&stream, Z_FINISH);
  plain.resize(size - stream.avail_out);
  inflateEnd(&stream);
  if (result == Z_DATA_ERROR || result == Z_NEED_DICT) Refuse("its compressed bytes are damaged");
  return plain;
}

// "Li" and "Lz": count, width and height of 32 bits, then four bytes a pixel, packed in the second.
std::vector<TPixelImage> DecodePixelList(std::string_view bytes) {
  TByteReader reader(bytes);
  const bool packed = reader.ReadView(2, "the kind") == "Lz";
  const std::size_t count = reader.ReadFixed<std::uint32_t>("the count of pictures");
  const auto width = reader.ReadFixed<std::int32_t>("a width");
  const auto height = reader.ReadFixed<std::int32_t>("a height");
  CheckSide(width, height);
  const std::int64_t pixels = std::int64_t{width} * height;
  const std::size_t most = static_cast<std::size_t>(MaxPicturePixels / pixels);
  const std::size_t taken = std::min({count, most, MaxPictures});
  if (!packed) return CutPixels(reader.Rest(), taken, width, height);
  reader.ReadView(8, "the packed size");
  // No byte packs more than about a thousand others.
  constexpr std::size_t bestPacking = 1040;
  const std::size_t size =
      std::min(taken * static_cast<std::size_t>(pixels) * 4, reader.Left() * bestPacking);
  return CutPixels(Inflate(reader.Rest(), size), taken, width, height);
}

// Oldest releases: sizes of colours and mask in front, or one bitmap alone.
std::vector<TPixelImage> DecodePlainStrip(std::string_view bytes, int width, int height) {
  CheckSide(width, height);
  const std::size_t start = bytes.find("BM");
  if (start == std::string_view::npos || start > 32) Refuse("expected IL, Li, Lz or a bitmap");
  return CutStrip(DecodeBitmap(bytes.substr(start)), width, height, MaxPictures);
}

}  // namespace

std::vector<TPixelImage> DecodeImageList(std::string_view bytes, int width, int height) {
  try {
    if (bytes.starts_with("IL")) return DecodeStrips(bytes);
    if (bytes.starts_with("Li") || bytes.starts_with("Lz")) return DecodePixelList(bytes);
    return DecodePlainStrip(bytes, width, height);
  } catch (const EReadError& error) {
    Refuse(error.Message());
  }
}

}  // namespace wrenfold
