#include "testing/virtual_headset.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QThread>

namespace orvanta::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int kStartTimeoutMs = 120000;
constexpr int kEndTimeoutMs = 5000;
constexpr int kPollMs = 20;

bool isFree(int port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<quint16>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool free = ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  ::close(fd);
  return free;
}

/// A port for an adb server, below the kernel's range of ephemeral ports.
int freeServerPort() {
  for (;;) {
    const int port = QRandomGenerator::global()->bounded(20000, 32000);
    if (isFree(port)) return port;
  }
}

QString unescaped(const QString& text) {
  QString result;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] != u'\\' || i + 1 == text.size()) {
      result += text[i];
      continue;
    }
    const QChar next = text[++i];
    if (next == u'n') {
      result += u'\n';
    } else if (next == u't') {
      result += u'\t';
    } else if (next == u'x') {
      result += QChar(text.mid(i + 1, 2).toUShort(nullptr, 16));
      i += 2;
    } else {
      result += next;
    }
  }
  return result;
}

void end(std::unique_ptr<QProcess>& process) {
  if (process == nullptr) return;
  process->terminate();
  if (!process->waitForFinished(kEndTimeoutMs)) {
    process->kill();
    process->waitForFinished(kEndTimeoutMs);
  }
  process.reset();
}

}  // namespace

VirtualHeadset::VirtualHeadset() : m_serverPort(freeServerPort()) {
  QDir(m_dir.path()).mkpath(u"home"_s);
  setEnvironment("HOME", QFile::encodeName(m_dir.filePath(u"home"_s)));
  setEnvironment("ANDROID_ADB_SERVER_PORT", QByteArray::number(m_serverPort));
  setEnvironment("ANDROID_ADB_LOG_PATH", QFile::encodeName(m_dir.filePath(u"adb.log"_s)));
  // No headset on the developer's desk and no other test's: no USB, no mDNS, no port scan.
  setEnvironment("ADB_USB", "0");
  setEnvironment("ADB_MDNS", "0");
  setEnvironment("ADB_LOCAL_TRANSPORT_MAX_PORT", "5553");
  setEnvironment("ANDROID_SERIAL", {});
  setEnvironment("ADB_VENDOR_KEYS", {});
}

VirtualHeadset::~VirtualHeadset() {
  end(m_headset);
  if (!m_isFurther) adb({u"kill-server"_s});
  for (auto it = m_oldEnvironment.begin(); it != m_oldEnvironment.end(); ++it) {
    if (it.value().isNull()) {
      qunsetenv(it.key().constData());
    } else {
      qputenv(it.key().constData(), it.value());
    }
  }
}

void VirtualHeadset::setEnvironment(const char* name, const QByteArray& value) {
  m_oldEnvironment.insert(name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
  if (value.isEmpty()) {
    qunsetenv(name);
  } else {
    qputenv(name, value);
  }
}

QString VirtualHeadset::launch(QProcess& process, const QString& stateDir, QStringList arguments, int* port) {
  const QString readyFile = stateDir + ".ready"_L1;
  QFile::remove(readyFile);
  arguments << u"--state"_s << stateDir << u"--ready-file"_s << readyFile << u"--exit-with-parent"_s
            << u"--adb-server"_s << QString::number(m_serverPort);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(QStringLiteral(ORVANTA_VIRTUAL_HEADSET), arguments);
  const QDeadlineTimer deadline(kStartTimeoutMs);
  while (!QFileInfo::exists(readyFile)) {
    if (process.waitForFinished(kPollMs) || process.state() == QProcess::NotRunning ||
        deadline.hasExpired()) {
      return u"the virtual headset did not start: "_s + QString::fromUtf8(process.readAll());
    }
  }
  QFile ready(readyFile);
  if (!ready.open(QIODevice::ReadOnly)) return ready.errorString();
  *port = ready.readAll().trimmed().toInt();
  return {};
}

QString VirtualHeadset::start(const HeadsetOptions& options) {
  if (options.startAdbServer && adb({u"start-server"_s}).exitCode != 0)
    return u"the adb server did not start"_s;
  QStringList arguments = {u"--port"_s, QString::number(m_port)};
  if (!m_isFurther) arguments << u"--own-adb-server"_s;
  if (options.apps > 0) arguments << u"--apps"_s << QString::number(options.apps);
  m_headset = std::make_unique<QProcess>();
  const QString problem = launch(*m_headset, m_dir.filePath(u"state"_s), arguments, &m_port);
  if (!problem.isEmpty()) return problem;
  m_serial = u"emulator-%1"_s.arg(m_port - 1);
  if (!options.startAdbServer || m_faults.contains(u"state"_s)) return {};
  return waitForDevice() ? QString() : u"adb does not show the headset"_s;
}

void VirtualHeadset::stop() {
  end(m_headset);
}

void VirtualHeadset::setFault(const QString& key, const QString& value) {
  m_faults.insert(key, value);
  writeFaults();
}

void VirtualHeadset::clearFault(const QString& key) {
  m_faults.remove(key);
  writeFaults();
}

void VirtualHeadset::clearFaults() {
  m_faults.clear();
  writeFaults();
}

void VirtualHeadset::writeFaults() const {
  QDir(m_dir.path()).mkpath(u"state"_s);
  QSaveFile file(m_dir.filePath(u"state/faults"_s));
  if (!file.open(QIODevice::WriteOnly)) return;
  for (auto it = m_faults.begin(); it != m_faults.end(); ++it) {
    file.write(u"%1=%2\n"_s.arg(it.key(), it.value()).toUtf8());
  }
  file.commit();
}

QList<OpenedService> VirtualHeadset::serviceLog() const {
  QFile file(m_dir.filePath(u"state/services.log"_s));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QList<OpenedService> result;
  const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
  for (const QString& line : lines) {
    const QDateTime time = QDateTime::fromString(line.section(u'\t', 0, 0), Qt::ISODateWithMs);
    result.append({time, unescaped(line.section(u'\t', 1))});
  }
  return result;
}

QStringList VirtualHeadset::services() const {
  QStringList result;
  const QList<OpenedService> log = serviceLog();
  for (const OpenedService& service : log) result.append(service.text);
  return result;
}

void VirtualHeadset::clearLog() {
  QFile::resize(m_dir.filePath(u"state/services.log"_s), 0);
}

bool VirtualHeadset::waitForState(const QString& state, int timeoutMs) const {
  for (const QDeadlineTimer deadline(timeoutMs);; QThread::msleep(kPollMs)) {
    const QStringList lines = adb({u"devices"_s}).output.split(u'\n');
    QString shown;
    for (const QString& line : lines) {
      if (line.startsWith(m_serial + u'\t')) shown = line.section(u'\t', 1);
    }
    if (shown == state) return true;
    if (deadline.hasExpired()) return false;
  }
}

QString VirtualHeadset::devicePath(const QString& path) const {
  QString inside = path;
  if (path == "/sdcard"_L1 || path.startsWith("/sdcard/"_L1)) inside = "/storage/emulated/0"_L1 + path.mid(7);
  return m_dir.filePath(u"state/root"_s) + inside;
}

bool VirtualHeadset::writeDeviceFile(const QString& path, const QByteArray& content) const {
  const QString local = devicePath(path);
  QDir().mkpath(QFileInfo(local).path());
  QFile file(local);
  return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray VirtualHeadset::readDeviceFile(const QString& path) const {
  QFile file(devicePath(path));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray content = file.readAll();
  return content.isNull() ? QByteArray("") : content;
}

QMap<QString, HeadsetPackage> VirtualHeadset::packages() const {
  QFile file(m_dir.filePath(u"state/packages.json"_s));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QMap<QString, HeadsetPackage> result;
  const QJsonArray list = QJsonDocument::fromJson(file.readAll()).array();
  for (const auto& value : list) {
    if (value[u"system"].toBool()) continue;
    HeadsetPackage package;
    package.versionCode = value[u"versionCode"].toInteger();
    package.versionName = value[u"versionName"].toString();
    package.isInstalled = value[u"installed"].toBool();
    const QJsonObject grants = value[u"grants"].toObject();
    for (auto it = grants.begin(); it != grants.end(); ++it)
      package.grants.insert(it.key(), it.value().toBool());
    result.insert(value[u"name"].toString(), package);
  }
  return result;
}

AdbReply VirtualHeadset::adb(const QStringList& arguments, int timeoutMs) const {
  QProcess process;
  process.setStandardInputFile(QProcess::nullDevice());
  process.start(u"adb"_s, arguments);
  AdbReply reply;
  if (process.waitForFinished(timeoutMs)) {
    reply.exitCode = process.exitCode();
  } else {
    process.kill();
    process.waitForFinished(kEndTimeoutMs);
  }
  reply.output = QString::fromUtf8(process.readAllStandardOutput());
  reply.errors = QString::fromUtf8(process.readAllStandardError());
  return reply;
}

}  // namespace orvanta::test
