#include "permissions/permission_manager.h"
#include "adb/runtime_permissions.h"

#include "inventory/apps_form.h"
#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString package = u"com.example.game"_s;

QString permission(int number) {
  return u"android.permission.P%1"_s.arg(number);
}

}  // namespace

class PermissionManagerTest : public QObject {
  Q_OBJECT

  std::unique_ptr<StandIn> m_adb;
  std::unique_ptr<MainWindowFixture> m_main;
  std::unique_ptr<Form4> m_apps;
  std::unique_ptr<PermissionManager> m_manager;

  Turn& turn() { return m_main->bench.turn; }
  Form8& window() { return m_manager->window(); }
  int value(size_t row) { return window().Check1[row]->Value(); }

  /// The app asks for so many permissions and has the second.
  void ask(int permissions) {
    QString reply = u"Packages:\n  Package [com.example.game] (1):\n    runtime permissions:\n"_s;
    for (int i = 1; i <= permissions; ++i)
      reply += permission(i) + (i == 2 ? u": granted=true\n"_s : u": granted=false\n"_s);
    m_adb->answer(u"shell dumpsys package com.example.game"_s, reply);
  }
  void choose(const QString& name) {
    m_apps->fill(readInventory(u"IP3x: %1 \r\n"_s.arg(name)));
    m_apps->MSFlexGrid1->setRow(1);
  }
  bool open(const QString& name) {
    QCoreApplication::processEvents();  // the end of the window before
    choose(name);
    m_apps->mnu_Permissions->trigger();
    return QTest::qWaitFor([this] { return window().isVisible(); }, 20'000);
  }
  bool settled() {
    return QTest::qWaitFor([this] { return !turn().taken(); }, 20'000);
  }

 private Q_SLOTS:
  void init() {
    m_adb = std::make_unique<StandIn>();
    m_main = std::make_unique<MainWindowFixture>();
    m_apps = std::make_unique<Form4>(m_main->bench, m_main->bench.turn);
    m_manager = std::make_unique<PermissionManager>(m_main->bench, *m_apps);
    m_apps->prepareLoad();
    m_apps->show();
  }
  void cleanup() {
    turn().requestStop();
    QVERIFY(settled());
    // Lets the coroutine that waits for the window resume before its owner is destroyed.
    window().close();
    QCoreApplication::processEvents();
    m_manager.reset();
    m_apps.reset();
    m_main.reset();
    m_adb.reset();
  }

  void everyPermissionHasARowWhileThereAreRows() {
    for (const int permissions : {0, 3, 14, 15, 1}) {
      ask(permissions);
      QVERIFY(open(package));
      QVERIFY(window().isModal() && m_main->bench.state.CommandBusy && !turn().taken());
      for (int i = 1; i <= Form8::rows; ++i) {
        const auto row = static_cast<size_t>(i);
        QCOMPARE(window().Frame1[row]->isVisible(), i <= permissions);
        QCOMPARE(window().Label1[row]->Caption(), i <= permissions ? permission(i) : QString());
        QCOMPARE(value(row), i == 2 && permissions > 1 ? 1 : 0);
      }
      QCOMPARE(window().Height(), 11325 - 721 * (14 - qMin(permissions, 14)));
      QCOMPARE(window().lblNotice->Caption().isEmpty(), permissions > 0 && permissions < 15);
      if (permissions % 2 == 0) {
        QTest::mouseClick(window().Command1, Qt::LeftButton);
      } else {
        window().close();
      }
      QVERIFY(window().isHidden());
    }
    // To open and to close it changes nothing.
    QCOMPARE(m_adb->calls(), QStringList(5, u"shell dumpsys package com.example.game"_s));
    QVERIFY(m_main->bench.state.CommandBusy);
    m_apps->close();
    QVERIFY(!m_main->bench.state.CommandBusy);
  }

  void aChangeIsMadeAtOnce() {
    ask(3);
    QVERIFY(open(package));
    m_adb->takeCalls();
    choose(u"com.example.other"_s);  // meanwhile the pointer is on another row
    window().Check1[2]->toggle();
    QVERIFY(turn().taken());
    window().Check1[1]->click();  // refused, and said so
    QVERIFY(value(1) == 0 && window().busyStrip->isVisible() && !window().lblNotice->isVisible());
    QVERIFY(settled());
    QVERIFY(window().busyStrip->isHidden());
    QTest::keyClick(window().Check1[1], Qt::Key_Space);
    QVERIFY(settled());
    QVERIFY(window().lblNotice->Caption().isEmpty());
    QCOMPARE(m_adb->takeCalls(), QStringList({u"shell pm revoke com.example.game android.permission.P2"_s,
                                              u"shell pm grant com.example.game android.permission.P1"_s}));

    // The headset's own words; the box stays as the user left it.
    m_adb->answer(u"shell pm *"_s,
                  u"\nException occurred while executing 'revoke':\n"
                  "java.lang.IllegalArgumentException: Unknown package: com.example.game\n\tat a.b\n"_s);
    window().Check1[1]->click();
    QVERIFY(settled());
    QVERIFY(window().lblNotice->Caption().contains(u"Unknown package: com.example.game"_s));
    QCOMPARE(value(1), 0);

    // One that is still under way when the window closes is carried out.
    m_adb->answer(u"shell pm *"_s, {{}, {}, true});
    window().Check1[3]->click();
    QTRY_VERIFY(window().busyStrip->inView());
    QTest::keyClick(window().Check1[3], Qt::Key_Escape);
    QTest::qWait(200);
    QVERIFY(window().isHidden() && turn().taken());
    turn().requestStop();
    QVERIFY(settled());
  }

  void withoutRows() {
    m_adb->answer(u"shell dumpsys package com.gone"_s,
                  u"\nDexopt state:\n  Unable to find package: com.gone\n"_s);
    const std::tuple<QString, QString, QString> cases[] = {
        {u"com.gone"_s, u"shell dumpsys package com.gone"_s, u"Unable to find package: com.gone"_s},
        {u"com.silent"_s, u"shell dumpsys package com.silent"_s, u"no answer"_s},
        {QString(), QString(), u"not asked"_s},
        {u"a;reboot"_s, QString(), u"not asked): a;reboot"_s},
    };
    for (const auto& [name, asked, notice] : cases) {
      QVERIFY(open(name));
      QCOMPARE(m_adb->takeCalls().join(u'|'), asked);
      QVERIFY(window().lblNotice->Caption().contains(notice));
      QCOMPARE(m_main->form->txtOutputs->Text().isEmpty(), !asked.isEmpty());
      window().close();
    }
    // A stopped question opens nothing.
    QCoreApplication::processEvents();
    m_adb->answer(u"*"_s, {{}, {}, true});
    choose(package);
    m_apps->mnu_Permissions->trigger();
    turn().requestStop();
    QVERIFY(settled());
    QVERIFY(window().isHidden());
  }

  void namesForTheShell() {
    for (const auto& [of, name] : {std::pair{package, u"android.permission.X;reboot"_s},
                                   {package, QString()},
                                   {u"$(reboot)"_s, u"android.permission.X"_s},
                                   {QString(), u"android.permission.X"_s}}) {
      RuntimePermissions found;
      found.RuntimePermCount = 1;
      found.RuntimePermNames[1] = name;
      found.RuntimePermStates[1] = u"1"_s;
      window().Form_Load(u"Game"_s, of, found);
      window().Check1[1]->click();
      QVERIFY(value(1) == 1 && !turn().taken() && !window().lblNotice->Caption().isEmpty());
      QCOMPARE(m_adb->calls(), QStringList());
    }
  }
};

QTEST_MAIN(PermissionManagerTest)
#include "permission_manager_test.moc"
