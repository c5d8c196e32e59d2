#include "host/forms/DesignerForm.h"

#include <fmt/format.h>

#include <QAction>
#include <QFontDatabase>
#include <QMenu>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>

#include "designer/model/ComponentText.h"
#include "designer/model/FileForms.h"
#include "host/documents/Icons.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// The forms of the project that has the module, or of the form's folder. Ancestors of classes are
// asked of the workbench, which knows the texts of its editors.
class TModuleForms final : public TFormCatalog {
 public:
  explicit TModuleForms(TFormEditor& editor) : FEditor(editor), FFiles(FilesOf(editor)) {}

  std::vector<std::string> Ancestors(std::string_view className) override {
    TModule* module = FEditor.Module();
    if (module == nullptr) return {};
    auto chain = FEditor.Host().ClassChain(*module, std::string(className));
    if (!chain.empty()) chain.erase(chain.begin());
    return chain.empty() ? FFiles->Ancestors(className) : chain;
  }
  const TDesignComponent* FindForm(std::string_view className) override {
    return FFiles->FindForm(className);
  }

 private:
  static std::unique_ptr<TFileForms> FilesOf(TFormEditor& editor) {
    try {
      if (const TModule* module = editor.Module(); module != nullptr && !module->Owners.empty())
        return TFileForms::OfProject(module->Owners.front()->GetFileName());
    } catch (const Exception&) {
      // The project's source cannot be read just now: the folder has to do.
    }
    return TFileForms::OfFolder(std::filesystem::path(editor.FileName()).parent_path().string());
  }

  TFormEditor& FEditor;
  std::unique_ptr<TFileForms> FFiles;
};

// A command of the local menu; a row without a method is a line between groups.
struct TCommandRow {
  const char* Name;
  const char* Caption;
  QKeySequence Keys;
  void (*Run)(TDesignerForm& form);
  QKeySequence OtherKeys = {};
};

template <TArrangement arrangement>
void RunArrangement(TDesignerForm& form) {
  form.ArrangeComponents(arrangement);
}

template <void (TDesignerForm::*command)()>
void RunCommand(TDesignerForm& form) {
  (form.*command)();
}

const std::vector<TCommandRow>& Commands() {
  using A = TArrangement;
  using F = TDesignerForm;
  static const std::vector<TCommandRow> commands = {
      {"dsUndo", "&Undo", QKeySequence::Undo, RunCommand<&F::Undo>},
      {"dsRedo", "&Redo", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), RunCommand<&F::Redo>,
       QKeySequence(Qt::CTRL | Qt::Key_Y)},
      {nullptr, nullptr, {}, nullptr},
      {"dsCut", "Cu&t", QKeySequence::Cut, RunCommand<&F::CutComponents>},
      {"dsCopy", "&Copy", QKeySequence::Copy, RunCommand<&F::CopyComponents>},
      {"dsPaste", "&Paste", QKeySequence::Paste, RunCommand<&F::PasteComponents>},
      {"dsDelete", "&Delete", QKeySequence(Qt::Key_Delete), RunCommand<&F::DeleteComponents>},
      {"dsSelectAll", "Select &all", QKeySequence::SelectAll, RunCommand<&F::SelectAllComponents>},
      {nullptr, nullptr, {}, nullptr},
      {"dsLefts", "Align &left edges", {}, RunArrangement<A::Lefts>},
      {"dsCentres", "Align centres", {}, RunArrangement<A::Centres>},
      {"dsRights", "Align right edges", {}, RunArrangement<A::Rights>},
      {"dsTops", "Align top &edges", {}, RunArrangement<A::Tops>},
      {"dsMiddles", "Align middles", {}, RunArrangement<A::Middles>},
      {"dsBottoms", "Align &bottom edges", {}, RunArrangement<A::Bottoms>},
      {"dsSpaceAcross", "Space equally ac&ross", {}, RunArrangement<A::SpaceAcross>},
      {"dsSpaceDown", "Space equally do&wn", {}, RunArrangement<A::SpaceDown>},
      {"dsSameWidth", "Same widt&h", {}, RunArrangement<A::SameWidth>},
      {"dsSameHeight", "Same hei&ght", {}, RunArrangement<A::SameHeight>},
      {nullptr, nullptr, {}, nullptr},
      {"dsFront", "Bring to &front", {}, RunCommand<&F::BringComponentsToFront>},
      {"dsBack", "Send to bac&k", {}, RunCommand<&F::SendComponentsToBack>},
      {nullptr, nullptr, {}, nullptr},
      {"dsFit", "F&it into window", QKeySequence(Qt::CTRL | Qt::Key_9),
       RunCommand<&F::FitIntoWindow>},
      {"dsOwnSize", "Own si&ze", QKeySequence(Qt::CTRL | Qt::Key_0), RunCommand<&F::ShowOwnSize>},
  };
  return commands;
}

// Components that others can be put into.
bool HoldsOthers(const TDesignNode& node) {
  switch (node.Look()) {
    case TLook::Form:
    case TLook::Frame:
    case TLook::DataModule:
    case TLook::Panel:
    case TLook::GroupBox:
    case TLook::ScrollBox:
    case TLook::Page:
    case TLook::ToolBar:
      return true;
    default:
      return false;
  }
}

constexpr int PasteOffset = 8;

}  // namespace

const TTypeInfo& TDesignerForm::ClassInfo() {
  static const TTypeInfo info = Publish<TDesignerForm>("TDesignerForm", TForm::ClassInfo());
  return info;
}

TDesignerForm::TDesignerForm(TComponent* owner, TFormEditor& editor)
    : TForm(owner),
      FEditor(editor),
      FCatalog(std::make_unique<TModuleForms>(editor)),
      FTree(new QTreeWidget),
      FTabs(new QTabWidget),
      FScroll(new QScrollArea),
      FSurface(new TDesignSurface),
      FText(new QPlainTextEdit),
      FState(new QLabel) {
  FTree->setObjectName("ComponentTree");
  FTree->setAccessibleName(tr("Components"));
  FTree->setToolTip(tr("The components of the form; choosing one shows its properties"));
  FTree->setHeaderHidden(true);
  auto* splitter = new QSplitter;
  splitter->addWidget(FTree);
  AddTabs(*splitter);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({190, 610});
  FState->setObjectName("DesignerState");
  FState->setTextInteractionFlags(Qt::TextSelectableByMouse);
  FState->setAccessibleName(tr("Place and size"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(4, 4, 4, 4);
  column->addWidget(splitter, 1);
  column->addWidget(FState);
  resize(820, 560);
  setWindowIcon(WorkbenchIcon("form"));
  connect(FTree, &QTreeWidget::itemSelectionChanged, this,
          [this] { Guarded(this, [&] { ItemSelected(); }); });
  connect(FTabs, &QTabWidget::currentChanged, this, [this] { Guarded(this, [&] { ShowText(); }); });
  FSurface->OnSelect = [this](const TComponentList& selection) {
    Guarded(this, [&] { Select(selection); });
  };
  FSurface->OnBounds = [this](const std::string& step, const std::vector<TBoundsChange>& changes) {
    Guarded(this, [&] { StoreChanges(step, changes); });
  };
  AddCommands();
  Update();
  // The tree would choose its first row when it gets the focus.
  FSurface->setFocus();
}

TDesignerForm::~TDesignerForm() = default;

void TDesignerForm::AddTabs(QSplitter& splitter) {
  FTabs->setObjectName("DesignerTabs");
  FTabs->setDocumentMode(true);
  FScroll->setWidget(FSurface);
  FScroll->setFrameShape(QFrame::NoFrame);
  FScroll->setFocusProxy(FSurface);
  FText->setObjectName("FormText");
  FText->setAccessibleName(tr("Form as text"));
  FText->setToolTip(tr("The form file in its text form"));
  FText->setReadOnly(true);
  FText->setLineWrapMode(QPlainTextEdit::NoWrap);
  FText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  FTabs->addTab(FScroll, tr("&Form"));
  FTabs->addTab(FText, tr("&Text"));
  splitter.addWidget(FTabs);
}

void TDesignerForm::AddCommands() {
  auto* menu = new QMenu(this);
  menu->setObjectName("DesignerMenu");
  for (const TCommandRow& row : Commands()) {
    if (row.Run == nullptr) {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(tr(row.Caption));
    action->setObjectName(row.Name);
    action->setShortcuts({row.Keys, row.OtherKeys});
    action->setShortcutContext(Qt::WidgetShortcut);
    FSurface->addAction(action);
    connect(action, &QAction::triggered, this,
            [this, run = row.Run] { Guarded(this, [&] { run(*this); }); });
  }
  FScroll->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(FScroll, &QWidget::customContextMenuRequested, this,
          [this, menu](const QPoint& place) { menu->popup(FScroll->mapToGlobal(place)); });
}

void TDesignerForm::Update() {
  TFormDocument* document = FEditor.Document();
  FFollowing = true;
  FTree->clear();
  if (document == nullptr) {
    FShown = nullptr;
    FSurface->ShowForm(nullptr, nullptr);
  } else {
    SetCaption(document->Root().Name() + (document->Modified() ? " *" : ""));
    auto* root = new QTreeWidgetItem(FTree);
    AddItems(root, document->Root());
    FTree->expandAll();
    if (document == FShown) FSurface->Refresh();
    else FSurface->ShowForm(&document->Root(), FCatalog.get());
    FShown = document;
  }
  FFollowing = false;
  ShowText();
  if (LostSelection()) TellSelection();
  ShowSelection();
}

// Whether a selected component is in the form no more.
bool TDesignerForm::LostSelection() const {
  const TFormDocument* document = FEditor.LoadedDocument();
  return std::ranges::any_of(FEditor.Designer().GetSelections(), [&](const TComponent* each) {
    return document == nullptr || (each != &document->Root() && each->Owner() != &document->Root());
  });
}

void TDesignerForm::AddItems(QTreeWidgetItem* parent, const TDesignComponent& component) {
  parent->setText(0, ToQString(component.Name() + ": " + component.ClassName()));
  parent->setIcon(0, WorkbenchIcon("component"));
  parent->setData(0, Qt::UserRole, ToQString(component.Name()));
  for (const TDesignComponent* child : component.Children())
    AddItems(new QTreeWidgetItem(parent), *child);
}

// The text is rendered only while it is looked at.
void TDesignerForm::ShowText() {
  const TFormDocument* document = FEditor.Document();
  if (FTabs->currentWidget() != FText) return;
  const QString text = document != nullptr ? ToQString(document->Text()) : QString();
  if (FText->toPlainText() != text) FText->setPlainText(text);
  MarkLines();
}

void TDesignerForm::MarkLines() {
  const TFormDocument* document = FEditor.Document();
  const auto selected = Selected(true);
  QList<QTextEdit::ExtraSelection> marks;
  if (document != nullptr && !selected.empty() && selected[0] != &document->Root()) {
    std::vector<TFormSpans::TPlace> places;
    const std::string text = document->Text(&places);
    const auto place = std::ranges::find(places, selected[0], &TFormSpans::TPlace::Component);
    if (place != places.end()) {
      const auto line = [&](std::size_t at) {
        return static_cast<int>(std::ranges::count(text.substr(0, at), '\n'));
      };
      QTextEdit::ExtraSelection mark;
      mark.format.setBackground(palette().color(QPalette::Highlight).lighter(170));
      mark.format.setForeground(Qt::black);
      mark.cursor = QTextCursor(FText->document()->findBlockByNumber(line(place->Text.Begin)));
      const QTextBlock last = FText->document()->findBlockByNumber(line(place->Text.End));
      mark.cursor.setPosition(last.position() + last.length() - 1, QTextCursor::KeepAnchor);
      marks.append(mark);
      FText->setTextCursor(
          QTextCursor(FText->document()->findBlockByNumber(line(place->Text.Begin))));
    }
  }
  FText->setExtraSelections(marks);
}

void TDesignerForm::ShowState() {
  const auto selected = Selected(true);
  std::string text;
  if (selected.size() == 1) {
    text = selected[0]->Name() + ": " + std::string(selected[0]->StoredClassName());
  } else if (!selected.empty()) {
    text = fmt::format("{} components", selected.size());
  }
  for (const std::string& note : FSurface->Notes())
    text += (text.empty() ? "" : " \xC2\xB7 ") + note;
  FState->setText(ToQString(text));
  FState->setAccessibleDescription(FState->text());
}

void TDesignerForm::ShowSelection() {
  const auto selected = FEditor.Designer().GetSelections();
  TComponentList shown;
  for (const TComponent* component : selected)
    if (const auto* design = dynamic_cast<const TDesignComponent*>(component))
      shown.push_back(design);
  FSurface->ShowSelection(shown);
  ShowState();
  if (FTabs->currentWidget() == FText) MarkLines();
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

std::vector<TDesignComponent*> TDesignerForm::Selected(bool withRoot) const {
  std::vector<TDesignComponent*> components;
  TFormDocument* document = FEditor.Document();
  for (TComponent* component : FEditor.Designer().GetSelections()) {
    auto* design = dynamic_cast<TDesignComponent*>(component);
    if (design == nullptr || document == nullptr) continue;
    if (withRoot || design != &document->Root()) components.push_back(design);
  }
  return components;
}

// The surface shows components that it does not change; here they are the form's own again.
void TDesignerForm::Select(const TComponentList& selection) {
  TFormDocument* document = FEditor.Document();
  if (document == nullptr) return;
  std::vector<TComponent*> components;
  for (const TDesignComponent* each : selection) {
    if (each == &document->Root()) {
      components.push_back(&document->Root());
      continue;
    }
    const auto& all = document->Root().Components();
    if (const auto found = std::ranges::find(all, each); found != all.end())
      components.push_back(*found);
  }
  FEditor.Designer().SetSelections(components);
}

void TDesignerForm::TellSelection() {
  FEditor.Designer().SetSelections(FEditor.Designer().GetSelections());
}

void TDesignerForm::StoreChanges(const std::string& step,
                                 const std::vector<TBoundsChange>& changes) {
  TFormDocument* document = FEditor.Document();
  if (document == nullptr) return;
  TFormHistory& history = document->History();
  history.Begin(step);
  for (const TBoundsChange& change : changes) {
    if (change.Node->Own == nullptr) continue;
    const auto& all = document->Root().Components();
    const auto found = std::ranges::find(all, change.Node->Own);
    TComponent* component = found != all.end() ? *found : &document->Root();
    if (component == change.Node->Own)
      StoreBounds(history, *static_cast<TDesignComponent*>(component), change);
  }
  history.Commit();
  TellSelection();
}

void TDesignerForm::Undo() {
  FEditor.Undo();
  TellSelection();
}

void TDesignerForm::Redo() {
  FEditor.Redo();
  TellSelection();
}

void TDesignerForm::CopyComponents() {
  const auto selected = Selected(false);
  if (selected.empty()) return;
  const TComponentList components(selected.begin(), selected.end());
  SetClipboardText(ComponentsText(components));
}

void TDesignerForm::CutComponents() {
  CopyComponents();
  DeleteComponents();
}

void TDesignerForm::DeleteComponents() {
  auto selected = Selected(false);
  TFormDocument* document = FEditor.Document();
  if (document == nullptr || selected.empty()) return;
  auto* parent = dynamic_cast<TDesignComponent*>(selected[0]->GetParentComponent());
  // What is inside of another one goes with it.
  std::erase_if(selected, [&](const TDesignComponent* each) {
    for (const TComponent* above = each->GetParentComponent(); above != nullptr;
         above = above->GetParentComponent())
      if (std::ranges::find(selected, above) != selected.end()) return true;
    return false;
  });
  TComponent* next = parent != nullptr ? parent : &document->Root();
  FEditor.Designer().SetSelections({next});
  TFormHistory& history = document->History();
  history.Begin("Delete");
  for (TDesignComponent* component : selected) history.Remove(*component);
  history.Commit();
  TellSelection();
}

TDesignComponent& TDesignerForm::PasteTarget() const {
  TDesignComponent& root = FEditor.Document()->Root();
  const auto selected = Selected(true);
  if (selected.empty() || FSurface->Form() == nullptr) return root;
  const TDesignNode* node = FSurface->Form()->NodeOf(*selected[0]);
  if (node != nullptr && HoldsOthers(*node)) return *selected[0];
  auto* parent = dynamic_cast<TDesignComponent*>(selected[0]->GetParentComponent());
  return parent != nullptr ? *parent : root;
}

void TDesignerForm::PasteComponents() {
  TFormDocument* document = FEditor.Document();
  if (document == nullptr) return;
  const auto streams = StreamsForPasting(ClipboardText(), document->Root());
  TDesignComponent& parent = PasteTarget();
  TFormHistory& history = document->History();
  std::vector<TComponent*> pasted;
  history.Begin("Paste");
  for (const std::string& stream : streams) {
    TDesignComponent& added = history.Add(stream, parent);
    for (const std::string_view side : {"Left", "Top"})
      if (const auto stored = StoredInteger(added.FindValue(side), INT64_MIN); stored != INT64_MIN)
        history.SetInteger(added, side, stored + PasteOffset);
    pasted.push_back(&added);
  }
  history.Commit();
  if (!pasted.empty()) FEditor.Designer().SetSelections(pasted);
}

void TDesignerForm::SelectAllComponents() {
  TFormDocument* document = FEditor.Document();
  if (document == nullptr) return;
  const auto selected = Selected(true);
  TDesignComponent* parent = &document->Root();
  if (!selected.empty() && selected[0] != parent)
    if (auto* above = dynamic_cast<TDesignComponent*>(selected[0]->GetParentComponent()))
      parent = above;
  FEditor.Designer().SetSelections({parent->Children().begin(), parent->Children().end()});
}

void TDesignerForm::ArrangeComponents(TArrangement arrangement) {
  const auto changes = FSurface->Arranged(arrangement);
  if (!changes.empty()) StoreChanges("Arrange", changes);
}

void TDesignerForm::SetDepth(bool front) {
  TFormDocument* document = FEditor.Document();
  if (document == nullptr) return;
  TFormHistory& history = document->History();
  history.Begin(front ? "Bring to front" : "Send to back");
  for (TDesignComponent* component : Selected(false)) {
    const auto* parent = dynamic_cast<const TDesignComponent*>(component->GetParentComponent());
    if (parent != nullptr)
      history.SetChildIndex(*component, front ? parent->Children().size() - 1 : 0);
  }
  history.Commit();
  TellSelection();
}

void TDesignerForm::FitIntoWindow() {
  FSurface->FitInto(FScroll->viewport()->size());
}

void TDesignerForm::ShowOwnSize() {
  FSurface->SetZoom(1);
}

}  // namespace wrenfold
