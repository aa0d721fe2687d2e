#include "core/dosoutputs.h"

#include <QElapsedTimer>
#include <QTest>

#include "core/turn.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

QString child(const QString& steps) {
  return u"\""_s + QStringLiteral(ORVANTA_TEST_CHILD) + u"\" "_s + steps;
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

  void texts() {
    const struct {
      QString steps;
      QString text;
    } rows[] = {
        {u""_s, {}},
        {u"255*78 e58c ~50 85"_s, QString(255, u'x') + u'包'},
        {u"61ff62"_s, u"a\ufffdb"_s},
        {u"61e58c"_s, u"a\ufffd"_s},
        {u"610062"_s, QString::fromUtf16(u"a\0b", 3)},
        {u"efbbbf2b"_s, u"\ufeff+"_s},
    };
    for (const auto& row : rows) {
      DOSOutputs runner(m_reports);
      QStringList blocks;
      connect(&runner, &DOSOutputs::ReceiveOutputs, this,
              [&blocks](const QString& block) { blocks << block; });
      QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(row.steps))), row.text);
      QCOMPARE(runner.Outputs(), row.text);
      QCOMPARE(blocks.join(QString()), row.text);
      QVERIFY2(!blocks.isEmpty() && blocks.constLast().isEmpty(), "the last event of a run is empty");
    }
  }

  void keepsTheLineAndTheLastOutput() {
    DOSOutputs runner(m_reports);
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand()), QString());
    QCOMPARE(m_reports.said, QStringList{u"box: Command Line empty"_s});
    runner.setCommandLine(child(u"2:6f6e0a"_s));
    for (int i = 0; i < 2; ++i) QCOMPARE(QCoro::waitFor(runner.ExecuteCommand()), u"on\r\n"_s);
    const QString missing = u"\"/no/such tool\" devices"_s;
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(missing)), QString());
    QCOMPARE(runner.CommandLine(), missing);
    QCOMPARE(runner.Outputs(), u"on\r\n"_s);
    const QStringList wanted{u"console: "_s + missing, u"box:  File or command not found\r\n"_s + missing};
    QCOMPARE(m_reports.said.mid(1), wanted);
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
      QVERIFY2(!turn.begin().has_value(), "one handler at a time");
      QVERIFY(QCoro::waitFor(runner.ExecuteCommand(child(u"flood"_s))).size() > 100'000);
      QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(u"61"_s))), QString());
    }
    QVERIFY(since.elapsed() < 10'000);
    const auto next = turn.begin();
    QVERIFY(next.has_value());
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(u"61"_s))), u"a"_s);
  }
};

QTEST_GUILESS_MAIN(DosOutputsTest)
#include "dosoutputs_test.moc"
