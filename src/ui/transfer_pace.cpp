#include "ui/transfer_pace.h"

namespace orvanta {

namespace {

// Long enough for the figure to stand still, short enough to follow a cable that was changed.
constexpr qint64 lookBackMilliseconds = 8000;
constexpr qint64 leastMilliseconds = 1000;

}  // namespace

int percentOf(qint64 doneBytes, qint64 allBytes) {
  constexpr qint64 whole = 100;
  return static_cast<int>(qMin(doneBytes * whole / allBytes, whole));
}

void TransferPace::note(qint64 milliseconds, qint64 doneBytes, qint64 allBytes) {
  // Fewer bytes than before are another transfer.
  if (!m_samples.empty() && doneBytes < m_samples.back().bytes) m_samples.clear();
  m_samples.push_back({milliseconds, doneBytes});
  while (m_samples.size() > 2 && milliseconds - m_samples[1].milliseconds >= lookBackMilliseconds)
    m_samples.pop_front();
  m_left = qMax<qint64>(allBytes - doneBytes, 0);
}

std::optional<qint64> TransferPace::speed() const {
  if (m_samples.size() < 2) return std::nullopt;
  const qint64 time = m_samples.back().milliseconds - m_samples.front().milliseconds;
  const qint64 bytes = m_samples.back().bytes - m_samples.front().bytes;
  if (time < leastMilliseconds || bytes <= 0) return std::nullopt;
  return qMax<qint64>(bytes * 1000 / time, 1);
}

std::optional<qint64> TransferPace::secondsLeft() const {
  const auto perSecond = speed();
  if (!perSecond) return std::nullopt;
  return (m_left + *perSecond - 1) / *perSecond;
}

}  // namespace orvanta
