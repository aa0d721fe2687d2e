#include "queue/bundle_unpacking.h"

#include <zip.h>

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>

#include "adb/storage.h"
#include "platform/awaited.h"
#include "platform/leftovers.h"
#include "platform/private_place.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qint64 spareRoom = qint64{64} << 20;

struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseEntry {
  void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

/// A folder on a disk with room for `bytes`; empty without one.
QString placeFor(qint64 bytes, const QString& bundle) {
  const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
  QDir().mkpath(cache);
  for (const QString& place : {cache, QDir::tempPath(), QFileInfo(bundle).absolutePath()}) {
    const QStorageInfo disk(place);
    if (disk.isValid() && QFileInfo(place).isWritable() && disk.bytesAvailable() >= bytes + spareRoom)
      return place;
  }
  return {};
}

}  // namespace

UnpackedBundle::UnpackedBundle(const QString& bundle, const BundleChoice& choice)
    : m_bundle(bundle), m_choice(choice) {
  const QString place = placeFor(choice.bytes(), bundle);
  if (place.isEmpty()) {
    const QString size = readableSize(choice.bytes());
    m_problem = {u"电脑上没有解压所需的空间：%1"_s.arg(size),
                 u"There is no room to unpack it: %1"_s.arg(size)};
    return;
  }
  const QString folder = freshName(place + u"/orvanta-bundle-"_s);
  for (const BundleChoice::Part& part : choice.packages) m_packages << folder + u'/' + part.fileName;
  for (const BundleChoice::Part& part : choice.expansionFiles)
    m_expansionFiles << folder + u'/' + part.fileName;
  m_note = noteLeftovers(m_packages + m_expansionFiles, folder);
  if (makePrivateFolder(folder)) m_folder = folder;
  if (m_folder.isEmpty()) m_problem = {u"不能写入：%1"_s.arg(folder), u"Cannot write to %1"_s.arg(folder)};
}

UnpackedBundle::~UnpackedBundle() {
  m_stopped = true;
  if (m_thread) m_thread->wait();
  if (!m_folder.isEmpty()) {
    for (const QString& file : m_packages + m_expansionFiles) QFile::remove(file);
    QDir().rmdir(m_folder);
  }
  m_note.clear();
}

QCoro::Task<Bilingual> UnpackedBundle::unpack() {
  if (m_problem.english.isEmpty()) {
    m_thread.reset(QThread::create([this] { m_problem = unpackAll(); }));
    m_thread->start();
    co_await Ended(m_thread.get());
  }
  Bilingual problem = m_problem;
  co_return problem;
}

Bilingual UnpackedBundle::unpackAll() {
  const Bilingual broken = {u"压缩文件已损坏"_s, u"The archive is damaged"_s};
  const std::unique_ptr<zip_t, Discard> archive(zip_open(m_bundle.toUtf8().constData(), ZIP_RDONLY, nullptr));
  if (!archive) return broken;
  QByteArray block(1 << 20, Qt::Uninitialized);
  QStringList files = m_packages + m_expansionFiles;
  for (const BundleChoice::Part& part : m_choice.packages + m_choice.expansionFiles) {
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(archive.get(), part.entry.index, 0));
    QFile file(files.takeFirst());
    if (!entry) return broken;
    const Bilingual unwritten = {u"不能写入：%1"_s.arg(file.fileName()),
                                 u"Cannot write %1"_s.arg(file.fileName())};
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return unwritten;
    // Reads past the end: only there does libzip report a wrong checksum.
    for (;;) {
      if (m_stopped) return {u"已停止"_s, u"Stopped"_s};
      const zip_int64_t count = zip_fread(entry.get(), block.data(), static_cast<zip_uint64_t>(block.size()));
      if (count < 0) return broken;
      if (count == 0) break;
      // An archive can claim less than it unpacks to.
      if (file.size() + file.bytesToWrite() + count > part.entry.bytes) return broken;
      if (file.write(block.constData(), count) != count) return unwritten;
      m_bytes += count;
    }
    if (!file.flush()) return unwritten;
    if (file.size() != part.entry.bytes) return broken;
  }
  return {};
}

}  // namespace orvanta
