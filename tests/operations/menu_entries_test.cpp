#include <QClipboard>
#include <QDir>
#include <QDirIterator>
#include <QGuiApplication>
#include <QTest>

#include "inventory/parser.h"
#include "operations/app_operations.h"
#include "platform/host_style.h"
#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

// The words of the pulls are those of the real tool.
const StandIn::Answer goodFile{{{QString(), u"12345"_s}}, u"x: 1 file pulled, 0 skipped.\n"_s};
const StandIn::Answer goodFolder{{{u"a"_s, u"ab"_s}, {u"sub/b"_s, u"abc"_s}},
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
  /// Answers the questions before the pulls, and the pulls so.
  void behave(const StandIn::Answer& file, const StandIn::Answer& folder) {
    m_adb->answer(u"shell pm path *"_s, u"package:/data/app/x/base.apk\n"_s);
    m_adb->answer(u"shell find *"_s, u"2\n3\n"_s);
    m_adb->answer(u"shell find *base.apk*"_s, u"5\n"_s);
    m_adb->answer(u"pull /sdcard/Android/*"_s, folder);
    m_adb->answer(u"pull *base.apk *"_s, file);
  }
  /// A path in the backups' folder as the dialogs give it.
  QString at(const QString& name) const { return QDir::toNativeSeparators(m_folder + u'/' + name); }
  static void write(const QString& path, const QString& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
  }
  /// All files below the backups' folder with their text, such as "some.app.apk=12345".
  QStringList onDesktop() const {
    QStringList found;
    QDirIterator files(m_folder, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      QFile file(files.next());
      const QString name = files.filePath().mid(m_folder.size() + 1);
      if (file.open(QIODevice::ReadOnly)) found << name + u'=' + QString::fromUtf8(file.readAll());
    }
    found.sort();
    return found;
  }
  void run(QAction* entry) {
    entry->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!m_main->form->turn().taken(), 20'000);
  }

 private Q_SLOTS:
  void init() {
    m_adb = std::make_unique<StandIn>();
    m_main = std::make_unique<MainWindowFixture>();
    const QString name = HostStyle::native().namesNeedEscapes ? u"备份 \"1\" o'x 🎮"_s : u"备份 1 o'x 🎮"_s;
    m_folder = QDir::toNativeSeparators(m_main->filePath(name));
    QVERIFY(QDir().mkpath(m_folder));
    m_window = std::make_unique<Form4>(*m_main->form, m_main->form->turn());
    m_operations = std::make_unique<AppOperations>(*m_main->form, *m_window);
    m_window->prepareLoad();
    const QString stream =
        u"IP3x: some.app \r\napplication-label:A\r\nIP3x: bad;name \r\napplication-label:B\r\n"_s;
    m_window->fill(readInventory(stream));
    m_window->MSFlexGrid1->setRow(1);
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
    const auto row = [](const char* name, const char* entry, const StandIn::Answer& file,
                        const StandIn::Answer& folder, const QStringList& before, const QStringList& after,
                        const QStringList& told, bool presented) {
      QTest::newRow(name) << QString::fromLatin1(entry) << file << folder << before << after << told
                          << presented;
    };
    const StandIn::Answer none;
    const QString saved = u"some.app.apk=12345"_s;
    const QString older = u"some.app.apk=older"_s;
    const QString replace = u"已存在"_s;
    const QString chill = u"请稍候，这可能需要一段时间..."_s;
    const QStringList copied = {u"some.app/a=ab"_s, u"some.app/sub/b=abc"_s};
    const QStringList stale = {u"some.app/a=old"_s, u"some.app/z=old"_s};
    const QStringList kept = {u"some.app.old/a=old"_s, u"some.app.old/z=old"_s};

    row("package", "mnu_backup_apk", goodFile, none, {}, {saved}, {}, true);
    row("package over an older one, beside a taken name", "mnu_backup_apk", goodFile, none,
        {older, u"some.app.apk.old=mine"_s}, {saved, u"some.app.apk.old=mine"_s}, {replace}, true);
    row("package, broken off", "mnu_backup_apk", {{{QString(), u"12"_s}}, u"[ 30%] x\n"_s}, none, {older},
        {older, u"some.app.apk.partial=12"_s}, {replace, u"[ 30%] x"_s}, false);
    row("package, too short", "mnu_backup_apk", {{{QString(), u"123"_s}}, goodFile.reply}, none, {older},
        {older, u"some.app.apk.partial=123"_s},
        {replace, u"设备 (headset): 5 bytes\r\n备份 (backup): 3 bytes"_s}, false);
    row("package, refused", "mnu_backup_apk", {{}, u"adb: error: cannot create 'x': Permission denied\n"_s},
        none, {older}, {older}, {replace, u"Permission denied"_s}, false);

    row("with files, there being older ones", "mnu_backup_apk_obb", goodFile, goodFolder, stale,
        QStringList{saved} + kept + copied, {chill}, true);
    row("no files", "mnu_backup_apk_obb", goodFile, noFolder, stale, QStringList{saved} + stale, {chill},
        true);
    row("files broken off", "mnu_backup_apk_obb", goodFile, {{{u"a"_s, u"a"_s}}, {}}, stale,
        QStringList{saved, u"some.app.partial/a=a"_s} + stale, {chill, u"some.app.partial"_s}, true);
    row("one file lacks", "mnu_backup_apk_obb", goodFile, {{{u"a"_s, u"ab"_s}}, goodFolder.reply}, {},
        {saved, u"some.app.partial/a=ab"_s},
        {chill, u"设备 (headset): 2 files, 5 bytes\r\n备份 (backup): 1 files, 2 bytes"_s}, true);

    row("data, there being older ones", "mnu_NonRootBackup", none, goodFolder, stale, kept + copied, {},
        true);
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
    behave(file, folder);
    for (const QString& there : before) write(at(there.section(u'=', 0, 0)), there.section(u'=', 1));
    desktop().savePaths = QStringList{at(u"some.app"_s)};
    desktop().folders = QStringList{m_folder};
    run(m_window->findChild<QAction*>(entry));
    after.sort();
    QCOMPARE(onDesktop(), after);
    QCOMPARE(desktop().boxTexts().size(), told.size());
    for (qsizetype i = 0; i < told.size(); ++i)
      QVERIFY2(desktop().boxTexts()[i].contains(told[i]), qPrintable(desktop().boxTexts()[i]));
    QCOMPARE(desktop().beeps, presented ? 1 : 0);
    QCOMPARE(desktop().opened.size(), presented ? 1 : 0);
    if (presented) QCOMPARE(QDir(desktop().opened[0].toLocalFile()), QDir(m_folder));
  }

  void stopInTheMiddle() {
    behave({{{QString(), u"12"_s}}, {}, true}, {});
    write(at(u"g.apk"_s), u"older"_s);
    desktop().savePaths = QStringList{at(u"g.apk"_s)};
    m_window->show();
    m_window->mnu_backup_apk->trigger();
    auto* stop = m_window->busyStrip->findChild<Button*>(u"busyStop"_s);
    QTRY_VERIFY_WITH_TIMEOUT(stop->isVisible() && onDesktop().contains(u"g.apk=12"_s), 10'000);
    QTRY_VERIFY(
        m_window->busyStrip->findChild<Label*>(u"busyText"_s)->Caption().contains(u"2 bytes / 5 bytes"_s));
    // A second entry is refused meanwhile.
    m_window->mnu_uninstall->trigger();
    QTest::mouseClick(stop, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_main->form->turn().taken(), 5'000);
    QCOMPARE(onDesktop(), (QStringList{u"g.apk.partial=12"_s, u"g.apk=older"_s}));
    QVERIFY(desktop().boxTexts().last().startsWith(u"已停止 (Stopped)"_s));
    QVERIFY(!m_adb->calls().join(u' ').contains(u"uninstall"_s));
    QVERIFY(!m_window->busyStrip->inView());
  }

  void namesOfTheSaveDialog() {
    behave(goodFile, goodFolder);
    write(at(u"taken.apk"_s), u"mine"_s);
    QDir(m_folder).mkdir(u"folder.apk"_s);
    desktop().savePaths = QStringList{at(u"taken"_s), at(u"folder.apk"_s), at(u"none/x.apk"_s)};
    desktop().answers = {BoxAnswer::No};
    run(m_window->mnu_backup_apk);
    // Each is asked again, until the dialog is cancelled.
    QCOMPARE(desktop().saveQuestions.size(), 4);
    QCOMPARE(desktop().saveQuestions[0].suggestedPath, u"some.app"_s);
    QCOMPARE(desktop().saveQuestions[1].suggestedPath, at(u"taken.apk"_s));
    QCOMPARE(onDesktop(), QStringList{u"taken.apk=mine"_s});
    QCOMPARE(m_adb->calls(), QStringList{u"shell pm path some.app"_s});
    QCOMPARE(desktop().beeps, 0);
  }

  void aPackageThatIsCalledLikeItsFile() {
    m_window->MSFlexGrid1->setTextMatrix(1, ColPackage, u"some.apk \r"_s);
    behave(goodFile, goodFolder);
    desktop().savePaths = QStringList{at(u"some.apk"_s), at(u"other"_s)};
    run(m_window->mnu_backup_apk_obb);
    QCOMPARE(onDesktop(), (QStringList{u"other.apk=12345"_s, u"some.apk/a=ab"_s, u"some.apk/sub/b=abc"_s}));
    QCOMPARE(desktop().boxes.size(), 2);
  }

  void namesThatAShellWouldActOn() {
    m_window->MSFlexGrid1->setRow(2);
    for (const QString& name : {u"bad;name"_s, QString()}) {
      m_window->MSFlexGrid1->setTextMatrix(2, ColPackage, name + u" \r"_s);
      for (QAction* entry : {m_window->mnu_backup_apk, m_window->mnu_backup_apk_obb, m_window->mnu_uninstall,
                             m_window->mnu_startAPK, m_window->mnu_NonRootBackup, m_window->mnu_Restore}) {
        desktop().boxes.clear();
        run(entry);
        QVERIFY(desktop().boxTexts().value(desktop().boxes.size() - 1).contains(u"包名不可用"_s));
      }
    }
    QCOMPARE(m_adb->calls(), QStringList());
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
    write(at(u"plain/some.app"_s), u"a file"_s);
    QDir(m_folder).mkpath(u"other/com.other"_s);
    for (const QString& none : {u"plain/some.app"_s, u"plain"_s, u"other"_s, u"other/com.other"_s})
      QCOMPARE(restore(at(none)), u"没有找到备份！"_s);
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
    m_adb->answer(u"uninstall *"_s, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\n"_s);
    const auto press = [this](const QString& cell) {
      m_window->MSFlexGrid1->setTextMatrix(1, ColPackage, cell);
      desktop().boxes.clear();
      run(m_window->mnu_uninstall);
      return desktop().boxTexts().value(0);
    };
    const QString already = u"APK already uninstalled"_s;
    QCOMPARE(press(QString()), already);
    QCOMPARE(m_adb->calls(), QStringList());
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
  }
};

QTEST_MAIN(MenuEntriesTest)
#include "menu_entries_test.moc"
