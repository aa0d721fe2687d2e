#include "apk/icon_entries.h"

#include <QRegularExpression>

#include "core/paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString temporaryZipPath(const QString& apkPath) {
  return apkPath.left(qMax<qsizetype>(0, apkPath.size() - 3)) + u"zip"_s;
}

QStringList iconEntries(const QString& badgingIcon) {
  QStringList entries = {uR"(res\mipmap-mdpi\app_icon.png)"_s, uR"(res\drawable-mdpi-v4\app_icon.png)"_s,
                         uR"(res\mipmap-mdpi-v4\app_icon.png)"_s};
  if (badgingIcon.endsWith("png"_L1)) entries.prepend(QString(badgingIcon).replace(u'/', u'\\').trimmed());
  return entries;
}

QString iconFileName(const QString& entry) {
  const QString name = BaseName(entry, HostStyle::windows());
  // A colon is a drive or a hidden stream of a file on Windows.
  const bool leadsAway = name == u"."_s || name == u".."_s || name.contains(u':') || name.contains(QChar(0));
  // Windows takes such a name for a port or a printer, whatever its ending.
  static const QRegularExpression device(u"^\\s*(con|prn|aux|nul|com\\d|lpt\\d)\\s*(\\.|$)"_s,
                                         QRegularExpression::CaseInsensitiveOption);
  return leadsAway || device.match(name).hasMatch() ? QString() : name;
}

}  // namespace orvanta
