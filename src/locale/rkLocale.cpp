#include "locale/rkLocale.h"

#include <filesystem>

#include "locale/Strings.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

std::unique_ptr<TfrLocale>& Instance() {
  static std::unique_ptr<TfrLocale> instance;
  return instance;
}

std::string RunningProgram() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

// Captions of message dialogs as the environment knows them.
struct TDialogCaption {
  std::string_view Caption;
  int TextId;
};
constexpr TDialogCaption DialogCaptions[] = {
    {"&Yes", sYes},
    {"&No", sNo},
    {"OK", sOK},
    {"Cancel", sCancel},
    {"&Abort", sAbort},
    {"&Retry", sRetry},
    {"&Ignore", sIgnore},
    {"&All", sAll},
    {"Warning", sWarning},
    {"Error", sError},
    {"Information", sInformation},
    {"Confirm", sConfirm},
};

std::string PackageText(int id) {
  const TStringEntry* entry = FindPackageString(id);
  return entry != nullptr ? std::string(entry->Text) : std::string();
}

}  // namespace

TfrLocale::TfrLocale(std::string_view hostFileName) {
  const std::size_t nameStart = hostFileName.find_last_of("/\\:") + 1;  // 0 without a directory
  FHostIsDelphi = EqualText(hostFileName.substr(nameStart), "DELPHI32.EXE");
}

std::string TfrLocale::LocaleStr(int id) const {
  std::string text;
  OnText(id, text);
  if (text.empty() && FModule) text = FModule->FindString(id);
  return text.empty() ? PackageText(id) : text;
}

void TfrLocale::LoadNewLanguage(const std::string& fileName) {
  FModule.reset();
  FLoadError.clear();
  FLoaded = !fileName.empty();
  if (!FLoaded) return;
  try {
    FModule = std::make_unique<TResourceLibrary>(fileName);
  } catch (const EResourceLibraryError& error) {
    FLoadError = error.Message();
  }
}

TfrLocale& Locale() {
  if (!Instance()) Instance() = std::make_unique<TfrLocale>(RunningProgram());
  return *Instance();
}

void FreeLocale() {
  Instance().reset();
}

std::string LocaleStr(int id) {
  return Locale().LocaleStr(id);
}

void LoadNewLanguage(const std::string& fileName) {
  Locale().LoadNewLanguage(fileName);
}

std::string DefaultLocaleStr(int id) {
  const TStringEntry* entry = FindPackageString(id);
  return entry != nullptr ? std::string(entry->Text) : "Not found";
}

std::string LocaleFormatArgs(int id, std::span<const TFormatArg> args) {
  try {
    return FormatArgs(LocaleStr(id), args);
  } catch (const EFormatError&) {
    return FormatArgs(PackageText(id), args);
  }
}

std::string LocaleDialogText(std::string_view caption) {
  for (const TDialogCaption& known : DialogCaptions)
    if (known.Caption == caption) return LocaleStr(known.TextId);
  return {};
}

TMsgDlgBtn LocaleMessageDlg(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons) {
  // Whoever answers without a dialog leaves the texts: they are not meant for the next one.
  struct TTexts {
    TTexts() { SetDialogTexts(&LocaleDialogText); }
    ~TTexts() { SetDialogTexts({}); }
  } const texts;
  return MessageDlg(text, type, buttons);
}

}  // namespace wrenfold
