// What breaks at run time in forms, as far as files can prove it.
#pragma once

#include <string>
#include <vector>

#include "tools/LintSources.h"

namespace wrenfold {

struct TLintFinding {
  std::string FileName;
  std::size_t Line = 0;  // 0 where the form is no text
  std::string Path;      // "MainForm.Button1.OnClick"
  std::string Rule;  // "event", "field", "reference", "name", "ancestor", "inherited", and of the
                     // strict ones "accelerator" and "taborder"
  std::string Message;
};

struct TLintResult {
  std::vector<TLintFinding> Findings;  // of each form in the order of its components
  std::size_t Forms = 0;
  std::size_t NotChecked = 0;  // what could be wrong, but nothing here can tell
};

// Adds what is wrong with one form. The strict rules tell what is no error but hinders users.
void LintForm(TLintSources& sources, const TLintForm& form, bool strict, TLintResult& result);

}  // namespace wrenfold
