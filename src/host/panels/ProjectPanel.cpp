// Fills the project tree and opens what is chosen in it.
#include "host/panels/ProjectPanel.h"

#include <QApplication>
#include <QHeaderView>
#include <QVBoxLayout>

#include "host/documents/Icons.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

enum TRole { FileRole = Qt::UserRole, CaptionRole, UnreadRole };

const char* IconOf(const TProjectModule& module) {
  if (module.State == TModuleState::Missing) return "missing";
  if (module.FormName.empty()) return "unit";
  if (EqualText(module.DesignClass, "TDataModule")) return "data";
  return EqualText(module.DesignClass, "TFrame") ? "frame" : "form";
}

QTreeWidgetItem* MakeItem(const std::string& text, const char* icon, const std::string& fileName) {
  auto* item = new QTreeWidgetItem({ToQString(text)});
  item->setIcon(0, WorkbenchIcon(icon));
  item->setToolTip(0, ToQString(fileName));
  item->setData(0, FileRole, ToQString(fileName));
  return item;
}

QTreeWidgetItem* MakeModuleItem(const TProjectModule& module) {
  QTreeWidgetItem* item = MakeItem(module.UnitName, IconOf(module), module.FileName);
  if (module.State == TModuleState::Missing) {
    item->setToolTip(0, ToQString(module.Message));
    item->setForeground(0, QApplication::palette().brush(QPalette::Disabled, QPalette::Text));
    item->setText(0, ToQString(module.UnitName + " (missing)"));
  } else if (!module.FormName.empty()) {
    item->setText(0, ToQString(module.UnitName + "  \xE2\x80\x93  " + module.FormName));
  }
  return item;
}

QTreeWidgetItem* MakeGroup(const QString& caption, const std::vector<std::string>& names,
                           const char* icon) {
  auto* group = new QTreeWidgetItem({caption});
  for (const std::string& name : names)
    group->addChild(MakeItem(ExtractFileName(name), icon, name));
  return group;
}

void AddModules(const TProject& project, QTreeWidgetItem* root) {
  QList<QTreeWidgetItem*> items;
  items.reserve(static_cast<qsizetype>(project.Modules().size()));
  for (const TProjectModule& module : project.Modules()) items.append(MakeModuleItem(module));
  root->addChildren(items);
}

// Projects are called by the file that one opens.
QTreeWidgetItem* MakeProjectItem(const TProject& project) {
  const std::string described = project.DescriptionName();
  const std::string& name = described.empty() ? project.FileName() : described;
  QTreeWidgetItem* root = MakeItem(ExtractFileName(name), "project", project.FileName());
  AddModules(project, root);
  if (!project.Requires().empty())
    root->addChild(
        MakeGroup(TProjectPanel::tr("Required packages"), project.Requires(), "package"));
  std::vector<std::string> files;
  for (const std::string& file : project.Description().OtherFiles)
    files.push_back(ResolveFileName(ExtractFilePath(described), file));
  if (!files.empty()) root->addChild(MakeGroup(TProjectPanel::tr("Other files"), files, "unit"));
  if (const auto resources = project.ResourceFiles(); !resources.empty())
    root->addChild(MakeGroup(TProjectPanel::tr("Resources"), resources, "resource"));
  return root;
}

}  // namespace

const TTypeInfo& TProjectPanel::ClassInfo() {
  static const TTypeInfo info = Publish<TProjectPanel>("TProjectManagerForm", TForm::ClassInfo());
  return info;
}

TProjectPanel::TProjectPanel(TComponent* owner, QWidget* parent)
    : TForm(owner, parent), FFilter(new QLineEdit(this)), FTree(new QTreeWidget(this)) {
  SetName("ProjectManagerForm");
  SetCaption("Project");
  FFilter->setObjectName("ProjectFilter");
  FFilter->setPlaceholderText(tr("Filter units"));
  FFilter->setAccessibleName(tr("Filter units"));
  FFilter->setToolTip(tr("Shows the units whose name contains this text"));
  FFilter->setClearButtonEnabled(true);
  FTree->setObjectName("ProjectTree");
  FTree->setAccessibleName(tr("Project"));
  FTree->setToolTip(tr("The project's units and files; Enter or a double click opens"));
  FTree->setHeaderHidden(true);
  FTree->setUniformRowHeights(true);
  // What is wider than the panel is scrolled to, not cut.
  FTree->header()->setStretchLastSection(false);
  FTree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  FTree->setFrameShape(QFrame::NoFrame);
  FTree->setSelectionMode(QAbstractItemView::ExtendedSelection);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 4, 0, 0);
  column->setSpacing(4);
  auto* filterRow = new QVBoxLayout;
  filterRow->setContentsMargins(4, 0, 4, 0);
  filterRow->addWidget(FFilter);
  column->addLayout(filterRow);
  column->addWidget(FTree);
  setFocusProxy(FTree);
  connect(FFilter, &QLineEdit::textChanged, this, &TProjectPanel::FilterChanged);
  connect(FTree, &QTreeWidget::itemActivated, this,
          [this](QTreeWidgetItem* item) { Guarded(this, [&] { OpenItem(item); }); });

  connect(FTree, &QTreeWidget::itemExpanded, this,
          [this](QTreeWidgetItem* item) { Guarded(this, [&] { ListUnits(item); }); });

  auto* menu = new TPopupMenu(this);
  menu->SetName("ProjectMenu");
  Bind<&TProjectPanel::MenuPopup>(menu->OnPopup, this);
  menu->AttachTo(FTree);
  SetPopupMenu(menu);
}

void TProjectPanel::ShowProject(const TProject* project, const std::string& group,
                                const std::vector<std::string>& projects) {
  FRoot = nullptr;
  FTree->clear();
  FFilter->setEnabled(project != nullptr);
  if (project == nullptr) return;
  FRoot = MakeProjectItem(*project);
  QFont bold = FTree->font();
  bold.setBold(true);
  FRoot->setFont(0, bold);
  if (group.empty()) {
    FTree->addTopLevelItem(FRoot);
  } else {
    QTreeWidgetItem* top = MakeItem(ExtractFileName(group), "project", group);
    FTree->addTopLevelItem(top);
    for (const std::string& name : projects) {
      const bool open = name == project->FileName() || name == project->DescriptionName();
      QTreeWidgetItem* item = open ? FRoot : MakeItem(ExtractFileName(name), "project", name);
      if (!open) {
        item->setData(0, UnreadRole, true);
        item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
      }
      top->addChild(item);
    }
    top->setExpanded(true);
  }
  FRoot->setExpanded(true);
  FilterChanged(FFilter->text());
}

// The units of a project that is not the open one.
void TProjectPanel::ListUnits(QTreeWidgetItem* project) {
  if (!project->data(0, UnreadRole).toBool()) return;
  project->setData(0, UnreadRole, false);
  project->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
  try {
    const auto read = TProject::Open(FromQString(project->data(0, FileRole).toString()));
    AddModules(*read, project);
  } catch (const Exception& e) {
    project->setToolTip(0, ToQString(e.Message()));
    project->setIcon(0, WorkbenchIcon("missing"));
  }
}

void TProjectPanel::ShowModified(const std::string& fileName, bool modified) {
  QTreeWidgetItem* root = FRoot;
  if (root == nullptr) return;
  const auto mark = [&](QTreeWidgetItem* item) {
    if (item->data(0, FileRole).toString() != ToQString(fileName)) return false;
    const QVariant kept = item->data(0, CaptionRole);
    const QString caption = kept.isValid() ? kept.toString() : item->text(0);
    item->setData(0, CaptionRole, caption);
    item->setText(0, modified ? caption + " *" : caption);
    return true;
  };
  if (mark(root)) return;
  for (int i = 0; i < root->childCount(); ++i)
    if (mark(root->child(i))) return;
}

void TProjectPanel::FilterChanged(const QString& text) {
  QTreeWidgetItem* root = FRoot;
  if (root == nullptr) return;
  for (int i = 0; i < root->childCount(); ++i) {
    QTreeWidgetItem* item = root->child(i);
    item->setHidden(!item->text(0).contains(text, Qt::CaseInsensitive));
  }
}

void TProjectPanel::OpenItem(QTreeWidgetItem* item) {
  const std::string fileName = FromQString(item->data(0, FileRole).toString());
  if (!fileName.empty() && OnOpen) OnOpen(fileName);
}

void TProjectPanel::OpenSelected(TObject*) {
  for (QTreeWidgetItem* item : FTree->selectedItems()) OpenItem(item);
}

void TProjectPanel::CopyPath(TObject*) {
  std::string paths;
  for (const QTreeWidgetItem* item : FTree->selectedItems()) {
    if (!paths.empty()) paths += "\r\n";
    paths += FromQString(item->data(0, FileRole).toString());
  }
  SetClipboardText(paths);
}

void TProjectPanel::MenuPopup(TObject*) {
  TMenuItem* items = PopupMenu()->Items();
  items->Clear();
  const bool chosen = !FTree->selectedItems().isEmpty();
  const auto add = [&](const char* name, const char* caption) {
    auto* item = new TMenuItem(PopupMenu());
    item->SetName(name);
    item->SetCaption(caption);
    item->SetEnabled(chosen);
    items->Add(item);
    return item;
  };
  Bind<&TProjectPanel::OpenSelected>(add("pmOpen", "&Open")->OnClick, this);
  Bind<&TProjectPanel::CopyPath>(add("pmCopyPath", "&Copy file name")->OnClick, this);
}

}  // namespace wrenfold
