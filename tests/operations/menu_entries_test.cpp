#include <QClipboard>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include "backups/app_backup.h"
#include "inventory/parser.h"
#include "operations/app_operations.h"
#include "platform/host_style.h"
#include "platform/store_paths.h"
#include "support/files.h"
#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

// The replies to the pulls are the real tool's.
const StandIn::Answer goodFile{{{QString(), u"12345"_s}}, u"x: 1 file pulled, 0 skipped.\n"_s};
const StandIn::Answer goodFolder{{{u"a"_s, u"ab"_s}, {u"sub/b"_s, u"abc"_s}},
                                 u"x/: 2 files pulled, 0 skipped.\n"_s};
const StandIn::Answer goodObb{{{u"main.obb"_s, u"ab"_s}, {u"patch.obb"_s, u"abc"_s}},
                              u"x/: 2 files pulled, 0 skipped.\n"_s};
const StandIn::Answer noFolder{
    {}, u"adb: error: failed to stat remote object '/x': No such file or directory\n"_s};

}  // namespace

class MenuEntriesTest : public QObject {
  Q_OBJECT

  std::unique_ptr<StandIn> m_adb;
  std::unique_ptr<MainWindowFixture> m_main;
  std::unique_ptr<Form4> m_window;
  std::unique_ptr<AppOperations> m_operations;
  QString m_folder;  // of the backups

  RecordingDesktop& desktop() { return m_main->desktop; }
  /// Sets the answers to the questions before the pulls, and to the pulls.
  void behave(const StandIn::Answer& file, const StandIn::Answer& folder) {
    m_adb->answer(u"shell pm path *"_s, u"package:/data/app/x/base.apk\n"_s);
    m_adb->answer(u"shell find *"_s, u"2\n3\n"_s);
    m_adb->answer(u"shell find *base.apk*"_s, u"5\n"_s);
    if (folder.reply == noFolder.reply)
      m_adb->answer(u"shell find */Android/obb/*"_s, u"find: /x: No such file or directory\n"_s);
    m_adb->answer(u"pull /sdcard/Android/*"_s, folder);
    m_adb->answer(u"pull *base.apk *"_s, file);
  }
  /// A path in the backups' folder as the dialogs give it.
  QString at(const QString& name) const { return QDir::toNativeSeparators(m_folder + u'/' + name); }
  /// All files below the backups' folder with their text, such as "some.app.apk=12345".
  QStringList onDesktop() const {
    QStringList found;
    const auto files = tree(m_folder);
    for (auto file = files.begin(); file != files.end(); ++file) {
      if (QFileInfo(at(file.key())).isFile()) found << file.key() + u'=' + QString::fromUtf8(file.value());
    }
    found.sort();
    return found;
  }
  /// Fills the list with one app with this cell.
  void list(const QString& package) {
    m_window->fill(readInventory(u"IP3x: %1\napplication-label:A\r\n"_s.arg(package)));
    m_window->MSFlexGrid1->setRow(1);
  }
  void run(QAction* entry) {
    entry->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!m_main->bench.turn.taken(), 20'000);
  }

 private Q_SLOTS:
  void init() {
    m_adb = std::make_unique<StandIn>();
    m_main = std::make_unique<MainWindowFixture>();
    const QString name = HostStyle::native().namesNeedEscapes ? u"备份 \"1\" o'x 🎮"_s : u"备份 1 o'x 🎮"_s;
    m_folder = QDir::toNativeSeparators(m_main->filePath(name));
    QVERIFY(QDir().mkpath(m_folder));
    m_window = std::make_unique<Form4>(m_main->bench, m_main->bench.turn);
    m_operations = std::make_unique<AppOperations>(m_main->bench, *m_window);
    m_window->prepareLoad();
    list(u"some.app \r"_s);
  }
  void cleanup() {
    m_operations.reset();
    m_window.reset();
    m_main.reset();
    m_adb.reset();
  }

  void backups_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<StandIn::Answer>("file");
    QTest::addColumn<StandIn::Answer>("folder");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QStringList>("told");  // parts of the boxes
    QTest::addColumn<bool>("presented");
    QTest::addColumn<QString>("bin");
    const auto row = [](const char* name, const char* entry, const StandIn::Answer& file,
                        const StandIn::Answer& folder, const QStringList& before, const QStringList& after,
                        const QStringList& told, bool presented, const QString& bin = u"bin"_s) {
      QTest::newRow(name) << QString::fromLatin1(entry) << file << folder << before << after << told
                          << presented << bin;
    };
    const StandIn::Answer none;
    const QString saved = u"some.app.apk=12345"_s;
    const QString older = u"some.app.apk=older"_s;
    const QString replace = u"已存在"_s;
    const QString chill = u"请稍候，这可能需要一段时间..."_s;
    const QStringList copied = {u"some.app/a=ab"_s, u"some.app/sub/b=abc"_s};
    const QStringList stale = {u"some.app/a=old"_s, u"some.app/z=old"_s};
    const QStringList kept = {u"some.app.old/a=old"_s, u"some.app.old/z=old"_s};
    const QStringList copiedObb = {u"some.app/main.obb=ab"_s, u"some.app/patch.obb=abc"_s};
    const QStringList staleObb = {u"some.app/main.obb=old"_s};
    const QStringList oldest = {u"some.app.old/b=oldest"_s};
    const auto in = [](const char* folder, QStringList files) {
      for (QString& file : files) file.prepend(QLatin1String(folder) + u'/');
      return files;
    };

    row("package", "mnu_backup_apk", goodFile, none, {}, {saved}, {}, true);
    row("package over an older one, beside a taken name", "mnu_backup_apk", goodFile, none,
        {older, u"some.app.apk.old=mine"_s}, {saved, u"some.app.apk.old=mine"_s}, {replace}, true);
    row("package, broken off", "mnu_backup_apk", {{{QString(), u"12"_s}}, u"[ 30%] x\n"_s}, none, {older},
        {older, u"some.app.apk.partial=12"_s}, {replace, u"备份没有完成 (The backup is not complete)\r\n"_s},
        false);
    row("package, too short", "mnu_backup_apk", {{{QString(), u"123"_s}}, goodFile.reply}, none, {older},
        {older, u"some.app.apk.partial=123"_s},
        {replace, u"设备 (headset): 5 bytes\r\n备份 (backup): 3 bytes"_s}, false);
    row("package, refused", "mnu_backup_apk", {{}, u"adb: error: cannot create 'x': Permission denied\n"_s},
        none, {older}, {older}, {replace, u"Permission denied"_s}, false);

    row("with files, there being older ones", "mnu_backup_apk_obb", goodFile, goodObb,
        staleObb + QStringList{u"some.app.old/mine=1"_s},
        QStringList{saved, u"some.app.old/mine=1"_s, u"some.app.old2/main.obb=old"_s} + copiedObb, {chill},
        true);
    row("with files, there being data", "mnu_backup_apk_obb", goodFile, goodObb, stale,
        stale + in("second", QStringList{saved} + copiedObb), {chill, u"数据备份"_s}, true);
    row("no files, there being data", "mnu_backup_apk_obb", goodFile, noFolder, stale,
        QStringList{saved} + stale, {chill}, true);
    row("no files", "mnu_backup_apk_obb", goodFile, noFolder, staleObb, QStringList{saved} + staleObb,
        {chill}, true);
    row("files broken off", "mnu_backup_apk_obb", goodFile, {{{u"a"_s, u"a"_s}}, {}}, staleObb,
        QStringList{saved, u"some.app.partial/a=a"_s} + staleObb, {chill, u"some.app.partial"_s}, true);
    row("one file lacks", "mnu_backup_apk_obb", goodFile, {{{u"a"_s, u"ab"_s}}, goodFolder.reply}, {},
        {saved, u"some.app.partial/a=ab"_s},
        {chill, u"设备 (headset): 2 files, 5 bytes\r\n备份 (backup): 1 files, 2 bytes"_s}, true);

    row("data, there being older ones", "mnu_NonRootBackup", none, goodFolder, stale, kept + copied, {},
        true);
    row("data, the third time", "mnu_NonRootBackup", none, goodFolder, oldest + stale,
        in("bin", oldest) + kept + copied, {}, true);
    row("data, the third time, without a waste bin", "mnu_NonRootBackup", none, goodFolder, oldest + stale,
        oldest + copied + QStringList{u"some.app.old2/a=old"_s, u"some.app.old2/z=old"_s}, {}, true, {});
    row("data, there being several older ones", "mnu_NonRootBackup", none, goodFolder,
        oldest + QStringList{u"some.app.old2/c=older"_s} + stale,
        in("bin", oldest) + QStringList{u"bin/some.app.old2/c=older"_s} + kept + copied, {}, true);
    row("data, broken off the third time", "mnu_NonRootBackup", none,
        {{{u"a"_s, u"a"_s}}, u"[ 8%] a: 8%\n"_s}, oldest + stale,
        oldest + stale + QStringList{u"some.app.partial/a=a"_s},
        {u"备份没有完成 (The backup is not complete)\r\n"_s}, true);
    row("data, there being files", "mnu_NonRootBackup", none, goodFolder, staleObb,
        staleObb + in("second", copied), {u"OBB 备份"_s}, true);
    row("data, there being a file", "mnu_NonRootBackup", none, goodFolder, {u"some.app=mine"_s},
        QStringList{u"some.app=mine"_s} + in("second", copied), {u"同名的文件"_s}, true);
    row("data, missing", "mnu_NonRootBackup", none, noFolder, stale, stale, {u"找不到应用程序数据！"_s},
        false);
    row("data, nothing to be listed", "mnu_NonRootBackup", none,
        {{{u"empty/"_s, {}}}, u"x/: 0 files pulled, 0 skipped.\n"_s}, stale, stale,
        {u"找不到应用数据"_s, u"some.app.partial"_s}, true);
    row("data, an error", "mnu_NonRootBackup", none,
        {{}, u"adb: error: failed to get feature set: no devices/emulators found\n"_s}, stale, stale,
        {u"no devices/emulators found"_s}, true);
  }
  void backups() {
    QFETCH(QString, entry);
    QFETCH(StandIn::Answer, file);
    QFETCH(StandIn::Answer, folder);
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(QStringList, told);
    QFETCH(bool, presented);
    QFETCH(QString, bin);
    behave(file, folder);
    for (const QString& name : {u"bin"_s, u"second"_s}) QDir(m_folder).mkdir(name);
    if (!bin.isEmpty()) desktop().wasteBin = m_folder + u'/' + bin;
    for (const QString& there : before)
      QVERIFY(writeFile(at(there.section(u'=', 0, 0)), there.section(u'=', 1).toUtf8()));
    desktop().savePaths = QStringList{at(u"some.app"_s), at(u"second/some.app"_s)};
    desktop().folders = QStringList{m_folder, at(u"second"_s)};
    run(m_window->findChild<QAction*>(entry));
    after.sort();
    QCOMPARE(onDesktop(), after);
    QCOMPARE(desktop().boxTexts().size(), told.size());
    for (qsizetype i = 0; i < told.size(); ++i)
      QVERIFY2(desktop().boxTexts()[i].contains(told[i]) && !desktop().boxTexts()[i].contains(u'%'),
               qPrintable(desktop().boxTexts()[i]));
    QCOMPARE(desktop().beeps, presented ? 1 : 0);
    QCOMPARE(desktop().opened.size(), presented ? 1 : 0);
    // What is said to be kept is there, and nothing else.
    const QString said = m_window->lblNotice->text().section(u"is kept as): "_s, 1).section(u' ', 0, 0);
    QCOMPARE(!said.isEmpty(), after.join(u' ').contains(QRegularExpression(u"\\.old2?/(a|main)"_s)));
    QVERIFY2(said.isEmpty() || QFileInfo::exists(at(said)), qPrintable(said));
    const bool elsewhere = !after.filter(u"second/"_s).isEmpty();
    if (presented)
      QCOMPARE(QDir(desktop().opened[0].toLocalFile()), QDir(elsewhere ? at(u"second"_s) : m_folder));
  }

  void newsAboveTheList() {
    m_window->setNotice(u"standing"_s);
    behave({}, {goodFolder.files, u"x/: 10 files pulled, 0 skipped.\n"_s});
    QVERIFY(writeFile(at(u"some.app/a"_s), "old"));
    desktop().folders = QStringList{m_folder};
    run(m_window->mnu_NonRootBackup);
    QCOMPARE(desktop().boxTexts(), QStringList{u"找不到应用数据"_s});
    const QString news = m_window->lblNotice->text();
    QVERIFY2(
        news.startsWith(u"✓"_s) && news.contains(u"2 files, 5 bytes"_s) && news.contains(u"some.app.old"_s),
        qPrintable(news));
    run(m_window->mnu_startAPK);
    QCOMPARE(m_window->lblNotice->text(), u"⚠ standing"_s);
  }

  void stopInTheMiddle() {
    behave({{{QString(), u"12"_s}}, {}, true}, {});
    QVERIFY(writeFile(at(u"g.apk"_s), "older"));
    desktop().savePaths = QStringList{at(u"g.apk"_s)};
    m_window->show();
    m_window->mnu_backup_apk->trigger();
    auto* stop = m_window->busyStrip->findChild<Button*>(u"busyStop"_s);
    QTRY_VERIFY_WITH_TIMEOUT(stop->isVisible() && onDesktop().contains(u"g.apk=12"_s), 20'000);
    QTRY_VERIFY_WITH_TIMEOUT(
        m_window->busyStrip->findChild<Label*>(u"busyText"_s)->Caption().contains(u"2 bytes / 5 bytes"_s),
        20'000);
    // A second entry is refused meanwhile.
    m_window->mnu_uninstall->trigger();
    QTest::mouseClick(stop, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_main->bench.turn.taken(), 20'000);
    QCOMPARE(onDesktop(), (QStringList{u"g.apk.partial=12"_s, u"g.apk=older"_s}));
    QVERIFY(desktop().boxTexts().last().startsWith(u"已停止 (Stopped)"_s));
    QVERIFY(!m_adb->calls().join(u' ').contains(u"uninstall"_s));
    QVERIFY(!m_window->busyStrip->inView());
  }

  void namesOfTheSaveDialog() {
    behave(goodFile, goodFolder);
    QVERIFY(writeFile(at(u"taken.apk"_s), "mine"));
    QDir(m_folder).mkdir(u"folder.apk"_s);
    desktop().savePaths = QStringList{at(u"taken"_s), at(u"folder.apk"_s), at(u"none/x.apk"_s)};
    desktop().answers = {BoxAnswer::No};
    run(m_window->mnu_backup_apk);
    // Asks again for each until the dialog is cancelled.
    QCOMPARE(desktop().saveQuestions.size(), 4);
    QCOMPARE(desktop().saveQuestions[0].suggestedPath, u"some.app"_s);
    QCOMPARE(desktop().saveQuestions[1].suggestedPath, at(u"taken.apk"_s));
    QCOMPARE(onDesktop(), QStringList{u"taken.apk=mine"_s});
    QCOMPARE(m_adb->calls(), QStringList{u"shell pm path some.app"_s});
    QCOMPARE(desktop().beeps, 0);
  }

  void aPackageThatIsCalledLikeItsFile() {
    list(u"some.apk \r"_s);
    behave(goodFile, goodFolder);
    desktop().savePaths = QStringList{at(u"some.apk"_s), at(u"other"_s)};
    run(m_window->mnu_backup_apk_obb);
    QCOMPARE(onDesktop(), (QStringList{u"other.apk=12345"_s, u"some.apk/a=ab"_s, u"some.apk/sub/b=abc"_s}));
    QCOMPARE(desktop().boxes.size(), 2);
  }

  void namesThatAShellWouldActOn() {
    for (const QString& name : {u"bad;name"_s, QString()}) {
      list(name + u" \r"_s);
      for (QAction* entry : {m_window->mnu_backup_apk, m_window->mnu_backup_apk_obb, m_window->mnu_uninstall,
                             m_window->mnu_startAPK, m_window->mnu_NonRootBackup, m_window->mnu_Restore}) {
        desktop().boxes.clear();
        run(entry);
        QVERIFY(desktop().boxTexts().value(desktop().boxes.size() - 1).contains(u"包名不可用"_s));
      }
    }
    QCOMPARE(m_adb->calls(), QStringList());
  }

  void anEarlierFileStaysWhereSizesCannotBeCompared() {
    behave(goodFile, {});
    m_adb->answer(u"shell find *"_s, u"sh: find: not found\n"_s);
    QVERIFY(writeFile(at(u"some.app.apk"_s), "older"));
    desktop().savePaths = QStringList{at(u"some.app"_s)};
    run(m_window->mnu_backup_apk);
    QCOMPARE(onDesktop(), (QStringList{u"some.app.apk.old=older"_s, u"some.app.apk=12345"_s}));
  }

  void anAppThatIsGone() {
    m_adb->answer(u"pull *"_s, noFolder);
    desktop().savePaths = QStringList{at(u"x"_s)};
    desktop().folders = QStringList{m_folder};
    run(m_window->mnu_backup_apk);
    QVERIFY(desktop().boxTexts().value(0).contains(u"设备上没有这个应用"_s));
    QVERIFY(desktop().boxTexts().value(1).startsWith(u"adb: error: "_s));
    QCOMPARE(onDesktop(), QStringList());
  }

  void restores() {
    const auto restore = [this](const QString& folder) {
      desktop().boxes.clear();
      desktop().folders = QStringList{folder};
      run(m_window->mnu_Restore);
      return desktop().boxTexts().value(0);
    };
    QVERIFY(writeFile(at(u"plain/some.app"_s), "a file"));
    QDir(m_folder).mkpath(u"other/com.other"_s);
    for (const QString& none : {u"plain/some.app"_s, u"plain"_s, u"other"_s, u"other/com.other"_s})
      QCOMPARE(restore(at(none)), u"没有找到备份！"_s);
    QCOMPARE(m_adb->calls(), QStringList());
    // Files of the other backup stay where they are.
    QVERIFY(writeFile(at(u"obb/some.app/main.1.obb"_s), "o"));
    QVERIFY(restore(at(u"obb"_s)).contains(u"OBB"_s));
    QCOMPARE(m_adb->calls(), QStringList());
    // Nor is a half one taken that another run has left since this one started.
    QVERIFY(
        writeFile(at(u"half/some.app/a/b"_s), "h") &&
        writeFile(stateFolder() + u"/journal/1-a-1.json"_s,
                  QJsonDocument({{u"kind"_s, u"copy"_s}, {u"place"_s, at(u"half/some.app"_s)}}).toJson()));
    QVERIFY(restore(at(u"half"_s)).contains(u"没有完成"_s));
    QCOMPARE(m_adb->calls(), QStringList());
    // Files alone can be either; the user does not say that they are data.
    QVERIFY(writeFile(at(u"flat/some.app/main.pak"_s), "p"));
    desktop().answers = {BoxAnswer::No};
    QVERIFY(restore(at(u"flat"_s)).contains(u"没有子文件夹"_s));
    QCOMPARE(m_adb->calls(), QStringList());
    // The copy itself may be chosen, or the folder that it is in.
    QDir(m_folder).mkpath(u"some.app"_s);
    m_adb->answer(u"push *"_s, u"x/: 1 file pushed\n"_s);
    for (const QString& chosen : {m_folder, at(u"some.app"_s)}) {
      QCOMPARE(restore(chosen), u"x/: 1 file pushed\r\n"_s);
      QCOMPARE(m_adb->takeCalls().last(), u"push %1 /sdcard/Android/data/"_s.arg(at(u"some.app"_s)));
    }
  }

  void uninstalls() {
    const auto press = [this](const QString& cell) {
      list(cell);
      desktop().boxes.clear();
      run(m_window->mnu_uninstall);
      return desktop().boxTexts().value(0);
    };
    const QString already = u"APK already uninstalled"_s;
    QCOMPARE(press(QString()), already);
    QCOMPARE(m_adb->calls(), QStringList());
    // A run without an answer, or one that did not reach the headset, may be repeated.
    m_adb->answer(u"uninstall *"_s, QString());
    for (int i = 0; i < 2; ++i) QVERIFY(press(u"a.b \r"_s).contains(u"没有回答"_s));
    m_adb->answer(u"uninstall *"_s, u"adb: no devices/emulators found\n"_s);
    for (int i = 0; i < 2; ++i) QVERIFY(press(u"a.b \r"_s).contains(u"no devices"_s));
    m_adb->answer(u"uninstall *"_s, {{}, u"half an answer\n"_s, true});
    QTimer::singleShot(500, m_window.get(), [this] { Q_EMIT m_window->busyStrip->stopRequested(); });
    QVERIFY(press(u"a.b \r"_s).startsWith(u"已停止"_s));
    m_adb->takeCalls();
    m_adb->answer(u"uninstall *"_s, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\n"_s);
    QVERIFY(press(u"a.b \r"_s).startsWith(u"Failure"_s));
    QCOMPARE(desktop().boxes[0].icon, BoxIcon::Critical);
    QCOMPARE(press(u"a.b \r"_s), already);
    m_adb->answer(u"uninstall *"_s, u"Success\n"_s);
    QCOMPARE(press(u"A.b \r"_s), u"成功，APK已卸载"_s);
    QCOMPARE(desktop().boxes[0].title, u"Info"_s);
    QCOMPARE(press(u"a.b \r"_s), u"成功，APK已卸载"_s);
    QCOMPARE(m_adb->calls(), (QStringList{u"uninstall a.b"_s, u"uninstall A.b"_s, u"uninstall a.b"_s}));
  }

  void launches() {
    const QString aborted = u"  bash arg: -p\n** No activities found to run, monkey aborted.\n"_s;
    const std::tuple<QString, int, bool> cases[] = {
        {u"LAUNCHER"_s, 1, true}, {u"oculus"_s, 2, true}, {u"neither of them"_s, 2, false}};
    for (const auto& [category, calls, works] : cases) {
      m_adb->answer(u"*"_s, aborted);
      m_adb->answer(u'*' + category + u'*', u"Events injected: 1\n"_s);
      run(m_window->mnu_startAPK);
      QCOMPARE(m_adb->calls().size(), calls);
      QCOMPARE(m_adb->takeCalls().last().contains(u"-c com.oculus.intent.category.VR 1"_s), calls == 2);
      QCOMPARE(desktop().boxes.isEmpty(), works);
    }
    QVERIFY(desktop().boxTexts()[0].contains(u"** No activities found to run, monkey aborted."_s));
  }

  void copies() {
    m_window->MSFlexGrid1->setCol(ColPackage);
    m_window->mnuCopy->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"some.app"_s);
    m_window->MSFlexGrid1->setCol(ColAppName);
    m_window->mnuCopy->trigger();
    // The cog stands for its app; a cell without text and the headings change nothing.
    m_window->MSFlexGrid1->setCol(ColMenuIcon);
    m_window->mnuCopy->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"some.app"_s);
    m_window->MSFlexGrid1->setCol(ColVersion);
    QCOMPARE(m_window->SelectedText(), QString());
    m_window->mnuCopy->trigger();
    m_window->MSFlexGrid1->setCol(ColMenuIcon);
    m_window->MSFlexGrid1->setRow(0);
    m_window->mnuCopy->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"some.app"_s);
  }

  /// A whole backup that this computer has no room for, or may not write.
  void wholeBackupsThatTheDesktopRefuses() {
    m_adb->answer(u"shell getprop *"_s, u"Quest\nSERIAL\n"_s);
    m_adb->answer(u"shell for *"_s, u"F 5 1 /data/app/x/base.apk\nend\n"_s);
    m_adb->answer(u"pull *"_s, {{{u"base.apk"_s, u"12"_s}},
                                u"adb: error: cannot write 'base.apk': No space left on device\n"_s});
    const auto backup = [this] {
      desktop().boxes.clear();
      desktop().folders = {m_folder};
      m_window->cmdBackup->click();
      (void)QTest::qWaitFor([this] { return !m_main->bench.turn.taken(); }, 20'000);
      return desktop().boxTexts().join(u'\n');
    };
    QString told = backup();
    QVERIFY2(told.contains(u"not enough room"_s) && told.contains(u"No space left"_s), qPrintable(told));
    QVERIFY(onDesktop().filter(u"backup.json="_s).isEmpty());
    // A file in the folder's place stands in for a read-only one, which does not keep root out.
    QVERIFY(writeFile(at(u"file"_s), "x"));
    const auto turn = m_main->bench.turn.begin();
    BackupRun run(m_main->bench, *m_window->objDOS, at(u"file"_s), {u"Quest"_s, u"SERIAL"_s});
    const QList<BackupOutcome> outcomes = QCoro::waitFor(run.save({{u"some.app"_s, u"A"_s}}));
    QVERIFY2(outcomes.value(0).text().contains(u"cannot be written"_s), qPrintable(outcomes.value(0).text()));
  }
};

QTEST_MAIN(MenuEntriesTest)
#include "menu_entries_test.moc"
