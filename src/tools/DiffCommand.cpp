// wrenfold-spc diff: two stored objects compared by meaning, whatever their forms.
#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "tools/Commands.h"
#include "tools/StoredWalk.h"

namespace wrenfold {
namespace {

constexpr std::size_t MaxShownValue = 120;

using TLookup = std::unordered_map<std::string_view, const TFlatValue*>;

TLookup MakeLookup(const std::vector<TFlatValue>& values) {
  TLookup lookup;
  lookup.reserve(values.size());
  for (const TFlatValue& value : values) lookup.emplace(value.Path, &value);
  return lookup;
}

std::string Shown(const std::string& value) {
  return value.size() <= MaxShownValue
             ? value
             : fmt::format("{}... ({} characters)", value.substr(0, MaxShownValue), value.size());
}

// Lines for what only one side has and for what differs; true when there are none.
bool CompareValues(std::string_view kind, const std::vector<TFlatValue>& left,
                   const std::vector<TFlatValue>& right, TOutput& output) {
  bool same = true;
  const TLookup rightLookup = MakeLookup(right);
  for (const TFlatValue& value : left) {
    const auto found = rightLookup.find(value.Path);
    if (found != rightLookup.end() && found->second->Value == value.Value) continue;
    same = false;
    if (found == rightLookup.end())
      output.Line(fmt::format("- {} {}: {}", kind, value.Path, Shown(value.Value)));
    else
      output.Line(fmt::format("! {} {}: {} -> {}", kind, value.Path, Shown(value.Value),
                              Shown(found->second->Value)));
  }
  const TLookup leftLookup = MakeLookup(left);
  for (const TFlatValue& value : right) {
    if (leftLookup.contains(value.Path)) continue;
    same = false;
    output.Line(fmt::format("+ {} {}: {}", kind, value.Path, Shown(value.Value)));
  }
  return same;
}

// The components that both sides have must stand in the same order.
bool CompareOrder(const std::vector<TFlatValue>& left, const std::vector<TFlatValue>& right,
                  TOutput& output) {
  const TLookup leftLookup = MakeLookup(left);
  const TLookup rightLookup = MakeLookup(right);
  std::vector<std::string_view> leftCommon;
  std::vector<std::string_view> rightCommon;
  for (const TFlatValue& value : left)
    if (rightLookup.contains(value.Path)) leftCommon.push_back(value.Path);
  for (const TFlatValue& value : right)
    if (leftLookup.contains(value.Path)) rightCommon.push_back(value.Path);
  const auto [first, second] =
      std::mismatch(leftCommon.begin(), leftCommon.end(), rightCommon.begin(), rightCommon.end());
  if (first == leftCommon.end() || second == rightCommon.end()) return true;
  output.Line(fmt::format("! order of components: {} stands where {} was", *second, *first));
  return false;
}

bool CompareObjects(const TFlatObject& left, const TFlatObject& right, TOutput& output) {
  const bool components = CompareValues("component", left.Components, right.Components, output);
  const bool order = CompareOrder(left.Components, right.Components, output);
  const bool values = CompareValues("property", left.Values, right.Values, output);
  return components && order && values;
}

TStoredFile Load(const std::string& name) {
  try {
    TStoredFile file = ParseStoredFile(ReadInput(name));
    if (file.Form == TStoredForm::Extended)
      throw EReadError("the extended form has no class names and cannot be compared");
    return file;
  } catch (const Exception& error) {
    throw EReadError(name + ": " + error.what());
  }
}

bool CompareFiles(const TStoredFile& left, const TStoredFile& right, TOutput& output) {
  bool same = true;
  if (left.Roots.size() != right.Roots.size()) {
    output.Line(fmt::format("! objects: {} -> {}", left.Roots.size(), right.Roots.size()));
    same = false;
  }
  const std::size_t count = std::min(left.Roots.size(), right.Roots.size());
  for (std::size_t i = 0; i < count; ++i) {
    const TFlatObject leftObject = FlattenObject(left.Stream(left.Roots[i]), true);
    const TFlatObject rightObject = FlattenObject(right.Stream(right.Roots[i]), true);
    if (!CompareObjects(leftObject, rightObject, output)) same = false;
  }
  return same;
}

}  // namespace

int RunDiff(const std::string& left, const std::string& right, TOutput& output) {
  try {
    return CompareFiles(Load(left), Load(right), output) ? ecFine : ecFindings;
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  }
}

}  // namespace wrenfold
