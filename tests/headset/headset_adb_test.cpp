// The headset as the unmodified adb sees it: shell, files, several streams at once.

#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using orvanta::test::AdbReply;
using orvanta::test::VirtualHeadset;

namespace {

QByteArray sampleBytes(qsizetype size) {
  QByteArray bytes(size + 3, '\0');
  QRandomGenerator(12345).fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
  return bytes.left(size);
}

bool writeFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

}  // namespace

class HeadsetAdbTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QCOMPARE(m_headset.start(), QString()); }

  void reply_data();
  void reply();
  void roundTrip_data();
  void roundTrip();
  void pushRefused();
  void linksOfTheHeadsetDoNotLeadOut();
  void severalStreamsAtOnce();
  void programsOfOtherProcessorsRun();
  void servicesAreLogged();
  void stateSurvivesARestart();

 private:
  AdbReply shell(const QString& script) const { return m_headset.adb({u"shell"_s, script}); }

  VirtualHeadset m_headset;
};

void HeadsetAdbTest::reply_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::addColumn<int>("exitCode");
  QTest::addColumn<QString>("output");
  QTest::addColumn<QString>("errors");

  const auto row = [](const char* name, const QStringList& arguments, int exitCode, const char* output,
                      const char* errors = "") {
    QTest::newRow(name) << arguments << exitCode << QString::fromUtf8(output) << QString::fromUtf8(errors);
  };
  const auto script = [&row](const char* name, const char* text, int exitCode, const char* output,
                             const char* errors = "") {
    row(name, {u"shell"_s, QString::fromUtf8(text)}, exitCode, output, errors);
  };
  row("devices", {u"devices"_s, u"-l"_s}, 0,
      "List of devices attached\nemulator-\\d+ +device product:hollywood model:Quest_2 device:hollywood "
      "transport_id:\\d+\n\n");
  row("plain line ends", {u"exec-out"_s, u"printf 'a\\nb\\n'"_s}, 0, "a\nb\n");
  row("pull missing", {u"pull"_s, u"/sdcard/none"_s}, 1,
      "adb: error: failed to stat remote object '/sdcard/none': No such file or directory\n");
  row("pull what may not be listed", {u"pull"_s, u"/data/app/"_s, m_headset.workPath(u"."_s)}, 0,
      "/data/app/: 0 files pulled, 0 skipped.\n");
  row("pull private data", {u"pull"_s, u"/data/data/com.example/x"_s}, 1,
      "adb: error: failed to stat remote object '/data/data/com.example/x': Permission denied\n");
  script("exit code and channels", "echo out; echo err >&2; exit 7", 7, "out\n", "err\n");
  script("df", "df -h /sdcard /none", 1,
         "Filesystem     Size Used Avail Use% Mounted on\n/data/media    109G  12G   97G  12% "
         "/storage/emulated\n",
         "df: '/none': No such file or directory\n");
  script("ls", "ls -Ral /sdcard/Android/obb", 0,
         "/sdcard/Android/obb:\ntotal \\d+\n(d[rwx-]{9} \\d+ root sdcard_rw +\\d+ \\d{4}-\\d\\d-\\d\\d "
         "\\d\\d:\\d\\d \\.\\.?\n){2}");
  script("nothing of the desktop", "ls -d /home /usr /root /opt", 1, "",
         "(ls: /\\w+: No such file or directory\n){4}");
  script("system is read-only", "echo x > /system/x", 1, "",
         "/system/bin/sh: can't create /system/x: Read-only file system\n");
}

void HeadsetAdbTest::reply() {
  QFETCH(QStringList, arguments);
  QFETCH(QString, output);
  QFETCH(QString, errors);
  const AdbReply got = m_headset.adb(arguments);
  // Figures vary, so the expectations are patterns; what is punctuation in them matches itself well enough.
  const auto matches = [](const QString& pattern, const QString& text) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch() ||
           pattern == text;
  };
  QVERIFY2(matches(output, got.output), qPrintable(got.output));
  QVERIFY2(matches(errors, got.errors), qPrintable(got.errors));
  QTEST(got.exitCode, "exitCode");
}

void HeadsetAdbTest::roundTrip_data() {
  QTest::addColumn<qsizetype>("size");
  QTest::addColumn<QString>("name");
  QTest::newRow("empty") << qsizetype{0} << u" a  b .obb"_s;
  QTest::newRow("one data message") << qsizetype{65536} << u"a,33188"_s;
  QTest::newRow("just beyond a payload") << qsizetype{1024 * 1024 + 1} << u"it's \"so\" $HOME;`x`.obb"_s;
  QTest::newRow("many payloads") << qsizetype{16 * 1024 * 1024} << u"主要\\扩展 🎮.obb"_s;
}

void HeadsetAdbTest::roundTrip() {
  QFETCH(qsizetype, size);
  QFETCH(QString, name);
  const QByteArray content = sampleBytes(size);
  const QString local = m_headset.workPath(name);
  const QString remote = u"/sdcard/new/folder/"_s + name;
  // The second push takes the place of the first.
  for (const QByteArray& pushed : {QByteArray("other"), content}) {
    QVERIFY(writeFile(local, pushed));
    QCOMPARE(m_headset.adb({u"push"_s, local, remote}).exitCode, 0);
    QVERIFY(m_headset.readDeviceFile(remote) == pushed);
  }
  QVERIFY(QFile::remove(local));
  const AdbReply pulled = m_headset.adb({u"pull"_s, remote, local});
  QVERIFY2(pulled.output.contains(": 1 file pulled, 0 skipped."_L1), qPrintable(pulled.output));
  QVERIFY(readFile(local) == content);
}

void HeadsetAdbTest::pushRefused() {
  // More than fits into the buffers on the way: the desktop is still sending when it is refused.
  const QString local = m_headset.workPath(u"refused"_s);
  QVERIFY(writeFile(local, sampleBytes(8 * 1024 * 1024)));
  for (const auto& [target, reason] : {std::pair{u"/system/x"_s, u"Read-only file system"_s},
                                       {u"/data/app/x"_s, u"Permission denied"_s},
                                       {u"/sdcard/none/"_s, u"Is a directory"_s}}) {
    const AdbReply got = m_headset.adb({u"push"_s, local, target});
    const QString words = u"adb: error: failed to copy '%1' to '%2': remote couldn't create file: %3\n"_s;
    QVERIFY2(got.output.startsWith(words.arg(local, target, reason)), qPrintable(got.output));
    QCOMPARE(got.exitCode, 1);
  }
}

void HeadsetAdbTest::linksOfTheHeadsetDoNotLeadOut() {
  const QString outside = m_headset.workPath(u"outside"_s);
  const QString inside = m_headset.workPath(u"inside"_s);
  QVERIFY(writeFile(outside, "the desktop's own") && writeFile(inside, "other"));
  QCOMPARE(shell(u"ln -sf %1 /sdcard/leak; ln -sf / /sdcard/top"_s.arg(outside)).exitCode, 0);
  for (const QString& path :
       {u"/sdcard/leak"_s, u"/sdcard/top"_s + outside, u"/sdcard/../../../.."_s + outside}) {
    QVERIFY(m_headset.adb({u"pull"_s, path, m_headset.workPath(u"leaked"_s)}).exitCode != 0);
    m_headset.adb({u"push"_s, inside, path});
  }
  QCOMPARE(readFile(outside), QByteArray("the desktop's own"));
}

void HeadsetAdbTest::severalStreamsAtOnce() {
  const QByteArray content = sampleBytes(20 * 1024 * 1024);
  const QString local = m_headset.workPath(u"stream"_s);
  QVERIFY(writeFile(local, content));
  QVERIFY(m_headset.writeDeviceFile(u"/sdcard/there"_s, content));
  // A stream that nobody reads must not hold up the others.
  QProcess stuck;
  stuck.start(u"adb"_s, {u"shell"_s, u"yes"_s});
  QProcess push;
  push.start(u"adb"_s, {u"push"_s, local, u"/sdcard/pushed"_s});
  QProcess pull;
  pull.start(u"adb"_s, {u"pull"_s, u"/sdcard/there"_s, local + ".back"_L1});
  QProcess input;
  input.start(u"adb"_s, {u"shell"_s, u"md5sum"_s});
  input.write(content);
  input.closeWriteChannel();
  for (QProcess* run : {&push, &pull, &input}) {
    QVERIFY(run->waitForFinished(60000));
    QCOMPARE(run->exitCode(), 0);
  }
  stuck.kill();
  stuck.waitForFinished();
  QVERIFY(m_headset.readDeviceFile(u"/sdcard/pushed"_s) == content);
  QVERIFY(readFile(local + ".back"_L1) == content);
  const QByteArray sum = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
  QCOMPARE(input.readAllStandardOutput(), sum + "  -\n");
}

void HeadsetAdbTest::programsOfOtherProcessorsRun() {
  const QString program = QStringLiteral(HEADSET_PROGRAM);
  if (!QFile::exists(program) || QStandardPaths::findExecutable(u"qemu-aarch64-static"_s).isEmpty())
    QSKIP("no program for a headset's processor, or no emulator (Debian: qemu-user-static)");
  const QString remote = u"/data/local/tmp/it's $a program"_s;
  QCOMPARE(m_headset.adb({u"push"_s, program, remote}).exitCode, 0);
  const AdbReply ran = shell(u"cd /data/local/tmp; \"./it's \\$a program\" 'two  words *'"_s);
  QVERIFY2(ran.errors.startsWith("ERROR: Unknown command 'two  words *'\n"_L1), qPrintable(ran.errors));
  QCOMPARE(ran.exitCode, 2);
  // A program that is cut short does not stand in the way of the shell.
  QVERIFY(m_headset.writeDeviceFile(u"/data/local/tmp/cut"_s, readFile(program).left(18)));
  QCOMPARE(shell(u"echo well"_s).output, u"well\n"_s);
}

void HeadsetAdbTest::servicesAreLogged() {
  m_headset.clearLog();
  shell(u"echo 'two\nlines\\'"_s);
  QCOMPARE(m_headset.services().size(), 1);
  QVERIFY(m_headset.services()[0].endsWith("raw:echo 'two\nlines\\'"_L1));
}

void HeadsetAdbTest::stateSurvivesARestart() {
  VirtualHeadset headset;
  QCOMPARE(headset.start(), QString());
  headset.adb({u"shell"_s, u"setprop persist.x 1; echo kept > /sdcard/kept"_s});
  headset.stop();
  QVERIFY(headset.waitForState({}));
  QCOMPARE(headset.start(), QString());
  QCOMPARE(headset.adb({u"shell"_s, u"getprop persist.x; cat /sdcard/kept"_s}).output, u"1\nkept\n"_s);
}

QTEST_GUILESS_MAIN(HeadsetAdbTest)
#include "headset_adb_test.moc"
