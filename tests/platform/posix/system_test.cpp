#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QProcess>
#include <QTemporaryDir>
#include <array>
#include <cerrno>

#include "platform/file_moves.h"
#include "platform/run.h"
#include "platform/store_paths.h"
#include "platform/tool_place.h"
#include "platform/usb_devices.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// What only POSIX systems have: descriptors and signals, links, modes of files.
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
    // A shell would reset its signals. The C library reserves two of the higher signals.
    Run signalsFree(u"grep -cE \"Sig(Blk|Ign):.*0000000$\" /proc/self/status"_s);
    // Again as a program that was itself started with nothing open.
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

  void worksWhereProcessesCannotBeLookedAt() {
    if (QFileInfo::exists(u"/proc/self"_s)) {
      const QStringList hidden = {u"--dev-bind"_s, u"/"_s, u"/"_s, u"--tmpfs"_s, u"/proc"_s};
      const QStringList again = {QCoreApplication::applicationFilePath(),
                                 QString::fromLatin1(QTest::currentTestFunction())};
      QProcess inside;
      inside.setProcessChannelMode(QProcess::ForwardedChannels);
      // A sanitizer looks for leaks with the help of /proc.
      QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
      environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
      inside.setProcessEnvironment(environment);
      inside.start(u"bwrap"_s, hidden + again);
      QVERIFY(inside.waitForFinished() && inside.exitCode() == 0);
      return;
    }
    Run run(testChild(u"30 hang"_s));
    QVERIFY(run.waitForOutput());
    QVERIFY(!run.child->bytesRead());
    run.child->kill();
    QVERIFY(run.waitForEnd(5'000));
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
    // Tests for existence follow a link, and this one leads nowhere.
    QVERIFY(QFile::link(folder.filePath(u"nothing"_s), link));
    QVERIFY(!renameNoReplace(file, link));
    QVERIFY(QFileInfo(link).isSymLink() && QFileInfo::exists(file));
  }

  void theWasteBinIsTheUsers() {
    QTemporaryDir folder;
    const QString copy = folder.filePath(u"copy"_s);
    QVERIFY(QDir().mkpath(copy + u"/sub"_s));
    QDir::setCurrent(folder.path());
    qputenv("XDG_DATA_HOME", "/dev/null/x");
    QVERIFY(!moveToWasteBin(copy) && QFileInfo::exists(copy + u"/sub"_s));
    QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{u"copy"_s});
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"not made yet"_s)));
    QVERIFY(moveToWasteBin(copy) && !QFileInfo::exists(copy));
    QVERIFY(QFileInfo::exists(folder.filePath(u"not made yet/Trash/files/copy/sub"_s)));
  }

  void theIconFolderIsFreshAndPrivate() {
    QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.filePath(u"not made yet"_s)));
    const IconFolder other({});
    QString one;
    {
      const IconFolder folder({});
      one = folder.path();
      QVERIFY(one.startsWith(cache.path()) && one != other.path());
      QVERIFY(!(QFileInfo(one).permissions() & ~QFile::Permissions(0x7700)));
    }
    QVERIFY(!QFileInfo::exists(one) && QFileInfo::exists(other.path()));
    qputenv("XDG_CACHE_HOME", "/dev/null/x");
    QVERIFY(IconFolder({}).path().isEmpty());
  }

  void adbIsLinkedBesideTheProgram() {
    using Outcome = ToolPlacing::Outcome;
    const QTemporaryDir place;
    const auto at = [&place](const QString& name) { return place.filePath(name); };
    for (const QString& folder : {u"sdk/platform-tools"_s, u"plain"_s, u"own"_s}) QDir().mkpath(at(folder));
    for (const QString& file : {u"sdk/platform-tools/adb"_s, u"plain/adb"_s, u"own/adb"_s})
      QVERIFY(writeFile(at(file), file.toUtf8()));
    const auto placed = [&](const QString& folder) { return placeTool(at(folder), at(u"own"_s)).outcome; };
    QProcessEnvironment environment;
    const auto offered = [&] {
      QStringList places = placesOfTool(environment, at(u"home"_s), at(u"own"_s));
      places.removeIf(
          [&](const QString& path) { return !path.startsWith(place.path()); });  // this computer's
      return places.replaceInStrings(place.path() + u'/', QString());
    };
    QVERIFY(writeFile(at(u"home/Android/Sdk/platform-tools/adb"_s), "home"));
    QVERIFY(QDir().mkpath(at(u"bin"_s)) && QFile::link(at(u"sdk/platform-tools/adb"_s), at(u"bin/adb"_s)));
    environment.insert(u"PATH"_s,
                       u".:relative:"_s + at(u"own"_s) + u':' + at(u"bin"_s) + u':' + at(u"nowhere"_s));
    environment.insert(u"ANDROID_HOME"_s, at(u"plain"_s));
    environment.insert(u"ANDROID_SDK_ROOT"_s, at(u"sdk"_s));
    QCOMPARE(offered(), QStringList());  // none may be run
    QCOMPARE(placed(u"nowhere"_s), Outcome::NotThere);
    QCOMPARE(placed(u"plain"_s), Outcome::NotRunnable);
    for (const QString& file : {u"sdk/platform-tools/adb"_s, u"plain/adb"_s, u"own/adb"_s,
                                u"home/Android/Sdk/platform-tools/adb"_s})
      QFile::setPermissions(at(file), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(offered(),
             (QStringList{u"sdk/platform-tools"_s, u"plain"_s, u"home/Android/Sdk/platform-tools"_s}));
    QCOMPARE(placed(u"sdk"_s), Outcome::Placed);
    QCOMPARE(readFile(at(u"own/adb"_s)), QByteArray("sdk/platform-tools/adb"));
    QCOMPARE(readFile(at(u"own/adb.old"_s)), QByteArray("own/adb"));  // it was somebody's
    QCOMPARE(placed(u"plain"_s), Outcome::Placed);
    QCOMPARE(readFile(at(u"own/adb"_s)), QByteArray("plain/adb"));
    QCOMPARE(placed(u"own"_s), Outcome::Placed);  // no link to itself
    QCOMPARE(readFile(at(u"own/adb"_s)), QByteArray("plain/adb"));
    QCOMPARE(placeTool(at(u"plain"_s), at(u"it's not there"_s)).what,
             u"sudo ln -sf '"_s + at(u"plain/adb"_s) + u"' '"_s + at(u"it'\\''s not there/adb"_s) + u'\'');
  }

  void debuggableDevicesOfTheBus() {
    QTemporaryDir bus;
    const auto plugIn = [&bus](const QString& interface, const std::array<QByteArray, 3>& numbers) {
      const QString names[] = {u"Class"_s, u"SubClass"_s, u"Protocol"_s};
      for (size_t i = 0; i < numbers.size(); ++i)
        QVERIFY(
            writeFile(bus.filePath(u"hub/%1/bInterface%2"_s.arg(interface, names[i])), numbers[i] + '\n'));
      QVERIFY(QFile::link(bus.filePath(u"hub/"_s + interface), bus.filePath(interface)));
    };
    QVERIFY(!isDebuggablePluggedIn(bus.filePath(u"nowhere"_s)).has_value());
    QCOMPARE(isDebuggablePluggedIn(bus.path()), std::optional<bool>(false));
    plugIn(u"1-2:1.0"_s, {"08", "06", "50"});
    plugIn(u"1-3:1.0"_s, {"ff", "42", "03"});  // the boot loader's protocol
    plugIn(u"1-3:1.1"_s, {"ff", "42", ""});
    QCOMPARE(isDebuggablePluggedIn(bus.path()), std::optional<bool>(false));
    plugIn(u"1-4.2:1.5"_s, {"ff", "42", "01"});
    QCOMPARE(isDebuggablePluggedIn(bus.path()), std::optional<bool>(true));
  }
};

QTEST_GUILESS_MAIN(SystemTest)
#include "system_test.moc"
