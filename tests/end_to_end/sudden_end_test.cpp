#include <signal.h>

#include <QElapsedTimer>
#include <QProcess>
#include <string_view>

#include "inventory/parser.h"
#include "program.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString package = u"com.example.sample"_s;
constexpr qsizetype MiB = 1 << 20;

/// The whole program, with a user who backs up the data of the package into `folder`.
int backUp(const QString& folder) {
  RecordingDesktop desktop;
  desktop.folders = QStringList{folder};
  Application application(desktop, [] { QCoreApplication::exit(0); });
  application.endWithTheSession();
  application.start(QString());
  Form4& window = application.installedApps().window();
  window.prepareLoad();
  window.fill(readInventory(u"IP3x: %1 \r\napplication-label:Sample\r\n"_s.arg(package)));
  window.MSFlexGrid1->setRow(1);
  QTimer::singleShot(0, [&window] { window.mnu_NonRootBackup->trigger(); });
  return QApplication::exec();
}

}  // namespace

/// The program ends in the middle of something, in order or not: what is on the disk then, and after the next
/// start.
class SuddenEndTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Program> m_program;
  std::unique_ptr<QProcess> m_process;

  test::VirtualHeadset& headset() { return m_program->headset; }

  void startProcess(const QString& program, const QStringList& arguments) {
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedChannels);
    m_process->start(program, arguments);
    QVERIFY(m_process->waitForStarted());
  }
  void send(int signal) {
    ::kill(static_cast<pid_t>(m_process->processId()), signal);
    QVERIFY(m_process->waitForFinished(10'000));
  }
  QStringList notes() const {
    return QDir(m_program->headset.workPath(u"state-home/Orvanta/journal"_s)).entryList(QDir::Files);
  }

 private Q_SLOTS:
  void init() {
    m_program = std::make_unique<Program>();
    QCOMPARE(m_program->startHeadset(), QString());
  }
  void cleanup() {
    if (m_process) m_process->kill();
    if (m_process) m_process->waitForFinished();
    m_process.reset();
    m_program.reset();
  }

  void betweenTheTwoNames() {
    const QString folder = headset().workPath(u"游戏 1"_s);
    QVERIFY(QDir().mkpath(folder));
    SamplePackage sample;
    sample.package = package;
    // Without an icon, and slow to read.
    for (const QString& place : {u"mipmap-mdpi"_s, u"drawable-mdpi-v4"_s, u"mipmap-mdpi-v4"_s})
      sample.extraFiles.insert(u"res/%1/app_icon.png"_s.arg(place), QByteArray(17 * MiB, 'x'));
    const QString apk = folder + u"/My Game.APK"_s;
    QCOMPARE(sample.write(apk), QString());
    const auto before = tree(folder);
    bool between = false;
    for (int round = 0; round < 20 && !between; ++round) {
      startProcess(QStringLiteral(ORVANTA_PROGRAM), {apk});
      while (QFileInfo::exists(apk) && !m_process->waitForFinished(1)) {
      }
      send(SIGKILL);
      between = !QFileInfo::exists(apk);
    }
    QVERIFY(between && QFileInfo::exists(folder + u"/My Game.zip"_s));

    QVERIFY(m_program->start(apk));
    QCOMPARE(m_program->form().Label2->Caption(), package);
    const QString console = m_program->console();
    QVERIFY2(console.startsWith(u"\r\n未安装\r\n"_s) && console.contains(u"已恢复安装包的文件名"_s),
             qPrintable(console));
    QVERIFY(tree(folder) == before);
    QCOMPARE(notes(), QStringList());
    QVERIFY(!told(tree(headset().workPath(u"cache"_s))).contains(u"icon-"_s));
  }

  void signalsEndInOrder() {
    SamplePackage sample;
    const QString apk = headset().workPath(u"x.apk"_s);
    QCOMPARE(sample.write(apk), QString());
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
      headset().clearLog();
      QVERIFY(headset().waitForDevice());
      // The start hangs in a tool.
      headset().setFault(u"latency_ms"_s, u"60000"_s);
      startProcess(QStringLiteral(ORVANTA_PROGRAM), {apk});
      QTRY_VERIFY_WITH_TIMEOUT(!m_program->commands(u"echo"_s).isEmpty(), 10'000);
      send(signal);
      QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
      const QString words = headset().adb({u"devices"_s}).errors;
      QVERIFY2(words.contains(u"daemon started"_s), "its server was left running");
    }
  }

  void inTheMiddleOfAPull_data() {
    QTest::addColumn<int>("signal");
    QTest::newRow("asked to end") << SIGTERM;
    QTest::newRow("killed") << SIGKILL;
  }
  void inTheMiddleOfAPull() {
    QFETCH(int, signal);
    QByteArray content(3 * MiB, '\0');
    for (qsizetype i = 0; i < content.size(); ++i) content[i] = char(i % 251);
    for (const QString& name : {u"a"_s, u"b"_s})
      QVERIFY(headset().writeDeviceFile(u"/sdcard/Android/data/%1/%2"_s.arg(package, name), content));
    const QString backups = headset().workPath(u"备份"_s);
    const QString copy = backups + u'/' + package;
    QVERIFY(writeFile(copy + u"/save"_s, "earlier"));
    headset().setFault(u"bytes_per_second"_s, u"1000000"_s);
    startProcess(QCoreApplication::applicationFilePath(), {u"back-up"_s, backups});
    const auto half = [&copy] {
      const auto files = tree(copy);
      return !files.isEmpty() && files.first().size() > 100'000;
    };
    QTRY_VERIFY_WITH_TIMEOUT(half(), 20'000);
    QElapsedTimer time;
    time.start();
    send(signal);
    QVERIFY2(time.elapsed() < 5'000, "no session waits that long");
    if (signal == SIGKILL) {
      QVERIFY(half());
      QVERIFY(m_program->start(QString()));
      QVERIFY2(m_program->console().contains(copy + u".partial"_s), qPrintable(m_program->console()));
    } else {
      QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
    }
    const auto after = tree(backups);
    QCOMPARE(after.value(package + u"/save"_s), "earlier");
    QCOMPARE(after.size(), 2);
    const QByteArray part = after.value(package + u".partial/a"_s) + after.value(package + u".partial/b"_s);
    QVERIFY(part.size() > 100'000 && part.size() < content.size() && content.startsWith(part));
    QCOMPARE(notes(), QStringList());
    // Nobody writes there any more.
    QTest::qWait(1'000);
    QVERIFY(tree(backups) == after);
  }
};

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc > 2 && argv[1] == std::string_view("back-up")) return backUp(QFile::decodeName(argv[2]));
  SuddenEndTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "sudden_end_test.moc"
