#include "operations/transfer_progress.h"

#include <QElapsedTimer>
#include <algorithm>

#include "adb/replies.h"
#include "core/turn.h"
#include "operations/local_copy.h"

namespace orvanta {

namespace {

constexpr qint64 pullInterval = 200;   // milliseconds
constexpr qint64 pushInterval = 2000;  // milliseconds
// Counting a folder of very many files takes long; most of the time is left to the window.
constexpr qint64 restPerWork = 20;

}  // namespace

PullProgress::PullProgress(Turn& turn, QString localPath, qint64 allBytes)
    : m_turn(turn), m_localPath(std::move(localPath)), m_allBytes(allBytes) {
  if (m_allBytes <= 0) return;
  m_next.setSingleShot(true);
  connect(&m_next, &QTimer::timeout, this, &PullProgress::look);
  m_next.start(static_cast<int>(pullInterval));
}

PullProgress::~PullProgress() {
  m_turn.noteProgressOver();
}

void PullProgress::look() {
  QElapsedTimer work;
  work.start();
  m_turn.noteProgress(std::min(localSizes(m_localPath).bytes, m_allBytes), m_allBytes);
  m_next.start(static_cast<int>(std::max(pullInterval, work.elapsed() * restPerWork)));
}

PushProgress::PushProgress(Turn& turn, QString sizesLine, qint64 allBytes)
    : m_turn(turn), m_sizesLine(std::move(sizesLine)), m_allBytes(allBytes) {
  if (m_allBytes <= 0 || m_sizesLine.isEmpty()) return;
  m_next.setSingleShot(true);
  connect(&m_next, &QTimer::timeout, this, &PushProgress::ask);
  m_next.start(static_cast<int>(pushInterval));
}

PushProgress::~PushProgress() {
  m_turn.noteProgressOver();
}

void PushProgress::ask() {
  m_reply.clear();
  m_asking = ChildProcess::create();
  connect(m_asking.get(), &ChildProcess::block, this, [this](const QByteArray& bytes) { m_reply += bytes; });
  connect(m_asking.get(), &ChildProcess::finished, this, &PushProgress::answered);
  if (m_asking->start(m_sizesLine)) m_asking.reset();
}

void PushProgress::answered() {
  m_turn.noteProgress(std::min(sizesIn(QString::fromUtf8(m_reply)).bytes, m_allBytes), m_allBytes);
  m_next.start(static_cast<int>(pushInterval));
}

}  // namespace orvanta
