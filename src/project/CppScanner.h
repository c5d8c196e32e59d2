// Splits C++ source into tokens, leaving out what preprocessor conditions leave out.
#pragma once

#include <string>
#include <string_view>

#include "project/Conditionals.h"
#include "project/SourceText.h"

namespace wrenfold {

// Reads the tokens of a C++ source one after another, as TPascalScanner does for Pascal.
// Preprocessor lines are directives ("include \"Main.h\"").
class TCppScanner {
 public:
  explicit TCppScanner(std::string_view source, const TDefinedSymbols& symbols = DefaultSymbols());

  // The next token outside of branches left out, comments and directives included.
  TSourceToken Next();
  // The next token that is neither comment nor directive.
  TSourceToken NextCode();

 private:
  TSourceToken Scan();
  TSourceToken ScanDirective(size_t start);
  TSourceToken ScanQuoted(size_t start);
  TSourceToken Make(TTokenKind kind, size_t start, size_t end);

  std::string_view FSource;
  size_t FPosition = 0;
  TConditionals FConditionals;
};

// The file name that a quoted text of a form macro stands for. Projects hold backslashes doubled or
// single, so that only a doubled one is an escape.
std::string UnquoteCppPath(std::string_view quoted);

}  // namespace wrenfold
