#pragma once

#include <QString>
#include <QStringList>

#include "core/state.h"
#include "platform/host_style.h"

namespace orvanta {

/// What the install workflow's scan reads of the disk.
struct PackageSurroundings {
  /// The folder of the package file, with its separator at the end; empty if the path has no folder.
  QString ApkFolder;
  QString package;
  /// Whether a folder named like the package is beside the package file.
  bool hasPackageFolder = false;
  /// File names in that folder if there is one, else beside the package file.
  QStringList files;
};

/// Looks at the disk around the package file at `apkPath`.
PackageSurroundings surroundingsOf(const QString& apkPath, const QString& package);

/// Fills the expansion-file list. Every file of the package's own folder belongs to the package; beside the
/// package file, files ending in obb, pak, zip or dle (with or without a dot) count, and only if one of them
/// is an obb. Returns whether there is a reason to treat the list as expansion files (`ObbFound`).
bool listExpansionFiles(const PackageSurroundings& found, const HostStyle& style, ExpansionFileList& module);

}  // namespace orvanta
