#include "host/debug/WatchPanel.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "host/debug/VariableTree.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TWatchPanel::ClassInfo() {
  static const TTypeInfo info = Publish<TWatchPanel>("TWatchesForm", TForm::ClassInfo());
  return info;
}

TWatchPanel::TWatchPanel(TComponent* owner, QWidget* parent)
    : TForm(owner, parent), FNew(new QLineEdit(this)) {
  SetName("WatchesForm");
  SetCaption("Watches");
  FNew->setObjectName("NewWatch");
  FNew->setAccessibleName(tr("New watch"));
  FNew->setPlaceholderText(tr("Expression to watch, added with Enter"));
  FNew->setToolTip(tr("An expression in the language of the source"));
  FList = MakeValueTree(this, "Watches", tr("Watches"), tr("F2 edits the expression, Del removes"),
                        {tr("Expression"), tr("Value"), tr("Type")});
  FList->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::DoubleClicked);
  FList->installEventFilter(this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(FNew);
  column->addWidget(FList, 1);
  setFocusProxy(FNew);
  connect(FNew, &QLineEdit::returnPressed, this, [this] {
    Guarded(this, [&] {
      const QString text = FNew->text().simplified();
      FNew->clear();
      if (!text.isEmpty()) Add(FromQString(text));
    });
  });
  connect(FList, &QTreeWidget::itemChanged, this,
          [this](QTreeWidgetItem* item, int at) { Guarded(this, [&] { Edited(item, at); }); });
}

void TWatchPanel::Serve(TDebugSession& session) {
  FSession = &session;
  session.Listen([this] { Update(); });
}

std::vector<std::string> TWatchPanel::Expressions() const {
  std::vector<std::string> expressions;
  for (int i = 0; i < FList->topLevelItemCount(); ++i)
    expressions.push_back(FromQString(FList->topLevelItem(i)->text(0)));
  return expressions;
}

void TWatchPanel::SetExpressions(const std::vector<std::string>& expressions) {
  FList->clear();
  for (const std::string& expression : expressions) AddItem(expression);
  Update();
}

void TWatchPanel::AddItem(const std::string& expression) {
  FFilling = true;
  auto* item = new QTreeWidgetItem(FList, {ToQString(expression)});
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  FFilling = false;
}

void TWatchPanel::Add(const std::string& expression) {
  AddItem(expression);
  Ask(FList->topLevelItemCount() - 1);
  Changed();
}

void TWatchPanel::Changed() {
  if (OnChange) OnChange();
}

void TWatchPanel::Update() {
  for (int i = 0; i < FList->topLevelItemCount(); ++i) Ask(i);
}

void TWatchPanel::Ask(int index) {
  const std::string expression = FromQString(FList->topLevelItem(index)->text(0));
  if (!FSession->Stopped()) return ShowValue(index, {.Name = expression});
  FSession->Debugger().Evaluate(expression, [this, index, expression](const TVariable& value) {
    // The list may be another one by now.
    const QTreeWidgetItem* item = FList->topLevelItem(index);
    if (item != nullptr && FromQString(item->text(0)) == expression) ShowValue(index, value);
  });
}

void TWatchPanel::ShowValue(int index, const TVariable& value) {
  FFilling = true;
  QTreeWidgetItem& item = *FList->topLevelItem(index);
  const bool changed = !item.text(1).isEmpty() && !value.Value.empty() &&
                       item.text(1) != ToQString(value.Value).simplified();
  ShowVariable(item, value);
  QFont font = FList->font();
  font.setBold(changed);
  item.setFont(1, font);
  FFilling = false;
}

void TWatchPanel::Edited(QTreeWidgetItem* item, int column) {
  const int index = FList->indexOfTopLevelItem(item);
  if (FFilling || index < 0 || column != 0) return;
  Ask(index);
  Changed();
}

bool TWatchPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress ||
      static_cast<QKeyEvent*>(event)->key() != Qt::Key_Delete || FList->currentItem() == nullptr)
    return TForm::eventFilter(watched, event);
  QTreeWidgetItem* item = FList->currentItem();
  while (item->parent() != nullptr) item = item->parent();
  delete item;
  Changed();
  return true;
}

}  // namespace wrenfold
