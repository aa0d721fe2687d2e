// The headset's package manager: installing, listing, permissions, starting, taking off.

#include <QRegularExpression>
#include <QTest>

#include "sample_package.h"
#include "support/files.h"
#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using orvanta::SamplePackage;
using orvanta::test::AdbReply;
using orvanta::test::HeadsetPackage;
using orvanta::test::VirtualHeadset;

class HeadsetPackagesTest : public QObject {
  Q_OBJECT

  VirtualHeadset m_headset;

  QString package(const QString& name) const { return m_headset.workPath(name + ".apk"_L1); }
  AdbReply shell(const QString& script) const { return m_headset.adb({u"shell"_s, script}); }
  HeadsetPackage installed() const { return m_headset.packages().value(u"com.example.app"_s); }

 private Q_SLOTS:
  void initTestCase() {
    QCOMPARE(m_headset.start({.apps = 12}), QString());
    SamplePackage sample;
    sample.versionName = u"3.5 'beta'"_s;
    sample.permissions = {u"android.permission.RECORD_AUDIO"_s, u"android.permission.CAMERA"_s};
    for (const int version : {34, 35, 36}) {
      sample.versionCode = version;
      sample.paddingBytes = version == 36 ? 10 * 1024 * 1024 : 0;
      QCOMPARE(sample.write(package(version == 36 ? u"v36 large 包"_s : u"v%1"_s.arg(version))), QString());
    }
    QCOMPARE((SamplePackage{.splitRequired = true}.write(package(u"base"_s))), QString());
    QCOMPARE((SamplePackage{.split = u"config.zh"_s}.write(package(u"split"_s))), QString());
    QVERIFY(orvanta::writeFile(package(u"broken"_s), "no package"));
  }
  void init() {
    m_headset.adb({u"uninstall"_s, u"com.example.app"_s});
    QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  }

  void firstApps() {
    const QString all = shell(u"pm list package -f -3 -u"_s).output;
    QCOMPARE(all.count(u'\n'), 13);
    // The ones that are easily read wrong are among them.
    QVERIFY(all.contains("package:null="_L1) && all.contains("package:/data/app/~~"_L1));
  }

  void install() {
    const std::tuple<QString, QString, QString> rows[] = {
        {u"-r -g"_s, u"v36 large 包"_s, {}},
        {u"--"_s, u"v35"_s,
         u"INSTALL_FAILED_ALREADY_EXISTS: Attempt to re-install com.example.app without first "
         "uninstalling."_s},
        {u"-r"_s, u"v34"_s,
         u"INSTALL_FAILED_VERSION_DOWNGRADE: Downgrade detected: Update version code 34 is older than "
         "current 35"_s},
        {u"-r -d"_s, u"v34"_s, {}},
        {u"-r -d"_s, u"base"_s, u"INSTALL_FAILED_MISSING_SPLIT: Missing split for com.example.app"_s},
        {u"-r"_s, u"broken"_s,
         u"INSTALL_PARSE_FAILED_NOT_APK: Failed to parse /data/app/vmdl\\d+.tmp/base.apk: Failed to load "
         "asset path /data/app/vmdl\\d+.tmp/base.apk"_s},
    };
    for (const auto& [options, file, refusal] : rows) {
      for (const QString& way : {u"Streamed"_s, u"Push"_s}) {
        init();
        QStringList words = options == "--"_L1 ? QStringList() : options.split(u' ');
        if (way == "Push"_L1) words << u"--no-streaming"_s;
        const AdbReply got = m_headset.adb(QStringList{u"install"_s} + words + QStringList{package(file)});
        const QString text = got.output + got.errors;
        const QString end = refusal.isEmpty() ? u"Success\n$"_s : u"Failure \\[%1\\]\n$"_s.arg(refusal);
        const QRegularExpression expected(u"^Performing %1 Install\n.*"_s.arg(way) + end,
                                          QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(text.contains(expected), qPrintable(text));
        QCOMPARE(got.exitCode, refusal.isEmpty() ? 0 : 1);
        QCOMPARE(installed().versionCode == 35, !refusal.isEmpty());
        // Nothing is left of the steps on the way.
        QCOMPARE(shell(u"ls -d /data/app/vmdl*"_s).exitCode, 1);
      }
    }
  }

  void replacingKeepsWhatTheUserAllowed() {
    const QString save = u"/sdcard/Android/data/com.example.app/save"_s;
    QVERIFY(m_headset.writeDeviceFile(save, "game"));
    shell(u"pm grant com.example.app android.permission.CAMERA"_s);
    QCOMPARE(m_headset.adb({u"install"_s, u"-r"_s, package(u"v36 large 包"_s)}).exitCode, 0);
    QCOMPARE(installed().versionName, u"3.5 'beta'"_s);
    QVERIFY(installed().grants.value(u"android.permission.CAMERA"_s));
    QVERIFY(!installed().grants.value(u"android.permission.RECORD_AUDIO"_s));
    QCOMPARE(m_headset.readDeviceFile(save), "game");
    QCOMPARE(m_headset.adb({u"install"_s, u"-r"_s, u"-g"_s, package(u"v36 large 包"_s)}).exitCode, 0);
    QVERIFY(installed().grants.value(u"android.permission.RECORD_AUDIO"_s));
  }

  void severalPackageFiles() {
    m_headset.adb({u"install-multiple"_s, u"-r"_s, u"-d"_s, package(u"base"_s), package(u"split"_s)});
    const QString paths = shell(u"pm path com.example.app"_s).output;
    QVERIFY2(paths.contains("/base.apk\n"_L1) && paths.endsWith("/split_config.zh.apk\n"_L1),
             qPrintable(paths));
  }

  void startAndUninstall() {
    const AdbReply started = shell(u"monkey -p com.example.app -c android.intent.category.LAUNCHER 1"_s);
    QVERIFY2(started.output.contains("Events injected: 1\n"_L1), qPrintable(started.output));
    const QString obb = u"/sdcard/Android/obb/com.example.app/main.35.com.example.app.obb"_s;
    QVERIFY(m_headset.writeDeviceFile(obb, "obb"));
    m_headset.setFault(u"uninstall_failure"_s, u"DELETE_FAILED_DEVICE_POLICY_MANAGER"_s);
    QCOMPARE(shell(u"pm uninstall com.example.app"_s).output,
             u"Failure [DELETE_FAILED_DEVICE_POLICY_MANAGER]\n"_s);
    m_headset.clearFaults();
    QCOMPARE(shell(u"pm uninstall -k com.example.app"_s).output, u"Success\n"_s);
    QVERIFY(!m_headset.readDeviceFile(obb).isNull());
    QVERIFY(shell(u"pm list package -f -3 -u"_s).output.contains(u"package:null=com.example.app\n"_s));
    QVERIFY(!shell(u"pm list packages -3"_s).output.contains(u"com.example.app\n"_s));
    const QString text = shell(u"dumpsys package com.example.app"_s).output;
    QVERIFY(text.contains("\n    versionCode=35\n"_L1) && text.contains(" installed=false "_L1));
    QCOMPARE(m_headset.adb({u"uninstall"_s, u"com.example.app"_s}).output, u"Success\n"_s);
    QVERIFY(m_headset.readDeviceFile(obb).isNull());
    for (const QString& name : {u"com.example.app"_s, u"com.android.settings"_s}) {
      const AdbReply again = m_headset.adb({u"uninstall"_s, name});
      QCOMPARE(again.output, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\n"_s);
      QCOMPARE(again.exitCode, 1);
    }
  }
};

QTEST_GUILESS_MAIN(HeadsetPackagesTest)
#include "headset_packages_test.moc"
