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
  FEdits.emplace(*FFile.Root);
  FEdits->History().OnChange = [this] { Edited(); };
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

void TFormDocument::Change(const std::vector<TFormChange>& changes) {
  FEdits->Do(changes);
}

const std::vector<TFormChange>& TFormDocument::Undo() {
  return FEdits->Undo();
}

const std::vector<TFormChange>& TFormDocument::Redo() {
  return FEdits->Redo();
}

// The form differs from its file, unless all changes since saving were taken back.
void TFormDocument::Edited() {
  FModified = !FEdits->IsSaved();
  if (OnChange) OnChange();
}

std::string TFormDocument::Text(std::vector<TFormSpans::TPlace>* places) const {
  return FSource->RenderText(*FFile.Root, places);
}

void TFormDocument::SaveAs(const std::string& fileName) {
  SafeWriteFile(fileName, FSource->Render(*FFile.Root));
  FFile.FileName = fileName;
  FStamp = StampOf();
  FEdits->Saved();
  SetModified(false);
}

}  // namespace wrenfold
