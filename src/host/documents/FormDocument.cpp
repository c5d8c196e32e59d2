// Loads and renders form files.
#include "host/documents/FormDocument.h"

#include "platform/core/system/Files.h"
#include "project/TextFile.h"

namespace wrenfold {

namespace {

// Takes overrides that say nothing out of the form for a while.
class TWithoutEmptyOverrides {
 public:
  explicit TWithoutEmptyOverrides(TDesignComponent& root) : FRoot(root) { TakeOut(); }
  ~TWithoutEmptyOverrides() {
    for (auto each = FTaken.rbegin(); each != FTaken.rend(); ++each) {
      each->Component->SetParentComponent(each->Parent);
      each->Component->SetChildIndex(each->Index);
    }
  }
  TWithoutEmptyOverrides(const TWithoutEmptyOverrides&) = delete;
  TWithoutEmptyOverrides& operator=(const TWithoutEmptyOverrides&) = delete;

 private:
  struct TTaken {
    TDesignComponent* Component;
    TDesignComponent* Parent;
    std::size_t Index;
  };

  // What is inside first, so that what it leaves empty goes as well.
  void TakeOut() {
    std::vector<TDesignComponent*> all{&FRoot};
    for (std::size_t i = 0; i < all.size(); ++i)
      all.insert(all.end(), all[i]->Children().begin(), all[i]->Children().end());
    for (auto at = all.rbegin(); at != all.rend(); ++at)
      if (SaysNothing(**at)) {
        auto* parent = dynamic_cast<TDesignComponent*>((*at)->GetParentComponent());
        FTaken.push_back({*at, parent, ChildIndexOf(**at)});
        (*at)->SetParentComponent(nullptr);
      }
  }

  // Those that were stored so stay.
  bool SaysNothing(const TDesignComponent& component) const {
    std::int32_t position = 0;
    return (component.FilerFlags(position) & ffInherited) != 0 &&
           component.StoredIndex(FRoot) == std::string_view::npos &&
           component.Properties().empty() && component.Children().empty();
  }

  TDesignComponent& FRoot;
  std::vector<TTaken> FTaken;
};

}  // namespace

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
  FCopy.reset();
  FModified = !FEdits->IsSaved();
  if (OnStep) OnStep();
  if (OnChange) OnChange();
}

std::string TFormDocument::Text(std::vector<TFormSpans::TPlace>* places) const {
  const TWithoutEmptyOverrides rendered(*FFile.Root);
  return FSource->RenderText(*FFile.Root, places);
}

TDesignComponent& TFormDocument::Override(const std::string& name, std::string_view className,
                                          TDesignComponent& parent) {
  TByteWriter stream;
  stream.WriteSignature();
  stream.WriteByte(FilerPrefixMark | ffInherited);
  stream.WriteShortString(className);
  stream.WriteShortString(name);
  stream.WriteEndOfList();
  stream.WriteEndOfList();
  return *AddDesignComponent(stream.ToString(), *FFile.Root, parent);
}

std::shared_ptr<const TDesignComponent> TFormDocument::Copy() {
  if (FCopy == nullptr) FCopy = ReadDesignForm(WriteDesignForm(*FFile.Root));
  return FCopy;
}

void TFormDocument::SaveAs(const std::string& fileName) {
  {
    const TWithoutEmptyOverrides rendered(*FFile.Root);
    SafeWriteFile(fileName, FSource->Render(*FFile.Root));
  }
  FFile.FileName = fileName;
  FStamp = StampOf();
  FEdits->Saved();
  SetModified(false);
}

}  // namespace wrenfold
