// The list of the project's forms or units: which modules, in which order, apart from any window.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ide/rkOTAUtils.h"

namespace wrenfold {

enum TViewModuleMode : std::uint8_t { svmForm, svmUnit };

struct TListedModule {
  std::string Name;  // of the form or of the unit, as the mode says
  std::string FileName, FormName, DesignClass;
  TIntf<IOTAModuleInfo> Info;
};

// All modules of a mode in their order, and those of them that a filter shows.
class TModuleList {
 public:
  // Takes the modules that have a name in that mode and are no package and no resource, sorted by
  // name in the order of the user's language. With grouped, units with a form stand before those
  // without one. The filter stays in force.
  void FillModuleList(const TModuleInfos& modules, TViewModuleMode mode, bool grouped);
  // Shows what matches the text, the best first, instead of the sorted list; all for no text.
  void SetFilter(const std::string& text);

  int Count() const { return static_cast<int>(FShown.size()); }
  const TListedModule& operator[](int index) const;
  // Where the units without a form begin, -1 where there is no such border.
  int Separator() const { return FFilter.empty() ? FSeparator : -1; }
  // The first shown module with that file, letter case ignored; -1 when there is none.
  int IndexOfFile(std::string_view fileName) const;

 private:
  void ShowMatches();

  std::vector<TListedModule> FModules;
  std::vector<std::size_t> FShown;
  std::string FFilter;
  int FSeparator = -1;
};

// How well a name matches a text, letter case ignored; less is better, negative is not at all. The
// text as it stands is better than letters that start words ("MainForm", "Main_form", "Unit2"), at
// the start of a word better than inside, in a short name better than in a long one.
int MatchRank(std::string_view name, std::string_view text);

}  // namespace wrenfold
