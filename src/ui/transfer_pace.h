#pragma once

#include <QtGlobal>
#include <deque>
#include <optional>

namespace orvanta {

/// Of `allBytes`, which are some, the percentage that `doneBytes` are: 100 only at the very end.
int percentOf(qint64 doneBytes, qint64 allBytes);

/// How fast a transfer goes of late, and how long the rest takes if it goes on so.
class TransferPace {
 public:
  /// At `milliseconds` on any clock that goes on, `doneBytes` of `allBytes` are through.
  void note(qint64 milliseconds, qint64 doneBytes, qint64 allBytes);
  void clear() { m_samples.clear(); }

  /// Bytes a second; nothing before a second's worth is known, or where nothing moves.
  std::optional<qint64> speed() const;
  std::optional<qint64> secondsLeft() const;

 private:
  struct Sample {
    qint64 milliseconds;
    qint64 bytes;
  };

  std::deque<Sample> m_samples;
  qint64 m_left = 0;
};

}  // namespace orvanta
