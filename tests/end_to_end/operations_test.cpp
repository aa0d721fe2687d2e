#include <QCryptographicHash>
#include <QDirIterator>

#include "inventory/parser.h"
#include "operations/app_operations.h"
#include "program.h"
#include "sample_package.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString package = u"com.example.sample"_s;
const QString dataFolder = u"/sdcard/Android/data/com.example.sample"_s;
const QString expansionFolder = u"/sdcard/Android/obb/com.example.sample"_s;

/// The installed-apps window with its menu, about the package.
struct Apps {
  explicit Apps(Workbench& bench) : window(bench, bench.turn), operations(bench, window) {
    window.prepareLoad();
    window.fill(readInventory(u"IP3x: %1 \r\napplication-label:Sample\r\n"_s.arg(package)));
    window.MSFlexGrid1->setRow(1);
    window.show();
  }
  Form4 window;
  AppOperations operations;
};

QByteArray hashOf(const QString& path) {
  QFile file(path);
  QCryptographicHash hash(QCryptographicHash::Sha1);
  return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

/// The hash of every file below `folder`, by its path.
QMap<QString, QByteArray> hashes(const QString& folder) {
  QMap<QString, QByteArray> found;
  QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) found.insert(files.next().mid(folder.size()), hashOf(files.filePath()));
  return found;
}

}  // namespace

class OperationsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void thereAndBack() {
    Program program;
    test::VirtualHeadset& headset = program.headset;
    RecordingDesktop& desktop = program.desktop;
    QCOMPARE(program.startHeadset(), QString());
    const QString backups = headset.workPath(u"备份 100% \"x\" o'y 🎮"_s);
    const QString others = backups + u"-2"_s;
    QVERIFY(QDir().mkpath(backups) && QDir().mkpath(others));
    SamplePackage sample;
    sample.package = package;
    const QString installed = headset.workPath(u"sample.apk"_s);
    QCOMPARE(sample.write(installed), QString());
    QCOMPARE(headset.adb({u"install"_s, installed}).exitCode, 0);
    QVERIFY(headset.writeDeviceFile(expansionFolder + u"/main.1.obb"_s, "large"));
    QVERIFY(QFile::resize(headset.devicePath(expansionFolder + u"/main.1.obb"_s), 300 << 20));
    QVERIFY(headset.writeDeviceFile(expansionFolder + u"/patch 2.obb"_s, "patch"));
    for (int i = 0; i < 500; ++i) {
      const QString name = u"%1/files/存档 %2/save.%3"_s.arg(dataFolder).arg(i % 40).arg(i);
      QVERIFY(headset.writeDeviceFile(name, QByteArray::number(i)));
    }
    const auto data = hashes(headset.devicePath(dataFolder));
    const auto obb = hashes(headset.devicePath(expansionFolder));
    QVERIFY(data.size() == 500 && obb.size() == 2);

    QVERIFY(program.start(QString()));
    const auto run = [&](QAction* entry) {
      desktop.boxes.clear();
      entry->trigger();
      (void)QTest::qWaitFor([&] { return !program.bench().turn.taken(); }, 60'000);
      return desktop.boxTexts();
    };
    {
      Apps apps(program.bench());
      desktop.savePaths = QStringList{backups + u"/My Game"_s};
      desktop.folders = QStringList{backups, others, backups, others + u'/' + package};
      QCOMPARE(run(apps.window.mnu_backup_apk_obb), QStringList{u"请稍候，这可能需要一段时间..."_s});
      QCOMPARE(hashOf(backups + u"/My Game.apk"_s), hashOf(installed));
      QCOMPARE(hashes(backups + u'/' + package), obb);
      // The data goes elsewhere; the second box comes because the number of files ends in 0.
      const QStringList told = run(apps.window.mnu_NonRootBackup);
      QVERIFY2(told.size() == 2 && told[0].contains(u"OBB"_s) && told[1] == u"找不到应用数据"_s,
               qPrintable(told.join(u'\n')));
      QCOMPARE(hashes(others + u'/' + package), data);
      QCOMPARE(hashes(backups + u'/' + package), obb);
      const QString news = apps.window.lblNotice->text();
      QVERIFY2(news.contains(u"500 files, 1390 bytes"_s), qPrintable(news));
      QCOMPARE(run(apps.window.mnu_uninstall), QStringList{u"成功，APK已卸载"_s});
    }
    QVERIFY(!headset.packages().contains(package));
    QVERIFY(!QFileInfo::exists(headset.devicePath(dataFolder)));
    QVERIFY(!QFileInfo::exists(headset.devicePath(expansionFolder)));

    QVERIFY(program.start(backups + u"/My Game.apk"_s));
    QTRY_VERIFY_WITH_TIMEOUT(program.form().Command1->isEnabled(), 10'000);
    QTest::mouseClick(program.form().Command1, Qt::LeftButton);
    const InstallWorkflow& install = program.application->install();
    QTRY_VERIFY(install.selection() != nullptr && install.selection()->isVisible());
    QTest::mouseClick(install.selection()->Command1, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!program.bench().turn.taken(), 60'000);
    Apps apps(program.bench());
    QStringList told = run(apps.window.mnu_Restore);
    QVERIFY2(told.value(0).contains(u"OBB"_s), qPrintable(told.join(u'\n')));
    QVERIFY(hashes(headset.devicePath(dataFolder)).isEmpty());
    told = run(apps.window.mnu_Restore);
    QVERIFY2(told.value(0).contains(u"500 files pushed"_s), qPrintable(told.join(u'\n')));
    const QString path = headset.adb({u"shell"_s, u"pm"_s, u"path"_s, package}).output.trimmed();
    QCOMPARE(hashOf(headset.devicePath(path.section(u':', 1))), hashOf(installed));
    QCOMPARE(hashes(headset.devicePath(expansionFolder)), obb);
    QCOMPARE(hashes(headset.devicePath(dataFolder)), data);
  }
};

QTEST_MAIN(OperationsTest)
#include "operations_test.moc"
