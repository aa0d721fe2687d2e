#pragma once

#include <QCoroTask>
#include <QObject>

#include "core/dosoutputs.h"

namespace orvanta {

class apkinfo;

/// `adb devices` printed more than its heading: a device, or the greeting of a server that is just starting.
bool answersLikeADevice(const QString& devicesOutput);

/// Keeps the main window in step with the world outside: polls whether a device answers, sets the device
/// buttons by it, and gives a package file its name back where start-up could not. Its polls run on a runner
/// of their own, so that the window never waits for them; what a handler's turn has overtaken is dropped.
class DeviceWatcher : public QObject {
  Q_OBJECT

 public:
  explicit DeviceWatcher(apkinfo& form);

  /// Whether a poll is under way.
  bool polling() const { return m_polling; }

  /// One poll. Returns at once while `WatcherHold` stands, a handler has the turn, or a poll is under way.
  QCoro::Task<> Timer3_Timer();

 private:
  void Timer1_Timer();
  void Timer2_Timer();
  QCoro::Task<bool> DeviceConnected();
  QCoro::Task<> deviceAnswered(quint64 asked);
  void deviceGone();
  void returnPackageName();
  bool overtaken(quint64 asked) const;

  apkinfo& m_form;
  DOSOutputs m_pollDOS;
  bool m_polling = false;
};

}  // namespace orvanta
