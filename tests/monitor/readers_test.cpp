#include <QTest>

#include "monitor/device_watcher.h"
#include "monitor/installed_build.h"
#include "monitor/storage_figures.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class MonitorReadersTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void builds_data() {
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("build");
    // Recorded on a headset, in excerpts.
    QTest::newRow("headset") << u"    primaryCpuAbi=arm64-v8a\r\n    secondaryCpuAbi=null\r\n"
                                "    versionCode=83 minSdk=23 targetSdk=28\r\n    versionName=1.1.7\r\n"_s
                             << u"83"_s;
    QTest::newRow("several packages: the first of each")
        << u"versionCode=500700000 minSdk=28\r\nversionCode=364105349 minSdk=21\r\n"_s << u"500700000"_s;
    QTest::newRow("not there") << u"\r\nDexopt state:\r\n  Unable to find package: a.b\r\n"_s << u""_s;
    QTest::newRow("no minSdk") << u"versionCode=7\r\n"_s << u""_s;
    QTest::newRow("the other order") << u"minSdk=1 versionCode=7"_s << u""_s;
  }
  void builds() {
    QFETCH(QString, output);
    QTEST(installedBuildIn(output), "build");
  }

  void verdicts() {
    const struct {
      QString onDevice, inPackage;
      BuildVerdict verdict;
    } cases[] = {
        {u"122"_s, u"121"_s, BuildVerdict::Newer},
        {u"9"_s, u"10"_s, BuildVerdict::Older},  // as numbers
        {u"121"_s, u"121"_s, BuildVerdict::Same},
        {u"007"_s, u"7"_s, BuildVerdict::Undecided},
        {QString(), u"7"_s, BuildVerdict::NotInstalled},
        {u"7"_s, QString(), BuildVerdict::Older},
        {u"nan"_s, u"nan"_s, BuildVerdict::Older},
        {u"4294967297"_s, u"4294967296"_s, BuildVerdict::Newer},  // beyond 32 bits
    };
    for (const auto& [onDevice, inPackage, verdict] : cases)
      QVERIFY2(compareBuilds(onDevice, inPackage) == verdict, qPrintable(onDevice + u" / "_s + inPackage));
  }

  void figures_data() {
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("figures");
    const QString heading = u"Filesystem      Size  Used Avail Use% Mounted on\r\n"_s;
    QTest::newRow("usual") << heading + u"/dev/fuse       109G   12G   97G  12% /storage/emulated\r\n"_s
                           << u"109 12 97 12"_s;
    QTest::newRow("a point goes, three characters count")
        << heading + u"/dev/fuse 1024G 12.5G 5.5G 12% /storage\r\n"_s << u"102 12 55 12"_s;
    QTest::newRow("a fifth figure changes nothing")
        << heading + u"/dev/fuse 9G 2G 7G 22% /1 2 3\r\n"_s << u"9 2 7 22"_s;
    QTest::newRow("older heading") << u"Filesystem             Size   Used   Free   Blksize\r\n"
                                      "/dev                   362M    76K   362M   4096\r\n"_s
                                   << u"362 76 362 409"_s;
    QTest::newRow("no such path, in kB")
        << u"Filesystem     1K-blocks Used Available Use% Mounted on\r\n"_s << u"1   "_s;
    QTest::newRow("error") << u"error: no devices/emulators found\r\n"_s << u"   "_s;
    QTest::newRow("figures at both edges do not count") << u" 1"_s << u"   "_s;
  }
  void figures() {
    QFETCH(QString, output);
    const auto found = storageFiguresIn(output);
    QTEST((QStringList{found[1], found[2], found[3], found[4]}.join(u' ')), "figures");
  }

  void freeSpaces() {
    QCOMPARE(freeSpace(u"109"_s, u"12"_s), std::optional<qint64>(97));
    QCOMPARE(freeSpace(u"5"_s, u"55"_s), std::optional<qint64>(-50));
    QVERIFY(!freeSpace(QString(), u"12"_s) && !freeSpace(u"12"_s, QString()));
    QCOMPARE(KeepDigits(u" 1a2.3\u0664"_s), u"123"_s);
  }

  void devices() {
    QVERIFY(!answersLikeADevice(u"List of devices attached\r\n\r\n"_s) && !answersLikeADevice(QString()));
    QVERIFY(answersLikeADevice(u"List of devices attached\r\n1WMHH8325K1147\tdevice\r\n\r\n"_s));
    QVERIFY(!answersLikeADevice(QString(35, u'x')) && answersLikeADevice(QString(36, u'x')));
  }
};

QTEST_GUILESS_MAIN(MonitorReadersTest)
#include "readers_test.moc"
