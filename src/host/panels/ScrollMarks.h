// Small marks over a scroll bar: where in the whole text something is.
#pragma once

#include <QScrollBar>
#include <QWidget>
#include <vector>

namespace wrenfold {

// Lies over the scroll bar, which owns it, and lets the mouse through.
class TScrollMarks : public QWidget {
 public:
  explicit TScrollMarks(QScrollBar* bar);
  // Lines, ascending, of so many; counted from 0.
  void Show(std::vector<int> lines, int lineCount);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::vector<int> FLines;
  int FLineCount = 1;
};

}  // namespace wrenfold
