#pragma once

#include <QString>
#include <QStringList>

#include "platform/host_style.h"

/// Paths and folders on this desktop.
namespace orvanta {

/// The path up to and including its last separator; empty without a separator.
QString ParentPath(const QString& path, const HostStyle& style = HostStyle::native());

/// The name after the last separator (on Windows of either kind); a path without one is returned whole.
QString BaseName(const QString& path, const HostStyle& style = HostStyle::native());

/// The absolute path in the host's own form; a relative one starts from the current folder.
QString absolutePath(const QString& path);

/// Whether `sFolder` is a folder that exists; any failure gives false.
bool FolderExists(const QString& sFolder);

/// The names of the files directly in `folder`: regular files and links to them, hidden ones too, numbers
/// inside names ordered by value. Folders and unreadable entries are skipped; a missing folder gives no
/// names.
QStringList filesDirectlyIn(const QString& folder);

}  // namespace orvanta
