#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>
#include <array>

#include "core/turn.h"
#include "inventory/apps_form.h"
#include "ui/flex_grid_paint.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

class NoReports : public CommandReports {
 public:
  QCoro::Task<> startFailed(QString, QString, QString) override { co_return; }
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
  QString toolTip(int row, int col) const {
    const QPoint place = grid.cellArea(row, col).center();
    QHelpEvent event(QEvent::ToolTip, place, widgetOf(row)->mapToGlobal(place));
    QCoreApplication::sendEvent(widgetOf(row), &event);
    return QToolTip::text().remove(u'\n');
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
  /// The packages that the grid shows, in its order.
  QString packages() const {
    QStringList found;
    for (int row = 0; row < grid.model()->rowCount(); ++row)
      found << grid.model()->index(row, ColPackage).data().toString();
    return found.join(u' ');
  }
  /// The view's rows that are drawn whole, from the top; nothing where the first one is cut.
  QList<int> drawn() const {
    QList<int> rows;
    const int height = grid.viewport()->height();
    for (QModelIndex index = grid.indexAt({0, 0}); index.isValid();
         index = index.siblingAtRow(index.row() + 1)) {
      const QRect row = grid.visualRect(index);
      if (row.top() != FlexGrid::rowPixels * rows.size() || row.bottom() >= height) break;
      rows << index.row();
    }
    return rows;
  }
  QColor ground(int row, int col) {
    const QRect cell = grid.cellArea(row, col);
    return widgetOf(row)->grab(cell).toImage().pixelColor(cell.width() - 2, 2);
  }
  /// Whether the menu has opened; closes it.
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
  QAbstractItemModelTester all{form.apps};
  QAbstractItemModelTester shown{grid.model()};
};

}  // namespace

class AppsFormTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void emptyDevice() {
    Window window(QList<App>{});
    window.form.resize(1040, window.form.height());
    QVERIFY(window.grid.columnWidth(ColPackage) >
            textWidth(u"Package Name"_s, QFontMetricsF(window.grid.font())));
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
    // Rows that are equal in the column keep their order, up and down.
    for (int press = 0; press < 2; ++press) {
      window.click(0, ColUsedSpace);
      QCOMPARE(window.packages(), u"a1 a2 a3 b c"_s);
    }
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
    const QColor highlight(255, 255, 111);
    window.move(2, ColVersion);
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    QCOMPARE(window.ground(2, ColVersion), highlight);
    window.move(3, ColPackage);
    QCOMPARE(window.form.SelectedPackage(), u"com.Fish"_s);
    QVERIFY(window.ground(2, ColVersion) != highlight);
    window.move(0, ColPackage);
    QCOMPARE(window.form.SelectedPackage(), u"PackageName"_s);
    QCOMPARE(window.ground(0, ColPackage), highlight);
    window.move(1, ColAppName);
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Right);
    QCOMPARE(window.form.SelectedPackage(), u"com.b"_s);
    QCOMPARE(window.ground(2, ColPackage), highlight);
    window.search(u"fish"_s);
    window.key(Qt::Key_Down);
    QCOMPARE(window.form.SelectedPackage(), u"com.Fish"_s);
  }

  void toolTipOfACutText() {
    const QString longLabel(65536, u'w');
    Window window({App{longLabel, u"com.long"_s}, App{u"short"_s, u"com.short"_s}});
    for (const auto button : {Qt::LeftButton, Qt::NoButton}) {
      window.move(1, ColAppName);
      QCOMPARE(window.toolTip(1, ColAppName), QString());
      window.move(2, ColAppName, button);
      QCOMPARE(window.toolTip(2, ColAppName).contains(longLabel.left(1000) + u'…'), button == Qt::NoButton);
    }
    // What a tool has said of the last operation is a text, not markup.
    window.form.setNotice(u"<b>bad</b>"_s);
    const QPoint place(1, 1);
    QHelpEvent event(QEvent::ToolTip, place, window.form.lblNotice->mapToGlobal(place));
    QCoreApplication::sendEvent(window.form.lblNotice, &event);
    QVERIFY2(QToolTip::text().contains(u"&lt;b&gt;"_s), qPrintable(QToolTip::text()));
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
      const auto opens = [&](const QString& search) {
        window.search(search);
        menuKey ? window.menuKey() : window.key(Qt::Key_Return);
        return window.menuOpened();
      };
      window.search({});
      window.move(3, ColPackage);
      QVERIFY(!opens(u"com.n1"_s));  // 1 and 10 to 19, in rows 2 and 11 to 20
      QCOMPARE(window.form.SelectedPackage(), u"com.n1"_s);
      QVERIFY(opens(u"com.n1"_s) && !opens(u"nowhere"_s));
    }
    window.search({});
    window.move(5, ColPackage);
    window.search(u"com.n1"_s);
    window.key(Qt::Key_Down);
    QCOMPARE(window.form.SelectedPackage(), u"com.n10"_s);
  }

  void headingsAreWhole() {
    Window window({App{QString(), u"com.a"_s}});
    window.form.resize(1100, 400);
    const QHeaderView& header = *window.grid.horizontalHeader();
    for (int col = 0; col < ColMenuIcon; ++col) {
      const QString heading = window.grid.TextMatrix(0, col);
      const int room = header.sectionSize(col) - FlexGridHeader::arrowRoom - 6;
      QCOMPARE(header.fontMetrics().elidedText(heading, Qt::ElideRight, room), heading);
    }
    const QVariant alignment =
        header.model()->headerData(ColUsedSpace, Qt::Horizontal, Qt::TextAlignmentRole);
    QVERIFY(alignment.value<Qt::Alignment>().testFlag(Qt::AlignRight));
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
    window.search(u"App 00"_s);
    QCOMPARE(top(), 1);
  }

  void wheelReachesBothEnds() {
    const std::tuple<int, int, QString> rows[] = {
        {71, 300, QString()},            // a small window
        {71, 407, QString()},            // a few pages
        {71, 104 + 20 * 24, QString()},  // whole rows only
        {14, 407, QString()},            // a row more than a page
        {300, 407, u"3"_s},              // rows hidden here and there
        {300, 407, u"App 1"_s},          // a whole page hidden
        {900, 407, u"99"_s},             // far between
        {100, 407, u"App"_s},            // nothing hidden
    };
    for (const auto& [apps, height, search] : rows) {
      Window window(numberedApps(apps));
      window.form.resize(1000, height);
      window.search(search);
      const int last = window.grid.model()->rowCount() - 1;
      for (int round = 0; round < 3; ++round) {
        if (round == 2) window.grid.verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
        for (const int direction : {-1, 1}) {
          const int end = direction < 0 ? last : 0;
          for (int notch = 0;; ++notch) {
            const QList<int> before = window.drawn();
            QVERIFY(!before.isEmpty());
            QCOMPARE(window.grid.TopRow(), window.grid.rows().row(before.constFirst()));
            window.wheel(120 * direction);
            const QList<int> after = window.drawn();
            if (before.contains(end)) {
              QCOMPARE(after, before);
              QVERIFY(direction > 0 ||
                      before.size() >= window.grid.viewport()->height() / FlexGrid::rowPixels);
              break;
            }
            const int moved = (before.constFirst() - after.value(0)) * direction;
            QVERIFY2(moved > 0 && moved <= before.size(), qPrintable(QString::number(moved)));
            // Without a search a notch is a page, but for the last one.
            QVERIFY(moved >= before.size() - 1 || !search.isEmpty() || after.contains(end));
          }
        }
      }
    }
  }

  void captionsAreWhole() {
    Window window;
    window.form.setMinimumSize(480, 280);  // as prepareLoad() leaves it
    for (const int width : {1300, 760, 560, 480}) {
      window.form.resize(width, 400);
      QCoreApplication::processEvents();
      for (const Button* button : window.form.findChildren<Button*>(Qt::FindDirectChildrenOnly)) {
        const QRect place = button->geometry();
        QVERIFY2(place.width() >= button->sizeHint().width() && place.right() < width &&
                     place.bottom() < window.grid.y(),
                 qPrintable(button->text()));
      }
    }
  }

  void figuresStayInView() {
    const QString label = u"很长的应用名称"_s.repeated(30);
    Window window({App{label, u"com.example."_s + QString(300, u'w'), u"123456"_s, u"1234.5"_s}, fewApps[0]});
    for (const int width : {1400, 1000, 900}) {
      window.form.resize(width, 400);
      QTRY_COMPARE(window.grid.horizontalScrollBar()->maximum(), 0);
      window.move(2, ColAppName);  // the label is cut; the tip has all of it
      QVERIFY(window.toolTip(2, ColAppName).contains(label));
      window.move(1, ColAppName);
      const QFontMetrics metrics(window.grid.font());
      for (const int col : {ColAppName, ColPackage}) {
        const QString text = window.grid.TextMatrix(2, col);
        const QString shown = metrics.elidedText(text, Qt::ElideRight, window.grid.columnWidth(col) - 6);
        QVERIFY2(shown.startsWith(text.left(12)), qPrintable(shown));
      }
      QVERIFY(!metrics.elidedText(u"1234.5"_s, Qt::ElideRight, window.grid.columnWidth(ColUsedSpace) - 6)
                   .contains(u'…'));
    }
    window.form.resize(1300, 400);  // both names are too long for it, and share what there is
    QVERIFY(qAbs(window.grid.columnWidth(ColAppName) - window.grid.columnWidth(ColPackage)) <= 1);
    window.grid.setColumnWidth(ColAppName, 333);  // as a drag does
    window.form.resize(1200, 400);
    QCOMPARE(window.grid.columnWidth(ColAppName), 333);
  }
};

QTEST_MAIN(AppsFormTest)
#include "apps_form_test.moc"
