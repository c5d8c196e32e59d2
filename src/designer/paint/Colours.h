// Turns stored colours into the desktop's.
#pragma once

#include <QColor>
#include <QPalette>
#include <string_view>

namespace wrenfold {

// The palettes of the two themes that pictures are drawn in.
QPalette LightPalette();
QPalette DarkPalette();

// The colour of a stored value: a number, or a name. Colours of the system follow the palette.
// Invalid for clNone, clDefault, unknown names and when nothing is stored.
QColor ColourOf(std::string_view storedValue, const QPalette& palette);

// Black or white, whichever is read better on the ground.
QColor ReadableOn(const QColor& ground);

}  // namespace wrenfold
