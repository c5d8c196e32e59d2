#include "platform/widgets/Desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QWidget>

#include "platform/widgets/Text.h"

namespace wrenfold {

std::string ClipboardText() {
  QString text = QApplication::clipboard()->text();
  text.replace("\r\n", "\n").replace('\n', "\r\n");
  return FromQString(text);
}

void SetClipboardText(const std::string& text) {
  QApplication::clipboard()->setText(ToQString(text).replace("\r\n", "\n"));
}

void RedrawWindow(QWidget* widget, bool allChildren, bool now) {
  if (widget == nullptr) return;
  QList<QWidget*> widgets{widget};
  if (allChildren) widgets += widget->findChildren<QWidget*>();
  for (QWidget* each : widgets) each->update();
  if (!now) return;
  for (QWidget* each : widgets)
    if (each->isVisible()) each->repaint();
}

void SetRedraw(QWidget* widget, bool redraw) {
  if (widget != nullptr) widget->setUpdatesEnabled(redraw);
}

void ReleaseCapture() {
  if (QWidget* grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
  QWidget* last = nullptr;
  for (QWidget* popup = QApplication::activePopupWidget(); popup != nullptr && popup != last;
       popup = QApplication::activePopupWidget()) {
    last = popup;
    popup->close();
  }
}

void PostClick(QWidget* widget) {
  if (widget == nullptr) return;
  const QPointF middle = QRectF(widget->rect()).center();
  const QPointF global = widget->mapToGlobal(middle);
  for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QCoreApplication::postEvent(
        widget, new QMouseEvent(type, middle, global, Qt::LeftButton, held, Qt::NoModifier));
  }
}

}  // namespace wrenfold
