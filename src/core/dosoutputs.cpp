#include "core/dosoutputs.h"

#include <QFileInfo>
#include <QPointer>

#include "core/turn.h"
#include "core/utf8_stream.h"
#include "platform/awaited.h"
#include "platform/child_process.h"
#include "platform/command_line.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString toolName(const QString& commandLine) {
  const QStringList words = splitCommandLine(commandLine);
  return words.isEmpty() ? QString() : QFileInfo(words.constFirst()).completeBaseName();
}

/// One run of a tool, and what is kept of its output.
struct Run {
  explicit Run(const OutputBound& ofRun) : bound(ofRun) {}

  void stop() {
    stopped = true;
    child->kill();
  }
  bool printedTooMuch() const { return bound.endsTool && printed > bound.bytes; }

  /// The text of the next bytes. Empty after a stop: the console must not continue below the note that the
  /// tool was stopped.
  QString take(const QByteArray& bytes) {
    if (stopped) return {};
    printed += bytes.size();
    if (!printedTooMuch()) return stream.decode(bytes);
    stop();
    return {};
  }
  QString rest() const { return stopped ? QString() : stream.rest(); }

  std::unique_ptr<ChildProcess> child = ChildProcess::create();
  OutputBound bound;
  Utf8Stream stream;
  qint64 printed = 0;
  bool stopped = false;
};

}  // namespace

DOSOutputs::DOSOutputs(CommandReports& reports, Turn* turn, QObject* parent)
    : QObject(parent), m_reports(reports), m_turn(turn) {}

QCoro::Task<QString> DOSOutputs::ExecuteCommand(QString commandLine) {
  m_answered = false;
  m_startError.reset();
  if (m_turn != nullptr && m_turn->stopped()) co_return QString();
  if (!commandLine.isEmpty()) m_commandLine = commandLine;
  if (m_commandLine.isEmpty()) {
    co_await m_reports.criticalMessage(designed(u"Command Line empty"));
    co_return QString();
  }

  Run run(m_bound);
  const QString tool = toolName(m_commandLine);
  if (const auto failure = run.child->start(m_commandLine)) {
    QString text = designed(u" File or command not found") + u"\r\n"_s + m_commandLine;
    if (failure->step == ChildProcess::StartFailure::Step::Pipe) {
      text = designed(u"CreatePipe failed. Error: ") + QString::number(failure->error);
    } else {
      m_startError = failure->error;
    }
    co_await m_reports.startFailed(tool, m_commandLine, text);
    co_return QString();
  }

  m_reports.toolStarted(tool);
  m_outputs.clear();
  m_running = run.child.get();
  connect(run.child.get(), &ChildProcess::block, this,
          [this, &run](const QByteArray& bytes) { receive(run.take(bytes), run.bound); });
  // A listener may delete the runner.
  const QPointer<DOSOutputs> runner(this);
  connect(this, &QObject::destroyed, run.child.get(), [&run] { run.stop(); });
  const QPointer<Turn> turn(m_turn);
  if (turn != nullptr) {
    connect(turn, &Turn::stopRequested, run.child.get(), [&run] { run.stop(); });
    turn->noteToolStarted(tool);
  }
  co_await Emitted(run.child.get(), &ChildProcess::finished);
  if (runner != nullptr) m_running = nullptr;
  if (turn != nullptr) turn->noteToolEnded();
  if (runner != nullptr) receive(run.rest(), run.bound);
  if (runner != nullptr) Q_EMIT ReceiveOutputs(QString());
  if (runner == nullptr) co_return QString();
  m_answered = !run.stopped;
  noteLength(run.printedTooMuch(), tool);
  // A copy, since a task moves what it is given and the stored output must stay.
  const QString text = m_outputs;
  co_return text;
}

std::optional<qint64> DOSOutputs::bytesRead() const {
  return m_running != nullptr ? m_running->bytesRead() : std::nullopt;
}

void DOSOutputs::receive(const QString& text, const OutputBound& bound) {
  if (text.isEmpty()) return;
  if (m_outputs.size() < bound.bytes) m_outputs += text;
  Q_EMIT ReceiveOutputs(text);
}

void DOSOutputs::noteLength(bool tooLong, const QString& tool) {
  if (tooLong) {
    m_outputs.clear();
    // Polls repeat every two seconds; tell only once.
    if (m_tooLong != m_commandLine) m_reports.printedTooMuch(tool, m_bound.bytes);
    m_tooLong = m_commandLine;
  } else if (m_tooLong == m_commandLine) {
    m_tooLong.clear();
  }
}

}  // namespace orvanta
