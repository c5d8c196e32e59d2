// What every part of the suite tells its user or its log.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "platform/core/model/Dialogs.h"

namespace wrenfold {

// Writes the text and a line break to the end of a log file, in one write. A file of `maxSize`
// bytes or more starts afresh with this entry; 0 means no limit. Raises EStreamError
// naming the file and the reason.
void AddLogData(const std::string& fileName, const std::string& text, std::uint64_t maxSize);

// Class name and message of an exception, and of those nested in it, one a line. An exception of
// an unknown kind is named as such.
std::string ExceptionText(const std::exception& error);
std::string ExceptionText(const std::exception_ptr& error);

// The main window of the environment and its title, which the message dialogs belong to.
struct TApplicationWindow {
  std::uintptr_t Handle = 0;
  std::string Title;
};
void SetApplicationWindow(const TApplicationWindow& window);
const TApplicationWindow& ApplicationWindow();

// Modal messages; they answer the chosen button.
TMsgDlgBtn MsgQuestion(const std::string& text, TMsgDlgButtons buttons = {mbYes, mbNo});
TMsgDlgBtn MsgWarning(const std::string& text, TMsgDlgButtons buttons = {mbYes, mbNo});
TMsgDlgBtn MsgError(const std::string& text, TMsgDlgButtons buttons = {mbOK});
TMsgDlgBtn MsgInformation(const std::string& text, TMsgDlgButtons buttons = {mbOK});

}  // namespace wrenfold
