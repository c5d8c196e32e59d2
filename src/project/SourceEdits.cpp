// Finds the places by the scanners, so that comments and branches left out stay as they are.
#include "project/SourceEdits.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "platform/core/text/SysUtils.h"
#include "project/CppScanner.h"
#include "project/PascalScanner.h"

namespace wrenfold {

namespace {

// A stretch of a source.
struct TSpan {
  size_t Begin = 0;
  size_t End = 0;
  size_t Size() const { return End - Begin; }
};

size_t EndOf(const TSourceToken& token) {
  return token.Offset + token.Text.size();
}

bool IsWord(const TSourceToken& token, std::string_view word) {
  return token.Kind == TTokenKind::Identifier && EqualText(token.Text, word);
}

bool IsUnitName(std::string_view name) {
  while (true) {
    const size_t dot = name.find('.');
    if (!IsIdentifier(name.substr(0, dot))) return false;
    if (dot == std::string_view::npos) return true;
    name.remove_prefix(dot + 1);
  }
}

// Reads a dotted name from the token on, which then is the one behind it.
TSpan TakeName(TPascalScanner& scanner, TSourceToken& token) {
  TSpan span{token.Offset, token.Offset};
  while (token.Kind == TTokenKind::Identifier) {
    span.End = EndOf(token);
    token = scanner.NextCode();
    if (!token.IsSymbol('.')) break;
    token = scanner.NextCode();
  }
  return span;
}

// An entry of a clause; the path is empty where the source gives none.
struct TEntrySpans {
  TSpan Name;
  TSpan Path;  // with its quotes
};

// The first clause of units: "uses" of a program, "contains" of a package.
struct TClause {
  std::vector<TEntrySpans> Entries;
  size_t LastEnd = 0;  // behind what the last entry says
  bool Found = false;
};

TClause ReadClause(std::string_view source, const TDefinedSymbols& symbols) {
  TPascalScanner scanner(source, symbols);
  TClause clause;
  TSourceToken token = scanner.NextCode();
  while (token.Kind != TTokenKind::End && !IsWord(token, "uses") && !IsWord(token, "contains"))
    token = scanner.NextCode();
  if (token.Kind == TTokenKind::End) return clause;
  do {
    token = scanner.NextCode();
    TEntrySpans entry;
    entry.Name = TakeName(scanner, token);
    if (IsWord(token, "in")) {
      token = scanner.NextCode();
      if (token.Kind != TTokenKind::Text) return clause;
      entry.Path = {token.Offset, EndOf(token)};
      token = scanner.NextCode();
    }
    if (entry.Name.Size() != 0) clause.Entries.push_back(entry);
  } while (token.IsSymbol(','));
  clause.LastEnd = token.Offset;
  clause.Found = token.IsSymbol(';') && !clause.Entries.empty();
  return clause;
}

std::string PascalPath(const TNamedUnit& unit) {
  std::string quoted = "'";
  for (const char character : unit.Path)
    quoted += character == '\'' ? "''" : std::string(1, character);
  return quoted + "'";
}

std::vector<TSourceEdit> RenameInPascal(std::string_view source, std::string_view oldName,
                                        const TNamedUnit& unit, const TDefinedSymbols& symbols) {
  for (const TEntrySpans& entry : ReadClause(source, symbols).Entries) {
    if (!EqualText(source.substr(entry.Name.Begin, entry.Name.Size()), oldName)) continue;
    std::vector<TSourceEdit> edits{{entry.Name.Begin, entry.Name.Size(), unit.Name}};
    if (entry.Path.Size() != 0)
      edits.push_back({entry.Path.Begin, entry.Path.Size(), PascalPath(unit)});
    return edits;
  }
  return {};
}

// The line end that the source has.
std::string_view LineEndOf(std::string_view source) {
  const size_t end = source.find('\n');
  return end != std::string_view::npos && end > 0 && source[end - 1] == '\r' ? "\r\n" : "\n";
}

// Blanks in front of the last entry, where it begins its line.
std::string_view IndentOf(std::string_view source, size_t offset) {
  const size_t line = source.find_last_of("\r\n", offset);
  const size_t begin = line == std::string_view::npos ? 0 : line + 1;
  const std::string_view indent = source.substr(begin, offset - begin);
  return indent.find_first_not_of(" \t") == std::string_view::npos ? indent : "  ";
}

std::vector<TSourceEdit> AddToPascal(std::string_view source, const TNamedUnit& unit,
                                     const TDefinedSymbols& symbols) {
  const TClause clause = ReadClause(source, symbols);
  if (!clause.Found) return {};
  const std::string form = unit.FormName.empty() ? "" : fmt::format(" {{{}}}", unit.FormName);
  return {{clause.LastEnd, 0,
           fmt::format(",{}{}{} in {}{}", LineEndOf(source),
                       IndentOf(source, clause.Entries.back().Name.Begin), unit.Name,
                       PascalPath(unit), form)}};
}

struct TMacroUse {
  TSpan Path;   // with its quotes
  TSpan Whole;  // up to the semicolon
};

// The macros that name units: USEUNIT, USEFORM and so on.
std::vector<TMacroUse> ReadMacros(std::string_view source, const TDefinedSymbols& symbols) {
  constexpr std::string_view UnitMacros[] = {"USEUNIT", "USEFORM", "USEFORMNS", "USEDATAMODULE"};
  TCppScanner scanner(source, symbols);
  std::vector<TMacroUse> uses;
  for (TSourceToken token = scanner.NextCode(); token.Kind != TTokenKind::End;
       token = scanner.NextCode()) {
    if (token.Kind != TTokenKind::Identifier ||
        std::find(std::begin(UnitMacros), std::end(UnitMacros), token.Text) == std::end(UnitMacros))
      continue;
    const size_t begin = token.Offset;
    if (!scanner.NextCode().IsSymbol('(')) continue;
    const TSourceToken path = scanner.NextCode();
    if (path.Kind != TTokenKind::Text) continue;
    while (token.Kind != TTokenKind::End && !token.IsSymbol(')')) token = scanner.NextCode();
    uses.push_back({{path.Offset, EndOf(path)}, {begin, EndOf(token)}});
    if (uses.back().Whole.End < source.size() && source[uses.back().Whole.End] == ';')
      ++uses.back().Whole.End;
  }
  return uses;
}

std::string CppPath(const TNamedUnit& unit) {
  std::string quoted = "\"";
  for (const char character : unit.Path)
    quoted += character == '\\' ? "\\\\" : std::string(1, character);
  return quoted + '"';
}

std::vector<TSourceEdit> RenameInCpp(std::string_view source, std::string_view oldName,
                                     const TNamedUnit& unit, const TDefinedSymbols& symbols) {
  for (const TMacroUse& use : ReadMacros(source, symbols)) {
    std::string path = UnquoteCppPath(source.substr(use.Path.Begin, use.Path.Size()));
    std::replace(path.begin(), path.end(), '\\', '/');
    if (EqualText(ExtractFileNameEx(path), oldName))
      return {{use.Path.Begin, use.Path.Size(), CppPath(unit)}};
  }
  return {};
}

std::vector<TSourceEdit> AddToCpp(std::string_view source, const TNamedUnit& unit,
                                  const TDefinedSymbols& symbols) {
  const std::vector<TMacroUse> uses = ReadMacros(source, symbols);
  if (uses.empty()) return {};
  const std::string macro = unit.FormName.empty()
                                ? fmt::format("USEUNIT({});", CppPath(unit))
                                : fmt::format("USEFORM({}, {});", CppPath(unit), unit.FormName);
  return {{uses.back().Whole.End, 0, std::string(LineEndOf(source)) + macro}};
}

}  // namespace

std::optional<TSourceEdit> RenameUnitEdit(std::string_view source, std::string_view name) {
  TPascalScanner scanner(source);
  if (!IsUnitName(name) || !IsWord(scanner.NextCode(), "unit")) return std::nullopt;
  TSourceToken token = scanner.NextCode();
  const TSpan span = TakeName(scanner, token);
  if (span.Size() == 0 || source.substr(span.Begin, span.Size()) == name) return std::nullopt;
  return TSourceEdit{span.Begin, span.Size(), std::string(name)};
}

std::vector<TSourceEdit> RenameInProjectEdits(std::string_view source, std::string_view fileName,
                                              std::string_view oldName, const TNamedUnit& unit,
                                              const TDefinedSymbols& symbols) {
  return LanguageOfFile(fileName) == TSourceLanguage::Cpp
             ? RenameInCpp(source, oldName, unit, symbols)
             : RenameInPascal(source, oldName, unit, symbols);
}

std::vector<TSourceEdit> AddToProjectEdits(std::string_view source, std::string_view fileName,
                                           const TNamedUnit& unit, const TDefinedSymbols& symbols) {
  return LanguageOfFile(fileName) == TSourceLanguage::Cpp ? AddToCpp(source, unit, symbols)
                                                          : AddToPascal(source, unit, symbols);
}

std::string ProjectPath(const std::string& folder, const std::string& fileName) {
  std::string path = std::filesystem::path(fileName).lexically_relative(folder).string();
  if (path.empty()) path = fileName;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace wrenfold
