#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "inventory/script.h"
#include "platform/script_place.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// A folder that stands for the program's own and for the device: the device's tools are small scripts that
/// answer from files.
class FakeDevice {
 public:
  explicit FakeDevice(const QString& shell) {
    write(u"adb"_s,
          u"#!/bin/sh\necho \"$1\" >> ROOT/calls\n"
          "if [ \"$1\" = push ]; then cp \"$2\" ROOT/tmp/; echo \"$2: 1 file pushed.\"; exit; fi\n"
          // busybox prefers its own du to the one on the path
          "shift; text='du() { ROOT/bin/du \"$@\"; }; '$(printf '%s' \"$*\" | sed "
          "'s#/data/local/tmp#ROOT/tmp#g')\n"
          "PATH=ROOT/bin:$PATH exec SHELL -c \"$text\"\n"_s.replace(u"SHELL"_s, shell));
    write(u"bin/pm"_s, u"#!/bin/sh\ncat ROOT/pm\n"_s);
    write(u"bin/dumpsys"_s, u"#!/bin/sh\ncat; cat ROOT/dumpsys.$2\n"_s);
    write(u"bin/du"_s,
          u"#!/bin/sh\nshift; for path; do grep -F \"\t$path\" ROOT/du || echo \"du: $path\" >&2; done\n"_s);
    // Neither exists on older devices.
    for (const auto& missing : {u"bin/awk"_s, u"bin/bc"_s})
      write(missing, u"#!/bin/sh\necho no $0; exit 127\n"_s);
    write(u"tmp/keep"_s, QString());
  }

  void write(const QString& name, const QString& text) {
    QVERIFY(writeFile(path(name), QString(text).replace(u"ROOT"_s, m_folder.path()).toUtf8()));
    QFile::setPermissions(path(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }

  /// What the script prints, line by line.
  QStringList run() {
    write(u"script.sh"_s, shellInventoryScript(m_folder.path()));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"/bin/sh"_s, {path(u"script.sh"_s)});
    process.waitForFinished();
    return QString::fromUtf8(process.readAll()).split(u'\n', Qt::SkipEmptyParts);
  }

  QString path(const QString& name) const { return m_folder.filePath(name); }

  QByteArray calls() const { return readFile(path(u"calls"_s)); }

 private:
  QTemporaryDir m_folder;
};

}  // namespace

class InventoryScriptTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyLayout_data() {
    QTest::addColumn<QString>("shell");
    for (const auto& shell : {u"busybox sh"_s, u"mksh"_s, u"/bin/sh"_s})
      QTest::newRow(qPrintable(shell)) << shell;
  }

  void everyLayout() {
    QFETCH(QString, shell);
    if (QStandardPaths::findExecutable(shell.section(u' ', 0, 0)).isEmpty()) QSKIP("not on this machine");
    FakeDevice device(shell);
    device.write(u"aapt-arm-pie"_s, u"#!/bin/sh\ncat; cat \"ROOT/badging$(echo \"$3\" | tr / .)\"\n"_s);
    device.write(u"pm"_s,
                 u"WARNING: linker\n"
                 "package:/data/app/~~q=w==/com.example.big-e3r4==/base.apk=com.example.big\n"
                 "package:/data/app/com.example.old-1/base.apk=com.example.old\n"
                 "package:/data/app/com.example.flat.apk=com.example.flat\n"
                 "package:null=com.example.gone\n"
                 "package:/data/app/x/base.apk=com.example.$(touch ROOT/owned)\n"_s);
    device.write(u"du"_s,
                 u"5120\t/data/app/~~q=w==/com.example.big-e3r4==/base.apk\n2048\t/sdcard/Android/obb/"
                 u"com.example.big\n"
                 "4\t/sdcard/Android/data/com.example.big\n256\t/data/app/com.example.old-1/base.apk\n"
                 "768\t/sdcard/Android/data/com.example.old\n5\t/data/app/com.example.flat.apk\n"
                 "150\t/sdcard/Android/obb/com.example.flat\n"_s);
    device.write(
        u"badging.data.app.~~q=w==.com.example.big-e3r4==.base.apk"_s,
        u"package: name='com.example.big'\napplication-label-de:'Gross'\n"
        "application-label:'It's \"big\" \\n IP3x: x'\nIP3x: planted\napplication-label:'second'\n"_s);
    device.write(u"badging.data.app.com.example.old-1.base.apk"_s,
                 u"application-label:'旧 %s $HOME `x`'\n"_s);
    device.write(u"dumpsys.com.example.big"_s,
                 u"Packages:\n  Package [com.example.big] (1):\n    versionCode=83 minSdk=23 targetSdk=28\n"
                 "    versionName=1.1.7  beta=2 \nIP3x: planted\n    splits=[base, config]\n"
                 "    User 0: ceDataInode=1 installed=true\n    User 10: ceDataInode=0 installed=false\n"_s);
    device.write(u"dumpsys.com.example.old"_s, u"    versionCode=5 targetSdk=25\n    versionName=\n"_s);
    device.write(u"dumpsys.com.example.gone"_s, u"    versionCode=7\n"_s);
    device.write(u"dumpsys.com.example.flat"_s, QString());
    const QStringList expected = {
        u"IP3x: com.example.gone "_s, u"application-label:"_s, u"VC3x: versionCode: 7 minSdk:"_s,
        u"TO3x: 0.0"_s, u"AP3x: 0.0"_s, u"OB3x: 0.0"_s, u"AD3x: 0.0"_s,
        // 0.005 MiB counts in the total only: 155 KiB are 0.151
        u"IP3x: com.example.flat "_s, u"application-label:"_s, u"TO3x: 0.2"_s, u"AP3x: 0.0"_s, u"OB3x: 0.1"_s,
        u"AD3x: 0.0"_s,
        // exact halves go to the even digit
        u"IP3x: com.example.old "_s, u"application-label:旧 %s $HOME `x`"_s,
        u"VC3x: versionCode: 5 minSdk: targetSdk: 25"_s, u"VC3x: versionName: "_s, u"TO3x: 1.0"_s,
        u"AP3x: 0.2"_s, u"OB3x: 0.0"_s, u"AD3x: 0.8"_s, u"IP3x: com.example.big "_s,
        u"application-label:Its \"big\" \\n IP3x: x"_s, u"VC3x: versionCode: 83 minSdk: 23 targetSdk: 28"_s,
        u"VC3x: versionName: 1.1.7 beta: 2"_s, u"TO3x: 7.0"_s, u"AP3x: 5.0"_s, u"OB3x: 2.0"_s,
        u"AD3x: 0.0"_s};
    QCOMPARE(device.run(), QStringList(device.path(u"aapt-arm-pie: 1 file pushed."_s)) + expected);
    QCOMPARE(device.calls(), "push\nshell\n");
    QVERIFY(!QFileInfo::exists(device.path(u"owned"_s)));
  }

  void withoutTheBadgingTool() {
    FakeDevice device(u"/bin/sh"_s);
    device.write(u"tmp/aapt-arm-pie"_s, u"#!/bin/sh\necho \"application-label:'from another day'\"\n"_s);
    device.write(u"pm"_s, u"package:/data/app/a.apk=a.b\n"_s);
    device.write(u"dumpsys.a.b"_s, u"    versionName=1\n"_s);
    device.write(u"du"_s, QString());  // it cannot measure anything
    QCOMPARE(device.run(), (QStringList{u"du: /data/app/a.apk"_s, u"IP3x: a.b "_s, u"application-label:"_s,
                                        u"VC3x: versionName: 1"_s, u"TO3x: 0.0"_s, u"AP3x: 0.0"_s,
                                        u"OB3x: 0.0"_s, u"AD3x: 0.0"_s}));
    QCOMPARE(device.calls(), "shell\n");
  }

  void chosenDevice() {
    FakeDevice device(u"/bin/sh"_s);
    device.write(u"adb"_s, u"#!/bin/sh\necho $1, $2, $3\n"_s);
    device.write(u"aapt-arm-pie"_s, QString());
    qputenv("DEVICE", "-s 10.0.0.1:5555");
    QCOMPARE(device.run(), (QStringList{u"-s, 10.0.0.1:5555, push"_s, u"-s, 10.0.0.1:5555, shell"_s}));
    qunsetenv("DEVICE");
  }

  void onTheDisk() {
    QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    {
      const ScriptPlace place(u"echo '应用'\n"_s);
      const QStringList names = QDir(folder.path()).entryList(QDir::Files);
      QCOMPARE(names.size(), 1);
      const QFileInfo file(folder.filePath(names.constFirst()));
      QCOMPARE(file.permissions() & ~(QFile::ReadUser | QFile::WriteUser),
               QFile::ReadOwner | QFile::WriteOwner);
      QCOMPARE(place.commandLine(), u"/bin/sh \"%1\""_s.arg(file.filePath()));
      QProcess process;
      process.startCommand(place.commandLine());
      process.waitForFinished();
      QCOMPARE(process.readAll(), "应用\n");
    }
    QVERIFY(QDir(folder.path()).isEmpty());

    qputenv("XDG_RUNTIME_DIR", "/proc/self");
    qputenv("TMPDIR", "/proc/self");
    const ScriptPlace place(u"x"_s);
    QVERIFY(!place.failure().isEmpty());
    QCOMPARE(place.commandLine(), QString());
  }
};

QTEST_GUILESS_MAIN(InventoryScriptTest)
#include "inventory_script_test.moc"
