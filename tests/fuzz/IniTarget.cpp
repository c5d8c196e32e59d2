// Ini strings from any lines.
#include "foundation/rkClasses.h"
#include "fuzz/Targets.h"

namespace wrenfold {
namespace {

std::string TextOf(const TIniStrings& ini) {
  TStringList lines;
  ini.GetStrings(lines);
  return lines.Text();
}

std::string ReadAndWritten(const std::string& text) {
  TStringList lines;
  lines.SetText(text);
  TIniStrings ini;
  ini.SetStrings(lines);
  return TextOf(ini);
}

void ReadEverything(const TIniStrings& ini) {
  TStringList sections;
  ini.ReadSections(sections);
  for (int i = 0; i < sections.Count(); ++i) {
    TStringList keys;
    ini.ReadSection(sections[i], keys);
    for (int key = 0; key < keys.Count(); ++key) {
      Promise(ini.HasKey(sections[i], keys[key]), "a listed key is found");
      ini.ReadString(sections[i], keys[key], "");
    }
  }
}

}  // namespace

void FuzzIniStrings(std::string_view bytes) {
  TStringList lines;
  lines.SetText(std::string(bytes));
  TIniStrings ini;
  ini.SetStrings(lines);
  ReadEverything(ini);
  // A key like "[a]" without a value is written as what the next reading takes for a section; from
  // then on the text stays.
  const std::string settled = ReadAndWritten(TextOf(ini));
  Promise(ReadAndWritten(settled) == settled, "text that was written is read as it was meant");
  ini.Sort();
  ReadEverything(ini);
}

}  // namespace wrenfold
