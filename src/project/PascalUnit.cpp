// Declarations of Pascal sources.
#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "platform/core/text/SysUtils.h"
#include "project/PascalTokens.h"
#include "project/UnitReaders.h"

namespace wrenfold {

namespace {

using enum TPascalWord;

// Classes within classes and routines within routines that are deeper are noise.
constexpr int MaxNesting = 50;
// No class overloads a method more often; a noisy source shall not take the square of its size.
constexpr size_t MaxOverloads = 64;

struct TVisibilityWord {
  TPascalWord Word;
  TVisibility Visibility;
};
constexpr TVisibilityWord VisibilityWords[] = {{Published, TVisibility::Published},
                                               {Public, TVisibility::Public},
                                               {Automated, TVisibility::Public},
                                               {Protected, TVisibility::Protected},
                                               {Private, TVisibility::Private}};

struct TRoutineWord {
  TPascalWord Word;
  TMethodKind Kind;
};
constexpr TRoutineWord RoutineWords[] = {{Procedure, TMethodKind::Procedure},
                                         {Function, TMethodKind::Function},
                                         {Constructor, TMethodKind::Constructor},
                                         {Destructor, TMethodKind::Destructor},
                                         {Operator, TMethodKind::Operator}};

// What may follow the heading of a routine and ends with a semicolon of its own.
constexpr std::string_view Directives[] = {
    "abstract",   "assembler",     "cdecl",        "deprecated",    "dispid",    "dynamic",
    "enumerator", "experimental",  "export",       "external",      "far",       "final",
    "forward",    "inline",        "interrupt",    "library",       "local",     "message",
    "name",       "near",          "nostackframe", "override",      "overload",  "pascal",
    "platform",   "public",        "register",     "reintroduce",   "safecall",  "static",
    "stdcall",    "unimplemented", "unsafe",       "varargs",       "virtual",   "winapi",
    "alias",      "compilerproc",  "iocheck",      "saveregisters", "softfloat", "syscall"};

bool IsDirective(std::string_view word) {
  return std::any_of(std::begin(Directives), std::end(Directives),
                     [&](std::string_view known) { return EqualText(known, word); });
}

class TPascalUnitReader {
 public:
  TPascalUnitReader(std::string_view text, const TDefinedSymbols& symbols,
                    const TIncludeReader& includes)
      : FTokens(text, symbols, includes, FUnit.Resources), FSize(text.size()) {}

  TUnitSource Read() {
    FUnit.FirstPlace = FTokens.Place();
    ReadHead();
    while (ReadClause()) FUnit.HasClauses = true;
    FUnit.NextPlace = FTokens.Place();
    FUnit.NextWord = DescribeToken(FTokens.Token());
    while (!FTokens.AtEnd()) ReadPart();
    if (FInImplementation) EndImplementation(FSize);
    FTokens.ReportUnterminated(FUnit.Problems);
    LinkBodies();
    return std::move(FUnit);
  }

 private:
  enum class TDeclarations { Types, Others };
  struct THeadWord {
    TPascalWord Word;
    TSourceKind Kind;
  };
  struct TName {
    std::string Name;
    size_t Begin = 0;
    TSourcePlace Place;
  };
  struct THeading {
    TMethodDeclaration Method;
    bool HasNoBody = false;  // forward, or elsewhere
    bool IsResolution =
        false;  // "procedure IThing.Do = Other;" says which method serves for another
  };

  bool At(TPascalWord word) const { return FTokens.At(word); }
  bool At(char symbol) const { return FTokens.At(symbol); }
  void Advance() { FTokens.Advance(); }
  std::string_view Text() const { return FTokens.Token().Text; }
  // Of something that began at `begin` and ends in front of the token.
  TSourceSpan SpanFrom(size_t begin) const {
    return FTokens.InInclude() || FTokens.EndBefore() < begin
               ? TSourceSpan{}
               : TSourceSpan{begin, FTokens.EndBefore()};
  }

  // One place is reported once, by whoever saw it first.
  void Problem(std::string_view expected) {
    if (FTokens.Offset() == FProblemOffset) return;
    FProblemOffset = FTokens.Offset();
    FUnit.Problems.push_back(
        {FTokens.Place(), fmt::format("{}, found {}", expected, DescribeToken(FTokens.Token()))});
  }

  std::string ReadDotted() {
    return ReadDottedName(FTokens.Token(), [this] { Advance(); });
  }

  // Head and clauses.

  void ReadHead() {
    static constexpr THeadWord words[] = {{Program, TSourceKind::Program},
                                          {Library, TSourceKind::Library},
                                          {Package, TSourceKind::Package},
                                          {Unit, TSourceKind::Unit}};
    for (const THeadWord& head : words) {
      if (!FTokens.Take(head.Word)) continue;
      FUnit.Kind = head.Kind;
      const size_t begin = FTokens.Offset();
      FUnit.Name = ReadDotted();
      if (!FUnit.Name.empty()) FUnit.NameText = SpanFrom(begin);
      // Parameters such as (Input, Output) may follow the name, or words on the platform.
      while (!FTokens.AtEnd() && !At(';') && !AtClause() && !At(Interface)) Advance();
      if (!FTokens.Take(';')) Problem("expected ';' after the name of the project");
      return;
    }
  }

  bool AtClause() const { return At(Uses) || At(Contains) || At(Requires); }

  bool ReadClause() {
    if (!AtClause()) return false;
    std::vector<TUsedUnit>& list = At(Requires)        ? FUnit.Requires
                                   : FInImplementation ? FUnit.ImplementationUses
                                                       : FUnit.Uses;
    const bool first = !At(Requires) && !FInImplementation && FUnit.UsesText.Empty();
    const size_t begin = FTokens.Offset();
    const std::string_view wanted =
        At(Requires) ? "expected the name of a package" : "expected the name of a unit";
    Advance();
    for (;;) {
      ReadUsedUnit(list, wanted);
      if (FTokens.Take(',')) continue;
      if (At(';') && first && !FTokens.InInclude()) FUnit.UsesText = {begin, FTokens.Offset()};
      if (FTokens.Take(';') || !SkipBadEntry()) return true;
    }
  }

  void ReadUsedUnit(std::vector<TUsedUnit>& list, std::string_view wanted) {
    TUsedUnit used;
    used.Place = FTokens.Place();
    const size_t begin = FTokens.Offset();
    used.Name = ReadDotted();
    if (used.Name.empty()) return Problem(wanted);
    used.NameText = SpanFrom(begin);
    if (FTokens.Take(In)) {
      if (FTokens.Token().Kind != TTokenKind::Text)
        return Problem("expected the file name of the unit in single quotes");
      used.Path = UnquotePascal(Text());
      if (!FTokens.InInclude()) used.PathText = {FTokens.Offset(), FTokens.Token().End()};
      FTokens.CollectNotes(&used.Notes);
      Advance();
      FTokens.CollectNotes(nullptr);
    }
    list.push_back(std::move(used));
  }

  // Stands at what should be ',' or ';'. Returns true when the clause goes on behind it.
  bool SkipBadEntry() {
    Problem("expected ',' or ';' in the list of units");
    while (!At(',') && !At(';')) {
      if (FTokens.AtEnd() || AtClause() || At(Begin)) return false;
      Advance();
    }
    const bool more = At(',');
    Advance();
    return more;
  }

  // Parts of the source.

  void ReadPart() {
    if (FPending) return ReadTypeBehind(OwnClasses(), TakePending(), {}, 0);
    switch (FTokens.Word()) {
      case Uses:
      case Contains:
      case Requires:
        ReadClause();
        return;
      case Interface:
        return Advance();
      case Implementation:
        Advance();
        BeginImplementation();
        return;
      case Initialization:
      case Finalization:
        EndImplementation(FTokens.Offset());
        Advance();
        return SkipStatements();
      case Type:
        FDeclarations = TDeclarations::Types;
        return Advance();
      case Const:
      case Var:
      case Threadvar:
      case Resourcestring:
      case Label:
      case Exports:
        FDeclarations = TDeclarations::Others;
        return Advance();
      case Begin:
        EndImplementation(FTokens.Offset());
        SkipBlock();
        return;
      case End:
        if (FTokens.Ahead().starts_with('.')) EndImplementation(FTokens.Offset());
        return Advance();
      case Class:
      case Procedure:
      case Function:
      case Constructor:
      case Destructor:
      case Operator:
        return ReadRoutine();
      default:
        return ReadOther();
    }
  }

  void BeginImplementation() {
    FInImplementation = true;
    FDeclarations = TDeclarations::Types;
    FUnit.Implementation = {FTokens.EndBefore(), FTokens.EndBefore()};
  }

  void EndImplementation(size_t offset) {
    if (FInImplementation && FUnit.Implementation.Empty())
      FUnit.Implementation.End = std::max(offset, FUnit.Implementation.Begin);
  }

  void ReadOther() {
    if (At('[')) return SkipBrackets('[', ']');
    if (!FTokens.AtName()) return Advance();
    if (FDeclarations == TDeclarations::Others) return SkipDeclaration();
    ReadTypeBehind(OwnClasses(), TakeName(), {}, 0);
  }

  std::vector<TClassDeclaration>& OwnClasses() {
    return FInImplementation ? FUnit.HiddenClasses : FUnit.Classes;
  }

  // The identifier at the token.
  TName TakeName() {
    TName name{std::string(Text()), FTokens.Offset(), FTokens.Place()};
    Advance();
    return name;
  }
  // The name of a type that was found where a member was expected.
  TName TakePending() {
    TName name = std::move(*FPending);
    FPending.reset();
    return name;
  }

  // Types.

  // Stands behind the name of a type.
  void ReadTypeBehind(std::vector<TClassDeclaration>& classes, const TName& name,
                      const std::string& outer, int depth) {
    TClassDeclaration declared;
    declared.Name = name.Name;
    declared.Outer = outer;
    declared.Place = name.Place;
    if (At('<')) {
      if (!SkipTypeParameters()) return;
      declared.IsGeneric = true;
    }
    if (!FTokens.Take('=')) return SkipUnlessName();
    FTokens.Take(Packed);
    if (depth < MaxNesting && BeginsClass(declared))
      return ReadClass(classes, declared, name.Begin, depth);
    SkipDeclaration();
  }

  // What was no declaration of a type is passed over, up to what may be one.
  void SkipUnlessName() {
    if (!FTokens.AtName() && !FTokens.AtEnd()) Advance();
  }

  // Takes the word that says what kind of class it is.
  bool BeginsClass(TClassDeclaration& declared) {
    switch (FTokens.Word()) {
      case Class:
      case Object:
        declared.Kind = TClassKind::Class;
        break;
      case Record:
        declared.Kind = TClassKind::Record;
        break;
      case Interface:
      case Dispinterface:
        declared.Kind = TClassKind::Interface;
        break;
      default:
        return false;
    }
    FIsObject = At(Object);
    Advance();
    return true;
  }

  // Stands at '<'. What is not closed before a '=' was a comparison: it is passed over, but no
  // declaration behind it.
  bool SkipTypeParameters() {
    int depth = 0;
    do {
      if (At('<')) ++depth;
      if (At('>')) --depth;
      if (At('=') || At('(') || At(Type) || FTokens.AtEnd()) return false;
      Advance();
    } while (depth > 0);
    return true;
  }

  // Stands behind "class".
  void ReadClass(std::vector<TClassDeclaration>& classes, TClassDeclaration& declared, size_t begin,
                 int depth) {
    if (At(Of)) return SkipDeclaration();
    const bool isHelper = ReadHelperHead();
    if (!FTokens.Take(Abstract)) FTokens.Take(Sealed);
    const bool isClass = declared.Kind == TClassKind::Class && !FIsObject;
    if (At(';') && !FIsObject && !isHelper) return Advance();  // forward
    if (isClass) declared.Ancestor = "TObject";
    if (At('(')) ReadAncestors(declared);
    FVisibility = isClass ? TVisibility::Published : TVisibility::Public;
    // Classes inside it come behind it; it is there while they are read.
    const size_t index = classes.size();
    classes.push_back(std::move(declared));
    if (!FTokens.InInclude()) classes[index].Members = {FTokens.EndBefore(), FTokens.EndBefore()};
    if (!At(';')) ReadMembers(classes, index, depth);
    FinishClass(classes[index], begin);
    // It adds to a class that is declared elsewhere.
    if (isHelper) classes.resize(index);
  }

  void FinishClass(TClassDeclaration& declared, size_t begin) {
    if (!FPending && !FTokens.InInclude())
      declared.Members.End = std::max(FTokens.Offset(), declared.Members.Begin);
    if (FPending) {
      declared.Members.End = std::max(FPending->Begin, declared.Members.Begin);
      declared.Text = {begin, std::max(begin, FPending->Begin)};
      return;
    }
    if (FTokens.Take(End))
      while (FTokens.AtName() && IsDirective(Text())) Advance();
    FTokens.Take(';');
    declared.Text = SpanFrom(begin);
  }

  // "helper for TThing", with an ancestor perhaps.
  bool ReadHelperHead() {
    if (!FTokens.Take(Helper)) return false;
    while (!FTokens.AtEnd() && !At(For) && !At(End) && !At(';')) Advance();
    if (FTokens.Take(For)) ReadDotted();
    return true;
  }

  void ReadAncestors(TClassDeclaration& declared) {
    Advance();
    const std::string ancestor = ReadDotted();
    if (!ancestor.empty()) declared.Ancestor = ancestor.substr(ancestor.rfind('.') + 1);
    for (int depth = 1; depth > 0 && !FTokens.AtEnd() && !At(';'); Advance()) {
      if (At('(')) ++depth;
      if (At(')')) --depth;
    }
  }

  // Members.

  enum class TMemberPart { Fields, ClassFields, Constants, Types };

  void ReadMembers(std::vector<TClassDeclaration>& classes, size_t index, int depth) {
    FPart = TMemberPart::Fields;
    while (!FTokens.AtEnd() && !At(End) && !EndsUnit())
      if (!ReadMember(classes, index, depth)) return;
  }

  bool EndsUnit() const {
    return At(Implementation) || At(Initialization) || At(Finalization) || At(Begin) || At(Uses);
  }

  // False where the class ends without "end".
  bool ReadMember(std::vector<TClassDeclaration>& classes, size_t index, int depth) {
    TClassDeclaration& declared = classes[index];
    // A type inside it was not finished.
    if (FPending && FPart != TMemberPart::Types) return false;
    const size_t begin = FTokens.Offset();
    if (FPending) return ReadNamedMember(classes, index, depth);
    switch (FTokens.Word()) {
      case Strict:
      case Automated:
      case Private:
      case Protected:
      case Public:
      case Published:
        return ReadVisibility(declared);
      case Class:
        Advance();
        if (FTokens.Take(Var) || FTokens.Take(Threadvar)) FPart = TMemberPart::ClassFields;
        else ReadMethodOrProperty(declared, begin, true);
        return true;
      case Type:
        FPart = TMemberPart::Types;
        Advance();
        return true;
      case Const:
      case Resourcestring:
        FPart = TMemberPart::Constants;
        Advance();
        return true;
      case Var:
      case Threadvar:
        FPart = TMemberPart::Fields;
        Advance();
        return true;
      case Case:
        SkipVariants();
        return true;
      case Procedure:
      case Function:
      case Constructor:
      case Destructor:
      case Property:
        ReadMethodOrProperty(declared, begin, false);
        return true;
      default:
        return ReadNamedMember(classes, index, depth);
    }
  }

  bool ReadNamedMember(std::vector<TClassDeclaration>& classes, size_t index, int depth) {
    if (At('[') && !FPending) {
      SkipBrackets('[', ']');
      return true;
    }
    if (!FTokens.AtName() && !FPending) {
      Advance();
      return true;
    }
    switch (FPart) {
      case TMemberPart::Types:
        ReadInnerType(classes, index, depth);
        return true;
      case TMemberPart::Constants:
        SkipDeclaration();
        return true;
      default:
        return ReadFieldsBehind(classes[index], TakeName());
    }
  }

  void ReadInnerType(std::vector<TClassDeclaration>& classes, size_t index, int depth) {
    const TVisibility visibility = FVisibility;
    const bool isObject = FIsObject;
    const std::string& outer = classes[index].Outer;
    const std::string path = (outer.empty() ? "" : outer + ".") + classes[index].Name;
    ReadTypeBehind(classes, FPending ? TakePending() : TakeName(), path, depth + 1);
    FVisibility = visibility;
    FIsObject = isObject;
    FPart = TMemberPart::Types;
  }

  // A word of visibility, unless it is the name of a field.
  bool ReadVisibility(TClassDeclaration& declared) {
    TVisibility visibility = FVisibility;
    for (const TVisibilityWord& known : VisibilityWords)
      if (At(known.Word)) visibility = known.Visibility;
    const bool strict = At(Strict);
    const TName word = TakeName();
    if (At(':') || At(',')) return ReadFieldsBehind(declared, word);
    if (strict) return true;
    FVisibility = visibility;
    FPart = TMemberPart::Fields;
    return true;
  }

  // Stands behind the first name. False when it is no field but what follows an unfinished class.
  bool ReadFieldsBehind(TClassDeclaration& declared, TName name) {
    if (At('=') || At('<')) {
      FPending = std::move(name);
      return false;
    }
    const size_t begin = name.Begin;
    const size_t firstField = declared.Fields.size();
    AddField(declared, std::move(name));
    while (FTokens.Take(',') && FTokens.AtName()) AddField(declared, TakeName());
    if (!FTokens.Take(':')) {
      declared.Fields.resize(firstField);
      if (!At(End)) SkipDeclaration();
      return true;
    }
    const std::string type = ReadType();
    if (FTokens.Take('=')) ReadType();
    FTokens.Take(';');
    const TSourceSpan text = SpanFrom(begin);
    for (size_t i = firstField; i < declared.Fields.size(); ++i) {
      declared.Fields[i].Type = type;
      declared.Fields[i].Text = text;
      declared.Fields[i].IsShared = declared.Fields.size() - firstField > 1;
    }
    return true;
  }

  void AddField(TClassDeclaration& declared, TName name) {
    TFieldDeclaration field;
    field.Visibility = FVisibility;
    field.IsOfClass = FPart == TMemberPart::ClassFields;
    field.Place = name.Place;
    if (!FTokens.InInclude()) field.NameText = {name.Begin, name.Begin + name.Name.size()};
    field.Name = std::move(name.Name);
    declared.Fields.push_back(std::move(field));
  }

  // Up to a semicolon, '=', ')' or the end of the class; what stands in brackets and records
  // belongs to it.
  std::string ReadType() {
    std::string type;
    int brackets = 0;
    while (!FTokens.AtEnd() && !At(End)) {
      if (brackets == 0 && (At(';') || At('=') || At(')'))) break;
      if (EndsUnit() || At(Private) || At(Protected) || At(Public) || At(Published)) break;
      if (At('(') || At('[')) ++brackets;
      if (At(')') || At(']')) --brackets;
      AppendToType(type, Text());
      if (At(Record)) SkipRecord();
      else Advance();
    }
    return type;
  }

  // Words behind the result need no semicolon in front of them.
  std::string ReadResult() {
    std::string type;
    while (!FTokens.AtEnd() && !At(';') && !At('=') && !At(End) && !EndsUnit()) {
      if (!type.empty() && FTokens.AtName() && !type.ends_with('.') && IsDirective(Text())) break;
      AppendToType(type, Text());
      Advance();
    }
    return type;
  }

  // "case ... of" up to the end of the record.
  void SkipVariants() {
    while (!FTokens.AtEnd() && !At(End) && !At(Implementation)) {
      if (At(Record)) SkipRecord();
      else Advance();
    }
  }

  // From "record" behind its "end".
  void SkipRecord() {
    int depth = 0;
    do {
      if (At(Record)) ++depth;
      if (At(End)) --depth;
      if (At(Implementation)) return;
      Advance();
    } while (depth > 0 && !FTokens.AtEnd());
  }

  void ReadMethodOrProperty(TClassDeclaration& declared, size_t begin, bool ofClass) {
    FPart = TMemberPart::Fields;
    if (At(Property)) return ReadProperty(declared, begin);
    if (!AtRoutine()) return;
    THeading heading = ReadHeading(begin);
    if (heading.Method.Name.empty()) return;
    heading.Method.IsOfClass = ofClass;
    heading.Method.Visibility = FVisibility;
    if (!heading.IsResolution) declared.Methods.push_back(std::move(heading.Method));
  }

  void ReadProperty(TClassDeclaration& declared, size_t begin) {
    TPropertyDeclaration property;
    property.Place = FTokens.Place();
    property.Visibility = FVisibility;
    Advance();
    if (!FTokens.AtName()) return;
    property.Name = Text();
    Advance();
    if (At('[')) SkipBrackets('[', ']');
    if (FTokens.Take(':'))
      while (!FTokens.AtEnd() && !At(';') && !At(End) && !AtSpecifier()) {
        AppendToType(property.Type, Text());
        Advance();
      }
    while (!FTokens.AtEnd() && !At(';') && !At(End) && !At(Implementation)) Advance();
    FTokens.Take(';');
    // "default;" of the property that an index without a name means.
    if (FTokens.AtName() && EqualText(Text(), "default")) {
      Advance();
      FTokens.Take(';');
    }
    property.Text = SpanFrom(begin);
    declared.Properties.push_back(std::move(property));
  }

  bool AtSpecifier() const {
    constexpr std::string_view specifiers[] = {"read",       "write",   "index",
                                               "stored",     "default", "nodefault",
                                               "implements", "dispid",  "readonly"};
    return FTokens.AtName() &&
           std::any_of(std::begin(specifiers), std::end(specifiers),
                       [&](std::string_view word) { return EqualText(Text(), word); });
  }

  // Routines.

  // Stands at the word of a routine; `begin` is in front of a "class" before it. An empty name when
  // there is none.
  THeading ReadHeading(size_t begin) {
    THeading heading;
    TMethodDeclaration& method = heading.Method;
    for (const TRoutineWord& known : RoutineWords)
      if (At(known.Word)) method.Kind = known.Kind;
    Advance();
    method.Place = FTokens.Place();
    ReadRoutineName(method);
    if (method.Name.empty()) return heading;
    if (At('(')) ReadParameters(method.Parameters);
    if (FTokens.Take(':')) method.Result = ReadResult();
    if (FTokens.Take('=')) {
      heading.IsResolution = true;
      while (!FTokens.AtEnd() && !At(';') && !At(End)) Advance();
    }
    FTokens.Take(';');
    ReadDirectives(heading);
    method.Text = SpanFrom(begin);
    return heading;
  }

  // "TOuter.TInner<T>.Name", each part with type parameters.
  void ReadRoutineName(TMethodDeclaration& method) {
    while (FTokens.AtName() || At('*') || At('+') || At('-') || At('/') || At('=') || At('>')) {
      if (!method.Name.empty()) method.Class += (method.Class.empty() ? "" : ".") + method.Name;
      method.Name = Text();
      const bool named = FTokens.AtName();
      Advance();
      if (!named) return;
      if (At('<') && !SkipTypeParameters()) return;
      if (!FTokens.Take('.')) return;
    }
  }

  // What no parameter contains: the bracket was not closed.
  bool EndsParameters() const { return FTokens.AtEnd() || At(End) || EndsUnit() || AtRoutine(); }

  void ReadParameters(std::vector<TParameter>& parameters) {
    Advance();
    while (!At(')') && !EndsParameters()) {
      if (At('[')) SkipBrackets('[', ']');
      std::string modifier;
      if (At(Const) || At(Var) || At(Out)) {
        modifier = LowerCase(Text());
        Advance();
      }
      const size_t first = parameters.size();
      while (FTokens.AtName()) {
        parameters.push_back({modifier, std::string(Text()), {}});
        Advance();
        if (!FTokens.Take(',')) break;
      }
      if (FTokens.Take(':')) {
        const std::string type = ReadType();
        for (size_t i = first; i < parameters.size(); ++i) parameters[i].Type = type;
      }
      if (FTokens.Take('=')) ReadType();
      if (!FTokens.Take(';') && !At(')') && !EndsParameters()) Advance();
    }
    FTokens.Take(')');
  }

  // Words behind a heading; a field of such a name has a colon behind it.
  void ReadDirectives(THeading& heading) {
    while (FTokens.AtName() && IsDirective(Text()) && !IsMemberName()) {
      if (At(Abstract)) heading.Method.IsAbstract = true;
      if (At(Forward) || At(External)) heading.HasNoBody = true;
      while (!FTokens.AtEnd() && !At(';') && !At(End) && !At(Begin) && !At(Implementation))
        Advance();
      if (!FTokens.Take(';')) return;
    }
  }

  // Whether the directive at the token names a member. The word of visibility is no directive here.
  bool IsMemberName() const {
    const std::string_view ahead = FTokens.Ahead();
    return At(Public) || ahead.starts_with(':') || ahead.starts_with(',');
  }

  bool AtRoutine() const {
    return At(Procedure) || At(Function) || At(Constructor) || At(Destructor) || At(Operator);
  }

  // A body that is not finished ends in front of the next heading.
  void ReadRoutine() {
    const size_t begin = FTokens.Offset();
    const bool ofClass = FTokens.Take(Class);
    if (!AtRoutine()) return;
    THeading heading = ReadHeading(begin);
    TMethodDeclaration& method = heading.Method;
    method.IsOfClass = ofClass;
    if (!heading.HasNoBody && MayHaveBodies()) {
      SkipBody(0);
      method.Body = SpanFrom(begin);
    }
    if (!method.Name.empty() && !heading.IsResolution) FUnit.Routines.push_back(std::move(method));
  }

  bool MayHaveBodies() const {
    return FInImplementation || FUnit.Kind == TSourceKind::Program ||
           FUnit.Kind == TSourceKind::Library || FUnit.Kind == TSourceKind::None;
  }

  // Stands behind a heading. False when there is no "end" of its own; then it stands at what may
  // follow.
  bool SkipBody(int depth) {
    while (!FTokens.AtEnd()) {
      switch (FTokens.Word()) {
        case Begin:
        case Asm:
          return SkipBlock();
        case End:
        case Implementation:
        case Initialization:
        case Finalization:
          return false;
        case Procedure:
        case Function: {
          if (IsQualifiedHeading() || depth >= MaxNesting) return false;
          const THeading inner = ReadHeading(FTokens.Offset());
          if (!inner.HasNoBody && !SkipBody(depth + 1)) return false;
          break;
        }
        case Class:
        case Constructor:
        case Destructor:
          return false;
        case Record:
          SkipRecord();
          break;
        default:
          Advance();
      }
    }
    return false;
  }

  // The heading of a method, which never stands inside a routine.
  bool IsQualifiedHeading() const {
    std::string_view ahead = FTokens.Ahead();
    size_t length = 0;
    while (length < ahead.size() && IsIdentifierPart(ahead[length])) ++length;
    ahead.remove_prefix(length);
    return length > 0 && (ahead.starts_with('.') || ahead.starts_with('<'));
  }

  // From "begin" or "asm" behind its "end" and a semicolon. False when it was not finished.
  bool SkipBlock() {
    int depth = 0;
    while (!FTokens.AtEnd()) {
      switch (FTokens.Word()) {
        case Begin:
        case Case:
        case Try:
        case Asm:
          ++depth;
          break;
        case End:
          if (--depth > 0) break;
          Advance();
          FTokens.Take(';');
          return true;
        case Procedure:
        case Function:
          if (IsQualifiedHeading()) return false;
          break;
        case Constructor:
        case Destructor:
        case Implementation:
        case Initialization:
        case Finalization:
          return false;
        default:
          if (IsCreateForm(FTokens.Token())) {
            ReadCreatedNames();
            continue;
          }
          break;
      }
      Advance();
    }
    return false;
  }

  // Stands at "CreateForm" and stops at the end of the statement.
  void ReadCreatedNames() {
    for (Advance(); !FTokens.AtEnd() && !At(';') && !At(End); Advance())
      if (FTokens.AtName()) FUnit.CreatedNames.emplace_back(Text());
  }

  // Statements of the initialization, up to its "finalization" or "end".
  void SkipStatements() {
    int depth = 0;
    for (; !FTokens.AtEnd() && !At(Finalization); Advance()) {
      if (At(Begin) || At(Case) || At(Try) || At(Asm)) ++depth;
      if (At(End) && --depth < 0) return;
    }
  }

  // A constant, a variable or a type without members, up to and with its semicolon.
  void SkipDeclaration() {
    int brackets = 0;
    for (;;) {
      if (FTokens.AtEnd()) return;
      if (brackets <= 0 && FTokens.Take(';')) return;
      if (At(Record)) {
        SkipRecord();
        continue;
      }
      if (At(End) || At(Implementation) || At(Initialization) || At(Begin) || At(Uses)) return;
      if (brackets <= 0 && (At(Const) || At(Type) || At(Var))) return;
      if (At('(') || At('[')) ++brackets;
      if (At(')') || At(']')) --brackets;
      Advance();
    }
  }

  void SkipBrackets(char open, char close) {
    int depth = 0;
    do {
      if (At(open)) ++depth;
      if (At(close)) --depth;
      if (At(End) || At(Implementation)) return;
      Advance();
    } while (depth > 0 && !FTokens.AtEnd());
  }

  // Bodies.

  void LinkBodies() {
    for (std::vector<TClassDeclaration>* classes : {&FUnit.Classes, &FUnit.HiddenClasses})
      for (TClassDeclaration& declared : *classes) {
        const std::string path = declared.Outer.empty() ? "" : declared.Outer + ".";
        for (TMethodDeclaration& method : declared.Methods)
          FMethods[LowerCase(path + declared.Name + "." + method.Name)].push_back(&method);
      }
    std::vector<TMethodDeclaration> rest;
    for (TMethodDeclaration& routine : FUnit.Routines)
      if (routine.Class.empty() || !LinkBody(routine)) rest.push_back(std::move(routine));
    FUnit.Routines = std::move(rest);
  }

  bool LinkBody(const TMethodDeclaration& body) {
    const auto found = FMethods.find(LowerCase(body.Class + "." + body.Name));
    if (found == FMethods.end()) return false;
    TMethodDeclaration* method = FindOpen(found->second, body);
    if (method != nullptr) method->Body = body.Body;
    return method != nullptr;
  }

  // The method that has no body yet: with the same parameters, else the first one; a body may leave
  // them out.
  static TMethodDeclaration* FindOpen(std::vector<TMethodDeclaration*>& methods,
                                      const TMethodDeclaration& body) {
    const size_t looked = std::min(methods.size(), MaxOverloads);
    auto found = methods.end();
    for (size_t i = looked; i-- > 0;)
      if (found == methods.end() || !HasSameTypes((*found)->Parameters, body.Parameters) ||
          HasSameTypes(methods[i]->Parameters, body.Parameters))
        found = methods.begin() + static_cast<std::ptrdiff_t>(i);
    if (found == methods.end()) return nullptr;
    TMethodDeclaration* method = *found;
    methods.erase(found);
    return method;
  }

  static bool HasSameTypes(const std::vector<TParameter>& left,
                           const std::vector<TParameter>& right) {
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](const TParameter& a, const TParameter& b) { return EqualText(a.Type, b.Type); });
  }

  TUnitSource FUnit;
  TPascalTokens FTokens;
  size_t FSize;
  size_t FProblemOffset = std::string_view::npos;
  bool FInImplementation = false;
  TDeclarations FDeclarations = TDeclarations::Types;
  // Of the class that is being read.
  TVisibility FVisibility = TVisibility::Published;
  TMemberPart FPart = TMemberPart::Fields;
  bool FIsObject = false;
  std::optional<TName> FPending;
  std::unordered_map<std::string, std::vector<TMethodDeclaration*>> FMethods;  // without a body
};

}  // namespace

TUnitSource ReadPascalUnit(std::string_view text, const TDefinedSymbols& symbols,
                           const TIncludeReader& includes) {
  return TPascalUnitReader(text, symbols, includes).Read();
}

}  // namespace wrenfold
