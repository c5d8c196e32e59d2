// Where fields and methods go in a unit, and the lines that they are.
#include "project/UnitEdits.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::string_view PascalIndent = "    ", CppIndent = "  ";

std::string_view LineEndOf(std::string_view text) {
  const size_t end = text.find_first_of("\r\n");
  if (end == std::string_view::npos) return "\r\n";
  if (text[end] == '\n') return "\n";
  return text.substr(end, 2) == "\r\n" ? "\r\n" : "\r";
}

size_t LineStart(std::string_view text, size_t offset) {
  const size_t end = offset == 0 ? std::string_view::npos : text.find_last_of("\r\n", offset - 1);
  return end == std::string_view::npos ? 0 : end + 1;
}

size_t BehindLineEnd(std::string_view text, size_t end) {
  if (end < text.size()) end += text.substr(end, 2) == "\r\n" ? 2 : 1;
  return end;
}

bool IsBlankText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsBlank);
}

// The blanks that the line of `offset` begins with.
std::string_view IndentAt(std::string_view text, size_t offset) {
  const size_t start = LineStart(text, offset);
  size_t end = start;
  while (end < offset && (text[end] == ' ' || text[end] == '\t')) ++end;
  return text.substr(start, end - start);
}

// Behind the rest of the line, if that is blank or a comment; else right here.
size_t EndOfDeclaration(std::string_view text, size_t end) {
  const size_t lineEnd = EndOfLine(text, end);
  const std::string_view rest = Trim(text.substr(end, lineEnd - end));
  const bool comment = rest.starts_with("//") || (rest.starts_with('{') && rest.ends_with('}')) ||
                       (rest.starts_with("/*") && rest.ends_with("*/"));
  return rest.empty() || comment ? lineEnd : end;
}

// The last of the declarations that stand in the first published part of the class, which ends
// where a word of visibility begins another.
template <class Declaration>
const TSourceSpan* LastPublished(const std::vector<Declaration>& declarations) {
  const TSourceSpan* last = nullptr;
  for (const Declaration& declaration : declarations) {
    if (declaration.Visibility != TVisibility::Published) break;
    if (!declaration.Text.Empty()) last = &declaration.Text;
  }
  return last;
}

// Where the lines of the first published part begin: in C++ behind the word, which may be missing.
size_t PublishedBegin(const TUnitSource& unit, std::string_view text,
                      const TClassDeclaration& declared) {
  constexpr std::string_view word = "__published:";
  if (unit.Kind != TSourceKind::Cpp) return declared.Members.Begin;
  const size_t found = declared.Members.In(text).find(word);
  return declared.Members.Begin + (found == std::string_view::npos ? 0 : found + word.size());
}

// A new line with a declaration behind what stands there.
TSourceEdit NewLine(std::string_view text, size_t behind, std::string_view indent,
                    const std::string& declaration) {
  return {EndOfDeclaration(text, behind), 0,
          fmt::format("{}{}{}", LineEndOf(text), indent, declaration)};
}

TSourceEdit FirstMember(const TUnitSource& unit, std::string_view text,
                        const TClassDeclaration& declared, const std::string& declaration) {
  const bool cpp = unit.Kind == TSourceKind::Cpp;
  const std::string indent = std::string(IndentAt(text, declared.Text.Begin)) +
                             std::string(cpp ? CppIndent : PascalIndent.substr(0, 2));
  const size_t begin = PublishedBegin(unit, text, declared);
  // "class(TForm);" has no end yet.
  const bool open = !cpp && text.substr(declared.Members.End, 1) == ";";
  if (!open) return NewLine(text, begin, indent, declaration);
  const std::string_view line = LineEndOf(text);
  return {begin, 0,
          fmt::format("{0}{1}{2}{0}{3}end", line, indent, declaration,
                      IndentAt(text, declared.Text.Begin))};
}

// Declarations behind the last of a kind, else behind fields, else first of all.
TSourceEdit InsertMember(const TUnitSource& unit, std::string_view text,
                         const TClassDeclaration& declared, const TSourceSpan* behind,
                         const std::string& declaration) {
  if (behind == nullptr) return FirstMember(unit, text, declared, declaration);
  return NewLine(text, behind->End, IndentAt(text, behind->Begin), declaration);
}

std::string HeadingOf(const TUnitSource& unit, const TEventMethod& method, bool qualified) {
  const bool cpp = unit.Kind == TSourceKind::Cpp;
  const std::string prefix = qualified ? method.Class + (cpp ? "::" : ".") : "";
  if (cpp) return fmt::format("void __fastcall {}{}({})", prefix, method.Name, method.Parameters);
  const std::string parameters =
      method.Parameters.empty() ? "" : fmt::format("({})", method.Parameters);
  return fmt::format("procedure {}{}{};", prefix, method.Name, parameters);
}

// Behind the last body of the class, npos when it has none.
size_t BehindBodies(const TUnitSource& unit, std::string_view className) {
  size_t end = std::string_view::npos;
  const auto look = [&](const TMethodDeclaration& method) {
    if (!method.Body.Empty() && (end == std::string_view::npos || method.Body.End > end))
      end = method.Body.End;
  };
  const TClassDeclaration* declared = unit.FindClass(className);
  if (declared != nullptr && unit.Kind != TSourceKind::Cpp)
    std::for_each(declared->Methods.begin(), declared->Methods.end(), look);
  for (const TMethodDeclaration& routine : unit.Routines)
    if (EqualText(routine.Class, className)) look(routine);
  return end;
}

}  // namespace

std::optional<TSourceEdit> AddField(const TUnitSource& unit, std::string_view text,
                                    std::string_view className, std::string_view name,
                                    std::string_view type) {
  const TClassDeclaration* declared = unit.FindClass(className);
  if (declared == nullptr || declared->Text.Empty() || declared->FindField(name) != nullptr)
    return std::nullopt;
  const bool cpp = unit.Kind == TSourceKind::Cpp;
  const std::string field =
      cpp ? fmt::format("{} *{};", type, name) : fmt::format("{}: {};", name, type);
  return InsertMember(unit, text, *declared, LastPublished(declared->Fields), field);
}

std::optional<TSourceEdit> RemoveField(const TUnitSource& unit, std::string_view text,
                                       std::string_view className, std::string_view name) {
  const TClassDeclaration* declared = unit.FindClass(className);
  const TFieldDeclaration* field = declared != nullptr ? declared->FindField(name) : nullptr;
  if (field == nullptr || field->Text.Empty()) return std::nullopt;
  if (!field->IsShared) {
    const size_t start = LineStart(text, field->Text.Begin);
    const size_t end = EndOfDeclaration(text, field->Text.End);
    const bool alone =
        IsBlankText(text.substr(start, field->Text.Begin - start)) && end == EndOfLine(text, end);
    if (!alone) return TSourceEdit{field->Text.Begin, field->Text.End - field->Text.Begin, {}};
    return TSourceEdit{start, BehindLineEnd(text, end) - start, {}};
  }
  // With the comma behind it, the last one with that in front of it; a star of C++ goes along.
  size_t begin = field->NameText.Begin;
  size_t end = field->NameText.End;
  while (begin > field->Text.Begin && (text[begin - 1] == '*' || text[begin - 1] == '&')) --begin;
  size_t behind = end;
  while (behind < field->Text.End && IsBlank(text[behind])) ++behind;
  if (behind < field->Text.End && text[behind] == ',') {
    for (end = behind + 1; end < field->Text.End && IsBlank(text[end]);) ++end;
  } else {
    while (begin > field->Text.Begin && IsBlank(text[begin - 1])) --begin;
    if (begin > field->Text.Begin && text[begin - 1] == ',') --begin;
  }
  return TSourceEdit{begin, end - begin, {}};
}

std::optional<TSourceEdit> RenameField(const TUnitSource& unit, std::string_view className,
                                       std::string_view name, std::string_view newName) {
  const TClassDeclaration* declared = unit.FindClass(className);
  const TFieldDeclaration* field = declared != nullptr ? declared->FindField(name) : nullptr;
  if (field == nullptr || field->NameText.Empty()) return std::nullopt;
  return TSourceEdit{field->NameText.Begin, field->NameText.End - field->NameText.Begin,
                     std::string(newName)};
}

std::optional<TSourceEdit> DeclareMethod(const TUnitSource& unit, std::string_view text,
                                         const TEventMethod& method) {
  const TClassDeclaration* declared = unit.FindClass(method.Class);
  if (declared == nullptr || declared->Text.Empty() || declared->FindMethod(method.Name) != nullptr)
    return std::nullopt;
  std::string line = HeadingOf(unit, method, false);
  if (unit.Kind == TSourceKind::Cpp) line += ';';
  const TSourceSpan* behind = LastPublished(declared->Methods);
  if (behind == nullptr) behind = LastPublished(declared->Fields);
  return InsertMember(unit, text, *declared, behind, line);
}

std::optional<TSourceEdit> WriteBody(const TUnitSource& unit, std::string_view text,
                                     const TEventMethod& method, size_t* caret) {
  if (unit.FindBody(method.Class, method.Name) != nullptr) return std::nullopt;
  const bool cpp = unit.Kind == TSourceKind::Cpp;
  if (!cpp && unit.Implementation.Empty()) return std::nullopt;
  const std::string_view line = LineEndOf(text);
  const std::string head =
      HeadingOf(unit, method, true) + std::string(line) + (cpp ? "{" : "begin") + std::string(line);
  const std::string tail = std::string(line) + (cpp ? "}" : "end;");
  size_t offset = BehindBodies(unit, method.Class);
  std::string before = std::string(line) + std::string(line);
  std::string after;
  if (offset == std::string_view::npos) {
    offset = cpp ? text.size() : unit.Implementation.End;
    // The place stands at the beginning of a line, with one or no blank line in front of it.
    const bool atLineStart = LineStart(text, offset) == offset;
    before = atLineStart ? "" : std::string(line);
    after = std::string(line) + (cpp ? "" : std::string(line));
  }
  if (caret != nullptr) *caret = offset + before.size() + head.size();
  return TSourceEdit{offset, 0, before + head + tail + after};
}

std::string ApplyEdits(std::string text, std::vector<TSourceEdit> edits) {
  std::stable_sort(edits.begin(), edits.end(),
                   [](const TSourceEdit& a, const TSourceEdit& b) { return a.Offset > b.Offset; });
  for (const TSourceEdit& edit : edits) text.replace(edit.Offset, edit.Length, edit.Text);
  return text;
}

}  // namespace wrenfold
