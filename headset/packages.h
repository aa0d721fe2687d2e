#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <optional>

namespace orvanta::headset {

/// What the package manager stores about one package.
struct Package {
  QString name;
  qint64 versionCode = 0;
  QString versionName;
  int minSdk = 0;
  int targetSdk = 0;
  QString codePath;            ///< the device folder of base.apk and the splits
  QStringList splits;          ///< names of the split packages, without "base"
  QStringList permissions;     ///< all requested ones, in the manifest's order
  QMap<QString, bool> grants;  ///< the runtime permissions among them
  QStringList categories;      ///< of the activities that monkey can start
  QDateTime firstInstall;
  QDateTime lastUpdate;
  QString installer;
  int userId = 0;
  bool isSystem = false;
  bool isInstalled = true;  ///< false: uninstalled, its data kept
  bool isEnabled = true;

  /// The paths of all package files, base first; empty when only the data is left.
  QStringList files() const;
};

/// Whether the user is asked for a permission at run time.
bool isRuntimePermission(const QString& permission);

/// The package manager's database, kept in a file. Thread-safe.
class Packages {
 public:
  explicit Packages(const QString& file);

  QList<Package> all() const;
  std::optional<Package> find(const QString& name) const;
  /// Adds or replaces the package; gives it a user id if it has none.
  void put(Package package);
  void remove(const QString& name);

 private:
  void load();
  void save() const;

  QString m_file;
  mutable QMutex m_mutex;
  QMap<QString, Package> m_packages;
};

}  // namespace orvanta::headset
