// Asks for texts of several lines, colours, fonts and pictures.
#include "host/panels/PropertyDialogs.h"

#include <fmt/format.h>

#include <QColorDialog>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QFontInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "designer/paint/Pictures.h"
#include "host/panels/PropertyEditors.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

using enum TPropertyKind;

// A dialog over a control, with the buttons that every one of them has.
class TValueDialog : public QDialog {
 public:
  TValueDialog(QWidget* parent, const char* name, const TInspectedRow& row, QWidget* control)
      : QDialog(parent),
        FButtons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    setObjectName(name);
    setWindowTitle(ToQString(row.Caption));
    auto* column = new QVBoxLayout(this);
    column->addWidget(control);
    column->addWidget(FButtons);
    connect(FButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(FButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(460, 320);
  }
  QPushButton* AddButton(const char* name, const QString& caption, const QString& hint) {
    QPushButton* button = FButtons->addButton(caption, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    button->setToolTip(hint);
    return button;
  }

 private:
  QDialogButtonBox* FButtons;
};

bool EditLines(QWidget* parent, const TInspectedRow& row, std::string& text) {
  auto* lines = new QPlainTextEdit(ToQString(text));
  lines->setObjectName("Lines");
  lines->setAccessibleName(ToQString(row.Caption));
  lines->setToolTip(QObject::tr("The lines of the property"));
  lines->setLineWrapMode(QPlainTextEdit::NoWrap);
  // Return makes a line here, and Tab leads to the buttons.
  lines->setTabChangesFocus(true);
  TValueDialog dialog(parent, "LinesForm", row, lines);
  if (dialog.exec() != QDialog::Accepted) return false;
  text = FromQString(lines->toPlainText());
  return true;
}

bool EditColor(QWidget* parent, const TInspectedRow&, std::string& text) {
  const QColor chosen = QColorDialog::getColor(ColorOfText(text), parent);
  if (!chosen.isValid()) return false;
  text = FromQString(chosen.name());
  return true;
}

struct TStyleRow {
  const char* Name;
  bool (QFont::*Get)() const;
  void (QFont::*Set)(bool);
};
constexpr TStyleRow Styles[] = {
    {"fsBold", &QFont::bold, &QFont::setBold},
    {"fsItalic", &QFont::italic, &QFont::setItalic},
    {"fsUnderline", &QFont::underline, &QFont::setUnderline},
    {"fsStrikeOut", &QFont::strikeOut, &QFont::setStrikeOut},
};

// "Name|Height|[fsBold]"; a negative height is in pixels.
bool EditFont(QWidget* parent, const TInspectedRow&, std::string& text) {
  const QStringList parts = ToQString(text).split('|');
  QFont font;
  if (!parts.value(0).isEmpty()) font.setFamily(parts[0]);
  if (const int height = parts.value(1).toInt(); height != 0) font.setPixelSize(std::abs(height));
  for (const TStyleRow& style : Styles) (font.*style.Set)(parts.value(2).contains(style.Name));
  bool taken = false;
  const QFont chosen = QFontDialog::getFont(&taken, font, parent);
  if (!taken) return false;
  QStringList styles;
  for (const TStyleRow& style : Styles)
    if ((chosen.*style.Get)()) styles << style.Name;
  const int pixels = chosen.pixelSize() > 0 ? chosen.pixelSize() : QFontInfo(chosen).pixelSize();
  text = fmt::format("{}|{}|[{}]", FromQString(chosen.family()), -pixels,
                     FromQString(styles.join(", ")));
  return true;
}

struct TDialogRow {
  TPropertyKind Kind;
  bool (*Edit)(QWidget* parent, const TInspectedRow& row, std::string& text);
};
constexpr TDialogRow Dialogs[] = {
    {Text, EditLines}, {Strings, EditLines}, {Color, EditColor},
    {Font, EditFont},  {Picture, nullptr},
};

// --- pictures

constexpr char PictureFilter[] = "Pictures (*.bmp *.ico *.png *.jpg *.jpeg);;All files (*)";
constexpr int IconSide = 256;  // the largest picture of an icon

void ShowPicture(QLabel& label, const TStoredPicture& picture) {
  if (picture.File.empty()) return label.setText(QObject::tr("(no picture)"));
  const TDecodedPicture decoded = DecodePicture(picture, IconSide);
  if (!decoded.Image.isNull()) return label.setPixmap(QPixmap::fromImage(decoded.Image));
  label.setText(decoded.Trouble.empty() ? QObject::tr("(a picture that cannot be shown)")
                                        : ToQString(decoded.Trouble));
}

// What the dialog shows, loads and saves.
class TPictureEditing {
 public:
  TPictureEditing(const TInspectedRow& row, TPictureNotation notation, const TFileDialogs& files,
                  const std::string& value)
      : Value(value), FRow(row), FNotation(notation), FFiles(files), FOld(value) {}

  TStoredPicture Shown() const { return PictureIn(Path(), Value); }
  void Load() {
    const auto names = FFiles.Open("Load picture", "", PictureFilter);
    if (names.empty()) return;
    Value = PictureValueOf(Path(), ReadWholeFile(names[0]), FOld, FNotation);
  }
  void Save() const {
    const TStoredPicture picture = Shown();
    const std::string name = FFiles.Save(
        "Save picture", fmt::format("{}{}", FRow.Caption, PictureExtension(picture.Kind)),
        PictureFilter);
    if (!name.empty()) SafeWriteFile(name, picture.File);
  }

  std::string Value;

 private:
  const std::string& Path() const { return FRow.Item < 0 ? FRow.Path : FRow.Inner; }

  const TInspectedRow& FRow;
  const TPictureNotation FNotation;
  const TFileDialogs& FFiles;
  const std::string FOld;
};

}  // namespace

bool HasDialog(const TInspectedRow& row) {
  return std::ranges::any_of(Dialogs,
                             [&](const TDialogRow& each) { return each.Kind == row.Kind; });
}

bool EditInDialog(QWidget* parent, const TInspectedRow& row, std::string& text) {
  for (const TDialogRow& each : Dialogs)
    if (each.Kind == row.Kind && each.Edit != nullptr) return each.Edit(parent, row, text);
  return false;
}

bool EditPicture(QWidget* parent, const TInspectedRow& row, TPictureNotation notation,
                 const TFileDialogs& files, std::string& value) {
  auto* picture = new QLabel;
  picture->setObjectName("Picture");
  picture->setAlignment(Qt::AlignCenter);
  picture->setAccessibleName(ToQString(row.Caption));
  auto* area = new QScrollArea;
  area->setObjectName("PictureArea");
  area->setAccessibleName(ToQString(row.Caption));
  area->setWidget(picture);
  area->setWidgetResizable(true);
  TValueDialog dialog(parent, "PictureForm", row, area);
  QPushButton* load = dialog.AddButton("LoadPicture", QObject::tr("&Load..."),
                                       QObject::tr("Takes the picture of a file"));
  QPushButton* save = dialog.AddButton("SavePicture", QObject::tr("&Save..."),
                                       QObject::tr("Writes the picture to a file"));
  TPictureEditing editing(row, notation, files, value);
  const auto show = [&] {
    ShowPicture(*picture, editing.Shown());
    save->setEnabled(!editing.Shown().File.empty());
  };
  show();
  QObject::connect(load, &QPushButton::clicked, &dialog, [&] {
    Guarded(nullptr, [&] {
      editing.Load();
      show();
    });
  });
  QObject::connect(save, &QPushButton::clicked, &dialog,
                   [&] { Guarded(nullptr, [&] { editing.Save(); }); });
  if (dialog.exec() != QDialog::Accepted || editing.Value == value) return false;
  value = editing.Value;
  return true;
}

}  // namespace wrenfold
