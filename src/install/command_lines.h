#pragma once

#include <QString>

#include "core/tools.h"

/// The lines that put a package and its expansion files on the device and take them off.
namespace orvanta {

/// `"<adb>" install -r [-g ]"<apkPath>"`; `-g` grants all permissions that the package asks for.
QString installLine(const Host& host, const QString& apkPath, bool grantPermissions);

/// `<storage>/Android/obb/<package>`
QString obbFolder(const QString& storage, const QString& package);

/// `"<adb>" shell ls -Ral <folder>`
QString listingLine(const Host& host, const QString& folder);

/// `"<adb>" shell rm -r <folder>`
QString removalLine(const Host& host, const QString& folder);

/// `"<adb>" shell pm list packages`
QString packageListLine(const Host& host);

/// `"<adb>" uninstall <package>`: the package and its data.
QString uninstallLine(const Host& host, const QString& package);

/// `"<adb>" shell pm uninstall -k <package>`: the package without its data.
QString uninstallKeepingDataLine(const Host& host, const QString& package);

/// `"<adb>" push "<localPath>" <devicePath>`
QString pushLine(const Host& host, const QString& localPath, const QString& devicePath);

}  // namespace orvanta
