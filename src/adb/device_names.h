#pragma once

#include <QString>

/// Which names can go into a line for the device's shell, and where an app's folders are.
namespace orvanta {

/// Whether `text` can go into a line for the device's shell: it has no blank, no line end and no character
/// that a shell acts on. An empty text is fit.
bool isFitForShell(const QString& text);

/// Whether `name` can be a package's name in a line: names come from files that anybody can make, and end up
/// in paths. Fit for the shell, ASCII, not an option, not a path, at most 255 characters. An empty name is
/// fit; no line that changes the device is composed with it.
bool isFitPackageName(const QString& name);

/// Whether a line that changes `permission` of `package` may be composed: neither is empty and both are fit.
bool isChangeable(const QString& package, const QString& permission);

/// Whether `storage` can be a folder of the device: an absolute path that a shell takes as one word. An error
/// text or a server's greeting is not, and nothing may be removed below it.
bool isPlainDevicePath(const QString& storage);

/// `<storage>/Android/obb/<package>`: the app's expansion files.
QString obbFolder(const QString& storage, const QString& package);

/// The same below `/sdcard`, where the list of apps looks for them.
QString obbPathOnDevice(const QString& package);

/// Below it, in `obb` and `data`, are the folders of the apps on the shared storage.
inline const QString appFilesRoot = QStringLiteral("/sdcard/Android/");

/// `/sdcard/Android/data/`: the folders of all apps on the shared storage.
inline const QString dataParent = QStringLiteral("/sdcard/Android/data/");

/// `/sdcard/Android/data/<package>`: the app's folder on the shared storage.
QString dataPathOnDevice(const QString& package);

}  // namespace orvanta
