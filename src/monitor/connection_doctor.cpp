#include "monitor/connection_doctor.h"

#include <utility>

#include "adb/chosen_device.h"
#include "adb/devices.h"
#include "core/workbench.h"

namespace orvanta {

ConnectionDoctor::ConnectionDoctor(Workbench& bench, std::function<void(ConnectionAction)> act,
                                   std::function<std::optional<bool>()> pluggedIn,
                                   std::function<QStringList()> toolPlaces)
    : m_bench(bench),
      m_act(std::move(act)),
      m_pluggedIn(std::move(pluggedIn)),
      m_toolPlaces(std::move(toolPlaces)) {
  reconsider();
}

void ConnectionDoctor::consider(const ConnectionFacts& seen) {
  m_seen = seen;
  ConnectionFacts facts = seen;
  facts.chosenSerial = chosenDevice();
  facts.listUsedUp = m_bench.state.InstalledAppsClosed();
  if (seen.inFront && seen.answer && readDevices(*seen.answer).devices.isEmpty())
    facts.pluggedIn = m_pluggedIn();
  if (seen.tool == ConnectionFacts::Tool::Missing) facts.toolPlaces = m_toolPlaces();
  m_connection = diagnose(facts);
  if (m_connection.serial) m_bench.state.noteDevices(*m_connection.serial, m_connection.unchosen);
  const ConnectionAction action = m_connection.action;
  m_bench.status.setConnection({m_connection.sign, m_connection.sentence, m_connection.remedy,
                                m_connection.actionCaption, [this, action] { m_act(action); }});
}

}  // namespace orvanta
