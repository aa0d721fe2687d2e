#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

#include "adb/storage.h"
#include "core/borrowed_name.h"

namespace orvanta {

/// Indices of `ManifestFields`. All others are unused.
enum ManifestField : size_t {
  FieldPackage = 1,
  FieldVersionCode = 2,
  FieldVersionName = 3,
  FieldLabel = 4,
  FieldHeadTracking = 5,    ///< "Yes" if the package asks for it
  FieldInstalledBuild = 6,  ///< as the device reported it at the start; empty if not installed
  FieldIcon = 9,            ///< path inside the package
  FieldFirstPermission = 11,
};

/// The package file that the program was started with, and what it says about itself.
struct LoadedPackage {
  QString ApkPath;      ///< the whole command-line text, unchanged
  QStringList splits;   ///< further files that make one app with it, of a bundle
  QString ApkFileName;  ///< its file name
  int NoApkLoaded = 0;  ///< 1 when started with no text
  std::array<QString, 51> ManifestFields;
  int PermissionCount = 0;     ///< permission lines seen; can exceed the 40 that are kept
  QString TempZipPath;         ///< the package's path under its temporary name
  QString IconFilePath;        ///< the extracted icon
  BorrowedName packageName;    ///< its two names, and the note about them
  bool RenameBackDue = false;  ///< the package was renamed and must get its name back

  const QString& package() const { return ManifestFields[FieldPackage]; }
  const QString& versionCode() const { return ManifestFields[FieldVersionCode]; }
};

/// How the build on the device compares with the package file.
enum class BuildVerdict {
  NotInstalled,
  Older,
  Newer,
  Same,
  /// Equal as numbers but not as texts, such as 007 and 7: nothing is painted.
  Undecided,
};

/// "Older", "Newer" or "Same"; empty for the others.
QString wordOf(BuildVerdict verdict);

/// The build of the loaded package on the headset, as it is shown.
struct InstalledBuild {
  std::optional<BuildVerdict> verdict;  ///< nothing before the first answer
  QString number;                       ///< of the last answer that had one
  /// Set by a newer or equal build; stays with an older one, and ends when the app is gone.
  bool lightText = false;
};

/// The four storage figures as texts without units; empty where missing.
struct StorageShown {
  QString size;
  QString used;
  QString free;  ///< size minus used; unchanged if those are not numbers
  QString percent;
  std::optional<StorageRoom> room = {};  ///< the same reply, read by its columns and units
};

/// What the headset last reported.
struct Headset {
  StorageShown storage;
  InstalledBuild build;
  bool InstalledSeen = false;  ///< last answer of the installed-version check

  // What is shown above stays when the headset leaves; what follows holds only for the one that is there.
  QString serial;                        ///< the one that adb works on, as last polled; empty without one
  qsizetype unchosen = 0;                ///< devices of which adb can take none, since none is chosen
  std::optional<StorageRoom> room = {};  ///< as last reported
  QString newerBuild;                    ///< the installed build, if it is newer than the package's
};

/// What decides which controls are enabled.
struct Availability {
  enum class Phase {
    AsStarted,  ///< no poll has ended yet
    Locked,     ///< an install runs
    Unlocked,   ///< an install has ended, and no poll since
    Answered,   ///< the last poll found a device
    Gone,       ///< the last poll found none
  };
  Phase phase = Phase::AsStarted;
  /// The uninstall buttons are enabled: set by the comparison, after the poll.
  bool mayUninstall = true;

  bool operator==(const Availability&) const = default;
};

/// The expansion files that the install has found, and the user's choice.
struct ExpansionFileList {
  /// Number of entries. Can exceed the last index of the arrays.
  qint32 ObbFileCount = 0;
  /// File name and full local path of entry i, from index 1 on; index 0 is not used.
  std::array<QString, 256> ObbFileNames;
  std::array<QString, 256> ObbFilePaths;
  /// The user pressed the button of the selection window at least once in this run of the program.
  bool ObbSelectionConfirmed = false;
};

/// The state of the program, without widgets: workflows change it, windows show it.
class State : public QObject {
  Q_OBJECT

 public:
  LoadedPackage package;
  ExpansionFileList expansionFiles;
  /// While true, text from the main window's runner does not reach the console. Not a lock.
  bool CommandBusy = false;
  bool WatcherHold = false;  ///< while true the watcher's tick does nothing
  bool Grant = false;        ///< grant all permissions that the package asks for

  const Headset& headset() const { return m_headset; }
  const Availability& availability() const { return m_availability; }
  /// The installed-apps window was closed once; it opens once per run of the program.
  bool InstalledAppsClosed() const { return m_installedAppsClosed; }

  void setStorage(const StorageShown& storage);
  void setInstalledBuild(BuildVerdict verdict, const QString& number);
  void setInstalledSeen(bool seen) { m_headset.InstalledSeen = seen; }
  /// Another headset takes its place: what this one said counts no more.
  void forgetHeadset();
  /// What a list of devices tells: the headset that adb works on, or among how many it cannot decide.
  void noteDevices(const QString& serial, qsizetype unchosen);
  /// Something was removed from the headset, so that its room is no longer known.
  void forgetRoom() { m_headset.room.reset(); }
  void setPhase(Availability::Phase phase);
  void setMayUninstall(bool may);
  void closeInstalledApps();
  /// The fields of the package are complete.
  void notePackage() { Q_EMIT packageChanged(); }
  /// The program was started without a package; this does not change.
  void noteNoPackage();

 Q_SIGNALS:
  void packageChanged();
  void storageChanged();
  void installedBuildChanged();
  void availabilityChanged();

 private:
  Headset m_headset;
  Availability m_availability;
  bool m_installedAppsClosed = false;
};

}  // namespace orvanta
