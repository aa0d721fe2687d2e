#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QtGlobal>

namespace orvanta::headset {

/// The six commands of adb's transport, as in the header (little endian, so that they read as letters).
enum Command : quint32 {
  kConnect = 0x4e584e43,  // CNXN
  kAuth = 0x48545541,     // AUTH
  kOpen = 0x4e45504f,     // OPEN
  kOkay = 0x59414b4f,     // OKAY
  kClose = 0x45534c43,    // CLSE
  kWrite = 0x45545257,    // WRTE
};

inline constexpr quint32 kVersionWithChecksum = 0x01000000;
inline constexpr quint32 kVersionSkipsChecksum = 0x01000001;
inline constexpr quint32 kMaxPayload = 1024 * 1024;
/// The largest payload before the desktop has announced its own limit.
inline constexpr quint32 kMaxPayloadBeforeConnect = 4096;

/// One message of the transport: a header of 24 bytes and a payload.
struct Packet {
  quint32 command = 0;
  quint32 arg0 = 0;
  quint32 arg1 = 0;
  QByteArray payload;
};

/// The header for `payload`, with the payload's checksum only if asked for.
QByteArray packetHeader(quint32 command, quint32 arg0, quint32 arg1, const QByteArray& payload,
                        bool checksum);

/// Cuts packets out of a byte stream, without copying a payload twice.
class PacketReader {
 public:
  enum class Result { Packet, NeedsMore, Malformed };

  /// Reads what `device` has. After Packet the message is in `packet`, and the next call begins a new one.
  /// Malformed: the peer does not speak this protocol, and the connection is useless.
  Result read(QIODevice& device, Packet& packet);

  /// The peer's payloads carry no checksum from now on.
  void skipChecksums() { m_verify = false; }

 private:
  Packet m_current;
  quint32 m_checksum = 0;
  qsizetype m_filled = 0;
  bool m_haveHeader = false;
  bool m_verify = true;
};

}  // namespace orvanta::headset
