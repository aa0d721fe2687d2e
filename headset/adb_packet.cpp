#include "adb_packet.h"

#include <QtEndian>
#include <array>
#include <numeric>

namespace orvanta::headset {

namespace {

constexpr qsizetype kHeaderSize = 24;

quint32 byteSum(const QByteArray& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), quint32{0},
                         [](quint32 sum, char byte) { return sum + static_cast<quint8>(byte); });
}

}  // namespace

QByteArray packetHeader(quint32 command, quint32 arg0, quint32 arg1, const QByteArray& payload,
                        bool checksum) {
  QByteArray header(kHeaderSize, Qt::Uninitialized);
  const std::array<quint32, 6> words = {command,
                                        arg0,
                                        arg1,
                                        static_cast<quint32>(payload.size()),
                                        checksum ? byteSum(payload) : 0,
                                        command ^ 0xffffffffU};
  for (std::size_t i = 0; i < words.size(); ++i) qToLittleEndian(words[i], header.data() + 4 * i);
  return header;
}

PacketReader::Result PacketReader::read(QIODevice& device, Packet& packet) {
  if (!m_haveHeader) {
    if (device.bytesAvailable() < kHeaderSize) return Result::NeedsMore;
    const QByteArray header = device.read(kHeaderSize);
    const auto word = [&header](int i) { return qFromLittleEndian<quint32>(header.constData() + 4 * i); };
    if (word(5) != (word(0) ^ 0xffffffffU) || word(3) > kMaxPayload) return Result::Malformed;
    m_current = {word(0), word(1), word(2), QByteArray(word(3), Qt::Uninitialized)};
    m_checksum = word(4);
    m_filled = 0;
    m_haveHeader = true;
  }
  if (m_filled < m_current.payload.size()) {
    const qint64 got = device.read(m_current.payload.data() + m_filled, m_current.payload.size() - m_filled);
    if (got > 0) m_filled += got;
    if (m_filled < m_current.payload.size()) return Result::NeedsMore;
  }
  m_haveHeader = false;
  if (m_verify && byteSum(m_current.payload) != m_checksum) return Result::Malformed;
  packet = std::move(m_current);
  m_current = {};
  return Result::Packet;
}

}  // namespace orvanta::headset
