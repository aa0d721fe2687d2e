#include "backups/manifest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <algorithm>
#include <filesystem>

#include "adb/device_names.h"
#include "adb/storage.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int thisFormat = 1;
constexpr qint64 longestManifest = 256 * 1024 * 1024;  // bytes
const QString packagePart = u"apk"_s;

const Bilingual damaged = {u"清单不完整或已损坏"_s, u"the manifest is cut off or damaged"_s};

/// Thrown inside this file only.
struct Refusal {
  Bilingual reason;
};

Bilingual wrong(const QString& what) {
  return Bilingual{u"清单有错误：%1"_s, u"the manifest is wrong: %1"_s}.with(what);
}

Bilingual leadingOut(const QString& path) {
  return Bilingual{u"清单里的路径越出了备份：%1"_s, u"a path in the manifest leads out: %1"_s}.with(path);
}

QString text(const QJsonObject& object, QStringView key, bool needed = false) {
  const QJsonValue value = object[key];
  if (value.isUndefined() && !needed) return {};
  if (!value.isString() || (needed && value.toString().isEmpty())) throw Refusal{wrong(key.toString())};
  return value.toString();
}

qint64 number(const QJsonObject& object, QStringView key) {
  const QJsonValue value = object[key];
  const double found = value.toDouble(-1);
  if (!value.isDouble() || found < 0 || found > static_cast<double>(largestFile) ||
      found != static_cast<double>(value.toInteger(-1)))
    throw Refusal{wrong(key.toString())};
  return value.toInteger();
}

bool isPlainName(const QString& name) {
  return !name.isEmpty() && name != u"."_s && name != u".."_s &&
         std::none_of(name.begin(), name.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
}

/// Whether `path` stays in the folders of the app: `apk/NAME`, or `obb/` or `data/` and names below.
bool staysInside(const QString& path, const QString& appFolder) {
  const QStringList names = path.split(u'/');
  if (!std::all_of(names.begin(), names.end(), isPlainName)) return false;
  if (names[0] == packagePart) return names.size() == 2;
  const bool folder = names[0] == "obb"_L1 || names[0] == "data"_L1;
  return folder && names.size() > 2 && (appFolder.isEmpty() || names[1] == appFolder);
}

BackupFile fileIn(const QJsonValue& value, const QString& package) {
  const QJsonObject object = value.toObject();
  static const QRegularExpression hash(u"^[0-9a-f]{64}$"_s);
  BackupFile file;
  file.path = text(object, u"path", true);
  file.onHeadset = text(object, u"onHeadset");
  file.size = number(object, u"size");
  file.time = object.contains(u"time") ? number(object, u"time") : 0;
  file.sha256 = text(object, u"sha256", true).toLatin1();
  const bool otherDesktop = file.path.contains(u'\\') || file.path.contains(u':');
  if (otherDesktop || !staysInside(file.path, {}) || !staysInside(file.known(), package) ||
      file.path.section(u'/', 0, 0) != file.part())
    throw Refusal{leadingOut(file.path)};
  if (!hash.match(QString::fromLatin1(file.sha256)).hasMatch()) throw Refusal{wrong(u"sha256"_s)};
  return file;
}

BackupManifest manifestOf(const QJsonObject& object) {
  const qint64 format = number(object, u"format");
  if (format > thisFormat)
    throw Refusal{{u"这个备份来自更新的版本"_s, u"this backup was made by a later version"_s}};
  if (format < 1) throw Refusal{wrong(u"format"_s)};
  BackupManifest manifest;
  manifest.package = text(object, u"package", true);
  if (!isFitPackageName(manifest.package)) throw Refusal{wrong(u"package"_s)};
  manifest.label = text(object, u"label");
  manifest.version = text(object, u"version");
  manifest.build = text(object, u"build");
  manifest.date = QDateTime::fromString(text(object, u"date"), Qt::ISODate);
  const QJsonObject headset = object[u"headset"].toObject();
  manifest.headsetModel = text(headset, u"model");
  manifest.headsetSerial = text(headset, u"serial");
  for (const auto& value : object[u"emptyFolders"].toArray()) {
    const QString folder = value.toString();
    if (!staysInside(folder, manifest.package) || folder.section(u'/', 0, 0) == packagePart)
      throw Refusal{leadingOut(folder)};
    manifest.emptyFolders << folder;
  }
  for (const auto& line : object[u"unreadable"].toArray()) manifest.unreadable << line.toString();
  if (!object[u"files"].isArray()) throw Refusal{wrong(u"files"_s)};
  QSet<QString> places;
  for (const auto& value : object[u"files"].toArray()) {
    manifest.files << fileIn(value, manifest.package);
    const BackupFile& file = manifest.files.constLast();
    const QString place = file.path.toCaseFolded();
    if (places.contains(place)) throw Refusal{wrong(file.path)};
    places << place;
  }
  return manifest;
}

}  // namespace

QString BackupFile::devicePath() const {
  return part() == packagePart ? QString() : appFilesRoot + known();
}

qint64 BackupManifest::bytes(const QString& part) const {
  qint64 sum = 0;
  for (const BackupFile& file : files)
    if (part.isEmpty() || file.part() == part) sum += file.size;
  return sum;
}

QList<BackupFile> BackupManifest::filesOf(const QString& part) const {
  QList<BackupFile> found;
  std::copy_if(files.begin(), files.end(), std::back_inserter(found),
               [&part](const BackupFile& file) { return file.part() == part; });
  return found;
}

QByteArray manifestText(const BackupManifest& manifest) {
  QJsonArray files;
  for (const BackupFile& file : manifest.files) {
    QJsonObject object{{u"path"_s, file.path},
                       {u"size"_s, file.size},
                       {u"time"_s, file.time},
                       {u"sha256"_s, QString::fromLatin1(file.sha256)}};
    if (!file.onHeadset.isEmpty()) object[u"onHeadset"_s] = file.onHeadset;
    files << object;
  }
  QJsonObject object{
      {u"format"_s, thisFormat},
      {u"package"_s, manifest.package},
      {u"label"_s, manifest.label},
      {u"version"_s, manifest.version},
      {u"build"_s, manifest.build},
      {u"date"_s, manifest.date.toOffsetFromUtc(manifest.date.offsetFromUtc()).toString(Qt::ISODate)},
      {u"headset"_s, QJsonObject{{u"model"_s, manifest.headsetModel}, {u"serial"_s, manifest.headsetSerial}}},
      {u"files"_s, files}};
  if (!manifest.emptyFolders.isEmpty())
    object[u"emptyFolders"_s] = QJsonArray::fromStringList(manifest.emptyFolders);
  if (!manifest.unreadable.isEmpty())
    object[u"unreadable"_s] = QJsonArray::fromStringList(manifest.unreadable);
  return QJsonDocument(object).toJson();
}

std::variant<BackupManifest, Bilingual> readManifest(const QByteArray& text) {
  const QJsonDocument document = QJsonDocument::fromJson(text);
  if (!document.isObject()) return damaged;
  try {
    return manifestOf(document.object());
  } catch (const Refusal& refusal) {
    return refusal.reason;
  }
}

bool writeManifest(const QString& folder, const BackupManifest& manifest) {
  QSaveFile file(folder + u'/' + manifestName);
  const QByteArray text = manifestText(manifest);
  return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

bool writeRecord(const QString& folder, const BackupManifest& manifest) {
  // To the disk it would wait for all that was pulled before.
  const QString place = folder + u'/' + recordName;
  QFile file(place + u".new"_s);
  const QByteArray text = manifestText(manifest);
  // On a full disk only the flush fails, and the record that is there must stay.
  if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush()) return false;
  file.close();
  std::error_code failure;
  std::filesystem::rename(file.fileName().toStdU16String(), place.toStdU16String(), failure);
  return file.error() == QFile::NoError && !failure;
}

std::variant<BackupManifest, Bilingual> manifestIn(const QString& folder, const QString& name) {
  QFile file(folder + u'/' + name);
  if (!file.open(QIODevice::ReadOnly)) return Bilingual{u"清单不能读取"_s, u"the manifest cannot be read"_s};
  if (file.size() > longestManifest) return damaged;
  return readManifest(file.readAll());
}

}  // namespace orvanta
