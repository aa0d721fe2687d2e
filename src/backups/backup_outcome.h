#pragma once

#include <QString>
#include <QStringList>

namespace orvanta {

struct AppToSave {
  QString package;
  QString label;
  qint64 estimate = 0;  ///< bytes, as the list of apps has them

  /// What to call it.
  const QString& name() const { return label.isEmpty() ? package : label; }
};

/// What came of the backup of one app.
struct BackupOutcome {
  enum class Kind {
    Saved,
    Stopped,       ///< by the user
    Lost,          ///< the headset answers no more
    NotInstalled,  ///< the headset does not have it, or not any more
    NoRoom,        ///< on the desktop's disk
    NotWritable,   ///< the folder on the desktop
    Incomplete,    ///< files did not come as they are on the headset
    UnfitName,
  };
  Kind kind = Kind::Stopped;
  AppToSave app;
  QString folder;
  qint64 files = 0;
  qint64 bytes = 0;
  QString words;           ///< what a tool said, or the names of files; empty where there is nothing to add
  QStringList unreadable;  ///< what the headset did not let be read; the backup lacks it

  bool endsRun() const { return kind == Kind::Stopped || kind == Kind::Lost; }
  /// One line for the user.
  QString text() const;
};

/// The first few names, and how many more there are.
QString someNames(const QStringList& names);

}  // namespace orvanta
