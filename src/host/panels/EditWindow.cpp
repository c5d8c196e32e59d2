// Switches the editing control between pages and keeps the tabs' marks.
#include "host/panels/EditWindow.h"

#include <QContextMenuEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "host/documents/Icons.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int IndentWidth = 2;
constexpr int MarginPadding = 2;  // characters beside the line numbers
constexpr int TipMilliseconds = 500;
constexpr int MarkMargin = 1, MarkMarginWidth = 16;
constexpr int HitIndicator = 10;  // lexers use the ones below 8

// Marks of lines, in the order in which they are drawn over each other.
enum TLineMark { lmBreakpoint, lmExecution, lmExecutionLine };

// What a tab's icon says.
enum TMark { mkNone, mkReadOnly, mkModified };
constexpr const char* MarkIcons[] = {"unit", "readonly", "modified"};

TMark MarkOf(const TUnitDocument* document) {
  if (document == nullptr) return mkNone;
  if (document->Modified()) return mkModified;
  return document->ReadOnly() ? mkReadOnly : mkNone;
}

QString ToolTipOf(const TUnitDocument& document) {
  QString text = ToQString(document.FileName());
  if (document.Modified()) text += "\n" + QObject::tr("Modified, not saved yet");
  if (document.ReadOnly()) text += "\n" + QObject::tr("Read-only file");
  return text;
}

bool CarriesFiles(const QDropEvent& event) {
  return event.mimeData() != nullptr && event.mimeData()->hasUrls();
}

}  // namespace

// --- the control

const TTypeInfo& TEditControl::ClassInfo() {
  static const TTypeInfo info = Publish<TEditControl>("TEditControl", TControl::ClassInfo());
  return info;
}

TEditControl::TEditControl(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setUtf8(true);
  setFrameShape(QFrame::NoFrame);
  setMarginType(0, QsciScintilla::NumberMargin);
  setMarginType(MarkMargin, QsciScintilla::SymbolMargin);
  setMarginWidth(MarkMargin, MarkMarginWidth);
  setMarginSensitivity(MarkMargin, true);
  SendScintilla(SCI_SETMOUSEDWELLTIME, static_cast<unsigned long>(TipMilliseconds));
  setMarginMarkerMask(MarkMargin, 1 << lmBreakpoint | 1 << lmExecution);
  markerDefine(QsciScintilla::Circle, lmBreakpoint);
  markerDefine(QsciScintilla::RightArrow, lmExecution);
  markerDefine(QsciScintilla::Background, lmExecutionLine);
  setMarkerBackgroundColor(QColor(0xC8, 0x32, 0x32), lmBreakpoint);
  setMarkerForegroundColor(QColor(0xC8, 0x32, 0x32), lmBreakpoint);
  setMarkerBackgroundColor(QColor(0x30, 0x80, 0xE0), lmExecution);
  setMarkerForegroundColor(QColor(0x30, 0x80, 0xE0), lmExecution);
  setAutoIndent(true);
  setIndentationWidth(IndentWidth);
  setTabWidth(8);
  setIndentationsUseTabs(false);
  setBackspaceUnindents(true);
  setBraceMatching(QsciScintilla::SloppyBraceMatch);
  setCaretLineVisible(true);
  setCaretWidth(2);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  SendScintilla(SCI_SETEXTRAASCENT, 1UL);
  SendScintilla(SCI_SETEXTRADESCENT, 1UL);
  SendScintilla(SCI_SETCARETSTICKY, 1UL);
  SendScintilla(SCI_SETENDATLASTLINE, 0UL);
}

void TEditControl::contextMenuEvent(QContextMenuEvent* event) {
  if (PopupMenu() == nullptr) return;
  PopupMenu()->SetPopupComponent(this);
  PopupMenu()->Popup(event->globalX(), event->globalY());
}

void TEditControl::dragEnterEvent(QDragEnterEvent* event) {
  if (CarriesFiles(*event)) event->ignore();
  else QsciScintilla::dragEnterEvent(event);
}

void TEditControl::dropEvent(QDropEvent* event) {
  if (CarriesFiles(*event)) event->ignore();
  else QsciScintilla::dropEvent(event);
}

// --- the tabs

TEditTabs::TEditTabs(TComponent* owner, QWidget* parent) : TTabControl(owner, parent) {
  setDocumentMode(true);
  setExpanding(false);
  setTabsClosable(true);
  setUsesScrollButtons(true);
  setElideMode(Qt::ElideNone);
  setFocusPolicy(Qt::TabFocus);
  FLater.setSingleShot(true);
  connect(&FLater, &QTimer::timeout, this, [this] {
    if (OnRewritten) OnRewritten();
  });
}

void TEditTabs::TabsChanged() {
  TTabControl::TabsChanged();
  FLater.start(0);
}

void TEditTabs::mouseReleaseEvent(QMouseEvent* event) {
  const int index = tabAt(event->pos());
  if (event->button() == Qt::MiddleButton && index >= 0) emit tabCloseRequested(index);
  else TTabControl::mouseReleaseEvent(event);
}

// --- views and pages

void TEditView::GetCursorPos(int& line, int& column) {
  line = column = 1;
  if (FPage != nullptr) FWindow->CursorOf(*FPage, line, column);
}

void TEditView::SetCursorPos(int line, int column) {
  if (FPage != nullptr) FWindow->SetCursor(*FPage, line, column);
}

int TEditView::GetTopLine() {
  return FPage != nullptr ? FWindow->TopLineOf(*FPage) : 1;
}

void TEditView::SetTopLine(int line) {
  if (FPage != nullptr) FWindow->SetTopLine(*FPage, line);
}

TForm* TEditView::GetEditWindow() {
  return FPage != nullptr ? FWindow : nullptr;
}

TEditPage::TEditPage(TEditWindow& window, TSourceEditor& source)
    : FSource(&source), FView(new TEditView(window, *this)) {}

TEditPage::~TEditPage() {
  FView->Detach();
}

// --- the window

const TTypeInfo& TEditWindow::ClassInfo() {
  static const TTypeInfo info = Publish<TEditWindow>("TEditWindow", TForm::ClassInfo());
  return info;
}

TEditWindow::TEditWindow(TComponent* owner, QWidget* parent)
    : TForm(owner, parent),
      FTabs(new TEditTabs(this, this)),
      FEditor(new TEditControl(this, this)),
      FMenu(new TPopupMenu(FEditor)),
      FEmptyHint(new QLabel(this)),
      FHighlighter(*FEditor),
      FHitMarks(new TScrollMarks(FEditor->verticalScrollBar())) {
  FEditor->indicatorDefine(QsciScintilla::RoundBoxIndicator, HitIndicator);
  FEditor->setIndicatorForegroundColor(QColor(0xE0, 0x90, 0x20, 0x50), HitIndicator);
  FEditor->setIndicatorOutlineColor(QColor(0xE0, 0x90, 0x20, 0xC0), HitIndicator);
  FEditor->setIndicatorDrawUnder(true, HitIndicator);
  SetName("EditWindow_0");
  SetCaption("Code Editor");
  FTabs->SetName("TabControl");
  FTabs->setAccessibleName(tr("Open units"));
  FTabs->setToolTip(tr("The pages of the editor (Ctrl+Tab: next page)"));
  FEditor->SetName("Editor");
  FEditor->setAccessibleName(tr("Source text"));
  FMenu->SetName("EditorLocalMenu");
  FEditor->SetPopupMenu(FMenu);
  Bind<&TEditWindow::MenuPopup>(FMenu->OnPopup, this);
  Bind<&TEditWindow::TabChanged>(FTabs->OnChange, this);
  FTabs->OnRewritten = [this] { UpdateMarks(); };
  LayOut();
  ConnectEditor();
  ShowActivePage();
}

TEditWindow::~TEditWindow() {
  BeforeDestruction();
  FTabs->Tabs()->Clear();
  FEditor->disconnect(this);
}

void TEditWindow::LayOut() {
  FEmptyHint->setObjectName("EmptyHint");
  FEmptyHint->setAlignment(Qt::AlignCenter);
  FEmptyHint->setTextFormat(Qt::PlainText);
  FEmptyHint->setForegroundRole(QPalette::PlaceholderText);
  FEmptyHint->setText(
      tr("Nothing is open.\n\nOpen a project (Ctrl+F11) or a unit (Ctrl+O),\n"
         "or drop a file here."));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(FTabs);
  FStack = new QStackedLayout;
  FStack->addWidget(FEmptyHint);
  FStack->addWidget(FEditor);
  column->addLayout(FStack, 1);
}

void TEditWindow::ConnectEditor() {
  const auto status = [this] {
    if (OnStatusChange && !FShowing) OnStatusChange();
  };
  connect(FEditor, &QsciScintilla::cursorPositionChanged, this, status);
  connect(FEditor, &QsciScintillaBase::SCN_UPDATEUI, this, status);
  connect(FEditor, &QsciScintilla::modificationChanged, this,
          [this](bool modified) { Guarded(this, [&] { ModificationChanged(modified); }); });
  connect(FEditor, &QsciScintilla::linesChanged, this, [this] {
    FEditor->setMarginWidth(0,
                            QString(QString::number(FEditor->lines()).size() + MarginPadding, '0'));
    MarksMoved();
  });
  connect(FEditor, &QsciScintilla::marginClicked, this, [this](int margin, int line) {
    Guarded(this, [&] {
      if (margin == MarkMargin && FShown != nullptr && OnMarginClick)
        OnMarginClick(*FShown, line + 1);
    });
  });
  connect(FEditor, &QsciScintilla::marginRightClicked, this, [this](int margin, int line) {
    Guarded(this, [&] {
      if (margin == MarkMargin && FShown != nullptr && OnMarginMenu)
        OnMarginMenu(*FShown, line + 1, QCursor::pos());
    });
  });
  connect(FEditor, &QsciScintillaBase::SCN_DWELLSTART, this, [this](int position, int x, int y) {
    Guarded(this, [&] { MouseRests(position, x, y); });
  });
  connect(FTabs, &QTabBar::tabCloseRequested, this, [this](int index) {
    Guarded(this, [&] {
      auto* page = dynamic_cast<TEditPage*>(FTabs->Tabs()->GetObject(index));
      if (page != nullptr && OnCloseRequest) OnCloseRequest(*page);
    });
  });
}

void TEditWindow::ShowMarks(const std::set<int>& breakpoints, int executionLine) {
  FMarking = true;
  FEditor->markerDeleteAll();
  QColor line(0x30, 0x80, 0xE0);
  const QColor base = palette().color(QPalette::Base);
  line = QColor((line.red() + 3 * base.red()) / 4, (line.green() + 3 * base.green()) / 4,
                (line.blue() + 3 * base.blue()) / 4);
  FEditor->setMarkerBackgroundColor(line, lmExecutionLine);
  for (const int number : breakpoints) FEditor->markerAdd(number - 1, lmBreakpoint);
  if (executionLine > 0) {
    FEditor->markerAdd(executionLine - 1, lmExecution);
    FEditor->markerAdd(executionLine - 1, lmExecutionLine);
  }
  FMarking = false;
}

void TEditWindow::MouseRests(int position, int x, int y) {
  if (position < 0 || FShown == nullptr || !OnTipWanted) return;
  const long line = FEditor->SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION, position);
  const long start = FEditor->SendScintilla(QsciScintilla::SCI_POSITIONFROMLINE, line);
  const std::string text = FromQString(FEditor->text(static_cast<int>(line)));
  OnTipWanted(text, static_cast<std::size_t>(position - start),
              FEditor->viewport()->mapToGlobal(QPoint(x, y)));
}

// Marks follow the text that they stand at.
void TEditWindow::MarksMoved() {
  if (FShown == nullptr || FShowing || FMarking || !OnMarksMoved) return;
  std::set<int> lines;
  int line = -1;
  while ((line = FEditor->markerFindNext(line + 1, 1u << lmBreakpoint)) >= 0)
    lines.insert(line + 1);
  OnMarksMoved(*FShown, lines);
}

void TEditWindow::ModificationChanged(bool modified) {
  if (FShown == nullptr || FShowing) return;
  if (TUnitDocument* document = FShown->Source().LoadedDocument()) document->SetModified(modified);
}

void TEditWindow::MenuPopup(TObject*) {
  FMenu->Items()->Clear();
  if (OnBuildMenu) OnBuildMenu(*FMenu);
}

std::vector<TEditPage*> TEditWindow::Pages() const {
  std::vector<TEditPage*> pages;
  for (int i = 0; i < FTabs->Tabs()->Count(); ++i)
    if (auto* page = dynamic_cast<TEditPage*>(FTabs->Tabs()->GetObject(i))) pages.push_back(page);
  return pages;
}

std::vector<TEditPage*> TEditWindow::PagesOf(const TSourceEditor& source) const {
  std::vector<TEditPage*> pages = Pages();
  std::erase_if(pages, [&](const TEditPage* page) { return &page->Source() != &source; });
  return pages;
}

TEditPage* TEditWindow::ActivePage() const {
  const int index = FTabs->TabIndex();
  if (index < 0 || index >= FTabs->Tabs()->Count()) return nullptr;
  return dynamic_cast<TEditPage*>(FTabs->Tabs()->GetObject(index));
}

TEditPage& TEditWindow::AddPage(TSourceEditor& source) {
  const std::string caption = source.Document().Caption();
  TEditPage& page = *FPages.emplace_back(std::make_unique<TEditPage>(*this, source));
  if (FShown != nullptr && &FShown->Source() == &source) {
    StoreState();
    page.State = FShown->State;
  }
  FTabs->SetTabIndex(FTabs->Tabs()->AddObject(caption, &page));
  ShowActivePage();
  return page;
}

void TEditWindow::BeginUpdate() {
  // Hidden tabs are not laid out.
  if (FUpdates++ == 0) FTabs->hide();
}

void TEditWindow::EndUpdate() {
  if (--FUpdates == 0) ShowActivePage();
}

void TEditWindow::Activate(TEditPage& page) {
  FTabs->SetTabIndex(FTabs->Tabs()->IndexOfObject(&page));
  ShowActivePage();
}

void TEditWindow::RemovePage(TEditPage& page) {
  const int index = FTabs->Tabs()->IndexOfObject(&page);
  TEditPage* active = ActivePage();
  if (FShown == &page) FShown = nullptr;
  FTabs->Tabs()->Delete(index);
  const int last = FTabs->Tabs()->Count() - 1;
  if (active != &page) FTabs->SetTabIndex(FTabs->Tabs()->IndexOfObject(active));
  else FTabs->SetTabIndex(std::min(index, last));
  ShowActivePage();
  std::erase_if(FPages, [&](const auto& owned) { return owned.get() == &page; });
}

void TEditWindow::TabChanged(TObject*) {
  ShowActivePage();
}

void TEditWindow::ShowActivePage() {
  if (FUpdates > 0) return;
  TEditPage* page = ActivePage();
  FStack->setCurrentIndex(page != nullptr ? 1 : 0);
  FTabs->setVisible(page != nullptr);
  if (page == FShown && page != nullptr) return;
  FShowing = true;
  StoreState();
  FShown = page;
  if (page != nullptr) {
    TUnitDocument& document = page->Source().Document();
    FEditor->setDocument(document.Document());
    FEditor->setUtf8(true);
    FEditor->setTabWidth(8);
    FEditor->setIndentationsUseTabs(false);
    FEditor->setIndentationWidth(IndentWidth);
    FHighlighter.Apply(document.Highlighting());
    RestoreState(page->State);
    emit FEditor->linesChanged();
  } else {
    FEditor->setDocument(QsciDocument());
  }
  FShowing = false;
  UpdateMarks();
  if (OnMarksWanted) OnMarksWanted();
  if (OnPageChange) OnPageChange();
  if (OnStatusChange) OnStatusChange();
}

void TEditWindow::StoreState() {
  if (FShown == nullptr) return;
  FShown->State = {FEditor->SendScintilla(QsciScintilla::SCI_GETCURRENTPOS),
                   FEditor->SendScintilla(QsciScintilla::SCI_GETANCHOR),
                   FEditor->SendScintilla(QsciScintilla::SCI_GETFIRSTVISIBLELINE),
                   FEditor->SendScintilla(QsciScintilla::SCI_GETXOFFSET)};
}

void TEditWindow::RestoreState(const TViewState& state) {
  FEditor->SendScintilla(QsciScintilla::SCI_SETSEL, static_cast<unsigned long>(state.Anchor),
                         state.Caret);
  FEditor->SendScintilla(QsciScintilla::SCI_SETFIRSTVISIBLELINE,
                         static_cast<unsigned long>(state.TopLine));
  FEditor->SendScintilla(QsciScintilla::SCI_SETXOFFSET, static_cast<unsigned long>(state.XOffset));
}

void TEditWindow::CursorOf(TEditPage& page, int& line, int& column) {
  if (&page == FShown) StoreState();
  page.Source().Document().PlaceOf(page.State.Caret, line, column);
  ++line, ++column;
}

void TEditWindow::SetCursor(TEditPage& page, int line, int column) {
  line = std::max(0, line - 1), column = std::max(0, column - 1);
  if (&page == FShown) {
    FEditor->setCursorPosition(line, column);
    FEditor->ensureCursorVisible();
  } else {
    page.State.Caret = page.State.Anchor = page.Source().Document().PositionOf(line, column);
  }
}

int TEditWindow::TopLineOf(TEditPage& page) {
  if (&page == FShown) StoreState();
  return static_cast<int>(page.State.TopLine) + 1;
}

void TEditWindow::SetTopLine(TEditPage& page, int line) {
  page.State.TopLine = std::max(0, line - 1);
  if (&page == FShown)
    FEditor->SendScintilla(QsciScintilla::SCI_SETFIRSTVISIBLELINE,
                           static_cast<unsigned long>(page.State.TopLine));
}

void TEditWindow::UpdatePage(const TSourceEditor& source) {
  for (TEditPage* page : PagesOf(source)) {
    const int index = FTabs->Tabs()->IndexOfObject(page);
    const std::string caption = ExtractFileNameEx(source.FileName());
    if (FTabs->Tabs()->Get(index) != caption) FTabs->Tabs()->Put(index, caption);
    UpdateMark(index);
  }
  if (FShown != nullptr && &FShown->Source() == &source) {
    const THighlighting wanted = HighlightingOf(source.FileName());
    if ((wanted == THighlighting::None) != (FEditor->lexer() == nullptr))
      FHighlighter.Apply(wanted);
    if (OnStatusChange && !FShowing) OnStatusChange();
  }
}

void TEditWindow::UpdateMarks() {
  for (int i = 0; i < FTabs->count(); ++i) UpdateMark(i);
}

void TEditWindow::UpdateMark(int index) {
  if (index >= FTabs->count() || index >= FTabs->Tabs()->Count()) return;
  const auto* page = dynamic_cast<TEditPage*>(FTabs->Tabs()->GetObject(index));
  if (page == nullptr) return;
  const TUnitDocument* document = page->Source().LoadedDocument();
  if (document == nullptr) return;
  // Setting an icon lays all tabs out: only those that change.
  const TMark mark = MarkOf(document);
  if (FTabs->tabData(index) != QVariant(static_cast<int>(mark))) {
    FTabs->setTabIcon(index, WorkbenchIcon(MarkIcons[mark]));
    FTabs->setTabData(index, static_cast<int>(mark));
  }
  FTabs->setTabToolTip(index, ToolTipOf(*document));
}

std::string TEditWindow::SelectedText() const {
  return FromQString(FEditor->selectedText());
}

std::string TEditWindow::Text() const {
  return FShown != nullptr ? EditorText(*FEditor) : std::string();
}

TTextMatch TEditWindow::Selection() const {
  const auto start = FEditor->SendScintilla(QsciScintilla::SCI_GETSELECTIONSTART);
  const auto end = FEditor->SendScintilla(QsciScintilla::SCI_GETSELECTIONEND);
  return {static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)};
}

void TEditWindow::Select(const TTextMatch& place) {
  const long start = static_cast<long>(place.Offset);
  const long line = FEditor->SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION, start);
  FEditor->SendScintilla(QsciScintilla::SCI_ENSUREVISIBLEENFORCEPOLICY, line);
  FEditor->SendScintilla(QsciScintilla::SCI_SETSEL, static_cast<unsigned long>(start),
                         static_cast<long>(place.Offset + place.Length));
}

void TEditWindow::Replace(const std::vector<TSourceEdit>& edits) {
  if (FShown != nullptr) FShown->Source().Document().ReplaceAll(edits);
}

void TEditWindow::ShowHits(const std::vector<TTextMatch>& hits) {
  // Marking more in the text would be seen as a wait.
  constexpr std::size_t mostInText = 2000;
  FEditor->SendScintilla(QsciScintilla::SCI_SETINDICATORCURRENT, HitIndicator);
  FEditor->SendScintilla(QsciScintilla::SCI_INDICATORCLEARRANGE, 0UL,
                         FEditor->SendScintilla(QsciScintilla::SCI_GETLENGTH));
  std::vector<int> lines;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    const TTextMatch& hit = hits[i];
    if (i < mostInText)
      FEditor->SendScintilla(QsciScintilla::SCI_INDICATORFILLRANGE, hit.Offset,
                             static_cast<long>(hit.Length));
    const auto line = static_cast<int>(
        FEditor->SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION, static_cast<long>(hit.Offset)));
    if (lines.empty() || lines.back() != line) lines.push_back(line);
  }
  FHitMarks->Show(std::move(lines), FEditor->lines());
}

}  // namespace wrenfold
