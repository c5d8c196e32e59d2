// Makes and fills the fields of the status line.
#include "host/shell/StatusFields.h"

#include "platform/widgets/Text.h"

namespace wrenfold {

TStatusFields::TStatusFields(QStatusBar& bar) : FBar(bar) {
  struct TField {
    QLabel*& Label;
    const char* Name;
    const char* Meaning;
    const char* Widest;
  };
  const TField fields[] = {
      {FProject, "StatusProject", "The project's units", ""},
      {FModified, "StatusModified", "Whether the unit has changes that are not saved", ""},
      {FCaret, "StatusCaret", "Line and column of the caret", "Ln 00000, Col 000"},
      {FInsert, "StatusInsert", "Typing inserts or overwrites (Ins switches)", "Overwrite"},
      {FEncoding, "StatusEncoding", "The file's encoding", ""},
      {FLineEnds, "StatusLineEnds", "The file's line ends", "CR LF"},
  };
  bar.setObjectName("StatusBar");
  for (const TField& field : fields) {
    field.Label = new QLabel;
    field.Label->setObjectName(field.Name);
    field.Label->setAccessibleName(QObject::tr(field.Meaning));
    field.Label->setToolTip(QObject::tr(field.Meaning));
    field.Label->setContentsMargins(8, 0, 8, 0);
    field.Label->setMinimumWidth(
        field.Label->fontMetrics().horizontalAdvance(QString(field.Widest)) + 16);
    bar.addPermanentWidget(field.Label);
  }
}

void TStatusFields::ShowPage(TEditWindow& window) {
  const TEditPage* page = window.ActivePage();
  const TUnitDocument* document = page != nullptr ? page->Source().LoadedDocument() : nullptr;
  for (QLabel* label : {FModified, FCaret, FInsert, FEncoding, FLineEnds})
    label->setVisible(document != nullptr);
  if (document == nullptr) return;
  int line = 0, column = 0;
  window.Editor().getCursorPosition(&line, &column);
  FCaret->setText(QObject::tr("Ln %1, Col %2").arg(line + 1).arg(column + 1));
  FModified->setText(document->Modified()   ? QObject::tr("Modified")
                     : document->ReadOnly() ? QObject::tr("Read only")
                                            : QString());
  FModified->setVisible(!FModified->text().isEmpty());
  FInsert->setText(window.Editor().overwriteMode() ? QObject::tr("Overwrite")
                                                   : QObject::tr("Insert"));
  FEncoding->setText(ToQString(EncodingName(document->File().Format())));
  FLineEnds->setText(ToQString(LineEndsName(document->File().LineEnds())));
}

void TStatusFields::ShowProject(const std::string& summary) {
  FProject->setText(ToQString(summary));
}

void TStatusFields::Say(const std::string& text, int milliseconds) {
  FBar.showMessage(ToQString(text), milliseconds);
}

}  // namespace wrenfold
