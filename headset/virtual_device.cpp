#include "virtual_device.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <QDir>
#include <QFile>

#include "shell_service.h"

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWatchMs = 40;
constexpr int kAnnounceMs = 100;
constexpr int kRebootDelayMs = 100;
constexpr qint64 kGiga = 1024LL * 1024 * 1024;
constexpr qint64 kStorageSize = 109 * kGiga;
// Space taken by the headset's system and its first apps.
constexpr qint64 kUsedAlways = 12 * kGiga;

/// Sends one text and closes: how services are answered that need no more, or are not offered.
class Answer : public Service {
 public:
  Answer(Stream& stream, QByteArray text) : Service(stream), m_text(std::move(text)) {}
  void started() override {
    if (!m_text.isEmpty()) stream().send(m_text);
    stream().finish();
  }
  void received(const QByteArray&) override { stream().consumed(); }

 private:
  QByteArray m_text;
};

}  // namespace

VirtualDevice::VirtualDevice(DeviceOptions options)
    : m_options(std::move(options)),
      m_sandbox(m_options.stateDir),
      m_packages(m_options.stateDir + "/packages.json"_L1),
      m_properties(m_options.stateDir + "/properties.json"_L1, m_options.serial),
      m_system(*this, m_packages, m_properties),
      m_calls([this](Call& call) { return m_system.run(call); }) {}

VirtualDevice::~VirtualDevice() {
  // The services first: they hold the other ends of the calls' pipes.
  for (Connection* connection : std::as_const(m_connections)) connection->disconnect(this);
  qDeleteAll(m_connections);
}

QString VirtualDevice::prepare() {
  if (const QString problem = m_sandbox.prepare(m_options.toolPath); !problem.isEmpty()) return problem;
  m_files = std::make_unique<DeviceFiles>(m_sandbox.root());
  if (!m_files->isValid()) return u"cannot open "_s + m_sandbox.root();
  // Removes what an interrupted install left, as a real headset does at boot.
  QDir apps(m_sandbox.root() + "/data/app"_L1);
  const QStringList leftovers = apps.entryList({u"vmdl*.tmp"_s}, QDir::Dirs);
  for (const QString& name : leftovers) QDir(apps.filePath(name)).removeRecursively();
  if (!m_log.open(m_options.logFile)) return u"cannot write to "_s + m_options.logFile;
  if (!m_calls.listen(m_sandbox.runDir())) return u"cannot open a socket in "_s + m_sandbox.runDir();
  return {};
}

QString VirtualDevice::start() {
  m_port = m_options.port;
  if (const QString problem = reservePort(); !problem.isEmpty()) return problem;

  connect(&m_server, &QTcpServer::newConnection, this, [this] { acceptConnections(m_server); });
  connect(&m_network, &QTcpServer::newConnection, this, [this] { acceptConnections(m_network); });
  connect(&m_watch, &QTimer::timeout, this, &VirtualDevice::watchFaults);
  connect(&m_announce, &QTimer::timeout, this, &VirtualDevice::announce);
  m_state = faults().state;
  if (m_state != Faults::State::Gone && !listenNow()) return u"cannot listen on port %1"_s.arg(m_port);
  m_watch.start(kWatchMs);
  if (m_options.adbServerPort != 0) m_announce.start(kAnnounceMs);
  announce();
  return {};
}

QString VirtualDevice::reservePort() {
  // A bound socket that does not listen refuses connections and keeps the port reserved.
  m_reserved = UniqueFd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const int on = 1;
  ::setsockopt(m_reserved.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(m_port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof(address);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(m_reserved.get(), generic, length) != 0 ||
      ::getsockname(m_reserved.get(), generic, &length) != 0) {
    return u"port %1 is in use"_s.arg(m_port);
  }
  m_port = ntohs(address.sin_port);
  return {};
}

bool VirtualDevice::listenNow() {
  if (m_server.isListening()) return true;
  if (::listen(m_reserved.get(), SOMAXCONN) != 0) return false;
  return m_server.setSocketDescriptor(m_reserved.release());
}

void VirtualDevice::hide() {
  m_network.close();
  if (m_server.isListening()) {
    m_server.close();
    reservePort();
  }
  dropConnections();
}

QString VirtualDevice::networkAddress() const {
  // Of the loopback's many addresses one that no other headset on this computer has.
  constexpr quint32 net = (127U << 24U) | (77U << 16U);
  return QHostAddress(net | m_port).toString();
}

void VirtualDevice::listenOnNetwork(quint16 port) {
  // The headset's adb starts itself anew, so that the link over the cable is lost for a moment.
  QTimer::singleShot(kRebootDelayMs, this, [this, port] {
    m_network.close();
    m_network.listen(QHostAddress(networkAddress()), port);
    dropConnections();
  });
}

void VirtualDevice::dropConnections() {
  const QList<Connection*> all = m_connections;
  for (Connection* connection : all) connection->drop();
}

void VirtualDevice::acceptConnections(QTcpServer& server) {
  while (QTcpSocket* socket = server.nextPendingConnection()) {
    auto* connection = new Connection(socket, *this);
    m_connections.append(connection);
    connect(connection, &Connection::closed, this, [this, connection] {
      m_connections.removeOne(connection);
      connection->deleteLater();
    });
  }
}

QByteArray VirtualDevice::faultsText() const {
  QFile file(m_options.stateDir + "/faults"_L1);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void VirtualDevice::watchFaults() {
  const QByteArray text = faultsText();
  if (text == m_faultsText && !m_lost) return;
  m_faultsText = text;
  if (m_lost && text == m_faultsAtDrop) return;
  m_lost = false;
  // Read now, so that the free space counts from this moment and not from the next transfer.
  bytesAvailable();
  const Faults::State before = std::exchange(m_state, faults().state);
  if (m_rebooting) return;
  if (m_state == Faults::State::Gone) return hide();
  if (m_state == Faults::State::Device && before == Faults::State::Unauthorized) {
    for (Connection* connection : std::as_const(m_connections)) connection->authorize();
  } else if (m_state != before) {
    dropConnections();
  }
  listenNow();
  announce();
}

void VirtualDevice::announce() {
  // Like an emulator at boot: tell the adb server the port. The server tries it at once, and again for a
  // minute after the link is lost. Repeated while nobody is connected, this also reaches a server that was
  // started later.
  if (m_options.adbServerPort == 0 || !m_connections.isEmpty() || !m_server.isListening()) return;
  auto* socket = new QTcpSocket(this);
  connect(socket, &QTcpSocket::connected, socket, [this, socket] {
    const QByteArray request = "host:emulator:" + QByteArray::number(m_port);
    socket->write(QByteArray::number(request.size(), 16).rightJustified(4, '0') + request);
    socket->disconnectFromHost();
  });
  connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
  connect(socket, &QTcpSocket::errorOccurred, socket, &QObject::deleteLater);
  socket->connectToHost(u"127.0.0.1"_s, m_options.adbServerPort);
}

void VirtualDevice::linkLost() {
  if (faults().dropStaysGone) {
    m_lost = true;
    // Read again: the file may have changed since the last look.
    m_faultsAtDrop = faultsText();
    hide();
  } else {
    dropConnections();
  }
}

void VirtualDevice::reboot() {
  // May be called from a shell command's thread. The link stays up a moment longer, so that the command that
  // asked for it gets its answer.
  QMetaObject::invokeMethod(
      this, [this] { QTimer::singleShot(kRebootDelayMs, this, &VirtualDevice::goDown); },
      Qt::QueuedConnection);
}

void VirtualDevice::goDown() {
  m_rebooting = true;
  m_properties.forgetVolatile();
  hide();
  QTimer::singleShot(faults().rebootMs, this, [this] {
    m_rebooting = false;
    if (m_lost || m_state == Faults::State::Gone) return;
    listenNow();
    announce();
  });
}

QByteArray VirtualDevice::banner() const {
  return "device::ro.product.name=" + m_properties.value(u"ro.product.name"_s).toUtf8() +
         ";ro.product.model=" + m_properties.value(u"ro.product.model"_s).toUtf8() +
         ";ro.product.device=" + m_properties.value(u"ro.product.device"_s).toUtf8() +
         ";features=" + m_options.features.toUtf8();
}

Faults VirtualDevice::faults() const {
  return Faults::read(m_options.stateDir + "/faults"_L1);
}

void VirtualDevice::logService(const QByteArray& name) {
  m_log.write(name);
}

Service* VirtualDevice::openService(const QByteArray& name, Stream& stream) {
  if (name.startsWith("sync:")) return new SyncService(stream, *this);
  if (const std::optional<ShellRequest> request = ShellRequest::parse(name)) {
    return new ShellService(stream, m_sandbox, *request, faults());
  }
  if (name.startsWith("reboot:")) {
    reboot();
    return new Answer(stream, {});
  }
  if (name.startsWith("tcpip:")) {
    const QByteArray port = name.sliced(qstrlen("tcpip:"));
    listenOnNetwork(port.toUShort());
    return new Answer(stream, "restarting in TCP mode port: " + port + '\n');
  }
  if (name.startsWith("root:")) return new Answer(stream, "adbd cannot run as root in production builds\n");
  if (name.startsWith("unroot:")) return new Answer(stream, "adbd not running as root\n");
  if (name.startsWith("remount:"))
    return new Answer(stream, "Not running as root. Try \"adb root\" first.\n");
  return nullptr;
}

qint64 VirtualDevice::storageSize() const {
  return kStorageSize;
}

qint64 VirtualDevice::bytesAvailable() const {
  const std::optional<qint64> asked = faults().storageFreeBytes;
  const qint64 used = m_files->bytesUsed();
  if (!asked) return kStorageSize - kUsedAlways - used;
  const QMutexLocker lock(&m_storageMutex);
  if (m_freeAsked != asked) {
    m_freeAsked = asked;
    m_usedWhenAsked = used;
  }
  return std::max<qint64>(0, *asked + m_usedWhenAsked - used);
}

}  // namespace orvanta::headset
