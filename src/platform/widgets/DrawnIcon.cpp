#include "platform/widgets/DrawnIcon.h"

#include <QApplication>
#include <QIODevice>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QTextStream>

namespace wrenfold {

namespace {

constexpr qreal GridSide = 16;
constexpr qreal PenWidth = 1.3;

struct TPaint {
  QPen Pen;
  QBrush Brush;
};

TPaint PaintOf(QChar letter, const QPalette& palette, QPalette::ColorGroup group, qreal width) {
  const bool dark = palette.color(QPalette::Window).lightness() < 128;
  const QColor accent = group == QPalette::Disabled ? palette.color(group, QPalette::ButtonText)
                        : dark                      ? QColor(0x7a, 0xb2, 0xf5)
                                                    : QColor(0x2b, 0x6c, 0xb0);
  const auto pen = [width](const QColor& color) {
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  };
  switch (letter.toLatin1()) {
    case 'a':
      return {pen(accent), Qt::NoBrush};
    case 'f':
      return {pen(accent), accent};
    case 'w':
      return {pen(QColor(0xd0, 0x7a, 0x10)), Qt::NoBrush};
    default:
      return {pen(palette.color(group, QPalette::ButtonText)), Qt::NoBrush};
  }
}

void AddStroke(QPainterPath& path, QChar command, QTextStream& numbers) {
  double x = 0, y = 0, w = 0, h = 0;
  switch (command.toLatin1()) {
    case 'M':
      numbers >> x >> y;
      path.moveTo(x, y);
      break;
    case 'L':
      numbers >> x >> y;
      path.lineTo(x, y);
      break;
    case 'C':
      numbers >> x >> y >> w;
      path.addEllipse(QPointF(x, y), w, w);
      break;
    case 'R':
      numbers >> x >> y >> w >> h;
      path.addRect(x, y, w, h);
      break;
    default:
      path.closeSubpath();
      break;
  }
}

void Draw(QPainter& painter, const std::string& strokes, const QPalette& palette,
          QPalette::ColorGroup group) {
  QString text = QString::fromStdString(strokes);
  QTextStream words(&text, QIODevice::ReadOnly);
  QPainterPath path;
  const auto flush = [&] {
    painter.drawPath(path);
    path = QPainterPath();
  };
  while (true) {
    QString word;
    words >> word;
    if (word.isEmpty()) return flush();
    if (word[0].isUpper()) {
      AddStroke(path, word[0], words);
      continue;
    }
    flush();
    const TPaint paint = PaintOf(word[0], palette, group, PenWidth);
    painter.setPen(paint.Pen);
    painter.setBrush(paint.Brush);
  }
}

class TDrawnIcon : public QIconEngine {
 public:
  explicit TDrawnIcon(std::string strokes) : FStrokes(std::move(strokes)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const qreal side = qMin(rect.width(), rect.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
    painter->scale(side / GridSide, side / GridSide);
    Draw(*painter, FStrokes, QApplication::palette(),
         mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active);
    painter->restore();
  }
  // Not cached by the toolkit: the palette may have changed since the last time.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }
  QIconEngine* clone() const override { return new TDrawnIcon(FStrokes); }

 private:
  std::string FStrokes;
};

}  // namespace

QIcon DrawnIcon(std::string strokes) {
  return QIcon(new TDrawnIcon(std::move(strokes)));
}

}  // namespace wrenfold
