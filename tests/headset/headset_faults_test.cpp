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
  void foundAgainByItself();
  void serverStartedLater();
  void slow();
  void fullStorage();
  void fullStorageInstall();
  void installRefused();
  void uninstallRefused();
  void linkLostInAPush();
  void linkLostInAnInstall();
  void linkLostInAShell();
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
  m_headset.clearLog();
}

void HeadsetFaultsTest::state_data() {
  QTest::addColumn<QString>("state");
  QTest::addColumn<QString>("shown");
  QTest::addColumn<QString>("complaint");
  QTest::newRow("unauthorized") << u"unauthorized"_s << u"unauthorized"_s
                                << u"error: device unauthorized.\n"_s;
  QTest::newRow("offline") << u"offline"_s << u"offline"_s << u"error: device offline\n"_s;
  QTest::newRow("gone") << u"gone"_s << QString() << u"error: no devices/emulators found\n"_s;
}

void HeadsetFaultsTest::state() {
  QFETCH(QString, state);
  QFETCH(QString, shown);
  QFETCH(QString, complaint);
  m_headset.setFault(u"state"_s, state);
  QVERIFY(m_headset.waitForState(shown, 3000));
  const AdbReply got = m_headset.adb({u"shell"_s, u"true"_s});
  QVERIFY2(got.errors.startsWith(complaint), qPrintable(got.errors));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.services().isEmpty());
  // It stays so, and does not come back for a moment now and then.
  QTest::qWait(600);
  QVERIFY(m_headset.waitForState(shown, 0));
}

void HeadsetFaultsTest::foundAgainByItself() {
  for (const QString& state : {u"gone"_s, u"unauthorized"_s, u"offline"_s}) {
    m_headset.setFault(u"state"_s, state);
    QVERIFY(m_headset.waitForState(state == "gone"_L1 ? QString() : state, 3000));
    m_headset.setFault(u"state"_s, u"device"_s);
    QVERIFY2(m_headset.waitForDevice(), qPrintable(state));
  }
}

void HeadsetFaultsTest::serverStartedLater() {
  QCOMPARE(m_headset.adb({u"kill-server"_s}).exitCode, 0);
  QVERIFY(m_headset.waitForDevice());
}

void HeadsetFaultsTest::slow() {
  m_headset.setFault(u"latency_ms"_s, u"400"_s);
  QElapsedTimer timer;
  timer.start();
  QCOMPARE(m_headset.adb({u"shell"_s, u"echo late"_s}).output, u"late\n"_s);
  QVERIFY(timer.elapsed() >= 400);
  m_headset.clearFaults();
  m_headset.setFault(u"bytes_per_second"_s, u"10000000"_s);
  timer.start();
  QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/slow"_s}).exitCode, 0);
  QVERIFY2(timer.elapsed() >= 700, qPrintable(QString::number(timer.elapsed())));
}

void HeadsetFaultsTest::fullStorage() {
  m_headset.setFault(u"storage_free_bytes"_s, u"15000000"_s);
  QTest::qWait(200);
  QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/full/one"_s}).exitCode, 0);
  const AdbReply got = m_headset.adb({u"push"_s, m_file, u"/sdcard/full/two"_s});
  QVERIFY2(
      got.output.startsWith(
          u"adb: error: failed to copy '%1' to '/sdcard/full/two': remote write failed: No space left on device\n"_s
              .arg(m_file)),
      qPrintable(got.output));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.readDeviceFile(u"/sdcard/full/two"_s).isNull());
  QCOMPARE(m_headset.adb({u"shell"_s, u"df -h /sdcard | awk '{print $4}'"_s}).output, u"Avail\n4.8M\n"_s);
  // What is removed gives its room back.
  m_headset.adb({u"shell"_s, u"rm /sdcard/full/one"_s});
  QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/full/two"_s}).exitCode, 0);
}

void HeadsetFaultsTest::fullStorageInstall() {
  m_headset.setFault(u"storage_free_bytes"_s, u"1000000"_s);
  QTest::qWait(200);
  const AdbReply got = m_headset.adb({u"install"_s, u"-r"_s, m_package});
  QVERIFY2(
      got.errors.startsWith(
          u"adb: failed to install %1: \nException occurred while executing 'install':\n"_s.arg(m_package)),
      qPrintable(got.errors));
  QCOMPARE(got.exitCode, 1);
}

void HeadsetFaultsTest::installRefused() {
  const QString reason =
      u"INSTALL_FAILED_UPDATE_INCOMPATIBLE: Existing package com.example.app signatures do not match newer version; ignoring!"_s;
  m_headset.setFault(u"install_failure"_s, reason);
  const AdbReply got = m_headset.adb({u"install"_s, u"-r"_s, m_package});
  QCOMPARE(got.output, u"Performing Streamed Install\n"_s);
  QCOMPARE(got.errors, u"adb: failed to install %1: Failure [%2]\n"_s.arg(m_package, reason));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.packages().isEmpty());
}

void HeadsetFaultsTest::uninstallRefused() {
  QCOMPARE(m_headset.adb({u"install"_s, u"-r"_s, m_package}).exitCode, 0);
  m_headset.setFault(u"uninstall_failure"_s, u"DELETE_FAILED_DEVICE_POLICY_MANAGER"_s);
  QCOMPARE(m_headset.adb({u"uninstall"_s, u"com.example.app"_s}).output,
           u"Failure [DELETE_FAILED_DEVICE_POLICY_MANAGER]\n"_s);
  m_headset.clearFaults();
  QCOMPARE(m_headset.adb({u"uninstall"_s, u"com.example.app"_s}).output, u"Success\n"_s);
}

void HeadsetFaultsTest::linkLostInAPush() {
  for (const bool staysGone : {false, true}) {
    m_headset.setFault(u"drop_after_push_bytes"_s, u"4000000"_s);
    m_headset.setFault(u"drop_stays_gone"_s, staysGone ? u"1"_s : u"0"_s);
    const AdbReply got = m_headset.adb({u"push"_s, m_file, u"/sdcard/lost"_s});
    QVERIFY2(got.output.contains("couldn't read from device"_L1) || got.output.contains("failed to copy"_L1),
             qPrintable(got.output));
    QCOMPARE(got.exitCode, 1);
    QTRY_VERIFY(m_headset.readDeviceFile(u"/sdcard/lost"_s).isNull());
    QVERIFY(m_headset.waitForState(staysGone ? QString() : u"device"_s));
    if (staysGone) {
      QTest::qWait(500);
      QVERIFY(m_headset.waitForState(QString(), 0));
    }
    m_headset.clearFaults();
    QVERIFY(m_headset.waitForDevice());
  }
}

void HeadsetFaultsTest::linkLostInAnInstall() {
  m_headset.setFault(u"drop_after_install_bytes"_s, u"1000000"_s);
  const AdbReply got = m_headset.adb({u"install"_s, u"-r"_s, m_package});
  QCOMPARE(got.errors, u"adb: failed to install %1: "_s.arg(m_package));
  QCOMPARE(got.exitCode, 1);
  QVERIFY(m_headset.packages().isEmpty());
}

void HeadsetFaultsTest::linkLostInAShell() {
  QProcess shell;
  shell.start(u"adb"_s, {u"shell"_s, u"echo begun; sleep 30; echo ended"_s});
  QVERIFY(shell.waitForReadyRead());
  m_headset.setFault(u"state"_s, u"gone"_s);
  QVERIFY(shell.waitForFinished(3000));
  QCOMPARE(shell.readAllStandardOutput(), QByteArray("begun\n"));
  QCOMPARE(shell.exitCode(), 0);
}

void HeadsetFaultsTest::reboot() {
  m_headset.setFault(u"reboot_ms"_s, u"500"_s);
  m_headset.adb({u"shell"_s, u"setprop debug.oculus.refreshRate 90; setprop persist.kept 1"_s});
  const AdbReply got = m_headset.adb({u"reboot"_s});
  QCOMPARE(got.output + got.errors, QString());
  QCOMPARE(got.exitCode, 0);
  QVERIFY(m_headset.waitForState({}, 1000));
  QVERIFY(m_headset.waitForDevice(3000));
  QCOMPARE(m_headset.adb({u"shell"_s, u"getprop debug.oculus.refreshRate; getprop persist.kept"_s}).output,
           u"\n1\n"_s);
}

QTEST_GUILESS_MAIN(HeadsetFaultsTest)
#include "headset_faults_test.moc"
