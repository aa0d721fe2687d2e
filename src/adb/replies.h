#pragma once

#include <QString>

/// What the replies of adb mean: transfers, uninstalls, launches, listings. All but the first three functions
/// expect a reply without the notes of a starting server.
namespace orvanta {

/// `S1` without the control characters and blanks that tools and their line ends leave in it, inside it too.
QString CTrim(const QString& S1);

/// Whether `line` is one that adb prints before its answer when it has to start its server:
///     * daemon not running; starting now at tcp:5037
///     * daemon started successfully
///     adb server version (40) doesn't match this client (41); killing...
bool isServerNote(QStringView line);

/// `reply` without such lines at its beginning, which are not part of the answer.
QString withoutServerNotes(const QString& reply);

/// Whether the reply to `pm list packages` names any; if not, the reply is not a list but some other text.
bool listsPackages(const QString& reply);

/// `reply` without the lines that only show the progress of a transfer:
///     pull: building file list...
///     [ 28%] /sdcard/Android/data/com.example/files/save: 28%
QString withoutProgress(const QString& reply);

/// Whether the reply to `pm path` names a package file:
///     package:/data/app/com.example-1/base.apk
bool namesPackageFile(const QString& reply);

/// The path after the eight characters of "package:", without line ends and blanks; empty for a shorter
/// reply.
QString packageFileIn(const QString& reply);

/// Whether a pull of one file reports that it arrived:
///     /data/app/x/base.apk: 1 file pulled, 0 skipped. 213.3 MB/s (129206570 bytes in 0.578s)
bool saysOneFilePulled(const QString& reply);

/// Whether a pull of a folder completed and brought at least one file.
bool saysFolderPulled(const QString& reply);

/// Whether a pull of a folder says that it brought nothing. A count that ends in zero ("10 files") matches
/// too: a caller that must know asks for the sizes first.
///     /sdcard/Android/data/com.example/: 0 files pulled, 0 skipped.
bool saysNoFilesPulled(const QString& reply);

/// The same by its first two words alone.
bool saysNoFiles(const QString& reply);

/// Whether a pull found nothing at the path on the device; a missing folder on the desktop does not count.
///     adb: error: failed to stat remote object '/sdcard/x': No such file or directory
///     adb: error: remote object '/sdcard/x' does not exist
bool saysRemoteMissing(const QString& reply);

/// Whether an uninstall reports success.
bool saysUninstalled(const QString& reply);

/// Whether an install or an uninstall reports success, in a line of its own; the word inside a longer line
/// does not count.
///     Performing Streamed Install
///     Success
bool saysSuccess(const QString& reply);

/// Whether adb could not reach the headset in the middle of its work:
///     adb: connect error for write: device offline
bool saysConnectionLost(const QString& reply);

/// Whether a launch reached an activity, and whether there was none to reach.
bool saysLaunched(const QString& reply);
bool saysNoActivity(const QString& reply);

/// The sizes in a reply of one number a line.
struct DeviceSizes {
  qint64 files = 0;
  qint64 bytes = 0;
  QString complaints;     ///< the lines that are no size
  bool answered = false;  ///< the device was asked and the reply is complete

  /// Whether the figures are complete. An empty folder has none and no complaint.
  bool known() const { return answered && complaints.isEmpty(); }
};
DeviceSizes sizesIn(const QString& reply);

/// Whether `fileName` occurs in the reply to `ls -Ral`; case does not matter, and a part of a longer name is
/// enough.
bool isOnDevice(const QString& fileName, const QString& Listing);

/// Whether the reply to `ls -Ral` lists any regular file:
///     -rw-rw---- 1 root sdcard_rw 5 2021-01-01 00:00 main.1.obb
bool listsFiles(const QString& Listing);

/// The line of a reply that tells a user what is wrong: the reason of an exception or a refusal, an error,
/// else the first line. Empty if there is no line.
QString tellingLine(const QString& reply);

}  // namespace orvanta
