#pragma once

#include <functional>
#include <memory>

#include "apk/obb_discovery.h"
#include "core/main_window.h"
#include "core/module1.h"
#include "core/settings_store.h"
#include "core/splash.h"
#include "device/adb_row.h"
#include "device/device_panel.h"
#include "install/install_workflow.h"
#include "install/uninstall_workflow.h"
#include "inventory/installed_apps.h"
#include "monitor/device_watcher.h"
#include "operations/app_operations.h"
#include "permissions/manifest_permissions.h"
#include "permissions/permission_manager.h"

namespace orvanta {

/// The composition root: builds the windows, hands each feature what it needs, and starts the program.
class Application : private StartupSteps {
 public:
  /// `endProcess` is called once, when the program is to end.
  Application(Desktop& desktop, std::function<void()> endProcess);
  ~Application() override;

  /// Starts with the raw text behind the program's name: a package's path, or nothing.
  void start(const QString& commandText);

  apkinfo& mainWindow() { return m_apkinfo; }
  InstallWorkflow& install() { return m_install; }
  InstalledApps& installedApps() { return m_installedApps; }
  DeviceWatcher& watcher() { return m_watcher; }
  Form9& splash() { return m_Form9; }

 private:
  QCoro::Task<> showMainWindow(QString commandText);
  void Command8_Click();

  QCoro::Task<> showTip() override;
  QCoro::Task<> runFirstRunDialog() override;
  QCoro::Task<> readBadging() override;
  QCoro::Task<> StorageReport() override;
  QCoro::Task<> showIcon() override;
  QCoro::Task<> showInstalledBuild() override;

  SettingsStore m_settings;
  Module1 m_module;
  Form9 m_Form9;
  apkinfo m_apkinfo;
  Form2 m_Form2;
  DeviceWatcher m_watcher;
  InstallWorkflow m_install;
  UninstallWorkflow m_uninstall;
  Form1 m_Form1;
  DevicePanel m_devicePanel;
  AdbRow m_adbRow;
  InstalledApps m_installedApps;
  AppOperations m_operations;
  // Its window is a child of the list's, and goes first.
  PermissionManager m_permissionManager;
};

}  // namespace orvanta
