#pragma once

#include <QString>

/// What the replies of `adb` to the menu's operations mean.
namespace orvanta {

/// `reply` less what adb says first when it has had to start its server.
QString withoutServerNotes(const QString& reply);

/// Whether the reply to `pm path` names a package file:
///     package:/data/app/com.example-1/base.apk
bool namesPackageFile(const QString& reply);

/// The path behind the eight characters that lead it, without line ends and blanks; empty in a shorter reply.
QString packageFileIn(const QString& reply);

/// Whether a pull of one file says that it came:
///     /data/app/x/base.apk: 1 file pulled, 0 skipped. 213.3 MB/s (129206570 bytes in 0.578s)
bool saysOneFilePulled(const QString& reply);

/// Whether a pull of a folder came to its end and brought anything.
bool saysFolderPulled(const QString& reply);

/// Whether a pull found nothing at the path on the device; a missing folder on the desktop is another matter.
///     adb: error: failed to stat remote object '/sdcard/x': No such file or directory
///     adb: error: remote object '/sdcard/x' does not exist
bool saysRemoteMissing(const QString& reply);

/// Whether an uninstall reports success.
bool saysUninstalled(const QString& reply);

/// Whether a launch reached an activity, and whether there was none to reach.
bool saysLaunched(const QString& reply);
bool saysNoActivity(const QString& reply);

/// The sizes in a reply of one number a line.
struct DeviceSizes {
  qint64 files = 0;
  qint64 bytes = 0;
  QString complaints;     ///< the lines that are no size
  bool answered = false;  ///< the device was asked, and has said what it had to say

  /// Whether the figures are whole. An empty folder has none, and no complaint.
  bool known() const { return answered && complaints.isEmpty(); }
};
DeviceSizes sizesIn(const QString& reply);

}  // namespace orvanta
