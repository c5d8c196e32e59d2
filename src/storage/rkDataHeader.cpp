#include "storage/rkDataHeader.h"

#include "locale/rkLocale.h"
#include "storage/rkTextSource.h"

namespace wrenfold {

namespace {

constexpr std::string_view BinLabel = "sys_bin";
constexpr std::string_view TextLabel = "sys_txt";
static_assert(BinLabel.size() == TextLabel.size());
constexpr std::size_t MaxDescription = 255;

[[noreturn]] void RaiseNoLabel() {
  throw EDataHandlingError(LocaleStr(sLabelNotFound));
}

std::uint8_t ReadByte(TStream& stream) {
  std::uint8_t value = 0;
  stream.ReadBuffer(&value, 1);
  return value;
}

void WriteByte(TStream& stream, std::size_t value) {
  const auto byte = static_cast<std::uint8_t>(value);
  stream.WriteBuffer(&byte, 1);
}

// A line break of any form as one blank: a CR alone would end the header's line as well.
std::string OneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isBreak = text[i] == '\r' || text[i] == '\n';
    line += isBreak ? ' ' : text[i];
    if (text.substr(i, 2) == "\r\n") ++i;
  }
  return line;
}

}  // namespace

char SeparatorChar = '-';

void WriteBinDataHeader(TStream& stream, bool isRes, std::string_view description) {
  description = description.substr(0, MaxDescription);
  stream.WriteText(BinLabel);
  WriteByte(stream, isRes ? 1 : 0);
  WriteByte(stream, description.size());
  stream.WriteText(description);
}

void WriteTextDataHeader(TStream& stream, std::string_view description) {
  std::string line(TextLabel);
  if (!description.empty()) line += ' ' + OneLine(description);
  stream.WriteText(line + "\r\n" + std::string(line.size(), SeparatorChar) + "\r\n");
}

void ReadDataHeader(TStream& stream, TObjectStorageFormat& format, bool& isRes,
                    std::string& description) {
  std::string label(BinLabel.size(), '\0');
  stream.ReadBuffer(label.data(), label.size());
  if (label == TextLabel) {
    format = osfText;
    TTextSource text(stream);
    description = text.TakeLine("the line end of the data header");
    text.TakeLine("the line end of the data header's underline");
    return text.Finish();
  }
  if (label != BinLabel) RaiseNoLabel();
  const std::uint8_t flag = ReadByte(stream);
  if (flag > 1) RaiseNoLabel();
  std::string text(ReadByte(stream), '\0');
  stream.ReadBuffer(text.data(), text.size());
  format = osfBin;
  isRes = flag == 1;
  description = std::move(text);
}

void SkipDataHeader(TStream& stream) {
  TObjDataDscr dscr;
  std::string description;
  ReadDataHeader(stream, dscr.Format, dscr.IsRes, description);
}

}  // namespace wrenfold
