#include "badging.h"

#include <zip.h>

#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include "device-tools/badging/badging.h"
#include "device-tools/badging/manifest.h"
#include "device-tools/badging/zip_archive.h"

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

namespace reader = orvanta::badging;

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

// Numbers of the platform's attributes.
constexpr uint32_t kTestOnly = 0x01010272;
constexpr uint32_t kIsSplitRequired = 0x01010591;

/// The processors that `file` has libraries for.
QStringList nativeCode(const QString& file) {
  zip_t* archive = zip_open(QFile::encodeName(file).constData(), ZIP_RDONLY, nullptr);
  if (!archive) return {};
  QSet<QString> found;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
    const QString name = QString::fromUtf8(zip_get_name(archive, static_cast<zip_uint64_t>(i), 0));
    if (name.startsWith("lib/"_L1) && name.endsWith(".so"_L1)) found.insert(name.section(u'/', 1, 1));
  }
  zip_discard(archive);
  return found.values();
}

/// What the reader's lines leave out.
void readSwitches(const reader::ZipArchive& archive, Badging& badging) {
  reader::Work work;
  reader::ResourceTable table(work);
  reader::Manifest manifest(table, work);
  reader::Blob content;
  if (archive.manifest(content) != reader::ZipArchive::Result::Ready || !manifest.load(content.bytes()))
    return;
  std::string_view ignored;
  while (manifest.next() != reader::Manifest::Event::Done) {
    const auto element = manifest.element();
    if (element == "manifest") badging.requiresSplits |= manifest.integer(kIsSplitRequired, 0, ignored) != 0;
    if (element == "application") badging.isTestOnly |= manifest.integer(kTestOnly, 0, ignored) != 0;
  }
}

}  // namespace

std::optional<Badging> readBadging(const QString& file) {
  reader::FileSource source;
  reader::Output lines(-1);
  reader::Output errors(-1);
  if (!source.open(QFile::encodeName(file).constData())) return std::nullopt;
  reader::dump("badging", source, lines, errors);
  Badging badging;
  for (const QString& line : QString::fromStdString(lines.text()).split(u'\n')) {
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
    } else if (line.startsWith("launchable-activity:"_L1)) {
      badging.isLaunchable = true;
    }
  }
  if (badging.package.isEmpty()) return std::nullopt;
  reader::ZipArchive archive(source);
  if (archive.open()) readSwitches(archive, badging);
  badging.nativeCode = nativeCode(file);
  return badging;
}

}  // namespace orvanta::headset
