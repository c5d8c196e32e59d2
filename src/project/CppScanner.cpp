// The tokens of C++ source.
#include "project/CppScanner.h"

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

TCppScanner::TCppScanner(std::string_view source, const TDefinedSymbols& symbols)
    : FSource(source), FConditionals(symbols) {}

TSourceToken TCppScanner::Next() {
  for (;;) {
    const TSourceToken token = Scan();
    if (token.Kind == TTokenKind::End) return token;
    if (token.Kind == TTokenKind::Directive && FConditionals.Take(token.Text)) continue;
    if (FConditionals.Active()) return token;
  }
}

TSourceToken TCppScanner::NextCode() {
  TSourceToken token = Next();
  while (token.Kind == TTokenKind::Note || token.Kind == TTokenKind::Directive) token = Next();
  return token;
}

TSourceToken TCppScanner::Scan() {
  while (FPosition < FSource.size() && IsBlank(FSource[FPosition])) ++FPosition;
  const size_t start = FPosition;
  if (start == FSource.size()) return Make(TTokenKind::End, start, start);

  const char first = FSource[start];
  const char second = start + 1 < FSource.size() ? FSource[start + 1] : '\0';
  if (first == '#') return ScanDirective(start);
  if (first == '/' && second == '/') {
    TSourceToken note = Make(TTokenKind::Note, start, EndOfLine(FSource, start));
    note.Text.remove_prefix(2);
    return note;
  }
  if (first == '/' && second == '*') {
    const size_t end = std::min(FSource.find("*/", start + 2), FSource.size());
    FPosition = std::min(end + 2, FSource.size());
    return {TTokenKind::Note, FSource.substr(start + 2, end - start - 2), start};
  }
  if (first == '"' || first == '\'') return ScanQuoted(start);
  if (!IsIdentifierPart(first)) return Make(TTokenKind::Symbol, start, start + 1);
  size_t end = start + 1;
  while (end < FSource.size() && IsIdentifierPart(FSource[end])) ++end;
  return Make(IsIdentifierStart(first) ? TTokenKind::Identifier : TTokenKind::Number, start, end);
}

// A line that ends in a backslash goes on in the next one.
TSourceToken TCppScanner::ScanDirective(size_t start) {
  size_t end = EndOfLine(FSource, start);
  while (end < FSource.size() && FSource[end - 1] == '\\')
    end = EndOfLine(FSource,
                    std::min(end + (FSource.substr(end, 2) == "\r\n" ? 2 : 1), FSource.size()));
  TSourceToken token = Make(TTokenKind::Directive, start, end);
  token.Text = Trim(token.Text.substr(1));
  return token;
}

TSourceToken TCppScanner::ScanQuoted(size_t start) {
  const size_t lineEnd = EndOfLine(FSource, start);
  size_t end = start + 1;
  while (end < lineEnd && FSource[end] != FSource[start])
    end += FSource[end] == '\\' && end + 1 < lineEnd ? 2 : 1;
  return Make(TTokenKind::Text, start, std::min(end + 1, lineEnd));
}

TSourceToken TCppScanner::Make(TTokenKind kind, size_t start, size_t end) {
  FPosition = end;
  return {kind, FSource.substr(start, end - start), start};
}

std::string UnquoteCppPath(std::string_view quoted) {
  quoted.remove_prefix(1);
  if (quoted.ends_with('"')) quoted.remove_suffix(1);
  std::string result;
  for (size_t at = 0; at < quoted.size(); ++at) {
    result += quoted[at];
    if (quoted.substr(at, 2) == "\\\\") ++at;
  }
  return result;
}

}  // namespace wrenfold
