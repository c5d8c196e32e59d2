// Declarations of C++ headers and sources.
#include <algorithm>
#include <utility>

#include "platform/core/text/SysUtils.h"
#include "project/CppScanner.h"
#include "project/UnitReaders.h"

namespace wrenfold {

namespace {

// Classes and namespaces that are deeper are noise.
constexpr int MaxNesting = 50;
// A statement of more words is no declaration.
constexpr size_t MaxStatement = 20000;

struct TAccessWord {
  std::string_view Word;
  TVisibility Visibility;
};
constexpr TAccessWord AccessWords[] = {{"__published", TVisibility::Published},
                                       {"public", TVisibility::Public},
                                       {"__automated", TVisibility::Public},
                                       {"protected", TVisibility::Protected},
                                       {"private", TVisibility::Private}};

// Words in front of a declaration that say nothing about its type.
constexpr std::string_view Specifiers[] = {
    "virtual",           "static",         "inline",     "explicit",  "friend",     "extern",
    "mutable",           "constexpr",      "__fastcall", "__stdcall", "__cdecl",    "__pascal",
    "PACKAGE",           "DYNAMIC",        "HIDESBASE",  "MESSAGE",   "__declspec", "DELPHICLASS",
    "typename",          "register",       "__thiscall", "_fastcall", "WINAPI",     "__published",
    "BEGIN_MESSAGE_MAP", "END_MESSAGE_MAP"};

bool IsOneOf(std::string_view word, const auto& words) {
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

using TTokens = std::vector<TSourceToken>;

class TCppUnitReader {
 public:
  TCppUnitReader(std::string_view text, const TDefinedSymbols& symbols)
      : FText(text), FScanner(text, symbols), FPlaces(text) {}

  TUnitSource Read() {
    FUnit.Kind = TSourceKind::Cpp;
    Advance();
    while (FToken.Kind != TTokenKind::End) {
      ReadScope(None, TVisibility::Public, 0);
      if (At('}')) Advance();
    }
    FUnit.NextPlace = FPlaces.At(FToken.Offset);
    FUnit.NextWord = DescribeToken(FToken);
    return std::move(FUnit);
  }

 private:
  static constexpr size_t None = static_cast<size_t>(-1);
  // What ended a statement.
  enum class TEnd { Semicolon, Brace, ScopeEnd, Access, Source };

  bool At(char symbol) const { return FToken.IsSymbol(symbol); }
  bool AtEnd() const { return FToken.Kind == TTokenKind::End; }

  void Advance() {
    if (FToken.Kind != TTokenKind::End) FEndBefore = FToken.End();
    for (;;) {
      FToken = FScanner.Next();
      if (FToken.Kind == TTokenKind::Directive) ReadDirective(FToken);
      else if (FToken.Kind == TTokenKind::Note) TakeNote(FToken.Text);
      else return;
    }
  }

  void ReadDirective(const TSourceToken& directive) {
    constexpr std::string_view resource = "pragma resource";
    if (directive.Text.starts_with("include")) return ReadInclude(directive);
    if (!directive.Text.starts_with(resource)) return;
    std::string_view name = Trim(directive.Text.substr(resource.size()));
    if (name.starts_with('"')) name = name.substr(1, name.find('"', 1) - 1);
    FUnit.Resources.emplace_back(name);
  }

  void ReadInclude(const TSourceToken& directive) {
    const size_t open = directive.Text.find('"');
    if (open == std::string_view::npos) return;
    const size_t close = directive.Text.find('"', open + 1);
    const std::string_view path = directive.Text.substr(open + 1, close - open - 1);
    const size_t begin = FText.find(directive.Text, directive.Offset) + open;
    const bool isClosed = close != std::string_view::npos;
    FUnit.Uses.push_back({ExtractFileNameEx(path),
                          std::string(path),
                          {},
                          FPlaces.At(directive.Offset),
                          {},
                          isClosed ? TSourceSpan{begin, begin + path.size() + 2} : TSourceSpan{}});
  }

  void TakeNote(std::string_view text) {
    if (FBehindMacro) FUnit.Macros.back().Notes.emplace_back(text);
  }

  // Scopes.

  // Up to the brace that closes it, which is left.
  void ReadScope(size_t owner, TVisibility visibility, int depth) {
    while (!AtEnd() && !At('}')) {
      if (ReadAccess(owner, visibility)) continue;
      ReadStatement(owner, visibility, depth);
    }
  }

  bool ReadAccess(size_t owner, TVisibility& visibility) {
    if (owner == None || FToken.Kind != TTokenKind::Identifier) return false;
    for (const TAccessWord& access : AccessWords) {
      if (FToken.Text != access.Word) continue;
      Advance();
      if (At(':')) Advance();
      visibility = access.Visibility;
      return true;
    }
    return false;
  }

  void ReadStatement(size_t owner, TVisibility visibility, int depth) {
    if (owner == None && ReadMacro()) return;
    TTokens tokens;
    const size_t begin = FToken.Offset;
    int brackets = 0;
    bool initialises = false;  // behind '='
    bool closed = false;       // a bracket was closed
    while (!AtEnd()) {
      if (brackets <= 0 && At('}')) return Declare(owner, tokens, begin, visibility);
      if (brackets <= 0 && At(';')) {
        Advance();
        return Declare(owner, tokens, begin, visibility);
      }
      if (At('{')) {
        if (brackets > 0 || initialises || (closed && BracesBelongToMember(tokens))) {
          tokens.push_back(FToken);
          SkipBraces();
          continue;
        }
        return ReadBraces(owner, tokens, begin, visibility, depth);
      }
      if (At('(') || At('[')) ++brackets;
      if (At(')') || At(']')) --brackets;
      closed |= At(')');
      if (At('=') && brackets <= 0 && !IsOperator(tokens)) initialises = true;
      if (tokens.size() < MaxStatement) tokens.push_back(FToken);
      Advance();
    }
  }

  static bool IsOperator(const TTokens& tokens) {
    return std::any_of(tokens.begin(), tokens.end(),
                       [](const TSourceToken& token) { return token.Text == "operator"; });
  }

  // "Member{1}" in the list behind "Constructor() :".
  static bool BracesBelongToMember(const TTokens& tokens) {
    if (ClassNameOf(tokens) != None) return false;
    if (tokens.size() < 2 || tokens.back().Kind != TTokenKind::Identifier) return false;
    const TSourceToken& before = tokens[tokens.size() - 2];
    return before.IsSymbol(',') || before.IsSymbol(':');
  }

  // Stands at '{' and stops behind the '}' that closes it.
  void SkipBraces() {
    int depth = 0;
    do {
      if (At('{')) ++depth;
      if (At('}')) --depth;
      if (IsCreateForm(FToken)) ReadCreatedNames();
      else Advance();
    } while (depth > 0 && !AtEnd());
  }

  // Stands at "CreateForm" and stops at the end of the statement.
  void ReadCreatedNames() {
    for (Advance(); !AtEnd() && !At(';') && !At('}'); Advance())
      if (FToken.Kind == TTokenKind::Identifier) FUnit.CreatedNames.emplace_back(FToken.Text);
  }

  void ReadBraces(size_t owner, const TTokens& tokens, size_t begin, TVisibility visibility,
                  int depth) {
    const std::string_view first = FirstWord(tokens);
    if (depth >= MaxNesting) return SkipBraces();
    if (first == "namespace" || (first == "extern" && tokens.size() == 2)) {
      Advance();
      ReadScope(None, TVisibility::Public, depth + 1);
      if (At('}')) Advance();
      return;
    }
    const size_t name = ClassNameOf(tokens);
    if (name != None) return ReadClass(owner, tokens, name, begin, depth);
    const size_t open = OpeningOf(tokens);
    if (open == None) {
      // An enumeration, or what is not known; names of variables may follow.
      SkipBraces();
      while (!AtEnd() && !At(';') && !At('{') && !At('}')) Advance();
      if (At(';')) Advance();
      return;
    }
    TMethodDeclaration method = MethodOf(tokens, open, begin, visibility);
    SkipBraces();
    method.Body = {begin, FEndBefore};
    if (At(';')) Advance();
    Keep(owner, std::move(method));
  }

  // Without the parameters of a template.
  static std::string_view FirstWord(const TTokens& tokens) {
    const size_t first = BehindTemplate(tokens);
    return first < tokens.size() ? tokens[first].Text : std::string_view();
  }

  static size_t BehindTemplate(const TTokens& tokens) {
    size_t first = 0;
    if (!tokens.empty() && tokens[0].Text == "template") {
      int depth = 0;
      for (first = 1; first < tokens.size(); ++first) {
        if (tokens[first].IsSymbol('<')) ++depth;
        if (tokens[first].IsSymbol('>') && --depth <= 0) {
          ++first;
          break;
        }
      }
    }
    return first;
  }

  // Classes.

  // The token that names the class whose head these are: the last word in front of a colon. Words
  // before the name ("PACKAGE", "__declspec(...)") are passed over.
  static size_t ClassNameOf(const TTokens& tokens) {
    size_t at = BehindTemplate(tokens);
    while (at < tokens.size() && (tokens[at].Text == "typedef" || tokens[at].Text == "static"))
      ++at;
    if (at >= tokens.size()) return None;
    const std::string_view word = tokens[at].Text;
    if (word != "class" && word != "struct" && word != "union") return None;
    size_t name = None;
    int brackets = 0;
    for (++at; at < tokens.size(); ++at) {
      const TSourceToken& token = tokens[at];
      if (token.IsSymbol('(')) ++brackets;
      else if (token.IsSymbol(')')) --brackets;
      else if (brackets > 0) continue;
      else if (token.IsSymbol(':') || token.IsSymbol('<')) break;
      else if (token.Kind != TTokenKind::Identifier) return None;
      else if (token.Text != "final" && token.Text != "__declspec") name = at;
    }
    return name;
  }

  // Stands at '{'.
  void ReadClass(size_t owner, const TTokens& tokens, size_t name, size_t begin, int depth) {
    TClassDeclaration declared;
    declared.Name = tokens[name].Text;
    if (owner != None) {
      const TClassDeclaration& outer = FUnit.Classes[owner];
      declared.Outer = (outer.Outer.empty() ? "" : outer.Outer + ".") + outer.Name;
    }
    declared.Ancestor = AncestorOf(tokens, name);
    declared.IsGeneric = tokens[0].Text == "template";
    declared.Place = FPlaces.At(tokens[name].Offset);
    const bool isClass = std::any_of(tokens.begin(), tokens.begin() + static_cast<int>(name),
                                     [](const auto& token) { return token.Text == "class"; });
    declared.Kind = isClass ? TClassKind::Class : TClassKind::Record;
    Advance();
    declared.Members = {FEndBefore, FEndBefore};
    const size_t index = FUnit.Classes.size();
    FUnit.Classes.push_back(std::move(declared));
    ReadScope(index, isClass ? TVisibility::Private : TVisibility::Public, depth + 1);
    FUnit.Classes[index].Members.End = std::max(FToken.Offset, FUnit.Classes[index].Members.Begin);
    if (At('}')) Advance();
    // Names of variables may follow.
    while (!AtEnd() && !At(';') && !At('}') && !At('{')) Advance();
    if (At(';')) Advance();
    FUnit.Classes[index].Text = {begin, FEndBefore};
  }

  // The last word of the first base, without type parameters.
  static std::string AncestorOf(const TTokens& tokens, size_t name) {
    size_t at = name + 1;
    while (at < tokens.size() && !tokens[at].IsSymbol(':')) ++at;
    std::string_view ancestor;
    for (++at; at < tokens.size(); ++at) {
      if (tokens[at].Kind == TTokenKind::Identifier) ancestor = tokens[at].Text;
      else if (!tokens[at].IsSymbol(':')) break;
    }
    return std::string(ancestor);
  }

  // Members and routines.

  // Takes a statement that had no braces of its own.
  void Declare(size_t owner, const TTokens& all, size_t begin, TVisibility visibility) {
    if (all.empty() || all.size() >= MaxStatement) return;
    const std::string_view first = FirstWord(all);
    if (first == "typedef" || first == "using" || first == "friend" || first == "enum") return;
    if (first == "__property") return DeclareProperty(owner, all, begin, visibility);
    const size_t open = OpeningOf(all);
    if (open != None) return Keep(owner, MethodOf(all, open, begin, visibility));
    if (owner != None) DeclareFields(FUnit.Classes[owner], all, begin, visibility);
  }

  // The bracket of the parameters: the first behind a name, outside of type parameters. None for a
  // pointer to a function and for what is set to a value.
  static size_t OpeningOf(const TTokens& tokens) {
    int depth = 0;
    for (size_t i = BehindTemplate(tokens); i < tokens.size(); ++i) {
      if (tokens[i].Text == "__declspec" || tokens[i].Text == "MESSAGE_MAP") {
        i = SkipTo(tokens, i, ')');
        continue;
      }
      if (tokens[i].Text == "operator") return OperatorOpening(tokens, i);
      if (tokens[i].IsSymbol('<')) ++depth;
      if (tokens[i].IsSymbol('>')) --depth;
      if (tokens[i].IsSymbol('=')) return None;
      if (depth > 0 || !tokens[i].IsSymbol('(')) continue;
      const bool named = i > 0 && tokens[i - 1].Kind == TTokenKind::Identifier;
      const size_t behind = SkipTo(tokens, i, ')') + 1;
      const bool pointer = behind < tokens.size() && tokens[behind].IsSymbol('(');
      return named && !pointer ? i : None;
    }
    return None;
  }

  static size_t OperatorOpening(const TTokens& tokens, size_t word) {
    size_t at = word + 1;
    if (at + 1 < tokens.size() && tokens[at].IsSymbol('(') && tokens[at + 1].IsSymbol(')')) at += 2;
    while (at < tokens.size() && !tokens[at].IsSymbol('(')) ++at;
    return at < tokens.size() ? at : None;
  }

  static size_t SkipTo(const TTokens& tokens, size_t at, char symbol) {
    while (at < tokens.size() && !tokens[at].IsSymbol(symbol)) ++at;
    return at;
  }

  TMethodDeclaration MethodOf(const TTokens& tokens, size_t open, size_t begin,
                              TVisibility visibility) {
    TMethodDeclaration method;
    method.Visibility = visibility;
    method.Text = {begin, FEndBefore};
    size_t name = open - 1;
    const size_t first = BehindTemplate(tokens);
    for (size_t i = first; i < open; ++i)
      if (tokens[i].Text == "operator") name = i;
    method.Place = FPlaces.At(tokens[name].Offset);
    for (size_t i = name; i < open; ++i) method.Name += tokens[i].Text;
    if (tokens[name].Text == "operator") method.Kind = TMethodKind::Operator;
    size_t resultEnd = name;
    if (name > first && tokens[name - 1].IsSymbol('~')) {
      method.Kind = TMethodKind::Destructor;
      method.Name.insert(method.Name.begin(), '~');
      --resultEnd;
    }
    resultEnd = ReadQualifier(tokens, first, resultEnd, method.Class);
    for (size_t i = first; i < resultEnd; ++i) {
      if (tokens[i].Text == "static") method.IsOfClass = true;
      if (tokens[i].Text == "__declspec") i = SkipTo(tokens, i, ')');
      else if (!IsOneOf(tokens[i].Text, Specifiers)) AppendToType(method.Result, tokens[i].Text);
    }
    if (method.Kind == TMethodKind::Procedure && method.Result.empty())
      method.Kind = TMethodKind::Constructor;
    else if (method.Kind == TMethodKind::Procedure && method.Result != "void")
      method.Kind = TMethodKind::Function;
    if (method.Result == "void") method.Result.clear();
    ReadParameters(tokens, open, method);
    return method;
  }

  // "TOuter::TInner::" in front of a name; returns where it begins.
  static size_t ReadQualifier(const TTokens& tokens, size_t first, size_t end,
                              std::string& qualifier) {
    while (end >= first + 3 && tokens[end - 1].IsSymbol(':') && tokens[end - 2].IsSymbol(':')) {
      end -= 3;
      if (tokens[end].IsSymbol('>')) {
        while (end > first && !tokens[end].IsSymbol('<')) --end;
        if (end > first) --end;
      }
      qualifier = std::string(tokens[end].Text) + (qualifier.empty() ? "" : "." + qualifier);
    }
    return end;
  }

  static void ReadParameters(const TTokens& tokens, size_t open, TMethodDeclaration& method) {
    int depth = 0;
    size_t begin = open + 1;
    for (size_t i = open; i < tokens.size(); ++i) {
      if (tokens[i].IsSymbol('(') || tokens[i].IsSymbol('<') || tokens[i].IsSymbol('[')) ++depth;
      const bool closes =
          tokens[i].IsSymbol(')') || tokens[i].IsSymbol('>') || tokens[i].IsSymbol(']');
      if (closes) --depth;
      const bool ends = depth == 0 && closes;
      if (!ends && !(depth == 1 && tokens[i].IsSymbol(','))) continue;
      AddParameter(tokens, begin, i, method.Parameters);
      begin = i + 1;
      if (!ends) continue;
      // "= 0" behind the parameters.
      method.IsAbstract = i + 2 < tokens.size() && tokens[tokens.size() - 2].IsSymbol('=') &&
                          tokens.back().Text == "0";
      return;
    }
  }

  static void AddParameter(const TTokens& tokens, size_t begin, size_t end,
                           std::vector<TParameter>& parameters) {
    size_t last = begin;
    while (last < end && !tokens[last].IsSymbol('=')) ++last;
    if (begin == last || (last - begin == 1 && tokens[begin].Text == "void")) return;
    TParameter parameter;
    size_t typeEnd = last;
    while (typeEnd > begin + 1 && tokens[typeEnd - 1].IsSymbol(']'))
      typeEnd = typeEnd >= begin + 2 ? typeEnd - 2 : begin + 1;
    const bool named = typeEnd - begin > 1 && tokens[typeEnd - 1].Kind == TTokenKind::Identifier &&
                       !tokens[typeEnd - 2].IsSymbol(':') && tokens[typeEnd - 1].Text != "const" &&
                       tokens[typeEnd - 2].Text != "const";
    if (named) parameter.Name = tokens[--typeEnd].Text;
    for (size_t i = begin; i < typeEnd; ++i) AppendToType(parameter.Type, tokens[i].Text);
    parameters.push_back(std::move(parameter));
  }

  void Keep(size_t owner, TMethodDeclaration method) {
    if (method.Name.empty()) return;
    if (owner == None) {
      // A declaration without a body says nothing that its class does not say.
      if (method.Body.Empty() && !method.Class.empty()) return;
      FUnit.Routines.push_back(std::move(method));
      return;
    }
    TClassDeclaration& declared = FUnit.Classes[owner];
    if (method.Kind == TMethodKind::Constructor && method.Name != declared.Name) return;
    declared.Methods.push_back(std::move(method));
  }

  void DeclareProperty(size_t owner, const TTokens& tokens, size_t begin, TVisibility visibility) {
    if (owner == None) return;
    TPropertyDeclaration property;
    property.Visibility = visibility;
    property.Text = {begin, FEndBefore};
    size_t end = 1;
    while (end < tokens.size() && !tokens[end].IsSymbol('=') && !tokens[end].IsSymbol('[')) ++end;
    if (end < 2 || tokens[end - 1].Kind != TTokenKind::Identifier) return;
    property.Name = tokens[end - 1].Text;
    property.Place = FPlaces.At(tokens[end - 1].Offset);
    for (size_t i = 1; i + 1 < end; ++i) AppendToType(property.Type, tokens[i].Text);
    FUnit.Classes[owner].Properties.push_back(std::move(property));
  }

  // "TButton *First, *Second;"
  void DeclareFields(TClassDeclaration& declared, const TTokens& tokens, size_t begin,
                     TVisibility visibility) {
    const bool ofClass = tokens[0].Text == "static";
    const size_t firstField = declared.Fields.size();
    std::string base;
    for (size_t start = 0; start < tokens.size();) {
      const size_t end = NextComma(tokens, start);
      const size_t name = NameOfField(tokens, start, end);
      if (name == None || (start == 0 && name == 0)) break;
      size_t words = name;
      while (words > start && tokens[words - 1].Kind == TTokenKind::Symbol &&
             !tokens[words - 1].IsSymbol('>'))
        --words;
      if (start == 0) base = TypeOf(tokens, 0, words);
      const std::string type = base + TypeOf(tokens, words, name);
      AddField(declared, tokens[name], type, visibility).IsOfClass = ofClass;
      start = end + 1;
    }
    for (size_t i = firstField; i < declared.Fields.size(); ++i) {
      declared.Fields[i].Text = {begin, FEndBefore};
      declared.Fields[i].IsShared = declared.Fields.size() - firstField > 1;
    }
  }

  static size_t NextComma(const TTokens& tokens, size_t at) {
    for (int depth = 0; at < tokens.size(); ++at) {
      if (tokens[at].IsSymbol('<') || tokens[at].IsSymbol('(')) ++depth;
      if (tokens[at].IsSymbol('>') || tokens[at].IsSymbol(')')) --depth;
      if (depth <= 0 && tokens[at].IsSymbol(',')) break;
    }
    return at;
  }

  // The last word in front of a value, an index or a count of bits.
  static size_t NameOfField(const TTokens& tokens, size_t begin, size_t end) {
    size_t at = begin;
    for (; at < end; ++at) {
      if (tokens[at].IsSymbol('=') || tokens[at].IsSymbol('[')) break;
      if (!tokens[at].IsSymbol(':')) continue;
      if (at + 1 >= end || !tokens[at + 1].IsSymbol(':')) break;
      ++at;
    }
    return at > begin && tokens[at - 1].Kind == TTokenKind::Identifier ? at - 1 : None;
  }

  static std::string TypeOf(const TTokens& tokens, size_t begin, size_t end) {
    std::string type;
    for (size_t i = begin; i < end; ++i)
      if (!IsOneOf(tokens[i].Text, Specifiers)) AppendToType(type, tokens[i].Text);
    return type;
  }

  TFieldDeclaration& AddField(TClassDeclaration& declared, const TSourceToken& name,
                              const std::string& type, TVisibility visibility) {
    TFieldDeclaration field;
    field.Name = name.Text;
    field.Type = type;
    field.Visibility = visibility;
    field.NameText = {name.Offset, name.End()};
    field.Place = FPlaces.At(name.Offset);
    return declared.Fields.emplace_back(std::move(field));
  }

  // Macros such as USEFORM("Main.cpp", MainForm); stand alone.
  bool ReadMacro() {
    if (FToken.Kind != TTokenKind::Identifier || !FToken.Text.starts_with("USE") ||
        !IsMacroName(FToken.Text))
      return false;
    TMacroCall macro;
    macro.Name = FToken.Text;
    macro.Place = FPlaces.At(FToken.Offset);
    macro.Text.Begin = FToken.Offset;
    FBehindMacro = false;
    Advance();
    if (At('(')) ReadArguments(macro);
    FUnit.Macros.push_back(std::move(macro));
    FBehindMacro = true;
    if (At(')')) Advance();
    if (At(';')) Advance();
    FBehindMacro = false;
    FUnit.Macros.back().Text.End = FEndBefore;
    return true;
  }

  static bool IsMacroName(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char character) {
      return (character >= 'A' && character <= 'Z') || character == '_';
    });
  }

  // Stands at '(' and stops at ')', or where there can be none.
  void ReadArguments(TMacroCall& macro) {
    do {
      Advance();
      if (macro.Arguments.empty() && FToken.Kind == TTokenKind::Text)
        macro.PathText = {FToken.Offset, FToken.End()};
      std::string argument;
      while (!AtEnd() && !At(',') && !At(')') && !At(';')) {
        AppendToType(argument, FToken.Text);
        Advance();
      }
      macro.Arguments.push_back(std::move(argument));
    } while (At(','));
  }

  std::string_view FText;
  TCppScanner FScanner;
  TPlaceFinder FPlaces;
  TSourceToken FToken;
  size_t FEndBefore = 0;
  bool FBehindMacro = false;
  TUnitSource FUnit;
};

}  // namespace

TUnitSource ReadCppUnit(std::string_view text, const TDefinedSymbols& symbols) {
  return TCppUnitReader(text, symbols).Read();
}

}  // namespace wrenfold
