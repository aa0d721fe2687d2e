#include "platform/child_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/run.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ChildProcessTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void output() {
    const struct {
      QString steps;
      QByteArray expected;
    } rows[] = {
        {u""_s, ""},
        {u"255*780a"_s, QByteArray("x\r\n").repeated(255)},  // some line ends span two blocks
        {u"610d ~50 0d ~50 0a620d"_s, "a\r\nb\r"},           // and this one spans two reads
        {u"00ffc30a80"_s, QByteArray("\0\xff\xc3\r\n\x80", 6)},
        {u"2000000*61626364650a"_s, QByteArray("abcde\r\n").repeated(2'000'000)},
        {u"words \"a b\" c\\\"d \"\" ä"_s, "a b\r\nc\"d\r\n\r\nä\r\n"},
        {u"30 2:31 32 2:33 34 2:35 36 2:370a"_s, "01234567\r\n"},
        {u"30 child ~300 31"_s, "01"},  // the child of a tool that has ended has the last word
    };
    for (const auto& row : rows) {
      Run run(testChild(row.steps));
      QVERIFY2(run.waitForEnd() && run.output == row.expected, qPrintable(row.steps));
    }
  }

  void findsThePrograms() {
    QTemporaryDir folder;
    const QString name = QFileInfo(QStringLiteral(ORVANTA_TEST_CHILD)).fileName();
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), folder.filePath(name)));  // another program
    QVERIFY(QFile::copy(QStringLiteral(ORVANTA_TEST_CHILD), folder.filePath(u"on-path-"_s + name)));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", (folder.path() + QDir::listSeparator()).toUtf8() + path);
    Run beside(u"test-child words beside"_s);
    Run onPath(u"on-path-test-child words path"_s);
    qputenv("PATH", path);
    QVERIFY(beside.waitForEnd() && onPath.waitForEnd());
    QCOMPARE(beside.output + onPath.output, "beside\r\npath\r\n");
  }

  void refusesWhatCannotRun() {
    QTemporaryDir folder;
    const QString plain = folder.filePath(u"plain.txt"_s);
    QVERIFY(QFile(plain).open(QIODevice::WriteOnly));
    for (const QString& line :
         {u" "_s, u"\"\" x"_s, u"no-such-program-anywhere"_s, folder.filePath(u"missing"_s), folder.path(),
          plain, testChild(u"words "_s + QString(3'000'000, u'x')), testChild(u"words a"_s + QChar::Null)}) {
      Run run(line);
      QVERIFY2(run.failure, qPrintable(line.left(100)));
      QVERIFY(run.failure->step == ChildProcess::StartFailure::Step::Process);
      QTest::qWait(5);
      QCOMPARE(run.blocks + run.ends, 0);
    }
  }

  void killEnds() {
    Run early(testChild(u"hang"_s));
    early.child->kill();
    for (const QString& steps : {u"number hang"_s, u"flood"_s, u"child number hang"_s}) {
      Run run(testChild(steps));
      QVERIFY(run.waitForOutput() && run.child->bytesRead());
      run.child->kill();
      run.child->kill();
      QVERIFY2(run.ends == 0, "finished came from inside kill()");
      QVERIFY2(run.waitForEnd(5'000), qPrintable(steps));
      QTRY_VERIFY(!runs(run.output));
    }
    QTest::qWait(350);  // the time after which a run would be given up
    QVERIFY(early.waitForEnd(5'000));
  }

  void windowStaysAliveWhileAToolFloods() {
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(10);
    Run run(testChild(u"flood"_s));
    QTestEventLoop::instance().enterLoopMSecs(500);
    QVERIFY2(ticks >= 10 && run.blocks > 1'000, qPrintable(u"%1 ticks"_s.arg(ticks)));
  }

  void slotsMayKillAndDelete() {
    Run killed(testChild(u"flood"_s));
    connect(killed.child.get(), &ChildProcess::block, killed.child.get(), &ChildProcess::kill);
    QVERIFY(killed.waitForEnd(5'000));

    for (const bool atTheEnd : {false, true}) {
      Run deleted(testChild(atTheEnd ? u"number"_s : u"number ~50 600*0a hang"_s));
      const QPointer<ChildProcess> child = deleted.child.get();
      const auto remove = [&] {
        if (deleted.blocks == 2 || atTheEnd) deleted.child.reset();
      };
      if (atTheEnd) {
        connect(child, &ChildProcess::finished, this, remove);
      } else {
        connect(child, &ChildProcess::block, this, remove);
      }
      QTRY_VERIFY(!child);
      QTRY_VERIFY(!runs(deleted.output));
    }
  }

  void nothingComesWhileASlotRunsAnEventLoop() {
    Run run(testChild(u"600*31 hang"_s));
    connect(run.child.get(), &ChildProcess::block, this, [&run] {
      if (run.blocks > 1) return;
      run.child->kill();
      QTest::qWait(500);  // longer than the time after which a killed run ends
      run.orderly = run.orderly && run.blocks == 1 && run.ends == 0;
    });
    QVERIFY(run.waitForEnd());
    QCOMPARE(run.output, QByteArray(600, '1'));
  }

  void closedOutputEndsTheRunAndNotTheChild() {
    Run run(testChild(u"number close ~3000"_s));
    QVERIFY(run.waitForEnd());
    run.child->kill();
    run.child.reset();
    QVERIFY(runs(run.output));
  }

  void fiftyRunsLeaveNothing() {
    const auto before = openHandles();
    for (int i = 0; i < 50; ++i) {
      Run run(testChild(u"61"_s));
      QVERIFY(run.waitForEnd());
    }
    // A library may keep one or two for later.
    QTRY_VERIFY2(openHandles() < before + 10, qPrintable(QString::number(openHandles() - before)));
  }
};

QTEST_GUILESS_MAIN(ChildProcessTest)
#include "child_process_test.moc"
