// Pictures drawn from strokes, in the colours of the desktop.
#pragma once

#include <QIcon>
#include <string>

namespace wrenfold {

// An icon drawn from strokes on a grid of 16 by 16, sharp at every size and drawn anew when the
// palette changes: light on dark desktops and dark on light ones.
//
// Strokes: M x y (go to), L x y (line to), Z (close), C x y r (circle), R x y w h (box). A letter
// in front of a group chooses its paint: s strokes in the text colour, a strokes in the accent
// colour, f fills in the accent colour, w strokes in the warning colour.
QIcon DrawnIcon(std::string strokes);

}  // namespace wrenfold
