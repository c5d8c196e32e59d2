#include "host/forms/RootWindow.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include "designer/model/BitmapFile.h"
#include "designer/model/Layout.h"
#include "designer/paint/FormPicture.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

TRootWindow::TRootWindow(TFormEditor& editor)
    : FEditor(editor),
      FCatalog(editor.Host().FormsFor(editor)),
      FFonts(std::make_unique<TFontBook>()) {
  setObjectName("RootWindow");
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  Update();
}

TRootWindow::~TRootWindow() = default;

bool TRootWindow::HasForm() const {
  return FForm != nullptr && FForm->Root().Look() != TLook::DataModule;
}

void TRootWindow::Update() {
  const TFormDocument* document = FEditor.Document();
  FPicture = {};
  FCatalog->Renew();
  FForm = document != nullptr ? ComposeForm(document->Root(), *FCatalog) : nullptr;
  if (FForm != nullptr) {
    LayoutForm(*FForm);
    const TBounds& bounds = FForm->Root().Bounds;
    resize(bounds.Width, bounds.Height);
  }
  update();
}

// Children go with their parent: the window leaves it before that.
void TRootWindow::FollowHolder() {
  disconnect(FHolder);
  if (parentWidget() == nullptr) return;
  FHolder = connect(parentWidget(), &QObject::destroyed, this, [this] {
    hide();
    setParent(nullptr);
  });
}

bool TRootWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::ParentChange) FollowHolder();
  return handled;
}

void TRootWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange && event->type() != QEvent::StyleChange) return;
  FPicture = {};
  update();
}

void TRootWindow::paintEvent(QPaintEvent*) {
  QPainter canvas(this);
  if (FForm == nullptr) return;
  if (FPicture.isNull()) {
    const double ratio = devicePixelRatioF();
    try {
      FPicture = DrawFormPicture(*FForm, {palette(), style()}, *FFonts, ratio);
    } catch (const EPictureError& error) {
      return canvas.drawText(rect(), Qt::AlignTop | Qt::TextWordWrap, ToQString(error.Message()));
    }
    FPicture.setDevicePixelRatio(ratio);
  }
  canvas.drawImage(QPointF(0, 0), FPicture);
}

}  // namespace wrenfold
