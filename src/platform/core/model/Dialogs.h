// Questions and messages to the user, asked through one replaceable procedure.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/core/text/Values.h"

namespace wrenfold {

enum TMsgDlgType : std::uint8_t { mtWarning, mtError, mtInformation, mtConfirmation, mtCustom };
enum TMsgDlgBtn : std::uint8_t { mbYes, mbNo, mbOK, mbCancel, mbAbort, mbRetry, mbIgnore, mbAll };
using TMsgDlgButtons = TSet<TMsgDlgBtn>;

// Shows the text with the buttons and answers the chosen one. Storage asks without knowing
// widgets; the widgets' library installs the real dialog. Without one the question goes to the
// standard error and is answered "No" where that is offered, else "Cancel", else "OK".
using TMessageDlgProc =
    std::function<TMsgDlgBtn(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons)>;

// Installs a procedure and answers the one before; an empty one brings the default back.
TMessageDlgProc SetMessageDlgProc(TMessageDlgProc procedure);
TMsgDlgBtn MessageDlg(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons);

// What the next dialog shows in the place of its captions ("&Yes", "Confirm"), by which packages
// find it and its buttons: the captions themselves stay. An empty answer shows the caption.
using TDialogTexts = std::function<std::string(std::string_view caption)>;
void SetDialogTexts(TDialogTexts texts);
// For the dialog that is made: nobody gets them a second time.
TDialogTexts TakeDialogTexts();

// The window that dialogs stand over while no window of the program is active; 0: none.
void SetDialogWindow(std::uintptr_t handle);
std::uintptr_t DialogWindow();

}  // namespace wrenfold
