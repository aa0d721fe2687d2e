#include "core/main_window.h"

#include <QAccessible>
#include <QTest>

#include "core/splash.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// Keeps the order of the steps; the first-run dialog ends the process, as the real one does.
class Steps : public StartupSteps {
 public:
  explicit Steps(apkinfo& form) : m_form(form) {}
  QStringList done;

  QCoro::Task<> showTip() override { return note(u"tip"_s); }
  QCoro::Task<> runFirstRunDialog() override {
    m_form.QuitProgram();
    return note(u"first run"_s);
  }
  QCoro::Task<> readBadging() override {
    m_form.ManifestFields = {QString(), u"com.example.app"_s, u"12"_s, u"1.2"_s, u"应用"_s};
    return note(u"badging"_s);
  }
  QCoro::Task<> StorageReport() override { return note(u"storage"_s); }
  QCoro::Task<> showIcon() override { return note(u"icon"_s); }
  QCoro::Task<> showInstalledBuild() override { return note(u"installed "_s + m_form.Label2->Caption()); }

 private:
  QCoro::Task<> note(QString step) {
    done << step + (m_form.WatcherHold ? u""_s : u" (not held)"_s);
    co_return;
  }
  apkinfo& m_form;
};

QStringList disabledOf(apkinfo& form) {
  QStringList names;
  for (const QWidget* widget : form.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (!widget->isEnabled()) names << widget->objectName();
  }
  names.sort();
  return names;
}

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void startWithAPath() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Steps steps(form);
    QVERIFY(QCoro::waitFor(form.Form_Load(u"/a b/\"x\".apk"_s, steps)));
    QCOMPARE(steps.done,
             (QStringList{u"badging"_s, u"storage"_s, u"icon"_s, u"installed com.example.app"_s}));
    QCOMPARE(form.ApkPath, u"/a b/\"x\".apk"_s);
    QCOMPARE(form.Label5->Caption(), u"\"x\".apk"_s);
    QCOMPARE(form.Label5->toolTip(), u"\"x\".apk"_s);
    QCOMPARE(form.Label1->toolTip(), u"应用"_s);
    QCOMPARE(form.Label4->Caption(), u"12"_s);
    QCOMPARE(disabledOf(form), QStringList());
    QVERIFY(!form.WatcherHold);
    QCOMPARE(form.NormalBackColor.toInt(), form.Label6->BackColor());
  }

  void startWithoutAPath_data() {
    QTest::addColumn<QString>("Explentry");
    QTest::addColumn<QString>("tooltip");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<bool>("stays");
    QTest::newRow("first start") << u""_s << u""_s << QStringList{u"first run"_s} << false;
    QTest::newRow("off") << u"off"_s << u"on"_s << QStringList{u"tip"_s, u"first run"_s} << false;
    QTest::newRow("made, with tip") << u"on"_s << u"on"_s << QStringList{u"tip"_s} << true;
    QTest::newRow("any other text counts as made") << u"Off"_s << u"ON"_s << QStringList() << true;
  }
  void startWithoutAPath() {
    QFETCH(QString, Explentry);
    QFETCH(QString, tooltip);
    MainWindowFixture window;
    if (!Explentry.isEmpty()) window.settings->write(u"Explentry"_s, Explentry);
    if (!tooltip.isEmpty()) window.settings->write(u"tooltip"_s, tooltip);
    apkinfo& form = *window.form;
    Steps steps(form);
    QTEST(QCoro::waitFor(form.Form_Load(QString(), steps)), "stays");
    QTEST(steps.done, "steps");
    QCOMPARE(window.ends, steps.done.contains(u"first run"_s) ? 1 : 0);
    QCOMPARE(form.NoApkLoaded, 1);
    QCOMPARE(form.Label5->Caption(), u"要安装APK，请右键单击APK文件，然后选择Orvanta"_s);
    QCOMPARE(disabledOf(form),
             (QStringList{u"Check1"_s, u"Command1"_s, u"Command2"_s, u"Command4"_s, u"Command5"_s,
                          u"Frame1"_s, u"Frame2"_s, u"Frame3"_s, u"Frame4"_s, u"Frame5"_s, u"Frame6"_s}));
  }

  void settings_data() {
    QTest::addColumn<QString>("Grant");
    QTest::addColumn<QString>("Kill");
    QTest::addColumn<int>("check1");
    QTest::addColumn<int>("check2");
    QTest::addColumn<QString>("GrantAfter");
    QTest::addColumn<QString>("KillAfter");
    QTest::newRow("fresh user") << u""_s << u""_s << 0 << 1 << u"(none)"_s << u"on"_s;
    QTest::newRow("both set") << u"on"_s << u"off"_s << 1 << 0 << u"on"_s << u"off"_s;
    QTest::newRow("only the exact word is off") << u"OFF"_s << u"Off"_s << 1 << 1 << u"on"_s << u"Off"_s;
  }
  void settings() {
    QFETCH(QString, Grant);
    QFETCH(QString, Kill);
    MainWindowFixture window;
    if (!Grant.isEmpty()) window.settings->write(u"Grant"_s, Grant);
    if (!Kill.isEmpty()) window.settings->write(u"Kill"_s, Kill);
    Steps steps(*window.form);
    QCoro::waitFor(window.form->Form_Load(u"/x.apk"_s, steps));
    QTEST(window.form->Check1->Value(), "check1");
    QTEST(window.form->Check2->Value(), "check2");
    QTEST(window.settings->read(u"Grant"_s, u"(none)"_s), "GrantAfter");
    QTEST(window.settings->read(u"Kill"_s, u"(none)"_s), "KillAfter");
    window.form->Check1->click();
    window.form->Check2->click();
    const SettingsStore again;
    QCOMPARE(again.read(u"Grant"_s, QString()), window.form->Check1->Value() == 1 ? u"on"_s : u"off"_s);
    QCOMPARE(again.read(u"Kill"_s, QString()), window.form->Check2->Value() == 1 ? u"on"_s : u"off"_s);
  }

  void closing() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Steps steps(form);
    QCoro::waitFor(form.Form_Load(u"/x.apk"_s, steps));
    form.Check2->setValue(0);
    form.show();
    {
      const auto handler = form.turn().begin();
      form.close();
      form.close();
      QCoreApplication::processEvents();
      QCOMPARE(window.ends, 0);
      QVERIFY(form.isVisible());
    }
    QTRY_COMPARE(window.ends, 1);
    QVERIFY(window.desktop.boxes.isEmpty());
  }

  void missingTools() {
    // Beside this test lies no adb: every call is reported anew, in the console and in a box.
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Steps steps(form);
    QCoro::waitFor(form.Form_Load(u"/x.apk"_s, steps));
    const QString line = u"\"/no/such/adb\" devices"_s;
    form.module().CommandBusy = true;
    QCoro::waitFor(form.runQuietly(*form.objDOS, line));
    QCOMPARE(form.txtOutputs->Text(), u"\r\nCommand Error: \r\n"_s + line + u"\r\n\r\n"_s);
    QCOMPARE(window.desktop.boxTexts(), QStringList{u" File or command not found\r\n"_s + line});
    QCOMPARE(window.desktop.boxes[0].icon, BoxIcon::Critical);
    QCOMPARE(window.desktop.boxes[0].title, u"Orvanta"_s);
    QVERIFY(!form.module().CommandBusy);
  }

  void sizesInTwips() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QCOMPARE(form.size(), QSize(575, 456));
    form.setWidth(openWidth);
    QCOMPARE(form.size(), QSize(991, 456));
    QVERIFY(form.Command13[22]->isVisible());
    form.setHeight(openHeight);
    QCOMPARE(form.size(), QSize(991, 490));
    QVERIFY(form.Text1->isVisible());
    // What the user adds stays apart from the program's own values.
    form.resize(form.size() + QSize(100, 50));
    QCOMPARE(form.Width(), openWidth);
    const int console = form.txtOutputs->height();
    form.setWidth(closedWidth);
    form.setHeight(closedHeight);
    QCOMPARE(form.size(), QSize(675, 506));
    QCOMPARE(form.txtOutputs->height(), console);
    QVERIFY(!form.Command13[0]->isVisible());
    QVERIFY(!form.Text1->isVisible());
  }

  void everyControlHasANameAndRoom() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    form.setWidth(openWidth);
    form.setHeight(openHeight);
    form.show();
    for (QWidget* widget : form.findChildren<QWidget*>()) {
      if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
      const QByteArray who = widget->objectName().toUtf8();
      if (who.startsWith("qt_")) continue;
      QVERIFY2(!who.isEmpty(), widget->metaObject()->className());
      QVERIFY2(!QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty(),
               who.constData());
      const auto* button = qobject_cast<QAbstractButton*>(widget);
      if (button == nullptr) continue;
      const int caption = button->fontMetrics().horizontalAdvance(button->text());
      QVERIFY2(caption < button->width(), who.constData());
    }
  }

  void tabReachesEverythingInReadingOrder() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    form.Command1->setFocus();
    QStringList reached;
    do {
      reached << form.focusWidget()->objectName();
      QTest::keyClick(&form, Qt::Key_Tab);
    } while (form.focusWidget() != form.Command1 && reached.size() < 50);
    QCOMPARE(reached, (QStringList{u"Command1"_s, u"Check1"_s, u"Command2"_s, u"Command4"_s, u"Command5"_s,
                                   u"Command8"_s, u"Check2"_s, u"Command9"_s, u"Command11"_s, u"Command12"_s,
                                   u"Command6"_s, u"txtOutputs"_s}));
  }

  void bannerOpensTheSite() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Q_EMIT form.banner->MouseMove(Qt::NoButton);
    QVERIFY(window.desktop.opened.isEmpty());
    Q_EMIT form.banner->MouseMove(Qt::LeftButton);
    QCOMPARE(window.desktop.opened, QList<QUrl>{QUrl(u"https://orvanta.example/"_s)});
  }

  void splashStandsUntilItsFirstTick() {
    int shown = 0;
    Form9 without;
    without.Form_Load(QString(), [&shown] { ++shown; });
    QCOMPARE(shown, 1);
    QVERIFY(!without.isVisible());
    Form9 with;
    with.Form_Load(u"/x.apk"_s, [&shown] { ++shown; });
    QCOMPARE(shown, 1);
    QVERIFY(with.isVisible());
    QTRY_COMPARE(shown, 2);
  }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
