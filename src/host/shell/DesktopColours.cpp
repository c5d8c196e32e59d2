// The light and dark palettes and where the desktop says which one it wants.
#include "host/shell/DesktopColours.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <optional>

namespace wrenfold {

namespace {

constexpr char Portal[] = "org.freedesktop.portal.Desktop";
constexpr char PortalPath[] = "/org/freedesktop/portal/desktop";
constexpr char PortalSettings[] = "org.freedesktop.portal.Settings";
constexpr char Appearance[] = "org.freedesktop.appearance";
constexpr char ColourScheme[] = "color-scheme";
constexpr uint PreferDark = 1;
// A desktop that does not answer must not hold the start up.
constexpr int PatienceMilliseconds = 300;

std::optional<bool> AskPortal() {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected() || !bus.interface()->isServiceRegistered(Portal)) return {};
  QDBusMessage question =
      QDBusMessage::createMethodCall(Portal, PortalPath, PortalSettings, "Read");
  question << QString(Appearance) << QString(ColourScheme);
  const QDBusMessage answer = bus.call(question, QDBus::Block, PatienceMilliseconds);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return {};
  QVariant value = answer.arguments().constFirst();
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt() == PreferDark;
}

bool DesktopIsDark() {
  if (const std::optional<bool> answer = AskPortal()) return *answer;
  return qEnvironmentVariable("GTK_THEME").endsWith("dark", Qt::CaseInsensitive);
}

QPalette DarkPalette() {
  QPalette palette(QColor(0x35, 0x37, 0x3b), QColor(0x2b, 0x2d, 0x30));
  const QColor text(0xe3, 0xe5, 0xe8), faint(0x8b, 0x90, 0x97), base(0x1f, 0x21, 0x24);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(role, text);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2d));
  palette.setColor(QPalette::ToolTipBase, QColor(0x3c, 0x3f, 0x44));
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::PlaceholderText, faint);
  palette.setColor(QPalette::Link, QColor(0x7a, 0xb2, 0xf5));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x5f, 0x9e));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, faint);
  return palette;
}

}  // namespace

TDesktopColours::TDesktopColours(QObject* parent)
    : QObject(parent), FLight(QApplication::palette()) {
  QDBusConnection::sessionBus().connect(Portal, PortalPath, PortalSettings, "SettingChanged", this,
                                        SLOT(SettingChanged(QString, QString, QDBusVariant)));
  SetDark(DesktopIsDark());
}

void TDesktopColours::SetDark(bool dark) {
  const bool themeIsDark = FLight.color(QPalette::Window).lightness() < 128;
  if (dark == FDark || themeIsDark) return;
  FDark = dark;
  QApplication::setPalette(dark ? DarkPalette() : FLight);
}

void TDesktopColours::SettingChanged(const QString& space, const QString& key,
                                     const QDBusVariant& value) {
  if (space == Appearance && key == ColourScheme) SetDark(value.variant().toUInt() == PreferDark);
}

}  // namespace wrenfold
