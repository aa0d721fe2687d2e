#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <optional>

namespace orvanta::headset {

/// What the package manager keeps of one package.
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
  bool isInstalled = true;  ///< false: taken off, its data kept
  bool isEnabled = true;

  /// The paths of all package files, base first; empty when only the data is left.
  QStringList files() const;
};

/// Whether a permission is asked of the wearer at run time.
bool isRuntimePermission(const QString& permission);

/// The package manager's memory, kept in a file. All functions may be called on any thread.
class Packages {
 public:
  explicit Packages(const QString& file);

  QList<Package> all() const;
  std::optional<Package> find(const QString& name) const;
  /// Adds the package, or takes the place of the one with its name; gives it a user id if it has none.
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
