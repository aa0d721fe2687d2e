#pragma once

#include <QString>
#include <array>

namespace orvanta {

/// The runtime permissions of one app, as the headset lists them; index 0 is not used.
struct RuntimePermissions {
  /// Permission lines in the reply. Can exceed the last index of the arrays.
  qint32 RuntimePermCount = 0;
  /// Empty where no colon follows the name.
  std::array<QString, 100> RuntimePermNames;
  /// "1" for granted, "0" for not granted.
  std::array<QString, 100> RuntimePermStates;
};

/// Reads the output of `dumpsys package`, lines ending in CR LF. From a line with "runtime permissions" on,
/// every line with "android.permission" counts, to the end of the reply, whichever app it belongs to. After a
/// second such line, as there is for each further user, those lines count again. Real lines:
///     runtime permissions:
///       android.permission.CAMERA: granted=true, flags=[ USER_SET]
RuntimePermissions readRuntimePermissions(const QString& reply);

}  // namespace orvanta
