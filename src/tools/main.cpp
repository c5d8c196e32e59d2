// wrenfold-spc: convert, inspect and check stored objects and form files.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/Commands.h"

namespace wrenfold {
namespace {

constexpr std::size_t BarWidth = 30;
constexpr std::size_t MaxShownName = 40;

// Of the terminal that progress is drawn on.
std::size_t Columns() {
  constexpr std::size_t usual = 80;
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
  return known ? size.ws_col : usual;
}

// The end of a name in at most `size` bytes, whole characters of UTF-8.
std::string_view NameEnd(std::string_view name, std::size_t size) {
  if (name.size() > size) name.remove_prefix(name.size() - size);
  while (!name.empty() && (name[0] & 0xC0) == 0x80) name.remove_prefix(1);
  return name;
}

class TTerminal : public TOutput {
 private:
  void PutLine(const std::string& text) override {
    HideBar();
    std::printf("%s\n", text.c_str());
  }
  void PutError(const std::string& text) override {
    HideBar();
    std::fflush(stdout);
    std::fprintf(stderr, "wrenfold-spc: %s\n", text.c_str());
  }
  void PutProgress(std::size_t done, std::size_t total, const std::string& what) override {
    if (!FIsTerminal || total < 2) return;
    if (done == total) return HideBar();
    const std::size_t filled = BarWidth * done / total;
    std::string line = "[" + std::string(filled, '#') + std::string(BarWidth - filled, '.') + "] " +
                       std::to_string(done) + "/" + std::to_string(total) + " ";
    // A line that wraps could not be wiped.
    const std::size_t room = Columns() - 1;
    line.resize(std::min(line.size(), room));
    line += NameEnd(what, std::min(MaxShownName, room - line.size()));
    std::fflush(stdout);
    std::fprintf(stderr, "\r\033[K%s", line.c_str());
    FBarShown = true;
  }

  void HideBar() {
    if (!FBarShown) return;
    std::fprintf(stderr, "\r\033[K");
    FBarShown = false;
  }

  bool FIsTerminal = isatty(STDERR_FILENO) != 0;
  bool FBarShown = false;
};

struct TArguments {
  std::vector<std::string> Files;
  std::string Form;
  std::string Style;
  bool InPlace = false;
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

int Run(int argc, char** argv) {
  CLI::App app{"Convert, inspect and check stored objects and form files.", "wrenfold-spc"};
  app.set_version_flag("--version", "wrenfold-spc " WRENFOLD_VERSION);
  app.require_subcommand(1);
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

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ecFine : ecTrouble;
  }
  TTerminal terminal;
  if (info->parsed()) return RunInfo(arguments.Files, terminal);
  if (convert->parsed()) return Convert(arguments, terminal);
  if (check->parsed()) return RunCheck(arguments.Files, terminal);
  return RunDiff(arguments.Files[0], arguments.Files[1], terminal);
}

// The number of a closed standard stream would go to the next file that is opened. What takes its
// place refuses what the stream is for, so that using it stays an error.
void HoldStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

// The exit code, after all that was printed arrived.
int Finish(int code) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
  std::fprintf(stderr, "wrenfold-spc: Cannot write standard output: %s\n", std::strerror(errno));
  return ecTrouble;
}

}  // namespace
}  // namespace wrenfold

int main(int argc, char** argv) {
  wrenfold::HoldStandardStreams();
  try {
    return wrenfold::Finish(wrenfold::Run(argc, argv));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "wrenfold-spc: %s\n", error.what());
    return wrenfold::ecTrouble;
  }
}
