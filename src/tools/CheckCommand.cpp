// wrenfold-spc check: whether files come back byte for byte through their other form.
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <optional>

#include "tools/Commands.h"

namespace wrenfold {
namespace {

constexpr std::size_t MaxShownLine = 200;

struct TDifference {
  std::size_t Common = 0;  // equal bytes in front of it
  std::size_t Line = 0;    // 0: both sides give the same text, but the bytes differ
  std::string Original;
  std::string Rendered;
};

// The line that holds `position`, without its end.
std::string LineAt(std::string_view text, std::size_t position) {
  const std::size_t start = position == 0 ? 0 : text.rfind('\n', position - 1) + 1;
  std::string_view line = text.substr(start, text.find('\n', start) - start);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return std::string(line.substr(0, MaxShownLine));
}

TDifference FindDifference(std::string_view original, std::string_view rendered) {
  TDifference difference;
  difference.Common = CommonPrefix(original, rendered);
  const std::string_view before = original.substr(0, difference.Common);
  difference.Line = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
  difference.Original = LineAt(original, difference.Common);
  difference.Rendered = LineAt(rendered, difference.Common);
  return difference;
}

// What a file gives through its other form in one style.
class TRoundTrip {
 public:
  TRoundTrip(std::string_view bytes, TStoredForm form) : FBytes(bytes), FForm(form) {}

  bool Identical(const TFormTextStyle& style) {
    FThere.Clear();
    FBack.Clear();
    const TStoredFile file = ParseStoredFile(FBytes, style);
    const TStoredForm other = FForm == TStoredForm::Text ? TStoredForm::Binary : TStoredForm::Text;
    if (FForm == TStoredForm::Text) {
      // The labels of a text form have no place in the binary one.
      RenderStoredFile(file, FForm, style, FBack);
    } else {
      RenderStoredFile(file, other, style, FThere);
      RenderStoredFile(ParseStoredFile(FThere.View(), style), FForm, style, FBack);
    }
    return FBack.View() == FBytes;
  }

  // Both sides as text, so that a line can be shown.
  TDifference Difference() const {
    if (FForm == TStoredForm::Text) return FindDifference(FBytes, FBack.View());
    const TFormTextStyle& exact = *FindFormTextStyle("exact");
    TByteWriter left;
    TByteWriter right;
    RenderStoredFile(ParseStoredFile(FBytes), TStoredForm::Text, exact, left);
    RenderStoredFile(ParseStoredFile(FBack.View()), TStoredForm::Text, exact, right);
    if (left.View() != right.View()) return FindDifference(left.View(), right.View());
    TDifference difference;
    difference.Common = CommonPrefix(FBytes, FBack.View());
    return difference;
  }

 private:
  std::string_view FBytes;
  TStoredForm FForm;
  TByteWriter FThere;
  TByteWriter FBack;
};

// The style that gives the same bytes; otherwise `difference` is that of the style that came
// farthest.
const TFormTextStyle* FindStyle(std::string_view bytes, TStoredForm form,
                                std::optional<TDifference>& difference) {
  TRoundTrip trip(bytes, form);
  std::exception_ptr trouble;
  for (const TFormTextStyle& style : FormTextStyles()) {
    try {
      if (trip.Identical(style)) return &style;
      TDifference found = trip.Difference();
      if (!difference || found.Common > difference->Common) difference = std::move(found);
    } catch (const Exception&) {
      // A style may not hold a value that another one does.
      if (!trouble) trouble = std::current_exception();
    }
  }
  if (!difference) std::rethrow_exception(trouble);
  return nullptr;
}

// True when the file is identical.
bool CheckFile(const std::string& name, TOutput& output) {
  std::string bytes = ReadInput(name);
  const TStoredForm form = ParseStoredFile(bytes).Form;
  if (form == TStoredForm::Text) bytes = WithCrLf(bytes);
  std::optional<TDifference> difference;
  if (const TFormTextStyle* style = FindStyle(bytes, form, difference)) {
    output.Line(
        fmt::format("{}: identical, {}, style {}", name, StoredFormName(form), style->Name));
    return true;
  }
  if (difference->Line == 0) {
    output.Line(fmt::format("{}: different at offset {}: another tag for the same text", name,
                            difference->Common));
    return false;
  }
  output.Line(fmt::format("{}: different at line {}", name, difference->Line));
  output.Line("  file:     " + difference->Original);
  output.Line("  rendered: " + difference->Rendered);
  return false;
}

}  // namespace

int RunCheck(const std::vector<std::string>& names, TOutput& output) {
  const std::vector<std::string> files = ListFiles(names);
  std::size_t identical = 0;
  std::size_t unreadable = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    output.Progress(i, files.size(), files[i]);
    try {
      if (CheckFile(files[i], output)) ++identical;
    } catch (const Exception& error) {
      output.Error(NamedTrouble(files[i], error));
      ++unreadable;
    }
  }
  output.Progress(files.size(), files.size(), "");
  const std::size_t different = files.size() - identical - unreadable;
  output.Line(fmt::format("checked {} files: {} identical, {} different, {} unreadable",
                          files.size(), identical, different, unreadable));
  if (unreadable != 0) return ecTrouble;
  return different == 0 ? ecFine : ecFindings;
}

}  // namespace wrenfold
