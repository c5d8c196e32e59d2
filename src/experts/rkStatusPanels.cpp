#include "experts/rkStatusPanels.h"

#include <QPainter>

namespace wrenfold {

namespace {

constexpr int KindWidth = 36;

}  // namespace

void TPathPanel::SetPath(const QString& path, bool ellipsis) {
  FPath = path;
  FEllipsis = ellipsis;
  setToolTip(path);
  setAccessibleName(path);
  update();
}

void TPathPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  const QString text =
      FEllipsis ? fontMetrics().elidedText(FPath, Qt::ElideMiddle, width()) : FPath;
  painter.drawText(rect(), Qt::AlignVCenter | Qt::TextSingleLine, text);
}

TStatusPanels::TStatusPanels(QWidget* parent)
    : QStatusBar(parent), Kind(new QLabel), Warning(new QLabel), Path(new TPathPanel) {
  Kind->setObjectName("FormKind");
  Kind->setMinimumWidth(KindWidth);
  Kind->setAlignment(Qt::AlignCenter);
  Warning->setObjectName("Warning");
  Path->setObjectName("ModulePath");
  addWidget(Kind);
  addWidget(Warning);
  addWidget(Path, 1);
}

}  // namespace wrenfold
