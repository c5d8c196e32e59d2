// Paints controls that stand for a value in a range.
#include <QStyleOptionProgressBar>
#include <QStyleOptionSlider>

#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"

namespace wrenfold {

namespace {

struct TRange {
  int Least = 0;
  int Most = 100;
  int Value = 0;
};

// Some classes prefix their bounds with the kind of the value.
TRange RangeOf(const TDesignNode& node, int most) {
  TRange range{node.Bound("Min", node.Integer("MinValue", 0)),
               node.Bound("Max", node.Integer("MaxValue", most)), 0};
  range.Most = std::max(range.Most, range.Least);
  range.Value =
      std::clamp(node.Bound("Position", node.Integer("Value", node.Integer("Progress", 0))),
                 range.Least, range.Most);
  return range;
}

bool Upright(const TDesignNode& node) {
  for (const std::string_view property : {"Kind", "Orientation"}) {
    const std::string_view name = node.Identifier(property);
    if (name.ends_with("Vertical") || name == "gkVerticalBar") return true;
  }
  return false;
}

QStyleOptionSlider SliderOf(TPainting& painting, const TDesignNode& node, int most) {
  QStyleOptionSlider option;
  painting.Prepare(option, painting.Area());
  const TRange range = RangeOf(node, most);
  option.minimum = range.Least;
  option.maximum = range.Most;
  option.sliderPosition = option.sliderValue = range.Value;
  option.pageStep = std::max(1, (range.Most - range.Least) / 5);
  option.orientation = Upright(node) ? Qt::Vertical : Qt::Horizontal;
  option.upsideDown = false;
  if (option.orientation == Qt::Horizontal) option.state |= QStyle::State_Horizontal;
  option.subControls = QStyle::SC_All;
  return option;
}

void DrawArrowButton(TPainting& painting, const QRect& area, QStyle::PrimitiveElement arrow) {
  painting.Fill(area, painting.SystemColour(QPalette::Button));
  painting.DrawOutline(area, painting.SystemColour(QPalette::Mid));
  QRect mark(0, 0, 9, 9);
  mark.moveCenter(area.center());
  QStyleOption option;
  painting.Prepare(option, mark);
  painting.Theme.Style->drawPrimitive(arrow, &option, &painting.Canvas);
}

}  // namespace

void PaintUpDown(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  if (node.Is("Orientation", "udHorizontal")) {
    const int half = area.width() / 2;
    DrawArrowButton(painting, QRect(0, 0, half, area.height()), QStyle::PE_IndicatorArrowLeft);
    return DrawArrowButton(painting, QRect(half, 0, area.width() - half, area.height()),
                           QStyle::PE_IndicatorArrowRight);
  }
  const int half = area.height() / 2;
  DrawArrowButton(painting, QRect(0, 0, area.width(), half), QStyle::PE_IndicatorArrowUp);
  DrawArrowButton(painting, QRect(0, half, area.width(), area.height() - half),
                  QStyle::PE_IndicatorArrowDown);
}

void PaintScrollBar(TPainting& painting, const TDesignNode& node) {
  const QStyleOptionSlider option = SliderOf(painting, node, 100);
  painting.Theme.Style->drawComplexControl(QStyle::CC_ScrollBar, &option, &painting.Canvas);
}

void PaintTrackBar(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  QStyleOptionSlider option = SliderOf(painting, node, 10);
  if (!node.Is("TickStyle", "tsNone")) {
    option.tickPosition = QSlider::TicksBelow;
    option.tickInterval = std::max(1, (option.maximum - option.minimum) / 10);
  }
  painting.Theme.Style->drawComplexControl(QStyle::CC_Slider, &option, &painting.Canvas);
}

void PaintProgressBar(TPainting& painting, const TDesignNode& node) {
  const TRange range = RangeOf(node, 100);
  QRect area = painting.Area();
  painting.Fill(area, painting.SystemColour(QPalette::Midlight));
  painting.DrawOutline(area, painting.SystemColour(QPalette::Mid));
  area.adjust(1, 1, -1, -1);
  const double share = range.Most > range.Least ? static_cast<double>(range.Value - range.Least) /
                                                      (range.Most - range.Least)
                                                : 0;
  QRect filled = area;
  if (Upright(node)) filled.setTop(area.bottom() - static_cast<int>(area.height() * share) + 1);
  else filled.setWidth(static_cast<int>(area.width() * share));
  painting.Fill(filled,
                painting.Colour(node, "ForeColor", painting.SystemColour(QPalette::Highlight)));
  if (node.Boolean("ShowText", node.Has("ForeColor")))
    painting.DrawText(area, Qt::AlignCenter, QString::number(static_cast<int>(share * 100)) + "%");
}

}  // namespace wrenfold
