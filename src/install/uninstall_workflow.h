#pragma once

#include <QCoroTask>
#include <QObject>

namespace orvanta {

class apkinfo;

/// The buttons "卸载" and "卸载并保留数据": take the loaded package off the headset, with its data or
/// without.
///
/// Both ask the device first whether it has the package. No failure stops them, so that the watcher always
/// runs again behind them; adb's own words in the console are the verdict.
class UninstallWorkflow : public QObject {
  Q_OBJECT

 public:
  explicit UninstallWorkflow(apkinfo& form);

  /// Removes the package with its data.
  QCoro::Task<> Command4_Click();
  /// After a warning, removes the package and its expansion files; its own data stays.
  QCoro::Task<> Command5_Click();

 private:
  QCoro::Task<bool> isInstalled();
  QCoro::Task<QString> uninstall(bool keepData);
  void tellOfConnection(const QString& Reply);

  apkinfo& m_form;
};

}  // namespace orvanta
