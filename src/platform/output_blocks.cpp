#include "platform/output_blocks.h"

#include <QPointer>
#include <QTimer>
#include <chrono>

namespace orvanta {

namespace {
constexpr qsizetype kBlockSize = 256;
constexpr std::chrono::milliseconds kGraceAfterKill{300};
}  // namespace

bool OutputBlocks::receive(QByteArrayView bytes) {
  m_lineEnds.feed(bytes, m_waiting);
  return emitBlocks();
}

void OutputBlocks::endOfPipe() {
  if (m_ended) return;
  m_ended = true;
  release();
  m_lineEnds.flush(m_waiting);
  emitBlocks();
}

void OutputBlocks::endSoon() {
  QTimer::singleShot(kGraceAfterKill, this, &OutputBlocks::endOfPipe);
}

bool OutputBlocks::emitBlocks() {
  if (m_emitting) return false;  // the outer call continues when its slot returns
  m_emitting = true;
  const QPointer<OutputBlocks> alive(this);
  while (m_emitted < m_waiting.size()) {
    const QByteArray bytes = m_waiting.mid(m_emitted, kBlockSize);
    m_emitted += bytes.size();
    Q_EMIT block(bytes);
    if (!alive) return false;
  }
  m_waiting.truncate(0);
  m_emitted = 0;
  m_emitting = false;
  if (!m_ended) return true;
  if (!m_finishing) {
    m_finishing = true;
    Q_EMIT finished();
  }
  return false;
}

}  // namespace orvanta
