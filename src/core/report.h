#pragma once

#include <QCoroTask>
#include <QObject>
#include <QTimer>

#include "core/dosoutputs.h"
#include "core/turn.h"

namespace orvanta {

class Workbench;

/// Saves as a text what somebody who is to help needs to know, less what is private: versions, state,
/// console.
class Report : public QObject {
  Q_OBJECT

 public:
  explicit Report(Workbench& bench);

  /// Asks where to, and writes it there. Needs no turn, since a tool that hangs is a reason for a report.
  QCoro::Task<> save_Click();

 private:
  /// What `adb version` says; empty if it cannot be started or does not end. Touches neither server nor
  /// device.
  QCoro::Task<QString> toolVersion();
  QCoro::Task<QString> text();

  /// A tool that does not start is told in the report and nowhere else.
  struct Unreported : CommandReports {
    QCoro::Task<> startFailed(QString, QString, QString) override { co_return; }
    QCoro::Task<> criticalMessage(QString) override { co_return; }
  };

  Workbench& m_bench;
  Unreported m_unreported;
  Turn m_asking;
  DOSOutputs m_versionDOS{m_unreported, &m_asking};
  QTimer m_limit;
};

}  // namespace orvanta
