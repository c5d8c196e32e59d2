#include "tools/Terminal.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

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

}  // namespace

TTerminal::TTerminal(std::string program)
    : FProgram(std::move(program)), FIsTerminal(isatty(STDERR_FILENO) != 0) {}

void TTerminal::PutLine(const std::string& text) {
  HideBar();
  std::printf("%s\n", text.c_str());
}

void TTerminal::PutError(const std::string& text) {
  HideBar();
  std::fflush(stdout);
  std::fprintf(stderr, "%s: %s\n", FProgram.c_str(), text.c_str());
}

void TTerminal::PutProgress(std::size_t done, std::size_t total, const std::string& what) {
  if (!FIsTerminal || total < 2) return;
  if (done == total) return HideBar();
  const std::size_t filled = BarWidth * done / total;
  std::string line =
      fmt::format("[{:#<{}}{:.<{}}] {}/{} ", "", filled, "", BarWidth - filled, done, total);
  // A line that wraps could not be wiped.
  const std::size_t room = Columns() - 1;
  line.resize(std::min(line.size(), room));
  line += NameEnd(what, std::min(MaxShownName, room - line.size()));
  std::fflush(stdout);
  std::fprintf(stderr, "\r\033[K%s", line.c_str());
  FBarShown = true;
}

void TTerminal::HideBar() {
  if (!FBarShown) return;
  std::fprintf(stderr, "\r\033[K");
  FBarShown = false;
}

void HoldStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

int FinishOutput(const char* program, int code) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
  std::fprintf(stderr, "%s: Cannot write standard output: %s\n", program, std::strerror(errno));
  return ecTrouble;
}

}  // namespace wrenfold
