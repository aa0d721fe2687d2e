#include "core/main_window.h"

#include <QAccessible>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <array>
#include <new>

#include "core/help_window.h"
#include "core/report.h"
#include "core/splash.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// Keeps the order of the steps; the first-run dialog ends the process, as the real one does.
class Steps : public StartupSteps {
 public:
  Steps(Workbench& bench, apkinfo& form) : m_bench(bench), m_form(form) {}
  QStringList done;
  QString tool;  ///< run to read the package

  QStringList setRight(QString&) override { return {}; }
  QCoro::Task<> showTip() override { return note(u"tip"_s); }
  QCoro::Task<> runFirstRunDialog() override {
    m_form.QuitProgram();
    return note(u"first run"_s);
  }
  QCoro::Task<> readBadging() override {
    m_bench.state.package.ManifestFields = {QString(), u"com.example.app"_s, u"12"_s, u"1.2"_s, u"应用"_s};
    if (!tool.isEmpty()) co_await m_bench.runQuietly(m_bench.objDOS, tool);
    co_await note(u"badging"_s);
  }
  QCoro::Task<> StorageReport() override { return note(u"storage"_s); }
  QCoro::Task<> showIcon() override { return note(u"icon"_s); }
  QCoro::Task<> showInstalledBuild() override {
    m_bench.console.setText(u"verdict"_s);
    return note(u"installed "_s + m_form.Label2->Caption());
  }

 private:
  QCoro::Task<> note(QString step) {
    done << step + (m_bench.state.WatcherHold ? u""_s : u" (not held)"_s);
    co_return;
  }
  Workbench& m_bench;
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
  Steps steps{bench, *form};
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
    QCOMPARE(window.bench.state.package.ApkPath, u"/a b/\"x\".apk"_s);
    QCOMPARE(form.Label5->Caption(), u"\"x\".apk"_s);
    QCOMPARE(form.Label1->toolTip(), u"应用"_s);
    QCOMPARE(form.Label4->Caption(), u"12"_s);
    QCOMPARE(disabledOf(form), QStringList());
    QVERIFY(!window.bench.state.WatcherHold);
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
      QCOMPARE(window.bench.state.package.NoApkLoaded, 1);
      QCOMPARE(disabledOf(*window.form).join(u' '),
               u"Check1 Command1 Command2 Command4 Command5 Frame1 Frame2 Frame3 Frame4 Frame5 Frame6"_s);
    }
  }

  void settings() {
    const std::tuple<Started::Choices, int, int> rows[] = {
        {{}, 0, 1},
        {{{u"Grant"_s, u"on"_s}, {u"Kill"_s, u"off"_s}}, 1, 0},
        {{{u"Grant"_s, u"OFF"_s}, {u"Kill"_s, u"Off"_s}}, 1, 1},  // only the exact word is off
    };
    for (const auto& [choices, Check1, Check2] : rows) {
      Started window(u"/x.apk"_s, choices);
      QCOMPARE(window.form->Check1->Value(), Check1);
      QCOMPARE(window.form->Check2->Value(), Check2);
      // A new user's choice is there for the next start, too.
      QVERIFY(!window.settings->read(u"Kill"_s, QString()).isEmpty());
      window.form->Check1->click();
      window.form->Check2->click();
      const SettingsStore again;
      QCOMPARE(again.read(u"Grant"_s, QString()), Check1 == 0 ? u"on"_s : u"off"_s);
      QCOMPARE(again.read(u"Kill"_s, QString()), Check2 == 0 ? u"on"_s : u"off"_s);
    }
  }

  void closing() {
    Started window;
    apkinfo& form = *window.form;
    form.Check2->setValue(0);
    form.show();
    {
      const auto handler = window.bench.turn.begin();
      form.close();
      form.close();
      QCoreApplication::processEvents();
      QCOMPARE(window.ends, 0);
      QVERIFY(form.isVisible());
    }
    QTRY_COMPARE(window.ends, 1);
  }

  void missingTools() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    const QString aapt = u"\"/no/such/aapt\" d badging x"_s;
    Steps steps(window.bench, form);
    steps.tool = aapt;
    QVERIFY(QCoro::waitFor(form.Form_Load(u"/x.apk"_s, steps)));
    QCOMPARE(form.txtOutputs->Text(), u"verdict\r\nCommand Error: \r\n"_s + aapt + u"\r\n\r\n"_s);
    QCOMPARE(window.desktop.boxTexts(), QStringList{u" File or command not found\r\n"_s + aapt});

    const QString there = u'"' + QStringLiteral(ORVANTA_TEST_CHILD) + u'"';
    const QString missing = u"\"/no/such/test-child\""_s;
    const auto boxesOf = [&](const QString& line, int calls) {
      const qsizetype before = window.desktop.boxes.size();
      for (int i = 0; i < calls; ++i) QCoro::waitFor(window.bench.runQuietly(window.bench.objDOS, line));
      return window.desktop.boxes.size() - before;
    };
    QCOMPARE(boxesOf(missing, 3), 1);  // the watcher's calls have no turn
    for (int handlers = 2; handlers > 0; --handlers) {
      const auto turn = window.bench.turn.begin();
      QCOMPARE(boxesOf(missing, 9), 1);
      QCOMPARE(boxesOf(aapt, 1), 1);
    }
    QCOMPARE(boxesOf(missing, 3), 0);
    QCOMPARE(boxesOf(there, 1), 0);
    QCOMPARE(boxesOf(missing, 3), 1);
    QCOMPARE(form.txtOutputs->Text().count(u"Command Error"_s), 1 + 3 + 2 * 10 + 3 + 3);
    QVERIFY(!window.bench.state.CommandBusy);
  }

  void aToolThatOutlivesItsOwnerChangesNothing() {
    RecordingDesktop desktop;
    constexpr std::byte empty{0x7f};
    alignas(Workbench) std::array<std::byte, sizeof(Workbench)> room;
    auto* bench = new (room.data()) Workbench(desktop);
    auto run = bench->runQuietly(bench->objDOS, u'"' + QStringLiteral(ORVANTA_TEST_CHILD) + u"\" hang"_s);
    bench->~Workbench();
    room.fill(empty);
    QCOMPARE(QCoro::waitFor(run), QString());
    QVERIFY(std::all_of(room.begin(), room.end(), [](std::byte value) { return value == empty; }));
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
    QVERIFY(!form.panelRoom->isVisible() && !form.Text1->isVisible());
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
             "Command6 saveReport faceSwitch txtOutputs"_s);
  }

  void statusLineTellsVerdictAndTrouble() {
    Started window;
    apkinfo& form = *window.form;
    StatusBoard& status = window.bench.status;
    auto* button = form.statusLine->findChild<Button*>(u"statusAction"_s);
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    QString pressed;
    const auto does = [&pressed](const QString& what) { return [&pressed, what] { pressed += what; }; };
    using Sign = Status::Sign;
    const Status ready{Sign::Good, {u"好"_s, u"ready"_s}};
    const Status gone{Sign::Warning, {u"无"_s, u"gone"_s}, {}, {u"步骤"_s, u"Steps"_s}, does(u"steps "_s)};
    const Status silent{Sign::Error, {u"哑"_s, u"silent"_s}, {}, {u"重启"_s, u"Again"_s}, does(u"again "_s)};
    const Status refused{Sign::Error, {u"拒"_s, u"refused"_s}, {}, {u"删"_s, u"Free"_s}, does(u"free "_s)};
    const Status installed{Sign::Good, {u"装"_s, u"installed"_s}};
    const auto tells = [&form] { return form.statusLine->text(); };
    status.setConnection(ready);
    QVERIFY(tells() == u"好 (ready)"_s && !button->isVisible());
    {
      const auto turn = window.bench.turn.begin();
      status.setVerdict(installed);
    }
    QCOMPARE(tells(), u"装 (installed)"_s);
    status.setConnection(gone);
    QCOMPARE(tells(), u"装 (installed) · 无 (gone)"_s);
    button->click();
    status.setVerdict(refused);  // its own button comes first
    QCOMPARE(tells(), u"拒 (refused) · 无 (gone)"_s);
    button->click();
    QVERIFY(form.statusLine->toolTip().contains(tells().section(u" · "_s, 1)));
    QTest::mousePress(button, Qt::LeftButton);
    (void)window.bench.turn.begin();
    QCOMPARE(tells(), u"无 (gone)"_s);
    QTest::mouseRelease(button, Qt::LeftButton);  // pressed for a status that is gone
    QCOMPARE(pressed, u"steps free "_s);
    button->setFocus();
    status.setConnection(silent);
    QTest::keyClick(form.windowHandle(), Qt::Key_Space);
    QCOMPARE(pressed, u"steps free "_s);
    // The strip takes the same place, and nothing else moves.
    const QRect console = form.txtOutputs->geometry();
    const QRect place = form.statusLine->geometry();
    Q_EMIT window.bench.turn.refused();
    QVERIFY(form.busyStrip->isVisible() && !form.statusLine->isVisible());
    QCOMPARE(form.busyStrip->geometry(), place);
    QCOMPARE(form.txtOutputs->geometry(), console);
    Q_EMIT window.bench.turn.ended();
    QTRY_VERIFY(form.statusLine->isVisible());
    button->click();
    QCOMPARE(pressed, u"steps free again "_s);
    button->setFocus();
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    status.setConnection(ready);
    status.setConnection(silent);
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    QCOMPARE(form.focusWidget(), form.txtOutputs);
    status.setAnswer(installed);
    QCOMPARE(tells(), u"装 (installed)"_s);
    status.setConnection(ready);
    QCOMPARE(tells(), u"好 (ready)"_s);
    const QString reason(200, u'x');
    status.setVerdict({Sign::Error, {u"拒"_s, reason}});
    button->click();
    QCOMPARE(window.desktop.boxTexts(), QStringList(u"拒 ("_s + reason + u')'));
  }

  void theReportIsSavedWhileAToolRuns() {
    Started window(u"/x.apk"_s);
    apkinfo& form = *window.form;
    Report report(window.bench);
    connect(form.saveReport, &QPushButton::clicked, &report, &Report::save_Click);
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    window.bench.console.say(QDir::homePath() + u"/secret.apk"_s);
    const auto turn = window.bench.turn.begin();
    RecordingDesktop& desktop = window.desktop;
    const QString path = window.filePath(u"x.txt"_s);
    desktop.savePaths = {window.filePath(u"x"_s), path, path, window.filePath(u"no/x.txt"_s)};
    desktop.answers = {BoxAnswer::No, BoxAnswer::Yes};
    const auto saved = [&path] {
      QFile file(path);
      return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    };
    for (const int boxes : {0, 1, 2, 3}) {
      if (boxes == 1) QVERIFY(QFile::resize(path, 0));  // and it stays so
      QTest::keyClick(&form, Qt::Key_S, Qt::ControlModifier);
      QTRY_COMPARE(desktop.saveQuestions.size(), boxes + 1);
      QTRY_COMPARE(desktop.boxes.size(), boxes);
      QTRY_COMPARE(saved().contains(u"A tool is running: yes"_s), boxes != 1);
      if (boxes == 0) QTRY_COMPARE(form.statusLine->text(), u"报告已保存 (Report saved)"_s);
      if (boxes == 0) QVERIFY2(saved().contains(u"~/secret.apk"_s), qPrintable(saved()));
      if (boxes == 0) QVERIFY(saved().contains(u"com.example.app"_s) && !saved().contains(QDir::homePath()));
    }
    QVERIFY(desktop.boxes[2].text.contains(u"no/x.txt"_s) && desktop.boxes[2].icon == BoxIcon::Critical);
    form.statusLine->findChild<Button*>()->click();
    QCOMPARE(desktop.opened.size(), 1);
  }

  void bannerOpensTheSite() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Q_EMIT form.banner->MouseMove(Qt::NoButton);
    QVERIFY(window.desktop.opened.isEmpty());
    Q_EMIT form.banner->MouseMove(Qt::LeftButton);
    QCOMPARE(window.desktop.opened.size(), 1);
  }

  void secondWindowsComeUpOverTheirOwner() {
    MainWindowFixture window;
    apkinfo& form = *window.form;
    const QRect screen = form.screen()->availableGeometry();
    Form2 help(&form);
    for (const QPoint& place :
         {screen.topLeft(), screen.center() - form.rect().center(), screen.bottomRight()}) {
      form.move(place);
      form.show();
      QCOMPARE(form.pos(), place);
      help.show();
      const QRect frame = help.frameGeometry();
      QVERIFY2(screen.contains(frame), qPrintable(QString::number(frame.right())));
      const QPoint off = frame.center() - form.frameGeometry().center();
      const bool reachesTheEdge = frame.left() == screen.left() || frame.right() == screen.right();
      QVERIFY(reachesTheEdge || (qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1));
      QCOMPARE(help.windowHandle()->transientParent(), form.windowHandle());
      help.hide();
      form.hide();
    }
  }

  void helpCloses() {
    Form2 help(nullptr);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
      help.show();
      QTest::keyClick(&help, key, key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
      QVERIFY(!help.isVisible());
    }
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
