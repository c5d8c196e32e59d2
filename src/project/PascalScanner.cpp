// The tokens of Pascal source.
#include "project/PascalScanner.h"

#include <algorithm>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

TPascalScanner::TPascalScanner(std::string_view source, const TDefinedSymbols& symbols)
    : FSource(source), FConditionals(symbols) {}

TSourceToken TPascalScanner::Next() {
  for (;;) {
    const TSourceToken token = Scan();
    if (token.Kind == TTokenKind::End) return token;
    if (token.Kind == TTokenKind::Directive && FConditionals.Take(token.Text)) continue;
    if (FConditionals.Active()) return token;
  }
}

TSourceToken TPascalScanner::NextCode() {
  TSourceToken token = Next();
  while (token.Kind == TTokenKind::Note || token.Kind == TTokenKind::Directive) token = Next();
  return token;
}

TSourceToken TPascalScanner::Scan() {
  while (FPosition < FSource.size() && IsBlank(FSource[FPosition])) ++FPosition;
  const size_t start = FPosition;
  if (start == FSource.size()) return Make(TTokenKind::End, start, start);

  const char first = FSource[start];
  const char second = start + 1 < FSource.size() ? FSource[start + 1] : '\0';
  if (first == '{') return ScanComment(start, 1, "}");
  if (first == '(' && second == '*') return ScanComment(start, 2, "*)");
  if (first == '/' && second == '/') {
    TSourceToken note = Make(TTokenKind::Note, start, EndOfLine(FSource, start));
    note.Text.remove_prefix(2);
    return note;
  }
  if (first == '\'') {
    // A doubled quote reads as two texts side by side, which is joined here by looking on.
    size_t end = start + 1;
    const size_t lineEnd = EndOfLine(FSource, start);
    while (end < lineEnd) {
      if (FSource[end++] != '\'') continue;
      if (end == lineEnd || FSource[end] != '\'') break;
      ++end;
    }
    return Make(TTokenKind::Text, start, end);
  }
  if (!IsIdentifierPart(first)) return Make(TTokenKind::Symbol, start, start + 1);
  size_t end = start + 1;
  while (end < FSource.size() && IsIdentifierPart(FSource[end])) ++end;
  return Make(IsIdentifierStart(first) ? TTokenKind::Identifier : TTokenKind::Number, start, end);
}

TSourceToken TPascalScanner::ScanComment(size_t start, size_t opening, std::string_view closing) {
  const size_t inner = start + opening;
  size_t end = FSource.find(closing, inner);
  if (end == std::string_view::npos) {
    end = FSource.size();
    FOpenComment = std::min(FOpenComment, start);
  }
  TSourceToken token{TTokenKind::Note, FSource.substr(inner, end - inner), start};
  FPosition = std::min(end + closing.size(), FSource.size());
  if (!token.Text.starts_with('$')) return token;
  token.Kind = TTokenKind::Directive;
  token.Text = Trim(token.Text.substr(1));
  return token;
}

TSourceToken TPascalScanner::Make(TTokenKind kind, size_t start, size_t end) {
  FPosition = end;
  return {kind, FSource.substr(start, end - start), start};
}

std::string UnquotePascal(std::string_view quoted) {
  std::string result;
  result.reserve(quoted.size());
  for (size_t at = 1; at < quoted.size(); ++at) {
    if (quoted[at] == '\'' && (++at == quoted.size() || quoted[at] != '\'')) break;
    result += quoted[at];
  }
  return result;
}

}  // namespace wrenfold
