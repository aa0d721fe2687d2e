#include "permissions/runtime_permissions.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// The count, then "CAMERA=1" and so on for what was stored, without the names' common prefix.
QString told(const RuntimePermissions& found) {
  QString text = QString::number(found.RuntimePermCount);
  for (size_t i = 0; i < found.RuntimePermNames.size(); ++i) {
    QString name = found.RuntimePermNames[i];
    if (!found.RuntimePermStates[i].isEmpty())
      text += u' ' + name.remove(u"android.permission."_s) + u'=' + found.RuntimePermStates[i];
  }
  return text;
}

}  // namespace

class RuntimePermissionsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void reading() {
    const QString camera = u"  android.permission.CAMERA: granted=true, flags=[ USER_SET]\n"_s;
    const QString mic = u"  android.permission.RECORD_AUDIO: granted=false\n"_s;
    const QString heading = u"   runtime permissions:\n"_s;
    // Recorded on a phone, in excerpts.
    const QString phone =
        u"    install permissions:\n"
        "      android.permission.USE_CREDENTIALS: granted=true\n"
        "    User 0: ceDataInode=-4294835341 installed=true hidden=false\n"
        "      runtime permissions:\n"
        "        android.permission.ACCESS_FINE_LOCATION: granted=false, flags=[ USER_SET|"
        "USER_SENSITIVE_WHEN_GRANTED|USER_SENSITIVE_WHEN_DENIED]\n"
        "        android.permission.CAMERA: granted=false, flags=[ USER_SENSITIVE_WHEN_GRANTED|"
        "USER_SENSITIVE_WHEN_DENIED]\n"
        "      disabledComponents:\n"_s;
    const std::pair<QString, const char*> cases[] = {
        {phone, "2 ACCESS_FINE_LOCATION=0 CAMERA=0"},
        {u"install permissions:\n"_s + camera, "0"},
        {u"Runtime Permissions:\n"_s + camera, "0"},
        // The end of the block is no end; other makers' permissions are none of ours.
        {camera + heading + camera + u" com.x.permission.Y: granted=true\nShared users:\n"_s + mic,
         "2 CAMERA=1 RECORD_AUDIO=0"},
        {heading + camera + u"User 10:\n"_s + heading + mic, "3 CAMERA=1 RECORD_AUDIO=0 RECORD_AUDIO=0"},
        {heading + u"runtime permissions: android.permission.Y\n"_s, "1 runtime permissions=0"},
        {heading + u"android.permission.A\nandroid.ptermission android.permission.B\n"_s, "2 =0 =1"},
        {heading + u"android.permission.A: granted=tomorrow\nandroid.permission.B: granted=True\n"
                   "android.permission.C:granted=true\nandroid.permission.D:"_s,
         "4 A=1 B=0 C=0 D=0"},
    };
    for (const auto& [lines, expected] : cases)
      QCOMPARE(told(readRuntimePermissions(QString(lines).replace(u'\n', u"\r\n"_s))),
               QString::fromLatin1(expected));
    QCOMPARE(told(readRuntimePermissions(heading + camera)), u"0"_s);
  }

  void moreThanThePlaces() {
    QString reply = u"runtime permissions:\r\n"_s;
    for (int i = 1; i <= 120'000; ++i) reply += u"android.permission.P%1: granted=true\r\n"_s.arg(i);
    RuntimePermissions found = readRuntimePermissions(reply);
    QCOMPARE(found.RuntimePermCount, 120'000);
    QCOMPARE(found.RuntimePermNames[99], u"android.permission.P99"_s);
    // Every heading counts all that is behind it; the work must not grow that way.
    found = readRuntimePermissions(u"runtime permissions\r\n"_s.repeated(120'000) + reply);
    QCOMPARE(found.RuntimePermCount, std::numeric_limits<qint32>::max());
  }

  void tellingLines() {
    const std::pair<QString, QString> cases[] = {
        {u"\r\n"_s, {}},
        {u"* daemon not running\r\nadb: error: no device\r\n"_s, u"adb: error: no device"_s},
        {u"WARNING: linker\r\nException occurred:\r\njava.lang.SecurityException: No X\r\n\tat a.b\r\n"_s,
         u"No X"_s},
    };
    for (const auto& [reply, expected] : cases) QCOMPARE(tellingLine(reply), expected);
  }
};

QTEST_APPLESS_MAIN(RuntimePermissionsTest)
#include "runtime_permissions_test.moc"
