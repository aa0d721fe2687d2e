#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <chrono>
#include <coroutine>

namespace orvanta {

/// Awaited: resumes the coroutine from the event loop after `duration`.
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

}  // namespace orvanta
