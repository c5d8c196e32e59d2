// The places where the user wants the program to stop.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "debugger/Backend.h"

namespace wrenfold {

// Breakpoints at lines and addresses, one at each place at the most.
class TBreakpoints {
 public:
  const std::vector<TBreakpoint>& All() const { return FAll; }
  // The one at the same place as this, or null.
  const TBreakpoint* Find(const TBreakpoint& place) const;
  std::set<int> LinesOf(const std::string& fileName) const;

  // Adds it; one that is at its place goes.
  void Put(const TBreakpoint& breakpoint);
  void Remove(const TBreakpoint& place);
  void Toggle(const TBreakpoint& place);
  // The text has changed: its breakpoints, in their order, are at these lines now. Conditions go
  // with them; where some are gone, those whose line is among the new ones keep theirs.
  void Move(const std::string& fileName, const std::set<int>& lines);

  // Those at lines, to be kept: one a line of the text. What is no breakpoint is left out.
  std::string ToText() const;
  static TBreakpoints FromText(const std::string& text);

 private:
  std::vector<TBreakpoint> FAll;
};

}  // namespace wrenfold
