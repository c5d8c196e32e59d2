// wrenfold-spc check: whether files come back byte for byte through their other form.
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <optional>

#include "tools/Commands.h"

namespace wrenfold {
namespace {

struct TDifference {
  std::size_t Common = 0;  // equal bytes in front of it
  std::string Place;       // "line 3" or "offset 20", and what differs where no lines can show it
  std::string Original;    // the lines there; both empty when they would look the same
  std::string Rendered;
};

// The line that holds `position`, without its end.
std::string_view LineAt(std::string_view text, std::size_t position) {
  const std::size_t start = position == 0 ? 0 : text.rfind('\n', position - 1) + 1;
  std::string_view line = text.substr(start, text.find('\n', start) - start);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

std::string_view WithoutEndBlanks(std::string_view line) {
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

// What lines do not show, or nothing.
std::string_view Unseen(std::string_view original, std::string_view rendered, std::size_t common) {
  const bool hasMark = original.starts_with(ByteOrderMark);
  if (hasMark != rendered.starts_with(ByteOrderMark))
    return hasMark ? ": a byte order mark that no name needs" : ": names need a byte order mark";
  if (common == original.size()) return ": the file ends without a line end";
  if (common == rendered.size()) return ": blanks or blank lines behind the end";
  return WithoutEndBlanks(LineAt(original, common)) == WithoutEndBlanks(LineAt(rendered, common))
             ? ": blanks at the end of the line"
             : "";
}

TDifference FindDifference(std::string_view original, std::string_view rendered) {
  TDifference difference;
  difference.Common = CommonPrefix(original, rendered);
  const std::string_view before = original.substr(0, difference.Common);
  const std::string_view unseen = Unseen(original, rendered, difference.Common);
  difference.Place =
      fmt::format("line {}{}", std::count(before.begin(), before.end(), '\n') + 1, unseen);
  if (!unseen.empty()) return difference;
  const std::string_view originalLine = LineAt(original, difference.Common);
  const std::string_view renderedLine = LineAt(rendered, difference.Common);
  const std::size_t start = ExcerptStart(originalLine, renderedLine);
  difference.Original = Excerpt(originalLine, start);
  difference.Rendered = Excerpt(renderedLine, start);
  return difference;
}

// What stands at an offset of a file that gives the same text as its rendering.
std::string_view BytesAt(const TStoredFile& file, std::size_t offset) {
  if (offset < file.Header.End) return "the data header differs";
  for (const TStoredRoot& root : file.Roots)
    if (offset >= root.FilePosition && offset - root.FilePosition < root.Size)
      return "another tag for the same text";
  return "the resource header differs";
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
    RenderStoredFile(file, other, style, FThere);
    TStoredFile back = ParseStoredFile(FThere.View(), style);
    if (FForm == TStoredForm::Text) {
      // Labels have no place in the binary form.
      for (std::size_t i = 0; i < file.Roots.size(); ++i) back.Roots[i].Label = file.Roots[i].Label;
    }
    RenderStoredFile(back, FForm, style, FBack);
    return FBack.View() == FBytes;
  }

  // Both sides as text, so that a line can be shown.
  TDifference Difference() const {
    if (FForm == TStoredForm::Text) return FindDifference(FBytes, FBack.View());
    const TFormTextStyle& exact = *FindFormTextStyle("exact");
    TByteWriter left;
    TByteWriter right;
    const TStoredFile file = ParseStoredFile(FBytes);
    RenderStoredFile(file, TStoredForm::Text, exact, left);
    RenderStoredFile(ParseStoredFile(FBack.View()), TStoredForm::Text, exact, right);
    if (left.View() != right.View()) return FindDifference(left.View(), right.View());
    TDifference difference;
    difference.Common = CommonPrefix(FBytes, FBack.View());
    difference.Place =
        fmt::format("offset {}: {}", difference.Common, BytesAt(file, difference.Common));
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

// Line ends that are LF were made by other tools, which leave out the last one, too: it is put
// there. True when it was.
bool NormalizeLineEnds(std::string& text) {
  std::string lines = WithCrLf(text);
  const bool unended = lines.size() != text.size() && !lines.ends_with('\n');
  text = std::move(lines);
  if (unended) text += "\r\n";
  return unended;
}

// True when the file is identical.
bool CheckFile(const std::string& name, TOutput& output) {
  std::string bytes = ReadInput(name);
  const TStoredForm form = ParseStoredFile(bytes).Form;
  const bool unended = form == TStoredForm::Text && NormalizeLineEnds(bytes);
  std::optional<TDifference> difference;
  if (const TFormTextStyle* style = FindStyle(bytes, form, difference)) {
    output.Line(fmt::format("{}: identical, {}, style {}{}", name, StoredFormName(form),
                            style->Name, unended ? ", without its last line end" : ""));
    return true;
  }
  output.Line(fmt::format("{}: different at {}", name, difference->Place));
  if (difference->Original == difference->Rendered) return false;
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
