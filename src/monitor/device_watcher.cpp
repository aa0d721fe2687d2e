#include "monitor/device_watcher.h"

#include <QApplication>
#include <QFileInfo>

#include "core/main_window.h"
#include "core/tools.h"
#include "monitor/installed_version.h"
#include "monitor/storage_report.h"
#include "platform/file_moves.h"

using namespace Qt::StringLiterals;

namespace orvanta {

bool answersLikeADevice(const QString& devicesOutput) {
  constexpr qsizetype longestHeading = 35;
  return devicesOutput.size() > longestHeading;
}

DeviceWatcher::DeviceWatcher(apkinfo& form) : m_form(form), m_pollDOS(form) {
  connect(form.Timer1, &QTimer::timeout, this, &DeviceWatcher::Timer1_Timer);
  connect(form.Timer2, &QTimer::timeout, this, &DeviceWatcher::Timer2_Timer);
  connect(form.Timer3, &QTimer::timeout, this, &DeviceWatcher::Timer3_Timer);
  connect(&form, &apkinfo::closing, &m_pollDOS, &DOSOutputs::stop);
}

void DeviceWatcher::Timer1_Timer() {
  m_form.txtOutputs->moveToEnd();
}

void DeviceWatcher::Timer2_Timer() {
  const auto frames = static_cast<qint16>(m_form.Picture2.size());
  m_form.Picture2[static_cast<size_t>(m_form.AnimationFrame)]->setVisible(false);
  m_form.AnimationFrame = static_cast<qint16>((m_form.AnimationFrame + 1) % frames);
  m_form.Picture2[static_cast<size_t>(m_form.AnimationFrame)]->setVisible(true);
}

bool DeviceWatcher::overtaken(quint64 asked) const {
  return m_form.WatcherHold || m_form.turn().count() != asked;
}

QCoro::Task<> DeviceWatcher::Timer3_Timer() {
  if (m_form.WatcherHold || m_form.turn().taken() || m_polling) co_return;
  m_polling = true;
  const quint64 asked = m_form.turn().count();
  const bool connected = co_await DeviceConnected();
  if (!overtaken(asked)) {
    if (connected) {
      co_await deviceAnswered(asked);
    } else {
      deviceGone();
    }
    if (!overtaken(asked)) returnPackageName();
  }
  m_polling = false;
}

QCoro::Task<bool> DeviceWatcher::DeviceConnected() {
  // Only the main window itself counts: while the user is elsewhere, adb is left alone.
  if (QApplication::activeWindow() != &m_form) co_return false;
  const QString line = AdbPrefix(Host::current()) + u" devices"_s;
  const QString output = co_await m_form.runQuietly(m_pollDOS, line);
  co_return answersLikeADevice(output);
}

QCoro::Task<> DeviceWatcher::deviceAnswered(quint64 asked) {
  if (m_form.Label7->Caption() == u" Gb"_s) {
    co_await StorageReport(m_form, m_pollDOS);
    if (overtaken(asked)) co_return;
  }
  if (m_form.NoApkLoaded == 0) {
    m_form.Command1->setEnabled(true);
    m_form.Command2->setEnabled(true);
  }
  for (Button* button : {m_form.Command6, m_form.Command11, m_form.Command12}) button->setEnabled(true);
  if (!m_form.module().InstalledAppsClosed) m_form.Command9->setEnabled(true);
  m_form.Command10->setEnabled(true);
  const bool installed = co_await CompareInstalledVersion(m_form, m_pollDOS);
  if (overtaken(asked)) co_return;
  m_form.Command5->setEnabled(installed);
  m_form.Command4->setEnabled(installed);
}

void DeviceWatcher::deviceGone() {
  for (Button* button : {m_form.Command2, m_form.Command1, m_form.Command4, m_form.Command5, m_form.Command6,
                         m_form.Command9, m_form.Command10, m_form.Command11, m_form.Command12}) {
    button->setEnabled(false);
  }
}

void DeviceWatcher::returnPackageName() {
  if (!m_form.RenameBackDue || !QFileInfo::exists(m_form.TempZipPath)) return;
  // The very name that it had, with its own capitals; where that is taken, the next poll tries again.
  if (renameNoReplace(m_form.TempZipPath, m_form.ApkPath)) m_form.RenameBackDue = false;
}

}  // namespace orvanta
