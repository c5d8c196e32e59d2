// The message dialogs: questions and messages as modal forms.
#pragma once

#include <string>

#include "platform/core/model/Dialogs.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

// A dialog with the text and one button for each that is asked for, named and captioned "Yes",
// "No", "OK", "Cancel" and so on; its modal results are mrYes and so on. The caption is "Warning",
// "Error", "Information", "Confirm", or the application's title for mtCustom. Escape and closing
// choose "Cancel", else "No", else the only button; the underlined letter of a button chooses it
// with and without Alt. `texts` are what is shown in the place of the captions. Owned by nobody.
TForm* CreateMessageDialog(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons,
                           const TDialogTexts& texts = {});
// The button for a modal result.
TMsgDlgBtn ButtonOfModalResult(TModalResult result, TMsgDlgButtons buttons);

// Makes MessageDlg show these dialogs, until the end of the application; TApplication does it.
void InstallMessageDialogs();
void RemoveMessageDialogs();

}  // namespace wrenfold
