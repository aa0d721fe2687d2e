#include "core/pause.h"

#include <chrono>
#include <cmath>

#include "platform/awaited.h"

namespace orvanta {

QCoro::Task<> Pause(double seconds) {
  const Delay delay(std::chrono::milliseconds(std::lround(seconds * 1000)));
  co_await delay;
}

}  // namespace orvanta
