// Tells what kind of picture a stored value holds and where its file begins.
#pragma once

#include <string_view>

namespace wrenfold {

enum class TPictureKind {
  None,     // no picture is stored
  Unknown,  // bytes of a kind that is not drawn
  Bitmap,
  Icon,
  Png,
  Jpeg,
  Gif,
  Pixmap,    // a text of colours and rows
  Metafile,  // drawing commands of another system
};

struct TStoredPicture {
  TPictureKind Kind = TPictureKind::None;
  std::string_view ClassName;  // of the graphic; empty where the property says what it is
  std::string_view File;       // what a file of that kind would hold
};

// "Picture.Data": the class name of the graphic as a short string, then the file, most kinds with
// their size in front.
TStoredPicture ReadStoredPicture(std::string_view bytes);
// "Glyph.Data", "Icon.Data": a file with or without its size in front, no class name.
TStoredPicture ReadStoredGraphic(std::string_view bytes);

}  // namespace wrenfold
