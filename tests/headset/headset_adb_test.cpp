// The headset as the unmodified adb sees it: shell, files, several streams at once.

#include <elf.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTest>

#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using orvanta::test::AdbReply;
using orvanta::test::VirtualHeadset;

namespace {

QByteArray sampleBytes(qsizetype size) {
  QByteArray bytes(size, Qt::Uninitialized);
  quint32 state = 12345;
  for (char& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24U);
  }
  return bytes;
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
  void init() { m_headset.clearLog(); }

  void reply_data();
  void reply();
  void textOfAShellWithoutTerminalHasPlainLineEnds();
  void roundTrip_data();
  void roundTrip();
  void folderRoundTrip();
  void pushRefused_data();
  void pushRefused();
  void linksOfTheHeadsetDoNotLeadOut();
  void severalStreamsAtOnce();
  void inputReachesTheShell();
  void programsOfOtherProcessorsRun();
  void oldProtocols();
  void servicesAreLogged();
  void strangersDoNoHarm();
  void secondHeadset();
  void stateSurvivesARestart();

 private:
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
  row("devices", {u"devices"_s}, 0, "List of devices attached\nemulator-\\d+\tdevice\n\n");
  row("state", {u"get-state"_s}, 0, "device\n");
  row("model", {u"devices"_s, u"-l"_s}, 0,
      "List of devices attached\nemulator-\\d+ +device product:hollywood model:Quest_2 device:hollywood "
      "transport_id:\\d+\n\n");
  row("storage", {u"shell"_s, u"echo"_s, u"$EXTERNAL_STORAGE"_s}, 0, "/sdcard\n");
  row("exit code and channels", {u"shell"_s, u"echo out; echo err >&2; exit 7"_s}, 7, "out\n", "err\n");
  row("unknown command", {u"shell"_s, u"nonsense"_s}, 127, "", "/system/bin/sh: nonsense: not found\n");
  row("df", {u"shell"_s, u"df"_s, u"-h"_s, u"/sdcard"_s}, 0,
      "Filesystem     Size Used Avail Use% Mounted on\n/data/media    109G  12G   97G  12% "
      "/storage/emulated\n");
  row("df of nothing", {u"shell"_s, u"df -k /nonexistent/path"_s}, 1,
      "Filesystem 1K-blocks Used Available Use% Mounted on\n",
      "df: '/nonexistent/path': No such file or directory\n");
  row("ls", {u"shell"_s, u"ls -Ral /sdcard/Android/obb"_s}, 0,
      "/sdcard/Android/obb:\ntotal \\d+\n(d[rwx-]{9} \\d+ root sdcard_rw +\\d+ \\d{4}-\\d\\d-\\d\\d "
      "\\d\\d:\\d\\d "
      "\\.\\.?\n){2}");
  row("ls of nothing", {u"shell"_s, u"ls -Ral /sdcard/Android/obb/none"_s}, 1, "",
      "ls: /sdcard/Android/obb/none: No such file or directory\n");
  row("property",
      {u"shell"_s, u"setprop debug.oculus.capture.width 1280; getprop debug.oculus.capture.width"_s}, 0,
      "1280\n");
  row("fixed property", {u"shell"_s, u"setprop ro.product.model Other"_s}, 1, "",
      "setprop: failed to set property 'ro.product.model' to 'Other'\n");
  row("usb mode", {u"shell"_s, u"svc usb setFunctions mtp true; getprop sys.usb.config"_s}, 0, "mtp,adb\n");
  row("root", {u"root"_s}, 0, "adbd cannot run as root in production builds\n");
  row("tools of the inventory",
      {u"shell"_s, u"echo 3 4 | awk '{print $1 * $2}' | bc; du -s /sdcard | cut -f 2"_s}, 0, "12\n/sdcard\n");
  row("system is read-only", {u"shell"_s, u"echo x > /system/x"_s}, 1, "",
      "/system/bin/sh: can't create /system/x: Read-only file system\n");
  row("nothing of the desktop", {u"shell"_s, u"ls -d /home /usr /root /work"_s}, 1, "",
      "(ls: /\\w+: No such file or directory\n){4}");
  row("pull missing", {u"pull"_s, u"/sdcard/none"_s}, 1,
      "adb: error: failed to stat remote object '/sdcard/none': No such file or directory\n");
  row("pull what may not be listed", {u"pull"_s, u"/data/app/"_s, m_headset.workPath(u"."_s)}, 0,
      "/data/app/: 0 files pulled, 0 skipped.\n");
  row("pull private data", {u"pull"_s, u"/data/data/com.example/x"_s}, 1,
      "adb: error: failed to stat remote object '/data/data/com.example/x': Permission denied\n");
  row("push missing", {u"push"_s, u"/nonexistent"_s, u"/sdcard/"_s}, 1,
      "adb: error: cannot stat '/nonexistent': No such file or directory\n");
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

void HeadsetAdbTest::textOfAShellWithoutTerminalHasPlainLineEnds() {
  QCOMPARE(m_headset.adb({u"shell"_s, u"printf 'a\\nb\\n'"_s}).output, u"a\nb\n"_s);
  QCOMPARE(m_headset.adb({u"exec-out"_s, u"printf 'a\\nb\\n'"_s}).output, u"a\nb\n"_s);
}

void HeadsetAdbTest::roundTrip_data() {
  QTest::addColumn<qsizetype>("size");
  QTest::addColumn<QString>("name");
  QTest::newRow("empty") << qsizetype{0} << u"empty.obb"_s;
  QTest::newRow("one byte") << qsizetype{1} << u"one.obb"_s;
  QTest::newRow("one data message") << qsizetype{65536} << u"chunk"_s;
  QTest::newRow("just beyond a payload") << qsizetype{1024 * 1024 + 1} << u"payload"_s;
  QTest::newRow("64 MiB") << qsizetype{64 * 1024 * 1024} << u"large.obb"_s;
  QTest::newRow("blanks") << qsizetype{10} << u" a  b .obb"_s;
  QTest::newRow("Chinese") << qsizetype{10} << u"主要 扩展.obb"_s;
  QTest::newRow("emoji") << qsizetype{10} << u"🎮.obb"_s;
  QTest::newRow("quotes") << qsizetype{10} << u"it's \"so\" $HOME;`x`.obb"_s;
  QTest::newRow("comma and number") << qsizetype{10} << u"a,33188"_s;
  QTest::newRow("backslash") << qsizetype{10} << u"a\\b"_s;
}

void HeadsetAdbTest::roundTrip() {
  QFETCH(qsizetype, size);
  QFETCH(QString, name);
  const QByteArray content = sampleBytes(size);
  const QString local = m_headset.workPath(name);
  const QString remote = u"/sdcard/new/folder/"_s + name;
  QVERIFY(writeFile(local, content));
  const AdbReply pushed = m_headset.adb({u"push"_s, local, remote});
  QVERIFY2(pushed.output.contains(": 1 file pushed, 0 skipped."_L1), qPrintable(pushed.output));
  QCOMPARE(pushed.exitCode, 0);
  QVERIFY(m_headset.readDeviceFile(remote) == content);
  QVERIFY(QFile::remove(local));
  const AdbReply pulled = m_headset.adb({u"pull"_s, remote, local});
  QVERIFY2(pulled.output.contains(": 1 file pulled, 0 skipped."_L1), qPrintable(pulled.output));
  QVERIFY(readFile(local) == content);
  // A second push takes the place of the first.
  QVERIFY(writeFile(local, "other"));
  QCOMPARE(m_headset.adb({u"push"_s, local, remote}).exitCode, 0);
  QCOMPARE(m_headset.readDeviceFile(remote), QByteArray("other"));
}

void HeadsetAdbTest::folderRoundTrip() {
  const QString local = m_headset.workPath(u"com.example.app"_s);
  QVERIFY(QDir().mkpath(local + "/files/deep"_L1));
  QVERIFY(writeFile(local + "/a"_L1, "1"));
  QVERIFY(writeFile(local + "/files/b"_L1, "22"));
  QVERIFY(writeFile(local + "/files/deep/c"_L1, "333"));
  const AdbReply pushed = m_headset.adb({u"push"_s, local, u"/sdcard/Android/data/"_s});
  QVERIFY2(pushed.output.contains(": 3 files pushed, 0 skipped."_L1), qPrintable(pushed.output));
  QCOMPARE(m_headset.readDeviceFile(u"/sdcard/Android/data/com.example.app/files/deep/c"_s),
           QByteArray("333"));
  const QString copy = m_headset.workPath(u"copy"_s);
  const AdbReply pulled = m_headset.adb({u"pull"_s, u"/sdcard/Android/data/com.example.app"_s, copy});
  QVERIFY2(pulled.output.contains(": 3 files pulled, 0 skipped."_L1), qPrintable(pulled.output));
  QCOMPARE(readFile(copy + "/files/b"_L1), QByteArray("22"));
}

void HeadsetAdbTest::pushRefused_data() {
  QTest::addColumn<QString>("target");
  QTest::addColumn<QString>("reason");
  QTest::newRow("system") << u"/system/x"_s << u"remote couldn't create file: Read-only file system"_s;
  QTest::newRow("data") << u"/data/x"_s << u"remote couldn't create file: Permission denied"_s;
  QTest::newRow("app") << u"/data/app/x"_s << u"remote couldn't create file: Permission denied"_s;
  QTest::newRow("missing folder") << u"/sdcard/none/"_s << u"remote couldn't create file: Is a directory"_s;
}

void HeadsetAdbTest::pushRefused() {
  QFETCH(QString, target);
  QFETCH(QString, reason);
  // More than fits into the buffers on the way: the desktop is still sending when it is refused.
  const QString local = m_headset.workPath(u"refused"_s);
  QVERIFY(writeFile(local, sampleBytes(8 * 1024 * 1024)));
  const AdbReply got = m_headset.adb({u"push"_s, local, target});
  const QString expected = u"adb: error: failed to copy '%1' to '%2': %3\n"_s.arg(local, target, reason);
  QVERIFY2(got.output.startsWith(expected), qPrintable(got.output));
  QVERIFY2(got.output.contains(": 0 files pushed, 0 skipped."_L1), qPrintable(got.output));
  QCOMPARE(got.exitCode, 1);
}

void HeadsetAdbTest::linksOfTheHeadsetDoNotLeadOut() {
  const QString outside = m_headset.workPath(u"outside"_s);
  QVERIFY(writeFile(outside, "the desktop's own"));
  const QString script = u"ln -sf %1 /sdcard/leak; ln -sf / /sdcard/top"_s.arg(outside);
  QCOMPARE(m_headset.adb({u"shell"_s, script}).exitCode, 0);
  for (const QString& path :
       {u"/sdcard/leak"_s, u"/sdcard/top"_s + outside, u"/sdcard/../../../.."_s + outside}) {
    QVERIFY(m_headset.adb({u"pull"_s, path, m_headset.workPath(u"leaked"_s)}).exitCode != 0);
    m_headset.adb({u"push"_s, m_headset.workPath(u"refused"_s), path});
  }
  QCOMPARE(readFile(outside), QByteArray("the desktop's own"));
}

void HeadsetAdbTest::severalStreamsAtOnce() {
  const QByteArray content = sampleBytes(20 * 1024 * 1024);
  std::vector<std::unique_ptr<QProcess>> runs;
  for (int i = 0; i < 6; ++i) {
    const QString local = m_headset.workPath(u"stream%1"_s.arg(i));
    const QString remote = u"/sdcard/stream%1"_s.arg(i);
    QVERIFY(writeFile(local, content));
    QVERIFY(m_headset.writeDeviceFile(remote + ".there"_L1, content));
    const QStringList commands[] = {{u"push"_s, local, remote},
                                    {u"pull"_s, remote + ".there"_L1, local + ".back"_L1},
                                    {u"shell"_s, u"cat %1.there | md5sum"_s.arg(remote)}};
    runs.push_back(std::make_unique<QProcess>());
    runs.back()->start(u"adb"_s, commands[i % 3]);
  }
  // A stream that nobody reads must not hold up the others.
  QProcess stuck;
  stuck.start(u"adb"_s, {u"shell"_s, u"yes"_s});
  stuck.setReadChannel(QProcess::StandardOutput);
  for (const auto& run : runs) {
    QVERIFY(run->waitForFinished(60000));
    QCOMPARE(run->exitCode(), 0);
  }
  stuck.kill();
  stuck.waitForFinished();
  const QByteArray sum = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
  for (int i = 0; i < 6; i += 3) {
    QVERIFY(m_headset.readDeviceFile(u"/sdcard/stream%1"_s.arg(i)) == content);
    QVERIFY(readFile(m_headset.workPath(u"stream%1.back"_s.arg(i + 1))) == content);
    QCOMPARE(runs[i + 2]->readAllStandardOutput(), sum + "  -\n");
  }
}

void HeadsetAdbTest::inputReachesTheShell() {
  const QByteArray content = sampleBytes(5 * 1024 * 1024);
  QProcess run;
  run.start(u"adb"_s, {u"shell"_s, u"cat > /sdcard/input; echo done"_s});
  run.write(content);
  run.closeWriteChannel();
  QVERIFY(run.waitForFinished());
  QCOMPARE(run.readAllStandardOutput(), QByteArray("done\n"));
  QVERIFY(m_headset.readDeviceFile(u"/sdcard/input"_s) == content);
}

void HeadsetAdbTest::programsOfOtherProcessorsRun() {
  if (QStandardPaths::findExecutable(u"qemu-aarch64-static"_s).isEmpty())
    QSKIP("there is no emulator of a headset's processor (Debian: qemu-user-static)");
  // The smallest program for aarch64: it ends with the number of its arguments as exit code.
  constexpr quint32 code[] = {0xf94003e0, 0xd2800ba8, 0xd4000001};  // ldr x0, [sp]; mov x8, #93; svc #0
  constexpr quint64 base = 0x400000;
  constexpr quint64 headers = sizeof(Elf64_Ehdr) + sizeof(Elf64_Phdr);
  constexpr quint64 size = headers + sizeof code;
  const Elf64_Ehdr header{{0x7f, 'E', 'L', 'F', ELFCLASS64, ELFDATA2LSB, EV_CURRENT},
                          ET_EXEC,
                          EM_AARCH64,
                          EV_CURRENT,
                          base + headers,
                          sizeof(Elf64_Ehdr),
                          0,
                          0,
                          sizeof(Elf64_Ehdr),
                          sizeof(Elf64_Phdr),
                          1,
                          0,
                          0,
                          0};
  const Elf64_Phdr segment{PT_LOAD, PF_R | PF_X, 0, base, base, size, size, 0x10000};
  QByteArray program(reinterpret_cast<const char*>(&header), sizeof header);
  program.append(reinterpret_cast<const char*>(&segment), sizeof segment);
  program.append(reinterpret_cast<const char*>(code), sizeof code);

  const QString local = m_headset.workPath(u"it's $a program"_s);
  const QString remote = u"/data/local/tmp/it's $a program"_s;
  QVERIFY(writeFile(local, program));
  QCOMPARE(m_headset.adb({u"push"_s, local, remote}).exitCode, 0);
  const QString run = u"cd /data/local/tmp; f=\"it's \\$a program\"; chmod 0755 \"$f\" && "_s;
  const AdbReply ran = m_headset.adb({u"shell"_s, run + u"\"./$f\" 'two words' '*'"_s});
  QVERIFY2(ran.exitCode == 3, qPrintable(ran.errors));
  QCOMPARE(m_headset.adb({u"shell"_s, run + u"ln -s \"$f\" link && ./link"_s}).exitCode, 1);
  const AdbReply pulled = m_headset.adb({u"pull"_s, remote, local + ".back"_L1});
  QVERIFY2(pulled.exitCode == 0, qPrintable(pulled.output));
  QCOMPARE(readFile(local + ".back"_L1), program);
  // A program that is cut short does not stand in the way of the shell.
  QVERIFY(m_headset.writeDeviceFile(u"/data/local/tmp/cut"_s, program.left(18)));
  QVERIFY(m_headset.writeDeviceFile(u"/data/local/tmp/no headers"_s, program.left(sizeof header)));
  QCOMPARE(m_headset.adb({u"shell"_s, u"echo well"_s}).output, u"well\n"_s);
}

void HeadsetAdbTest::oldProtocols() {
  VirtualHeadset old;
  QCOMPARE(old.start({.features = u"none"_s}), QString());
  // Without the second shell protocol both channels come as one, and the exit code is lost.
  const AdbReply shell = old.adb({u"shell"_s, u"echo out; echo err >&2; exit 7"_s});
  QCOMPARE(shell.output, u"out\nerr\n"_s);
  QCOMPARE(shell.exitCode, 0);
  QCOMPARE(old.adb({u"pull"_s, u"/sdcard/none"_s}).output,
           u"adb: error: remote object '/sdcard/none' does not exist\n"_s);
  QVERIFY(old.writeDeviceFile(u"/sdcard/folder/file"_s, "content"));
  QCOMPARE(old.adb({u"pull"_s, u"/sdcard/folder"_s, old.workPath(u"back"_s)}).exitCode, 0);
  QCOMPARE(readFile(old.workPath(u"back/file"_s)), QByteArray("content"));
}

void HeadsetAdbTest::servicesAreLogged() {
  const QDateTime before = QDateTime::currentDateTime();
  m_headset.adb({u"shell"_s, u"rm"_s, u"-r"_s, u"/sdcard/Android/obb/com.foo"_s});
  m_headset.adb({u"shell"_s, u"echo 'two\nlines\\'"_s});
  const QList<orvanta::test::OpenedService> log = m_headset.serviceLog();
  QCOMPARE(log.size(), 2);
  QVERIFY(log[0].text.endsWith("raw:rm -r /sdcard/Android/obb/com.foo"_L1));
  QVERIFY(log[1].text.endsWith("raw:echo 'two\nlines\\'"_L1));
  QVERIFY(log[0].time >= before.addMSecs(-1) && log[0].time <= log[1].time);
}

void HeadsetAdbTest::strangersDoNoHarm() {
  const quint16 port = m_headset.serial().section(u'-', 1).toUShort() + 1;
  for (const QByteArray& greeting : {QByteArray("GET / HTTP/1.1\r\n\r\n\r\n\r\n\r\n"), sampleBytes(100000)}) {
    QTcpSocket stranger;
    stranger.connectToHost(u"127.0.0.1"_s, port);
    QVERIFY(stranger.waitForConnected());
    stranger.write(greeting);
    QVERIFY(stranger.waitForDisconnected() || stranger.state() == QAbstractSocket::UnconnectedState);
  }
  QCOMPARE(m_headset.adb({u"shell"_s, u"echo well"_s}).output, u"well\n"_s);
}

void HeadsetAdbTest::secondHeadset() {
  VirtualHeadset two;
  QCOMPARE(two.start(), QString());
  QCOMPARE(two.startSecond(), QString());
  const AdbReply refused = two.adb({u"shell"_s, u"true"_s});
  QCOMPARE(refused.errors, u"error: more than one device/emulator\n"_s);
  QCOMPARE(two.adb({u"-s"_s, two.serial(), u"shell"_s, u"echo one"_s}).output, u"one\n"_s);
}

void HeadsetAdbTest::stateSurvivesARestart() {
  VirtualHeadset headset;
  QCOMPARE(headset.start(), QString());
  headset.adb({u"shell"_s, u"setprop persist.x 1; echo kept > /sdcard/kept"_s});
  headset.stop();
  QVERIFY(headset.waitForState({}));
  // The server ended with the headset; its greeting may stand before the words that count.
  const QString told = headset.adb({u"shell"_s, u"true"_s}).errors;
  QVERIFY2(told.endsWith(u"error: no devices/emulators found\n"_s), qPrintable(told));
  QCOMPARE(headset.start(), QString());
  QCOMPARE(headset.adb({u"shell"_s, u"getprop persist.x; cat /sdcard/kept"_s}).output, u"1\nkept\n"_s);
}

QTEST_GUILESS_MAIN(HeadsetAdbTest)
#include "headset_adb_test.moc"
