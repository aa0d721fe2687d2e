#pragma once

#include <QStringList>

#include "badging.h"
#include "packages.h"
#include "system.h"

namespace orvanta::headset {

/// The commands of "pm" and "cmd package", with the replies of Android 10.
class PackageManager {
 public:
  PackageManager(SystemHost& host, Packages& packages) : m_host(host), m_packages(packages) {}

  int run(Call& call);

 private:
  int list(Call& call, const QStringList& words);
  int path(Call& call, const QStringList& words);
  int changePermission(Call& call, const QStringList& words, bool grant);
  int setEnabled(Call& call, const QStringList& words, bool enabled);
  int uninstall(Call& call, const QStringList& words);
  int clear(Call& call, const QStringList& words);
  void removeData(const QString& package);
  void removeCode(const Package& package);

  SystemHost& m_host;
  Packages& m_packages;
};

}  // namespace orvanta::headset
