#pragma once

#include <QStringList>
#include <functional>

#include "badging.h"
#include "packages.h"
#include "system.h"

namespace orvanta::headset {

/// The options of "pm install" and its sessions that change what happens here.
struct InstallOptions {
  bool replace = false;
  bool downgrade = false;
  bool grantAll = false;
  bool testOnly = false;
  qint64 size = -1;
  QString installer;
  QStringList operands;

  static InstallOptions parse(const QStringList& words);
};

/// Installs packages, in one step or in a session of several files. A session is a folder beside the
/// installed packages and needs no other state.
class PackageInstaller {
 public:
  PackageInstaller(SystemHost& host, Packages& packages) : m_host(host), m_packages(packages) {}

  int install(Call& call, const QStringList& words);
  int createSession(Call& call, const QStringList& words);
  int writeSession(Call& call, const QStringList& words);
  int commitSession(Call& call, const QStringList& words);
  int abandonSession(Call& call, const QStringList& words);

 private:
  bool stage(Call& call, const InstallOptions& options, const QString& source, const QString& target);
  QString commit(const QString& folder, const InstallOptions& options);
  QString refusal(const Badging& base, const InstallOptions& options, const QString& folder) const;
  QString newCodePath(const QString& package) const;
  QString sessionFolder(const QString& id) const;
  int report(Call& call, const QString& failure) const;

  SystemHost& m_host;
  Packages& m_packages;
};

}  // namespace orvanta::headset
