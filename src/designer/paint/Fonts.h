// Finds the fonts that forms name, or the next best in the same width.
#pragma once

#include <QFont>
#include <QString>
#include <map>
#include <tuple>

#include "designer/model/DesignNode.h"

namespace wrenfold {

// A font as a form asks for it.
struct TFontSpec {
  TFontSpec(QString name, int pixelSize, bool bold = false)
      : Name(std::move(name)), PixelSize(pixelSize), Bold(bold) {}

  QString Name;
  int PixelSize;
  bool Bold;
  bool Italic = false;
  bool Underline = false;
  bool StrikeOut = false;
  friend bool operator<(const TFontSpec& left, const TFontSpec& right) {
    return left.Key() < right.Key();
  }

 private:
  std::tuple<const QString&, int, bool, bool, bool, bool> Key() const {
    return {Name, PixelSize, Bold, Italic, Underline, StrikeOut};
  }
};

// The font of a form where nothing is stored.
TFontSpec UsualFont(const TDesignNode& root);

// What the component stores of a font under `path` ("Font", "TitleFont") over the font that it
// would have.
TFontSpec WithStoredFont(TFontSpec font, const TDesignNode& node, std::string_view path = "Font");

// The fonts of one picture after another. Fonts that Debian keeps outside of the system's folders
// are loaded once for the process. For the thread of the user interface.
class TFontBook {
 public:
  TFontBook();
  const QFont& Font(const TFontSpec& spec);

 private:
  std::map<TFontSpec, QFont> FFonts;
};

}  // namespace wrenfold
