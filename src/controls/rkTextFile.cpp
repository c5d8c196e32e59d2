#include "controls/rkTextFile.h"

#include <QStringConverter>

#include "locale/rkLocale.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

std::string Decoded(const std::string& bytes) {
  const QByteArray data =
      QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  const auto marked = QStringConverter::encodingForData(data);
  // Without state, a character that the end cuts off is an error.
  QStringDecoder decoder(marked.value_or(QStringConverter::Utf8),
                         QStringConverter::Flag::Stateless);
  const QString text = decoder.decode(data);
  if (!decoder.hasError()) return FromQString(text);
  return FromQString(QString::fromLatin1(data));
}

}  // namespace

void LoadTextFile(const std::string& fileName, TStrings& lines) {
  constexpr std::int64_t Megabyte = 1024 * 1024;
  const std::int64_t size = FileSize(fileName);
  if (size > MaxTextMegabytes * Megabyte)
    throw EConvertError(
        LocaleFormat(sFileTooLarge, fileName, (size + Megabyte - 1) / Megabyte, MaxTextMegabytes));
  lines.SetText(Decoded(ReadWholeFile(fileName)));
}

}  // namespace wrenfold
