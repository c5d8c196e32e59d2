// wrenfold-spc git-setup: how git is told to show and merge forms.
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/core/system/Files.h"
#include "tools/Commands.h"

extern char** environ;

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 9> Patterns = {
    "*.dfm", "*.xfm", "*.nfm", "*.lfm", "*.fmx", "*.sbn", "*.sbr", "*.sbe", "*.stx"};
constexpr std::string_view Attributes = "diff=wrenfold merge=wrenfold";

struct TSetting {
  const char* Key;
  const char* Value;  // behind the program, where it begins with a blank
};
constexpr TSetting Settings[] = {{"diff.wrenfold.textconv", " textconv"},
                                 {"merge.wrenfold.name", "merge of form files by meaning"},
                                 {"merge.wrenfold.driver", " merge %O %A %B -o %A"}};

std::string ValueOf(const TSetting& setting, const std::string& program) {
  return setting.Value[0] == ' ' ? program + setting.Value : setting.Value;
}

std::string AttributeLine(std::string_view pattern) {
  return fmt::format("{} {}", pattern, Attributes);
}

// Runs git and answers what it prints, without the last line end. Raises EStreamError when it
// cannot be run or is not content.
std::string Git(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "git");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  int pipe[2];
  if (::pipe(pipe) != 0) throw EStreamError(fmt::format("Cannot run git: {}", strerror(errno)));
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, pipe[0]);
  pid_t process = 0;
  const int error = posix_spawnp(&process, "git", &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(pipe[1]);
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t count = 0;
       error == 0 && (count = ::read(pipe[0], buffer.data(), buffer.size())) > 0;)
    text.append(buffer.data(), static_cast<std::size_t>(count));
  ::close(pipe[0]);
  if (error != 0) throw EStreamError(fmt::format("Cannot run git: {}", strerror(error)));
  int status = 0;
  ::waitpid(process, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw EStreamError(fmt::format("git {} failed", arguments[1]));
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

bool HasLine(const std::string& text, const std::string& line) {
  return ("\n" + text + "\n").find("\n" + line + "\n") != std::string::npos;
}

void WriteAttributes(const std::string& fileName) {
  fs::create_directories(fs::path(fileName).parent_path());
  const std::string before = FileExists(fileName) ? ReadWholeFile(fileName) : std::string();
  std::string text = before;
  for (const std::string_view pattern : Patterns) {
    const std::string line = AttributeLine(pattern);
    if (HasLine(before, line)) continue;
    if (!text.empty() && text.back() != '\n') text += '\n';
    text += line + '\n';
  }
  if (text != before) SafeWriteFile(fileName, text);
}

void Apply(const std::string& program, TOutput& output) {
  const std::string attributes = Git({"rev-parse", "--git-path", "info/attributes"});
  WriteAttributes(attributes);
  for (const TSetting& setting : Settings)
    Git({"config", "--local", setting.Key, ValueOf(setting, program)});
  output.Line(
      fmt::format("{} and the configuration of the repository name wrenfold-spc now", attributes));
}

}  // namespace

int RunGitSetup(const std::string& program, bool apply, TOutput& output) {
  try {
    if (apply) {
      Apply(program, output);
      return ecFine;
    }
    output.Line("# .gitattributes");
    for (const std::string_view pattern : Patterns) output.Line(AttributeLine(pattern));
    output.Line("# once in each clone");
    for (const TSetting& setting : Settings)
      output.Line(fmt::format("git config {} \"{}\"", setting.Key, ValueOf(setting, program)));
    return ecFine;
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  } catch (const fs::filesystem_error& error) {
    output.Error(error.what());
    return ecTrouble;
  }
}

}  // namespace wrenfold
