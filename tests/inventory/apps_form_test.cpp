#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <array>

#include "core/turn.h"
#include "inventory/apps_form.h"
#include "inventory/sort_press.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

class NoReports : public CommandReports {
 public:
  void commandError(const QString&) override {}
  QCoro::Task<> criticalMessage(QString) override { co_return; }
};

/// Label, package, build and size.
using App = std::array<QString, 4>;

const QList<App> fewApps = {{u"beta"_s, u"com.b"_s, u"9"_s, u"2.5"_s},
                            {u"Alpha"_s, u"com.a"_s, u"10"_s, u"12.3"_s},
                            {u"gamma"_s, u"com.Fish"_s, u""_s, u"100.0"_s}};

QList<App> numberedApps(int count) {
  QList<App> apps;
  for (int i = 0; i < count; ++i)
    apps << App{u"App %1"_s.arg(i, 3, 10, QChar(u'0')), u"com.n%1"_s.arg(i), u"1"_s, u"1.0"_s};
  return apps;
}

struct Window {
  explicit Window(const QList<App>& apps = fewApps) {
    form.prepareLoad();
    form.setWidth(15 * 1000);
    form.setHeight(15 * 400 + 420);
    QString stream;
    for (const auto& [label, package, build, size] : apps) {
      stream += u"IP3x: %1 \r\napplication-label:%2\r\nVC3x: versionCode: %3 minSdk\r\nTO3x: %4\r\n"_s.arg(
          package, label, build, size);
    }
    form.fill(readInventory(stream));
    form.show();
    QCoreApplication::processEvents();
  }

  QWidget* widgetOf(int row) const {
    return row == 0 ? grid.horizontalHeader()->viewport() : grid.viewport();
  }
  void move(int row, int col, Qt::MouseButtons buttons = Qt::NoButton) {
    const QPoint place = grid.cellArea(row, col).center();
    QMouseEvent event(QEvent::MouseMove, place, widgetOf(row)->mapToGlobal(place), Qt::NoButton, buttons,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widgetOf(row), &event);
  }
  void click(int row, int col, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(widgetOf(row), button, Qt::NoModifier, grid.cellArea(row, col).center());
  }
  void key(Qt::Key key) { QTest::keyClick(&grid, key); }
  void menuKey() {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(grid.viewport(), &event);
  }
  void wheel(int angle, QWidget* over = nullptr) {
    if (over == nullptr) over = grid.viewport();
    const QPoint place = over->rect().center();
    QWheelEvent event(place, over->mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(over, &event);
  }
  /// The packages in the grid's order, less those that are hidden.
  QString packages() const {
    QStringList found;
    for (int row = 1; row < grid.Rows(); ++row) {
      if (grid.RowHeight(row) > 0) found << grid.TextMatrix(row, ColPackage).trimmed();
    }
    return found.join(u' ');
  }
  /// Whether the menu has come up; it is gone then.
  bool menuOpened() {
    const bool visible = form.mnuNew->isVisible();
    form.mnuNew->close();
    return visible;
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
  void emptyDevice() {
    Window window(QList<App>{});
    QVERIFY(window.grid.ColWidth(ColPackage) > window.grid.TextWidth(u"Package Name"_s));
    window.click(0, ColUsedSpace);
    window.key(Qt::Key_Down);
    window.wheel(-120);
    window.search(u"x"_s);
    QCOMPARE(window.grid.Rows(), 1);
  }

  void headerClicksSort() {
    Window window;
    QCOMPARE(window.packages(), u"com.a com.b com.Fish"_s);
    QCOMPARE(window.grid.TextMatrix(3, ColOrder), u"3"_s);
    const std::pair<int, QString> presses[] = {
        {ColBuild, u"com.Fish com.b com.a"_s},  // by number
        {ColBuild, u"com.b com.a com.Fish"_s},  // down by text
        {ColUsedSpace, u"com.b com.a com.Fish"_s},
        {ColPackage, u"com.a com.b com.Fish"_s},
    };
    for (const auto& [col, order] : presses) {
      window.click(0, col);
      QCOMPARE(window.packages(), order);
    }
    window.click(2, ColPackage);
    window.click(0, ColPackage, Qt::RightButton);
    QVERIFY(window.menuOpened());
    QCOMPARE(window.packages(), presses[3].second);
    window.move(0, ColUsedSpace);
    for (const SortCode code : {SortNumericAscending, SortNumericDescending}) {
      window.key(Qt::Key_Return);
      QCOMPARE(window.grid.Tag.toInt(), int(code));
    }
  }

  void textOrder() {
    // By code point after folding: U+FF21 folds to U+FF41, which stands before U+1F3CC.
    Window window({App{u"🏌"_s, u"c"_s}, App{u"Ａ"_s, u"b"_s}, App{u"a\uffff"_s, u"a2"_s},
                   App{u"A🏌"_s, u"a3"_s}, App{u"ab"_s, u"a1"_s}});
    QCOMPARE(window.packages(), u"a1 a2 a3 b c"_s);
  }

  void equalRowsKeepTheirOrder() {
    Window window(numberedApps(40));
    const QString before = window.packages();
    window.click(0, ColUsedSpace);
    window.click(0, ColUsedSpace);
    QCOMPARE(window.packages(), before);
  }

  void searchHidesAndSortKeepsHidden() {
    Window window;
    window.search(u"FISH"_s);
    QCOMPARE(window.packages(), u"com.Fish"_s);
    const QString shown = window.form.lblShown->Caption();
    QVERIFY2(shown.contains(u"1 / 3"_s) && shown.contains(u"100.0"_s), qPrintable(shown));
    window.click(0, ColUsedSpace);
    window.click(0, ColUsedSpace);
    QCOMPARE(window.packages(), u"com.Fish"_s);
    window.search(u"1"_s);  // a size, a build, a number of order: every column counts
    QCOMPARE(window.packages(), u"com.Fish com.a"_s);
    window.search(u"nowhere"_s);
    QCOMPARE(window.packages(), QString());
    QTest::keyClick(&window.form, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(window.form.txtSearch->hasFocus());
    QTest::keyClick(window.form.txtSearch, Qt::Key_Escape);
    QCOMPARE(window.packages().count(u"com"_s), 3);
  }

  void searchWaitsForAPause() {
    Window window;
    window.form.tmrSearch->setInterval(40);
    for (const QString& typed : {u"f"_s, u"fi"_s, u"fis"_s, u"fish"_s}) {
      window.form.txtSearch->setText(typed);
      QSignalSpy tick(window.form.tmrSearch, &QTimer::timeout);
      QVERIFY(tick.wait());
      QCOMPARE(window.packages(), u"com.a com.b com.Fish"_s);
    }
    QTRY_COMPARE(window.packages(), u"com.Fish"_s);
  }

  void theCurrentRowFollowsThePointer() {
    Window window;
    window.move(2, ColVersion);
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    const FormColor highlight = window.grid.CellBackColor();
    window.move(3, ColPackage);
    QCOMPARE(window.form.SelectedPackage(), u"com.Fish"_s);
    window.grid.setRow(2);
    window.grid.setCol(ColVersion);
    QVERIFY(window.grid.CellBackColor() != highlight);
    window.move(0, ColPackage);
    QCOMPARE(window.form.SelectedPackage(), u"PackageName"_s);
    window.move(1, ColAppName);
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Right);
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    QCOMPARE(window.grid.CellBackColor(), highlight);
    window.search(u"fish"_s);
    window.key(Qt::Key_Down);
    QCOMPARE(window.form.SelectedPackage(), u"com.Fish"_s);
  }

  void toolTipOfACutText() {
    const QString longLabel(65536, u'w');
    Window window({App{longLabel, u"com.long"_s}, App{u"short"_s, u"com.short"_s}});
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
    window.click(2, ColPackage, Qt::RightButton);
    QVERIFY(window.menuOpened());
    window.click(2, ColMenuIcon);
    QVERIFY(window.menuOpened());
    window.click(2, ColPackage);
    QVERIFY(!window.menuOpened());
    const QPoint below(20, window.grid.viewport()->height() - 4);
    for (const auto button : {Qt::LeftButton, Qt::RightButton}) {
      QTest::mouseClick(window.grid.viewport(), button, {}, below);
      QCOMPARE(window.menuOpened(), button == Qt::RightButton);
    }
    window.key(Qt::Key_Return);
    QVERIFY(window.menuOpened());
    window.menuKey();
    QVERIFY(window.menuOpened());
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    const QString before = window.grid.Tag;
    const QRect icon = window.grid.cellArea(0, ColMenuIcon);
    QTest::mousePress(window.widgetOf(0), Qt::LeftButton, {}, icon.center());
    QCOMPARE(window.grid.Tag, before);
    QVERIFY(window.menuOpened());
    QTRY_VERIFY(window.grid.Tag != before);  // the sort comes when the menu has gone
  }

  void keysLeaveHiddenRows() {
    Window window(numberedApps(30));
    for (const bool menuKey : {true, false}) {
      const auto press = [&] { menuKey ? window.menuKey() : window.key(Qt::Key_Return); };
      window.search({});
      window.move(3, ColPackage);
      window.search(u"com.n1"_s);  // 1 and 10 to 19, in rows 2 and 11 to 20
      press();
      QVERIFY(!window.menuOpened());
      QCOMPARE(window.form.SelectedPackage(), u"com.n1"_s);
      press();
      QVERIFY(window.menuOpened());
      window.search(u"nowhere"_s);
      press();
      QVERIFY(!window.menuOpened());
    }
    window.search({});
    window.move(5, ColPackage);
    window.search(u"com.n1"_s);
    window.key(Qt::Key_Down);
    QCOMPARE(window.form.SelectedPackage(), u"com.n10"_s);
  }

  void headingsAreWhole() {
    Window window({App{QString(), u"com.a"_s}});
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
    for (int i = 0; i < 30; ++i) window.wheel(-120);
    QCOMPARE(top(), 200);       // the last row alone
    window.search(u"App 0"_s);  // a hundred rows, all above
    QVERIFY(window.grid.RowIsVisible(100) && top() < 100 - page / 2);
    window.search(u"App 00"_s);
    QCOMPARE(top(), 1);
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
