#pragma once

#include <QCoroTask>
#include <QObject>

#include "inventory/app_icons.h"
#include "inventory/apps_form.h"
#include "inventory/headset_watch.h"
#include "inventory/progress.h"
#include "inventory/progress_form.h"

namespace orvanta {

class Workbench;
struct InventoryOutcome;

/// The button for the installed apps: gathers the inventory with one script, shows how far it is, and opens
/// the window with what could be read. It opens once in a run of the program.
class InstalledApps : public QObject {
  Q_OBJECT

 public:
  /// `mainWindow` is hidden while the list is open.
  InstalledApps(Workbench& bench, QWidget& mainWindow);
  ~InstalledApps() override;

  /// All steps from the button to the open window.
  QCoro::Task<> Command9_Click();

  /// Reads the list anew, in place. A reading that does not come to its end leaves the list as it was.
  QCoro::Task<> cmdRefresh_Click();

  Form5& progress() { return m_Form5; }
  Form4& window() { return m_Form4; }

 private:
  QCoro::Task<> loadForm4();
  QCoro::Task<> askCount();
  QCoro::Task<> runScript(InventoryOutcome& outcome);
  QCoro::Task<HeadsetIdentity> askHeadset();
  QCoro::Task<QString> readAgain();
  void show(const Inventory& inventory, InventoryOutcome& outcome);
  void objDOS_ReceiveOutputs(const QString& CommandOutputs);
  void Form4_unloaded();

  Workbench& m_bench;
  QWidget& m_mainWindow;
  Form5 m_Form5;
  Form4 m_Form4;
  AppIcons m_icons{m_bench, m_Form4};
  HeadsetWatch m_headsetWatch{m_bench, m_Form4};
  AppTagCounter m_counter;
  QString m_ScriptOutput;
  QString m_AppCountText;
  bool m_InventoryDone = false;
};

}  // namespace orvanta
