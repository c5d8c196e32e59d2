// Class declarations in Pascal and C++.
#include "project/UnitSource.h"

#include <utility>

#include "platform/core/text/SysUtils.h"
#include "project/CppScanner.h"
#include "project/PascalScanner.h"

namespace wrenfold {

namespace {

class TPascalUnitReader {
 public:
  TPascalUnitReader(std::string_view text, const TDefinedSymbols& symbols)
      : FScanner(text, symbols), FPlaces(text) {}

  TUnitSource Read() {
    Advance();
    while (FToken.Kind != TTokenKind::End && !AtWord("implementation")) {
      if (AtWord("unit")) {
        Advance();
        FResult.Name = ReadQualified();
      } else if (AtWord("uses")) {
        ReadUses();
      } else if (FToken.Kind == TTokenKind::Identifier) {
        ReadDeclaration();
      } else {
        Advance();
      }
    }
    return std::move(FResult);
  }

 private:
  void Advance() { FToken = FScanner.NextCode(); }
  bool AtWord(std::string_view word) const {
    return FToken.Kind == TTokenKind::Identifier && EqualText(FToken.Text, word);
  }
  bool TakeWord(std::string_view word) {
    if (!AtWord(word)) return false;
    Advance();
    return true;
  }

  std::string ReadQualified() {
    return ReadDottedName(FToken, [this] { Advance(); });
  }

  void ReadUses() {
    do {
      Advance();
      std::string name = ReadQualified();
      if (name.empty()) return;
      FResult.Uses.push_back(std::move(name));
      while (FToken.Kind == TTokenKind::Text || AtWord("in")) Advance();
    } while (FToken.IsSymbol(','));
  }

  // Stands at an identifier, which declares a class when "= class" follows.
  void ReadDeclaration() {
    const TSourceToken name = FToken;
    Advance();
    if (FToken.IsSymbol('<') && !SkipTypeParameters()) return;
    if (!FToken.IsSymbol('=')) return;
    Advance();
    TakeWord("packed");
    if (!TakeWord("class")) return;
    if (FToken.IsSymbol(';') || AtWord("of") || AtWord("helper")) return;
    if (!TakeWord("abstract")) TakeWord("sealed");
    std::string ancestor;
    if (FToken.IsSymbol('(')) {
      Advance();
      ancestor = ReadQualified();
    }
    if (ancestor.empty()) ancestor = "TObject";
    FResult.Classes.push_back({std::string(name.Text), ancestor.substr(ancestor.rfind('.') + 1),
                               FPlaces.At(name.Offset)});
  }

  // Stands at '<'. What is not closed before a '=' was a comparison: nothing is passed over then,
  // so that no declaration behind it is lost.
  bool SkipTypeParameters() {
    const TPascalScanner before = FScanner;
    int depth = 0;
    do {
      if (FToken.IsSymbol('<')) ++depth;
      if (FToken.IsSymbol('>')) --depth;
      if (FToken.IsSymbol('=') || FToken.IsSymbol('(') || FToken.Kind == TTokenKind::End) {
        FScanner = before;
        Advance();
        return false;
      }
      Advance();
    } while (depth > 0);
    return true;
  }

  TPascalScanner FScanner;
  TPlaceFinder FPlaces;
  TSourceToken FToken;
  TUnitSource FResult;
};

class TCppUnitReader {
 public:
  TCppUnitReader(std::string_view text, const TDefinedSymbols& symbols)
      : FScanner(text, symbols), FPlaces(text) {}

  TUnitSource Read() {
    for (Advance(); FToken.Kind != TTokenKind::End;) {
      const bool declares = FToken.Kind == TTokenKind::Identifier && FToken.Text == "class";
      Advance();
      if (declares) ReadClass();
    }
    return std::move(FResult);
  }

 private:
  void Advance() {
    do {
      FToken = FScanner.Next();
      if (FToken.Kind == TTokenKind::Directive) ReadInclude(FToken.Text);
    } while (FToken.Kind == TTokenKind::Note || FToken.Kind == TTokenKind::Directive);
  }

  void ReadInclude(std::string_view directive) {
    if (!directive.starts_with("include")) return;
    const size_t open = directive.find('"');
    if (open == std::string_view::npos) return;
    const size_t close = directive.find('"', open + 1);
    FResult.Uses.push_back(ExtractFileNameEx(directive.substr(open + 1, close - open - 1)));
  }

  // Stands behind the word "class". Words before the name ("PACKAGE", "__declspec(...)") are passed
  // over: the name is the last identifier before the colon.
  void ReadClass() {
    TSourceToken name;
    while (!FToken.IsSymbol(':')) {
      if (FToken.Kind == TTokenKind::Identifier && FToken.Text != "final") name = FToken;
      else if (FToken.IsSymbol('(')) SkipBrackets();
      else if (FToken.Kind != TTokenKind::Identifier) return;
      Advance();
    }
    Advance();
    std::string_view ancestor;
    while (FToken.Kind == TTokenKind::Identifier || FToken.IsSymbol(':')) {
      if (FToken.Kind == TTokenKind::Identifier) ancestor = FToken.Text;
      Advance();
    }
    if (!name.Text.empty() && !ancestor.empty())
      FResult.Classes.push_back(
          {std::string(name.Text), std::string(ancestor), FPlaces.At(name.Offset)});
  }

  // Stands at '(' and stops at the ')' that closes it.
  void SkipBrackets() {
    for (int depth = 0; FToken.Kind != TTokenKind::End; Advance()) {
      if (FToken.IsSymbol('(')) ++depth;
      if (FToken.IsSymbol(')') && --depth == 0) return;
    }
  }

  TCppScanner FScanner;
  TPlaceFinder FPlaces;
  TSourceToken FToken;
  TUnitSource FResult;
};

}  // namespace

const TClassDeclaration* TUnitSource::FindClass(std::string_view name) const {
  for (const TClassDeclaration& declaration : Classes)
    if (EqualText(declaration.Name, name)) return &declaration;
  return nullptr;
}

TUnitSource ParseUnitSource(std::string_view text, std::string_view fileName,
                            const TDefinedSymbols& symbols) {
  if (LanguageOfFile(fileName) == TSourceLanguage::Cpp) return TCppUnitReader(text, symbols).Read();
  return TPascalUnitReader(text, symbols).Read();
}

}  // namespace wrenfold
