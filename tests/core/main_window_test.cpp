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

/// The main window after its start with some choices of the user.
struct Started : MainWindowFixture {
  using Choices = QList<std::pair<QString, QString>>;
  explicit Started(const QString& commandText = QStringLiteral("/x.apk"), const Choices& choices = {}) {
    for (const auto& [section, text] : choices) settings->write(section, text);
    stays = QCoro::waitFor(form->Form_Load(commandText, steps));
  }
  Steps steps{*form};
  bool stays = false;
};

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void startWithAPath() {
    Started window(u"/a b/\"x\".apk"_s);
    apkinfo& form = *window.form;
    QVERIFY(window.stays);
    QCOMPARE(window.steps.done,
             (QStringList{u"badging"_s, u"storage"_s, u"icon"_s, u"installed com.example.app"_s}));
    QCOMPARE(form.ApkPath, u"/a b/\"x\".apk"_s);
    QCOMPARE(form.Label5->Caption(), u"\"x\".apk"_s);
    QCOMPARE(form.Label1->toolTip(), u"应用"_s);
    QCOMPARE(form.Label4->Caption(), u"12"_s);
    QCOMPARE(disabledOf(form), QStringList());
    QVERIFY(!form.WatcherHold);
  }

  void startWithoutAPath() {
    const std::pair<Started::Choices, QStringList> rows[] = {
        {{}, {u"first run"_s}},
        {{{u"Explentry"_s, u"off"_s}, {u"tooltip"_s, u"on"_s}}, {u"tip"_s, u"first run"_s}},
        {{{u"Explentry"_s, u"on"_s}, {u"tooltip"_s, u"on"_s}}, {u"tip"_s}},
        {{{u"Explentry"_s, u"Off"_s}, {u"tooltip"_s, u"ON"_s}}, {}},
    };
    for (const auto& [choices, steps] : rows) {
      Started window(QString(), choices);
      QCOMPARE(window.steps.done, steps);
      QCOMPARE(window.stays, !steps.contains(u"first run"_s));
      QCOMPARE(window.ends, window.stays ? 0 : 1);
      QCOMPARE(window.form->NoApkLoaded, 1);
      QCOMPARE(disabledOf(*window.form).join(u' '),
               u"Check1 Command1 Command2 Command4 Command5 Frame1 Frame2 Frame3 Frame4 Frame5 Frame6"_s);
    }
  }

  void settings() {
    const struct {
      Started::Choices choices;
      int Check1;
      int Check2;
    } rows[] = {
        {{}, 0, 1},
        {{{u"Grant"_s, u"on"_s}, {u"Kill"_s, u"off"_s}}, 1, 0},
        {{{u"Grant"_s, u"OFF"_s}, {u"Kill"_s, u"Off"_s}}, 1, 1},  // only the exact word is off
    };
    for (const auto& row : rows) {
      Started window(u"/x.apk"_s, row.choices);
      QCOMPARE(window.form->Check1->Value(), row.Check1);
      QCOMPARE(window.form->Check2->Value(), row.Check2);
      // A new user's choice is there for the next start, too.
      QVERIFY(!window.settings->read(u"Kill"_s, QString()).isEmpty());
      window.form->Check1->click();
      window.form->Check2->click();
      const SettingsStore again;
      QCOMPARE(again.read(u"Grant"_s, QString()), row.Check1 == 0 ? u"on"_s : u"off"_s);
      QCOMPARE(again.read(u"Kill"_s, QString()), row.Check2 == 0 ? u"on"_s : u"off"_s);
    }
  }

  void closing() {
    Started window;
    apkinfo& form = *window.form;
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
  }

  void missingTools() {
    Started window;
    apkinfo& form = *window.form;
    const QString line = u"\"/no/such/adb\" devices"_s;
    QCoro::waitFor(form.runQuietly(*form.objDOS, line));
    QCOMPARE(form.txtOutputs->Text(), u"\r\nCommand Error: \r\n"_s + line + u"\r\n\r\n"_s);
    QCOMPARE(window.desktop.boxTexts(), QStringList{u" File or command not found\r\n"_s + line});
    QVERIFY(!form.module().CommandBusy);
  }

  void whatTheUserAddsStaysApart() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    form.setWidth(openWidth);
    form.setHeight(openHeight);
    const QSize before = form.size();
    form.show();
    form.resize(before + QSize(100, 50));
    QCOMPARE(form.Width(), openWidth);
    const int console = form.txtOutputs->height();
    form.setWidth(closedWidth);
    form.setHeight(closedHeight);
    QCOMPARE(before + QSize(100, 50) - form.size(),
             QSize(openWidth - closedWidth, openHeight - closedHeight) / 15);
    QCOMPARE(form.txtOutputs->height(), console);
    QVERIFY(!form.Command13[0]->isVisible() && !form.Text1->isVisible());
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
    QCOMPARE(reached.join(u' '),
             u"Command1 Check1 Command2 Command4 Command5 Command8 Check2 Command9 Command11 Command12 "
             "Command6 txtOutputs"_s);
  }

  void bannerOpensTheSite() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Q_EMIT form.banner->MouseMove(Qt::NoButton);
    QVERIFY(window.desktop.opened.isEmpty());
    Q_EMIT form.banner->MouseMove(Qt::LeftButton);
    QCOMPARE(window.desktop.opened.size(), 1);
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
