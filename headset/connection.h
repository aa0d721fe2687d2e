#pragma once

#include <QHash>
#include <QObject>
#include <QTcpSocket>

#include "adb_packet.h"
#include "faults.h"

namespace orvanta::headset {

class Connection;
class Service;

/// One stream of a connection: a service at this end, one of the desktop's sockets at the other. At most one
/// block is in flight in each direction; the next may follow after the other side's OKAY.
class Stream : public QObject {
  Q_OBJECT
 public:
  Stream(Connection& connection, quint32 localId, quint32 remoteId);
  ~Stream() override;

  /// The largest block that send() takes.
  qsizetype maxBlock() const;
  bool canSend() const { return m_canSend && !m_finishing; }
  /// Sends one block of at most maxBlock() bytes. Only when canSend().
  void send(const QByteArray& block);
  /// The service is done with its last block: the desktop may send the next.
  void consumed();
  /// The same after `delayMs`, for a slow device.
  void consumedAfter(qint64 delayMs);
  /// Closes the stream as soon as the desktop has taken the last block.
  void finish();
  /// The whole link breaks, as when the cable is pulled.
  void loseLink();

 private:
  friend class Connection;
  void close();

  Connection& m_connection;
  Service* m_service = nullptr;
  quint32 m_localId;
  quint32 m_remoteId;
  bool m_canSend = true;
  bool m_finishing = false;
  bool m_closed = false;
};

/// What answers on a stream. It is deleted with the stream, when the desktop closes it or the link is lost.
class Service : public QObject {
 public:
  explicit Service(Stream& stream) : QObject(&stream), m_stream(stream) {}

  /// The desktop has been told that the service is open.
  virtual void started() {}
  /// A block has arrived. The next one waits for stream().consumed().
  virtual void received(const QByteArray& block) = 0;
  /// The desktop has taken the last block.
  virtual void writable() {}

 protected:
  Stream& stream() const { return m_stream; }

 private:
  Stream& m_stream;
};

/// What a connection needs of the device behind it.
class ConnectionHost {
 public:
  virtual ~ConnectionHost() = default;
  /// The device's banner, with its properties and features.
  virtual QByteArray banner() const = 0;
  virtual Faults faults() const = 0;
  /// Creates the service called `name`; null refuses it.
  virtual Service* openService(const QByteArray& name, Stream& stream) = 0;
  virtual void logService(const QByteArray& name) = 0;
  /// All connections break.
  virtual void linkLost() = 0;
};

/// One TCP connection from an adb server.
class Connection : public QObject {
  Q_OBJECT
 public:
  Connection(QTcpSocket* socket, ConnectionHost& host);
  ~Connection() override;

  /// The user has allowed the desktop's key: lets a waiting desktop in.
  void authorize();
  /// Drops the connection without a CLSE: the device vanishes.
  void drop() { m_socket->abort(); }
  bool isWaitingForAuthorization() const { return m_state == State::AwaitingAuthorization; }

 Q_SIGNALS:
  void closed();

 private:
  friend class Stream;
  enum class State { AwaitingConnect, AwaitingAuthorization, Online, Silent };

  void readPackets();
  void handle(const Packet& packet);
  void handleConnect(const Packet& packet);
  void handleAuth(const Packet& packet);
  void handleOpen(const Packet& packet);
  void open(quint32 remoteId, const QByteArray& name);
  void sendBanner();
  void sendPacket(quint32 command, quint32 arg0, quint32 arg1, const QByteArray& payload = {});
  void forget(Stream* stream);
  void sendToken();

  QTcpSocket* m_socket;
  ConnectionHost& m_host;
  PacketReader m_reader;
  QHash<quint32, Stream*> m_streams;
  State m_state = State::AwaitingConnect;
  quint32 m_nextId = 1;
  quint32 m_maxPayload = kMaxPayloadBeforeConnect;
  bool m_checksums = true;
};

}  // namespace orvanta::headset
