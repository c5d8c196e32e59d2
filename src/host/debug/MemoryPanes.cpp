#include "host/debug/MemoryPanes.h"

#include <fmt/format.h>

#include <QHeaderView>
#include <QScrollBar>
#include <cstring>

#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr std::size_t DumpSize = 512, DumpWidth = 16, StackSize = 256;
constexpr std::size_t MostDumped = 64 * 1024;
enum TColumn { AddressColumn, NumberColumn, TextColumn };

std::string Printable(std::string_view bytes) {
  std::string text(bytes);
  for (char& c : text)
    if (c < ' ' || c > '~') c = '.';
  return text;
}

}  // namespace

const TTypeInfo& TDumpPane::ClassInfo() {
  static const TTypeInfo info = Publish<TDumpPane>("TDumpPane", TCpuPane::ClassInfo());
  return info;
}

TDumpPane::TDumpPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "DumpView", tr("Memory dump"),
               tr("Memory as numbers and as text; F2 or a double click edits the numbers"),
               {.Titles = {tr("Address"), tr("Bytes"), tr("Text")}, .Address = AddressColumn}),
      FSize(DumpSize) {
  setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    Guarded(this, [&] { Edited(item, column); });
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { Guarded(this, [&] { ReadMore(value); }); });
}

void TDumpPane::GoTo(std::uint64_t address) {
  FAddress = address;
  FSize = DumpSize;
  FJumped = true;
  Update();
}

void TDumpPane::Update() {
  if (!FSession.Stopped()) return;
  const TSnapshot& now = FSession.Now();
  if (FAddress == 0 && now.Processor != nullptr)
    FAddress = now.Register(now.Processor->StackPointer);
  FSession.Debugger().ReadMemory(
      FAddress, FSize,
      [this, address = FAddress](const std::string& bytes) { Take(address, bytes); });
}

void TDumpPane::SetUnit(const TMemoryUnit& unit) {
  FUnit = &unit;
  headerItem()->setText(NumberColumn, tr(unit.Name));
  ShowLines(FBytes);
}

void TDumpPane::Take(std::uint64_t address, const std::string& bytes) {
  const std::string before = address == FShownAddress ? std::exchange(FBytes, bytes) : bytes;
  FBytes = bytes;
  // What was added in front pushes the rest down.
  const auto pushed = static_cast<int>(
      address < FShownAddress ? std::min<std::uint64_t>(FShownAddress - address, FSize) : 0);
  FShownAddress = address;
  const int top = verticalScrollBar()->value();
  ShowLines(before);
  const QSignalBlocker quiet(verticalScrollBar());
  doItemsLayout();
  verticalScrollBar()->setValue(
      std::exchange(FJumped, false) ? 0 : top + pushed / static_cast<int>(DumpWidth));
}

void TDumpPane::ShowLines(const std::string& before) {
  FFilling = true;
  clear();
  for (std::size_t at = 0; at < FBytes.size(); at += DumpWidth) {
    const std::string part = FBytes.substr(at, DumpWidth);
    auto* item = new QTreeWidgetItem(
        this, {ToQString(AddressText(FShownAddress + at, FSession.Now().Processor)),
               ToQString(FormatUnits(*FUnit, part)), ToQString(Printable(part))});
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    SetBold(item, before.size() == FBytes.size() && before.compare(at, DumpWidth, part) != 0);
  }
  FitColumns();
  FFilling = false;
}

void TDumpPane::ReadMore(int scrollValue) {
  const QScrollBar& bar = *verticalScrollBar();
  if (FFilling || FBytes.empty() || bar.maximum() == bar.minimum() || FSize >= MostDumped) return;
  if (scrollValue == bar.minimum() && FAddress >= DumpSize / 2 && FAddress == FShownAddress) {
    FAddress -= DumpSize / 2;
    FSize += DumpSize / 2;
    Update();
  } else if (scrollValue == bar.maximum() && FBytes.size() == FSize) {
    FSize += DumpSize;
    Update();
  }
}

std::string TDumpPane::LineBytes(const QTreeWidgetItem& item) const {
  const auto row = static_cast<std::size_t>(indexFromItem(&item).row());
  return row * DumpWidth < FBytes.size() ? FBytes.substr(row * DumpWidth, DumpWidth) : "";
}

std::optional<std::uint64_t> TDumpPane::PointerOf(const QTreeWidgetItem& item) const {
  const TProcessor* processor = FSession.Now().Processor;
  const std::string bytes = LineBytes(item);
  if (processor == nullptr || bytes.size() < static_cast<std::size_t>(processor->PointerSize))
    return {};
  std::uint64_t value = 0;
  std::memcpy(&value, bytes.data(), static_cast<std::size_t>(processor->PointerSize));
  return value;
}

void TDumpPane::AddMenuItems(TPopupMenu& menu) {
  AddMenuItem("-", nullptr);
  for (const TMemoryUnit& unit : MemoryUnits()) {
    TMenuItem* item = AddMenuItem(tr(unit.Name), [this, &unit] { SetUnit(unit); });
    item->SetRadioItem(true);
    item->SetChecked(&unit == FUnit);
  }
  (void)menu;
}

void TDumpPane::Edited(QTreeWidgetItem* item, int column) {
  if (FFilling) return;
  const std::string before = LineBytes(*item);
  // A rest that is no whole number is not shown and stays.
  const std::size_t whole = before.size() / FUnit->Size * FUnit->Size;
  const auto bytes = ParseUnits(*FUnit, FromQString(item->text(NumberColumn)), whole);
  const auto row = static_cast<std::size_t>(indexOfTopLevelItem(item));
  if (column == NumberColumn && bytes) {
    if (*bytes != before.substr(0, whole))
      FSession.Debugger().WriteMemory(FShownAddress + row * DumpWidth, *bytes);
    return;
  }
  if (column == NumberColumn)
    Refuse(fmt::format("\"{}\" are not {} of {}; the memory stays as it is",
                       FromQString(item->text(NumberColumn)), whole / FUnit->Size, FUnit->Name));
  ShowLines(FBytes);
}

const TTypeInfo& TStackPane::ClassInfo() {
  static const TTypeInfo info = Publish<TStackPane>("TStackPane", TCpuPane::ClassInfo());
  return info;
}

TStackPane::TStackPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "StackView", tr("Program stack"),
               tr("The words on the stack, and what they point to"),
               {.Titles = {tr("Address"), tr("Value"), tr("Points to")}, .Address = 0}) {}

void TStackPane::Update() {
  const TSnapshot& now = FSession.Now();
  if (!FSession.Stopped() || now.Processor == nullptr) return;
  const std::uint64_t address = now.Register(now.Processor->StackPointer);
  const auto width = static_cast<std::size_t>(now.Processor->PointerSize);
  FSession.Debugger().ReadMemory(
      address, StackSize,
      [this, address, width](const std::string& bytes) { Take(address, width, bytes); });
}

std::optional<std::uint64_t> TStackPane::PointerOf(const QTreeWidgetItem& item) const {
  return item.text(1).toULongLong(nullptr, 16);
}

void TStackPane::Take(std::uint64_t address, std::size_t width, const std::string& bytes) {
  const TSnapshot& now = FSession.Now();
  clear();
  for (std::size_t at = 0; at + width <= bytes.size(); at += width) {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes.data() + at, width);
    std::string points;
    for (const TCall& frame : now.Frames)
      if (frame.Address == value) points = frame.Function;
    if (value >= address && value < address + StackSize)
      points = fmt::format("stack + {}", value - address);
    new QTreeWidgetItem(this, {ToQString(AddressText(address + at, now.Processor)),
                               ToQString(AddressText(value, now.Processor)), ToQString(points)});
  }
  FitColumns();
}

}  // namespace wrenfold
