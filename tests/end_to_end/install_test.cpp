#include <signal.h>

#include <QDirIterator>
#include <QProcess>

#include "program.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString package = u"com.example.sample"_s;
const QString deviceFolder = u"/sdcard/Android/obb/com.example.sample/"_s;
const QString allDone = u"\r\n所有任务都完成了！\r\n"_s;

QString pushing(const QString& name) {
  return u"\r\n安装额外的 obb 文件："_s + QString(16, u' ') + name + u"\r\n"_s;
}
QString skipping(const QString& name) {
  return u"\r\n跳过的obb文件："_s + QString(9, u' ') + name + u"\r\n"_s;
}

/// What the user does with the selection window: the rows to click, then the way out.
struct Choice {
  QList<int> skip = {};
  enum { Confirm, Close, Cancel, Escape } way = Confirm;
};

}  // namespace

class InstallTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Program> m_program;
  QString m_apk;

  test::VirtualHeadset& headset() { return m_program->headset; }

  /// Writes the package and `files` (relative paths) into a folder whose name has a bit of everything.
  void lay(const QStringList& files) {
    const QString folder = headset().workPath(u"游戏 100% \"new\" 📦"_s);
    for (const QString& name : files) QVERIFY(writeFile(folder + u'/' + name, "content of " + name.toUtf8()));
    SamplePackage sample;
    sample.package = package;
    m_apk = folder + u"/My Game.apk"_s;
    QCOMPARE(sample.write(m_apk), QString());
  }

  void chooseWhenAsked(Choice choice) {
    auto* poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, [this, poll, choice] {
      Form3* window = m_program->application->install().selection();
      if (window == nullptr || !window->isVisible()) return;
      poll->deleteLater();
      for (const int row : choice.skip)
        QTest::mouseClick(window->Check1[static_cast<size_t>(row)], Qt::LeftButton);
      if (choice.way == Choice::Confirm) QTest::mouseClick(window->Command1, Qt::LeftButton);
      if (choice.way == Choice::Cancel) QTest::mouseClick(window->cmdCancel, Qt::LeftButton);
      if (choice.way == Choice::Escape) QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
      if (choice.way == Choice::Close) window->close();
    });
    poll->start(20);
  }

  void press(Button* button) {
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled(), 10'000);
    headset().clearLog();
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(m_program->bench().turn.taken());
  }
  void install() {
    press(m_program->form().Command1);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->bench().turn.taken(), 60'000);
    QVERIFY(m_program->console().endsWith(allDone));
    QVERIFY(!m_program->bench().state.WatcherHold);
  }

  QString told() { return m_program->form().statusLine->text(); }
  QStringList namesOnDevice() {
    return QDir(headset().devicePath(deviceFolder)).entryList(QDir::Files, QDir::Name);
  }
  QByteArray onDevice(const QString& name) { return headset().readDeviceFile(deviceFolder + name); }

 private Q_SLOTS:
  void init() {
    m_program = std::make_unique<Program>();
    QCOMPARE(m_program->startHeadset(), QString());
  }
  void cleanup() { m_program.reset(); }

  void transfers_data() {
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<Choice>("choice");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QString>("verdict");
    const QString a = u"main.1.obb"_s;
    const QString b = u"patch.1.obb"_s;
    const QString c = u"two words.pak"_s;
    const QString old = u"other.old"_s;
    const QStringList abc{a, b, c};
    const QString removal =
        u"\r\n删除设备上存在的文件夹："_s + QString(31, u' ') + u"/Android/obb/"_s + package + u"\r\n"_s;
    const QString skippedAll = u"\r\n跳过所有obb文件\r\n"_s;
    const auto row = [](const char* name, const QStringList& present, const Choice& choice,
                        const QString& rows, const QStringList& after, const QString& verdict) {
      QTest::newRow(name) << present << choice << rows << after << u"(Installed 1.0"_s + verdict;
    };
    row("only other files there", {old}, {}, removal + pushing(a) + pushing(b) + pushing(c), abc,
        u" and 3 files, "_s);
    row("some there", {a, old}, {}, skipping(a) + pushing(b) + pushing(c), {a, old, b, c},
        u", but only 2 of 3 files arrived; another size: main.1.obb)"_s);
    row("all there", abc, {{0}}, skippedAll, abc,
        u", but only 0 of 2 files arrived; another size: patch.1.obb)"_s);
    row("all skipped", {old}, {{0, 1, 2}}, skipping(a) + skipping(b) + skipping(c), {old}, u", "_s);
    row("first skipped", {old}, {{0}}, skipping(a) + removal + pushing(b) + pushing(c), {b, c},
        u" and 2 files, "_s);
    row("window closed", {old}, {{}, Choice::Close}, skippedAll, {old}, u", "_s);
  }
  void transfers() {
    QFETCH(QStringList, present);
    QFETCH(Choice, choice);
    QFETCH(QString, rows);
    lay({u"main.1.obb"_s, u"patch.1.obb"_s, u"two words.pak"_s});
    for (const QString& name : present) QVERIFY(headset().writeDeviceFile(deviceFolder + name, "old"));
    QVERIFY(m_program->start(m_apk));
    QCOMPARE(m_program->form().Label2->Caption(), package);
    QVERIFY(m_program->console().startsWith(
        u"\r\n未安装\r\n\r\nFound OBB Files: \r\nmain.1.obb\r\npatch.1.obb\r\n"_s));

    chooseWhenAsked(choice);
    install();
    const QString console = m_program->console();
    QVERIFY(console.contains(
        u"\r\n尝试连接设备以进行Orvanta，请稍候！\r\nPerforming Streamed Install\r\nSuccess\r\n"_s));
    // The program's own rows in order; adb's output is between them.
    QString own;
    for (const QString& line : console.section(u"Success\r\n"_s, 1).split(u"\r\n"_s)) {
      if (line.contains(u'：') || line.startsWith(u"跳过"_s)) own += u"\r\n"_s + line + u"\r\n"_s;
    }
    QCOMPARE(own, rows);
    QCOMPARE(headset().packages().value(package).versionCode, 1);
    QCOMPARE(m_program->commands(u"rm -r "_s).size(), rows.count(u"删除"_s));
    QTEST(namesOnDevice(), "after");
    for (const QString& name : namesOnDevice())
      QCOMPARE(onDevice(name), present.contains(name) ? QByteArray("old") : "content of " + name.toUtf8());
    QVERIFY(m_program->desktop.boxes.isEmpty() && m_program->desktop.notifications.isEmpty());
    QFETCH(QString, verdict);
    QVERIFY2(told().contains(verdict), qPrintable(told()));
    QTRY_COMPARE_WITH_TIMEOUT(m_program->form().Label6->Caption(), u" 1 (Same)"_s, 10'000);
  }

  void percentageInTheTitle_data() {
    QTest::addColumn<qint64>("packageBytes");
    QTest::addColumn<qint64>("obbBytes");
    QTest::newRow("more package") << qint64(12'000'000) << qint64(4'000'000);
    QTest::newRow("more files") << qint64(10'000'000) << qint64(50'000'000);
  }
  void percentageInTheTitle() {
    QFETCH(qint64, packageBytes);
    QFETCH(qint64, obbBytes);
    lay({u"a.obb"_s});
    SamplePackage sample;
    sample.package = package;
    sample.paddingBytes = packageBytes;
    QCOMPARE(sample.write(m_apk), QString());
    QVERIFY(QFile::resize(QFileInfo(m_apk).path() + u"/a.obb"_s, obbBytes));
    QVERIFY(m_program->start(m_apk));
    const QString title = m_program->form().windowTitle();
    headset().setFault(u"bytes_per_second"_s, QString::number((packageBytes + obbBytes) / 8));
    chooseWhenAsked({});
    press(m_program->form().Command1);
    const qint64 ofPackage = QFileInfo(m_apk).size();
    const auto percentThere = [&] {
      qint64 bytes = QFileInfo(headset().devicePath(deviceFolder + u"a.obb"_s)).size();
      if (bytes > 0) bytes += ofPackage;
      QDirIterator staged(headset().devicePath(u"/data/app"_s), {u"*.apk"_s}, QDir::Files,
                          QDirIterator::Subdirectories);
      while (staged.hasNext() && bytes == 0) bytes = QFileInfo(staged.next()).size();
      return static_cast<double>(bytes) * 100 / static_cast<double>(ofPackage + obbBytes);
    };
    // adb's server holds one block, and the headset takes the next one whole.
    const double allowed = 3 + (1 << 20) * 100.0 / static_cast<double>(ofPackage + obbBytes);
    constexpr qsizetype looksBack = 12;
    QList<double> there{0};
    double worst = 0;
    while (m_program->bench().turn.taken() && there.constLast() < 100) {
      QTest::qWait(20);
      there << qMax(percentThere(), there.constLast());
      const double shown = m_program->form().windowTitle().section(u'%', 0, 0).toDouble();
      if (m_program->form().windowTitle() == title) continue;
      worst = qMax(worst, qMax(there.value(there.size() - looksBack) - shown, shown - there.constLast()));
    }
    QVERIFY2(there.size() > 100 && worst < allowed,
             qPrintable(u"%1 looks, %2 % off of %3 %"_s.arg(there.size()).arg(worst).arg(allowed)));
    QApplication::setActiveWindow(nullptr);  // the user has gone elsewhere meanwhile
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->bench().turn.taken(), 20'000);
    QCOMPARE(m_program->form().windowTitle(), title);
    QCOMPARE(m_program->desktop.notifications, QStringList(told()));
  }

  void afterARefusalTheUserDecidesOnTheInstalledAppsFiles() {
    lay({u"main.119.obb"_s});
    SamplePackage newer;
    newer.package = package;
    newer.versionCode = 120;
    const QString newerApk = headset().workPath(u"newer.apk"_s);
    QCOMPARE(newer.write(newerApk), QString());
    QCOMPARE(headset().adb({u"install"_s, newerApk}).exitCode, 0);
    headset().setFault(u"install_failure"_s, u"INSTALL_FAILED_VERSION_DOWNGRADE"_s);
    headset().setFault(u"uninstall_failure"_s, u"DELETE_FAILED_INTERNAL_ERROR"_s);
    QVERIFY(m_program->start(m_apk));
    RecordingDesktop& desktop = m_program->desktop;
    for (const bool installs : {true, false}) {
      for (const bool kept : {true, false}) {
        QDir(headset().devicePath(deviceFolder)).removeRecursively();
        QVERIFY(headset().writeDeviceFile(deviceFolder + u"main.120.obb"_s, "all that was played"));
        desktop.answers = {kept ? BoxAnswer::No : BoxAnswer::Yes};
        if (installs) chooseWhenAsked({});
        // Before the install: an older build after all. Before the other: uninstall it.
        desktop.answers.prepend(BoxAnswer::Yes);
        press(installs ? m_program->form().Command1 : m_program->form().Command5);
        QTRY_VERIFY_WITH_TIMEOUT(!m_program->bench().turn.taken(), 60'000);

        const QStringList old = kept ? QStringList(u"main.120.obb"_s) : QStringList();
        const QStringList sent = installs ? QStringList(u"main.119.obb"_s) : QStringList();
        QCOMPARE(namesOnDevice(), sent + old);
        if (kept) QCOMPARE(onDevice(u"main.120.obb"_s), QByteArray("all that was played"));
        QCOMPARE(m_program->commands(u"rm -r "_s).isEmpty(), kept);
        const MessageBox& question = desktop.boxes.constLast();
        QVERIFY(question.preselected == BoxAnswer::No && question.icon == BoxIcon::Warning);
        QVERIFY(question.text.contains(installs ? u"\nFailure [INSTALL_F"_s : u"\nFailure [DELETE_F"_s));
        QVERIFY(told().contains(installs ? u"(Not installed: "_s : u"(Not uninstalled: "_s));
        QVERIFY(told().contains(installs ? u"[INSTALL_FAILED_VERSION_DOWNGRADE]"_s : u"[DELETE_FAILED_"_s));
      }
    }
    QCOMPARE(desktop.boxes.size(), 8);
    QCOMPARE(m_program->console().count(u"删除设备上存在的文件夹"_s), 2);
  }

  void asksBeforeItBegins_data() {
    QTest::addColumn<int>("installedBuild");
    QTest::addColumn<QString>("freeBytes");
    QTest::addColumn<QStringList>("asked");
    QTest::newRow("nothing to ask") << 1 << u"9000000"_s << QStringList();
    QTest::newRow("newer") << 120 << u"9000000"_s << QStringList(u"newer build 120; this file is 2."_s);
    QTest::newRow("too large") << 1 << u"4000000"_s
                               << QStringList(
                                      u": 5.7 MiB needed (5.7 MiB of it for expansion files: 2), 3."_s);
    QTest::newRow("both") << 3 << u"4000000"_s << QStringList{u"newer build 3;"_s, u" needed (5.7 MiB"_s};
  }
  void asksBeforeItBegins() {
    QFETCH(int, installedBuild);
    QFETCH(QStringList, asked);
    QFETCH(QString, freeBytes);
    lay({u"a.obb"_s, u"b.obb"_s});
    SamplePackage sample{.package = package, .versionCode = installedBuild};
    QCOMPARE(sample.write(headset().workPath(u"there.apk"_s)), QString());
    QCOMPARE(headset().adb({u"install"_s, headset().workPath(u"there.apk"_s)}).exitCode, 0);
    sample.versionCode = 2;
    QCOMPARE(sample.write(m_apk), QString());
    for (const QString& name : {u"/a.obb"_s, u"/b.obb"_s})
      QVERIFY(QFile::resize(QFileInfo(m_apk).path() + name, 3'000'000));
    headset().setFault(u"storage_free_bytes"_s, freeBytes);
    QVERIFY(m_program->start(m_apk));
    apkinfo& form = m_program->form();
    RecordingDesktop& desktop = m_program->desktop;
    QTRY_VERIFY_WITH_TIMEOUT(form.Command1->isEnabled() && told().contains(u"Connected"_s), 10'000);
    QTRY_VERIFY(!m_program->application->watcher().polling());
    if (!asked.isEmpty()) {
      headset().clearLog();
      const QString console = m_program->console();
      desktop.answers = {BoxAnswer::No};
      form.Command1->click();
      QVERIFY(!m_program->bench().turn.taken() && !m_program->bench().state.WatcherHold);
      QVERIFY(form.Command1->isEnabled() && form.Command4->isEnabled() && told().contains(u"Connected"_s));
      QCOMPARE(m_program->console(), console);
      QCOMPARE(headset().services(), QStringList());
      QCOMPARE(desktop.boxes.size(), 1);
      QVERIFY(desktop.boxes[0].preselected == BoxAnswer::No && desktop.boxes[0].buttons == BoxButtons::YesNo);
      for (const QString& part : asked)
        QVERIFY2(desktop.boxes[0].text.contains(part), qPrintable(desktop.boxes[0].text));
      desktop.boxes.clear();
    }
    // What one headset said does not hold for the next one, nor for this one when it comes back.
    headset().setFault(u"state"_s, u"gone"_s);
    QTRY_VERIFY_WITH_TIMEOUT(told().contains(u"No headset"_s), 20'000);
    const State& state = m_program->bench().state;
    QVERIFY(!state.headset().room && state.headset().newerBuild.isEmpty());
    headset().setFault(u"state"_s, u"device"_s);
    QTRY_COMPARE_WITH_TIMEOUT(state.headset().newerBuild.isEmpty(), installedBuild <= 2, 20'000);
    chooseWhenAsked({});
    install();
    QVERIFY(desktop.boxes.isEmpty() == (installedBuild <= 2));
    const bool refused = installedBuild > 2;
    QVERIFY2(told().contains(refused ? u"(Not installed: "_s : u"(Installed 1.0"_s), qPrintable(told()));
  }

  void ofSeveralDevicesOneIsChosenFirst() {
    lay({});
    test::VirtualHeadset other(headset().adbServerPort());
    QCOMPARE(other.start(), QString());
    QVERIFY(m_program->start(m_apk));
    Button* button = m_program->form().Command1;
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled() && told().contains(u"2 devices"_s), 20'000);
    DeviceChooser& chooser = m_program->application->deviceChooser();
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
      m_program->desktop.answers = {answer};
      QVERIFY(!chooser.isVisible());
      button->click();
      QVERIFY(m_program->desktop.boxes.takeLast().text.contains(u"2 devices"_s));
    }
    QTRY_VERIFY(chooser.isVisible() && chooser.devices->rowCount() == 2 && !m_program->bench().turn.taken());
    for (int row = 0; row < 2; ++row) {
      if (chooser.devices->item(row, 0)->data(Qt::UserRole) == other.serial())
        chooser.devices->selectRow(row);
    }
    chooser.use->click();
    QTRY_VERIFY_WITH_TIMEOUT(told().contains(u"Connected: "_s + other.serial()), 20'000);
    install();
    QVERIFY(other.packages().contains(package) && headset().packages().isEmpty());
    QVERIFY(m_program->desktop.boxes.isEmpty());
  }

  void twentyFilesOfThePackagesFolder() {
    QStringList files;
    for (int i = 1; i <= 20; ++i) files << package + u"/data.%1.bin"_s.arg(i, 2, 10, QLatin1Char('0'));
    lay(files);
    QVERIFY(m_program->start(m_apk));
    QList<int> rows;
    for (int row = 0; row < 17; ++row) rows << row;
    chooseWhenAsked({rows});
    install();
    QCOMPARE(namesOnDevice(), (QStringList{u"data.18.bin"_s, u"data.19.bin"_s, u"data.20.bin"_s}));
  }

  void deviceGoesAwayInTheMiddleOfAPush() {
    lay({u"a.obb"_s, u"b.obb"_s});
    QVERIFY(QFile::resize(QFileInfo(m_apk).path() + u"/a.obb"_s, 8 << 20));
    QVERIFY(m_program->start(m_apk));
    QVERIFY(headset().writeDeviceFile(deviceFolder + u"kept.obb"_s, "old"));
    QVERIFY(headset().writeDeviceFile(deviceFolder + u"b.obb"_s, "old"));
    headset().setFault(u"drop_after_push_bytes"_s, QString::number(3 << 20));
    headset().setFault(u"drop_stays_gone"_s, u"1"_s);
    chooseWhenAsked({});
    press(m_program->form().Command1);
    QTRY_VERIFY_WITH_TIMEOUT(m_program->console().endsWith(allDone), 60'000);
    QVERIFY2(m_program->console().contains(u"adb: error"_s), "the user reads what happened");
    QTRY_VERIFY2(told().contains(u"but only 0 of 2 files arrived: The "_s), qPrintable(told()));
    QCOMPARE(onDevice(u"kept.obb"_s), QByteArray("old"));
    QVERIFY(m_program->form().Command6->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().Command6->isEnabled(), 10'000);
    headset().clearFaults();
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 20'000);
  }

  void adbIsKilledInTheMiddleOfAPush_data() {
    QTest::addColumn<bool>("server");
    QTest::newRow("the tool") << false;
    QTest::newRow("its server") << true;
  }
  void adbIsKilledInTheMiddleOfAPush() {
    QFETCH(bool, server);
    lay({u"a.obb"_s, u"b.obb"_s});
    QVERIFY(QFile::resize(QFileInfo(m_apk).path() + u"/a.obb"_s, 8 << 20));
    QVERIFY(m_program->start(m_apk));
    headset().setFault(u"bytes_per_second"_s, u"2000000"_s);
    chooseWhenAsked({});
    press(m_program->form().Command1);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(headset().devicePath(deviceFolder + u"a.obb"_s)).size() > 1 << 20,
                             30'000);
    headset().clearFaults();
    if (server) {
      headset().adb({u"kill-server"_s});
    } else {
      QProcess look;
      look.start(u"pgrep"_s,
                 {u"-P"_s, QString::number(QCoreApplication::applicationPid()), u"-x"_s, u"adb"_s});
      QVERIFY(look.waitForFinished());
      ::kill(look.readAll().trimmed().toInt(), SIGKILL);
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_program->console().endsWith(allDone), 60'000);
    QTRY_VERIFY2(told().contains(u"(Installed 1.0, but only 1 of 2 files arrived"_s), qPrintable(told()));
    QVERIFY(namesOnDevice().contains(u"b.obb"_s));
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 20'000);
  }

  void theHeadsetChangesBetweenPollAndClick() {
    lay({});
    QVERIFY(m_program->start(m_apk));
    for (const auto& [state, words] :
         {std::pair(u"unauthorized"_s, u"Not installed: The headset has not allowed"_s),
          std::pair(u"offline"_s, u"Not installed: The headset"_s),
          std::pair(u"gone"_s, u"Not installed: "_s)}) {
      QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 20'000);
      headset().setFault(u"state"_s, state);
      QVERIFY(headset().waitForState(state == u"gone"_s ? QString() : state));
      m_program->form().Command1->setEnabled(true);  // the poll comes too late
      install();
      QVERIFY2(told().contains(words), qPrintable(told()));
      headset().setFault(u"state"_s, u"device"_s);
    }
  }

  void stopInTheMiddleOfAPush() {
    lay({u"a.obb"_s, u"b.obb"_s});
    QVERIFY(m_program->start(m_apk));
    chooseWhenAsked({});
    headset().setFault(u"latency_ms"_s, u"700"_s);
    QVERIFY(headset().writeDeviceFile(deviceFolder + u"kept.obb"_s, "old"));
    press(m_program->form().Command1);
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().busyStrip->isVisible(), 10'000);
    QTest::mouseClick(m_program->form().busyStrip->findChild<Button*>(u"busyStop"_s), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->bench().turn.taken(), 10'000);
    QVERIFY(m_program->console().contains(u"已停止 (Stopped)"_s));
    QVERIFY(m_program->console().endsWith(allDone));
    QVERIFY2(told().contains(u"(Stopped: "_s), qPrintable(told()));
    QCOMPARE(namesOnDevice(), QStringList(u"kept.obb"_s));
    QVERIFY(m_program->desktop.boxes.isEmpty());
    QVERIFY(!m_program->form().busyStrip->isVisible());
  }

  void cancelledBeforeAnythingIsSent() {
    lay({u"a.obb"_s});
    QVERIFY(m_program->start(m_apk));
    for (const auto way : {Choice::Escape, Choice::Cancel}) {
      chooseWhenAsked({{}, way});
      install();
      QVERIFY(m_program->console().endsWith(u"\r\n已停止 (Stopped)\r\n"_s + allDone));
      QVERIFY2(told().contains(u"(Cancelled: nothing was sent)"_s), qPrintable(told()));
      for (const QString& sent : {u"install"_s, u"obb"_s}) QCOMPARE(m_program->commands(sent), QStringList());
    }
  }

  void aFileThatIsNoPackage() {
    lay({u"main.1.obb"_s, u"private.txt"_s});
    QVERIFY(QFile::resize(m_apk, 8));
    QVERIFY(m_program->start(m_apk));
    chooseWhenAsked({});
    install();
    // A package without a name: nothing is removed, and nothing is put into everybody's folder.
    QVERIFY(m_program->console().contains(u"没有可用的包名"_s));
    QCOMPARE(m_program->commands(u"rm "_s), QStringList());
    QVERIFY(QDir(headset().devicePath(u"/sdcard/Android/obb"_s)).isEmpty());
  }
};

QTEST_MAIN(InstallTest)
#include "install_test.moc"
