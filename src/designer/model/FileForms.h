// Knows the forms and classes of a set of files: those of a project or a folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "designer/model/Composition.h"
#include "project/FormFile.h"

namespace wrenfold {

class TProject;

// Units tell the ancestors of classes, form files are found by the class of their root. Files are
// read when something is asked for, each once; what cannot be read is as if it were not there.
class TFileForms final : public TFormCatalog {
 public:
  // Pascal units, C++ headers and form files; others are passed over. Form files beside the units
  // need not be named.
  explicit TFileForms(const std::vector<std::string>& files);
  // The files of one folder.
  static std::unique_ptr<TFileForms> OfFolder(const std::string& folder);
  // The modules of a project. Raises EProjectError, EFOpenError.
  static std::unique_ptr<TFileForms> OfProject(const std::string& fileName);
  static std::unique_ptr<TFileForms> OfProject(const TProject& project);

  std::vector<std::string> Ancestors(std::string_view className) override;
  const TDesignComponent* FindForm(std::string_view className) override;

  // In the order in which they were named or found.
  const std::vector<std::string>& FormFiles() const { return FForms; }
  // Whether a form file that was read is another one on disk now.
  bool Outdated() const;

 private:
  struct TFileStamp {
    std::int64_t Size = -1;
    std::filesystem::file_time_type Time;
    friend bool operator==(const TFileStamp&, const TFileStamp&) = default;
  };
  static TFileStamp StampOf(const std::string& fileName);
  void ReadUnits();
  void ReadFormHeaders();

  std::vector<std::string> FUnits;
  std::vector<std::string> FForms;
  bool FUnitsRead = false;
  bool FHeadersRead = false;
  std::unordered_map<std::string, std::string> FAncestors;  // by folded class name
  struct TKnownForm {
    std::string FileName;
    bool Tried = false;
    TFormFile File;
    TFileStamp Stamp;  // of the file when it was read
  };
  std::unordered_map<std::string, TKnownForm> FKnown;  // by the folded class of the root
};

}  // namespace wrenfold
