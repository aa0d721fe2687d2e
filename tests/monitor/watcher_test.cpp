#include <QTest>

#include "core/main_window.h"
#include "monitor/device_watcher.h"
#include "monitor/installed_version.h"
#include "monitor/storage_report.h"
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

  apkinfo& form() { return *m_window->form; }
  QString figures() {
    const Label* const labels[] = {form().Label7, form().Label8, form().Label9, form().Label10};
    QStringList captions;
    for (const Label* label : labels) captions << label->Caption();
    return captions.join(u", "_s);
  }
  void poll() { QCoro::waitFor(m_watcher->Timer3_Timer()); }

 private Q_SLOTS:
  void init() {
    m_window = std::make_unique<MainWindowFixture>();
    m_adb = std::make_unique<StandIn>();
    form().objDOS = std::make_unique<DOSOutputs>(form(), &form().turn());
    form().NormalBackColor = QString::number(form().Label6->BackColor());
    form().NormalForeColor = QString::number(form().Label6->ForeColor());
    form().Label2->setCaption(u"com.example.app"_s);
    form().Label4->setCaption(u"121"_s);
    form().Label5->setCaption(u"x.apk"_s);
    m_watcher = std::make_unique<DeviceWatcher>(form());
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

  void buttonsFollowTheDevice_data() {
    QTest::addColumn<QString>("devices");
    QTest::addColumn<QString>("installed");
    QTest::addColumn<bool>("packageLoaded");
    QTest::addColumn<bool>("appsClosed");
    QTest::addColumn<QString>("enabled");
    const QString known = u"    versionCode=121 minSdk=29\n"_s;
    const QString unknown = u"  Unable to find package: com.example.app\n"_s;
    QTest::newRow("package installed") << oneDevice << known << true << false << u"1 2 4 5 6 9 10 11 12"_s;
    QTest::newRow("not installed") << oneDevice << unknown << true << false << u"1 2 6 9 10 11 12"_s;
    QTest::newRow("no package loaded") << oneDevice << known << false << false << u"6 9 10 11 12"_s;
    QTest::newRow("list was closed") << oneDevice << known << true << true << u"1 2 4 5 6 10 11 12"_s;
    QTest::newRow("no device") << noDevice << known << true << false << u""_s;
  }
  void buttonsFollowTheDevice() {
    QFETCH(QString, devices);
    QFETCH(QString, installed);
    QFETCH(bool, packageLoaded);
    QFETCH(bool, appsClosed);
    m_adb->answer(u"devices"_s, devices);
    m_adb->answer(dumpsys, installed);
    form().NoApkLoaded = packageLoaded ? 0 : 1;
    m_window->module.InstalledAppsClosed = appsClosed;
    const std::pair<int, Button*> buttons[] = {
        {1, form().Command1},   {2, form().Command2},   {4, form().Command4},
        {5, form().Command5},   {6, form().Command6},   {9, form().Command9},
        {10, form().Command10}, {11, form().Command11}, {12, form().Command12}};
    for (const auto& [number, button] : buttons) button->setEnabled(devices == noDevice);
    form().Command4->setEnabled(!installed.contains(u"versionCode"_s));
    poll();
    QStringList enabled;
    for (const auto& [number, button] : buttons) {
      if (button->isEnabled()) enabled << QString::number(number);
    }
    QTEST(enabled.join(u' '), "enabled");
    QCOMPARE(m_adb->takeCalls().contains(dumpsys), devices == oneDevice && packageLoaded);
  }

  void missingFiguresAreAskedForOnce() {
    m_adb->answer(u"devices"_s, oneDevice);
    m_adb->answer(u"shell echo $EXTERNAL_STORAGE"_s, u"/sdcard\n"_s);
    m_adb->answer(u"shell df -h /sdcard"_s,
                  u"Filesystem Size Used Avail Use% Mounted on\n/dev/fuse 109G 12G 97G 12% /s\n"_s);
    form().Label7->setCaption(u" Gb"_s);
    poll();
    QCOMPARE(figures(), u"109 Gb, 12 Gb, 97 Gb, 12 %"_s);
    m_adb->takeCalls();
    poll();
    QCOMPARE(m_adb->takeCalls(), (QStringList{u"devices"_s, dumpsys}));
  }

  void reportWithoutAnAnswer() {
    // Nothing to cut off: no second line can be composed, and the first one runs again.
    form().Label9->setCaption(u"97 Gb"_s);
    QCoro::waitFor(StorageReport(form(), *form().objDOS));
    QCOMPARE(m_adb->takeCalls(), QStringList(2, u"shell echo $EXTERNAL_STORAGE"_s));
    QCOMPARE(figures(), u" Gb,  Gb, 97 Gb,  %"_s);
  }

  void heldOrOutOfFront() {
    m_adb->answer(u"devices"_s, oneDevice);
    form().Command6->setEnabled(false);
    form().WatcherHold = true;
    poll();
    form().WatcherHold = false;
    {
      const auto handler = form().turn().begin();
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

  void anAnswerThatAHandlerHasOvertakenIsDropped() {
    m_adb->answer(u"devices"_s, noDevice);
    const auto pending = m_watcher->Timer3_Timer();
    { const auto handler = form().turn().begin(); }
    QTRY_VERIFY(pending.isReady());
    QVERIFY(form().Command6->isEnabled());
    poll();
    QVERIFY(!form().Command6->isEnabled());
  }

  void versionLabel() {
    const QString code = u"versionCode=%1 minSdk=29\n"_s;
    const int normal = form().NormalBackColor.toInt();
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
    const auto ask = [this] { return QCoro::waitFor(CompareInstalledVersion(form(), *form().objDOS)); };
    for (const auto& [reply, installed, caption, color] : replies) {
      m_adb->answer(dumpsys, reply);
      QCOMPARE(ask(), installed);
      QCOMPARE(form().Label6->Caption(), caption);
      QCOMPARE(form().Label6->BackColor(), color);
    }
    m_adb->takeCalls();
    form().Label2->setCaption(u"com.example;reboot"_s);
    QVERIFY(!ask());
    QCOMPARE(m_adb->takeCalls(), QStringList());
  }
};

QTEST_MAIN(WatcherTest)
#include "watcher_test.moc"
