#include "adb/lines.h"

#include <QTest>

#include "adb/device_names.h"
#include "platform/command_line.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const Host windowsHost{HostStyle::windows(), u"C:\\Program Files\\Orvanta"_s};
const Host posixHost{HostStyle::posix(), u"/opt/my apps/orvanta"_s};

}  // namespace

class LinesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void wordsOfALine() {
    QCOMPARE(AdbPrefix(windowsHost), u"\"C:\\Program Files\\Orvanta\\adb.exe\""_s);
    QCOMPARE(AaptPrefix(windowsHost), u"\"C:\\Program Files\\Orvanta\\aapt.exe\""_s);
    QCOMPARE(AdbPrefix(posixHost), u"\"/opt/my apps/orvanta/adb\""_s);
    QCOMPARE(AdbPrefix({HostStyle::posix(), u"/opt/\"apps\""_s}), u"adb"_s);
    QCOMPARE(quotedLocalPath(u"C:\\a b\\"_s, HostStyle::windows()), u"\"C:\\a b\\\""_s);
    QCOMPARE(quotedLocalPath(u"/$(a)/\"b\\"_s, HostStyle::posix()), u"\"/$(a)/\\\"b\\\\\""_s);
    QCOMPARE(devicePathArgument(u"/sdcard/main.1.obb"_s), u"/sdcard/main.1.obb"_s);
    QCOMPARE(devicePathArgument(u"/sdcard/my \"game\".obb"_s), u"\"/sdcard/my \\\"game\\\".obb\""_s);
  }

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

  void fitForTheDevice() {
    for (const char* good : {"", "com.example.app", "Com.Example_1", "a-b"})
      QVERIFY2(isFitPackageName(QString::fromUtf8(good)), good);
    for (const char* bad : {"a;reboot", "a b",  "a&b", "a|b", "$HOME",        "a<b", "a>b",  "(a)",  "{a}",
                            "a*",       "a?",   "!a",  "~",   "a#b",          "a'b", "a\"b", "a`b",  "a\\b",
                            "a\nb",     "a\rb", "..",  ".",   "../../sdcard", "a/b", "-k",   "应用", "a＆b"})
      QVERIFY2(!isFitPackageName(QString::fromUtf8(bad)), bad);
  }
};

QTEST_GUILESS_MAIN(LinesTest)
#include "lines_test.moc"
