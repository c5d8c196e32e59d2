#include "host/documents/FieldDeclarations.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "host/documents/Modules.h"
#include "platform/core/stream/ValueTypes.h"
#include "project/UnitEdits.h"

namespace wrenfold {

namespace {

using TComponents = std::vector<const TDesignComponent*>;

bool HasFlag(const TDesignComponent& component, std::uint8_t flag) {
  std::int32_t position = 0;
  return (component.FilerFlags(position) & flag) != 0;
}

// The component and what is inside it, as far as it belongs to the class of the form: inherited
// components are declared by the base, those of a frame by the frame.
TComponents DeclaredOf(const TComponents& components) {
  TComponents all = components;
  for (std::size_t i = 0; i < all.size(); ++i)
    if (!HasFlag(*all[i], ffInline))
      all.insert(all.end(), all[i]->Children().begin(), all[i]->Children().end());
  std::erase_if(all, [](const TDesignComponent* each) {
    return each->Name().empty() || HasFlag(*each, ffInherited);
  });
  return all;
}

std::size_t HashOf(const std::string& text) {
  return std::hash<std::string>()(text);
}

std::string_view ClassOf(TFormEditor& form) {
  return form.Document()->Root().StoredClassName();
}

// One edit that makes the second text of the first.
void Replace(TUnitDocument& document, const std::string& before, const std::string& after) {
  const auto same = std::ranges::mismatch(before, after);
  const std::size_t begin = static_cast<std::size_t>(same.in1 - before.begin());
  std::size_t tail = 0;
  const std::size_t most = std::min(before.size(), after.size()) - begin;
  while (tail < most && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;
  document.Replace(begin, before.size() - tail - begin,
                   after.substr(begin, after.size() - tail - begin));
}

}  // namespace

// The source of the unit that declares the class of the form, or null.
TSourceEditor* TFieldDeclarations::DeclaringSource() const {
  const TModule* module = FForm.Module();
  if (module == nullptr) return nullptr;
  for (const TIntf<TSourceEditor>& source : module->Sources()) {
    if (IsFormFileName(source->FileName())) continue;
    const std::string text = source->Document().Text();
    const TUnitSource unit = ParseUnitSource(text, source->FileName());
    const TClassDeclaration* declared = unit.FindClass(ClassOf(FForm));
    if (declared != nullptr && !declared->Text.Empty()) return source.get();
  }
  return nullptr;
}

// The text goes back or forth by one of its own steps, if that leads where it should.
bool TFieldDeclarations::Turn(TUnitDocument& document, bool back, const TTextStep& step) {
  const std::size_t from = back ? step.After : step.Before, to = back ? step.Before : step.After;
  if (HashOf(document.Text()) != from) return false;
  if (from == to) return true;
  const auto turn = [&](bool undo) { undo ? document.Undo() : document.Redo(); };
  turn(back);
  const std::size_t now = HashOf(document.Text());
  if (now != to && now != from) turn(!back);
  return now == to;
}

// Steps that changed nothing in the text count as well: both histories stay side by side.
bool TFieldDeclarations::TurnLast(TUnitDocument& document, bool back) {
  std::vector<TTextStep>& steps = back ? FDone : FUndone;
  if (steps.empty()) return false;
  const TTextStep step = steps.back();
  steps.pop_back();
  if (!Turn(document, back, step)) return false;
  (back ? FUndone : FDone).push_back(step);
  return true;
}

std::string TFieldDeclarations::Changed(std::string text, const TSourceEditor& source,
                                        const TFormHistory& history) {
  const std::string_view className = ClassOf(FForm);
  const auto apply = [&](const auto& edit) {
    if (edit) text = ApplyEdits(std::move(text), {*edit});
    return edit.has_value();
  };
  const auto unit = [&] { return ParseUnitSource(text, source.FileName()); };
  for (const TFormHistory::TRenamed& each : history.Renamed())
    apply(RenameField(unit(), className, each.Before, each.Component->Name()));
  for (const TDesignComponent* each : DeclaredOf(history.Removed()))
    if (!apply(RemoveField(unit(), text, className, each->Name()))) FWithoutField.insert(each);
  for (const TDesignComponent* each : DeclaredOf(history.Added()))
    if (FWithoutField.erase(each) == 0 || history.Move() == TFormHistory::TMove::Done)
      apply(AddField(unit(), text, className, each->Name(), each->StoredClassName()));
  return text;
}

void TFieldDeclarations::Follow(const TFormHistory& history) {
  if (history.Added().empty() && history.Removed().empty() && history.Renamed().empty()) return;
  const bool back = history.Move() == TFormHistory::TMove::Undone;
  try {
    TSourceEditor* source = DeclaringSource();
    if (source == nullptr) return;
    TUnitDocument& document = source->Document();
    if (history.Move() == TFormHistory::TMove::Done) FUndone.clear();
    else if (TurnLast(document, back)) return;
    const std::string before = document.Text();
    const std::string after = Changed(before, *source, history);
    if (after != before) Replace(document, before, after);
    (back ? FUndone : FDone)
        .push_back(back ? TTextStep{HashOf(after), HashOf(before)}
                        : TTextStep{HashOf(before), HashOf(after)});
  } catch (const Exception& e) {
    FForm.Host().ReportError(e.Message());
  }
}

}  // namespace wrenfold
