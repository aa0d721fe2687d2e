#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <array>

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
    const int stray = ::open("/dev/null", O_RDONLY);
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &mask, nullptr);
    ::signal(SIGPIPE, SIG_IGN);
    Run run(testChild(u"state"_s));
    // Once more as a program that was itself started with nothing open.
    std::array<int, 3> saved = {};
    for (int fd = 0; fd < 3; ++fd) saved[size_t(fd)] = ::fcntl(fd, F_DUPFD_CLOEXEC, 10);
    for (int fd = 0; fd < 3; ++fd) ::close(fd);
    Run bare(testChild(u"state"_s));
    for (int fd = 0; fd < 3; ++fd) {
      ::dup2(saved[size_t(fd)], fd);
      ::close(saved[size_t(fd)]);
    }
    ::signal(SIGPIPE, SIG_DFL);
    ::pthread_sigmask(SIG_UNBLOCK, &mask, nullptr);
    ::close(stray);
    QVERIFY(run.waitForEnd() && bare.waitForEnd());
    QCOMPARE(run.output, "input 0\r\ndescriptors 0 1 2\r\nblocked 0\r\nignored 0\r\n");
    QCOMPARE(bare.output, run.output);
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
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(one).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, 0700U);
    QVERIFY(other.startsWith(cache.path()) && one != other);
    leaveIconFolder(one);
    QVERIFY(!QFileInfo::exists(one) && QFileInfo::exists(other));
    qputenv("XDG_CACHE_HOME", "/dev/null/x");
    QVERIFY(makeIconFolder().isEmpty());
  }
};

QTEST_GUILESS_MAIN(SystemTest)
#include "system_test.moc"
