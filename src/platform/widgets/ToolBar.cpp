#include "platform/widgets/ToolBar.h"

#include <QMouseEvent>
#include <QStyleOptionToolBar>
#include <QStylePainter>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

const TTypeInfo& TToolButton::ClassInfo() {
  static const TTypeInfo info =
      Publish<TToolButton>("TToolButton", TControl::ClassInfo())
          .Prop("Caption", &TToolButton::Caption, &TToolButton::SetCaption)
          .Prop("ImageIndex", &TToolButton::ImageIndex, &TToolButton::SetImageIndex)
          .Default(-1)
          .Prop("OnClick", &TToolButton::OnClick);
  return info;
}

TToolButton::TToolButton(TComponent* owner, TToolBar* bar) : TControlOf(owner, nullptr) {
  setAutoRaise(true);
  setFocusPolicy(Qt::NoFocus);
  connect(this, &QToolButton::clicked, this, [this] {
    const QPointer<TToolButton> alive(this);
    Guarded(this, [this] { Click(); });
    if (alive != nullptr && Action() != nullptr) setChecked(Action()->Checked());
  });
  if (bar != nullptr) bar->InsertButton(bar->ButtonCount(), this);
}

TToolButton::~TToolButton() {
  if (FToolBar != nullptr) FToolBar->RemoveButton(this);
}

void TToolButton::SetCaption(const std::string& caption) {
  FCaption = caption;
  FOwnCaption = true;
  UpdateTexts();
}

void TToolButton::UpdateTexts() {
  const QString caption = ToQString(StripHotkey(FCaption));
  const QString hint = Hint().empty() ? caption : ToQString(Hint());
  const std::string key = Action() == nullptr ? "" : ShortCutToText(Action()->ShortCut());
  setText(caption);
  setAccessibleName(caption.isEmpty() ? hint : caption);
  setAccessibleDescription(hint);
  setToolTip(key.empty() ? hint : hint + " (" + ToQString(key) + ')');
}

void TToolButton::SetVisible(bool visible) {
  if (FPlace != nullptr) FPlace->setVisible(visible);
  else TControl::SetVisible(visible);
}

void TToolButton::SetStyle(TToolButtonStyle style) {
  FStyle = style;
  setCheckable(style == tbsCheck);
  if (style == tbsSeparator) setAccessibleName(QStringLiteral("separator"));
  updateGeometry();
  update();
}

void TToolButton::SetImageIndex(std::int32_t index) {
  FImageIndex = index;
  UpdateIcon();
}

void TToolButton::UpdateIcon() {
  QIcon icon = Action() == nullptr ? QIcon() : Action()->Icon();
  const TImageList* images = FToolBar == nullptr ? nullptr : FToolBar->Images();
  if (icon.isNull() && images != nullptr) icon = images->Icon(FImageIndex);
  setIcon(icon);
}

void TToolButton::ActionChanged() {
  const TAction* action = Action();
  if (action == nullptr) return;
  if (!FOwnCaption) FCaption = action->Caption();
  if (action->ImageIndex() >= 0) FImageIndex = action->ImageIndex();
  SetHint(action->Hint());
  SetEnabled(action->Enabled());
  SetVisible(action->Visible());
  setCheckable(FStyle == tbsCheck || action->Checked());
  setChecked(action->Checked());
  UpdateIcon();
}

void TToolButton::Click() {
  if (!Enabled() || FStyle == tbsSeparator) return;
  if (OnClick) OnClick(this);
  else if (Action() != nullptr) Action()->Execute();
}

void TToolButton::mousePressEvent(QMouseEvent* event) {
  if (FStyle == tbsSeparator) {
    event->ignore();
    return;
  }
  const QPointer<TToolButton> alive(this);
  Guarded(this, [this, event] { OnMouseDown(this, *event); });
  if (alive != nullptr) QToolButton::mousePressEvent(event);
}

void TToolButton::paintEvent(QPaintEvent* event) {
  if (FStyle != tbsSeparator) {
    QToolButton::paintEvent(event);
    return;
  }
  QStylePainter painter(this);
  QStyleOptionToolBar option;
  option.initFrom(this);
  if (FToolBar == nullptr || FToolBar->orientation() == Qt::Horizontal)
    option.state |= QStyle::State_Horizontal;
  painter.drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, option);
}

QSize TToolButton::sizeHint() const {
  if (FStyle != tbsSeparator) return QToolButton::sizeHint();
  const int extent = style()->pixelMetric(QStyle::PM_ToolBarSeparatorExtent, nullptr, this);
  return {extent, extent};
}

const TTypeInfo& TToolBar::ClassInfo() {
  static const TTypeInfo info = Publish<TToolBar>("TToolBar", TControl::ClassInfo())
                                    .Prop("Caption", &TToolBar::Caption, &TToolBar::SetCaption);
  return info;
}

TToolBar::TToolBar(TComponent* owner, QWidget* parent) : TControlOf(owner, parent) {}

// The toolkit's bar destroys what stands in it; the buttons must not ask this one any more.
TToolBar::~TToolBar() {
  for (TToolButton* button : FButtons) {
    button->FToolBar = nullptr;
    button->FPlace = nullptr;
  }
}

std::string TToolBar::Caption() const {
  return FromQString(windowTitle());
}

void TToolBar::SetCaption(const std::string& caption) {
  setWindowTitle(ToQString(caption));
  TControl::SetCaption(caption);
}

TToolButton* TToolBar::Buttons(int index) const {
  if (index < 0 || index >= ButtonCount())
    throw EListError("Button index out of bounds (" + IntToStr(index) + ")");
  return FButtons[static_cast<std::size_t>(index)];
}

void TToolBar::InsertButton(int index, TToolButton* button) {
  if (index < 0 || index > ButtonCount())
    throw EListError("Button index out of bounds (" + IntToStr(index) + ")");
  if (button->FToolBar != nullptr) button->FToolBar->RemoveButton(button);
  QAction* before = index < ButtonCount() ? Buttons(index)->FPlace : nullptr;
  button->FPlace = insertWidget(before, button);
  button->FToolBar = this;
  FButtons.insert(FButtons.begin() + index, button);
  button->setToolButtonStyle(toolButtonStyle());
  button->setIconSize(iconSize());
  connect(this, &QToolBar::toolButtonStyleChanged, button, &QToolButton::setToolButtonStyle);
  connect(this, &QToolBar::iconSizeChanged, button, &QToolButton::setIconSize);
  if (button->Action() != nullptr) button->ActionChanged();
  button->UpdateIcon();
}

void TToolBar::RemoveButton(TToolButton* button) {
  if (button->FToolBar != this) return;
  std::erase(FButtons, button);
  button->FToolBar = nullptr;
  QAction* place = std::exchange(button->FPlace, nullptr);
  removeAction(place);
  disconnect(button);
  button->setParent(nullptr);
  // The place destroys the button with it, so it must not go with the bar but after the button.
  place->setParent(nullptr);
  connect(button, &QObject::destroyed, place, &QObject::deleteLater);
}

TToolButton* TToolBar::AddButton(TAction* action) {
  auto* button = new TToolButton(Owner(), this);
  button->SetAction(action);
  return button;
}

TToolButton* TToolBar::AddSeparator() {
  auto* button = new TToolButton(Owner(), this);
  button->SetStyle(tbsSeparator);
  return button;
}

void TToolBar::SetImages(TImageList* images) {
  FImages = images;
  FreeNotification(images);
  for (TToolButton* button : FButtons) button->UpdateIcon();
}

void TToolBar::Notification(TComponent* component, TOperation operation) {
  TControlOf::Notification(component, operation);
  if (operation == opRemove && component == FImages) FImages = nullptr;
}

}  // namespace wrenfold
