// Paints a stripe for each row of pixels that has a mark.
#include "host/panels/ScrollMarks.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace wrenfold {

namespace {

constexpr int StripeHeight = 2;
constexpr QColor StripeColour(0xE0, 0x90, 0x20);

}  // namespace

TScrollMarks::TScrollMarks(QScrollBar* bar) : QWidget(bar) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  resize(bar->size());
  bar->installEventFilter(this);
}

void TScrollMarks::Show(std::vector<int> lines, int lineCount) {
  FLines = std::move(lines);
  FLineCount = std::max(lineCount, 1);
  setVisible(!FLines.empty());
  update();
}

bool TScrollMarks::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) resize(static_cast<QWidget*>(watched)->size());
  return QWidget::eventFilter(watched, event);
}

void TScrollMarks::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  int last = -StripeHeight;
  for (const int line : FLines) {
    const int y = static_cast<int>(std::int64_t{line} * (height() - StripeHeight) / FLineCount);
    if (y < last + StripeHeight) continue;
    painter.fillRect(width() / 4, y, width() / 2, StripeHeight, StripeColour);
    last = y;
  }
}

}  // namespace wrenfold
