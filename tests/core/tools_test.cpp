#include "core/tools.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;
using namespace orvanta;

class ToolsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void wordsOfALine() {
    const Host windows{HostStyle::windows(), u"C:\\Program Files\\Orvanta"_s};
    QCOMPARE(AdbPrefix(windows), u"\"C:\\Program Files\\Orvanta\\adb.exe\""_s);
    QCOMPARE(AaptPrefix(windows), u"\"C:\\Program Files\\Orvanta\\aapt.exe\""_s);
    const Host posix{HostStyle::posix(), u"/opt/my apps/orvanta"_s};
    QCOMPARE(AdbPrefix(posix), u"\"/opt/my apps/orvanta/adb\""_s);
    QCOMPARE(AdbPrefix({HostStyle::posix(), u"/opt/\"apps\""_s}), u"adb"_s);
    QCOMPARE(quotedLocalPath(u"C:\\a b\\"_s, HostStyle::windows()), u"\"C:\\a b\\\""_s);
    QCOMPARE(quotedLocalPath(u"/$(a)/\"b\\"_s, HostStyle::posix()), u"\"/$(a)/\\\"b\\\\\""_s);
    QCOMPARE(devicePathArgument(u"/sdcard/main.1.obb"_s), u"/sdcard/main.1.obb"_s);
    QCOMPARE(devicePathArgument(u"/sdcard/my \"game\".obb"_s), u"\"/sdcard/my \\\"game\\\".obb\""_s);
  }

  void pathParts() {
    const struct {
      const HostStyle& style;
      QString path;
      QString parent;
      QString base;
    } rows[] = {
        {HostStyle::windows(), u"C:\\a b\\x.apk"_s, u"C:\\a b\\"_s, u"x.apk"_s},
        {HostStyle::windows(), u"C:/a/x.apk"_s, u""_s, u"x.apk"_s},
        {HostStyle::windows(), u"C:\\a/x.apk"_s, u"C:\\"_s, u"x.apk"_s},
        {HostStyle::windows(), u"C:\\a\\"_s, u"C:\\a\\"_s, u""_s},
        {HostStyle::posix(), u"/a b/x\\y.apk"_s, u"/a b/"_s, u"x\\y.apk"_s},
        {HostStyle::posix(), u"x.apk"_s, u""_s, u"x.apk"_s},
    };
    for (const auto& row : rows) {
      QCOMPARE(ParentPath(row.path, row.style), row.parent);
      QCOMPARE(BaseName(row.path, row.style), row.base);
    }
  }

  void fitForTheDevice() {
    for (const char* good : {"", "com.example.app", "Com.Example_1", "a-b"})
      QVERIFY2(isFitPackageName(QString::fromUtf8(good)), good);
    for (const char* bad : {"a;reboot", "a b",  "a&b", "a|b", "$HOME",        "a<b", "a>b",  "(a)",  "{a}",
                            "a*",       "a?",   "!a",  "~",   "a#b",          "a'b", "a\"b", "a`b",  "a\\b",
                            "a\nb",     "a\rb", "..",  ".",   "../../sdcard", "a/b", "-k",   "应用", "a＆b"})
      QVERIFY2(!isFitPackageName(QString::fromUtf8(bad)), bad);
  }

  void storageReplies() {
    QCOMPARE(externalStorageIn(u"/sdcard\r\n"_s), u"/sdcard"_s);
    QCOMPARE(externalStorageIn(u"\r"_s), QString());
    QVERIFY(isPlainDevicePath(u"/sdcard"_s));
    // The stars of the greeting would match every folder of the device.
    for (const QString& words : {QString(), u"error: no devices/emulators found"_s,
                                 u"* daemon not running; starting now at tcp:5037\r\n/sdcard"_s})
      QVERIFY2(!isPlainDevicePath(words), qPrintable(words));
  }

  void filesOfAFolder() {
    QTemporaryDir folder;
    for (const char* name : {"main.10.obb", "main.2.obb", ".hidden", "B.txt", "a.txt"})
      QVERIFY(QFile(folder.filePath(QString::fromUtf8(name))).open(QIODevice::WriteOnly));
    QDir(folder.path()).mkdir(u"sub.obb"_s);
    std::error_code refused;  // Windows lets not everybody make a link
    const std::filesystem::path place = folder.path().toStdU16String();
    std::filesystem::create_symlink("nowhere", place / "broken.obb", refused);
    std::filesystem::create_symlink("a.txt", place / "link.obb", refused);
    QStringList wanted{u".hidden"_s,  u"a.txt"_s,      u"B.txt"_s,
                       u"link.obb"_s, u"main.2.obb"_s, u"main.10.obb"_s};
    if (refused) wanted.removeOne(u"link.obb"_s);
    QCOMPARE(filesDirectlyIn(folder.path()), wanted);
    QCOMPARE(filesDirectlyIn(folder.filePath(u"missing"_s)), QStringList());
    QCOMPARE(filesDirectlyIn(QString()), QStringList());
    QVERIFY(FolderExists(folder.path()));
    QVERIFY(!FolderExists(folder.filePath(u"a.txt"_s)) && !FolderExists(QString()));
  }
};

QTEST_GUILESS_MAIN(ToolsTest)
#include "tools_test.moc"
