#include "host/debug/DisassemblyPane.h"

#include <fmt/format.h>

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr std::size_t LinesBefore = 96, LinesAfter = 192;
// So many instructions are held ready behind the current one.
constexpr std::size_t LinesReady = 64;
// Bytes stand last: they are looked at least.
enum TColumn { AddressColumn, JumpColumn, TextColumn, GoesColumn, BytesColumn };
constexpr int LaneCount = 6, LaneWidth = 7;  // device-independent pixels

// Names and source lines are as wide as the pane.
void SpanNotes(const QList<QTreeWidgetItem*>& items) {
  for (QTreeWidgetItem* item : items)
    if (!item->flags().testFlag(Qt::ItemIsSelectable)) item->setFirstColumnSpanned(true);
}

}  // namespace

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
               {.Titles = {tr("Address"), QString(), tr("Instruction"), tr("Goes"), tr("Bytes")},
                .Address = AddressColumn,
                .Bytes = BytesColumn}) {
  header()->setSectionResizeMode(JumpColumn, QHeaderView::Fixed);
  header()->resizeSection(JumpColumn, LaneCount * LaneWidth + 2 * LaneWidth);
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
  return AddressText(line->Instruction.Address, FSession.Now().Processor) + " " +
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
  FitColumns();
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
  SpanNotes(items);
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
  SpanNotes(items);
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
    auto* item = items.emplace_back(new QTreeWidgetItem(QStringList{ToQString(text)}));
    item->setFlags(Qt::ItemIsEnabled);
    item->setForeground(AddressColumn, palette().placeholderText());
  };
  if (!line.Label.empty()) note(line.Label + ":");
  if (line.Place) {
    const std::string text = SourceText(line.Place);
    note(fmt::format("{}:{}  {}", ExtractFileName(line.Place.File), line.Place.Line, text));
  }
  items.append(new QTreeWidgetItem(QStringList{
      ToQString(AddressText(line.Instruction.Address, FSession.Now().Processor)), QString(),
      ToQString(line.Instruction.Text), QString(), ToQString(BytesText(line.Instruction.Bytes))}));
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
  // An icon is never equal to another one for the toolkit, which would draw the line again.
  const int mark = here ? 2 : stop ? 1 : 0;
  if (item.data(AddressColumn, Qt::UserRole) != mark) {
    constexpr QStyle::StandardPixmap icons[] = {QStyle::SP_CustomBase, QStyle::SP_DialogNoButton,
                                                QStyle::SP_ArrowRight};
    item.setData(AddressColumn, Qt::UserRole, mark);
    item.setIcon(AddressColumn, mark == 0 ? QIcon() : style()->standardIcon(icons[mark]));
  }
  SetBold(&item, here);
  QString goes;
  if (instruction.Target) goes = *instruction.Target < instruction.Address ? "↑" : "↓";
  if (here && instruction.Conditional) {
    const TProcessor& processor = *now.Processor;
    const bool taken =
        processor.Taken(instruction.Bytes, now.FlagBits(), now.Register(processor.Counter));
    goes += taken ? tr(" will be taken") : tr(" will not be taken");
  }
  item.setText(GoesColumn, goes);
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

std::optional<std::uint64_t> TDisassemblyPane::PointerOf(const QTreeWidgetItem&) const {
  const TCodeLine* line = SelectedLine();
  return line != nullptr ? line->Instruction.Target : std::nullopt;
}

void TDisassemblyPane::AddMenuItems(TPopupMenu&) {
  const TCodeLine* line = SelectedLine();
  if (line == nullptr) return;
  const std::uint64_t address = line->Instruction.Address;
  AddMenuItem(tr("Toggle brea&kpoint"),
              [this, address] { FSession.ToggleBreakpoint({.Address = address}); });
  AddMenuItem(tr("&Run to here"), [this, address] {
    FSession.Debugger().RunTo({.Address = address});
  })->SetEnabled(FSession.Stopped());
}

// Those that begin or end in the lines that are seen.
std::vector<TJump> TDisassemblyPane::VisibleJumps() const {
  std::vector<TJump> jumps;
  const int bottom = viewport()->height();
  const auto seen = [&](int index) {
    const QRect place = visualItemRect(FItems[static_cast<std::size_t>(index)]);
    return place.bottom() >= 0 && place.top() <= bottom;
  };
  for (int i = 0; i < static_cast<int>(FLines.size()); ++i) {
    const TInstruction& instruction = FLines[static_cast<std::size_t>(i)].Instruction;
    if (!instruction.Jump || !instruction.Target) continue;
    const int to = IndexOf(*instruction.Target);
    const bool held =
        to >= 0 && FLines[static_cast<std::size_t>(to)].Instruction.Address == *instruction.Target;
    if (held && to != i && (seen(i) || seen(to))) jumps.push_back({.From = i, .To = to});
  }
  AssignLanes(jumps, LaneCount);
  return jumps;
}

void TDisassemblyPane::paintEvent(QPaintEvent* event) {
  TCpuPane::paintEvent(event);
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  const int right = columnViewportPosition(JumpColumn) + columnWidth(JumpColumn) - LaneWidth / 2;
  const auto middle = [this](int index) {
    return visualItemRect(FItems[static_cast<std::size_t>(index)]).center().y() + 0.5;
  };
  const TCodeLine* selected = SelectedLine();
  for (const TJump& jump : VisibleJumps()) {
    const bool own = selected == &FLines[static_cast<std::size_t>(jump.From)];
    QColor colour = palette().color(own ? QPalette::Highlight : QPalette::PlaceholderText);
    painter.setPen(QPen(colour, own ? 2 : 1));
    const double lane = right - LaneWidth * (jump.Lane + 1) + 0.5;
    const double from = middle(jump.From), to = middle(jump.To);
    painter.drawPolyline(QPolygonF(
        {QPointF(right, from), QPointF(lane, from), QPointF(lane, to), QPointF(right, to)}));
    painter.setBrush(colour);
    painter.setPen(Qt::NoPen);
    painter.drawPolygon(QPolygonF(
        {QPointF(right + 1, to), QPointF(right - 5, to - 3.5), QPointF(right - 5, to + 3.5)}));
    painter.setBrush(Qt::NoBrush);
  }
}

}  // namespace wrenfold
