#include "operations/command_lines.h"

#include "platform/command_line.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

const QString dataParent = u"/sdcard/Android/data/"_s;

/// A local path in quotes. A Windows drive's root ends in the separator, which would take the quote behind it
/// for an ordinary character.
QString quotedLocalFolder(const QString& path, const HostStyle& style) {
  const bool endsOpen = !style.namesNeedEscapes && path.endsWith(u'\\');
  return quotedLocalPath(endsOpen ? path + u'\\' : path, style);
}

/// A path as one word for the device's shell, whatever it holds, and for the desktop's command line as well.
QString quotedForShell(QString path) {
  return quotedArgument(u'\'' + path.replace(u'\'', u"'\\''"_s) + u'\'');
}

}  // namespace

QString obbPathOnDevice(const QString& package) {
  return u"/sdcard/Android/obb/"_s + package;
}

QString dataPathOnDevice(const QString& package) {
  return dataParent + package;
}

QString packagePathLine(const Host& host, const QString& package) {
  return AdbPrefix(host) + u" shell pm path "_s + package;
}

QString pullLine(const Host& host, const QString& remotePath, const QString& localPath) {
  return AdbPrefix(host) + u" pull "_s + quotedArgument(remotePath) + u' ' +
         quotedLocalFolder(localPath, host.style);
}

QString pushDataLine(const Host& host, const QString& localFolder) {
  return AdbPrefix(host) + u" push "_s + quotedLocalPath(localFolder, host.style) + u' ' +
         quotedArgument(dataParent);
}

QString sizesLine(const Host& host, const QString& path) {
  if (!path.startsWith(u'/')) return {};
  return AdbPrefix(host) + u" shell find "_s + quotedForShell(path) + u" -type f -exec stat -c %s {} +"_s;
}

QString launchLine(const Host& host, const QString& package, const QString& category) {
  return AdbPrefix(host) + u" shell monkey -p "_s + package + u" -c "_s + category + u" 1 "_s;
}

QString uninstallListedLine(const Host& host, const QString& package) {
  return AdbPrefix(host) + u" uninstall "_s + package;
}

}  // namespace orvanta
