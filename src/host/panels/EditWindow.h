// The code editor: one editing control whose pages are the tabs above it.
#pragma once

#include <Qsci/qsciscintilla.h>

#include <QLabel>
#include <QStackedLayout>
#include <QTimer>
#include <functional>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include "host/documents/Modules.h"
#include "host/panels/ScrollMarks.h"
#include "platform/source/Highlighting.h"
#include "platform/widgets/Forms.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/TabControl.h"
#include "project/TextSearch.h"

namespace wrenfold {

class TEditPage;
class TEditWindow;

// The editing control. It shows the document of the active page.
class TEditControl : public TControlOf<QsciScintilla> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TEditControl(TComponent* owner, QWidget* parent);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  // Files that are dropped are opened by the main window, not inserted.
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
};

// The tabs. Their texts and attached pages may be rewritten by others at any time; marks and tool
// tips then follow.
class TEditTabs : public TTabControl {
 public:
  TEditTabs(TComponent* owner, QWidget* parent);
  std::function<void()> OnRewritten;

 protected:
  void TabsChanged() override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QTimer FLater;
};

// A view of a source text as the open tools interface sees it.
class TEditView final : public TInterfacedObject<IOTAEditView> {
 public:
  TEditView(TEditWindow& window, TEditPage& page) : FWindow(&window), FPage(&page) {}
  void Detach() { FPage = nullptr; }

  void GetCursorPos(int& line, int& column) override;
  void SetCursorPos(int line, int column) override;
  int GetTopLine() override;
  void SetTopLine(int line) override;
  TForm* GetEditWindow() override;

 private:
  TEditWindow* FWindow;
  TEditPage* FPage;
};

// Where a view stands in its text. Positions are bytes, lines count from 0.
struct TViewState {
  long Caret = 0;
  long Anchor = 0;
  long TopLine = 0;
  long XOffset = 0;
};

// A page: one view of a source text, attached to its tab.
class TEditPage final : public TObject {
 public:
  TEditPage(TEditWindow& window, TSourceEditor& source);
  ~TEditPage() override;

  TSourceEditor& Source() const { return *FSource; }
  TEditView& View() const { return *FView; }
  TViewState State;

 private:
  TIntf<TSourceEditor> FSource;
  TIntf<TEditView> FView;
};

class TEditWindow : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TEditWindow(TComponent* owner, QWidget* parent = nullptr);
  ~TEditWindow() override;

  TEditTabs& Tabs() { return *FTabs; }
  TEditControl& Editor() { return *FEditor; }

  // In the order of the tabs.
  std::vector<TEditPage*> Pages() const;
  std::vector<TEditPage*> PagesOf(const TSourceEditor& source) const;
  TEditPage* ActivePage() const;
  // Appends a page and makes it the active one. Raises EFOpenError when the text cannot be read.
  TEditPage& AddPage(TSourceEditor& source);
  void Activate(TEditPage& page);
  // Pages that are added in between are shown, and the last of them becomes active, at the end of
  // the outermost update: hundreds at once would each lay all tabs out.
  void BeginUpdate();
  void EndUpdate();
  bool Updating() const { return FUpdates > 0; }
  // Takes the page out, whatever its text. The page behind it, else the one before, follows.
  void RemovePage(TEditPage& page);

  // Line and column from 1; the state of a page that is not shown is changed as well.
  void CursorOf(TEditPage& page, int& line, int& column);
  void SetCursor(TEditPage& page, int line, int column);
  int TopLineOf(TEditPage& page);
  void SetTopLine(TEditPage& page, int line);

  // The document of that editor has another name, state or text.
  void UpdatePage(const TSourceEditor& source);
  void Recolour() { FHighlighter.Recolour(); }
  // The bytes of the text between the marks of the selection.
  std::string SelectedText() const;
  // The text of the active page, and the selection in it.
  std::string Text() const;
  TTextMatch Selection() const;
  void Select(const TTextMatch& place);
  // Changes the text of the active page at places in the order of their offsets, as one edit.
  void Replace(const std::vector<TSourceEdit>& edits);
  // Marks places in the text and beside it, instead of those before.
  void ShowHits(const std::vector<TTextMatch>& hits);

  std::function<void()> OnPageChange;    // another page is active, or none
  std::function<void()> OnStatusChange;  // caret, insert mode, modified
  std::function<void(TEditPage&)> OnCloseRequest;
  // A click beside the line numbers; lines from 1.
  std::function<void(TEditPage&, int line)> OnMarginClick;
  // The menu of the place beside the line numbers is wanted; lines from 1.
  std::function<void(TEditPage&, int line, const QPoint& place)> OnMarginMenu;
  // The mouse rests on a byte of a line's text.
  std::function<void(std::string_view line, std::size_t column, const QPoint& place)> OnTipWanted;
  // Lines were added or removed: where the breakpoints stand now.
  std::function<void(TEditPage&, const std::set<int>& lines)> OnMarksMoved;
  // A page is shown, or none: its marks are wanted.
  std::function<void()> OnMarksWanted;
  // Marks lines of the active page: breakpoints, and where the program stands (0: nowhere here).
  void ShowMarks(const std::set<int>& breakpoints, int executionLine);
  // Fills the local menu, which is empty.
  std::function<void(TPopupMenu&)> OnBuildMenu;

 private:
  void LayOut();
  void ConnectEditor();
  void TabChanged(TObject* sender);
  void MenuPopup(TObject* sender);
  void ShowActivePage();
  void StoreState();
  void RestoreState(const TViewState& state);
  void UpdateMarks();
  void UpdateMark(int index);
  void ModificationChanged(bool modified);
  void MarksMoved();
  void MouseRests(int position, int x, int y);

  TEditTabs* FTabs;
  TEditControl* FEditor;
  TPopupMenu* FMenu;
  QLabel* FEmptyHint;
  QStackedLayout* FStack = nullptr;
  THighlighter FHighlighter;
  TScrollMarks* FHitMarks;
  std::vector<std::unique_ptr<TEditPage>> FPages;  // unordered
  TEditPage* FShown = nullptr;
  bool FShowing = false;
  bool FMarking = false;
  int FUpdates = 0;
};

}  // namespace wrenfold
