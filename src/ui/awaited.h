#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <chrono>
#include <coroutine>

/// What a coroutine awaits besides other coroutines. It is resumed from the event loop, once.
namespace orvanta {

/// Awaited: resumes the coroutine after `duration`.
class Delay {
 public:
  explicit Delay(std::chrono::milliseconds duration) : m_duration(duration) {}

  bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> waiting) const {
    QTimer::singleShot(m_duration, Qt::PreciseTimer, QCoreApplication::instance(),
                       [waiting] { waiting.resume(); });
  }
  void await_resume() const noexcept {}

 private:
  std::chrono::milliseconds m_duration;
};

/// Awaited: resumes the coroutine after the next `signal` of `sender`, by then with the sender's own handlers
/// done. A second emission before that changes nothing. If the sender goes without it, the coroutine is never
/// resumed.
template <class Sender, class Signal>
class Emitted {
 public:
  Emitted(Sender* sender, Signal signal) : m_sender(sender), m_signal(signal) {}

  bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> waiting) const {
    constexpr auto onceAndQueued =
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection);
    QObject::connect(
        m_sender, m_signal, QCoreApplication::instance(), [waiting] { waiting.resume(); }, onceAndQueued);
  }
  void await_resume() const noexcept {}

 private:
  Sender* m_sender;
  Signal m_signal;
};

}  // namespace orvanta
