// The status bar of the module viewer.
#pragma once

#include <QLabel>
#include <QStatusBar>

namespace wrenfold {

// Shows a path; one that is too long loses its middle, or its end.
class TPathPanel : public QWidget {
 public:
  using QWidget::QWidget;
  void SetPath(const QString& path, bool ellipsis);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString FPath;
  bool FEllipsis = true;
};

// Three panels: the kind of a form file, a warning, and a path.
class TStatusPanels : public QStatusBar {
 public:
  explicit TStatusPanels(QWidget* parent);
  QLabel* Kind;
  QLabel* Warning;
  TPathPanel* Path;
};

}  // namespace wrenfold
