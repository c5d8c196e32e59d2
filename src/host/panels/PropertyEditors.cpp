// Makes editors by the kind of the property.
#include "host/panels/PropertyEditors.h"

#include <fmt/format.h>

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <algorithm>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

using enum TPropertyKind;

struct TEditorRow {
  TPropertyKind Kind;
  bool Inline;  // can be written
  bool List;    // is chosen from a list, which may be written into when Inline is set as well
};
constexpr TEditorRow EditorRows[] = {
    {Integer, true, false},  {Float, true, false},       {Text, true, false},
    {Boolean, false, true},  {Enumeration, true, true},  {Set, true, false},
    {Color, true, true},     {Cursor, true, true},       {ShortCut, true, false},
    {Font, false, false},    {Reference, true, true},    {Strings, false, false},
    {Picture, false, false}, {Collection, false, false}, {Event, true, true},
    {Other, true, false},
};

const TEditorRow& EditorOf(TPropertyKind kind) {
  return *std::find_if(std::begin(EditorRows), std::end(EditorRows),
                       [kind](const TEditorRow& row) { return row.Kind == kind; });
}

template <class Texts>
std::vector<std::string> Copied(const Texts& texts) {
  return {texts.begin(), texts.end()};
}

// The texts that the kind itself offers; of references and events somebody else knows them.
std::vector<std::string> KnownChoices(const TInspectedRow& row) {
  switch (row.Kind) {
    case Boolean:
      return {"False", "True"};
    case Enumeration:
      return Copied(ValuesOfType(row.Type));
    case Color:
      return Copied(ColorNames());
    case Cursor:
      return Copied(CursorNames());
    default:
      return {};
  }
}

// The system's colours that have a role in the palette.
struct TSystemColor {
  std::uint32_t Value;
  QPalette::ColorRole Role;
};
constexpr TSystemColor SystemColors[] = {
    {0x80000004, QPalette::Window},      {0x80000005, QPalette::Base},
    {0x80000007, QPalette::WindowText},  {0x80000008, QPalette::Text},
    {0x8000000D, QPalette::Highlight},   {0x8000000E, QPalette::HighlightedText},
    {0x8000000F, QPalette::Button},      {0x80000010, QPalette::Dark},
    {0x80000011, QPalette::Mid},         {0x80000012, QPalette::ButtonText},
    {0x80000014, QPalette::Light},       {0x80000015, QPalette::Shadow},
    {0x80000016, QPalette::Midlight},    {0x80000017, QPalette::ToolTipText},
    {0x80000018, QPalette::ToolTipBase}, {0x80000002, QPalette::Highlight},
    {0x80000000, QPalette::Mid},
};

// Takes the keys that are pressed for the value: their names need not be typed.
class TShortCutEdit : public TControlOf<QLineEdit> {
 public:
  explicit TShortCutEdit(QWidget* parent) : TControlOf(nullptr, parent) {}
  // No command of the workbench gets them.
  bool ClaimsKey(const QKeyEvent&) const override { return true; }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool plain = event->modifiers() == Qt::NoModifier;
    if (plain && (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete))
      return clear();
    // Ends the editing.
    if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
      return event->ignore();
    const TShortCut keys = ShortCutOf(*event);
    if (keys != 0) setText(ToQString(ShortCutToText(keys)));
  }
};

}  // namespace

bool HasInlineEditor(const TInspectedRow& row) {
  const TEditorRow& editor = EditorOf(row.Kind);
  return !row.Group && (editor.Inline || editor.List);
}

bool HasChoices(const TInspectedRow& row) {
  return !row.Group && EditorOf(row.Kind).List;
}

std::string NextChoice(const TInspectedRow& row) {
  const std::vector<std::string> choices = KnownChoices(row);
  const auto at = std::find_if(choices.begin(), choices.end(),
                               [&](const std::string& c) { return EqualText(c, row.Text); });
  if (choices.empty()) return row.Text;
  return at == choices.end() || std::next(at) == choices.end() ? choices.front() : *std::next(at);
}

std::string ShownText(const TInspectedRow& row) {
  if (row.Kind != ShortCut || row.Text.empty()) return row.Text;
  std::int32_t code = 0;
  if (!TryStrToInt(row.Text, code) || code < 0 || code > UINT16_MAX) return row.Text;
  const std::string keys = ShortCutToText(static_cast<TShortCut>(code));
  return keys.empty() && code != 0 ? row.Text : keys;
}

std::string TypedText(const TInspectedRow& row, const std::string& text) {
  std::int32_t code = 0;
  if (row.Kind != ShortCut || TryStrToInt(text, code)) return text;
  const std::uint16_t keys = TextToShortCut(text);
  if (keys == 0 && !Trim(text).empty())
    throw EConvertError(
        fmt::format("'{}' does not fit {}: expected keys, as Ctrl+N", text, row.Caption));
  return fmt::format("{}", keys);
}

QPixmap SwatchOf(const QColor& color) {
  QPixmap swatch(16, 12);
  swatch.fill(color.isValid() ? color : Qt::transparent);
  if (!color.isValid()) return swatch;
  QPainter painter(&swatch);
  painter.setPen(QApplication::palette().color(QPalette::Mid));
  painter.drawRect(0, 0, swatch.width() - 1, swatch.height() - 1);
  return swatch;
}

QColor ColorOfText(const std::string& text) {
  std::uint32_t value = 0;
  if (!FindColor(text, value)) {
    bool number = false;
    value = text.starts_with('$') ? ToQString(text).mid(1).toUInt(&number, 16)
                                  : ToQString(text).toUInt(&number);
    if (!number) return QColor(ToQString(text));
  }
  if (value == 0x1FFFFFFF || value == 0x20000000) return {};
  for (const TSystemColor& system : SystemColors)
    if (system.Value == value) return QApplication::palette().color(system.Role);
  return QColor(value & 0xFF, value >> 8 & 0xFF, value >> 16 & 0xFF);
}

QWidget* TValueDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                      const QModelIndex& index) const {
  const TInspectedRow* row = FRowOf(index);
  if (index.column() != 1 || row == nullptr || !HasInlineEditor(*row)) return nullptr;
  // A line edit would lose the line ends.
  if (row->Kind == Text && row->Text.find('\n') != std::string::npos) return nullptr;
  if (!HasChoices(*row)) {
    QLineEdit* edit = row->Kind == ShortCut ? new TShortCutEdit(parent) : new QLineEdit(parent);
    edit->setFrame(false);
    edit->setAccessibleName(ToQString(row->Caption));
    return edit;
  }
  auto* list = new QComboBox(parent);
  list->setAccessibleName(ToQString(row->Caption));
  list->setEditable(EditorOf(row->Kind).Inline);
  list->setInsertPolicy(QComboBox::NoInsert);
  std::vector<std::string> choices = KnownChoices(*row);
  if (choices.empty()) choices = FChoicesOf(*row);
  for (const std::string& choice : choices) {
    list->addItem(ToQString(choice));
    if (row->Kind == Color) list->setItemIcon(list->count() - 1, SwatchOf(ColorOfText(choice)));
  }
  auto* self = const_cast<TValueDelegate*>(this);
  connect(list, &QComboBox::activated, self, [self, list] {
    emit self->commitData(list);
    emit self->closeEditor(list);
  });
  return list;
}

void TValueDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QString text = index.data(Qt::EditRole).toString();
  if (auto* edit = qobject_cast<QLineEdit*>(editor)) {
    edit->setText(text);
  } else if (auto* list = qobject_cast<QComboBox*>(editor)) {
    list->setCurrentIndex(list->findText(text, Qt::MatchFixedString));
    if (list->isEditable()) list->setEditText(text);
  }
}

void TValueDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                  const QModelIndex& index) const {
  QString text;
  if (const auto* edit = qobject_cast<QLineEdit*>(editor)) text = edit->text();
  else if (const auto* list = qobject_cast<QComboBox*>(editor)) text = list->currentText();
  if (text != index.data(Qt::EditRole).toString()) model->setData(index, text);
}

QSize TValueDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  size.setHeight(size.height() + 4);
  return size;
}

}  // namespace wrenfold
