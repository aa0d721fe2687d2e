#include "program.h"
#include "sample_package.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {
const QString package = u"com.example.sample"_s;
const QString obbFile = u"/sdcard/Android/obb/com.example.sample/main.obb"_s;
}  // namespace

class UninstallTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void uninstall_data() {
    QTest::addColumn<bool>("keepData");
    QTest::addColumn<QStringList>("commands");
    QTest::newRow("with its data") << false
                                   << QStringList({u"pm list packages"_s,
                                                   u"cmd package 'uninstall' 'com.example.sample'"_s});
    QTest::newRow("without its data")
        << true
        << QStringList({u"pm list packages"_s, u"pm uninstall -k com.example.sample"_s,
                        u"echo $EXTERNAL_STORAGE"_s, u"rm -r /sdcard/Android/obb/com.example.sample"_s});
  }
  void uninstall() {
    QFETCH(bool, keepData);
    QFETCH(QStringList, commands);
    Program program;
    QCOMPARE(program.startHeadset(), QString());
    SamplePackage sample;
    sample.package = package;
    sample.icon = true;
    const QString apk = program.headset.workPath(u"My GAME.APK"_s);
    QCOMPARE(sample.write(apk), QString());
    QCOMPARE(program.headset.adb({u"install"_s, apk}).exitCode, 0);
    QVERIFY(program.headset.writeDeviceFile(obbFile, "expansion"));
    QVERIFY(program.start(apk));
    apkinfo& form = program.form();
    QVERIFY(QFileInfo::exists(apk) && !form.Picture1->Picture().isNull());

    Button* button = keepData ? form.Command5 : form.Command4;
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled() && !form.turn().taken(), 10'000);
    const qsizetype told = program.console().size();
    program.headset.clearLog();
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(form.turn().taken());
    QTRY_VERIFY_WITH_TIMEOUT(!form.turn().taken(), 60'000);
    const QStringList opened = program.commands();
    for (const QString& command : commands)
      QVERIFY2(opened.contains(command), qPrintable(opened.join(u'\n')));
    QVERIFY(program.console().mid(told).contains(u"Success\r\n"_s));
    QCOMPARE(program.console().endsWith(u"完毕！"_s), keepData);
    // Of a package whose data stays the headset goes on knowing.
    QCOMPARE(program.headset.packages().contains(package), keepData);
    QVERIFY(!keepData || !program.headset.packages()[package].isInstalled);
    QVERIFY(program.headset.readDeviceFile(obbFile).isNull());
    // The watcher tells the window.
    QTRY_COMPARE_WITH_TIMEOUT(form.Label6->Caption(), u"未安装"_s, 10'000);
    QVERIFY(!form.Command4->isEnabled() && !form.Command5->isEnabled());
  }
};

QTEST_MAIN(UninstallTest)
#include "uninstall_test.moc"
