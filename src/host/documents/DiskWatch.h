// Notices files that another program changed behind the editor.
#pragma once

#include <QTimer>

#include "host/documents/Documents.h"

namespace wrenfold {

class TDiskWatch {
 public:
  // Both must outlive this object. Looks every now and then while the window of the application is
  // the active one.
  TDiskWatch(TDocuments& documents, TDocumentViews& views);

  // Looks now, and asks what to do about what it finds. Does nothing while a question is open.
  void Check();

 private:
  void CheckSource(TSourceEditor& source);
  void CheckForm(TFormEditor& form);

  TDocuments& FDocuments;
  TDocumentViews& FViews;
  QTimer FTimer;
  bool FChecking = false;
};

}  // namespace wrenfold
