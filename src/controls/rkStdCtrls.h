// The plain editing controls of forms: edit, memo, check box, combo box, check list.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <string>

#include "controls/rkLines.h"
#include "platform/core/model/StringList.h"
#include "platform/widgets/Control.h"

namespace wrenfold {

// OnChange of all of them is raised by every change of the contents, by the user or by a call; the
// sender is the control.

// One line of text.
class TEdit : public TControlOf<QLineEdit> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TEdit(TComponent* owner = nullptr, QWidget* parent = nullptr);

  std::string Text() const;
  void SetText(const std::string& text);
  // Characters of the toolkit; 0: no limit.
  std::int32_t MaxLength() const;
  void SetMaxLength(std::int32_t length);
  bool ReadOnly() const { return isReadOnly(); }
  void SetReadOnly(bool readOnly) { setReadOnly(readOnly); }

  // The user can put in these characters only: others are dropped when typed, and a paste with one
  // of them is refused as a whole. Characters that a call put in stay. Empty: no filter.
  void SetKeyFilter(const QString& characters);

  bool ClaimsKey(const QKeyEvent& key) const override;
  TNotifyEvent OnChange;

 private:
  class TFilter;
  TFilter* FFilter = nullptr;
};

enum TScrollStyle : std::uint8_t { ssNone, ssHorizontal, ssVertical, ssBoth };
template <>
struct TEnumDescription<TScrollStyle> {
  static constexpr const char* Name = "TScrollStyle";
  static constexpr std::array Values{"ssNone", "ssHorizontal", "ssVertical", "ssBoth"};
};

// Lines of text.
class TMemo : public TControlOf<QPlainTextEdit> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TMemo(TComponent* owner = nullptr, QWidget* parent = nullptr);

  void GetLines(TStrings& lines) const;
  void SetLines(const TStrings& lines);
  // An empty text has none.
  int LineCount() const;
  bool WordWrap() const { return lineWrapMode() != NoWrap; }
  void SetWordWrap(bool wrap) { setLineWrapMode(wrap ? WidgetWidth : NoWrap); }
  TScrollStyle ScrollBars() const { return FScrollBars; }
  void SetScrollBars(TScrollStyle style);
  bool ReadOnly() const { return isReadOnly(); }
  void SetReadOnly(bool readOnly) { setReadOnly(readOnly); }

  bool ClaimsKey(const QKeyEvent& key) const override;
  TNotifyEvent OnChange;
  TNotifyEvent OnDblClick;

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  TScrollStyle FScrollBars = ssBoth;
};

class TCheckBox : public TControlOf<QCheckBox> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TCheckBox(TComponent* owner = nullptr, QWidget* parent = nullptr);

  // The text beside the mark. The accessible name follows it, unless it is empty.
  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;
  bool Checked() const { return isChecked(); }
  void SetChecked(bool checked) { setChecked(checked); }

  TNotifyEvent OnChange;
};

// One of several lines. The user picks; the text cannot be edited.
class TComboBox : public TControlOf<QComboBox>, public ILines {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TComboBox(TComponent* owner = nullptr, QWidget* parent = nullptr);

  // -1: none.
  std::int32_t ItemIndex() const { return currentIndex(); }
  void SetItemIndex(std::int32_t index) { setCurrentIndex(index); }
  std::int32_t DropDownCount() const { return maxVisibleItems(); }
  void SetDropDownCount(std::int32_t count) { setMaxVisibleItems(std::max(1, count)); }

  void GetLines(TStrings& lines) const override;
  void SetLines(const TStrings& lines) override;
  int SelectedLine() const override { return currentIndex(); }
  void SelectLine(int index) override { setCurrentIndex(index); }
  void InsertLine(int index, const std::string& text) override;
  void DeleteLine(int index) override;
  void PutLine(int index, const std::string& text) override;

  bool ClaimsKey(const QKeyEvent& key) const override;
  TNotifyEvent OnChange;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void showPopup() override;

 private:
  bool FChangingLines = false;
};

// Lines with check marks; the space bar checks the line that has the focus.
class TCheckListBox : public TControlOf<QListWidget>, public ILines {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TCheckListBox(TComponent* owner = nullptr, QWidget* parent = nullptr);

  std::int32_t ItemIndex() const { return currentRow(); }
  void SetItemIndex(std::int32_t index) { setCurrentRow(index); }
  // Outside the list nothing is checked.
  bool Checked(int index) const;
  void SetChecked(int index, bool checked);

  void GetLines(TStrings& lines) const override;
  void SetLines(const TStrings& lines) override;
  int SelectedLine() const override { return currentRow(); }
  void SelectLine(int index) override { setCurrentRow(index); }
  void InsertLine(int index, const std::string& text) override;
  void DeleteLine(int index) override;
  void PutLine(int index, const std::string& text) override;

  // Cuts a height so that no line shows in part.
  int IntegralHeight(int height) const;

  TNotifyEvent OnChange;

 private:
  template <class Change>
  void ChangeLines(Change&& change);
  bool FChangingLines = false;
};

// Whether the key edits text (moves, selects, copies, pastes); taking back and doing again count
// only where there is something to.
bool IsEditingKey(const QKeyEvent& key, bool canUndo, bool canRedo);

}  // namespace wrenfold
