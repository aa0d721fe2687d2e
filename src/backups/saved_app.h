#pragma once

#include <QList>
#include <QString>

#include "backups/file_hashes.h"
#include "backups/manifest.h"
#include "text/bilingual.h"

namespace orvanta {

/// A backup on the desktop.
struct SavedApp {
  enum class Kind {
    Whole,    ///< with a manifest
    Package,  ///< a package file, with its expansion files in a folder beside it if it has any
    ExpansionFiles,
    Data,
  };
  Kind kind = Kind::Whole;
  QString folder;  ///< the paths of the files are below it
  /// Of a backup without a manifest what can be seen: the files, and the package where a folder has its name.
  BackupManifest manifest;
  Bilingual problem = {};  ///< why it is no backup; else empty

  bool isUsable() const { return problem == Bilingual(); }
  QString title() const;
  QString pathOf(const BackupFile& file) const { return folder + u'/' + file.path; }
  /// All files with what is known of them.
  QList<HashedFile> hashedFiles() const;
  /// The package file that names the package; may be empty.
  QString basePath() const;
};

/// The backups that `chosen` is, or that lie directly in it: whole ones, and copies that the entries of the
/// menu have made. Folders that are no backup do not count; one in which a backup was begun does, with that
/// as its problem.
QList<SavedApp> savedAppsIn(const QString& chosen);

/// The expansion files in a folder beside a package file, once its package is known.
void addExpansionFiles(SavedApp& saved);

}  // namespace orvanta
