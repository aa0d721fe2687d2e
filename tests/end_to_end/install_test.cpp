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
  void lay(const QStringList& files, SamplePackage sample = {}) {
    const QString folder = headset().workPath(u"游戏 100% \"new\" 📦"_s);
    QVERIFY(QDir().mkpath(folder));
    if (sample.package == SamplePackage().package) sample.package = package;
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

  void install() {
    Button* button = m_program->form().Command1;
    QTRY_VERIFY_WITH_TIMEOUT(button->isEnabled(), 10'000);
    headset().clearLog();
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(m_program->form().turn().taken());
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().turn().taken(), 60'000);
    QVERIFY(m_program->console().endsWith(allDone));
    QVERIFY(!m_program->form().WatcherHold);
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
    QTest::addColumn<QList<int>>("skip");
    QTest::addColumn<bool>("confirm");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<int>("removals");
    QTest::addColumn<QStringList>("after");
    const QString a = u"main.1.obb"_s;
    const QString b = u"patch.1.obb"_s;
    const QString c = u"two words.pak"_s;
    const QString old = u"other.old"_s;
    const QString removal =
        u"\r\n删除设备上存在的文件夹："_s + QString(31, u' ') + u"/Android/obb/"_s + package + u"\r\n"_s;
    const QString skippedAll = u"\r\n跳过所有obb文件\r\n"_s;
    const QStringList none;
    QTest::newRow("nothing on the device")
        << none << QList<int>() << true << removal + pushing(a) + pushing(b) + pushing(c) << 1
        << QStringList{a, b, c};
    QTest::newRow("only other files there")
        << QStringList{old} << QList<int>() << true << removal + pushing(a) + pushing(b) + pushing(c) << 1
        << QStringList{a, b, c};
    QTest::newRow("some there") << QStringList{a, old} << QList<int>() << true
                                << skipping(a) + pushing(b) + pushing(c) << 0 << QStringList{a, old, b, c};
    QTest::newRow("all there") << QStringList{a, b, c} << QList<int>{0} << true << skippedAll << 0
                               << QStringList{a, b, c};
    QTest::newRow("all skipped") << QStringList{old} << QList<int>{0, 1, 2} << true
                                 << skipping(a) + skipping(b) + skipping(c) << 0 << QStringList{old};
    QTest::newRow("first skipped") << QStringList{old} << QList<int>{0} << true
                                   << skipping(a) + removal + pushing(b) + pushing(c) << 1
                                   << QStringList{b, c};
    QTest::newRow("window closed") << QStringList{old} << QList<int>() << false << skippedAll << 0
                                   << QStringList{old};
  }
  void transfers() {
    QFETCH(QStringList, present);
    QFETCH(QList<int>, skip);
    QFETCH(bool, confirm);
    QFETCH(QString, rows);
    QFETCH(QStringList, after);
    lay({u"main.1.obb"_s, u"patch.1.obb"_s, u"two words.pak"_s});
    for (const QString& name : present) QVERIFY(headset().writeDeviceFile(deviceFolder + name, "old"));
    QVERIFY(m_program->start(m_apk));
    QCOMPARE(m_program->form().Label2->Caption(), package);
    QCOMPARE(m_program->form().Label6->Caption(), u"未安装"_s);
    QVERIFY(m_program->console().startsWith(
        u"\r\n未安装\r\n\r\nFound OBB Files: \r\nmain.1.obb\r\npatch.1.obb\r\n"_s));

    chooseWhenAsked({skip, confirm});
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
    QTEST(static_cast<int>(m_program->commands(u"rm -r "_s).size()), "removals");
    QStringList found = QDir(headset().devicePath(deviceFolder)).entryList(QDir::Files, QDir::Name);
    after.sort();
    QCOMPARE(found, after);
    for (const QString& name : found) {
      QCOMPARE(onDevice(name), present.contains(name) ? QByteArray("old") : "content of " + name.toUtf8());
    }
    QVERIFY(m_program->desktop.boxes.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(m_program->form().Label6->Caption(), u" 1 (Same)"_s, 10'000);
  }

  void orderOfCommands() {
    lay({u"main.1.obb"_s});
    QVERIFY(m_program->start(m_apk));
    m_program->form().Check1->setValue(1);
    chooseWhenAsked({});
    install();
    QStringList order;
    for (const QString& command : m_program->commands()) {
      if (command.isEmpty() || command.startsWith(u"dumpsys"_s)) continue;
      order << command.section(u' ', 0, 0);
      if (command.contains(u"package"_s)) QVERIFY2(command.contains(u"-g"_s), qPrintable(command));
    }
    QCOMPARE(order, (QStringList{u"cmd"_s, u"echo"_s, u"ls"_s, u"echo"_s, u"rm"_s, u"echo"_s, u"ls"_s,
                                 u"echo"_s, u"echo"_s, u"df"_s}));
  }

  void withoutExpansionFiles() {
    lay({u"readme.zip"_s});
    QVERIFY(m_program->start(m_apk));
    install();
    QVERIFY(m_program->application->install().selection() == nullptr);
    QCOMPARE(m_program->commands(u"obb"_s), QStringList());
    QVERIFY(headset().packages().contains(package));
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
    const QStringList pushed = QDir(headset().devicePath(deviceFolder)).entryList(QDir::Files, QDir::Name);
    QCOMPARE(pushed, (QStringList{u"data.18.bin"_s, u"data.19.bin"_s, u"data.20.bin"_s}));
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
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 10'000);
    QTest::mouseClick(m_program->form().Command1, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(m_program->console().endsWith(allDone), 60'000);
    QVERIFY2(m_program->console().contains(u"adb: error"_s), "the user reads what happened");
    QCOMPARE(onDevice(u"kept.obb"_s), QByteArray("old"));
    QVERIFY(m_program->form().Command6->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().Command6->isEnabled(), 10'000);
    headset().clearFaults();
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 20'000);
  }

  void anInstallThatIsRefused() {
    lay({u"main.1.obb"_s});
    QVERIFY(m_program->start(m_apk));
    headset().setFault(u"install_failure"_s,
                       u"INSTALL_FAILED_UPDATE_INCOMPATIBLE: Existing package signatures do not match"_s);
    chooseWhenAsked({});
    install();
    QVERIFY(
        m_program->console().contains(u"Failure [INSTALL_FAILED_UPDATE_INCOMPATIBLE: Existing package"_s));
    QVERIFY(!headset().packages().contains(package));
    QCOMPARE(onDevice(u"main.1.obb"_s), QByteArray("content of main.1.obb"));
  }

  void stopInTheMiddleOfAPush() {
    lay({u"a.obb"_s, u"b.obb"_s});
    QVERIFY(m_program->start(m_apk));
    chooseWhenAsked({});
    headset().setFault(u"latency_ms"_s, u"700"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().Command1->isEnabled(), 10'000);
    QTest::mouseClick(m_program->form().Command1, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(m_program->form().busyStrip->isVisible(), 10'000);
    QTest::mouseClick(m_program->form().busyStrip->findChild<Button*>(u"busyStop"_s), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->form().turn().taken(), 10'000);
    QVERIFY(m_program->console().contains(u"已停止 (Stopped)"_s));
    QVERIFY(m_program->console().endsWith(allDone));
    QVERIFY(onDevice(u"b.obb"_s).isNull());
    QVERIFY(!m_program->form().busyStrip->isVisible());
  }

  void badPackages_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no package") << QByteArray("this is a text");
    QTest::newRow("truncated") << QByteArray("PK\x03\x04\x14\0\0\0", 8);
  }
  void badPackages() {
    QFETCH(QByteArray, content);
    lay({u"main.1.obb"_s, u"private.txt"_s});
    QFile file(m_apk);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
    file.close();
    QVERIFY(headset().writeDeviceFile(u"/sdcard/Android/obb/com.other/main.obb"_s, "old"));
    QVERIFY(m_program->start(m_apk));
    QCOMPARE(m_program->form().Label2->Caption(), QString());
    chooseWhenAsked({});
    install();
    // A package without a name: nothing is removed, and nothing is put into everybody's folder.
    QCOMPARE(m_program->commands(u"rm "_s), QStringList());
    QCOMPARE(headset().readDeviceFile(u"/sdcard/Android/obb/com.other/main.obb"_s), QByteArray("old"));
    QVERIFY(headset().readDeviceFile(u"/sdcard/Android/obb/private.txt"_s).isNull());
    QVERIFY(m_program->console().contains(u"adb: "_s) || m_program->console().contains(u"Failure"_s));
    QVERIFY(m_program->console().contains(u"没有可用的包名"_s));
    QFile again(m_apk);
    QVERIFY(again.open(QIODevice::ReadOnly));
    QCOMPARE(again.readAll(), content);
  }

  void pathsThatAreNoFile() {
    for (const QString& path : {u"/no/such file.apk"_s, headset().workPath(QString()), u"\"quoted.apk\""_s}) {
      QVERIFY(m_program->start(path));
      QCOMPARE(m_program->form().Label1->Caption(), QString());
      QCOMPARE(m_program->form().ApkPath, path);
      QVERIFY(m_program->desktop.boxes.isEmpty());
      m_program->end();
    }
  }
};

QTEST_MAIN(InstallTest)
#include "install_test.moc"
