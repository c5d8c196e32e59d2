// The commands of wrenfold-spc, without the command line.
#pragma once

#include <string>
#include <vector>

#include "tools/Excerpt.h"
#include "tools/StoredFile.h"

namespace wrenfold {

// The program's exit codes.
enum TExitCode { ecFine = 0, ecFindings = 1, ecTrouble = 2 };

// Where a command's lines go; tests collect them. What files hold may stand in them: control codes
// are shown as #n.
class TOutput {
 public:
  virtual ~TOutput() = default;
  // A result.
  void Line(const std::string& text) { PutLine(Printable(text)); }
  // Trouble with an input.
  void Error(const std::string& text) { PutError(Printable(text)); }
  // Step `done` of `total` of a long job; drawn on a terminal only.
  void Progress(std::size_t done, std::size_t total, const std::string& what) {
    PutProgress(done, total, Printable(what));
  }

 private:
  virtual void PutLine(const std::string& text) = 0;
  virtual void PutError(const std::string& text) = 0;
  virtual void PutProgress(std::size_t done, std::size_t total, const std::string& what) = 0;
};

// The bytes of a file; "-" is standard input.
std::string ReadInput(const std::string& name);
// Replaces a file safely. "-" is standard output; into that, devices, pipes and names of open
// descriptors (/dev/stdout, /dev/fd/3) the bytes are written as they come.
void WriteOutput(const std::string& name, std::string_view bytes);
// Raises EFCreateError when the file cannot be replaced: standard input, a descriptor, a device.
void RequireReplaceable(const std::string& name);
// Folders become the form and specification files in them, at any depth, in order of name. A folder
// that cannot be listed stands in the list itself: reading it fails in its turn.
std::vector<std::string> ListFiles(const std::vector<std::string>& names);
// The message of an error with the name of the file in front, unless it names it already.
std::string NamedTrouble(const std::string& name, const Exception& error);

int RunInfo(const std::vector<std::string>& names, TOutput& output);
int RunCheck(const std::vector<std::string>& names, TOutput& output);
// The text of a form in another form; what is no form, or text already, as it stands.
int RunTextConv(const std::string& name, TOutput& output);
// Three-way merge of forms; the result goes to `to`, the conflicts are the output's lines, or its
// errors where the result goes to standard output. An empty base is none.
struct TMergeFiles {
  std::string Base;
  std::string Ours;
  std::string Theirs;
  std::string To;
};
int RunMerge(const TMergeFiles& files, TOutput& output);
// The attributes and drivers by which git shows and merges forms, for a repository that the current
// folder is in: as lines, or written into its own configuration. `program` is how git calls this
// one.
int RunGitSetup(const std::string& program, bool apply, TOutput& output);
// Changes properties, each "component.path=value", the value written as in a text form or, with
// `asText`, as it is. Nothing is written when one of them cannot be.
int RunSet(const std::string& name, const std::vector<std::string>& changes, bool asText,
           TOutput& output);
// Prints a value as a text form has it; ecFindings when the form does not store it.
int RunGet(const std::string& name, const std::string& path, TOutput& output);
int RunDiff(const std::string& left, const std::string& right, TOutput& output);

struct TLintOptions {
  bool Strict = false;
  bool Json = false;
};
// Files are forms, projects and folders.
int RunLint(const std::vector<std::string>& names, const TLintOptions& options, TOutput& output);

struct TConversion {
  TStoredForm Form = TStoredForm::Text;
  // Null when none was asked for: that is the default style, and what is in the form already keeps
  // its bytes, since another style may have more digits.
  const TFormTextStyle* Style = nullptr;
};
// Text that is text already gets its line ends as CR LF in any case.
int RunConvert(const std::string& from, const std::string& to, const TConversion& conversion,
               TOutput& output);
// Converts files where they are; a file whose bytes would not change is not touched.
int RunConvertInPlace(const std::vector<std::string>& names, const TConversion& conversion,
                      TOutput& output);

}  // namespace wrenfold
