#include "host/debug/StackPanel.h"

#include <fmt/format.h>

#include <QSplitter>
#include <QVBoxLayout>

#include "host/debug/VariableTree.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TStackPanel::ClassInfo() {
  static const TTypeInfo info = Publish<TStackPanel>("TCallStackForm", TForm::ClassInfo());
  return info;
}

TStackPanel::TStackPanel(TComponent* owner, QWidget* parent)
    : TForm(owner, parent), FThreads(new QComboBox(this)) {
  SetName("CallStackForm");
  SetCaption("Call stack");
  FThreads->setObjectName("Threads");
  FThreads->setAccessibleName(tr("Thread"));
  FThreads->setToolTip(tr("The thread whose calls are shown"));
  auto* halves = new QSplitter(Qt::Horizontal, this);
  FFrames = MakeValueTree(halves, "CallStack", tr("Call stack"),
                          tr("Double click or Enter goes to the call"), {tr("Call"), tr("Line")});
  FFrames->setRootIsDecorated(false);
  FLocals = MakeValueTree(halves, "LocalVariables", tr("Local variables"),
                          tr("The variables of the chosen call"),
                          {tr("Variable"), tr("Value"), tr("Type")});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(FThreads);
  column->addWidget(halves, 1);
  setFocusProxy(FFrames);
  connect(FFrames, &QTreeWidget::itemActivated, this,
          [this](QTreeWidgetItem* item) { Guarded(this, [&] { ChooseFrame(item); }); });
  connect(FThreads, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (FFilling || index < 0) return;
    FSession->Debugger().SelectThread(FThreads->itemData(index).toULongLong());
  });
}

void TStackPanel::Serve(TDebugSession& session) {
  FSession = &session;
  session.Listen([this] { Update(); });
  Update();
}

void TStackPanel::Update() {
  const TSnapshot& now = FSession->Now();
  FFilling = true;
  FillThreads(now);
  FillFrames(now);
  FLocals->clear();
  for (const TVariable& variable : now.Locals)
    ShowVariable(*new QTreeWidgetItem(FLocals), variable);
  setEnabled(FSession->Stopped());
  FFilling = false;
}

void TStackPanel::FillThreads(const TSnapshot& now) {
  FThreads->clear();
  for (const TThread& thread : now.Threads) {
    std::string text = fmt::format("Thread {}", thread.Id);
    if (!thread.Name.empty()) text += " " + thread.Name;
    if (!thread.Reason.empty()) text += ": " + thread.Reason;
    FThreads->addItem(ToQString(text), QVariant::fromValue<qulonglong>(thread.Id));
    if (thread.Id == now.ThreadId) FThreads->setCurrentIndex(FThreads->count() - 1);
  }
}

void TStackPanel::FillFrames(const TSnapshot& now) {
  FFrames->clear();
  for (const TCall& frame : now.Frames) {
    const std::string place =
        frame.Place ? fmt::format("{}:{}", ExtractFileName(frame.Place.File), frame.Place.Line)
                    : IntToHex(frame.Address, 8);
    new QTreeWidgetItem(FFrames, {ToQString(frame.Function), ToQString(place)});
  }
  FFrames->setCurrentItem(FFrames->topLevelItem(static_cast<int>(now.FrameIndex)));
}

void TStackPanel::ChooseFrame(QTreeWidgetItem* item) {
  const auto index = static_cast<std::size_t>(FFrames->indexOfTopLevelItem(item));
  const TSnapshot& now = FSession->Now();
  if (index >= now.Frames.size()) return;
  const TCodePlace place = now.Frames[index].Place;
  FSession->Debugger().SelectFrame(index);
  if (place && OnOpen) OnOpen(place);
}

}  // namespace wrenfold
