#include "designer/paint/DesignSurface.h"

#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>

#include "designer/model/BitmapFile.h"
#include "designer/model/HitTest.h"
#include "designer/paint/FormPicture.h"
#include "designer/paint/Painters.h"

namespace wrenfold {

namespace {

constexpr int Margin = 16, Grid = 8, SnapReach = 4, DragStart = 4, HandleSide = 7;
constexpr double LeastZoom = 0.1, MostZoom = 8, ZoomStep = 1.25;

// The eight handles of a selection: which sides a handle moves, and its cursor.
struct THandle {
  int X;  // -1 left, 0 none, 1 right
  int Y;
  Qt::CursorShape Cursor;
};
constexpr std::array<THandle, 8> Handles = {{
    {-1, -1, Qt::SizeFDiagCursor},
    {0, -1, Qt::SizeVerCursor},
    {1, -1, Qt::SizeBDiagCursor},
    {1, 0, Qt::SizeHorCursor},
    {1, 1, Qt::SizeFDiagCursor},
    {0, 1, Qt::SizeVerCursor},
    {-1, 1, Qt::SizeBDiagCursor},
    {-1, 0, Qt::SizeHorCursor},
}};
constexpr int NoHandle = -1;

QRectF HandleRect(const QRectF& area, const THandle& handle) {
  const QPointF middle(area.center().x() + handle.X * area.width() / 2,
                       area.center().y() + handle.Y * area.height() / 2);
  return {middle.x() - HandleSide / 2.0, middle.y() - HandleSide / 2.0, HandleSide, HandleSide};
}

TBounds Between(TPlace from, TPlace to) {
  return {std::min(from.X, to.X), std::min(from.Y, to.Y), std::abs(to.X - from.X) + 1,
          std::abs(to.Y - from.Y) + 1};
}

std::string PathOf(const TDesignNode& node) {
  return node.Scope != nullptr ? PathOf(*node.Scope) + "." + node.Name() : node.Name();
}

bool CanMove(const TDesignNode& node) {
  return !node.IsRoot() && node.Look() != TLook::Page && node.Own != nullptr;
}

bool CanSize(const TDesignNode& node) {
  return node.Own != nullptr && node.Look() != TLook::Page && node.Look() != TLook::Icon;
}

struct TArrow {
  int Key;
  int X;
  int Y;
};
constexpr TArrow Arrows[] = {
    {Qt::Key_Left, -1, 0}, {Qt::Key_Right, 1, 0}, {Qt::Key_Up, 0, -1}, {Qt::Key_Down, 0, 1}};

const TArrow* ArrowOf(int key) {
  const auto found = std::ranges::find(Arrows, key, &TArrow::Key);
  return found != std::end(Arrows) ? &*found : nullptr;
}

}  // namespace

TDesignSurface::TDesignSurface(QWidget* parent)
    : QWidget(parent), FFonts(std::make_unique<TFontBook>()) {
  setObjectName("DesignSurface");
  setAccessibleName(tr("Drawn form"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

TDesignSurface::~TDesignSurface() = default;

void TDesignSurface::ShowForm(const TDesignComponent* root, TFormCatalog* catalog) {
  FRoot = root;
  FCatalog = catalog;
  FTurnedPages.clear();
  FSelection.clear();
  FDrag.reset();
  Refresh();
}

void TDesignSurface::Refresh() {
  FDrag.reset();
  Compose();
  std::erase_if(FSelection, [&](const TDesignComponent* each) { return NodeOf(each) == nullptr; });
  Redraw();
}

void TDesignSurface::Compose() {
  FForm.reset();
  if (FRoot == nullptr || FCatalog == nullptr) return;
  FForm = ComposeForm(*FRoot, *FCatalog);
  for (const std::string& path : FTurnedPages)
    if (TDesignNode* page = FForm->Find(path)) TurnTo(*FForm, *page);
  LayoutForm(*FForm);
}

void TDesignSurface::Redraw() {
  FPicture = {};
  updateGeometry();
  resize(sizeHint());
  update();
}

QSize TDesignSurface::sizeHint() const {
  if (FForm == nullptr) return {2 * Margin, 2 * Margin};
  const TBounds& bounds = FForm->Root().Bounds;
  return QSize(static_cast<int>(std::ceil(bounds.Width * FZoom)) + 2 * Margin,
               static_cast<int>(std::ceil(bounds.Height * FZoom)) + 2 * Margin);
}

const std::vector<std::string>& TDesignSurface::Notes() const {
  static const std::vector<std::string> none;
  return FForm != nullptr ? FForm->Notes() : none;
}

void TDesignSurface::SetZoom(double zoom) {
  zoom = std::clamp(zoom, LeastZoom, MostZoom);
  if (zoom == FZoom) return;
  FZoom = zoom;
  Redraw();
}

void TDesignSurface::FitInto(QSize room) {
  if (FForm == nullptr) return;
  const TBounds& bounds = FForm->Root().Bounds;
  SetZoom(std::min({1.0, static_cast<double>(room.width() - 2 * Margin) / bounds.Width,
                    static_cast<double>(room.height() - 2 * Margin) / bounds.Height}));
}

TPlace TDesignSurface::FormPlace(QPointF point) const {
  return {static_cast<int>(std::floor((point.x() - Margin) / FZoom)),
          static_cast<int>(std::floor((point.y() - Margin) / FZoom))};
}

QRectF TDesignSurface::WidgetRect(const TBounds& bounds) const {
  return {Margin + bounds.Left * FZoom, Margin + bounds.Top * FZoom, bounds.Width * FZoom,
          bounds.Height * FZoom};
}

QRect TDesignSurface::PlaceOf(const TDesignComponent& component) const {
  const TDesignNode* node = NodeOf(&component);
  return node != nullptr && node->Shown ? WidgetRect(node->Clip).toAlignedRect() : QRect();
}

TDesignNode* TDesignSurface::NodeOf(const TDesignComponent* component) const {
  return FForm != nullptr && component != nullptr ? FForm->NodeOf(*component) : nullptr;
}

const TDesignNode* TDesignSurface::LeadingNode() const {
  return FSelection.empty() ? nullptr : NodeOf(FSelection.front());
}

// A component inside of another chosen one moves along with it.
std::vector<const TDesignNode*> TDesignSurface::MovableNodes() const {
  const auto chosenAbove = [&](const TDesignNode& node) {
    for (const TDesignNode* parent = node.Parent; parent != nullptr; parent = parent->Parent)
      if (parent->Own != nullptr && std::ranges::find(FSelection, parent->Own) != FSelection.end())
        return true;
    return false;
  };
  std::vector<const TDesignNode*> nodes;
  for (const TDesignComponent* component : FSelection)
    if (const TDesignNode* node = NodeOf(component);
        node != nullptr && CanMove(*node) && !chosenAbove(*node))
      nodes.push_back(node);
  return nodes;
}

void TDesignSurface::ShowSelection(const TComponentList& selection) {
  FSelection.clear();
  bool turned = false;
  for (const TDesignComponent* component : selection) {
    const TDesignNode* node = NodeOf(component);
    if (node == nullptr) continue;
    FSelection.push_back(component);
    for (; node != nullptr && !node->IsRoot(); node = node->Parent) {
      if (node->Look() != TLook::Page || ActivePage(*node->Parent) == node) continue;
      FTurnedPages.push_back(PathOf(*node));
      turned = true;
    }
  }
  if (!turned) return update();
  Compose();
  Redraw();
}

// Components inside of frames belong to those, unless the form says something of them.
bool TDesignSurface::Choosable(const TDesignNode& node) const {
  return node.Own != nullptr || (OnTakeOver && node.Scope == nullptr && !node.Name().empty());
}

const TDesignNode* TDesignSurface::ChoosableNode(const TDesignNode* node) const {
  while (node != nullptr && !Choosable(*node)) node = node->Parent;
  return node;
}

TComponentList TDesignSurface::OwnOf(const std::vector<const TDesignNode*>& nodes) {
  TComponentList own;
  std::vector<std::string> inherited;
  for (const TDesignNode* node : nodes) {
    if (node->Own != nullptr) own.push_back(node->Own);
    else inherited.push_back(node->Name());
  }
  if (inherited.empty()) return own;
  OnTakeOver(inherited);
  for (const std::string& name : inherited)
    if (const TDesignNode* node = FForm->Find(name); node != nullptr && node->Own != nullptr)
      own.push_back(node->Own);
  return own;
}

void TDesignSurface::Choose(TComponentList selection) {
  if (selection == FSelection) return;
  FSelection = std::move(selection);
  update();
  if (OnSelect) OnSelect(FSelection);
}

void TDesignSurface::ChooseAt(TPlace place, bool add) {
  const TDesignNode* node = ChoosableNode(NodeAt(*FForm, place));
  const TComponentList own = node != nullptr ? OwnOf({node}) : TComponentList();
  if (own.empty()) return;
  const TDesignComponent* chosen = own.front();
  if (!add) {
    // A click into a selection of several leads it and keeps the others.
    TComponentList selection{chosen};
    if (std::ranges::find(FSelection, chosen) != FSelection.end())
      for (const TDesignComponent* each : FSelection)
        if (each != chosen) selection.push_back(each);
    return Choose(std::move(selection));
  }
  TComponentList selection = FSelection;
  if (std::erase(selection, chosen) == 0) selection.push_back(chosen);
  Choose(std::move(selection));
}

void TDesignSurface::ChooseBand() {
  std::vector<const TDesignNode*> nodes;
  for (const TDesignNode* node : NodesIn(*FDrag->Within, Between(FDrag->Start, FDrag->Now)))
    if (Choosable(*node)) nodes.push_back(node);
  if (nodes.empty()) nodes.push_back(ChoosableNode(FDrag->Within));
  Choose(OwnOf(nodes));
}

void TDesignSurface::ChooseParent() {
  const TDesignNode* node = LeadingNode();
  node = node != nullptr ? ChoosableNode(node->Parent) : nullptr;
  if (node != nullptr) Choose(OwnOf({node}));
}

// Through the shown components in the order of the form.
void TDesignSurface::WalkBy(int step) {
  std::vector<const TDesignNode*> order;
  for (const TDesignNode* node : FForm->Nodes())
    if (Choosable(*node) && node->Shown) order.push_back(node);
  if (order.empty()) return;
  const auto found = std::ranges::find(order, LeadingNode());
  const auto size = static_cast<std::ptrdiff_t>(order.size());
  std::ptrdiff_t next = found == order.end() ? 0 : found - order.begin() + step;
  next = (next + size) % size;
  Choose(OwnOf({order[static_cast<std::size_t>(next)]}));
}

bool TDesignSurface::TurnPageAt(TPlace place) {
  const TDesignNode* node = NodeAt(*FForm, place);
  if (node == nullptr || ActivePage(*node) == nullptr) return false;
  const TDesignNode* page =
      PageAtTab(*FFonts, *node, {place.X - node->Origin.X, place.Y - node->Origin.Y});
  if (page == nullptr || page == ActivePage(*node)) return false;
  FTurnedPages.push_back(PathOf(*page));
  TurnTo(*FForm, *page);
  LayoutForm(*FForm);
  Redraw();
  return true;
}

int TDesignSurface::HandleAt(QPointF point) const {
  const TDesignNode* node = LeadingNode();
  if (node == nullptr || FSelection.size() != 1 || !node->Shown || !CanSize(*node)) return NoHandle;
  const QRectF area = WidgetRect(node->BoundsInForm());
  for (std::size_t i = 0; i < Handles.size(); ++i)
    if (HandleRect(area, Handles[i]).adjusted(-1, -1, 1, 1).contains(point))
      return static_cast<int>(i);
  return NoHandle;
}

std::vector<TBounds> TDesignSurface::NeighboursOf(const TDesignNode& node) const {
  std::vector<TBounds> neighbours;
  for (const TDesignNode* each : node.Parent->Children)
    if (each->Shown && Choosable(*each) &&
        (each->Own == nullptr || std::ranges::find(FSelection, each->Own) == FSelection.end()))
      neighbours.push_back(each->Bounds);
  return neighbours;
}

TBounds TDesignSurface::SizedBounds(const TDesignNode& node, const TDrag& drag) const {
  const THandle& handle = Handles[static_cast<std::size_t>(drag.Handle)];
  TBounds bounds = node.Bounds;
  const auto toGrid = [](int value) { return (value + Grid / 2) / Grid * Grid; };
  const int x = drag.Now.X - drag.Start.X, y = drag.Now.Y - drag.Start.Y;
  const int right = bounds.Right(), bottom = bounds.Bottom();
  if (handle.X > 0) bounds.Width = toGrid(right + x) - bounds.Left;
  if (handle.Y > 0) bounds.Height = toGrid(bottom + y) - bounds.Top;
  if (handle.X < 0) bounds.Left = std::min(toGrid(bounds.Left + x), right - 1);
  if (handle.Y < 0) bounds.Top = std::min(toGrid(bounds.Top + y), bottom - 1);
  if (handle.X < 0) bounds.Width = right - bounds.Left;
  if (handle.Y < 0) bounds.Height = bottom - bounds.Top;
  bounds.Width = std::max(1, bounds.Width);
  bounds.Height = std::max(1, bounds.Height);
  return bounds;
}

std::vector<TBoundsChange> TDesignSurface::Dragged() {
  if (FDrag->Kind == TDragKind::Size) {
    const TDesignNode* node = LeadingNode();
    return {{node, SizedBounds(*node, *FDrag)}};
  }
  const auto nodes = MovableNodes();
  if (nodes.empty()) return {};
  const TBounds& leading = nodes.front()->Bounds;
  const TBounds moved = leading.Moved(FDrag->Now.X - FDrag->Start.X, FDrag->Now.Y - FDrag->Start.Y);
  FSnapped = SnapMove(moved, NeighboursOf(*nodes.front()), Grid, SnapReach);
  std::vector<TBoundsChange> changes;
  for (const TDesignNode* node : nodes)
    changes.push_back({node, node->Bounds.Moved(FSnapped.Bounds.Left - leading.Left,
                                                FSnapped.Bounds.Top - leading.Top)});
  return changes;
}

void TDesignSurface::Tell(const std::string& step, std::vector<TBoundsChange> changes,
                          bool continues) {
  std::erase_if(changes,
                [](const TBoundsChange& each) { return each.Bounds == each.Node->Bounds; });
  if (!changes.empty() && OnBounds) OnBounds(step, WithFollowers(std::move(changes)), continues);
}

std::vector<TBoundsChange> TDesignSurface::Arranged(TArrangement arrangement) const {
  const auto nodes = MovableNodes();
  std::vector<TBounds> bounds;
  for (const TDesignNode* node : nodes) bounds.push_back(node->Bounds);
  const auto arranged = Arrange(arrangement, bounds);
  std::vector<TBoundsChange> changes;
  for (std::size_t i = 0; i < nodes.size(); ++i)
    if (arranged[i] != bounds[i]) changes.push_back({nodes[i], arranged[i]});
  return WithFollowers(std::move(changes));
}

// The action of the surface that has this shortcut.
QAction* TDesignSurface::ActionOf(const QKeyEvent& key) const {
  const QKeySequence pressed(key.keyCombination());
  for (QAction* action : actions())
    if (action->shortcuts().contains(pressed)) return action;
  return nullptr;
}

bool TDesignSurface::Takes(const QKeyEvent& key) const {
  return ActionOf(key) != nullptr || ArrowOf(key.key()) != nullptr || key.key() == Qt::Key_Escape;
}

bool TDesignSurface::event(QEvent* event) {
  // The surface's own keys are not for the commands of the window around it.
  if (event->type() == QEvent::ShortcutOverride) {
    if (Takes(*static_cast<QKeyEvent*>(event))) {
      event->accept();
      return true;
    }
  }
  // Tab walks through the form instead of leaving it.
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
      keyPressEvent(key);
      return true;
    }
  }
  return QWidget::event(event);
}

void TDesignSurface::mousePressEvent(QMouseEvent* event) {
  setFocus(Qt::MouseFocusReason);
  FKeyRun.reset();
  if (FForm == nullptr || event->button() == Qt::MiddleButton) return;
  const TPlace place = FormPlace(event->position());
  const int handle = HandleAt(event->position());
  if (handle != NoHandle && event->button() == Qt::LeftButton) {
    FDrag = TDrag{TDragKind::Size, place, place, nullptr, handle, false};
    return;
  }
  const bool turned = event->button() == Qt::LeftButton && TurnPageAt(place);
  const TDesignNode* node = ChoosableNode(NodeAt(*FForm, place));
  if (node == nullptr) return;
  const bool add = event->modifiers().testFlag(Qt::ControlModifier);
  // From the form itself, a page, or with Ctrl from any container, a band is drawn.
  const bool band =
      node->IsRoot() || node->Look() == TLook::Page || (add && !node->Children.empty());
  if (!add || !band) ChooseAt(place, add);
  node = ChoosableNode(NodeAt(*FForm, place));
  if (turned || event->button() != Qt::LeftButton || (add && !band)) return;
  FDrag = TDrag{band ? TDragKind::Band : TDragKind::Move, place, place, node, 0, false};
}

void TDesignSurface::mouseMoveEvent(QMouseEvent* event) {
  if (FForm == nullptr) return;
  if (!FDrag.has_value()) return ShowCursor(event->position());
  FDrag->Now = FormPlace(event->position());
  const double way =
      std::max(std::abs(FDrag->Now.X - FDrag->Start.X), std::abs(FDrag->Now.Y - FDrag->Start.Y)) *
      FZoom;
  FDrag->Began = FDrag->Began || way >= DragStart;
  update();
}

void TDesignSurface::mouseReleaseEvent(QMouseEvent* event) {
  if (!FDrag.has_value() || event->button() != Qt::LeftButton) return;
  FDrag->Now = FormPlace(event->position());
  const bool began = FDrag->Began;
  if (FDrag->Kind == TDragKind::Band) {
    const TPlace start = FDrag->Start;
    const bool add = event->modifiers().testFlag(Qt::ControlModifier);
    if (began) ChooseBand();
    FDrag.reset();
    if (!began && add) ChooseAt(start, true);
    return update();
  }
  const std::string step = FDrag->Kind == TDragKind::Move ? "Move" : "Size";
  std::vector<TBoundsChange> changes = began ? Dragged() : std::vector<TBoundsChange>();
  FDrag.reset();
  update();
  Tell(step, std::move(changes));
}

void TDesignSurface::mouseDoubleClickEvent(QMouseEvent* event) {
  if (FForm == nullptr || event->button() != Qt::LeftButton) return;
  const TDesignNode* node = ChoosableNode(NodeAt(*FForm, FormPlace(event->position())));
  if (node != nullptr && node->Own != nullptr && OnOpen) OnOpen(*node->Own);
}

void TDesignSurface::contextMenuEvent(QContextMenuEvent* event) {
  event->ignore();  // the window that the surface lies in has the menu
}

void TDesignSurface::keyPressEvent(QKeyEvent* event) {
  if (FForm == nullptr) return QWidget::keyPressEvent(event);
  const bool control = event->modifiers().testFlag(Qt::ControlModifier);
  const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
  const bool modifier = event->key() == Qt::Key_Control || event->key() == Qt::Key_Shift;
  const bool arrow = ArrowOf(event->key()) != nullptr && control != shift;
  if (!arrow && !modifier) FKeyRun.reset();
  switch (event->key()) {
    case Qt::Key_Escape:
      if (!FDrag.has_value()) return ChooseParent();
      FDrag.reset();
      return update();
    case Qt::Key_Tab:
      return WalkBy(1);
    case Qt::Key_Backtab:
      return WalkBy(-1);
    default:
      break;
  }
  if (arrow) return ChangeByKeys(event->key(), shift);
  if (QAction* action = ActionOf(*event)) return action->trigger();
  QWidget::keyPressEvent(event);
}

void TDesignSurface::ChangeByKeys(int key, bool size) {
  const TArrow& arrow = *ArrowOf(key);
  const TKeyRun run{size, FSelection};
  const bool continues = FKeyRun == run;
  FKeyRun = run;
  std::vector<TBoundsChange> changes;
  if (!size) {
    for (const TDesignNode* node : MovableNodes())
      changes.push_back({node, node->Bounds.Moved(arrow.X, arrow.Y)});
    return Tell("Move", std::move(changes), continues);
  }
  for (const TDesignComponent* component : FSelection) {
    const TDesignNode* node = NodeOf(component);
    if (node == nullptr || !CanSize(*node)) continue;
    TBounds bounds = node->Bounds;
    bounds.Width = std::max(1, bounds.Width + arrow.X);
    bounds.Height = std::max(1, bounds.Height + arrow.Y);
    changes.push_back({node, bounds});
  }
  Tell("Size", std::move(changes), continues);
}

void TDesignSurface::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QWidget::wheelEvent(event);
  const int turn = event->angleDelta().y();
  if (turn != 0) SetZoom(FZoom * (turn > 0 ? ZoomStep : 1 / ZoomStep));
  event->accept();
}

void TDesignSurface::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) Redraw();
}

void TDesignSurface::ShowCursor(QPointF point) {
  const int handle = HandleAt(point);
  setCursor(handle != NoHandle ? Handles[static_cast<std::size_t>(handle)].Cursor
                               : Qt::ArrowCursor);
}

void TDesignSurface::paintEvent(QPaintEvent*) {
  QPainter canvas(this);
  canvas.fillRect(rect(), palette().color(QPalette::Mid));
  if (FForm == nullptr) return;
  const double ratio = devicePixelRatioF();
  if (FPicture.isNull()) {
    try {
      FPicture = DrawFormPicture(*FForm, {palette(), style()}, *FFonts, FZoom * ratio);
    } catch (const EPictureError& error) {
      FForm->AddNote(error.Message());
      return;
    }
    FPicture.setDevicePixelRatio(ratio);
  }
  canvas.drawImage(QPointF(Margin, Margin), FPicture);
  DrawMarks(canvas);
}

void TDesignSurface::DrawMarks(QPainter& canvas) {
  canvas.setRenderHint(QPainter::Antialiasing);
  bool leading = true;
  for (const TDesignComponent* component : FSelection) {
    const TDesignNode* node = NodeOf(component);
    if (node != nullptr && node->Shown) DrawHandles(canvas, *node, leading);
    leading = false;
  }
  if (!FDrag.has_value() || !FDrag->Began) return;
  const QColor colour = palette().color(QPalette::Highlight);
  canvas.setBrush(Qt::NoBrush);
  canvas.setPen(QPen(colour, 1, Qt::DashLine));
  if (FDrag->Kind == TDragKind::Band)
    return canvas.drawRect(WidgetRect(Between(FDrag->Start, FDrag->Now)));
  FSnapped = {};
  for (const TBoundsChange& change : Dragged()) {
    const TDesignNode& node = *change.Node;
    canvas.drawRect(WidgetRect(
        change.Bounds.Moved(node.Origin.X - node.Bounds.Left, node.Origin.Y - node.Bounds.Top)));
  }
  const TDesignNode* node = LeadingNode();
  if (FDrag->Kind != TDragKind::Move || node == nullptr) return;
  const TPlace origin{node->Origin.X - node->Bounds.Left, node->Origin.Y - node->Bounds.Top};
  canvas.setPen(QPen(Qt::red, 1));
  if (FSnapped.GuideX >= 0) {
    const double x = WidgetRect({origin.X + FSnapped.GuideX, 0, 0, 0}).left();
    canvas.drawLine(QPointF(x, Margin), QPointF(x, height() - Margin));
  }
  if (FSnapped.GuideY >= 0) {
    const double y = WidgetRect({0, origin.Y + FSnapped.GuideY, 0, 0}).top();
    canvas.drawLine(QPointF(Margin, y), QPointF(width() - Margin, y));
  }
}

void TDesignSurface::DrawHandles(QPainter& canvas, const TDesignNode& node, bool leading) {
  const QRectF area = WidgetRect(node.BoundsInForm());
  const QColor colour = palette().color(QPalette::Highlight);
  canvas.setBrush(Qt::NoBrush);
  canvas.setPen(QPen(colour, 1));
  canvas.drawRect(area);
  canvas.setPen(QPen(Qt::white, 1));
  canvas.setBrush(leading ? colour : QColor(Qt::gray));
  for (const THandle& handle : Handles) canvas.drawRect(HandleRect(area, handle));
}

}  // namespace wrenfold
