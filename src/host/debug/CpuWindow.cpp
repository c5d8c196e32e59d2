#include "host/debug/CpuWindow.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QVBoxLayout>

#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TCpuWindow::ClassInfo() {
  static const TTypeInfo info = Publish<TCpuWindow>("TDisassemblyView", TForm::ClassInfo());
  return info;
}

TCpuWindow::TCpuWindow(TComponent* owner, QWidget* parent) : TForm(owner, parent) {
  SetName("DisassemblyView");
  SetCaption("CPU");
  setMinimumSize(200, 80);
}

void TCpuWindow::Serve(TDebugSession& session) {
  FSession = &session;
  FPlace = new QLineEdit(this);
  FPlace->setObjectName("CpuPlace");
  FPlace->setPlaceholderText(tr("Go to: address, symbol or register"));
  FPlace->setAccessibleName(tr("Go to"));
  FPlace->setToolTip(
      tr("An address (hexadecimal), a symbol or a register: shown in the pane that had the focus, "
         "code or memory (Ctrl+G)"));
  connect(FPlace, &QLineEdit::returnPressed, this, [this] { Guarded(this, [&] { GoTo(); }); });
  auto* columns = new QSplitter(Qt::Horizontal, this);
  auto* left = new QSplitter(Qt::Vertical, columns);
  FCode = new TDisassemblyPane(this, left, session);
  FDump = new TDumpPane(this, left, session);
  auto* right = new QSplitter(Qt::Vertical, columns);
  auto* values = new QSplitter(Qt::Horizontal, right);
  FRegisters = new TRegisterPane(this, values, session);
  FFlags = new TFlagsPane(this, values, session);
  FStack = new TStackPane(this, right, session);
  left->setSizes({300, 120});
  right->setSizes({300, 120});
  values->setSizes({262, 80});
  columns->setSizes({420, 346});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(FPlace);
  column->addWidget(columns, 1);
  for (TCpuPane* pane :
       std::initializer_list<TCpuPane*>{FCode, FRegisters, FFlags, FDump, FStack}) {
    pane->OnFollow = [this](std::uint64_t address, bool code) { GoToAddress(address, code); };
    pane->OnGoTo = [this] {
      FPlace->setFocus();
      FPlace->selectAll();
    };
  }
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now == FDump || now == FCode) FMemoryLast = now == FDump;
  });
  setFocusProxy(FCode);
  session.Listen([this] { Update(); });
  session.ListenToBreakpoints([this] { FCode->Mark(); });
  Update();
}

// Controls that go with the window take the focus along, which would be told to what is left of it.
TCpuWindow::~TCpuWindow() {
  disconnect(qApp, nullptr, this, nullptr);
}

bool TCpuWindow::HasFocus() const {
  return isAncestorOf(QApplication::focusWidget());
}

void TCpuWindow::Update() {
  FCode->Update();
  FRegisters->Update();
  FFlags->Update();
  FDump->Update();
  FStack->Update();
}

void TCpuWindow::GoToAddress(std::uint64_t address, bool code) {
  if (code) FCode->GoTo(address);
  else FDump->GoTo(address);
}

void TCpuWindow::GoTo() {
  const std::string text = FromQString(FPlace->text().trimmed());
  const TProcessor* processor = FSession->Now().Processor;
  if (text.empty() || processor == nullptr) return;
  const bool code = !FMemoryLast;
  if (const TRegisterRow* row = processor->FindRegister(text))
    return GoToAddress(FSession->Now().Register(row->Name), code);
  bool number = false;
  QString digits = FPlace->text().trimmed();
  if (digits.startsWith('$')) digits.remove(0, 1);
  const std::uint64_t address = digits.toULongLong(&number, 16);
  if (number) return GoToAddress(address, code);
  FSession->Debugger().FindSymbol(text,
                                  [this, code](std::uint64_t found) { GoToAddress(found, code); });
}

}  // namespace wrenfold
