#include "platform/widgets/Application.h"

#include <cxxabi.h>

#include <QAbstractEventDispatcher>
#include <QAbstractSpinBox>
#include <QKeyEvent>
#include <QPalette>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScreen>
#include <QTextEdit>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "platform/core/model/Dialogs.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/AccessibleCombo.h"
#include "platform/widgets/Actions.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/HeldInput.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/MessageDialogs.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

struct TCursorShape {
  TCursor Cursor;
  Qt::CursorShape Shape;
};
const TCursorShape CursorShapes[] = {
    {-2, Qt::ArrowCursor},    {-3, Qt::CrossCursor},      {-4, Qt::IBeamCursor},
    {-10, Qt::UpArrowCursor}, {-11, Qt::WaitCursor},      {-12, Qt::OpenHandCursor},
    {-14, Qt::SplitHCursor},  {-15, Qt::SplitVCursor},    {-18, Qt::ForbiddenCursor},
    {-19, Qt::BusyCursor},    {-20, Qt::WhatsThisCursor}, {-21, Qt::PointingHandCursor},
};

// Some desktops set a dark palette and leave the hints of fields dark: they get the colour of
// texts, half seen. What is legible stays as the desktop wants it.
void MakeHintsLegible() {
  constexpr int LeastContrast = 50, HalfSeen = 128;
  QPalette colours = QGuiApplication::palette();
  QColor hint = colours.color(QPalette::PlaceholderText);
  const int background = colours.color(QPalette::Base).lightness();
  if (std::abs(hint.lightness() - background) >= LeastContrast) return;
  hint = colours.color(QPalette::Text);
  hint.setAlpha(HalfSeen);
  if (std::abs(hint.lightness() - background) < LeastContrast) return;
  colours.setColor(QPalette::PlaceholderText, hint);
  QApplication::setPalette(colours);
}

class TPaletteWatch : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::ApplicationPaletteChange) MakeHintsLegible();
    return false;
  }
};

// The form that a list or menu belongs to; null for the application's own.
const TForm* OwningForm(const TComponent* component) {
  for (; component != nullptr; component = component->Owner())
    if (auto* form = dynamic_cast<const TForm*>(component)) return form;
  return nullptr;
}

// Keys that write, delete or move the cursor: the control with the focus may want them itself.
bool IsPlainKey(const QKeyEvent& key) {
  if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
  return key.key() < Qt::Key_F1 || key.key() > Qt::Key_F35;
}

// The control that the widget is or stands in wants the key for itself.
bool IsClaimed(QWidget* widget, const QKeyEvent& key) {
  for (; widget != nullptr; widget = widget->isWindow() ? nullptr : widget->parentWidget())
    if (const TControl* control = ControlOf(widget)) return control->ClaimsKey(key);
  return false;
}

// A field of the toolkit that one writes into keeps the keys that edit, unless its own form has an
// action for them; the code editor is no such field.
bool KeepsEditingKey(const QWidget* widget, const QKeyEvent& key) {
  const bool field = qobject_cast<const QLineEdit*>(widget) != nullptr ||
                     qobject_cast<const QTextEdit*>(widget) != nullptr ||
                     qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
                     qobject_cast<const QAbstractSpinBox*>(widget) != nullptr;
  if (!field) return false;
  constexpr QKeySequence::StandardKey keys[] = {QKeySequence::SelectAll, QKeySequence::Copy,
                                                QKeySequence::Cut,       QKeySequence::Paste,
                                                QKeySequence::Undo,      QKeySequence::Redo};
  return std::any_of(std::begin(keys), std::end(keys),
                     [&](QKeySequence::StandardKey wanted) { return key.matches(wanted); });
}

bool IsStandard(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception&) {
    return true;
  } catch (...) {
    return false;
  }
}

bool IsAbort(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const EAbort&) {
    return true;
  } catch (...) {
    return false;
  }
}

// Sets a flag for a scope.
class TFlagged {
 public:
  explicit TFlagged(bool& flag) : FFlag(flag) { FFlag = true; }
  ~TFlagged() { FFlag = false; }
  TFlagged(const TFlagged&) = delete;
  TFlagged& operator=(const TFlagged&) = delete;

 private:
  bool& FFlag;
};

class TDepth {
 public:
  explicit TDepth(int& depth) : FDepth(depth) { ++FDepth; }
  ~TDepth() { --FDepth; }
  TDepth(const TDepth&) = delete;
  TDepth& operator=(const TDepth&) = delete;

 private:
  int& FDepth;
};

}  // namespace

std::string ExceptionMessage(const std::exception_ptr& exception) {
  if (exception == nullptr) return {};
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "An object of class " + ExceptionClassName(exception) + " was thrown";
  }
}

std::string ExceptionClassName(const std::exception_ptr& exception) {
  if (exception == nullptr) return {};
  return ClassNameOf(*exception.__cxa_exception_type());
}

void ReportException(TObject* sender) {
  if (HasApplication()) Application().HandleException(sender);
  else std::fprintf(stderr, "%s\n", ExceptionMessage(std::current_exception()).c_str());
}

TScreen& Screen() {
  static TScreen screen;
  return screen;
}

TForm* TScreen::Forms(int index) const {
  if (index < 0 || index >= FormCount())
    throw EListError("Form index out of bounds (" + IntToStr(index) + ")");
  return FForms[static_cast<std::size_t>(index)];
}

TForm* TScreen::FindForm(std::string_view name) const {
  const auto found = std::find_if(FForms.begin(), FForms.end(), [name](const auto* form) {
    return EqualText(form->Name(), name);
  });
  return found == FForms.end() ? nullptr : *found;
}

bool TScreen::HasForm(const TForm* form) const {
  return std::find(FForms.begin(), FForms.end(), form) != FForms.end();
}

// A modal form counts before the desktop has made it the foreground window.
TForm* TScreen::ForegroundForm() const {
  const bool isForeground =
      QGuiApplication::focusWindow() != nullptr || QApplication::activeModalWidget() != nullptr;
  return isForeground ? FActiveForm : nullptr;
}

QWidget* TScreen::ActiveControl() const {
  return QApplication::focusWidget();
}

int TScreen::Width() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 0 : screen->geometry().width();
}

int TScreen::Height() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 0 : screen->geometry().height();
}

void TScreen::SetCursor(TCursor cursor) {
  if (cursor == FCursor) return;
  if (FCursor != crDefault && HasApplication()) QApplication::restoreOverrideCursor();
  FCursor = cursor;
  if (cursor == crDefault || !HasApplication()) return;
  Qt::CursorShape shape = Qt::ArrowCursor;
  for (const TCursorShape& known : CursorShapes)
    if (known.Cursor == cursor) shape = known.Shape;
  QApplication::setOverrideCursor(shape);
}

void TScreen::RemoveForm(TForm* form) {
  std::erase(FForms, form);
  if (FActiveForm != form) return;
  FActiveForm = nullptr;
  UpdateActiveForm();
}

void TScreen::UpdateActiveForm() {
  if (!HasApplication() || QApplication::activePopupWidget() != nullptr) return;
  QWidget* place = QApplication::focusWidget();
  if (place == nullptr) place = QApplication::activeWindow();
  // A modal window counts as soon as it shows, also before the desktop has made it the active one.
  QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr && (place == nullptr || place->window() != modal)) place = modal;
  TForm* form = FormOf(place);
  if (form != nullptr && !HasForm(form)) form = nullptr;
  if (place == nullptr && FActiveForm != nullptr && FActiveForm->isVisible()) return;
  if (form == FActiveForm) return;
  TForm* before = std::exchange(FActiveForm, form);
  Guarded(this, [this, before, form] {
    if (HasForm(before)) before->OnDeactivate(before);
    if (HasForm(form)) form->OnActivate(form);
    OnActiveFormChange(this);
  });
}

const TTypeInfo& TApplication::ClassInfo() {
  static const TTypeInfo info = Publish<TApplication>("TApplication", TComponent::ClassInfo());
  return info;
}

namespace {

TApplication* TheApplication = nullptr;

}  // namespace

TApplication& Application() {
  if (TheApplication == nullptr) throw Exception("There is no application");
  return *TheApplication;
}

bool HasApplication() {
  return TheApplication != nullptr;
}

TApplication::TApplication(int& argc, char** argv) : QApplication(argc, argv) {
  TheApplication = this;
  setQuitOnLastWindowClosed(false);
  installEventFilter(this);
  installEventFilter(new TPaletteWatch(this));
  MakeHintsLegible();
  InstallFormAccessibility();
  InstallComboAccessibility();
  const auto follow = [] { Screen().UpdateActiveForm(); };
  connect(this, &QApplication::focusChanged, this, follow);
  connect(this, &QGuiApplication::focusWindowChanged, this, follow);
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          [this] { Guarded(this, [this] { Idle(); }); });
  InstallMessageDialogs();
}

TApplication::~TApplication() {
  Screen().SetCursor(crDefault);
  DestroyComponents();
  RemoveMessageDialogs();
  TheApplication = nullptr;
}

std::string TApplication::Title() const {
  return FromQString(applicationName());
}

void TApplication::SetTitle(const std::string& title) {
  // Not the display name: the toolkit would write that behind the caption of every window.
  setApplicationName(ToQString(title));
}

void TApplication::Terminate() {
  FTerminated = true;
  quit();
}

void TApplication::ProcessMessages() {
  processEvents();
  // Objects that wait for their end wait for the event loop; inside an event they must stay.
  if (FNotifyDepth == 0) sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TApplication::Idle() {
  if (FIdling) return;
  const TFlagged idling(FIdling);
  for (TActionList* list : std::vector(TActionList::All())) {
    const auto& all = TActionList::All();
    if (std::find(all.begin(), all.end(), list) == all.end()) continue;
    const TForm* form = OwningForm(list);
    if (form == nullptr || form->isVisible()) list->UpdateActions();
  }
}

void TApplication::HandleException(TObject* sender) {
  const std::exception_ptr exception = std::current_exception();
  if (exception == nullptr || IsAbort(exception)) return;
  ReleaseCapture();
  if (FHandlingException) {
    std::fprintf(stderr, "%s\n", ExceptionMessage(exception).c_str());
    return;
  }
  const TFlagged handling(FHandlingException);
  try {
    if (OnException && IsStandard(exception)) OnException(sender, exception);
    else ShowException(exception);
  } catch (...) {
    std::fprintf(stderr, "%s\n", ExceptionMessage(std::current_exception()).c_str());
  }
}

void TApplication::ShowException(std::exception_ptr exception) {
  if (exception == nullptr || IsAbort(exception)) return;
  MessageDlg(ExceptionMessage(exception), mtError, {mbOK});
}

bool TApplication::notify(QObject* receiver, QEvent* event) {
  const TDepth depth(FNotifyDepth);
  const QPointer<QObject> alive(receiver);
  try {
    if (FilterEvent(receiver, event)) return true;
    return QApplication::notify(receiver, event);
  } catch (...) {
    HandleException(alive == nullptr ? nullptr : dynamic_cast<TObject*>(receiver));
    return true;
  }
}

bool TApplication::eventFilter(QObject* receiver, QEvent* event) {
  return DropsHeldInput(receiver, event);
}

// The toolkit asks by ShortcutOverride whether a key is to come as a key press or may open a menu
// by its accelerator: shortcuts of actions go first.
bool TApplication::FilterEvent(QObject* receiver, QEvent* event) {
  if (DropsHeldInput(receiver, event)) return true;
  const QEvent::Type type = event->type();
  if ((type != QEvent::KeyPress && type != QEvent::ShortcutOverride) || !receiver->isWidgetType())
    return false;
  auto* widget = static_cast<QWidget*>(receiver);
  auto& key = *static_cast<QKeyEvent*>(event);
  if (type == QEvent::KeyPress) return DispatchKey(widget, key);
  const bool claimed = IsClaimed(widget, key);
  const bool isShortCut = !IsPlainKey(key) && FindShortCut(FormOf(widget), ShortCutOf(key),
                                                           KeepsEditingKey(widget, key));
  if (!claimed && !isShortCut) return false;
  event->accept();
  return true;
}

bool TApplication::TakesShortCut(QWidget* receiver, const QKeyEvent& key) {
  if (activePopupWidget() != nullptr || IsClaimed(receiver, key)) return false;
  if (!IsPlainKey(key)) return true;
  QKeyEvent question(QEvent::ShortcutOverride, key.key(), key.modifiers(), key.text());
  question.ignore();
  QApplication::notify(receiver, &question);
  return !question.isAccepted();
}

bool TApplication::DispatchKey(QWidget* receiver, QKeyEvent& key) {
  const QPointer<TForm> form(FormOf(receiver));
  const TShortCutTarget target =
      FindShortCut(form, ShortCutOf(key), KeepsEditingKey(receiver, key));
  if (target && TakesShortCut(receiver, key)) {
    target.Run();
    return true;
  }
  if (form == nullptr) return false;
  if (!form->KeyPreview && receiver != form) return false;
  key.ignore();
  form->KeyDown(key);
  const bool taken = key.isAccepted() || form == nullptr;
  key.accept();
  return taken;
}

void TApplication::TShortCutTarget::Run() const {
  if (Action != nullptr) Action->Execute();
  else if (Item != nullptr) Item->Click();
}

TApplication::TShortCutTarget TApplication::FindIn(const TForm* form, TShortCut shortCut) {
  for (const TActionList* list : std::vector(TActionList::All()))
    if (OwningForm(list) == form)
      if (TAction* action = list->FindShortCut(shortCut)) return {action, nullptr};
  if (form == nullptr) return {};
  for (const TMenu* menu : TMenu::All())
    if (OwningForm(menu) == form)
      if (TMenuItem* item = menu->FindShortCut(shortCut)) return {nullptr, item};
  return {};
}

TApplication::TShortCutTarget TApplication::FindShortCut(TForm* form, TShortCut shortCut,
                                                         bool ownOnly) const {
  if (shortCut == 0) return {};
  if (form != nullptr && form->Enabled())
    if (const auto target = FindIn(form, shortCut)) return target;
  if (ownOnly) return {};
  const QWidget* modal = activeModalWidget();
  const bool mainTakesKeys = FMainForm != nullptr && FMainForm != form && FMainForm->Enabled() &&
                             (modal == nullptr || modal == FMainForm->window());
  if (mainTakesKeys)
    if (const auto target = FindIn(FMainForm, shortCut)) return target;
  return FindIn(nullptr, shortCut);
}

bool TApplication::HandleShortCut(TForm* form, TShortCut shortCut) {
  const TShortCutTarget target = FindShortCut(form, shortCut, false);
  target.Run();
  return static_cast<bool>(target);
}

}  // namespace wrenfold
