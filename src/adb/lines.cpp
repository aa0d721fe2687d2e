#include "adb/lines.h"

#include "adb/device_names.h"
#include "platform/command_line.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString line(const Host& host, const QString& arguments) {
  return AdbPrefix(host) + u' ' + arguments;
}

}  // namespace

QString devicesLine(const Host& host) {
  return line(host, u"devices"_s);
}

QString versionLine(const Host& host) {
  return line(host, u"version"_s);
}

QString killServerLine(const Host& host) {
  return line(host, u"kill-server"_s);
}

QString startServerLine(const Host& host) {
  return line(host, u"start-server"_s);
}

QString deviceDetailsLine(const Host& host) {
  return line(host, u"devices -l"_s);
}

QString addressesLine(const Host& host, const QString& serial) {
  return line(host, u"-s "_s) + quotedArgument(serial) + u" shell ip -f inet addr show"_s;
}

QString listenLine(const Host& host, const QString& serial) {
  return line(host, u"-s "_s) + quotedArgument(serial) + u" tcpip 5555"_s;
}

QString connectLine(const Host& host, const QString& address) {
  return line(host, u"connect "_s) + address;
}

QString pairLine(const Host& host, const QString& address, const QString& code) {
  return line(host, u"pair "_s) + address + u' ' + code;
}

QString rebootLine(const Host& host) {
  return line(host, u"reboot"_s);
}

QString installLine(const Host& host, const QString& apkPath, bool grantPermissions) {
  return line(host, grantPermissions ? u"install -r -g "_s : u"install -r "_s) +
         quotedLocalPath(apkPath, host.style);
}

QString installSeveralLine(const Host& host, const QStringList& apkPaths, bool grantPermissions) {
  QString arguments = grantPermissions ? u"install-multiple -r -g"_s : u"install-multiple -r"_s;
  for (const QString& path : apkPaths) arguments += u' ' + quotedLocalPath(path, host.style);
  return line(host, arguments);
}

QString waitLine(const Host& host) {
  return line(host, u"wait-for-device"_s);
}

QString packageBuildsLine(const Host& host) {
  return line(host, u"shell pm list packages --show-versioncode"_s);
}

QString traitsLine(const Host& host) {
  return line(host,
              u"shell \"getprop ro.product.cpu.abilist; getprop ro.sf.lcd_density; "
              "getprop persist.sys.locale; getprop ro.product.locale\""_s);
}

QString uninstallLine(const Host& host, const QString& package) {
  return line(host, u"uninstall "_s) + package;
}

QString uninstallKeepingDataLine(const Host& host, const QString& package) {
  return line(host, u"shell pm uninstall -k "_s) + package;
}

QString packageListLine(const Host& host) {
  return line(host, u"shell pm list packages"_s);
}

QString packageCountLine() {
  return u"adb shell \"pm list packages -3 |wc -l\""_s;
}

QString packagePathLine(const Host& host, const QString& package) {
  return line(host, u"shell pm path "_s) + package;
}

QString grantLine(const Host& host, const QString& package, const QString& permission) {
  return line(host, u"shell pm grant "_s) + package + u' ' + permission;
}

QString revokeLine(const Host& host, const QString& package, const QString& permission) {
  return line(host, u"shell pm revoke "_s) + package + u' ' + permission;
}

QString dumpsysLine(const Host& host, const QString& package) {
  return line(host, u"shell dumpsys package "_s) + package;
}

QString launchLine(const Host& host, const QString& package, const QString& category) {
  return line(host, u"shell monkey -p "_s) + package + u" -c "_s + category + u" 1 "_s;
}

QString storageQueryLine(const Host& host) {
  return line(host, u"shell echo $EXTERNAL_STORAGE"_s);
}

QString diskFreeLine(const Host& host, const QString& path) {
  return line(host, u"shell df -h "_s) + path;
}

QString listingLine(const Host& host, const QString& folder) {
  return line(host, u"shell ls -Ral "_s) + folder;
}

QString removalLine(const Host& host, const QString& folder) {
  return line(host, u"shell rm -r "_s) + folder;
}

QString sizesLine(const Host& host, const QString& path) {
  if (!path.startsWith(u'/')) return {};
  // Quoted twice: for the device's shell, and for the line on this side.
  return line(host, u"shell find "_s) + quotedArgument(shellWord(path)) + u" -type f -exec stat -c %s {} +"_s;
}

QString appStateLine(const Host& host, const QString& package) {
  const QString list = u"stat -c 'F %s %Y %n'"_s;
  const QString script =
      u"for f in $(pm path %1 </dev/null | sed -n 's/^package://p'); do %2 $f; done; "
      "for d in %3 %4; do [ -d $d ] && { find $d -type f -exec %2 {} +; find $d -type d; }; done; "
      "dumpsys package %1 </dev/null | grep -e versionCode= -e versionName=; df -k /sdcard; echo end"_s;
  return line(host, u"shell "_s + quotedArgument(script.arg(package, list, obbPathOnDevice(package),
                                                            dataPathOnDevice(package))));
}

QString makeFoldersLine(const Host& host, const QStringList& paths) {
  QString script = u"mkdir -p"_s;
  for (const QString& path : paths) script += u' ' + shellWord(path);
  return line(host, u"shell "_s + quotedArgument(script));
}

QString headsetLine(const Host& host) {
  return line(host, u"shell \"getprop ro.product.model; getprop ro.serialno\""_s);
}

QString pushLine(const Host& host, const QString& localPath, const QString& devicePath) {
  return line(host, u"push "_s) + quotedLocalPath(localPath, host.style) + u' ' +
         devicePathArgument(devicePath);
}

QString pushDataLine(const Host& host, const QString& localFolder) {
  return line(host, u"push "_s) + quotedLocalPath(localFolder, host.style) + u' ' +
         quotedArgument(dataParent);
}

QString pullLine(const Host& host, const QString& remotePath, const QString& localPath) {
  return line(host, u"pull "_s) + quotedArgument(remotePath) + u' ' +
         quotedLocalFolder(localPath, host.style);
}

QString pullFilesLine(const Host& host, const QStringList& remotePaths, const QString& localFolder) {
  QString arguments = u"pull"_s;
  for (const QString& path : remotePaths) arguments += u' ' + quotedArgument(path);
  return line(host, arguments + u' ' + quotedLocalFolder(localFolder, host.style));
}

QString setPropertyLine(const Host& host, const QString& property) {
  return line(host, u"shell setprop "_s) + property;
}

QString mtpLine(const Host& host) {
  return line(host, u"shell svc usb setFunctions mtp true"_s);
}

QString freeLine(const Host& host, const QString& text) {
  return line(host, text);
}

}  // namespace orvanta
