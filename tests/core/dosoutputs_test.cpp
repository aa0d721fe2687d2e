#include "core/dosoutputs.h"

#include <QElapsedTimer>
#include <QTest>

#include "core/turn.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

QString child(const QString& behaviour) {
  return u"\""_s + QStringLiteral(ORVANTA_TEST_CHILD) + u"\" "_s + behaviour;
}

class Reports : public CommandReports {
 public:
  QStringList said;
  void commandError(const QString& line) override { said << u"console: "_s + line; }
  QCoro::Task<> criticalMessage(QString text) override {
    said << u"box: "_s + text;
    co_return;
  }
};

}  // namespace

class DosOutputsTest : public QObject {
  Q_OBJECT

  Reports m_reports;

 private Q_SLOTS:
  void init() { m_reports.said.clear(); }

  void texts_data() {
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << u"write"_s << QString();
    QTest::newRow("exactly 256 bytes") << u"write 256*78"_s << QString(256, u'x');
    QTest::newRow("standard error only") << u"write 2:6f6e0a"_s << u"on\r\n"_s;
    QTest::newRow("both streams, in order") << u"write 61 ~50 2:62 ~50 63"_s << u"abc"_s;
    QTest::newRow("CR LF over a block boundary")
        << u"write 255*78 0d ~50 0a79"_s << QString(255, u'x') + u"\r\ny"_s;
    QTest::newRow("character over a block boundary")
        << u"write 255*78 e58c ~50 85"_s << QString(255, u'x') + u'包';
    QTest::newRow("invalid UTF-8") << u"write 61ff62"_s << u"a\ufffdb"_s;
    QTest::newRow("a character cut by the end") << u"write 61e58c"_s << u"a\ufffd"_s;
    QTest::newRow("NUL bytes") << u"write 610062"_s << QString::fromUtf16(u"a\0b", 3);
    QTest::newRow("a byte order mark") << u"write efbbbf61"_s
                                       << u"\ufeff"
                                          "a"_s;
  }
  void texts() {
    QFETCH(QString, behaviour);
    QFETCH(QString, text);
    DOSOutputs runner(m_reports);
    QStringList blocks;
    connect(&runner, &DOSOutputs::ReceiveOutputs, this, [&blocks](const QString& block) { blocks << block; });
    const QString result = QCoro::waitFor(runner.ExecuteCommand(child(behaviour)));
    QCOMPARE(blocks.join(QString()), result);
    QCOMPARE(runner.Outputs(), result);
    QVERIFY2(!blocks.isEmpty() && blocks.constLast().isEmpty(), "the last event of a run is empty");
    QCOMPARE(result, text);
  }

  void keepsTheLineAndTheLastOutput() {
    DOSOutputs runner(m_reports);
    runner.setCommandLine(child(u"write 2:6f6e0a"_s));
    const QString first = QCoro::waitFor(runner.ExecuteCommand());
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand()), first);
    const QString missing = u"\"/no/such tool\" devices"_s;
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(missing)), QString());
    QCOMPARE(runner.CommandLine(), missing);
    QCOMPARE(runner.Outputs(), first);
    const QStringList wanted{u"console: "_s + missing, u"box:  File or command not found\r\n"_s + missing};
    QCOMPARE(m_reports.said, wanted);
  }

  void withoutALine() {
    DOSOutputs runner(m_reports);
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand()), QString());
    QCOMPARE(m_reports.said, QStringList{u"box: Command Line empty"_s});
  }

  void stopEndsTheToolAndTheLaterCalls() {
    Turn turn;
    DOSOutputs runner(m_reports, &turn);
    qsizetype received = 0;
    connect(&runner, &DOSOutputs::ReceiveOutputs, this, [&](const QString& block) {
      received += block.size();
      if (received > 100'000) turn.requestStop();
    });
    QElapsedTimer since;
    since.start();
    {
      const auto holder = turn.begin();
      QVERIFY(holder.has_value());
      QVERIFY2(!turn.begin().has_value(), "one handler at a time");
      QVERIFY(QCoro::waitFor(runner.ExecuteCommand(child(u"flood"_s))).size() > 100'000);
      QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(u"write 2:6f6e0a"_s))), QString());
    }
    QVERIFY(since.elapsed() < 10'000);
    QVERIFY(!turn.taken());
    const auto next = turn.begin();
    QVERIFY(next.has_value());
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(u"write 2:6f6e0a"_s))), u"on\r\n"_s);
  }

  void aGrandchildThatHoldsThePipeHoldsTheRun() {
    DOSOutputs runner(m_reports);
    QElapsedTimer since;
    since.start();
    QCoro::waitFor(runner.ExecuteCommand(child(u"hold 600"_s)));
    QVERIFY(since.elapsed() >= 550);
  }

  void muchText() {
    DOSOutputs runner(m_reports);
    const QString text =
        QCoro::waitFor(runner.ExecuteCommand(child(u"write 1048576*"_s + QString(126, u'6') + u"0a"_s)));
    QCOMPARE(text.size(), qsizetype(65) * 1024 * 1024);
    QVERIFY(text.endsWith(u"fff\r\n"_s));
  }
};

QTEST_GUILESS_MAIN(DosOutputsTest)
#include "dosoutputs_test.moc"
