// Loads and renders form files.
#include "host/documents/FormDocument.h"

#include "platform/core/system/Files.h"
#include "project/TextFile.h"

namespace wrenfold {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

std::string TextOf(std::string_view stream, const TFormTextStyle& style) {
  TByteReader binary(stream);
  TByteWriter text;
  ObjectBinaryToText(binary, text, style);
  return text.ToString();
}

// The style that renders the form as it stands on disk.
const TFormTextStyle& StyleOf(const std::string& bytes, const std::string& stream) {
  for (const TFormTextStyle& style : FormTextStyles())
    if (bytes.ends_with(TextOf(stream, style))) return style;
  return DefaultFormTextStyle();
}

}  // namespace

TFormDocument::TFormDocument(const std::string& fileName) {
  // The stamp is taken first: a write in between shows as a change.
  FFile.FileName = fileName;
  FStamp = StampOf();
  const std::string bytes = ReadWholeFile(fileName);
  FFile = ReadFormFile(bytes, fileName);
  FMarked = bytes.starts_with(Utf8Mark);
  if (FFile.Format == TFormFormat::Text) FStyle = &StyleOf(bytes, WriteDesignForm(*FFile.Root));
}

TFormDocument::TStamp TFormDocument::StampOf() const {
  std::error_code error;
  return {FileSize(FileName()), std::filesystem::last_write_time(FileName(), error)};
}

bool TFormDocument::ChangedOnDisk() const {
  const TStamp now = StampOf();
  return now.Size >= 0 && now != FStamp;
}

bool TFormDocument::ReadOnly() const {
  return IsReadOnlyFile(FileName());
}

void TFormDocument::SetModified(bool modified) {
  if (FModified == modified) return;
  FModified = modified;
  if (OnChange) OnChange();
}

std::string TFormDocument::Text() const {
  return TextOf(WriteDesignForm(*FFile.Root), *FStyle);
}

std::string TFormDocument::Render() const {
  if (FFile.Format == TFormFormat::Text) return (FMarked ? std::string(Utf8Mark) : "") + Text();
  const std::string stream = WriteDesignForm(*FFile.Root);
  if (FFile.Format != TFormFormat::Resource) return stream;
  TByteWriter resource;
  const std::size_t size = resource.WriteResourceHeader(FFile.Root->StoredClassName());
  resource.WriteBytes(stream);
  resource.PatchFixed(size, static_cast<std::uint32_t>(stream.size()));
  return resource.ToString();
}

void TFormDocument::SaveAs(const std::string& fileName) {
  SafeWriteFile(fileName, Render());
  FFile.FileName = fileName;
  FStamp = StampOf();
  SetModified(false);
}

}  // namespace wrenfold
