// The editing controls for numbers, dates, times and hot keys.
#pragma once

#include <QDateTimeEdit>
#include <QKeySequenceEdit>
#include <QLineEdit>
#include <QSpinBox>
#include <QValidator>
#include <optional>
#include <string>

#include "platform/widgets/Control.h"

namespace wrenfold {

// OnChange of all of them is raised by every change of the contents, by the user or by a call; the
// sender is the control, and by every key that edits the text. The text becomes a value when the
// user leaves it, presses Enter, or a call asks for it; what is no value is put back to the
// value before, OnReject is raised and Rejected() is the text.

// An integer of 32 bits with arrows.
class TSpinEdit : public TControlOf<QSpinBox> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSpinEdit(TComponent* owner = nullptr, QWidget* parent = nullptr);

  std::int32_t Value() const { return value(); }
  void SetValue(std::int32_t value) { setValue(value); }
  std::int32_t MinValue() const { return minimum(); }
  void SetMinValue(std::int32_t value) { setMinimum(value); }
  std::int32_t MaxValue() const { return maximum(); }
  void SetMaxValue(std::int32_t value) { setMaximum(value); }
  std::int32_t Increment() const { return singleStep(); }
  void SetIncrement(std::int32_t step) { setSingleStep(step); }
  bool CanUndo() const { return lineEdit()->isUndoAvailable(); }
  void Undo() { lineEdit()->undo(); }

  bool ClaimsKey(const QKeyEvent& key) const override;
  std::string Rejected() const { return FRejected; }
  TNotifyEvent OnChange, OnReject;

 protected:
  void fixup(QString& text) const override;

 private:
  std::string FRejected;
};

enum TDateTimeKind : std::uint8_t { dtkDate, dtkTime };
template <>
struct TEnumDescription<TDateTimeKind> {
  static constexpr const char* Name = "TDateTimeKind";
  static constexpr std::array Values{"dtkDate", "dtkTime"};
};

// Edits the date or the time of a moment and leaves the other part what it is, to the last bit.
class TDateTimePicker : public TControlOf<QDateTimeEdit> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TDateTimePicker(TComponent* owner = nullptr, QWidget* parent = nullptr);

  TDateTimeKind Kind() const { return FKind; }
  void SetKind(TDateTimeKind kind);
  TDateTime DateTime() const;
  // Answers false for a moment that no calendar has (not from year 100 to 9999); the control then
  // shows the nearest one, and DateTime() is still the moment given until the user changes it.
  bool SetDateTime(TDateTime value);
  bool CanUndo() const { return lineEdit()->isUndoAvailable(); }
  void Undo() { lineEdit()->undo(); }
  // Makes a value of what was entered; what is none is rejected.
  void Interpret();

  bool ClaimsKey(const QKeyEvent& key) const override;
  std::string Rejected() const { return FRejected; }
  TNotifyEvent OnChange, OnReject;

 protected:
  // A text is taken whole, in the format of the settings, when the user leaves it or presses Enter.
  QValidator::State validate(QString& text, int& position) const override;
  QDateTime dateTimeFromText(const QString& text) const override;
  void stepBy(int steps) override;
  void keyPressEvent(QKeyEvent* event) override;
  // Tab leaves the field: its parts are one text.
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  std::optional<QDateTime> Parsed(const QString& text) const;
  TDateTimeKind FKind = dtkDate;
  TDateTime FValue;
  QDateTime FShown;
  std::string FRejected;
};

// A hot key, given by pressing it. All keys are taken but Tab, Shift+Tab and Escape: Escape moves
// the focus on, Backspace alone clears.
class THotKeyEx : public TControlOf<QKeySequenceEdit> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit THotKeyEx(TComponent* owner = nullptr, QWidget* parent = nullptr);

  // 0: none.
  TShortCut HotKey() const { return FHotKey; }
  void SetHotKey(TShortCut hotKey);
  // The same as text. A text that names no key is shown as it stands; HotKey() is 0 then.
  std::string Text() const;
  void SetText(const std::string& text);

  bool ClaimsKey(const QKeyEvent& key) const override;
  // The user pressed a key that has no code.
  TNotifyEvent OnUnknownKey;
  // The contents changed.
  TNotifyEvent OnChange;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;

 private:
  void Take(TShortCut hotKey, const std::string& text);
  QLineEdit* Line() const;
  TShortCut FHotKey;
  bool FTaking = false;
};

// Whether the key writes a character when it is pressed: no hot key.
bool IsTypingKey(TShortCut hotKey);

}  // namespace wrenfold
