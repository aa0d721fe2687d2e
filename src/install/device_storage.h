#pragma once

#include <QCoroTask>
#include <QString>

namespace orvanta {

class Workbench;

/// The device's answer to where its shared storage is.
struct StorageAnswer {
  /// The reply had a line end to cut. Without one no further line can be composed.
  bool complete = false;
  QString path;
  /// All that the tool printed.
  QString reply;
};

/// Asks for the shared storage, without output in the console. Called again before each use.
QCoro::Task<StorageAnswer> askStorage(Workbench& bench);

/// Removes the package's folder of expansion files, without output in the console. Without a fit package name
/// and a real path nothing is composed, since it would remove other files; the console says so. Returns the
/// answer that the path comes from.
QCoro::Task<StorageAnswer> removeObbFolder(Workbench& bench, QString package);

/// Whether to remove the folder of the package's expansion files after an install or uninstall that adb
/// answered with `reply`. After a success: yes. If adb reports none, the app may still be on the device, and
/// the user is asked, with `unreported` as the first words and No preselected. After a stop or without a
/// reply: no, without asking.
QCoro::Task<bool> mayRemoveObbFolder(Workbench& bench, QString package, QString reply, QString unreported);

/// The console line before that removal; it names the path without the storage.
void sayFolderRemoval(Workbench& bench, const QString& package);

}  // namespace orvanta
