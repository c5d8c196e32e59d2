// The widget that shows a form drawn, and lets its components be chosen, moved and sized.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "designer/model/Arrange.h"
#include "designer/paint/Fonts.h"

namespace wrenfold {

using TComponentList = std::vector<const TDesignComponent*>;

// Shows one form and asks its owner for every change: it changes no component itself. The owner
// calls Refresh when components have changed. Keys of actions that are added to the widget belong
// to it while it has the focus. Meant to lie in a QScrollArea that leaves its size to it. Colours
// and style are those of the desktop.
class TDesignSurface : public QWidget {
 public:
  explicit TDesignSurface(QWidget* parent = nullptr);
  ~TDesignSurface() override;

  // Both must outlive the surface or the next call; null shows nothing.
  void ShowForm(const TDesignComponent* root, TFormCatalog* catalog);
  // Components or values may be others now. Pages that were turned up stay so.
  void Refresh();

  // The chosen components, the one that leads first; in the order of choosing.
  const TComponentList& Selection() const { return FSelection; }
  // Shows another selection without telling the owner; turns up the pages that hide it. Components
  // of other forms are left out.
  void ShowSelection(const TComponentList& selection);

  // 1 is the form's own size.
  double Zoom() const { return FZoom; }
  void SetZoom(double zoom);
  void FitInto(QSize room);

  // What could not be drawn as stored.
  const std::vector<std::string>& Notes() const;
  // Null when nothing is shown. Valid until the next Refresh.
  const TComposedForm* Form() const { return FForm.get(); }
  // The place of a component in the widget; empty when it is not shown.
  QRect PlaceOf(const TDesignComponent& component) const;

  // Whether the key means something here: it moves, walks, or is one of a command that was added.
  bool Takes(const QKeyEvent& key) const;

  // The bounds of the chosen components as an arrangement makes them.
  std::vector<TBoundsChange> Arranged(TArrangement arrangement) const;

  // The user chose components.
  std::function<void(const TComponentList&)> OnSelect;
  // The user moved or sized components, in one step of that name, which may go on with the one
  // before: presses of the arrow keys in a row are one.
  std::function<void(const std::string& step, const std::vector<TBoundsChange>&, bool continues)>
      OnBounds;
  // Components that the form only inherits, by name, are about to be chosen. The owner puts
  // components of those names into the form and calls Refresh. Without it their parents are chosen.
  std::function<void(const std::vector<std::string>& names)> OnTakeOver;
  // A double click on a component.
  std::function<void(const TDesignComponent&)> OnOpen;

  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  enum class TDragKind { Band, Move, Size };
  struct TDrag {
    TDragKind Kind;
    TPlace Start;
    TPlace Now;
    const TDesignNode* Within = nullptr;  // of a band: whose children it chooses
    int Handle = 0;                       // of sizing
    bool Began = false;                   // the mouse went far enough to mean it
  };

  TPlace FormPlace(QPointF point) const;
  QRectF WidgetRect(const TBounds& bounds) const;
  TDesignNode* NodeOf(const TDesignComponent* component) const;
  const TDesignNode* LeadingNode() const;
  std::vector<const TDesignNode*> MovableNodes() const;

  // The node itself or the nearest parent that can be chosen.
  const TDesignNode* ChoosableNode(const TDesignNode* node) const;
  bool Choosable(const TDesignNode& node) const;
  // The components of the form behind the nodes, taken over where there are none. All nodes may be
  // others afterwards.
  TComponentList OwnOf(const std::vector<const TDesignNode*>& nodes);
  void Choose(TComponentList selection);
  void ChooseAt(TPlace place, bool add);
  void ChooseBand();
  void ChooseParent();
  void WalkBy(int step);
  bool TurnPageAt(TPlace place);
  int HandleAt(QPointF point) const;
  std::vector<TBounds> NeighboursOf(const TDesignNode& node) const;
  // What the drag would give if it ended here.
  std::vector<TBoundsChange> Dragged();
  TBounds SizedBounds(const TDesignNode& node, const TDrag& drag) const;
  QAction* ActionOf(const QKeyEvent& key) const;
  void ChangeByKeys(int key, bool size);
  void Tell(const std::string& step, std::vector<TBoundsChange> changes, bool continues = false);

  void Compose();
  void Redraw();
  void DrawMarks(QPainter& canvas);
  void DrawHandles(QPainter& canvas, const TDesignNode& node, bool leading);
  void ShowCursor(QPointF point);

  const TDesignComponent* FRoot = nullptr;
  TFormCatalog* FCatalog = nullptr;
  std::unique_ptr<TComposedForm> FForm;
  std::unique_ptr<TFontBook> FFonts;
  std::vector<std::string> FTurnedPages;  // paths of names
  TComponentList FSelection;
  std::optional<TDrag> FDrag;
  struct TKeyRun {
    bool Size;
    TComponentList Selection;
    friend bool operator==(const TKeyRun&, const TKeyRun&) = default;
  };
  std::optional<TKeyRun> FKeyRun;  // the arrow keys that were pressed last
  TSnapped FSnapped;
  QImage FPicture;  // of the form, in the pixels of the screen
  double FZoom = 1;
};

}  // namespace wrenfold
