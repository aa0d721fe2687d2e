#include "badging.h"

#include <QProcess>
#include <QRegularExpression>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

/// The value of ` key='value'` in a line; a value may hold apostrophes of its own.
QString attribute(const QString& line, const QString& key) {
  const QRegularExpression pattern(u" %1='(.*?)'(?= [\\w-]+='|\\s*$)"_s.arg(key));
  return pattern.match(line).captured(1);
}

/// The texts between apostrophes.
QStringList quoted(const QString& line) {
  static const QRegularExpression pattern(u"'([^']*)'"_s);
  QStringList result;
  QRegularExpressionMatchIterator matches = pattern.globalMatch(line);
  while (matches.hasNext()) result.append(matches.next().captured(1));
  return result;
}

QString aaptSays(const QStringList& arguments) {
  QProcess aapt;
  aapt.setStandardInputFile(QProcess::nullDevice());
  aapt.start(u"aapt"_s, arguments);
  aapt.waitForFinished(-1);
  return QString::fromUtf8(aapt.readAllStandardOutput());
}

}  // namespace

std::optional<Badging> parseBadging(const QString& text) {
  Badging badging;
  const QStringList lines = text.split(u'\n');
  for (const QString& line : lines) {
    if (line.startsWith("package:"_L1)) {
      badging.package = attribute(line, u"name"_s);
      badging.versionCode = attribute(line, u"versionCode"_s).toLongLong();
      badging.versionName = attribute(line, u"versionName"_s);
      badging.split = attribute(line, u"split"_s);
    } else if (line.startsWith("sdkVersion:"_L1)) {
      badging.minSdk = quoted(line).value(0).toInt();
    } else if (line.startsWith("targetSdkVersion:"_L1)) {
      badging.targetSdk = quoted(line).value(0).toInt();
    } else if (line.startsWith("uses-permission:"_L1)) {
      const QString name = quoted(line).value(0);
      if (!badging.permissions.contains(name)) badging.permissions.append(name);
    } else if (line.startsWith("native-code:"_L1)) {
      badging.nativeCode = quoted(line);
    } else if (line.startsWith("testOnly="_L1)) {
      badging.isTestOnly = true;
    } else if (line.startsWith("launchable-activity:"_L1)) {
      badging.isLaunchable = true;
    }
  }
  if (badging.package.isEmpty()) return std::nullopt;
  return badging;
}

bool requiresSplits(const QString& file) {
  static const QRegularExpression required(u"android:isSplitRequired\\([^)]*\\)=\\(type 0x12\\)0xffffffff"_s);
  return aaptSays({u"d"_s, u"xmltree"_s, file, u"AndroidManifest.xml"_s}).contains(required);
}

std::optional<Badging> readBadging(const QString& file) {
  return parseBadging(aaptSays({u"d"_s, u"badging"_s, file}));
}

}  // namespace orvanta::headset
