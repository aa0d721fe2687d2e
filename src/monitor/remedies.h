#pragma once

#include <QCoroTask>
#include <QTimer>
#include <functional>

#include "monitor/connection.h"

namespace orvanta {

class Workbench;

/// Carries out what the status line offers when something stands between the user and the headset.
class Remedies : public QObject {
  Q_OBJECT

 public:
  struct Ways {
    std::function<void()> lookAnew;  ///< asks adb at once, since something has changed
    std::function<void()> chooseDevice;
    std::function<void()> startAnew;          ///< ends the program and starts it again
    std::function<QStringList()> toolPlaces;  ///< folders of this computer that have adb
  };
  Remedies(Workbench& bench, Ways ways);

  void carryOut(ConnectionAction action);

 private:
  QCoro::Task<> ChooseToolFolder();
  QCoro::Task<> RestartServer();
  void CopyUdevCommand();

  Workbench& m_bench;
  Ways m_ways;
  QTimer m_limit;
};

}  // namespace orvanta
