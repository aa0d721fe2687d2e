#include "core/tools.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <system_error>

#include "platform/command_line.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ToolsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void prefixes() {
    const Host windows{HostStyle::windows(), u"C:\\Program Files\\Orvanta"_s};
    QCOMPARE(AdbPrefix(windows), u"\"C:\\Program Files\\Orvanta\\adb.exe\""_s);
    QCOMPARE(AaptPrefix(windows), u"\"C:\\Program Files\\Orvanta\\aapt.exe\""_s);
    const Host posix{HostStyle::posix(), u"/opt/my apps/orvanta"_s};
    QCOMPARE(AdbPrefix(posix), u"\"/opt/my apps/orvanta/adb\""_s);
  }

  void pathParts_data() {
    QTest::addColumn<bool>("windows");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("base");
    QTest::newRow("windows") << true << u"C:\\a b\\x.apk"_s << u"C:\\a b\\"_s << u"x.apk"_s;
    QTest::newRow("windows, forward slashes") << true << u"C:/a/x.apk"_s << u""_s << u"x.apk"_s;
    QTest::newRow("windows, both") << true << u"C:\\a/x.apk"_s << u"C:\\"_s << u"x.apk"_s;
    QTest::newRow("windows, bare") << true << u"x.apk"_s << u""_s << u"x.apk"_s;
    QTest::newRow("windows, separator at the end") << true << u"C:\\a\\"_s << u"C:\\a\\"_s << u""_s;
    QTest::newRow("posix") << false << u"/a b/x.apk"_s << u"/a b/"_s << u"x.apk"_s;
    QTest::newRow("posix, backslash in a name") << false << u"/a/x\\y.apk"_s << u"/a/"_s << u"x\\y.apk"_s;
    QTest::newRow("posix, bare") << false << u"x.apk"_s << u""_s << u"x.apk"_s;
  }
  void pathParts() {
    QFETCH(bool, windows);
    QFETCH(QString, path);
    const HostStyle& style = windows ? HostStyle::windows() : HostStyle::posix();
    QTEST(ParentPath(path, style), "parent");
    QTEST(BaseName(path, style), "base");
  }

  void oddNamesStayOneArgument() {
    const QString odd[] = {u"/a/plain.apk"_s,         u"/a/two words.apk"_s,  u"/a/\"quoted\".apk"_s,
                           u"/a/back\\\"slash.apk"_s, u"/a/ends\\"_s,         u"/a/100%.apk"_s,
                           u"/游戏/包 📦.apk"_s,       u"/a/$(reboot);x.apk"_s};
    for (const QString& path : odd) {
      const QStringList words =
          splitCommandLine(u"adb install -r "_s + quotedLocalPath(path, HostStyle::posix()));
      QCOMPARE(words.size(), 4);
      QCOMPARE(words.constLast(), path);
    }
    QCOMPARE(quotedLocalPath(u"C:\\a b\\x.apk"_s, HostStyle::windows()), u"\"C:\\a b\\x.apk\""_s);
    QCOMPARE(devicePathArgument(u"/sdcard/Android/obb/a.b/main.1.obb"_s),
             u"/sdcard/Android/obb/a.b/main.1.obb"_s);
    QCOMPARE(
        splitCommandLine(u"adb push x "_s + devicePathArgument(u"/sdcard/my \"game\".obb"_s)).constLast(),
        u"/sdcard/my \"game\".obb"_s);
  }

  void fitForTheDevice_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("fit");
    for (const char* good : {"", "com.example.app", "Com.Example_1", "a-b"}) {
      QTest::newRow(good) << QString::fromUtf8(good) << true;
    }
    for (const char* bad :
         {"a;reboot", "a b",  "a&b", "a|b", "$HOME",        "a<b", "a>b",  "(a)",  "{a}",
          "a*",       "a?",   "!a",  "~",   "a#b",          "a'b", "a\"b", "a`b",  "a\\b",
          "a\nb",     "a\rb", "..",  ".",   "../../sdcard", "a/b", "-k",   "应用", "a＆b"}) {
      QTest::newRow(bad) << QString::fromUtf8(bad) << false;
    }
  }
  void fitForTheDevice() {
    QFETCH(QString, name);
    QTEST(isFitPackageName(name), "fit");
  }

  void storageReplies_data() {
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("plain");
    QTest::newRow("a path") << u"/sdcard\r\n"_s << u"/sdcard"_s << true;
    QTest::newRow("too short") << u"\r"_s << u""_s << false;
    QTest::newRow("an error") << u"error: no devices/emulators found\r\n"_s
                              << u"error: no devices/emulators found"_s << false;
    // The stars of this greeting would match every folder of the device.
    QTest::newRow("a greeting before the path")
        << u"* daemon not running; starting now at tcp:5037\r\n* daemon started successfully\r\n/sdcard\r\n"_s
        << u"* daemon not running; starting now at tcp:5037\r\n* daemon started successfully\r\n/sdcard"_s
        << false;
  }
  void storageReplies() {
    QFETCH(QString, reply);
    QTEST(externalStorageIn(reply), "path");
    QTEST(isPlainDevicePath(externalStorageIn(reply)), "plain");
  }

  void filesOfAFolder() {
    QTemporaryDir folder;
    for (const char* name : {"main.10.obb", "main.2.obb", ".hidden", "B.txt", "a.txt"}) {
      QFile file(folder.filePath(QString::fromUtf8(name)));
      QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QDir(folder.path()).mkdir(u"sub.obb"_s);
    const auto link = [&](const QString& target, const QString& name) {
      std::error_code refused;
      std::filesystem::create_symlink(target.toStdU16String(), folder.filePath(name).toStdU16String(),
                                      refused);
      return !refused;
    };
    const bool linked =
        link(folder.filePath(u"a.txt"_s), u"link.obb"_s) && link(u"nowhere"_s, u"broken.obb"_s);
    QStringList wanted{u".hidden"_s,  u"a.txt"_s,      u"B.txt"_s,
                       u"link.obb"_s, u"main.2.obb"_s, u"main.10.obb"_s};
    if (!linked) wanted.removeOne(u"link.obb"_s);  // Windows lets not everybody make one
    QCOMPARE(filesDirectlyIn(folder.path()), wanted);
    QCOMPARE(filesDirectlyIn(folder.filePath(u"missing"_s)), QStringList());
    QCOMPARE(filesDirectlyIn(QString()), QStringList());
    QVERIFY(FolderExists(folder.path()));
    QVERIFY(!FolderExists(folder.filePath(u"a.txt"_s)));
    QVERIFY(!FolderExists(QString()));
  }

  void pauseLetsEventsRun() {
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(10);
    QElapsedTimer since;
    since.start();
    QCoro::waitFor(Pause(0.2));
    QVERIFY(since.elapsed() >= 195);
    QVERIFY(ticks >= 5);
  }
};

QTEST_GUILESS_MAIN(ToolsTest)
#include "tools_test.moc"
