#include "platform/widgets/Forms.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "platform/core/model/Dialogs.h"
#include "platform/core/system/Exceptions.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// Without the first, desktops add the buttons that they like.
constexpr Qt::WindowFlags TitleBar = Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                     Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

struct TBorder {
  TFormBorderStyle Style;
  Qt::WindowFlags Flags;
};
const TBorder Borders[] = {
    {bsNone, Qt::Window | Qt::FramelessWindowHint},
    {bsSingle,
     Qt::Window | TitleBar | Qt::WindowMinMaxButtonsHint | Qt::MSWindowsFixedSizeDialogHint},
    {bsSizeable, Qt::Window},
    {bsDialog, Qt::Dialog | TitleBar | Qt::MSWindowsFixedSizeDialogHint},
    {bsToolWindow, Qt::Tool | TitleBar | Qt::MSWindowsFixedSizeDialogHint},
    {bsSizeToolWin, Qt::Tool | TitleBar},
};

// The nearest place of a rectangle where the user can reach it.
QRect OnScreen(QRect area) {
  const QScreen* best = QGuiApplication::primaryScreen();
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen->availableGeometry().contains(area)) return area;
    if (screen->availableGeometry().intersects(area)) best = screen;
  }
  if (best == nullptr) return area;
  const QRect room = best->availableGeometry();
  area.setSize(area.size().boundedTo(room.size()));
  if (area.right() > room.right()) area.moveRight(room.right());
  if (area.bottom() > room.bottom()) area.moveBottom(room.bottom());
  if (area.left() < room.left()) area.moveLeft(room.left());
  if (area.top() < room.top()) area.moveTop(room.top());
  return area;
}

}  // namespace

const TTypeInfo& TForm::ClassInfo() {
  static const TTypeInfo info = Publish<TForm>("TForm", TControl::ClassInfo())
                                    .Prop("Caption", &TForm::Caption, &TForm::SetCaption);
  return info;
}

TForm::TForm(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  Screen().AddForm(this);
}

TForm::~TForm() {
  BeforeDestruction();
  if (FModalLoop != nullptr) FModalLoop->quit();
  if (HasApplication() && Application().MainForm() == this) Application().SetMainForm(nullptr);
  Screen().RemoveForm(this);
}

void TForm::AfterConstruction() {
  if (std::exchange(FCreated, true)) return;
  DoCreate();
}

void TForm::BeforeDestruction() {
  if (std::exchange(FDestroying, true)) return;
  Guarded(this, [this] { OnDestroy(this); });
}

void TForm::DoCreate() {
  OnCreate(this);
}

void TForm::DoShow() {
  OnShow(this);
}

void TForm::DoHide() {
  OnHide(this);
}

void TForm::DoClose(TCloseAction& action) {
  OnClose(this, action);
}

void TForm::KeyDown(QKeyEvent& key) {
  OnKeyDown(this, key);
}

void TForm::SetCaption(const std::string& caption) {
  FCaption = caption;
  setWindowTitle(ToQString(caption));
  setAccessibleName(ToQString(caption));
}

// A window's hint would show over everything in it: only assistive programs tell it.
void TForm::UpdateTexts() {
  setAccessibleDescription(ToQString(Hint()));
}

void TForm::SetEnabled(bool enabled) {
  if (enabled == FEnabled) return;
  FEnabled = enabled;
  QAccessible::State changed;
  changed.disabled = true;
  QAccessibleStateChangeEvent event(this, changed);
  QAccessible::updateAccessibility(&event);
}

void TForm::SetBorderStyle(TFormBorderStyle style) {
  if (style == FBorderStyle) return;
  FBorderStyle = style;
  UpdateWindowFlags();
}

void TForm::SetFormStyle(TFormStyle style) {
  if (style == FFormStyle) return;
  FFormStyle = style;
  UpdateWindowFlags();
}

void TForm::UpdateWindowFlags() {
  if (IsDocked()) return;
  const bool wasVisible = isVisible();
  Qt::WindowFlags flags;
  for (const TBorder& border : Borders)
    if (border.Style == FBorderStyle) flags = border.Flags;
  if (FFormStyle == fsStayOnTop) flags |= Qt::WindowStaysOnTopHint;
  setWindowFlags(flags);
  if (wasVisible) show();
}

void TForm::Show() {
  if (!isVisible() && isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  BringToFront();
}

void TForm::Hide() {
  hide();
}

void TForm::BringToFront() {
  raise();
  if (QWidget* top = window(); top->isVisible()) {
    top->raise();
    top->activateWindow();
  }
  if (IsDocked() && isVisible() && FormOf(QApplication::focusWidget()) != this)
    (focusWidget() != nullptr ? focusWidget() : this)->setFocus();
}

void TForm::Restore() {
  QWidget* top = window();
  if (top->isMinimized()) top->setWindowState(top->windowState() & ~Qt::WindowMinimized);
  Show();
}

bool TForm::CloseQuery() {
  bool canClose = true;
  OnCloseQuery(this, canClose);
  return canClose;
}

bool TForm::Close() {
  if (IsModal()) {
    SetModalResult(mrCancel);
    return FModalResult != mrNone;
  }
  const QPointer<TForm> alive(this);
  if (!CloseQuery() || alive == nullptr) return alive == nullptr;
  TCloseAction action = caHide;
  DoClose(action);
  if (alive == nullptr) return true;
  if (action == caNone) return false;
  if (action == caMinimize) {
    showMinimized();
    return false;
  }
  const bool isMain = HasApplication() && Application().MainForm() == this;
  if (isMain) Application().Terminate();
  if (action == caFree && !isMain) Release();
  else hide();
  return true;
}

void TForm::Release() {
  hide();
  deleteLater();
}

void TForm::closeEvent(QCloseEvent* event) {
  const bool blocked = event->spontaneous() && !FEnabled;
  // The form hides, or goes, as OnClose says.
  event->ignore();
  if (!blocked) Guarded(this, [this] { Close(); });
}

namespace {

bool IsAnyOnTop() {
  const auto& forms = Screen().Forms();
  return std::any_of(forms.begin(), forms.end(), [](const TForm* form) {
    return form->isVisible() && form->FormStyle() == fsStayOnTop;
  });
}

}  // namespace

TModalResult TForm::ShowModal() {
  if (IsDocked()) throw Exception("A docked form cannot be shown modal");
  if (IsModal()) throw Exception("The form is shown modal already");
  const QPointer<TForm> alive(this);
  QEventLoop loop;
  QWidget* below = WindowBelow();
  hide();
  FModalResult = mrNone;
  FModalLoop = &loop;
  setWindowModality(Qt::ApplicationModal);
  // It must not open behind a form that stays on top.
  if (IsAnyOnTop()) setWindowFlag(Qt::WindowStaysOnTopHint);
  winId();  // makes the window of the desktop
  windowHandle()->setTransientParent(below != nullptr ? below->windowHandle() : nullptr);
  try {
    Show();
  } catch (...) {
    FModalLoop = nullptr;
    throw;
  }
  if (alive != nullptr && FModalResult == mrNone) loop.exec();
  if (alive == nullptr) return mrNone;
  FModalLoop = nullptr;
  if (FModalResult == mrNone) FModalResult = mrCancel;
  hide();
  setWindowModality(Qt::NonModal);
  UpdateWindowFlags();
  return FModalResult;
}

void TForm::SetModalResult(TModalResult result) {
  FModalResult = result;
  if (!IsModal() || result == mrNone) return;
  try {
    CloseModal();
  } catch (...) {
    FModalResult = mrNone;
    throw;
  }
}

void TForm::CloseModal() {
  const QPointer<TForm> alive(this);
  TCloseAction action = CloseQuery() ? caHide : caNone;
  if (action != caNone) DoClose(action);
  if (alive == nullptr) return;
  if (action == caNone) {
    FModalResult = mrNone;
    return;
  }
  FModalLoop->quit();
  if (action == caFree) deleteLater();
}

void TForm::SetActiveControl(QWidget* control) {
  if (control != nullptr) control->setFocus();
}

TWindowPlacement TForm::GetPlacement() const {
  const bool special = isWindow() && (isMinimized() || isMaximized() || isFullScreen());
  const QRect area = special ? normalGeometry() : geometry();
  TWindowPlacement placement;
  if (isWindow() && isMaximized()) placement.ShowCmd = SW_SHOWMAXIMIZED;
  if (isWindow() && isMinimized()) placement.ShowCmd = SW_SHOWMINIMIZED;
  placement.Left = area.left();
  placement.Top = area.top();
  placement.Right = area.left() + area.width();
  placement.Bottom = area.top() + area.height();
  return placement;
}

void TForm::SetPlacement(const TWindowPlacement& placement) {
  // In 64 bits: the numbers come from a text that anybody may have written.
  const std::int64_t width = std::int64_t{placement.Right} - placement.Left;
  const std::int64_t height = std::int64_t{placement.Bottom} - placement.Top;
  if (width > 0 && height > 0 && width <= QWIDGETSIZE_MAX && height <= QWIDGETSIZE_MAX) {
    const QRect area(placement.Left, placement.Top, static_cast<int>(width),
                     static_cast<int>(height));
    setGeometry(isWindow() ? OnScreen(area) : area);
  }
  if (!isWindow()) return;
  Qt::WindowStates state = windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  if (placement.ShowCmd == SW_SHOWMAXIMIZED) state |= Qt::WindowMaximized;
  if (placement.ShowCmd == SW_SHOWMINIMIZED) state |= Qt::WindowMinimized;
  if (state != windowState()) setWindowState(state);
}

void TForm::CenterOnScreen() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (IsDocked() || screen == nullptr) return;
  QRect area(QPoint(), size());
  area.moveCenter(screen->availableGeometry().center());
  setGeometry(OnScreen(area));
}

QWidget* TForm::WindowBelow() const {
  QWidget* recorded =
      DialogWindow() != 0 ? QWidget::find(static_cast<WId>(DialogWindow())) : nullptr;
  for (QWidget* window : {QApplication::activeWindow(), recorded})
    if (window != nullptr && window != this && window->isVisible() && !window->isMinimized())
      return window->window();
  return nullptr;
}

void TForm::CenterOverWindow() {
  const QWidget* below = WindowBelow();
  if (IsDocked() || below == nullptr) return CenterOnScreen();
  QRect area(QPoint(), size());
  area.moveCenter(below->geometry().center());
  setGeometry(OnScreen(area));
}

void TForm::showEvent(QShowEvent* event) {
  TControlOf::showEvent(event);
  if (!event->spontaneous()) Guarded(this, [this] { DoShow(); });
}

void TForm::hideEvent(QHideEvent* event) {
  TControlOf::hideEvent(event);
  if (event->spontaneous()) return;
  if (FModalLoop != nullptr) FModalLoop->quit();
  Screen().UpdateActiveForm();
  if (!FDestroying) Guarded(this, [this] { DoHide(); });
}

void TForm::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  QAbstractButton* button = nullptr;
  if (key == Qt::Key_Escape) button = FCancelButton;
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    button = focused != nullptr ? focused : FDefaultButton;
  }
  if (button == nullptr || !button->isEnabled()) TControlOf::keyPressEvent(event);
  else button->click();
}

TForm* FormOf(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    if (auto* form = dynamic_cast<const TForm*>(widget)) return const_cast<TForm*>(form);
    if (widget->isWindow() && widget->windowType() != Qt::Popup) return nullptr;
  }
  return nullptr;
}

const TTypeInfo& TDataModule::ClassInfo() {
  static const TTypeInfo info = Publish<TDataModule>("TDataModule", TComponent::ClassInfo());
  return info;
}

const TTypeInfo& TFrame::ClassInfo() {
  static const TTypeInfo info = Publish<TFrame>("TFrame", TControl::ClassInfo());
  return info;
}

bool IsFormClass(const TTypeInfo& info) {
  return info.InheritsFrom("TForm");
}

bool IsDataModuleClass(const TTypeInfo& info) {
  return info.InheritsFrom("TDataModule");
}

bool IsFrameClass(const TTypeInfo& info) {
  return info.InheritsFrom("TFrame");
}

}  // namespace wrenfold
