// The queue: several packages, bundles and expansion files, with the real adb and the virtual headset.

#include <QClipboard>
#include <QDirIterator>
#include <QJsonDocument>
#include <QMimeData>

#include "program.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class QueueTest : public QObject {
  Q_OBJECT

  using Stage = QueueItem::Stage;

  std::unique_ptr<Program> m_program;

  test::VirtualHeadset& headset() { return m_program->headset; }
  QueueWindow& window() { return m_program->application->queueWindow(); }
  QString path(const QString& name) { return headset().workPath(u"in/"_s + name); }
  QString obb(const QString& package, const QString& name) {
    return QString::fromUtf8(headset().readDeviceFile(u"/sdcard/Android/obb/"_s + package + u'/' + name));
  }
  QByteArray packed(const SamplePackage& sample) {
    const QString file = headset().workPath(u"packed.apk"_s);
    return sample.write(file).isEmpty() ? readFile(file) : QByteArray();
  }

  void drop(const QStringList& paths, QWidget* target) {
    QList<QUrl> urls;
    for (const QString& each : paths) urls << QUrl::fromLocalFile(each);
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &event);
    QVERIFY(event.isAccepted() && event.dropAction() == Qt::CopyAction);
  }
  /// Waits for the end of the reading, or of a run.
  bool isOver() {
    return QTest::qWaitFor(
        [this] { return window().cmdClose->isEnabled() && window().table->rowCount() > 0; }, 60'000);
  }
  /// The column of states, a line each.
  QString states() {
    QString all;
    for (int row = 0; row < window().table->rowCount(); ++row)
      all += window().table->item(row, 5)->text() + u'\n';
    return all;
  }

 private Q_SLOTS:
  void init() {
    m_program = std::make_unique<Program>();
    QCOMPARE(m_program->startHeadset(), QString());
  }
  void cleanup() { m_program.reset(); }

  void severalOneAfterTheOther() {
    QCOMPARE((SamplePackage{.package = u"com.example.a"_s, .label = u"A 星"_s, .icon = true}.write(
                 path(u"a/a one.apk"_s))),
             QString());
    QVERIFY(writeFile(path(u"a/com.example.a/main.1.com.example.a.obb"_s), "beside"));
    QCOMPARE((SamplePackage{.package = u"com.example.b"_s, .versionCode = 5, .label = u"B"_s}.write(
                 path(u"b.apk"_s))),
             QString());
    QVERIFY(writeFile(path(u"elsewhere/main.5.com.example.b.obb"_s), "given by itself"));
    QVERIFY(writeFile(path(u"broken.apk"_s), "no package"));
    QCOMPARE((SamplePackage{.package = u"com.example.old"_s, .versionCode = 9}.write(path(u"new.apk"_s))),
             QString());
    QCOMPARE(headset().adb({u"install"_s, path(u"new.apk"_s)}).exitCode, 0);
    QCOMPARE((SamplePackage{.package = u"com.example.old"_s, .versionCode = 8, .label = u"Old"_s}.write(
                 path(u"old.apk"_s))),
             QString());
    m_program->application = std::make_unique<Application>(m_program->desktop, [] {});
    m_program->application->start(u"x y"_s, {path(u"a"_s), path(u"b.apk"_s), path(u"broken.apk"_s)});
    QTRY_VERIFY(window().isVisible());
    QVERIFY(isOver());
    drop({path(u"old.apk"_s), path(u"elsewhere/main.5.com.example.b.obb"_s)}, &window());
    QTRY_COMPARE(window().table->rowCount(), 4);
    QVERIFY(isOver());
    QStringList shown;
    for (int row = 0; row < 4; ++row)
      for (const int column : {0, 1, 2, 3}) shown << window().table->item(row, column)->text();
    QCOMPARE(shown.join(u'|'), u"A 星|1|—|1|B|5|—|1|broken.apk||||Old|8|9 ▲|"_s);
    QVERIFY(!window().table->item(0, 0)->icon().isNull());

    // One question, before the first step.
    m_program->desktop.answers = {BoxAnswer::No, BoxAnswer::Yes};
    QTest::mouseClick(window().cmdStart, Qt::LeftButton);
    QTRY_COMPARE(m_program->desktop.boxes.size(), 1);
    QVERIFY(m_program->desktop.boxes[0].text.contains(u"Old: "_s));
    QVERIFY(isOver());
    QCOMPARE(m_program->commands(u"install"_s).size(), 1);  // that before the program was started
    QTest::mouseClick(window().cmdStart, Qt::LeftButton);
    QVERIFY(m_program->bench().turn.taken());
    QVERIFY(isOver());
    QVERIFY2(states().count(u"✓ "_s) == 2, qPrintable(states()));
    QCOMPARE(m_program->desktop.boxes.size(), 2);
    QCOMPARE(obb(u"com.example.a"_s, u"main.1.com.example.a.obb"_s), u"beside"_s);
    QCOMPARE(obb(u"com.example.b"_s, u"main.5.com.example.b.obb"_s), u"given by itself"_s);
    QVERIFY(!m_program->bench().turn.taken() && !m_program->bench().state.WatcherHold);
    QTest::mouseClick(window().cmdCopy, Qt::LeftButton);
    const QString report = QGuiApplication::clipboard()->text();
    QVERIFY2(report.contains(u"✗ Old [old.apk] "_s) && report.contains(u"INSTALL_FAILED_VERSION_DOWNGRADE"_s),
             qPrintable(report));

    // What failed, and nothing else.
    headset().adb({u"uninstall"_s, u"com.example.old"_s});
    headset().clearLog();
    m_program->desktop.answers = {BoxAnswer::Yes};
    QTest::mouseClick(window().cmdRetry, Qt::LeftButton);
    QVERIFY(isOver());
    QVERIFY2(states().count(u"✓ "_s) == 3, qPrintable(states()));
    QCOMPARE(headset().packages().value(u"com.example.old"_s).versionCode, 8);
    QCOMPARE(m_program->commands(u"com.example.a"_s), QStringList());
  }

  void theCablePulledTwice() {
    QCOMPARE(
        (SamplePackage{.package = u"com.example.a"_s, .paddingBytes = 3'000'000}.write(path(u"a.apk"_s))),
        QString());
    QVERIFY(writeFile(path(u"com.example.a/main.1.com.example.a.obb"_s), QByteArray(3'000'000, 'x')));
    QCOMPARE((SamplePackage{.package = u"com.example.b"_s}.write(path(u"b.apk"_s))), QString());
    QVERIFY(m_program->start(QString()));
    drop({path(u"a.apk"_s), path(u"b.apk"_s)}, &m_program->form());
    QTRY_VERIFY(window().isVisible() && window().cmdStart->isEnabled());
    QVERIFY(isOver());
    headset().setFault(u"drop_after_install_bytes"_s, u"1000000"_s);
    headset().setFault(u"drop_after_push_bytes"_s, u"1000000"_s);
    int pulled = 0;
    connect(window().table, &QTableWidget::itemChanged, this, [&](const QTableWidgetItem* changed) {
      if (!changed->text().contains(u"Waiting for the headset"_s)) return;
      if (++pulled == 1) headset().clearFault(u"drop_after_install_bytes"_s);
      if (pulled == 2) headset().clearFaults();
    });
    QTest::mouseClick(window().cmdStart, Qt::LeftButton);
    QVERIFY(isOver());
    QVERIFY2(states().count(u"✓ "_s) == 2, qPrintable(states()));
    QCOMPARE(pulled, 2);
    QCOMPARE(obb(u"com.example.a"_s, u"main.1.com.example.a.obb"_s), QString(3'000'000, u'x'));
    QCOMPARE(m_program->commands(u"-S"_s).filter(u"install"_s).size(), 3);  // the first package twice
  }

  void stopAndSkip() {
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s})
      QCOMPARE((SamplePackage{.package = u"com.example."_s + name, .paddingBytes = 2'000'000}.write(
                   path(name + u".apk"_s))),
               QString());
    QVERIFY(m_program->start(QString()));
    drop({path({})}, &m_program->form());
    QTRY_COMPARE(window().table->rowCount(), 3);
    QVERIFY(isOver());
    headset().setFault(u"bytes_per_second"_s, u"200000"_s);
    QTest::mouseClick(window().cmdStart, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->commands(u"install"_s).isEmpty(), 20'000);
    window().table->selectRow(0);
    QTest::mouseClick(window().cmdSkip, Qt::LeftButton);
    QTRY_VERIFY(states().startsWith(u"已跳过"_s));
    QTRY_VERIFY_WITH_TIMEOUT(window().busyStrip->inView(), 10'000);
    Q_EMIT window().busyStrip->stopRequested();
    QVERIFY(isOver());
    QVERIFY2(states().contains(u"Stopped"_s) && states().endsWith(u"等待安装 (Ready)\n"_s),
             qPrintable(states()));
    QVERIFY(headset().packages().isEmpty());
  }

  void bundles() {
    const QString package = u"com.example.app"_s;
    const SamplePackage base{.label = u"Base"_s, .splitRequired = true};
    const auto split = [&](const QString& name) { return packed({.split = name}); };
    const QByteArray main = packed(base);
    const struct {
      QString name;
      QMap<QString, QByteArray> contents;
      QString splits, told;
    } rows[] = {
        {u"a.apks"_s,
         {{u"base.apk"_s, main},
          {u"split_config.arm64_v8a.apk"_s, split(u"config.arm64_v8a"_s)},
          {u"split_config.x86.apk"_s, split(u"config.x86"_s)},
          {u"split_config.en.apk"_s, split(u"config.en"_s)},
          {u"split_config.xxhdpi.apk"_s, split(u"config.xxhdpi"_s)}},
         u"base.apk split_config.arm64_v8a.apk split_config.en.apk split_config.xxhdpi.apk"_s,
         u"✓"_s},
        {u"b.xapk"_s,
         {{u"manifest.json"_s, R"({"package_name":"com.example.app","name":"From the manifest"})"},
          {u"com.example.app.apk"_s, main},
          {u"config.armeabi_v7a.apk"_s, split(u"config.armeabi_v7a"_s)},
          {u"Android/obb/com.example.app/main.1.com.example.app.obb"_s, "expansion"}},
         u"base.apk split_config.armeabi_v7a.apk"_s,
         u"✓"_s},
        {u"c.apkm"_s, {{u"base.apk"_s, main}}, {}, u"INSTALL_FAILED_MISSING_SPLIT"_s},
        {u"d.apks"_s,
         {{u"base.apk"_s, main}, {u"split_config.x86.apk"_s, split(u"config.x86"_s)}},
         {},
         u"processor"_s},
        {u"e.apkm"_s, {{u"../base.apk"_s, main}}, {}, u"name in it cannot be used"_s},
        {u"f.apks"_s, {{u"base.apk"_s, "no package"}}, {}, u"no readable package"_s},
    };
    QVERIFY(m_program->start(QString()));
    for (const auto& row : rows) {
      headset().adb({u"uninstall"_s, package});
      QDir().mkpath(path({}));
      QVERIFY(writeArchive(path(row.name), row.contents, true));
      InstallQueue queue(m_program->bench(), {});
      QCoro::waitFor(queue.add({path(row.name)}));
      headset().clearLog();
      QCoro::waitFor(queue.start());
      QVERIFY2(queue.report().contains(row.told), qPrintable(queue.report()));
      QStringList files;
      QDirIterator found(headset().devicePath(u"/data/app"_s), {u"*.apk"_s}, QDir::Files,
                         QDirIterator::Subdirectories);
      while (found.hasNext()) {
        if (found.next().contains(package)) files << found.fileName();
      }
      files.sort();
      QCOMPARE(files.join(u' '), row.splits);
      QVERIFY(m_program->commands(u"getprop"_s).size() == 1);
      if (row.name == u"b.xapk") QCOMPARE(obb(package, u"main.1.com.example.app.obb"_s), u"expansion"_s);
      QVERIFY(
          QDir(headset().workPath(u"cache"_s)).entryList({u"orvanta-bundle*"_s}, QDir::AllEntries).isEmpty());
    }
  }
};

QTEST_MAIN(QueueTest)
#include "queue_test.moc"
