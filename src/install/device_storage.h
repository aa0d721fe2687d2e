#pragma once

#include <QCoroTask>
#include <QString>

namespace orvanta {

class apkinfo;

/// The device's answer to where its shared storage is.
struct StorageAnswer {
  /// The reply had a line end to cut. Without one no line can be composed behind it.
  bool complete = false;
  QString path;
  /// All that the tool printed.
  QString reply;
};

/// Asks for the shared storage, out of the console's sight. It is asked for anew before each use.
QCoro::Task<StorageAnswer> askStorage(apkinfo& form);

/// Removes the package's folder of expansion files, out of the console's sight. Not composed without a fit
/// package name and a real path, since it would remove somebody else's files: the console says so instead.
/// Returns the answer that the path comes from.
QCoro::Task<StorageAnswer> removeObbFolder(apkinfo& form, QString package);

/// The console line before that removal; it names the path without the storage.
void sayFolderRemoval(apkinfo& form, const QString& package);

}  // namespace orvanta
