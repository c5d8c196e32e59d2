// Ini strings and language modules.
#include "foundation/rkClasses.h"
#include "fuzz/Targets.h"
#include "locale/ResourceLibrary.h"
#include "platform/core/StringList.h"

namespace wrenfold {

void FuzzIniStrings(std::string_view bytes) {
  TStringList lines;
  lines.SetText(std::string(bytes));
  TIniStrings ini;
  ini.SetStrings(lines);
  // What it writes can be read, though not as the same: a key in brackets without a value, for one,
  // is written like a section.
  TStringList written;
  ini.GetStrings(written);
  TIniStrings second;
  second.SetStrings(written);
  TStringList sections;
  ini.ReadSections(sections);
  for (int i = 0; i < sections.Count(); ++i) {
    TStringList keys;
    ini.ReadSection(sections[i], keys);
    for (int key = 0; key < keys.Count(); ++key) ini.ReadString(sections[i], keys[key], "");
  }
}

void FuzzLanguageModule(std::string_view bytes) {
  try {
    const TResourceLibrary library("fuzzed", std::string(bytes));
    for (int id = 0; id <= 0xFFFF; id += 7) library.FindString(id);
  } catch (const EResourceLibraryError&) {
  }
}

}  // namespace wrenfold
