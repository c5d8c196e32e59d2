// Lists messages with the place that each is about.
#include "host/panels/MessagePanel.h"

#include <QHeaderView>
#include <QTime>
#include <QVBoxLayout>

#include "host/documents/Icons.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr const char* KindIcons[] = {"info", "missing", "error"};
enum TRole { FileRole = Qt::UserRole, LineRole };

}  // namespace

const TTypeInfo& TMessagePanel::ClassInfo() {
  static const TTypeInfo info = Publish<TMessagePanel>("TMessageViewForm", TForm::ClassInfo());
  return info;
}

TMessagePanel::TMessagePanel(TComponent* owner, QWidget* parent)
    : TForm(owner, parent), FList(new QTreeWidget(this)) {
  SetName("MessageViewForm");
  SetCaption("Messages");
  FList->setObjectName("MessageList");
  FList->setAccessibleName(tr("Messages"));
  FList->setToolTip(tr("Double click or Enter opens the place that a message is about"));
  FList->setRootIsDecorated(false);
  FList->setUniformRowHeights(true);
  FList->setFrameShape(QFrame::NoFrame);
  FList->setColumnCount(2);
  FList->setHeaderHidden(true);
  // What is wider than the panel is scrolled to, not cut.
  FList->header()->setStretchLastSection(false);
  FList->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(FList);
  setFocusProxy(FList);
  connect(FList, &QTreeWidget::itemActivated, this,
          [this](QTreeWidgetItem* item) { Guarded(this, [&] { Open(item); }); });

  auto* menu = new TPopupMenu(this);
  menu->SetName("MessageMenu");
  Bind<&TMessagePanel::MenuPopup>(menu->OnPopup, this);
  menu->AttachTo(FList);
  SetPopupMenu(menu);
}

void TMessagePanel::MenuPopup(TObject*) {
  TMenuItem* items = PopupMenu()->Items();
  items->Clear();
  auto* copy = new TMenuItem(PopupMenu());
  copy->SetName("msgCopyAll");
  copy->SetCaption("&Copy all messages");
  Bind<&TMessagePanel::CopyAll>(copy->OnClick, this);
  items->Add(copy);
  auto* clear = new TMenuItem(PopupMenu());
  clear->SetName("msgClear");
  clear->SetCaption("C&lear");
  Bind<&TMessagePanel::ClearAll>(clear->OnClick, this);
  items->Add(clear);
}

void TMessagePanel::CopyAll(TObject*) {
  std::string all;
  for (int i = 0; i < Count(); ++i) all += Text(i) + "\r\n";
  SetClipboardText(all);
}

void TMessagePanel::Add(TMessageKind kind, const std::string& text, const std::string& fileName,
                        int line) {
  auto* item = new QTreeWidgetItem(
      FList, {QTime::currentTime().toString("HH:mm:ss"), ToQString(text).replace("\r\n", " ")});
  item->setIcon(0, WorkbenchIcon(KindIcons[static_cast<int>(kind)]));
  item->setToolTip(1, ToQString(text));
  item->setData(0, FileRole, ToQString(fileName));
  item->setData(0, LineRole, line);
  FList->scrollToItem(item);
  if (kind != TMessageKind::Information && OnTrouble) OnTrouble();
}

int TMessagePanel::AddGroup(const std::string& text) {
  Add(TMessageKind::Information, text);
  QTreeWidgetItem* item = FList->topLevelItem(Count() - 1);
  FList->setRootIsDecorated(true);
  item->setExpanded(true);
  return Count() - 1;
}

// Files stand in the order in which they come; the places of one come together.
void TMessagePanel::AddToGroup(int group, const std::string& fileName, int line,
                               const std::string& text) {
  QTreeWidgetItem* top = FList->topLevelItem(group);
  if (top == nullptr) return;
  QTreeWidgetItem* file = top->child(top->childCount() - 1);
  if (file == nullptr || FromQString(file->data(0, FileRole).toString()) != fileName) {
    file = new QTreeWidgetItem(top, {QString(), ToQString(fileName)});
    file->setData(0, FileRole, ToQString(fileName));
    file->setExpanded(true);
  }
  auto* item = new QTreeWidgetItem(file, {QString::number(line), ToQString(text).trimmed()});
  item->setToolTip(1, ToQString(text));
  item->setData(0, FileRole, ToQString(fileName));
  item->setData(0, LineRole, line);
}

void TMessagePanel::NameGroup(int group, const std::string& text) {
  QTreeWidgetItem* top = FList->topLevelItem(group);
  if (top == nullptr) return;
  top->setText(1, ToQString(text));
  top->setToolTip(1, ToQString(text));
  FList->scrollToItem(top, QAbstractItemView::PositionAtTop);
}

void TMessagePanel::Clear() {
  FList->clear();
}

std::string TMessagePanel::Text(int index) const {
  return FromQString(FList->topLevelItem(index)->toolTip(1));
}

void TMessagePanel::Open(QTreeWidgetItem* item) {
  const std::string fileName = FromQString(item->data(0, FileRole).toString());
  if (!fileName.empty() && OnOpen) OnOpen(fileName, item->data(0, LineRole).toInt());
}

}  // namespace wrenfold
