#include "platform/child_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/processes.h"
#include "platform/run.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ChildProcessTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { QTRY_VERIFY2(noChildren(), "a child was left running or not reaped"); }

  void output_data() {
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* name, const QString& arguments, const QByteArray& expected) {
      QTest::newRow(name) << arguments << expected;
    };
    row("nothing", u"write"_s, "");
    row("exactly one block", u"write 256*78"_s, QByteArray(256, 'x'));
    row("a character over the boundary", u"write 255*78 e4bda0"_s, QByteArray(255, 'x') + "\xe4\xbd\xa0");
    row("a line end over the boundary", u"write 255*780a"_s, QByteArray("x\r\n").repeated(255));
    row("a line end over two reads", u"write 610d ~50 0d ~50 0a620d"_s, "a\r\nb\r");
    row("any bytes", u"write 00ffc30a80"_s, QByteArray("\0\xff\xc3\r\n\x80", 6));
    row("much", u"write 2000000*61626364650a"_s, QByteArray("abcde\r\n").repeated(2'000'000));
    row("words", u"argv \"a b\" c\\\"d \"\" ä"_s, "a b\r\nc\"d\r\n\r\nä\r\n");
    row("both outputs in their order", u"write 30 2:31 32 2:33 34 2:35 36 2:370a"_s, "01234567\r\n");
    row("a grandchild has the last word", u"hold 300"_s, "early\r\nlate\r\n");
  }
  void output() {
    QFETCH(QString, arguments);
    QFETCH(QByteArray, expected);
    Run run(testChild(arguments));
    QVERIFY(run.waitForEnd());
    QVERIFY2(run.output == expected, run.output.left(300).constData());
  }

  void findsThePrograms() {
    QTemporaryDir folder;
    const QString name = QFileInfo(QStringLiteral(ORVANTA_TEST_CHILD)).fileName();
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), folder.filePath(name)));  // another program
    QVERIFY(QFile::copy(QStringLiteral(ORVANTA_TEST_CHILD), folder.filePath(u"on-path-"_s + name)));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", (folder.path() + QDir::listSeparator()).toUtf8() + path);
    Run beside(u"test-child argv beside"_s);
    Run onPath(u"on-path-test-child argv path"_s);
    qputenv("PATH", path);
    QVERIFY(beside.waitForEnd() && onPath.waitForEnd());
    QCOMPARE(beside.output + onPath.output, "beside\r\npath\r\n");
  }

  void refusesWhatCannotRun() {
    QTemporaryDir folder;
    QFile plain(folder.filePath(u"plain.txt"_s));
    QVERIFY(plain.open(QIODevice::WriteOnly));
    plain.close();
    const quint32 any = 0;
    const struct {
      QString line;
      quint32 error;
    } rows[] = {
        {u" "_s, startErrors.missing},
        {u"\"\" x"_s, any},
        {u"no-such-program-anywhere"_s, startErrors.missing},
        {folder.filePath(u"missing"_s), startErrors.missing},
        {folder.path(), any},
        {plain.fileName(), startErrors.noProgram},
        {testChild(u"argv "_s + QString(3'000'000, u'x')), any},
        {testChild(u"argv a"_s + QChar::Null), startErrors.withNul},
    };
    for (const auto& row : rows) {
      Run run(row.line);
      QVERIFY2(run.failure, qPrintable(row.line.left(100)));
      QVERIFY(run.failure->step == ChildProcess::StartFailure::Step::Process);
      QVERIFY(run.failure->error != 0);
      if (row.error != any) QCOMPARE(run.failure->error, row.error);
      QTest::qWait(5);
      QCOMPARE(run.blocks + run.ends, 0);
    }
  }

  void killEnds() {
    Run early(testChild(u"hang"_s));
    early.child->kill();
    QVERIFY(early.waitForEnd(5'000));
    for (const QString& behaviour : {u"hang"_s, u"flood"_s, u"hang child"_s, u"hang stranger"_s}) {
      Run run(testChild(behaviour));
      QVERIFY(run.waitForOutput());
      run.child->kill();
      run.child->kill();
      QVERIFY2(run.ends == 0, "finished came from inside kill()");
      QVERIFY2(run.waitForEnd(5'000), qPrintable(behaviour));
      if (behaviour == u"flood") continue;
      const bool spared = childrenCanLeave && behaviour.contains(u"stranger");
      QTRY_COMPARE(runs(run.output), spared);
      if (spared) end(run.output);
    }
    QTest::qWait(350);  // the time after which a run would be given up
    QCOMPARE(early.ends, 1);
  }

  void windowStaysAliveWhileAToolFloods() {
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(10);
    Run run(testChild(u"flood"_s));
    QTestEventLoop::instance().enterLoopMSecs(500);
    QVERIFY2(ticks >= 10 && run.blocks > 1'000, qPrintable(u"%1 ticks"_s.arg(ticks)));
    run.output.clear();
  }

  void slotsMayKillAndDelete() {
    Run killed(testChild(u"flood"_s));
    connect(killed.child.get(), &ChildProcess::block, killed.child.get(), &ChildProcess::kill);
    QVERIFY(killed.waitForEnd(5'000));

    for (const bool atTheEnd : {false, true}) {
      Run deleted(testChild(atTheEnd ? u"write 780a"_s : u"flood"_s));
      const QPointer<ChildProcess> child = deleted.child.get();
      const auto remove = [&deleted] { deleted.child.reset(); };
      if (atTheEnd) {
        connect(child, &ChildProcess::finished, this, remove);
      } else {
        connect(child, &ChildProcess::block, this, remove);
      }
      QTRY_VERIFY(!child);
    }
  }

  void slotMayRunAnEventLoop() {
    for (const bool kills : {false, true}) {
      Run run(testChild(kills ? u"write 600*610a ~20000"_s : u"write 600*610a ~30 600*620a"_s));
      QByteArray seen;
      connect(run.child.get(), &ChildProcess::block, this, [&](const QByteArray& bytes) {
        if (kills && seen.isEmpty()) run.child->kill();
        QTest::qWait(kills && seen.isEmpty() ? 400 : 1);  // beyond the time given to a killed run
        seen += bytes;
      });
      QVERIFY(run.waitForEnd());
      QVERIFY2(seen == run.output, "a block overtook the one before it");
      if (!kills) QCOMPARE(seen, QByteArray("a\r\n").repeated(600) + QByteArray("b\r\n").repeated(600));
    }
  }

  void closedOutputEndsTheRunAndNotTheChild() {
    Run run(testChild(u"close-output"_s));
    QVERIFY(run.waitForEnd());
    run.child->kill();
    run.child.reset();
    QVERIFY(runs(run.output));
    end(run.output);
  }

  void fiftyRunsLeaveNothing() {
    const auto before = openHandles();
    for (int i = 0; i < 50; ++i) {
      Run run(testChild(u"write 61"_s));
      QVERIFY(run.waitForEnd());
    }
    // A library may keep one or two for later.
    QTRY_VERIFY2(openHandles() < before + 10, qPrintable(QString::number(openHandles() - before)));
  }
};

QTEST_GUILESS_MAIN(ChildProcessTest)
#include "child_process_test.moc"
