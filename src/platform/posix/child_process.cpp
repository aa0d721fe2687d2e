#include "platform/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/command_line.h"
#include "platform/output_blocks.h"

namespace orvanta {

namespace {

// One read a turn of the event loop: what a pipe holds at most, and little enough for the window to stay
// alive.
constexpr size_t kReadSize = 64 * 1024;
constexpr int kFirstFreeDescriptor = 3;

class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : m_fd(fd) {}
  Descriptor(Descriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(m_fd, other.m_fd);
    return *this;
  }
  ~Descriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }

  bool isOpen() const { return m_fd >= 0; }
  int get() const { return m_fd; }

 private:
  int m_fd;
};

struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

/// An own descriptor that is none of the standard three. A program that was started with those closed gets
/// them from the next call that opens something, and the child's own would then be laid over it.
Descriptor aboveStandard(Descriptor descriptor) {
  if (descriptor.get() >= kFirstFreeDescriptor) return descriptor;
  return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
}

/// Both ends closed on exec, the read end without blocking. 0 or the error number.
int openPipe(Pipe& pipe) {
  std::array<int, 2> ends = {};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return errno;
  Descriptor low[] = {Descriptor(ends[0]), Descriptor(ends[1])};
  // One statement each: while one is moved, the other keeps its place taken.
  pipe.readEnd = aboveStandard(std::move(low[0]));
  if (!pipe.readEnd.isOpen()) return errno;
  pipe.writeEnd = aboveStandard(std::move(low[1]));
  if (!pipe.writeEnd.isOpen()) return errno;
  return ::fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK) == 0 ? 0 : errno;
}

/// What a new child gets and does not get: the pipe for its output, no input, no other descriptor, a process
/// group of its own, and signals as at log-in whatever this program has blocked or ignored.
class SpawnPlan {
 public:
  explicit SpawnPlan(int output) {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    const std::initializer_list<int> results = {
      posix_spawn_file_actions_init(&m_actions),
      posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
      posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO),
      posix_spawn_file_actions_adddup2(&m_actions, output, STDERR_FILENO),
#if defined(__GLIBC__)
#if __GLIBC_PREREQ(2, 34)
      // A library of the desktop may have opened a file without asking for close on exec.
      posix_spawn_file_actions_addclosefrom_np(&m_actions, kFirstFreeDescriptor),
#endif
#endif
      posix_spawnattr_init(&m_attributes),
      posix_spawnattr_setpgroup(&m_attributes, 0),
      posix_spawnattr_setsigmask(&m_attributes, &none),
      posix_spawnattr_setsigdefault(&m_attributes, &all),
      posix_spawnattr_setflags(&m_attributes,
                               POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF),
    };
    m_error = std::max(results);
  }
  ~SpawnPlan() {
    posix_spawnattr_destroy(&m_attributes);
    posix_spawn_file_actions_destroy(&m_actions);
  }
  Q_DISABLE_COPY_MOVE(SpawnPlan)

  /// 0 or the error number; `process` is the new child.
  int run(const QString& program, const QStringList& words, pid_t& process) const {
    if (m_error != 0) return m_error;
    std::vector<QByteArray> texts;
    texts.reserve(static_cast<size_t>(words.size()));
    for (const QString& word : words) texts.push_back(word.toUtf8());
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (QByteArray& text : texts) arguments.push_back(text.data());
    arguments.push_back(nullptr);
    return ::posix_spawn(&process, program.toUtf8().constData(), &m_actions, &m_attributes, arguments.data(),
                         environ);
  }

 private:
  posix_spawn_file_actions_t m_actions;
  posix_spawnattr_t m_attributes;
  int m_error = 0;
};

/// The file that a command line's first word stands for; empty when there is none.
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
    // No thread to be had: the entry of an ended process stays until this program ends, which hurts nobody.
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

 protected:
  void release() override;

 private:
  void readSome();
  /// The child is reaped only at the end of the run, so that nobody else can have got its number meanwhile.
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
  // The operating system would take a line up to the NUL only, which is another line than the one asked for.
  if (commandLine.contains(QChar::Null)) return failure(StartFailure::Step::Process, EINVAL);
  const QStringList words = splitCommandLine(commandLine);
  const QString program = words.isEmpty() ? QString() : programFile(words.first());
  if (program.isEmpty()) return failure(StartFailure::Step::Process, ENOENT);

  Pipe pipe;
  if (const int error = openPipe(pipe)) return failure(StartFailure::Step::Pipe, error);
  pid_t process = 0;
  if (const int error = SpawnPlan(pipe.writeEnd.get()).run(program, words, process)) {
    return failure(StartFailure::Step::Process, error);
  }
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
    m_readable->setEnabled(false);  // a slot that runs an event loop of its own shall not pile up output
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
