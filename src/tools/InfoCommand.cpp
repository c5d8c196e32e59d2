// wrenfold-spc info: what a file is and holds.
#include <fmt/format.h>

#include <array>

#include "tools/Commands.h"
#include "tools/StoredWalk.h"

namespace wrenfold {
namespace {

constexpr std::string_view WrapperClass = "TWrapper";

using TTagCounts = std::array<std::size_t, MaxValueType + 1>;

TStoredPart RootPart(TByteReader reader) {
  reader.ReadSignature();
  return ReadStoredPart(reader, TPartKind::Component);
}

bool IsSpecification(const TStoredFile& file) {
  if (file.Header.Present || file.Form == TStoredForm::Extended) return true;
  for (const TStoredRoot& root : file.Roots)
    if (!root.Label.empty() || MeaningOf(RootPart(file.Reader(root))) == WrapperClass) return true;
  return false;
}

struct TCounts {
  std::size_t Components = 0;
  std::size_t Properties = 0;
};

// Adds the tags of a root's values to `tags`.
TCounts CountParts(const TStoredFile& file, const TStoredRoot& root, TTagCounts& tags) {
  TCounts counts;
  const auto count = [&](const TStoredPart& part, std::size_t, std::size_t) {
    if (part.Kind == TPartKind::Component) ++counts.Components;
    if (part.Kind == TPartKind::Property) ++counts.Properties;
    if (!part.Value.empty()) ++tags[static_cast<std::size_t>(part.Type)];
  };
  if (file.Form == TStoredForm::Extended) WalkPropertyLists(file.Reader(root), count);
  else WalkParts(file.Reader(root), count);
  return counts;
}

std::string RootLine(const TStoredFile& file, const TStoredRoot& root, const TCounts& counts) {
  if (file.Form == TStoredForm::Extended)
    return fmt::format("  property lists without class names: {} properties", counts.Properties);
  const TStoredPart part = RootPart(file.Reader(root));
  return fmt::format("  {}: {}, {} components, {} properties",
                     part.Name.empty() ? part.ClassName : part.Name, MeaningOf(part),
                     counts.Components, counts.Properties);
}

void PrintInfo(const std::string& name, const TStoredFile& file, TOutput& output) {
  // All roots are counted, and found readable, before anything is said.
  TTagCounts tags{};
  std::vector<TCounts> counts;
  for (const TStoredRoot& root : file.Roots) counts.push_back(CountParts(file, root, tags));
  output.Line(fmt::format("{}: {}, {}", name, IsSpecification(file) ? "specification" : "form",
                          StoredFormName(file.Form)));
  if (file.Header.Present)
    output.Line(fmt::format("  data header, description \"{}\"", file.Header.Description));
  for (std::size_t i = 0; i < counts.size(); ++i)
    output.Line(RootLine(file, file.Roots[i], counts[i]));
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
      output.Error(NamedTrouble(name, error));
      result = ecTrouble;
    }
  }
  return result;
}

}  // namespace wrenfold
