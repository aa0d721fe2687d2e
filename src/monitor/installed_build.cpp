#include "monitor/installed_build.h"

#include <QRegularExpression>
#include <optional>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// A plain decimal number, with blanks and line ends around it; nothing for anything else.
std::optional<double> numberIn(const QString& text) {
  static const QRegularExpression plain(u"^[+-]?\\d+(\\.\\d+)?$"_s);
  const QString trimmed = text.trimmed();
  if (!plain.match(trimmed).hasMatch()) return std::nullopt;
  return trimmed.toDouble();
}

}  // namespace

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
  const auto device = numberIn(onDevice);
  const auto package = numberIn(inPackage);
  if (!device || !package || *device < *package) return BuildVerdict::Older;
  if (*device > *package) return BuildVerdict::Newer;
  return onDevice == inPackage ? BuildVerdict::Same : BuildVerdict::Undecided;
}

}  // namespace orvanta
