#include <QDir>
#include <QTest>
#include <functional>

#include "app/application.h"
#include "inventory/parser.h"
#include "platform/command_line.h"
#include "platform/host_style.h"
#include "support/stand_in.h"
#include "ui/own_settings.h"
#include "ui/recording_desktop.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// What the tools print for a headset that has the package.
const std::pair<QString, QString> replies[] = {
    {u"d badging *"_s,
     u"package: name='com.example.game' versionCode='121' versionName='1.2'\napplication-label:'Game'\n"_s},
    {u"devices"_s, u"List of devices attached\n1WMHH8325K1147\tdevice\n\n"_s},
    {u"shell echo *"_s, u"/sdcard\n"_s},
    {u"shell df *"_s, u"Filesystem Size Used Avail Use% Mounted on\n/dev/fuse 109G 12G 97G 12% /s\n"_s},
    {u"shell dumpsys *"_s,
     u"    versionCode=121 minSdk=29\n      runtime permissions:\n"
     "        android.permission.CAMERA: granted=true\n"
     "        android.permission.RECORD_AUDIO: granted=false\n"_s},
    {u"install *"_s, u"Performing Streamed Install\nSuccess\n"_s},
    {u"shell ls *"_s, u"ls: /sdcard/Android/obb/com.example.game: No such file or directory\n"_s},
    {u"shell pm list packages"_s, u"package:com.example.game\n"_s},
    {u"uninstall *"_s, u"Success\n"_s},
    {u"shell pm uninstall *"_s, u"Success\n"_s},
    {u"shell pm path *"_s, u"package:/data/app/some.app-1/base.apk\n"_s},
    {u"shell pm revoke *"_s, QString()},
    {u"shell find *"_s, u"5\n"_s},
    {u"shell monkey *"_s, u"** No activities found to run, monkey aborted.\n"_s},
    {u"push *"_s, u"1 file pushed\n"_s},
};

}  // namespace

/// The whole program from its start to its end, and every command line with which it starts a tool.
class CommandLinesTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_home;
  QString m_folder;  // of the package and the backups, as the desktop writes it
  OwnSettings m_settings{m_home.filePath(u"config"_s)};
  StandIn m_tools;
  RecordingDesktop m_desktop;
  int m_ends = 0;
  std::unique_ptr<Application> m_program;

  apkinfo& form() { return m_program->mainWindow(); }
  Workbench& bench() { return m_program->bench(); }
  Form4& apps() { return m_program->installedApps().window(); }

  QString at(const QString& name) const { return QDir::toNativeSeparators(m_folder + u'/' + name); }

  /// What the system hands over when a tool is started with `line`, which is written as for Windows.
  QString handedOver(QString line) const {
    const bool windows = HostStyle::native().separator == u'\\';
    if (!windows) line.replace(u'\\', u'/').remove(u".exe"_s);
    const QString tools = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
    line.replace(windows ? u"C:\\tools"_s : u"C:/tools"_s, tools);
    line.replace(windows ? u"D:\\games"_s : u"D:/games"_s, m_folder);
    return windows ? line : splitCommandLine(line).join(u' ');
  }

  void settle() { QTRY_VERIFY_WITH_TIMEOUT(!bench().turn.taken(), 60'000); }
  void press(QPushButton* button) {
    button->setEnabled(true);
    button->click();
    settle();
  }
  void choose(QAction* entry) {
    m_desktop.savePaths = QStringList{at(u"some.app"_s)};
    m_desktop.folders = QStringList{m_folder};
    entry->trigger();
    settle();
  }

  void start(const QString& package = u"my game.apk"_s) {
    m_program = std::make_unique<Application>(m_desktop, [this] { ++m_ends; });
    form().Timer3->setInterval(std::chrono::hours(1));  // polls only when called
    m_program->start(at(package));
    QTRY_VERIFY_WITH_TIMEOUT(form().isVisible(), 30'000);
    QVERIFY(QTest::qWaitForWindowActive(&form()));
  }

  void installWithFiles() {
    form().Check1->setValue(1);
    form().Command1->click();
    QTRY_VERIFY(m_program->install().selection() != nullptr && m_program->install().selection()->isVisible());
    QTest::mouseClick(m_program->install().selection()->Command1, Qt::LeftButton);
    settle();
  }

  void installAlone() {
    for (const QString& name : {u"main.1.obb"_s, u"my patch.obb"_s}) QVERIFY(QFile::remove(at(name)));
    form().Check1->setValue(0);
    press(form().Command1);
  }

  void type(const QString& text) {
    form().Text1->setText(text);
    press(form().Command7);
  }

  void saveReport() {
    m_desktop.savePaths = {m_home.filePath(u"report"_s)};
    form().saveReport->click();
    QTRY_VERIFY(form().statusLine->text().contains(u"Report saved"_s));
  }

  void openList() {
    press(form().Command9);
    apps().fill(readInventory(u"IP3x: some.app \r\napplication-label:A\r\n"_s));
    apps().MSFlexGrid1->setRow(1);
  }

  void changePermissions() {
    choose(apps().mnu_Permissions);
    auto* window = apps().findChild<Form8*>();
    QTRY_VERIFY(window->isVisible());
    for (const size_t row : {1, 2}) {
      window->Check1[row]->click();
      settle();
      QCOMPARE(window->lblNotice->Caption(), QString());
    }
    window->close();
  }

  void end() {
    apps().close();
    form().Check2->setValue(1);
    form().close();
    QTRY_COMPARE(m_ends, 1);
  }

 private Q_SLOTS:
  void initTestCase() {
    m_folder = QDir::toNativeSeparators(m_home.filePath(u"我的 游戏 100% & (1)"_s));
    qputenv("XDG_CACHE_HOME", m_home.filePath(u"cache"_s).toUtf8());
    for (const QString& name : {u"my game.apk"_s, u"main.1.obb"_s, u"my patch.obb"_s}) {
      QVERIFY(QDir().mkpath(m_folder));
      QFile file(at(name));
      QVERIFY(file.open(QIODevice::WriteOnly) && file.write("x") == 1);
    }
    for (const auto& [call, reply] : replies) m_tools.answer(call, reply);
    m_tools.answer(u"pull /data/*"_s, {{{QString(), u"12345"_s}}, u"x: 1 file pulled\n"_s});
    m_tools.answer(u"pull /sdcard/*"_s, {{{u"a"_s, u"12345"_s}}, u"x: 1 file pulled\n"_s});
  }

  void noReadablePackage() {
    const QString unreadable =
        u"\r\n该文件不是可读的安装包 (This file is no readable package): W/zip: bad\r\n"_s;
    const QString unnamed =
        u"\r\n文件名不是 UTF-8，无法交给工具 (The name is not UTF-8 and cannot be handed on to a tool)\r\n"_s;
    for (const auto& [name, words] : {std::pair(u"my game.apk"_s, unreadable),
                                      std::pair(u"my \ufffd\ufffd.apk"_s, unreadable + unnamed)}) {
      m_tools.answer(u"d badging *"_s, u" \nW/zip: bad\nERROR: dump failed\n"_s);
      m_tools.answer(u"shell dumpsys package*"_s, u"versionCode=32 minSdk=29\n"_s);
      m_tools.takeCalls();
      start(name);
      QVERIFY(form().txtOutputs->Text().startsWith(u"\r\n未安装\r\n"_s));
      QVERIFY(form().txtOutputs->Text().endsWith(words));
      QVERIFY(!form().Command4->isEnabled());
      QCoro::waitFor(m_program->watcher().Timer3_Timer());
      QVERIFY(form().Command1->isEnabled() && !form().Command4->isEnabled());
      QCOMPARE(form().Label6->Caption(), u"未安装"_s);
      QCOMPARE(m_tools.calls().filter(u"dumpsys"_s), QStringList());
      m_program.reset();
    }
  }

  void fromStartToEnd() {
    const QString notes =
        u"* daemon not running; starting now at tcp:5037\n* daemon started successfully\n"_s;
    for (const auto& [call, reply] : replies) m_tools.answer(call, notes + reply);
    m_tools.takeCalls();
    const QString adb = u"\"C:\\tools\\adb.exe\" "_s;
    const QString storage = adb + u"shell echo $EXTERNAL_STORAGE"_s;
    const QString list = adb + u"shell ls -Ral /sdcard/Android/obb/com.example.game"_s;
    const QString remove = adb + u"shell rm -r /sdcard/Android/obb/com.example.game"_s;
    const QString free = adb + u"shell df -h /sdcard"_s;
    const QString dumpsys = adb + u"shell dumpsys package com.example.game"_s;
    const QString packages = adb + u"shell pm list packages"_s;
    const QString path = adb + u"shell pm path some.app"_s;
    const QString sizes = adb + u"shell find \"'%1'\" -type f -exec stat -c %s {} +"_s;
    const QString packageSize = QString(sizes).replace(u"%1"_s, u"/data/app/some.app-1/base.apk"_s);
    const QString obbSizes = QString(sizes).replace(u"%1"_s, u"/sdcard/Android/obb/some.app"_s);
    const QString dataSizes = QString(sizes).replace(u"%1"_s, u"/sdcard/Android/data/some.app"_s);
    const QString pull = adb + u"pull \"/data/app/some.app-1/base.apk\" \"D:\\games\\some.app.apk\""_s;
    const QString monkey = adb + u"shell monkey -p some.app -c "_s;

    const struct {
      const char* name;
      std::function<void()> act;
      QStringList lines;
    } steps[] = {
        {"start",
         [this] { start(); },
         {u"\"C:\\tools\\aapt.exe\" d badging \"D:\\games\\my game.apk\""_s, storage, free, dumpsys}},
        {"poll",
         [this] { QCoro::waitFor(m_program->watcher().Timer3_Timer()); },
         {adb + u"devices"_s, dumpsys}},
        {"install with files",
         [this] { installWithFiles(); },
         {adb + u"install -r -g \"D:\\games\\my game.apk\""_s, storage, list, storage, remove, storage, list,
          storage,
          adb + u"push \"D:\\games\\\\main.1.obb\" /sdcard/Android/obb/com.example.game/main.1.obb"_s,
          storage, list, storage,
          adb + u"push \"D:\\games\\\\my patch.obb\" "
                "\"/sdcard/Android/obb/com.example.game/my patch.obb\""_s,
          storage, free, list}},
        {"install",
         [this] { installAlone(); },
         {adb + u"install -r \"D:\\games\\my game.apk\""_s, storage, free}},
        {"uninstall", [this] { press(form().Command4); }, {packages, adb + u"uninstall com.example.game"_s}},
        {"uninstall and keep the data",
         [this] { press(form().Command5); },
         {packages, adb + u"shell pm uninstall -k com.example.game"_s, storage, remove}},
        {"typed",
         [this] { type(u" shell \"ls  /sdcard\"  '*' "_s); },
         {adb + u" shell \"ls  /sdcard\"  '*' "_s}},
        {"report", [this] { saveReport(); }, {adb + u"version"_s}},
        {"list", [this] { openList(); }, {u"adb shell \"pm list packages -3 |wc -l\""_s}},
        {"backup", [this] { choose(apps().mnu_backup_apk); }, {path, packageSize, pull}},
        {"backup with files",
         [this] { choose(apps().mnu_backup_apk_obb); },
         {path, packageSize, pull, obbSizes,
          adb + u"pull \"/sdcard/Android/obb/some.app\" \"D:\\games\\\\some.app\""_s}},
        {"launch",
         [this] { choose(apps().mnu_startAPK); },
         {monkey + u"android.intent.category.LAUNCHER 1 "_s, monkey + u"com.oculus.intent.category.VR 1 "_s}},
        {"backup of the data",
         [this] { choose(apps().mnu_NonRootBackup); },
         {dataSizes, adb + u"pull \"/sdcard/Android/data/some.app\" \"D:\\games\""_s}},
        {"restore",
         [this] { choose(apps().mnu_Restore); },
         {dataSizes, adb + u"push \"D:\\games\\some.app\" \"/sdcard/Android/data/\""_s}},
        {"uninstall from the list",
         [this] { choose(apps().mnu_uninstall); },
         {adb + u"uninstall some.app"_s}},
        {"permissions",
         [this] { changePermissions(); },
         {adb + u"shell dumpsys package some.app"_s,
          adb + u"shell pm revoke some.app android.permission.CAMERA"_s,
          adb + u"shell pm grant some.app android.permission.RECORD_AUDIO"_s}},
        {"end", [this] { end(); }, {adb + u"kill-server"_s}},
    };
    for (const auto& [name, act, lines] : steps) {
      qInfo("%s", name);
      act();
      if (QTest::currentTestFailed()) return;
      QStringList expected;
      for (const QString& line : lines) expected << handedOver(line);
      QStringList started = m_tools.lines();
      // After the count come the calls of the list's script.
      if (expected.constFirst().contains(u"wc -l"_s)) started = started.first(1);
      // The open list asks now and then who is connected.
      if (apps().isVisible()) started.removeAll(handedOver(adb + u"devices"_s));
      QCOMPARE(started, expected);
      m_tools.takeCalls();
    }
  }
};

QTEST_MAIN(CommandLinesTest)
#include "command_lines_test.moc"
