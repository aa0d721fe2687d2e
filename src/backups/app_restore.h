#pragma once

#include <QCoroTask>
#include <QObject>
#include <QTimer>
#include <functional>

#include "backups/restore_plan.h"
#include "ui/desktop.h"

namespace orvanta {

class DOSOutputs;
class Workbench;

/// What came of one restore, or of one check.
struct RestoreOutcome {
  bool good = false;
  bool ends = false;  ///< stopped, or the headset is gone: what comes after is not begun
  QString text;       ///< one line for the user
};

/// Puts backups back on the headset, and checks them without one.
class RestoreRun : public QObject {
  Q_OBJECT

 public:
  RestoreRun(Workbench& bench, DOSOutputs& runner);

  /// Called before each restore with its number from 1 on.
  std::function<void(int number, const SavedApp& saved)> onBackup = {};

  /// Compares the files with the manifests. Backups without one have no hashes: that they can be read is all
  /// that is found out.
  QCoro::Task<QList<RestoreOutcome>> check(QList<SavedApp> backups);
  /// Asks the user and restores. Nothing is written to the headset without a yes.
  QCoro::Task<QList<RestoreOutcome>> restore(QList<SavedApp> backups);
  /// How many backups the last call of it was about, where several copies are one backup.
  qsizetype count() const { return m_count; }

 private:
  QCoro::Task<RestoreOutcome> checkOne(SavedApp saved);
  QCoro::Task<QList<SavedApp>> joinedCopies(QList<SavedApp> backups);
  QCoro::Task<SavedApp> identified(SavedApp saved);
  QCoro::Task<RestoreOutcome> restoreOne(SavedApp saved, bool asked);
  QCoro::Task<QString> put(SavedApp saved, bool withData);
  QCoro::Task<QString> push(SavedApp saved, QString part);
  QCoro::Task<> makeEmptyFolders(SavedApp saved, QStringList parts);
  QCoro::Task<QString> differences(SavedApp saved, bool withData);
  QCoro::Task<bool> agreed(QString text, bool risky);
  QCoro::Task<QString> run(QString line);
  QCoro::Task<QString> send(QString line, qint64 bytes);
  void report();
  RestoreOutcome ended(const SavedApp& saved) const;

  Workbench& m_bench;
  DOSOutputs& m_runner;
  std::unique_ptr<FileCheck> m_check;
  QString m_reply;
  qsizetype m_count = 0;
  // In bytes: what a check has read, or what was sent before the tool that runs now.
  qint64 m_done = 0;
  qint64 m_all = 0;
  qint64 m_sending = 0;  // by that tool
  // Of all backups.
  qint64 m_sentBefore = 0;
  qint64 m_toSend = 0;
  QTimer m_tick;
};

}  // namespace orvanta
