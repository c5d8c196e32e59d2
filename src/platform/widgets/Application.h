// The application and its screen: one of each in the process.
#pragma once

#include <QApplication>
#include <exception>
#include <string>
#include <vector>

#include "platform/core/model/Event.h"
#include "platform/core/model/Persistent.h"
#include "platform/core/text/Identifiers.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Guard.h"

namespace wrenfold {

class TAction;
class TMenuItem;

inline constexpr TCursor crDefault = 0, crHourGlass = -11;

// The forms of the process, docked ones too, in the order of their making.
class TScreen : public TObject {
 public:
  int FormCount() const { return static_cast<int>(FForms.size()); }
  // Raises EListError outside 0..FormCount-1.
  TForm* Forms(int index) const;
  const std::vector<TForm*>& Forms() const { return FForms; }
  // By component name, letter case ignored; null when there is none.
  TForm* FindForm(std::string_view name) const;
  // A form that was remembered may have gone: looks by address alone.
  bool HasForm(const TForm* form) const;

  // The innermost form with the focus. While the user is in another program it is the form that had
  // the focus last. Null while no form shows.
  TForm* ActiveForm() const { return FActiveForm; }
  // The active form; null while the foreground window belongs to another program.
  TForm* ForegroundForm() const;
  QWidget* ActiveControl() const;

  // Of the primary screen, in device-independent pixels.
  int Width() const;
  int Height() const;

  TCursor Cursor() const { return FCursor; }
  void SetCursor(TCursor cursor);

  // The sender is the screen.
  TNotifyEvent OnActiveFormChange;

 private:
  friend class TForm;
  friend class TApplication;
  void AddForm(TForm* form) { FForms.push_back(form); }
  void RemoveForm(TForm* form);
  // Finds the active form and reports a change.
  void UpdateActiveForm();

  std::vector<TForm*> FForms;
  TForm* FActiveForm = nullptr;
  TCursor FCursor = crDefault;
};

// Exists before the application and after it (then without forms).
TScreen& Screen();

// Sets the cursor, and the one before again at the end of the scope.
class TWaitCursor {
 public:
  TWaitCursor() : FBefore(Screen().Cursor()) { Screen().SetCursor(crHourGlass); }
  ~TWaitCursor() { Screen().SetCursor(FBefore); }
  TWaitCursor(const TWaitCursor&) = delete;
  TWaitCursor& operator=(const TWaitCursor&) = delete;

 private:
  TCursor FBefore;
};

using TExceptionEvent = TEvent<void(TObject* sender, std::exception_ptr exception)>;

// Owns the components that are given to it; they go before the toolkit does. Catches every
// exception that an event handler lets out, and dispatches the shortcuts of actions and menus.
class TApplication : public QApplication, public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // As for QApplication: both must outlive the application.
  TApplication(int& argc, char** argv);
  ~TApplication() override;

  TForm* MainForm() const { return FMainForm; }
  void SetMainForm(TForm* form) { FMainForm = form; }
  std::string Title() const;
  void SetTitle(const std::string& title);

  // Runs until Terminate; answers the exit code.
  int Run() { return exec(); }
  void Terminate();
  bool Terminated() const { return FTerminated; }
  // Handles what is waiting, posted messages among it. Released forms go when no event is being
  // handled.
  void ProcessMessages();
  // What runs before the application waits: actions of visible forms update themselves.
  void Idle();

  // For catch blocks: hands the current exception to OnException, or shows it.
  void HandleException(TObject* sender);
  // Shows the message of an exception, of whatever class it is; EAbort has none.
  void ShowException(std::exception_ptr exception);
  // Takes the place of showing, for exceptions derived from std::exception; an object of any other
  // class bypasses it and is shown. A handler that raises in turn is not asked again for that.
  TExceptionEvent OnException;

  // The toolkit's entry for every event.
  bool notify(QObject* receiver, QEvent* event) override;
  // Sees an event on every step of its way through the widgets; disabled forms are no step.
  bool eventFilter(QObject* receiver, QEvent* event) override;

  // Runs the action or menu item that has the key in that form, as a key press there does: first
  // the form's own, then those of the main form, unless it is disabled or a modal form is open,
  // then action lists that no form owns. Null: no form. False when nothing has the key.
  bool HandleShortCut(TForm* form, TShortCut shortCut);

 private:
  // What a shortcut runs: one of the two, or neither.
  struct TShortCutTarget {
    TAction* Action = nullptr;
    TMenuItem* Item = nullptr;
    explicit operator bool() const { return Action != nullptr || Item != nullptr; }
    void Run() const;
  };
  // Of the form alone, or of the environment too.
  TShortCutTarget FindShortCut(TForm* form, TShortCut shortCut, bool ownOnly) const;
  static TShortCutTarget FindIn(const TForm* form, TShortCut shortCut);
  bool TakesShortCut(QWidget* receiver, const QKeyEvent& key);
  bool FilterEvent(QObject* receiver, QEvent* event);
  bool DispatchKey(QWidget* receiver, QKeyEvent& key);
  TForm* FMainForm = nullptr;
  int FNotifyDepth = 0;
  bool FTerminated = false, FHandlingException = false, FIdling = false;
};

// Raises Exception when there is none.
TApplication& Application();
bool HasApplication();

// What is known of any exception: its message, and its class name without a namespace.
std::string ExceptionMessage(const std::exception_ptr& exception);
std::string ExceptionClassName(const std::exception_ptr& exception);

}  // namespace wrenfold
