#include "host/debug/BreakpointPanel.h"

#include <fmt/format.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "host/debug/VariableTree.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

enum TColumn { PlaceColumn, ConditionColumn, PassColumn };
constexpr int MostPasses = 1'000'000'000;

}  // namespace

const TTypeInfo& TBreakpointPanel::ClassInfo() {
  static const TTypeInfo info = Publish<TBreakpointPanel>("TBreakpointsForm", TForm::ClassInfo());
  return info;
}

TBreakpointPanel::TBreakpointPanel(TComponent* owner, QWidget* parent) : TForm(owner, parent) {
  SetName("BreakpointsForm");
  SetCaption("Breakpoints");
  FList = MakeValueTree(this, "Breakpoints", tr("Breakpoints"),
                        tr("Enter goes to the place, F2 edits condition and count, Del removes"),
                        {tr("Place"), tr("Condition"), tr("Passes over first")});
  FList->setRootIsDecorated(false);
  FList->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::DoubleClicked);
  FList->installEventFilter(this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(FList);
  setFocusProxy(FList);
  connect(FList, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem*, int at) {
    const TBreakpoint* breakpoint = Chosen();
    if (at == PlaceColumn && breakpoint != nullptr && breakpoint->Place && OnOpen)
      Guarded(this, [&] { OnOpen(breakpoint->Place); });
  });
  connect(FList, &QTreeWidget::itemChanged, this,
          [this](QTreeWidgetItem* item, int at) { Guarded(this, [&] { Edited(item, at); }); });
}

void TBreakpointPanel::Serve(TDebugSession& session) {
  FSession = &session;
  session.ListenToBreakpoints([this] { Update(); });
  Update();
}

const TBreakpoint* TBreakpointPanel::Chosen() const {
  const auto index = static_cast<std::size_t>(FList->indexOfTopLevelItem(FList->currentItem()));
  const auto& all = FSession->Breakpoints().All();
  return index < all.size() ? &all[index] : nullptr;
}

void TBreakpointPanel::Update() {
  FFilling = true;
  const int current = FList->indexOfTopLevelItem(FList->currentItem());
  FList->clear();
  for (const TBreakpoint& breakpoint : FSession->Breakpoints().All()) {
    const std::string place =
        breakpoint.Place
            ? fmt::format("{}:{}", ExtractFileName(breakpoint.Place.File), breakpoint.Place.Line)
            : fmt::format("${}", IntToHex(breakpoint.Address, 8));
    auto* item = new QTreeWidgetItem(FList, {ToQString(place), ToQString(breakpoint.Condition),
                                             QString::number(breakpoint.PassCount)});
    item->setToolTip(PlaceColumn, ToQString(breakpoint.Place.File));
    item->setFlags(item->flags() | Qt::ItemIsEditable);
  }
  FList->setCurrentItem(FList->topLevelItem(std::min(current, FList->topLevelItemCount() - 1)));
  FFilling = false;
}

void TBreakpointPanel::Edited(QTreeWidgetItem* item, int column) {
  if (FFilling) return;
  const auto index = static_cast<std::size_t>(FList->indexOfTopLevelItem(item));
  TBreakpoint changed = FSession->Breakpoints().All().at(index);
  if (column == ConditionColumn)
    changed.Condition = FromQString(item->text(ConditionColumn).simplified());
  bool number = true;
  if (column == PassColumn)
    changed.PassCount = std::clamp(item->text(PassColumn).toInt(&number), 0, MostPasses);
  if (!number && FSession->OnError)
    FSession->OnError(fmt::format("\"{}\" is no whole number; the count stays as it is",
                                  FromQString(item->text(PassColumn))));
  // The place is told by the panel, not edited: the list is filled anew either way.
  if (number && column != PlaceColumn) FSession->PutBreakpoint(changed);
  else Update();
}

bool TBreakpointPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete)
    if (const TBreakpoint* breakpoint = Chosen()) {
      FSession->RemoveBreakpoint(TBreakpoint(*breakpoint));
      return true;
    }
  return TForm::eventFilter(watched, event);
}

bool AskBreakpoint(QWidget* parent, TBreakpoint& breakpoint) {
  QDialog dialog(parent);
  dialog.setObjectName("BreakpointDialog");
  dialog.setWindowTitle(QObject::tr("Breakpoint"));
  auto* condition = new QLineEdit(ToQString(breakpoint.Condition), &dialog);
  condition->setObjectName("Condition");
  condition->setAccessibleName(QObject::tr("Condition"));
  condition->setToolTip(QObject::tr("It stops when this is true; empty: always"));
  condition->setMinimumWidth(280);
  auto* passes = new QSpinBox(&dialog);
  passes->setObjectName("PassCount");
  passes->setAccessibleName(QObject::tr("Passes over first"));
  passes->setToolTip(QObject::tr("So many times the program goes on"));
  passes->setRange(0, MostPasses);
  passes->setValue(breakpoint.PassCount);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  buttons->button(QDialogButtonBox::Ok)->setToolTip(QObject::tr("Take both (Enter)"));
  buttons->button(QDialogButtonBox::Cancel)->setToolTip(QObject::tr("Leave it as it is (Esc)"));
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* rows = new QFormLayout(&dialog);
  rows->addRow(QObject::tr("&Condition:"), condition);
  rows->addRow(QObject::tr("&Passes over first:"), passes);
  rows->addRow(buttons);
  if (dialog.exec() != QDialog::Accepted) return false;
  breakpoint.Condition = FromQString(condition->text().simplified());
  breakpoint.PassCount = passes->value();
  return true;
}

}  // namespace wrenfold
