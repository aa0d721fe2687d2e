#include "platform/end_requests.h"

#include <fcntl.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <cerrno>

namespace orvanta {

namespace {

// All that the handler touches. The other end of the pipe wakes the event loop.
std::atomic<int> wakeEnd = -1;
std::atomic<qint64> firstAsked = -1;
static_assert(std::atomic<qint64>::is_always_lock_free);

qint64 milliseconds() {
  timespec now = {};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

extern "C" void endSignal(int number) {
  // Closing a terminal sends the signal twice: by the kernel and by the shell.
  constexpr qint64 sameRequest = 300;
  const int error = errno;
  const qint64 now = milliseconds();
  if (firstAsked < 0) {
    firstAsked = now;
    const char byte = 0;
    // There is room for one byte.
    [[maybe_unused]] const ssize_t written = ::write(wakeEnd, &byte, 1);
  } else if (now - firstAsked > sameRequest) {
    ::signal(number, SIG_DFL);
    ::raise(number);
  }
  errno = error;
}

class PosixEndRequests final : public EndRequests {
 public:
  PosixEndRequests() {
    if (::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    wakeEnd = m_pipe[1];
    m_awake = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_awake.get(), &QSocketNotifier::activated, this, [this] {
      m_awake->setEnabled(false);
      Q_EMIT asked();
    });
    for (const int number : endSignals) {
      struct sigaction action {};
      ::sigaction(number, nullptr, &action);
      if (action.sa_handler == SIG_IGN) continue;
      action = {};
      action.sa_handler = endSignal;
      action.sa_flags = SA_RESTART;
      ::sigaction(number, &action, nullptr);
    }
  }
  ~PosixEndRequests() override {
    for (const int number : endSignals) {
      struct sigaction action {};
      ::sigaction(number, nullptr, &action);
      if (action.sa_handler == endSignal) ::signal(number, SIG_DFL);
    }
    m_awake.reset();
    for (const int end : m_pipe) {
      if (end >= 0) ::close(end);
    }
  }

 private:
  static constexpr std::array<int, 3> endSignals = {SIGTERM, SIGHUP, SIGINT};

  std::array<int, 2> m_pipe = {-1, -1};
  std::unique_ptr<QSocketNotifier> m_awake;
};

}  // namespace

std::unique_ptr<EndRequests> EndRequests::create() {
  return std::make_unique<PosixEndRequests>();
}

}  // namespace orvanta
