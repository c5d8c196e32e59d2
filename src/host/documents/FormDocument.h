// An open form file: its components, changed in the inspector and saved in the form it had.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

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

  // True when another program changed the file since it was read, saved or accepted.
  bool ChangedOnDisk() const;
  // What is on disk now counts as known.
  void AcceptDiskState() { FStamp = StampOf(); }

  // The form as text, whatever it is stored as.
  std::string Text() const;
  // Writes binary as binary and text as text. Raises EFCreateError and leaves the file as it was.
  void Save() { SaveAs(FileName()); }
  void SaveAs(const std::string& fileName);

  std::function<void()> OnChange;

 private:
  struct TStamp {
    std::int64_t Size = -1;
    std::filesystem::file_time_type Time;
    friend bool operator==(const TStamp&, const TStamp&) = default;
  };
  TStamp StampOf() const;
  std::string Render() const;

  TFormFile FFile;
  TStamp FStamp;
  // How the text on disk is rendered, so that a saved form differs in what was changed alone.
  const TFormTextStyle* FStyle = &DefaultFormTextStyle();
  bool FMarked = false;  // begins with a byte order mark
  bool FModified = false;
};

}  // namespace wrenfold
