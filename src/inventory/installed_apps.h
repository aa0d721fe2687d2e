#pragma once

#include <QCoroTask>
#include <QObject>

#include "inventory/apps_form.h"
#include "inventory/progress.h"
#include "inventory/progress_form.h"

namespace orvanta {

class apkinfo;
struct InventoryOutcome;

/// The button for the installed apps: gathers the inventory with one script, shows how far it is, and opens
/// the window with what could be read. It opens once in a run of the program.
class InstalledApps : public QObject {
  Q_OBJECT

 public:
  explicit InstalledApps(apkinfo& form);
  ~InstalledApps() override;

  /// The whole road from the button to the open window.
  QCoro::Task<> Command9_Click();

  Form5& progress() { return m_Form5; }
  Form4& window() { return m_Form4; }

 private:
  QCoro::Task<> loadForm4();
  QCoro::Task<> askCount();
  QCoro::Task<> runScript(InventoryOutcome& outcome);
  void objDOS_ReceiveOutputs(const QString& CommandOutputs);
  void Form4_unloaded();

  apkinfo& m_form;
  Form5 m_Form5;
  Form4 m_Form4;
  AppTagCounter m_counter;
  QString m_ScriptOutput;
  QString m_AppCountText;
  bool m_InventoryDone = false;
};

}  // namespace orvanta
