#include <QElapsedTimer>
#include <QTest>

#include "inventory/cell_text.h"
#include "inventory/columns.h"
#include "inventory/parser.h"
#include "inventory/progress.h"
#include "inventory/shortcomings.h"
#include "inventory/sort_press.h"
#include "inventory/wheel.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class InventoryReadersTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void twoAppsWithTheirReturns() {
    const QString output =
        u"60\r\naapt-arm-pie: 1 file pushed. 3.2 MB/s\r\nTO3x: 9.9\r\n"
        "IP3x: com.example.one \r\napplication-label:One  \r\nVC3x: versionCode: 83 minSdk: 23 targetSdk: "
        "28\r\n"
        "VC3x: versionName: 1.1.7\r\nVC3x: versionName: 1.1.8\r\nTO3x: 12.3\r\nAP3x: 12.0\r\nOB3x: "
        "0.2\r\nAD3x: 0.1\r\n"
        " IP3x: indented\r\nip3x: lower\r\n"
        "IP3x: com.example.two \r\napplication-label:\r\nVC3x: versionCode: 5\r\n"_s;
    const Inventory read = readInventory(output);
    const InventoryApp one = {
        u"One  \r", u"com.example.one \r", u"1.1.8\r", u"83", u"12.3\r", u"12.0\r", u"0.2\r", u"0.1\r"};
    const InventoryApp two = {u"\r", u"com.example.two \r"};
    QCOMPARE(read.apps, (QList<InventoryApp>{one, two}));
    QCOMPARE(read.words, (QList<QString>{u"60"_s, u"aapt-arm-pie: 1 file pushed. 3.2 MB/s"_s,
                                         u"IP3x: indented"_s, u"ip3x: lower"_s}));
  }

  void cutInTheMiddle() {
    const QString block = u"IP3x: a.b \r\nTO3x: 1.0\r\nAD3x: 0.1\r\n"_s;
    const QList<std::pair<QString, bool>> rows = {
        {block, false},
        {u"error: closed\r\n"_s + block, false},
        {u"IP3x: a.a \r\nerror: closed\r\nAD3x: \n"_s, false},  // one of several calls failed
        {block + u"WARNING: linker\r\n"_s, false},
        {u"error: closed\r\n"_s, false},  // no list at all is told as such
        {block + u"IP3x: c.d \r\nTO3x: 1.0\r\n"_s, true},
        {block.chopped(4), true},
        {block + u"error: closed\r\n"_s, true},
        {block + u"adb: error: closed"_s, true},
    };
    for (const auto& [output, cut] : rows) QVERIFY2(readInventory(output).cut == cut, qPrintable(output));
  }

  void tagsInsideValuesAreText() {
    const QString label = u"IP3x: evil TO3x: 1"_s + QString(65536, u'x');
    const QString output =
        u"IP3x: a.b \r\napplication-label:%1\r\nVC3x: versionName: IP3x: no\rTO3x: 7\r\n"_s.arg(label);
    const Inventory read = readInventory(output);
    QCOMPARE(read.apps.size(), 1);
    QCOMPARE(read.apps[0][ColAppName], label + u'\r');
    QCOMPARE(read.apps[0][ColVersion], u"IP3x: no\rTO3x: 7\r"_s);
    QVERIFY(read.apps[0][ColUsedSpace].isEmpty());
  }

  void progress_data() {
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("apps");
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("twips");
    QTest::newRow("none yet") << u"60\r\n"_s << 0 << 0 << 0;
    QTest::newRow("one percent draws nothing") << u"100\r\n"_s << 1 << 1 << 0;
    QTest::newRow("two") << u"100\r\n"_s << 2 << 2 << 140;
    QTest::newRow("floating point falls short") << u"100\r\n"_s << 29 << 28 << 1960;
    QTest::newRow("all") << u" 60 \r\n"_s << 60 << 100 << 7000;
    QTest::newRow("more than counted") << u"60\r\n"_s << 61 << 101 << 7070;
    QTest::newRow("no apps") << u"0\r\n"_s << 3 << 0 << 0;
    QTest::newRow("far more than counted") << u"1\r\n"_s << INT_MAX << INT_MAX << INT_MAX / 70 * 70;
    QTest::newRow("negative") << u"-5\r\n"_s << 3 << -60 << 0;
    QTest::newRow("largest") << u"32767\r\n"_s << 32767 << 100 << 7000;
    QTest::newRow("beyond 16 bits") << u"32768\r\n"_s << 300 << 0 << 0;
    QTest::newRow("the tool's words") << u"error: no devices/emulators found\r\n"_s << 3 << 0 << 0;
    QTest::newRow("daemon's greeting") << u"* daemon started *\r\n7\r\n"_s << 3 << 0 << 0;
  }
  void progress() {
    QFETCH(QString, reply);
    QFETCH(int, apps);
    const QString count = cleanedCount(reply);
    QTEST(progressPercent(apps, count), "percent");
    QTEST(progressBarTwips(progressPercent(apps, count)), "twips");
    QVERIFY(!count.contains(u'*') && !count.contains(u'\r') && !count.contains(u'\n'));
  }

  void tagsAreCountedAcrossBlocks() {
    const QString stream = u"IP3x: a IP3IP3x\r\nIIP3x IP3 x IP3x"_s;
    for (qsizetype size = 1; size <= stream.size(); ++size) {
      AppTagCounter counter;
      for (qsizetype at = 0; at < stream.size(); at += size) counter.feed(stream.mid(at, size));
      QCOMPARE(counter.apps(), 4);
    }
  }

  // What the window does for each block, and the reading at the end, must not grow faster than the text.
  void readingIsLinear() {
    const auto milliseconds = [](int apps) {
      QString stream;
      for (int i = 0; i < apps; ++i) {
        stream +=
            u"IP3x: com.example.app%1 \r\napplication-label:App %1\r\nVC3x: versionCode: %1 minSdk: 23\r\n"
            "VC3x: versionName: 1.%1\r\nTO3x: 12.3\r\nAP3x: 12.0\r\nOB3x: 0.2\r\nAD3x: 0.1\r\n"_s.arg(i);
      }
      QElapsedTimer timer;
      timer.start();
      AppTagCounter counter;
      QString output;
      for (qsizetype at = 0; at < stream.size(); at += 256) {
        const QString block = stream.mid(at, 256);
        output += block;
        counter.feed(block);
        progressCaption(counter.apps(), u"10000"_s);
      }
      const qsizetype rows = readInventory(output).apps.size();
      return rows == apps && counter.apps() == apps ? timer.nsecsElapsed() / 1e6 : 1e9;
    };
    // The best of several, so that what else the machine does stays out of it.
    const auto best = [&milliseconds](int apps) {
      double least = 1e9;
      for (int run = 0; run < 7; ++run) least = qMin(least, milliseconds(apps));
      return least;
    };
    const double small = best(1000);
    const double large = best(10000);
    QVERIFY2(large < 1000, qPrintable(QString::number(large)));
    QVERIFY2(large < 50 + 12 * small, qPrintable(u"%1 against %2 ms"_s.arg(large).arg(small)));
  }

  void CTrim_data() {
    QTest::addColumn<QString>("S1");
    QTest::addColumn<QString>("trimmed");
    QTest::newRow("cell") << u"com.example.one \r"_s << u"com.example.one"_s;
    QTest::newRow("inside too") << u"Package Name"_s << u"PackageName"_s;
    QTest::newRow("nothing but") << QString(u" \t\r\n\0\x7f\x81\x8d\x8f\x90\x9d"_s) << QString();
    QTest::newRow("neighbours stay") << u"!~\u0080\u0082\u008e\u0091\u00a0应用"_s
                                     << u"!~\u0080\u0082\u008e\u0091\u00a0应用"_s;
  }
  void CTrim() {
    QFETCH(QString, S1);
    QTEST(orvanta::CTrim(S1), "trimmed");
  }

  void sizes() {
    QCOMPARE(tenthsIn(u"12.3\r"_s), 123);
    QCOMPARE(tenthsIn(u"0.0\r"_s), 0);
    QCOMPARE(tenthsIn(u"\r"_s), 0);
    QCOMPARE(tenthsIn(u"12.3 GB"_s), 0);
    QCOMPARE(tenthsIn(u"inf"_s), 0);
    QCOMPARE(tenthsText(tenthsIn(u"200000.7"_s) + 4), u"200001.1"_s);
  }

  void headerPresses_data() {
    QTest::addColumn<QList<int>>("columns");
    QTest::addColumn<QList<int>>("codes");
    QTest::newRow("name, sorted by it at the start") << QList<int>{0, 0} << QList<int>{6, 5};
    QTest::newRow("version is text") << QList<int>{2, 2, 2} << QList<int>{5, 6, 5};
    QTest::newRow("build: number up, text down") << QList<int>{3, 3, 3} << QList<int>{3, 6, 3};
    QTest::newRow("size") << QList<int>{4, 4, 4} << QList<int>{3, 4, 3};
    QTest::newRow("a new column begins ascending") << QList<int>{4, 5, 4} << QList<int>{3, 3, 3};
    QTest::newRow("icon column") << QList<int>{9, 9} << QList<int>{3, 4};
  }
  void headerPresses() {
    QFETCH(QList<int>, columns);
    QList<int> codes;
    int lastColumn = 0;
    int lastCode = SortTextAscending;
    for (const int column : columns) {
      lastCode = sortCodeOfPress(column, lastColumn, lastCode);
      lastColumn = column;
      codes << lastCode;
    }
    QTEST(codes, "codes");
  }

  void wheelPages_data() {
    QTest::addColumn<int>("Height");
    QTest::addColumn<int>("Rows");
    QTest::addColumn<int>("TopRow");
    QTest::addColumn<int>("lastVisible");
    QTest::addColumn<int>("Rotation");
    QTest::addColumn<int>("newTop");  // -1: the list does not scroll
    QTest::newRow("a page down") << 200 << 101 << 1 << 20 << -1 << 20;
    QTest::newRow("a page up") << 200 << 101 << 41 << 60 << 1 << 22;
    QTest::newRow("up stops at the first row") << 200 << 101 << 5 << 24 << 1 << 1;
    QTest::newRow("at the top it stays") << 200 << 101 << 1 << 20 << 120 << 1;
    QTest::newRow("down stops at the last row") << 200 << 101 << 98 << 100 << -1 << 100;
    QTest::newRow("no rotation is downward") << 200 << 101 << 1 << 20 << 0 << 20;
    QTest::newRow("shorter than a page") << 200 << 19 << 1 << 18 << -1 << -1;
    QTest::newRow("as long as a page") << 200 << 20 << 1 << 19 << -1 << 19;
    QTest::newRow("none visible") << 200 << 101 << 30 << 0 << -1 << 30;
  }
  void wheelPages() {
    QFETCH(int, Height);
    QFETCH(int, Rows);
    QFETCH(int, TopRow);
    QFETCH(int, lastVisible);
    QFETCH(int, Rotation);
    const PagedList list{Height, 10, Rows, TopRow, [lastVisible](int row) { return row <= lastVisible; }};
    QTEST(FlexGridScroll(list, Rotation).value_or(-1), "newTop");
  }

  void notches() {
    const QList<std::pair<QList<int>, QList<int>>> rows = {
        {{120, -120, 120}, {1, -1, 1}},
        {{40, 40, 40, 40, 40}, {0, 0, 1, 0, 0}},
        {{-15, -15, -15, -15, -15, -15, -15, -15}, {0, 0, 0, 0, 0, 0, 0, -1}},
        {{100, -100, -20}, {0, 0, -1}},  // a change of direction begins anew
        {{480, 119}, {1, 0}},            // a fast turn is one page too
    };
    for (const auto& [turns, messages] : rows) {
      WheelNotches wheel;
      QList<int> got;
      for (const int turn : turns) got << wheel.take(turn);
      QCOMPARE(got, messages);
    }
  }

  void edgesAreInside() {
    const QRect window(10, 20, 100, 50);  // its right edge is at 110, its bottom edge at 70
    for (const QPoint inside : {QPoint(10, 20), QPoint(110, 20), QPoint(10, 70), QPoint(110, 70)})
      QVERIFY(IsOver(window, inside));
    for (const QPoint outside : {QPoint(9, 30), QPoint(111, 30), QPoint(50, 19), QPoint(50, 71)})
      QVERIFY(!IsOver(window, outside));
    QVERIFY(IsOver(QRect(-500, 0, 100, 100), QPoint(-450, 5)));  // a screen to the left of the first one
  }

  void shortcomings_data() {
    QTest::addColumn<InventoryOutcome>("outcome");
    QTest::addColumn<QString>("said");
    const InventoryOutcome whole{false, {}, true, u"2"_s, 2, true, true, {u"2"_s, u"x: 1 file pushed."_s}};
    const auto row = [&whole](const char* name, const QString& said, auto change) {
      InventoryOutcome outcome = whole;
      change(outcome);
      QTest::newRow(name) << outcome << said;
    };
    row("whole", {}, [](InventoryOutcome&) {});
    row("more than counted", {}, [](InventoryOutcome& o) { o.apps = 3; });
    row("empty device", u"There are no apps"_s,
        [](InventoryOutcome& o) { o.apps = 0, o.AppCountText = u"0"_s; });
    row("no device", u": error: no devices/emulators found"_s, [](InventoryOutcome& o) {
      o.apps = 0, o.AppCountText = u"error: no devices/emulators found"_s, o.words = {o.AppCountText};
    });
    row("gone in the middle", u"Only 1 of 2 apps could be read): error: closed"_s,
        [](InventoryOutcome& o) { o.apps = 1, o.words << u"error: closed"_s; });
    row("gone behind as many as were counted", u"The list is not complete): error: closed"_s,
        [](InventoryOutcome& o) { o.cut = true, o.words << u"error: closed"_s; });
    row("stopped", u"Stopped"_s, [](InventoryOutcome& o) { o.stopped = o.cut = true, o.apps = 1; });
    row("script", u"Disk full"_s, [](InventoryOutcome& o) { o.scriptFailure = u"Disk full"_s, o.apps = 0; });
    row("no sizes", u"did not tell the sizes"_s, [](InventoryOutcome& o) { o.anySize = false; });
    row("no tool", u"aapt-arm-pie is missing"_s,
        [](InventoryOutcome& o) { o.hasBadgingTool = false, o.anyLabel = false; });
    row("no labels", u"app names"_s, [](InventoryOutcome& o) { o.anyLabel = false; });
  }
  void shortcomings() {
    QFETCH(InventoryOutcome, outcome);
    QFETCH(QString, said);
    const QString text = shortcomingsOf(outcome);
    QCOMPARE(text.isEmpty(), said.isEmpty());
    QVERIFY2(text.contains(said), qPrintable(text));
  }
};

QTEST_MAIN(InventoryReadersTest)
#include "inventory_readers_test.moc"
