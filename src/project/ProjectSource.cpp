// The clauses of Pascal project sources and the form macros of C++ ones.
#include "project/ProjectSource.h"

#include <fmt/format.h>

#include <optional>

#include "platform/core/text/SysUtils.h"
#include "project/CppScanner.h"
#include "project/UnitSource.h"

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

// The first comment that has the shape of a note counts.
std::optional<TFormNote> FindFormNote(const std::vector<std::string>& notes) {
  for (const std::string& text : notes)
    if (std::optional<TFormNote> note = ReadFormNote(text)) return note;
  return std::nullopt;
}

[[noreturn]] void RefusePascal(const TUnitSource& unit, const std::string& fileName) {
  const bool isUnit = unit.Kind == TSourceKind::Unit;
  const std::string_view clause = unit.Kind == TSourceKind::Package
                                      ? "'contains' or 'requires'"
                                      : "'uses' and the units of the project";
  throw EProjectError(fileName, isUnit ? unit.FirstPlace : unit.NextPlace,
                      fmt::format("expected {}, found {}", clause,
                                  isUnit ? "'unit'" : std::string_view(unit.NextWord)));
}

TProjectKind KindOf(TSourceKind kind) {
  switch (kind) {
    case TSourceKind::Library:
      return TProjectKind::Library;
    case TSourceKind::Package:
      return TProjectKind::Package;
    default:
      return TProjectKind::Program;
  }
}

TProjectSource ReadPascalProject(TUnitSource unit, const std::string& fileName) {
  if (unit.Kind == TSourceKind::Unit || !unit.HasClauses) RefusePascal(unit, fileName);
  TProjectSource project;
  project.Kind = KindOf(unit.Kind);
  project.Name = unit.Name.empty() ? ExtractFileNameEx(fileName) : unit.Name;
  for (TUsedUnit& used : unit.Uses) {
    TFormNote note = FindFormNote(used.Notes).value_or(TFormNote{});
    project.Entries.push_back({std::move(used.Name), std::move(used.Path), std::move(note.FormName),
                               std::move(note.DesignClass), used.Place});
  }
  for (TUsedUnit& package : unit.Requires) project.Requires.push_back(std::move(package.Name));
  project.Resources = std::move(unit.Resources);
  project.CreatedNames = std::move(unit.CreatedNames);
  project.Problems = std::move(unit.Problems);
  return project;
}

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

const TFormMacro* FindMacro(std::string_view name) {
  for (const TFormMacro& macro : FormMacros)
    if (macro.Name == name) return &macro;
  return nullptr;
}

// A comment "/* TDataModule: File Type */" behind a form's macro names its design class.
std::string DesignClassOf(const std::vector<std::string>& notes) {
  for (const std::string& note : notes) {
    const size_t colon = note.find(':');
    const std::string_view designClass = Trim(std::string_view(note).substr(0, colon));
    if (colon != std::string::npos && IsIdentifier(designClass)) return std::string(designClass);
  }
  return {};
}

// What is wrong with the arguments of a macro, or nothing.
std::string TroubleOf(const TMacroCall& call) {
  if (call.Arguments.empty()) return "expected '('";
  if (!call.Arguments[0].starts_with('"'))
    return fmt::format("expected a file name in double quotes, found '{}'", call.Arguments[0]);
  // A namespace may stand before the form's name; the last one is the form.
  for (size_t i = 1; i < call.Arguments.size(); ++i)
    if (!IsIdentifier(call.Arguments[i]))
      return fmt::format("expected a form name, found '{}'", call.Arguments[i]);
  return {};
}

void AddMacro(const TFormMacro& macro, const TMacroCall& call, TProjectSource& project) {
  const std::string path = UnquoteCppPath(call.Arguments[0]);
  switch (macro.Role) {
    case TMacroRole::Resource:
      return project.Resources.push_back(path);
    case TMacroRole::Package:
      return project.Requires.push_back(ExtractFileNameEx(path));
    case TMacroRole::Library:
      return project.Libraries.push_back(path);
    case TMacroRole::Unit:
      return project.Entries.push_back({ExtractFileNameEx(path), path, {}, {}, call.Place});
    case TMacroRole::Form:
    case TMacroRole::NamespaceForm: {
      const std::string form = call.Arguments.size() > 1 ? call.Arguments.back() : std::string();
      return project.Entries.push_back(
          {ExtractFileNameEx(path), path, form, DesignClassOf(call.Notes), call.Place});
    }
  }
}

TProjectSource ReadCppProject(const TUnitSource& unit, const std::string& fileName) {
  TProjectSource project;
  project.Language = TSourceLanguage::Cpp;
  project.Name = ExtractFileNameEx(fileName);
  bool found = false;
  for (const TMacroCall& call : unit.Macros) {
    const TFormMacro* macro = FindMacro(call.Name);
    if (macro == nullptr) continue;
    found = true;
    const std::string trouble = TroubleOf(call);
    if (trouble.empty()) AddMacro(*macro, call, project);
    else project.Problems.push_back({call.Place, fmt::format("{}: {}", call.Name, trouble)});
  }
  if (!found)
    throw EProjectError(fileName, unit.NextPlace,
                        "expected form macros such as USEFORM(\"Main.cpp\", MainForm);, "
                        "found the end of the file");
  for (const TMethodDeclaration& routine : unit.Routines)
    if (routine.Name == "DllEntryPoint") project.Kind = TProjectKind::Library;
  project.CreatedNames = unit.CreatedNames;
  return project;
}

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
  TUnitSource unit = ParseUnitSource(text, fileName, symbols);
  return unit.Kind == TSourceKind::Cpp ? ReadCppProject(unit, fileName)
                                       : ReadPascalProject(std::move(unit), fileName);
}

}  // namespace wrenfold
