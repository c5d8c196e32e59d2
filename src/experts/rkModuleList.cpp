#include "experts/rkModuleList.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// A module is left out when its extension is a part of this.
constexpr std::string_view NoModuleExtensions = ".dcp.res";

constexpr int NoMatch = -1;
// One kind of match is better than another whatever the length of the names.
constexpr int RankOfKind = 1 << 16;
enum TMatchKind : int { mkWordStart, mkInside, mkInitials };

bool IsListed(const std::string& name, const std::string& fileName) {
  const std::string extension = ExtractFileExt(fileName);
  return !name.empty() && !fileName.empty() &&
         (extension.empty() || NoModuleExtensions.find(extension) == std::string_view::npos);
}

bool IsLetter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0 || (static_cast<unsigned char>(c) & 0x80);
}

bool StartsWord(std::string_view name, std::size_t at) {
  if (at == 0) return true;
  const char before = name[at - 1], here = name[at];
  if (!IsLetter(here)) return IsLetter(before);
  if (!IsLetter(before)) return true;
  return std::isupper(static_cast<unsigned char>(here)) != 0 &&
         std::isupper(static_cast<unsigned char>(before)) == 0;
}

bool MatchesInitials(std::string_view name, std::string_view text) {
  std::size_t wanted = 0;
  for (std::size_t at = 0; at < name.size() && wanted < text.size(); ++at) {
    if (!StartsWord(name, at)) continue;
    if (LowerCase(name.substr(at, 1)) == text.substr(wanted, 1)) ++wanted;
  }
  return wanted == text.size();
}

int KindOfMatch(std::string_view name, std::string_view text) {
  const std::string lowered = LowerCase(name);
  bool inside = false;
  for (auto at = lowered.find(text); at != std::string::npos; at = lowered.find(text, at + 1)) {
    if (StartsWord(name, at)) return mkWordStart;
    inside = true;
  }
  if (inside) return mkInside;
  return MatchesInitials(name, text) ? mkInitials : NoMatch;
}

}  // namespace

int MatchRank(std::string_view name, std::string_view text) {
  const int kind = KindOfMatch(name, LowerCase(text));
  if (kind == NoMatch) return NoMatch;
  return kind * RankOfKind + std::min(static_cast<int>(name.size()), RankOfKind - 1);
}

void TModuleList::FillModuleList(const TModuleInfos& modules, TViewModuleMode mode, bool grouped) {
  std::vector<std::pair<std::string, TListedModule>> keyed;
  for (const auto& info : modules) {
    TListedModule module{mode == svmForm ? info->GetFormName() : info->GetName(),
                         info->GetFileName(), info->GetFormName(), info->GetDesignClass(), info};
    if (IsListed(module.Name, module.FileName))
      keyed.emplace_back(AnsiSortKey(module.Name), std::move(module));
  }
  std::ranges::stable_sort(
      keyed, {}, [](const auto& each) -> auto& { return each.first; });
  FModules.clear();
  for (auto& [key, module] : keyed) FModules.push_back(std::move(module));
  FSeparator = -1;
  if (grouped && mode == svmUnit) {
    const auto hasForm = [](const TListedModule& module) { return !module.FormName.empty(); };
    const auto border = std::ranges::stable_partition(FModules, hasForm).begin();
    FSeparator = static_cast<int>(border - FModules.begin());
    if (FSeparator == 0 || border == FModules.end()) FSeparator = -1;
  }
  ShowMatches();
}

void TModuleList::SetFilter(const std::string& text) {
  FFilter = text;
  ShowMatches();
}

void TModuleList::ShowMatches() {
  FShown.resize(FModules.size());
  std::iota(FShown.begin(), FShown.end(), std::size_t{0});
  if (FFilter.empty()) return;
  std::vector<int> ranks;
  for (const TListedModule& module : FModules) ranks.push_back(MatchRank(module.Name, FFilter));
  std::erase_if(FShown, [&](std::size_t index) { return ranks[index] == NoMatch; });
  std::ranges::stable_sort(FShown, {}, [&](std::size_t index) { return ranks[index]; });
}

const TListedModule& TModuleList::operator[](int index) const {
  return FModules[FShown[static_cast<std::size_t>(index)]];
}

int TModuleList::IndexOfFile(std::string_view fileName) const {
  for (int i = 0; i < Count(); ++i)
    if (EqualText((*this)[i].FileName, fileName)) return i;
  return -1;
}

}  // namespace wrenfold
