#include "editor/rkSpcImage.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include "controls/rkFileDialogs.h"
#include "controls/rkPictures.h"
#include "locale/rkLocale.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Guard.h"

namespace wrenfold {

const TTypeInfo& TSpcImage::ClassInfo() {
  static const TTypeInfo info =
      Publish<TSpcImage>("TSpcImage", TControl::ClassInfo()).Prop("OnChange", &TSpcImage::OnChange);
  return info;
}

TSpcImage::TSpcImage(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {
  setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  setFocusPolicy(Qt::StrongFocus);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
}

void TSpcImage::SetData(std::string bytes) {
  FData = std::move(bytes);
  FProblem.clear();
  FSize = Empty() ? QSize() : ReadPictureInfo(FData).Size;
  Scale();
}

void TSpcImage::Scale() {
  FScaled = QPixmap();
  update();
  if (Empty() || !FProblem.empty()) return;
  const qreal ratio = devicePixelRatioF();
  const QSize room = contentsRect().adjusted(1, 1, -1, -1).size() * ratio;
  if (room.isEmpty()) return;
  try {
    FScaled = QPixmap::fromImage(DecodePicture(FData, LocaleStr(sPictureInProperty), room));
    FScaled.setDevicePixelRatio(ratio);
  } catch (const EInvalidPicture& error) {
    FProblem = error.Message();
  }
}

void TSpcImage::TakeByUser(std::string bytes) {
  SetData(std::move(bytes));
  OnChange(this);
}

void TSpcImage::Run(TCommand command) {
  Guarded(this, [&] {
    try {
      (this->*command)();
    } catch (const EAbort&) {
    } catch (const Exception& error) {
      FFailure = error.Message();
      OnFailure(this);
    }
  });
}

void TSpcImage::LoadPicture() {
  TOpenDialog dialog;
  dialog.Title = LocaleStr(sLoadPictureTitle);
  dialog.Filter = LocaleStr(sPictureFilter);
  dialog.InitialDir = FFolder;
  const QPointer<TSpcImage> life(this);
  if (!dialog.Execute(this) || life == nullptr) return;
  FFolder = ExtractFilePath(dialog.FileName);
  TakeByUser(LoadPictureFile(dialog.FileName));
}

void TSpcImage::SavePicture() {
  if (Empty()) return;
  TSaveDialog dialog;
  dialog.Title = LocaleStr(sSavePictureTitle);
  dialog.Filter = LocaleStr(sPictureFilter);
  dialog.InitialDir = FFolder;
  dialog.DefaultExt = ReadPictureInfo(FData).Format;
  const QPointer<TSpcImage> life(this);
  if (!dialog.Execute(this) || life == nullptr) return;
  FFolder = ExtractFilePath(dialog.FileName);
  SavePictureFile(dialog.FileName, FData);
}

void TSpcImage::PastePicture() {
  TakeByUser(PictureFromClipboard());
}

void TSpcImage::CopyPicture() {
  if (!Empty()) PictureToClipboard(FData);
}

void TSpcImage::ClearPicture() {
  if (!Empty()) TakeByUser({});
}

namespace {

struct TImageKey {
  QKeyCombination Key;
  void (TSpcImage::*Command)();
};
constexpr TImageKey ImageKeys[] = {
    {Qt::Key_Return, &TSpcImage::LoadPicture},
    {Qt::Key_Enter, &TSpcImage::LoadPicture},
    {Qt::Key_Space, &TSpcImage::LoadPicture},
    {Qt::CTRL | Qt::Key_Return, &TSpcImage::LoadPicture},
    {Qt::CTRL | Qt::Key_C, &TSpcImage::CopyPicture},
    {Qt::CTRL | Qt::Key_V, &TSpcImage::PastePicture},
    {Qt::Key_Delete, &TSpcImage::ClearPicture},
};

const TImageKey* FindImageKey(const QKeyEvent& key) {
  const QKeyCombination pressed(key.modifiers() & ~Qt::KeypadModifier,
                                static_cast<Qt::Key>(key.key()));
  for (const TImageKey& row : ImageKeys)
    if (row.Key == pressed) return &row;
  return nullptr;
}

}  // namespace

bool TSpcImage::ClaimsKey(const QKeyEvent& key) const {
  return FindImageKey(key) != nullptr;
}

void TSpcImage::keyPressEvent(QKeyEvent* event) {
  const TImageKey* key = FindImageKey(*event);
  if (key == nullptr) return TControlOf::keyPressEvent(event);
  event->accept();
  Run(key->Command);
}

void TSpcImage::mouseDoubleClickEvent(QMouseEvent*) {
  Run(&TSpcImage::LoadPicture);
}

void TSpcImage::focusInEvent(QFocusEvent* event) {
  TControlOf::focusInEvent(event);
  update();
}

void TSpcImage::focusOutEvent(QFocusEvent* event) {
  TControlOf::focusOutEvent(event);
  update();
}

void TSpcImage::resizeEvent(QResizeEvent* event) {
  TControlOf::resizeEvent(event);
  Scale();
}

void TSpcImage::paintEvent(QPaintEvent* event) {
  TControlOf::paintEvent(event);
  QPainter painter(this);
  const QRect room = contentsRect();
  if (!FScaled.isNull()) {
    const QSize size = FScaled.deviceIndependentSize().toSize();
    QRect place(QPoint(), size);
    place.moveCenter(room.center());
    painter.setOpacity(isEnabled() ? 1.0 : 0.5);
    painter.drawPixmap(place, FScaled);
    painter.setOpacity(1.0);
  } else if (!Empty()) {
    // A picture that cannot be shown is crossed out.
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(room.topLeft(), room.bottomRight());
    painter.drawLine(room.bottomLeft(), room.topRight());
  }
  if (!hasFocus()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

}  // namespace wrenfold
