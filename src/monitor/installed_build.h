#pragma once

#include <QString>

#include "core/tools.h"

namespace orvanta {

/// `"<adb>" shell dumpsys package <package>`. An empty name goes in as it is.
QString dumpsysLine(const Host& host, const QString& package);

/// The build number in the output of `dumpsys package`: what stands between the first "versionCode=" and the
/// first "minSdk=", without blanks. Empty when either is missing or they stand in the other order: not
/// installed. Real line:
///     versionCode=83 minSdk=23 targetSdk=28
QString installedBuildIn(const QString& output);

/// How the build on the device stands to the one of the package file.
enum class BuildVerdict {
  NotInstalled,
  Older,
  Newer,
  Same,
  /// Equal as numbers but not as texts, such as 007 and 7: nothing is painted.
  Undecided,
};

/// Compares as numbers, tests equality as texts. A package build that is no number counts as older on the
/// device.
BuildVerdict compareBuilds(const QString& onDevice, const QString& inPackage);

}  // namespace orvanta
