// wrenfold-spc merge and textconv: forms where a version control system compares and merges them.
#include <fmt/format.h>

#include "tools/Commands.h"
#include "tools/FormDocument.h"
#include "tools/FormMerge.h"

namespace wrenfold {
namespace {

// Null for an empty file, which stands for none.
std::unique_ptr<TFormDocument> ReadDocument(const std::string& name) {
  std::string bytes = ReadInput(name);
  if (bytes.empty()) return nullptr;
  try {
    return std::make_unique<TFormDocument>(std::move(bytes));
  } catch (const Exception& error) {
    throw EReadError(NamedTrouble(name, error));
  }
}

std::unique_ptr<TFormDocument> NeedDocument(const std::string& name) {
  auto document = ReadDocument(name);
  if (document == nullptr) throw EReadError(name + ": expected a form, found an empty file");
  return document;
}

}  // namespace

int RunMerge(const TMergeFiles& files, TOutput& output) {
  try {
    const auto base = ReadDocument(files.Base);
    const auto ours = NeedDocument(files.Ours);
    const auto theirs = NeedDocument(files.Theirs);
    const std::vector<TMergeConflict> conflicts =
        MergeForms(base != nullptr ? &base->Root() : nullptr, ours->Root(), theirs->Root());
    WriteOutput(files.To, ours->Bytes());
    for (const TMergeConflict& conflict : conflicts) {
      const std::string line = fmt::format("{}: {} | {} | {}", conflict.Path, conflict.Base,
                                           conflict.Ours, conflict.Theirs);
      if (files.To == "-") output.Error(line);
      else output.Line(line);
    }
    return conflicts.empty() ? ecFine : ecFindings;
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  }
}

int RunTextConv(const std::string& name, TOutput& output) {
  std::string bytes;
  try {
    bytes = ReadInput(name);
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  }
  TByteWriter text;
  try {
    const TStoredFile file = ParseStoredFile(bytes);
    if (file.Form != TStoredForm::Text)
      RenderStoredFile(file, TStoredForm::Text, DefaultFormTextStyle(), text);
  } catch (const Exception&) {
    text.Clear();
  }
  try {
    WriteOutput("-", text.Size() != 0 ? text.View() : std::string_view(bytes));
    return ecFine;
  } catch (const Exception& error) {
    output.Error(error.what());
    return ecTrouble;
  }
}

}  // namespace wrenfold
