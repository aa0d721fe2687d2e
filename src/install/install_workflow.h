#pragma once

#include <QCoroTask>
#include <QObject>
#include <memory>

#include "install/obb_selection.h"

namespace orvanta {

class apkinfo;

/// The button "安装": puts the loaded package on the headset, and with it the expansion files that lie beside
/// it.
///
/// One straight run of steps that stops for no failure, so that the window is always unlocked; adb's own
/// words in the console are the verdict.
class InstallWorkflow : public QObject {
  Q_OBJECT

 public:
  explicit InstallWorkflow(apkinfo& form);
  ~InstallWorkflow() override;

  QCoro::Task<> Command1_Click();

  /// The selection window, null while it is not loaded.
  Form3* selection() const { return m_Form3.get(); }

 private:
  void lock();
  void unlock();
  void scan();
  Form3& loadedSelection();
  QCoro::Task<> selectFiles();
  QCoro::Task<> runInstall();
  QCoro::Task<> ObbTransfer();
  QCoro::Task<QString> listDeviceFolder();
  QCoro::Task<> transferEntry(int i, bool removeOldFolder);
  bool isChosen(int i);

  apkinfo& m_form;
  std::unique_ptr<Form3> m_Form3;
  bool m_unloadDue = false;
};

}  // namespace orvanta
