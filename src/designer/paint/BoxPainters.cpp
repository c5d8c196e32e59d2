// Paints components that hold others: boxes, panels, bars.
#include <QStyleOptionButton>

#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

int AlignmentFlag(const TDesignNode& node, std::string_view usual) {
  const std::string_view stored = node.Identifier("Alignment");
  const std::string_view alignment = stored.empty() ? usual : stored;
  if (alignment == "taLeftJustify") return Qt::AlignLeft;
  return alignment == "taRightJustify" ? Qt::AlignRight : Qt::AlignHCenter;
}

// One of the two edges of a panel, inwards.
void DrawBevel(TPainting& painting, QRect& area, std::string_view bevel, int width) {
  if (bevel != "bvRaised" && bevel != "bvLowered") return;
  for (int i = 0; i < width; ++i) {
    painting.DrawEdge(area, bevel == "bvRaised");
    area.adjust(1, 1, -1, -1);
  }
}

void DrawItemMark(TPainting& painting, const QRect& box, bool round, bool on) {
  QStyleOptionButton option;
  painting.Prepare(option, box);
  option.state |= on ? QStyle::State_On : QStyle::State_Off;
  painting.Theme.Style->drawPrimitive(
      round ? QStyle::PE_IndicatorRadioButton : QStyle::PE_IndicatorCheckBox, &option,
      &painting.Canvas);
}

// Items of a group run down the columns.
void DrawGroupItems(TPainting& painting, const TDesignNode& node, const QRect& room) {
  const auto items = node.Strings("Items.Strings");
  if (items.empty()) return;
  const int count = static_cast<int>(items.size());
  const int columns = static_cast<int>(std::clamp<std::int64_t>(node.Integer("Columns", 1), 1, 64));
  const int rows = (count + columns - 1) / columns;
  const std::int64_t chosen = node.Integer("ItemIndex", -1);
  const bool round = node.ClassName().find("Check") == std::string_view::npos;
  const bool across =
      node.Is("ColumnLayout", "clHorizontalThenVertical") || node.Form->FromFreeEnvironment();
  for (int i = 0; i < count; ++i) {
    const int row = across ? i / columns : i % rows, column = across ? i % columns : i / rows;
    const QRect cell(room.left() + room.width() * column / columns,
                     room.top() + room.height() * row / rows, room.width() / columns,
                     room.height() / rows);
    constexpr int side = 13;
    DrawItemMark(painting, QRect(cell.left(), cell.top() + (cell.height() - side) / 2, side, side),
                 round, i == chosen);
    painting.DrawFittedText(cell.adjusted(side + 4, 0, 0, 0),
                            Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic,
                            ToQString(items[static_cast<std::size_t>(i)]));
  }
}

void DrawGroupFrame(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const QRect area = painting.Area();
  const QString caption = TPainting::Caption(node);
  const int line = caption.isEmpty() ? 0 : painting.LineHeight() / 2;
  painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
  painting.Canvas.setBrush(Qt::NoBrush);
  painting.Canvas.drawRect(area.adjusted(0, line, -1, -1));
  if (caption.isEmpty()) return;
  const QRect text(8, 0, std::min(painting.TextWidth(caption) + 4, std::max(0, area.width() - 12)),
                   painting.LineHeight());
  painting.Fill(text, painting.Appearance().Ground);
  painting.DrawFittedText(text.adjusted(2, 0, 0, 0), Qt::AlignLeft | Qt::TextShowMnemonic, caption);
}

void DrawGrip(TPainting& painting, const QRect& area) {
  painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
  for (int i = 3; i <= 11; i += 4)
    painting.Canvas.drawLine(area.right() - i, area.bottom(), area.right(), area.bottom() - i);
}

}  // namespace

void PaintGroupBox(TPainting& painting, const TDesignNode& node) {
  DrawGroupFrame(painting, node);
}

void PaintRadioGroup(TPainting& painting, const TDesignNode& node) {
  DrawGroupFrame(painting, node);
  const int top = TPainting::Caption(node).isEmpty() ? 4 : painting.LineHeight() + 1;
  DrawGroupItems(painting, node, painting.Area().adjusted(8, top, -6, -4));
}

void PaintPanel(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  QRect area = painting.Area();
  if (node.Is("BorderStyle", "bsSingle")) {
    painting.DrawOutline(area, painting.SystemColour(QPalette::Dark));
    area.adjust(1, 1, -1, -1);
  }
  const int width = std::clamp(node.Bound("BevelWidth", 1), 0, 20);
  const std::string_view outer = node.Identifier("BevelOuter");
  DrawBevel(painting, area, outer.empty() ? "bvRaised" : outer, width);
  const int border = std::clamp(node.Bound("BorderWidth", 0), 0, 1000);
  area.adjust(border, border, -border, -border);
  DrawBevel(painting, area, node.Identifier("BevelInner"), width);
  if (!node.Boolean("ShowCaption", true)) return;
  const int vertical = node.Is("VerticalAlignment", "taAlignTop")      ? Qt::AlignTop
                       : node.Is("VerticalAlignment", "taAlignBottom") ? Qt::AlignBottom
                                                                       : Qt::AlignVCenter;
  const int wrap = node.Boolean("WordWrap", false) ? Qt::TextWordWrap : 0;
  painting.DrawText(area, AlignmentFlag(node, "taCenter") | vertical | wrap | Qt::TextShowMnemonic,
                    TPainting::Caption(node));
}

void PaintScrollBox(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  if (!node.Is("BorderStyle", "bsNone"))
    painting.DrawOutline(painting.Area(), painting.SystemColour(QPalette::Mid));
}

void PaintToolBar(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const QRect area = painting.Area();
  const std::string_view edges = node.Value("EdgeBorders");
  if (StoredSetHas(edges, "ebTop", true)) painting.DrawEdge(QRect(0, 0, area.width(), 2), false);
  if (StoredSetHas(edges, "ebBottom"))
    painting.DrawEdge(QRect(0, area.bottom() - 1, area.width(), 2), false);
}

void PaintSpeedBar(TPainting& painting, const TDesignNode&) {
  painting.FillGround();
  painting.DrawEdge(painting.Area(), true);
}

void PaintStatusBar(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const QRect area = painting.Area();
  painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
  painting.Canvas.drawLine(0, 0, area.right(), 0);
  const auto panels = StoredItems(node.Value("Panels"));
  if (panels.empty() || node.Boolean("SimplePanel", false)) {
    painting.DrawText(area.adjusted(4, 1, -16, 0), Qt::AlignVCenter | Qt::AlignLeft,
                      ToQString(node.Text("SimpleText")));
  } else {
    int left = 0;
    for (std::size_t i = 0; i < panels.size() && left < area.width(); ++i) {
      const bool last = i + 1 == panels.size();
      const int width =
          last ? area.width() - left : CutToBound(StoredInteger(panels[i].Value("Width"), 50));
      painting.DrawText(QRect(left + 4, 1, std::max(0, width - 8), area.height() - 1),
                        Qt::AlignVCenter | Qt::AlignLeft,
                        ToQString(StoredText(panels[i].Value("Text"), node.Form->CodePage())));
      left += std::max(0, width);
      if (!last) {
        painting.Canvas.setPen(painting.SystemColour(QPalette::Mid));
        painting.Canvas.drawLine(left - 2, 3, left - 2, area.bottom() - 2);
      }
    }
  }
  if (node.Boolean("SizeGrip", true)) DrawGrip(painting, area);
}

}  // namespace wrenfold
