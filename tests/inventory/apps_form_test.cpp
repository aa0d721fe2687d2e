#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <functional>

#include "core/turn.h"
#include "inventory/apps_form.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

class NoReports : public CommandReports {
 public:
  void commandError(const QString&) override {}
  QCoro::Task<> criticalMessage(QString) override { co_return; }
};

struct App {
  QString label, package, build, size;
};

const QList<App> fewApps = {{u"beta"_s, u"com.b"_s, u"9"_s, u"2.5"_s},
                            {u"Alpha"_s, u"com.a"_s, u"10"_s, u"12.3"_s},
                            {u"gamma"_s, u"com.Fish"_s, u""_s, u"100.0"_s}};

QString streamOf(const QList<App>& apps) {
  QString stream;
  for (const App& app : apps) {
    stream += u"IP3x: %1 \r\napplication-label:%2\r\nVC3x: versionCode: %3 minSdk\r\nTO3x: %4\r\n"_s.arg(
        app.package, app.label, app.build, app.size);
  }
  return stream;
}

QList<App> numberedApps(int count) {
  QList<App> apps;
  for (int i = 0; i < count; ++i)
    apps << App{u"App %1"_s.arg(i, 3, 10, QLatin1Char('0')), u"com.n%1"_s.arg(i), u"1"_s, u"1.0"_s};
  return apps;
}

struct Window {
  explicit Window(const QList<App>& apps = fewApps) {
    form.prepareLoad();
    form.setWidth(15 * 1000);
    form.setHeight(15 * 400 + 420);
    const QString stream = streamOf(apps);
    form.fill(readInventory(stream));
    form.show();
    QCoreApplication::processEvents();
  }

  void move(int row, int col, Qt::MouseButtons buttons = Qt::NoButton) {
    QWidget* over = row == 0 ? grid.horizontalHeader()->viewport() : grid.viewport();
    const QPoint place = grid.cellArea(row, col).center();
    QMouseEvent event(QEvent::MouseMove, place, over->mapToGlobal(place), Qt::NoButton, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(over, &event);
  }
  void click(int row, int col, Qt::MouseButton button = Qt::LeftButton) {
    QWidget* over = row == 0 ? grid.horizontalHeader()->viewport() : grid.viewport();
    QTest::mouseClick(over, button, Qt::NoModifier, grid.cellArea(row, col).center());
  }
  void wheel(int angle, QWidget* over = nullptr) {
    if (over == nullptr) over = grid.viewport();
    const QPoint place = over->rect().center();
    QWheelEvent event(place, over->mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(over, &event);
  }
  /// The packages in the grid's order; with `shownOnly` those that are not hidden.
  QStringList packages(bool shownOnly = false) const {
    QStringList found;
    for (int row = 1; row < grid.Rows(); ++row) {
      if (!shownOnly || grid.RowHeight(row) > 0) found << grid.TextMatrix(row, ColPackage).trimmed();
    }
    return found;
  }
  void search(const QString& text) {
    form.txtSearch->setText(text);
    form.ApplySearchFilter();
  }

  NoReports reports;
  Turn turn;
  Form4 form{reports, turn};
  FlexGrid& grid = *form.MSFlexGrid1;
};

}  // namespace

class AppsFormTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void filledRows() {
    Window window;
    QCOMPARE(window.grid.Rows(), 4);
    QCOMPARE(window.packages(), (QStringList{u"com.a"_s, u"com.b"_s, u"com.Fish"_s}));
    QCOMPARE(window.grid.TextMatrix(1, ColPackage), u"com.a \r"_s);
    QCOMPARE(window.grid.TextMatrix(3, ColOrder), u"3"_s);
    QCOMPARE(window.grid.TextMatrix(0, ColVersion), u"版本"_s);
    QCOMPARE(window.grid.Tag, u"5"_s);
    QCOMPARE(window.grid.ColWidth(ColMenuIcon), 300);
    QVERIFY(window.form.lblShown->Caption().contains(u"3 / 3"_s));
    QVERIFY(window.form.lblShown->Caption().contains(u"114.8"_s));
    QVERIFY(!window.grid.accessibleName().isEmpty() && !window.form.txtSearch->accessibleName().isEmpty());
  }

  void emptyDevice() {
    Window window(QList<App>{});
    QCOMPARE(window.grid.Rows(), 1);
    QVERIFY(window.grid.ColWidth(ColPackage) > window.grid.TextWidth(u"Package Name"_s));
    window.click(0, ColUsedSpace);
    QTest::keyClick(&window.grid, Qt::Key_Down);
    window.wheel(-120);
    window.search(u"x"_s);
    QCOMPARE(window.grid.Rows(), 1);
  }

  void headerClicksSort() {
    Window window;
    window.click(0, ColBuild);
    QCOMPARE(window.packages(), (QStringList{u"com.Fish"_s, u"com.b"_s, u"com.a"_s}));  // by number
    window.click(0, ColBuild);
    QCOMPARE(window.packages(), (QStringList{u"com.b"_s, u"com.a"_s, u"com.Fish"_s}));  // down by text
    window.click(0, ColUsedSpace);
    QCOMPARE(window.packages(), (QStringList{u"com.b"_s, u"com.a"_s, u"com.Fish"_s}));
    window.click(0, ColPackage);
    QCOMPARE(window.packages(), (QStringList{u"com.a"_s, u"com.b"_s, u"com.Fish"_s}));
    const QStringList before = window.packages();
    window.click(2, ColPackage);
    window.click(0, ColPackage, Qt::RightButton);
    window.form.mnuNew->close();
    QCOMPARE(window.packages(), before);
    window.click(0, ColOrder);
    QCOMPARE(window.grid.TextMatrix(1, ColOrder), u"1"_s);
    window.move(0, ColUsedSpace);
    QTest::keyClick(&window.grid, Qt::Key_Return);
    QCOMPARE(window.grid.Tag, u"3"_s);
    QTest::keyClick(&window.grid, Qt::Key_Return);
    QCOMPARE(window.grid.Tag, u"4"_s);
  }

  void textOrder() {
    // By code point after folding: U+FF21 folds to U+FF41, which stands before U+1F3CC.
    Window window(QList<App>{{u"🏌"_s, u"c"_s, {}, {}},
                             {u"Ａ"_s, u"b"_s, {}, {}},
                             {u"a\uffff"_s, u"a2"_s, {}, {}},
                             {u"A🏌"_s, u"a3"_s, {}, {}},
                             {u"ab"_s, u"a1"_s, {}, {}}});
    QCOMPARE(window.packages(), (QStringList{u"a1"_s, u"a2"_s, u"a3"_s, u"b"_s, u"c"_s}));
  }

  void equalRowsKeepTheirOrder() {
    Window window(numberedApps(40));
    const QStringList before = window.packages();
    window.click(0, ColUsedSpace);
    window.click(0, ColUsedSpace);
    QCOMPARE(window.grid.Tag, u"4"_s);
    QCOMPARE(window.packages(), before);
  }

  void searchHidesAndSortKeepsHidden() {
    Window window;
    window.search(u"FISH"_s);
    QCOMPARE(window.packages(true), QStringList{u"com.Fish"_s});
    QVERIFY(window.form.lblShown->Caption().contains(u"1 / 3"_s));
    QVERIFY(window.form.lblShown->Caption().contains(u"100.0"_s));
    window.click(0, ColUsedSpace);
    window.click(0, ColUsedSpace);
    QCOMPARE(window.packages(true), QStringList{u"com.Fish"_s});
    QCOMPARE(window.packages().size(), 3);
    window.search(u"1"_s);  // a size, a build, a number of order: every column counts
    QCOMPARE(window.packages(true), (QStringList{u"com.Fish"_s, u"com.a"_s}));
    window.search(u"nowhere"_s);
    QCOMPARE(window.packages(true), QStringList());
    QTest::keyClick(&window.form, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(window.form.txtSearch->hasFocus());
    QTest::keyClick(window.form.txtSearch, Qt::Key_Escape);
    QCOMPARE(window.packages(true).size(), 3);
  }

  void searchWaitsForAPause() {
    Window window;
    window.form.tmrSearch->setInterval(40);
    for (const QString& typed : {u"f"_s, u"fi"_s, u"fis"_s, u"fish"_s}) {
      window.form.txtSearch->setText(typed);
      QSignalSpy tick(window.form.tmrSearch, &QTimer::timeout);
      QVERIFY(tick.wait());
      QCOMPARE(window.packages(true).size(), 3);
    }
    QTRY_COMPARE(window.packages(true).size(), 1);
  }

  void theCurrentRowFollowsThePointer() {
    Window window;
    const FormColor yellow = 255 | 255 << 8 | 111 << 16;
    window.move(2, ColVersion);
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    QCOMPARE(window.grid.CellBackColor(), yellow);
    window.move(3, ColPackage);
    QCOMPARE(window.form.SelectedPackage(), u"com.Fish"_s);
    window.grid.setRow(2);
    window.grid.setCol(ColVersion);
    QVERIFY(window.grid.CellBackColor() != yellow);
    window.move(0, ColPackage);
    QCOMPARE(window.form.SelectedPackage(), u"PackageName"_s);
    window.move(1, ColAppName);
    QTest::keyClick(&window.grid, Qt::Key_Down);
    QTest::keyClick(&window.grid, Qt::Key_Right);
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    QCOMPARE(window.grid.CellBackColor(), yellow);
    window.search(u"fish"_s);
    QTest::keyClick(&window.grid, Qt::Key_Down);
    QCOMPARE(window.form.SelectedPackage(), u"com.Fish"_s);
  }

  void toolTipOfACutText() {
    const QString longLabel(65536, u'w');
    Window window(QList<App>{{longLabel, u"com.long"_s, {}, {}}, {u"short"_s, u"com.short"_s, {}, {}}});
    QVERIFY(window.grid.ColWidth(ColAppName) < 15 * 1000);
    window.move(1, ColAppName);
    QCOMPARE(window.grid.ToolTipText(), QString());
    window.move(2, ColAppName, Qt::LeftButton);
    QCOMPARE(window.grid.ToolTipText(), QString());
    window.move(1, ColAppName);
    window.move(2, ColAppName);
    QCOMPARE(window.grid.ToolTipText(), longLabel + u'\r');
  }

  void menu() {
    Window window;
    QStringList entries;
    for (const QAction* action : window.form.mnuNew->actions()) entries << action->objectName();
    QCOMPARE(entries.join(u' '),
             u"mnuCopy mnu_backup_apk mnu_backup_apk_obb mnu_uninstall mnu_startAPK "
             "mnu_NonRootBackup mnu_Restore mnu_Permissions"_s);
    const auto opened = [&window](auto act) {
      act();
      const bool visible = window.form.mnuNew->isVisible();
      window.form.mnuNew->close();
      return visible;
    };
    QVERIFY(opened([&] { window.click(2, ColPackage, Qt::RightButton); }));
    QVERIFY(opened([&] { window.click(2, ColMenuIcon); }));
    QVERIFY(!opened([&] { window.click(2, ColPackage); }));
    const QPoint below(20, window.grid.viewport()->height() - 4);
    QVERIFY(opened([&] { QTest::mouseClick(window.grid.viewport(), Qt::RightButton, {}, below); }));
    QVERIFY(!opened([&] { QTest::mouseClick(window.grid.viewport(), Qt::LeftButton, {}, below); }));
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    QVERIFY(opened([&] { QTest::keyClick(&window.grid, Qt::Key_Return); }));
    QVERIFY(opened([&] {
      QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
      QCoreApplication::sendEvent(window.grid.viewport(), &key);
    }));
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    const QString before = window.grid.Tag;
    const QRect icon = window.grid.cellArea(0, ColMenuIcon);
    QTest::mousePress(window.grid.horizontalHeader()->viewport(), Qt::LeftButton, {}, icon.center());
    QVERIFY(window.form.mnuNew->isVisible());
    QCOMPARE(window.grid.Tag, before);
    window.form.mnuNew->close();
    QTRY_COMPARE(window.grid.Tag, u"3"_s);  // the sort comes when the menu has gone
  }

  void keysLeaveHiddenRows() {
    Window window(numberedApps(30));
    const auto menuKey = [&window] {
      QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
      QCoreApplication::sendEvent(window.grid.viewport(), &key);
    };
    const auto returnKey = [&window] { QTest::keyClick(&window.grid, Qt::Key_Return); };
    for (const std::function<void()>& press : {std::function<void()>(menuKey), {returnKey}}) {
      window.search({});
      window.move(3, ColPackage);
      window.search(u"com.n1"_s);  // 1 and 10 to 19, in rows 2 and 11 to 20
      press();
      QVERIFY(!window.form.mnuNew->isVisible());
      QCOMPARE(window.form.SelectedPackage(), u"com.n1"_s);
      press();
      QVERIFY(window.form.mnuNew->isVisible());
      window.form.mnuNew->close();
      window.search(u"nowhere"_s);
      press();
      QVERIFY(!window.form.mnuNew->isVisible());
    }
    window.search({});
    window.move(5, ColPackage);
    window.search(u"com.n1"_s);
    QTest::keyClick(&window.grid, Qt::Key_Down);
    QCOMPARE(window.form.SelectedPackage(), u"com.n10"_s);
  }

  void headingsAreWhole() {
    Window window(QList<App>{{{}, u"com.a"_s, {}, {}}});
    const QHeaderView& header = *window.grid.horizontalHeader();
    for (int col = 0; col < ColMenuIcon; ++col) {
      const QString heading = window.grid.TextMatrix(0, col);
      const int room = header.sectionSize(col) - pixels(FlexGrid::HeaderRoom()) - 6;
      QCOMPARE(header.fontMetrics().elidedText(heading, Qt::ElideRight, room), heading);
    }
  }

  void wheelPagesOnce() {
    Window window(numberedApps(200));
    const auto top = [&window] { return window.grid.TopRow(); };
    window.wheel(-120);
    const int page = top() - 1;
    QVERIFY(page > 5 && page < 20);
    window.move(0, ColPackage);
    window.wheel(-120, window.grid.horizontalHeader()->viewport());
    QCOMPARE(top(), 1 + 2 * page);
    QCOMPARE(window.grid.MouseRow(), 0);
    window.wheel(120, window.grid.verticalScrollBar());
    QCOMPARE(top(), 1 + page);
    window.wheel(-480);
    QCOMPARE(top(), 1 + 2 * page);
    for (int i = 0; i < 8; ++i) window.wheel(15);
    QCOMPARE(top(), 1 + page);
    for (int i = 0; i < 30; ++i) window.wheel(-120);
    QCOMPARE(top(), 200);  // the last row alone
    window.grid.setRedraw(false);
    window.grid.setRedraw(true);
    QCOMPARE(top(), 200);
    window.search(u"App 0"_s);  // a hundred rows, all above
    QVERIFY(window.grid.RowIsVisible(100) && top() < 100 - page / 2);
    window.search(u"App 00"_s);
    QCOMPARE(top(), 1);
    window.wheel(-120);
    QCOMPARE(window.packages(true).size(), 10);
  }

  void busyStripStopsTheTurn() {
    Window window;
    const auto holder = window.turn.begin();
    window.turn.noteToolStarted(u"adb"_s);
    QTRY_VERIFY(window.form.busyStrip->isVisible());
    QTest::mouseClick(window.form.busyStrip->findChild<QPushButton*>(u"busyStop"_s), Qt::LeftButton);
    QVERIFY(window.turn.stopped());
  }
};

QTEST_MAIN(AppsFormTest)
#include "apps_form_test.moc"
