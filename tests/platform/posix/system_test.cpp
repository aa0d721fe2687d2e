#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <array>
#include <cerrno>

#include "platform/file_moves.h"
#include "platform/run.h"
#include "platform/store_paths.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// What only systems of this kind have: descriptors and signals, links, modes of files.
class SystemTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aChildGetsNothingOfOurOwn() {
    const QString state = u"sh -c \"wc -c; ls /proc/$$/fd\""_s;
    const int stray = ::open("/dev/null", O_RDONLY);
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &mask, nullptr);
    ::signal(SIGPIPE, SIG_IGN);
    Run run(state);
    // A shell would clear what it is given. The C library keeps two of the higher signals to itself.
    Run signalsFree(u"grep -cE \"Sig(Blk|Ign):.*0000000$\" /proc/self/status"_s);
    // Once more as a program that was itself started with nothing open.
    std::array<int, 3> saved = {};
    for (int fd = 0; fd < 3; ++fd) saved[size_t(fd)] = ::fcntl(fd, F_DUPFD_CLOEXEC, 10);
    for (int fd = 0; fd < 3; ++fd) ::close(fd);
    Run bare(state);
    for (int fd = 0; fd < 3; ++fd) {
      ::dup2(saved[size_t(fd)], fd);
      ::close(saved[size_t(fd)]);
    }
    ::signal(SIGPIPE, SIG_DFL);
    ::pthread_sigmask(SIG_UNBLOCK, &mask, nullptr);
    ::close(stray);
    QVERIFY(run.waitForEnd() && signalsFree.waitForEnd() && bare.waitForEnd());
    QCOMPARE(run.output, "0\r\n0\r\n1\r\n2\r\n");
    QCOMPARE(signalsFree.output, "2\r\n");
    QCOMPARE(bare.output, run.output);
  }

  void aKilledRunDoesNotWaitForAStranger() {
    Run run(testChild(u"stranger number hang"_s));
    QVERIFY(run.waitForOutput());
    run.child->kill();
    QVERIFY(run.waitForEnd(5'000));
    QVERIFY(runs(run.output));
    ::kill(run.output.trimmed().toInt(), SIGKILL);
  }

  void everyChildIsReaped() {
    for (const QString& steps : {u"61"_s, u"close ~200"_s}) {
      Run run(testChild(steps));
      QVERIFY(run.waitForEnd());
      const auto noChildren = [] {
        siginfo_t info = {};
        return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
      };
      QTRY_VERIFY(noChildren());
    }
  }

  void aRenameDoesNotReplaceALink() {
    QTemporaryDir folder;
    const QString file = folder.filePath(u"file"_s);
    const QString link = folder.filePath(u"link"_s);
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    // Tests for existence follow a link and find nothing behind this one.
    QVERIFY(QFile::link(folder.filePath(u"nothing"_s), link));
    QVERIFY(!renameNoReplace(file, link));
    QVERIFY(QFileInfo(link).isSymLink() && QFileInfo::exists(file));
  }

  void theIconFolderIsFreshAndPrivate() {
    QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.filePath(u"not made yet"_s)));
    const QString one = makeIconFolder();
    const QString other = makeIconFolder();
    QVERIFY(one.startsWith(cache.path()) && one != other);
    QVERIFY(!(QFileInfo(one).permissions() & ~QFile::Permissions(0x7700)));
    leaveIconFolder(one);
    QVERIFY(!QFileInfo::exists(one) && QFileInfo::exists(other));
    qputenv("XDG_CACHE_HOME", "/dev/null/x");
    QVERIFY(makeIconFolder().isEmpty());
  }
};

QTEST_GUILESS_MAIN(SystemTest)
#include "system_test.moc"
