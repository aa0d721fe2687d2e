#include "inventory/headset_watch.h"

#include <QPointer>

#include "adb/app_state.h"
#include "adb/devices.h"
#include "adb/lines.h"
#include "core/workbench.h"
#include "inventory/apps_form.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr std::chrono::seconds interval{3};
constexpr qint64 longestReply = 1024 * 1024;  // bytes

/// The one that adb would talk to; empty where there is none, or no telling.
QString answeringIn(const QString& devicesReply) {
  const QString chosen = qEnvironmentVariable("ANDROID_SERIAL");
  QStringList ready;
  for (const ListedDevice& device : readDevices(devicesReply).devices)
    if (device.state == ListedDevice::State::Device && (chosen.isEmpty() || device.serial == chosen))
      ready << device.serial;
  return ready.size() == 1 ? ready.constFirst() : QString();
}

}  // namespace

HeadsetWatch::HeadsetWatch(Workbench& bench, Form4& window)
    : m_bench(bench), m_window(window), m_quietDOS(bench, &m_quiet) {
  m_quietDOS.setBound({longestReply, true});
  connect(&bench.turn, &Turn::begun, &m_quiet, &Turn::requestStop);
  connect(&m_interval, &QTimer::timeout, this, [this] {
    if (m_window.isActiveWindow()) look();
  });
  m_interval.start(interval);
}

QCoro::Task<> HeadsetWatch::look() {
  if (m_bench.turn.taken()) co_return;
  const auto quiet = m_quiet.begin();
  if (!quiet) co_return;
  const QPointer<HeadsetWatch> here(this);
  const QString list = co_await m_bench.runQuietly(m_quietDOS, devicesLine(Host::current()));
  if (here.isNull() || m_quiet.stopped()) co_return;
  const QString answering = answeringIn(list);
  // The first one is that of the list, which has been asked itself.
  if (m_seen.isEmpty()) m_seen = answering;
  if (answering.isEmpty() || answering == m_seen) co_return;
  const QString reply = co_await m_bench.runQuietly(m_quietDOS, headsetLine(Host::current()));
  if (here.isNull() || m_quiet.stopped()) co_return;
  const HeadsetIdentity headset = headsetIn(reply);
  if (headset.serial.isEmpty()) co_return;
  m_seen = answering;
  m_window.noteAnswering(headset);
}

}  // namespace orvanta
