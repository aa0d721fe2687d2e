#include "platform/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/prctl.h>
#endif

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/command_line.h"
#include "platform/output_blocks.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/socket_queues.h"

namespace orvanta {

namespace {

// One read a turn of the event loop: what a pipe holds at most, and little enough for the window to stay
// alive.
constexpr size_t kReadSize = 64 * 1024;
constexpr int kFirstFreeDescriptor = 3;

struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

/// A descriptor above the standard three. In a program that was started with those closed, the next open
/// would get one of them, and dup2 in the child would overwrite it.
Descriptor aboveStandard(Descriptor descriptor) {
  if (descriptor.get() >= kFirstFreeDescriptor) return descriptor;
  return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
}

/// Both ends closed on exec. 0 or the error number.
int openPipe(Pipe& pipe) {
  std::array<int, 2> ends = {};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return errno;
  Descriptor low[] = {Descriptor(ends[0]), Descriptor(ends[1])};
  // Separate statements: while one is moved, the other keeps its number taken.
  pipe.readEnd = aboveStandard(std::move(low[0]));
  if (!pipe.readEnd.isOpen()) return errno;
  pipe.writeEnd = aboveStandard(std::move(low[1]));
  return pipe.writeEnd.isOpen() ? 0 : errno;
}

/// What a new child needs, prepared before the fork: between fork and exec nothing may be allocated.
class SpawnPlan {
 public:
  SpawnPlan(const QString& program, const QStringList& words) : m_program(program.toUtf8()) {
    m_texts.reserve(static_cast<size_t>(words.size()));
    for (const QString& word : words) m_texts.push_back(word.toUtf8());
    for (QByteArray& text : m_texts) m_arguments.push_back(text.data());
    m_arguments.push_back(nullptr);
  }

  /// Starts the child with its output into `output`. 0 or the error number; `process` is the new child.
  int run(int output, pid_t& process) const {
    Pipe failure;
    if (const int error = openPipe(failure)) return error;
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    // A signal must not run this program's handlers in the child.
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t parent = ::getpid();
    process = ::fork();
    if (process == 0) become(parent, output, failure.writeEnd.get());
    int error = process < 0 ? errno : 0;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (error != 0) return error;
    failure.writeEnd = Descriptor();
    ssize_t count = 0;
    do {
      count = ::read(failure.readEnd.get(), &error, sizeof error);
    } while (count < 0 && errno == EINTR);
    if (count <= 0) return 0;  // exec has closed the other end
    ::waitpid(process, nullptr, 0);
    return error;
  }

 private:
  /// In the child: the pipe for its output, no input, no other descriptor, a process group of its own, and
  /// signals as at log-in whatever this program has blocked or ignored.
  [[noreturn]] void become(pid_t parent, int output, int failure) const {
    ::setpgid(0, 0);
#if defined(__linux__)
    // A tool that outlived the program would write where the next start sets things right.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    if (::getppid() != parent) ::_exit(EXIT_FAILURE);
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    if (failure != kFirstFreeDescriptor) ::dup3(failure, kFirstFreeDescriptor, O_CLOEXEC);
#if defined(__GLIBC__)
#if __GLIBC_PREREQ(2, 34)
    // A library of the desktop may have opened a file without asking for close on exec.
    ::closefrom(kFirstFreeDescriptor + 1);
#endif
#endif
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    for (int number = 1; number < NSIG; ++number) ::sigaction(number, &action, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &action.sa_mask, nullptr);
    ::execve(m_program.constData(), m_arguments.data(), environ);
    const int error = errno;
    [[maybe_unused]] const ssize_t written = ::write(kFirstFreeDescriptor, &error, sizeof error);
    ::_exit(EXIT_FAILURE);
  }

  QByteArray m_program;
  std::vector<QByteArray> m_texts;
  std::vector<char*> m_arguments;
};

/// The file that a command line's first word means; empty if there is no such file.
QString programFile(const QString& name) {
  if (name.contains(u'/')) return name;
  const QString own = QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
  return own.isEmpty() ? QStandardPaths::findExecutable(name) : own;
}

/// Takes the exit status of a child that may end only later, without waiting for it here.
void reap(pid_t process) {
  const auto wait = [process](int flags) {
    pid_t result = 0;
    do {
      result = ::waitpid(process, nullptr, flags);
    } while (result < 0 && errno == EINTR);
    return result;
  };
  if (wait(WNOHANG) != 0) return;
  try {
    std::thread(wait, 0).detach();
  } catch (const std::system_error&) {
    // No thread available: the zombie stays until this program ends, which does no harm.
  }
}

class PosixChildProcess final : public OutputBlocks {
 public:
  ~PosixChildProcess() override {
    if (m_process == 0) return;
    killGroup();
    PosixChildProcess::release();
  }

  std::optional<StartFailure> start(const QString& commandLine) override;
  void kill() override;
  std::optional<qint64> bytesRead() const override;

 protected:
  void release() override;

 private:
  void readSome();
  /// The child is reaped only at the end of the run, so that its number is not reused before.
  void killGroup() { ::kill(-m_process, SIGKILL); }

  Descriptor m_pipe;
  std::unique_ptr<QSocketNotifier> m_readable;
  pid_t m_process = 0;  // and its group; 0 when no run is on
  bool m_used = false;
  bool m_killed = false;
};

std::optional<ChildProcess::StartFailure> PosixChildProcess::start(const QString& commandLine) {
  const auto failure = [](StartFailure::Step step, int error) {
    return StartFailure{step, static_cast<quint32>(error)};
  };
  if (std::exchange(m_used, true)) return failure(StartFailure::Step::Process, EALREADY);
  // The operating system would cut the line at the NUL and run another command.
  if (commandLine.contains(QChar::Null)) return failure(StartFailure::Step::Process, EINVAL);
  const QStringList words = splitCommandLine(commandLine);
  const QString program = words.isEmpty() ? QString() : programFile(words.first());
  if (program.isEmpty()) return failure(StartFailure::Step::Process, ENOENT);

  Pipe pipe;
  if (const int error = openPipe(pipe)) return failure(StartFailure::Step::Pipe, error);
  pid_t process = 0;
  if (const int error = SpawnPlan(program, words).run(pipe.writeEnd.get(), process)) {
    return failure(StartFailure::Step::Process, error);
  }
  ::fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK);
  m_process = process;
  m_pipe = std::move(pipe.readEnd);
  m_readable = std::make_unique<QSocketNotifier>(m_pipe.get(), QSocketNotifier::Read);
  connect(m_readable.get(), &QSocketNotifier::activated, this, &PosixChildProcess::readSome);
  return std::nullopt;
}

void PosixChildProcess::readSome() {
  std::array<char, kReadSize> buffer;
  const ssize_t count = ::read(m_pipe.get(), buffer.data(), buffer.size());
  if (count > 0) {
    m_readable->setEnabled(false);  // a slot that runs an event loop must not pile up output
    if (receive(QByteArrayView(buffer.data(), count))) m_readable->setEnabled(true);
  } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
    endOfPipe();
  }
}

void PosixChildProcess::kill() {
  if (m_process == 0 || std::exchange(m_killed, true)) return;
  killGroup();
  endSoon();
}

std::optional<qint64> PosixChildProcess::bytesRead() const {
  static const QByteArray key = "rchar: ";
  QFile counters(QStringLiteral("/proc/%1/io").arg(m_process));
  if (m_process == 0 || !counters.open(QIODevice::ReadOnly)) return std::nullopt;
  const QByteArray line = counters.readLine();
  bool isNumber = false;
  const qint64 read = line.mid(key.size()).trimmed().toLongLong(&isNumber);
  if (!line.startsWith(key) || !isNumber) return std::nullopt;
  return qMax<qint64>(read - bytesOnTheWay(m_process), 0);
}

void PosixChildProcess::release() {
  m_readable->setEnabled(false);
  m_pipe = Descriptor();
  reap(std::exchange(m_process, 0));
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::create() {
  return std::make_unique<PosixChildProcess>();
}

}  // namespace orvanta
