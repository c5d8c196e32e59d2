// The texts of the suite in the language that the user has chosen.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "locale/ResourceLibrary.h"
#include "locale/StringIds.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/model/Event.h"
#include "platform/core/text/Format.h"

namespace wrenfold {

// Knows the language module in force and answers every request for a text.
class TfrLocale {
 public:
  // `hostFileName` is the file name of the running program, with or without its directory.
  explicit TfrLocale(std::string_view hostFileName);

  // When set, asked first; a text that it leaves empty is looked up as usual.
  TEvent<void(int id, std::string& text)> OnText;

  // The text of a number: from the hook, else from the language module, else the package's own;
  // empty when there is none at all.
  std::string LocaleStr(int id) const;

  // Puts another language module in force, or with an empty name the package's own texts. A load
  // always counts: a file that cannot be read is a module without texts, so that every text comes
  // from the package's own table. LoadError() tells why.
  void LoadNewLanguage(const std::string& fileName);

  // A language module is in force, readable or not.
  bool Loaded() const { return FLoaded; }
  // Names file, place and reason; empty when the last load went well.
  const std::string& LoadError() const { return FLoadError; }
  // The environment is Delphi; otherwise it is C++Builder.
  bool HostIsDelphi() const { return FHostIsDelphi; }

 private:
  std::unique_ptr<const TResourceLibrary> FModule;
  bool FLoaded = false;
  std::string FLoadError;
  bool FHostIsDelphi = false;
};

// The one instance, made on first use.
TfrLocale& Locale();
// Ends the instance; a later use makes a fresh one.
void FreeLocale();

// What TfrLocale answers, asked of the one instance.
std::string LocaleStr(int id);
void LoadNewLanguage(const std::string& fileName);
// The package's own text, "Not found" when there is none.
std::string DefaultLocaleStr(int id);

// The text of a number, formatted. A translation whose placeholders do not fit the arguments is
// replaced by the package's own text; when that does not fit either, EFormatError is raised.
std::string LocaleFormatArgs(int id, std::span<const TFormatArg> args);

template <typename... Args>
std::string LocaleFormat(int id, const Args&... args) {
  const std::initializer_list<TFormatArg> list{TFormatArg(args)...};
  return LocaleFormatArgs(id, {list.begin(), list.size()});
}

// What a message dialog shows in the language in force for one of its captions ("&Yes", "Confirm");
// empty for what is none.
std::string LocaleDialogText(std::string_view caption);
// Asks as MessageDlg does, and shows the dialog's own captions in the language in force as well.
TMsgDlgBtn LocaleMessageDlg(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons);

}  // namespace wrenfold
