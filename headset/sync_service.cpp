#include "sync_service.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtEndian>
#include <cerrno>
#include <cstring>

namespace orvanta::headset {

namespace {

constexpr quint32 id(const char (&name)[5]) {
  return static_cast<quint32>(name[0]) | static_cast<quint32>(name[1]) << 8U |
         static_cast<quint32>(name[2]) << 16U | static_cast<quint32>(name[3]) << 24U;
}

constexpr quint32 kStat1 = id("STAT");
constexpr quint32 kStat2 = id("STA2");
constexpr quint32 kLinkStat2 = id("LST2");
constexpr quint32 kList1 = id("LIST");
constexpr quint32 kList2 = id("LIS2");
constexpr quint32 kEntry1 = id("DENT");
constexpr quint32 kEntry2 = id("DNT2");
constexpr quint32 kSend = id("SEND");
constexpr quint32 kReceive = id("RECV");
constexpr quint32 kData = id("DATA");
constexpr quint32 kDone = id("DONE");
constexpr quint32 kOkayReply = id("OKAY");
constexpr quint32 kFail = id("FAIL");
constexpr quint32 kQuit = id("QUIT");

constexpr quint32 kMaxPath = 1024;
constexpr quint32 kMaxData = 64 * 1024;
constexpr qsizetype kHeader = 8;

/// Appends numbers in the protocol's byte order.
class Writer {
 public:
  Writer& u32(quint64 value) { return put(static_cast<quint32>(value)); }
  Writer& u64(quint64 value) { return put(value); }
  QByteArray bytes;

 private:
  template <typename T>
  Writer& put(T value) {
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof(T));
    return *this;
  }
};

void appendStat2(Writer& writer, int error, const struct stat& info) {
  writer.u32(static_cast<quint32>(error))
      .u64(info.st_dev)
      .u64(info.st_ino)
      .u32(info.st_mode)
      .u32(info.st_nlink);
  writer.u32(info.st_uid).u32(info.st_gid).u64(static_cast<quint64>(info.st_size));
  writer.u64(static_cast<quint64>(info.st_atime)).u64(static_cast<quint64>(info.st_mtime));
  writer.u64(static_cast<quint64>(info.st_ctime));
}

}  // namespace

SyncService::SyncService(Stream& stream, SyncHost& host) : Service(stream), m_host(host) {
  m_pause.setSingleShot(true);
  connect(&m_pause, &QTimer::timeout, this, &SyncService::pump);
}

SyncService::~SyncService() {
  // An incomplete file is removed, as on a real device.
  if (m_incoming.active && m_incoming.file.isOpen()) m_host.files().remove(m_incoming.path);
}

void SyncService::received(const QByteArray& block) {
  m_in.append(block);
  m_owesAnswer = true;
  m_blockSize = block.size();
  pump();
}

void SyncService::writable() {
  pump();
}

void SyncService::pump() {
  while (!m_ending && !m_outgoing.isOpen() && parseOne()) {
  }
  const qint64 rate = m_faults.bytesPerSecond;
  if (stream().canSend() && !m_pause.isActive()) {
    if (m_outgoing.isOpen()) fillFromFile();
    if (!m_out.isEmpty()) {
      const QByteArray block = m_out.left(stream().maxBlock());
      m_out.remove(0, block.size());
      stream().send(block);
      if (rate > 0) m_pause.start(static_cast<int>(block.size() * 1000 / rate));
    }
  }
  // The desktop's next request waits until the file has been sent.
  if (m_owesAnswer && !m_outgoing.isOpen()) {
    m_owesAnswer = false;
    stream().consumedAfter(m_incoming.active && rate > 0 ? m_blockSize * 1000 / rate : 0);
  }
  if (m_ending && m_out.isEmpty()) stream().finish();
}

bool SyncService::parseOne() {
  if (m_in.size() < kHeader) return false;
  const auto request = qFromLittleEndian<quint32>(m_in.constData());
  const auto length = qFromLittleEndian<quint32>(m_in.constData() + 4);
  if (m_incoming.active) {
    if (request == kDone) {
      m_in.remove(0, kHeader);
      endSend(length);
      return true;
    }
    if (request != kData || length > kMaxData) {
      fail("invalid data message");
      m_ending = true;
      return false;
    }
    if (m_in.size() < kHeader + length) return false;
    takeData(m_in.mid(kHeader, length));
    m_in.remove(0, kHeader + length);
    return !m_ending;
  }
  if (request == kQuit || length > kMaxPath) {
    m_ending = true;
    return false;
  }
  if (m_in.size() < kHeader + length) return false;
  const QByteArray path = m_in.mid(kHeader, length);
  m_in.remove(0, kHeader + length);
  m_faults = m_host.faults();
  handle(request, path);
  return true;
}

void SyncService::handle(quint32 request, const QByteArray& path) {
  if (request == kStat1 || request == kStat2 || request == kLinkStat2) return handleStat(request, path);
  if (request == kList1 || request == kList2) return handleList(request, path);
  if (request == kSend) return beginSend(path);
  if (request == kReceive) return beginReceive(path);
  fail("unknown command");
  m_ending = true;
}

void SyncService::handleStat(quint32 request, const QByteArray& path) {
  struct stat info {};
  const int error = m_host.files().stat(path, request == kStat2, &info);
  if (error != 0) info = {};
  Writer writer;
  writer.u32(request);
  if (request == kStat1) {
    writer.u32(info.st_mode).u32(static_cast<quint64>(info.st_size)).u32(static_cast<quint64>(info.st_mtime));
  } else {
    appendStat2(writer, error, info);
  }
  reply(writer.bytes);
}

void SyncService::handleList(quint32 request, const QByteArray& path) {
  const bool second = request == kList2;
  QList<DeviceFiles::Entry> entries;
  m_host.files().list(path, &entries);
  // The list ends with an entry of the same size, with another id and all zeros.
  const DeviceFiles::Entry end{};
  Writer writer;
  const auto append = [&writer, second](quint32 word, const DeviceFiles::Entry& entry) {
    writer.u32(word);
    if (second) {
      appendStat2(writer, 0, entry.info);
    } else {
      writer.u32(entry.info.st_mode).u32(static_cast<quint64>(entry.info.st_size));
      writer.u32(static_cast<quint64>(entry.info.st_mtime));
    }
    writer.u32(static_cast<quint64>(entry.name.size())).bytes.append(entry.name);
  };
  for (const DeviceFiles::Entry& entry : std::as_const(entries)) append(second ? kEntry2 : kEntry1, entry);
  append(kDone, end);
  reply(writer.bytes);
}

void SyncService::beginSend(const QByteArray& pathAndMode) {
  const qsizetype comma = pathAndMode.lastIndexOf(',');
  m_incoming = Incoming();
  m_incoming.active = true;
  m_incoming.path = pathAndMode.left(comma);
  m_incoming.mode = comma < 0 ? 0 : pathAndMode.mid(comma + 1).toUInt();
  m_incoming.room = m_host.bytesAvailable();
  if (comma < 0 || m_incoming.mode == 0) return fail("missing , in ID_SEND");
  if (S_ISLNK(m_incoming.mode)) return;
  const mode_t owner = m_incoming.mode & 0700U;
  const mode_t mode = owner | owner >> 3U | (m_incoming.mode & 0007U) | 0600U;
  const int error = m_host.files().create(m_incoming.path, mode, &m_incoming.file);
  if (error != 0) fail(QByteArray("couldn't create file: ") + ::strerror(error));
}

void SyncService::takeData(const QByteArray& data) {
  if (m_faults.dropAfterPushBytes && m_incoming.received + data.size() > *m_faults.dropAfterPushBytes) {
    m_ending = true;
    return stream().loseLink();
  }
  m_incoming.received += data.size();
  if (m_incoming.failed) return;
  if (S_ISLNK(m_incoming.mode)) {
    m_incoming.linkTarget += data;
    return;
  }
  int error = 0;
  if (data.size() > m_incoming.room) error = ENOSPC;
  m_incoming.room -= data.size();
  qsizetype written = 0;
  while (error == 0 && written < data.size()) {
    const ssize_t step = ::write(m_incoming.file.get(), data.constData() + written, data.size() - written);
    if (step < 0) error = errno;
    written += step;
  }
  if (error != 0) fail(QByteArray("write failed: ") + ::strerror(error));
}

void SyncService::endSend(quint32 modified) {
  Incoming done = std::move(m_incoming);
  m_incoming = Incoming();
  if (done.failed) {
    m_ending = true;
    return;
  }
  if (S_ISLNK(done.mode)) {
    while (done.linkTarget.endsWith('\0')) done.linkTarget.chop(1);
    const int error = m_host.files().createLink(done.path, done.linkTarget);
    if (error != 0) {
      m_ending = true;
      return fail(QByteArray("couldn't create symlink: ") + ::strerror(error));
    }
  } else {
    const timespec times[2] = {{modified, 0}, {modified, 0}};
    ::futimens(done.file.get(), times);
  }
  reply(Writer().u32(kOkayReply).u32(0).bytes);
}

void SyncService::beginReceive(const QByteArray& path) {
  struct stat info {};
  int error = m_host.files().stat(path, true, &info);
  if (error == 0 && S_ISDIR(info.st_mode)) error = EISDIR;
  if (error == 0) error = m_host.files().openForReading(path, &m_outgoing);
  if (error != 0) {
    fail(QByteArray("open failed: ") + ::strerror(error));
    m_outgoing.reset();
  }
}

void SyncService::fillFromFile() {
  const qsizetype block = stream().maxBlock();
  while (m_out.size() + kHeader < block) {
    const qsizetype start = m_out.size();
    const qsizetype wanted = std::min<qsizetype>(kMaxData, block - start - kHeader);
    m_out.resize(start + kHeader + wanted);
    const ssize_t got = ::read(m_outgoing.get(), m_out.data() + start + kHeader, wanted);
    m_out.resize(start + kHeader + std::max<ssize_t>(got, 0));
    if (got <= 0) {
      m_outgoing.reset();
      qToLittleEndian(kDone, m_out.data() + start);
      qToLittleEndian(quint32{0}, m_out.data() + start + 4);
      return;
    }
    qToLittleEndian(kData, m_out.data() + start);
    qToLittleEndian(static_cast<quint32>(got), m_out.data() + start + 4);
  }
}

void SyncService::fail(const QByteArray& reason) {
  if (m_incoming.active) {
    // The desktop goes on sending: drain the rest of the file, so that it gets to read the answer.
    m_incoming.failed = true;
    if (m_incoming.file.isOpen()) m_host.files().remove(m_incoming.path);
    m_incoming.file.reset();
  }
  reply(Writer().u32(kFail).u32(static_cast<quint64>(reason.size())).bytes + reason);
}

void SyncService::reply(const QByteArray& bytes) {
  m_out.append(bytes);
}

}  // namespace orvanta::headset
