#include "editor/rkSpcForm.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <charconv>

#include "controls/rkIcons.h"
#include "controls/rkSmartForm.h"
#include "editor/rkSpcEditor.h"
#include "locale/rkLocale.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int NoButton = -1;
constexpr int DefaultTreeWidth = 280;
constexpr QSize DefaultSize{860, 560};
// Texts of the search are made while nothing else is to be done, so many nodes at a time.
constexpr int NodesAtATime = 200;

// Keys of the window's settings; the widths of a further column have its number behind them.
const std::string KeyPlacement = "WindowPlacement", KeyTreeWidth = "TreeWidth",
                  KeyLoadDir = "LoadDir", KeySaveDir = "SaveDir",
                  KeyLabelWidth = "LabelSectionWidth", KeyControlWidth = "ControlSectionWidth";
constexpr int MaxWidth = 10000;

// 0 for a text that is no width.
int WidthOf(const std::string& text) {
  int width = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && width > 0 && width <= MaxWidth ? width : 0;
}

}  // namespace

// One command: who runs it, when it is enabled, where it stands.
struct TSpcForm::TActionRow {
  const char* Name;
  const char* ShortCut;
  int HintId;
  int Image;
  int Button;  // TSpcEdVisibleButton, or NoButton for what has none
  bool SeparatorBefore;
  void (*Run)(TSpcForm& form);
  bool (*Enabled)(const TSpcForm& form);
};

const TSpcForm::TActionRow TSpcForm::ActionRows[] = {
    {"ActExit", "Alt+X", sHintExitEditor, siExit, vbExitEditor, false,
     [](TSpcForm& form) { form.Close(); }, nullptr},
    {"ActLoadSpc", "Ctrl+O", sHintOpenSpc, siOpen, vbLoadSpc, true,
     [](TSpcForm& form) { form.FEditor.Load(); },
     [](const TSpcForm& form) { return form.FEditor.CanLoad(); }},
    {"ActSaveSpc", "Ctrl+S", sHintSaveSpc, siSave, vbSaveSpc, false,
     [](TSpcForm& form) {
       form.FEditor.Save();
       // The key of both actions does both.
       const TAction* store = form.FindAction("ActStore");
       if (store->ShortCut() == form.FindAction("ActSaveSpc")->ShortCut()) form.SaveSetting();
     },
     nullptr},
    {"ActSaveAsSpc", "Ctrl+Alt+S", sHintSaveSpcAs, siSaveAs, vbSaveSpcAs, false,
     [](TSpcForm& form) { form.FEditor.SaveAs(); },
     [](const TSpcForm& form) { return form.FEditor.CanLoad(); }},
    {"ActAddNode", "Ctrl+Ins", sHintAddNode, siAdd, vbAddNode, true,
     [](TSpcForm& form) { form.FEditor.AddNode(*form.Selected()); },
     [](const TSpcForm& form) { return IsValidInsObj(form.Selected()); }},
    {"ActDelNode", "Ctrl+Del", sHintDeleteNode, siDelete, vbDeleteNode, false,
     [](TSpcForm& form) { form.FEditor.DeleteNode(*form.Selected()); },
     [](const TSpcForm& form) { return IsValidDelObj(form.Selected()); }},
    {"ActMoveUp", "Ctrl+Up", sHintMoveNodeUp, siMoveUp, vbMoveNodeUp, false,
     [](TSpcForm& form) { form.FEditor.MoveNode(*form.Selected(), nmUp, true); },
     [](const TSpcForm& form) { return IsValidMoveObj(form.Selected(), nmUp); }},
    {"ActMoveDown", "Ctrl+Down", sHintMoveNodeDown, siMoveDown, vbMoveNodeDown, false,
     [](TSpcForm& form) { form.FEditor.MoveNode(*form.Selected(), nmDown, true); },
     [](const TSpcForm& form) { return IsValidMoveObj(form.Selected(), nmDown); }},
    {"ActExpand", "Alt+Right", sHintExpandNode, siExpand, vbExpandNode, true,
     [](TSpcForm& form) {
       const bool all = !QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
       form.FTree->Fold(*form.Selected(), true, all);
     },
     [](const TSpcForm& form) { return form.Selected() != nullptr; }},
    {"ActCollapse", "Alt+Left", sHintCollapseNode, siCollapse, vbCollapseNode, false,
     [](TSpcForm& form) {
       const bool all = !QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
       form.FTree->Fold(*form.Selected(), false, all);
     },
     [](const TSpcForm& form) { return form.Selected() != nullptr; }},
    {"ActUndo", "Ctrl+Z", sHintUndoChange, siUndo, NoButton, true,
     [](TSpcForm& form) { form.FEditor.UndoLast(); },
     [](const TSpcForm& form) { return form.FEditor.CanUndo(); }},
    {"ActJournal", "Ctrl+J", sHintJournal, siJournal, NoButton, false,
     [](TSpcForm& form) { form.ToggleJournal(); }, nullptr},
    {"ActNodeEdit", "F2", 0, -1, NoButton, false,
     [](TSpcForm& form) { form.FTree->edit(form.FTree->currentIndex()); },
     [](const TSpcForm& form) {
       return form.Selected() != nullptr && TSpcEditor::CanRenameNode(*form.Selected());
     }},
    {"ActStore", "Ctrl+S", 0, -1, NoButton, false, [](TSpcForm& form) { form.SaveSetting(); },
     nullptr},
    {"ActFind", "Ctrl+F", 0, -1, NoButton, false,
     [](TSpcForm& form) {
       form.FSearch->setFocus(Qt::ShortcutFocusReason);
       form.FSearch->selectAll();
     },
     nullptr},
    {"ActRowMenu", "Ctrl+M", 0, -1, NoButton, false, [](TSpcForm& form) { form.OpenRowMenu(); },
     nullptr},
};

const TTypeInfo& TSpcForm::ClassInfo() {
  static const TTypeInfo info = Publish<TSpcForm>("TSpcForm", TForm::ClassInfo());
  return info;
}

TSpcForm::TSpcForm(TComponent* owner, TSpcEditor& editor) : TForm(owner), FEditor(editor) {
  SetName("SpcForm");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  MakeActions();
  MakeToolBar();
  layout->addWidget(FToolBar);
  FSplitter = new QSplitter(Qt::Horizontal);
  FSplitter->addWidget(MakeTreePane());
  FArea = new TControlsArea;
  FSplitter->addWidget(FArea);
  FSplitter->setStretchFactor(0, 0);
  FSplitter->setStretchFactor(1, 1);
  FSplitter->setChildrenCollapsible(false);
  FSplitter->setSizes({DefaultTreeWidth, DefaultSize.width() - DefaultTreeWidth});
  FJournalSplitter = new QSplitter(Qt::Vertical);
  FJournalSplitter->addWidget(FSplitter);
  FJournalSplitter->addWidget(MakeJournalPane());
  FJournalSplitter->setStretchFactor(0, 1);
  FJournalSplitter->setStretchFactor(1, 0);
  layout->addWidget(FJournalSplitter, 1);
  FStatus = new QStatusBar;
  for (QLabel*& panel : FPanels) {
    panel = new QLabel;
    panel->setTextFormat(Qt::PlainText);
  }
  FStatus->addWidget(FPanels[0]);
  FStatus->addWidget(FPanels[1], 1);
  layout->addWidget(FStatus);
  resize(DefaultSize);
  TakeOptions();
  Retranslate();
  FPrepare.setInterval(0);
  connect(&FPrepare, &QTimer::timeout, this,
          [this] { Guarded(this, [this] { PrepareSearch(); }); });
}

TSpcForm::~TSpcForm() {
  BeforeDestruction();
}

void TSpcForm::MakeActions() {
  FActions = new TActionList(this);
  FActions->SetName("FormActions");
  FActionImages = new TImageList(this);
  FActions->SetImages(FActionImages);
  for (const TActionRow& row : ActionRows) {
    auto* action = new TAction(this);
    action->SetName(row.Name);
    action->SetShortCut(TextToShortCut(row.ShortCut));
    if (row.Image >= 0) action->SetImageIndex(FActionImages->Add(SuiteIcon(row.Image)));
    action->Tag = static_cast<std::int32_t>(&row - ActionRows);
    Bind<&TSpcForm::ActionExecute>(action->OnExecute, this);
    Bind<&TSpcForm::ActionUpdate>(action->OnUpdate, this);
    const bool hidden = row.Button != NoButton &&
                        !FEditor.IsButtonVisible(static_cast<TSpcEdVisibleButton>(row.Button));
    action->SetVisible(!hidden);
    action->SetActionList(FActions);
  }
}

// A separator stands before a group of which anything is visible.
void TSpcForm::MakeToolBar() {
  FToolBar = new TToolBar(this, this);
  FToolBar->SetName("ToolBar");
  FToolBar->SetImages(FActionImages);
  bool separate = false;
  for (const TActionRow& row : ActionRows) {
    separate |= row.SeparatorBefore;
    TAction* action = FindAction(row.Name);
    if (row.Image < 0 || !action->Visible()) continue;
    if (separate && FToolBar->ButtonCount() > 0) FToolBar->AddSeparator();
    separate = false;
    FToolBar->AddButton(action);
  }
}

void TSpcForm::AddCommand(const char* name, int textId, int image, TNotifyEvent run) {
  if (FCommands.empty()) FToolBar->AddSeparator();
  auto* action = new TAction(this);
  action->SetName(name);
  action->SetImageIndex(FActionImages->Add(SuiteIcon(image)));
  action->OnExecute = run;
  action->SetActionList(FActions);
  FToolBar->AddButton(action);
  FCommands.push_back({action, textId});
}

QWidget* TSpcForm::MakeTreePane() {
  auto* pane = new QWidget;
  auto* layout = new QVBoxLayout(pane);
  layout->setContentsMargins(4, 4, 0, 0);
  layout->setSpacing(4);
  FSearch = new QLineEdit;
  FSearch->setObjectName("edSearch");
  FSearch->setClearButtonEnabled(true);
  auto* row = new QHBoxLayout;
  FChangedOnly = new QCheckBox;
  FChangedOnly->setObjectName("cbChangedOnly");
  FHits = new QLabel;
  FHits->setObjectName("lbHits");
  row->addWidget(FChangedOnly);
  row->addStretch(1);
  row->addWidget(FHits);
  layout->addWidget(FSearch);
  layout->addLayout(row);
  FTree = new TTreeView(this);
  FTree->SetName("SpcTree");
  layout->addWidget(FTree, 1);
  FTree->OnSelect = [this](TTreeNode* node) { FEditor.NodeSelected(node); };
  FTree->Model().Images = FEditor.Images();
  FTree->Model().CanRename = [](const TTreeNode& node) { return TSpcEditor::CanRenameNode(node); };
  FTree->Model().Rename = [this](TTreeNode& node, const std::string& text) {
    return FEditor.RenameNode(node, text);
  };
  connect(FSearch, &QLineEdit::textChanged, this,
          [this] { Guarded(this, [this] { SearchChanged(); }); });
  connect(FChangedOnly, &QCheckBox::toggled, this, [this](bool on) {
    Guarded(this, [&] {
      FEditor.SetChangedOnly(on);
      FPrepare.start();
    });
  });
  return pane;
}

QWidget* TSpcForm::MakeJournalPane() {
  FJournalPane = new QWidget;
  auto* layout = new QVBoxLayout(FJournalPane);
  layout->setContentsMargins(4, 2, 4, 2);
  auto* head = new QHBoxLayout;
  FJournalTitle = new QLabel;
  FUndoEntry = new QPushButton;
  FUndoEntry->setObjectName("btUndoEntry");
  head->addWidget(FJournalTitle);
  head->addStretch(1);
  head->addWidget(FUndoEntry);
  layout->addLayout(head);
  FJournal = new QTreeWidget;
  FJournal->setObjectName("JournalList");
  FJournal->setRootIsDecorated(false);
  FJournal->setUniformRowHeights(true);
  FJournal->setAllColumnsShowFocus(true);
  FJournal->setColumnCount(3);
  FJournal->setColumnWidth(0, DefaultSize.width() / 2);
  FJournal->setColumnWidth(1, DefaultSize.width() / 4);
  layout->addWidget(FJournal, 1);
  FJournalPane->hide();
  const auto undo = [this] { Guarded(this, [this] { UndoSelectedEntry(); }); };
  connect(FUndoEntry, &QPushButton::clicked, this, undo);
  connect(FJournal, &QTreeWidget::itemActivated, this, undo);
  return FJournalPane;
}

// What the editor's properties say of the window.
void TSpcForm::TakeOptions() {
  const TSpcFormOptions& options = FEditor.FormOptions;
  FTree->ExpandOnEnter = options.Contains(foTreeExpandOnEnter);
  if (options.Contains(foStayOnTop)) SetFormStyle(fsStayOnTop);
  if (FEditor.HasTreeFont()) FTree->setFont(ToQFont(*FEditor.TreeFont()));
  if (FEditor.HasHeaderFont()) FArea->SetHeaderFont(ToQFont(*FEditor.HeaderFont()));
  FStatus->setVisible(FEditor.ShowStatusBar);
  FArea->SetLook({FEditor.LabelAreaInfo.get(), FEditor.ControlAreaInfo.get(),
                  std::max(1, FEditor.ColCount), FEditor.TopInc, options.Contains(foEllipsisLabels),
                  options.Contains(foAreasDynamicResize)});
  FArea->OnRowMenu = [this](TControlInfo& row, const QPoint& place) {
    FEditor.RowMenu(row, place);
  };
  FArea->OnRowHint = [this](const TControlInfo& row) { return FEditor.RowHint(row); };
  FArea->OnResizeControl = [this](TControlInfo& row) {
    bool handled = false;
    FEditor.OnResizeControl(&FEditor, row, handled);
    return handled;
  };
}

void TSpcForm::Retranslate() {
  for (const TActionRow& row : ActionRows) {
    if (row.HintId == 0) continue;
    TAction* action = FindAction(row.Name);
    const std::string hint = LocaleStr(row.HintId);
    action->SetCaption(hint);
    action->SetHint(hint + " (" + ShortCutToText(action->ShortCut()) + ")");
  }
  for (const TCommand& command : FCommands) {
    command.Action->SetCaption(LocaleStr(command.TextId));
    command.Action->SetHint(LocaleStr(command.TextId));
  }
  const auto name = [](QWidget* widget, int textId) {
    const QString text = ToQString(LocaleStr(textId));
    widget->setAccessibleName(text);
    return text;
  };
  FSearch->setPlaceholderText(name(FSearch, sSearchSettings));
  FChangedOnly->setText(name(FChangedOnly, sChangedOnly));
  FUndoEntry->setText(name(FUndoEntry, sUndoChange));
  FJournalTitle->setText(name(FJournal, sJournal));
  name(FTree, sSettingsTree);
  FTree->Model().ChangedText = LocaleStr(sChangedFromDefault);
  FJournal->setHeaderLabels({ToQString(LocaleStr(sJournalWhere)),
                             ToQString(LocaleStr(sJournalFrom)), ToQString(LocaleStr(sJournalTo))});
  FArea->SetHeaderTexts(LocaleStr(sParameterColumn), LocaleStr(sValueColumn));
}

void TSpcForm::SetPanels(const std::string& properties, const std::string& node) {
  FPanels[0]->setText(ToQString(properties));
  FPanels[1]->setText(ToQString(node));
}

std::string TSpcForm::Panel(int index) const {
  return FromQString(FPanels[index]->text());
}

TTreeNode* TSpcForm::Selected() const {
  return FTree->Selected();
}

void TSpcForm::ActionExecute(TObject* sender) {
  const auto* action = static_cast<TAction*>(sender);
  ActionRows[action->Tag].Run(*this);
}

void TSpcForm::ActionUpdate(TObject* sender) {
  auto* action = static_cast<TAction*>(sender);
  const TActionRow& row = ActionRows[action->Tag];
  action->SetEnabled(action->Visible() && (row.Enabled == nullptr || row.Enabled(*this)));
}

bool TSpcForm::IsValidInsObj(const TTreeNode* node) {
  constexpr TSet<TBaseClassIdent> valid{ciSpcItem, ciItem, ciCollection};
  return node != nullptr && valid.Contains(node->Ident);
}

bool TSpcForm::IsValidDelObj(const TTreeNode* node) {
  if (!IsValidInsObj(node)) return false;
  return node->Ident != ciCollection || static_cast<TCollection*>(node->Instance)->Count() > 0;
}

bool TSpcForm::IsValidMoveObj(const TTreeNode* node, TNodeMotion motion) {
  if (!IsValidInsObj(node) || node->Ident == ciCollection) return false;
  const auto* item = static_cast<TCollectionItem*>(node->Instance);
  if (item->Collection() == nullptr) return false;
  const int index = item->Index();
  return motion == nmUp ? index >= 1 : index < item->Collection()->Count() - 1;
}

void TSpcForm::SearchChanged() {
  const std::string text = FromQString(FSearch->text().trimmed());
  const TSpcSearch::TResult result = FEditor.Search(text);
  ShowHits(result.Hits, !text.empty());
}

void TSpcForm::ShowHits(int hits, bool searching) {
  FHits->setText(searching ? ToQString(LocaleFormat(sHitCount, hits)) : QString());
}

void TSpcForm::PrepareSearch() {
  if (!FEditor.FSearch.Prepare(NodesAtATime)) FPrepare.stop();
}

void TSpcForm::ToggleJournal() {
  FJournalPane->setVisible(!FJournalPane->isVisible());
  if (!FJournalPane->isVisible()) return;
  FJournalSplitter->setSizes({height() * 3 / 4, height() / 4});
  FJournal->setFocus();
}

void TSpcForm::JournalChanged() {
  const TSpcJournal& journal = FEditor.Journal();
  const bool isLonger = journal.Count() > FJournal->topLevelItemCount();
  const int selected = isLonger ? -1 : FJournal->indexOfTopLevelItem(FJournal->currentItem());
  FJournal->clear();
  for (int i = 0; i < journal.Count(); ++i) {
    const TJournalLine& line = journal.Line(i);
    auto* item = new QTreeWidgetItem(
        FJournal, {ToQString(line.Where), ToQString(line.From), ToQString(line.To)});
    for (const int column : {0, 1, 2}) item->setToolTip(column, item->text(column));
    item->setDisabled(!journal.CanUndo(i));
  }
  const int last = std::min(selected < 0 ? journal.Count() : selected, journal.Count() - 1);
  if (last >= 0) FJournal->setCurrentItem(FJournal->topLevelItem(last));
  FUndoEntry->setEnabled(journal.Count() > 0);
}

void TSpcForm::UndoSelectedEntry() {
  FEditor.UndoEntry(FJournal->indexOfTopLevelItem(FJournal->currentItem()));
}

// The row with the focus, else the first one.
void TSpcForm::OpenRowMenu() {
  const QWidget* focus = focusWidget();
  for (const auto& row : FEditor.Rows()) {
    if (row->EControl == nullptr || row->Hidden) continue;
    const QWidget* widget = row->EControl->Widget();
    if (widget != focus && !widget->isAncestorOf(focus)) continue;
    return FEditor.RowMenu(*row, widget->mapToGlobal(QPoint(0, widget->height())));
  }
}

bool TSpcForm::CloseQuery() {
  return TForm::CloseQuery() && FEditor.Release();
}

void TSpcForm::DoShow() {
  TForm::DoShow();
  if (!FLoaded) LoadSetting();
  FLoaded = true;
  FEditor.FShown = true;
  FTree->setFocus();
  FPrepare.start();
}

// The form goes when the event is over; the editor makes itself a new one before that if it must.
void TSpcForm::DoClose(TCloseAction& action) {
  FEditor.FClosing = true;
  FPrepare.stop();
  WriteSetting(FEditor.AutoSaveParams());
  TForm::DoClose(action);
  action = caFree;
  FEditor.FForm.clear();
}

// A value that is no number, or none that a window could have, leaves things as they are.
void TSpcForm::LoadSetting() {
  TStringList lines;
  Guarded(this, [&] { FEditor.ReadFormSetting(FEditor.IniSection, FEditor.IniFileName, lines); });
  FPlacement = lines.Value(KeyPlacement);
  TWindowPlacement placement;
  if (TextToPlacement(FPlacement, placement)) SetPlacement(placement);
  else CenterOnScreen();
  FEditor.FLoadDir = lines.Value(KeyLoadDir);
  FEditor.FSaveDir = lines.Value(KeySaveDir);
  if (const int width = WidthOf(lines.Value(KeyTreeWidth)))
    FSplitter->setSizes({width, std::max(this->width() - width, 0)});
  for (int column = 0; column < FArea->ColCount(); ++column) {
    const std::string suffix = column == 0 ? std::string() : IntToStr(column + 1);
    if (const int width = WidthOf(lines.Value(KeyLabelWidth + suffix)))
      FArea->SectionResize(2 * column, width);
    if (const int width = WidthOf(lines.Value(KeyControlWidth + suffix)))
      FArea->SectionResize(2 * column + 1, width);
  }
}

void TSpcForm::WriteSetting(bool withPlacement) {
  if (withPlacement) FPlacement = PlacementToText(GetPlacement());
  TStringList lines;
  const auto add = [&lines](const std::string& key, const std::string& value) {
    if (!value.empty()) lines.Add(key + '=' + value);
  };
  add(KeyPlacement, FPlacement);
  add(KeyTreeWidth, IntToStr(FSplitter->sizes().front()));
  add(KeyLoadDir, FEditor.FLoadDir);
  add(KeySaveDir, FEditor.FSaveDir);
  for (int column = 0; column < FArea->ColCount(); ++column) {
    const std::string suffix = column == 0 ? std::string() : IntToStr(column + 1);
    // A width that nobody dragged follows the default, which may depend on the language.
    const auto addWidth = [&](const std::string& key, TAreaKind kind, int byDefault) {
      const int width = FArea->AreaWidth(kind, column);
      if (width != byDefault) add(key + suffix, IntToStr(width));
    };
    addWidth(KeyLabelWidth, akLabel, FEditor.LabelAreaInfo->DefAreaWidth);
    addWidth(KeyControlWidth, akControl, FEditor.ControlAreaInfo->DefAreaWidth);
  }
  Guarded(this, [&] { FEditor.WriteFormSetting(FEditor.IniSection, FEditor.IniFileName, lines); });
}

void TSpcForm::changeEvent(QEvent* event) {
  TForm::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && FTree != nullptr) FTree->viewport()->update();
}

}  // namespace wrenfold
