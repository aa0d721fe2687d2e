#pragma once

#include <QCoroTask>
#include <QObject>

#include "adb/app_state.h"
#include "backups/app_restore.h"
#include "operations/menu_context.h"

namespace orvanta {

/// The buttons above the list: "Back up everything", "Restore", "Check" and "Uninstall", about one app or
/// many.
class WholeBackups : public QObject {
  Q_OBJECT

 public:
  explicit WholeBackups(MenuContext& menu);

  QCoro::Task<> cmdBackup_Click();
  QCoro::Task<> cmdRestore_Click();
  QCoro::Task<> cmdCheck_Click();
  QCoro::Task<> cmdUninstall_Click();

 private:
  QCoro::Task<QList<ChosenApp>> askChosen();
  QCoro::Task<QString> askFolder(QString title);
  QCoro::Task<QList<SavedApp>> askBackups(QString title);
  QCoro::Task<std::optional<HeadsetIdentity>> askHeadset();
  QCoro::Task<bool> hasRoom(QString folder, qint64 bytes);
  QCoro::Task<RestoreOutcome> uninstall(ChosenApp app);
  QCoro::Task<> tell(QString done, qsizetype all, QList<RestoreOutcome> outcomes);

  MenuContext& m_menu;
};

}  // namespace orvanta
