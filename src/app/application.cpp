#include "app/application.h"

#include "apk/icon_extraction.h"
#include "apk/package_reader.h"
#include "desktop/file_manager_entry.h"
#include "desktop/first_run.h"
#include "desktop/tip.h"
#include "monitor/installed_version.h"
#include "monitor/storage_report.h"

namespace orvanta {

Application::Application(Desktop& desktop, std::function<void()> endProcess)
    : m_apkinfo({desktop, m_settings, m_module, std::move(endProcess)}),
      m_Form2(&m_apkinfo),
      m_watcher(m_apkinfo),
      m_install(m_apkinfo),
      m_uninstall(m_apkinfo),
      m_Form1(m_apkinfo),
      m_devicePanel(m_apkinfo),
      m_adbRow(m_apkinfo),
      m_installedApps(m_apkinfo),
      m_operations(m_apkinfo, m_installedApps.window()),
      m_permissionManager(m_apkinfo, m_installedApps.window()) {
  QObject::connect(m_apkinfo.Command8, &QPushButton::clicked, &m_Form2, [this] { Command8_Click(); });
  // While the main window is not on the screen, a tool that takes long shows on the splash.
  Turn& turn = m_apkinfo.turn();
  QObject::connect(&turn, &Turn::toolStarted, m_Form9.busyStrip, &BusyStrip::begin);
  QObject::connect(&turn, &Turn::toolEnded, m_Form9.busyStrip, &BusyStrip::pause);
  QObject::connect(&turn, &Turn::ended, m_Form9.busyStrip, &BusyStrip::end);
  QObject::connect(m_Form9.busyStrip, &BusyStrip::stopRequested, &turn, &Turn::requestStop);
}

Application::~Application() = default;

void Application::start(const QString& commandText) {
  m_Form9.Form_Load(commandText, [this, commandText] { showMainWindow(commandText); });
}

QCoro::Task<> Application::showMainWindow(QString commandText) {
  const bool loaded = co_await m_apkinfo.Form_Load(commandText, *this);
  m_Form9.hide();
  if (!loaded) co_return;
  m_apkinfo.show();
  m_apkinfo.activateWindow();
}

void Application::Command8_Click() {
  m_Form2.showModal();
}

QCoro::Task<> Application::showTip() {
  Form7 tip(m_settings);
  co_await tip.showModal();
}

QCoro::Task<> Application::runFirstRunDialog() {
  const auto entry = FileManagerEntry::create();
  co_await FirstRun(m_apkinfo, *entry);
}

QCoro::Task<> Application::readBadging() {
  return readPackage(m_apkinfo);
}

QCoro::Task<> Application::StorageReport() {
  return orvanta::StorageReport(m_apkinfo, *m_apkinfo.objDOS);
}

QCoro::Task<> Application::showIcon() {
  return orvanta::showIcon(m_apkinfo);
}

QCoro::Task<> Application::showInstalledBuild() {
  const bool listFiles = co_await showInstalledBuildAtStart(m_apkinfo);
  if (listFiles) FindObbFiles(m_apkinfo);
}

}  // namespace orvanta
