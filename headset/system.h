#pragma once

#include <QMap>
#include <QMutex>
#include <QString>

#include "call_server.h"
#include "faults.h"
#include "packages.h"

namespace orvanta::headset {

/// The headset's properties, kept in a file. All functions may be called on any thread.
class Properties {
 public:
  Properties(const QString& file, const QString& serial);

  QMap<QString, QString> all() const;
  QString value(const QString& name) const;
  /// False for a name that a shell user may not set.
  bool set(const QString& name, const QString& value);
  /// Forgets the debug settings, as a reboot does.
  void forgetVolatile();

 private:
  void save() const;

  QString m_file;
  mutable QMutex m_mutex;
  QMap<QString, QString> m_values;
};

/// What the system commands need of the device. Called on any thread.
class SystemHost {
 public:
  virtual ~SystemHost() = default;
  virtual Faults faults() const = 0;
  virtual const DeviceFiles& files() const = 0;
  /// The headset's root on the desktop.
  virtual QString root() const = 0;
  virtual qint64 bytesAvailable() const = 0;
  virtual qint64 storageSize() const = 0;
  /// New packages go to /data/app/~~X==/pkg-Y== instead of /data/app/pkg-Y==.
  virtual bool usesNestedCodePaths() const = 0;
  virtual void reboot() = 0;
  /// Where the headset can be reached over the network.
  virtual QString networkAddress() const = 0;
};

/// The services of the shell's system commands, with the words and layouts of real ones.
class System {
 public:
  System(SystemHost& host, Packages& packages, Properties& properties);

  /// Runs one command of the shell and returns its exit code.
  int run(Call& call);

 private:
  int df(Call& call);
  int getprop(Call& call);
  int ip(Call& call);
  int setprop(Call& call);
  int svc(Call& call);
  int monkey(Call& call);
  int am(Call& call);
  int dumpsys(Call& call);

  SystemHost& m_host;
  Packages& m_packages;
  Properties& m_properties;
};

}  // namespace orvanta::headset
