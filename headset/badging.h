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
  bool isLaunchable = false;
};

/// Parses the output of "aapt d badging"; nothing if it names no package.
std::optional<Badging> parseBadging(const QString& text);

/// Whether the manifest of `file` says that it cannot go without splits.
bool requiresSplits(const QString& file);

/// Runs the desktop's aapt on `file`; nothing if it is not a package.
std::optional<Badging> readBadging(const QString& file);

}  // namespace orvanta::headset
