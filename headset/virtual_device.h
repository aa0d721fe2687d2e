#pragma once

#include <QList>
#include <QMutex>
#include <QObject>
#include <QTcpServer>
#include <QTimer>
#include <atomic>
#include <memory>
#include <optional>

#include "call_server.h"
#include "connection.h"
#include "device_files.h"
#include "packages.h"
#include "sandbox.h"
#include "service_log.h"
#include "sync_service.h"
#include "system.h"

namespace orvanta::headset {

/// How the headset is to be set up.
struct DeviceOptions {
  QString stateDir;
  QString logFile;
  QString toolPath;  ///< the program behind the shell's system commands
  QString serial;
  QString features;
  quint16 port = 0;
  quint16 adbServerPort = 0;  ///< 0: no adb server is told of the headset
  bool nestedCodePaths = false;
};

/// The headset: listens on the loopback, opens services, and has faults on request.
class VirtualDevice : public QObject, public ConnectionHost, public SyncHost, public SystemHost {
  Q_OBJECT
 public:
  explicit VirtualDevice(DeviceOptions options);
  ~VirtualDevice() override;

  /// Creates the file tree and the sandbox. On failure the reason, for the user; else empty.
  QString prepare();
  /// Opens the port. On failure the reason, for the user; empty when the headset is ready.
  QString start();
  quint16 port() const { return m_port; }
  Packages& packages() { return m_packages; }

  QByteArray banner() const override;
  Faults faults() const override;
  Service* openService(const QByteArray& name, Stream& stream) override;
  void logService(const QByteArray& name) override;
  void linkLost() override;
  const DeviceFiles& files() const override { return *m_files; }
  QString root() const override { return m_sandbox.root(); }
  qint64 bytesAvailable() const override;
  qint64 storageSize() const override;
  bool usesNestedCodePaths() const override { return m_options.nestedCodePaths; }
  QString networkAddress() const override;
  void reboot() override;

 private:
  QString reservePort();
  bool listenNow();
  void hide();
  void dropConnections();
  void acceptConnections(QTcpServer& server);
  void listenOnNetwork(quint16 port);
  QByteArray faultsText() const;
  void watchFaults();
  void announce();
  void goDown();

  DeviceOptions m_options;
  Sandbox m_sandbox;
  std::unique_ptr<DeviceFiles> m_files;
  ServiceLog m_log;
  Packages m_packages;
  Properties m_properties;
  System m_system;
  CallServer m_calls;

  quint16 m_port = 0;
  UniqueFd m_reserved;  ///< keeps the port while nobody listens
  QTcpServer m_server;
  QTcpServer m_network;  ///< open once adb has asked for it, until the next start
  QList<Connection*> m_connections;
  QTimer m_watch;
  QTimer m_announce;
  Faults::State m_state = Faults::State::Device;
  QByteArray m_faultsText;
  QByteArray m_faultsAtDrop;
  bool m_lost = false;  ///< a drop of the link that stays until the faults change
  bool m_rebooting = false;

  mutable QMutex m_storageMutex;
  mutable std::optional<qint64> m_freeAsked;
  mutable qint64 m_usedWhenAsked = 0;
};

}  // namespace orvanta::headset
