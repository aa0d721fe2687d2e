#include "monitor/device_watcher.h"

#include <QFileInfo>

#include "adb/devices.h"
#include "adb/lines.h"
#include "core/workbench.h"
#include "monitor/installed_version.h"
#include "monitor/storage_report.h"

using namespace Qt::StringLiterals;

namespace orvanta {

DeviceWatcher::DeviceWatcher(Workbench& bench, std::function<bool()> inFront, std::chrono::milliseconds limit)
    : m_bench(bench), m_inFront(std::move(inFront)), m_pollDOS(bench, &m_poll) {
  m_pollDOS.setBound({longestReply, true});
  m_limit.setSingleShot(true);
  m_limit.setInterval(limit);
  connect(&m_limit, &QTimer::timeout, &m_poll, &Turn::requestStop);
  connect(&bench.turn, &Turn::begun, &m_poll, &Turn::requestStop);
}

bool DeviceWatcher::overtaken(quint64 asked) const {
  return m_bench.state.WatcherHold || m_bench.turn.count() != asked;
}

QCoro::Task<> DeviceWatcher::Timer3_Timer() {
  if (m_bench.state.WatcherHold || m_bench.turn.taken()) co_return;
  const auto poll = m_poll.begin();
  if (!poll) {
    tellSeen();
    co_return;
  }
  m_limit.start();
  const quint64 asked = m_bench.turn.count();
  const bool connected = co_await DeviceConnected();
  if (!overtaken(asked)) {
    if (connected) {
      co_await deviceAnswered(asked);
    } else {
      m_bench.state.setPhase(Availability::Phase::Gone);
    }
    if (!overtaken(asked)) returnPackageName();
  }
}

QCoro::Task<bool> DeviceWatcher::DeviceConnected() {
  // Only the main window itself counts: while the user is elsewhere, adb is left alone.
  m_facts.inFront = m_inFront();
  if (!m_facts.inFront) {
    m_silence.invalidate();
    tellSeen();
    co_return false;
  }
  if (!m_silence.isValid()) m_silence.start();
  m_asked = true;
  const quint64 asked = m_bench.turn.count();
  const QString line = devicesLine(Host::current());
  const QString output = co_await m_bench.runQuietly(m_pollDOS, line);
  noteReply(asked);
  co_return answersLikeADevice(output);
}

void DeviceWatcher::noteReply(quint64 asked) {
  // A poll that a handler has ended owes nothing.
  if (m_pollDOS.answered() || m_bench.turn.count() != asked) m_silence.invalidate();
  // The notes on the server are no answer of the headset's, but they tell of quarrels about it.
  if (m_pollDOS.answered()) m_facts.answer = m_pollDOS.Outputs();
  tellSeen();
}

void DeviceWatcher::tellSeen() {
  constexpr qint64 second = 1000;
  // The poll itself goes on only when the user has closed the box about it.
  const auto error = m_asked ? m_pollDOS.startError() : std::nullopt;
  m_facts.tool = error ? toolAfterStartFailure(*error) : ConnectionFacts::Tool::Runs;
  if (error) m_silence.invalidate();
  m_facts.silentSeconds = m_silence.isValid() ? static_cast<int>(m_silence.elapsed() / second) : 0;
  Q_EMIT seen(m_facts);
}

QCoro::Task<> DeviceWatcher::lookAnew() {
  m_silence.invalidate();
  m_asked = false;
  m_facts = {};
  Q_EMIT seen(m_facts);
  co_await Timer3_Timer();
}

QCoro::Task<> DeviceWatcher::deviceAnswered(quint64 asked) {
  if (m_bench.state.headset().storage.size.isEmpty()) {
    co_await StorageReport(m_bench, m_pollDOS);
    if (overtaken(asked)) co_return;
  }
  m_bench.state.setPhase(Availability::Phase::Answered);
  const bool installed = co_await CompareInstalledVersion(m_bench, m_pollDOS);
  if (overtaken(asked)) co_return;
  m_bench.state.setMayUninstall(installed);
}

void DeviceWatcher::returnPackageName() {
  if (!m_bench.state.package.RenameBackDue || !QFileInfo::exists(m_bench.state.package.TempZipPath)) return;
  // The exact old name, with its capitals; if that is taken, the next poll tries again.
  if (m_bench.state.package.packageName.giveBack()) m_bench.state.package.RenameBackDue = false;
}

}  // namespace orvanta
