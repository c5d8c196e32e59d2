// wrenfold-pic: make pictures of form files.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <cstdio>

#include "tools/Terminal.h"
#include "tools/pic/PicCommand.h"

namespace wrenfold {
namespace {

int Run(int argc, char** argv) {
  CLI::App app{"Draw form files as pictures, without a display.", "wrenfold-pic"};
  app.set_version_flag("--version", "wrenfold-pic " WRENFOLD_VERSION);
  std::vector<std::string> names;
  TPicOptions options;
  std::string theme;
  app.add_option("FORM", names, "Form files, folders, project sources")->required();
  app.add_option("--to", options.Folder, "The folder for the pictures")->required();
  app.add_option("--format", options.Format, "The kind of picture: png or svg")
      ->check(CLI::IsMember({"png", "svg"}));
  app.add_option("--scale", options.Scale, "How large, 1 for the forms' own size")
      ->check(CLI::Range(0.05, 16.0));
  app.add_option("--theme", theme, "The desktop's colours: light or dark")
      ->check(CLI::IsMember({"light", "dark"}));
  app.add_flag("--list", options.List, "Tell for each class how it was drawn");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ecFine : ecTrouble;
  }
  options.Dark = theme == "dark";
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  TTerminal terminal("wrenfold-pic");
  return RunPic(names, options, terminal);
}

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  wrenfold::HoldStandardStreams();
  try {
    return wrenfold::FinishOutput("wrenfold-pic", wrenfold::Run(argc, argv));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "wrenfold-pic: %s\n", error.what());
    return wrenfold::ecTrouble;
  }
}
