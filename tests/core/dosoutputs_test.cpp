#include "core/dosoutputs.h"

#include <QElapsedTimer>
#include <QTest>

#include "core/turn.h"
#include "core/utf8_stream.h"
#include "platform/awaited.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

QString child(const QString& steps) {
  return u"\""_s + QStringLiteral(ORVANTA_TEST_CHILD) + u"\" "_s + steps;
}

class Reports : public CommandReports {
 public:
  QStringList said;
  QCoro::Task<> startFailed(QString tool, QString line, QString text) override {
    said << tool + u": "_s + line << u"box: "_s + text;
    co_return;
  }
  void printedTooMuch(const QString& tool, qint64 bytes) override {
    said << u"%1: more than %2"_s.arg(tool).arg(bytes);
  }
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
    const std::pair<QString, QString> rows[] = {
        {u""_s, {}},
        {u"255*78 e58c ~50 85"_s, QString(255, u'x') + u'包'},
        {u"61ff62"_s, u"a\ufffdb"_s},
        {u"61e58c"_s, u"a\ufffd"_s},
        {u"610062"_s, QString::fromUtf16(u"a\0b", 3)},
        {u"efbbbf2b"_s, u"\ufeff+"_s},
    };
    for (const auto& [steps, text] : rows) {
      DOSOutputs runner(m_reports);
      QStringList blocks;
      connect(&runner, &DOSOutputs::ReceiveOutputs, this,
              [&blocks](const QString& block) { blocks << block; });
      QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(steps))), text);
      QCOMPARE(runner.Outputs(), text);
      QCOMPARE(blocks.join(QString()), text);
      QVERIFY2(!blocks.isEmpty() && blocks.constLast().isEmpty(), "the last event of a run is empty");
    }
  }

  void charactersCutAnywhere() {
    const QByteArray bytes =
        "a\0z\xef\xbb\xbf\xc3\xa9\xe5\x8c\x85\xff\xf0\x9f\x8e\xae\xc3(\xe5\x8c+\xf0\x9f+\x80"_ba;
    const QString whole =
        QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom)(bytes);
    for (qsizetype first = 0; first <= bytes.size(); ++first) {
      for (qsizetype second = first; second <= bytes.size(); ++second) {
        Utf8Stream stream;
        QString text = stream.decode(bytes.first(first));
        text += stream.decode(bytes.sliced(first, second - first));
        text += stream.decode(bytes.sliced(second));
        text += stream.rest();
        QCOMPARE(text, whole);
      }
    }
  }

  void keepsTheLineAndTheLastOutput() {
    DOSOutputs runner(m_reports);
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand()), QString());
    QCOMPARE(m_reports.said, QStringList{u"box: Command Line empty"_s});
    runner.setCommandLine(child(u"2:6f6e0a"_s));
    for (int i = 0; i < 2; ++i) QCOMPARE(QCoro::waitFor(runner.ExecuteCommand()), u"on\r\n"_s);
    const QString missing = u"\"/no/such tool.x\" devices"_s;
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(missing)), QString());
    QCOMPARE(runner.CommandLine(), missing);
    QCOMPARE(runner.Outputs(), u"on\r\n"_s);
    const QStringList wanted{u"such tool: "_s + missing, u"box:  File or command not found\r\n"_s + missing};
    QCOMPARE(m_reports.said.mid(1), wanted);
  }

  void stopEndsTheToolAndTheLaterCalls() {
    Turn turn;
    DOSOutputs runner(m_reports, &turn);
    qsizetype received = 0;
    qsizetype afterTheStop = 0;
    connect(&runner, &DOSOutputs::ReceiveOutputs, this, [&](const QString& block) {
      (turn.stopped() ? afterTheStop : received) += block.size();
      if (received > 100'000) turn.requestStop();
    });
    QElapsedTimer since;
    since.start();
    {
      const auto holder = turn.begin();
      QVERIFY2(!turn.begin().has_value(), "one handler at a time");
      const QString text = QCoro::waitFor(runner.ExecuteCommand(child(u"flood"_s)));
      QCOMPARE(text.size(), received);
      QCOMPARE(afterTheStop, 0);
      QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(u"61"_s))), QString());
    }
    QVERIFY(since.elapsed() < 10'000);
    const auto next = turn.begin();
    QVERIFY(next.has_value());
    QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(child(u"61"_s))), u"a"_s);
  }

  void boundOfARun() {
    DOSOutputs runner(m_reports);
    QString events;
    connect(&runner, &DOSOutputs::ReceiveOutputs, this, [&](const QString& block) { events += block; });
    const QString line = child(u"1000*78"_s);
    const QString whole(1000, u'x');
    const struct {
      OutputBound bound;
      QString line;
      QString text;
      qsizetype told;  // so far
    } runs[] = {
        {{1000, true}, line, whole, 0},
        {{999, true}, line, {}, 1},
        {{999, true}, line, {}, 1},  // a poll would tell every two seconds
        {{999, true}, child(u"61"_s), u"a"_s, 1},
        {{999, true}, line, {}, 1},
        {{1000, true}, line, whole, 1},
        {{999, true}, line, {}, 2},
        {{100'000, true}, child(u"flood"_s), {}, 3},
        {{500}, line, whole.left(512), 3},
        {{}, line, whole, 3},
    };
    for (const auto& run : runs) {
      events.clear();
      runner.setBound(run.bound);
      QCOMPARE(QCoro::waitFor(runner.ExecuteCommand(run.line)), run.text);
      QCOMPARE(runner.Outputs(), run.text);
      QCOMPARE(runner.answered(), !run.text.isEmpty());
      QCOMPARE(m_reports.said.size(), run.told);
      if (!run.bound.endsTool) QCOMPARE(events, whole);
    }
    QCOMPARE(m_reports.said.constLast(), u"test-child: more than 100000"_s);
  }

  void deletedWhileItRuns() {
    // by a listener, by the listener of the last event, and between two events
    for (const QString& steps : {u"61 hang"_s, u""_s, u"hang"_s}) {
      Turn turn;
      auto runner = std::make_unique<DOSOutputs>(m_reports, &turn);
      connect(runner.get(), &DOSOutputs::ReceiveOutputs, this, [&runner] { runner.reset(); });
      int toolsEnded = 0;
      connect(&turn, &Turn::toolEnded, this, [&toolsEnded] { ++toolsEnded; });
      auto run = runner->ExecuteCommand(child(steps));
      if (steps == u"hang"_s) runner.reset();
      QCOMPARE(QCoro::waitFor(run), QString());
      QVERIFY(runner == nullptr);
      QCOMPARE(toolsEnded, 1);
    }
  }

  void aWaitEndsWithItsSender() {
    for (const bool emits : {true, false}) {
      auto sender = std::make_unique<QObject>();
      QList<bool> resumed;
      const auto wait = [&]() -> QCoro::Task<> {
        const bool emitted = co_await Emitted(sender.get(), &QObject::objectNameChanged);
        resumed << emitted;
      };
      const auto waiting = wait();
      if (emits) {
        sender->setObjectName(u"one"_s);
        sender->setObjectName(u"two"_s);
      }
      sender.reset();
      QVERIFY(resumed.isEmpty());
      QTRY_COMPARE(resumed, QList<bool>{emits});
    }
  }
};

QTEST_GUILESS_MAIN(DosOutputsTest)
#include "dosoutputs_test.moc"
