#include "platform/taskbar_progress.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace orvanta {

void showTaskbarProgress(const QWindow*, int percent) {
  // The docks that show it go by the program's desktop entry, not by a window.
  auto update = QDBusMessage::createSignal(u"/"_s, u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
  constexpr double whole = 100;
  update << u"application://%1.desktop"_s.arg(QGuiApplication::desktopFileName())
         << QVariantMap{{u"progress"_s, qMax(percent, 0) / whole}, {u"progress-visible"_s, percent >= 0}};
  QDBusConnection::sessionBus().send(update);
}

}  // namespace orvanta
