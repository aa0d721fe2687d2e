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
// What the headset's own system and its first apps take.
constexpr qint64 kUsedAlways = 12 * kGiga;

/// Says one text and hangs up: the answer of services that a headset for users does not give.
class Refusal : public Service {
 public:
  Refusal(Stream& stream, QByteArray text) : Service(stream), m_text(std::move(text)) {}
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
  // The services first: they hold the other ends of what the calls read.
  for (Connection* connection : std::as_const(m_connections)) connection->disconnect(this);
  qDeleteAll(m_connections);
}

QString VirtualDevice::prepare() {
  if (const QString problem = m_sandbox.prepare(m_options.toolPath); !problem.isEmpty()) return problem;
  m_files = std::make_unique<DeviceFiles>(m_sandbox.root());
  if (!m_files->isValid()) return u"cannot open "_s + m_sandbox.root();
  // What an installation left that was broken off, as a real headset does when it starts.
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

  connect(&m_server, &QTcpServer::newConnection, this, &VirtualDevice::acceptConnections);
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
  // A bound socket that does not listen refuses connections and keeps the port from other programs meanwhile.
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
  if (m_server.isListening()) {
    m_server.close();
    reservePort();
  }
  dropConnections();
}

void VirtualDevice::dropConnections() {
  const QList<Connection*> all = m_connections;
  for (Connection* connection : all) connection->drop();
}

void VirtualDevice::acceptConnections() {
  while (QTcpSocket* socket = m_server.nextPendingConnection()) {
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
  // Looked at now, so that the free space counts from this moment and not from the next transfer.
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
  // What an emulator does when it comes up: it tells the adb server its port. The server then tries the port
  // at once, and again for a minute when the link is lost. Asked anew for as long as nobody is connected, it
  // also reaches a server that was started later.
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
    // The file of this very moment: the last look may have been before its last change.
    m_faultsAtDrop = faultsText();
    hide();
  } else {
    dropConnections();
  }
}

void VirtualDevice::reboot() {
  // The call may come from a thread of the shell's commands. The link holds a little longer, so that the
  // command that asked for it gets its answer.
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
    return new Refusal(stream, {});
  }
  if (name.startsWith("root:")) return new Refusal(stream, "adbd cannot run as root in production builds\n");
  if (name.startsWith("unroot:")) return new Refusal(stream, "adbd not running as root\n");
  if (name.startsWith("remount:"))
    return new Refusal(stream, "Not running as root. Try \"adb root\" first.\n");
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
