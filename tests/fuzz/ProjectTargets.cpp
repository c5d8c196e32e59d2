// Project and unit sources of both languages.
#include "fuzz/Targets.h"
#include "host/project/ProjectSource.h"
#include "host/project/UnitSource.h"

namespace wrenfold {

void FuzzProjectSource(std::string_view bytes) {
  for (const char* name : {"fuzzed.dpr", "fuzzed.dpk", "fuzzed.cpp"}) {
    try {
      const TProjectSource source = ParseProjectSource(bytes, name);
      for (const TProjectEntry& entry : source.Entries) Promise(entry.Place.Line >= 1);
    } catch (const EProjectError& error) {
      Promise(error.Place.Line >= 1 && error.Place.Column >= 1);
    }
  }
  for (const char* name : {"fuzzed.pas", "fuzzed.h"}) ParseUnitSource(bytes, name);
}

}  // namespace wrenfold
