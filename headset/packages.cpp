#include "packages.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFirstUserId = 10100;

QJsonObject toJson(const Package& package) {
  QJsonObject grants;
  for (auto it = package.grants.begin(); it != package.grants.end(); ++it)
    grants.insert(it.key(), it.value());
  return {
      {u"name"_s, package.name},
      {u"versionCode"_s, package.versionCode},
      {u"versionName"_s, package.versionName},
      {u"minSdk"_s, package.minSdk},
      {u"targetSdk"_s, package.targetSdk},
      {u"codePath"_s, package.codePath},
      {u"splits"_s, QJsonArray::fromStringList(package.splits)},
      {u"permissions"_s, QJsonArray::fromStringList(package.permissions)},
      {u"grants"_s, grants},
      {u"categories"_s, QJsonArray::fromStringList(package.categories)},
      {u"firstInstall"_s, package.firstInstall.toString(Qt::ISODate)},
      {u"lastUpdate"_s, package.lastUpdate.toString(Qt::ISODate)},
      {u"installer"_s, package.installer},
      {u"userId"_s, package.userId},
      {u"system"_s, package.isSystem},
      {u"installed"_s, package.isInstalled},
      {u"enabled"_s, package.isEnabled},
  };
}

QStringList texts(const QJsonValue& value) {
  QStringList result;
  const QJsonArray array = value.toArray();
  for (const auto& item : array) result.append(item.toString());
  return result;
}

Package fromJson(const QJsonObject& json) {
  Package package;
  package.name = json[u"name"].toString();
  package.versionCode = json[u"versionCode"].toInteger();
  package.versionName = json[u"versionName"].toString();
  package.minSdk = json[u"minSdk"].toInt();
  package.targetSdk = json[u"targetSdk"].toInt();
  package.codePath = json[u"codePath"].toString();
  package.splits = texts(json[u"splits"]);
  package.permissions = texts(json[u"permissions"]);
  const QJsonObject grants = json[u"grants"].toObject();
  for (auto it = grants.begin(); it != grants.end(); ++it)
    package.grants.insert(it.key(), it.value().toBool());
  package.categories = texts(json[u"categories"]);
  package.firstInstall = QDateTime::fromString(json[u"firstInstall"].toString(), Qt::ISODate);
  package.lastUpdate = QDateTime::fromString(json[u"lastUpdate"].toString(), Qt::ISODate);
  package.installer = json[u"installer"].toString();
  package.userId = json[u"userId"].toInt();
  package.isSystem = json[u"system"].toBool();
  package.isInstalled = json[u"installed"].toBool(true);
  package.isEnabled = json[u"enabled"].toBool(true);
  return package;
}

QList<Package> systemPackages() {
  struct Row {
    const char* name;
    const char* path;
    qint64 versionCode;
    const char* versionName;
  };
  constexpr Row kRows[] = {
      {"android", "/system/framework/framework-res", 29, "10"},
      {"com.android.providers.media", "/system/priv-app/MediaProvider", 1024, "10"},
      {"com.android.settings", "/system/priv-app/Settings", 29, "10"},
      {"com.android.shell", "/system/priv-app/Shell", 29, "10"},
      {"com.android.systemui", "/system/priv-app/SystemUI", 29, "10"},
  };
  QList<Package> packages;
  for (const Row& row : kRows) {
    Package package;
    package.name = QLatin1StringView(row.name);
    package.codePath = QLatin1StringView(row.path);
    package.versionCode = row.versionCode;
    package.versionName = QLatin1StringView(row.versionName);
    package.minSdk = 29;
    package.targetSdk = 29;
    package.isSystem = true;
    package.userId = 1000;
    package.firstInstall = package.lastUpdate = QDateTime(QDate(2009, 1, 1), QTime(0, 0));
    packages.append(package);
  }
  return packages;
}

}  // namespace

QStringList Package::files() const {
  if (codePath.isEmpty()) return {};
  if (isSystem) return {codePath + u'/' + codePath.section(u'/', -1) + ".apk"_L1};
  QStringList files = {codePath + "/base.apk"_L1};
  for (const QString& split : splits) files.append(codePath + "/split_"_L1 + split + ".apk"_L1);
  return files;
}

bool isRuntimePermission(const QString& permission) {
  static const QSet<QString> names = {
      u"ACCEPT_HANDOVER"_s,
      u"ACCESS_BACKGROUND_LOCATION"_s,
      u"ACCESS_COARSE_LOCATION"_s,
      u"ACCESS_FINE_LOCATION"_s,
      u"ACCESS_MEDIA_LOCATION"_s,
      u"ACTIVITY_RECOGNITION"_s,
      u"ADD_VOICEMAIL"_s,
      u"ANSWER_PHONE_CALLS"_s,
      u"BLUETOOTH_CONNECT"_s,
      u"BLUETOOTH_SCAN"_s,
      u"BODY_SENSORS"_s,
      u"CALL_PHONE"_s,
      u"CAMERA"_s,
      u"GET_ACCOUNTS"_s,
      u"POST_NOTIFICATIONS"_s,
      u"PROCESS_OUTGOING_CALLS"_s,
      u"READ_CALENDAR"_s,
      u"READ_CALL_LOG"_s,
      u"READ_CONTACTS"_s,
      u"READ_EXTERNAL_STORAGE"_s,
      u"READ_PHONE_NUMBERS"_s,
      u"READ_PHONE_STATE"_s,
      u"READ_SMS"_s,
      u"RECEIVE_MMS"_s,
      u"RECEIVE_SMS"_s,
      u"RECEIVE_WAP_PUSH"_s,
      u"RECORD_AUDIO"_s,
      u"SEND_SMS"_s,
      u"USE_SIP"_s,
      u"WRITE_CALENDAR"_s,
      u"WRITE_CALL_LOG"_s,
      u"WRITE_CONTACTS"_s,
      u"WRITE_EXTERNAL_STORAGE"_s,
  };
  constexpr QLatin1StringView prefix("android.permission.");
  return permission.startsWith(prefix) && names.contains(permission.mid(prefix.size()));
}

Packages::Packages(const QString& file) : m_file(file) {
  load();
}

void Packages::load() {
  QFile file(m_file);
  if (!file.open(QIODevice::ReadOnly)) {
    const QList<Package> first = systemPackages();
    for (const Package& package : first) m_packages.insert(package.name, package);
    return save();
  }
  const QJsonArray list = QJsonDocument::fromJson(file.readAll()).array();
  for (const auto& value : list) {
    const Package package = fromJson(value.toObject());
    m_packages.insert(package.name, package);
  }
}

void Packages::save() const {
  QJsonArray list;
  for (const Package& package : m_packages) list.append(toJson(package));
  QSaveFile file(m_file);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(QJsonDocument(list).toJson());
  file.commit();
}

QList<Package> Packages::all() const {
  const QMutexLocker lock(&m_mutex);
  return m_packages.values();
}

std::optional<Package> Packages::find(const QString& name) const {
  const QMutexLocker lock(&m_mutex);
  const auto it = m_packages.constFind(name);
  return it == m_packages.constEnd() ? std::nullopt : std::optional<Package>(*it);
}

void Packages::put(Package package) {
  const QMutexLocker lock(&m_mutex);
  if (package.userId == 0) {
    package.userId = kFirstUserId;
    for (const Package& other : std::as_const(m_packages)) {
      package.userId = std::max(package.userId, other.userId + 1);
    }
  }
  m_packages.insert(package.name, package);
  save();
}

void Packages::remove(const QString& name) {
  const QMutexLocker lock(&m_mutex);
  m_packages.remove(name);
  save();
}

}  // namespace orvanta::headset
