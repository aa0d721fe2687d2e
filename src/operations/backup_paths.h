#pragma once

#include <QString>

#include "platform/host_style.h"

/// Names and folders of backups on the desktop.
namespace orvanta {

/// `path` with ".apk" appended unless it already ends so, in any letter case.
QString withApkEnding(const QString& path);

/// The folder that holds the copy of `package`, for a folder that the user chose: either that one, or the
/// copy itself inside it.
QString restoreFolder(const QString& chosen, const QString& package, const HostStyle& style);

/// `path` with `ending` appended; the name is cut if it would be too long for a file system.
QString withEnding(const QString& path, const QString& ending, const HostStyle& style);

}  // namespace orvanta
