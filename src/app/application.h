#pragma once

#include <functional>
#include <memory>

#include "apk/obb_discovery.h"
#include "core/help_window.h"
#include "core/main_window.h"
#include "core/report.h"
#include "core/settings_store.h"
#include "core/splash.h"
#include "device/adb_row.h"
#include "device/device_panel.h"
#include "install/install_workflow.h"
#include "install/uninstall_workflow.h"
#include "inventory/installed_apps.h"
#include "monitor/connection_doctor.h"
#include "monitor/device_chooser.h"
#include "monitor/device_watcher.h"
#include "monitor/remedies.h"
#include "operations/app_operations.h"
#include "permissions/manifest_permissions.h"
#include "permissions/permission_manager.h"
#include "platform/end_requests.h"
#include "queue/queue_window.h"

namespace orvanta {

/// The composition root: builds the windows, hands each feature what it needs, and starts the program.
class Application : private StartupSteps {
 public:
  /// `endProcess` is called once, when the program is to end.
  Application(Desktop& desktop, std::function<void()> endProcess);
  ~Application() override;

  /// From now on the program closes in order when the system or the desktop session asks it to end.
  void endWithTheSession();
  /// Starts with the raw text after the program's name: the path of a package, or nothing. Where it is no
  /// path, and its words are several, these go to the queue.
  void start(const QString& commandText, const QStringList& commandWords = {});
  /// Takes what was dropped on the main window: one package takes the place of none, or gets a process of its
  /// own; several, bundles and folders go to the queue.
  void takeDropped(const QStringList& paths);

  Workbench& bench() { return m_bench; }
  apkinfo& mainWindow() { return m_apkinfo; }
  InstallWorkflow& install() { return m_install; }
  InstalledApps& installedApps() { return m_installedApps; }
  DeviceWatcher& watcher() { return m_watcher; }
  DeviceChooser& deviceChooser() { return m_chooser; }
  Form9& splash() { return m_Form9; }
  QueueWindow& queueWindow() { return m_queueWindow; }

 private:
  QCoro::Task<> showMainWindow(QString commandText);
  void connectButtons();
  void startAnew(const QString& text);
  void queue(const QStringList& paths);
  void Command8_Click();

  QStringList setRight(QString& commandText) override;
  QCoro::Task<> showTip() override;
  QCoro::Task<> runFirstRunDialog() override;
  QCoro::Task<> readBadging() override;
  QCoro::Task<> StorageReport() override;
  QCoro::Task<> showIcon() override;
  QCoro::Task<> showInstalledBuild() override;

  std::unique_ptr<EndRequests> m_endRequests;
  bool m_startsAnew = false;
  QString m_nextText;     // of the process that takes the place of this one
  QStringList m_toQueue;  // at the start
  SettingsStore m_settings;
  Workbench m_bench;
  Form9 m_Form9;
  apkinfo m_apkinfo;
  Form2 m_Form2;
  DeviceWatcher m_watcher;
  Report m_report;
  DeviceChooser m_chooser;
  Remedies m_remedies;
  ConnectionDoctor m_doctor;
  InstallWorkflow m_install;
  UninstallWorkflow m_uninstall;
  Form1 m_Form1;
  DevicePanel m_devicePanel;
  AdbRow m_adbRow;
  InstallQueue m_queue;
  QueueWindow m_queueWindow;
  InstalledApps m_installedApps;
  AppOperations m_operations;
  // Its window is a child of the list's, so it is destroyed first.
  PermissionManager m_permissionManager;
};

}  // namespace orvanta
