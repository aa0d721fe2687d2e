#pragma once

#include <QList>
#include <QString>
#include <optional>

#include "adb/listing.h"
#include "adb/outcome.h"
#include "ui/status.h"

namespace orvanta {

/// What became of an expansion file that the user wants on the headset.
struct SentFile {
  QString name;
  qint64 bytes = 0;                ///< of the file on this computer
  std::optional<Outcome> push;     ///< nothing where it was not sent
  bool skipped = false;            ///< not sent, since the headset has a file of that name
  std::optional<qint64> onDevice;  ///< its size there, where a listing told it
  bool missing = false;            ///< a listing does not have it

  /// Takes over from a reply to `ls -Ral`, as read, whether the name occurs there and how large the file is.
  void noteSkipped(const QString& Listing, const ListedFiles& listed);

  bool differs() const { return onDevice && *onDevice != bytes; }
  bool arrived() const {
    return (skipped || (push && push->kind == Outcome::Kind::Success)) && !differs() && !missing;
  }
};

/// How an install went.
struct InstallRun {
  QString package;  ///< its name
  QString version;  ///< for a user to read
  qint64 packageBytes = 0;
  std::optional<Outcome> install;  ///< nothing where adb was not called
  QList<SentFile> files;           ///< those that were chosen
  bool listed = true;              ///< false: no listing tells whether the files that were sent are there
  bool stopped = false;
  qint64 milliseconds = 0;

  bool sentAny() const;
};

/// How an uninstall went. Not called for one that the user has not confirmed.
struct UninstallRun {
  bool dataKept = false;
  bool unusableName = false;
  bool absent = false;               ///< the headset's own list does not have the package
  std::optional<Outcome> uninstall;  ///< else of the call that asked for the list
  bool stopped = false;
};

/// The one line that tells how it ended. Only adb's own word makes it a success.
Status verdictOn(const InstallRun& run);
Status verdictOn(const UninstallRun& run);

}  // namespace orvanta
