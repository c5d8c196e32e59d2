// Keeps the open project's source and project file in step with units that come, go and are
// renamed.
#pragma once

#include <string>
#include <vector>

#include "host/documents/Workspace.h"
#include "project/SourceEdits.h"

namespace wrenfold {

class TDocumentViews;

// Both are changed in their documents, where the change can be undone; they are saved like any
// other.
class TProjectEditing {
 public:
  TProjectEditing(TWorkspace& workspace, TDocumentViews& views)
      : FWorkspace(workspace), FViews(views) {}

  // A module of the project has another file name than before.
  void Renamed(const TModule& module, const std::string& before);
  // Whether the module is a unit with a file that the open project does not name yet.
  bool CanAdd(const TModule& module) const;
  // False, the user told, when the project has no place for it. A form that the program is to
  // create at its start is told by its class.
  bool Add(TModule& module, const std::string& createdClass = {});
  // Whether the open project names the module's file.
  bool CanRemove(const TModule& module) const;
  // False, the user told, when it cannot be taken out of the project's list. Its files stay.
  bool Remove(const TModule& module);
  // The text of the project's source changed: the project is read from it again.
  void Refresh();

 private:
  TNamedUnit Named(const TModule& module) const;
  TProjectEntry Described(const std::string& fileName, const TModule& module) const;
  TUnitDocument* SourceDocument() const;
  TUnitDocument* DescriptionDocument() const;
  bool Apply(const std::vector<TSourceEdit>& source, const std::vector<TSourceEdit>& description);
  template <class Edits>
  std::vector<TSourceEdit> InDescription(Edits edits) const;

  TWorkspace& FWorkspace;
  TDocumentViews& FViews;
};

}  // namespace wrenfold
