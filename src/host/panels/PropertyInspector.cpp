// Lists the stored properties as text and writes edited ones back.
#include "host/panels/PropertyInspector.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "host/documents/Icons.h"
#include "host/panels/FormValues.h"
#include "host/panels/PanelPlace.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// Only values are edited, and only those that stand on one line.
class TValueDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override {
    if (index.column() != 1 || index.data(Qt::UserRole).toBool()) return nullptr;
    return QStyledItemDelegate::createEditor(parent, option, index);
  }
};

// What a value of several lines shows in its row.
QString Summary(const QString& text) {
  if (text.startsWith('{')) return QObject::tr("(binary)");
  if (text.startsWith('<')) return QObject::tr("(collection)");
  return QObject::tr("(list)");
}

void ShowValue(QTreeWidgetItem& item, std::string_view value) {
  QString text;
  try {
    text = ToQString(FormValueText(value));
  } catch (const Exception& e) {
    text = ToQString(e.Message());
  }
  const bool severalLines = text.contains('\n');
  item.setText(1, severalLines ? Summary(text) : text);
  item.setData(1, Qt::UserRole, severalLines);
  item.setToolTip(1, text.left(2000));
}

}  // namespace

const TTypeInfo& TPropertyInspector::ClassInfo() {
  static const TTypeInfo info =
      Publish<TPropertyInspector>("TPropertyInspector", TForm::ClassInfo());
  return info;
}

TPropertyInspector::TPropertyInspector(TComponent* owner, QWidget* parent)
    : TForm(owner, parent), FComponents(new QComboBox(this)), FGrid(new QTreeWidget(this)) {
  SetName("PropertyInspector");
  SetCaption("Object Inspector");
  FComponents->setObjectName("ComponentList");
  FComponents->setAccessibleName(tr("Component"));
  FComponents->setToolTip(tr("The component whose properties are shown"));
  FComponents->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  FGrid->setObjectName("PropertyGrid");
  FGrid->setAccessibleName(tr("Properties"));
  FGrid->setToolTip(tr("Stored properties; F2 or a double click edits a value"));
  FGrid->setColumnCount(2);
  FGrid->setHeaderLabels({tr("Property"), tr("Value")});
  FGrid->setRootIsDecorated(false);
  FGrid->setUniformRowHeights(true);
  FGrid->setAlternatingRowColors(true);
  FGrid->setFrameShape(QFrame::NoFrame);
  FGrid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  FGrid->setItemDelegate(new TValueDelegate(FGrid));
  FGrid->header()->resizeSection(0, 110);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 4, 0, 0);
  column->setSpacing(4);
  auto* place = new TPanelPlace(this, this);
  place->SetName(InspectorTopPlace);
  column->addWidget(place);
  auto* row = new QVBoxLayout;
  row->setContentsMargins(4, 0, 4, 0);
  row->addWidget(FComponents);
  column->addLayout(row);
  column->addWidget(FGrid);
  setFocusProxy(FGrid);
  connect(FComponents, &QComboBox::activated, this,
          [this](int index) { Guarded(this, [&] { ComponentChosen(index); }); });
  connect(FGrid, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int index) {
    Guarded(this, [&] { ValueEdited(item, index); });
  });

  auto* menu = new TPopupMenu(this);
  menu->SetName("LocalMenu");
  Bind<&TPropertyInspector::MenuPopup>(menu->OnPopup, this);
  SetPopupMenu(menu);
  menu->AttachTo(FGrid);
  const auto add = [menu](const char* name, const char* caption) {
    auto* item = new TMenuItem(menu);
    item->SetName(name);
    item->SetCaption(caption);
    menu->Items()->Add(item);
    return item;
  };
  Bind<&TPropertyInspector::CopyValue>(add("piCopyValue", "&Copy value")->OnClick, this);
  Bind<&TPropertyInspector::ShowDesigner>(add("piShowForm", "&View form")->OnClick, this);
  ShowForm(nullptr);
}

void TPropertyInspector::ShowForm(TFormEditor* editor) {
  FEditor = editor;
  FillComponents();
  FillGrid();
}

void TPropertyInspector::FillComponents() {
  FComponents->clear();
  const TFormDocument* document = FEditor != nullptr ? FEditor->Document() : nullptr;
  FComponents->setEnabled(document != nullptr);
  if (document == nullptr) return;
  const auto add = [this](const TComponent& component) {
    FComponents->addItem(WorkbenchIcon("component"),
                         ToQString(component.Name() + ": " + component.ClassName()));
  };
  add(document->Root());
  for (const TComponent* component : document->Root().Components()) add(*component);
  const auto selected = FEditor->Designer().GetSelections();
  if (selected.empty() || selected[0] == &document->Root()) return;
  FComponents->setCurrentIndex(selected[0]->ComponentIndex() + 1);
}

TDesignComponent* TPropertyInspector::Chosen() const {
  const int index = FComponents->currentIndex();
  TFormDocument* document = FEditor != nullptr ? FEditor->Document() : nullptr;
  if (document == nullptr || index < 0) return nullptr;
  if (index == 0) return &document->Root();
  return dynamic_cast<TDesignComponent*>(document->Root().Components()[index - 1]);
}

void TPropertyInspector::FillGrid() {
  FFilling = true;
  FGrid->clear();
  if (const TDesignComponent* component = Chosen()) {
    for (const TDesignProperty& property : component->Properties()) {
      auto* item = new QTreeWidgetItem(FGrid, {ToQString(property.Path)});
      item->setFlags(item->flags() | Qt::ItemIsEditable);
      ShowValue(*item, property.Value);
    }
  }
  FFilling = false;
}

void TPropertyInspector::ComponentChosen(int) {
  if (TDesignComponent* component = Chosen()) FEditor->Designer().SelectComponent(component);
  FillGrid();
}

void TPropertyInspector::ValueEdited(QTreeWidgetItem* item, int column) {
  TDesignComponent* component = Chosen();
  if (FFilling || column != 1 || component == nullptr) return;
  FFilling = true;
  const std::string path = FromQString(item->text(0));
  std::string trouble;
  try {
    const std::string_view old = component->FindValue(path);
    const std::string value = FormValueFromText(FromQString(item->text(1)), old);
    if (value != old) {
      component->SetValue(path, value);
      FEditor->MarkModified();
    }
  } catch (const Exception& e) {
    trouble = e.Message();
  }
  ShowValue(*item, component->FindValue(path));
  FFilling = false;
  if (!trouble.empty()) MessageDlg(trouble, mtError, {mbOK});
}

void TPropertyInspector::MenuPopup(TObject*) {
  for (TMenuItem* item : PopupMenu()->Items()->Items()) {
    if (item->Name() == "piCopyValue") item->SetEnabled(FGrid->currentItem() != nullptr);
    if (item->Name() == "piShowForm") item->SetEnabled(FEditor != nullptr);
  }
}

void TPropertyInspector::CopyValue(TObject*) {
  const QTreeWidgetItem* item = FGrid->currentItem();
  const TDesignComponent* component = Chosen();
  if (item == nullptr || component == nullptr) return;
  SetClipboardText(FormValueText(component->FindValue(FromQString(item->text(0)))));
}

void TPropertyInspector::ShowDesigner(TObject*) {
  if (FEditor != nullptr) FEditor->Show();
}

}  // namespace wrenfold
