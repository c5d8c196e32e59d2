#include "foundation/rkAppUtils.h"

#include <cxxabi.h>

#include <typeinfo>

#include "locale/rkLocale.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"

namespace wrenfold {

namespace {

TApplicationWindow& RecordedWindow() {
  static TApplicationWindow window;
  return window;
}

}  // namespace

void AddLogData(const std::string& fileName, const std::string& text, std::uint64_t maxSize) {
  const std::int64_t size = FileSize(fileName);
  const bool full = maxSize != 0 && size >= 0 && static_cast<std::uint64_t>(size) >= maxSize;
  if (full) SafeWriteFile(fileName, text + "\r\n");
  else AppendToFile(fileName, text + "\r\n");
}

std::string ExceptionText(const std::exception& error) {
  std::string text = ClassNameOf(typeid(error)) + ": " + error.what();
  const auto* nested = dynamic_cast<const std::nested_exception*>(&error);
  if (nested != nullptr && nested->nested_ptr())
    text += "\r\n" + ExceptionText(nested->nested_ptr());
  return text;
}

std::string ExceptionText(const std::exception_ptr& error) {
  if (!error) return "No exception";
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& known) {
    return ExceptionText(known);
  } catch (...) {
    const std::type_info* type = abi::__cxa_current_exception_type();
    return "Unknown exception" + (type != nullptr ? " of type " + ClassNameOf(*type) : "");
  }
}

void SetApplicationWindow(const TApplicationWindow& window) {
  RecordedWindow() = window;
  SetDialogWindow(window.Handle);
}

const TApplicationWindow& ApplicationWindow() {
  return RecordedWindow();
}

TMsgDlgBtn MsgQuestion(const std::string& text, TMsgDlgButtons buttons) {
  return LocaleMessageDlg(text, mtConfirmation, buttons);
}

TMsgDlgBtn MsgWarning(const std::string& text, TMsgDlgButtons buttons) {
  return LocaleMessageDlg(text, mtWarning, buttons);
}

TMsgDlgBtn MsgError(const std::string& text, TMsgDlgButtons buttons) {
  return LocaleMessageDlg(text, mtError, buttons);
}

TMsgDlgBtn MsgInformation(const std::string& text, TMsgDlgButtons buttons) {
  return LocaleMessageDlg(text, mtInformation, buttons);
}

}  // namespace wrenfold
