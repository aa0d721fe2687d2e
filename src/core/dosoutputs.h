#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>

namespace orvanta {

class Turn;

/// Where a runner reports that a run could not begin.
class CommandReports {
 public:
  virtual ~CommandReports() = default;

  /// Appends the command that could not be started to the console.
  virtual void commandError(const QString& commandLine) = 0;
  /// Shows `text` with the critical icon; returns when the user has closed it.
  virtual QCoro::Task<> criticalMessage(QString text) = 0;
};

/// The process runner: runs one command line as a hidden child and gives back all that it printed, standard
/// output and standard error as they came. It decides nothing about the meaning of the text.
class DOSOutputs : public QObject {
  Q_OBJECT

 public:
  /// A runner that reports to `reports`. With a `turn`, its runs show as that turn's tools and end by its
  /// stop; without one (the watcher's polls) they are nobody's but the caller's.
  explicit DOSOutputs(CommandReports& reports, Turn* turn = nullptr, QObject* parent = nullptr);

  QString CommandLine() const { return m_commandLine; }
  void setCommandLine(const QString& DOSCommand) { m_commandLine = DOSCommand; }
  /// All output of the last run that got as far as starting a process.
  QString Outputs() const { return m_outputs; }

  /// Runs the stored command line; a `commandLine` that is not empty replaces it first. Returns the tool's
  /// whole text, every line end as CR LF; an empty text when nothing could be started (reported to the user)
  /// or when the turn was stopped before. One run at a time on one object.
  QCoro::Task<QString> ExecuteCommand(QString commandLine = {});

  /// Ends the running tool, if there is one; its run returns what was read so far.
  void stop() { Q_EMIT stopAsked(); }

 Q_SIGNALS:
  /// A block of the running tool's text; the last one of a run is empty.
  void ReceiveOutputs(const QString& CommandOutputs);
  void stopAsked();

 private:
  CommandReports& m_reports;
  Turn* m_turn;
  QString m_commandLine;
  QString m_outputs;
};

}  // namespace orvanta
