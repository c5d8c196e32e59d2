#include "host/debug/CpuPanes.h"

#include <fmt/format.h>

#include <QApplication>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cstring>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr std::size_t LinesBefore = 96, LinesAfter = 192;
// So many instructions are held ready behind the current one.
constexpr std::size_t LinesReady = 64;
constexpr std::size_t DumpSize = 512, DumpWidth = 16, StackSize = 256;

std::string Address(std::uint64_t value, const TProcessor* processor) {
  return IntToHex(value, processor != nullptr ? 2 * processor->PointerSize : 8);
}

std::string Bytes(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) text += fmt::format("{:02X} ", static_cast<unsigned char>(byte));
  if (!text.empty()) text.pop_back();
  return text;
}

std::string Printable(std::string_view bytes) {
  std::string text(bytes);
  for (char& c : text)
    if (c < ' ' || c > '~') c = '.';
  return text;
}

void SetBold(QTreeWidgetItem* item, bool bold) {
  QFont font = item->treeWidget()->font();
  font.setBold(bold);
  for (int column = 0; column < item->treeWidget()->columnCount(); ++column)
    item->setFont(column, font);
}

}  // namespace

// --- what panes have in common

const TTypeInfo& TCpuPane::ClassInfo() {
  static const TTypeInfo info = Publish<TCpuPane>("TCpuPane", TControl::ClassInfo());
  return info;
}

TCpuPane::TCpuPane(TComponent* owner, QWidget* parent, TDebugSession& session, const char* name,
                   const QString& title, const QString& tip, const QStringList& columns)
    : TControlOf(owner, parent), FSession(session) {
  SetName(name);
  setAccessibleName(title);
  setToolTip(tip);
  setColumnCount(static_cast<int>(columns.size()));
  setHeaderLabels(columns);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setFrameShape(QFrame::NoFrame);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setStretchLastSection(true);
}

std::string TCpuPane::CopyText() const {
  const bool all = selectedItems().size() < 2;
  std::string text;
  for (int i = 0; i < topLevelItemCount(); ++i) {
    const QTreeWidgetItem* item = topLevelItem(i);
    if (!all && !item->isSelected()) continue;
    QStringList parts;
    for (int column = 0; column < columnCount(); ++column)
      if (!item->text(column).isEmpty()) parts.append(item->text(column));
    text += FromQString(parts.join("  ")) + "\r\n";
  }
  return text;
}

void TCpuPane::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) SetClipboardText(CopyText());
  else TControlOf::keyPressEvent(event);
}

// --- code

const TTypeInfo& TDisassemblyPane::ClassInfo() {
  static const TTypeInfo info =
      Publish<TDisassemblyPane>("TDisassemblyPane", TCpuPane::ClassInfo())
          .Prop("SelectedAddress", &TDisassemblyPane::SelectedAddress,
                &TDisassemblyPane::SetSelectedAddress)
          .Prop("SelectedLabel", &TDisassemblyPane::SelectedLabel, nullptr)
          .Prop("SelectedSource", &TDisassemblyPane::SelectedSource, nullptr)
          .Prop("SelectedDisassembly", &TDisassemblyPane::SelectedDisassembly, nullptr);
  return info;
}

TDisassemblyPane::TDisassemblyPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "DisassemblerView1", tr("Disassembly"),
               tr("A double click sets a breakpoint, or takes it back"),
               {tr("Address"), tr("Bytes"), tr("Instruction"), tr("Goes")}) {
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { Guarded(this, [&] { ReadMore(value); }); });
  connect(this, &QTreeWidget::itemDoubleClicked, this, [this] {
    Guarded(this, [&] {
      if (const TCodeLine* line = SelectedLine())
        FSession.ToggleBreakpoint({.Address = line->Instruction.Address});
    });
  });
}

int TDisassemblyPane::IndexOf(std::uint64_t address) const {
  const auto next = std::lower_bound(
      FLines.begin(), FLines.end(), address,
      [](const TCodeLine& line, std::uint64_t value) { return line.Instruction.Address < value; });
  return next == FLines.end() ? -1 : static_cast<int>(next - FLines.begin());
}

const TCodeLine* TDisassemblyPane::SelectedLine() const {
  const auto found = std::find(FItems.begin(), FItems.end(), currentItem());
  return found == FItems.end() ? nullptr
                               : &FLines[static_cast<std::size_t>(found - FItems.begin())];
}

std::int64_t TDisassemblyPane::SelectedAddress() const {
  const TCodeLine* line = SelectedLine();
  return line != nullptr ? static_cast<std::int64_t>(line->Instruction.Address) : 0;
}

void TDisassemblyPane::SetSelectedAddress(std::int64_t address) {
  // Whoever goes back has arrived.
  if (address <= SelectedAddress()) FPatience = MaxPatience;
  const auto wanted = static_cast<std::uint64_t>(address);
  if (!FLines.empty() && wanted > FLines.back().Instruction.Address) WaitForMore();
  const int index = IndexOf(wanted);
  if (index < 0) return;
  setAutoScroll(false);
  setCurrentItem(FItems[static_cast<std::size_t>(index)]);
  setAutoScroll(true);
}

std::string TDisassemblyPane::SelectedLabel() const {
  const TCodeLine* line = SelectedLine();
  return line != nullptr && !line->Label.empty() ? line->Label + ":" : "";
}

std::string TDisassemblyPane::SelectedSource() const {
  const TCodeLine* line = SelectedLine();
  if (line == nullptr || !line->Place) return {};
  return fmt::format("{}:{}", ExtractFileName(line->Place.File), line->Place.Line);
}

std::string TDisassemblyPane::SelectedDisassembly() const {
  const TCodeLine* line = SelectedLine();
  if (line == nullptr) return {};
  return Address(line->Instruction.Address, FSession.Now().Processor) + " " +
         line->Instruction.Text;
}

void TDisassemblyPane::GoTo(std::uint64_t address) {
  FReading = true;
  FSession.Debugger().ReadCode(
      address, LinesBefore, LinesAfter,
      [this, address](const std::vector<TCodeLine>& lines) { Take(address, lines); });
}

void TDisassemblyPane::Update() {
  if (!FSession.Stopped()) return Mark();
  const std::uint64_t address = FSession.Now().Address();
  const int index = IndexOf(address);
  const bool shown =
      index > 0 && FLines[static_cast<std::size_t>(index)].Instruction.Address == address;
  if (!shown) return GoTo(address);
  if (static_cast<std::size_t>(index) + LinesReady > FLines.size()) ReadOn();
  Mark();
  setCurrentItem(FItems[static_cast<std::size_t>(index)]);
}

void TDisassemblyPane::Take(std::uint64_t address, const std::vector<TCodeLine>& lines) {
  FReading = false;
  if (lines.empty()) return;
  FLines.clear();
  FItems.clear();
  clear();
  Append(lines);
  ScrollTo(IndexOf(address));
}

void TDisassemblyPane::Append(const std::vector<TCodeLine>& lines) {
  QList<QTreeWidgetItem*> items;
  const std::size_t first = FLines.size();
  for (const TCodeLine& line : lines) {
    items += MakeItems(line);
    FLines.push_back(line);
    FItems.push_back(items.back());
  }
  addTopLevelItems(items);
  for (std::size_t i = first; i < FLines.size(); ++i) MarkLine(i);
}

void TDisassemblyPane::Prepend(std::vector<TCodeLine> lines) {
  QList<QTreeWidgetItem*> items;
  std::vector<QTreeWidgetItem*> instructions;
  for (const TCodeLine& line : lines) {
    items += MakeItems(line);
    instructions.push_back(items.back());
  }
  FLines.insert(FLines.begin(), lines.begin(), lines.end());
  FItems.insert(FItems.begin(), instructions.begin(), instructions.end());
  const int top = verticalScrollBar()->value();
  insertTopLevelItems(0, items);
  for (std::size_t i = 0; i < lines.size(); ++i) MarkLine(i);
  // What was at the top stays there.
  doItemsLayout();
  verticalScrollBar()->setValue(top + static_cast<int>(items.size()));
}

// Reads behind the last line, which is read again: what follows it knows its source line by it.
void TDisassemblyPane::ReadOn() {
  if (FReading) return;
  FReading = true;
  const std::uint64_t last = FLines.back().Instruction.Address;
  FSession.Debugger().ReadCode(last, 0, LinesAfter, [this, last](std::vector<TCodeLine> lines) {
    FReading = false;
    if (FLines.empty() || FLines.back().Instruction.Address != last || lines.size() < 2) return;
    lines.erase(lines.begin());
    Append(lines);
  });
}

void TDisassemblyPane::ReadBack() {
  if (FReading) return;
  FReading = true;
  const std::uint64_t first = FLines.front().Instruction.Address;
  FSession.Debugger().ReadCode(first, LinesBefore, 1, [this, first](std::vector<TCodeLine> lines) {
    FReading = false;
    if (FLines.empty() || FLines.front().Instruction.Address != first || lines.size() < 2) return;
    lines.pop_back();
    Prepend(std::move(lines));
  });
}

void TDisassemblyPane::WaitForMore() {
  const std::size_t before = FLines.size();
  ReadOn();
  FPatience =
      FSession.Debugger().WaitUntil([&] { return FLines.size() > before || !FReading; }, FPatience);
}

QList<QTreeWidgetItem*> TDisassemblyPane::MakeItems(const TCodeLine& line) {
  QList<QTreeWidgetItem*> items;
  // Names and source stand on lines of their own above their instruction.
  const auto note = [&](const std::string& text) {
    auto* item =
        items.emplace_back(new QTreeWidgetItem(QStringList{QString(), QString(), ToQString(text)}));
    item->setFlags(Qt::ItemIsEnabled);
    item->setForeground(2, palette().placeholderText());
  };
  if (!line.Label.empty()) note(line.Label + ":");
  if (line.Place) {
    const std::string text = SourceText(line.Place);
    note(fmt::format("{}:{}  {}", ExtractFileName(line.Place.File), line.Place.Line, text));
  }
  items.append(new QTreeWidgetItem(
      QStringList{ToQString(Address(line.Instruction.Address, FSession.Now().Processor)),
                  ToQString(Bytes(line.Instruction.Bytes)), ToQString(line.Instruction.Text)}));
  return items;
}

std::string TDisassemblyPane::SourceText(const TCodePlace& place) {
  auto [entry, fresh] = FSources.try_emplace(place.File);
  if (fresh) {
    std::string text;
    try {
      text = ReadWholeFile(place.File);
    } catch (const Exception&) {
      // A source that is not here is told by its name alone.
    }
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = std::min(text.find('\n', start), text.size());
      entry->second.emplace_back(Trim(std::string_view(text).substr(start, end - start)));
      start = end + 1;
    }
  }
  const auto index = static_cast<std::size_t>(place.Line - 1);
  return index < entry->second.size() ? entry->second[index] : std::string();
}

void TDisassemblyPane::Mark() {
  for (std::size_t i = 0; i < FItems.size(); ++i) MarkLine(i);
}

void TDisassemblyPane::MarkLine(std::size_t index) {
  const TSnapshot& now = FSession.Now();
  const TInstruction& instruction = FLines[index].Instruction;
  QTreeWidgetItem& item = *FItems[index];
  const bool here = FSession.Stopped() && instruction.Address == now.Address();
  const bool stop = FSession.Breakpoints().Find({.Address = instruction.Address}) != nullptr;
  item.setIcon(0, style()->standardIcon(here   ? QStyle::SP_ArrowRight
                                        : stop ? QStyle::SP_DialogNoButton
                                               : QStyle::SP_CustomBase));
  SetBold(&item, here);
  QString goes;
  if (instruction.Target) goes = *instruction.Target < instruction.Address ? "↑" : "↓";
  if (here && instruction.Conditional) {
    const TProcessor& processor = *now.Processor;
    const bool taken =
        processor.Taken(instruction.Bytes, now.FlagBits(), now.Register(processor.Counter));
    goes += taken ? tr(" will be taken") : tr(" will not be taken");
  }
  item.setText(3, goes);
}

void TDisassemblyPane::ScrollTo(int index) {
  if (index < 0) return;
  QTreeWidgetItem* item = FItems[static_cast<std::size_t>(index)];
  setCurrentItem(item);
  scrollToItem(item, QAbstractItemView::PositionAtCenter);
}

void TDisassemblyPane::ReadMore(int scrollValue) {
  const QScrollBar& bar = *verticalScrollBar();
  if (FReading || FLines.empty() || !FSession.Stopped() || bar.maximum() == bar.minimum()) return;
  if (scrollValue == bar.minimum()) ReadBack();
  else if (scrollValue == bar.maximum()) ReadOn();
}

// --- registers

const TTypeInfo& TRegisterPane::ClassInfo() {
  static const TTypeInfo info = Publish<TRegisterPane>("TRegisterPane", TCpuPane::ClassInfo())
                                    .Prop("CurrentRegs", &TRegisterPane::CurrentRegs, nullptr);
  return info;
}

TRegisterPane::TRegisterPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "RegisterView", tr("Registers"),
               tr("F2 or a double click edits the value"), {tr("Register"), tr("Value")}),
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
  }
  FFilling = false;
}

void TRegisterPane::Edited(QTreeWidgetItem* item) {
  if (FFilling) return;
  const TRegisterRow* row = FSession.Now().Processor->FindRegister(FromQString(item->text(0)));
  bool good = false;
  const std::uint64_t value = item->text(1).toULongLong(&good, 16);
  if (good && row != nullptr) return FSession.Debugger().WriteRegister(row->Name, value);
  if (FSession.OnError)
    FSession.OnError(fmt::format("\"{}\" is no hexadecimal number; {} stays as it is",
                                 FromQString(item->text(1)), FromQString(item->text(0))));
  Update();
}

// --- flags

const TTypeInfo& TFlagsPane::ClassInfo() {
  static const TTypeInfo info = Publish<TFlagsPane>("TFlagsPane", TCpuPane::ClassInfo())
                                    .Prop("CurrentFlags", &TFlagsPane::CurrentFlags, nullptr);
  return info;
}

TFlagsPane::TFlagsPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "FlagsView", tr("Flags"),
               tr("Enter or a double click turns a flag"), {tr("Flag"), tr("Value")}),
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
}

void TFlagsPane::Turn(int index) {
  const TProcessor* processor = FSession.Now().Processor;
  if (processor == nullptr || index < 0) return;
  const TFlagRow& row = processor->Flags[static_cast<std::size_t>(index)];
  if (row.Changeable)
    FSession.Debugger().WriteRegister(processor->FlagsRegister,
                                      FSession.Now().FlagBits() ^ (std::uint64_t{1} << row.Bit));
}

// --- memory

const TTypeInfo& TDumpPane::ClassInfo() {
  static const TTypeInfo info = Publish<TDumpPane>("TDumpPane", TCpuPane::ClassInfo());
  return info;
}

TDumpPane::TDumpPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "DumpView", tr("Memory dump"),
               tr("Memory as bytes and as text"), {tr("Address"), tr("Bytes"), tr("Text")}) {}

void TDumpPane::GoTo(std::uint64_t address) {
  FAddress = address;
  FBytes.clear();
  Update();
}

void TDumpPane::Update() {
  if (!FSession.Stopped()) return;
  const TSnapshot& now = FSession.Now();
  if (FAddress == 0 && now.Processor != nullptr)
    FAddress = now.Register(now.Processor->StackPointer);
  FSession.Debugger().ReadMemory(FAddress, DumpSize,
                                 [this](const std::string& bytes) { Take(bytes); });
}

void TDumpPane::Take(const std::string& bytes) {
  clear();
  for (std::size_t at = 0; at < bytes.size(); at += DumpWidth) {
    const std::string part = bytes.substr(at, DumpWidth);
    auto* item =
        new QTreeWidgetItem(this, {ToQString(Address(FAddress + at, FSession.Now().Processor)),
                                   ToQString(Bytes(part)), ToQString(Printable(part))});
    SetBold(item, FBytes.size() == bytes.size() && FBytes.compare(at, DumpWidth, part) != 0);
  }
  FBytes = bytes;
}

// --- the stack

const TTypeInfo& TStackPane::ClassInfo() {
  static const TTypeInfo info = Publish<TStackPane>("TStackPane", TCpuPane::ClassInfo());
  return info;
}

TStackPane::TStackPane(TComponent* owner, QWidget* parent, TDebugSession& session)
    : TCpuPane(owner, parent, session, "StackView", tr("Program stack"),
               tr("The words on the stack, and what they point to"),
               {tr("Address"), tr("Value"), tr("Points to")}) {}

void TStackPane::Update() {
  const TSnapshot& now = FSession.Now();
  if (!FSession.Stopped() || now.Processor == nullptr) return;
  const std::uint64_t address = now.Register(now.Processor->StackPointer);
  const auto width = static_cast<std::size_t>(now.Processor->PointerSize);
  FSession.Debugger().ReadMemory(
      address, StackSize,
      [this, address, width](const std::string& bytes) { Take(address, width, bytes); });
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
    new QTreeWidgetItem(this, {ToQString(Address(address + at, now.Processor)),
                               ToQString(Address(value, now.Processor)), ToQString(points)});
  }
}

}  // namespace wrenfold
