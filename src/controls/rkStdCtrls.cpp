#include "controls/rkStdCtrls.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTextBlock>
#include <QTextDocument>
#include <QValidator>
#include <algorithm>
#include <limits>

#include "controls/rkWheelGuard.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr QKeySequence::StandardKey EditingKeys[] = {
    QKeySequence::Copy,
    QKeySequence::Cut,
    QKeySequence::Paste,
    QKeySequence::SelectAll,
    QKeySequence::Delete,
    QKeySequence::DeleteStartOfWord,
    QKeySequence::DeleteEndOfWord,
    QKeySequence::MoveToNextWord,
    QKeySequence::MoveToPreviousWord,
    QKeySequence::SelectNextWord,
    QKeySequence::SelectPreviousWord,
    QKeySequence::MoveToStartOfLine,
    QKeySequence::MoveToEndOfLine,
    QKeySequence::SelectStartOfLine,
    QKeySequence::SelectEndOfLine,
    QKeySequence::MoveToStartOfDocument,
    QKeySequence::MoveToEndOfDocument,
    QKeySequence::SelectStartOfDocument,
    QKeySequence::SelectEndOfDocument,
};

constexpr int NoMaxLength = std::numeric_limits<int>::max();

QString JoinedLines(const TStrings& lines) {
  QString text;
  for (int i = 0; i < lines.Count(); ++i) {
    if (i > 0) text += '\n';
    text += ToQString(lines[i]);
  }
  return text;
}

}  // namespace

bool IsEditingKey(const QKeyEvent& key, bool canUndo, bool canRedo) {
  auto& event = const_cast<QKeyEvent&>(key);
  if (event.matches(QKeySequence::Undo)) return canUndo;
  if (event.matches(QKeySequence::Redo)) return canRedo;
  return std::any_of(std::begin(EditingKeys), std::end(EditingKeys),
                     [&](QKeySequence::StandardKey standard) { return event.matches(standard); });
}

// Refuses a text with more foreign characters than the edit has already: those came by a call.
class TEdit::TFilter : public QValidator {
 public:
  explicit TFilter(TEdit* edit) : QValidator(edit) {
    connect(edit, &QLineEdit::textChanged, this,
            [this](const QString& text) { FForeign = CountForeign(text); });
  }
  void SetCharacters(const QString& characters) { FCharacters = characters; }
  State validate(QString& text, int&) const override {
    return CountForeign(text) > FForeign ? Invalid : Acceptable;
  }

 private:
  qsizetype CountForeign(const QString& text) const {
    if (FCharacters.isEmpty()) return 0;
    return std::count_if(text.begin(), text.end(),
                         [this](QChar character) { return !FCharacters.contains(character); });
  }
  QString FCharacters;
  qsizetype FForeign = 0;
};

const TTypeInfo& TEdit::ClassInfo() {
  static const TTypeInfo info = Publish<TEdit>("TEdit", TControl::ClassInfo())
                                    .Prop("MaxLength", &TEdit::MaxLength, &TEdit::SetMaxLength)
                                    .Default(0)
                                    .Prop("ReadOnly", &TEdit::ReadOnly, &TEdit::SetReadOnly)
                                    .Default(false)
                                    .Prop("Text", &TEdit::Text, &TEdit::SetText)
                                    .Prop("OnChange", &TEdit::OnChange);
  return info;
}

TEdit::TEdit(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  // The toolkit would cut a long text without a word, and the next edit would store what is left.
  SetMaxLength(0);
  connect(this, &QLineEdit::textChanged, this,
          [this] { Guarded(this, [this] { OnChange(this); }); });
}

std::string TEdit::Text() const {
  return FromQString(text());
}

void TEdit::SetText(const std::string& text) {
  setText(ToQString(text));
  setCursorPosition(0);
}

std::int32_t TEdit::MaxLength() const {
  return maxLength() == NoMaxLength ? 0 : maxLength();
}

void TEdit::SetMaxLength(std::int32_t length) {
  setMaxLength(length <= 0 ? NoMaxLength : length);
}

void TEdit::SetKeyFilter(const QString& characters) {
  if (FFilter == nullptr) {
    FFilter = new TFilter(this);
    setValidator(FFilter);
  }
  FFilter->SetCharacters(characters);
}

bool TEdit::ClaimsKey(const QKeyEvent& key) const {
  return IsEditingKey(key, !isReadOnly() && isUndoAvailable(), !isReadOnly() && isRedoAvailable());
}

const TTypeInfo& TMemo::ClassInfo() {
  static const TTypeInfo info = Publish<TMemo>("TMemo", TControl::ClassInfo())
                                    .Prop("ReadOnly", &TMemo::ReadOnly, &TMemo::SetReadOnly)
                                    .Default(false)
                                    .Prop("ScrollBars", &TMemo::ScrollBars, &TMemo::SetScrollBars)
                                    .Default(ssBoth)
                                    .Prop("WordWrap", &TMemo::WordWrap, &TMemo::SetWordWrap)
                                    .Default(false)
                                    .Prop("OnChange", &TMemo::OnChange)
                                    .Prop("OnDblClick", &TMemo::OnDblClick);
  return info;
}

TMemo::TMemo(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setLineWrapMode(NoWrap);
  setTabChangesFocus(true);
  TWheelGuard::Install(this);
  connect(this, &QPlainTextEdit::textChanged, this,
          [this] { Guarded(this, [this] { OnChange(this); }); });
}

void TMemo::GetLines(TStrings& lines) const {
  const TUpdate update(lines);
  lines.Clear();
  if (document()->isEmpty()) return;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
    lines.Add(FromQString(block.text()));
}

void TMemo::SetLines(const TStrings& lines) {
  setPlainText(JoinedLines(lines));
}

int TMemo::LineCount() const {
  return document()->isEmpty() ? 0 : blockCount();
}

void TMemo::SetScrollBars(TScrollStyle style) {
  FScrollBars = style;
  const auto policy = [](bool shown) {
    return shown ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
  };
  setHorizontalScrollBarPolicy(policy(style == ssHorizontal || style == ssBoth));
  setVerticalScrollBarPolicy(policy(style == ssVertical || style == ssBoth));
}

bool TMemo::ClaimsKey(const QKeyEvent& key) const {
  return IsEditingKey(key, document()->isUndoAvailable(), document()->isRedoAvailable());
}

void TMemo::mouseDoubleClickEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseDoubleClickEvent(event);
  Guarded(this, [this] { OnDblClick(this); });
}

const TTypeInfo& TCheckBox::ClassInfo() {
  static const TTypeInfo info = Publish<TCheckBox>("TCheckBox", TControl::ClassInfo())
                                    .Prop("Caption", &TCheckBox::Caption, &TCheckBox::SetCaption)
                                    .Prop("Checked", &TCheckBox::Checked, &TCheckBox::SetChecked)
                                    .Default(false)
                                    .Prop("OnChange", &TCheckBox::OnChange);
  return info;
}

TCheckBox::TCheckBox(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  connect(this, &QCheckBox::toggled, this, [this] { Guarded(this, [this] { OnChange(this); }); });
}

std::string TCheckBox::Caption() const {
  return FromQString(text());
}

void TCheckBox::SetCaption(const std::string& caption) {
  setText(ToQString(caption));
  if (!caption.empty()) setAccessibleName(ToQString(StripHotkey(caption)));
}

const TTypeInfo& TComboBox::ClassInfo() {
  static const TTypeInfo info =
      Publish<TComboBox>("TComboBox", TControl::ClassInfo())
          .Prop("DropDownCount", &TComboBox::DropDownCount, &TComboBox::SetDropDownCount)
          .Default(10)
          .Prop("ItemIndex", &TComboBox::ItemIndex, &TComboBox::SetItemIndex)
          .Default(-1)
          .Prop("OnChange", &TComboBox::OnChange);
  return info;
}

TComboBox::TComboBox(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  TWheelGuard::Install(this);
  connect(this, &QComboBox::currentIndexChanged, this, [this] {
    if (!FChangingLines) Guarded(this, [this] { OnChange(this); });
  });
}

// The layout decides on the width, not the longest line. The toolkit's policy for that would make
// the drop-down list at once, which costs more than all the rest of the control.
QSize TComboBox::sizeHint() const {
  QStyleOptionComboBox option;
  initStyleOption(&option);
  constexpr int LeastHeight = 14, Margins = 2;
  const QSize contents(fontMetrics().horizontalAdvance('X'),
                       std::max(fontMetrics().height(), LeastHeight) + Margins);
  return style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
}

void TComboBox::GetLines(TStrings& lines) const {
  const TUpdate update(lines);
  lines.Clear();
  for (int i = 0; i < count(); ++i) lines.Add(FromQString(itemText(i)));
}

void TComboBox::SetLines(const TStrings& lines) {
  const int selected = currentIndex();
  FChangingLines = true;
  clear();
  for (int i = 0; i < lines.Count(); ++i) addItem(ToQString(lines[i]));
  setCurrentIndex(selected < count() ? selected : -1);
  FChangingLines = false;
  OnChange(this);
}

void TComboBox::InsertLine(int index, const std::string& text) {
  FChangingLines = true;
  const bool none = currentIndex() < 0;
  insertItem(index, ToQString(text));
  if (none) setCurrentIndex(-1);
  FChangingLines = false;
  OnChange(this);
}

void TComboBox::DeleteLine(int index) {
  FChangingLines = true;
  removeItem(index);
  FChangingLines = false;
  OnChange(this);
}

void TComboBox::PutLine(int index, const std::string& text) {
  setItemText(index, ToQString(text));
  OnChange(this);
}

bool TComboBox::ClaimsKey(const QKeyEvent& key) const {
  const bool upOrDown = key.key() == Qt::Key_Down || key.key() == Qt::Key_Up;
  return upOrDown && key.modifiers().testFlag(Qt::AltModifier);
}

// The list is as wide as its longest line needs, however narrow the control is.
void TComboBox::showPopup() {
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  const int frame = 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
  const int wanted = view()->sizeHintForColumn(0) + bar + frame;
  view()->setMinimumWidth(std::max(width(), wanted));
  QComboBox::showPopup();
}

const TTypeInfo& TCheckListBox::ClassInfo() {
  static const TTypeInfo info =
      Publish<TCheckListBox>("TCheckListBox", TControl::ClassInfo())
          .Prop("ItemIndex", &TCheckListBox::ItemIndex, &TCheckListBox::SetItemIndex)
          .Default(-1)
          .Prop("OnChange", &TCheckListBox::OnChange);
  return info;
}

TCheckListBox::TCheckListBox(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setUniformItemSizes(true);
  setTabKeyNavigation(false);
  TWheelGuard::Install(this);
  connect(this, &QListWidget::itemChanged, this, [this] {
    if (!FChangingLines) Guarded(this, [this] { OnChange(this); });
  });
}

template <class Change>
void TCheckListBox::ChangeLines(Change&& change) {
  FChangingLines = true;
  setUpdatesEnabled(false);
  const int top = verticalScrollBar()->value();
  change();
  verticalScrollBar()->setValue(top);
  setUpdatesEnabled(true);
  FChangingLines = false;
  OnChange(this);
}

bool TCheckListBox::Checked(int index) const {
  const QListWidgetItem* line = item(index);
  return line != nullptr && line->checkState() == Qt::Checked;
}

void TCheckListBox::SetChecked(int index, bool checked) {
  if (QListWidgetItem* line = item(index))
    line->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

void TCheckListBox::GetLines(TStrings& lines) const {
  const TUpdate update(lines);
  lines.Clear();
  for (int i = 0; i < count(); ++i) lines.Add(FromQString(item(i)->text()));
}

void TCheckListBox::SetLines(const TStrings& lines) {
  ChangeLines([&] {
    const int selected = currentRow();
    clear();
    for (int i = 0; i < lines.Count(); ++i) {
      addItem(ToQString(lines[i]));
      item(i)->setCheckState(Qt::Unchecked);
    }
    setCurrentRow(selected < count() ? selected : -1);
  });
}

void TCheckListBox::InsertLine(int index, const std::string& text) {
  ChangeLines([&] {
    auto* line = new QListWidgetItem(ToQString(text));
    line->setCheckState(Qt::Unchecked);
    insertItem(index, line);
  });
}

void TCheckListBox::DeleteLine(int index) {
  ChangeLines([&] { delete takeItem(index); });
}

void TCheckListBox::PutLine(int index, const std::string& text) {
  ChangeLines([&] { item(index)->setText(ToQString(text)); });
}

int TCheckListBox::IntegralHeight(int height) const {
  const int line = sizeHintForRow(0);
  const int frame = 2 * frameWidth();
  return line <= 0 ? height : std::max(1, (height - frame) / line) * line + frame;
}

}  // namespace wrenfold
