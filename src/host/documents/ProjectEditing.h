// Keeps the open project's source in step with units that are renamed or added.
#pragma once

#include <string>
#include <vector>

#include "host/documents/Workspace.h"
#include "project/SourceEdits.h"

namespace wrenfold {

class TDocumentViews;

// The project's source is changed in its document, where the change can be undone; it is saved like
// any other.
class TProjectEditing {
 public:
  TProjectEditing(TWorkspace& workspace, TDocumentViews& views)
      : FWorkspace(workspace), FViews(views) {}

  // A module of the project has another file name than before.
  void Renamed(const TModule& module, const std::string& before);
  // Whether the module is a unit with a file that the open project does not name yet.
  bool CanAdd(const TModule& module) const;
  // False, the user told, when the project's source has no place for it.
  bool Add(TModule& module);
  // The text of the project's source changed: the project is read from it again.
  void Refresh();

 private:
  TNamedUnit Named(const TModule& module) const;
  void Apply(const std::vector<TSourceEdit>& edits);

  TWorkspace& FWorkspace;
  TDocumentViews& FViews;
};

}  // namespace wrenfold
