// Lays the find bar out and runs its searches.
#include "host/panels/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

#include "host/documents/Icons.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

TFindBar::TFindBar(TEditWindow& window)
    : QWidget(&window),
      FWindow(window),
      FText(new QLineEdit),
      FCaseSensitive(new QCheckBox(tr("&Case sensitive"))),
      FWholeWords(new QCheckBox(tr("Whole &words"))),
      FResult(new QLabel) {
  setObjectName("FindBar");
  FText->setObjectName("FindText");
  FText->setAccessibleName(tr("Text to find"));
  FText->setToolTip(tr("Text to find (Enter: next, Shift+Enter: previous, Esc: close)"));
  FText->setPlaceholderText(tr("Find in this unit"));
  FText->setClearButtonEnabled(true);
  FText->setMaximumWidth(320);
  FCaseSensitive->setObjectName("FindCaseSensitive");
  FCaseSensitive->setToolTip(tr("Tell capital letters from small ones (Alt+C)"));
  FWholeWords->setObjectName("FindWholeWords");
  FWholeWords->setToolTip(tr("Find whole words only (Alt+W)"));
  FResult->setObjectName("FindResult");
  auto* close = new QToolButton;
  close->setObjectName("FindClose");
  close->setIcon(WorkbenchIcon("close"));
  close->setAutoRaise(true);
  close->setAccessibleName(tr("Close the find bar"));
  close->setToolTip(tr("Close the find bar (Esc)"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(6, 4, 6, 4);
  row->addWidget(FText, 1);
  row->addWidget(FCaseSensitive);
  row->addWidget(FWholeWords);
  row->addWidget(FResult, 1);
  row->addWidget(close);
  connect(close, &QToolButton::clicked, this, [this] {
    hide();
    FWindow.Editor().setFocus();
  });
  connect(FText, &QLineEdit::textEdited, FResult, &QLabel::clear);
  hide();
}

void TFindBar::Open() {
  const std::string selected = FWindow.SelectedText();
  if (!selected.empty() && selected.find_first_of("\r\n") == std::string::npos)
    FText->setText(ToQString(selected));
  FResult->clear();
  show();
  FText->setFocus();
  FText->selectAll();
}

void TFindBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    hide();
    FWindow.Editor().setFocus();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    Find(event->modifiers().testFlag(Qt::ShiftModifier));
  } else {
    QWidget::keyPressEvent(event);
  }
}

void TFindBar::Find(bool backward) {
  if (FText->text().isEmpty()) return Open();
  const bool found = FWindow.Find(FromQString(FText->text()), FCaseSensitive->isChecked(),
                                  FWholeWords->isChecked(), backward);
  FResult->setText(found ? QString() : tr("\"%1\" was not found").arg(FText->text()));
}

}  // namespace wrenfold
