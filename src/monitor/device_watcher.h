#pragma once

#include <QCoroTask>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

#include "core/dosoutputs.h"
#include "core/turn.h"
#include "monitor/connection.h"

namespace orvanta {

class Workbench;

/// Polls whether a device answers, enables the device buttons accordingly, and gives a package file its name
/// back if start-up could not. Polls use their own runner, so the window never waits for them; an answer that
/// a handler's turn has overtaken is dropped. A poll ends when a handler takes the turn, and after `limit` at
/// the latest: its tool is killed, missing replies count as no answer, and the next tick asks again.
class DeviceWatcher : public QObject {
  Q_OBJECT

 public:
  static constexpr std::chrono::seconds longestPoll{10};
  static constexpr qint64 longestReply = 1024 * 1024;  ///< bytes; a tool that prints more is ended

  /// `inFront` tells whether the main window is active: while the user is elsewhere, adb is left alone.
  DeviceWatcher(Workbench& bench, std::function<bool()> inFront,
                std::chrono::milliseconds limit = longestPoll);

  /// Whether a poll is under way.
  bool polling() const { return m_poll.taken(); }

  /// One poll. Returns at once while `WatcherHold` is set, a handler has the turn, or a poll is under way.
  QCoro::Task<> Timer3_Timer();
  /// What was seen so far counts no more, since something else than the headset has changed; polls at once.
  QCoro::Task<> lookAnew();

 Q_SIGNALS:
  /// What a poll has seen of the connection, or that one still waits for its answer.
  void seen(const ConnectionFacts& facts);

 private:
  QCoro::Task<bool> DeviceConnected();
  QCoro::Task<> deviceAnswered(quint64 asked);
  void noteReply(quint64 asked);
  void tellSeen();
  void returnPackageName();
  bool overtaken(quint64 asked) const;

  Workbench& m_bench;
  std::function<bool()> m_inFront;
  Turn m_poll;
  DOSOutputs m_pollDOS;
  QTimer m_limit;
  QElapsedTimer m_silence;  ///< valid while adb owes an answer
  ConnectionFacts m_facts;
  bool m_asked = false;  ///< adb was started, or that was tried, since something else has changed
};

}  // namespace orvanta
