// Splits Pascal source into tokens, leaving out what conditional directives leave out.
#pragma once

#include <string>
#include <string_view>

#include "project/Conditionals.h"
#include "project/SourceText.h"

namespace wrenfold {

// Reads the tokens of a Pascal source one after another. The source must outlive the scanner and
// its tokens. Never fails: what is unterminated ends with the line (texts) or the source
// (comments).
class TPascalScanner {
 public:
  explicit TPascalScanner(std::string_view source,
                          const TDefinedSymbols& symbols = DefaultSymbols());

  // The next token of an active branch, comments and directives included.
  TSourceToken Next();
  // The next token that is neither comment nor directive.
  TSourceToken NextCode();

  // The source behind the last token.
  std::string_view Rest() const { return FSource.substr(FPosition); }
  // The symbols that are defined so far, and those that another source defined meanwhile.
  const TDefinedSymbols& Symbols() const { return FConditionals.Symbols(); }
  void SetSymbols(TDefinedSymbols symbols) { FConditionals.SetSymbols(std::move(symbols)); }

  // Where a comment without an end begins, or npos.
  size_t OpenComment() const { return FOpenComment; }
  // The count of conditional directives without an end so far.
  size_t OpenConditionals() const { return FConditionals.Depth(); }

 private:
  TSourceToken Scan();
  TSourceToken ScanComment(size_t start, size_t opening, std::string_view closing);
  TSourceToken Make(TTokenKind kind, size_t start, size_t end);

  std::string_view FSource;
  size_t FPosition = 0;
  size_t FOpenComment = std::string_view::npos;
  TConditionals FConditionals;
};

// The text that a quoted Pascal text stands for: outer quotes removed, doubled ones single.
std::string UnquotePascal(std::string_view quoted);

}  // namespace wrenfold
