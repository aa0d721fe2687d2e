#include <QTest>
#include <QTimer>

#include "monitor/connection_doctor.h"
#include "monitor/device_watcher.h"
#include "monitor/installed_version.h"
#include "monitor/storage_report.h"
#include "platform/host_style.h"
#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {
const QString oneDevice = u"List of devices attached\n1WMHH8325K1147\tdevice\n\n"_s;
const QString noDevice = u"List of devices attached\n\n"_s;
const QString dumpsys = u"shell dumpsys package com.example.app"_s;
}  // namespace

class WatcherTest : public QObject {
  Q_OBJECT

  std::unique_ptr<MainWindowFixture> m_window;
  std::unique_ptr<StandIn> m_adb;
  std::unique_ptr<DeviceWatcher> m_watcher;
  FormColor m_normal = 0;  // of the box for the installed build

  apkinfo& form() { return *m_window->form; }
  Workbench& bench() { return m_window->bench; }
  QString figures() {
    const Label* const labels[] = {form().Label7, form().Label8, form().Label9, form().Label10};
    QStringList captions;
    for (const Label* label : labels) captions << label->Caption();
    return captions.join(u", "_s);
  }
  void poll() { QCoro::waitFor(m_watcher->Timer3_Timer()); }
  /// Whether the line shows its sentence to the end in both languages.
  bool isWholeInView() {
    const auto picture = [this](const Status& status) {
      form().statusLine->tell(status);
      return form().statusLine->grab().toImage();
    };
    const Status whole = bench().status.first();
    Status chinese = whole;
    Status english = whole;
    chinese.sentence.chinese.back() = english.sentence.english.back() = u'#';
    const bool differ = picture(english) != picture(whole) && picture(chinese) != picture(whole);
    form().statusLine->tell(whole);
    return differ;
  }

 private Q_SLOTS:
  void init() {
    m_window = std::make_unique<MainWindowFixture>();
    m_adb = std::make_unique<StandIn>();
    m_normal = form().Label6->BackColor();
    bench().state.package.ManifestFields[FieldPackage] = u"com.example.app"_s;
    bench().state.package.ManifestFields[FieldVersionCode] = u"121"_s;
    bench().state.package.ApkFileName = u"x.apk"_s;
    m_watcher =
        std::make_unique<DeviceWatcher>(bench(), [this] { return QApplication::activeWindow() == &form(); });
    form().Timer3->stop();
    form().show();
    form().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form()));
  }
  void cleanup() {
    m_watcher.reset();
    m_window.reset();
    m_adb.reset();
  }

  void buttonsFollowTheDevice() {
    const QString known = u"    versionCode=121 minSdk=29\n"_s;
    const QString unknown = u"  Unable to find package: com.example.app\n"_s;
    const std::tuple<QString, QString, bool, QString> rows[] = {
        {oneDevice, known, true, u"1 2 4 5 6 9 11 12"_s},
        {oneDevice, unknown, true, u"1 2 6 9 11 12"_s},
        {oneDevice, known, false, u"6 9 11 12"_s},
        {noDevice, known, true, u""_s},
        {u"* daemon started successfully\n"_s + noDevice, known, true, u""_s},
        {u"* daemon not running; starting now at tcp:5037\nADB server didn't ACK\n"
         "Full server startup log: /tmp/adb.0.log\nServer had pid: 123\n--- adb starting (pid 123) ---\n"
         "adb I main.cpp:63] Android Debug Bridge version 1.0.41\n* failed to start daemon\n"
         "adb: failed to check server version: cannot connect to daemon\n"_s,
         known, true, u""_s},
    };
    for (const auto& [devices, installed, packageLoaded, expected] : rows) {
      cleanup();
      init();
      const std::pair<int, Button*> buttons[] = {
          {1, form().Command1}, {2, form().Command2}, {4, form().Command4},   {5, form().Command5},
          {6, form().Command6}, {9, form().Command9}, {11, form().Command11}, {12, form().Command12}};
      m_adb->answer(u"devices"_s, devices);
      m_adb->answer(dumpsys, installed);
      bench().state.package.NoApkLoaded = packageLoaded ? 0 : 1;
      for (const auto& [number, button] : buttons) button->setEnabled(devices != oneDevice);
      form().Command4->setEnabled(installed != known);
      poll();
      QStringList enabled;
      for (const auto& [number, button] : buttons) {
        if (button->isEnabled()) enabled << QString::number(number);
      }
      QCOMPARE(enabled.join(u' '), expected);
      QCOMPARE(m_adb->takeCalls().contains(dumpsys), devices == oneDevice && packageLoaded);
    }
  }

  void theLineTellsTheTruthOfAnyReply() {
    ConnectionDoctor doctor(
        bench(), [](ConnectionAction) {}, [] { return std::optional<bool>(); }, [] { return QStringList(); });
    connect(m_watcher.get(), &DeviceWatcher::seen, &doctor, &ConnectionDoctor::consider);
    const auto tells = [this] { return form().statusLine->text(); };
    const std::pair<QString, QString> rows[] = {
        {oneDevice, u"Connected: 1WMHH8325K1147"_s},
        {u"List of devices attached\nadb-01 (2)._adb-tls-connect._tcp\tdevice\n"_s, u"(2)._adb-tls"_s},
        {u"* daemon not running; starting now at tcp:5037\n"_s + noDevice, u"No headset found"_s},
        {u"adb server version (40) doesn't match this client (41); killing...\n"_s + noDevice,
         u"Another adb version"_s},
        {QString(300'000, u'\x01'), u"could not list"_s},
        {u"List of devices attached\n\t\n\x1b[31m\n \tx\n"_s, u"No headset found"_s},
        {QString(2'000'000, u'x'), u"No headset found"_s},  // ended: the last answer stands
        {QString(), u"ended without an answer"_s},
    };
    for (const auto& [reply, told] : rows) {
      m_adb->answer(u"devices"_s, reply);
      poll();
      QVERIFY2(tells().contains(told), qPrintable(tells()));
      QVERIFY2(isWholeInView(), qPrintable(told));
    }
    QCOMPARE(m_adb->takeCalls().count(u"devices"_s), std::size(rows));
    // A server that hangs: the ticks that find the poll under way tell for how long.
    m_adb->answer(u"devices"_s, {{}, QString(), true});
    const auto pending = m_watcher->Timer3_Timer();
    QTRY_VERIFY_WITH_TIMEOUT((poll(), tells().contains(u"has not answered for"_s)), 9000);
    (void)bench().turn.begin();
    QTRY_VERIFY(pending.isReady());
    m_adb->answer(u"devices"_s, oneDevice);
    poll();
    QVERIFY(tells().contains(u"Connected"_s));
  }

  void aToolThatWasPutThereIsMissingNoMore() {
    ConnectionDoctor doctor(
        bench(), [](ConnectionAction) {}, [] { return std::optional<bool>(); }, [] { return QStringList(); });
    connect(m_watcher.get(), &DeviceWatcher::seen, &doctor, &ConnectionDoctor::consider);
    QDir beside(QCoreApplication::applicationDirPath());
    const QString tool = u"adb"_s + HostStyle::native().executableSuffix;
    QVERIFY(beside.rename(tool, u"adb.away"_s));
    poll();
    QVERIFY(beside.rename(u"adb.away"_s, tool));
    QVERIFY(form().statusLine->text().contains(u"adb was not found"_s));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCoro::waitFor(m_watcher->lookAnew());
    QVERIFY2(form().statusLine->text().contains(u"Paused"_s), qPrintable(form().statusLine->text()));
  }

  void noKeyIsTakenForAnotherControlWhenTheButtonsGoGrey() {
    int clicks = 0;
    for (const auto* control : form().findChildren<QAbstractButton*>())
      connect(control, &QAbstractButton::clicked, this, [&clicks] { ++clicks; });
    m_adb->answer(dumpsys, u"    versionCode=121 minSdk=29\n"_s);
    for (Button* button : {form().Command1, form().Command2, form().Command4, form().Command5,
                           form().Command6, form().Command9, form().Command11, form().Command12}) {
      button->setFocus();
      for (const QString& answer : {noDevice, oneDevice}) {
        m_adb->answer(u"devices"_s, answer);
        poll();
        QCOMPARE(button->isEnabled(), answer == oneDevice);
        QTest::keyClick(form().windowHandle(), Qt::Key_Space);
        QCOMPARE(clicks, 0);
      }
    }
    // The strip's button goes grey under the key that presses it, and then disappears.
    Q_EMIT bench().turn.refused();
    auto* stop = form().busyStrip->findChild<Button*>(u"busyStop"_s);
    stop->setFocus();
    for (int presses = 0; presses < 2; ++presses) QTest::keyClick(form().windowHandle(), Qt::Key_Space);
    Q_EMIT bench().turn.ended();
    QTest::keyClick(form().windowHandle(), Qt::Key_Space);
    QCOMPARE(clicks, 1);
  }

  void aStoppedStartTellsNothingOfThePackage() {
    m_adb->answer(dumpsys, {{}, {}, true});
    const QString before = form().Label6->Caption();
    const auto turn = bench().turn.begin();
    QTimer::singleShot(500, &form(), [this] { bench().turn.requestStop(); });
    QVERIFY(!QCoro::waitFor(showInstalledBuildAtStart(bench())));
    QCOMPARE(form().Label6->Caption(), before);
    QVERIFY(!form().txtOutputs->Text().contains(u"未安装"_s));
  }

  void missingFiguresAreAskedForOnce() {
    m_adb->answer(u"devices"_s, oneDevice);
    m_adb->answer(u"shell echo $EXTERNAL_STORAGE"_s, u"/sdcard\n"_s);
    m_adb->answer(u"shell df -h /sdcard"_s,
                  u"Filesystem Size Used Avail Use% Mounted on\n/dev/fuse 109G 9.8G 97G 12% /s\n"_s);
    QCOMPARE(figures(), u" Gb,  Gb, ,  %"_s);
    poll();
    QCOMPARE(figures(), u"109 Gb, 98 Gb, 11 Gb, 12 %"_s);
    QCOMPARE(form().Label8->toolTip() + u", "_s + form().Label9->toolTip(), u"9.8 GiB, 97.0 GiB"_s);
    m_adb->takeCalls();
    poll();
    QCOMPARE(m_adb->takeCalls(), (QStringList{u"devices"_s, dumpsys}));
  }

  void reportWithoutAnAnswer() {
    // Nothing to cut off: no second line can be composed, and the first one runs again.
    form().Label9->setCaption(u"97 Gb"_s);
    QCoro::waitFor(StorageReport(bench(), bench().objDOS));
    QCOMPARE(m_adb->takeCalls(), QStringList(2, u"shell echo $EXTERNAL_STORAGE"_s));
    QCOMPARE(figures(), u" Gb,  Gb, 97 Gb,  %"_s);
  }

  void heldOrOutOfFront() {
    m_adb->answer(u"devices"_s, oneDevice);
    form().Command6->setEnabled(false);
    bench().state.WatcherHold = true;
    poll();
    bench().state.WatcherHold = false;
    {
      const auto handler = bench().turn.begin();
      poll();
    }
    QVERIFY(!form().Command6->isEnabled());
    QCOMPARE(m_adb->takeCalls(), QStringList());
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    form().Command6->setEnabled(true);
    poll();
    QVERIFY2(!form().Command6->isEnabled(), "not in front counts as no device");
    QCOMPARE(m_adb->takeCalls(), QStringList());
  }

  void aPollThatHangsIsGivenUp_data() {
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("byHandler");
    QTest::newRow("devices, by its limit") << u"devices"_s << oneDevice << false;
    QTest::newRow("devices, by a handler") << u"devices"_s << oneDevice << true;
    QTest::newRow("storage, by a handler") << u"shell echo *"_s << u"/sdcard\n"_s << true;
    QTest::newRow("build, by its limit") << dumpsys << u"versionCode=121 minSdk=29\n"_s << false;
  }
  void aPollThatHangsIsGivenUp() {
    QFETCH(QString, call);
    QFETCH(QString, reply);
    QFETCH(bool, byHandler);
    m_adb->answer(u"devices"_s, oneDevice);
    m_adb->answer(dumpsys, u"versionCode=121 minSdk=29\n"_s);
    // What it printed before it hung is half an answer.
    m_adb->answer(call, {{}, u"List of devices attached\nversionCode=9 minSdk=1 12G 3G\n"_s, true});
    m_watcher.reset();
    m_watcher = std::make_unique<DeviceWatcher>(
        bench(), [this] { return QApplication::activeWindow() == &form(); },
        std::chrono::seconds(byHandler ? 60 : 2));
    form().Command4->setEnabled(false);
    const auto pending = m_watcher->Timer3_Timer();
    if (byHandler) {
      QTRY_VERIFY(!m_adb->calls().filter(call.section(u'*', 0, 0)).isEmpty());
      (void)bench().turn.begin();
    }
    QTRY_VERIFY(pending.isReady());
    QCOMPARE(form().Command6->isEnabled(), byHandler || call != u"devices"_s);
    QCOMPARE(form().Label6->Caption() + figures(), u" Gb,  Gb, ,  %"_s);
    m_adb->answer(call, reply);
    QTRY_VERIFY((poll(), form().Command4->isEnabled()));
  }

  void versionLabel() {
    const QString code = u"versionCode=%1 minSdk=29\n"_s;
    const int normal = m_normal;
    const struct {
      QString reply;
      bool installed;
      QString caption;
      int color;
    } replies[] = {
        {code.arg(120), true, u" 120 (Older)"_s, 65280},
        {code.arg(122), true, u" 122 (Newer)"_s, 255},
        {QString(), true, u" 122 (Newer)"_s, 255},
        {code.arg(u"0121"_s), true, u" 122 (Newer)"_s, 255},
        {code.arg(121), true, u" 121 (Same)"_s, 255},
        {u"error: device offline\n"_s, false, u"未安装"_s, normal},
        {QString(), false, u"未安装"_s, normal},
    };
    const auto ask = [this] { return QCoro::waitFor(CompareInstalledVersion(bench(), bench().objDOS)); };
    for (const auto& [reply, installed, caption, color] : replies) {
      m_adb->answer(dumpsys, reply);
      QCOMPARE(ask(), installed);
      QCOMPARE(form().Label6->Caption(), caption);
      QCOMPARE(form().Label6->BackColor(), color);
    }
    // At the start an undecided build leaves the console to what it said before.
    for (const auto& [number, told] : {std::pair(u"120"_s, true), {u"0121"_s, false}}) {
      m_adb->answer(dumpsys, code.arg(number));
      QCOMPARE(QCoro::waitFor(showInstalledBuildAtStart(bench())), told);
    }
    m_adb->takeCalls();
    for (const QString& package : {QString(), u"com.example;reboot"_s}) {
      bench().state.package.ManifestFields[FieldPackage] = package;
      QVERIFY(!ask());
    }
    QCOMPARE(m_adb->takeCalls(), QStringList());
  }
};

QTEST_MAIN(WatcherTest)
#include "watcher_test.moc"
