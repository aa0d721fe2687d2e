#include "install/send_progress.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include "core/dosoutputs.h"
#include "core/turn.h"

namespace orvanta {

namespace {

constexpr std::chrono::milliseconds interval{100};
// What the tool reads for itself when it starts: too little to be taken off. While it has read no more,
// nothing is known of the file; a tool that leaves the sending to another process never gets beyond it.
constexpr qint64 ownReading = 16 * 1024;

}  // namespace

SendProgress::SendProgress(Turn& turn, const DOSOutputs& runner, qint64 allBytes)
    : m_turn(turn), m_runner(runner), m_allBytes(allBytes) {
  connect(&m_interval, &QTimer::timeout, this, &SendProgress::look);
  if (allBytes > 0) m_interval.start(interval);
}

SendProgress::~SendProgress() {
  m_turn.noteProgressOver();
}

void SendProgress::endFile() {
  m_throughBytes += m_fileBytes;
  m_fileBytes = 0;
}

void SendProgress::look() {
  if (m_fileBytes == 0) return;
  const std::optional<qint64> read = m_runner.bytesRead();
  if (!read || *read <= ownReading) return;
  m_turn.noteProgress(m_throughBytes + std::min(*read, m_fileBytes), m_allBytes);
}

}  // namespace orvanta
