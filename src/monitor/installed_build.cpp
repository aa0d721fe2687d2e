#include "monitor/installed_build.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString dumpsysLine(const Host& host, const QString& package) {
  return AdbPrefix(host) + u" shell dumpsys package "_s + package;
}

QString installedBuildIn(const QString& output) {
  constexpr auto code = "versionCode="_L1;
  const qsizetype start = output.indexOf(code);
  const qsizetype end = output.indexOf("minSdk="_L1);
  if (start < 0 || end < start + code.size()) return {};
  QStringView number = QStringView(output).sliced(start + code.size(), end - start - code.size());
  while (number.startsWith(u' ')) number = number.sliced(1);
  while (number.endsWith(u' ')) number.chop(1);
  return number.toString();
}

BuildVerdict compareBuilds(const QString& onDevice, const QString& inPackage) {
  if (onDevice.isEmpty()) return BuildVerdict::NotInstalled;
  bool deviceIsNumber = false;
  bool packageIsNumber = false;
  const double difference =
      onDevice.trimmed().toDouble(&deviceIsNumber) - inPackage.trimmed().toDouble(&packageIsNumber);
  if (!deviceIsNumber || !packageIsNumber || difference < 0) return BuildVerdict::Older;
  if (difference > 0) return BuildVerdict::Newer;
  return onDevice == inPackage ? BuildVerdict::Same : BuildVerdict::Undecided;
}

}  // namespace orvanta
