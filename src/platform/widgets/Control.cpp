#include "platform/widgets/Control.h"

#include <QApplication>
#include <QFontInfo>
#include <QPalette>
#include <cmath>

#include "platform/widgets/Menus.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr double PointsPerPixel = 72.0 / FontPixelsPerInch;

struct TSystemColor {
  int Index;
  QPalette::ColorRole Role;
  QPalette::ColorGroup Group = QPalette::Active;
};
constexpr TSystemColor SystemColors[] = {
    {4, QPalette::Window},      {5, QPalette::Base},
    {6, QPalette::Dark},        {7, QPalette::WindowText},
    {8, QPalette::Text},        {12, QPalette::Dark},
    {13, QPalette::Highlight},  {14, QPalette::HighlightedText},
    {15, QPalette::Window},     {16, QPalette::Dark},
    {18, QPalette::ButtonText}, {20, QPalette::Light},
    {21, QPalette::Shadow},     {17, QPalette::Text, QPalette::Disabled},
    {22, QPalette::Midlight},   {23, QPalette::ToolTipText},
    {24, QPalette::ToolTipBase}};

}  // namespace

const TTypeInfo& TControl::ClassInfo() {
  static const TTypeInfo info = Publish<TControl>("TControl", TComponent::ClassInfo())
                                    .Prop("Hint", &TControl::Hint, &TControl::SetHint)
                                    .Prop("Enabled", &TControl::Enabled, &TControl::SetEnabled)
                                    .Default(true)
                                    .Prop("Visible", &TControl::Visible, &TControl::SetVisible)
                                    .Default(true)
                                    .Prop("Width", &TControl::Width, &TControl::SetWidth)
                                    .Prop("Height", &TControl::Height, &TControl::SetHeight)
                                    .Prop("Color", &TControl::Color, &TControl::SetColor)
                                    .Default(clDefault)
                                    .Prop("Font", &TControl::Font, &TControl::SetFont)
                                    .StoredWhen(&TControl::FontStored);
  return info;
}

TControl::TControl(TComponent* owner) : TComponent(owner) {}

TControl::~TControl() = default;

void TControl::Attach() {
  QWidget* widget = Widget();
  QObject::connect(widget, &QObject::objectNameChanged, widget,
                   [this](const QString& name) { TakeName(FromQString(name)); });
}

void TControl::SetName(const std::string& name) {
  TComponent::SetName(name);
  Widget()->setObjectName(ToQString(name));
}

std::string TControl::Caption() const {
  return FromQString(Widget()->accessibleName());
}

void TControl::SetCaption(const std::string& caption) {
  Widget()->setAccessibleName(ToQString(StripHotkey(caption)));
}

bool TControl::Enabled() const {
  return !Widget()->testAttribute(Qt::WA_ForceDisabled);
}

void TControl::SetEnabled(bool enabled) {
  Widget()->setEnabled(enabled);
}

bool TControl::Visible() const {
  return !Widget()->isHidden();
}

void TControl::SetVisible(bool visible) {
  Widget()->setVisible(visible);
}

void TControl::SetHint(const std::string& hint) {
  FHint = hint;
  UpdateTexts();
}

void TControl::UpdateTexts() {
  const QString hint = ToQString(FHint);
  Widget()->setToolTip(hint);
  Widget()->setAccessibleDescription(hint);
}

std::int32_t TControl::Width() const {
  return Widget()->width();
}

void TControl::SetWidth(std::int32_t width) {
  Widget()->resize(width, Widget()->height());
}

std::int32_t TControl::Height() const {
  return Widget()->height();
}

void TControl::SetHeight(std::int32_t height) {
  Widget()->resize(Widget()->width(), height);
}

void TControl::SetColor(TColor color) {
  if (color == FColor) return;
  FColor = color;
  QWidget* widget = Widget();
  QPalette palette;
  if (color != clDefault) palette.setColor(widget->backgroundRole(), ToQColor(color));
  widget->setPalette(palette);
  widget->setAutoFillBackground(color != clDefault);
}

TFont* TControl::Font() const {
  if (!FFont) {
    FFont = std::make_unique<TFont>();
    FromQFont(Widget()->font(), *FFont);
    Bind<&TControl::FontChanged>(FFont->OnChange, const_cast<TControl*>(this));
  }
  return FFont.get();
}

void TControl::SetFont(TFont* font) {
  if (font != nullptr) Font()->Assign(font);
}

void TControl::FontChanged(TObject*) {
  FFontSet = true;
  Widget()->setFont(ToQFont(*FFont));
}

void TControl::SetPopupMenu(TPopupMenu* menu) {
  if (menu == FPopupMenu) return;
  if (FPopupMenu != nullptr) FPopupMenu->DetachFrom(Widget());
  FPopupMenu = menu;
  if (menu == nullptr) return;
  FreeNotification(menu);
  menu->AttachTo(Widget());
}

void TControl::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FPopupMenu) FPopupMenu = nullptr;
}

QWidget* WidgetOf(TComponent* component) {
  const auto* control = dynamic_cast<TControl*>(component);
  return control == nullptr ? nullptr : control->Widget();
}

TControl* ControlOf(QWidget* widget) {
  return dynamic_cast<TControl*>(widget);
}

QColor ToQColor(TColor color) {
  const auto bits = static_cast<std::uint32_t>(color.Value);
  if ((bits & 0x80000000u) == 0)
    return QColor(bits & 0xFF, (bits >> 8) & 0xFF, (bits >> 16) & 0xFF);
  const int index = static_cast<int>(bits & 0xFF);
  const QPalette palette = QApplication::palette();
  for (const TSystemColor& system : SystemColors)
    if (system.Index == index) return palette.color(system.Group, system.Role);
  return palette.color(QPalette::Window);
}

QFont ToQFont(const TFont& font) {
  QFont result(ToQString(font.Name()));
  result.setPointSizeF(std::max(1.0, std::abs(font.Height()) * PointsPerPixel));
  const TFontStyles style = font.Style();
  result.setBold(style.Contains(fsBold));
  result.setItalic(style.Contains(fsItalic));
  result.setUnderline(style.Contains(fsUnderline));
  result.setStrikeOut(style.Contains(fsStrikeOut));
  result.setFixedPitch(font.Pitch() == fpFixed);
  return result;
}

void FromQFont(const QFont& source, TFont& font) {
  const double points = QFontInfo(source).pointSizeF();
  font.SetName(FromQString(source.family()));
  font.SetHeight(-static_cast<int>(std::lround(points / PointsPerPixel)));
  TFontStyles style;
  if (source.bold()) style.Include(fsBold);
  if (source.italic()) style.Include(fsItalic);
  if (source.underline()) style.Include(fsUnderline);
  if (source.strikeOut()) style.Include(fsStrikeOut);
  font.SetStyle(style);
  font.SetPitch(source.fixedPitch() ? fpFixed : fpDefault);
}

}  // namespace wrenfold
