#include <QClipboard>

#include "device/adb_row.h"
#include "device/device_panel.h"
#include "device/presses.h"
#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// The open main window with the panel and the row.
struct Window : MainWindowFixture {
  Window() {
    form->show();
    form->setWidth(openWidth);
    form->setHeight(openHeight);
  }
  bool settled() const {
    return QTest::qWaitFor([this] { return !bench.turn.taken(); }, 20000);
  }
  bool press(Button* button) const {
    button->click();
    return settled();
  }

  Button* Command13(int Index) const { return form->findChild<Button*>(u"Command13_%1"_s.arg(Index)); }

  DevicePanel panel{bench, *form};
  AdbRow row{bench, *form};
};

}  // namespace

class DeviceControlsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyPressSetsWhatItsCaptionSays() {
    QStringList expected{u"Guardian: On, guardian_pause 1"_s, u"Guardian: Off, guardian_pause 0"_s,
                         u"Set Refresh Rate: 72, refreshRate 72"_s,
                         u"Set Refresh Rate: 90, refreshRate 90"_s};
    for (int level = 0; level <= 4; ++level)
      expected << u"Set Fixed Foveated Rendering level: %1, foveation.level %1"_s.arg(level);
    expected << u"Full Rate Capture: On, fullRateCapture 1"_s
             << u"Full Rate Capture: Off, fullRateCapture 0"_s;
    for (const auto& [width, height] : {std::pair{1280, 720}, {640, 480}, {1920, 1080}})
      expected << u"Video Capture Size: %2p, capture.width %1, capture.height %2"_s.arg(width).arg(height);
    for (const int size : {1536, 1280, 1024, 768, 512, 2048, 2560, 3072})
      expected << u"Texture Size: %1, textureWidth %1, textureHeight %1"_s.arg(size);
    expected << u"Reboot Quest: Start, reboot"_s;

    StandIn adb;
    Window window;
    QStringList found;
    for (int Index = 0; Button* button = window.Command13(Index); ++Index) {
      window.form->setWidth(openWidth);
      QVERIFY(window.press(button));
      QCOMPARE(window.form->Width(), closedWidth);
      QStringList done = adb.takeCalls();
      done.replaceInStrings(u"shell setprop debug.oculus."_s, QString());
      found << (QStringList{button->accessibleName()} + done).join(u", "_s);
    }
    QCOMPARE(found, expected);
    QCOMPARE(window.desktop.beeps, 23);
  }

  void theWordsOfAFailure() {
    StandIn adb;
    adb.answer(u"*"_s, u"adb: no devices/emulators found\n"_s);
    Window window;
    QVERIFY(window.press(window.Command13(12)));
    // Both commands of the pair are tried, and adb's own words are all that the user gets.
    QCOMPARE(window.form->txtOutputs->Text(), u"adb: no devices/emulators found\r\n"_s.repeated(2));
    QVERIFY(window.desktop.boxes.isEmpty());
  }

  void freeCommands() {
    StandIn adb;
    adb.answer(u"shell echo *"_s, u"on\n"_s);
    adb.answer(u"logcat"_s, {{}, u"endless\n"_s, true});
    Window window;
    apkinfo& form = *window.form;
    QTest::keyClicks(form.Text1, u"shell echo \"a  b\""_s);
    QCOMPARE(window.desktop.beeps, 0);
    QTest::keyClick(form.Text1, Qt::Key_Enter, Qt::ShiftModifier);
    QCOMPARE(window.desktop.beeps, 1);
    QVERIFY(window.settled());
    QCOMPARE(adb.takeCalls(), QStringList{u"shell echo a  b"_s});

    // A paste of several lines becomes one command, shown as it is run.
    form.Text1->setText(u"shell  now"_s);
    form.Text1->setCursorPosition(6);
    QGuiApplication::clipboard()->setText(u"\necho a\r\n\r\nb\n"_s);
    form.Text1->paste();
    form.Text1->insert(u"c"_s);
    QCOMPARE(form.Text1->text(), u"shell echo a bc now"_s);
    QVERIFY(window.press(form.Command7));
    QCOMPARE(adb.takeCalls(), QStringList{u"shell echo a bc now"_s});
    window.bench.console.setText(u"on\r\n"_s);

    // One that does not end by itself: nothing else begins until it is stopped.
    form.Text1->setText(u"logcat"_s);
    form.Command7->click();
    QTRY_COMPARE(form.txtOutputs->Text(), u"on\r\nendless\r\n"_s);
    const auto* told = form.busyStrip->findChild<Label*>(u"busyText"_s);
    for (Button* refused : {form.Command7, form.Command12, window.Command13(3)}) {
      refused->click();
      QVERIFY(form.busyStrip->isVisible() && told->Caption().contains(u"Wait for the current operation"_s));
    }
    QCOMPARE(window.desktop.beeps, 3);
    QCOMPARE(form.Width(), openWidth);
    QTRY_VERIFY(told->Caption().startsWith(u"adb · 0:0"_s));
    QTest::mouseClick(form.busyStrip->findChild<QPushButton*>(), Qt::LeftButton);
    QVERIFY(window.settled());
    QCOMPARE(adb.takeCalls(), QStringList{u"logcat"_s});
    QVERIFY(window.press(form.Command12));
    QCOMPARE(adb.takeCalls(), QStringList{u"shell svc usb setFunctions mtp true"_s});
    QCOMPARE(form.Width(), openWidth);
    QCOMPARE(window.desktop.beeps, 4);
  }

  void toggles() {
    Window window;
    apkinfo& form = *window.form;
    const struct {
      int Width, afterCommand11, Height, afterCommand6;
    } rows[] = {{closedWidth, openWidth, closedHeight, openHeight},
                {openWidth, closedWidth, openHeight, closedHeight},
                {9000, closedWidth, 7300, openHeight}};
    for (const auto& [Width, afterCommand11, Height, afterCommand6] : rows) {
      form.setWidth(Width);
      form.setHeight(Height);
      form.Command11->click();
      form.Command6->click();
      QCOMPARE(form.Width(), afterCommand11);
      QCOMPARE(form.Height(), afterCommand6);
      QCOMPARE(form.Text1->isVisible(), form.Height() == openHeight);
    }
    // The row is just below what the closed window shows.
    QCOMPARE(form.Text1->geometry().topLeft(), QPoint(8, 6840 / 15));
    QCOMPARE(form.Text1->width(), 7455 / 15);
    QCOMPARE(form.focusWidget(), form.Text1);
  }
};

QTEST_MAIN(DeviceControlsTest)
#include "device_controls_test.moc"
