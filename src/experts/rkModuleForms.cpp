#include "experts/rkModuleForms.h"

#include <array>
#include <exception>

#include "locale/rkLocale.h"
#include "manager/rkErrorLog.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"

namespace wrenfold {

namespace {

constexpr std::array<const char*, 3> OtherFormExtensions{".lfm", ".fmx", ".xfm"};
constexpr char KeptText[] = "_txt";

bool IsText(std::string_view bytes) {
  constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(utf8Mark)) bytes.remove_prefix(utf8Mark.size());
  return TestFormFormat(bytes) == TFormFormat::Text;
}

TModuleFormFile FormFileOf(std::string fileName) {
  if (!FileExists(fileName)) return {};
  const TFormFileKind kind =
      IsText(ReadWholeFile(fileName)) ? TFormFileKind::Text : TFormFileKind::Binary;
  return {std::move(fileName), kind};
}

void CloseModuleOf(const std::string& fileName) {
  const auto services = Supports<IOTAModuleServices>(BorlandIDEServices);
  const TIntf<IOTAModule> module(services ? services->FindModule(fileName) : nullptr);
  if (module) module->Close();
}

void ConvertToBinary(const std::string& formFile) {
  const std::string text = ReadWholeFile(formFile);
  TByteWriter binary;
  std::size_t position = 0;
  try {
    ObjectTextToResource(text, position, binary);
  } catch (const EParserError& error) {
    throw EParserError(formFile + ": " + error.what());
  }
  const std::string kept =
      ExtractFilePath(formFile) + ExtractFileNameEx(formFile) + KeptText + ExtractFileExt(formFile);
  SafeWriteFile(kept, text);
  SafeWriteFile(formFile, binary.View());
}

bool PassesGuarded(const TListedModule& module) {
  try {
    return PassesFormCheck(module);
  } catch (...) {
    ErrorLog().Add(nullptr, std::current_exception());
    return true;
  }
}

}  // namespace

TModuleFormFile FindFormFile(const std::string& moduleFile) {
  TModuleFormFile file = FormFileOf(ChangeFileExt(moduleFile, GetProjectFormExt()));
  if (!DesignedKinds().Contains(dkTextForms)) return file;
  for (const char* extension : OtherFormExtensions)
    if (file.Kind == TFormFileKind::Missing)
      file = FormFileOf(ChangeFileExt(moduleFile, extension));
  return file;
}

TDesignedKinds DesignedKinds() {
  const auto capabilities = Supports<IOTADesignCapabilities>(BorlandIDEServices);
  return capabilities ? capabilities->GetDesignedKinds() : TDesignedKinds();
}

bool PassesFormCheck(const TListedModule& module) {
  const TDesignedKinds designed = DesignedKinds();
  if (module.DesignClass == "TFrame" && !designed.Contains(dkFrames)) {
    MessageDlg(LocaleStr(sFramesNotSupported), mtInformation, {mbOK});
    return false;
  }
  const TModuleFormFile file = FindFormFile(module.FileName);
  if (file.Kind != TFormFileKind::Text || designed.Contains(dkTextForms)) return true;
  if (MessageDlg(LocaleStr(sConvertTextForm), mtConfirmation, {mbYes, mbNo}) != mbYes) return false;
  ConvertToBinary(file.FileName);
  CloseModuleOf(module.FileName);
  return true;
}

void ShowModules(const std::vector<TListedModule>& modules, TViewModuleMode mode, bool displacing) {
  for (const TListedModule& module : modules) {
    if (mode == svmUnit) ShowModule(module.Info.get(), mnkUnit, false, false);
    else
      ShowModule(module.Info.get(), PassesGuarded(module) ? mnkForm : mnkUnit, false, displacing);
    Application().ProcessMessages();
  }
}

}  // namespace wrenfold
