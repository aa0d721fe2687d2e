#pragma once

#include <QString>

#include "adb/host.h"

namespace orvanta {

/// Where the program that prints a package's badging lies on the device.
inline constexpr QStringView deviceBadgingTool = u"/data/local/tmp/aapt-arm-pie";

/// The copy of it beside the executable, which the script pushes; it may be missing.
QString badgingToolPath(const QString& applicationFolder);

/// The script that gathers the inventory, for the host's own interpreter.
///
/// It prints, for each app and by ascending total size, the lines "IP3x: " package and a blank,
/// "application-label:" label, "VC3x: versionCode: " and "VC3x: versionName: " as often as the device has
/// them, "TO3x: ", "AP3x: ", "OB3x: " and "AD3x: " with the sizes in MiB. Lines without a tag are other
/// output of the tools.
QString inventoryScript(const Host& host);

/// The text for the Windows command processor, every line ended by CR LF.
QString batchInventoryScript(const QString& applicationFolder);

/// The text for a POSIX shell. It makes the same number of adb calls however many apps there are, and carries
/// no value over from one app to the next.
QString shellInventoryScript(const QString& applicationFolder);

/// `<adb> shell "..."`: the same reading in one call, which is how the POSIX script makes it, without a
/// script on the desktop. `hasTool`: the program for the labels lies on the device.
QString inventoryLine(const Host& host, bool hasTool);

}  // namespace orvanta
