#include "designer/model/StoredPicture.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace wrenfold {

namespace {

struct TSignature {
  std::string_view Bytes;
  TPictureKind Kind;
};

using namespace std::string_view_literals;

constexpr TSignature Signatures[] = {
    {"BM"sv, TPictureKind::Bitmap},
    {"\x89PNG\r\n\x1A\n"sv, TPictureKind::Png},
    {"\xFF\xD8\xFF"sv, TPictureKind::Jpeg},
    {"GIF8"sv, TPictureKind::Gif},
    {"\0\0\1\0"sv, TPictureKind::Icon},
    {"\0\0\2\0"sv, TPictureKind::Icon},
    {"/* XPM"sv, TPictureKind::Pixmap},
    {"! XPM"sv, TPictureKind::Pixmap},
    {"\xD7\xCD\xC6\x9A"sv, TPictureKind::Metafile},
    {"\1\0\0\0\x6C\0\0\0"sv, TPictureKind::Metafile},
};

TPictureKind KindAt(std::string_view bytes) {
  for (const TSignature& signature : Signatures)
    if (bytes.starts_with(signature.Bytes)) return signature.Kind;
  return TPictureKind::Unknown;
}

// Sizes in front of files take four bytes, two of them in some classes.
constexpr std::size_t SizeLengths[] = {4, 0, 8};

bool IsClassName(std::string_view name) {
  return name.size() >= 2 && name[0] == 'T' && std::ranges::all_of(name, [](char c) {
           return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
         });
}

}  // namespace

TStoredPicture ReadStoredGraphic(std::string_view bytes) {
  TStoredPicture picture;
  if (bytes.empty()) return picture;
  picture.Kind = TPictureKind::Unknown;
  for (const std::size_t length : SizeLengths) {
    if (bytes.size() <= length) continue;
    const std::string_view file = bytes.substr(length);
    const TPictureKind kind = KindAt(file);
    if (kind == TPictureKind::Unknown) continue;
    return {kind, {}, file};
  }
  // A size of zero stands for an empty bitmap.
  if (bytes.size() <= 4) picture.Kind = TPictureKind::None;
  return picture;
}

TStoredPicture ReadStoredPicture(std::string_view bytes) {
  if (bytes.empty()) return {};
  const std::size_t length = static_cast<unsigned char>(bytes[0]);
  if (length + 1 > bytes.size() || !IsClassName(bytes.substr(1, length)))
    return ReadStoredGraphic(bytes);
  TStoredPicture picture = ReadStoredGraphic(bytes.substr(length + 1));
  picture.ClassName = bytes.substr(1, length);
  return picture;
}

}  // namespace wrenfold
