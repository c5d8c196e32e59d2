#include "host/forms/DesignerForm.h"

#include <fmt/format.h>

#include <QAction>
#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QMenu>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>

#include "designer/model/ComponentText.h"
#include "host/documents/Icons.h"
#include "platform/core/stream/ValueTypes.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Desktop.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// What the text of a component begins with.
constexpr std::string_view FormTextWords[] = {"object ", "inherited ", "inline "};

bool IsInherited(const TDesignComponent& component) {
  std::int32_t position = 0;
  return (component.FilerFlags(position) & ffInherited) != 0;
}

// A command of the local menu; a row without a method is a line between groups.
struct TCommandRow {
  const char* Name;
  const char* Caption;
  QKeySequence Keys;
  void (*Run)(TDesignerForm& form);
  bool (*Applies)(const TDesignerForm& form) = nullptr;  // null: always
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

template <std::size_t count>
bool AtLeast(const TDesignerForm& form) {
  return form.Selected(false).size() >= count;
}

bool CanUndo(const TDesignerForm& form) {
  const TFormDocument* document = form.Editor().LoadedDocument();
  return document != nullptr && document->Edits().CanUndo();
}

bool CanRedo(const TDesignerForm& form) {
  const TFormDocument* document = form.Editor().LoadedDocument();
  return document != nullptr && document->Edits().CanRedo();
}

// What a base form declares can be changed, not deleted.
bool CanDelete(const TDesignerForm& form) {
  return std::ranges::any_of(form.Selected(false),
                             [](const auto* each) { return !IsInherited(*each); });
}

bool CanPaste(const TDesignerForm& form) {
  return form.CanPaste();
}

const std::vector<TCommandRow>& Commands() {
  using A = TArrangement;
  using F = TDesignerForm;
  static const std::vector<TCommandRow> commands = {
      {"dsUndo", "&Undo", QKeySequence::Undo, RunCommand<&F::Undo>, CanUndo},
      {"dsRedo", "&Redo", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), RunCommand<&F::Redo>,
       CanRedo, QKeySequence(Qt::CTRL | Qt::Key_Y)},
      {nullptr, nullptr, {}, nullptr},
      {"dsCut", "Cu&t", QKeySequence::Cut, RunCommand<&F::CutComponents>, CanDelete},
      {"dsCopy", "&Copy", QKeySequence::Copy, RunCommand<&F::CopyComponents>, AtLeast<1>},
      {"dsPaste", "&Paste", QKeySequence::Paste, RunCommand<&F::PasteComponents>, CanPaste},
      {"dsDelete", "&Delete", QKeySequence(Qt::Key_Delete), RunCommand<&F::DeleteComponents>,
       CanDelete},
      {"dsSelectAll", "Select &all", QKeySequence::SelectAll, RunCommand<&F::SelectAllComponents>},
      {nullptr, nullptr, {}, nullptr},
      {"dsLefts", "Align &left edges", {}, RunArrangement<A::Lefts>, AtLeast<2>},
      {"dsCentres", "Align centres", {}, RunArrangement<A::Centres>, AtLeast<2>},
      {"dsRights", "Align right edges", {}, RunArrangement<A::Rights>, AtLeast<2>},
      {"dsTops", "Align top &edges", {}, RunArrangement<A::Tops>, AtLeast<2>},
      {"dsMiddles", "Align middles", {}, RunArrangement<A::Middles>, AtLeast<2>},
      {"dsBottoms", "Align &bottom edges", {}, RunArrangement<A::Bottoms>, AtLeast<2>},
      {"dsSpaceAcross", "Space equally ac&ross", {}, RunArrangement<A::SpaceAcross>, AtLeast<3>},
      {"dsSpaceDown", "Space equally do&wn", {}, RunArrangement<A::SpaceDown>, AtLeast<3>},
      {"dsSameWidth", "Same widt&h", {}, RunArrangement<A::SameWidth>, AtLeast<2>},
      {"dsSameHeight", "Same hei&ght", {}, RunArrangement<A::SameHeight>, AtLeast<2>},
      {nullptr, nullptr, {}, nullptr},
      {"dsFront", "Bring to &front", {}, RunCommand<&F::BringComponentsToFront>, AtLeast<1>},
      {"dsBack", "Send to bac&k", {}, RunCommand<&F::SendComponentsToBack>, AtLeast<1>},
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
      FCatalog(editor.Host().FormsFor(editor)),
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
  FSurface->OnBounds = [this](const std::string& step, const std::vector<TBoundsChange>& changes,
                              bool continues) {
    Guarded(this, [&] { StoreChanges(step, changes, continues); });
  };
  FSurface->OnTakeOver = [this](const std::vector<std::string>& names) {
    Guarded(this, [&] { TakeOver(names); });
  };
  connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
          [this] { Guarded(this, [&] { ClipboardChanged(); }); });
  AddCommands();
  ClipboardChanged();
  Update();
  // The tree would choose its first row when it gets the focus.
  FSurface->setFocus();
}

TDesignerForm::~TDesignerForm() = default;

bool TDesignerForm::ClaimsKey(const QKeyEvent& key) const {
  return focusWidget() == FSurface && FSurface->Takes(key);
}

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
    FCommands.push_back({action, row.Applies});
    connect(action, &QAction::triggered, this,
            [this, run = row.Run] { Guarded(this, [&] { run(*this); }); });
  }
  FScroll->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(FScroll, &QWidget::customContextMenuRequested, this,
          [this, menu](const QPoint& place) { menu->popup(FScroll->mapToGlobal(place)); });
}

void TDesignerForm::ClipboardChanged() {
  const std::string text = ClipboardText();
  const std::string_view start = Trim(text);
  FCanPaste = std::ranges::any_of(FormTextWords, [&](std::string_view word) {
    return start.size() > word.size() && EqualText(start.substr(0, word.size()), word);
  });
  UpdateCommands();
}

void TDesignerForm::UpdateCommands() {
  for (const TCommand& command : FCommands)
    command.Action->setEnabled(command.Applies == nullptr || command.Applies(*this));
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
    FCatalog->Renew();
    if (document == FShown) FSurface->Refresh();
    else FSurface->ShowForm(&document->Root(), FCatalog.get());
    AddItems(new QTreeWidgetItem(FTree), FSurface->Form()->Root());
    FTree->expandAll();
    FShown = document;
  }
  FFollowing = false;
  ShowText();
  if (LostSelection()) TellSelection();
  ShowSelection();
}

void TDesignerForm::Forget() {
  FSurface->ShowForm(nullptr, nullptr);
  FShown = nullptr;
}

// Whether a selected component is in the form no more.
bool TDesignerForm::LostSelection() const {
  const TFormDocument* document = FEditor.LoadedDocument();
  return std::ranges::any_of(FEditor.Designer().GetSelections(), [&](const TComponent* each) {
    return document == nullptr || (each != &document->Root() && each->Owner() != &document->Root());
  });
}

// What the form only inherits stands there as well, fainter.
void TDesignerForm::AddItems(QTreeWidgetItem* parent, const TDesignNode& node) {
  parent->setText(0, ToQString(node.Name() + ": " + std::string(node.ClassName())));
  parent->setIcon(0, WorkbenchIcon("component"));
  parent->setData(0, Qt::UserRole, ToQString(node.Name()));
  if (node.Own == nullptr)
    parent->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
  for (const TDesignNode* child : node.Children)
    if (child->Own != nullptr || (child->Scope == nullptr && !child->Name().empty()))
      AddItems(new QTreeWidgetItem(parent), *child);
}

// The component of the form, made where it is only inherited.
TDesignComponent* TDesignerForm::TakeOver(const TDesignNode& node) {
  TFormDocument& document = *FEditor.Document();
  if (node.IsRoot()) return &document.Root();
  if (auto* own = dynamic_cast<TDesignComponent*>(document.Root().FindComponent(node.Name())))
    return own;
  return &document.Override(node.Name(), node.ClassName(), *TakeOver(*node.Parent));
}

void TDesignerForm::TakeOver(const std::vector<std::string>& names) {
  if (FEditor.Document() == nullptr || FSurface->Form() == nullptr) return;
  for (const std::string& name : names)
    if (const TDesignNode* node = FSurface->Form()->Find(name)) TakeOver(*node);
  FSurface->Refresh();
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
  UpdateCommands();
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
  if (item->parent() != nullptr) {
    const std::string name = FromQString(item->data(0, Qt::UserRole).toString());
    if (component->FindComponent(name) == nullptr) TakeOver({name});
    component = component->FindComponent(name);
  }
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

void TDesignerForm::StoreChanges(const std::string& step, const std::vector<TBoundsChange>& changes,
                                 bool continues) {
  TFormDocument* document = FEditor.Document();
  if (document == nullptr) return;
  TFormHistory& history = document->History();
  history.Begin(step, continues);
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
  std::erase_if(selected, [](const TDesignComponent* each) { return IsInherited(*each); });
  if (selected.empty()) return;
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
  if (!changes.empty()) StoreChanges("Arrange", changes, false);
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
