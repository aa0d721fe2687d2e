// The headset's troubles, each on request and each gone when the request is taken back.

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include "sample_package.h"
#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using orvanta::SamplePackage;
using orvanta::test::AdbReply;
using orvanta::test::VirtualHeadset;

class HeadsetFaultsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();

  void state_data();
  void state();
  void serverStartedLater();
  void slow();
  void fullStorage();
  void linkLostInAPush();
  void linkLostInAnInstall();
  void reboot();

 private:
  VirtualHeadset m_headset;
  QString m_package;
  QString m_file;
};

void HeadsetFaultsTest::initTestCase() {
  QCOMPARE(m_headset.start(), QString());
  m_package = m_headset.workPath(u"sample.apk"_s);
  SamplePackage sample;
  sample.paddingBytes = 4 * 1024 * 1024;
  QCOMPARE(sample.write(m_package), QString());
  m_file = m_headset.workPath(u"file.obb"_s);
  QFile file(m_file);
  QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(10'000'000, 'x')) == 10'000'000);
}

void HeadsetFaultsTest::init() {
  m_headset.clearFaults();
  QVERIFY(m_headset.waitForDevice());
}

void HeadsetFaultsTest::state_data() {
  QTest::addColumn<QString>("shown");
  QTest::addColumn<QString>("complaint");
  QTest::newRow("unauthorized") << u"unauthorized"_s << u"error: device unauthorized.\n"_s;
  QTest::newRow("offline") << u"offline"_s << u"error: device offline\n"_s;
  QTest::newRow("gone") << QString() << u"error: no devices/emulators found\n"_s;
}

void HeadsetFaultsTest::state() {
  QFETCH(QString, shown);
  QFETCH(QString, complaint);
  m_headset.clearLog();
  m_headset.setFault(u"state"_s, QString::fromUtf8(QTest::currentDataTag()));
  QVERIFY(m_headset.waitForState(shown, 3000));
  const AdbReply got = m_headset.adb({u"shell"_s, u"true"_s});
  QVERIFY2(got.errors.startsWith(complaint), qPrintable(got.errors));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.services().isEmpty());
  // It stays so, and does not come back for a moment now and then.
  QTest::qWait(600);
  QVERIFY(m_headset.waitForState(shown, 0));
  m_headset.setFault(u"state"_s, u"device"_s);
  QVERIFY(m_headset.waitForDevice());
}

void HeadsetFaultsTest::serverStartedLater() {
  QCOMPARE(m_headset.adb({u"kill-server"_s}).exitCode, 0);
  QVERIFY(m_headset.waitForDevice());
}

void HeadsetFaultsTest::slow() {
  m_headset.setFault(u"bytes_per_second"_s, u"10000000"_s);
  QElapsedTimer timer;
  timer.start();
  QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/slow"_s}).exitCode, 0);
  QVERIFY2(timer.elapsed() >= 700, qPrintable(QString::number(timer.elapsed())));
}

void HeadsetFaultsTest::fullStorage() {
  m_headset.setFault(u"storage_free_bytes"_s, u"12000000"_s);
  QTest::qWait(200);
  QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/full/one"_s}).exitCode, 0);
  const AdbReply got = m_headset.adb({u"push"_s, m_file, u"/sdcard/full/two"_s});
  const QString words = u"adb: error: failed to copy '%1' to '/sdcard/full/two': remote write failed: %2\n"_s;
  QVERIFY2(got.output.startsWith(words.arg(m_file, u"No space left on device"_s)), qPrintable(got.output));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.readDeviceFile(u"/sdcard/full/two"_s).isNull());
  const AdbReply refused = m_headset.adb({u"install"_s, u"-r"_s, m_package});
  QVERIFY2(refused.errors.contains(u"\nException occurred while executing 'install':\n"_s),
           qPrintable(refused.errors));
  QCOMPARE(m_headset.adb({u"shell"_s, u"df -h /sdcard | awk '{print $4}'"_s}).output, u"Avail\n1.9M\n"_s);
  // What is removed gives its room back.
  m_headset.adb({u"shell"_s, u"rm /sdcard/full/one"_s});
  QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/full/two"_s}).exitCode, 0);
}

void HeadsetFaultsTest::linkLostInAPush() {
  for (const QString& staysGone : {u"0"_s, u"1"_s}) {
    init();
    m_headset.setFault(u"drop_after_push_bytes"_s, u"4000000"_s);
    m_headset.setFault(u"drop_stays_gone"_s, staysGone);
    QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/lost"_s}).exitCode, 1);
    QTRY_VERIFY(m_headset.readDeviceFile(u"/sdcard/lost"_s).isNull());
    QTest::qWait(500);
    QVERIFY(m_headset.waitForState(staysGone == "1"_L1 ? QString() : u"device"_s));
  }
}

void HeadsetFaultsTest::linkLostInAnInstall() {
  m_headset.setFault(u"drop_after_install_bytes"_s, u"1000000"_s);
  const AdbReply got = m_headset.adb({u"install"_s, u"-r"_s, m_package});
  QCOMPARE(got.errors, u"adb: failed to install %1: "_s.arg(m_package));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.packages().isEmpty());
}

void HeadsetFaultsTest::reboot() {
  m_headset.setFault(u"reboot_ms"_s, u"1000"_s);
  m_headset.adb({u"shell"_s, u"setprop debug.oculus.refreshRate 90; setprop persist.kept 1"_s});
  QCOMPARE(m_headset.adb({u"reboot"_s}).exitCode, 0);
  QVERIFY(m_headset.waitForState({}, 3000));
  QVERIFY(m_headset.waitForDevice(5000));
  QCOMPARE(m_headset.adb({u"shell"_s, u"getprop debug.oculus.refreshRate; getprop persist.kept"_s}).output,
           u"\n1\n"_s);
}

QTEST_GUILESS_MAIN(HeadsetFaultsTest)
#include "headset_faults_test.moc"
