#pragma once

#include <QString>
#include <array>

#include "core/tools.h"

namespace orvanta {

/// The runtime permissions of one app, as the headset lists them; index 0 is not used.
struct RuntimePermissions {
  /// Permission lines in the reply. It counts on past the last index that the arrays have.
  qint32 RuntimePermCount = 0;
  /// Empty where a line has no colon behind its name.
  std::array<QString, 100> RuntimePermNames;
  /// "1" for granted, "0" for not granted.
  std::array<QString, 100> RuntimePermStates;
};

/// `"<adb>" shell dumpsys package <package>`
QString permissionReportLine(const Host& host, const QString& package);
/// `"<adb>" shell pm grant <package> <permission>`
QString grantLine(const Host& host, const QString& package, const QString& permission);
/// `"<adb>" shell pm revoke <package> <permission>`
QString revokeLine(const Host& host, const QString& package, const QString& permission);

/// Whether a line that changes `permission` of `package` may be composed: both are there, and neither has
/// anything that the device's shell would act on.
bool isChangeable(const QString& package, const QString& permission);

/// Reads the output of `dumpsys package`, lines ending in CR LF. From a line with "runtime permissions" on,
/// every line with "android.permission" counts, to the end of the reply and whoever's it is; behind a second
/// such line, as there is for each further user, those lines count once more. Real lines:
///     runtime permissions:
///       android.permission.CAMERA: granted=true, flags=[ USER_SET]
RuntimePermissions readRuntimePermissions(const QString& reply);

/// Whether a reply of `dumpsys package` is about a package at all.
bool knowsPackage(const QString& reply);

/// The one line of a reply that says what is the matter, for a user to read: the reason of an exception, an
/// error, else the first line that is no greeting of a starting adb server. Empty when there is none.
QString tellingLine(const QString& reply);

}  // namespace orvanta
