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

BuildVerdict compareBuilds(const QString& onDevice, const QString& inPackage) {
  if (onDevice.isEmpty()) return BuildVerdict::NotInstalled;
  const auto device = numberIn(onDevice);
  const auto package = numberIn(inPackage);
  if (!device || !package || *device < *package) return BuildVerdict::Older;
  if (*device > *package) return BuildVerdict::Newer;
  return onDevice == inPackage ? BuildVerdict::Same : BuildVerdict::Undecided;
}

}  // namespace orvanta
