#pragma once

#include <QString>

#include "core/tools.h"

/// The lines that act on one listed application, and the device paths that they are about.
namespace orvanta {

/// `/sdcard/Android/obb/<package>`: the expansion files.
QString obbPathOnDevice(const QString& package);

/// `/sdcard/Android/data/<package>`: the application's folder on the shared storage.
QString dataPathOnDevice(const QString& package);

/// `"<adb>" shell pm path <package>`
QString packagePathLine(const Host& host, const QString& package);

/// `"<adb>" pull "<remotePath>" "<localPath>"`
QString pullLine(const Host& host, const QString& remotePath, const QString& localPath);

/// `"<adb>" push "<localFolder>" "/sdcard/Android/data/"`: the folder arrives under its own name.
QString pushDataLine(const Host& host, const QString& localFolder);

/// Asks for the size in bytes of one file on the device, or of each file below a folder, a line each. Empty
/// when `path` is not absolute: what a tool said in the place of a path is nothing to ask about.
QString sizesLine(const Host& host, const QString& path);

/// What makes an activity the one that a launcher starts; immersive apps often have the other kind only.
inline const QString launcherCategory = QStringLiteral("android.intent.category.LAUNCHER");
inline const QString immersiveCategory = QStringLiteral("com.oculus.intent.category.VR");

/// `"<adb>" shell monkey -p <package> -c <category> 1 `, with the blank at its end.
QString launchLine(const Host& host, const QString& package, const QString& category);

/// `"<adb>" uninstall <package>`
QString uninstallListedLine(const Host& host, const QString& package);

}  // namespace orvanta
