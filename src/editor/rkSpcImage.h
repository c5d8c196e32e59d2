// The control of a picture: shows it whole, in its shape, and lets it be exchanged.
#pragma once

#include <QFrame>
#include <QPixmap>
#include <string>

#include "platform/core/model/Graphics.h"
#include "platform/widgets/Control.h"

namespace wrenfold {

// Enter, the space bar and a double click load a picture; Ctrl+C, Ctrl+V and Del copy, paste and
// clear.
class TSpcImage : public TControlOf<QFrame> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSpcImage(TComponent* owner = nullptr, QWidget* parent = nullptr);

  // The picture as the bytes of its file; empty: none.
  const std::string& Data() const { return FData; }
  void SetData(std::string bytes);
  bool Empty() const { return FData.empty(); }
  // Why the picture cannot be shown; empty when it can.
  const std::string& Problem() const { return FProblem; }
  QSize PictureSize() const { return FSize; }

  // The commands of the menu. Each asks the user what it needs to know; one that cannot be done
  // raises EInvalidPicture or an error of files and leaves the picture.
  void LoadPicture();
  void SavePicture();
  void PastePicture();
  void CopyPicture();
  void ClearPicture();

  bool ClaimsKey(const QKeyEvent& key) const override;
  // The user changed the picture. The sender is the control.
  TNotifyEvent OnChange;
  // A command could not be done: Failure says why.
  TNotifyEvent OnFailure;
  const std::string& Failure() const { return FFailure; }

  QSize sizeHint() const override { return {32, 32}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  friend class TPictureMenu;
  using TCommand = void (TSpcImage::*)();
  // A failure is told where the picture stands.
  void Run(TCommand command);
  void TakeByUser(std::string bytes);
  void Scale();

  std::string FData, FProblem, FFailure, FFolder;
  QSize FSize;
  QPixmap FScaled;
};

}  // namespace wrenfold
