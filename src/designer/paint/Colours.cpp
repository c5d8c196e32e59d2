#include "designer/paint/Colours.h"

#include <array>

#include "designer/model/StoredValue.h"
#include "platform/core/text/Identifiers.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

using Role = QPalette::ColorRole;

// By the index of the system colour.
constexpr std::array SystemRoles = {
    Role::Button,
    Role::Dark,
    Role::Highlight,
    Role::Mid,
    Role::Window,
    Role::Base,
    Role::Shadow,
    Role::WindowText,
    Role::Text,
    Role::HighlightedText,
    Role::Mid,
    Role::Mid,
    Role::Dark,
    Role::Highlight,
    Role::HighlightedText,
    Role::Window,
    Role::Mid,
    Role::PlaceholderText,
    Role::ButtonText,
    Role::WindowText,
    Role::Light,
    Role::Shadow,
    Role::Midlight,
    Role::ToolTipText,
    Role::ToolTipBase,
    Role::Button,
    Role::Link,
    Role::Highlight,
    Role::Mid,
    Role::Highlight,
    Role::Window,
};

// Names of system colours that came with later releases.
struct TLaterName {
  std::string_view Name;
  Role ColorRole;
};
constexpr TLaterName LaterNames[] = {
    {"clHotLight", Role::Link},
    {"clMenuBar", Role::Window},
    {"clMenuHighlight", Role::Highlight},
    {"clGradientActiveCaption", Role::Highlight},
    {"clGradientInactiveCaption", Role::Mid},
    {"cl3DFace", Role::Window},
    {"cl3DShadow", Role::Mid},
    {"cl3DHighlight", Role::Light},
    {"clForm", Role::Window},
    {"clBase", Role::Base},
    {"clButton", Role::Button},
};

QColor SystemColour(std::uint32_t index, const QPalette& palette) {
  return index < SystemRoles.size() ? palette.color(SystemRoles[index]) : QColor();
}

QColor ColourOfNumber(std::int32_t color, const QPalette& palette) {
  const auto bits = static_cast<std::uint32_t>(color);
  if ((bits & 0xFF000000) == 0x80000000) return SystemColour(bits & 0xFFFFFF, palette);
  if (color == clNone || color == clDefault) return {};
  return QColor(static_cast<int>(bits & 0xFF), static_cast<int>(bits >> 8 & 0xFF),
                static_cast<int>(bits >> 16 & 0xFF));
}

struct TPaletteRow {
  Role ColorRole;
  QRgb Light;
  QRgb Dark;
};
constexpr TPaletteRow PaletteRows[] = {
    {Role::Window, 0xFFF0F0F0, 0xFF2D2F33},      {Role::WindowText, 0xFF000000, 0xFFE6E6E6},
    {Role::Base, 0xFFFFFFFF, 0xFF1E2023},        {Role::AlternateBase, 0xFFF5F5F5, 0xFF26282C},
    {Role::Text, 0xFF000000, 0xFFE6E6E6},        {Role::Button, 0xFFECECEC, 0xFF3A3D42},
    {Role::ButtonText, 0xFF000000, 0xFFE6E6E6},  {Role::Light, 0xFFFFFFFF, 0xFF4A4D52},
    {Role::Midlight, 0xFFE3E3E3, 0xFF404348},    {Role::Mid, 0xFFA8A8A8, 0xFF55585E},
    {Role::Dark, 0xFF808080, 0xFF6A6D73},        {Role::Shadow, 0xFF606060, 0xFF141517},
    {Role::Highlight, 0xFF2F6FB5, 0xFF3A78BD},   {Role::HighlightedText, 0xFFFFFFFF, 0xFFFFFFFF},
    {Role::Link, 0xFF0066CC, 0xFF6CB2FF},        {Role::ToolTipBase, 0xFFFFFFE1, 0xFF3B3A2B},
    {Role::ToolTipText, 0xFF000000, 0xFFE6E6E6}, {Role::PlaceholderText, 0xFF808080, 0xFF8A8D92},
    {Role::BrightText, 0xFFFFFFFF, 0xFFFFFFFF},
};

QPalette MakePalette(QRgb TPaletteRow::*theme) {
  QPalette palette;
  for (const TPaletteRow& row : PaletteRows) palette.setColor(row.ColorRole, QColor(row.*theme));
  const QColor faint = palette.color(Role::PlaceholderText);
  for (const Role role : {Role::WindowText, Role::Text, Role::ButtonText})
    palette.setColor(QPalette::Disabled, role, faint);
  return palette;
}

}  // namespace

QPalette LightPalette() {
  return MakePalette(&TPaletteRow::Light);
}

QPalette DarkPalette() {
  return MakePalette(&TPaletteRow::Dark);
}

QColor ColourOf(std::string_view storedValue, const QPalette& palette) {
  if (storedValue.empty()) return {};
  const std::string_view name = StoredIdentifier(storedValue);
  if (name.empty())
    return ColourOfNumber(static_cast<std::int32_t>(StoredInteger(storedValue, clNone)), palette);
  TColor color;
  if (IdentToColor(name, color)) return ColourOfNumber(color, palette);
  for (const TLaterName& later : LaterNames)
    if (EqualText(name, later.Name)) return palette.color(later.ColorRole);
  return {};
}

QColor ReadableOn(const QColor& ground) {
  return ground.lightness() > 140 ? Qt::black : Qt::white;
}

}  // namespace wrenfold
