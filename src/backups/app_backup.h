#pragma once

#include <QCoroTask>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

#include "adb/app_state.h"
#include "backups/asked_ahead.h"
#include "backups/backup_outcome.h"
#include "backups/file_hashes.h"
#include "backups/manifest.h"
#include "backups/pull_plan.h"
#include "platform/journal.h"

namespace orvanta {

class DOSOutputs;
class Workbench;

/// Saves apps with all that belongs to them, a folder each. An interrupted backup is continued, and what is
/// already there and unchanged on both sides does not come again.
class BackupRun : public QObject {
  Q_OBJECT

 public:
  /// `parent` is the folder that gets the backups; `runner` runs the tools.
  BackupRun(Workbench& bench, DOSOutputs& runner, QString parent, HeadsetIdentity headset);

  /// Called before each app with its number from 1 on.
  std::function<void(int number, const AppToSave& app)> onApp = {};

  /// What came of each app, as far as the run came.
  QCoro::Task<QList<BackupOutcome>> save(QList<AppToSave> apps);

  /// The "kind" of its note in the journal.
  static const QString noteKind;
  /// Tells of a backup whose process is no more; it stays as it is, and the next one goes on with it.
  static Settled settle(const QJsonObject& note);

 private:
  QCoro::Task<BackupOutcome> saveOne(AppToSave app, QString next);
  QCoro::Task<BackupOutcome> saveInto(AppState state, BackupOutcome outcome);
  QCoro::Task<AppState> ask(QString package);
  QCoro::Task<bool> findUnchanged(AppState state);
  QCoro::Task<> takeOver(QString folder, QString name);
  QCoro::Task<> pull(Pull next);
  QString folderName() const;
  QString folderFor(const AppState& state);
  void noteUnreadable(QList<Wanted>& wanted);
  void noteDone();
  void keepRecord();
  void report();
  void tick();

  Workbench& m_bench;
  DOSOutputs& m_runner;
  QString m_parent;
  HeadsetIdentity m_headset;
  QHash<QString, QStringList> m_brokenOff;  // folders by package

  // The app that is being saved.
  QString m_folder;
  BackupManifest m_manifest;
  KnownFiles m_done;
  QHash<QString, Wanted> m_coming;  // of the pull under way, by the path on the desktop
  std::unique_ptr<FollowingHashes> m_hashes;
  std::unique_ptr<FileCheck> m_check;
  QString m_reply;
  // The next app's files are asked for while this one's come.
  QString m_next;
  std::unique_ptr<AskedAhead> m_ahead;

  // Of all apps, in bytes.
  qint64 m_saved = 0;
  qint64 m_appBytes = 0;
  qint64 m_later = 0;
  QTimer m_tick;
  QElapsedTimer m_recorded;
};

}  // namespace orvanta
