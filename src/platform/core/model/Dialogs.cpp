#include "platform/core/model/Dialogs.h"

#include <cstdio>
#include <utility>

namespace wrenfold {

namespace {

TMessageDlgProc& Procedure() {
  static TMessageDlgProc procedure;
  return procedure;
}

TDialogTexts& Texts() {
  static TDialogTexts texts;
  return texts;
}

std::uintptr_t Window = 0;

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

void SetDialogTexts(TDialogTexts texts) {
  Texts() = std::move(texts);
}

TDialogTexts TakeDialogTexts() {
  return std::exchange(Texts(), {});
}

void SetDialogWindow(std::uintptr_t handle) {
  Window = handle;
}

std::uintptr_t DialogWindow() {
  return Window;
}

}  // namespace wrenfold
