#include "designer/model/BitmapFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>

#include "platform/core/stream/Bytes.h"

namespace wrenfold {

namespace {

enum TCompression : std::uint32_t {
  Plain = 0,
  Runs8 = 1,
  Runs4 = 2,
  BitFields = 3,
  AlphaFields = 6
};

constexpr std::size_t CoreHeaderSize = 12, InfoHeaderSize = 40;

// Picks one colour out of a pixel and widens it to eight bits.
struct TChannel {
  std::uint32_t Mask = 0;

  std::uint32_t Of(std::uint32_t pixel) const {
    if (Mask == 0) return 0;
    const int shift = std::countr_zero(Mask);
    const std::uint64_t most = Mask >> shift;
    return static_cast<std::uint32_t>(std::uint64_t{(pixel & Mask) >> shift} * 255 / most);
  }
};

struct TBitmapHeader {
  int Width = 0;
  int Height = 0;
  bool TopDown = false;
  unsigned Bits = 0;
  std::uint32_t Compression = Plain;
  std::array<TChannel, 3> Channels;  // red, green, blue
  std::array<std::uint32_t, 256> Colors{};
  std::size_t HeaderEnd = 0;  // behind the colours
};

[[noreturn]] void Refuse(const std::string& why) {
  throw EPictureError("The bitmap cannot be drawn: " + why);
}

// Reads the header that begins at the reader's position.
class THeaderReader {
 public:
  THeaderReader(TByteReader& reader, bool isIcon) : FReader(reader), FIsIcon(isIcon) {}

  TBitmapHeader Read() {
    const std::size_t start = FReader.Position();
    const auto size = FReader.ReadFixed<std::uint32_t>("the size of the header");
    if (size == CoreHeaderSize) {
      ReadCore();
    } else if (size >= InfoHeaderSize && size <= 1024) {
      ReadInfo();
      ReadMasks(size, start);
    } else {
      Refuse(fmt::format("a header of {} bytes", size));
    }
    Check();
    ReadColors(size == CoreHeaderSize ? 3 : 4);
    FHeader.HeaderEnd = FReader.Position();
    return FHeader;
  }

 private:
  void ReadCore() {
    FWidth = FReader.ReadFixed<std::uint16_t>("a width");
    FHeight = FReader.ReadFixed<std::uint16_t>("a height");
    FReader.ReadFixed<std::uint16_t>("planes");
    FHeader.Bits = FReader.ReadFixed<std::uint16_t>("bits a pixel");
  }

  void ReadInfo() {
    FWidth = FReader.ReadFixed<std::int32_t>("a width");
    FHeight = FReader.ReadFixed<std::int32_t>("a height");
    FReader.ReadFixed<std::uint16_t>("planes");
    FHeader.Bits = FReader.ReadFixed<std::uint16_t>("bits a pixel");
    FHeader.Compression = FReader.ReadFixed<std::uint32_t>("a compression");
    FReader.ReadView(12, "sizes");
    FUsedColors = FReader.ReadFixed<std::uint32_t>("a count of colours");
    FReader.ReadFixed<std::uint32_t>("a count of colours");
  }

  // The masks stand in the longer headers, or behind the short one.
  void ReadMasks(std::uint32_t size, std::size_t start) {
    const std::size_t end = start + size;
    if (FHeader.Compression == BitFields || FHeader.Compression == AlphaFields) {
      for (TChannel& channel : FHeader.Channels)
        channel.Mask = FReader.ReadFixed<std::uint32_t>("a mask");
    } else if (FHeader.Bits == 16) {
      FHeader.Channels = {TChannel{0x7C00}, TChannel{0x03E0}, TChannel{0x001F}};
    } else {
      FHeader.Channels = {TChannel{0xFF0000}, TChannel{0x00FF00}, TChannel{0x0000FF}};
    }
    if (end > FReader.Position()) FReader.ReadView(end - FReader.Position(), "the header");
  }

  void Check() {
    FHeader.TopDown = FHeight < 0;
    const std::int64_t height = std::abs(FHeight) / (FIsIcon ? 2 : 1);
    if (FWidth <= 0 || height <= 0 || FWidth > MaxPicturePixels || height > MaxPicturePixels ||
        FWidth * height > MaxPicturePixels)
      Refuse(fmt::format("{} x {} pixels", FWidth, height));
    FHeader.Width = static_cast<int>(FWidth);
    FHeader.Height = static_cast<int>(height);
    const unsigned bits = FHeader.Bits;
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
      Refuse(fmt::format("{} bits a pixel", bits));
    const std::uint32_t kind = FHeader.Compression;
    const bool known = kind == Plain ||
                       ((kind == BitFields || kind == AlphaFields) && bits >= 16) ||
                       (kind == Runs8 && bits == 8) || (kind == Runs4 && bits == 4);
    if (!known) Refuse(fmt::format("compression {} of {} bits a pixel", kind, bits));
  }

  void ReadColors(std::size_t bytesEach) {
    if (FHeader.Bits > 8) {
      if (FUsedColors > 0 && FUsedColors <= FReader.Left() / bytesEach && FUsedColors <= 256)
        FReader.ReadView(FUsedColors * bytesEach, "colours");
      return;
    }
    std::size_t count = std::size_t{1} << FHeader.Bits;
    if (FUsedColors > 0 && FUsedColors < count) count = FUsedColors;
    for (std::size_t i = 0; i < count; ++i) {
      const std::string_view color = FReader.ReadView(bytesEach, "a colour");
      const auto byte = [&](std::size_t at) {
        return std::uint32_t{static_cast<unsigned char>(color[at])};
      };
      FHeader.Colors[i] = OpaquePixel | byte(2) << 16 | byte(1) << 8 | byte(0);
    }
  }

  TByteReader& FReader;
  const bool FIsIcon;
  TBitmapHeader FHeader;
  std::int64_t FWidth = 0;
  std::int64_t FHeight = 0;
  std::uint32_t FUsedColors = 0;
};

std::size_t RowBytes(int width, unsigned bits) {
  return (static_cast<std::size_t>(width) * bits + 31) / 32 * 4;
}

std::uint32_t ByteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

// A pixel of a row as it stands, of up to 32 bits.
std::uint32_t RawPixel(std::string_view row, std::size_t x, unsigned bits) {
  std::uint32_t pixel = 0;
  if (bits >= 8) {
    const std::size_t bytes = bits / 8;
    for (std::size_t i = 0; i < bytes; ++i) pixel |= ByteAt(row, x * bytes + i) << (8 * i);
    return pixel;
  }
  const std::size_t perByte = 8 / bits;
  const std::size_t shift = 8 - bits * (x % perByte + 1);
  return ByteAt(row, x / perByte) >> shift & ((1u << bits) - 1);
}

std::uint32_t ColorOf(const TBitmapHeader& header, std::uint32_t raw) {
  if (header.Bits <= 8) return header.Colors[raw];
  const auto& [red, green, blue] = header.Channels;
  const std::uint32_t color = red.Of(raw) << 16 | green.Of(raw) << 8 | blue.Of(raw);
  return header.Bits == 32 ? (raw & 0xFF000000) | color : OpaquePixel | color;
}

// Pixels of 24 and 32 bits in the usual order need no masks.
bool UsualOrder(const TBitmapHeader& header) {
  return header.Bits >= 24 && header.Channels[0].Mask == 0xFF0000 &&
         header.Channels[1].Mask == 0x00FF00 && header.Channels[2].Mask == 0x0000FF;
}

void DecodeRow(const TBitmapHeader& header, std::string_view row, std::uint32_t* pixels) {
  const auto width = static_cast<std::size_t>(header.Width);
  if (UsualOrder(header)) {
    const std::uint32_t opaque = header.Bits == 32 ? 0 : OpaquePixel;
    for (std::size_t x = 0; x < width; ++x) pixels[x] = opaque | RawPixel(row, x, header.Bits);
    return;
  }
  for (std::size_t x = 0; x < width; ++x)
    pixels[x] = ColorOf(header, RawPixel(row, x, header.Bits));
}

TPixelImage NewImage(const TBitmapHeader& header) {
  TPixelImage image{header.Width, header.Height, {}};
  image.Pixels.resize(static_cast<std::size_t>(header.Width) *
                      static_cast<std::size_t>(header.Height));
  return image;
}

// Rows that the bytes do not hold stay transparent.
TPixelImage DecodeRows(const TBitmapHeader& header, TByteReader& reader) {
  const std::size_t rowBytes = RowBytes(header.Width, header.Bits);
  // A picture that is mostly missing would take memory for nothing.
  if (reader.Left() / rowBytes < static_cast<std::size_t>(header.Height + 3) / 4)
    Refuse("its pixels are missing");
  TPixelImage image = NewImage(header);
  for (int y = 0; y < header.Height && reader.Left() >= rowBytes; ++y) {
    const int row = header.TopDown ? y : header.Height - 1 - y;
    DecodeRow(header, reader.ReadView(rowBytes, "a row"), &image.At(0, row));
  }
  return image;
}

// Runs of equal pixels and pieces of plain ones, from the bottom up; places left out keep the first
// colour.
class TRunDecoder {
 public:
  TRunDecoder(const TBitmapHeader& header, TByteReader& reader)
      : FHeader(header), FReader(reader), FImage(NewImage(header)) {}

  TPixelImage Decode() {
    constexpr std::size_t longestRun = 255;
    if (FReader.Left() / 2 * longestRun < FImage.Pixels.size()) Refuse("its pixels are missing");
    std::ranges::fill(FImage.Pixels, FHeader.Colors[0]);
    while (FReader.Left() >= 2 && FRow < FHeader.Height) {
      const unsigned count = FReader.ReadByte("a run");
      const unsigned value = FReader.ReadByte("a run");
      if (count > 0) PutRun(count, value);
      else if (!TakeEscape(value)) break;
    }
    return std::move(FImage);
  }

 private:
  void Put(std::uint32_t index) {
    if (FColumn < FHeader.Width)
      FImage.At(FColumn, FHeader.Height - 1 - FRow) = FHeader.Colors[index];
    FColumn = std::min(FColumn + 1, FHeader.Width);
  }

  unsigned Half(unsigned value, unsigned at) const {
    if (FHeader.Bits == 8) return value;
    return at % 2 == 0 ? value >> 4 : value & 15;
  }

  void PutRun(unsigned count, unsigned value) {
    for (unsigned i = 0; i < count; ++i) Put(Half(value, i));
  }

  bool TakeEscape(unsigned code) {
    switch (code) {
      case 0:
        FColumn = 0;
        ++FRow;
        return true;
      case 1:
        return false;
      case 2:
        if (FReader.Left() < 2) return false;
        FColumn = std::min(FColumn + FReader.ReadByte("a distance"), FHeader.Width);
        FRow += FReader.ReadByte("a distance");
        return true;
      default:
        return PutPlain(code);
    }
  }

  bool PutPlain(unsigned count) {
    const std::size_t bytes = FHeader.Bits == 8 ? count : (count + 1) / 2;
    if (FReader.Left() < bytes) return false;
    const std::string_view values = FReader.ReadView(bytes, "pixels");
    for (unsigned i = 0; i < count; ++i)
      Put(Half(ByteAt(values, FHeader.Bits == 8 ? i : i / 2), i));
    if (bytes % 2 != 0 && FReader.Left() > 0) FReader.ReadByte("filling");
    return true;
  }

  const TBitmapHeader& FHeader;
  TByteReader& FReader;
  TPixelImage FImage;
  int FColumn = 0;
  int FRow = 0;
};

// Bitmaps of 32 bits without any opacity are opaque.
void SettleOpacity(const TBitmapHeader& header, TPixelImage& image) {
  if (header.Bits != 32) return;
  const bool used = std::ranges::any_of(
      image.Pixels, [](std::uint32_t pixel) { return (pixel & OpaquePixel) != 0; });
  if (used) return;
  for (std::uint32_t& pixel : image.Pixels) pixel |= OpaquePixel;
}

TPixelImage DecodePixels(const TBitmapHeader& header, TByteReader& reader) {
  const bool runs = header.Compression == Runs8 || header.Compression == Runs4;
  TPixelImage image = runs ? TRunDecoder(header, reader).Decode() : DecodeRows(header, reader);
  SettleOpacity(header, image);
  return image;
}

TPixelImage DecodeFile(TByteReader& reader) {
  if (reader.ReadView(2, "BM") != "BM") Refuse("it does not begin with BM");
  reader.ReadView(8, "the file's header");
  const std::size_t pixels = reader.ReadFixed<std::uint32_t>("where the pixels begin");
  const TBitmapHeader header = THeaderReader(reader, false).Read();
  if (pixels > header.HeaderEnd && pixels <= reader.Size()) reader.Seek(pixels);
  return DecodePixels(header, reader);
}

// Below the colours of an icon stands a mask of one bit a pixel, set where nothing is drawn.
void ApplyIconMask(const TBitmapHeader& header, TByteReader& reader, TPixelImage& image) {
  const std::size_t rowBytes = RowBytes(header.Width, 1);
  for (int y = header.Height - 1; y >= 0 && reader.Left() >= rowBytes; --y) {
    const std::string_view row = reader.ReadView(rowBytes, "a row of the mask");
    for (int x = 0; x < header.Width; ++x)
      if (RawPixel(row, static_cast<std::size_t>(x), 1) != 0) image.At(x, y) = 0;
  }
}

// One picture of an icon file.
struct TIconEntry {
  int Side = 0;  // 0 stands for 256
  int Bits = 0;
  std::uint32_t Size = 0;
  std::uint32_t Offset = 0;
};

TIconEntry ReadIconEntry(TByteReader& reader) {
  TIconEntry entry;
  entry.Side = reader.ReadByte("a width");
  if (entry.Side == 0) entry.Side = 256;
  reader.ReadView(5, "height, colours and planes");
  entry.Bits = reader.ReadFixed<std::uint16_t>("bits a pixel");
  entry.Size = reader.ReadFixed<std::uint32_t>("a size");
  entry.Offset = reader.ReadFixed<std::uint32_t>("a place");
  return entry;
}

// The one nearest to the wanted side from above, with the most colours.
bool IsBetter(const TIconEntry& left, const TIconEntry& right, int side) {
  const bool leftFits = left.Side >= side, rightFits = right.Side >= side;
  if (leftFits != rightFits) return leftFits;
  if (left.Side != right.Side) return leftFits ? left.Side < right.Side : left.Side > right.Side;
  return left.Bits > right.Bits;
}

}  // namespace

TPixelImage DecodeBitmap(std::string_view bytes, std::size_t* consumed) {
  try {
    TByteReader reader(bytes);
    TPixelImage image = DecodeFile(reader);
    if (consumed != nullptr) *consumed = reader.Position();
    return image;
  } catch (const EReadError& error) {
    Refuse(error.Message());
  }
}

std::string_view ChooseIconPicture(std::string_view icon, int side) {
  try {
    TByteReader reader(icon);
    reader.ReadView(4, "an icon");
    const int count = reader.ReadFixed<std::uint16_t>("the count of pictures");
    TIconEntry best;
    for (int i = 0; i < count; ++i) {
      const TIconEntry entry = ReadIconEntry(reader);
      if (best.Size == 0 || IsBetter(entry, best, side)) best = entry;
    }
    if (best.Size == 0 || best.Offset >= icon.size()) Refuse("an icon without a picture");
    return icon.substr(best.Offset, best.Size);
  } catch (const EReadError& error) {
    Refuse(error.Message());
  }
}

TPixelImage DecodeIconBitmap(std::string_view bytes) {
  try {
    TByteReader reader(bytes);
    const TBitmapHeader header = THeaderReader(reader, true).Read();
    TPixelImage image = DecodePixels(header, reader);
    if (header.Bits != 32) ApplyIconMask(header, reader, image);
    return image;
  } catch (const EReadError& error) {
    Refuse(error.Message());
  }
}

void MakeCornerTransparent(TPixelImage& image) {
  if (image.Empty()) return;
  const std::uint32_t corner = image.At(0, image.Height - 1);
  if ((corner & OpaquePixel) != OpaquePixel) return;  // has an opacity of its own
  for (std::uint32_t& pixel : image.Pixels)
    if (pixel == corner) pixel = 0;
}

}  // namespace wrenfold
