// Pictures of whole forms.
#pragma once

#include <QImage>

#include "designer/paint/Painting.h"

namespace wrenfold {

// Counts the components that have a place on the form by how their painter was found.
struct TDrawnCount {
  std::size_t ByClass = 0;
  std::size_t ByLikeness = 0;
  std::size_t AsBoxes = 0;

  TDrawnCount& operator+=(const TDrawnCount& other);
};
TDrawnCount CountDrawn(const TComposedForm& form);

// Draws a form that is laid out. `scale` is 1 for its own size; the picture is at least one pixel.
// Raises EPictureError when it would not fit into memory sensibly.
QImage DrawFormPicture(TComposedForm& form, const TTheme& theme, TFontBook& fonts,
                       double scale = 1);

}  // namespace wrenfold
