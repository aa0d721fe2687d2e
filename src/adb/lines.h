#pragma once

#include <QString>
#include <QStringList>

#include "adb/host.h"

/// Every line with which the program calls adb, one function a verb. `<adb>` is the tool beside the
/// executable, in quotes; every blank is part of the line. Names and device paths go in as they are: the
/// caller has checked them (adb/device_names.h).
namespace orvanta {

/// `<adb> devices`
QString devicesLine(const Host& host);

/// `<adb> version`
QString versionLine(const Host& host);

/// `<adb> kill-server`
QString killServerLine(const Host& host);

/// `<adb> start-server`
QString startServerLine(const Host& host);

/// `<adb> devices -l`
QString deviceDetailsLine(const Host& host);

/// `<adb> -s <serial> shell ip -f inet addr show`: the headset's own addresses.
QString addressesLine(const Host& host, const QString& serial);

/// `<adb> -s <serial> tcpip 5555`: the headset listens on the network, until it is started anew.
QString listenLine(const Host& host, const QString& serial);

/// `<adb> connect <address>`
QString connectLine(const Host& host, const QString& address);

/// `<adb> pair <address> <code>`
QString pairLine(const Host& host, const QString& address, const QString& code);

/// `<adb> reboot`
QString rebootLine(const Host& host);

/// `<adb> install -r [-g ]"<apkPath>"`; `-g` grants all permissions that the package asks for.
QString installLine(const Host& host, const QString& apkPath, bool grantPermissions);

/// `<adb> install-multiple -r [-g] "<file>" ...`: a base with its splits, as one app.
QString installSeveralLine(const Host& host, const QStringList& apkPaths, bool grantPermissions = false);

/// `<adb> wait-for-device`: ends when the headset can be used.
QString waitLine(const Host& host);

/// `<adb> shell pm list packages --show-versioncode`: a line "package:NAME versionCode:BUILD" for each.
QString packageBuildsLine(const Host& host);

/// `<adb> shell "getprop ..."`: the headset's processors by preference, its density, and its languages, a
/// line each.
QString traitsLine(const Host& host);

/// `<adb> uninstall <package>`: the package and its data.
QString uninstallLine(const Host& host, const QString& package);

/// `<adb> shell pm uninstall -k <package>`: the package without its data.
QString uninstallKeepingDataLine(const Host& host, const QString& package);

/// `<adb> shell pm list packages`
QString packageListLine(const Host& host);

/// `adb shell "pm list packages -3 |wc -l"`: how many apps the user has installed. The only line with a bare
/// tool name, which is looked up beside the executable first.
QString packageCountLine();

/// `<adb> shell pm path <package>`
QString packagePathLine(const Host& host, const QString& package);

/// `<adb> shell pm grant <package> <permission>`
QString grantLine(const Host& host, const QString& package, const QString& permission);

/// `<adb> shell pm revoke <package> <permission>`
QString revokeLine(const Host& host, const QString& package, const QString& permission);

/// `<adb> shell dumpsys package <package>`. Without a name the reply would be about every package.
QString dumpsysLine(const Host& host, const QString& package);

/// What makes an activity the one that a launcher starts; immersive apps often have only the other kind.
inline const QString launcherCategory = QStringLiteral("android.intent.category.LAUNCHER");
inline const QString immersiveCategory = QStringLiteral("com.oculus.intent.category.VR");

/// `<adb> shell monkey -p <package> -c <category> 1 `, with the blank at its end.
QString launchLine(const Host& host, const QString& package, const QString& category);

/// `<adb> shell echo $EXTERNAL_STORAGE`
QString storageQueryLine(const Host& host);

/// `<adb> shell df -h <path>`
QString diskFreeLine(const Host& host, const QString& path);

/// `<adb> shell ls -Ral <folder>`
QString listingLine(const Host& host, const QString& folder);

/// `<adb> shell rm -r <folder>`
QString removalLine(const Host& host, const QString& folder);

/// `<adb> shell find '<path>' -type f -exec stat -c %s {} +`: the size in bytes of one file, or of each file
/// below a folder, a line each. Empty when `path` is not absolute: an error text must not be asked about.
QString sizesLine(const Host& host, const QString& path);

/// `<adb> shell "..."`: one call for everything the device has of an app. A line "F <size> <time> <path>" for
/// each of its package files, expansion files and data files, the bare path for each folder of the latter
/// two, then its build and version as `dumpsys` has them, then the room on the shared storage as `df -k` has
/// it, and last a line "end".
QString appStateLine(const Host& host, const QString& package);

/// `<adb> shell "mkdir -p '<path>' ..."`
QString makeFoldersLine(const Host& host, const QStringList& paths);

/// `<adb> shell "getprop ro.product.model; getprop ro.serialno"`
QString headsetLine(const Host& host);

/// `<adb> push "<localPath>" <devicePath>`
QString pushLine(const Host& host, const QString& localPath, const QString& devicePath);

/// `<adb> push "<localFolder>" "/sdcard/Android/data/"`: the folder arrives under its own name.
QString pushDataLine(const Host& host, const QString& localFolder);

/// `<adb> pull "<remotePath>" "<localPath>"`
QString pullLine(const Host& host, const QString& remotePath, const QString& localPath);

/// `<adb> pull "<remotePath>" ... "<localFolder>"`: files into a folder that exists.
QString pullFilesLine(const Host& host, const QStringList& remotePaths, const QString& localFolder);

/// `<adb> shell setprop <property>`, where `property` is a name, a blank and a value.
QString setPropertyLine(const Host& host, const QString& property);

/// `<adb> shell svc usb setFunctions mtp true`: the headset offers its storage as a drive.
QString mtpLine(const Host& host);

/// `<adb> <text>`: what the user typed, character for character.
QString freeLine(const Host& host, const QString& text);

}  // namespace orvanta
