// wrenfold-spc: convert, inspect and check stored objects and form files.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tools/Commands.h"
#include "tools/Terminal.h"

namespace wrenfold {
namespace {

struct TArguments {
  std::vector<std::string> Files;
  std::string Form;
  std::string Style;
  bool InPlace = false;
  bool Flag = false;  // the one of a command that has one
  TLintOptions Lint;
};

std::vector<std::string> StyleNames() {
  std::vector<std::string> names;
  for (const TFormTextStyle& style : FormTextStyles()) names.emplace_back(style.Name);
  return names;
}

std::string StyleHelp() {
  std::string text = "Styles of the text form:\n";
  for (const TFormTextStyle& style : FormTextStyles())
    text.append("  ").append(style.Name).append(": ").append(style.Meaning).append("\n");
  return text;
}

// How git finds this program: by its name where that leads here, else by its place.
std::string ProgramName() {
  namespace fs = std::filesystem;
  const std::string name = "wrenfold-spc";
  std::error_code error;
  const fs::path self = fs::canonical("/proc/self/exe", error);
  const char* path = std::getenv("PATH");
  for (std::string_view folders = path != nullptr ? path : ""; !folders.empty();) {
    const std::string_view folder = folders.substr(0, folders.find(':'));
    if (fs::equivalent(fs::path(folder) / name, self, error)) return name;
    folders.remove_prefix(std::min(folder.size() + 1, folders.size()));
  }
  return "'" + self.string() + "'";
}

int Convert(const TArguments& arguments, TOutput& output) {
  TConversion conversion;
  FindStoredForm(arguments.Form, conversion.Form);
  conversion.Style = FindFormTextStyle(arguments.Style);
  if (arguments.InPlace) return RunConvertInPlace(arguments.Files, conversion, output);
  if (arguments.Files.size() == 2)
    return RunConvert(arguments.Files[0], arguments.Files[1], conversion, output);
  output.Error("convert needs one input and one output, or --in-place");
  return ecTrouble;
}

// What is said of a command line that cannot be understood.
std::string Misunderstood(const CLI::App* app, const CLI::Error& error) {
  const bool noCommand = app->get_parent() == nullptr && app->get_subcommands().empty();
  if (!noCommand) return CLI::FailureMessage::simple(app, error);
  const std::vector<std::string> rest = app->remaining();
  std::string text = "wrenfold-spc: expected a command";
  if (!rest.empty()) text += ", found " + rest[0];
  text += ". The commands are:\n";
  for (const CLI::App* command : app->get_subcommands({}))
    text += "  " + command->get_name() + ": " + command->get_description() + "\n";
  return text + "Run with --help for more.\n";
}

int Run(int argc, char** argv) {
  CLI::App app{"Convert, inspect and check stored objects and form files.", "wrenfold-spc"};
  app.set_version_flag("--version", "wrenfold-spc " WRENFOLD_VERSION);
  app.require_subcommand(1);
  app.failure_message(Misunderstood);
  TArguments arguments;

  CLI::App* info = app.add_subcommand("info", "Tell what files are and hold");
  info->add_option("FILE", arguments.Files, "Files or folders; - is standard input")->required();

  CLI::App* convert = app.add_subcommand("convert", "Convert files from one form into another");
  convert->add_option("FILE", arguments.Files, "IN and OUT, or with --in-place files and folders")
      ->required();
  convert->add_option("--to", arguments.Form, "The form to convert to")
      ->required()
      ->check(CLI::IsMember({"text", "binary", "resource"}));
  convert->add_option("--style", arguments.Style, "The style of the text form")
      ->check(CLI::IsMember(StyleNames()));
  convert->add_flag("--in-place", arguments.InPlace, "Replace the files safely");
  convert->footer(StyleHelp());

  CLI::App* check =
      app.add_subcommand("check", "Render files through their other form and compare");
  check->add_option("FILE", arguments.Files, "Files or folders; - is standard input")->required();
  check->footer(StyleHelp());

  CLI::App* diff = app.add_subcommand("diff", "Compare two stored objects by meaning");
  diff->add_option("FILE", arguments.Files, "Two files in any forms")->required()->expected(2);

  CLI::App* textConv = app.add_subcommand("textconv", "Print the text of a form, for git diff");
  textConv->add_option("FILE", arguments.Files, "A file; - is standard input")
      ->required()
      ->expected(1);

  CLI::App* merge = app.add_subcommand("merge", "Merge three versions of a form by meaning");
  merge->add_option("FILE", arguments.Files, "BASE, OURS and THEIRS in any forms")
      ->required()
      ->expected(3);
  merge->add_option("-o,--output", arguments.Form,
                    "Where the result goes; standard output without");

  CLI::App* gitSetup = app.add_subcommand("git-setup", "Tell how git shows and merges forms");
  gitSetup->add_flag("--apply", arguments.Flag, "Write it into the repository's own configuration");

  CLI::App* set = app.add_subcommand("set", "Change properties of a form, and nothing else in it");
  set->add_option("FILE", arguments.Files, "The form, then PATH=VALUE for each property")
      ->required()
      ->expected(2, -1);
  set->add_flag("--string", arguments.Flag, "The values are texts as they stand");

  CLI::App* get = app.add_subcommand("get", "Print a property of a form");
  get->add_option("FILE", arguments.Files, "The form and the PATH")->required()->expected(2);

  CLI::App* lint = app.add_subcommand("lint", "Tell what breaks at run time in forms");
  lint->add_option("FILE", arguments.Files, "Forms, projects or folders")->required();
  lint->add_flag("--strict", arguments.Lint.Strict,
                 "Tell colliding accelerators and tab orders, too");
  std::string format = "text";
  lint->add_option("--format", format, "text or json")->check(CLI::IsMember({"text", "json"}));

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ecFine : ecTrouble;
  }
  TTerminal terminal("wrenfold-spc");
  if (info->parsed()) return RunInfo(arguments.Files, terminal);
  if (convert->parsed()) return Convert(arguments, terminal);
  arguments.Lint.Json = format == "json";
  if (lint->parsed()) return RunLint(arguments.Files, arguments.Lint, terminal);
  if (check->parsed()) return RunCheck(arguments.Files, terminal);
  const std::vector<std::string>& files = arguments.Files;
  if (textConv->parsed()) return RunTextConv(files[0], terminal);
  if (merge->parsed())
    return RunMerge({files[0], files[1], files[2], arguments.Form.empty() ? "-" : arguments.Form},
                    terminal);
  if (gitSetup->parsed()) return RunGitSetup(ProgramName(), arguments.Flag, terminal);
  if (set->parsed())
    return RunSet(files[0], {files.begin() + 1, files.end()}, arguments.Flag, terminal);
  if (get->parsed()) return RunGet(files[0], files[1], terminal);
  return RunDiff(files[0], files[1], terminal);
}

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  wrenfold::HoldStandardStreams();
  try {
    return wrenfold::FinishOutput("wrenfold-spc", wrenfold::Run(argc, argv));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "wrenfold-spc: %s\n", error.what());
    return wrenfold::ecTrouble;
  }
}
