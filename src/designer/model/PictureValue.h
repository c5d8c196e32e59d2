// Stored pictures out of picture files, and the files in them.
#pragma once

#include <string>
#include <string_view>

#include "designer/model/StoredPicture.h"

namespace wrenfold {

// Which of the two environments stores the form: they put other things in front of a picture's
// file.
enum class TPictureNotation { Classic, Free };
// By the extension of the form file, ".lfm" for the free one.
TPictureNotation NotationOfForm(std::string_view formFile);

// The picture that a property's stored value holds, whose file stands as it did on disk. The path
// tells how it is stored: "Picture.Data", "Glyph.Data", "Icon.Data".
TStoredPicture PictureIn(std::string_view path, std::string_view value);
// The extension of a picture's file, ".bmp", ".ico", ".png", ".jpg"; empty for others.
std::string_view PictureExtension(TPictureKind kind);
// The value of the property that holds the file. An old value that holds a picture of the same kind
// tells what stands in front of the file, else the notation does. Raises EConvertError for what the
// property cannot hold.
std::string PictureValueOf(std::string_view path, std::string_view file, std::string_view old,
                           TPictureNotation notation);

}  // namespace wrenfold
