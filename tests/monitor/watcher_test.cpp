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
    QTest::addColumn<bool>("device");
    QTest::addColumn<bool>("packageLoaded");
    QTest::addColumn<bool>("appsClosed");
    QTest::addColumn<QString>("enabled");
    const auto row = [](const char* name, bool device, bool package, bool closed, const char16_t* enabled) {
      QTest::newRow(name) << device << package << closed << QString::fromUtf16(enabled);
    };
    row("device, package installed", true, true, false, u"1 2 4 5 6 9 10 11 12");
    row("device, no package loaded", true, false, false, u"6 9 10 11 12");
    row("device, list was closed", true, true, true, u"1 2 4 5 6 10 11 12");
    row("no device", false, true, false, u"");
  }
  void buttonsFollowTheDevice() {
    QFETCH(bool, device);
    QFETCH(bool, packageLoaded);
    QFETCH(bool, appsClosed);
    m_adb->answer(u"devices"_s, device ? oneDevice : noDevice);
    m_adb->answer(dumpsys, u"    versionCode=121 minSdk=29\n"_s);
    form().NoApkLoaded = packageLoaded ? 0 : 1;
    m_window->module.InstalledAppsClosed = appsClosed;
    const std::pair<int, Button*> buttons[] = {
        {1, form().Command1},   {2, form().Command2},   {4, form().Command4},
        {5, form().Command5},   {6, form().Command6},   {9, form().Command9},
        {10, form().Command10}, {11, form().Command11}, {12, form().Command12}};
    for (const auto& [number, button] : buttons) button->setEnabled(!device);
    for (const auto& [number, button] : buttons) button->setEnabled(false);
    if (!device) form().Command6->setEnabled(true);
    poll();
    QStringList enabled;
    for (const auto& [number, button] : buttons) {
      if (button->isEnabled()) enabled << QString::number(number);
    }
    QTEST(enabled.join(u' '), "enabled");
    QVERIFY(form().Command3->isEnabled());
    QCOMPARE(m_adb->takeCalls().contains(dumpsys), device && packageLoaded);
  }

  void missingFiguresAreAskedForOnce() {
    m_adb->answer(u"devices"_s, oneDevice);
    m_adb->answer(u"shell echo $EXTERNAL_STORAGE"_s, u"/sdcard\n"_s);
    m_adb->answer(u"shell df -h /sdcard"_s,
                  u"Filesystem Size Used Avail Use% Mounted on\n/dev/fuse 109G 12G 97G 12% /s\n"_s);
    form().Label7->setCaption(u" Gb"_s);
    poll();
    QCOMPARE(form().Label7->Caption(), u"109 Gb"_s);
    QCOMPARE(form().Label8->Caption(), u"12 Gb"_s);
    QCOMPARE(form().Label9->Caption(), u"97 Gb"_s);
    QCOMPARE(form().Label10->Caption(), u"12 %"_s);
    m_adb->takeCalls();
    poll();
    QCOMPARE(m_adb->takeCalls(), (QStringList{u"devices"_s, dumpsys}));
  }

  void reportWithoutAnAnswer() {
    // Nothing to cut off: no second line can be composed, and the first one runs again.
    form().Label9->setCaption(u"97 Gb"_s);
    QCoro::waitFor(StorageReport(form(), *form().objDOS));
    QCOMPARE(m_adb->takeCalls(), QStringList(2, u"shell echo $EXTERNAL_STORAGE"_s));
    QCOMPARE(form().Label7->Caption(), u" Gb"_s);
    QCOMPARE(form().Label9->Caption(), u"97 Gb"_s);
    QCOMPARE(form().Label10->Caption(), u" %"_s);
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
    Label* label = form().Label6;
    const auto ask = [&](const QString& reply) {
      m_adb->answer(dumpsys, reply);
      return QCoro::waitFor(CompareInstalledVersion(form(), *form().objDOS));
    };
    QVERIFY(ask(u"versionCode=120 minSdk=29\n"_s));
    QCOMPARE(label->Caption(), u" 120 (Older)"_s);
    QCOMPARE(label->toolTip(), u" 120"_s);
    QCOMPARE(label->BackColor(), 65280);
    QVERIFY(ask(u"versionCode=122 minSdk=29\n"_s));
    QCOMPARE(label->Caption(), u" 122 (Newer)"_s);
    QCOMPARE(label->BackColor(), 255);
    QCOMPARE(label->ForeColor(), 16777215);
    QVERIFY(ask(QString()));
    QCOMPARE(label->Caption(), u" 122 (Newer)"_s);
    QVERIFY(ask(u"versionCode=0121 minSdk=29\n"_s));
    QCOMPARE(label->Caption(), u" 122 (Newer)"_s);
    QVERIFY(ask(u"versionCode=121 minSdk=29\n"_s));
    QCOMPARE(label->Caption(), u" 121 (Same)"_s);
    QVERIFY(!ask(u"error: device offline\n"_s));
    QCOMPARE(label->Caption(), u"未安装"_s);
    QCOMPARE(label->BackColor(), form().NormalBackColor.toInt());
    QCOMPARE(label->ForeColor(), form().NormalForeColor.toInt());
    QVERIFY(!ask(QString()));
    m_adb->takeCalls();
    form().Label2->setCaption(u"com.example;reboot"_s);
    QVERIFY(!ask(u"versionCode=121 minSdk=29\n"_s));
    QCOMPARE(m_adb->takeCalls(), QStringList());
  }

  void bannerTurns() {
    for (PictureBox* frame : form().Picture2) frame->setVisible(false);
    for (int tick = 1; tick <= 23; ++tick) {
      QMetaObject::invokeMethod(form().Timer2, "timeout");
      QCOMPARE(form().AnimationFrame, qint16(tick % 23));
      QVERIFY(form().Picture2[static_cast<size_t>(tick % 23)]->isVisible());
      QVERIFY(!form().Picture2[static_cast<size_t>(tick - 1)]->isVisible());
    }
  }
};

QTEST_MAIN(WatcherTest)
#include "watcher_test.moc"
