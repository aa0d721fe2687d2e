#include "permissions/permission_manager.h"

#include "inventory/apps_form.h"
#include "sample_package.h"
#include "testing/virtual_headset.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString package = u"com.example.game"_s;

QStringList permissionNames(int count) {
  QStringList names =
      u"CAMERA RECORD_AUDIO READ_CONTACTS WRITE_CONTACTS READ_CALENDAR WRITE_CALENDAR "
      "READ_EXTERNAL_STORAGE WRITE_EXTERNAL_STORAGE READ_PHONE_STATE CALL_PHONE BODY_SENSORS "
      "SEND_SMS READ_SMS USE_SIP GET_ACCOUNTS"_s.split(u' ')
          .first(count);
  for (QString& name : names) name.prepend(u"android.permission."_s);
  return names;
}

}  // namespace

class PermissionManagerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_headset = std::make_unique<test::VirtualHeadset>();
    QCOMPARE(m_headset->start(), QString());
    m_main = std::make_unique<MainWindowFixture>();
    m_apps = std::make_unique<Form4>(*m_main->form, turn());
    m_manager = std::make_unique<PermissionManager>(*m_main->form, *m_apps);
    m_apps->prepareLoad();
    m_apps->show();
  }
  void cleanup() {
    m_manager.reset();
    m_apps.reset();
    m_main.reset();
    m_headset.reset();
  }

  void rowsAndHeights() {
    Form8& window = m_manager->window();
    const std::pair<int, int> cases[] = {{0, 1231}, {3, 3394}, {14, 11325}, {15, 11325}, {1, 1952}};
    for (const auto& [permissions, height] : cases) {
      install(permissions);
      QVERIFY(open(package));
      QVERIFY(window.isModal() && m_main->module.CommandBusy && !turn().taken());
      for (size_t i = 1; i <= Form8::rows; ++i) {
        const int row = static_cast<int>(i);
        QCOMPARE(window.Frame1[i]->isVisible(), row <= permissions);
        QCOMPARE(window.Frame1[i]->mapTo(&window, QPoint()).y(), (600 + 720 * (row - 1)) / 15);
        QCOMPARE(window.Label1[i]->Caption(), row <= permissions ? permissionNames(row).last() : QString());
      }
      QCOMPARE(window.Height(), height);
      QCOMPARE(window.lblNotice->Caption().isEmpty(), permissions > 0 && permissions < 15);
      if (permissions % 2 == 0) {
        QTest::mouseClick(window.Command1, Qt::LeftButton);
      } else {
        window.close();
      }
      QVERIFY(window.isHidden());
      QCOMPARE(window.Height(), 11325);
    }
    QCOMPARE(m_headset->services().filter(u"pm grant"_s) + m_headset->services().filter(u"pm revoke"_s),
             QStringList());
    QVERIFY(m_main->module.CommandBusy);
    m_apps->close();
    QVERIFY(!m_main->module.CommandBusy);
  }

  void aChangeIsMadeAtOnce() {
    install(3);
    m_headset->adb({u"shell"_s, u"pm grant com.example.game android.permission.RECORD_AUDIO"_s});
    Form8& window = m_manager->window();
    QVERIFY(open(package));
    m_headset->clearLog();
    for (const auto& [row, value] : {std::pair<size_t, int>{1, 0}, {2, 1}, {3, 0}})
      QCOMPARE(window.Check1[row]->Value(), value);
    choose(u"com.example.other"_s);  // the pointer is elsewhere in the list behind the window
    window.Check1[2]->toggle();
    QVERIFY(turn().taken());
    window.Check1[1]->click();  // refused
    QVERIFY(window.Check1[1]->Value() == 0 && !window.lblNotice->Caption().isEmpty());
    QVERIFY(settled());
    QTest::keyClick(window.Check1[1], Qt::Key_Space);
    QVERIFY(settled());
    QVERIFY(window.lblNotice->Caption().isEmpty());
    QCOMPARE(commands(), QStringList({u"pm revoke com.example.game android.permission.RECORD_AUDIO"_s,
                                      u"pm grant com.example.game android.permission.CAMERA"_s}));

    // One that is still under way when the window closes is carried out.
    m_headset->setFault(u"latency_ms"_s, u"700"_s);
    window.Check1[3]->click();
    QTRY_VERIFY(window.busyStrip->inView());
    QTest::keyClick(window.Check1[3], Qt::Key_Escape);
    QVERIFY(window.isHidden() && turn().taken());
    QVERIFY(settled());
    m_headset->clearFaults();
    QVERIFY(open(package));
    for (const auto& [row, value] : {std::pair<size_t, int>{1, 1}, {2, 0}, {3, 1}})
      QCOMPARE(window.Check1[row]->Value(), value);

    // The headset's own words, when the app went meanwhile; the box stays as the user left it.
    QCOMPARE(m_headset->adb({u"uninstall"_s, package}).exitCode, 0);
    window.Check1[1]->click();
    QVERIFY(settled());
    QVERIFY(window.lblNotice->Caption().contains(u"Unknown package: com.example.game"_s));
    QCOMPARE(window.Check1[1]->Value(), 0);
  }

  void withoutRows() {
    const std::tuple<QString, QString, QString> cases[] = {
        {u"com.gone"_s, u"dumpsys package com.gone"_s, u"Unable to find package: com.gone"_s},
        {u"Package Name"_s, u"dumpsys package PackageName"_s, u"Unable to find package: PackageName"_s},
        {QString(), QString(), u"not asked"_s},
        {u"a;reboot"_s, QString(), u"not asked): a;reboot"_s},
    };
    for (const auto& [name, asked, notice] : cases) {
      m_headset->clearLog();
      QVERIFY(open(name));
      QCOMPARE(commands().join(u'|'), asked);
      QVERIFY(m_manager->window().lblNotice->Caption().contains(notice));
      QCOMPARE(m_main->form->txtOutputs->Text().isEmpty(), !asked.isEmpty());
      m_manager->window().close();
    }
    // A stopped question opens nothing.
    QCoreApplication::processEvents();
    m_headset->setFault(u"latency_ms"_s, u"5000"_s);
    choose(package);
    m_apps->mnu_Permissions->trigger();
    turn().requestStop();
    QVERIFY(settled());
    QVERIFY(m_manager->window().isHidden());
  }

  void namesForTheShell() {
    Form8& window = m_manager->window();
    for (const auto& [of, name] : {std::pair{package, u"android.permission.X;reboot"_s},
                                   {package, QString()},
                                   {u"$(reboot)"_s, u"android.permission.X"_s},
                                   {QString(), u"android.permission.X"_s}}) {
      RuntimePermissions found;
      found.RuntimePermCount = 1;
      found.RuntimePermNames[1] = name;
      found.RuntimePermStates[1] = u"1"_s;
      window.Form_Load(u"Game"_s, of, found);
      m_headset->clearLog();
      window.Check1[1]->click();
      QVERIFY(window.Check1[1]->Value() == 1 && !turn().taken() && !window.lblNotice->Caption().isEmpty());
      QCOMPARE(commands(), QStringList());
    }
  }

 private:
  Turn& turn() { return m_main->form->turn(); }
  void install(int permissions) {
    SamplePackage sample;
    sample.package = package;
    sample.permissions = permissionNames(permissions) << u"android.permission.INTERNET"_s;
    const QString apk = m_headset->workPath(u"game.apk"_s);
    QCOMPARE(sample.write(apk), QString());
    QCOMPARE(m_headset->adb({u"install"_s, u"-r"_s, apk}).exitCode, 0);
    m_headset->clearLog();
  }
  void choose(const QString& name) {
    m_apps->MSFlexGrid1->setTextMatrix(1, ColPackage, name + u" \r"_s);
    m_apps->MSFlexGrid1->setRow(1);
  }
  bool open(const QString& name) {
    QCoreApplication::processEvents();  // the end of the window before
    choose(name);
    m_apps->mnu_Permissions->trigger();
    return QTest::qWaitFor([this] { return m_manager->window().isVisible(); }, 20'000);
  }
  bool settled() {
    return QTest::qWaitFor([this] { return !turn().taken(); }, 20'000);
  }
  /// What shells of the device were asked for, without the names of adb's services.
  QStringList commands() const {
    QStringList commands = m_headset->services();
    for (QString& command : commands) command = command.section(u':', 1);
    return commands;
  }

  std::unique_ptr<test::VirtualHeadset> m_headset;
  std::unique_ptr<MainWindowFixture> m_main;
  std::unique_ptr<Form4> m_apps;
  std::unique_ptr<PermissionManager> m_manager;
};

QTEST_MAIN(PermissionManagerTest)
#include "permission_manager_test.moc"
