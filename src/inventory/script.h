#pragma once

#include <QString>

#include "core/tools.h"

namespace orvanta {

/// Where the program that prints a package's badging lies on the device.
inline constexpr QStringView deviceBadgingTool = u"/data/local/tmp/aapt-arm-pie";

/// The copy of it beside the executable, which the script pushes; it may be missing.
QString badgingToolPath(const QString& applicationFolder);

/// The script that gathers the inventory, for the host's own interpreter.
///
/// What it prints holds, for each app and by total size ascending, the lines "IP3x: " package and a blank,
/// "application-label:" label, "VC3x: versionCode: " and "VC3x: versionName: " as often as the device has
/// them, "TO3x: ", "AP3x: ", "OB3x: " and "AD3x: " with the sizes in MiB. Lines without a tag are the tools'
/// own words.
QString inventoryScript(const Host& host);

/// The text for the Windows command processor, every line ended by CR LF.
QString batchInventoryScript(const QString& applicationFolder);

/// The text for a POSIX shell. It makes the same number of adb calls however many apps there are, and takes
/// no value over from one app to the next.
QString shellInventoryScript(const QString& applicationFolder);

}  // namespace orvanta
