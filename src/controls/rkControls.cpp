// The base of the combo boxes that draw their lines, and the label with an ellipsis.
#include "controls/rkControls.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QToolTip>

#include "controls/rkStdCtrls.h"
#include "controls/rkWheelGuard.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int Gap = 3;  // around pictures of lines
constexpr int LineHeight = 20;

}  // namespace

class TOwnerComboEdit::TLineDelegate : public QStyledItemDelegate {
 public:
  explicit TLineDelegate(TOwnerComboEdit* edit) : QStyledItemDelegate(edit), FEdit(*edit) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem line(option);
    initStyleOption(&line, index);
    line.font = FEdit.LineFont(index.row());
    FEdit.DrawLine(*painter, line, index.row());
  }
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize text = QStyledItemDelegate::sizeHint(option, index);
    return {text.width() + FEdit.PictureWidth() + 3 * Gap, std::max(LineHeight, text.height())};
  }

 private:
  TOwnerComboEdit& FEdit;
};

// The picture of the value beside the editable text.
class TOwnerComboEdit::TValuePicture : public QWidget {
 public:
  TValuePicture(TOwnerComboEdit& edit, QLineEdit* line) : QWidget(line), FEdit(edit) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    FEdit.DrawPicture(painter, FEdit.PicturePlace(rect()), -1);
  }

 private:
  TOwnerComboEdit& FEdit;
};

const TTypeInfo& TOwnerComboEdit::ClassInfo() {
  static const TTypeInfo info = Publish<TOwnerComboEdit>("TOwnerComboEdit", TControl::ClassInfo());
  return info;
}

TOwnerComboEdit::TOwnerComboEdit(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(1);
  setInsertPolicy(NoInsert);
  setItemDelegate(new TLineDelegate(this));
  TWheelGuard::Install(this);
  MakeEditable(true);
  connect(this, &QComboBox::activated, this, [this] {
    Guarded(this, [this] {
      const QPointer<TOwnerComboEdit> life(this);
      Click();
      if (life != nullptr) OnPick(this);
    });
  });
}

void TOwnerComboEdit::MakeEditable(bool editable) {
  setEditable(editable);
  FPicture = nullptr;
  if (!editable) return;
  setCompleter(nullptr);
  lineEdit()->installEventFilter(this);
  lineEdit()->setAccessibleName(accessibleName());
  FPicture = new TValuePicture(*this, lineEdit());
  connect(lineEdit(), &QLineEdit::textChanged, this, [this] {
    if (!FWorking) Guarded(this, [this] { Change(); });
    if (FPicture != nullptr) FPicture->update();
  });
}

void TOwnerComboEdit::SetStyle(TComboEditStyle style) {
  if (style == Style()) return;
  FWorking = true;
  MakeEditable(style == esDropDown);
  FWorking = false;
  CreateContents();
}

std::string TOwnerComboEdit::Text() const {
  return FromQString(currentText());
}

void TOwnerComboEdit::SelectQuietly(int index) {
  const QSignalBlocker quiet(this);
  FWorking = true;
  if (isEditable()) {
    const QString text = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    // Setting an index puts its text in.
    setCurrentIndex(index);
    if (lineEdit()->text() != text) lineEdit()->setText(text);
    lineEdit()->setCursorPosition(cursor);
  } else {
    setCurrentIndex(index);
  }
  FWorking = false;
  ShowPictureOfValue();
}

void TOwnerComboEdit::PutText(const QString& text) {
  if (!isEditable() || lineEdit()->text() == text) return;
  FWorking = true;
  lineEdit()->setText(text);
  FWorking = false;
}

void TOwnerComboEdit::ShowPictureOfValue() {
  update();
  if (FPicture == nullptr) return;
  const int width = PictureWidth();
  const int room = width == 0 ? 0 : width + 2 * Gap;
  lineEdit()->setTextMargins(room, 0, 0, 0);
  FPicture->setGeometry(0, 0, room, lineEdit()->height());
  FPicture->update();
}

QRect TOwnerComboEdit::PicturePlace(const QRect& rect) const {
  return QRect(rect.left() + Gap, rect.top() + 2, PictureWidth(), rect.height() - 4);
}

void TOwnerComboEdit::DrawPicture(QPainter&, const QRect&, int) const {}

QFont TOwnerComboEdit::LineFont(int) const {
  return font();
}

void TOwnerComboEdit::DrawLine(QPainter& painter, QStyleOptionViewItem option, int index) const {
  const QString text = option.text;
  option.text.clear();
  const QStyle* const drawing = style();
  drawing->drawControl(QStyle::CE_ItemViewItem, &option, &painter, view());
  QRect place = option.rect;
  if (PictureWidth() > 0) {
    DrawPicture(painter, PicturePlace(place), index);
    place.setLeft(place.left() + PictureWidth() + 2 * Gap);
  }
  if (!TextShown()) return;
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  painter.save();
  painter.setFont(option.font);
  painter.setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
  painter.setClipRect(place);
  painter.drawText(place.adjusted(Gap, 0, -Gap, 0), Qt::AlignVCenter | Qt::TextSingleLine, text);
  painter.restore();
}

void TOwnerComboEdit::paintEvent(QPaintEvent* event) {
  if (isEditable()) return QComboBox::paintEvent(event);
  QStylePainter painter(this);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  painter.drawComplexControl(QStyle::CC_ComboBox, option);
  QRect place =
      style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
  if (PictureWidth() > 0) {
    DrawPicture(painter, PicturePlace(place), -1);
    place.setLeft(place.left() + PictureWidth() + 2 * Gap);
  }
  if (!TextShown() || currentIndex() < 0) return;
  painter.setPen(
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
  painter.drawText(place.adjusted(Gap, 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                   currentText());
}

void TOwnerComboEdit::showPopup() {
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  view()->setMinimumWidth(std::max(width(), view()->sizeHintForColumn(0) + bar + 2 * Gap));
  QComboBox::showPopup();
}

bool TOwnerComboEdit::event(QEvent* event) {
  const bool result = TControlOf::event(event);
  if (event->type() == QEvent::Resize || event->type() == QEvent::Show) ShowPictureOfValue();
  return result;
}

bool TOwnerComboEdit::eventFilter(QObject* receiver, QEvent* event) {
  if (receiver != lineEdit()) return TControlOf::eventFilter(receiver, event);
  if (event->type() == QEvent::Resize) ShowPictureOfValue();
  if (event->type() != QEvent::MouseButtonDblClick) return false;
  Guarded(this, [this] { CustomQuery(); });
  return true;
}

bool TOwnerComboEdit::ClaimsKey(const QKeyEvent& key) const {
  const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
  const bool alt = key.modifiers().testFlag(Qt::AltModifier);
  if (alt && (key.key() == Qt::Key_Down || key.key() == Qt::Key_Up)) return true;
  if (ctrl && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)) return true;
  return isEditable() &&
         IsEditingKey(key, lineEdit()->isUndoAvailable(), lineEdit()->isRedoAvailable());
}

void TOwnerComboEdit::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || !event->modifiers().testFlag(Qt::ControlModifier))
    return TControlOf::keyPressEvent(event);
  event->accept();
  Guarded(this, [this] { CustomQuery(); });
}

void TOwnerComboEdit::mouseDoubleClickEvent(QMouseEvent* event) {
  TControlOf::mouseDoubleClickEvent(event);
  Guarded(this, [this] { CustomQuery(); });
}

void TOwnerComboEdit::contextMenuEvent(QContextMenuEvent* event) {
  TControlOf::contextMenuEvent(event);
  if (Style() != esDropDownList || PopupMenu() != nullptr) return;
  event->accept();
  Guarded(this, [this] { CustomQuery(); });
}

void TOwnerComboEdit::focusInEvent(QFocusEvent* event) {
  Guarded(this, [this] { Enter(); });
  TControlOf::focusInEvent(event);
  FFocused = true;
  update();
}

void TOwnerComboEdit::focusOutEvent(QFocusEvent* event) {
  TControlOf::focusOutEvent(event);
  FFocused = false;
  update();
}

const TTypeInfo& TEllipsisLabel::ClassInfo() {
  static const TTypeInfo info =
      Publish<TEllipsisLabel>("TEllipsisLabel", TControl::ClassInfo())
          .Prop("Caption", &TEllipsisLabel::Caption, &TEllipsisLabel::SetCaption)
          .Prop("Style", &TEllipsisLabel::Style, &TEllipsisLabel::SetStyle)
          .Default(esNone);
  return info;
}

TEllipsisLabel::TEllipsisLabel(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setTextFormat(Qt::PlainText);
}

std::string TEllipsisLabel::Caption() const {
  return FromQString(text());
}

void TEllipsisLabel::SetCaption(const std::string& caption) {
  setText(ToQString(caption));
  setAccessibleName(ToQString(StripHotkey(caption)));
}

void TEllipsisLabel::SetStyle(TEllipsisStyle style) {
  FStyle = style;
  update();
}

QString TEllipsisLabel::ShownText(int width) const {
  if (FStyle == esNone) return text();
  const Qt::TextElideMode mode = FStyle == esPathEllipsis ? Qt::ElideMiddle : Qt::ElideRight;
  QStringList lines = text().split('\n');
  for (QString& line : lines) line = fontMetrics().elidedText(line, mode, width);
  return lines.join('\n');
}

bool TEllipsisLabel::Shortened() const {
  return ShownText(contentsRect().width()) != text();
}

bool TEllipsisLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !Shortened()) return TControlOf::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
  return true;
}

void TEllipsisLabel::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  const QRect place = contentsRect();
  const int flags = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
  painter.drawItemText(place, flags, palette(), isEnabled(), ShownText(place.width()),
                       foregroundRole());
}

}  // namespace wrenfold
