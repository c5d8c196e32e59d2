// The workbench as a program: its command line, start and end.
#include <CLI/CLI.hpp>

#include "host/documents/Icons.h"
#include "host/shell/DesktopColours.h"
#include "host/shell/Workbench.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"

namespace {

using namespace wrenfold;

constexpr char SuitePackage[] = "Wrenfold4.so";

struct TOptions {
  std::vector<std::string> Packages;
  bool NoPackage = false;
  std::vector<std::string> Files;
};

// The suite's package: beside the program, or where an installation has its libraries.
std::string FindSuite() {
  const std::string here = ExtractFilePath(ModuleFileName(reinterpret_cast<void*>(&FindSuite)));
  for (const std::string& folder : {here, here + "../" WRENFOLD_LIBRARY_FOLDER "/"})
    if (FileExists(folder + SuitePackage)) return AbsoluteFileName(folder + SuitePackage);
  return {};
}

void LoadPackages(TWorkbench& workbench, const TOptions& options) {
  for (const std::string& package : options.Packages) workbench.Packages().Load(package);
  if (options.NoPackage || !options.Packages.empty()) return;
  const std::string suite = FindSuite();
  if (!suite.empty()) workbench.Packages().Load(suite);
  else
    workbench.Messages().Add(
        TMessageKind::Warning,
        std::string("The package ") + SuitePackage +
            " does not stand beside the workbench; it runs without the suite.");
}

int Run(TApplication& application, const TOptions& options) {
  application.SetTitle("Wrenfold");
  QApplication::setDesktopFileName("wrenfold");
  QApplication::setWindowIcon(WorkbenchIcon("wrenfold"));
  const TDesktopColours colours;
  TWorkbench workbench;
  workbench.AfterConstruction();
  application.SetMainForm(&workbench);
  workbench.LoadLayout();
  // Packages first: they may want to see the main window being shown.
  LoadPackages(workbench, options);
  workbench.Show();
  if (options.Files.empty()) workbench.Sessions().OpenLast();
  else workbench.Documents().OpenAll(options.Files);
  const int code = application.Run();
  workbench.Packages().Unload();
  application.SetMainForm(nullptr);
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App parser("Wrenfold: a workbench for projects in Pascal and C++.", "wrenfold");
  TOptions options;
  parser
      .add_option("--package", options.Packages,
                  "Load this package instead of " + std::string(SuitePackage))
      ->type_name("FILE")
      ->allow_extra_args(false);
  parser.add_flag("--no-package", options.NoPackage, "Load no package");
  parser.add_option("files", options.Files, "A project, units")->type_name("FILE");
  parser.set_version_flag("--version", TWorkbench::VersionText());
  // The toolkit takes its own options out first.
  int count = argc;
  const bool words =
      argc > 1 && (std::string_view(argv[1]) == "--help" ||
                   std::string_view(argv[1]) == "--version" || std::string_view(argv[1]) == "-h");
  if (words) CLI11_PARSE(parser, argc, argv);
  TApplication application(count, argv);
  CLI11_PARSE(parser, count, argv);
  return Run(application, options);
}
