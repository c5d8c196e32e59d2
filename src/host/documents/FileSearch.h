// Searches files in a thread of its own, and replaces in them.
#pragma once

#include <QObject>
#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "host/documents/Replacement.h"
#include "host/documents/Workspace.h"

namespace wrenfold {

struct TSearchedFile {
  std::string FileName;
  std::optional<std::string> Text;  // of an editor, where it is not what stands on disk
};

// The units, headers, include files and text forms of the project, its sources among them; of no
// project the open files.
std::vector<TSearchedFile> FilesToSearch(const TWorkspace& workspace);

// One search at a time. What is told comes on the thread of the application.
class TFileSearch {
 public:
  // More places are not told.
  static constexpr std::size_t MostPlaces = 20000;

  ~TFileSearch() { Stop(); }

  std::function<void(const std::vector<TFoundPlace>& places)> OnFound;  // of one file
  std::function<void(int done, int all)> OnProgress;
  std::function<void(bool whole)> OnEnd;  // false: stopped, or there were too many

  // Begins; a search that runs is stopped. Raises ESearchError.
  void Start(std::vector<TSearchedFile> files, const std::string& pattern,
             const TSearchOptions& options, std::optional<std::string> with = std::nullopt);
  // Nothing more is told of the search that runs.
  void Stop();
  bool Running() const { return FRunning; }

 private:
  void Run(const std::vector<TSearchedFile>& files, const TTextSearch& search,
           const std::optional<std::string>& with);
  template <class Call>
  void Tell(Call call);

  std::unique_ptr<QObject> FReceiver;
  std::thread FThread;
  std::atomic<bool> FStop = false;
  bool FRunning = false;
};

// Makes the replacements: in editors where the file is open (undo takes them back), else in the
// file itself, whose encoding and line ends stay. A file whose text is no longer the one that was
// searched is left alone. Answers a message for each file that could not be changed.
std::vector<std::string> ReplaceInFiles(const TWorkspace& workspace,
                                        const std::vector<TFoundPlace>& places);

}  // namespace wrenfold
