// The headset as the unmodified adb sees it: shell, files, several streams at once.

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include "support/files.h"
#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using namespace orvanta;
using orvanta::test::AdbReply;
using orvanta::test::VirtualHeadset;

namespace {

QByteArray sampleBytes(qsizetype size) {
  QByteArray bytes(size + 3, '\0');
  QRandomGenerator(12345).fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
  return bytes.left(size);
}

}  // namespace

class HeadsetAdbTest : public QObject {
  Q_OBJECT

  VirtualHeadset m_headset;

  AdbReply shell(const QString& script) const { return m_headset.adb({u"shell"_s, script}); }

 private Q_SLOTS:
  void initTestCase() { QCOMPARE(m_headset.start(), QString()); }

  void replies() {
    const QString notThere = u"No such file or directory\n"_s;
    const QString noStat = u"adb: error: failed to stat remote object "_s;
    // The words for adb, the exit code, and patterns, since figures vary.
    const std::tuple<QString, int, QString, QString> rows[] = {
        {u"devices -l"_s, 0,
         u"List of devices attached\nemulator-\\d+ +device product:hollywood model:Quest_2 device:hollywood "
         "transport_id:\\d+\n\n"_s,
         QString()},
        {u"exec-out seq 2"_s, 0, u"1\n2\n"_s, QString()},
        {u"pull /sdcard/none"_s, 1, noStat + u"'/sdcard/none': "_s + notThere, QString()},
        {u"pull /data/data/com.example/x"_s, 1, noStat + u"'/data/data/com.example/x': Permission denied\n"_s,
         QString()},
        // What may not be listed is empty for adb.
        {u"pull /data/app/ "_s + m_headset.workPath(u"."_s), 0, u"/data/app/: 0 files pulled, 0 skipped.\n"_s,
         QString()},
        {u"shell echo out; echo err >&2; exit 7"_s, 7, u"out\n"_s, u"err\n"_s},
        {u"shell df -h /sdcard /none"_s, 1,
         u"Filesystem     Size Used Avail Use% Mounted on\n/data/media    109G  12G   97G  12% "
         "/storage/emulated\n"_s,
         u"df: '/none': "_s + notThere},
        {u"shell ls -Ral /sdcard/Android/obb"_s, 0,
         u"/sdcard/Android/obb:\ntotal \\d+\n(d[rwx-]{9} \\d+ root sdcard_rw +\\d+ \\d{4}-\\d\\d-\\d\\d "
         "\\d\\d:\\d\\d \\.\\.?\n){2}"_s,
         QString()},
        {u"shell ls -d /home /usr /root /opt"_s, 1, QString(), u"(ls: /\\w+: "_s + notThere + u"){4}"_s},
        {u"shell echo x > /system/x"_s, 1, QString(),
         u"/system/bin/sh: can't create /system/x: Read-only file system\n"_s},
    };
    const auto matches = [](const QString& pattern, const QString& text) {
      return pattern == text ||
             QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
    };
    for (const auto& [words, exitCode, output, errors] : rows) {
      const AdbReply got = m_headset.adb(words.split(u' '));
      QVERIFY2(matches(output, got.output), qPrintable(got.output));
      QVERIFY2(matches(errors, got.errors), qPrintable(got.errors));
      QCOMPARE(got.exitCode, exitCode);
    }
  }

  void filesThereAndBack() {
    const std::pair<qsizetype, QString> files[] = {{0, u" a  b .obb"_s},
                                                   {65536, u"a,33188"_s},  // one data message
                                                   {1024 * 1024 + 1, u"it's \"so\" $HOME;`x`.obb"_s},
                                                   {16 * 1024 * 1024, u"主要\\扩展 🎮.obb"_s}};
    for (const auto& [size, name] : files) {
      const QByteArray content = sampleBytes(size);
      const QString local = m_headset.workPath(name);
      const QString remote = u"/sdcard/new/folder/"_s + name;
      // The second push replaces the first.
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
  }

  void pushRefused() {
    // More than fits into the buffers on the way: adb is still sending when it is refused.
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

  void linksOfTheHeadsetDoNotLeadOut() {
    const QString outside = m_headset.workPath(u"outside"_s);
    const QString inside = m_headset.workPath(u"inside"_s);
    QVERIFY(writeFile(outside, "the desktop's own") && writeFile(inside, "other"));
    QCOMPARE(shell(u"ln -sf %1 /sdcard/leak; ln -sf / /sdcard/top"_s.arg(outside)).exitCode, 0);
    for (const QString& path :
         {u"/sdcard/leak"_s, u"/sdcard/top"_s + outside, u"/sdcard/../../../.."_s + outside}) {
      QVERIFY(m_headset.adb({u"pull"_s, path, m_headset.workPath(u"leaked"_s)}).exitCode != 0);
      m_headset.adb({u"push"_s, inside, path});
    }
    QCOMPARE(readFile(outside), "the desktop's own");
  }

  void aStreamThatNobodyReadsHoldsUpNoOther() {
    const QByteArray content = sampleBytes(20 * 1024 * 1024);
    const QString local = m_headset.workPath(u"stream"_s);
    QVERIFY(writeFile(local, content) && m_headset.writeDeviceFile(u"/sdcard/there"_s, content));
    QProcess stuck, push, pull, input;
    stuck.start(u"adb"_s, {u"shell"_s, u"yes"_s});
    push.start(u"adb"_s, {u"push"_s, local, u"/sdcard/pushed"_s});
    pull.start(u"adb"_s, {u"pull"_s, u"/sdcard/there"_s, local + ".back"_L1});
    input.start(u"adb"_s, {u"shell"_s, u"md5sum"_s});
    input.write(content);
    input.closeWriteChannel();
    for (QProcess* run : {&push, &pull, &input}) QVERIFY(run->waitForFinished(60000) && run->exitCode() == 0);
    stuck.kill();
    stuck.waitForFinished();
    QVERIFY(m_headset.readDeviceFile(u"/sdcard/pushed"_s) == content);
    QVERIFY(readFile(local + ".back"_L1) == content);
    const QByteArray sum = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    QCOMPARE(input.readAllStandardOutput(), sum + "  -\n");
  }

  void stateSurvivesARestart() {
    shell(u"setprop persist.x 1; echo kept > /sdcard/kept"_s);
    m_headset.stop();
    QVERIFY(m_headset.waitForState({}));
    QCOMPARE(m_headset.start(), QString());
    QCOMPARE(shell(u"getprop persist.x; cat /sdcard/kept"_s).output, u"1\nkept\n"_s);
  }
};

QTEST_GUILESS_MAIN(HeadsetAdbTest)
#include "headset_adb_test.moc"
