// The choice of the user's language: its stored values and its submenu.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "manager/rkExpMenu.h"

namespace wrenfold {

// Languages and the files of their modules, in their order.
using TLanguageModules = std::vector<std::pair<std::string, std::string>>;

// The language settings under the user's registry key.
struct TLanguageSettings {
  std::string Directory;  // of the language modules; empty: beside the package
  // "Language=file" pairs, separated by commas.
  std::string Modules = "Russian=wren_rus.dll,English=wren_eng.dll,German=wren_ger.dll";
  std::string Current;  // full name of the active module; empty: the package's own texts

  // Takes over the stored values, storing its own for those that are missing.
  void Read();
  void Write() const;
  // The directory as it stands and the file name behind it; nothing is put between them.
  std::string FullName(const std::string& moduleFile, const std::string& packageDirectory) const;

  TLanguageModules ModuleList() const;
  void SetModuleList(const TLanguageModules& modules);
  // The active module is that of a listed language.
  bool ListsCurrent() const;
};

// Why a language cannot be added, in the user's words; empty when it can. A name must be new, also
// in the language in force, and must fit into the stored list; a module must be one.
std::string RefusalOfName(const TLanguageModules& modules, const std::string& name);
std::string RefusalOfModule(const std::string& fileName);

// The name of a language in the language in force, and back. Unknown names stay as they are.
std::string TranslateLangName(const std::string& name);
std::string RetranslateLangName(const std::string& displayName);

// Fills the submenu with the package's own language and every language whose module is there, and
// checks the active one. The handlers get the action as their sender.
struct TLanguageHandlers {
  TNotifyEvent SelectDefault, Select, EditModules;
};
void CreateLangSubMenu(TExpertsMenu& menu, TMenuItem* parent, const TLanguageSettings& settings,
                       const std::string& packageDirectory, const TLanguageHandlers& handlers);

// The module file that belongs to an item's caption, empty when there is none.
std::string ModuleOfCaption(const TLanguageSettings& settings, const std::string& caption);

}  // namespace wrenfold
