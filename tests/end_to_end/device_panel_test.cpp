#include <QTest>

#include "device/adb_row.h"
#include "device/device_panel.h"
#include "device/press_table.h"
#include "testing/virtual_headset.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// The main window with both features, beside a headset.
struct Window : MainWindowFixture, StartupSteps {
  Window() {
    form->Timer3->stop();
    QCoro::waitFor(form->Form_Load(u"/x.apk"_s, *this));
    form->show();
    form->setWidth(openWidth);
    form->setHeight(openHeight);
  }
  bool settled() const {
    return QTest::qWaitFor([this] { return !form->turn().taken(); }, 20000);
  }
  bool press(Button* button) const {
    button->click();
    return settled();
  }

  QCoro::Task<> showTip() override { co_return; }
  QCoro::Task<> runFirstRunDialog() override { co_return; }
  QCoro::Task<> readBadging() override { co_return; }
  QCoro::Task<> StorageReport() override { co_return; }
  QCoro::Task<> showIcon() override { co_return; }
  QCoro::Task<> showInstalledBuild() override { co_return; }

  DevicePanel panel{*form};
  AdbRow row{*form};
};

}  // namespace

class DevicePanelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_headset = std::make_unique<test::VirtualHeadset>();
    QCOMPARE(m_headset->start(), QString());
    m_headset->clearLog();
  }
  void cleanup() { m_headset.reset(); }

  void everyPressArrives() {
    Window window;
    apkinfo& form = *window.form;
    for (int Index = 0; Index < 22; ++Index) {
      const QStringList settings = settingsOfPress(Index);
      form.setWidth(openWidth);
      QVERIFY(window.press(form.Command13[static_cast<size_t>(Index)]));
      QCOMPARE(form.Width(), closedWidth);
      QCOMPARE(window.desktop.beeps, Index + 1);
      QStringList commands;
      for (const QString& setting : settings) commands << u"setprop "_s + setting;
      QCOMPARE(takeCommands(), commands);
      for (const QString& setting : settings) {
        const QStringList words = setting.split(u' ');
        QCOMPARE(m_headset->adb({u"shell"_s, u"getprop"_s, words[0]}).output.trimmed(), words[1]);
      }
      m_headset->clearLog();
    }
    QCOMPARE(form.txtOutputs->Text(), QString());

    form.setWidth(openWidth);
    QVERIFY(window.press(form.Command12));
    QCOMPARE(form.Width(), openWidth);
    QCOMPARE(takeCommands(), QStringList{u"svc usb setFunctions mtp true"_s});
    QVERIFY(window.press(form.Command13[22]));
    QVERIFY(m_headset->services().join(u' ').startsWith(u"reboot"_s));
    QVERIFY(m_headset->waitForState({}));
    QCOMPARE(window.desktop.beeps, 24);
  }

  void withoutAHeadset() {
    m_headset->stop();
    QVERIFY(m_headset->waitForState({}));
    Window window;
    QVERIFY(window.press(window.form->Command13[12]));
    QCOMPARE(window.form->Width(), closedWidth);
    QCOMPARE(window.desktop.beeps, 1);
    // Both commands of the pair are tried, and adb's own words are all that the user gets.
    QCOMPARE(window.form->txtOutputs->Text().count(u"no devices"_s), 2);
    QVERIFY(window.desktop.boxes.isEmpty());
  }

  void freeCommands() {
    Window window;
    apkinfo& form = *window.form;
    QTest::keyClicks(form.Text1, u"shell echo \"a  b\""_s);
    QCOMPARE(window.desktop.beeps, 0);
    QTest::keyClick(form.Text1, Qt::Key_Enter, Qt::ShiftModifier);
    QCOMPARE(window.desktop.beeps, 1);
    QVERIFY(window.settled());
    QCOMPARE(form.txtOutputs->Text(), u"a b\r\n"_s);
    QCOMPARE(takeCommands(), QStringList{u"echo a  b"_s});

    // One that does not end by itself: nothing else begins until it is stopped.
    form.Text1->setText(u"shell echo on; sleep 600"_s);
    form.Command7->click();
    QTRY_COMPARE(form.txtOutputs->Text(), u"a b\r\non\r\n"_s);
    for (Button* refused : {form.Command7, form.Command12, form.Command13[3]}) refused->click();
    QCOMPARE(window.desktop.beeps, 2);
    QCOMPARE(form.Width(), openWidth);
    QTRY_VERIFY(form.busyStrip->inView());
    QTest::mouseClick(form.busyStrip->findChild<QPushButton*>(), Qt::LeftButton);
    QVERIFY(window.settled());
    QCOMPARE(takeCommands(), QStringList{u"echo on; sleep 600"_s});
    QVERIFY(window.press(form.Command12));
    QCOMPARE(takeCommands(), QStringList{u"svc usb setFunctions mtp true"_s});
  }

 private:
  /// What shells of the device were asked for since the last call, without the names of adb's services.
  QStringList takeCommands() {
    QStringList commands = m_headset->services();
    for (QString& command : commands) command = command.mid(command.indexOf(u':') + 1);
    m_headset->clearLog();
    return commands;
  }

  std::unique_ptr<test::VirtualHeadset> m_headset;
};

QTEST_MAIN(DevicePanelTest)
#include "device_panel_test.moc"
