// The packages that are loaded.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/documents/PackageFile.h"

namespace wrenfold {

class TDocumentViews;
class TFileNotifiers;
class TToolsServices;

class TPackages {
 public:
  // All must outlive this object.
  TPackages(TToolsServices& services, TFileNotifiers& notifiers, TDocumentViews& views)
      : FServices(services), FNotifiers(notifiers), FViews(views) {}
  ~TPackages() { Unload(); }

  // Loads a package and lets it register. What goes wrong stands in the message area.
  bool Load(const std::string& fileName);
  // Ends the wizards and gives the packages back; before the application ends.
  void Unload();

 private:
  TToolsServices& FServices;
  TFileNotifiers& FNotifiers;
  TDocumentViews& FViews;
  std::vector<std::unique_ptr<TPackage>> FPackages;
};

}  // namespace wrenfold
