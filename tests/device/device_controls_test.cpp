#include <QTest>

#include "device/adb_row.h"
#include "device/device_panel.h"
#include "device/press_table.h"
#include "device/presses.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class DeviceControlsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void lines_data() {
    QTest::addColumn<Host>("host");
    QTest::addColumn<QString>("adb");
    QTest::newRow("windows") << Host{HostStyle::windows(), u"C:\\My Tools"_s}
                             << u"\"C:\\My Tools\\adb.exe\" "_s;
    QTest::newRow("posix") << Host{HostStyle::posix(), u"/opt/my tools"_s} << u"\"/opt/my tools/adb\" "_s;
  }
  void lines() {
    QFETCH(Host, host);
    QFETCH(QString, adb);
    for (int Index = 0; Index < 22; ++Index) {
      QStringList expected;
      for (const QString& setting : settingsOfPress(Index)) expected << adb + u"shell setprop "_s + setting;
      QCOMPARE(pressLines(host, Index), expected);
    }
    QCOMPARE(pressLines(host, 22), QStringList{adb + u"reboot"_s});
    QCOMPARE(pressLines(host, 23) + pressLines(host, -1), QStringList());
    QCOMPARE(mtpLine(host), adb + u"shell svc usb setFunctions mtp true"_s);
    for (const QString& typed : {u""_s, u"  adb shell \"ls  /sdcard\"  "_s})
      QCOMPARE(freeLine(host, typed), adb + typed);
  }

  void toggles() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    const DevicePanel panel(form);
    const AdbRow row(form);
    form.show();
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
    QCOMPARE(form.focusWidget(), form.Text1);
    QCOMPARE(window.desktop.beeps, 0);
  }
};

QTEST_MAIN(DeviceControlsTest)
#include "device_controls_test.moc"
