// The headset's troubles, each on request and each gone when the request is taken back.

#include <QElapsedTimer>
#include <QTest>

#include "sample_package.h"
#include "support/files.h"
#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using orvanta::SamplePackage;
using orvanta::test::AdbReply;
using orvanta::test::VirtualHeadset;

class HeadsetFaultsTest : public QObject {
  Q_OBJECT

  VirtualHeadset m_headset;
  QString m_package;
  QString m_file;

 private Q_SLOTS:
  void initTestCase() {
    QCOMPARE(m_headset.start(), QString());
    m_package = m_headset.workPath(u"sample.apk"_s);
    SamplePackage sample;
    sample.paddingBytes = 4 * 1024 * 1024;
    QCOMPARE(sample.write(m_package), QString());
    m_file = m_headset.workPath(u"file.obb"_s);
    QVERIFY(orvanta::writeFile(m_file, QByteArray(10'000'000, 'x')));
  }
  void init() {
    m_headset.clearFaults();
    QVERIFY(m_headset.waitForDevice());
  }

  void states() {
    for (const auto& [state, shown, complaint] :
         {std::tuple{u"unauthorized"_s, u"unauthorized"_s, u"error: device unauthorized.\n"_s},
          {u"offline"_s, u"offline"_s, u"error: device offline\n"_s},
          {u"gone"_s, QString(), u"error: no devices/emulators found\n"_s}}) {
      m_headset.clearLog();
      m_headset.setFault(u"state"_s, state);
      QVERIFY(m_headset.waitForState(shown, 3000));
      const AdbReply got = m_headset.adb({u"shell"_s, u"true"_s});
      QVERIFY2(got.errors.startsWith(complaint), qPrintable(got.errors));
      QVERIFY(m_headset.services().isEmpty());
      QTest::qWait(600);  // it does not come back for a moment now and then
      QVERIFY(m_headset.waitForState(shown, 0));
      init();
    }
  }

  void serverStartedLater() {
    QCOMPARE(m_headset.adb({u"kill-server"_s}).exitCode, 0);
    QVERIFY(m_headset.waitForDevice());
  }

  void slow() {
    m_headset.setFault(u"bytes_per_second"_s, u"10000000"_s);
    for (const QStringList& transfer : {QStringList{u"push"_s, m_file, u"/sdcard/slow"_s},
                                        QStringList{u"pull"_s, u"/sdcard/slow"_s, m_file + u".back"_s}}) {
      QElapsedTimer timer;
      timer.start();
      QCOMPARE(m_headset.adb(transfer).exitCode, 0);
      QVERIFY2(timer.elapsed() >= 700, qPrintable(QString::number(timer.elapsed())));
    }
  }

  void fullStorage() {
    m_headset.setFault(u"storage_free_bytes"_s, u"12000000"_s);
    QTest::qWait(200);
    QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/full/one"_s}).exitCode, 0);
    const QStringList again{u"push"_s, m_file, u"/sdcard/full/two"_s};
    const AdbReply got = m_headset.adb(again);
    const QString words =
        u"adb: error: failed to copy '%1' to '/sdcard/full/two': remote write failed: %2\n"_s;
    QVERIFY2(got.output.startsWith(words.arg(m_file, u"No space left on device"_s)), qPrintable(got.output));
    QVERIFY(got.exitCode == 1 && m_headset.readDeviceFile(u"/sdcard/full/two"_s).isNull());
    const AdbReply refused = m_headset.adb({u"install"_s, u"-r"_s, m_package});
    QVERIFY2(refused.errors.contains(u"\nException occurred while executing 'install':\n"_s),
             qPrintable(refused.errors));
    QCOMPARE(m_headset.adb({u"shell"_s, u"df -h /sdcard | awk '{print $4}'"_s}).output, u"Avail\n1.9M\n"_s);
    // What is removed gives its room back.
    m_headset.adb({u"shell"_s, u"rm /sdcard/full/one"_s});
    QCOMPARE(m_headset.adb(again).exitCode, 0);
  }

  void linkLostInATransfer() {
    for (const QString& staysGone : {u"0"_s, u"1"_s}) {
      init();
      m_headset.setFault(u"drop_after_push_bytes"_s, u"4000000"_s);
      m_headset.setFault(u"drop_stays_gone"_s, staysGone);
      QCOMPARE(m_headset.adb({u"push"_s, m_file, u"/sdcard/lost"_s}).exitCode, 1);
      QTRY_VERIFY(m_headset.readDeviceFile(u"/sdcard/lost"_s).isNull());
      QTest::qWait(500);
      QVERIFY(m_headset.waitForState(staysGone == "1"_L1 ? QString() : u"device"_s));
    }
    init();
    m_headset.setFault(u"drop_after_install_bytes"_s, u"1000000"_s);
    const AdbReply got = m_headset.adb({u"install"_s, u"-r"_s, m_package});
    QCOMPARE(got.errors, u"adb: failed to install %1: "_s.arg(m_package));
    QVERIFY(got.exitCode == 1 && m_headset.packages().isEmpty());
  }

  void reboot() {
    m_headset.setFault(u"reboot_ms"_s, u"1000"_s);
    m_headset.adb({u"shell"_s, u"setprop debug.oculus.refreshRate 90; setprop persist.kept 1"_s});
    QCOMPARE(m_headset.adb({u"reboot"_s}).exitCode, 0);
    QVERIFY(m_headset.waitForState({}, 3000) && m_headset.waitForDevice(5000));
    QCOMPARE(m_headset.adb({u"shell"_s, u"getprop debug.oculus.refreshRate; getprop persist.kept"_s}).output,
             u"\n1\n"_s);
  }
};

QTEST_GUILESS_MAIN(HeadsetFaultsTest)
#include "headset_faults_test.moc"
