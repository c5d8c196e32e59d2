// The code of a Pascal source as a stream of words, through its include files.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "project/PascalScanner.h"
#include "project/UnitSource.h"

namespace wrenfold {

// The words that tell declarations apart.
enum class TPascalWord : std::uint8_t {
  None,
  Abstract,
  Asm,
  Automated,
  Begin,
  Case,
  Class,
  Const,
  Constructor,
  Contains,
  Destructor,
  Dispinterface,
  End,
  Except,
  Exports,
  External,
  Finalization,
  Finally,
  For,
  Forward,
  Function,
  Helper,
  Implementation,
  In,
  Initialization,
  Interface,
  Label,
  Library,
  Object,
  Of,
  Operator,
  Out,
  Package,
  Packed,
  Private,
  Procedure,
  Program,
  Property,
  Protected,
  Public,
  Published,
  Record,
  Reference,
  Requires,
  Resourcestring,
  Sealed,
  Strict,
  Threadvar,
  Try,
  Type,
  Unit,
  Uses,
  Var,
};

// Stands at one token of the code. Comments are passed over, directives looked at: resources are
// noted, include files are read in place of theirs.
class TPascalTokens {
 public:
  TPascalTokens(std::string_view text, const TDefinedSymbols& symbols,
                const TIncludeReader& includes, std::vector<std::string>& resources);

  const TSourceToken& Token() const { return FToken; }
  TPascalWord Word() const { return FWord; }
  bool AtEnd() const { return FToken.Kind == TTokenKind::End; }
  bool At(TPascalWord word) const { return FWord == word; }
  bool At(char symbol) const { return FToken.IsSymbol(symbol); }
  bool AtName() const { return FToken.Kind == TTokenKind::Identifier; }
  // The first characters behind the token that are no blanks, as far as they stand in this source.
  std::string_view Ahead() const { return SkipLeadingBlanks(FScanner.Rest()); }
  void Advance();
  bool Take(TPascalWord word);
  bool Take(char symbol);

  // Where the token stands in the source itself: of one from an include file that is its directive.
  size_t Offset() const { return FStack.empty() ? FToken.Offset : FIncludeOffset; }
  // Behind the token before this one.
  size_t EndBefore() const { return FEndBefore; }
  bool InInclude() const { return !FStack.empty(); }
  TSourcePlace Place() { return FPlaces.At(Offset()); }
  TSourcePlace PlaceAt(size_t offset) { return FPlaces.At(offset); }

  // Comments are added to this list while it is there.
  void CollectNotes(std::vector<std::string>* notes) { FNotes = notes; }
  // What the source as a whole lacks.
  void ReportUnterminated(std::vector<TSourceProblem>& problems);

 private:
  struct TInclude {
    std::shared_ptr<const std::string> Text;
    TPascalScanner Outer;  // of the source that includes it
  };

  static std::string_view SkipLeadingBlanks(std::string_view text);
  TSourceToken NextToken();
  void TakeDirective(const TSourceToken& directive);
  void OpenInclude(std::string_view name, size_t offset);
  void CloseInclude();

  TPascalScanner FScanner;
  TPlaceFinder FPlaces;
  const TIncludeReader& FIncludes;
  std::vector<std::string>& FResources;
  std::vector<TInclude> FStack;
  std::vector<std::shared_ptr<const std::string>> FTexts;  // tokens may still point into them
  size_t FIncludeOffset = 0;
  TSourceToken FToken;
  TPascalWord FWord = TPascalWord::None;
  size_t FEndBefore = 0;
  std::vector<std::string>* FNotes = nullptr;
};

}  // namespace wrenfold
