#include <QTest>

#include "operations/backup_paths.h"
#include "operations/command_lines.h"
#include "operations/replies.h"
#include "platform/command_line.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const Host windowsHost{HostStyle::windows(), u"C:\\Tools"_s};
const Host posixHost{HostStyle::posix(), u"/opt/o"_s};

}  // namespace

class OperationsReadersTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void argumentsArriveWhole() {
    const auto words = [](const QString& line) { return splitCommandLine(line).mid(2); };
    // A drive's root ends in the separator.
    QCOMPARE(words(pullLine(windowsHost, u"/sdcard/x"_s, u"C:\\"_s)),
             (QStringList{u"/sdcard/x"_s, u"C:\\"_s}));
    const QString odd = u"/home/o'x/\"游戏\" 🎮\\"_s;
    QCOMPARE(words(pullLine(posixHost, u"/a\"b"_s, odd)), (QStringList{u"/a\"b"_s, odd}));
    QCOMPARE(words(pushDataLine(posixHost, odd)), (QStringList{odd, u"/sdcard/Android/data/"_s}));
    // What a shell on the device would act on stays inside the quotes.
    QCOMPARE(words(sizesLine(posixHost, u"/data/app/~~x==/a'$(b)\"/base.apk"_s)).value(1),
             u"'/data/app/~~x==/a'\\''$(b)\"/base.apk'"_s);
    QCOMPARE(sizesLine(posixHost, u"nodevices/emulatorsfound"_s), QString());
  }

  void pulls_data() {
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("says");
    QTest::newRow("one file")
        << u"/data/local/tmp/h.prof: 1 file pulled, 0 skipped. 213.3 MB/s (129206570 bytes in 0.578s)\r\n"_s
        << u"file folder"_s;
    QTest::newRow("one file, older tool")
        << u"/data/app/com.garicchi.plumber-UDmxSP9VmrdM1Y_vSrKQkA==/base.apk: 1 file pulled. 26.6 MB/s\r\n"_s
        << u"file folder"_s;
    QTest::newRow("many") << u"/sdcard/: 1190 files pulled. 14.1 MB/s (304526427 bytes in 20.566s)\r\n"_s
                          << u"folder"_s;
    QTest::newRow("none") << u"/data/app/: 0 files pulled, 0 skipped.\r\n"_s << u""_s;
    QTest::newRow("missing, newer")
        << u"adb: error: failed to stat remote object '/sdcard/Android/data/a.b': No such file or directory\r\n"_s
        << u"missing"_s;
    QTest::newRow("missing, older")
        << u"adb: error: remote object '/sdcard/Android/data/a.b' does not exist\r\n"_s << u"missing"_s;
    QTest::newRow("not allowed")
        << u"adb: error: failed to stat remote object '/data/data/a.b': Permission denied\r\n"_s << u""_s;
    QTest::newRow("gone on the desktop")
        << u"adb: error: cannot create file/directory 'D:\\x': No such file or directory"_s << u""_s;
    QTest::newRow("file gone meanwhile")
        << u"adb: error: failed to copy '/sdcard/x/a' to 'D:\\x\\a': No such file or directory\r\n"_s
        << u""_s;
    QTest::newRow("error in the middle")
        << u"adb: error: failed to copy 'a' to 'b': x\r\n/a/: 12 files pulled.\r\n"_s << u""_s;
    QTest::newRow("link lost") << u"[ 30%] /sdcard/A\r\n"_s << u""_s;
  }
  void pulls() {
    QFETCH(QString, reply);
    QStringList says;
    if (saysOneFilePulled(reply)) says << u"file"_s;
    if (saysFolderPulled(reply)) says << u"folder"_s;
    if (saysRemoteMissing(reply)) says << u"missing"_s;
    QTEST(says.join(u' '), "says");
  }

  void uninstalls() {
    for (const QString& reply :
         {u"Success\r\n"_s, u"完成     \r\n"_s,
          u"* daemon not running; starting now at tcp:5037\r\n* daemon started successfully\r\nSuccess\r\n"_s,
          u"- waiting for device -\r\nSuccess\r\n"_s}) {
      QVERIFY2(saysUninstalled(reply), qPrintable(reply));
    }
    for (const QString& reply :
         {u"完成\r\n"_s, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\r\n"_s, u"Failure [no Success]\r\n"_s,
          u"error: no devices/emulators found\r\n- waiting for device -\r\n"_s, QString()}) {
      QVERIFY2(!saysUninstalled(reply), qPrintable(reply));
    }
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

  void names() {
    QCOMPARE(withApkEnding(u"game.APK"_s), u"game.APK"_s);
    QCOMPARE(withApkEnding(u"game.zip"_s), u"game.zip.apk"_s);
    const QString name =
        withEnding(u"/x/"_s + QString(84, u'游') + u".aé"_s, u".partial12"_s, HostStyle::posix());
    QVERIFY(name.startsWith(u"/x/游"_s) && name.endsWith(u"游.partial12"_s));
    QVERIFY(name.toUtf8().size() <= 255 + 3);
    const QString emoji = withEnding(u"🎮"_s.repeated(63) + u"abc"_s, u".old"_s, HostStyle::posix());
    QCOMPARE(emoji, u"🎮"_s.repeated(62) + u".old"_s);
  }

  void restoreFolders() {
    const std::pair<QString, QString> chosen[] = {
        {u"C:\\B"_s, u"C:\\B"_s},  // the parent
        {u"C:\\B\\some.app"_s, u"C:\\B"_s},
        {u"C:\\my some.app"_s, u"C:\\my some.app"_s},
        {u"C:\\B\\some.app-old"_s, u"C:\\B-old"_s},
        {u"C:\\B\\Some.app"_s, u"C:\\B\\Some.app"_s},
    };
    for (const auto& [folder, expected] : chosen)
      QCOMPARE(restoreFolder(folder, u"some.app"_s, HostStyle::windows()), expected);
  }
};

QTEST_MAIN(OperationsReadersTest)
#include "operations_readers_test.moc"
