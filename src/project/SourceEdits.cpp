// Finds the places by the declarations, so that comments and branches left out stay as they are.
#include "project/SourceEdits.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "platform/core/text/SysUtils.h"
#include "project/CppScanner.h"
#include "project/UnitSource.h"

namespace wrenfold {

namespace {

bool IsUnitName(std::string_view name) {
  while (true) {
    const size_t dot = name.find('.');
    if (!IsIdentifier(name.substr(0, dot))) return false;
    if (dot == std::string_view::npos) return true;
    name.remove_prefix(dot + 1);
  }
}

// Takes the place of a part of the source.
TSourceEdit Replacing(TSourceSpan span, std::string text) {
  return {span.Begin, span.End - span.Begin, std::move(text)};
}

std::string PascalPath(const TNamedUnit& unit) {
  std::string quoted = "'";
  for (const char character : unit.Path)
    quoted += character == '\'' ? "''" : std::string(1, character);
  return quoted + "'";
}

std::vector<TSourceEdit> RenameInPascal(const TUnitSource& project, std::string_view oldName,
                                        const TNamedUnit& unit) {
  for (const TUsedUnit& used : project.Uses) {
    if (!EqualText(used.Name, oldName) || used.NameText.Empty()) continue;
    std::vector<TSourceEdit> edits{Replacing(used.NameText, unit.Name)};
    if (!used.PathText.Empty()) edits.push_back(Replacing(used.PathText, PascalPath(unit)));
    return edits;
  }
  return {};
}

// The line end that the source has.
std::string_view LineEndOf(std::string_view source) {
  const size_t end = source.find('\n');
  return end != std::string_view::npos && end > 0 && source[end - 1] == '\r' ? "\r\n" : "\n";
}

// Blanks in front of the last entry, where it begins its line.
std::string_view IndentOf(std::string_view source, size_t offset) {
  const size_t line = source.find_last_of("\r\n", offset);
  const size_t begin = line == std::string_view::npos ? 0 : line + 1;
  const std::string_view indent = source.substr(begin, offset - begin);
  return indent.find_first_not_of(" \t") == std::string_view::npos ? indent : "  ";
}

// A line of its own that creates a form: "Application.CreateForm(TMain, Main);".
struct TCreation {
  TSourceSpan Line;  // with its line end
  std::string_view Form;
};

std::vector<TCreation> CreationsIn(std::string_view source, size_t start) {
  constexpr std::string_view call = "Application.CreateForm(";
  std::vector<TCreation> creations;
  for (size_t begin = source.find('\n', start); begin != source.npos;) {
    ++begin;
    const size_t end = std::min(source.find('\n', begin), source.size());
    const std::string_view line = Trim(source.substr(begin, end - begin));
    const size_t comma = line.find(','), close = line.find(')');
    if (EqualText(line.substr(0, call.size()), call) && comma < close && close != line.npos &&
        Trim(line.substr(close + 1)) == ";")
      creations.push_back({{begin, std::min(end + 1, source.size())},
                           Trim(line.substr(comma + 1, close - comma - 1))});
    begin = end < source.size() ? end : source.npos;
  }
  return creations;
}

// Behind the last form that is created; else in front of "Application.Run".
std::optional<TSourceEdit> CreateFormEdit(std::string_view source, size_t start,
                                          const TNamedUnit& unit) {
  const std::string call = fmt::format("Application.CreateForm({}, {});{}", unit.FormClass,
                                       unit.FormName, LineEndOf(source));
  const std::vector<TCreation> creations = CreationsIn(source, start);
  if (!creations.empty()) {
    const TSourceSpan last = creations.back().Line;
    const size_t indent = source.find_first_not_of(" \t", last.Begin);
    return TSourceEdit{last.End, 0,
                       std::string(source.substr(last.Begin, indent - last.Begin)) + call};
  }
  const size_t run = source.find("Application.Run", start);
  if (run == source.npos) return std::nullopt;
  const size_t line = source.rfind('\n', run) + 1;
  return TSourceEdit{line, 0, std::string(source.substr(line, run - line)) + call};
}

std::vector<TSourceEdit> AddToPascal(std::string_view source, const TUnitSource& project,
                                     const TNamedUnit& unit) {
  const TUsedUnit* last = nullptr;
  for (const TUsedUnit& used : project.Uses)
    if (used.NameText.Begin < project.UsesText.End && !used.NameText.Empty()) last = &used;
  if (last == nullptr) return {};
  const std::string form = unit.FormName.empty() ? "" : fmt::format(" {{{}}}", unit.FormName);
  std::vector<TSourceEdit> edits{
      {project.UsesText.End, 0,
       fmt::format(",{}{}{} in {}{}", LineEndOf(source), IndentOf(source, last->NameText.Begin),
                   unit.Name, PascalPath(unit), form)}};
  if (!unit.FormClass.empty())
    if (auto creation = CreateFormEdit(source, project.UsesText.End, unit))
      edits.push_back(std::move(*creation));
  return edits;
}

// What stands between two entries holds no directive, which would part them.
bool IsPlain(std::string_view between) {
  return between.find("{$") == std::string_view::npos &&
         between.find("(*$") == std::string_view::npos;
}

// The entry with the comma that parts it from its neighbour; empty where that is not plain.
TSourceSpan EntrySpan(std::string_view source, const TUnitSource& project, size_t index) {
  const std::vector<TUsedUnit>& uses = project.Uses;
  const size_t begin = uses[index].NameText.Begin;
  if (index + 1 < uses.size() && !uses[index + 1].NameText.Empty()) {
    const TSourceSpan span{begin, uses[index + 1].NameText.Begin};
    return IsPlain(span.In(source)) ? span : TSourceSpan();
  }
  if (index == 0) return {};
  const TUsedUnit& before = uses[index - 1];
  const size_t end = std::max(before.NameText.End, before.PathText.End);
  const size_t comma = source.substr(0, begin).rfind(',');
  if (before.NameText.Empty() || comma == source.npos || comma < end) return {};
  const TSourceSpan span{comma, project.UsesText.End};
  return IsPlain(span.In(source)) ? span : TSourceSpan();
}

std::vector<TSourceEdit> RemoveFromPascal(std::string_view source, const TUnitSource& project,
                                          const TNamedUnit& unit) {
  for (size_t i = 0; i < project.Uses.size(); ++i) {
    const TUsedUnit& used = project.Uses[i];
    if (!EqualText(used.Name, unit.Name) || used.NameText.Empty()) continue;
    const TSourceSpan entry = EntrySpan(source, project, i);
    if (entry.Empty()) return {};
    std::vector<TSourceEdit> edits{Replacing(entry, "")};
    for (const TCreation& creation : CreationsIn(source, project.UsesText.End))
      if (EqualText(creation.Form, unit.FormName)) edits.push_back(Replacing(creation.Line, ""));
    return edits;
  }
  return {};
}

// Whether the macro names a unit: USEUNIT, USEFORM and so on.
bool NamesUnit(const TMacroCall& macro) {
  constexpr std::string_view names[] = {"USEUNIT", "USEFORM", "USEFORMNS", "USEDATAMODULE"};
  return !macro.PathText.Empty() &&
         std::find(std::begin(names), std::end(names), macro.Name) != std::end(names);
}

std::string CppPath(const TNamedUnit& unit) {
  std::string quoted = "\"";
  for (const char character : unit.Path)
    quoted += character == '\\' ? "\\\\" : std::string(1, character);
  return quoted + '"';
}

std::vector<TSourceEdit> RenameInCpp(const TUnitSource& project, std::string_view oldName,
                                     const TNamedUnit& unit) {
  for (const TMacroCall& macro : project.Macros) {
    if (!NamesUnit(macro)) continue;
    std::string path = UnquoteCppPath(macro.Arguments[0]);
    std::replace(path.begin(), path.end(), '\\', '/');
    if (EqualText(ExtractFileNameEx(path), oldName))
      return {Replacing(macro.PathText, CppPath(unit))};
  }
  return {};
}

std::vector<TSourceEdit> AddToCpp(std::string_view source, const TUnitSource& project,
                                  const TNamedUnit& unit) {
  const auto last = std::find_if(project.Macros.rbegin(), project.Macros.rend(), NamesUnit);
  if (last == project.Macros.rend()) return {};
  const std::string macro = unit.FormName.empty()
                                ? fmt::format("USEUNIT({});", CppPath(unit))
                                : fmt::format("USEFORM({}, {});", CppPath(unit), unit.FormName);
  return {{last->Text.End, 0, std::string(LineEndOf(source)) + macro}};
}

std::vector<TSourceEdit> RemoveFromCpp(std::string_view source, const TUnitSource& project,
                                       const TNamedUnit& unit) {
  for (const TMacroCall& macro : project.Macros) {
    if (!NamesUnit(macro)) continue;
    std::string path = UnquoteCppPath(macro.Arguments[0]);
    std::replace(path.begin(), path.end(), '\\', '/');
    if (!EqualText(ExtractFileNameEx(path), unit.Name)) continue;
    const size_t end = source.find('\n', macro.Text.End);
    return {
        {macro.Text.Begin, (end == source.npos ? source.size() : end + 1) - macro.Text.Begin, ""}};
  }
  return {};
}

}  // namespace

std::optional<TSourceEdit> RenameUnitEdit(std::string_view source, std::string_view name) {
  const TUnitSource unit = ParseUnitSource(source, "a.pas");
  if (!IsUnitName(name) || unit.Kind != TSourceKind::Unit || unit.NameText.Empty() ||
      unit.NameText.In(source) == name)
    return std::nullopt;
  return Replacing(unit.NameText, std::string(name));
}

std::optional<TSourceEdit> RenameOwnIncludeEdit(std::string_view source, std::string_view oldName,
                                                std::string_view name) {
  const TUnitSource unit = ParseUnitSource(source, "a.cpp");
  for (const TUsedUnit& used : unit.Uses) {
    const std::string extension = ExtractFileExt(used.Path);
    const bool isHeader = EqualText(extension, ".h") || EqualText(extension, ".hpp");
    if (used.PathText.Empty() || !isHeader ||
        !EqualText(used.Path, std::string(oldName) + extension))
      continue;
    return Replacing(used.PathText, fmt::format("\"{}{}\"", name, extension));
  }
  return std::nullopt;
}

std::vector<TSourceEdit> RenameInProjectEdits(std::string_view source, std::string_view fileName,
                                              std::string_view oldName, const TNamedUnit& unit,
                                              const TDefinedSymbols& symbols) {
  const TUnitSource project = ParseUnitSource(source, fileName, symbols);
  return project.Kind == TSourceKind::Cpp ? RenameInCpp(project, oldName, unit)
                                          : RenameInPascal(project, oldName, unit);
}

std::vector<TSourceEdit> AddToProjectEdits(std::string_view source, std::string_view fileName,
                                           const TNamedUnit& unit, const TDefinedSymbols& symbols) {
  const TUnitSource project = ParseUnitSource(source, fileName, symbols);
  return project.Kind == TSourceKind::Cpp ? AddToCpp(source, project, unit)
                                          : AddToPascal(source, project, unit);
}

std::vector<TSourceEdit> RemoveFromProjectEdits(std::string_view source, std::string_view fileName,
                                                const TNamedUnit& unit,
                                                const TDefinedSymbols& symbols) {
  const TUnitSource project = ParseUnitSource(source, fileName, symbols);
  return project.Kind == TSourceKind::Cpp ? RemoveFromCpp(source, project, unit)
                                          : RemoveFromPascal(source, project, unit);
}

std::string ProjectPath(const std::string& folder, const std::string& fileName) {
  std::string path = std::filesystem::path(fileName).lexically_relative(folder).string();
  if (path.empty()) path = fileName;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace wrenfold
