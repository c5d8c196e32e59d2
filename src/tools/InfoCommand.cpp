// wrenfold-spc info: what a file is and holds.
#include <fmt/format.h>

#include "tools/Commands.h"
#include "tools/StoredWalk.h"

namespace wrenfold {
namespace {

constexpr std::string_view WrapperClass = "TWrapper";

bool IsSpecification(const TStoredFile& file, const std::vector<TFlatObject>& roots) {
  if (file.Header.Present || file.Form == TStoredForm::Extended) return true;
  for (std::size_t i = 0; i < roots.size(); ++i)
    if (!file.Roots[i].Label.empty() || roots[i].Components.front().Value == WrapperClass)
      return true;
  return false;
}

void AddTags(const TFlatObject& object, std::array<std::size_t, MaxValueType + 1>& counts) {
  for (std::size_t tag = 0; tag < counts.size(); ++tag) counts[tag] += object.TagCounts[tag];
}

void PrintRoot(const TFlatObject& root, TOutput& output) {
  if (root.Components.empty()) {
    output.Line(
        fmt::format("  property lists without class names: {} properties", root.PropertyCount));
    return;
  }
  const TFlatValue& first = root.Components.front();
  output.Line(fmt::format("  {}: {}, {} components, {} properties", first.Path, first.Value,
                          root.Components.size(), root.PropertyCount));
}

void PrintInfo(const std::string& name, const TStoredFile& file, TOutput& output) {
  std::vector<TFlatObject> roots;
  std::array<std::size_t, MaxValueType + 1> tags{};
  for (const TStoredRoot& root : file.Roots) {
    const std::string_view stream = file.Stream(root);
    roots.push_back(file.Form == TStoredForm::Extended ? CountProperties(stream)
                                                       : FlattenObject(stream, false));
    AddTags(roots.back(), tags);
  }
  output.Line(fmt::format("{}: {}, {}", name,
                          IsSpecification(file, roots) ? "specification" : "form",
                          StoredFormName(file.Form)));
  if (file.Header.Present)
    output.Line(fmt::format("  data header, description \"{}\"", file.Header.Description));
  for (const TFlatObject& root : roots) PrintRoot(root, output);
  std::string used;
  for (std::size_t tag = 0; tag < tags.size(); ++tag)
    if (tags[tag] != 0)
      used += fmt::format(" {} {}", ValueTypeName(static_cast<TValueType>(tag)), tags[tag]);
  output.Line("  value tags:" + used);
}

}  // namespace

int RunInfo(const std::vector<std::string>& names, TOutput& output) {
  int result = ecFine;
  for (const std::string& name : ListFiles(names)) {
    try {
      PrintInfo(name, ParseStoredFile(ReadInput(name)), output);
    } catch (const Exception& error) {
      output.Error(name + ": " + error.what());
      result = ecTrouble;
    }
  }
  return result;
}

}  // namespace wrenfold
