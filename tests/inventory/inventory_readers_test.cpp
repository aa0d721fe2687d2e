#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include "adb/replies.h"
#include "inventory/icon_cache.h"
#include "inventory/icon_reading.h"
#include "inventory/parser.h"
#include "inventory/progress.h"
#include "inventory/shortcomings.h"
#include "inventory/wheel.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class InventoryReadersTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void twoAppsWithTheirReturns() {
    const QString output =
        u"* daemon started successfully\r\n60\r\naapt-arm-pie: 1 file pushed. 3.2 MB/s\r\nTO3x: 9.9\r\n"
        "IP3x: com.example.one \r\napplication-label:One  \r\nVC3x: versionCode: 83 minSdk: 23 targetSdk: "
        "28\r\n"
        "VC3x: versionName: 1.1.7\r\nVC3x: versionName: IP3x: no\rTO3x: 7\r\nTO3x: 12.3\r\nAP3x: "
        "12.0\r\nOB3x: 0.2\r\nAD3x: 0.1\r\n"
        " IP3x: indented\r\nip3x: lower\r\n"
        "IP3x: com.example.two \r\napplication-label:IP3x: evil TO3x: 1\r\nVC3x: versionCode: 5\r\n"_s;
    const Inventory read = readInventory(output);
    const InventoryApp one = {
        u"One  \r", u"com.example.one \r", u"IP3x: no\rTO3x: 7\r", u"83", u"12.3\r", u"12.0\r", u"0.2\r",
        u"0.1\r"};
    const InventoryApp two = {u"IP3x: evil TO3x: 1\r", u"com.example.two \r"};
    QCOMPARE(read.apps, (QList<InventoryApp>{one, two}));
    QCOMPARE(read.words, (QList<QString>{u"60"_s, u"aapt-arm-pie: 1 file pushed. 3.2 MB/s"_s,
                                         u"IP3x: indented"_s, u"ip3x: lower"_s}));
  }

  void cutInTheMiddle() {
    const QString block = u"IP3x: a.b \r\nTO3x: 1.0\r\nAD3x: 0.1\r\n"_s;
    const QList<std::pair<QString, bool>> rows = {
        {u"error: closed\r\n"_s + block, false},
        {u"IP3x: a.a \r\nerror: closed\r\nAD3x: \n"_s, false},  // one of several calls failed
        {block + u"WARNING: linker\r\n"_s, false},
        {u"error: closed\r\n"_s, false},  // a missing list is reported as such
        {block + u"IP3x: c.d \r\nTO3x: 1.0\r\n"_s, true},
        {block.chopped(4), true},
        {block + u"error: closed\r\n"_s, true},
        {block + u"adb: error: closed"_s, true},
    };
    for (const auto& [output, cut] : rows) QVERIFY2(readInventory(output).cut == cut, qPrintable(output));
  }

  void progress() {
    const std::tuple<QString, int, int, int> rows[] = {
        {u"100\r\n"_s, 1, 1, 0},
        {u"100\r\n"_s, 29, 28, 1960},  // a product of fractions falls short
        {u" 60 \r\n"_s, 61, 101, 7070},
        {u"0\r\n"_s, 3, 0, 0},
        {u"1\r\n"_s, INT_MAX, INT_MAX, INT_MAX / 70 * 70},
        {u"-5\r\n"_s, 3, -60, 0},
        {u"32768\r\n"_s, 300, 0, 0},
        {u"error: no devices/emulators found\r\n"_s, 3, 0, 0},
        {u"* daemon started *\r\n7\r\n"_s, 3, 0, 0},
    };
    for (const auto& [reply, apps, percent, twips] : rows) {
      QCOMPARE(progressPercent(apps, cleanedCount(reply)), percent);
      QCOMPARE(progressBarTwips(percent), twips);
    }
    QCOMPARE(cleanedCount(u"* a *\r\n7\r\n"_s), u" a 7"_s);
  }

  void tagsAreCountedAcrossBlocks() {
    const QString stream = u"IP3x: a IP3IP3x\r\nIIP3x IP3 x IP3x"_s;
    for (qsizetype size = 1; size <= stream.size(); ++size) {
      AppTagCounter counter;
      for (qsizetype at = 0; at < stream.size(); at += size) counter.feed(stream.mid(at, size));
      QCOMPARE(counter.apps(), 4);
    }
  }

  void cellTexts() {
    QCOMPARE(CTrim(u"com.example.one \r"_s), u"com.example.one"_s);
    QCOMPARE(CTrim(u" \t\r\n\0\x7f\x81\x8d\x8f\x90\x9d Package Name"_s), u"PackageName"_s);
    const QString neighbours = u"!~\u0080\u0082\u008e\u0091\u00a0应用"_s;
    QCOMPARE(CTrim(neighbours), neighbours);
    const std::tuple<CellKind, QString, double> rows[] = {
        {CellKind::Size, u"12.3\r"_s, 12.3},
        {CellKind::Number, u" -5 \r"_s, -5},
        {CellKind::Size, u"12.3.4 GB"_s, 12.3},
        {CellKind::Size, u"inf"_s, 0},
        {CellKind::Number, u"1e9"_s, 1},
        {CellKind::Number, u"\r"_s, 0},
        {CellKind::Date, u"1970-01-02 00:00:01\r"_s, 86'401},
        {CellKind::Date, u"soon"_s, 0},
    };
    for (const auto& [kind, cell, value] : rows) QCOMPARE(cellValue(kind, cell), value);
  }

  void headerPresses() {
    const std::pair<QList<int>, QList<int>> rows[] = {
        {{ColAppName, ColAppName}, {SortTextDescending, SortTextAscending}},  // sorted by it at the start
        {{ColVersion, ColVersion, ColVersion}, {SortTextAscending, SortTextDescending, SortTextAscending}},
        {{ColBuild, ColBuild, ColBuild}, {SortNumericAscending, SortTextDescending, SortNumericAscending}},
        {{ColUsedSpace, ColUsedSpace, ColApkSpace, ColUsedSpace},
         {SortNumericAscending, SortNumericDescending, SortNumericAscending, SortNumericAscending}},
    };
    for (const auto& [presses, codes] : rows) {
      QList<int> got{SortTextAscending};
      int lastColumn = ColAppName;
      for (const int column : presses) {
        got << sortCodeOfPress(column, lastColumn, got.constLast());
        lastColumn = column;
      }
      QCOMPARE(got.mid(1), codes);
    }
  }

  void wheelPages() {
    const std::array<int, 5> rows[] = {
        // Rows, TopRow, last visible, Rotation, the new top; -1: the list does not scroll
        {101, 1, 20, -1, 20}, {101, 41, 60, 1, 22}, {101, 5, 24, 1, 1},   {101, 98, 100, -1, 100},
        {19, 1, 18, -1, -1},  {20, 1, 19, -1, 19},  {101, 30, 0, -1, 30},
    };
    for (const auto& [Rows, TopRow, lastVisible, Rotation, newTop] : rows) {
      const PagedList list{200, 10, Rows, TopRow, [last = lastVisible](int at) { return at <= last; }};
      QCOMPARE(FlexGridScroll(list, Rotation).value_or(-1), newTop);
    }
  }

  void notches() {
    const QList<std::pair<QList<int>, QList<int>>> rows = {
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

  void shortcomings() {
    using Outcome = InventoryOutcome;
    const Outcome whole{false, {}, true, u"2"_s, 2, true, true, true, {u"2"_s, u"x: 1 file pushed."_s}};
    const std::pair<QString, void (*)(Outcome&)> rows[] = {
        {{}, [](Outcome&) {}},
        {{}, [](Outcome& o) { o.apps = 3; }},
        {{}, [](Outcome& o) { o.anySpace = false; }},  // all apps are tiny
        {{}, [](Outcome& o) { o.words << u"du: /data/app/x: Permission denied"_s; }},
        {u"There are no apps"_s, [](Outcome& o) { o.apps = 0, o.AppCountText = u"0"_s; }},
        {u": error: closed"_s,
         [](Outcome& o) { o.apps = 0, o.AppCountText = u"error: closed"_s, o.words = {o.AppCountText}; }},
        {u"Only 1 of 2 apps could be read): error: closed"_s,
         [](Outcome& o) { o.apps = 1, o.words << u"error: closed"_s; }},
        {u"The list is not complete): error: closed"_s,
         [](Outcome& o) { o.cut = true, o.words << u"error: closed"_s; }},
        {u"Stopped"_s, [](Outcome& o) { o.stopped = o.cut = true, o.apps = 1; }},
        {u"Disk full"_s, [](Outcome& o) { o.scriptFailure = u"Disk full"_s, o.apps = 0; }},
        {u"did not tell the sizes"_s, [](Outcome& o) { o.anySize = o.anySpace = false; }},
        {u"did not tell the sizes): sh: du: not found"_s,
         [](Outcome& o) { o.anySpace = false, o.words << u"sh: du: not found"_s; }},
        {u"aapt-arm-pie is missing"_s, [](Outcome& o) { o.hasBadgingTool = o.anyLabel = false; }},
        {u"app names"_s, [](Outcome& o) { o.anyLabel = false; }},
    };
    for (const auto& [said, change] : rows) {
      Outcome outcome = whole;
      change(outcome);
      const QString text = shortcomingsOf(outcome);
      QVERIFY2(said.isEmpty() ? text.isEmpty() : text.contains(said), qPrintable(text));
    }
  }

  void icons() {
    const auto png = [](int width, int height) {
      QImage image(width, height, QImage::Format_RGB32);
      image.fill(Qt::red);
      QByteArray bytes;
      QBuffer buffer(&bytes);
      image.save(&buffer, "png");
      return bytes;
    };
    QByteArray bomb = png(48, 48);
    bomb.replace(16, 8, QByteArray::fromHex("0000ffff0000ffff"));
    for (const auto& [bytes, size] : {std::pair(png(48, 48), QSize(48, 48)),
                                      {png(20, 30), QSize(20, 30)},
                                      {png(512, 256), QSize(48, 24)},
                                      {png(1025, 4), QSize()},
                                      {bomb, QSize()},
                                      {png(48, 48).first(60), QSize()},
                                      {"GIF89a", QSize()},
                                      {QByteArray(), QSize()}})
      QCOMPARE(iconOf(bytes).size(), size.isEmpty() ? QImage().size() : size);
    const QString base64 = QString::fromLatin1(png(2, 2).toBase64());
    for (const auto& [line, package, picture] :
         {std::tuple(u"IC3x: a.b "_s + base64 + u'\r', "a.b", png(2, 2)),
          {u"IC3x: a.b \r"_s, "a.b", QByteArray()},
          {u"IC3x: a.b not*base64"_s, "a.b", QByteArray()},
          {u"IC3x: "_s, "", QByteArray()},
          {u"sh: no such tool"_s, "", QByteArray()}}) {
      const auto printed = printedIconIn(line).value_or(PrintedIcon());
      QCOMPARE(printed.package, QLatin1String(package));
      QCOMPARE(printed.picture, picture);
    }
    const QTemporaryDir folder;
    const IconCache cache(folder.filePath(u"new"_s));
    cache.keep(u"a.b"_s, u"7"_s, iconOf(png(48, 48)));
    cache.keep(u"none"_s, u"7"_s, QImage());
    QCOMPARE(cache.icon(u"a.b"_s, u"7"_s)->size(), QSize(48, 48));
    QVERIFY(!cache.icon(u"a.b"_s, u"8"_s) && cache.icon(u"none"_s, u"7"_s)->isNull());
  }
};

QTEST_MAIN(InventoryReadersTest)
#include "inventory_readers_test.moc"
