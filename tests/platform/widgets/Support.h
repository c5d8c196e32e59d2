// What the tests of the widgets' layer share: handlers that record, and forms that are up.
#pragma once

#include <QTest>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/core/model/Dialogs.h"
#include "platform/widgets/Application.h"

namespace wrenfold::test {

// Records which of its handlers were called by whom.
class TRecorder : public TObject {
 public:
  std::vector<std::string> Calls;
  void Record(TObject* sender) {
    auto* component = dynamic_cast<TComponent*>(sender);
    Calls.push_back(component == nullptr ? "none" : component->Name());
  }
  void Raise(TObject*) { throw std::runtime_error("raised"); }
  void RaiseNumber(TObject*) { throw 42; }
  TNotifyEvent Event() { return TNotifyEvent::Bind<&TRecorder::Record>(this); }
};

// Makes the form the active one, as the desktop does.
inline void Activate(TForm& form) {
  form.Show();
  QApplication::setActiveWindow(form.window());
  Application().ProcessMessages();
}

// Takes the questions and messages that would be shown.
class TAnswers {
 public:
  explicit TAnswers(TMsgDlgBtn answer = mbOK)
      : FBefore(
            SetMessageDlgProc([this, answer](const std::string& text, TMsgDlgType, TMsgDlgButtons) {
              Texts.push_back(text);
              return answer;
            })) {}
  ~TAnswers() { SetMessageDlgProc(FBefore); }
  TAnswers(const TAnswers&) = delete;
  TAnswers& operator=(const TAnswers&) = delete;

  std::vector<std::string> Texts;

 private:
  TMessageDlgProc FBefore;
};

}  // namespace wrenfold::test
