#include "app/application.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QSessionManager>
#include <algorithm>

#include "apk/icon_extraction.h"
#include "apk/package_reader.h"
#include "app/set_right.h"
#include "core/busy_tools.h"
#include "desktop/file_manager_entry.h"
#include "desktop/first_run.h"
#include "desktop/tip.h"
#include "monitor/installed_version.h"
#include "monitor/storage_report.h"
#include "platform/command_text.h"
#include "platform/tool_place.h"
#include "platform/usb_devices.h"
#include "queue/given_paths.h"
#include "ui/file_drop.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QStringList toolPlaces() {
  return placesOfTool(QProcessEnvironment::systemEnvironment(), QDir::homePath(),
                      QCoreApplication::applicationDirPath());
}

}  // namespace

Application::Application(Desktop& desktop, std::function<void()> endProcess)
    : m_bench(desktop),
      m_apkinfo({m_bench, m_settings,
                 [this, endProcess = std::move(endProcess)] {
                   // Not before: the closing steps can end the very adb server that the next one needs.
                   if (m_startsAnew) startAgain(m_nextText);
                   endProcess();
                 }}),
      m_Form2(&m_apkinfo),
      m_watcher(m_bench, [this] { return QApplication::activeWindow() == &m_apkinfo; }),
      m_report(m_bench),
      m_chooser(
          m_bench, m_settings, [this] { m_watcher.lookAnew(); }, &m_apkinfo),
      m_remedies(m_bench, {[this] { m_watcher.lookAnew(); }, [this] { m_chooser.choose(); },
                           [this] { startAnew(m_bench.state.package.ApkPath); }, toolPlaces}),
      m_doctor(
          m_bench, [this](ConnectionAction action) { m_remedies.carryOut(action); },
          [] { return isDebuggablePluggedIn(); }, toolPlaces),
      m_install(m_bench, &m_apkinfo, [this] { m_chooser.choose(); }),
      m_uninstall(m_bench),
      m_Form1(m_bench.state, &m_apkinfo),
      m_devicePanel(m_bench, m_apkinfo),
      m_adbRow(m_bench, m_apkinfo),
      m_queue(m_bench, [this] { m_chooser.choose(); }),
      m_queueWindow(m_queue, desktop, &m_apkinfo),
      m_installedApps(m_bench, m_apkinfo),
      m_operations(m_bench, m_installedApps.window()),
      m_permissionManager(m_bench, m_installedApps.window()) {
  connectButtons();
  for (QWidget* window : {static_cast<QWidget*>(&m_apkinfo), static_cast<QWidget*>(&m_queueWindow)}) {
    const bool isQueue = window == &m_queueWindow;
    new FileDrop(window, [this, isQueue](const QStringList& paths) {
      if (isQueue) {
        m_queue.add(paths);
      } else {
        takeDropped(paths);
      }
    });
  }
  // Until the main window is shown, the splash shows a tool that takes long.
  showTools(m_bench.turn, m_Form9.busyStrip);
}

void Application::connectButtons() {
  const apkinfo& form = m_apkinfo;
  QObject::connect(form.Command1, &QPushButton::clicked, &m_install, &InstallWorkflow::Command1_Click);
  QObject::connect(form.Command2, &QPushButton::clicked, &m_Form1, &Form1::Command2_Click);
  QObject::connect(form.Command4, &QPushButton::clicked, &m_uninstall, &UninstallWorkflow::Command4_Click);
  QObject::connect(form.Command5, &QPushButton::clicked, &m_uninstall, &UninstallWorkflow::Command5_Click);
  QObject::connect(form.Command8, &QPushButton::clicked, &m_Form2, [this] { Command8_Click(); });
  QObject::connect(form.Command9, &QPushButton::clicked, &m_installedApps, &InstalledApps::Command9_Click);
  QObject::connect(form.saveReport, &QPushButton::clicked, &m_report, &Report::save_Click);
  QObject::connect(form.Timer3, &QTimer::timeout, &m_watcher, &DeviceWatcher::Timer3_Timer);
  QObject::connect(&m_watcher, &DeviceWatcher::seen, &m_doctor, &ConnectionDoctor::consider);
}

Application::~Application() = default;

void Application::startAnew(const QString& text) {
  m_startsAnew = true;
  m_nextText = text;
  m_apkinfo.close();
}

void Application::endWithTheSession() {
  m_endRequests = EndRequests::create();
  QObject::connect(m_endRequests.get(), &EndRequests::asked, &m_apkinfo, &apkinfo::endInOrder);
  // A session manager would restart the program with arguments of its own, which would be taken for a path.
  QObject::connect(
      qApp, &QGuiApplication::saveStateRequest, &m_apkinfo,
      [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); },
      Qt::DirectConnection);
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, &m_apkinfo, &apkinfo::endInOrder,
                   Qt::DirectConnection);
}

void Application::takeDropped(const QStringList& paths) {
  const QString& first = paths.first();
  const LoadedPackage& loaded = m_bench.state.package;
  const bool isOnePackage =
      paths.size() == 1 && first.endsWith(u".apk"_s, Qt::CaseInsensitive) && QFileInfo(first).isFile();
  if (!isOnePackage) {
    const bool onlyFiles = std::all_of(paths.begin(), paths.end(), [](const QString& path) {
      return path.endsWith(u".obb"_s, Qt::CaseInsensitive);
    });
    // Expansion files alone are meant for the package that is there.
    queue(onlyFiles && loaded.NoApkLoaded == 0 ? QStringList(loaded.ApkPath) + paths : paths);
  } else if (loaded.NoApkLoaded == 1) {
    startAnew(QDir::toNativeSeparators(first));
  } else {
    startAgain(QDir::toNativeSeparators(first));
  }
}

void Application::queue(const QStringList& paths) {
  m_queueWindow.show();
  m_queueWindow.raise();
  m_queueWindow.activateWindow();
  m_queue.add(paths);
}

void Application::start(const QString& commandText, const QStringList& commandWords) {
  m_toQueue = severalPaths(commandText, commandWords);
  if (!m_toQueue.isEmpty()) {
    showMainWindow(QString());
    return;
  }
  m_Form9.Form_Load(commandText, [this, commandText] { showMainWindow(commandText); });
}

QCoro::Task<> Application::showMainWindow(QString commandText) {
  const bool loaded = co_await m_apkinfo.Form_Load(commandText, *this);
  m_Form9.hide();
  if (!loaded) co_return;
  m_apkinfo.show();
  m_apkinfo.activateWindow();
  if (!m_toQueue.isEmpty()) queue(m_toQueue);
}

void Application::Command8_Click() {
  m_Form2.showModal();
}

QStringList Application::setRight(QString& commandText) {
  return settleWhatIsLeft(commandText);
}

QCoro::Task<> Application::showTip() {
  if (!m_toQueue.isEmpty()) co_return;
  Form7 tip(m_settings);
  co_await tip.showModal();
}

QCoro::Task<> Application::runFirstRunDialog() {
  if (!m_toQueue.isEmpty()) co_return;
  const auto entry = FileManagerEntry::create();
  co_await FirstRun({m_bench.desktop, m_settings, [this] { m_apkinfo.QuitProgram(); }}, *entry);
}

QCoro::Task<> Application::readBadging() {
  return readPackage(m_bench);
}

QCoro::Task<> Application::StorageReport() {
  return orvanta::StorageReport(m_bench, m_bench.objDOS);
}

QCoro::Task<> Application::showIcon() {
  return orvanta::showIcon(m_bench.state.package, m_apkinfo.Picture1);
}

QCoro::Task<> Application::showInstalledBuild() {
  const bool listFiles = co_await showInstalledBuildAtStart(m_bench);
  if (listFiles) FindObbFiles(m_bench);
}

}  // namespace orvanta
