// An open form file: its components, changed in the inspector and saved in the form it had.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/documents/FormEdits.h"
#include "platform/core/stream/FormSource.h"
#include "project/FormFile.h"

namespace wrenfold {

class TFormDocument {
 public:
  // Raises EFormFileError, EFOpenError.
  explicit TFormDocument(const std::string& fileName);

  const std::string& FileName() const { return FFile.FileName; }
  TDesignComponent& Root() const { return *FFile.Root; }
  TFormFormat Format() const { return FFile.Format; }
  bool ReadOnly() const;
  bool Modified() const { return FModified; }
  void SetModified(bool modified);

  // One stroke of changes, its taking back, its making again. Answer what was changed. Raises
  // EComponentError for a name that cannot be; the form then is as it was.
  void Change(const std::vector<TFormChange>& changes);
  const std::vector<TFormChange>& Undo();
  const std::vector<TFormChange>& Redo();
  const TFormEdits& Edits() const { return *FEdits; }
  // The steps of all changes, those of the designer too.
  TFormHistory& History() { return FEdits->History(); }

  // True when another program changed the file since it was read, saved or accepted.
  bool ChangedOnDisk() const;
  // What is on disk now counts as known.
  void AcceptDiskState() { FStamp = StampOf(); }

  // The form as text, whatever it is stored as. That of a text file has the file's bytes where
  // nothing was changed. Appends where the components stand in it, when that is asked for.
  std::string Text(std::vector<TFormSpans::TPlace>* places = nullptr) const;
  // A component that the form only inherits, so that it can be changed. As long as it says nothing,
  // neither the text nor the file has it.
  TDesignComponent& Override(const std::string& name, std::string_view className,
                             TDesignComponent& parent);
  // A copy of the form as it stands, the same one until it changes.
  std::shared_ptr<const TDesignComponent> Copy();
  // Writes binary as binary and text as text; bytes of what was not changed stay. Raises
  // EFCreateError and leaves the file as it was.
  void Save() { SaveAs(FileName()); }
  void SaveAs(const std::string& fileName);

  std::function<void()> OnChange;
  // A step was done, undone or done again; OnChange follows.
  std::function<void()> OnStep;

 private:
  struct TStamp {
    std::int64_t Size = -1;
    std::filesystem::file_time_type Time;
    friend bool operator==(const TStamp&, const TStamp&) = default;
  };
  TStamp StampOf() const;
  void Edited();

  TFormFile FFile;
  TStamp FStamp;
  std::optional<TFormSource> FSource;  // what the file held when it was read
  std::optional<TFormEdits> FEdits;
  std::shared_ptr<const TDesignComponent> FCopy;
  bool FModified = false;
};

}  // namespace wrenfold
