// The pages that come back with a project, and what comes back at the start.
#pragma once

#include <string>
#include <vector>

#include "host/documents/Documents.h"
#include "host/panels/EditWindow.h"

namespace wrenfold {

class TSessions {
 public:
  // Both must outlive this object. From here on the pages of projects are kept and brought back.
  TSessions(TDocuments& documents, TEditWindow& window);

  // Remembers what is open now as what the next start opens.
  void KeepForNextStart();
  // Opens what was open at the last end; nothing where nothing was.
  void OpenLast();

 private:
  void OpenPages(const TProjectHolder& project);
  void OpenPages(const TSession& session);
  void Store();

  TDocuments& FDocuments;
  TEditWindow& FWindow;
};

}  // namespace wrenfold
