#include "host/debug/ProgramPanel.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QVBoxLayout>

#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int MostLines = 10'000;

}  // namespace

const TTypeInfo& TProgramPanel::ClassInfo() {
  static const TTypeInfo info = Publish<TProgramPanel>("TProgramForm", TForm::ClassInfo());
  return info;
}

TProgramPanel::TProgramPanel(TComponent* owner, QWidget* parent)
    : TForm(owner, parent), FText(new QPlainTextEdit(this)), FInput(new QLineEdit(this)) {
  SetName("ProgramForm");
  SetCaption("Program");
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  FText->setObjectName("ProgramOutput");
  FText->setAccessibleName(tr("Output of the program"));
  FText->setToolTip(tr("What the program writes"));
  FText->setReadOnly(true);
  FText->setFrameShape(QFrame::NoFrame);
  FText->setMaximumBlockCount(MostLines);
  FText->setFont(fixed);
  FInput->setObjectName("ProgramInput");
  FInput->setAccessibleName(tr("Input for the program"));
  FInput->setPlaceholderText(tr("Input for the program, sent with Enter"));
  FInput->setToolTip(tr("A line for the program to read"));
  FInput->setFont(fixed);
  FInput->setEnabled(false);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(FText, 1);
  column->addWidget(FInput);
  setFocusProxy(FText);
}

void TProgramPanel::Serve(TDebugSession& session) {
  connect(FInput, &QLineEdit::returnPressed, this, [this, &session] {
    session.Debugger().SendInput(FromQString(FInput->text()) + "\n");
    FInput->clear();
  });
  session.Listen([this, &session] { FInput->setEnabled(session.Active()); });
  session.OnOutput = [this](const std::string& text) { Add(text); };
}

void TProgramPanel::Add(const std::string& text) {
  QScrollBar& bar = *FText->verticalScrollBar();
  const bool atEnd = bar.value() == bar.maximum();
  QTextCursor cursor(FText->document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(ToQString(text).remove('\r'));
  if (atEnd) bar.setValue(bar.maximum());
}

}  // namespace wrenfold
