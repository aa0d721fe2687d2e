#pragma once

#include <QCoroTask>
#include <QObject>

#include "install/verdict.h"

namespace orvanta {

class Workbench;

/// The buttons "卸载" and "卸载并保留数据": take the loaded package off the headset, with its data or
/// without.
///
/// Both ask the device first whether it has the package. No failure stops them, so that the watcher always
/// runs again afterwards. adb's own words stand in the console; the status line gives the verdict.
class UninstallWorkflow : public QObject {
  Q_OBJECT

 public:
  explicit UninstallWorkflow(Workbench& bench);

  /// Removes the package with its data.
  QCoro::Task<> Command4_Click();
  /// After a warning, removes the package and its expansion files; its data stays. If the uninstall does not
  /// report success, the user decides about the files.
  QCoro::Task<> Command5_Click();

 private:
  QCoro::Task<bool> isInstalled();
  QCoro::Task<QString> uninstall(bool keepData);
  QCoro::Task<> removeExpansionFiles(QString uninstallReply);
  void tellOfConnection(const QString& Reply);
  void giveVerdict();

  Workbench& m_bench;
  UninstallRun m_run;
  QString m_uninstallReply;
};

}  // namespace orvanta
