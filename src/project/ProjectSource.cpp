// The clauses of Pascal project sources and the form macros of C++ ones.
#include "project/ProjectSource.h"

#include <fmt/format.h>

#include <optional>

#include "platform/core/text/SysUtils.h"
#include "project/CppScanner.h"
#include "project/PascalScanner.h"

namespace wrenfold {

namespace {

// The design class that a note of the kind "Form: Class" or "Class: File Type" names.
struct TFormNote {
  std::string FormName;
  std::string DesignClass;
};

// A note behind a unit's path names its form; any other comment says nothing about it.
std::optional<TFormNote> ReadFormNote(std::string_view note) {
  const size_t colon = note.find(':');
  const std::string_view form = Trim(note.substr(0, colon));
  if (!IsIdentifier(form)) return std::nullopt;
  if (colon == std::string_view::npos) return TFormNote{std::string(form), {}};
  const std::string_view designClass = Trim(note.substr(colon + 1));
  if (!IsIdentifier(designClass)) return std::nullopt;
  return TFormNote{std::string(form), std::string(designClass)};
}

std::string Describe(const TSourceToken& token) {
  if (token.Kind == TTokenKind::End) return "the end of the file";
  return fmt::format("'{}'", token.Text);
}

class TPascalProjectReader {
 public:
  TPascalProjectReader(std::string_view text, const std::string& fileName,
                       const TDefinedSymbols& symbols)
      : FScanner(text, symbols), FPlaces(text), FFileName(fileName) {}

  TProjectSource Read() {
    FResult.Name = ExtractFileNameEx(FFileName);
    Advance();
    ReadHeader();
    bool found = false;
    while (ReadClause()) found = true;
    if (!found) Refuse();
    // Directives with resources stand behind the clauses as well as before them.
    while (FToken.Kind != TTokenKind::End) Advance();
    ReportUnterminated();
    return std::move(FResult);
  }

 private:
  using TEntryReader = void (TPascalProjectReader::*)();
  struct THeaderWord {
    std::string_view Word;
    TProjectKind Kind;
  };
  struct TClauseWord {
    std::string_view Word;
    TEntryReader ReadEntry;
  };

  bool AtWord(std::string_view word) const {
    return FToken.Kind == TTokenKind::Identifier && EqualText(FToken.Text, word);
  }

  // Goes on to the next token of the code; directives are looked at in passing.
  void Advance() {
    do {
      FToken = FScanner.Next();
      if (FToken.Kind == TTokenKind::Directive) ReadDirective(FToken.Text);
      if (FToken.Kind == TTokenKind::Note && FNote) *FNote = ReadFormNote(FToken.Text);
      // Only the first comment that has the shape of a note counts.
      if (FNote && FNote->has_value()) FNote = nullptr;
    } while (FToken.Kind == TTokenKind::Note || FToken.Kind == TTokenKind::Directive);
  }

  // {$R *.res} links a resource; {$R+} and {$R-} switch range checks.
  void ReadDirective(std::string_view directive) {
    size_t length = 0;
    while (length < directive.size() && IsIdentifierPart(directive[length])) ++length;
    const std::string_view word = directive.substr(0, length);
    if (!EqualText(word, "R") && !EqualText(word, "RESOURCE")) return;
    const std::string_view rest = Trim(directive.substr(length));
    if (rest.empty() || rest[0] == '+' || rest[0] == '-') return;
    if (rest[0] == '\'') FResult.Resources.push_back(UnquotePascal(rest));
    else FResult.Resources.emplace_back(rest.substr(0, rest.find_first_of(" \t\r\n")));
  }

  void ReadHeader() {
    static constexpr THeaderWord Words[] = {{"program", TProjectKind::Program},
                                            {"library", TProjectKind::Library},
                                            {"package", TProjectKind::Package}};
    for (const THeaderWord& header : Words) {
      if (!AtWord(header.Word)) continue;
      FResult.Kind = header.Kind;
      Advance();
      const std::string name = ReadUnitName();
      if (!name.empty()) FResult.Name = name;
      // Parameters such as (Input, Output) may follow the name.
      while (FToken.Kind != TTokenKind::End && !FToken.IsSymbol(';') && !AtClause()) Advance();
      if (FToken.IsSymbol(';')) Advance();
      else Problem("expected ';' after the name of the project");
      return;
    }
  }

  static const TClauseWord* FindClause(std::string_view word) {
    static constexpr TClauseWord Words[] = {{"uses", &TPascalProjectReader::ReadUnit},
                                            {"contains", &TPascalProjectReader::ReadUnit},
                                            {"requires", &TPascalProjectReader::ReadPackage}};
    for (const TClauseWord& clause : Words)
      if (EqualText(clause.Word, word)) return &clause;
    return nullptr;
  }
  bool AtClause() const {
    return FToken.Kind == TTokenKind::Identifier && FindClause(FToken.Text) != nullptr;
  }

  bool ReadClause() {
    if (!AtClause()) return false;
    const TEntryReader readEntry = FindClause(FToken.Text)->ReadEntry;
    Advance();
    for (;;) {
      (this->*readEntry)();
      if (FToken.IsSymbol(',')) {
        Advance();
        continue;
      }
      if (FToken.IsSymbol(';')) {
        Advance();
        return true;
      }
      if (!SkipBadEntry()) return true;
    }
  }

  // Stands at what should be ',' or ';'. Returns true when the clause goes on behind it.
  bool SkipBadEntry() {
    Problem("expected ',' or ';' in the list of units");
    while (!FToken.IsSymbol(',') && !FToken.IsSymbol(';')) {
      if (FToken.Kind == TTokenKind::End || AtClause() || AtWord("begin")) return false;
      Advance();
    }
    const bool more = FToken.IsSymbol(',');
    Advance();
    return more;
  }

  void ReadUnit() {
    TProjectEntry entry;
    entry.Place = FPlaces.At(FToken.Offset);
    entry.UnitName = ReadUnitName();
    if (entry.UnitName.empty()) return Problem("expected the name of a unit");
    if (AtWord("in")) {
      Advance();
      if (FToken.Kind != TTokenKind::Text)
        return Problem("expected the file name of the unit in single quotes");
      entry.Path = UnquotePascal(FToken.Text);
      std::optional<TFormNote> note;
      FNote = &note;
      Advance();
      FNote = nullptr;
      if (note) {
        entry.FormName = std::move(note->FormName);
        entry.DesignClass = std::move(note->DesignClass);
      }
    }
    FResult.Entries.push_back(std::move(entry));
  }

  void ReadPackage() {
    std::string name = ReadUnitName();
    if (name.empty()) return Problem("expected the name of a package");
    FResult.Requires.push_back(std::move(name));
  }

  std::string ReadUnitName() {
    return ReadDottedName(FToken, [this] { Advance(); });
  }

  // One place is reported once, by whoever saw it first.
  void Problem(std::string_view expected) {
    if (FToken.Offset == FProblemOffset) return;
    FProblemOffset = FToken.Offset;
    FResult.Problems.push_back(
        {FPlaces.At(FToken.Offset), fmt::format("{}, found {}", expected, Describe(FToken))});
  }

  void ReportUnterminated() {
    if (FScanner.OpenComment() != std::string_view::npos)
      FResult.Problems.push_back(
          {FPlaces.At(FScanner.OpenComment()), "this comment has no end in the file"});
    if (FScanner.OpenConditionals() != 0)
      FResult.Problems.push_back(
          {FPlaces.At(FToken.Offset), "expected {$ENDIF} before the end of the file"});
  }

  [[noreturn]] void Refuse() {
    const std::string_view clause = FResult.Kind == TProjectKind::Package
                                        ? "'contains' or 'requires'"
                                        : "'uses' and the units of the project";
    throw EProjectError(FFileName, FPlaces.At(FToken.Offset),
                        fmt::format("expected {}, found {}", clause, Describe(FToken)));
  }

  TPascalScanner FScanner;
  TPlaceFinder FPlaces;
  const std::string& FFileName;
  TSourceToken FToken;
  size_t FProblemOffset = std::string_view::npos;
  std::optional<TFormNote>* FNote = nullptr;  // where the note behind a path is awaited
  TProjectSource FResult;
};

enum class TMacroRole { Unit, Form, NamespaceForm, Resource, Package, Library };
struct TFormMacro {
  std::string_view Name;
  TMacroRole Role;
};
constexpr TFormMacro FormMacros[] = {
    {"USEUNIT", TMacroRole::Unit},       {"USEFORM", TMacroRole::Form},
    {"USEDATAMODULE", TMacroRole::Form}, {"USEFORMNS", TMacroRole::NamespaceForm},
    {"USERES", TMacroRole::Resource},    {"USERC", TMacroRole::Resource},
    {"USEPACKAGE", TMacroRole::Package}, {"USEPACKAGENS", TMacroRole::Package},
    {"USELIB", TMacroRole::Library},     {"USEOBJ", TMacroRole::Library}};

class TCppProjectReader {
 public:
  TCppProjectReader(std::string_view text, const std::string& fileName,
                    const TDefinedSymbols& symbols)
      : FScanner(text, symbols), FPlaces(text), FFileName(fileName) {}

  TProjectSource Read() {
    FResult.Language = TSourceLanguage::Cpp;
    FResult.Name = ExtractFileNameEx(FFileName);
    bool found = false;
    for (FToken = FScanner.Next(); FToken.Kind != TTokenKind::End;) {
      const TFormMacro* macro =
          FToken.Kind == TTokenKind::Identifier ? FindMacro(FToken.Text) : nullptr;
      if (macro) {
        found = true;
        ReadMacro(*macro);
      } else {
        LookAt(FToken);
        FToken = FScanner.Next();
      }
    }
    if (!found)
      throw EProjectError(FFileName, FPlaces.At(FToken.Offset),
                          "expected form macros such as USEFORM(\"Main.cpp\", MainForm);, "
                          "found the end of the file");
    return std::move(FResult);
  }

 private:
  static const TFormMacro* FindMacro(std::string_view name) {
    for (const TFormMacro& macro : FormMacros)
      if (macro.Name == name) return &macro;
    return nullptr;
  }

  // A comment "/* TDataModule: File Type */" behind a form's macro names its design class.
  void LookAt(const TSourceToken& token) {
    if (token.Kind == TTokenKind::Identifier && token.Text == "DllEntryPoint")
      FResult.Kind = TProjectKind::Library;
    if (token.Kind != TTokenKind::Note || !FFormBefore) return;
    const size_t colon = token.Text.find(':');
    const std::string_view designClass = Trim(token.Text.substr(0, colon));
    if (colon != std::string_view::npos && IsIdentifier(designClass))
      FResult.Entries.back().DesignClass = designClass;
    FFormBefore = false;
  }

  void ReadMacro(const TFormMacro& macro) {
    FFormBefore = false;
    const TSourcePlace place = FPlaces.At(FToken.Offset);
    FToken = FScanner.NextCode();
    if (!TakeSymbol('(')) return Problem(macro, "expected '('");
    if (FToken.Kind != TTokenKind::Text || FToken.Text[0] != '"')
      return Problem(macro, "expected a file name in double quotes");
    const std::string path = UnquoteCppPath(FToken.Text);
    std::string formName;
    FToken = FScanner.NextCode();
    while (TakeSymbol(',')) {
      // A namespace may stand before the form's name; the last one is the form.
      if (FToken.Kind != TTokenKind::Identifier) return Problem(macro, "expected a form name");
      formName = FToken.Text;
      FToken = FScanner.NextCode();
    }
    if (!FToken.IsSymbol(')')) return Problem(macro, "expected ')'");
    Add(macro.Role, path, formName, place);
    FToken = FScanner.Next();
    if (FToken.IsSymbol(';')) FToken = FScanner.Next();
  }

  void Add(TMacroRole role, const std::string& path, std::string& formName, TSourcePlace place) {
    switch (role) {
      case TMacroRole::Resource:
        FResult.Resources.push_back(path);
        break;
      case TMacroRole::Package:
        FResult.Requires.push_back(ExtractFileNameEx(path));
        break;
      case TMacroRole::Library:
        FResult.Libraries.push_back(path);
        break;
      case TMacroRole::Unit:
        formName.clear();
        [[fallthrough]];
      case TMacroRole::Form:
      case TMacroRole::NamespaceForm:
        FFormBefore = role != TMacroRole::Unit;
        FResult.Entries.push_back({ExtractFileNameEx(path), path, std::move(formName), {}, place});
    }
  }

  bool TakeSymbol(char symbol) {
    if (!FToken.IsSymbol(symbol)) return false;
    FToken = FScanner.NextCode();
    return true;
  }

  void Problem(const TFormMacro& macro, std::string_view expected) {
    FResult.Problems.push_back(
        {FPlaces.At(FToken.Offset),
         fmt::format("{}: {}, found {}", macro.Name, expected, Describe(FToken))});
  }

  TCppScanner FScanner;
  TPlaceFinder FPlaces;
  const std::string& FFileName;
  TSourceToken FToken;
  bool FFormBefore = false;  // the last thing read was the macro of a form
  TProjectSource FResult;
};

}  // namespace

EProjectError::EProjectError(const std::string& fileName, TSourcePlace place,
                             const std::string& message)
    : Exception(fmt::format("{}({},{}): {}", fileName, place.Line, place.Column, message)),
      FileName(fileName),
      Place(place) {}

TProjectSource ParseProjectSource(std::string_view text, const std::string& fileName,
                                  const TDefinedSymbols& symbols) {
  constexpr std::string_view wanted = "expected the source text of a project";
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (Trim(text).empty())
    throw EProjectError(fileName, {}, fmt::format("{}, found an empty file", wanted));
  const size_t zero = text.find('\0');
  if (zero != std::string_view::npos)
    throw EProjectError(fileName, TPlaceFinder(text).At(zero),
                        fmt::format("{}, found binary data", wanted));
  if (LanguageOfFile(fileName) == TSourceLanguage::Cpp)
    return TCppProjectReader(text, fileName, symbols).Read();
  return TPascalProjectReader(text, fileName, symbols).Read();
}

}  // namespace wrenfold
