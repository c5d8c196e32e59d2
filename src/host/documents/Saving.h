// Saves modules and asks what has to be asked before.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/documents/Modules.h"

namespace wrenfold {

class TDocumentViews;
class TSettings;
class TWorkspace;

// How the user is asked for file names; empty means that the user gave up.
struct TFileDialogs {
  std::function<std::vector<std::string>(const std::string& title, const std::string& folder,
                                         const std::string& filter)>
      Open;
  std::function<std::string(const std::string& title, const std::string& fileName,
                            const std::string& filter)>
      Save;
};

class TSaving {
 public:
  // All must outlive this object.
  TSaving(TWorkspace& workspace, TSettings& settings, TDocumentViews& views)
      : FWorkspace(workspace), FSettings(settings), FViews(views) {}

  TFileDialogs Dialogs;

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
  void Renamed(TModule& module, const std::string& before);
  void ProjectSourceSaved();

  TWorkspace& FWorkspace;
  TSettings& FSettings;
  TDocumentViews& FViews;
};

}  // namespace wrenfold
