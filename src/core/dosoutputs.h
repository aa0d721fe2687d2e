#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <limits>
#include <optional>

namespace orvanta {

class ChildProcess;
class Turn;

/// Where a runner reports how its runs start and end.
class CommandReports {
 public:
  virtual ~CommandReports() = default;

  /// The tool with this bare name has been started.
  virtual void toolStarted(const QString& /*tool*/) {}
  /// A tool was ended because it printed more than `bytes`.
  virtual void printedTooMuch(const QString& /*tool*/, qint64 /*bytes*/) {}
  /// `commandLine` could not be started. Notes it in the console and tells the user with `text`, unless the
  /// user was told about this tool and nothing has changed since; returns when the box is closed.
  virtual QCoro::Task<> startFailed(QString tool, QString commandLine, QString text) = 0;
  /// Shows `text` with the critical icon; returns when the user has closed it.
  virtual QCoro::Task<> criticalMessage(QString text) = 0;
};

/// How much of a tool's output is kept, since output can be endless.
struct OutputBound {
  qint64 bytes = std::numeric_limits<qint64>::max();
  /// Whether a tool that prints more is ended: its text is then empty, since half a reply would pass for a
  /// whole one. If not, all output comes as events, but only its beginning is stored.
  bool endsTool = false;
};

/// The process runner: runs one command line as a hidden child and returns all that it printed, standard
/// output and standard error in order of arrival. It does not interpret the text.
class DOSOutputs : public QObject {
  Q_OBJECT

 public:
  /// A runner that reports to `reports`. With a `turn`, its runs show as that turn's tools, and the turn's
  /// stop ends them.
  explicit DOSOutputs(CommandReports& reports, Turn* turn = nullptr, QObject* parent = nullptr);

  /// The bound of all later runs.
  void setBound(const OutputBound& bound) { m_bound = bound; }

  QString CommandLine() const { return m_commandLine; }
  void setCommandLine(const QString& DOSCommand) { m_commandLine = DOSCommand; }
  /// The output, up to the bound, of the last run that started a process.
  QString Outputs() const { return m_outputs; }

  /// Runs the stored command line; a `commandLine` that is not empty replaces it first. Returns the tool's
  /// whole text, every line end as CR LF; an empty text when nothing could be started (reported to the user)
  /// or when the turn was stopped before. One run at a time on one object.
  ///
  /// A stop ends the text at once: output not read by then never comes, here or as an event. Deleting the
  /// runner during a run ends its tool; the text is then empty, and the awaiting coroutine must not touch
  /// what was deleted with the runner.
  QCoro::Task<QString> ExecuteCommand(QString commandLine = {});

  /// Bytes that the running tool has read and passed on, as ChildProcess tells it; nothing while none runs.
  std::optional<qint64> bytesRead() const;

  /// Whether the last call ran its tool to the end: it started, and neither a stop nor the bound cut it
  /// short.
  bool answered() const { return m_answered; }
  /// Why the tool of the last call could not be started, as the system's error number; nothing when it could.
  std::optional<quint32> startError() const { return m_startError; }

 Q_SIGNALS:
  /// A block of the running tool's text; the last one of a run is empty.
  void ReceiveOutputs(const QString& CommandOutputs);

 private:
  void receive(const QString& text, const OutputBound& bound);
  void noteLength(bool tooLong, const QString& tool);

  CommandReports& m_reports;
  Turn* m_turn;
  const ChildProcess* m_running = nullptr;
  QString m_commandLine;
  QString m_outputs;
  OutputBound m_bound;
  QString m_tooLong;  // the line of the last tool that printed too much, which is reported once
  std::optional<quint32> m_startError;
  bool m_answered = false;
};

}  // namespace orvanta
