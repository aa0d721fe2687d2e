#pragma once

#include <QCoroTask>
#include <QObject>

#include "operations/menu_context.h"
#include "operations/safe_pull.h"

namespace orvanta {

/// The entries "Backup APK" and "Backup APK + OBB": copy the installed package to a file that the user names,
/// and its expansion files to a folder beside it, from which the install finds them again.
class PackageBackup : public QObject {
  Q_OBJECT

 public:
  explicit PackageBackup(MenuContext& menu);

  QCoro::Task<> mnu_backup_apk_Click();
  QCoro::Task<> mnu_backup_apk_obb_Click();

 private:
  QCoro::Task<QString> savePackage(QString package, QString pathErrorTitle, bool folderFollows);
  QCoro::Task<> saveExpansionFiles(QString package, QString target);
  QCoro::Task<QString> SaveApkDialog(QString DefaultName, QString InitialFolder, QString folderName);
  QCoro::Task<bool> maySave(QString target, QString folderName);
  QCoro::Task<bool> hasExpansionFiles(QString package);

  void noteKept(const PullOutcome& outcome);
  void presentBackup(const QString& target);

  MenuContext& m_menu;
  bool m_noExpansionFiles = false;  // the headset has said so
  // What to say of the backup when it has ended.
  QStringList m_news;
  QStringList m_kept;
};

}  // namespace orvanta
