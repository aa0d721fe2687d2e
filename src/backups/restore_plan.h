#pragma once

#include "adb/app_state.h"
#include "backups/saved_app.h"

namespace orvanta {

/// What a restore is going to do, and what has to be known before it does.
struct RestorePlan {
  SavedApp saved;
  AppState onHeadset;

  bool isDowngrade() const;
  bool lacksRoom() const;
  /// The headset has data of this app, which the saved data would go over.
  bool meetsData() const;
  /// All of it, for the user to say yes to.
  QString text() const;
};

/// "label: value" and a line end.
QString lineOf(const QString& chinese, const QString& english, const QString& value);
/// How much a backup has of `part`: "3 files, 1.2 MiB".
QString amount(const BackupManifest& manifest, const QString& part);
/// The first three lines, and how many more there are.
QStringList firstFew(const QStringList& lines);

}  // namespace orvanta
