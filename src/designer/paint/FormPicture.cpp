#include "designer/paint/FormPicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "designer/model/BitmapFile.h"

namespace wrenfold {

namespace {

constexpr double MostPixels = 256e6;

}  // namespace

TDrawnCount& TDrawnCount::operator+=(const TDrawnCount& other) {
  ByClass += other.ByClass;
  ByLikeness += other.ByLikeness;
  AsBoxes += other.AsBoxes;
  return *this;
}

TDrawnCount CountDrawn(const TComposedForm& form) {
  TDrawnCount count;
  for (const TDesignNode* node : form.Nodes()) {
    if (node->IsRoot() || !node->Visual()) continue;
    switch (node->Class.How) {
      case TResolution::ByClass:
        ++count.ByClass;
        break;
      case TResolution::ByLikeness:
        ++count.ByLikeness;
        break;
      case TResolution::AsBox:
        ++count.AsBoxes;
        break;
    }
  }
  return count;
}

QImage DrawFormPicture(TComposedForm& form, const TTheme& theme, TFontBook& fonts, double scale) {
  const TBounds& bounds = form.Root().Bounds;
  const double width = std::ceil(bounds.Width * scale), height = std::ceil(bounds.Height * scale);
  if (width * height > MostPixels)
    throw EPictureError(fmt::format("A picture of {} x {} pixels is too large", width, height));
  QImage image(std::max(1, static_cast<int>(width)), std::max(1, static_cast<int>(height)),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter canvas(&image);
  canvas.setRenderHint(QPainter::TextAntialiasing);
  canvas.scale(scale, scale);
  TPainting(canvas, form, theme, fonts).DrawForm();
  return image;
}

}  // namespace wrenfold
