#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

/// What the user gave to be installed: dropped, chosen, or named at the start.
struct GivenPaths {
  QStringList packages;        ///< package files and bundles, each once; those of a folder by name
  QStringList expansionFiles;  ///< that were given by themselves
  QStringList others;          ///< neither, or not there
  bool tooMany = false;        ///< a folder holds more than is looked through
};

/// Looks into folders, and the folders in them. Their expansion files are left out, since the install finds
/// those that lie beside a package.
GivenPaths readGiven(const QStringList& paths);

/// Whether a file of this name holds a package with its parts (apks, xapk, apkm).
bool isBundle(const QString& name);

/// The package that a file "main.12.com.example.game.obb" says it belongs to; empty for another name.
QString packageOfExpansionFile(const QString& name);

/// The paths to queue where the words of a start are several; none where the whole text is one path that
/// exists, or no word is.
QStringList severalPaths(const QString& commandText, const QStringList& words);

}  // namespace orvanta
