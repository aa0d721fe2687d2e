#pragma once

#include <QByteArray>
#include <optional>

#include "child.h"
#include "connection.h"
#include "sandbox.h"

namespace orvanta::headset {

/// What a service text such as "shell,v2,TERM=xterm,raw:ls /sdcard" asks for.
struct ShellRequest {
  bool packets = false;   ///< the second protocol: channels apart and the exit code at the end
  bool terminal = false;  ///< the command gets a terminal
  QByteArray term = "dumb";
  QByteArray script;

  /// Nothing if `service` is not a shell service.
  static std::optional<ShellRequest> parse(const QByteArray& service);
};

/// The services "shell:", "shell,v2:" and "exec:".
class ShellService : public Service {
 public:
  /// `dropAfterInput`: the link is lost after so many bytes of input.
  ShellService(Stream& stream, const Sandbox& sandbox, ShellRequest request, const Faults& faults);

  void started() override;
  void received(const QByteArray& block) override;
  void writable() override;

 private:
  void takePackets();
  void giveInput();
  void pump();
  void sendExit();

  ShellRequest m_request;
  const Sandbox& m_sandbox;
  Child m_child;
  QByteArray m_packets;  ///< unread part of the second protocol's input
  QByteArray m_input;
  std::optional<qint64> m_dropAfterInput;
  qint64 m_bytesPerSecond;
  qint64 m_inputBytes = 0;
  qint64 m_owed = 0;  ///< size of the block that is not acknowledged yet
  bool m_closeInput = false;
  bool m_exitSent = false;
};

}  // namespace orvanta::headset
