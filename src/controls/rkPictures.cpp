#include "controls/rkPictures.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImageReader>
#include <QImageWriter>
#include <QMimeData>

#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// The kinds that are taken; the toolkit knows more, some of them made of text.
struct TPictureFormat {
  const char* Name;
  const char* MimeType;
  const char* Extensions;
};
constexpr TPictureFormat Formats[] = {
    {"PNG", "image/png", ".png"}, {"JPEG", "image/jpeg", ".jpg.jpeg"}, {"GIF", "image/gif", ".gif"},
    {"BMP", "image/bmp", ".bmp"}, {"ICO", "image/x-icon", ".ico"},
};

// The bytes stay where they are.
QByteArray View(std::string_view bytes) {
  return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string Encoded(const QImage& image, const char* format) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  return writer.write(image) ? buffer.data().toStdString() : std::string();
}

const TPictureFormat* FormatOfFile(const std::string& fileName) {
  const std::string extension = LowerCase(ExtractFileExt(fileName));
  if (extension.empty()) return nullptr;
  for (const TPictureFormat& format : Formats)
    if (std::string_view(format.Extensions).find(extension) != std::string_view::npos)
      return &format;
  return nullptr;
}

// Before any of it is read.
void CheckFileSize(const std::string& fileName, int megabytes) {
  constexpr std::int64_t Megabyte = 1024 * 1024;
  const std::int64_t size = FileSize(fileName);
  if (size > megabytes * Megabyte)
    throw EInvalidPicture(
        LocaleFormat(sFileTooLarge, fileName, (size + Megabyte - 1) / Megabyte, megabytes));
}

}  // namespace

TPictureInfo ReadPictureInfo(std::string_view bytes) {
  QByteArray data = View(bytes);
  QBuffer buffer(&data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  const std::string found = UpperCase(reader.format().toStdString());
  for (const TPictureFormat& format : Formats)
    if (found == format.Name || (found == "JPG" && format.Name == std::string_view("JPEG")))
      return {reader.size(), format.Name};
  return {};
}

QImage DecodePicture(std::string_view bytes, const std::string& what, QSize fitting) {
  const TPictureInfo info = ReadPictureInfo(bytes);
  if (info.Format.empty()) throw EInvalidPicture(LocaleFormat(sPictureUnknown, what));
  const qint64 pixels = qint64{info.Size.width()} * info.Size.height();
  if (info.Size.isValid() && pixels > qint64{MaxPictureMegapixels} * 1000000)
    throw EInvalidPicture(LocaleFormat(sPictureTooLarge, what, info.Size.width(),
                                       info.Size.height(), MaxPictureMegapixels));
  QByteArray data = View(bytes);
  QBuffer buffer(&data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  QImage image = reader.read();
  if (image.isNull()) throw EInvalidPicture(LocaleFormat(sPictureUnknown, what));
  if (fitting.isValid() && (image.width() > fitting.width() || image.height() > fitting.height()))
    image = image.scaled(fitting, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  return image;
}

std::string PictureBytes(const TPersistent& picture) {
  const auto* graphic = dynamic_cast<const TGraphic*>(&picture);
  if (const auto* holder = dynamic_cast<const TPicture*>(&picture)) graphic = holder->Graphic();
  return graphic == nullptr ? std::string() : graphic->Data();
}

std::unique_ptr<TGraphic> GraphicOf(const std::string& bytes) {
  if (bytes.empty()) return nullptr;
  const std::string format = ReadPictureInfo(bytes).Format;
  std::unique_ptr<TGraphic> graphic;
  if (format == "BMP") graphic = std::make_unique<TBitmap>();
  else if (format == "ICO") graphic = std::make_unique<TIcon>();
  else graphic = std::make_unique<TImageFile>();
  graphic->SetData(bytes);
  return graphic;
}

std::string ConvertPicture(std::string_view bytes, const std::string& format,
                           const std::string& what) {
  if (bytes.empty() || ReadPictureInfo(bytes).Format == format) return std::string(bytes);
  std::string converted = Encoded(DecodePicture(bytes, what), format.c_str());
  if (converted.empty()) throw EInvalidPicture(LocaleFormat(sPictureNotWritten, what, format));
  return converted;
}

std::string LoadPictureFile(const std::string& fileName) {
  CheckFileSize(fileName, MaxPictureMegabytes);
  std::string bytes = ReadWholeFile(fileName);
  DecodePicture(bytes, fileName);
  return bytes;
}

void SavePictureFile(const std::string& fileName, std::string_view bytes) {
  const TPictureFormat* format = FormatOfFile(fileName);
  if (format == nullptr) return SafeWriteFile(fileName, bytes);
  SafeWriteFile(fileName, ConvertPicture(bytes, format->Name, fileName));
}

bool ClipboardHasPicture() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  return data != nullptr && data->hasImage();
}

std::string PictureFromClipboard() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  const std::string what = LocaleStr(sClipboardPicture);
  if (data == nullptr) throw EInvalidPicture(LocaleFormat(sPictureUnknown, what));
  for (const TPictureFormat& format : Formats) {
    if (!data->hasFormat(format.MimeType)) continue;
    std::string bytes = data->data(format.MimeType).toStdString();
    if (bytes.empty()) continue;
    DecodePicture(bytes, what);
    return bytes;
  }
  const QImage image = qvariant_cast<QImage>(data->imageData());
  if (image.isNull()) throw EInvalidPicture(LocaleFormat(sPictureUnknown, what));
  return Encoded(image, "PNG");
}

void PictureToClipboard(std::string_view bytes) {
  auto* data = new QMimeData;
  data->setImageData(DecodePicture(bytes, LocaleStr(sPictureInProperty)));
  const std::string found = ReadPictureInfo(bytes).Format;
  for (const TPictureFormat& format : Formats)
    if (found == format.Name)
      data->setData(format.MimeType, QByteArray(bytes.data(), bytes.size()));
  QGuiApplication::clipboard()->setMimeData(data);
}

}  // namespace wrenfold
