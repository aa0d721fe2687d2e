#pragma once

#include <QCoreApplication>
#include <QThread>
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

/// Awaited: resumes the coroutine after the next `signal` of `sender`, once the sender's own handlers have
/// run, or after the sender is destroyed. A second emission before that changes nothing.
///
/// The awaited value is true after the signal, false if the sender was deleted without it. After false the
/// coroutine must not touch the sender or anything that is deleted with it, such as the object that the
/// sender is a member of.
template <class Sender, class Signal>
class Emitted {
 public:
  Emitted(Sender* sender, Signal signal) : m_sender(sender), m_signal(signal) {}

  bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> waiting) {
    // Destroying it removes both connections, and a queued call of the other one.
    auto* const context = new QObject(QCoreApplication::instance());
    const auto resume = [this, waiting, context](bool emitted) {
      m_emitted = emitted;
      delete context;
      waiting.resume();
    };
    QObject::connect(
        m_sender, m_signal, context, [resume] { resume(true); }, Qt::QueuedConnection);
    QObject::connect(
        m_sender, &QObject::destroyed, context, [resume] { resume(false); }, Qt::QueuedConnection);
  }
  bool await_resume() const noexcept { return m_emitted; }

 private:
  Sender* m_sender;
  Signal m_signal;
  bool m_emitted = false;
};

/// Awaited: resumes the coroutine when `thread`, which has been started, is done with its work.
class Ended {
 public:
  explicit Ended(const QThread* thread) : m_thread(thread) {}

  bool await_ready() const { return m_thread->isFinished(); }
  void await_suspend(std::coroutine_handle<> waiting) const {
    auto* const context = new QObject(QCoreApplication::instance());
    const auto resume = [waiting, context] {
      delete context;
      waiting.resume();
    };
    QObject::connect(m_thread, &QThread::finished, context, resume, Qt::QueuedConnection);
    // It can have ended before the connection. With the context the second of two calls goes as well.
    if (m_thread->isFinished()) QMetaObject::invokeMethod(context, resume, Qt::QueuedConnection);
  }
  void await_resume() const noexcept {}

 private:
  const QThread* m_thread;
};

}  // namespace orvanta
