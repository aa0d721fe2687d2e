#include "operations/transfer_progress.h"

#include <QElapsedTimer>
#include <algorithm>

#include "operations/local_copy.h"
#include "operations/replies.h"

namespace orvanta {

namespace {

constexpr qint64 pullInterval = 200;   // milliseconds
constexpr qint64 pushInterval = 2000;  // milliseconds
// A folder of very many files takes its time to be counted; the window has most of the time for itself.
constexpr qint64 restPerWork = 20;

void show(const BusyStrips& strips, qint64 done, qint64 all) {
  for (const QPointer<BusyStrip>& strip : strips) {
    if (strip != nullptr) strip->setProgress(std::min(done, all), all);
  }
}

}  // namespace

PullProgress::PullProgress(BusyStrips strips, QString localPath, qint64 allBytes)
    : m_strips(std::move(strips)), m_localPath(std::move(localPath)), m_allBytes(allBytes) {
  if (m_allBytes <= 0) return;
  m_next.setSingleShot(true);
  connect(&m_next, &QTimer::timeout, this, &PullProgress::look);
  m_next.start(static_cast<int>(pullInterval));
}

void PullProgress::look() {
  QElapsedTimer work;
  work.start();
  show(m_strips, localSizes(m_localPath).bytes, m_allBytes);
  m_next.start(static_cast<int>(std::max(pullInterval, work.elapsed() * restPerWork)));
}

PushProgress::PushProgress(BusyStrips strips, QString sizesLine, qint64 allBytes)
    : m_strips(std::move(strips)), m_sizesLine(std::move(sizesLine)), m_allBytes(allBytes) {
  if (m_allBytes <= 0 || m_sizesLine.isEmpty()) return;
  m_next.setSingleShot(true);
  connect(&m_next, &QTimer::timeout, this, &PushProgress::ask);
  m_next.start(static_cast<int>(pushInterval));
}

void PushProgress::ask() {
  m_reply.clear();
  m_asking = ChildProcess::create();
  connect(m_asking.get(), &ChildProcess::block, this, [this](const QByteArray& bytes) { m_reply += bytes; });
  connect(m_asking.get(), &ChildProcess::finished, this, &PushProgress::answered);
  if (m_asking->start(m_sizesLine)) m_asking.reset();
}

void PushProgress::answered() {
  show(m_strips, sizesIn(QString::fromUtf8(m_reply)).bytes, m_allBytes);
  m_next.start(static_cast<int>(pushInterval));
}

}  // namespace orvanta
