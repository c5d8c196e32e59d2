#include "designer/model/Layout.h"

#include <fmt/format.h>

#include <cstdlib>
#include <unordered_map>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

struct TAlignName {
  std::string_view Name;
  TAlign Align;
};
constexpr TAlignName AlignNames[] = {
    {"alNone", TAlign::None},     {"alTop", TAlign::Top},     {"alBottom", TAlign::Bottom},
    {"alLeft", TAlign::Left},     {"alRight", TAlign::Right}, {"alClient", TAlign::Client},
    {"alCustom", TAlign::Custom},
};

// Cuts a strip off `room` for the control.
void TakeStrip(TAligned& control, TBounds& room) {
  TBounds& bounds = control.Bounds;
  switch (control.Align) {
    case TAlign::Top:
      bounds = {room.Left, room.Top, room.Width, bounds.Height};
      room = room.Inset(0, bounds.Height, 0, 0);
      break;
    case TAlign::Bottom:
      bounds = {room.Left, room.Bottom() - bounds.Height, room.Width, bounds.Height};
      room = room.Inset(0, 0, 0, bounds.Height);
      break;
    case TAlign::Left:
      bounds = {room.Left, room.Top, bounds.Width, room.Height};
      room = room.Inset(bounds.Width, 0, 0, 0);
      break;
    case TAlign::Right:
      bounds = {room.Right() - bounds.Width, room.Top, bounds.Width, room.Height};
      room = room.Inset(0, 0, bounds.Width, 0);
      break;
    case TAlign::Client:
      bounds = room;
      break;
    default:
      break;
  }
}

// Along one direction: near is left or top, far is right or bottom.
void KeepDistances(int& position, int& size, bool near, bool far, int growth) {
  if (near && far) {
    size = std::max(0, size + growth);
  } else if (far) {
    position += growth;
  } else if (!near) {
    position += growth / 2;
  }
}

TBounds Intersection(const TBounds& left, const TBounds& right) {
  const int x = std::max(left.Left, right.Left);
  const int y = std::max(left.Top, right.Top);
  return {x, y, std::max(0, std::min(left.Right(), right.Right()) - x),
          std::max(0, std::min(left.Bottom(), right.Bottom()) - y)};
}

// What the frame of a window took off its stored outer size where it was stored.
constexpr int StoredFrameWidth = 8, StoredFrameHeight = 27, StoredMenuHeight = 19;

constexpr int TabHeight = 24, PageBorder = 4;

bool Visible(const TDesignNode& node) {
  return node.Boolean("TabVisible", true);
}

}  // namespace

TAlign AlignOf(const TDesignNode& node) {
  const std::string_view stored = node.Identifier("Align");
  for (const TAlignName& name : AlignNames)
    if (EqualText(stored, name.Name)) return name.Align;
  if (node.Look() == TLook::StatusBar) return TAlign::Bottom;
  return node.Look() == TLook::ToolBar ? TAlign::Top : TAlign::None;
}

TAligned AlignedOf(const TDesignNode& node) {
  const std::string_view anchors = node.Value("Anchors");
  return {node.Bounds,
          AlignOf(node),
          StoredSetHas(anchors, "akLeft", true),
          StoredSetHas(anchors, "akTop", true),
          StoredSetHas(anchors, "akRight"),
          StoredSetHas(anchors, "akBottom")};
}

void AlignControls(std::span<TAligned> controls, TExtent before, TExtent after) {
  TBounds room{0, 0, after.Width, after.Height};
  for (const TAlign turn :
       {TAlign::Top, TAlign::Bottom, TAlign::Left, TAlign::Right, TAlign::Client})
    for (TAligned& control : controls)
      if (control.Align == turn) TakeStrip(control, room);
  for (TAligned& control : controls) {
    if (control.Align != TAlign::None && control.Align != TAlign::Custom) continue;
    KeepDistances(control.Bounds.Left, control.Bounds.Width, control.AnchorLeft,
                  control.AnchorRight, after.Width - before.Width);
    KeepDistances(control.Bounds.Top, control.Bounds.Height, control.AnchorTop,
                  control.AnchorBottom, after.Height - before.Height);
  }
}

const TDesignNode* MenuOf(const TDesignNode& root) {
  if (const TDesignNode* menu = root.Linked("Menu")) return menu;
  return nullptr;
}

TDesignNode* ActivePage(const TDesignNode& pages) {
  if (pages.TurnedPage != nullptr) return pages.TurnedPage;
  const std::string_view name = pages.Identifier("ActivePage");
  const std::string caption = name.empty() ? pages.Text("ActivePage") : std::string();
  std::int64_t index = pages.Integer("PageIndex", pages.Integer("TabIndex", 0));
  TDesignNode* first = nullptr;
  TDesignNode* indexed = nullptr;
  for (TDesignNode* page : pages.Children) {
    if (page->Look() != TLook::Page) continue;
    if (!name.empty() && EqualText(page->Name(), name)) return page;
    if (!caption.empty() && page->Text("Caption") == caption) return page;
    if (first == nullptr) first = page;
    if (index-- == 0) indexed = page;
  }
  return indexed != nullptr ? indexed : first;
}

void TurnTo(TComposedForm&, const TDesignNode& page) {
  if (page.Parent == nullptr || page.Look() != TLook::Page) return;
  for (TDesignNode* sibling : page.Parent->Children)
    if (sibling == &page) page.Parent->TurnedPage = sibling;
}

// Walks the nodes from the root down; each finds its parent laid out.
class TLayout {
 public:
  TLayout(TComposedForm& form, const TWindowFrame& frame) : FForm(form), FFrame(frame) {}

  void Run() {
    PlaceRoot(FForm.Root());
    ArrangeInherited(FForm.Root());
    for (TDesignNode* node : FForm.Nodes()) {
      if (!node->IsRoot()) Place(*node);
      for (TDesignNode* child : node->Children) child->Bounds = StoredBounds(*child);
      ArrangeInherited(*node);
    }
  }

 private:
  int CutSide(std::int64_t side, const char* direction) {
    if (side > MaxWindowSide)
      FForm.AddNote(
          fmt::format("The form is {} pixels {}; {} are drawn", side, direction, MaxWindowSide));
    return static_cast<int>(std::clamp<std::int64_t>(side, 1, MaxWindowSide));
  }

  // The inner size of the window, as one of the layers up to `count` stores it.
  TExtent InnerSize(const TDesignNode& root) {
    const bool outer = !FForm.FromFreeEnvironment() && root.Look() == TLook::Form;
    const bool bare = root.Is("BorderStyle", "bsNone");
    const int menu = MenuOf(root) != nullptr ? StoredMenuHeight : 0;
    const std::int64_t width = root.Integer("Width", root.Class.Row->Width);
    const std::int64_t height = root.Integer("Height", root.Class.Row->Height);
    return {CutSide(root.Integer("ClientWidth", width - (outer && !bare ? StoredFrameWidth : 0)),
                    "wide"),
            CutSide(root.Integer("ClientHeight",
                                 height - (outer ? menu + (bare ? 0 : StoredFrameHeight) : 0)),
                    "high")};
  }

  void PlaceRoot(TDesignNode& root) {
    const TExtent inner = InnerSize(root);
    const bool framed = root.Look() == TLook::Form && !root.Is("BorderStyle", "bsNone");
    const int border = framed ? FFrame.Border : 0;
    const int top = (framed ? FFrame.Caption : 0) + (MenuOf(root) != nullptr ? FFrame.Menu : 0);
    root.Bounds = {0, 0, inner.Width + 2 * border, inner.Height + top + border};
    root.Client = {border, top, inner.Width, inner.Height};
    root.Origin = {};
    root.Clip = root.Bounds;
    root.Shown = true;
  }

  TBounds StoredBounds(const TDesignNode& node) {
    const TDesignNode& parent = *node.Parent;
    switch (node.Look()) {
      case TLook::Page:
        return PageArea(parent, node);
      case TLook::ToolButton:
        return ToolButtonBounds(parent, node);
      case TLook::Icon:
        return {node.Bound("Left", 0), node.Bound("Top", 0), IconSide, IconSide};
      default:
        break;
    }
    const TExtent room = parent.Client.Extent();
    if (parent.Look() == TLook::SpeedBar && node.Look() == TLook::SpeedButton)
      return {node.Bound("Left", 0), node.Bound("Top", 0), parent.Bound("BtnWidth", 24),
              parent.Bound("BtnHeight", 23)};
    TBounds bounds{node.Bound("Left", 0), node.Bound("Top", 0),
                   std::max(0, node.Bound("Width", UsualWidth(node, room))),
                   std::max(0, node.Bound("Height", UsualHeight(node, room)))};
    if (!node.Has("Top") && AlignOf(node) == TAlign::Bottom)
      bounds.Top = room.Height - bounds.Height;
    if (!node.Has("Left") && AlignOf(node) == TAlign::Right)
      bounds.Left = room.Width - bounds.Width;
    return bounds;
  }

  // Sides that an alignment gives are not always stored.
  static int UsualWidth(const TDesignNode& node, TExtent room) {
    const TAlign align = AlignOf(node);
    const bool spans = align == TAlign::Top || align == TAlign::Bottom || align == TAlign::Client;
    return spans || node.Class.Row->Width == 0 ? room.Width : node.Class.Row->Width;
  }
  static int UsualHeight(const TDesignNode& node, TExtent room) {
    const TAlign align = AlignOf(node);
    const bool spans = align == TAlign::Left || align == TAlign::Right || align == TAlign::Client;
    return spans || node.Class.Row->Height == 0 ? room.Height : node.Class.Row->Height;
  }

  // Looked for once for all the pages.
  TDesignNode* ActivePageOf(const TDesignNode& pages) {
    const auto [known, isNew] = FActivePages.try_emplace(&pages);
    if (isNew) known->second = ActivePage(pages);
    return known->second;
  }

  static TBounds PageArea(const TDesignNode& pages, const TDesignNode& page) {
    const TBounds all{0, 0, pages.Bounds.Width, pages.Bounds.Height};
    if (pages.Look() != TLook::PageControl && pages.Look() != TLook::TabControl) return all;
    const int width = page.Bound("ClientWidth", -1), height = page.Bound("ClientHeight", -1);
    if (width >= 0 && height >= 0 && width <= all.Width && height <= all.Height) {
      const int side = (all.Width - width) / 2;
      return {side, all.Height - height - side, width, height};
    }
    const bool tabs =
        std::ranges::any_of(pages.Children, [](const TDesignNode* each) { return Visible(*each); });
    if (!tabs) return all.Inset(0, 0, 0, 0);
    if (pages.Is("TabPosition", "tpBottom"))
      return all.Inset(PageBorder, PageBorder, PageBorder, TabHeight);
    if (pages.Is("TabPosition", "tpLeft"))
      return all.Inset(TabHeight, PageBorder, PageBorder, PageBorder);
    if (pages.Is("TabPosition", "tpRight"))
      return all.Inset(PageBorder, PageBorder, TabHeight, PageBorder);
    const int tab = pages.Bound("TabHeight", 0);
    return all.Inset(PageBorder, tab > 0 ? tab + PageBorder : TabHeight, PageBorder, PageBorder);
  }

  // Where captions are shown, buttons are as wide as their texts; the next button tells.
  static int CaptionedWidth(const TDesignNode& bar, const TDesignNode& button, int usual) {
    constexpr std::size_t mostButtons = 500;
    if (!bar.Boolean("ShowCaptions", false) || bar.Children.size() > mostButtons) return usual;
    const int left = button.Bound("Left", 0), top = button.Bound("Top", 0);
    int next = left + usual;
    bool found = false;
    for (const TDesignNode* each : bar.Children) {
      const int other = each->Bound("Left", 0);
      if (other <= left || std::abs(each->Bound("Top", 0) - top) > 2) continue;
      next = found ? std::min(next, other) : other;
      found = true;
    }
    constexpr int letter = 7, padding = 12, widest = 400;
    if (!found) next = left + letter * static_cast<int>(button.Text("Caption").size()) + padding;
    return std::clamp(next - left, 1, widest);
  }

  static TBounds ToolButtonBounds(const TDesignNode& bar, const TDesignNode& button) {
    const bool gap = button.Is("Style", "tbsSeparator") || button.Is("Style", "tbsDivider");
    const int arrow = button.Is("Style", "tbsDropDown") ? 15 : 0;
    const int usual = bar.Bound("ButtonWidth", 23) + arrow;
    const int width = gap ? 8 : CaptionedWidth(bar, button, usual);
    return {button.Bound("Left", 0), button.Bound("Top", 0), button.Bound("Width", width),
            button.Bound("Height", bar.Bound("ButtonHeight", 22))};
  }

  void Place(TDesignNode& node) {
    const TDesignNode& parent = *node.Parent;
    node.Origin = {parent.Origin.X + parent.Client.Left + node.Bounds.Left,
                   parent.Origin.Y + parent.Client.Top + node.Bounds.Top};
    const TBounds room = node.Look() == TLook::Page
                             ? parent.BoundsInForm()
                             : parent.Client.Moved(parent.Origin.X, parent.Origin.Y);
    node.Clip = Intersection(node.BoundsInForm(), Intersection(room, parent.Clip));
    node.Shown = parent.Shown && node.Look() != TLook::Hidden &&
                 (node.Look() != TLook::Page || ActivePageOf(parent) == &node);
    node.Client = ClientOf(node);
  }

  TBounds ClientOf(const TDesignNode& node) const {
    const TBounds all{0, 0, node.Bounds.Width, node.Bounds.Height};
    if (node.Look() == TLook::ScrollBox)
      return node.Is("BorderStyle", "bsNone") ? all : all.Inset(2, 2, 2, 2);
    const int width = node.Bound("ClientWidth", -1), height = node.Bound("ClientHeight", -1);
    if (!FForm.FromFreeEnvironment() || node.Look() == TLook::Page || node.IsInline || width < 0 ||
        height < 0 || width > all.Width || height > all.Height)
      return all;
    const int side = (all.Width - width) / 2;
    return {side, std::max(0, all.Height - height - side), width, height};
  }

  // Children that the nearest file does not place follow the size that it gives their parent.
  void ArrangeInherited(TDesignNode& parent) {
    if (parent.Layers.size() < 2) return;
    const TExtent before = SizeBefore(parent), after = parent.Client.Extent();
    if (before == after) return;
    std::vector<TDesignNode*> moved;
    std::vector<TAligned> controls;
    for (TDesignNode* child : parent.Children) {
      if (!child->Visual() || child->Look() == TLook::Page || PlacedByLast(parent, *child))
        continue;
      moved.push_back(child);
      controls.push_back(AlignedOf(*child));
    }
    AlignControls(controls, before, after);
    for (std::size_t i = 0; i < moved.size(); ++i) moved[i]->Bounds = controls[i].Bounds;
  }

  static bool PlacedByLast(const TDesignNode& parent, const TDesignNode& child) {
    if (child.Layers.size() < parent.Layers.size()) return false;
    const TDesignComponent& last = *child.Layers.back();
    return std::ranges::any_of(
        std::initializer_list<std::string_view>{"Left", "Top", "Width", "Height"},
        [&](std::string_view side) { return !last.FindValue(side).empty(); });
  }

  // The inner size that the parent has without its last layer.
  TExtent SizeBefore(TDesignNode& parent) {
    const TDesignComponent* last = parent.Layers.back();
    parent.Layers.pop_back();
    TExtent size;
    if (parent.IsRoot()) {
      size = InnerSize(parent);
    } else {
      const TBounds bounds = StoredBounds(parent);
      size = {bounds.Width - (parent.Bounds.Width - parent.Client.Width),
              bounds.Height - (parent.Bounds.Height - parent.Client.Height)};
    }
    parent.Layers.push_back(last);
    return size;
  }

  TComposedForm& FForm;
  const TWindowFrame& FFrame;
  std::unordered_map<const TDesignNode*, TDesignNode*> FActivePages;
};

void LayoutForm(TComposedForm& form, const TWindowFrame& frame) {
  TLayout(form, frame).Run();
}

}  // namespace wrenfold
