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

bool AtBottom(const TDesignNode& node) {
  return node.Is("TabPosition", "tpBottom");
}
bool AtLeft(const TDesignNode& node) {
  return node.Is("TabPosition", "tpLeft");
}

QString PageCaption(const TDesignNode& page) {
  const QString caption = TPainting::Caption(page);
  return caption.isEmpty() && !page.Has("Caption") ? ToQString(page.Name()) : caption;
}

// Tabs in rows from the left; what does not fit is left out.
void PlaceTabs(std::vector<TTab>& tabs, const QFontMetrics& metrics, const TDesignNode& node) {
  const int height = std::clamp(node.Bound("TabHeight", 0), 0, 100);
  const int strip = height > 0 ? height : TabStrip;
  const int fixed = std::clamp(node.Bound("TabWidth", 0), 0, 1000);
  const int top = AtBottom(node) ? node.Bounds.Height - strip - 2 : 2;
  int left = 2;
  for (TTab& tab : tabs) {
    const int text = metrics.size(Qt::TextShowMnemonic, tab.Caption).width();
    const int width = fixed > 0 ? fixed : text + 2 * TabPadding;
    tab.Place = QRect(left, top, width, strip);
    left += width;
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

void DrawTab(TPainting& painting, const TTab& tab, bool chosen, bool bottom) {
  QRect place = tab.Place;
  if (chosen) place.adjust(-2, bottom ? 0 : -2, 2, bottom ? 2 : 0);
  painting.Fill(place, painting.SystemColour(chosen ? QPalette::Window : QPalette::Midlight));
  painting.DrawOutline(place, painting.SystemColour(QPalette::Mid));
  if (chosen) {
    // The tab opens into its page.
    const int edge = bottom ? place.top() : place.bottom();
    painting.Canvas.setPen(painting.SystemColour(QPalette::Window));
    painting.Canvas.drawLine(place.left() + 1, edge, place.right() - 1, edge);
  }
  painting.DrawText(tab.Place, Qt::AlignCenter | Qt::TextShowMnemonic, tab.Caption);
}

void DrawTabs(TPainting& painting, const TDesignNode& node, const std::vector<TTab>& tabs,
              std::size_t chosen) {
  const int right = painting.Area().right();
  const auto draw = [&](std::size_t i) {
    if (tabs[i].Place.left() < right) DrawTab(painting, tabs[i], i == chosen, AtBottom(node));
  };
  for (std::size_t i = 0; i < tabs.size(); ++i)
    if (i != chosen) draw(i);
  if (chosen < tabs.size()) draw(chosen);
}

void DrawPane(TPainting& painting, const TDesignNode& node, bool tabs) {
  QRect pane = painting.Area();
  const int strip =
      node.Bound("TabHeight", 0) > 0 ? std::min(node.Bound("TabHeight", 0), 100) : TabStrip;
  if (tabs && !AtLeft(node)) {
    if (AtBottom(node)) pane.adjust(0, 0, 0, -strip - 1);
    else pane.adjust(0, strip + 1, 0, 0);
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
  if (!AtLeft(node)) DrawTabs(painting, node, tabs, ChosenTab(node, tabs));
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
