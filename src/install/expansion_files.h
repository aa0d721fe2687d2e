#pragma once

#include <QString>
#include <QStringList>

#include "core/module1.h"
#include "platform/host_style.h"

namespace orvanta {

/// What the install workflow's scan reads of the disk.
struct PackageSurroundings {
  /// The folder of the package file, with its separator at the end; empty when the path has none.
  QString ApkFolder;
  QString package;
  /// Whether a folder named as the package lies beside the package file.
  bool hasPackageFolder = false;
  /// File names in that folder if there is one, else beside the package file.
  QStringList files;
};

/// Fills the expansion-file list. Every file of the package's own folder belongs to the package; beside the
/// package file those count that end in obb, pak, zip or dle (no dot is asked for), and only while one of
/// them is an obb. Returns whether there is a reason to treat the list as expansion files (`ObbFound`).
bool listExpansionFiles(const PackageSurroundings& found, const HostStyle& style, Module1& module);

/// Whether `fileName` occurs in the device's listing; case does not matter, and a part of a longer name is
/// enough.
bool isOnDevice(const QString& fileName, const QString& Listing);

}  // namespace orvanta
