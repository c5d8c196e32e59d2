// A designed form shown inside a window of the suite.
#pragma once

#include <QPointer>
#include <QRect>
#include <QWidget>

#include "ide/rkOTAUtils.h"

namespace wrenfold {

// Takes the window of a designed form into a host, and gives it back as it was.
class TFormPreview {
 public:
  explicit TFormPreview(QWidget& host) : FHost(host) {}
  ~TFormPreview() { Release(); }
  TFormPreview(const TFormPreview&) = delete;
  TFormPreview& operator=(const TFormPreview&) = delete;

  // Puts the window at the origin of the host in its own size, and makes the host as large. False
  // when the editor has no window that could be hosted.
  bool Show(IOTAFormEditor* editor);
  // The window gets its parent, bounds and state back, and is shown again if it was.
  void Release();
  bool Shown() const { return !FWindow.isNull(); }

 private:
  QWidget& FHost;
  QPointer<QWidget> FWindow, FParent;
  Qt::WindowFlags FFlags;
  QRect FBounds;
  bool FWasVisible = false, FHadFocus = false, FWasEnabled = true;
};

}  // namespace wrenfold
