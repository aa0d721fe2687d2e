#include "program.h"
#include "sample_package.h"

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

/// What the user does with the selection window: the rows to click, then its button or its close box.
struct Choice {
  QList<int> skip = {};
  bool confirm = true;
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
    QVERIFY(QDir().mkpath(folder));
    SamplePackage sample;
    sample.package = package;
    m_apk = folder + u"/My Game.apk"_s;
    QCOMPARE(sample.write(m_apk), QString());
    for (const QString& name : files) {
      QDir().mkpath(QFileInfo(folder + u'/' + name).path());
      QFile file(folder + u'/' + name);
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write("content of " + name.toUtf8());
    }
  }

  void chooseWhenAsked(Choice choice) {
    auto* poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, [this, poll, choice] {
      Form3* window = m_program->application->install().selection();
      if (window == nullptr || !window->isVisible()) return;
      poll->deleteLater();
      for (const int row : choice.skip)
        QTest::mouseClick(window->Check1[static_cast<size_t>(row)], Qt::LeftButton);
      if (choice.confirm) {
        QTest::mouseClick(window->Command1, Qt::LeftButton);
      } else {
        window->close();
      }
    });
    poll->start(20);
  }

  void pressInstall() {
    Button* button = m_program->form().Command1;
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled(), 10'000);
    headset().clearLog();
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(m_program->form().turn().taken());
  }
  void install() {
    pressInstall();
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().turn().taken(), 60'000);
    QVERIFY(m_program->console().endsWith(allDone));
    QVERIFY(!m_program->form().WatcherHold);
  }

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
    const QString a = u"main.1.obb"_s;
    const QString b = u"patch.1.obb"_s;
    const QString c = u"two words.pak"_s;
    const QString old = u"other.old"_s;
    const QStringList abc{a, b, c};
    const QString removal =
        u"\r\n删除设备上存在的文件夹："_s + QString(31, u' ') + u"/Android/obb/"_s + package + u"\r\n"_s;
    const QString skippedAll = u"\r\n跳过所有obb文件\r\n"_s;
    const auto row = [](const char* name, const QStringList& present, const Choice& choice,
                        const QString& rows, const QStringList& after) {
      QTest::newRow(name) << present << choice << rows << after;
    };
    row("only other files there", {old}, {}, removal + pushing(a) + pushing(b) + pushing(c), abc);
    row("some there", {a, old}, {}, skipping(a) + pushing(b) + pushing(c), {a, old, b, c});
    row("all there", abc, {{0}}, skippedAll, abc);
    row("all skipped", {old}, {{0, 1, 2}}, skipping(a) + skipping(b) + skipping(c), {old});
    row("first skipped", {old}, {{0}}, skipping(a) + removal + pushing(b) + pushing(c), {b, c});
    row("window closed", {old}, {{}, false}, skippedAll, {old});
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
    // The program's own rows, in their order; adb's words stand between them.
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
    QVERIFY(m_program->desktop.boxes.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(m_program->form().Label6->Caption(), u" 1 (Same)"_s, 10'000);
  }

  void twentyFilesOfThePackagesFolder() {
    QStringList files;
    for (int i = 1; i <= 20; ++i) files << package + u"/data.%1.bin"_s.arg(i, 2, 10, QLatin1Char('0'));
    lay(files);
    QVERIFY(m_program->start(m_apk));
    QList<int> rows;
    for (int row = 0; row < 17; ++row) rows << row;
    chooseWhenAsked({rows, true});
    install();
    QCOMPARE(namesOnDevice(), (QStringList{u"data.18.bin"_s, u"data.19.bin"_s, u"data.20.bin"_s}));
  }

  void deviceGoesAwayInTheMiddleOfAPush() {
    lay({u"a.obb"_s, u"b.obb"_s});
    QFile large(QFileInfo(m_apk).path() + u"/a.obb"_s);
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(8 << 20));
    QVERIFY(m_program->start(m_apk));
    QVERIFY(headset().writeDeviceFile(deviceFolder + u"kept.obb"_s, "old"));
    QVERIFY(headset().writeDeviceFile(deviceFolder + u"b.obb"_s, "old"));
    headset().setFault(u"drop_after_push_bytes"_s, QString::number(3 << 20));
    headset().setFault(u"drop_stays_gone"_s, u"1"_s);
    chooseWhenAsked({});
    pressInstall();
    QTRY_VERIFY_WITH_TIMEOUT(m_program->console().endsWith(allDone), 60'000);
    QVERIFY2(m_program->console().contains(u"adb: error"_s), "the user reads what happened");
    QCOMPARE(onDevice(u"kept.obb"_s), QByteArray("old"));
    QVERIFY(m_program->form().Command6->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().Command6->isEnabled(), 10'000);
    headset().clearFaults();
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 20'000);
  }

  void stopInTheMiddleOfAPush() {
    lay({u"a.obb"_s, u"b.obb"_s});
    QVERIFY(m_program->start(m_apk));
    chooseWhenAsked({});
    headset().setFault(u"latency_ms"_s, u"700"_s);
    pressInstall();
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().busyStrip->isVisible(), 10'000);
    QTest::mouseClick(m_program->form().busyStrip->findChild<Button*>(u"busyStop"_s), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().turn().taken(), 10'000);
    QVERIFY(m_program->console().contains(u"已停止 (Stopped)"_s));
    QVERIFY(m_program->console().endsWith(allDone));
    QVERIFY(onDevice(u"b.obb"_s).isNull());
    QVERIFY(!m_program->form().busyStrip->isVisible());
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
