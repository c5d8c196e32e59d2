// A decoded picture: pixels in memory.
#pragma once

#include <cstdint>
#include <vector>

namespace wrenfold {

// Pictures of more pixels are refused: no form needs them, and a few bytes can claim them.
inline constexpr std::int64_t MaxPicturePixels = std::int64_t{16} << 20;

// Rows from the top down, $AARRGGBB each pixel.
struct TPixelImage {
  int Width = 0;
  int Height = 0;
  std::vector<std::uint32_t> Pixels;

  bool Empty() const { return Pixels.empty(); }
  std::uint32_t At(int x, int y) const {
    return Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                  static_cast<std::size_t>(x)];
  }
  std::uint32_t& At(int x, int y) {
    return Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                  static_cast<std::size_t>(x)];
  }
};

inline constexpr std::uint32_t OpaquePixel = 0xFF000000;

}  // namespace wrenfold
