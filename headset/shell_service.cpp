#include "shell_service.h"

#include <QtEndian>
#include <utility>

namespace orvanta::headset {

namespace {

enum PacketId : char { kInput = 0, kOutput = 1, kError = 2, kExit = 3, kCloseInput = 4, kWindowSize = 5 };
constexpr qsizetype kPacketHeader = 5;
constexpr qsizetype kBlock = 256 * 1024;

QByteArray shellPacket(PacketId id, const QByteArray& data) {
  QByteArray packet(kPacketHeader, id);
  qToLittleEndian(static_cast<quint32>(data.size()), packet.data() + 1);
  return packet + data;
}

}  // namespace

std::optional<ShellRequest> ShellRequest::parse(const QByteArray& service) {
  const qsizetype colon = service.indexOf(':');
  const QByteArrayList words = service.left(colon).split(',');
  if (colon < 0 || (words.first() != "shell" && words.first() != "exec")) return std::nullopt;
  ShellRequest request;
  request.script = service.mid(colon + 1);
  request.terminal = words.first() == "shell" && request.script.isEmpty();
  for (const QByteArray& word : words.mid(1)) {
    if (word == "v2") request.packets = true;
    if (word == "pty") request.terminal = true;
    if (word == "raw") request.terminal = false;
    if (word.startsWith("TERM=")) request.term = word.mid(5);
  }
  return request;
}

ShellService::ShellService(Stream& stream, const Sandbox& sandbox, ShellRequest request, const Faults& faults)
    : Service(stream),
      m_request(std::move(request)),
      m_sandbox(sandbox),
      m_child(this),
      m_bytesPerSecond(faults.bytesPerSecond) {
  if (m_request.script.startsWith("cmd package")) m_dropAfterInput = faults.dropAfterInstallBytes;
  connect(&m_child, &Child::readable, this, &ShellService::pump);
  connect(&m_child, &Child::done, this, &ShellService::pump);
  connect(&m_child, &Child::inputRoom, this, &ShellService::giveInput);
}

void ShellService::started() {
  Child::Streams streams = m_request.packets ? Child::Streams::Separate : Child::Streams::Merged;
  if (m_request.terminal) streams = Child::Streams::Terminal;
  if (!m_child.start(m_sandbox.command(m_request.script, m_request.term), streams)) return stream().finish();
  pump();
}

void ShellService::received(const QByteArray& block) {
  m_owed = block.size();
  m_inputBytes += block.size();
  if (m_dropAfterInput && m_inputBytes > *m_dropAfterInput) return stream().loseLink();
  if (m_request.packets) {
    m_packets += block;
    takePackets();
  } else {
    m_input += block;
  }
  giveInput();
}

void ShellService::takePackets() {
  while (m_packets.size() >= kPacketHeader) {
    const char id = m_packets.front();
    const auto length = static_cast<qsizetype>(qFromLittleEndian<quint32>(m_packets.constData() + 1));
    if (m_packets.size() < kPacketHeader + length) return;
    const QByteArray data = m_packets.mid(kPacketHeader, length);
    m_packets.remove(0, kPacketHeader + length);
    if (id == kInput) {
      m_input += data;
    } else if (id == kCloseInput) {
      m_closeInput = true;
    } else if (id == kWindowSize) {
      // "rows x columns, x pixels x y pixels", as in 24x80,0x0
      const QByteArrayList sizes = data.split(',').first().split('x');
      if (sizes.size() == 2) m_child.setWindowSize(sizes[0].toUShort(), sizes[1].toUShort());
    }
  }
}

void ShellService::giveInput() {
  m_child.give(m_input);
  if (!m_input.isEmpty()) return;
  if (m_owed > 0) {
    const qint64 size = std::exchange(m_owed, 0);
    stream().consumedAfter(m_bytesPerSecond > 0 ? size * 1000 / m_bytesPerSecond : 0);
  }
  if (m_closeInput) m_child.closeInput();
}

void ShellService::writable() {
  pump();
}

void ShellService::pump() {
  if (!stream().canSend()) return m_child.wantOutput(false);
  const qsizetype limit = std::min(kBlock, stream().maxBlock() - 2 * kPacketHeader);
  QByteArray output = m_child.take(Child::Output, limit);
  QByteArray error = output.isEmpty() ? m_child.take(Child::Error, limit) : QByteArray();
  if (m_request.packets && !output.isEmpty()) output = shellPacket(kOutput, output);
  if (m_request.packets && !error.isEmpty()) error = shellPacket(kError, error);
  const QByteArray block = output + error;
  if (!block.isEmpty()) {
    m_child.wantOutput(false);
    return stream().send(block);
  }
  if (!m_child.isDone()) return m_child.wantOutput(true);
  sendExit();
}

void ShellService::sendExit() {
  if (std::exchange(m_exitSent, true)) return;
  if (m_request.packets)
    stream().send(shellPacket(kExit, QByteArray(1, static_cast<char>(m_child.exitCode()))));
  stream().finish();
}

}  // namespace orvanta::headset
