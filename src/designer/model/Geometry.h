// Points and rectangles of a form, in its pixels.
#pragma once

#include <algorithm>
#include <cstdint>

namespace wrenfold {

struct TPlace {
  int X = 0;
  int Y = 0;
  friend bool operator==(const TPlace&, const TPlace&) = default;
};

struct TExtent {
  int Width = 0;
  int Height = 0;
  friend bool operator==(const TExtent&, const TExtent&) = default;
};

// Right and bottom edge do not belong to the rectangle. Bounds are kept small enough (MaxBound)
// that sums of a few of them fit an int.
struct TBounds {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;

  int Right() const { return Left + Width; }
  int Bottom() const { return Top + Height; }
  bool Empty() const { return Width <= 0 || Height <= 0; }
  TExtent Extent() const { return {Width, Height}; }
  bool Contains(TPlace place) const {
    return place.X >= Left && place.X < Right() && place.Y >= Top && place.Y < Bottom();
  }
  bool Touches(const TBounds& other) const {
    return Left < other.Right() && other.Left < Right() && Top < other.Bottom() &&
           other.Top < Bottom();
  }
  TBounds Moved(int x, int y) const { return {Left + x, Top + y, Width, Height}; }
  TBounds Inset(int left, int top, int right, int bottom) const {
    return {Left + left, Top + top, std::max(0, Width - left - right),
            std::max(0, Height - top - bottom)};
  }
  friend bool operator==(const TBounds&, const TBounds&) = default;
};

// No form has a control further away or larger than this; what a file says beyond it is cut.
inline constexpr int MaxBound = 1'000'000;

inline int CutToBound(std::int64_t value) {
  return static_cast<int>(std::clamp<std::int64_t>(value, -MaxBound, MaxBound));
}

}  // namespace wrenfold
