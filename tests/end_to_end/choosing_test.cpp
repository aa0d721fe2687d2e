#include <QSignalSpy>

#include "adb/chosen_device.h"
#include "program.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ChoosingTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Program> m_program;

  apkinfo& form() { return m_program->form(); }
  DeviceChooser& window() { return m_program->application->deviceChooser(); }
  QString told() { return form().statusLine->text(); }
  bool comesToTell(const QString& part) {
    return QTest::qWaitFor([&] { return told().contains(part); }, 20'000);
  }
  bool comesToNote(const QString& part) {
    return QTest::qWaitFor(
        [&] { return !m_program->bench().turn.taken() && window().lblNotice->Caption().contains(part); },
        20'000);
  }
  void pressLine() { QTest::mouseClick(form().statusLine->findChild<Button*>(), Qt::LeftButton); }
  /// Opens the window and waits until adb has given its list.
  bool opens(int rows) {
    pressLine();
    return QTest::qWaitFor(
        [&] {
          return window().isVisible() && window().devices->rowCount() == rows &&
                 !m_program->bench().turn.taken();
        },
        20'000);
  }
  bool mark(const QString& serial) {
    for (int row = 0; row < window().devices->rowCount(); ++row) {
      if (window().devices->item(row, 0)->data(Qt::UserRole).toString() != serial) continue;
      window().devices->selectRow(row);
      return true;
    }
    return false;
  }
  /// What the user types as a free adb command.
  void runLine(const QString& line) {
    form().Text1->setText(line);
    QSignalSpy ended(&m_program->bench().turn, &Turn::ended);
    form().Command7->click();
    QTRY_VERIFY_WITH_TIMEOUT(!ended.isEmpty(), 20'000);
  }

 private Q_SLOTS:
  void init() {
    m_program = std::make_unique<Program>();
    QCOMPARE(m_program->startHeadset(), QString());
  }
  void cleanup() { m_program.reset(); }

  void nothingRunsOnAnotherThanTheChosen() {
    test::VirtualHeadset other(m_program->headset.adbServerPort());
    QCOMPARE(other.start({.apps = 2}), QString());
    QVERIFY(m_program->start(QString()));
    QVERIFY(comesToTell(u"2 devices"_s));
    QVERIFY(opens(2));
    QCOMPARE(window().devices->item(0, 1)->text(), u"Quest 2"_s);
    QVERIFY(mark(other.serial()));
    window().use->click();
    QVERIFY(comesToTell(u"Connected: "_s + other.serial()));
    QTRY_COMPARE(form().Label7->Caption(), u"109 Gb"_s);
    m_program->headset.clearLog();
    QTRY_VERIFY(form().Command9->isEnabled());
    runLine(u"shell echo here"_s);
    form().Command9->click();  // the script, which starts adb by itself
    QTRY_VERIFY_WITH_TIMEOUT(m_program->application->installedApps().window().isVisible(), 60'000);
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->bench().turn.taken(), 60'000);
    QVERIFY(other.services().join(u'\n').contains(u"echo here"_s));
    m_program->application->installedApps().window().close();
    form().activateWindow();
    other.stop();
    QVERIFY(comesToTell(u"gone: "_s + other.serial()));
    runLine(u"shell echo there"_s);
    QTest::qWait(2500);  // a poll more
    QCOMPARE(m_program->headset.services(), QStringList());
    QVERIFY(opens(1));
    window().use->click();
    QVERIFY(comesToTell(u"restart for the list"_s));  // connected, and the list was seen
  }

  void overTheNetwork() {
    QVERIFY(m_program->start(QString()));
    QVERIFY(comesToTell(u"Connected: "_s + m_program->headset.serial()));
    QVERIFY(opens(1));
    QVERIFY(!window().reconnect->isEnabled());
    window().overNetwork->click();
    QVERIFY(comesToNote(u"unplug the cable"_s));
    const QString place = chosenDevice();
    QVERIFY2(place.startsWith(u"127.77."_s) && place.endsWith(u":5555"_s), qPrintable(place));
    QVERIFY(!window().overNetwork->isEnabled());
    window().done->click();
    QVERIFY(comesToTell(u"Connected: "_s + place));

    m_program->headset.adb({u"disconnect"_s});
    QVERIFY(comesToTell(u"gone: "_s + place));
    QVERIFY(opens(1));
    window().reconnect->click();
    QVERIFY(comesToNote(u"Connected over the network"_s));
    // Nobody listens at this one; and this adb cannot pair.
    window().address->setText(u"127.77.0.1:1"_s);
    window().connectTo->click();
    QVERIFY(comesToNote(u"Not connected"_s));
    QCOMPARE(chosenDevice(), place);
    window().code->setText(u"123456"_s);
    window().connectTo->click();
    QVERIFY(comesToNote(u"too old to pair"_s));
    window().address->setText(u"--help x"_s);
    window().connectTo->click();
    QVERIFY(comesToNote(u"digits only"_s));
  }

  void serverIsStartedAnew() {
    QVERIFY(m_program->start(QString()));
    m_program->headset.setFault(u"state"_s, u"unauthorized"_s);
    QVERIFY(comesToTell(u"choose “Allow”"_s));
    const QString before = m_program->console();
    m_program->headset.clearFaults();
    pressLine();
    QVERIFY(comesToTell(u"Connected: "_s));
    QVERIFY(m_program->console().mid(before.size()).contains(u"daemon started successfully"_s));
  }

  void theStepsStandInTheListsPlace() {
    m_program->headset.setFault(u"state"_s, u"gone"_s);
    QVERIFY(m_program->headset.waitForState(QString()));
    QVERIFY(m_program->start(QString()));
    QVERIFY(comesToTell(u"No headset found"_s));
    QVERIFY(opens(0));
    QVERIFY(window().lblSteps->isVisible() && window().lblSteps->text().contains(u"developer mode"_s));
    QVERIFY(!window().use->isEnabled());
  }
};

QTEST_MAIN(ChoosingTest)
#include "choosing_test.moc"
