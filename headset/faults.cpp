#include "faults.h"

#include <QFile>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

void takeNumber(const QString& value, auto& target) {
  bool ok = false;
  const qint64 number = value.toLongLong(&ok);
  if (ok && number >= 0) target = static_cast<std::remove_reference_t<decltype(target)>>(number);
}

}  // namespace

Faults Faults::read(const QString& path) {
  Faults faults;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return faults;
  const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
  for (const QString& line : lines) {
    const qsizetype equals = line.indexOf(u'=');
    if (equals < 0 || line.startsWith(u'#')) continue;
    const QString key = line.left(equals).trimmed();
    const QString value = line.mid(equals + 1).trimmed();
    if (key == "state"_L1) {
      if (value == "offline"_L1) faults.state = State::Offline;
      if (value == "unauthorized"_L1) faults.state = State::Unauthorized;
      if (value == "gone"_L1) faults.state = State::Gone;
    } else if (key == "latency_ms"_L1) {
      takeNumber(value, faults.latencyMs);
    } else if (key == "reboot_ms"_L1) {
      takeNumber(value, faults.rebootMs);
    } else if (key == "bytes_per_second"_L1) {
      takeNumber(value, faults.bytesPerSecond);
    } else if (key == "storage_free_bytes"_L1) {
      takeNumber(value, faults.storageFreeBytes);
    } else if (key == "drop_after_push_bytes"_L1) {
      takeNumber(value, faults.dropAfterPushBytes);
    } else if (key == "drop_after_install_bytes"_L1) {
      takeNumber(value, faults.dropAfterInstallBytes);
    } else if (key == "drop_stays_gone"_L1) {
      faults.dropStaysGone = value == "1"_L1;
    } else if (key == "install_failure"_L1) {
      faults.installFailure = value;
    } else if (key == "uninstall_failure"_L1) {
      faults.uninstallFailure = value;
    }
  }
  return faults;
}

}  // namespace orvanta::headset
