// What new projects and forms consist of when they begin.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

enum class TNewProject { Console, Forms };

// A file that does not exist yet.
struct TNewFile {
  std::string FileName;
  std::string Text;
};

// The files of a new project; the first is the one that opens it. By the extension of the name: a
// project file (.lpi) with its source, else a source (.dpr).
std::vector<TNewFile> NewProjectFiles(TNewProject kind, const std::string& fileName);

// A unit of that file name with an empty form, "Unit2" with "Form2" and its class; the form file
// has that extension.
std::vector<TNewFile> NewFormFiles(const std::string& unitFile, const std::string& formName,
                                   std::string_view formExtension);

// Writes all of them. Raises EFCreateError, before anything is written, when one of them, the first
// aside, which the user chose, is there already; and when writing fails.
void WriteNewFiles(const std::vector<TNewFile>& files);

}  // namespace wrenfold
