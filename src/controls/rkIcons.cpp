// Draws the suite's pictures from polygons on a grid of 16 by 16.
#include "controls/rkIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <vector>

namespace wrenfold {

namespace {

enum TPaint : std::uint8_t { InText, InAccent };

struct TStroke {
  TPaint Paint;
  std::vector<QPointF> Points;
};

struct TDrawing {
  int Number;
  std::vector<TStroke> Strokes;
};

const std::vector<TDrawing>& Drawings() {
  static const std::vector<TDrawing> drawings{
      {siAbout,
       {{InText,
         {{8, 1.5},
          {12.6, 3.4},
          {14.5, 8},
          {12.6, 12.6},
          {8, 14.5},
          {3.4, 12.6},
          {1.5, 8},
          {3.4, 3.4},
          {8, 1.5}}},
        {InAccent, {{8, 7}, {8, 11.5}}},
        {InAccent, {{8, 4.2}, {8, 4.8}}}}},
      {siUnitManager,
       {{InText, {{2.5, 1.5}, {13.5, 1.5}, {13.5, 14.5}, {2.5, 14.5}, {2.5, 1.5}}},
        {InAccent, {{5, 4.5}, {11, 4.5}}},
        {InAccent, {{5, 8}, {11, 8}}},
        {InAccent, {{5, 11.5}, {9, 11.5}}}}},
      {siExit,
       {{InText, {{9.5, 4.5}, {9.5, 1.5}, {2.5, 1.5}, {2.5, 14.5}, {9.5, 14.5}, {9.5, 11.5}}},
        {InAccent, {{6, 8}, {14, 8}}},
        {InAccent, {{11.5, 5.5}, {14, 8}, {11.5, 10.5}}}}},
      {siOpen,
       {{InText, {{1.5, 13}, {1.5, 3}, {6, 3}, {7.5, 5}, {13, 5}, {13, 7}}},
        {InText, {{1.5, 13}, {4, 7}, {15, 7}, {12.5, 13}, {1.5, 13}}}}},
      {siClose,
       {{InText, {{9, 14.5}, {3.5, 14.5}, {3.5, 1.5}, {9, 1.5}, {12.5, 5}, {12.5, 8}}},
        {InAccent, {{10, 10.5}, {14.5, 15}}},
        {InAccent, {{14.5, 10.5}, {10, 15}}}}},
      {siMoveUp, {{InAccent, {{3.5, 7}, {8, 2.5}, {12.5, 7}}}, {InText, {{8, 3}, {8, 13.5}}}}},
      {siMoveDown, {{InAccent, {{3.5, 9}, {8, 13.5}, {12.5, 9}}}, {InText, {{8, 2.5}, {8, 13}}}}},
      {siSort,
       {{InText, {{7.5, 3}, {14.5, 3}}},
        {InText, {{7.5, 8}, {12.5, 8}}},
        {InText, {{7.5, 13}, {10.5, 13}}},
        {InAccent, {{3.5, 2.5}, {3.5, 13.5}}},
        {InAccent, {{1.2, 11.2}, {3.5, 13.5}, {5.8, 11.2}}}}},
      {siFilter,
       {{InText,
         {{1.5, 2.5}, {14.5, 2.5}, {9.5, 8.5}, {9.5, 14}, {6.5, 12}, {6.5, 8.5}, {1.5, 2.5}}},
        {InAccent, {{4.5, 4.8}, {11.5, 4.8}}}}},
  };
  return drawings;
}

const TDrawing* FindDrawing(int number) {
  for (const TDrawing& drawing : Drawings())
    if (drawing.Number == number) return &drawing;
  return nullptr;
}

class TDrawnIcon : public QIconEngine {
 public:
  explicit TDrawnIcon(const TDrawing& drawing) : FDrawing(&drawing) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QPalette palette = QGuiApplication::palette();
    const qreal side = std::min(rect.width(), rect.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.center().x() + 0.5 - side / 2, rect.center().y() + 0.5 - side / 2);
    painter->scale(side / 16, side / 16);
    for (const TStroke& stroke : FDrawing->Strokes) {
      const bool accented = stroke.Paint == InAccent && mode != QIcon::Disabled;
      const auto role = accented ? QPalette::Link : QPalette::ButtonText;
      painter->setPen(
          QPen(palette.color(group, role), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      painter->drawPolyline(stroke.Points.data(), static_cast<int>(stroke.Points.size()));
    }
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }
  QIconEngine* clone() const override { return new TDrawnIcon(*FDrawing); }

 private:
  const TDrawing* FDrawing;
};

}  // namespace

QIcon SuiteIcon(int number) {
  const TDrawing* drawing = FindDrawing(number);
  return drawing != nullptr ? QIcon(new TDrawnIcon(*drawing)) : QIcon();
}

}  // namespace wrenfold
