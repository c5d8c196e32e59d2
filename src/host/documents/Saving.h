// Saves modules and asks what has to be asked before.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/documents/Modules.h"
#include "host/documents/ProjectEditing.h"

namespace wrenfold {

class TDocumentViews;
class TSettings;

// How the user is asked for file names; empty means that the user gave up.
struct TFileDialogs {
  std::function<std::vector<std::string>(const std::string& title, const std::string& folder,
                                         const std::string& filter)>
      Open;
  std::function<std::string(const std::string& title, const std::string& fileName,
                            const std::string& filter)>
      Save;
  // One of several files.
  std::function<std::string(const std::string& title, const std::vector<std::string>& files)>
      Choose;
};

class TSaving {
 public:
  // All must outlive this object.
  TSaving(TWorkspace& workspace, TSettings& settings, TDocumentViews& views)
      : FWorkspace(workspace),
        FSettings(settings),
        FViews(views),
        FProjectEditing(workspace, views) {}

  TFileDialogs Dialogs;
  TProjectEditing& ProjectEditing() { return FProjectEditing; }

  // False when the user gave up or saving failed, which the user is told.
  bool Save(TModule& module, bool changeName, bool ask);
  bool SaveAll();
  // Saves what the user wants saved before the module is closed. False when the user gave up or
  // saving failed.
  bool Settle(TModule& module);
  bool SettleAll();

 private:
  std::string AskFileName(const TModule& module);
  bool MaySaveOver(TModule& module, bool ask, std::string& fileName);
  bool Write(TModule& module, const std::string& fileName, bool onlyModified);
  bool OfferUnicode(TModule& module, const std::string& trouble);
  void RenameInSource(TModule& module, const std::string& from, const std::string& to);

  TWorkspace& FWorkspace;
  TSettings& FSettings;
  TDocumentViews& FViews;
  TProjectEditing FProjectEditing;
};

}  // namespace wrenfold
