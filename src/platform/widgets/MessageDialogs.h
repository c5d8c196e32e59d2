// The message dialogs: questions and messages as modal forms.
#pragma once

#include <string>

#include "platform/core/model/Dialogs.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

// A dialog with the text and one button for each that is asked for, named and captioned "Yes",
// "No", "OK", "Cancel" and so on; its modal results are mrYes and so on. The caption is "Warning",
// "Error", "Information", "Confirm", or the application's title for mtCustom. Escape and closing
// choose "Cancel", else "No", else the only button. Owned by nobody.
TForm* CreateMessageDialog(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons);
// The button for a modal result.
TMsgDlgBtn ButtonOfModalResult(TModalResult result, TMsgDlgButtons buttons);

// Makes MessageDlg show these dialogs, until the end of the application; TApplication does it.
void InstallMessageDialogs();
void RemoveMessageDialogs();

}  // namespace wrenfold
