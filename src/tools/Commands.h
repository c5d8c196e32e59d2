// The commands of wrenfold-spc, without the command line.
#pragma once

#include <string>
#include <vector>

#include "tools/StoredFile.h"

namespace wrenfold {

// The program's exit codes.
enum TExitCode { ecFine = 0, ecFindings = 1, ecTrouble = 2 };

// Where a command's lines go; tests collect them.
class TOutput {
 public:
  virtual ~TOutput() = default;
  virtual void Line(const std::string& text) = 0;   // a result
  virtual void Error(const std::string& text) = 0;  // trouble with an input
  // Step `done` of `total` of a long job; drawn on a terminal only.
  virtual void Progress(std::size_t done, std::size_t total, const std::string& what) = 0;
};

// The bytes of a file; "-" is standard input.
std::string ReadInput(const std::string& name);
// Replaces a file safely; "-" is standard output.
void WriteOutput(const std::string& name, std::string_view bytes);
// Folders become the form and specification files in them, at any depth, in order of name.
std::vector<std::string> ListFiles(const std::vector<std::string>& names);

int RunInfo(const std::vector<std::string>& names, TOutput& output);
int RunCheck(const std::vector<std::string>& names, TOutput& output);
int RunDiff(const std::string& left, const std::string& right, TOutput& output);

struct TConversion {
  TStoredForm Form = TStoredForm::Text;
  const TFormTextStyle* Style = &DefaultFormTextStyle();
};
int RunConvert(const std::string& from, const std::string& to, const TConversion& conversion,
               TOutput& output);
// Converts files where they are; a file whose bytes would not change is not touched.
int RunConvertInPlace(const std::vector<std::string>& names, const TConversion& conversion,
                      TOutput& output);

}  // namespace wrenfold
