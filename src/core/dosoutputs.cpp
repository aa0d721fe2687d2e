#include "core/dosoutputs.h"

#include <QFileInfo>
#include <QStringDecoder>

#include "core/turn.h"
#include "platform/child_process.h"
#include "platform/command_line.h"
#include "ui/awaited.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// UTF-8 whose characters may be cut by block boundaries; what is no UTF-8 becomes U+FFFD.
class StreamDecoder : public QStringDecoder {
 public:
  // A byte order mark is a character like any other here: the text is handed on as the tool wrote it.
  StreamDecoder() : QStringDecoder(Utf8, Flag::ConvertInitialBom) {}

  /// A character that the end of the stream has cut off.
  QString rest() const { return state.remainingChars > 0 ? QString(QChar::ReplacementCharacter) : QString(); }
};

QString toolName(const QString& commandLine) {
  const QStringList words = splitCommandLine(commandLine);
  return words.isEmpty() ? QString() : QFileInfo(words.constFirst()).completeBaseName();
}

}  // namespace

DOSOutputs::DOSOutputs(CommandReports& reports, Turn* turn, QObject* parent)
    : QObject(parent), m_reports(reports), m_turn(turn) {}

QCoro::Task<QString> DOSOutputs::ExecuteCommand(QString commandLine) {
  if (m_turn != nullptr && m_turn->stopped()) co_return QString();
  if (!commandLine.isEmpty()) m_commandLine = commandLine;
  if (m_commandLine.isEmpty()) {
    co_await m_reports.criticalMessage(u"Command Line empty"_s);
    co_return QString();
  }

  const std::unique_ptr<ChildProcess> child = ChildProcess::create();
  const auto failure = child->start(m_commandLine);
  if (failure && failure->step == ChildProcess::StartFailure::Step::Pipe) {
    co_await m_reports.criticalMessage(u"CreatePipe failed. Error: "_s + QString::number(failure->error));
    co_return QString();
  }
  if (failure) {
    const QString line = m_commandLine;
    m_reports.commandError(line);
    co_await m_reports.criticalMessage(u" File or command not found\r\n"_s + line);
    co_return QString();
  }

  m_outputs.clear();
  StreamDecoder decoder;
  const auto receive = [this](const QString& text) {
    m_outputs += text;
    Q_EMIT ReceiveOutputs(text);
  };
  connect(child.get(), &ChildProcess::block, this,
          [&decoder, &receive](const QByteArray& bytes) { receive(decoder.decode(bytes)); });
  connect(this, &DOSOutputs::stopAsked, child.get(), &ChildProcess::kill);
  if (m_turn != nullptr) {
    connect(m_turn, &Turn::stopRequested, child.get(), &ChildProcess::kill);
    m_turn->noteToolStarted(toolName(m_commandLine));
  }
  co_await Emitted(child.get(), &ChildProcess::finished);
  if (m_turn != nullptr) m_turn->noteToolEnded();
  const QString rest = decoder.rest();
  if (!rest.isEmpty()) receive(rest);
  receive(QString());
  // A copy: a task moves what it is given, and the stored output stays.
  const QString text = m_outputs;
  co_return text;
}

}  // namespace orvanta
