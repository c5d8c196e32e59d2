// Shows a designed form until forms are drawn as their program would.
#include "host/forms/DesignerForm.h"

#include <QFontDatabase>
#include <QSplitter>
#include <QVBoxLayout>

#include "host/documents/Icons.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TDesignerForm::ClassInfo() {
  static const TTypeInfo info = Publish<TDesignerForm>("TDesignerForm", TForm::ClassInfo());
  return info;
}

TDesignerForm::TDesignerForm(TComponent* owner, TFormEditor& editor)
    : TForm(owner), FEditor(editor), FTree(new QTreeWidget), FText(new QPlainTextEdit) {
  FTree->setObjectName("ComponentTree");
  FTree->setAccessibleName(tr("Components"));
  FTree->setToolTip(tr("The components of the form; choosing one shows its properties"));
  FTree->setHeaderHidden(true);
  FText->setObjectName("FormText");
  FText->setAccessibleName(tr("Form as text"));
  FText->setToolTip(tr("The form file in its text form"));
  FText->setReadOnly(true);
  FText->setLineWrapMode(QPlainTextEdit::NoWrap);
  FText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* splitter = new QSplitter;
  splitter->addWidget(FTree);
  splitter->addWidget(FText);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({200, 420});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(4, 4, 4, 4);
  column->addWidget(splitter);
  resize(640, 420);
  setWindowIcon(WorkbenchIcon("form"));
  connect(FTree, &QTreeWidget::itemSelectionChanged, this,
          [this] { Guarded(this, [&] { ItemSelected(); }); });
  Update();
}

void TDesignerForm::Update() {
  const TFormDocument* document = FEditor.Document();
  FFollowing = true;
  FTree->clear();
  if (document != nullptr) {
    SetCaption(document->Root().Name() + (document->Modified() ? " *" : ""));
    FText->setPlainText(ToQString(document->Text()));
    auto* root = new QTreeWidgetItem(FTree);
    AddItems(root, document->Root());
    FTree->expandAll();
  }
  FFollowing = false;
  ShowSelection();
}

void TDesignerForm::AddItems(QTreeWidgetItem* parent, const TDesignComponent& component) {
  parent->setText(0, ToQString(component.Name() + ": " + component.ClassName()));
  parent->setIcon(0, WorkbenchIcon("component"));
  parent->setData(0, Qt::UserRole, ToQString(component.Name()));
  for (const TDesignComponent* child : component.Children())
    AddItems(new QTreeWidgetItem(parent), *child);
}

void TDesignerForm::ShowSelection() {
  const auto selected = FEditor.Designer().GetSelections();
  if (selected.empty() || FFollowing) return;
  FFollowing = true;
  const QString name = ToQString(selected[0]->Name());
  for (QTreeWidgetItemIterator at(FTree); *at != nullptr; ++at)
    if ((*at)->data(0, Qt::UserRole).toString() == name) FTree->setCurrentItem(*at);
  FFollowing = false;
}

void TDesignerForm::ItemSelected() {
  const QTreeWidgetItem* item = FTree->currentItem();
  TFormDocument* document = FEditor.Document();
  if (FFollowing || item == nullptr || document == nullptr) return;
  FFollowing = true;
  TComponent* component = &document->Root();
  if (item->parent() != nullptr)
    component = component->FindComponent(FromQString(item->data(0, Qt::UserRole).toString()));
  if (component != nullptr) FEditor.Designer().SelectComponent(component);
  FFollowing = false;
}

}  // namespace wrenfold
