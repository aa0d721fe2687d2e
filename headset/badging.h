#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace orvanta::headset {

/// What the headset reads from a package file at install time.
struct Badging {
  QString package;
  QString split;  ///< empty for a base package
  qint64 versionCode = 0;
  QString versionName;
  int minSdk = 1;
  int targetSdk = 1;
  QStringList permissions;
  QStringList nativeCode;
  bool isTestOnly = false;
  bool requiresSplits = false;  ///< it cannot go without splits
  bool isLaunchable = false;
};

/// What `file` says about itself; nothing if it is not a package.
std::optional<Badging> readBadging(const QString& file);

}  // namespace orvanta::headset
