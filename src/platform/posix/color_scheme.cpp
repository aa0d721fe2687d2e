#include "platform/color_scheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// The portal's `color-scheme`: 1 prefers dark, 2 prefers light, 0 or no answer leaves it open. The wait is
/// short: a desktop without the portal must not hold up the start.
int portalPreference() {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return 0;
  auto question = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                 u"/org/freedesktop/portal/desktop"_s,
                                                 u"org.freedesktop.portal.Settings"_s, u"Read"_s);
  question << u"org.freedesktop.appearance"_s << u"color-scheme"_s;
  const QDBusMessage answer = bus.call(question, QDBus::Block, 100);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return 0;
  QVariant value = answer.arguments().constFirst();
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toInt();
}

}  // namespace

ColorScheme desktopColorScheme() {
  // Desktops with their own platform theme say it through the palette. The program sets its own palette after
  // the first call, so the desktop's is read before.
  static const QPalette palette = QGuiApplication::palette();
  const QByteArray wish = qgetenv("ORVANTA_COLOR_SCHEME");
  if (wish == "dark") return ColorScheme::Dark;
  if (wish == "light") return ColorScheme::Light;
  switch (portalPreference()) {
    case 1:
      return ColorScheme::Dark;
    case 2:
      return ColorScheme::Light;
    default:
      break;
  }
  const bool dark =
      palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
  return dark ? ColorScheme::Dark : ColorScheme::Light;
}

}  // namespace orvanta
