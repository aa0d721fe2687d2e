#include "install/command_lines.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString installLine(const Host& host, const QString& apkPath, bool grantPermissions) {
  return AdbPrefix(host) + (grantPermissions ? u" install -r -g "_s : u" install -r "_s) +
         quotedLocalPath(apkPath, host.style);
}

QString obbFolder(const QString& storage, const QString& package) {
  return storage + u"/Android/obb/"_s + package;
}

QString listingLine(const Host& host, const QString& folder) {
  return AdbPrefix(host) + u" shell ls -Ral "_s + folder;
}

QString removalLine(const Host& host, const QString& folder) {
  return AdbPrefix(host) + u" shell rm -r "_s + folder;
}

QString packageListLine(const Host& host) {
  return AdbPrefix(host) + u" shell pm list packages"_s;
}

QString uninstallLine(const Host& host, const QString& package) {
  return AdbPrefix(host) + u" uninstall "_s + package;
}

QString uninstallKeepingDataLine(const Host& host, const QString& package) {
  return AdbPrefix(host) + u" shell pm uninstall -k "_s + package;
}

QString pushLine(const Host& host, const QString& localPath, const QString& devicePath) {
  return AdbPrefix(host) + u" push "_s + quotedLocalPath(localPath, host.style) + u' ' +
         devicePathArgument(devicePath);
}

}  // namespace orvanta
