#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include "monitor/device_watcher.h"
#include "monitor/installed_build.h"
#include "monitor/storage_figures.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

QString recorded(const QString& name) {
  QFile file(QStringLiteral(ORVANTA_TEST_DATA) + name);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll()).replace(u"\n"_s, u"\r\n"_s);
}

/// The inside of the recording `id` of a file that holds several.
QString recording(const QString& file, const QString& id) {
  static const QString pattern = u"=== BEGIN %1 [^\r\n]*\r\n(.*?)=== END %1 ==="_s;
  const QRegularExpression block(pattern.arg(id), QRegularExpression::DotMatchesEverythingOption);
  return block.match(recorded(file)).captured(1);
}

}  // namespace

class MonitorReadersTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void lines() {
    const Host host{HostStyle::windows(), u"C:\\O"_s};
    QCOMPARE(dumpsysLine(host, u"a.b"_s), u"\"C:\\O\\adb.exe\" shell dumpsys package a.b"_s);
    QCOMPARE(dumpsysLine(host, QString()), u"\"C:\\O\\adb.exe\" shell dumpsys package "_s);
    QCOMPARE(storageQueryLine(host), u"\"C:\\O\\adb.exe\" shell echo $EXTERNAL_STORAGE"_s);
    QCOMPARE(diskFreeLine(host, u"/sdcard"_s), u"\"C:\\O\\adb.exe\" shell df -h /sdcard"_s);
  }

  void builds_data() {
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("build");
    QTest::newRow("a line") << u"    versionCode=121 minSdk=29 targetSdk=29\r\n"_s << u"121"_s;
    QTest::newRow("headset") << recording(u"dumpsys-package-headset-excerpt.txt"_s, u"D01"_s) << u"83"_s;
    QTest::newRow("several packages: the first of each")
        << recorded(u"dumpsys-package-android10-phone.txt"_s) << u"500700000"_s;
    QTest::newRow("not there") << u"\r\nDexopt state:\r\n  Unable to find package: a.b\r\n"_s << u""_s;
    QTest::newRow("no minSdk") << u"versionCode=7\r\n"_s << u""_s;
    QTest::newRow("the other order") << u"minSdk=1 versionCode=7"_s << u""_s;
    QTest::newRow("minSdk inside the key's end") << u"versionCode=minSdk=1"_s << u""_s;
    QTest::newRow("other case") << u"VersionCode=7 MinSdk=3"_s << u""_s;
  }
  void builds() {
    QFETCH(QString, output);
    QTEST(installedBuildIn(output), "build");
  }

  void verdicts_data() {
    QTest::addColumn<QString>("onDevice");
    QTest::addColumn<QString>("inPackage");
    QTest::addColumn<int>("verdict");
    const auto row = [](const char* name, const char16_t* device, const char16_t* package,
                        BuildVerdict verdict) {
      QTest::newRow(name) << QString::fromUtf16(device) << QString::fromUtf16(package)
                          << static_cast<int>(verdict);
    };
    row("older", u"120", u"121", BuildVerdict::Older);
    row("newer", u"122", u"121", BuildVerdict::Newer);
    row("compared as numbers", u"9", u"10", BuildVerdict::Older);
    row("same", u"121", u"121", BuildVerdict::Same);
    row("equal numbers, other texts", u"007", u"7", BuildVerdict::Undecided);
    row("not installed", u"", u"7", BuildVerdict::NotInstalled);
    row("package without a build", u"7", u"", BuildVerdict::Older);
    row("no number on the device", u"x", u"7", BuildVerdict::Older);
    row("no plain decimal", u"nan", u"nan", BuildVerdict::Older);
    row("beyond 32 bits", u"4294967297", u"4294967296", BuildVerdict::Newer);
  }
  void verdicts() {
    QFETCH(QString, onDevice);
    QFETCH(QString, inPackage);
    QTEST(static_cast<int>(compareBuilds(onDevice, inPackage)), "verdict");
  }

  void figures_data() {
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("figures");
    const auto df = [](const char* id) { return recording(u"df.txt"_s, QString::fromLatin1(id)); };
    const QString heading = u"Filesystem      Size  Used Avail Use% Mounted on\r\n"_s;
    QTest::newRow("usual") << heading + u"/dev/fuse       109G   12G   97G  12% /storage/emulated\r\n"_s
                           << QStringList{u"109"_s, u"12"_s, u"97"_s, u"12"_s};
    QTest::newRow("a point goes") << heading + u"/dev/fuse       109G  5.5G  104G   5% /storage\r\n"_s
                                  << QStringList{u"109"_s, u"55"_s, u"104"_s, u"5"_s};
    QTest::newRow("three characters count") << heading + u"/dev/fuse 1024G 12.5G 97G 12% /storage\r\n"_s
                                            << QStringList{u"102"_s, u"12"_s, u"97"_s, u"12"_s};
    QTest::newRow("a fifth figure changes nothing")
        << heading + u"/dev/fuse 9G 2G 7G 22% /1 2 3\r\n"_s << QStringList{u"9"_s, u"2"_s, u"7"_s, u"22"_s};
    QTest::newRow("recorded, 512 GB") << df("F08") << QStringList{u"462"_s, u"280"_s, u"183"_s, u"61"_s};
    QTest::newRow("recorded, older heading")
        << df("F07").section(u"\r\n"_s, 0, 1) << QStringList{u"362"_s, u"76"_s, u"362"_s, u"409"_s};
    QTest::newRow("recorded, no such path")
        << df("F03") << QStringList{u"1"_s, QString(), QString(), QString()};
    QTest::newRow("error") << u"error: no devices/emulators found\r\n"_s << QStringList(4);
    QTest::newRow("nothing") << u""_s << QStringList(4);
    QTest::newRow("figures at both edges do not count") << u" 1"_s << QStringList(4);
  }
  void figures() {
    QFETCH(QString, output);
    const auto found = storageFiguresIn(output);
    QTEST((QStringList{found[1], found[2], found[3], found[4]}), "figures");
    QVERIFY(found[0].isEmpty());
  }

  void freeSpaces() {
    QCOMPARE(freeSpace(u"109"_s, u"12"_s), std::optional<qint64>(97));
    QCOMPARE(freeSpace(u"5"_s, u"55"_s), std::optional<qint64>(-50));
    QVERIFY(!freeSpace(QString(), u"12"_s));
    QVERIFY(!freeSpace(u"12"_s, QString()));
    QCOMPARE(KeepDigits(u" 1a2.3\u0664"_s), u"123"_s);
  }

  void devices_data() {
    QTest::addColumn<QString>("output");
    QTest::addColumn<bool>("device");
    QTest::newRow("none") << u"List of devices attached\r\n\r\n"_s << false;
    QTest::newRow("one") << u"List of devices attached\r\n1WMHH8325K1147\tdevice\r\n\r\n"_s << true;
    QTest::newRow("35 characters") << QString(35, u'x') << false;
    QTest::newRow("36 characters") << QString(36, u'x') << true;
    QTest::newRow("nothing") << QString() << false;
  }
  void devices() {
    QFETCH(QString, output);
    QTEST(answersLikeADevice(output), "device");
  }
};

QTEST_GUILESS_MAIN(MonitorReadersTest)
#include "readers_test.moc"
