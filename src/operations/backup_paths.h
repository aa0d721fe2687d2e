#pragma once

#include <QString>

#include "core/tools.h"

/// Names and folders of backups on the desktop.
namespace orvanta {

/// `path` with ".apk" behind it, unless it ends so in any letter case.
QString withApkEnding(const QString& path);

/// The folder that holds the copy of `package`, for a folder that the user chose: either that one, or the
/// copy itself inside it.
QString restoreFolder(const QString& chosen, const QString& package, const HostStyle& style);

/// `path` with `ending` behind it; the name is cut where a file system would find it too long.
QString withEnding(const QString& path, const QString& ending, const HostStyle& style);

}  // namespace orvanta
