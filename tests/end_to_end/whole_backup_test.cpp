#include <QSignalSpy>

#include "backups/manifest.h"
#include "inventory/parser.h"
#include "operations/app_operations.h"
#include "platform/file_mark.h"
#include "program.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString game = u"com.example.game"_s;
const QString tiny = u"com.example.tiny"_s;
const QString dataFolder = u"/sdcard/Android/data/"_s + game;
const QString emptyFolder = u"/空 $(x) it's/leer"_s;
const QString expansionFolder = u"/sdcard/Android/obb/"_s + game;

/// The installed-apps window with both apps, checked.
struct Apps {
  explicit Apps(Workbench& bench) : window(bench, bench.turn), operations(bench, window) {
    window.prepareLoad();
    window.fill(
        readInventory(u"IP3x: %1 \r\napplication-label:Game: “1/2” 🎮\r\n"
                      "IP3x: %2 \r\napplication-label:Tiny\r\n"_s.arg(game, tiny)));
    window.show();
    window.findChild<QCheckBox*>(u"checkAll"_s)->click();
  }
  Form4 window;
  AppOperations operations;
};

}  // namespace

class WholeBackupTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Program> m_program;
  QString m_folder;

  test::VirtualHeadset& headset() { return m_program->headset; }
  RecordingDesktop& desktop() { return m_program->desktop; }
  QStringList press(Button* button) {
    desktop().boxes.clear();
    button->click();
    (void)QTest::qWaitFor([&] { return !m_program->bench().turn.taken(); }, 60'000);
    return desktop().boxTexts();
  }
  QMap<QString, QByteArray> onHeadset(const QString& folder) { return tree(headset().devicePath(folder)); }
  /// Names can differ on the desktop, where there is no folder for the empty one.
  static QList<QByteArray> contents(QMap<QString, QByteArray> files) {
    files.remove(emptyFolder.mid(1));
    QList<QByteArray> all = files.values();
    std::sort(all.begin(), all.end());
    return all;
  }
  QStringList packageFiles(const QString& package) {
    QStringList names;
    const QString reply = headset().adb({u"shell"_s, u"pm"_s, u"path"_s, package}).output;
    for (const QString& line : reply.split(u'\n', Qt::SkipEmptyParts)) names << line.section(u'/', -1);
    return names;
  }
  /// The backup of `package` in the folder; empty if there is none.
  QString backupOf(const QString& package) const {
    for (const QString& name : QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
      const auto read = manifestIn(m_folder + u'/' + name, manifestName);
      const auto* manifest = std::get_if<BackupManifest>(&read);
      if (manifest != nullptr && manifest->package == package) return m_folder + u'/' + name;
    }
    return {};
  }

  /// Begins a backup over a slow link, and comes back in the middle of the large file.
  void beginSlowly(Apps& apps) {
    headset().setFault(u"bytes_per_second"_s, u"12000000"_s);
    desktop().boxes.clear();
    desktop().folders = {m_folder};
    apps.window.cmdBackup->click();
    QTRY_VERIFY_WITH_TIMEOUT(!found(u"main.1.obb"_s).isEmpty(), 10'000);
  }
  QStringList end() {
    (void)QTest::qWaitFor([&] { return !m_program->bench().turn.taken(); }, 60'000);
    headset().clearFaults();
    (void)headset().waitForDevice();
    return desktop().boxTexts();
  }
  QString found(const QString& name) const {
    QDirIterator files(m_folder, {name}, QDir::Files, QDirIterator::Subdirectories);
    return files.hasNext() ? files.next() : QString();
  }

 private Q_SLOTS:
  void init() {
    m_program = std::make_unique<Program>();
    QCOMPARE(m_program->startHeadset(), QString());
    m_folder = headset().workPath(u"备份 100% \"x\" o'y 🎮"_s);
    QVERIFY(QDir().mkpath(m_folder));
    const auto made = [this](const SamplePackage& sample, const QString& name) {
      const QString path = headset().workPath(name);
      return sample.write(path).isEmpty() ? path : QString();
    };
    const QString base = made({.package = game, .versionCode = 7, .splitRequired = true}, u"base.apk"_s);
    const QString split = made({.package = game, .versionCode = 7, .split = u"config.zh"_s}, u"split.apk"_s);
    QCOMPARE(headset().adb({u"install-multiple"_s, base, split}).exitCode, 0);
    QCOMPARE(headset().adb({u"install"_s, made({.package = tiny}, u"tiny.apk"_s)}).exitCode, 0);
    QVERIFY(headset().writeDeviceFile(expansionFolder + u"/main.1.obb"_s, QByteArray(20 << 20, 'm')));
    QVERIFY(headset().writeDeviceFile(expansionFolder + u"/patch 2.obb"_s, "patch"));
    // Names that some desktop refuses or takes for the same.
    for (const QString& name :
         {u"save"_s, u"Save"_s, u"a:b?.txt"_s, u"con"_s, u"存档 '1'/it's 🎮"_s, u"empty"_s})
      QVERIFY(headset().writeDeviceFile(dataFolder + u"/files/"_s + name,
                                        name == u"empty"_s ? QByteArray() : name.toUtf8()));
    QVERIFY(QDir().mkpath(headset().devicePath(dataFolder + emptyFolder)));
    QVERIFY(m_program->start(QString()));
  }
  void cleanup() { m_program.reset(); }

  void thereAndBack() {
    const auto data = onHeadset(dataFolder);
    const auto obb = onHeadset(expansionFolder);
    QVERIFY(data.size() == 7 && obb.size() == 2);
    {
      Apps apps(m_program->bench());
      desktop().folders = {m_folder};
      QCOMPARE(press(apps.window.cmdBackup), QStringList());
      QVERIFY2(apps.window.lblNotice->text().contains(u"2 / 2"_s), qPrintable(apps.window.lblNotice->text()));
      const QString saved = backupOf(game);
      QVERIFY2(QFileInfo(saved).fileName().startsWith(u"Game_ “1_2” 🎮 1.0 (7) 20"_s), qPrintable(saved));
      QCOMPARE(tree(saved + u"/obb/"_s + game), obb);
      QCOMPARE(contents(tree(saved + u"/data/"_s + game)), contents(data));
      // What is unchanged is not saved twice.
      const QStringList folders = QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
      desktop().folders = {m_folder, m_folder, m_folder, m_folder};
      QCOMPARE(press(apps.window.cmdBackup), QStringList());
      QVERIFY2(apps.window.lblNotice->text().contains(u"2 / 2"_s), qPrintable(apps.window.lblNotice->text()));
      QCOMPARE(QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot), folders);
      QCOMPARE(press(apps.window.cmdCheck), QStringList());
      // One byte differs.
      QFile obbFile(saved + u"/obb/"_s + game + u"/main.1.obb"_s);
      QVERIFY(obbFile.open(QIODevice::ReadWrite) && obbFile.seek(1 << 20) && obbFile.putChar('x'));
      obbFile.close();
      QStringList told = press(apps.window.cmdCheck);
      QVERIFY2(told.value(0).contains(u"main.1.obb"_s) && told[0].contains(u"content has changed"_s),
               qPrintable(told.join(u'\n')));
      QVERIFY(obbFile.open(QIODevice::ReadWrite) && obbFile.seek(1 << 20) && obbFile.putChar('m'));
      obbFile.close();
      told = press(apps.window.cmdUninstall);
      QVERIFY2(told.size() == 1 && told[0].contains(game) && told[0].contains(tiny),
               qPrintable(told.join(u'\n')));
    }
    QVERIFY(packageFiles(game).isEmpty() && packageFiles(tiny).isEmpty() &&
            onHeadset(expansionFolder).isEmpty());

    QVERIFY(!QFileInfo::exists(headset().devicePath(dataFolder)));
    Apps apps(m_program->bench());
    const QSignalSpy progress(&m_program->bench().turn, &Turn::progressed);
    headset().setFault(u"bytes_per_second"_s, u"12000000"_s);
    QStringList told = press(apps.window.cmdRestore);
    headset().clearFaults();
    // What has been sent, of what both backups have.
    QVERIFY(std::any_of(progress.begin(), progress.end(), [](const QVariantList& figures) {
      return figures[0].toLongLong() > 9 << 20 && figures[0].toLongLong() < 19 << 20;
    }));
    QVERIFY2(told.size() == 1 && told[0].contains(u"2"_s), qPrintable(told.join(u'\n')));
    QVERIFY2(apps.window.lblNotice->text().contains(u"2 / 2"_s), qPrintable(apps.window.lblNotice->text()));
    QCOMPARE(packageFiles(game), (QStringList{u"base.apk"_s, u"split_config.zh.apk"_s}));
    QCOMPARE(packageFiles(tiny), QStringList{u"base.apk"_s});
    QCOMPARE(onHeadset(expansionFolder), obb);
    QCOMPARE(onHeadset(dataFolder), data);
    QVERIFY(QDir(headset().devicePath(dataFolder + emptyFolder)).exists());

    // What the app has saved since stays, unless the user says otherwise.
    QVERIFY(headset().writeDeviceFile(dataFolder + u"/files/save"_s, "later"));
    desktop().folders = {backupOf(game), backupOf(game)};
    desktop().answers = {BoxAnswer::Yes, BoxAnswer::No};
    told = press(apps.window.cmdRestore);
    QVERIFY2(told.size() == 2 && told[0].contains(u"1.0 (7)"_s), qPrintable(told.join(u'\n')));
    QCOMPARE(desktop().boxes[1].preselected, BoxAnswer::No);
    QCOMPARE(onHeadset(dataFolder)[u"files/save"_s], QByteArray("later"));
    press(apps.window.cmdRestore);
    QCOMPARE(onHeadset(dataFolder), data);
  }

  void goesOnWhereItBrokeOff() {
    Apps apps(m_program->bench());
    beginSlowly(apps);
    headset().setFault(u"state"_s, u"gone"_s);
    QStringList told = end();
    QVERIFY2(told.value(0).contains(u"0 / 2"_s) && told[0].contains(u"goes on from here"_s),
             qPrintable(told.join(u'\n')));
    QVERIFY(backupOf(game).isEmpty() && !found(recordName).isEmpty());
    desktop().folders = {m_folder};
    told = press(apps.window.cmdCheck);
    QVERIFY2(told.value(0).contains(u"was not completed"_s), qPrintable(told.join(u'\n')));
    // Intact files are not pulled again.
    const QString base = found(u"base.apk"_s);
    const QString mark = fileMark(base);
    const QString split = found(u"split_config.zh.apk"_s);
    const QByteArray content = readFile(split);
    QVERIFY(writeFile(split, QByteArray(content.size(), 'x')));
    beginSlowly(apps);
    // The app writes after its files were listed.
    QVERIFY(headset().writeDeviceFile(dataFolder + u"/files/save"_s, "written meanwhile"));
    QVERIFY(headset().writeDeviceFile(dataFolder + u"/files/more"_s, "new"));
    QCOMPARE(end(), QStringList());
    QVERIFY2(apps.window.lblNotice->text().contains(u"2 / 2"_s), qPrintable(apps.window.lblNotice->text()));
    QCOMPARE(QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 2);
    QCOMPARE(fileMark(base), mark);
    QCOMPARE(readFile(split), content);
    QCOMPARE(tree(backupOf(game) + u"/obb/"_s + game), onHeadset(expansionFolder));
    QCOMPARE(contents(tree(backupOf(game) + u"/data/"_s + game)), contents(onHeadset(dataFolder)));
    QVERIFY(found(recordName).isEmpty());
    desktop().folders = {m_folder};
    QCOMPARE(press(apps.window.cmdCheck), QStringList());
  }

  void anAppThatGoesMeanwhile() {
    Apps apps(m_program->bench());
    beginSlowly(apps);
    QCOMPARE(headset().adb({u"uninstall"_s, game}).exitCode, 0);
    const QStringList told = end();
    QVERIFY2(told.value(0).contains(u"1 / 2"_s) && told[0].contains(u"does not have this app"_s),
             qPrintable(told.join(u'\n')));
    QVERIFY(backupOf(game).isEmpty() && !backupOf(tiny).isEmpty());
  }

  void stopped() {
    Apps apps(m_program->bench());
    beginSlowly(apps);
    Q_EMIT apps.window.busyStrip->stopRequested();
    const QStringList told = end();
    QVERIFY2(told.value(0).contains(u"stopped"_s), qPrintable(told.join(u'\n')));
    QVERIFY(backupOf(game).isEmpty() && backupOf(tiny).isEmpty());
  }

  void restoresThatFail() {
    Apps apps(m_program->bench());
    desktop().folders = {m_folder};
    QCOMPARE(press(apps.window.cmdBackup), QStringList());
    QString saved = backupOf(game);
    const auto restored = [&](const QString& folder) {
      desktop().folders = {folder};
      return press(apps.window.cmdRestore).join(u'\n');
    };
    // A damaged one is saved anew.
    QVERIFY(
        writeFile(saved + u"/apk/base.apk"_s, QByteArray(readFile(saved + u"/apk/base.apk"_s).size(), 'x')));
    desktop().folders = {m_folder};
    QCOMPARE(press(apps.window.cmdBackup), QStringList());
    QCOMPARE(QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 3);
    QVERIFY(QDir(saved).removeRecursively());
    saved = backupOf(game);
    // The package of another app under a manifest that fits its files.
    const QByteArray manifest = readFile(backupOf(tiny) + u"/backup.json"_s);
    const QString other = headset().workPath(u"other"_s);
    QVERIFY(writeFile(other + u"/apk/base.apk"_s, readFile(backupOf(tiny) + u"/apk/base.apk"_s)));
    QVERIFY(writeFile(other + u"/backup.json"_s,
                      QByteArray(manifest).replace(tiny.toUtf8(), "com.example.other")));
    headset().clearLog();
    QString told = restored(other);
    QVERIFY2(told.contains(u"another app's"_s) && told.contains(tiny), qPrintable(told));
    QVERIFY(m_program->commands(u"install"_s).isEmpty());

    headset().setFault(u"storage_free_bytes"_s, u"9000000"_s);
    told = restored(saved);
    QVERIFY2(told.contains(u"there may not be enough space"_s) && told.contains(u"not all of it came"_s),
             qPrintable(told));
    QCOMPARE(desktop().boxes[0].preselected, BoxAnswer::No);
    headset().clearFaults();

    // Without its splits it is refused, and the rest is not begun.
    QVERIFY(QDir(saved).exists());
    QVERIFY(QFile::copy(saved + u"/apk/base.apk"_s, m_folder + u"/alone.apk"_s));
    for (const QString& name : {QFileInfo(saved).fileName(), QFileInfo(backupOf(tiny)).fileName()})
      QVERIFY(QDir(m_folder).rename(name, headset().workPath(name)));
    QVERIFY(writeFile(m_folder + u'/' + game + u"/other.obb"_s, "other"));
    told = restored(m_folder);
    QVERIFY2(told.contains(u"INSTALL_FAILED_MISSING_SPLIT"_s), qPrintable(told));
    QVERIFY(!onHeadset(expansionFolder).contains(u"other.obb"_s));
  }

  void copiesOfTheMenu() {
    Apps apps(m_program->bench());
    desktop().savePaths = {m_folder + u"/Tiny"_s};
    QVERIFY(headset().writeDeviceFile(u"/sdcard/Android/obb/%1/main.obb"_s.arg(tiny), "obb"));
    for (int row = 1; apps.window.SelectedPackage() != tiny; ++row) apps.window.MSFlexGrid1->setRow(row);
    apps.window.mnu_backup_apk_obb->trigger();
    QVERIFY(end().size() == 1 && QFileInfo::exists(m_folder + u"/Tiny.apk"_s));
    QCOMPARE(headset().adb({u"uninstall"_s, tiny}).exitCode, 0);
    desktop().folders = {m_folder};
    desktop().answers = {BoxAnswer::Yes};
    const QStringList told = press(apps.window.cmdRestore);
    // The package and its files are one backup.
    QVERIFY2(
        told.value(0).contains(u"Example 1.0 (1)"_s) && told[0].contains(u"(expansion files): 1 files"_s),
        qPrintable(told.join(u'\n')));
    QCOMPARE(packageFiles(tiny), QStringList{u"base.apk"_s});
    desktop().savePaths = {m_folder + u"/Game"_s};
    for (int row = 1; apps.window.SelectedPackage() != game; ++row) apps.window.MSFlexGrid1->setRow(row);
    desktop().boxes.clear();
    apps.window.mnu_backup_apk->trigger();
    QVERIFY2(end().value(0).contains(u"This app has 2 files"_s),
             qPrintable(desktop().boxTexts().join(u'\n')));
    QCOMPARE(onHeadset(u"/sdcard/Android/obb/"_s + tiny)[u"main.obb"_s], QByteArray("obb"));
  }

  void anotherHeadset() {
    Apps apps(m_program->bench());
    apps.window.noteRead({u"Quest 2"_s, u"OTHER"_s});
    desktop().folders = {m_folder};
    desktop().answers = {BoxAnswer::No, BoxAnswer::No};
    QStringList told = press(apps.window.cmdBackup);
    QVERIFY2(told.size() == 1 && told[0].contains(u"OTHER"_s), qPrintable(told.join(u'\n')));
    QVERIFY2(apps.window.lblRead->text().contains(u"Another headset answers"_s),
             qPrintable(apps.window.lblRead->text()));
    QVERIFY(QDir(m_folder).isEmpty());
    apps.window.MSFlexGrid1->setRow(1);
    headset().clearLog();
    apps.window.mnu_startAPK->trigger();
    told = end();
    QVERIFY2(told.last().contains(u"OTHER"_s) && m_program->commands(u"monkey"_s).isEmpty(),
             qPrintable(told.join(u'\n')));
  }
};

QTEST_MAIN(WholeBackupTest)
#include "whole_backup_test.moc"
