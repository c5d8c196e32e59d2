#include "host/debug/Breakpoints.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <sstream>

namespace wrenfold {

namespace {

bool SamePlace(const TBreakpoint& left, const TBreakpoint& right) {
  return left.Place == right.Place && left.Address == right.Address;
}

bool ReadNumber(const std::string& text, int& number) {
  const char* end = text.data() + text.size();
  return std::from_chars(text.data(), end, number).ptr == end && !text.empty();
}

}  // namespace

const TBreakpoint* TBreakpoints::Find(const TBreakpoint& place) const {
  const auto found = std::find_if(FAll.begin(), FAll.end(),
                                  [&](const auto& each) { return SamePlace(each, place); });
  return found == FAll.end() ? nullptr : &*found;
}

std::set<int> TBreakpoints::LinesOf(const std::string& fileName) const {
  std::set<int> lines;
  for (const TBreakpoint& breakpoint : FAll)
    if (breakpoint.Place.File == fileName && breakpoint.Place) lines.insert(breakpoint.Place.Line);
  return lines;
}

void TBreakpoints::Put(const TBreakpoint& breakpoint) {
  const auto found = std::find_if(FAll.begin(), FAll.end(),
                                  [&](const auto& each) { return SamePlace(each, breakpoint); });
  if (found == FAll.end()) FAll.push_back(breakpoint);
  else *found = breakpoint;
}

void TBreakpoints::Remove(const TBreakpoint& place) {
  std::erase_if(FAll, [&](const auto& each) { return SamePlace(each, place); });
}

void TBreakpoints::Toggle(const TBreakpoint& place) {
  if (Find(place) != nullptr) Remove(place);
  else Put(place);
}

void TBreakpoints::Move(const std::string& fileName, const std::set<int>& lines) {
  const std::set<int> before = LinesOf(fileName);
  std::vector<TBreakpoint> moved;
  auto to = lines.begin();
  for (const int line : before) {
    TBreakpoint breakpoint = *Find({.Place = {fileName, line}});
    if (before.size() == lines.size()) breakpoint.Place.Line = *to++;
    else if (!lines.contains(line)) continue;
    moved.push_back(std::move(breakpoint));
  }
  std::erase_if(FAll, [&](const auto& each) { return each.Place.File == fileName; });
  for (const TBreakpoint& breakpoint : moved) Put(breakpoint);
  for (const int line : lines)
    if (Find({.Place = {fileName, line}}) == nullptr) Put({.Place = {fileName, line}});
}

std::string TBreakpoints::ToText() const {
  std::string text;
  for (const TBreakpoint& breakpoint : FAll)
    if (breakpoint.Place)
      text += fmt::format("{}\t{}\t{}\t{}\n", breakpoint.Place.File, breakpoint.Place.Line,
                          breakpoint.PassCount, breakpoint.Condition);
  return text;
}

TBreakpoints TBreakpoints::FromText(const std::string& text) {
  TBreakpoints breakpoints;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream parts(line);
    std::string file, number, passes, condition;
    std::getline(parts, file, '\t');
    std::getline(parts, number, '\t');
    std::getline(parts, passes, '\t');
    std::getline(parts, condition);
    TBreakpoint breakpoint;
    breakpoint.Place.File = file;
    breakpoint.Condition = condition;
    if (file.empty() || !ReadNumber(number, breakpoint.Place.Line) ||
        !ReadNumber(passes, breakpoint.PassCount) || !breakpoint.Place)
      continue;
    breakpoints.Put(breakpoint);
  }
  return breakpoints;
}

}  // namespace wrenfold
