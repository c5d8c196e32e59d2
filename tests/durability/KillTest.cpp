// Kills a process again and again while it saves the settings, and looks at the file each time.
//
// A writer is this program once more: it saves by the suite's own saving, a new round each time,
// and tells each round when it is done. What the file holds is then the last round that was told,
// or the one that was under way, to the byte; anything else ends the test.
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "manager/rkExpData.h"
#include "manager/rkSettingsFile.h"
#include "platform/core/system/Files.h"

namespace {

using namespace wrenfold;
namespace fs = std::filesystem;

constexpr unsigned LongestWait = 15000;  // microseconds until the kill

struct TSettings {
  TSettings() { Root.CustomData->Add(&Data, "Data"); }
  // Values that tell the round from every other, of changing size.
  void Fill(long round) {
    Data.SaveSettingShortCut = TShortCutString(fmt::format("Ctrl+F{}", round % 12 + 1));
    std::string text;
    for (long line = 0; line < 20 + round % 97 * 10; ++line)
      text += fmt::format("round {} line {}\r\n", round, line);
    Data.Setting->SetText(text);
  }
  TExpData Root;
  TEditorFormData Data;
};

[[noreturn]] void Write(const std::string& fileName, long round) {
  TSettings settings;
  TSettingsFile file(fileName);
  file.Load(settings.Root, false);
  for (;; ++round) {
    settings.Fill(round);
    file.Save(settings.Root);
    if (::write(STDOUT_FILENO, &round, sizeof round) != sizeof round) std::exit(1);
  }
}

// What a whole file of the round holds.
std::string BytesOf(long round, const std::string& folder) {
  static TSettings settings;
  const std::string fileName = folder + "/expected";
  settings.Fill(round);
  TSettingsFile(fileName).Save(settings.Root);
  const std::string bytes = ReadWholeFile(fileName);
  fs::remove(fileName);
  return bytes;
}

class TKills {
 public:
  TKills(std::string program, std::string folder)
      : FProgram(std::move(program)), FFolder(std::move(folder)) {}

  // Answers false, and says why, when the file is none that was written.
  bool Once(unsigned wait) {
    Start();
    ::usleep(wait);
    ::kill(FWriter, SIGKILL);
    ::waitpid(FWriter, nullptr, 0);
    for (long told = 0; ::read(FPipe, &told, sizeof told) == sizeof told;) FTold = told;
    ::close(FPipe);
    CountLeftOvers();
    return Check();
  }
  void Report() const {
    fmt::print(
        "{} kills while {} rounds were saved: {} hit a file under way, {} between the file and "
        "the word of it; each time the file was one of those written\n",
        FKills, FTold, FLeftOvers, FUntold);
  }

 private:
  std::string FileName() const { return FFolder + "/ExpData.spc"; }

  void Start() {
    int ends[2];
    if (::pipe(ends) != 0) std::exit(2);
    const std::string round = std::to_string(FTold + 1);
    FWriter = ::fork();
    if (FWriter == 0) {
      ::dup2(ends[1], STDOUT_FILENO);
      ::execl(FProgram.c_str(), FProgram.c_str(), "--write", FileName().c_str(), round.c_str(),
              nullptr);
      ::_exit(127);
    }
    ::close(ends[1]);
    FPipe = ends[0];
    // From the first round on, so that the time of starting is not what is killed.
    long told = 0;
    if (::read(FPipe, &told, sizeof told) != sizeof told) {
      fmt::print(stderr, "The writer did not save anything\n");
      std::exit(2);
    }
    FTold = told;
  }
  void CountLeftOvers() {
    ++FKills;
    const auto files = std::distance(fs::directory_iterator(FFolder), fs::directory_iterator());
    FLeftOvers += files > 1 ? 1 : 0;
  }
  bool Check() {
    const std::string found = ReadWholeFile(FileName());
    if (found == BytesOf(FTold, FFolder)) return true;
    if (found != BytesOf(FTold + 1, FFolder)) {
      fmt::print(stderr, "Kill {}: {} has {} bytes and is neither round {} nor the next one\n",
                 FKills, FileName(), found.size(), FTold);
      return false;
    }
    ++FTold;
    ++FUntold;
    return true;
  }

  std::string FProgram, FFolder;
  pid_t FWriter = 0;
  int FPipe = -1;
  long FTold = 0;
  int FKills = 0, FLeftOvers = 0, FUntold = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::string_view(argv[1]) == "--write") Write(argv[2], std::atol(argv[3]));
  if (argc != 3) {
    fmt::print(stderr, "Usage: {} COUNT FOLDER\n", argv[0]);
    return 2;
  }
  const std::string folder = argv[2];
  fs::remove_all(folder);
  fs::create_directories(folder);
  std::random_device seed;
  std::mt19937 random(seed());
  TKills kills(fs::canonical("/proc/self/exe").string(), folder);
  for (int kill = std::atoi(argv[1]); kill > 0; --kill)
    if (!kills.Once(static_cast<unsigned>(random() % LongestWait))) return 1;
  kills.Report();
  return 0;
}
