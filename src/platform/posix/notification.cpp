#include "platform/notification.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace orvanta {

void notifyUser(const QString& title, const QString& text) {
  constexpr uint newOne = 0;
  constexpr int asLongAsUsual = -1;
  const QString desktopEntry = QGuiApplication::desktopFileName();
  auto call =
      QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                                     u"org.freedesktop.Notifications"_s, u"Notify"_s);
  // The text is taken for markup, the title is not.
  call << QCoreApplication::applicationName() << newOne << desktopEntry << title << text.toHtmlEscaped()
       << QStringList() << QVariantMap{{u"desktop-entry"_s, desktopEntry}} << asLongAsUsual;
  QDBusConnection::sessionBus().send(call);
}

}  // namespace orvanta
