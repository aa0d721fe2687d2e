#pragma once

#include <QString>
#include <optional>

namespace orvanta::headset {

/// What goes wrong on request. The file is read again for every connection and service, so that a test can
/// change it while the headset runs. README.md lists the keys.
struct Faults {
  enum class State { Device, Offline, Unauthorized, Gone };

  State state = State::Device;
  int latencyMs = 0;
  int rebootMs = 1500;
  qint64 bytesPerSecond = 0;  ///< 0: as fast as it goes
  std::optional<qint64> storageFreeBytes;
  std::optional<qint64> dropAfterPushBytes;
  std::optional<qint64> dropAfterInstallBytes;
  bool dropStaysGone = false;
  QString installFailure;
  QString uninstallFailure;

  /// Reads `path`; a missing file, an unknown key or a value that does not parse changes nothing.
  static Faults read(const QString& path);
};

}  // namespace orvanta::headset
