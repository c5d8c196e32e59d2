// Services of the desktop that have no object: clipboard, redrawing, mouse capture.
#pragma once

#include <string>

class QWidget;

namespace wrenfold {

// Texts go to and from the clipboard with the line ends CR LF inside and LF outside.
std::string ClipboardText();
void SetClipboardText(const std::string& text);

// Marks the widget, or also all inside it, to be painted; at once when now is set.
void RedrawWindow(QWidget* widget, bool allChildren, bool now);
// Stops and starts the painting of a widget; starting paints it. Null does nothing.
void SetRedraw(QWidget* widget, bool redraw);
// Lets go of a mouse that a widget has grabbed, and closes open pop-up windows.
void ReleaseCapture();
// Sends a press and a release of the left button to the middle of a widget, through the event
// queue: it has no effect any more when the widget is gone by then.
void PostClick(QWidget* widget);

}  // namespace wrenfold
