// Loads and renders form files.
#include "host/documents/FormDocument.h"

#include "platform/core/system/Files.h"
#include "project/TextFile.h"

namespace wrenfold {

TFormDocument::TFormDocument(const std::string& fileName) {
  // The stamp is taken first: a write in between shows as a change.
  FFile.FileName = fileName;
  FStamp = StampOf();
  FFile = LoadFormFile(fileName, FSource);
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

std::string TFormDocument::Text(std::vector<TFormSpans::TPlace>* places) const {
  return FSource->RenderText(*FFile.Root, places);
}

void TFormDocument::SaveAs(const std::string& fileName) {
  SafeWriteFile(fileName, FSource->Render(*FFile.Root));
  FFile.FileName = fileName;
  FStamp = StampOf();
  SetModified(false);
}

}  // namespace wrenfold
