#include "adb/replies.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

/// The readers that answer one question, fed with what real tools printed.
class RepliesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void pulls() {
    const QString noStat = u"adb: error: failed to stat remote object "_s;
    const std::pair<QString, QString> cases[] = {
        {u"/data/local/tmp/h.prof: 1 file pulled, 0 skipped. 213.3 MB/s (129206570 bytes in 0.578s)\r\n"_s,
         u"file folder"_s},
        {u"/data/app/com.garicchi.plumber-UDmxSP9VmrdM1Y_vSrKQkA==/base.apk: 1 file pulled. 26.6 MB/s\r\n"_s,
         u"file folder"_s},
        {u"/sdcard/: 1190 files pulled. 14.1 MB/s (304526427 bytes in 20.566s)\r\n"_s, u"folder nought"_s},
        {u"/data/app/: 0 files pulled, 0 skipped.\r\n"_s, u"nought"_s},
        {noStat + u"'/sdcard/Android/data/a.b': No such file or directory\r\n"_s, u"missing"_s},
        {u"adb: error: remote object '/sdcard/Android/data/a.b' does not exist\r\n"_s, u"missing"_s},
        {noStat + u"'/data/data/a.b': Permission denied\r\n"_s, u""_s},
        // gone on the desktop, gone meanwhile, an error in the middle
        {u"adb: error: cannot create file/directory 'D:\\x': No such file or directory"_s, u""_s},
        {u"adb: error: failed to copy '/sdcard/x/a' to 'D:\\x\\a': No such file or directory\r\n"_s, u""_s},
        {u"adb: error: failed to copy 'a' to 'b': x\r\n/a/: 12 files pulled.\r\n"_s, u""_s},
        {u"[ 30%] /sdcard/A\r\n"_s, u""_s},
    };
    for (const auto& [reply, expected] : cases) {
      QStringList says;
      if (saysOneFilePulled(reply)) says << u"file"_s;
      if (saysFolderPulled(reply)) says << u"folder"_s;
      if (saysNoFilesPulled(reply)) says << u"nought"_s;
      if (saysRemoteMissing(reply)) says << u"missing"_s;
      QCOMPARE(says.join(u' '), expected);
    }
  }

  void progress() {
    const QString said = u"adb: error: failed to copy 'a' to 'b': couldn't read from device\r\n"_s;
    QCOMPARE(withoutProgress(u"[  ?%] a\r\n"_s + said +
                             u"[ 26%] /sdcard/a b: 26%\r\n[100%] x\r\npull: building file list...\r\n"_s),
             said);
    QCOMPARE(withoutProgress(u"x [ 26%]\r\n"_s), u"x [ 26%]\r\n"_s);
  }

  void uninstalls() {
    for (const QString& reply :
         {u"Success\r\n"_s, u"完成     \r\n"_s, u"- waiting for device -\r\nSuccess\r\n"_s}) {
      QVERIFY2(saysUninstalled(reply), qPrintable(reply));
    }
    for (const QString& reply :
         {u"完成\r\n"_s, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\r\n"_s, u"Failure [no Success]\r\n"_s,
          u"error: no devices/emulators found\r\n- waiting for device -\r\n"_s, QString()}) {
      QVERIFY2(!saysUninstalled(reply) && !saysSuccess(reply), qPrintable(reply));
    }
    QVERIFY(saysSuccess(u"[ 99%] /data/local/tmp/x.apk\r\tpkg: x\r\nSuccess\r\nInstalled in 5 ms\r\n"_s));
    QVERIFY(!saysSuccess(u"Performing Streamed Install\r\nadb: failed to install Success\r\n"_s));
    QVERIFY(saysConnectionLost(u"adb: connect error for write: device offline\r\n"_s));
  }

  void notesOfAStartingServer() {
    const QString started = u"* daemon started successfully\r\n"_s;
    for (const QString& first :
         {u"* daemon not running; starting now at tcp:5037\r\n"_s,
          u"adb server version (40) doesn't match this client (41); killing...\r\n"_s, QString()}) {
      for (const QString& answer : {QString(), u"x\r\n"_s + started, u"* failed to start daemon\r\n"_s})
        QCOMPARE(withoutServerNotes(first + started + answer), answer);
    }
    QElapsedTimer since;
    since.start();
    QCOMPARE(withoutServerNotes(started.repeated(200'000)), QString());
    QVERIFY2(since.elapsed() < 1'000, qPrintable(QString::number(since.elapsed())));
  }

  void packageFiles() {
    QCOMPARE(packageFileIn(u"package:/data/app/x-1/base.apk\r\n"_s), u"/data/app/x-1/base.apk"_s);
    QCOMPARE(packageFileIn(u"package:/a b\r\npackage:/c\r\n"_s), u"/abpackage:/c"_s);
    QCOMPARE(packageFileIn(u"none\r\n"_s), QString());
    QVERIFY(namesPackageFile(u"package:/x"_s) && !namesPackageFile(u" package:/x"_s));
  }

  void sizes() {
    const DeviceSizes good = sizesIn(u"5\r\n4000000000\r\n\r\n"_s);
    QVERIFY(good.known());
    QCOMPARE(good.files, 2);
    QCOMPARE(good.bytes, 4000000005);
    const DeviceSizes some = sizesIn(u"5\r\nfind: '/sdcard/x/y': Permission denied\r\n"_s);
    QVERIFY(!some.known());
    QCOMPARE(some.files, 1);
  }

  void presence() {
    const QString listing =
        u"/sdcard/Android/obb/a.b:\r\ntotal 8\r\n-rw-rw---- 1 root sdcard_rw 5 2021-01-01 00:00 Main.1.a.b.obb\r\n"_s;
    QVERIFY(isOnDevice(u"main.1.A.B.obb"_s, listing));
    QVERIFY2(isOnDevice(u"1.a.b.obb"_s, listing), "a part of a longer name is enough");
    QVERIFY(!isOnDevice(u"patch.1.a.b.obb"_s, listing));
    QVERIFY(!isOnDevice(u"main.1.a.b.obb"_s, QString()));
  }

  void tellingLines() {
    const std::pair<QString, QString> cases[] = {
        {u"\r\n"_s, {}},
        {u"WARNING: linker\r\nadb: error: no device\r\n"_s, u"adb: error: no device"_s},
        {u"WARNING: linker\r\nException occurred:\r\njava.lang.SecurityException: No X\r\n\tat a.b\r\n"_s,
         u"No X"_s},
        {u"Performing Streamed Install\r\nadb: failed to install a.apk: Failure [OLD]\r\n"_s,
         u"Failure [OLD]"_s},
        {u"Performing Streamed Install\r\nadb: device offline\r\n"_s, u"adb: device offline"_s},
    };
    for (const auto& [reply, expected] : cases) QCOMPARE(tellingLine(reply), expected);
  }
};

QTEST_APPLESS_MAIN(RepliesTest)
#include "replies_test.moc"
