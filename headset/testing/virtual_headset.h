#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace orvanta::test {

/// How a headset for a test is to be.
struct HeadsetOptions {
  int apps = 0;                ///< apps that are on it from the start
  bool startAdbServer = true;  ///< false: the first adb call of the test starts it
};

/// What an adb call gave.
struct AdbReply {
  int exitCode = -1;  ///< -1: it did not end in time
  QString output;
  QString errors;
};

/// One service that was opened on the headset.
struct OpenedService {
  QDateTime time;
  QString text;
};

/// A package as the headset remembers it.
struct HeadsetPackage {
  qint64 versionCode = 0;
  QString versionName;
  bool isInstalled = true;  ///< false: only its data is left
  QMap<QString, bool> grants;
};

/// A headset with its own adb server, for one test. While it exists, this process's environment points there
/// (server port, HOME and so on), so that every adb that the program under test starts finds this headset and
/// nothing else. Both end with the object, also if the test program crashes.
class VirtualHeadset {
 public:
  VirtualHeadset();
  /// A further headset, at an adb server that belongs to another one.
  explicit VirtualHeadset(int adbServerPort) : m_serverPort(adbServerPort), m_isFurther(true) {}
  ~VirtualHeadset();
  VirtualHeadset(const VirtualHeadset&) = delete;
  VirtualHeadset& operator=(const VirtualHeadset&) = delete;

  /// Starts the headset and waits until adb shows it. On failure the reason; empty when all is well:
  /// `QCOMPARE(headset.start(), QString());`
  QString start(const HeadsetOptions& options = {});
  /// Ends the headset only; its state stays and start() brings it back on the same port.
  void stop();

  /// Sets or removes one line of the faults file. It takes effect within some 40 ms.
  void setFault(const QString& key, const QString& value);
  void clearFault(const QString& key);
  void clearFaults();

  /// The services opened since the last clearLog(), as adb asked for them.
  QStringList services() const;
  QList<OpenedService> serviceLog() const;
  void clearLog();

  /// Waits until adb shows the headset in `state`: "device", "offline", "unauthorized"; empty: not at all.
  bool waitForState(const QString& state, int timeoutMs = 10000) const;
  bool waitForDevice(int timeoutMs = 30000) const {
    return waitForState(QStringLiteral("device"), timeoutMs);
  }

  /// The name under which adb shows it.
  QString serial() const { return m_serial; }
  int adbServerPort() const { return m_serverPort; }
  /// A folder for the test's own files.
  QString workPath(const QString& name) const { return m_dir.filePath(name); }

  /// The local path of a path on the headset, such as "/sdcard/Android/obb".
  QString devicePath(const QString& path) const;
  bool writeDeviceFile(const QString& path, const QByteArray& content) const;
  /// Null if there is no such file.
  QByteArray readDeviceFile(const QString& path) const;

  /// What the headset's package manager knows besides its own system packages, by name.
  QMap<QString, HeadsetPackage> packages() const;

  /// Runs adb with `arguments` against this headset's server.
  AdbReply adb(const QStringList& arguments, int timeoutMs = 60000) const;

 private:
  void setEnvironment(const char* name, const QByteArray& value);
  QString launch(QProcess& process, const QString& stateDir, QStringList arguments, int* port);
  void writeFaults() const;

  QTemporaryDir m_dir;
  QString m_serial;
  int m_port = 0;
  int m_serverPort = 0;
  bool m_isFurther = false;
  QMap<QString, QString> m_faults;
  QMap<QByteArray, QByteArray> m_oldEnvironment;
  std::unique_ptr<QProcess> m_headset;
};

}  // namespace orvanta::test
