// Takes every widget that becomes a child into its layout.
#include "host/panels/PanelPlace.h"

#include <QChildEvent>

namespace wrenfold {

const TTypeInfo& TPanelPlace::ClassInfo() {
  static const TTypeInfo info = Publish<TPanelPlace>("TPanelPlace", TControl::ClassInfo());
  return info;
}

TPanelPlace::TPanelPlace(TComponent* owner, QWidget* parent)
    : TControlOf(owner, parent), FColumn(new QVBoxLayout(this)) {
  FColumn->setContentsMargins(0, 0, 0, 0);
  FColumn->setSpacing(0);
}

void TPanelPlace::childEvent(QChildEvent* event) {
  TControlOf::childEvent(event);
  if (!event->added() || !event->child()->isWidgetType()) return;
  FColumn->addWidget(static_cast<QWidget*>(event->child()));
}

}  // namespace wrenfold
