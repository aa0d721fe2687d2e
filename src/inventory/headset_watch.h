#pragma once

#include <QCoroTask>
#include <QObject>
#include <QTimer>

#include "core/dosoutputs.h"
#include "core/turn.h"

namespace orvanta {

class Form4;
class Workbench;

/// Notices when another headset than the list's is connected while the list is in front, and has the list say
/// so. It reads what adb's server knows; a headset is asked only when it is a new one.
class HeadsetWatch : public QObject {
  Q_OBJECT

 public:
  HeadsetWatch(Workbench& bench, Form4& window);

  /// One look; none while a handler has the turn.
  QCoro::Task<> look();

 private:
  Workbench& m_bench;
  Form4& m_window;
  Turn m_quiet;
  DOSOutputs m_quietDOS;
  QTimer m_interval;
  QString m_seen;  // what adb calls the headset that answered last
};

}  // namespace orvanta
