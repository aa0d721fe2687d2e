#pragma once

#include <QHash>
#include <QList>

#include "adb/app_state.h"
#include "backups/manifest.h"

/// What has to come from a headset for a backup, and by which calls.
namespace orvanta {

/// A file on the headset, and what it is to become.
struct Wanted {
  DeviceFile from;
  BackupFile to;
};

/// A call of adb, and the files that it brings.
struct Pull {
  QString line;
  QList<Wanted> files;
};

/// The files of a backup by the path with the headset's names.
using KnownFiles = QHash<QString, BackupFile>;

qint64 bytesOf(const QList<Wanted>& files);

/// All files of the app, but for those that the headset has refused to give, in adb's words.
QList<Wanted> wantedFiles(const AppState& state, const QStringList& refusals);

/// The folders of the app in which there is nothing, as a manifest names them, sorted.
QStringList emptyFolders(const AppState& state);

/// Those of `wanted` that are not in `done` as the headset has them.
QList<Wanted> missingFiles(const QList<Wanted>& wanted, const KnownFiles& done);

/// The calls that bring the `missing` ones of `wanted` into `backup`, the folder of a backup of `package`. A
/// folder of which nothing is there yet comes in one piece; otherwise only the missing files come, those of
/// one folder together. Makes their folders, and removes what an interrupted run has left in their places.
QList<Pull> pullsFor(const QString& backup, const QString& package, const QList<Wanted>& wanted,
                     const QList<Wanted>& missing);

}  // namespace orvanta
