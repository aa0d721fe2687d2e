#pragma once

#include <QCoroTask>
#include <QSet>
#include <optional>

#include "core/console_text.h"
#include "core/dosoutputs.h"
#include "core/state.h"
#include "core/status_board.h"
#include "core/turn.h"
#include "ui/desktop.h"

namespace orvanta {

/// What the handlers of the program work with: the state, the turn, the console's text, the main runner and
/// the person at the desktop. No window.
class Workbench : public QObject, public CommandReports {
  Q_OBJECT

 public:
  explicit Workbench(Desktop& user);

  Desktop& desktop;
  State state;
  Turn turn;
  StatusBoard status;  ///< what the line between buttons and console shows
  ConsoleText console;
  /// The main runner: what it reads goes to the console, unless `CommandBusy` is set.
  DOSOutputs objDOS{*this, &turn};

  /// Runs `line`, or if empty the runner's last line again, and keeps the output out of the console. Returns
  /// the tool's answer without the notes of a starting adb server; empty after a stop.
  QCoro::Task<QString> runQuietly(DOSOutputs& runner, std::optional<QString> line);

  /// A line of the program's own in the console.
  void say(const QString& message) { console.say(message); }
  /// The same at the end of start-up, below the verdict, which replaces the console's earlier text.
  void sayUnderVerdict(const QString& message);
  /// Between these two calls, lines for below the verdict wait for it.
  void beginStart() { m_starting = true; }
  void endStart();

  void toolStarted(const QString& tool) override;
  QCoro::Task<> startFailed(QString tool, QString commandLine, QString text) override;
  QCoro::Task<> criticalMessage(QString text) override;
  void printedTooMuch(const QString& tool, qint64 bytes) override;

 private:
  QString m_underVerdict;
  QSet<QString> m_missingTools;  ///< failed to start when last tried
  QSet<QString> m_toldInTurn;    ///< tools that the user was told about since the turn began
  bool m_starting = false;
};

}  // namespace orvanta
