// Forms: the windows and docked panels of the environment and of its packages.
#pragma once

#include <QAbstractButton>
#include <QEventLoop>
#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/core/model/Event.h"
#include "platform/widgets/Control.h"

class QKeyEvent;

namespace wrenfold {

enum TCloseAction : std::uint8_t { caNone, caHide, caFree, caMinimize };
enum TFormBorderStyle : std::uint8_t {
  bsNone,
  bsSingle,
  bsSizeable,
  bsDialog,
  bsToolWindow,
  bsSizeToolWin
};
enum TFormStyle : std::uint8_t { fsNormal, fsStayOnTop };

using TModalResult = int;
inline constexpr TModalResult mrNone = 0, mrOk = 1, mrCancel = 2, mrAbort = 3, mrRetry = 4,
                              mrIgnore = 5, mrYes = 6, mrNo = 7, mrAll = 8;

using TCloseEvent = TEvent<void(TObject*, TCloseAction&)>;
using TCloseQueryEvent = TEvent<void(TObject*, bool&)>;
// Accepting the key event ends its way.
using TKeyEvent = TEvent<void(TObject*, QKeyEvent&)>;

inline constexpr int SW_SHOWNORMAL = 1, SW_SHOWMINIMIZED = 2, SW_SHOWMAXIMIZED = 3;

// Where a window stands and how: the ten numbers behind the length field, in this order. The normal
// rectangle is that of the window's contents on the screen (or in what a docked form stands in).
struct TWindowPlacement {
  int Flags = 0;
  int ShowCmd = SW_SHOWNORMAL;
  int MinX = -1, MinY = -1;
  int MaxX = -1, MaxY = -1;
  int Left = 0, Top = 0, Right = 0, Bottom = 0;
  friend bool operator==(const TWindowPlacement&, const TWindowPlacement&) = default;
};

// A window, or a panel docked in another form (then it has a widget as parent). Either way it is a
// form of its own: the screen lists it, and its enabled state is its own.
class TForm : public TControlOf<QWidget> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TForm(TComponent* owner = nullptr, QWidget* parent = nullptr);
  ~TForm() override;

  // Calls OnCreate, once. To be called when the constructor of the last class has run; NewForm
  // does.
  void AfterConstruction();

  std::string Caption() const override { return FCaption; }
  void SetCaption(const std::string& caption) override;
  // A disabled form takes no input of the user, its menus and keys neither, but looks as it did.
  // The state is the form's own: the widgets in it keep theirs, the forms docked in it too.
  bool Enabled() const override { return FEnabled; }
  void SetEnabled(bool enabled) override;

  TFormBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TFormBorderStyle style);
  TFormStyle FormStyle() const { return FFormStyle; }
  void SetFormStyle(TFormStyle style);
  // The form's OnKeyDown and KeyDown see keys before its controls do.
  bool KeyPreview = false;

  // Shows the form, never minimised, and brings it to the front; Hide is quiet, Close asks.
  virtual void Show();
  virtual void Hide();
  // Brings the form to the front, out of its minimised state, and makes it the active one.
  void Restore();
  virtual void BringToFront();
  bool IsDocked() const { return !isWindow(); }

  // OnCloseQuery may refuse; OnClose chooses what happens: a window hides unless it says otherwise.
  // Closing the application's main form ends the application. In a modal form, closing sets
  // mrCancel. Answers whether the form is closed.
  bool Close();
  virtual bool CloseQuery();
  // Destroys the form when the event that is being handled is over.
  void Release();

  // Runs the form until ModalResult is set. Other windows take no input meanwhile. The result is
  // mrNone when the form was destroyed meanwhile.
  TModalResult ShowModal();
  bool IsModal() const { return FModalLoop != nullptr; }
  TModalResult ModalResult() const { return FModalResult; }
  void SetModalResult(TModalResult result);

  // Clicked by Enter and Escape where the control with the focus does not take these keys itself.
  void SetDefaultButton(QAbstractButton* button) { FDefaultButton = button; }
  void SetCancelButton(QAbstractButton* button) { FCancelButton = button; }

  QWidget* ActiveControl() const { return focusWidget(); }
  void SetActiveControl(QWidget* control);

  // For a docked form, the rectangle in what it stands in.
  TWindowPlacement GetPlacement() const;
  // A window that would lie off all screens is moved into the nearest one.
  void SetPlacement(const TWindowPlacement& placement);
  // Puts the window in the centre of the screen.
  void CenterOnScreen();
  // The window that this one stands over while it is modal: the active one, else the one that is
  // recorded for dialogs; null when there is none.
  QWidget* WindowBelow() const;
  // Puts the window in the centre of the one below, or of the screen.
  void CenterOverWindow();

  // The sender is the form.
  TNotifyEvent OnCreate, OnShow, OnHide, OnDestroy, OnActivate, OnDeactivate;
  TCloseEvent OnClose;
  TCloseQueryEvent OnCloseQuery;
  TKeyEvent OnKeyDown;

 protected:
  // Each calls its event; descendants extend them.
  virtual void DoCreate();
  virtual void DoShow();
  virtual void DoHide();
  virtual void DoClose(TCloseAction& action);
  virtual void KeyDown(QKeyEvent& key);
  // Calls OnDestroy, once. For the destructor of a descendant whose members the handlers use.
  void BeforeDestruction();

  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void UpdateTexts() override;

 private:
  friend class TApplication;
  friend class TScreen;
  void UpdateWindowFlags();
  void CloseModal();

  std::string FCaption;
  TFormBorderStyle FBorderStyle = bsSizeable;
  TFormStyle FFormStyle = fsNormal;
  bool FEnabled = true;
  bool FCreated = false, FDestroying = false;
  TModalResult FModalResult = mrNone;
  QEventLoop* FModalLoop = nullptr;
  QPointer<QAbstractButton> FDefaultButton, FCancelButton;
};

// Makes a form and calls its OnCreate.
template <class Form, class... Arguments>
Form* NewForm(Arguments&&... arguments) {
  auto* form = new Form(std::forward<Arguments>(arguments)...);
  form->AfterConstruction();
  return form;
}

// The innermost form that the widget is or stands in; null when there is none.
TForm* FormOf(const QWidget* widget);

// The roots of what is designed but is no window. A report root belongs to no compiled class: it is
// known by its parent's name alone.
class TDataModule : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TDataModule(TComponent* owner = nullptr) : TComponent(owner) {}
};

class TFrame : public TControlOf<QWidget> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TControlOf::TControlOf;
};

// Classes of designed roots end in a chain of class records, compiled or made at run time from the
// user's source; these ask for the class of that name anywhere in the chain.
bool IsFormClass(const TTypeInfo& info);
bool IsDataModuleClass(const TTypeInfo& info);
bool IsFrameClass(const TTypeInfo& info);

}  // namespace wrenfold
