#include "controls/rkComCtrls.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>
#include <limits>

#include "controls/rkStdCtrls.h"
#include "controls/rkWheelGuard.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// The toolkit's letters for a pattern of the format settings. Years are shown with all digits: a
// year of two could not be told from one a century earlier.
QString DisplayFormat(const std::string& pattern) {
  QString format = ToQString(pattern);
  format.replace("am/pm", "AP").replace('m', 'M').replace('n', 'm');
  if (!format.contains("yyyy")) format.replace("yy", "yyyy");
  return format;
}

QDateTime ToQDateTime(TDateTime value) {
  const TSystemTime time = DecodeDateTime(value);
  return {QDate(time.Year, time.Month, time.Day),
          QTime(time.Hour, time.Minute, time.Second, time.Millisecond), Qt::UTC};
}

TDateTime FromQDateTime(const QDateTime& value) {
  const QDate date = value.date();
  const QTime time = value.time();
  return EncodeDateTime({date.year(), date.month(), date.day(), time.hour(), time.minute(),
                         time.second(), time.msec()});
}

// Before the first day of the calendar the fraction still counts forwards.
TDateTime Combined(double days, double fraction) {
  return days < 0 ? days - fraction : days + fraction;
}

double TimeOfDay(TDateTime value) {
  return std::fabs(value - std::trunc(value));
}

bool SameTime(const QTime& left, const QTime& right) {
  return left.hour() == right.hour() && left.minute() == right.minute() &&
         left.second() == right.second();
}

// Days from the calendar's beginning to years 100 and 10000.
constexpr double FirstDay = -657434, DayBehindLast = 2958466;

// Keys as the control gets them: those that lead out of it are left to the toolkit.
bool LeavesField(const QKeyEvent& key) {
  const bool plain = !(key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
  const bool tab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
  return (plain && tab) || (key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier);
}

bool IsModifierKey(int key) {
  return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt ||
         key == Qt::Key_AltGr || key == Qt::Key_Meta || key == 0 || key == Qt::Key_unknown;
}

}  // namespace

const TTypeInfo& TSpinEdit::ClassInfo() {
  static const TTypeInfo info =
      Publish<TSpinEdit>("TSpinEdit", TControl::ClassInfo())
          .Prop("Increment", &TSpinEdit::Increment, &TSpinEdit::SetIncrement)
          .Default(1)
          .Prop("MaxValue", &TSpinEdit::MaxValue, &TSpinEdit::SetMaxValue)
          .Prop("MinValue", &TSpinEdit::MinValue, &TSpinEdit::SetMinValue)
          .Prop("Value", &TSpinEdit::Value, &TSpinEdit::SetValue)
          .Prop("OnChange", &TSpinEdit::OnChange);
  return info;
}

TSpinEdit::TSpinEdit(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
  setKeyboardTracking(false);
  TWheelGuard::Install(this);
  connect(lineEdit(), &QLineEdit::textEdited, this,
          [this] { Guarded(this, [this] { OnChange(this); }); });
  connect(this, &QSpinBox::valueChanged, this,
          [this] { Guarded(this, [this] { OnChange(this); }); });
}

bool TSpinEdit::ClaimsKey(const QKeyEvent& key) const {
  return IsEditingKey(key, lineEdit()->isUndoAvailable(), lineEdit()->isRedoAvailable());
}

void TSpinEdit::fixup(QString& text) const {
  auto* self = const_cast<TSpinEdit*>(this);
  self->FRejected = FromQString(text);
  Guarded(self, [self] { self->OnReject(self); });
}

const TTypeInfo& TDateTimePicker::ClassInfo() {
  static const TTypeInfo info = Publish<TDateTimePicker>("TDateTimePicker", TControl::ClassInfo())
                                    .Prop("Kind", &TDateTimePicker::Kind, &TDateTimePicker::SetKind)
                                    .Default(dtkDate)
                                    .Prop("OnChange", &TDateTimePicker::OnChange);
  return info;
}

TDateTimePicker::TDateTimePicker(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  // Without summer time: no hour is missing.
  setTimeSpec(Qt::UTC);
  setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
  setKeyboardTracking(false);
  // The toolkit would make a value of a half-typed text whenever the cursor passes a separator.
  disconnect(lineEdit(), &QLineEdit::cursorPositionChanged, this, nullptr);
  connect(lineEdit(), &QLineEdit::textEdited, this,
          [this] { Guarded(this, [this] { OnChange(this); }); });
  TWheelGuard::Install(this);
  SetKind(dtkDate);
  connect(this, &QDateTimeEdit::dateTimeChanged, this,
          [this] { Guarded(this, [this] { OnChange(this); }); });
}

void TDateTimePicker::SetKind(TDateTimeKind kind) {
  FKind = kind;
  const TFormatSettings& settings = FormatSettings();
  setDisplayFormat(
      DisplayFormat(kind == dtkDate ? settings.ShortDateFormat : settings.LongTimeFormat));
  setCalendarPopup(kind == dtkDate);
}

TDateTime TDateTimePicker::DateTime() const {
  const QDateTime now = dateTime();
  if (FKind == dtkDate) {
    if (now.date() == FShown.date()) return FValue;
    const QDateTime midnight(now.date(), QTime(0, 0), Qt::UTC);
    return Combined(FromQDateTime(midnight), TimeOfDay(FValue));
  }
  if (SameTime(now.time(), FShown.time())) return FValue;
  return Combined(std::trunc(FValue), TimeOfDay(FromQDateTime(now)));
}

bool TDateTimePicker::SetDateTime(TDateTime value) {
  const bool known = value >= FirstDay && value < DayBehindLast;
  FValue = value;
  setDateTime(known ? ToQDateTime(value) : ToQDateTime(0.0));
  FShown = dateTime();
  return known;
}

bool TDateTimePicker::ClaimsKey(const QKeyEvent& key) const {
  return IsEditingKey(key, lineEdit()->isUndoAvailable(), lineEdit()->isRedoAvailable());
}

std::optional<QDateTime> TDateTimePicker::Parsed(const QString& text) const {
  try {
    const std::string entered = FromQString(text);
    const TDateTime value = FKind == dtkDate ? StrToDateTime(entered) : StrToTime(entered);
    if (value < FirstDay || value >= DayBehindLast) return std::nullopt;
    const QDateTime parsed = ToQDateTime(value);
    return FKind == dtkDate ? QDateTime(parsed.date(), time(), Qt::UTC)
                            : QDateTime(date(), parsed.time(), Qt::UTC);
  } catch (const EConvertError&) {
    return std::nullopt;
  }
}

QValidator::State TDateTimePicker::validate(QString& text, int&) const {
  if (Parsed(text)) return QValidator::Acceptable;
  const bool letters = displayFormat().contains("AP");
  const bool possible = std::all_of(text.begin(), text.end(), [letters](QChar character) {
    return character.isDigit() || character.isPunct() || character == ' ' || letters;
  });
  return possible ? QValidator::Intermediate : QValidator::Invalid;
}

QDateTime TDateTimePicker::dateTimeFromText(const QString& text) const {
  return Parsed(text).value_or(dateTime());
}

// The toolkit would keep the separators and put each digit into a part of its own.
void TDateTimePicker::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    Guarded(this, [this] { Interpret(); });
  const bool plain = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
  if (plain && !event->text().isEmpty() && event->text()[0].isPrint())
    QAbstractSpinBox::keyPressEvent(event);
  else TControlOf::keyPressEvent(event);
}

// The part that the cursor stands in, told by the separators in front of it.
void TDateTimePicker::stepBy(int steps) {
  const QString before = text().left(lineEdit()->cursorPosition());
  const bool whole = lineEdit()->selectedText() == text();
  Interpret();
  int part = 0;
  for (qsizetype i = 1; i < before.size(); ++i)
    if (!before[i].isLetterOrNumber() && before[i - 1].isLetterOrNumber()) ++part;
  setCurrentSectionIndex(whole ? 0 : std::min(part, sectionCount() - 1));
  TControlOf::stepBy(steps);
}

// All of it, to be typed over; the arrows still step the first part.
void TDateTimePicker::focusInEvent(QFocusEvent* event) {
  TControlOf::focusInEvent(event);
  if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::PopupFocusReason &&
      event->reason() != Qt::ActiveWindowFocusReason)
    lineEdit()->selectAll();
}

// The toolkit would make another date of what is none, such as the last of the month.
void TDateTimePicker::Interpret() {
  if (!Parsed(text())) {
    FRejected = FromQString(text());
    lineEdit()->setText(textFromDateTime(dateTime()));
    OnReject(this);
  }
  interpretText();
}

void TDateTimePicker::focusOutEvent(QFocusEvent* event) {
  Guarded(this, [this] { Interpret(); });
  TControlOf::focusOutEvent(event);
}

const TTypeInfo& THotKeyEx::ClassInfo() {
  static const TTypeInfo info = Publish<THotKeyEx>("THotKeyEx", TControl::ClassInfo())
                                    .Prop("HotKey", &THotKeyEx::HotKey, &THotKeyEx::SetHotKey)
                                    .Default(0)
                                    .Prop("OnChange", &THotKeyEx::OnChange);
  return info;
}

THotKeyEx::THotKeyEx(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  Line()->setContextMenuPolicy(Qt::NoContextMenu);
  Line()->setClearButtonEnabled(true);
  connect(Line(), &QLineEdit::textChanged, this, [this](const QString& text) {
    if (text.isEmpty() && !FTaking) Guarded(this, [this] { Take(0, {}); });
  });
}

QLineEdit* THotKeyEx::Line() const {
  return findChild<QLineEdit*>();
}

void THotKeyEx::SetHotKey(TShortCut hotKey) {
  Take(hotKey, ShortCutToText(hotKey));
}

std::string THotKeyEx::Text() const {
  return FromQString(Line()->text());
}

void THotKeyEx::SetText(const std::string& text) {
  Take(TextToShortCut(text), text);
}

void THotKeyEx::Take(TShortCut hotKey, const std::string& text) {
  const bool changed = hotKey != FHotKey || text != Text();
  FHotKey = hotKey;
  FTaking = true;
  setKeySequence(ShortCutToKeySequence(hotKey));
  Line()->setText(ToQString(text));
  Line()->setPlaceholderText({});
  FTaking = false;
  if (changed) OnChange(this);
}

bool THotKeyEx::ClaimsKey(const QKeyEvent& key) const {
  return !LeavesField(key);
}

void THotKeyEx::keyPressEvent(QKeyEvent* event) {
  event->accept();
  if (LeavesField(*event)) {
    focusNextChild();
    return;
  }
  if (IsModifierKey(event->key())) return;
  Guarded(this, [&] {
    if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier)
      return Take(0, {});
    const TShortCut pressed = ShortCutOf(*event);
    if (pressed == 0) OnUnknownKey(this);
    else SetHotKey(pressed);
  });
}

void THotKeyEx::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
}

bool IsTypingKey(TShortCut hotKey) {
  constexpr int CtrlOrAlt = 0x4000 | 0x8000, Space = 0x20, Enter = 0x0D, FirstPad = 0x60,
                LastPad = 0x6F, FirstSign = 0xBA;
  if (hotKey == 0 || (hotKey & CtrlOrAlt) != 0) return false;
  const int key = hotKey & 0xFF;
  return key == Space || key == Enter || (key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z') ||
         (key >= FirstPad && key <= LastPad) || key >= FirstSign;
}

}  // namespace wrenfold
