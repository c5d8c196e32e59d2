// Holds the other forms of the application still while one window is open.
#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

#include "platform/widgets/Forms.h"

namespace wrenfold {

// Works like a modal run of its holder, but the environment's event loop goes on and code may use
// the held forms. A held form that the desktop activates, by a click on it or because a question
// has ended, hands the activation back to the holder.
class THeldForms {
 public:
  // The holder must outlive this.
  explicit THeldForms(TForm& holder) : FHolder(holder) {}
  ~THeldForms() { GiveBack(); }
  THeldForms(const THeldForms&) = delete;
  THeldForms& operator=(const THeldForms&) = delete;

  // Disables every other form, notes how it was and which widget had the focus. Forms that are made
  // later are not held.
  void Hold();
  // Each form that is still there gets its state back. Once.
  void GiveBack();
  // What had the focus when Hold was called; null when there was nothing or it is gone.
  QWidget* ActiveBefore() const { return FActiveBefore; }

 private:
  struct THeldForm {
    QPointer<QWidget> Form;
    bool Enabled;
  };
  bool IsHeld(const TForm* form) const;
  void TakeActivationBack();

  TForm& FHolder;
  std::vector<THeldForm> FForms;
  QPointer<QWidget> FActiveBefore;
  QMetaObject::Connection FWatch;
};

// Lets a held form take part for a scope. Null, or a form that goes meanwhile, is no error.
class TFormTakesPart {
 public:
  explicit TFormTakesPart(TForm* form) : FForm(form) { SetEnabled(true); }
  ~TFormTakesPart() { SetEnabled(false); }
  TFormTakesPart(const TFormTakesPart&) = delete;
  TFormTakesPart& operator=(const TFormTakesPart&) = delete;

 private:
  void SetEnabled(bool enabled) {
    if (FForm) static_cast<TForm*>(FForm.data())->SetEnabled(enabled);
  }
  QPointer<QWidget> FForm;
};

}  // namespace wrenfold
