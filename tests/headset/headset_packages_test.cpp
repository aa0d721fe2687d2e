// The headset's package manager: installing, listing, permissions, starting, taking off.

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include "sample_package.h"
#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using orvanta::SamplePackage;
using orvanta::test::AdbReply;
using orvanta::test::HeadsetPackage;
using orvanta::test::VirtualHeadset;

class HeadsetPackagesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void cleanup() { m_headset.adb({u"uninstall"_s, u"com.example.app"_s}); }

  void install_data();
  void install();
  void replacingKeepsWhatTheUserAllowed();
  void severalPackageFiles();
  void listings();
  void report();
  void permissions_data();
  void permissions();
  void start();
  void uninstall();
  void firstApps();

 private:
  QString package(const QString& name) const { return m_headset.workPath(name + ".apk"_L1); }
  AdbReply shell(const QString& script) const { return m_headset.adb({u"shell"_s, script}); }

  VirtualHeadset m_headset;
};

void HeadsetPackagesTest::initTestCase() {
  QCOMPARE(m_headset.start(), QString());
  SamplePackage sample;
  sample.versionCode = 35;
  sample.versionName = u"3.5 'beta'"_s;
  sample.label = u"Tom & Jerry's \"Show\""_s;
  sample.permissions = {u"android.permission.INTERNET"_s, u"android.permission.RECORD_AUDIO"_s,
                        u"android.permission.CAMERA"_s};
  sample.icon = true;
  QCOMPARE(sample.write(package(u"v35"_s)), QString());
  sample.versionCode = 34;
  QCOMPARE(sample.write(package(u"v34"_s)), QString());
  sample.versionCode = 36;
  sample.paddingBytes = 10 * 1024 * 1024;
  QCOMPARE(sample.write(package(u"v36 large 包"_s)), QString());
  QCOMPARE((SamplePackage{.minSdk = 33, .targetSdk = 33}.write(package(u"newer"_s))), QString());
  QCOMPARE((SamplePackage{.testOnly = true}.write(package(u"testonly"_s))), QString());
  QCOMPARE((SamplePackage{.nativeCode = {u"x86_64"_s}}.write(package(u"x86"_s))), QString());
  QCOMPARE((SamplePackage{.split = u"config.zh"_s}.write(package(u"split"_s))), QString());
  QFile broken(package(u"broken"_s));
  QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("no package") > 0);
}

void HeadsetPackagesTest::install_data() {
  QTest::addColumn<QString>("before");
  QTest::addColumn<QStringList>("options");
  QTest::addColumn<QString>("file");
  QTest::addColumn<QString>("refusal");
  const auto row = [](const char* name, const QString& before, const QStringList& options,
                      const QString& file, const char* refusal = "") {
    QTest::newRow(name) << before << options << file << QString::fromUtf8(refusal);
  };
  row("first", {}, {u"-r"_s}, u"v35"_s);
  row("large, odd name", {}, {u"-r"_s, u"-g"_s}, u"v36 large 包"_s);
  row("again", u"v35"_s, {u"-r"_s}, u"v35"_s);
  row("again without -r", u"v35"_s, {}, u"v35"_s,
      "INSTALL_FAILED_ALREADY_EXISTS: Attempt to re-install com.example.app without first uninstalling.");
  row("downgrade", u"v35"_s, {u"-r"_s}, u"v34"_s,
      "INSTALL_FAILED_VERSION_DOWNGRADE: Downgrade detected: Update version code 34 is older than current "
      "35");
  row("downgrade allowed", u"v35"_s, {u"-r"_s, u"-d"_s}, u"v34"_s);
  row("no package", {}, {u"-r"_s}, u"broken"_s,
      "INSTALL_PARSE_FAILED_NOT_APK: Failed to parse /data/app/vmdl\\d+.tmp/base.apk: Failed to load asset "
      "path "
      "/data/app/vmdl\\d+.tmp/base.apk");
  row("newer system", {}, {}, u"newer"_s,
      "INSTALL_FAILED_OLDER_SDK: .*Requires newer sdk version #33 \\(current version is #29\\)");
  row("test only", {}, {}, u"testonly"_s, "INSTALL_FAILED_TEST_ONLY: installPackageLI");
  row("test only allowed", {}, {u"-t"_s}, u"testonly"_s);
  row("other processor", {}, {}, u"x86"_s,
      "INSTALL_FAILED_NO_MATCHING_ABIS: Failed to extract native libraries, res=-113");
  row("split alone", {}, {}, u"split"_s,
      "INSTALL_FAILED_INVALID_APK: Full install must include a base package: splits=\\[config.zh\\]");
}

void HeadsetPackagesTest::install() {
  QFETCH(QString, before);
  QFETCH(QStringList, options);
  QFETCH(QString, file);
  QFETCH(QString, refusal);
  for (const bool streamed : {true, false}) {
    cleanup();
    if (!before.isEmpty()) QCOMPARE(m_headset.adb({u"install"_s, package(before)}).exitCode, 0);
    QStringList words = QStringList{u"install"_s} + options;
    if (!streamed) words << u"--no-streaming"_s;
    const AdbReply got = m_headset.adb(words << package(file));
    QVERIFY2(
        got.output.startsWith(streamed ? "Performing Streamed Install\n"_L1 : "Performing Push Install\n"_L1),
        qPrintable(got.output));
    QCOMPARE(got.exitCode, refusal.isEmpty() ? 0 : 1);
    const QString text = got.output + got.errors;
    if (refusal.isEmpty()) {
      QVERIFY2(got.output.endsWith("\nSuccess\n"_L1), qPrintable(text));
      QVERIFY(m_headset.packages().contains(u"com.example.app"_s));
    } else {
      const QString prefix =
          streamed ? u"adb: failed to install %1: "_s.arg(QRegularExpression::escape(package(file)))
                   : QString();
      const QRegularExpression expected(prefix + "Failure \\[%1\\]\n$"_L1.arg(refusal));
      QVERIFY2(text.contains(expected), qPrintable(text));
      QCOMPARE(m_headset.packages().contains(u"com.example.app"_s), !before.isEmpty());
    }
  }
}

void HeadsetPackagesTest::replacingKeepsWhatTheUserAllowed() {
  QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  QVERIFY(m_headset.writeDeviceFile(u"/sdcard/Android/data/com.example.app/save"_s, "game"));
  shell(u"pm grant com.example.app android.permission.CAMERA"_s);
  const QString oldPath = shell(u"pm path com.example.app"_s).output;
  QCOMPARE(m_headset.adb({u"install"_s, u"-r"_s, package(u"v36 large 包"_s)}).exitCode, 0);
  const HeadsetPackage now = m_headset.packages().value(u"com.example.app"_s);
  QCOMPARE(now.versionCode, 36);
  QCOMPARE(now.versionName, u"3.5 'beta'"_s);
  QVERIFY(now.grants.value(u"android.permission.CAMERA"_s));
  QVERIFY(!now.grants.value(u"android.permission.RECORD_AUDIO"_s));
  QCOMPARE(m_headset.readDeviceFile(u"/sdcard/Android/data/com.example.app/save"_s), QByteArray("game"));
  QVERIFY(shell(u"pm path com.example.app"_s).output != oldPath);
  QCOMPARE(m_headset.adb({u"install"_s, u"-r"_s, u"-g"_s, package(u"v36 large 包"_s)}).exitCode, 0);
  QVERIFY(
      m_headset.packages().value(u"com.example.app"_s).grants.value(u"android.permission.RECORD_AUDIO"_s));
  // Nothing is left of the steps on the way.
  QCOMPARE(shell(u"ls -d /data/app/vmdl*"_s).exitCode, 1);
}

void HeadsetPackagesTest::severalPackageFiles() {
  SamplePackage base;
  QCOMPARE(base.write(package(u"base"_s)), QString());
  const AdbReply got = m_headset.adb({u"install-multiple"_s, package(u"base"_s), package(u"split"_s)});
  QVERIFY2(got.output.contains("Success"_L1), qPrintable(got.output + got.errors));
  const QStringList paths = shell(u"pm path com.example.app"_s).output.split(u'\n', Qt::SkipEmptyParts);
  QCOMPARE(paths.size(), 2);
  QVERIFY(paths[0].endsWith("/base.apk"_L1) && paths[1].endsWith("/split_config.zh.apk"_L1));
}

void HeadsetPackagesTest::listings() {
  QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  QVERIFY(shell(u"pm list packages"_s).output.contains("package:com.android.settings\n"_L1));
  QCOMPARE(shell(u"pm list packages -3 |wc -l"_s).output, u"1\n"_s);
  const QString path = shell(u"pm path com.example.app"_s).output;
  static const QRegularExpression form(
      u"^package:/data/app/com\\.example\\.app-[\\w-]{22}==/base\\.apk\n$"_s);
  QVERIFY2(form.match(path).hasMatch(), qPrintable(path));
  QCOMPARE(shell(u"pm list package -f -3 -u"_s).output, path.trimmed() + "=com.example.app\n"_L1);
  const AdbReply unknown = shell(u"pm path com.example.none"_s);
  QCOMPARE(unknown.output + unknown.errors, QString());
  QCOMPARE(unknown.exitCode, 1);
  // The package can be fetched by its path.
  const QString remote = path.trimmed().mid(8);
  QCOMPARE(m_headset.adb({u"pull"_s, remote, m_headset.workPath(u"back.apk"_s)}).exitCode, 0);
  QFile back(m_headset.workPath(u"back.apk"_s));
  QFile original(package(u"v35"_s));
  QVERIFY(back.open(QIODevice::ReadOnly) && original.open(QIODevice::ReadOnly));
  QCOMPARE(back.readAll(), original.readAll());
}

void HeadsetPackagesTest::report() {
  QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  const QString text = shell(u"dumpsys package com.example.app"_s).output;
  constexpr const char* kParts[] = {
      "Packages:\n  Package [com.example.app] (",
      "\n    versionCode=35 minSdk=23 targetSdk=29\n",
      "\n    versionName=3.5 'beta'\n",
      "\n    splits=[base]\n",
      "\n    install permissions:\n      android.permission.INTERNET: granted=true\n",
      "\n      runtime permissions:\n        android.permission.RECORD_AUDIO: granted=false, flags=[ ",
      "|USER_SENSITIVE_WHEN_DENIED]\n        android.permission.CAMERA: granted=false, flags=[ ",
  };
  for (const char* line : kParts) {
    QVERIFY2(text.contains(QString::fromUtf8(line)), qPrintable(text));
  }
  const QString unknown = shell(u"dumpsys package com.example.none"_s).output;
  QVERIFY(unknown.contains("Unable to find package: com.example.none"_L1) &&
          !unknown.contains("versionCode"_L1));
}

void HeadsetPackagesTest::permissions_data() {
  QTest::addColumn<QString>("words");
  QTest::addColumn<QString>("complaint");
  QTest::newRow("grant") << u"grant com.example.app android.permission.CAMERA"_s << QString();
  QTest::newRow("revoke") << u"revoke com.example.app android.permission.CAMERA"_s << QString();
  QTest::newRow("not requested")
      << u"grant com.example.app android.permission.READ_SMS"_s
      << u"SecurityException: Package com.example.app has not requested permission"_s;
  QTest::newRow("fixed") << u"revoke com.example.app android.permission.INTERNET"_s
                         << u"is not a changeable permission type"_s;
  QTest::newRow("unknown package") << u"grant com.example.none android.permission.CAMERA"_s
                                   << u"IllegalArgumentException: Unknown package: com.example.none"_s;
}

void HeadsetPackagesTest::permissions() {
  QFETCH(QString, words);
  QFETCH(QString, complaint);
  QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  const AdbReply got = shell(u"pm "_s + words);
  QCOMPARE(got.output, QString());
  QCOMPARE(got.errors.isEmpty(), complaint.isEmpty());
  QVERIFY2(got.errors.contains(complaint), qPrintable(got.errors));
  QCOMPARE(got.exitCode, complaint.isEmpty() ? 0 : 255);
  const bool granted =
      m_headset.packages().value(u"com.example.app"_s).grants.value(u"android.permission.CAMERA"_s);
  QCOMPARE(granted, words.startsWith("grant"_L1) && complaint.isEmpty());
}

void HeadsetPackagesTest::start() {
  const QString command = u"monkey -p com.example.app -c android.intent.category.LAUNCHER 1 "_s;
  const AdbReply none = shell(command);
  QVERIFY(none.output.endsWith("** No activities found to run, monkey aborted.\n"_L1));
  QCOMPARE(none.exitCode, 252);
  QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  const AdbReply started = shell(command);
  QVERIFY2(started.output.contains("Events injected: 1\n"_L1), qPrintable(started.output));
  QCOMPARE(started.exitCode, 0);
}

void HeadsetPackagesTest::uninstall() {
  const QString obb = u"/sdcard/Android/obb/com.example.app/main.35.com.example.app.obb"_s;
  QCOMPARE(m_headset.adb({u"install"_s, package(u"v35"_s)}).exitCode, 0);
  QVERIFY(m_headset.writeDeviceFile(obb, "obb"));
  QCOMPARE(shell(u"pm uninstall -k com.example.app"_s).output, u"Success\n"_s);
  QVERIFY(!m_headset.readDeviceFile(obb).isNull());
  QCOMPARE(shell(u"pm list package -f -3 -u"_s).output, u"package:null=com.example.app\n"_s);
  QCOMPARE(shell(u"pm list packages -3"_s).output, QString());
  const QString text = shell(u"dumpsys package com.example.app"_s).output;
  QVERIFY(text.contains("\n    versionCode=35\n"_L1) && text.contains(" installed=false "_L1));
  QCOMPARE(m_headset.adb({u"uninstall"_s, u"com.example.app"_s}).output, u"Success\n"_s);
  QVERIFY(m_headset.readDeviceFile(obb).isNull());
  const AdbReply again = m_headset.adb({u"uninstall"_s, u"com.example.app"_s});
  QCOMPARE(again.output, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\n"_s);
  QCOMPARE(again.exitCode, 1);
  QCOMPARE(m_headset.adb({u"uninstall"_s, u"com.android.settings"_s}).exitCode, 1);
}

void HeadsetPackagesTest::firstApps() {
  VirtualHeadset full;
  QCOMPARE(full.start({.apps = 12}), QString());
  const QStringList lines =
      full.adb({u"shell"_s, u"pm list package -f -3 -u"_s}).output.split(u'\n', Qt::SkipEmptyParts);
  QCOMPARE(lines.size(), 12);
  const QString all = lines.join(u'\n');
  QVERIFY(all.contains("package:null="_L1) && all.contains("package:/data/app/~~"_L1));
  // What the inventory measures is what is there.
  for (const QString& line : lines) {
    if (line.startsWith("package:null="_L1)) continue;
    const QString path = line.mid(8, line.lastIndexOf(u'=') - 8);
    const qint64 size = full.adb({u"shell"_s, u"wc -c < '%1'"_s.arg(path)}).output.trimmed().toLongLong();
    QVERIFY2(size > 500, qPrintable(line));
  }
}

QTEST_GUILESS_MAIN(HeadsetPackagesTest)
#include "headset_packages_test.moc"
