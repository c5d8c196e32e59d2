// The terminal that the command-line tools print to.
#pragma once

#include <string>

#include "tools/Commands.h"

namespace wrenfold {

// Results on standard output, trouble on standard error behind the program's name, progress as a
// bar where standard error is a terminal.
class TTerminal : public TOutput {
 public:
  explicit TTerminal(std::string program);

 private:
  void PutLine(const std::string& text) override;
  void PutError(const std::string& text) override;
  void PutProgress(std::size_t done, std::size_t total, const std::string& what) override;
  void HideBar();

  const std::string FProgram;
  const bool FIsTerminal;
  bool FBarShown = false;
};

// The number of a closed standard stream would go to the next file that is opened. What takes its
// place refuses what the stream is for, so that using it stays an error.
void HoldStandardStreams();

// The exit code, after all that was printed arrived.
int FinishOutput(const char* program, int code);

}  // namespace wrenfold
