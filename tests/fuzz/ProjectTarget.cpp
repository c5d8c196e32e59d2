// Project and unit sources of both languages.
#include "fuzz/Targets.h"
#include "project/ProjectSource.h"
#include "project/UnitSource.h"

namespace wrenfold {
namespace {

void PromisePlace(TSourcePlace place, std::string_view bytes) {
  const auto limit = static_cast<int>(bytes.size()) + 1;
  Promise(place.Line >= 1 && place.Line <= limit && place.Column >= 1 && place.Column <= limit,
          "a place lies in the source");
}

void PromiseSpan(TSourceSpan span, std::string_view bytes) {
  Promise(span.Begin <= span.End && span.End <= bytes.size(), "a span lies in the source");
}

void PromiseMethod(const TMethodDeclaration& method, std::string_view bytes) {
  PromisePlace(method.Place, bytes);
  PromiseSpan(method.Text, bytes);
  PromiseSpan(method.Body, bytes);
}

void PromiseClass(const TClassDeclaration& declared, std::string_view bytes) {
  PromisePlace(declared.Place, bytes);
  PromiseSpan(declared.Text, bytes);
  PromiseSpan(declared.Members, bytes);
  for (const TFieldDeclaration& field : declared.Fields) {
    PromiseSpan(field.Text, bytes);
    Promise(field.NameText.In(bytes) == field.Name, "a field stands where it says");
  }
  for (const TMethodDeclaration& method : declared.Methods) PromiseMethod(method, bytes);
  for (const TPropertyDeclaration& property : declared.Properties)
    PromiseSpan(property.Text, bytes);
}

}  // namespace

void FuzzProjectSource(std::string_view bytes) {
  for (const char* name : {"fuzzed.dpr", "fuzzed.dpk", "fuzzed.cpp"}) {
    const auto parse = [&] {
      const TProjectSource source = ParseProjectSource(bytes, name);
      for (const TProjectEntry& entry : source.Entries) PromisePlace(entry.Place, bytes);
      for (const TSourceProblem& problem : source.Problems) {
        PromisePlace(problem.Place, bytes);
        Promise(!problem.Message.empty(), "a problem has a message");
      }
    };
    // "file(line,column): what was expected"
    Succeeds(parse, {std::string(name) + '('});
  }
  for (const char* name : {"fuzzed.pas", "fuzzed.h"}) {
    const TUnitSource unit = ParseUnitSource(bytes, name);
    PromiseSpan(unit.Implementation, bytes);
    for (const TClassDeclaration& declared : unit.Classes) PromiseClass(declared, bytes);
    for (const TClassDeclaration& declared : unit.HiddenClasses) PromiseClass(declared, bytes);
    for (const TMethodDeclaration& routine : unit.Routines) PromiseMethod(routine, bytes);
  }
}

}  // namespace wrenfold
