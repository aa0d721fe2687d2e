#include <QBuffer>
#include <QHeaderView>
#include <QStandardPaths>
#include <QTest>

#include "inventory/installed_apps.h"
#include "sample_package.h"
#include "support/files.h"
#include "testing/virtual_headset.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// The program that prints badgings on the headset, beside this one while the object lives.
class LabelTool {
 public:
  enum Kind { StandIn, Built };

  /// The stand-in takes its time, and every path has a label of its own.
  explicit LabelTool(Kind kind = StandIn) {
    // A link that was left there would lead to the built program.
    QFile::remove(path());
    if (kind == Built)
      QFile::link(built(), path());
    else
      writeFile(path(), "#!/system/bin/sh\n[ $2 = icon ] && exec echo " + picture() +
                            "\nsleep 0.05\necho \"application-label:'Label of ${3%%-*}'\"\n");
  }
  ~LabelTool() { QFile::remove(path()); }
  Q_DISABLE_COPY_MOVE(LabelTool)

  static QString built() { return QCoreApplication::applicationDirPath() + u"/built/aapt-arm-pie"_s; }

 private:
  static QByteArray picture() {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage(48, 48, QImage::Format_RGB32).save(&buffer, "png");
    return bytes.toBase64();
  }
  static QString path() { return QCoreApplication::applicationDirPath() + u"/aapt-arm-pie"_s; }
};

struct Window : MainWindowFixture {
  Window() {
    form->Timer3->stop();
    form->show();
    QObject::connect(form->Command9, &QPushButton::clicked, &apps, &InstalledApps::Command9_Click);
    form->Command9->click();
  }
  bool opens() {
    return QTest::qWaitFor([this] { return apps.window().isVisible(); }, 60000);
  }
  FlexGrid& grid() { return *apps.window().MSFlexGrid1; }
  QString notice() { return apps.window().lblNotice->text(); }

  InstalledApps apps{bench, *form};
};

}  // namespace

class InventoryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_headset = std::make_unique<test::VirtualHeadset>();
    qputenv("XDG_CACHE_HOME", m_headset->workPath(u"cache"_s).toUtf8());
  }
  void cleanup() { m_headset.reset(); }

  void everyAppWithItsFigures_data() {
    QTest::addColumn<LabelTool::Kind>("kind");
    QTest::newRow("a script reads the badgings") << LabelTool::StandIn;
    QTest::newRow("the program reads them") << LabelTool::Built;
  }
  void everyAppWithItsFigures() {
    QFETCH(LabelTool::Kind, kind);
    if (kind == LabelTool::Built && !QFileInfo::exists(LabelTool::built()))
      QSKIP("aapt-arm-pie is not built (Debian: g++-aarch64-linux-gnu, binutils-source)");
    if (kind == LabelTool::Built && QStandardPaths::findExecutable(u"qemu-aarch64-static"_s).isEmpty())
      QSKIP("there is no emulator for aapt-arm-pie (Debian: qemu-user-static)");
    const LabelTool tool(kind);
    QCOMPARE(m_headset->start({.apps = 24}), QString());
    const auto packages = m_headset->packages();
    m_headset->clearLog();
    Window window;
    QVERIFY(!window.form->isVisible() && window.apps.progress().isVisible());
    QVERIFY(window.opens());
    QVERIFY(!window.apps.progress().isVisible() && !window.bench.turn.taken());
    QCOMPARE(window.notice(), QString());
    QMap<QString, QString> labels;
    int sized = 0;
    for (int row = 1; row < window.grid().Rows(); ++row) {
      window.grid().setRow(row);
      const QString package = window.apps.window().SelectedPackage();
      labels[package] = window.grid().TextMatrix(row, ColAppName).trimmed();
      const test::HeadsetPackage known = packages.value(package);
      QCOMPARE(window.grid().TextMatrix(row, ColBuild), QString::number(known.versionCode));
      if (!known.isInstalled) continue;
      QCOMPARE(window.grid().TextMatrix(row, ColVersion), known.versionName + u'\r');
      // Each label ends as the package's name does.
      QVERIFY2(labels[package].endsWith(package.section(u".n"_s, -1)), qPrintable(labels[package]));
      sized += window.grid().TextMatrix(row, ColUsedSpace) != u"0.0\r"_s;
    }
    QCOMPARE(labels.keys(), packages.keys());
    QVERIFY(sized > 3);
    if (kind == LabelTool::Built) {
      QCOMPARE(labels[u"com.example.jiezou.n1"_s], u"节奏空间 1"_s);
      QCOMPARE(labels[u"com.example.golfclub.n7"_s], u"Golf 🏌 Club 7"_s);
    }
    // The count, the tool, everything else, which headset it was, and the icons of all apps.
    const auto installed =
        std::count_if(packages.begin(), packages.end(), [](const auto& app) { return app.isInstalled; });
    QTRY_COMPARE_WITH_TIMEOUT(icons(), installed, 60'000);
    QVERIFY(window.grid().verticalHeader()->width() > 26);
    const QStringList services = m_headset->services();
    QCOMPARE(services.filter(u"shell"_s).size(), 4);
    QVERIFY2(services.size() <= 6, qPrintable(services.join(u'\n')));
    QVERIFY(window.apps.progress().barTwips() >= 7000);

    // Read again in one call, with the new app; the current row stays.
    QVERIFY(window.apps.window().lblRead->text().contains(u"1WMHH"_s));
    SamplePackage added;
    added.package = u"com.example.added"_s;
    const QString file = m_headset->workPath(u"added.apk"_s);
    QCOMPARE(added.write(file), QString());
    QCOMPARE(m_headset->adb({u"install"_s, file}).exitCode, 0);
    window.grid().setRow(5);
    const QString current = window.apps.window().SelectedPackage();
    m_headset->clearLog();
    window.apps.window().cmdRefresh->click();
    QTRY_VERIFY_WITH_TIMEOUT(!window.bench.turn.taken(), 60000);
    QCOMPARE(window.notice(), QString());
    QCOMPARE(window.grid().Rows(), packages.size() + 2);
    QCOMPARE(window.apps.window().SelectedPackage(), current);
    const QStringList again = m_headset->services().filter(u"shell"_s);
    QVERIFY(again.size() >= 2 && !again[1].contains(u"d icon"_s));
    QTRY_COMPARE(m_headset->services().filter(u"d icon"_s).size(), 1);
    QVERIFY(!m_headset->services().filter(u"d icon"_s)[0].contains(current));
    for (int row = 1; row < window.grid().Rows(); ++row)
      if (window.grid().TextMatrix(row, ColPackage).startsWith(current + u' '))
        QCOMPARE(window.grid().TextMatrix(row, ColAppName).trimmed(), labels[current]);
    m_headset->setFault(u"state"_s, u"gone"_s);
    QVERIFY(m_headset->waitForState(QString()));
    window.apps.window().cmdRefresh->click();
    QTRY_VERIFY_WITH_TIMEOUT(!window.bench.turn.taken(), 60000);
    QVERIFY2(window.notice().contains(u"no devices"_s), qPrintable(window.notice()));
    QCOMPARE(window.grid().Rows(), packages.size() + 2);

    // It opens once.
    window.apps.window().close();
    QVERIFY(window.form->isVisible() && !window.form->Command9->isEnabled());
    QVERIFY(window.bench.state.InstalledAppsClosed());
    window.form->Command9->setEnabled(true);
    window.form->Command9->click();
    QVERIFY(!window.bench.turn.taken() && window.form->isVisible());
  }

  /// By itself, while the list is open.
  void anotherHeadset() {
    QCOMPARE(m_headset->start(), QString());
    Window window;
    QVERIFY(window.opens());
    Form4& list = window.apps.window();
    HeadsetWatch watch(window.bench, list);
    watch.look();
    QTest::qWait(500);
    QVERIFY2(!list.lblRead->text().contains(u"Another headset"_s), qPrintable(list.lblRead->text()));
    list.noteRead({u"Quest 2"_s, u"OTHER"_s});
    m_headset->stop();
    test::VirtualHeadset further(m_headset->adbServerPort());
    QCOMPARE(further.start(), QString());
    QTRY_VERIFY_WITH_TIMEOUT((watch.look(), list.lblRead->text().contains(u"Another headset"_s)), 20'000);
  }

  void noDevice() {
    QCOMPARE(m_headset->start(), QString());
    m_headset->stop();
    QVERIFY(m_headset->waitForState(QString()));
    Window window;
    QVERIFY(window.opens());
    QCOMPARE(window.grid().Rows(), 1);
    QVERIFY2(window.notice().contains(u"no devices"_s), qPrintable(window.notice()));
  }

  void deviceGoneInTheMiddle() {
    const LabelTool tool;
    QCOMPARE(m_headset->start({.apps = 12}), QString());
    Window window;
    connect(window.apps.window().objDOS.get(), &DOSOutputs::ReceiveOutputs, this,
            [this](const QString& block) {
              if (block.contains(u"IP3x"_s)) m_headset->setFault(u"state"_s, u"gone"_s);
            });
    QVERIFY(window.opens());
    QVERIFY(window.grid().Rows() > 1 && window.grid().Rows() < 13);
    QVERIFY2(window.notice().contains(u"could be read"_s), qPrintable(window.notice()));
    QVERIFY(window.apps.window().isEnabled());
  }

  void stopped() {
    QCOMPARE(m_headset->start({.apps = 3}), QString());
    m_headset->setFault(u"latency_ms"_s, u"20000"_s);
    Window window;
    QTest::qWait(400);
    QVERIFY(!window.apps.progress().close());
    QVERIFY(window.opens());
    QVERIFY(window.notice().contains(u"Stopped"_s));
  }

 private:
  /// The icons that were kept.
  qsizetype icons() const { return tree(m_headset->workPath(u"cache"_s)).size(); }

  std::unique_ptr<test::VirtualHeadset> m_headset;
};

QTEST_MAIN(InventoryTest)
#include "inventory_test.moc"
