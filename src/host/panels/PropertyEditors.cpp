// Makes editors and dialogs by the kind of the property.
#include "host/panels/PropertyEditors.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

using enum TPropertyKind;

struct TEditorRow {
  TPropertyKind Kind;
  bool Inline;  // can be written
  bool List;    // is chosen from a list, which may be written into when Inline is set as well
  bool Dialog;
};
constexpr TEditorRow EditorRows[] = {
    {Integer, true, false, false},    {Float, true, false, false},
    {Text, true, false, true},        {Boolean, false, true, false},
    {Enumeration, true, true, false}, {Set, true, false, false},
    {Color, true, true, true},        {Cursor, true, true, false},
    {ShortCut, true, false, false},   {Font, false, false, true},
    {Reference, true, true, false},   {Strings, false, false, true},
    {Picture, false, false, false},   {Collection, false, false, false},
    {Event, true, true, false},       {Other, true, false, false},
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

bool EditLines(QWidget* parent, const TInspectedRow& row, std::string& text) {
  QDialog dialog(parent);
  dialog.setObjectName("LinesForm");
  dialog.setWindowTitle(ToQString(row.Caption));
  auto* lines = new QPlainTextEdit(ToQString(text));
  lines->setObjectName("Lines");
  lines->setAccessibleName(ToQString(row.Caption));
  lines->setLineWrapMode(QPlainTextEdit::NoWrap);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  auto* column = new QVBoxLayout(&dialog);
  column->addWidget(lines);
  column->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  dialog.resize(460, 320);
  if (dialog.exec() != QDialog::Accepted) return false;
  text = FromQString(lines->toPlainText());
  return true;
}

bool EditColor(QWidget* parent, std::string& text) {
  const QColor chosen = QColorDialog::getColor(ColorOfText(text), parent);
  if (!chosen.isValid()) return false;
  text = FromQString(chosen.name());
  return true;
}

// "Name|Height|[fsBold]"; a negative height is in pixels.
bool EditFont(QWidget* parent, std::string& text) {
  const QStringList parts = ToQString(text).split('|');
  QFont font;
  if (!parts.value(0).isEmpty()) font.setFamily(parts[0]);
  if (const int height = parts.value(1).toInt(); height != 0) font.setPixelSize(std::abs(height));
  font.setBold(parts.value(2).contains("fsBold"));
  font.setItalic(parts.value(2).contains("fsItalic"));
  font.setUnderline(parts.value(2).contains("fsUnderline"));
  font.setStrikeOut(parts.value(2).contains("fsStrikeOut"));
  bool taken = false;
  const QFont chosen = QFontDialog::getFont(&taken, font, parent);
  if (!taken) return false;
  QStringList styles;
  if (chosen.bold()) styles << "fsBold";
  if (chosen.italic()) styles << "fsItalic";
  if (chosen.underline()) styles << "fsUnderline";
  if (chosen.strikeOut()) styles << "fsStrikeOut";
  const int pixels = chosen.pixelSize() > 0 ? chosen.pixelSize() : QFontInfo(chosen).pixelSize();
  text = FromQString(chosen.family() + '|' + QString::number(-pixels) + "|[" + styles.join(", ") +
                     ']');
  return true;
}

}  // namespace

bool HasInlineEditor(const TInspectedRow& row) {
  const TEditorRow& editor = EditorOf(row.Kind);
  return !row.Group && (editor.Inline || editor.List);
}

bool HasChoices(const TInspectedRow& row) {
  return !row.Group && EditorOf(row.Kind).List;
}

bool HasDialog(const TInspectedRow& row) {
  return EditorOf(row.Kind).Dialog;
}

std::string NextChoice(const TInspectedRow& row) {
  const std::vector<std::string> choices = KnownChoices(row);
  const auto at = std::find_if(choices.begin(), choices.end(),
                               [&](const std::string& c) { return EqualText(c, row.Text); });
  if (choices.empty()) return row.Text;
  return at == choices.end() || std::next(at) == choices.end() ? choices.front() : *std::next(at);
}

bool EditInDialog(QWidget* parent, const TInspectedRow& row, std::string& text) {
  switch (row.Kind) {
    case Color:
      return EditColor(parent, text);
    case Font:
      return EditFont(parent, text);
    case Text:
    case Strings:
      return EditLines(parent, row, text);
    default:
      return false;
  }
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
    auto* edit = new QLineEdit(parent);
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
    if (row->Kind != Color) continue;
    QPixmap swatch(16, 12);
    const QColor color = ColorOfText(choice);
    swatch.fill(color.isValid() ? color : Qt::transparent);
    list->setItemIcon(list->count() - 1, swatch);
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
