#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "monitor/connection.h"
#include "ui/status.h"

namespace orvanta {

class Workbench;

/// Tells in the status line what the watcher's polls mean for the user. It asks the device nothing.
class ConnectionDoctor : public QObject {
  Q_OBJECT

 public:
  /// `act` carries out what the line's button offers. `pluggedIn` looks at the USB ports; it is asked only
  /// while adb lists nothing. `toolPlaces` looks for adb on this computer, only while it is missing.
  ConnectionDoctor(Workbench& bench, std::function<void(ConnectionAction)> act,
                   std::function<std::optional<bool>()> pluggedIn, std::function<QStringList()> toolPlaces);

  /// What the watcher has seen; the choice of the user and the list of apps are looked up here.
  void consider(const ConnectionFacts& seen);
  /// The same again, since something else has changed.
  void reconsider() { consider(m_seen); }

  const Connection& connection() const { return m_connection; }

 private:
  Workbench& m_bench;
  std::function<void(ConnectionAction)> m_act;
  std::function<std::optional<bool>()> m_pluggedIn;
  std::function<QStringList()> m_toolPlaces;
  ConnectionFacts m_seen;
  Connection m_connection;
};

}  // namespace orvanta
