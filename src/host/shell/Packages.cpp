// Loads packages; one that fails leaves the workbench running.
#include "host/shell/Packages.h"

#include "host/documents/DocumentViews.h"
#include "host/documents/FileNotifiers.h"
#include "host/documents/Workspace.h"
#include "host/shell/ToolsServices.h"
#include "platform/widgets/Application.h"

namespace wrenfold {

bool TPackages::Load(const std::string& fileName) {
  try {
    auto package = std::make_unique<TPackage>(AbsoluteFileName(fileName));
    const TPackage& loaded = *FPackages.emplace_back(std::move(package));
    loaded.Register();
  } catch (const EPackageError& e) {
    FViews.Tell({.Text = e.Message()});
    return false;
  } catch (...) {
    // The package stays mapped: what it made before it failed may be in use.
    FViews.Tell({.Text = "The package " + fileName +
                         " failed in \"Register\": " + ExceptionMessage(std::current_exception()) +
                         ". The workbench goes on without what it did not set up."});
    return false;
  }
  FViews.Tell({.Kind = TMessageKind::Information, .Text = "Package " + fileName + " is loaded."});
  FNotifiers.Notify(ofnPackageInstalled, fileName);
  return true;
}

void TPackages::Unload() {
  FServices.EndWizards();
  while (!FPackages.empty()) FPackages.pop_back();
}

}  // namespace wrenfold
