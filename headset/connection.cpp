#include "connection.h"

#include <QPointer>
#include <QRandomGenerator>
#include <QTimer>
#include <utility>

namespace orvanta::headset {

namespace {

constexpr quint32 kAuthToken = 1;
constexpr quint32 kAuthSignature = 2;
constexpr qsizetype kTokenSize = 20;
// Enough for two full payloads: what a desktop sends beyond that waits in the kernel.
constexpr qint64 kSocketBuffer = 2 * (qint64{kMaxPayload} + 24);

}  // namespace

Stream::Stream(Connection& connection, quint32 localId, quint32 remoteId)
    : QObject(&connection), m_connection(connection), m_localId(localId), m_remoteId(remoteId) {}

Stream::~Stream() = default;

qsizetype Stream::maxBlock() const {
  return m_connection.m_maxPayload;
}

void Stream::send(const QByteArray& block) {
  Q_ASSERT(canSend() && block.size() <= maxBlock());
  m_canSend = false;
  m_connection.sendPacket(kWrite, m_localId, m_remoteId, block);
}

void Stream::consumed() {
  if (!m_closed) m_connection.sendPacket(kOkay, m_localId, m_remoteId);
}

void Stream::consumedAfter(qint64 delayMs) {
  if (delayMs <= 0) return consumed();
  QTimer::singleShot(static_cast<int>(delayMs), this, [this] { consumed(); });
}

void Stream::finish() {
  if (m_finishing) return;
  m_finishing = true;
  if (m_canSend) close();
}

void Stream::close() {
  m_connection.sendPacket(kClose, m_localId, m_remoteId);
  m_connection.forget(this);
}

void Stream::loseLink() {
  m_connection.m_host.linkLost();
}

Connection::Connection(QTcpSocket* socket, ConnectionHost& host) : m_socket(socket), m_host(host) {
  m_socket->setParent(this);
  m_socket->setReadBufferSize(kSocketBuffer);
  m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  connect(m_socket, &QTcpSocket::readyRead, this, &Connection::readPackets);
  connect(m_socket, &QTcpSocket::disconnected, this, &Connection::closed);
}

Connection::~Connection() {
  m_socket->disconnect(this);
  m_socket->abort();
}

void Connection::readPackets() {
  Packet packet;
  const QPointer<Connection> self(this);
  for (;;) {
    switch (m_reader.read(*m_socket, packet)) {
      case PacketReader::Result::NeedsMore:
        return;
      case PacketReader::Result::Malformed:
        m_socket->abort();
        return;
      case PacketReader::Result::Packet:
        handle(packet);
        if (self.isNull()) return;
    }
  }
}

void Connection::handle(const Packet& packet) {
  if (packet.command == kConnect) return handleConnect(packet);
  if (packet.command == kAuth) return handleAuth(packet);
  if (m_state != State::Online) return;
  if (packet.command == kOpen) return handleOpen(packet);

  Stream* stream = m_streams.value(packet.arg1);
  if (stream == nullptr) {
    // A block for a stream that has already ended here: tell the desktop again.
    if (packet.command == kWrite) sendPacket(kClose, 0, packet.arg0);
    return;
  }
  if (packet.command == kWrite) {
    stream->m_service->received(packet.payload);
  } else if (packet.command == kOkay) {
    stream->m_canSend = true;
    if (stream->m_finishing) {
      stream->close();
    } else {
      stream->m_service->writable();
    }
  } else if (packet.command == kClose) {
    sendPacket(kClose, stream->m_localId, stream->m_remoteId);
    forget(stream);
  }
}

void Connection::handleConnect(const Packet& packet) {
  // A second CNXN starts over: the old streams are gone.
  const QList<Stream*> old = m_streams.values();
  m_streams.clear();
  qDeleteAll(old);
  m_maxPayload = std::min(packet.arg1, kMaxPayload);
  m_checksums = packet.arg0 < kVersionSkipsChecksum;
  if (!m_checksums) m_reader.skipChecksums();
  switch (m_host.faults().state) {
    case Faults::State::Device:
      return sendBanner();
    case Faults::State::Unauthorized:
      m_state = State::AwaitingAuthorization;
      return sendToken();
    case Faults::State::Offline:
    case Faults::State::Gone:
      // A daemon that hangs: the desktop shows the device as offline while it hears nothing.
      m_state = State::Silent;
  }
}

void Connection::handleAuth(const Packet& packet) {
  // Answering a signature with the next token makes the desktop try all of its keys. Its public key comes
  // last and gets no answer: that is when a real device asks the user.
  if (m_state == State::AwaitingAuthorization && packet.arg0 == kAuthSignature) sendToken();
}

void Connection::sendToken() {
  QByteArray token(kTokenSize, Qt::Uninitialized);
  for (char& byte : token) byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
  sendPacket(kAuth, kAuthToken, 0, token);
}

void Connection::authorize() {
  if (isWaitingForAuthorization()) sendBanner();
}

void Connection::sendBanner() {
  m_state = State::Online;
  sendPacket(kConnect, kVersionSkipsChecksum, kMaxPayload, m_host.banner());
}

void Connection::handleOpen(const Packet& packet) {
  QByteArray name = packet.payload;
  while (name.endsWith('\0')) name.chop(1);
  m_host.logService(name);
  const int latency = m_host.faults().latencyMs;
  if (latency <= 0) return open(packet.arg0, name);
  QTimer::singleShot(latency, this, [this, remoteId = packet.arg0, name] { open(remoteId, name); });
}

void Connection::open(quint32 remoteId, const QByteArray& name) {
  auto* stream = new Stream(*this, m_nextId++, remoteId);
  stream->m_service = m_host.openService(name, *stream);
  if (stream->m_service == nullptr) {
    delete stream;
    return sendPacket(kClose, 0, remoteId);
  }
  m_streams.insert(stream->m_localId, stream);
  sendPacket(kOkay, stream->m_localId, remoteId);
  stream->m_service->started();
}

void Connection::forget(Stream* stream) {
  m_streams.remove(stream->m_localId);
  stream->m_closed = true;
  stream->m_finishing = true;
  // The caller may be the service itself.
  stream->deleteLater();
}

void Connection::sendPacket(quint32 command, quint32 arg0, quint32 arg1, const QByteArray& payload) {
  if (!m_socket->isOpen()) return;
  m_socket->write(packetHeader(command, arg0, arg1, payload, m_checksums));
  if (!payload.isEmpty()) m_socket->write(payload);
}

}  // namespace orvanta::headset
