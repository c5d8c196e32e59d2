#include "host/debug/CpuPane.h"

#include <fmt/format.h>

#include <QFileDialog>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPlainTextEdit>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// The window of the suite that collects such text, and the box in it.
constexpr const char* ScanForm = "CPUForm";
constexpr const char* ScanText = "Text";

// Lines that columns are made wide enough for.
constexpr int FittedLines = 400;
constexpr int IconSpace = 22;  // device-independent pixels, with what stands around it

QPlainTextEdit* FindScan() {
  TForm* form = Screen().FindForm(ScanForm);
  return form != nullptr && form->isVisible() ? form->findChild<QPlainTextEdit*>(ScanText)
                                              : nullptr;
}

bool IsNote(const QTreeWidgetItem& item) {
  return !item.flags().testFlag(Qt::ItemIsSelectable);
}

}  // namespace

std::string AddressText(std::uint64_t value, const TProcessor* processor) {
  return IntToHex(value, processor != nullptr ? 2 * processor->PointerSize : 8);
}

std::string BytesText(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) text += fmt::format("{:02X} ", static_cast<unsigned char>(byte));
  if (!text.empty()) text.pop_back();
  return text;
}

const TTypeInfo& TCpuPane::ClassInfo() {
  static const TTypeInfo info = Publish<TCpuPane>("TCpuPane", TControl::ClassInfo());
  return info;
}

TCpuPane::TCpuPane(TComponent* owner, QWidget* parent, TDebugSession& session, const char* name,
                   const QString& title, const QString& tip, TColumns columns)
    : TControlOf(owner, parent),
      FSession(session),
      FColumns(std::move(columns)),
      FMenu(new TPopupMenu(this)) {
  SetName(name);
  setAccessibleName(title);
  setToolTip(tip);
  setColumnCount(static_cast<int>(FColumns.Titles.size()));
  setHeaderLabels(FColumns.Titles);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setFrameShape(QFrame::NoFrame);
  header()->setStretchLastSection(true);
  FMenu->SetName(std::string(name) + "Menu");
  Bind<&TCpuPane::BuildMenu>(FMenu->OnPopup, this);
  SetPopupMenu(FMenu);
}

void TCpuPane::FitColumns() {
  const QFontMetrics metrics(font());
  const int character = metrics.horizontalAdvance('0');
  for (int column = 0; column + 1 < columnCount(); ++column) {
    if (header()->sectionResizeMode(column) == QHeaderView::Fixed) continue;
    qsizetype longest = FColumns.Titles[column].size();
    bool icons = false;
    for (int i = 0; i < std::min(topLevelItemCount(), FittedLines); ++i) {
      const QTreeWidgetItem& item = *topLevelItem(i);
      if (!IsNote(item)) longest = std::max(longest, item.text(column).size());
      icons = icons || !item.icon(column).isNull();
    }
    const int width = static_cast<int>(longest) * character + 2 * character +
                      (icons ? iconSize().width() + IconSpace : 0);
    if (header()->sectionSize(column) < width || !FFitted) header()->resizeSection(column, width);
  }
  FFitted = topLevelItemCount() > 0;
}

// A note belongs to the line below it.
bool TCpuPane::Copied(const QTreeWidgetItem& item) const {
  const QTreeWidgetItem* line = &item;
  for (int i = indexFromItem(&item).row(); line != nullptr && IsNote(*line);)
    line = topLevelItem(++i);
  return line != nullptr && line->isSelected();
}

std::string TCpuPane::CopyText(const TCopyParts& parts) const {
  const bool all = selectedItems().size() < 2;
  std::vector<QStringList> lines;
  std::vector<qsizetype> widths(static_cast<std::size_t>(columnCount()), 0);
  for (int i = 0; i < topLevelItemCount(); ++i) {
    const QTreeWidgetItem& item = *topLevelItem(i);
    if (!all && !Copied(item)) continue;
    QStringList& line = lines.emplace_back();
    if (IsNote(item)) {
      for (int column = 0; column < columnCount(); ++column)
        if (!item.text(column).isEmpty()) line.append(item.text(column));
      continue;
    }
    for (int column = 0; column < columnCount(); ++column) {
      const bool left = (column == FColumns.Address && !parts.Addresses) ||
                        (column == FColumns.Bytes && !parts.Bytes);
      line.append(left ? QString() : item.text(column));
      auto& width = widths[static_cast<std::size_t>(column)];
      width = std::max(width, line.back().size());
    }
  }
  std::string text;
  for (const QStringList& line : lines) {
    QString joined;
    for (qsizetype column = 0; column < line.size(); ++column) {
      const qsizetype width = line.size() == 1 ? 0 : widths[static_cast<std::size_t>(column)];
      if (width > 0 || line.size() == 1) joined += line[column].leftJustified(width) + "  ";
    }
    while (joined.endsWith(' ')) joined.chop(1);
    text += FromQString(joined) + "\r\n";
  }
  return text;
}

bool TCpuPane::ClaimsKey(const QKeyEvent& key) const {
  return key.matches(QKeySequence::Copy) || key.matches(QKeySequence::SelectAll) ||
         (key.key() == Qt::Key_G && key.modifiers() == Qt::ControlModifier);
}

void TCpuPane::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return SetClipboardText(CopyText(FParts));
  if (event->key() == Qt::Key_G && event->modifiers() == Qt::ControlModifier && OnGoTo)
    return OnGoTo();
  TControlOf::keyPressEvent(event);
}

void TCpuPane::SetBold(QTreeWidgetItem* item, bool bold) {
  QFont font = item->treeWidget()->font();
  font.setBold(bold);
  for (int column = 0; column < item->treeWidget()->columnCount(); ++column)
    item->setFont(column, font);
}

void TCpuPane::Refuse(const std::string& message) const {
  if (FSession.OnError) FSession.OnError(message);
}

TMenuItem* TCpuPane::AddMenuItem(const QString& caption, std::function<void()> execute) {
  auto* item = new TMenuItem(FMenu);
  item->SetCaption(FromQString(caption));
  item->Tag = static_cast<std::int32_t>(FCommands.size());
  FCommands.push_back(std::move(execute));
  Bind<&TCpuPane::MenuClick>(item->OnClick, this);
  FMenu->Items()->Add(item);
  return item;
}

void TCpuPane::MenuClick(TObject* sender) {
  // The menu, and with it the command, may be built anew meanwhile.
  const auto command = FCommands.at(static_cast<std::size_t>(static_cast<TMenuItem*>(sender)->Tag));
  if (command) command();
}

void TCpuPane::BuildMenu(TObject*) {
  FMenu->Items()->Clear();
  FCommands.clear();
  AddMenuItem(tr("&Copy"), [this] {
    SetClipboardText(CopyText(FParts));
  })->SetEnabled(topLevelItemCount() > 0);
  AddMenuItem(tr("Copy to &file..."), [this] { SaveText(); });
  AddMenuItem(tr("Copy to the &scan"), [this] { SendToScan(); })->SetEnabled(FindScan() != nullptr);
  const auto part = [this](const QString& caption, bool TCopyParts::*of) {
    AddMenuItem(caption, [this, of] { FParts.*of = !(FParts.*of); })->SetChecked(FParts.*of);
  };
  AddMenuItem("-", nullptr);
  if (FColumns.Address >= 0) part(tr("With &addresses"), &TCopyParts::Addresses);
  if (FColumns.Bytes >= 0) part(tr("With &bytes"), &TCopyParts::Bytes);
  AddMenuItem("-", nullptr);
  AddMenuItem(tr("&Go to..."), [this] {
    if (OnGoTo) OnGoTo();
  });
  const auto pointer =
      currentItem() != nullptr ? PointerOf(*currentItem()) : std::optional<std::uint64_t>();
  if (pointer)
    for (const bool code : {false, true})
      AddMenuItem(code ? tr("Follow in co&de") : tr("Follow in &memory"), [this, pointer, code] {
        if (OnFollow) OnFollow(*pointer, code);
      });
  AddMenuItems(*FMenu);
}

void TCpuPane::SaveText() {
  const QString name = QFileDialog::getSaveFileName(window(), tr("Copy to file"), QString(),
                                                    tr("Texts (*.txt);;All files (*)"));
  if (!name.isEmpty()) SafeWriteFile(FromQString(name), CopyText(FParts));
}

void TCpuPane::SendToScan() {
  if (QPlainTextEdit* scan = FindScan())
    scan->appendPlainText(ToQString(CopyText(FParts)).remove('\r').trimmed());
}

}  // namespace wrenfold
