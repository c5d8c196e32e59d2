// Puts class names and sizes around picture files, as each property has them.
#include "designer/model/PictureValue.h"

#include <fmt/format.h>

#include <algorithm>

#include "designer/model/StoredValue.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// What stands in front of a file in a "Picture.Data".
struct TFileKind {
  TPictureKind Kind;
  std::string_view Extension;
  std::string_view ClassName;
  std::string_view FreeClassName;
  bool Sized;  // the free environment always puts the size in front
};
constexpr TFileKind FileKinds[] = {
    {TPictureKind::Bitmap, ".bmp", "TBitmap", "TBitmap", true},
    {TPictureKind::Icon, ".ico", "TIcon", "TIcon", false},
    {TPictureKind::Png, ".png", "TPngImage", "TPortableNetworkGraphic", false},
    {TPictureKind::Jpeg, ".jpg", "TJPEGImage", "TJPEGImage", true},
};

const TFileKind* FindKind(TPictureKind kind) {
  const auto* found = std::ranges::find(FileKinds, kind, &TFileKind::Kind);
  return found != std::end(FileKinds) ? found : nullptr;
}

// The file must begin at its first byte: what a stored size would be is a part of it.
TPictureKind KindOfFile(std::string_view file) {
  const TStoredPicture picture = ReadStoredGraphic(file);
  return picture.File.size() == file.size() ? picture.Kind : TPictureKind::Unknown;
}

bool HasClassName(std::string_view path) {
  return EqualText(path.substr(0, path.find('.')), "Picture");
}

// What stands in front of a file.
struct TFront {
  std::string_view ClassName;
  bool Sized = false;
};

TFront FrontOf(const TStoredPicture& picture, std::string_view bytes) {
  const std::size_t name = picture.ClassName.empty() ? 0 : picture.ClassName.size() + 1;
  return {picture.ClassName, picture.File.size() + name < bytes.size()};
}

TFront NewFront(std::string_view path, const TFileKind& kind, TPictureNotation notation) {
  const bool free = notation == TPictureNotation::Free;
  if (!HasClassName(path)) return {{}, free || kind.Kind != TPictureKind::Icon};
  return {free ? kind.FreeClassName : kind.ClassName, free || kind.Sized};
}

}  // namespace

TPictureNotation NotationOfForm(std::string_view formFile) {
  const bool free = EqualText(ExtractFileExt(std::string(formFile)), ".lfm");
  return free ? TPictureNotation::Free : TPictureNotation::Classic;
}

TStoredPicture PictureIn(std::string_view path, std::string_view value) {
  const std::string_view bytes = StoredBinary(value);
  return HasClassName(path) ? ReadStoredPicture(bytes) : ReadStoredGraphic(bytes);
}

std::string_view PictureExtension(TPictureKind kind) {
  const TFileKind* known = FindKind(kind);
  return known != nullptr ? known->Extension : std::string_view();
}

std::string PictureValueOf(std::string_view path, std::string_view file, std::string_view old,
                           TPictureNotation notation) {
  // The pictures of an image list stand in a form of their own.
  if (!path.ends_with(".Data") || path.starts_with("Items."))
    throw EConvertError(
        fmt::format("{} is no single picture: expected a property that holds one", path));
  const TFileKind* kind = FindKind(KindOfFile(file));
  const bool named = HasClassName(path);
  const bool icon = EqualText(path, "Icon.Data");
  const TPictureKind wanted = icon ? TPictureKind::Icon : TPictureKind::Bitmap;
  if (kind == nullptr || (!named && kind->Kind != wanted))
    throw EConvertError(fmt::format("{} cannot hold this file: expected {}", path,
                                    named  ? "a BMP, ICO, PNG or JPEG file"
                                    : icon ? "an ICO file"
                                           : "a BMP file"));
  const TStoredPicture before = PictureIn(path, old);
  const TFront front = before.Kind == kind->Kind ? FrontOf(before, StoredBinary(old))
                                                 : NewFront(path, *kind, notation);
  TByteWriter bytes;
  if (!front.ClassName.empty()) bytes.WriteShortString(front.ClassName);
  if (front.Sized) bytes.WriteFixed(static_cast<std::uint32_t>(file.size()));
  bytes.WriteBytes(file);
  TByteWriter value;
  value.WriteBinaryValue(bytes.View());
  return value.ToString();
}

}  // namespace wrenfold
