// Methods that handle a form's events, in the source of its module.
#pragma once

#include <string>
#include <vector>

#include "host/documents/Documents.h"

namespace wrenfold {

class TEventHandlers {
 public:
  // Both must outlive this object.
  TEventHandlers(TDocuments& documents, TDocumentViews& views)
      : FDocuments(documents), FViews(views) {}

  // The methods of the form's class that have the event's parameters; all where these are unknown.
  std::vector<std::string> Fitting(TFormEditor& form, const std::string& eventType) const;
  // Shows the method, which is declared and gets an empty body where there is none. False, the user
  // told why, when there is no such method and it cannot be written.
  bool Open(TFormEditor& form, const std::string& eventType, const std::string& method);

 private:
  // Where the class of a form is declared and where its methods have their bodies: one source in
  // Pascal, header and source in C++. Both null, or none.
  struct TSources {
    TSourceEditor* Declaring = nullptr;
    TSourceEditor* Bodies = nullptr;
  };
  static TSources SourcesOf(TFormEditor& form);
  static std::string Write(const TSources& sources, const std::string& className,
                           const std::string& method, const std::string& eventType);
  static int LineOfBody(TSourceEditor& source, const std::string& className,
                        const std::string& method);

  TDocuments& FDocuments;
  TDocumentViews& FViews;
};

}  // namespace wrenfold
