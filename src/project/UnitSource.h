// What a source declares: the one reader of declarations in Pascal and C++.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "project/Conditionals.h"
#include "project/SourceText.h"

namespace wrenfold {

// Types stand in the results as words with single blanks between them where two would run into each
// other ("array of string", "TObject*"), whatever stood between them in the source. Spans are
// offsets in the source that was given; what an include file declares has empty spans and the place
// of its directive.

enum class TSourceKind { None, Unit, Program, Library, Package, Cpp };

// What stands in front of the first word of visibility is Published: so it is in the classes of
// forms.
enum class TVisibility { Published, Public, Protected, Private };

struct TUsedUnit {
  std::string Name;  // of a C++ include the bare name of the header
  std::string Path;  // as it stands in the source, quotes removed; empty when none is given
  std::vector<std::string> Notes;  // comments between a path and what follows
  TSourcePlace Place;
  TSourceSpan NameText;
  TSourceSpan PathText;  // with its quotes; empty when none is given
};

struct TFieldDeclaration {
  std::string Name;
  std::string Type;
  TVisibility Visibility = TVisibility::Published;
  TSourceSpan Text;        // the whole declaration with its semicolon, of all names that share it
  TSourceSpan NameText;    // of this name
  bool IsShared = false;   // declared together with others
  bool IsOfClass = false;  // a class variable or a static member
  TSourcePlace Place;
};

struct TParameter {
  std::string Modifier;  // "const", "var", "out", or empty
  std::string Name;      // may be empty in C++
  std::string Type;      // empty for an untyped one

  friend bool operator==(const TParameter&, const TParameter&) = default;
};

enum class TMethodKind { Procedure, Function, Constructor, Destructor, Operator };

// A method of a class or a routine of the unit.
struct TMethodDeclaration {
  TMethodKind Kind = TMethodKind::Procedure;
  std::string Class;  // of a body that stands on its own: "TMain", "TOuter.TInner"; else empty
  std::string Name;
  std::vector<TParameter> Parameters;
  std::string Result;
  TVisibility Visibility = TVisibility::Published;
  bool IsOfClass = false;
  bool IsAbstract = false;
  TSourceSpan Text;  // the declaration with its directives; of a body that stands alone its heading
  TSourceSpan Body;  // from its heading to behind its end; empty where the source has none
  TSourcePlace Place;
};

struct TPropertyDeclaration {
  std::string Name;
  std::string Type;  // empty for one that is declared in an ancestor
  TVisibility Visibility = TVisibility::Published;
  TSourceSpan Text;
  TSourcePlace Place;
};

enum class TClassKind { Class, Record, Interface };

struct TClassDeclaration {
  std::string Name;
  // Without unit or namespace before it and without type parameters; "TObject" when a Pascal class
  // names none, empty when a C++ class, a record or an interface does.
  std::string Ancestor;
  std::string Outer;  // "TOuter" of a class within it
  TClassKind Kind = TClassKind::Class;
  bool IsGeneric = false;
  TSourcePlace Place;
  TSourceSpan Text;     // from its name to behind its end
  TSourceSpan Members;  // what stands between its head and its "end" or, without one, its semicolon
  std::vector<TFieldDeclaration> Fields;
  std::vector<TMethodDeclaration> Methods;
  std::vector<TPropertyDeclaration> Properties;

  // By name, letter case ignored, or null; the first of several.
  const TFieldDeclaration* FindField(std::string_view name) const;
  const TMethodDeclaration* FindMethod(std::string_view name) const;
  const TPropertyDeclaration* FindProperty(std::string_view name) const;
};

// A macro that stands where a declaration could, such as USEFORM("Main.cpp", MainForm).
struct TMacroCall {
  std::string Name;
  std::vector<std::string> Arguments;  // texts with their quotes
  std::vector<std::string> Notes;      // comments between it and what follows
  TSourcePlace Place;
  TSourceSpan Text;      // with its semicolon
  TSourceSpan PathText;  // the first argument, when it is a text
};

// The source of a unit, of a project, or a C++ file.
struct TUnitSource {
  TSourceKind Kind = TSourceKind::None;
  std::string Name;             // as its head says
  std::vector<TUsedUnit> Uses;  // of the interface, a program or a package
  std::vector<TUsedUnit> ImplementationUses;
  std::vector<TUsedUnit> Requires;               // packages
  std::vector<std::string> Resources;            // {$R name}, #pragma resource "name", as written
  std::vector<TClassDeclaration> Classes;        // of the interface; forward declarations left out
  std::vector<TClassDeclaration> HiddenClasses;  // of the implementation
  // Routines of the unit, and bodies whose class is declared elsewhere.
  std::vector<TMethodDeclaration> Routines;
  std::vector<TMacroCall> Macros;  // of C++
  // What stands in statements that call "CreateForm", in order: classes and forms, and the like.
  std::vector<std::string> CreatedNames;
  std::vector<TSourceProblem> Problems;  // in the clauses and of the source as a whole

  // Where the implementation's declarations begin and end; the end is in front of "initialization",
  // "finalization" or the last "end". Empty where there is none.
  TSourceSpan Implementation;
  TSourceSpan NameText;  // of the name in the head
  TSourceSpan
      UsesText;  // the first clause of units up to its semicolon; empty when that is missing
  bool HasClauses = false;  // behind the head, with mistakes perhaps
  // The first word of the source, and the first one behind head and clauses.
  TSourcePlace FirstPlace;
  TSourcePlace NextPlace;
  std::string NextWord;

  // The declaration in the interface of that name (letter case ignored), or null.
  const TClassDeclaration* FindClass(std::string_view name) const;
  // The body of a method of that class, wherever it is declared; the first of several, or null.
  const TMethodDeclaration* FindBody(std::string_view className, std::string_view name) const;
};

// The text of an include file that a source names, or nothing.
using TIncludeReader = std::function<std::optional<std::string>(std::string_view name)>;

// Reads a whole source in one pass; the file name tells the language. Branches that conditional
// compilation leaves out are not there. Never fails: what it does not understand is passed over, an
// unfinished class or body ends where the next one begins. Include files of Pascal are read where a
// reader is given.
TUnitSource ParseUnitSource(std::string_view text, std::string_view fileName,
                            const TDefinedSymbols& symbols = DefaultSymbols(),
                            const TIncludeReader& includes = {});

}  // namespace wrenfold
