// The stored language choice and the language submenu.
#include "manager/rkLanguages.h"

#include <QSettings>
#include <QStringList>
#include <algorithm>
#include <utility>
#include <vector>

#include "locale/rkLocale.h"
#include "platform/core/model/StringList.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// The user's registry key "\\Software\\Wrenfold", in the file Wrenfold/Registry of the toolkit's
// user scope.
class TRegistryKey : public QSettings {
 public:
  TRegistryKey()
      : QSettings(IniFormat, UserScope, QStringLiteral("Wrenfold"), QStringLiteral("Registry")) {
    setFallbacksEnabled(false);
    beginGroup(QStringLiteral("Software/Wrenfold"));
  }
  // Commas that somebody wrote without quotation marks make the toolkit see a list.
  std::string Text(const char* name) const {
    return FromQString(value(name).toStringList().join(','));
  }
};

struct TStoredValue {
  const char* Name;
  std::string TLanguageSettings::*Member;
};
constexpr TStoredValue StoredValues[] = {{"ExpLocaleDir", &TLanguageSettings::Directory},
                                         {"ExpLocaleModules", &TLanguageSettings::Modules},
                                         {"ExpCurrentLocale", &TLanguageSettings::Current}};

TLanguageModules PairsOf(const TStrings& lines) {
  TLanguageModules pairs;
  for (int i = 0; i < lines.Count(); ++i) {
    const auto equals = lines[i].find('=');
    if (equals != std::string::npos)
      pairs.emplace_back(lines[i].substr(0, equals), lines[i].substr(equals + 1));
  }
  return pairs;
}

TLanguageModules DisplayNames() {
  TStringList lines;
  lines.SetText(LocaleStr(sLanguageNames));
  return PairsOf(lines);
}

// The display name of the language in force, empty for the package's own texts.
std::string ActiveDisplayName(const TLanguageSettings& settings) {
  const std::string file = ExtractFileName(settings.Current);
  for (const auto& [language, module] : settings.ModuleList())
    if (!file.empty() && EqualText(module, file)) return TranslateLangName(language);
  return {};
}

void SetActiveLanguageItem(TMenuItem* parent, const TLanguageSettings& settings) {
  const std::string active = ActiveDisplayName(settings);
  for (TMenuItem* item : parent->Items()) {
    if (item->Action() == nullptr) continue;
    const bool isDefault = item == parent->Items(0);
    const bool checked = settings.Current.empty()
                             ? isDefault
                             : !isDefault && EqualText(StripHotkey(item->Caption()), active);
    item->Action()->SetChecked(checked);
  }
}

}  // namespace

void TLanguageSettings::Read() {
  TRegistryKey key;
  for (const TStoredValue& value : StoredValues) {
    if (key.contains(value.Name)) this->*value.Member = key.Text(value.Name);
    else key.setValue(value.Name, ToQString(this->*value.Member));
  }
}

void TLanguageSettings::Write() const {
  TRegistryKey key;
  for (const TStoredValue& value : StoredValues)
    key.setValue(value.Name, ToQString(this->*value.Member));
}

std::string TLanguageSettings::FullName(const std::string& moduleFile,
                                        const std::string& packageDirectory) const {
  return (Directory.empty() ? packageDirectory : Directory) + moduleFile;
}

TLanguageModules TLanguageSettings::ModuleList() const {
  TStringList lines;
  lines.SetCommaText(Modules);
  return PairsOf(lines);
}

void TLanguageSettings::SetModuleList(const TLanguageModules& modules) {
  TStringList lines;
  for (const auto& [language, module] : modules) lines.Add(language + "=" + module);
  Modules = lines.CommaText();
}

bool TLanguageSettings::ListsCurrent() const {
  const TLanguageModules modules = ModuleList();
  return std::ranges::any_of(modules, [file = ExtractFileName(Current)](const auto& pair) {
    return EqualText(pair.second, file);
  });
}

std::string RefusalOfName(const TLanguageModules& modules, const std::string& name) {
  if (name.empty() || name.find_first_of(",=\"'") != std::string::npos)
    return LocaleFormat(sLanguageNameUnusable, name);
  for (const auto& [language, module] : modules)
    if (EqualText(language, name) || EqualText(TranslateLangName(language), name))
      return LocaleFormat(sLanguageExists, name);
  return {};
}

std::string RefusalOfModule(const std::string& fileName) {
  try {
    const TResourceLibrary module(fileName);
    return {};
  } catch (const std::exception& error) {
    return LocaleFormat(sNoLanguageModule, std::string(error.what()));
  }
}

std::string TranslateLangName(const std::string& name) {
  for (const auto& [language, display] : DisplayNames())
    if (EqualText(language, name)) return display;
  return name;
}

std::string RetranslateLangName(const std::string& displayName) {
  for (const auto& [language, display] : DisplayNames())
    if (display == displayName) return language;
  return displayName;
}

void CreateLangSubMenu(TExpertsMenu& menu, TMenuItem* parent, const TLanguageSettings& settings,
                       const std::string& packageDirectory, const TLanguageHandlers& handlers) {
  TActionList* actionList = EnvironmentActions();
  TExpActionList& actions = menu.LanguageActions();
  menu.ClearItems(parent, actions);
  const auto add = [&](const std::string& caption, TNotifyEvent handler) {
    menu.CreateNewItem(caption, handler, parent, actions, actionList);
  };
  add(LocaleStr(sDefaultLanguage) + " (" + TranslateLangName(LocaleStr(sOwnLanguage)) + ")",
      handlers.SelectDefault);
  menu.CreateLine(parent);
  for (const auto& [language, module] : settings.ModuleList())
    if (FileExists(settings.FullName(module, packageDirectory)))
      add(TranslateLangName(language), handlers.Select);
  menu.CreateLine(parent);
  add(LocaleStr(sLanguageModules), handlers.EditModules);
  actions.back()->SetEnabled(static_cast<bool>(handlers.EditModules));
  SetActiveLanguageItem(parent, settings);
}

std::string ModuleOfCaption(const TLanguageSettings& settings, const std::string& caption) {
  const std::string name = RetranslateLangName(StripHotkey(caption));
  for (const auto& [language, module] : settings.ModuleList())
    if (EqualText(language, name)) return module;
  return {};
}

}  // namespace wrenfold
