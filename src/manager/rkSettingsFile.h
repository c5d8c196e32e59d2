// The settings file: read into the settings root, written from it, never lost when it could not be
// read.
#pragma once

#include <string>
#include <vector>

#include "manager/rkExpData.h"
#include "storage/rkObjectSaver.h"

namespace wrenfold {

// The name that the settings root is stored under.
inline constexpr const char* SettingsObjectName = "ExpertData";

// One settings file and what is known of its contents. Until a load has finished, the file holds
// more than the root does: it is not replaced without a copy beside it, "ExpData.spc.bad" (or with
// a number behind it when that is taken by other contents). Failures name the file and the reason.
class TSettingsFile {
 public:
  TSettingsFile() = default;
  // A file that came with the package is read while the user has none; it is never written.
  explicit TSettingsFile(std::string fileName, std::string shipped = {})
      : FFileName(std::move(fileName)), FShipped(std::move(shipped)) {}

  const std::string& FileName() const { return FFileName; }

  // Sets which experts the file has switched off and nothing else; nobody is asked. A file that
  // cannot be read leaves all as they are.
  void ReadActive(TActiveExperts& experts) const;

  // Reads the file into the root. Answers false when there is no file, an empty one, or one that
  // was dropped. When it cannot be read, EFitReaderError is raised and the root has the values that
  // it had before. Of a value that cannot be read the user is asked whether to go on without it
  // (ask), or it is left out; see TakeProblem.
  bool Load(TExpData& root, bool ask);
  // The root was made anew: what the file holds is not in it until the next load.
  void Forget() { FUnread = true; }

  // Replaces the file by the values of the root. Raises EFCreateError and leaves the file as it
  // was.
  void Save(TExpData& root);
  // The same for saving that nobody asked for: a failure is logged, and shown to the user the first
  // time. Answers whether the file was written.
  bool SaveOrTell(TExpData& root);

  // The user wants the defaults: removes the file, and reads nothing from it until it is written
  // again. Answers false when it could not be removed.
  bool Drop();

  // Somebody else has written the file since it was read or written here.
  bool ChangedOnDisk() const;

  // Writes the values of the root to another file: as text when the format says so or the name ends
  // in ".stx", else in the binary form. Raises EFCreateError.
  void Export(TExpData& root, const std::string& fileName, TObjectStorageFormat format) const;
  // The contents of another file; EFitReaderError unless it is a settings file from end to end.
  static std::string CheckImport(const std::string& fileName);
  // Replaces the file by the other one, which is checked first, and keeps the old contents as
  // "ExpData.spc.bak". The root is as it was: who imports reads it anew.
  void Import(const std::string& fileName);

  // For the user: what the last load could not read, what is in force instead and where the old
  // contents are kept. Answered once; empty when there is nothing to tell.
  std::string TakeProblem() { return std::exchange(FProblem, {}); }

 private:
  void NoteProblem(int textId, const std::string& reason);
  std::string Keep(const char* extension) const;
  std::string Contents() const;

  // The file that a load reads.
  const std::string& Source() const;

  std::string FFileName;
  std::string FShipped;
  std::string FKnown;  // the contents as they were read or written here last
  std::string FProblem;
  bool FUnread = true;
  bool FDropped = false;
  bool FSaveFailureTold = false;
};

// Saves a settings object under the name of the root; what SaveSpc of the suite writes with.
void SaveSettingsObject(TSpcObject& root, const std::string& fileName, TObjectStorageFormat format);

}  // namespace wrenfold
