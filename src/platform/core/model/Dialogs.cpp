#include "platform/core/model/Dialogs.h"

#include <cstdio>
#include <utility>

namespace wrenfold {

namespace {

TMessageDlgProc& Procedure() {
  static TMessageDlgProc procedure;
  return procedure;
}

TMsgDlgBtn AnswerWithoutScreen(const std::string& text, TMsgDlgButtons buttons) {
  std::fprintf(stderr, "%s\n", text.c_str());
  for (const TMsgDlgBtn button : {mbNo, mbCancel})
    if (buttons.Contains(button)) return button;
  return mbOK;
}

}  // namespace

TMessageDlgProc SetMessageDlgProc(TMessageDlgProc procedure) {
  return std::exchange(Procedure(), std::move(procedure));
}

TMsgDlgBtn MessageDlg(const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons) {
  return Procedure() ? Procedure()(text, type, buttons) : AnswerWithoutScreen(text, buttons);
}

}  // namespace wrenfold
