#include "platform/notification.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// A desktop's service that takes notifications and never answers.
class Notifications : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
    if (message.member() == u"Notify"_s) taken << message;
    return true;
  }

  QList<QDBusMessage> taken;
};

}  // namespace

class NotificationTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void reachesTheDesktopWithoutWaiting() {
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    QVERIFY(bus.waitForReadyRead());
    const QByteArray address = bus.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    notifyUser(u"nobody"_s, u"is there yet"_s);

    auto desktop = QDBusConnection::connectToBus(QString::fromLatin1(address), u"desktop"_s);
    Notifications service;
    QVERIFY(desktop.registerVirtualObject(u"/org/freedesktop/Notifications"_s, &service));
    QVERIFY(desktop.registerService(u"org.freedesktop.Notifications"_s));
    QElapsedTimer timer;
    timer.start();
    notifyUser(u"完成 (Done)"_s, u"R&D <b>.apk"_s);
    QVERIFY(timer.elapsed() < 1000);
    QTRY_COMPARE(service.taken.size(), 1);
    const QVariantList arguments = service.taken.first().arguments();
    QCOMPARE(service.taken.first().signature(), u"susssasa{sv}i"_s);
    QCOMPARE(arguments[3].toString(), u"完成 (Done)"_s);
    QCOMPARE(arguments[4].toString(), u"R&amp;D &lt;b&gt;.apk"_s);
    bus.terminate();
    bus.waitForFinished();
  }
};

QTEST_GUILESS_MAIN(NotificationTest)
#include "notification_test.moc"
