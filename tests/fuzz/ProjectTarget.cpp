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
    for (const TClassDeclaration& declaration : unit.Classes)
      PromisePlace(declaration.Place, bytes);
  }
}

}  // namespace wrenfold
