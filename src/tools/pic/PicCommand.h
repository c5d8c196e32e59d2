// Makes pictures of form files: wrenfold-pic without its command line.
#pragma once

#include <string>
#include <vector>

#include "tools/Commands.h"

namespace wrenfold {

struct TPicOptions {
  std::string Folder;          // where the pictures go; made when it is missing
  std::string Format = "png";  // or "svg"
  double Scale = 1;
  bool Dark = false;
  bool List = false;  // tell for each class how it was drawn
};

// Draws forms, all forms of folders and of projects. Files that cannot be read or drawn are told
// and counted. Needs a QApplication. Answers the exit code.
int RunPic(const std::vector<std::string>& names, const TPicOptions& options, TOutput& output);

}  // namespace wrenfold
