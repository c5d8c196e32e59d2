#include "platform/core/model/Graphics.h"

#include <algorithm>
#include <cmath>

#include "platform/core/model/ClassRegistry.h"
#include "platform/core/model/Filer.h"
#include "platform/core/system/ByteCursor.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"

namespace wrenfold {

namespace {

constexpr int PointsPerInch = 72;

// The graphic class for a file by its first bytes.
const TTypeInfo& GraphicClassOf(std::string_view bytes) {
  if (bytes.starts_with("BM")) return TBitmap::ClassInfo();
  if (bytes.starts_with(std::string_view("\0\0\1\0", 4))) return TIcon::ClassInfo();
  return TImageFile::ClassInfo();
}

std::unique_ptr<TGraphic> MakeGraphic(const TTypeInfo& info) {
  std::unique_ptr<TPersistent> made = info.Make();
  auto* graphic = dynamic_cast<TGraphic*>(made.get());
  if (graphic == nullptr) throw EReadError("Class " + info.Name() + " is no class of graphics");
  static_cast<void>(made.release());
  return std::unique_ptr<TGraphic>(graphic);
}

// Graphic classes can be made by the name that a picture stores.
const TTypeInfo& FindGraphicClass(std::string_view name) {
  static const bool registered = [] {
    for (const TTypeInfo* info :
         {&TBitmap::ClassInfo(), &TIcon::ClassInfo(), &TImageFile::ClassInfo()})
      RegisterClass(*info);
    return true;
  }();
  static_cast<void>(registered);
  return FindClass(name);
}

}  // namespace

const TTypeInfo& TFont::ClassInfo() {
  static const TTypeInfo info = Publish<TFont>("TFont", TPersistent::ClassInfo())
                                    .Prop("Charset", &TFont::Charset, &TFont::SetCharset)
                                    .Prop("Color", &TFont::Color, &TFont::SetColor)
                                    .Prop("Height", &TFont::Height, &TFont::SetHeight)
                                    .Prop("Name", &TFont::Name, &TFont::SetName)
                                    .Prop("Pitch", &TFont::Pitch, &TFont::SetPitch)
                                    .Default(fpDefault)
                                    .Prop("Size", &TFont::Size, &TFont::SetSize)
                                    .NotStored()
                                    .Prop("Style", &TFont::Style, &TFont::SetStyle);
  return info;
}

template <class Value>
void TFont::Change(Value& member, const Value& value) {
  if (member == value) return;
  member = value;
  Changed();
}

void TFont::SetCharset(TFontCharset charset) {
  Change(FCharset, charset);
}
void TFont::SetColor(TColor color) {
  Change(FColor, color);
}
void TFont::SetHeight(std::int32_t height) {
  Change(FHeight, height);
}
void TFont::SetName(const std::string& name) {
  if (!name.empty()) Change(FName, name);
}
void TFont::SetPitch(TFontPitch pitch) {
  Change(FPitch, pitch);
}
void TFont::SetStyle(TFontStyles style) {
  Change(FStyle, style);
}

std::int32_t TFont::Size() const {
  return static_cast<std::int32_t>(
      std::lround(-static_cast<double>(FHeight) * PointsPerInch / FontPixelsPerInch));
}

void TFont::SetSize(std::int32_t size) {
  SetHeight(static_cast<std::int32_t>(
      std::lround(-static_cast<double>(size) * FontPixelsPerInch / PointsPerInch)));
}

void TFont::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TFont*>(source);
  if (other == nullptr) return TPersistent::Assign(source);
  FCharset = other->FCharset;
  FColor = other->FColor;
  FHeight = other->FHeight;
  FName = other->FName;
  FPitch = other->FPitch;
  FStyle = other->FStyle;
  Changed();
}

const TTypeInfo& TGraphic::ClassInfo() {
  static const TTypeInfo info = Publish<TGraphic>("TGraphic", TPersistent::ClassInfo());
  return info;
}

void TGraphic::SetData(std::string data) {
  FData = std::move(data);
  OnChange(this);
}

void TGraphic::Assign(const TPersistent* source) {
  if (source == nullptr) return SetData({});
  const auto* other = dynamic_cast<const TGraphic*>(source);
  if (other == nullptr) return TPersistent::Assign(source);
  SetData(other->FData);
}

void TGraphic::DefineProperties(TFiler& filer) {
  filer.DefineBinaryProperty(
      "Data", [this](TStream& stream) { TakeStoredData(stream.ReadRest()); },
      [this](TStream& stream) { stream.WriteText(StoredData()); },
      !Empty() || filer.WritesDefaults());
}

const TTypeInfo& TBitmap::ClassInfo() {
  static const TTypeInfo info = Publish<TBitmap>("TBitmap", TGraphic::ClassInfo());
  return info;
}

std::string TBitmap::StoredData() const {
  TByteBuffer bytes;
  bytes.WriteFixed(static_cast<std::uint32_t>(Data().size()));
  bytes.WriteBytes(Data());
  return bytes.ToString();
}

void TBitmap::TakeStoredData(std::string data) {
  SetData(std::string(TByteCursor(data).ReadLongString("a bitmap")));
}

const TTypeInfo& TIcon::ClassInfo() {
  static const TTypeInfo info = Publish<TIcon>("TIcon", TGraphic::ClassInfo());
  return info;
}

const TTypeInfo& TImageFile::ClassInfo() {
  static const TTypeInfo info = Publish<TImageFile>("TImageFile", TGraphic::ClassInfo());
  return info;
}

const TTypeInfo& TPicture::ClassInfo() {
  static const TTypeInfo info = Publish<TPicture>("TPicture", TPersistent::ClassInfo());
  return info;
}

void TPicture::SetGraphic(const TGraphic* graphic) {
  if (graphic == FGraphic.get() && graphic != nullptr) return;
  std::unique_ptr<TGraphic> copy;
  if (graphic != nullptr) {
    copy = MakeGraphic(graphic->GetClassInfo());
    copy->Assign(graphic);
  }
  FGraphic = std::move(copy);
  OnChange(this);
}

void TPicture::Assign(const TPersistent* source) {
  if (source == nullptr) return SetGraphic(nullptr);
  if (const auto* graphic = dynamic_cast<const TGraphic*>(source)) return SetGraphic(graphic);
  const auto* other = dynamic_cast<const TPicture*>(source);
  if (other == nullptr) return TPersistent::Assign(source);
  SetGraphic(other->Graphic());
}

void TPicture::DefineProperties(TFiler& filer) {
  filer.DefineBinaryProperty(
      "Data", [this](TStream& stream) { ReadData(stream); },
      [this](TStream& stream) { WriteData(stream); },
      (FGraphic && !FGraphic->Empty()) || filer.WritesDefaults());
}

void TPicture::ReadData(TStream& stream) {
  const std::string bytes = stream.ReadRest();
  if (bytes.empty()) return SetGraphic(nullptr);
  TByteCursor reader(bytes);
  auto graphic = MakeGraphic(FindGraphicClass(reader.ReadShortString("a class of graphics")));
  graphic->TakeStoredData(std::string(reader.ReadView(reader.Left(), "a graphic")));
  FGraphic = std::move(graphic);
  OnChange(this);
}

void TPicture::WriteData(TStream& stream) const {
  if (FGraphic == nullptr) return;
  TByteBuffer bytes;
  bytes.WriteShortString(FGraphic->ClassName());
  bytes.WriteBytes(FGraphic->StoredData());
  stream.WriteText(bytes.View());
}

void TPicture::LoadFromFile(const std::string& fileName) {
  std::string bytes = ReadWholeFile(fileName);
  auto graphic = MakeGraphic(GraphicClassOf(bytes));
  graphic->SetData(std::move(bytes));
  FGraphic = std::move(graphic);
  OnChange(this);
}

}  // namespace wrenfold
