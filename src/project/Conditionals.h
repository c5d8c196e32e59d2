// Conditional compilation: the symbols defined, the open branches and the conditions that pick
// them.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// The symbols of conditional compilation, in upper case.
using TDefinedSymbols = std::set<std::string, std::less<>>;
// What the environment's compiler defines for a 32-bit Windows program.
const TDefinedSymbols& DefaultSymbols();

// Follows the directives of a source from its start and tells whether the text between them counts.
class TConditionals {
 public:
  explicit TConditionals(TDefinedSymbols symbols) : FSymbols(std::move(symbols)) {}

  // Takes a directive, its mark removed ("IFDEF WIN32", "ENDIF", "define X"). Returns true when it
  // was one of conditional compilation. Those that close or continue nothing are ignored.
  bool Take(std::string_view directive);
  // False inside a branch that is not compiled.
  bool Active() const { return FBranches.empty() || FBranches.back().Active; }
  const TDefinedSymbols& Symbols() const { return FSymbols; }
  void SetSymbols(TDefinedSymbols symbols) { FSymbols = std::move(symbols); }
  // The count of branches still open.
  size_t Depth() const { return FBranches.size(); }

 private:
  struct TBranch {
    bool Outer;   // the text around the whole conditional counts
    bool Taken;   // one of its branches was active already
    bool Active;  // the present branch counts
  };

  void Open(bool condition);
  void Continue(bool condition);

  TDefinedSymbols FSymbols;
  std::vector<TBranch> FBranches;
};

// The value of a condition such as "defined(A) and not (CompilerVersion >= 14)"; also with the
// operators of C. An unknown name counts as 0; what does not parse is false.
bool EvaluateCondition(std::string_view condition, const TDefinedSymbols& symbols);

}  // namespace wrenfold
