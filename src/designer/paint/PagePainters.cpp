// Paints pages and their tabs.
#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// A tab with the page that it turns up; none for tabs that are mere texts.
struct TTab {
  QString Caption;
  TDesignNode* Page = nullptr;
  QRect Place;
};

constexpr int TabStrip = 21, TabPadding = 6;

enum class TTabSide { Top, Bottom, Left, Right };

TTabSide SideOf(const TDesignNode& node) {
  const std::string_view stored = node.Identifier("TabPosition");
  if (stored == "tpBottom") return TTabSide::Bottom;
  if (stored == "tpLeft") return TTabSide::Left;
  return stored == "tpRight" ? TTabSide::Right : TTabSide::Top;
}

bool IsUpright(TTabSide side) {
  return side == TTabSide::Left || side == TTabSide::Right;
}

int StripOf(const TDesignNode& node) {
  const int height = std::clamp(node.Bound("TabHeight", 0), 0, 100);
  return height > 0 ? height : TabStrip;
}

QString PageCaption(const TDesignNode& page) {
  const QString caption = TPainting::Caption(page);
  return caption.isEmpty() && !page.Has("Caption") ? ToQString(page.Name()) : caption;
}

// Tabs side by side from the beginning of their side; what does not fit is left out.
void PlaceTabs(std::vector<TTab>& tabs, const QFontMetrics& metrics, const TDesignNode& node) {
  const TTabSide side = SideOf(node);
  const int strip = StripOf(node);
  const int fixed = std::clamp(node.Bound("TabWidth", 0), 0, 1000);
  const int far = (IsUpright(side) ? node.Bounds.Width : node.Bounds.Height) - strip - 2;
  const int across = side == TTabSide::Bottom || side == TTabSide::Right ? far : 2;
  int along = 2;
  for (TTab& tab : tabs) {
    const int text = metrics.size(Qt::TextShowMnemonic, tab.Caption).width();
    const int length = fixed > 0 ? fixed : text + 2 * TabPadding;
    tab.Place =
        IsUpright(side) ? QRect(across, along, strip, length) : QRect(along, across, length, strip);
    along += length;
  }
}

std::vector<TTab> TabsOf(const QFontMetrics& metrics, const TDesignNode& node) {
  std::vector<TTab> tabs;
  for (TDesignNode* page : node.Children)
    if (page->Look() == TLook::Page && page->Boolean("TabVisible", true))
      tabs.push_back({PageCaption(*page), page, {}});
  if (tabs.empty())
    for (const std::string& text : node.Strings("Tabs.Strings"))
      tabs.push_back({ToQString(text), nullptr, {}});
  PlaceTabs(tabs, metrics, node);
  return tabs;
}

// The edge of the tab at its page.
QLine InnerEdge(const QRect& place, TTabSide side) {
  switch (side) {
    case TTabSide::Top:
      return {place.left() + 1, place.bottom(), place.right() - 1, place.bottom()};
    case TTabSide::Bottom:
      return {place.left() + 1, place.top(), place.right() - 1, place.top()};
    case TTabSide::Left:
      return {place.right(), place.top() + 1, place.right(), place.bottom() - 1};
    case TTabSide::Right:
      return {place.left(), place.top() + 1, place.left(), place.bottom() - 1};
  }
  return {};
}

// Upwards at the left side, downwards at the right one.
void DrawUprightText(TPainting& painting, const QRect& place, bool upwards, const QString& text) {
  painting.Canvas.save();
  painting.Canvas.translate(upwards ? place.left() : place.right() + 1,
                            upwards ? place.bottom() + 1 : place.top());
  painting.Canvas.rotate(upwards ? -90 : 90);
  painting.DrawText(QRect(0, 0, place.height(), place.width()),
                    Qt::AlignCenter | Qt::TextShowMnemonic, text);
  painting.Canvas.restore();
}

void DrawTab(TPainting& painting, const TTab& tab, bool chosen, TTabSide side) {
  QRect place = tab.Place;
  if (chosen && IsUpright(side))
    place.adjust(side == TTabSide::Left ? -2 : 0, -2, side == TTabSide::Right ? 2 : 0, 2);
  else if (chosen)
    place.adjust(-2, side == TTabSide::Top ? -2 : 0, 2, side == TTabSide::Bottom ? 2 : 0);
  painting.Fill(place, painting.SystemColour(chosen ? QPalette::Window : QPalette::Midlight));
  painting.DrawOutline(place, painting.SystemColour(QPalette::Mid));
  if (chosen) {
    // The tab opens into its page.
    painting.Canvas.setPen(painting.SystemColour(QPalette::Window));
    painting.Canvas.drawLine(InnerEdge(place, side));
  }
  if (IsUpright(side)) DrawUprightText(painting, tab.Place, side == TTabSide::Left, tab.Caption);
  else painting.DrawText(tab.Place, Qt::AlignCenter | Qt::TextShowMnemonic, tab.Caption);
}

void DrawTabs(TPainting& painting, const TDesignNode& node, const std::vector<TTab>& tabs,
              std::size_t chosen) {
  const auto draw = [&](std::size_t i) {
    if (tabs[i].Place.intersects(painting.Area()))
      DrawTab(painting, tabs[i], i == chosen, SideOf(node));
  };
  for (std::size_t i = 0; i < tabs.size(); ++i)
    if (i != chosen) draw(i);
  if (chosen < tabs.size()) draw(chosen);
}

void DrawPane(TPainting& painting, const TDesignNode& node, bool tabs) {
  QRect pane = painting.Area();
  const int room = tabs ? StripOf(node) + 1 : 0;
  switch (SideOf(node)) {
    case TTabSide::Top:
      pane.adjust(0, room, 0, 0);
      break;
    case TTabSide::Bottom:
      pane.adjust(0, 0, 0, -room);
      break;
    case TTabSide::Left:
      pane.adjust(room, 0, 0, 0);
      break;
    case TTabSide::Right:
      pane.adjust(0, 0, -room, 0);
      break;
  }
  painting.DrawOutline(pane, painting.SystemColour(QPalette::Mid));
}

std::size_t ChosenTab(const TDesignNode& node, const std::vector<TTab>& tabs) {
  const TDesignNode* active = ActivePage(node);
  for (std::size_t i = 0; i < tabs.size(); ++i)
    if (tabs[i].Page != nullptr && tabs[i].Page == active) return i;
  if (active != nullptr) return tabs.size();
  return static_cast<std::size_t>(std::clamp<std::int64_t>(node.Integer("TabIndex", 0), 0, 1000));
}

}  // namespace

void PaintPageControl(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const auto tabs = TabsOf(QFontMetrics(painting.Font()), node);
  DrawPane(painting, node, !tabs.empty());
  DrawTabs(painting, node, tabs, ChosenTab(node, tabs));
}

void PaintTabControl(TPainting& painting, const TDesignNode& node) {
  PaintPageControl(painting, node);
}

void PaintTabSet(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const auto tabs = TabsOf(QFontMetrics(painting.Font()), node);
  DrawTabs(painting, node, tabs, ChosenTab(node, tabs));
}

void PaintNotebook(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  painting.DrawOutline(painting.Area(), painting.SystemColour(QPalette::Midlight));
  static_cast<void>(node);
}

void PaintPage(TPainting& painting, const TDesignNode&) {
  painting.FillGround();
}

TDesignNode* PageAtTab(TFontBook& fonts, const TDesignNode& pages, TPlace place) {
  TFontSpec font = UsualFont(pages.Form->Root());
  std::vector<const TDesignNode*> path;
  for (const TDesignNode* node = &pages; node != nullptr; node = node->Parent) path.push_back(node);
  for (auto node = path.rbegin(); node != path.rend(); ++node) font = WithStoredFont(font, **node);
  for (const TTab& tab : TabsOf(QFontMetrics(fonts.Font(font)), pages))
    if (tab.Place.contains(place.X, place.Y)) return tab.Page;
  return nullptr;
}

}  // namespace wrenfold
