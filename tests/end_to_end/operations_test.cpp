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
const QString obbFolder = u"/sdcard/Android/obb/com.example.sample"_s;
constexpr qint64 largeSize = 300 << 20;

/// The installed-apps window with its menu, about one app.
struct Apps {
  explicit Apps(apkinfo& form, const QString& name = package)
      : window(form, form.turn()), operations(form, window) {
    const QString stream = u"IP3x: %1 \r\napplication-label:Sample\r\n"_s.arg(name);
    window.prepareLoad();
    window.fill(readInventory(stream));
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

/// The content of every file below `folder`, by its path.
QMap<QString, QByteArray> tree(const QString& folder) {
  QMap<QString, QByteArray> found;
  QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    files.next();
    found.insert(files.filePath().mid(folder.size()), hashOf(files.filePath()));
  }
  return found;
}

}  // namespace

class OperationsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Program> m_program;
  QString m_apk;
  QString m_backups;

  test::VirtualHeadset& headset() { return m_program->headset; }
  RecordingDesktop& desktop() { return m_program->desktop; }
  apkinfo& form() { return m_program->form(); }
  QString lastBox() { return desktop().boxTexts().isEmpty() ? QString() : desktop().boxTexts().last(); }
  QString installedFile() {
    const QString line = headset().adb({u"shell"_s, u"pm"_s, u"path"_s, package}).output.trimmed();
    return headset().devicePath(line.section(u':', 1));
  }

  void run(QAction* entry) {
    desktop().boxes.clear();
    entry->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!form().turn().taken(), 60'000);
  }

  void writeLarge(const QString& path) {
    QVERIFY(headset().writeDeviceFile(path, "x"));
    QFile file(headset().devicePath(path));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray block(1 << 20, Qt::Uninitialized);
    for (qint64 i = 0; i < largeSize / block.size(); ++i) {
      block.fill(static_cast<char>(i));
      QCOMPARE(file.write(block), block.size());
    }
  }

  void confirmFilesWhenAsked() {
    auto* poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, [this, poll] {
      Form3* selection = m_program->application->install().selection();
      if (selection == nullptr || !selection->isVisible()) return;
      poll->deleteLater();
      QTest::mouseClick(selection->Command1, Qt::LeftButton);
    });
    poll->start(20);
  }

 private Q_SLOTS:
  void init() {
    m_program = std::make_unique<Program>();
    QCOMPARE(m_program->startHeadset(), QString());
    m_backups = headset().workPath(u"备份 100% \"x\" o'y 🎮"_s);
    QVERIFY(QDir().mkpath(m_backups));
    SamplePackage sample;
    sample.package = package;
    m_apk = headset().workPath(u"sample.apk"_s);
    QCOMPARE(sample.write(m_apk), QString());
    QCOMPARE(headset().adb({u"install"_s, m_apk}).exitCode, 0);
  }
  void cleanup() { m_program.reset(); }

  void thereAndBack() {
    QVERIFY(m_program->start(QString()));
    writeLarge(obbFolder + u"/main.1.obb"_s);
    QVERIFY(headset().writeDeviceFile(obbFolder + u"/patch 2.obb"_s, "patch"));
    for (int i = 0; i < 2000; ++i) {
      const QString name = u"%1/files/存档 %2/save.%3"_s.arg(dataFolder).arg(i % 40).arg(i);
      QVERIFY(headset().writeDeviceFile(name, QByteArray::number(i)));
    }
    const auto data = tree(headset().devicePath(dataFolder));
    const auto obb = tree(headset().devicePath(obbFolder));
    const QByteArray apk = hashOf(installedFile());
    QVERIFY(data.size() == 2000 && obb.size() == 2 && !apk.isEmpty());

    const QString saved = m_backups + u"/My Game.apk"_s;
    {
      Apps apps(form());
      desktop().savePaths = QStringList{m_backups + u"/My Game"_s};
      desktop().folders = QStringList{m_backups, m_backups + u'/' + package};
      QStringList progress;
      auto* text = apps.window.busyStrip->findChild<Label*>(u"busyText"_s);
      QTimer watch;
      connect(&watch, &QTimer::timeout, this, [&] { progress << text->Caption(); });
      watch.start(50);
      run(apps.window.mnu_backup_apk_obb);
      QVERIFY(!progress.filter(u" / 300.0 MiB"_s).isEmpty());
      QCOMPARE(desktop().boxTexts(), QStringList{u"请稍候，这可能需要一段时间..."_s});
      QCOMPARE(hashOf(saved), apk);
      QCOMPARE(tree(m_backups + u'/' + package), obb);
      QDir().rename(m_backups, m_backups + u"-2"_s);
      QVERIFY(QDir().mkpath(m_backups));
      run(apps.window.mnu_NonRootBackup);
      // All went well; that the number of files ends in a nought is what this box is about.
      QCOMPARE(desktop().boxTexts(), QStringList{u"找不到应用数据"_s});
      QCOMPARE(tree(m_backups + u'/' + package), data);
      run(apps.window.mnu_uninstall);
      QCOMPARE(lastBox(), u"成功，APK已卸载"_s);
    }
    QVERIFY(!headset().packages().contains(package));
    QVERIFY(tree(headset().devicePath(dataFolder)).isEmpty() &&
            tree(headset().devicePath(obbFolder)).isEmpty());

    QVERIFY(m_program->start(m_backups + u"-2/My Game.apk"_s));
    QTRY_VERIFY_WITH_TIMEOUT(form().Command1->isEnabled(), 10'000);
    confirmFilesWhenAsked();
    QTest::mouseClick(form().Command1, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!form().turn().taken(), 60'000);
    Apps apps(form());
    run(apps.window.mnu_Restore);
    QVERIFY2(lastBox().contains(u"2000 files pushed"_s), qPrintable(lastBox()));
    QCOMPARE(hashOf(installedFile()), apk);
    QCOMPARE(tree(headset().devicePath(obbFolder)), obb);
    QCOMPARE(tree(headset().devicePath(dataFolder)), data);
  }

  void cableOutInTheMiddle() {
    QVERIFY(m_program->start(QString()));
    const QString large = obbFolder + u"/main.1.obb"_s;
    QVERIFY(headset().writeDeviceFile(large, "x"));
    QVERIFY(QFile::resize(headset().devicePath(large), qint64(4) << 30));
    QVERIFY(QDir(m_backups).mkdir(package));
    QFile older(m_backups + u'/' + package + u"/main.0.obb"_s);
    QVERIFY(older.open(QIODevice::WriteOnly) && older.write("older") == 5);
    older.close();
    Apps apps(form());
    desktop().savePaths = QStringList{m_backups + u"/sample.apk"_s};
    apps.window.mnu_backup_apk_obb->trigger();
    const QString coming = m_backups + u'/' + package + u"/main.1.obb"_s;
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(coming).size() > 0, 10'000);
    headset().stop();
    QTRY_VERIFY_WITH_TIMEOUT(!form().turn().taken(), 20'000);
    QCOMPARE(hashOf(m_backups + u"/sample.apk"_s), hashOf(m_apk));
    QCOMPARE(tree(m_backups + u'/' + package).keys(), QStringList{u"/main.0.obb"_s});
    QVERIFY2(lastBox().contains(u"原有的备份没有改变"_s), qPrintable(lastBox()));
  }

  void placesThatCannotTakeABackup_data() {
    QTest::addColumn<QString>("place");
    QTest::newRow("full disk") << u"full"_s;
    QTest::newRow("no permission") << u"closed"_s;
    QTest::newRow("long path") << u"long"_s;
  }
  void placesThatCannotTakeABackup() {
    QFETCH(QString, place);
    QVERIFY(m_program->start(QString()));
    QVERIFY(headset().writeDeviceFile(dataFolder + u"/save"_s, QByteArray(4 << 20, 's')));
    QString folder = m_backups + u"/place"_s;
    QVERIFY(QDir().mkpath(folder));
    if (place == u"full"_s) {
      // Only the superuser can make a small disk.
      if (QProcess::execute(u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=1m"_s, u"tmpfs"_s, folder}) !=
          0)
        QSKIP("no disk of its own for this test");
    } else if (place == u"closed"_s) {
      folder = u"/proc/sys/kernel"_s;
    } else {
      for (int i = 0; i < 4; ++i) folder += u'/' + QString(80, u'l');
      QVERIFY(QDir().mkpath(folder));
    }
    Apps apps(form());
    if (place != u"closed"_s) {
      QFile older(folder + u"/g.apk"_s);
      QVERIFY(older.open(QIODevice::WriteOnly) && older.write("older") == 5);
      older.close();
    }
    desktop().savePaths = QStringList{folder + u"/g.apk"_s};
    desktop().folders = QStringList{folder};
    run(apps.window.mnu_NonRootBackup);
    const QString told = lastBox();
    const bool copied = tree(folder + u'/' + package) == tree(headset().devicePath(dataFolder));
    const QStringList left = QDir(folder).entryList({package + u'*'}, QDir::AllEntries);
    run(apps.window.mnu_backup_apk);
    const QString toldOfPackage = lastBox();
    const QByteArray saved = hashOf(folder + u"/g.apk"_s);
    if (place == u"full"_s) QProcess::execute(u"umount"_s, {folder});
    QCOMPARE(copied, place == u"long"_s);
    QCOMPARE(saved, place == u"closed"_s ? QByteArray() : hashOf(m_apk));
    if (copied) return;
    QVERIFY2(told.contains(u"adb: error: "_s), qPrintable(told));
    if (place == u"full"_s) QCOMPARE(left, QStringList{package + u".partial"_s});
    if (place == u"closed"_s) QVERIFY2(toldOfPackage.contains(u"adb: error: "_s), qPrintable(toldOfPackage));
  }

  void rowsThatAreNoApp() {
    QVERIFY(m_program->start(QString()));
    for (const QString& name : {u"Package Name"_s, u"com.example.gone"_s}) {
      Apps apps(form(), name);
      if (name.contains(u' ')) apps.window.MSFlexGrid1->setRow(0);
      desktop().savePaths = QStringList{m_backups + u"/x"_s};
      desktop().folders = QStringList{m_backups, m_backups};
      run(apps.window.mnu_backup_apk);
      QCOMPARE(desktop().boxTexts().size(), 2);
      QVERIFY(desktop().boxTexts()[0].contains(u"设备上没有这个应用"_s));
      QVERIFY(lastBox().startsWith(u"adb: error: "_s));
      run(apps.window.mnu_NonRootBackup);
      QCOMPARE(lastBox(), u"找不到应用程序数据！"_s);
      run(apps.window.mnu_Restore);
      QCOMPARE(lastBox(), u"没有找到备份！"_s);
      run(apps.window.mnu_startAPK);
      QVERIFY2(lastBox().contains(u"No activities found"_s), qPrintable(lastBox()));
      QCOMPARE(m_program->commands(u"monkey"_s).size(), 2);
      run(apps.window.mnu_uninstall);
      QVERIFY2(lastBox().contains(u"Failure"_s), qPrintable(lastBox()));
      QVERIFY(QDir(m_backups).isEmpty());
      headset().clearLog();
    }
  }

  void foldersThatHoldNoBackup() {
    QVERIFY(m_program->start(QString()));
    Apps apps(form());
    QVERIFY(QDir(m_backups).mkpath(u"empty"_s) && QDir(m_backups).mkpath(u"other/com.other"_s));
    const QString plain = m_backups + u"/plain/"_s + package;
    QVERIFY(QDir(m_backups).mkdir(u"plain"_s) && QFile::copy(m_apk, plain));
    for (const QString& chosen :
         {plain, m_backups + u"/plain"_s, m_backups + u"/empty"_s, m_backups + u"/other/com.other"_s}) {
      desktop().folders = QStringList{chosen};
      run(apps.window.mnu_Restore);
      QCOMPARE(lastBox(), u"没有找到备份！"_s);
    }
    QCOMPARE(m_program->commands(u"sync"_s), QStringList());
  }

  void anUninstallThatWaitsForEver() {
    QVERIFY(m_program->start(QString()));
    headset().stop();
    QVERIFY(headset().waitForState({}));
    Apps apps(form());
    apps.window.mnu_uninstall->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(apps.window.busyStrip->isVisible(), 5'000);
    QTest::mouseClick(apps.window.busyStrip->findChild<Button*>(u"busyStop"_s), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!form().turn().taken(), 5'000);
    QVERIFY2(lastBox().startsWith(u"已停止 (Stopped)"_s), qPrintable(lastBox()));
  }
};

QTEST_MAIN(OperationsTest)
#include "operations_test.moc"
