#include "backups/file_hashes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <vector>

#include "platform/awaited.h"
#include "platform/file_sync.h"
#include "platform/sha256.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qint64 blockSize = 1 << 20;  // bytes
constexpr qint64 shortestRest = 10;    // milliseconds
// Looking for thousands of files that have not come yet must not occupy a core.
constexpr qint64 restPerWork = 5;

/// A file that is being read while it grows.
struct Growing {
  ExpectedFile file;
  std::unique_ptr<Sha256> hash = nullptr;  // from its first byte on
  qint64 read = 0;
};

/// Reads what has been added since the last time. Returns the number of bytes.
qint64 takeMore(Growing& growing, QByteArray& block, const std::atomic<bool>& dropped) {
  QFile file(growing.file.path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || !file.seek(growing.read)) return 0;
  if (!growing.hash) growing.hash = std::make_unique<Sha256>();
  qint64 taken = 0;
  while (!dropped) {
    const qint64 got = file.read(block.data(), block.size());
    if (got <= 0) break;
    growing.hash->add({block.constData(), got});
    taken += got;
  }
  // Otherwise a large file would gather in memory, and the end of its backup would wait for the disk.
  beginSync(file, growing.read, taken);
  growing.read += taken;
  return taken;
}

}  // namespace

FollowingHashes::FollowingHashes(QList<ExpectedFile> files)
    : m_thread(QThread::create([this, files = std::move(files)] { follow(files); })) {
  m_thread->start();
}

FollowingHashes::~FollowingHashes() {
  m_dropped = true;
  end();
  m_thread->wait();
}

void FollowingHashes::end() {
  const QMutexLocker lock(&m_mutex);
  m_ended = true;
  m_end.wakeAll();
}

void FollowingHashes::follow(const QList<ExpectedFile>& files) {
  std::vector<Growing> pending;
  pending.reserve(static_cast<size_t>(files.size()));
  for (const ExpectedFile& file : files) pending.push_back({file});
  QByteArray block(blockSize, Qt::Uninitialized);
  for (bool last = false; !last && !pending.empty();) {
    // Once the tool has ended, this one more look sees everything.
    last = m_ended;
    QElapsedTimer work;
    work.start();
    qint64 taken = 0;
    const auto look = [&](Growing& growing) {
      if (m_dropped) return false;
      const qint64 size = growing.file.size;
      const QFileInfo info(growing.file.path);
      if (!info.isFile() || (info.size() <= growing.read && size > 0)) return false;
      const qint64 more = takeMore(growing, block, m_dropped);
      taken += more;
      m_bytes += more;
      if (growing.read != size || !growing.hash) return false;
      const QByteArray hash = growing.hash->hex();
      const QMutexLocker lock(&m_mutex);
      if (!hash.isEmpty()) m_complete.insert(growing.file.path, hash);
      return true;
    };
    std::erase_if(pending, look);
    const qint64 rest = std::max(shortestRest, taken > 0 ? 0 : work.elapsed() * restPerWork);
    if (last || taken >= blockSize) continue;
    QMutexLocker lock(&m_mutex);
    if (!m_ended) m_end.wait(&m_mutex, static_cast<unsigned long>(rest));
  }
}

QHash<QString, QByteArray> FollowingHashes::complete() const {
  const QMutexLocker lock(&m_mutex);
  return m_complete;
}

QCoro::Task<QHash<QString, QByteArray>> FollowingHashes::finish() {
  end();
  co_await Ended(m_thread.get());
  QHash<QString, QByteArray> hashes = complete();
  co_return hashes;
}

FileCheck::FileCheck(QList<HashedFile> files)
    : m_thread(QThread::create([this, files = std::move(files)] {
        QByteArray block(blockSize, Qt::Uninitialized);
        for (const HashedFile& expected : files) {
          if (m_stopped) return;
          QFile file(expected.path);
          const auto found = [&](const Bilingual& fault) { m_findings << Finding{expected.path, fault}; };
          if (!QFileInfo(expected.path).isFile()) {
            found({u"不存在"_s, u"missing"_s});
            continue;
          }
          if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            found({u"不能读取"_s, u"cannot be read"_s});
            continue;
          }
          if (file.size() != expected.size) {
            found({u"大小不对"_s, u"its size is wrong"_s});
            continue;
          }
          if (expected.sha256.isEmpty()) continue;
          Sha256 hash;
          qint64 got = 0;
          while (!m_stopped && (got = file.read(block.data(), block.size())) > 0) {
            hash.add({block.constData(), got});
            m_bytes += got;
          }
          if (m_stopped) return;
          if (hash.hex() != expected.sha256) found({u"内容已改变"_s, u"its content has changed"_s});
        }
      })) {
  m_thread->start();
}

FileCheck::~FileCheck() {
  m_stopped = true;
  m_thread->wait();
}

QCoro::Task<QList<FileCheck::Finding>> FileCheck::findings() {
  co_await Ended(m_thread.get());
  if (m_stopped) co_return QList<Finding>();
  QList<Finding> found = m_findings;
  co_return found;
}

}  // namespace orvanta
