#include "child.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <vector>

namespace orvanta::headset {

namespace {

// A megabyte instead of the usual 64 KiB: fewer context switches for a package of 300 MiB.
constexpr int kPipeSize = 1024 * 1024;
constexpr int kSignalBase = 128;

bool makePipe(UniqueFd& readEnd, UniqueFd& writeEnd) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  readEnd = UniqueFd(ends[0]);
  writeEnd = UniqueFd(ends[1]);
  ::fcntl(ends[0], F_SETPIPE_SZ, kPipeSize);
  return true;
}

void makeNonBlocking(const UniqueFd& fd) {
  ::fcntl(fd.get(), F_SETFL, O_NONBLOCK);
}

}  // namespace

Child::~Child() {
  m_exitNotifier.reset();
  if (m_pid > 0 && !m_exited) {
    ::kill(-m_pid, SIGKILL);
    ::waitpid(m_pid, nullptr, 0);
  }
}

bool Child::start(const QByteArrayList& command, Streams streams) {
  UniqueFd in;
  UniqueFd out;
  UniqueFd err;
  if (streams == Streams::Terminal) {
    int master = -1;
    int slave = -1;
    if (::openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) return false;
    ::fcntl(master, F_SETFD, FD_CLOEXEC);
    m_isTerminal = true;
    in = UniqueFd(slave);
    m_outputs[Output] = UniqueFd(master);
    m_input = UniqueFd(::fcntl(master, F_DUPFD_CLOEXEC, 0));
  } else {
    if (!makePipe(in, m_input) || !makePipe(m_outputs[Output], out)) return false;
    if (streams == Streams::Separate && !makePipe(m_outputs[Error], err)) return false;
  }

  std::vector<char*> arguments;
  QByteArrayList copies = command;
  for (QByteArray& argument : copies) arguments.push_back(argument.data());
  arguments.push_back(nullptr);

  m_pid = ::fork();
  if (m_pid < 0) return false;
  if (m_pid == 0) {
    // Only plain system calls between fork and exec: other threads may hold locks.
    ::setsid();
    ::signal(SIGPIPE, SIG_DFL);
    const int outFd = m_isTerminal ? in.get() : out.get();
    const int errFd = err.isOpen() ? err.get() : outFd;
    if (m_isTerminal) ::ioctl(in.get(), TIOCSCTTY, 0);
    ::dup2(in.get(), STDIN_FILENO);
    ::dup2(outFd, STDOUT_FILENO);
    ::dup2(errFd, STDERR_FILENO);
    ::execv(arguments.front(), arguments.data());
    ::_exit(127);
  }
  m_pidFd = UniqueFd(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
  watch();
  return true;
}

void Child::watch() {
  makeNonBlocking(m_input);
  for (const Channel channel : {Output, Error}) {
    if (!m_outputs[channel].isOpen()) continue;
    makeNonBlocking(m_outputs[channel]);
    m_readNotifiers[channel] =
        std::make_unique<QSocketNotifier>(m_outputs[channel].get(), QSocketNotifier::Read);
    m_readNotifiers[channel]->setEnabled(false);
    connect(m_readNotifiers[channel].get(), &QSocketNotifier::activated, this, &Child::readable);
  }
  m_writeNotifier = std::make_unique<QSocketNotifier>(m_input.get(), QSocketNotifier::Write);
  m_writeNotifier->setEnabled(false);
  connect(m_writeNotifier.get(), &QSocketNotifier::activated, this, [this] {
    m_writeNotifier->setEnabled(false);
    Q_EMIT inputRoom();
  });
  m_exitNotifier = std::make_unique<QSocketNotifier>(m_pidFd.get(), QSocketNotifier::Read);
  connect(m_exitNotifier.get(), &QSocketNotifier::activated, this, &Child::reap);
}

void Child::wantOutput(bool wanted) {
  for (const auto& notifier : m_readNotifiers) {
    if (notifier != nullptr) notifier->setEnabled(wanted);
  }
}

QByteArray Child::take(Channel channel, qsizetype limit) {
  if (!m_outputs[channel].isOpen()) return {};
  QByteArray block(limit, Qt::Uninitialized);
  const ssize_t got = ::read(m_outputs[channel].get(), block.data(), static_cast<size_t>(limit));
  if (got > 0) {
    block.truncate(got);
    return block;
  }
  // A terminal ends with EIO: its other side is closed.
  if (got == 0 || (errno != EAGAIN && errno != EINTR)) endChannel(channel);
  return {};
}

void Child::endChannel(Channel channel) {
  // May be called from inside the notifier's own signal.
  m_readNotifiers[channel]->setEnabled(false);
  m_readNotifiers[channel].release()->deleteLater();
  m_outputs[channel].reset();
  if (isDone()) QMetaObject::invokeMethod(this, &Child::done, Qt::QueuedConnection);
}

void Child::give(QByteArray& input) {
  while (!input.isEmpty()) {
    const ssize_t written = m_input.isOpen() ? ::write(m_input.get(), input.constData(), input.size()) : -1;
    if (written < 0 && m_input.isOpen() && (errno == EAGAIN || errno == EINTR)) {
      m_writeNotifier->setEnabled(true);
      return;
    }
    // The reader is gone: drop the rest, as a shell does.
    if (written < 0) return input.clear();
    input.remove(0, written);
  }
}

void Child::closeInput() {
  if (m_writeNotifier != nullptr) {
    m_writeNotifier->setEnabled(false);
    m_writeNotifier.release()->deleteLater();
  }
  m_input.reset();
}

void Child::setWindowSize(unsigned short rows, unsigned short columns) {
  const winsize size{rows, columns, 0, 0};
  if (m_isTerminal && m_input.isOpen()) ::ioctl(m_input.get(), TIOCSWINSZ, &size);
}

void Child::reap() {
  int status = 0;
  if (::waitpid(m_pid, &status, WNOHANG) != m_pid) return;
  m_exitNotifier->setEnabled(false);
  m_exited = true;
  m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
  closeInput();
  if (isDone()) Q_EMIT done();
}

}  // namespace orvanta::headset
