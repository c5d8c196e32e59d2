#include "host/debug/RegisterPanes.h"

#include <fmt/format.h>

#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TRegisterPane::ClassInfo() {
  static const TTypeInfo info = Publish<TRegisterPane>("TRegisterPane", TCpuPane::ClassInfo())
                                    .Prop("CurrentRegs", &TRegisterPane::CurrentRegs, nullptr);
  return info;
}

TRegisterPane::TRegisterPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "RegisterView", tr("Registers"),
               tr("F2 or a double click edits the value"),
               {.Titles = {tr("Register"), tr("Value")}}),
      FCurrent(PublishRegisters({})) {
  setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  connect(this, &QTreeWidget::itemChanged, this,
          [this](QTreeWidgetItem* item) { Guarded(this, [&] { Edited(item); }); });
}

void TRegisterPane::Update() {
  const TSnapshot& now = FSession.Now();
  FCurrent = PublishRegisters(now);
  FFilling = true;
  clear();
  if (now.Processor != nullptr && FSession.Stopped()) {
    for (const TRegisterRow& row : now.Processor->Registers) {
      const std::uint64_t value = now.Register(row.Name);
      auto* item =
          new QTreeWidgetItem(this, {row.Published, ToQString(IntToHex(value, row.Bits / 4))});
      item->setFlags(item->flags() | Qt::ItemIsEditable);
      const auto last = FLast.find(row.Name);
      SetBold(item, last != FLast.end() && last->second != value);
    }
    FLast = now.Registers;
    for (const auto& [name, value] : now.MoreRegisters) {
      auto* item = new QTreeWidgetItem(this, {ToQString(name), ToQString(value)});
      const auto last = FLastMore.find(name);
      SetBold(item, last != FLastMore.end() && last->second != value);
      FLastMore[name] = value;
    }
  }
  FitColumns();
  FFilling = false;
}

std::optional<std::uint64_t> TRegisterPane::PointerOf(const QTreeWidgetItem& item) const {
  const TProcessor* processor = FSession.Now().Processor;
  if (processor == nullptr) return {};
  const TRegisterRow* row = processor->FindRegister(FromQString(item.text(0)));
  if (row == nullptr || row->Bits < 8 * processor->PointerSize) return {};
  return FSession.Now().Register(row->Name);
}

void TRegisterPane::Edited(QTreeWidgetItem* item) {
  if (FFilling) return;
  const TRegisterRow* row = FSession.Now().Processor->FindRegister(FromQString(item->text(0)));
  bool good = false;
  const std::uint64_t value = item->text(1).toULongLong(&good, 16);
  if (good && row != nullptr) return FSession.Debugger().WriteRegister(row->Name, value);
  Refuse(fmt::format("\"{}\" is no hexadecimal number; {} stays as it is",
                     FromQString(item->text(1)), FromQString(item->text(0))));
  Update();
}

const TTypeInfo& TFlagsPane::ClassInfo() {
  static const TTypeInfo info = Publish<TFlagsPane>("TFlagsPane", TCpuPane::ClassInfo())
                                    .Prop("CurrentFlags", &TFlagsPane::CurrentFlags, nullptr);
  return info;
}

TFlagsPane::TFlagsPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "FlagsView", tr("Flags"),
               tr("Enter or a double click turns a flag"), {.Titles = {tr("Flag"), tr("Value")}}),
      FCurrent(PublishFlags({})) {
  connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
    Guarded(this, [&] { Turn(indexOfTopLevelItem(item)); });
  });
}

void TFlagsPane::Update() {
  const TSnapshot& now = FSession.Now();
  FCurrent = PublishFlags(now);
  clear();
  if (now.Processor == nullptr || !FSession.Stopped()) return;
  for (const TFlagRow& row : now.Processor->Flags) {
    const std::uint64_t value = FlagValue(row, now.FlagBits());
    auto* item = new QTreeWidgetItem(this, {row.Short, QString::number(value)});
    item->setToolTip(0, row.Changeable ? tr("%1: double click or Enter turns it").arg(row.Long)
                                       : QString(row.Long));
    SetBold(item, value != FlagValue(row, FLast));
    if (!row.Changeable)
      for (int column = 0; column < 2; ++column)
        item->setForeground(column, palette().placeholderText());
  }
  FLast = now.FlagBits();
  FitColumns();
}

void TFlagsPane::Turn(int index) {
  const TProcessor* processor = FSession.Now().Processor;
  if (processor == nullptr || index < 0) return;
  const TFlagRow& row = processor->Flags[static_cast<std::size_t>(index)];
  if (row.Changeable)
    FSession.Debugger().WriteRegister(processor->FlagsRegister,
                                      FSession.Now().FlagBits() ^ (std::uint64_t{1} << row.Bit));
}

}  // namespace wrenfold
